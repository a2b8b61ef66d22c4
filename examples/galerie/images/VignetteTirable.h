#pragma once

#include <functional>

#include <libvue/images/VignetteVisuel.h>

namespace galerie {

using namespace libvue;

/// A thumbnail whose region is drawn with the mouse: a press inside of the region moves it, elsewhere it begins a new
/// one. The arrows move it, the return key plays the fade again.
class VignetteTirable : public VignetteVisuel {
public:
    static void describe(ClassDescription<VignetteTirable, VignetteVisuel>&) {}
    /// As large as the picture.
    VignetteTirable(NSImage* image, const NSRect& region);
    ~VignetteTirable() override;

    /// Told of each region that was chosen.
    std::function<void()> surRegion;

    /// In fractions of the picture, y downward.
    [[nodiscard]] NSRect region() const noexcept { return region_; }
    [[nodiscard]] NSData* donnees() const noexcept { return donnees_; }
    /// Shows the region, held to the picture, at the end of a fade.
    void choisis(const NSRect& region);
    void rejoue();

    void mouseDown(NSEvent* e) override;
    void mouseDragged(NSEvent* e) override;
    void mouseUp(NSEvent* e) override;
    void keyDown(NSEvent* e) override;
    void drawRect(const NSRect& r) override;
    void resetCursorRects() override;
    [[nodiscard]] BOOL acceptsFirstResponder() override { return YES; }
    [[nodiscard]] BOOL acceptsFirstMouse(NSEvent*) override { return YES; }
    [[nodiscard]] BOOL mouseDownCanMoveWindow() const override { return NO; }
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    enum class Geste { aucun, trace, deplace };
    [[nodiscard]] NSPoint enFractions(NSEvent* e) const;
    /// The region in the view's coordinates.
    [[nodiscard]] NSRect regionEnVue() const;

    Ref<NSData> donnees_;
    NSRect region_;
    Geste geste_ = Geste::aucun;
    bool auRepos_ = true; ///< nobody has touched it: it looks as it does after a fade
    NSPoint prise_;       // in fractions
    NSRect avant_;
};

} // namespace galerie

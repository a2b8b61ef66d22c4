#pragma once

#include <functional>
#include <vector>

#include <libvue/platform/appkit/NSView.h>

namespace galerie {

using namespace libvue;

/// The list of the pages: a click, the arrows, Home and End choose one.
class ListePages : public NSView {
public:
    static void describe(ClassDescription<ListePages, NSView>&) {}
    explicit ListePages(std::vector<Ref<NSString>> noms);

    /// Told when a person has chosen another page.
    std::function<void(NSUInteger)> surChoix;

    [[nodiscard]] NSUInteger choisie() const noexcept { return choisie_; }
    /// Shows it and tells nobody. Out of range is ignored.
    void setChoisie(NSUInteger i);
    [[nodiscard]] NSRect rectDeRangee(NSUInteger i) const;

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    [[nodiscard]] BOOL acceptsFirstResponder() override { return YES; }
    BOOL becomeFirstResponder() override;
    BOOL resignFirstResponder() override;
    [[nodiscard]] BOOL mouseDownCanMoveWindow() const override { return NO; }
    void drawRect(const NSRect& r) override;
    void mouseDown(NSEvent* e) override;
    void mouseMoved(NSEvent* e) override;
    void mouseExited(NSEvent* e) override;
    void updateTrackingAreas() override;
    void keyDown(NSEvent* e) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    void choisit(NSUInteger i);
    [[nodiscard]] NSUInteger rangeeAuPoint(NSPoint p) const;
    void setSurvolee(NSUInteger i);

    std::vector<Ref<NSString>> noms_;
    NSUInteger choisie_ = 0;
    NSUInteger survolee_ = NSNotFound;
    Ref<NSTrackingArea> survol_;
};

} // namespace galerie

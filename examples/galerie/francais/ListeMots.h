#pragma once

#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/graphics/Palette.h>

namespace galerie {

using namespace libvue;

/// Texts below each other, as the document of a scroll view.
class ListeMots : public NSView {
public:
    static void describe(ClassDescription<ListeMots, NSView>&) {}
    ListeMots(CGFloat largeur, SystemColor encre);

    [[nodiscard]] NSArray* mots() const noexcept { return mots_; }
    /// Takes the height of its rows.
    void montre(NSArray* mots);

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    void drawRect(const NSRect& r) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    Ref<NSArray> mots_ = NSArray::array();
    SystemColor encre_;
};

/// The words of a line of text, in their order; blanks, commas and semicolons part them.
[[nodiscard]] Ref<NSArray> motsDeLaLigne(const NSString* ligne);

} // namespace galerie

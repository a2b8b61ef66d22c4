#pragma once

#include <functional>

#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/graphics/NSImage.h>

namespace galerie {

using namespace libvue;

/// A tile with a caption below: an image, or what a function draws, on a chequered ground that shows through.
class CaseImage : public NSView {
public:
    static void describe(ClassDescription<CaseImage, NSView>&) {}
    CaseImage(NSSize taille, NSString* legende);

    /// Asked for the image, which stands in the middle at its own size, at each drawing: so it is as sharp as the
    /// screen and in the colours of the moment.
    std::function<Ref<NSImage>()> image;
    /// Draws in the rectangle instead of an image; y is upward.
    std::function<void(const NSRect&)> dessin;
    void setLegende(NSString* legende);

    void drawRect(const NSRect& r) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    [[nodiscard]] NSRect cadre() const;

    Ref<NSString> legende_;
};

} // namespace galerie

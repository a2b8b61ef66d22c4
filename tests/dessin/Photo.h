#pragma once

#include "graphics/Dessin.h"

#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue::test {

/// A picture with some of everything: opaque, translucent and empty parts, edges that fall between pixels.
inline Ref<NSImage> photo(NSSize taille) {
    Ref<NSImage> image = make<NSImage>(taille);
    image->lockFocus();
    NSColor::orangeColor()->set();
    NSRectFill({{0, 0}, {taille.width, taille.height / 2}});
    NSColor::blueColor()->colorWithAlphaComponent(0.4)->set();
    NSBezierPath::bezierPathWithOvalInRect(NSInsetRect({NSZeroPoint, taille}, taille.width / 5, taille.height / 7))
        ->fill();
    image->unlockFocus();
    return image;
}

/// "rrggbbaa" of the pixel of an image, from its lower left corner.
inline std::string pixelDe(const NSImage* image, int x, int y, CGFloat echelle = 1) {
    const auto p = image->picture(echelle);
    return p ? Pixels::hex(*p, x, p->pixelHeight() - 1 - y) : "rien";
}

/// Whether both have the same pixels; says where they first differ.
inline ::testing::AssertionResult memesPixels(const NSImage* a, const NSImage* b, CGFloat echelle = 1) {
    const auto pa = a->picture(echelle), pb = b->picture(echelle);
    if (!pa || !pb) return ::testing::AssertionFailure() << "no pixels";
    if (pa->pixelWidth() != pb->pixelWidth() || pa->pixelHeight() != pb->pixelHeight())
        return ::testing::AssertionFailure() << "sizes differ: " << pa->pixelWidth() << " and " << pb->pixelWidth();
    for (int y = 0; y < pa->pixelHeight(); ++y)
        for (int x = 0; x < pa->pixelWidth(); ++x)
            if (!(pa->pixel(x, y) == pb->pixel(x, y)))
                return ::testing::AssertionFailure()
                       << x << ", " << y << ": " << Pixels::hex(*pa, x, y) << " and " << Pixels::hex(*pb, x, y);
    return ::testing::AssertionSuccess();
}

/// Sets the scale of new images for the life of this object.
struct Echelle {
    explicit Echelle(CGFloat e) { NSImage::setScreenScale(e); }
    ~Echelle() { NSImage::setScreenScale(1); }
    Echelle(const Echelle&) = delete;
    Echelle& operator=(const Echelle&) = delete;
};

} // namespace libvue::test

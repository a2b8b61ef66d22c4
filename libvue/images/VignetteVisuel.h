#pragma once

#include <libvue/images/Forward.h>
#include <libvue/platform/appkit/NSButton.h>

namespace libvue {

/// A thumbnail that veils its picture but for one region, which clears in a fade.
///
/// A frame of the fade follows another by a delayed call on the run loop, 0.02 s later and 0.05 clearer. A new region
/// while a fade runs starts again without taking back the frame that waits; only a new picture does that.
class LIBVUE_API VignetteVisuel : public NSButton {
public:
    static void describe(ClassDescription<VignetteVisuel, NSButton>& c);
    VignetteVisuel();
    explicit VignetteVisuel(const NSRect& frame);
    explicit VignetteVisuel(NSCoder& coder);
    ~VignetteVisuel() override;

    /// The bytes of an image file; what cannot be read shows nothing. The veil of the first picture stays: one of
    /// another size keeps a veil of the first one's.
    void setImageAvecDonnees(NSData* donnees);
    /// In fractions of the picture's width and height, y downward. Starts the fade; an empty region draws nothing.
    void setRectInteret(const NSRect& fractions);
    /// The region in points of the picture, y downward.
    [[nodiscard]] NSRect rectInteret() const noexcept { return rectInteret_; }
    /// Draws the next frame of the fade; nothing once it is over.
    void afficheRectangleInteret();

    /// The same picture at once, with square corners; the plain picture where the region is empty.
    [[nodiscard]] static Ref<NSImage> donneImageAvecDonnees_etRectInteret(NSData* donnees, const NSRect& fractions);

private:
    /// What all frames of a fade have in common, at one scale.
    struct Fond {
        Ref<NSImage> nette;  ///< the picture
        Ref<NSImage> voilee; ///< the picture under the whole veil
        CGFloat echelle = 0;
    };
    [[nodiscard]] Ref<NSImage> trame();
    /// False where frames cannot be put together from parts: pixels would not meet.
    [[nodiscard]] bool prepareFond(NSSize taille);

    Ref<NSImage> image_;
    NSRect rectInteret_;
    Ref<NSImage> imageNoir_;
    CGFloat alpha_ = 0;
    Fond fond_;
};

} // namespace libvue

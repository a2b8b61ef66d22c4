#include <libvue/images/VignetteVisuel.h>

#include <cmath>

#include <libvue/images/FocusImage.h>
#include <libvue/images/VoileImage.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

namespace {

const ClassRegistration<VignetteVisuel> registration;

constexpr CGFloat rayonVoile = 8.0;
constexpr CGFloat pasAlpha = 0.05;
constexpr NSTimeInterval entreTrames = 0.02;

Ref<NSImage> imageDeDonnees(NSData* donnees) {
    Ref<NSImage> image = make<NSImage>();
    const Ref<NSBitmapImageRep> rep = NSBitmapImageRep::imageRepWithData(donnees);
    image->addRepresentation(rep);
    return image;
}

bool estEntier(CGFloat v) { return v == std::floor(v); }

} // namespace

void VignetteVisuel::describe(ClassDescription<VignetteVisuel, NSButton>& c) {
    c.answers<&VignetteVisuel::afficheRectangleInteret>("afficheRectangleInteret");
}

VignetteVisuel::VignetteVisuel() = default;
VignetteVisuel::VignetteVisuel(const NSRect& frame) : NSButton(frame) {}
VignetteVisuel::VignetteVisuel(NSCoder& coder) : NSButton(coder) {}
VignetteVisuel::~VignetteVisuel() = default;

void VignetteVisuel::setImageAvecDonnees(NSData* donnees) {
    cancelPreviousPerformRequestsWithTarget(this);
    image_ = imageDeDonnees(donnees);
    fond_ = {};
    setImage(image_);
}

void VignetteVisuel::setRectInteret(const NSRect& fractions) {
    const NSSize taille = image_ ? image_->size() : NSZeroSize;
    rectInteret_ = regionDInteret(fractions, taille);
    if (NSIsEmptyRect(rectInteret_)) return;
    if (!imageNoir_) imageNoir_ = voileNoir(taille, rayonVoile);
    alpha_ = pasAlpha;
    // The first frame shows the region as it was given, the others the widened one.
    afficheRectangleInteret();
    rectInteret_ = regionElargie(rectInteret_, taille);
}

void VignetteVisuel::afficheRectangleInteret() {
    if (!(alpha_ < 1.0)) {
        fond_ = {};
        return;
    }
    if (!image_ || NSIsEmptyRect({NSZeroPoint, image_->size()})) return;
    alpha_ += pasAlpha;
    const Ref<NSImage> nouvelle = trame();
    setImage(nouvelle);
    setNeedsDisplay(YES);
    performSelector_withObject_afterDelay(sel("afficheRectangleInteret"), nullptr, entreTrames);
}

Ref<NSImage> VignetteVisuel::trame() {
    const NSSize taille = image_->size();
    if (!prepareFond(taille)) {
        Ref<NSImage> entiere = image_->copy();
        poseVoile(entiere, voilePerce(imageNoir_, taille, {NSZeroPoint, taille}, rectInteret_, alpha_), NSZeroPoint);
        return entiere;
    }
    // Away from the hole a frame is the veiled picture.
    Ref<NSImage> image = fond_.voilee->copy();
    const NSRect partie = porteeDuTrou(rectInteret_, taille);
    if (NSIsEmptyRect(partie)) return image;
    const Ref<NSImage> masque = voilePerce(imageNoir_, taille, partie, rectInteret_, alpha_);
    const FocusImage focus(image);
    fond_.nette->drawInRect_fromRect_operation_fraction(partie, partie, NSCompositeCopy, 1.0);
    masque->drawAtPoint_fromRect_operation_fraction(partie.origin, NSZeroRect, NSCompositeSourceAtop, 1.0);
    return image;
}

bool VignetteVisuel::prepareFond(NSSize taille) {
    // In somebody's drawing, new images have that drawing's scale.
    if (NSGraphicsContext::currentContext()) return false;
    const CGFloat echelle = NSImage::screenScale();
    if (fond_.voilee && fond_.echelle == echelle) return true;
    fond_ = {};
    if (!imageNoir_ || !(imageNoir_->size() == taille)) return false;
    const NSImageRep* voile = imageNoir_->representationForScale(echelle);
    const CGFloat large = taille.width * echelle, haute = taille.height * echelle;
    if (!estEntier(echelle) || !estEntier(large) || !estEntier(haute) || !voile ||
        static_cast<CGFloat>(voile->pixelsWide()) != large || static_cast<CGFloat>(voile->pixelsHigh()) != haute)
        return false;
    fond_.nette = image_->copy();
    // Drawn into, it has the pixels that a frame has.
    fond_.nette->lockFocus();
    fond_.nette->unlockFocus();
    fond_.voilee = fond_.nette->copy();
    poseVoile(fond_.voilee, imageNoir_, NSZeroPoint);
    fond_.echelle = echelle;
    return true;
}

Ref<NSImage> VignetteVisuel::donneImageAvecDonnees_etRectInteret(NSData* donnees, const NSRect& fractions) {
    Ref<NSImage> image = imageDeDonnees(donnees);
    const NSSize taille = image->size();
    const NSRect region = regionDInteret(fractions, taille);
    if (NSIsEmptyRect(region)) return image;
    const Ref<NSImage> voile = voileNoir(taille, 0.0);
    const NSRect trou = regionElargie(region, taille);
    poseVoile(image, voilePerce(voile, taille, {NSZeroPoint, taille}, trou, 1.0), NSZeroPoint);
    return image;
}

} // namespace libvue

#include <cmath>
#include <limits>

#include "Photo.h"
#include "appkit/AppFixture.h"
#include "support/Silence.h"

#include <libvue/images/VignetteVisuel.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSShadow.h>

using namespace libvue;
using namespace libvue::test;

namespace {

constexpr double infini = std::numeric_limits<double>::infinity();

Ref<NSImage> voile(NSSize taille, CGFloat rayon) {
    Ref<NSImage> v = make<NSImage>(taille);
    v->lockFocus();
    NSColor::blackColor()->colorWithAlphaComponent(0.25)->setFill();
    NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius({NSZeroPoint, taille}, rayon, rayon)->fill();
    v->unlockFocus();
    return v;
}

/// A frame in the plain way: a mask of the whole picture, drawn downward, over a copy.
Ref<NSImage> trameSimple(const NSImage* image, NSImage* noir, const NSRect& region, CGFloat alpha) {
    Ref<NSImage> trame = image->copy();
    const Ref<NSImage> masque = make<NSImage>(image->size());
    masque->setFlipped(YES);
    const Ref<NSBezierPath> contour = NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(region, 4, 4);
    const Ref<NSShadow> halo = make<NSShadow>();
    halo->setShadowOffset({0, 0});
    halo->setShadowBlurRadius(4);
    halo->setShadowColor(NSColor::whiteColor());
    masque->lockFocus();
    NSColor::blackColor()->colorWithAlphaComponent(alpha)->set();
    halo->set();
    contour->fill();
    masque->unlockFocus();
    masque->setFlipped(NO);
    masque->lockFocus();
    noir->drawAtPoint_fromRect_operation_fraction(NSZeroPoint, NSZeroRect, NSCompositeSourceOut, 1);
    masque->unlockFocus();
    trame->lockFocus();
    masque->drawAtPoint_fromRect_operation_fraction(NSZeroPoint, NSZeroRect, NSCompositeSourceAtop, 1);
    trame->unlockFocus();
    return trame;
}

struct VignetteTest : AppFixture {
    const Ref<VignetteVisuel> vue = make<VignetteVisuel>(NSRect{{0, 0}, {80, 60}});
    const Ref<NSData> donnees = photo({80, 60})->PNGRepresentation();
    void TearDown() override {
        // A fade that still runs keeps its view.
        NSObject::cancelPreviousPerformRequestsWithTarget(vue);
        AppFixture::TearDown();
    }
};

TEST_F(VignetteTest, aFadeGoesByStepsAndThenStops) {
    vue->setImageAvecDonnees(donnees);
    const Ref<NSImage> nette = vue->image();
    EXPECT_EQ(nette->size(), (NSSize{80, 60}));
    vue->setRectInteret({{0.25, 0.25}, {0.5, 0.5}});
    NSRunLoop* boucle = NSRunLoop::mainRunLoop();
    const NSTimeInterval debut = boucle->now();
    Ref<NSImage> derniere = vue->image();
    std::vector<int> centiemes{0};
    while (boucle->now() < debut + 1) {
        pass(0.005);
        if (vue->image() == derniere.get()) continue;
        derniere = vue->image();
        centiemes.push_back(static_cast<int>(std::lround((boucle->now() - debut) * 100)));
    }
    // From 0.10 to 1.00: nineteen frames, or one more where the sum of the steps stays under 1.
    ASSERT_GE(centiemes.size(), 19u);
    ASSERT_LE(centiemes.size(), 20u);
    for (std::size_t i = 1; i < centiemes.size(); ++i)
        EXPECT_NEAR(centiemes[i] - centiemes[i - 1], 2, 1) << i;
    EXPECT_EQ(pixelDe(derniere, 40, 30), pixelDe(nette, 40, 30)) << "the hole is clear at the end";
    EXPECT_EQ(pixelDe(derniere, 5, 5), "bf6000ff") << "a quarter of black over orange";
}

TEST_F(VignetteTest, eachFrameIsTheOneComposedInThePlainWay) {
    struct {
        NSRect fractions;
        CGFloat echelle;
        NSSize taille;
    } const lignes[] = {
        {{{0.25, 0.25}, {0.5, 0.5}}, 1, {80, 60}},
        {{{0.1, 0.6}, {0.31, 0.2}}, 1, {80, 60}},
        {{{0, 0}, {1, 1}}, 1, {80, 60}},
        {{{0.8, 0.8}, {0.5, 0.5}}, 2, {80, 60}},
        {{{0.33, 0.2}, {0.1, 0.7}}, 1, {81.5, 60}},
        {{{-2, -2}, {0.5, 0.5}}, 1, {80, 60}},
        {{{0.4, 0.4}, {0.01, 0.01}}, 1.5, {81, 61}},
    };
    for (const auto& l : lignes) {
        const Echelle echelle(l.echelle);
        const auto [W, H] = l.taille;
        const Ref<VignetteVisuel> v = make<VignetteVisuel>(NSRect{{0, 0}, {80, 60}});
        v->setImageAvecDonnees(photo(l.taille)->PNGRepresentation());
        const Ref<NSImage> nette = v->image();
        const NSSize t = nette->size();
        const Ref<NSImage> noir = voile(t, 8);
        NSRect region{{l.fractions.origin.x * t.width, l.fractions.origin.y * t.height + 2},
                      {l.fractions.size.width * t.width, l.fractions.size.height * t.height}};
        v->setRectInteret(l.fractions);
        CGFloat alpha = 0.05 + 0.05;
        EXPECT_TRUE(memesPixels(v->image(), trameSimple(nette, noir, region, alpha), l.echelle)) << W << H;
        region = NSIntersectionRect(NSInsetRect(region, -4, -4), NSInsetRect({NSZeroPoint, t}, 2, 2));
        EXPECT_EQ(v->rectInteret(), region);
        for (int i = 0; i < 6; ++i) {
            v->afficheRectangleInteret();
            alpha += 0.05;
            ASSERT_TRUE(memesPixels(v->image(), trameSimple(nette, noir, region, alpha), l.echelle)) << i;
        }
        NSObject::cancelPreviousPerformRequestsWithTarget(v);
    }
}

TEST_F(VignetteTest, anEmptyRegionDrawsNothing) {
    vue->setImageAvecDonnees(donnees);
    const Ref<NSImage> nette = vue->image();
    for (const NSRect& vide : {NSRect{{0.5, 0.5}, {0, 0.5}}, NSRect{{0, 0}, {0.5, -1}}}) {
        vue->setRectInteret(vide);
        EXPECT_EQ(vue->image(), nette.get());
        EXPECT_EQ(vue->rectInteret().origin.y, vide.origin.y * 60 + 2);
    }
    pass(0.1);
    EXPECT_EQ(vue->image(), nette.get());
}

TEST_F(VignetteTest, aNewRegionAddsAChainAndANewPictureEndsThemAll) {
    vue->setImageAvecDonnees(donnees);
    vue->setRectInteret({{0.25, 0.25}, {0.5, 0.5}});
    pass(0.011);
    vue->setRectInteret({{0.1, 0.1}, {0.2, 0.2}});
    // Two chains run: within 0.02 s both have drawn a frame.
    int trames = 0;
    Ref<NSImage> derniere = vue->image();
    for (int i = 0; i < 20; ++i) {
        pass(0.001);
        if (vue->image() != derniere.get()) ++trames;
        derniere = vue->image();
    }
    EXPECT_EQ(trames, 2);
    vue->setImageAvecDonnees(donnees);
    const Ref<NSImage> nette = vue->image();
    pass(1);
    EXPECT_EQ(vue->image(), nette.get());
}

TEST_F(VignetteTest, aPictureOfAnotherSizeKeepsTheFirstVeil) {
    vue->setImageAvecDonnees(donnees);
    vue->setRectInteret({{0.25, 0.25}, {0.5, 0.5}});
    vue->setImageAvecDonnees(photo({120, 90})->PNGRepresentation());
    const Ref<NSImage> nette = vue->image();
    vue->setRectInteret({{0.25, 0.25}, {0.5, 0.5}});
    EXPECT_EQ(pixelDe(vue->image(), 100, 10), pixelDe(nette, 100, 10)) << "right of the veil";
    EXPECT_EQ(pixelDe(vue->image(), 10, 20), "bf6000ff");
    EXPECT_TRUE(memesPixels(vue->image(), trameSimple(nette, voile({80, 60}, 8), {{30, 24.5}, {60, 45}}, 0.1)));
}

TEST_F(VignetteTest, theStillPictureHasSquareCorners) {
    const NSRect milieu{{0.25, 0.25}, {0.5, 0.5}};
    const Ref<NSImage> fixe = VignetteVisuel::donneImageAvecDonnees_etRectInteret(donnees, milieu);
    EXPECT_EQ(pixelDe(fixe, 0, 0), "bf6000ff");
    const Ref<NSImage> nette = NSImage::initWithData(donnees);
    EXPECT_TRUE(memesPixels(fixe, trameSimple(nette, voile({80, 60}, 0), {{16, 13}, {48, 38}}, 1)));
    EXPECT_TRUE(memesPixels(VignetteVisuel::donneImageAvecDonnees_etRectInteret(donnees, NSZeroRect), nette));
    vue->setImageAvecDonnees(donnees);
    vue->setRectInteret(milieu);
    EXPECT_EQ(pixelDe(vue->image(), 0, 0), "ff8000ff") << "the view's veil has round ones";
}

TEST_F(VignetteTest, dataThatCannotBeReadShowsNothing) {
    const Silence silence;
    const auto* octets = static_cast<const char*>(donnees->bytes());
    const NSRect milieu{{0.25, 0.25}, {0.5, 0.5}};
    for (NSUInteger n = 0; n < donnees->length(); ++n) {
        const Ref<NSData> coupe = NSData::dataWithBytes_length(octets, n);
        vue->setImageAvecDonnees(coupe);
        vue->setRectInteret(milieu);
        const NSSize taille = vue->image() ? vue->image()->size() : NSZeroSize;
        ASSERT_TRUE(taille == NSZeroSize || taille == (NSSize{80, 60})) << n;
        const Ref<NSImage> fixe = VignetteVisuel::donneImageAvecDonnees_etRectInteret(coupe, milieu);
        ASSERT_EQ(fixe->size(), taille) << n;
    }
    const Ref<VignetteVisuel> neuve = make<VignetteVisuel>(NSZeroRect);
    neuve->setRectInteret(milieu);
    neuve->afficheRectangleInteret();
    neuve->setImageAvecDonnees(nullptr);
    neuve->setRectInteret(milieu);
    neuve->afficheRectangleInteret();
    EXPECT_EQ(neuve->image() ? neuve->image()->size() : NSZeroSize, NSZeroSize);
}

TEST_F(VignetteTest, regionsThatAreNoRectanglesDoNoHarm) {
    vue->setImageAvecDonnees(donnees);
    const double nan = std::nan("");
    for (const NSRect& r : {NSRect{{nan, 0}, {1, 1}}, NSRect{{0, 0}, {nan, 1}}, NSRect{{0, nan}, {1, nan}},
                            NSRect{{-infini, 0}, {infini, 1}}, NSRect{{0, 0}, {infini, infini}},
                            NSRect{{1e300, 1e300}, {1e300, 1e300}}}) {
        vue->setRectInteret(r);
        pass(0.1);
        const Ref<NSImage> fixe = VignetteVisuel::donneImageAvecDonnees_etRectInteret(donnees, r);
        EXPECT_EQ(fixe->size(), (NSSize{80, 60}));
        EXPECT_EQ(vue->image()->size(), (NSSize{80, 60}));
    }
}

TEST_F(VignetteTest, aLongThinPictureFadesToo) {
    const Echelle echelle(2);
    const auto bits = NSBitmapImageRep::initWithPixelsWide_pixelsHigh(1, 30000);
    vue->setImageAvecDonnees(bits->PNGRepresentation());
    ASSERT_EQ(vue->image()->size(), (NSSize{1, 30000}));
    vue->setRectInteret({{0, 0.25}, {1, 0.5}});
    pass(0.1);
    EXPECT_EQ(vue->image()->size(), (NSSize{1, 30000}));
}

} // namespace

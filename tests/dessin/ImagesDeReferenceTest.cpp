// What charts and images look like as a whole: what single operations, tested elsewhere, do not tell.
#include "ImageReference.h"
#include "Photo.h"
#include "charts/Graphiques.h"

#include <functional>

#include <libvue/charts/KCHistogramme.h>
#include <libvue/images/NSBezierPathAMShading.h>
#include <libvue/images/NSBezierPathArrondi.h>
#include <libvue/images/VignetteVisuel.h>
#include <libvue/platform/appkit/NSViewCapture.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSShadow.h>

using namespace libvue;
using namespace libvue::test;

namespace {

std::shared_ptr<backend::Picture> prise(NSView* vue, CGFloat echelle = 1) {
    const Echelle deLEcran(echelle);
    const Ref<NSBitmapImageRep> pixels = bitmapImageRepForCachingDisplayInRect(vue, vue->bounds());
    cacheDisplayInRect_toBitmapImageRep(vue, vue->bounds(), pixels);
    return pixels->picture(echelle);
}

Ref<NSColor> teinte(CGFloat r, CGFloat v, CGFloat b) { return NSColor::colorWithSRGBRed_green_blue_alpha(r, v, b, 1); }

struct ImagesDeReferenceTest : AppFixture {
    const Ref<NSColor> bleu = teinte(0.17, 0.39, 0.69), vert = teinte(0.27, 0.59, 0.30),
                       ocre = teinte(0.86, 0.51, 0.14), pale = teinte(0.72, 0.82, 0.93);

    [[nodiscard]] Ref<KCTarte> tarte() const {
        const Ref<KCTarte> t = make<KCTarte>(NSRect{{0, 0}, {104, 104}});
        const auto ajoute = [&](NSInteger valeur, NSColor* couleur, NSString* nom) {
            t->ajoutePointe(pointe(valeur, couleur, nom, KCPointeDeTarteEtiquetteChaineEtPourcentage));
        };
        ajoute(26, bleu, u"Noms"_ns);
        ajoute(40, vert, u"Verbes"_ns);
        ajoute(18, ocre, u"Été"_ns);
        t->pretePointe(2)->setPourcentageExtraction(1);
        return t;
    }
    [[nodiscard]] Ref<KCHistogramme> histogramme(BOOL absolues) const {
        const Ref<KCHistogramme> h = make<KCHistogramme>(NSRect{{0, 0}, {150, 84}});
        const Ref<NSMutableArray> donnees = NSMutableArray::array();
        for (const int v : {120, 60, 90, 210, 45, 30, 0, 150})
            donnees->addObject(NSNumber::numberWithInteger(v));
        h->setCouleurs(NSArray::arrayWithObjects({NSArray::arrayWithObjects({pale, bleu}), ocre}));
        h->setDonnees(donnees);
        h->setEtiquettesAbsolues(absolues);
        h->setLargeurBandes(10);
        h->setEspacementBandes(4);
        const Ref<NSShadow> ombre = make<NSShadow>();
        ombre->setShadowColor(NSColor::blackColor()->colorWithAlphaComponent(0.5));
        ombre->setShadowOffset({1, -2});
        ombre->setShadowBlurRadius(3);
        h->setOmbrage(ombre);
        return h;
    }
    [[nodiscard]] Ref<NSImage> remplissages() const {
        const Ref<NSImage> image = make<NSImage>(NSSize{124, 44});
        image->lockFocus();
        bilinearGradientFillWithOuterColor_innerColor(bezierPathWithRoundedRect_radius({{2, 2}, {56, 40}}, 9), bleu,
                                                      ocre);
        bilinearGradientFillWithOuterColor_innerColor_angle(NSBezierPath::bezierPathWithRect({{66, 2}, {56, 40}}), bleu,
                                                            ocre, pi / 5);
        image->unlockFocus();
        return image;
    }
};

TEST_F(ImagesDeReferenceTest, chartsFillsAndThumbnailsLookAsTheyDid) {
    EXPECT_TRUE(ressemble(*prise(tarte()), "tarte"));
    EXPECT_TRUE(ressemble(*prise(histogramme(YES)), "histogramme"));
    EXPECT_TRUE(ressemble(*prise(histogramme(NO), 2), "histogramme-pourcentages-2x"));
    EXPECT_TRUE(ressemble(*remplissages()->picture(1), "remplissages"));
    const Ref<NSImage> vignette = VignetteVisuel::donneImageAvecDonnees_etRectInteret(
        photo({72, 54})->PNGRepresentation(), {{0.5, 0.2}, {0.3, 0.4}});
    EXPECT_TRUE(ressemble(*vignette->picture(1), "vignette"));
}

TEST_F(ImagesDeReferenceTest, anotherPictureIsTold) {
    const auto changee = [&](const std::function<void(KCTarte&)>& change) {
        const Ref<KCTarte> t = tarte();
        change(*t);
        return ecart(*prise(tarte()), *prise(t));
    };
    EXPECT_EQ(changee([](KCTarte&) {}), 0);
    struct {
        const char* quoi;
        std::function<void(KCTarte&)> change;
    } const autres[] = {
        {"another letter", [](KCTarte& t) { t.pretePointe(0)->setChaine(u"Nons"_ns); }},
        {"another digit", [](KCTarte& t) { t.setValeur_deLaPointe(27, 0); }},
        {"a slice halfway back", [](KCTarte& t) { t.pretePointe(2)->setPourcentageExtraction(0.5F); }},
        {"a colour a little paler", [&](KCTarte& t) { t.pretePointe(1)->setCouleur(teinte(0.33, 0.65, 0.36)); }},
        {"another order", [](KCTarte& t) { t.pointes()->exchangeObjectAtIndex_withObjectAtIndex(0, 2); }},
    };
    for (const auto& a : autres)
        EXPECT_GT(changee(a.change), kEcartMax) << a.quoi;
}

} // namespace

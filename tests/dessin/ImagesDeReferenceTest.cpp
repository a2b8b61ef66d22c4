// What charts and images look like as a whole: what single operations, tested elsewhere, do not tell.
#include "ImageReference.h"
#include "Photo.h"
#include "appkit/AppFixture.h"

#include <functional>

#include <libvue/charts/KCHistogramme.h>
#include <libvue/charts/KCPointeDeTarte.h>
#include <libvue/charts/KCTarte.h>
#include <libvue/images/NSBezierPathAMShading.h>
#include <libvue/images/NSBezierPathArrondi.h>
#include <libvue/images/VignetteVisuel.h>
#include <libvue/platform/appkit/NSViewCapture.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSShadow.h>

using namespace libvue;
using namespace libvue::test;

namespace {

/// White paper, with a view or a drawing on it.
class Feuille : public NSView {
public:
    static void describe(ClassDescription<Feuille, NSView>&) {}
    Feuille(NSSize taille, std::function<void()> dessin) : NSView({NSZeroPoint, taille}), dessin_(std::move(dessin)) {}
    void drawRect(const NSRect&) override {
        NSColor::whiteColor()->set();
        NSRectFill(bounds());
        if (dessin_) dessin_();
    }

private:
    std::function<void()> dessin_;
};

using Image = std::shared_ptr<backend::Picture>;

Image prise(NSView* feuille, CGFloat echelle) {
    const Echelle deLEcran(echelle);
    const Ref<NSBitmapImageRep> pixels = bitmapImageRepForCachingDisplayInRect(feuille, feuille->bounds());
    cacheDisplayInRect_toBitmapImageRep(feuille, feuille->bounds(), pixels);
    return pixels->picture(echelle);
}
Image surFeuille(NSView* vue, CGFloat echelle = 1) {
    const Ref<Feuille> feuille = make<Feuille>(vue->frame().size, nullptr);
    feuille->addSubview(vue);
    return prise(feuille, echelle);
}
Image surFeuille(const Ref<NSImage>& image) {
    const Ref<Feuille> feuille = make<Feuille>(image->size(), [image] {
        image->drawAtPoint_fromRect_operation_fraction(NSZeroPoint, NSZeroRect, NSCompositeSourceOver, 1);
    });
    return prise(feuille, 1);
}

/// The same picture smoothed in another way: the mean of `fois` times as many pixels each way.
Image reduite(const backend::Picture& grande, int fois) {
    const int large = grande.pixelWidth() / fois, haute = grande.pixelHeight() / fois;
    Pixels petite(large, haute);
    for (int y = 0; y < haute; ++y)
        for (int x = 0; x < large; ++x) {
            backend::Color somme{0, 0, 0, 1};
            for (int i = 0; i < fois * fois; ++i) {
                const backend::Color c = grande.pixel(x * fois + i % fois, y * fois + i / fois);
                somme.red += c.red / (fois * fois);
                somme.green += c.green / (fois * fois);
                somme.blue += c.blue / (fois * fois);
            }
            NSColor::colorWithDeviceRed_green_blue_alpha(somme.red, somme.green, somme.blue, 1)->set();
            NSRectFill({{static_cast<CGFloat>(x), static_cast<CGFloat>(haute - 1 - y)}, {1, 1}});
        }
    return petite.picture;
}

struct Part {
    Ref<NSString> nom;
    NSInteger valeur;
    NSColor* couleur;
};

Ref<NSColor> teinte(CGFloat r, CGFloat v, CGFloat b) { return NSColor::colorWithSRGBRed_green_blue_alpha(r, v, b, 1); }

struct ImagesDeReferenceTest : AppFixture {
    const Ref<NSColor> bleu = teinte(0.17, 0.39, 0.69), vert = teinte(0.27, 0.59, 0.30),
                       ocre = teinte(0.86, 0.51, 0.14), pale = teinte(0.72, 0.82, 0.93);

    [[nodiscard]] Ref<KCTarte> tarte(NSUInteger etiquette = KCPointeDeTarteEtiquetteChaineEtPourcentage) const {
        Ref<KCTarte> t = make<KCTarte>(NSRect{{0, 0}, {104, 104}});
        const Part parts[] = {{u"Noms"_ns, 26, bleu}, {u"Verbes"_ns, 40, vert}, {u"Été"_ns, 18, ocre}};
        for (const Part& part : parts) {
            const Ref<KCPointeDeTarte> p = make<KCPointeDeTarte>();
            p->setValeur(part.valeur);
            p->setCouleur(part.couleur);
            p->setChaine(part.nom);
            p->setEtiquette(etiquette);
            t->ajoutePointe(p);
        }
        t->pretePointe(2)->setPourcentageExtraction(1);
        return t;
    }
    [[nodiscard]] Ref<KCHistogramme> histogramme(BOOL absolues) const {
        Ref<KCHistogramme> h = make<KCHistogramme>(NSRect{{0, 0}, {150, 84}});
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
        Ref<NSImage> image = make<NSImage>(NSSize{124, 44});
        image->lockFocus();
        bilinearGradientFillWithOuterColor_innerColor(bezierPathWithRoundedRect_radius({{2, 2}, {56, 40}}, 9), bleu,
                                                      ocre);
        bilinearGradientFillWithOuterColor_innerColor_angle(NSBezierPath::bezierPathWithRect({{66, 2}, {56, 40}}), bleu,
                                                            ocre, pi / 5);
        image->unlockFocus();
        return image;
    }
};

TEST_F(ImagesDeReferenceTest, aPieWithItsLabelsAndASliceOut) { EXPECT_TRUE(ressemble(*surFeuille(tarte()), "tarte")); }

TEST_F(ImagesDeReferenceTest, aHistogramOfValuesAndOneOfPercentages) {
    EXPECT_TRUE(ressemble(*surFeuille(histogramme(YES)), "histogramme"));
    EXPECT_TRUE(ressemble(*surFeuille(histogramme(NO), 2), "histogramme-pourcentages-2x"));
}

TEST_F(ImagesDeReferenceTest, mirroredFillsUprightAndOblique) {
    EXPECT_TRUE(ressemble(*surFeuille(remplissages()), "remplissages"));
}

TEST_F(ImagesDeReferenceTest, aThumbnailWithItsVeil) {
    const Ref<NSImage> vignette = VignetteVisuel::donneImageAvecDonnees_etRectInteret(
        photo({72, 54})->PNGRepresentation(), {{0.5, 0.2}, {0.3, 0.4}});
    EXPECT_TRUE(ressemble(*surFeuille(vignette), "vignette"));
}

TEST_F(ImagesDeReferenceTest, otherSmoothingPassesAndAnotherPictureDoesNot) {
    const auto changee = [&](const std::function<void(KCTarte&)>& change) {
        const Ref<KCTarte> t = tarte();
        change(*t);
        return ecart(*surFeuille(tarte()), *surFeuille(t));
    };
    EXPECT_EQ(changee([](KCTarte&) {}), 0);
    for (const int fois : {3, 4})
        EXPECT_LT(ecart(*surFeuille(tarte(KCPointeDeTarteEtiquetteAucune)),
                        *reduite(*surFeuille(tarte(KCPointeDeTarteEtiquetteAucune), fois), fois)),
                  kEcartMax);
    struct {
        const char* quoi;
        std::function<void(KCTarte&)> change;
    } const autres[] = {
        {"another letter", [](KCTarte& t) { t.pretePointe(0)->setChaine(u"Nons"_ns); }},
        {"another digit", [](KCTarte& t) { t.setValeur_deLaPointe(27, 0); }},
        {"a slice halfway back", [](KCTarte& t) { t.pretePointe(2)->setPourcentageExtraction(0.5F); }},
        {"a colour a little paler", [&](KCTarte& t) { t.pretePointe(1)->setCouleur(teinte(0.33, 0.65, 0.36)); }},
        {"two colours exchanged",
         [&](KCTarte& t) {
             t.pretePointe(0)->setCouleur(vert);
             t.pretePointe(1)->setCouleur(bleu);
         }},
        {"another order", [](KCTarte& t) { t.pointes()->exchangeObjectAtIndex_withObjectAtIndex(0, 2); }},
    };
    for (const auto& a : autres)
        EXPECT_GT(changee(a.change), kEcartMax) << a.quoi;
}

} // namespace

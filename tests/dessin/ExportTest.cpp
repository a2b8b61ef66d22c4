#include <cmath>

#include "Photo.h"
#include "charts/Graphiques.h"
#include <support/TextePDF.h>

#include <libvue/images/NSBezierPathAMShading.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/appkit/NSViewCapture.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSShadow.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/NSTextAttributes.h>

using namespace libvue;
using namespace libvue::test;

namespace {

/// A chart's ingredients: a gradient, a fill, texts, and a view below with a text of its own.
class Graphique : public NSView {
public:
    static void describe(ClassDescription<Graphique, NSView>&) {}
    explicit Graphique(BOOL retournee) : NSView({{5, 7}, {200, 120}}), retournee_(retournee) {
        const auto champ = NSTextField::labelWithString(u"Fréquence des lettres"_ns);
        champ->setFrame({{20, 90}, {170, 20}});
        addSubview(champ);
    }
    [[nodiscard]] BOOL isFlipped() const override { return retournee_; }
    void drawRect(const NSRect&) override {
        NSColor::redColor()->set();
        NSRectFill({{0, 0}, {10, 120}});
        linearGradientFillWithStartColor_endColor(NSBezierPath::bezierPathWithRect({{20, 10}, {60, 30}}),
                                                  NSColor::blueColor(), NSColor::greenColor());
        drawAtPoint_withAttributes(u"Voyelles : 45 %"_ns, {20, 50}, nullptr);
        const Ref<NSShadow> ombre = make<NSShadow>();
        ombre->setShadowColor(NSColor::blackColor());
        ombre->setShadowBlurRadius(2);
        ombre->setShadowOffset({0, -1});
        drawAtPoint_withAttributes(u"Avec ombre"_ns, {120, 50},
                                   NSDictionary::dictionaryWithObject_forKey(ombre, NSShadowAttributeName.get()));
        const GraphicsStateScope etat;
        ombre->set();
        drawAtPoint_withAttributes(u"Dans l’ombre"_ns, {120, 20}, nullptr);
    }

private:
    BOOL retournee_;
};

/// A word in the upper right corner, over a colour that a page cannot compose.
class Affiche : public NSView {
public:
    static void describe(ClassDescription<Affiche, NSView>&) {}
    using NSView::NSView;
    void drawRect(const NSRect&) override {
        NSColor::redColor()->set();
        NSRectFillUsingOperation({{2290, 3340}, {90, 25}}, NSCompositePlusDarker);
        drawAtPoint_withAttributes(u"Coin"_ns, {2300, 3350}, nullptr);
    }
};

struct ExportTest : AppFixture {
    static std::vector<MotPDF> motsDe(NSView* vue) {
        const Ref<NSData> pdf = vue->dataWithPDFInsideRect(vue->bounds());
        return pdf ? motsDuPDF(pdf->view()) : std::vector<MotPDF>();
    }
    static Ref<NSBitmapImageRep> pixelsDe(NSView* vue, const NSRect& partie) {
        Ref<NSBitmapImageRep> pixels = bitmapImageRepForCachingDisplayInRect(vue, partie);
        cacheDisplayInRect_toBitmapImageRep(vue, partie, pixels);
        return pixels;
    }
    static std::string en(NSBitmapImageRep* pixels, int x, int y) { return Pixels::hex(*pixels->picture(1), x, y); }
};

TEST_F(ExportTest, theTextOfAPageStaysText) {
    for (const BOOL retournee : {NO, YES}) {
        const auto mots = motsDe(make<Graphique>(retournee));
        // Plain, with a shadow of its own, in the context's shadow, and of a view below.
        for (const char* attendu : {"Voyelles", "Avec", "Dans", "Fréquence"})
            EXPECT_EQ(pagesDuMot(mots, attendu), std::vector<int>{1}) << attendu;
    }
    const Ref<KCTarte> tarte = make<KCTarte>(NSRect{{0, 0}, {300, 300}});
    for (const NSInteger v : {3, 5})
        tarte->ajoutePointe(pointe(v, NSColor::blueColor(), v == 3 ? u"Été"_ns : u"Hiver"_ns,
                                   KCPointeDeTarteEtiquetteChaineEtPourcentage));
    tarte->pretePointe(0)->setPourcentageExtraction(1);
    const auto mots = motsDe(tarte);
    for (const char* attendu : {"Été", "37,5", "Hiver", "62,5"})
        EXPECT_EQ(pagesDuMot(mots, attendu), std::vector<int>{1}) << attendu;
}

TEST_F(ExportTest, aLargeSheetIsExportedWhole) {
    // The largest usual paper, with what is taken from pixels in the far corner.
    const Ref<Affiche> vue = make<Affiche>(NSRect{{0, 0}, {2384, 3370}});
    const Ref<NSData> pdf = vue->dataWithPDFInsideRect(vue->bounds());
    const auto mots = motsDuPDF(pdf->view());
    ASSERT_EQ(mots.size(), 1u);
    EXPECT_NEAR(mots[0].x, 2300, 2);
    EXPECT_NEAR(mots[0].y + mots[0].hauteur, 20, 5);
}

TEST_F(ExportTest, aPartIsDrawnAtTheOrigin) {
    const Ref<Graphique> vue = make<Graphique>(NO);
    const auto pixels = pixelsDe(vue, {{5, 0}, {20, 40}});
    EXPECT_EQ(pixels->pixelsWide(), 20);
    EXPECT_EQ(pixels->pixelsHigh(), 40);
    EXPECT_EQ(en(pixels, 0, 39), "ff0000ff");
    EXPECT_EQ(en(pixels, 4, 0), "ff0000ff");
    EXPECT_EQ(en(pixels, 5, 20), "00000000") << "nobody draws there";
    EXPECT_GT(pixels->picture(1)->pixel(16, 29).blue, pixels->picture(1)->pixel(16, 1).blue) << "blue is below";
    EXPECT_EQ(en(NSBitmapImageRep::initWithData(pixels->PNGRepresentation()), 0, 39), "ff0000ff");

    const Ref<Graphique> retournee = make<Graphique>(YES);
    const auto haut = pixelsDe(retournee, {{15, 5}, {20, 20}});
    EXPECT_EQ(en(haut, 10, 2), "00000000");
    EXPECT_EQ(en(haut, 10, 6).substr(6), "ff") << "5 points below the top edge";
    retournee->setBoundsOrigin({-10, 0});
    const auto decalee = pixelsDe(retournee, retournee->bounds());
    EXPECT_EQ(en(decalee, 5, 5), "00000000");
    EXPECT_EQ(en(decalee, 15, 5), "ff0000ff");
}

TEST_F(ExportTest, whatCannotBeCapturedIsRefused) {
    const Ref<Graphique> vue = make<Graphique>(NO);
    EXPECT_EQ(bitmapImageRepForCachingDisplayInRect(vue, {{0, 0}, {30000, 30000}}), nullptr);
    EXPECT_EQ(bitmapImageRepForCachingDisplayInRect(vue, {{0, 0}, {0, 10}}), nullptr);
    EXPECT_EQ(bitmapImageRepForCachingDisplayInRect(nullptr, {{0, 0}, {10, 10}}), nullptr);
    cacheDisplayInRect_toBitmapImageRep(vue, vue->bounds(), nullptr);
    const auto pixels = bitmapImageRepForCachingDisplayInRect(vue, {{0, 0}, {10, 10}});
    cacheDisplayInRect_toBitmapImageRep(nullptr, vue->bounds(), pixels);
    cacheDisplayInRect_toBitmapImageRep(vue, {{0, 0}, {std::nan(""), 10}}, pixels);
    EXPECT_EQ(en(pixels, 0, 0), "00000000");
    const Echelle echelle(2);
    EXPECT_EQ(bitmapImageRepForCachingDisplayInRect(vue, {{0, 0}, {10, 10}})->pixelsWide(), 20);
}

} // namespace

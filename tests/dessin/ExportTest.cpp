#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>

#include <unistd.h>

#include "Photo.h"
#include "appkit/AppFixture.h"

#include <libvue/charts/KCPointeDeTarte.h>
#include <libvue/charts/KCTarte.h>
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

/// What pdftotext reads in the bytes.
std::string textesDuPDF(const NSData* pdf) {
    const auto fichier =
        std::filesystem::temp_directory_path() / ("libvue-export-" + std::to_string(::getpid()) + ".pdf");
    EXPECT_TRUE(pdf->writeToFile_atomically(NSString::fromUTF8(fichier.string()), NO));
    std::string texte;
    if (FILE* sortie = ::popen(("pdftotext -layout '" + fichier.string() + "' -").c_str(), "r")) {
        std::array<char, 4096> bloc;
        for (std::size_t lus; (lus = std::fread(bloc.data(), 1, bloc.size(), sortie)) > 0;)
            texte.append(bloc.data(), lus);
        EXPECT_EQ(::pclose(sortie), 0) << "pdftotext is needed";
    }
    std::filesystem::remove(fichier);
    return texte;
}

struct ExportTest : AppFixture {};

TEST_F(ExportTest, theTextOfAPageStaysText) {
    for (const BOOL retournee : {NO, YES}) {
        const Ref<Graphique> vue = make<Graphique>(retournee);
        const Ref<NSData> pdf = vue->dataWithPDFInsideRect(vue->bounds());
        ASSERT_NE(pdf, nullptr);
        EXPECT_EQ(std::string(static_cast<const char*>(pdf->bytes()), 5), "%PDF-");
        const std::string texte = textesDuPDF(pdf);
        for (const char* attendu : {"Voyelles : 45 %", "Avec ombre", "Dans l’ombre", "Fréquence des lettres"})
            EXPECT_NE(texte.find(attendu), std::string::npos) << attendu << " in " << texte;
    }
}

TEST_F(ExportTest, theLabelsOfAPieStayText) {
    const Ref<KCTarte> tarte = make<KCTarte>(NSRect{{0, 0}, {300, 300}});
    for (const NSInteger v : {3, 5}) {
        const Ref<KCPointeDeTarte> p = make<KCPointeDeTarte>();
        p->setValeur(v);
        p->setCouleur(NSColor::blueColor());
        p->setChaine(v == 3 ? u"Été"_ns : u"Hiver"_ns);
        p->setEtiquette(KCPointeDeTarteEtiquetteChaineEtPourcentage);
        p->setPourcentageExtraction(v == 3);
        tarte->ajoutePointe(p);
    }
    const std::string texte = textesDuPDF(tarte->dataWithPDFInsideRect(tarte->bounds()));
    for (const char* attendu : {"Été", "37,5 %", "Hiver", "62,5 %"})
        EXPECT_NE(texte.find(attendu), std::string::npos) << attendu << " in " << texte;
}

TEST_F(ExportTest, aPartIsDrawnAtTheOrigin) {
    const Ref<Graphique> vue = make<Graphique>(NO);
    const Ref<NSBitmapImageRep> pixels = bitmapImageRepForCachingDisplayInRect(vue, {{5, 0}, {20, 40}});
    ASSERT_NE(pixels, nullptr);
    EXPECT_EQ(pixels->pixelsWide(), 20);
    EXPECT_EQ(pixels->pixelsHigh(), 40);
    cacheDisplayInRect_toBitmapImageRep(vue, {{5, 0}, {20, 40}}, pixels);
    const auto en = [&](int x, int y) { return Pixels::hex(*pixels->picture(1), x, y); };
    EXPECT_EQ(en(0, 39), "ff0000ff");
    EXPECT_EQ(en(4, 0), "ff0000ff");
    EXPECT_EQ(en(5, 20), "00000000") << "nobody draws there";
    EXPECT_EQ(en(15, 0).substr(0, 2), "00") << "the gradient";
    EXPECT_EQ(en(15, 0).substr(6), "ff");
    EXPECT_GT(pixels->picture(1)->pixel(16, 29).blue, pixels->picture(1)->pixel(16, 1).blue) << "blue is below";

    const Ref<NSBitmapImageRep> relu = NSBitmapImageRep::initWithData(pixels->PNGRepresentation());
    ASSERT_NE(relu, nullptr);
    EXPECT_EQ(Pixels::hex(*relu->picture(1), 0, 39), "ff0000ff");
}

TEST_F(ExportTest, aFlippedViewAndAnotherOrigin) {
    const Ref<Graphique> vue = make<Graphique>(YES);
    const Ref<NSBitmapImageRep> pixels = bitmapImageRepForCachingDisplayInRect(vue, {{15, 5}, {20, 20}});
    cacheDisplayInRect_toBitmapImageRep(vue, {{15, 5}, {20, 20}}, pixels);
    EXPECT_EQ(Pixels::hex(*pixels->picture(1), 10, 2), "00000000");
    EXPECT_EQ(Pixels::hex(*pixels->picture(1), 10, 6).substr(6), "ff") << "5 points below the top edge";

    vue->setBoundsOrigin({-10, 0});
    const Ref<NSBitmapImageRep> decalee = bitmapImageRepForCachingDisplayInRect(vue, vue->bounds());
    cacheDisplayInRect_toBitmapImageRep(vue, vue->bounds(), decalee);
    EXPECT_EQ(Pixels::hex(*decalee->picture(1), 5, 5), "00000000");
    EXPECT_EQ(Pixels::hex(*decalee->picture(1), 15, 5), "ff0000ff");
}

TEST_F(ExportTest, whatCannotBeCapturedIsRefused) {
    const Ref<Graphique> vue = make<Graphique>(NO);
    EXPECT_EQ(bitmapImageRepForCachingDisplayInRect(vue, {{0, 0}, {30000, 30000}}), nullptr);
    EXPECT_EQ(bitmapImageRepForCachingDisplayInRect(vue, {{0, 0}, {0, 10}}), nullptr);
    EXPECT_EQ(bitmapImageRepForCachingDisplayInRect(nullptr, {{0, 0}, {10, 10}}), nullptr);
    cacheDisplayInRect_toBitmapImageRep(vue, vue->bounds(), nullptr);
    const Ref<NSBitmapImageRep> pixels = bitmapImageRepForCachingDisplayInRect(vue, {{0, 0}, {10, 10}});
    cacheDisplayInRect_toBitmapImageRep(nullptr, vue->bounds(), pixels);
    cacheDisplayInRect_toBitmapImageRep(vue, {{0, 0}, {std::nan(""), 10}}, pixels);
    EXPECT_EQ(Pixels::hex(*pixels->picture(1), 0, 0), "00000000");
    const Echelle echelle(2);
    EXPECT_EQ(bitmapImageRepForCachingDisplayInRect(vue, {{0, 0}, {10, 10}})->pixelsWide(), 20);
}

} // namespace

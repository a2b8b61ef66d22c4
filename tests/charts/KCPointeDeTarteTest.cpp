#include "Graphiques.h"

#include <cmath>

using namespace libvue;
using namespace libvue::test;

namespace {

constexpr NSPoint kCentre{100, 100};
constexpr CGFloat kRayon = 80;
constexpr NSRect kCadre{{0, 0}, {200, 200}};

struct KCPointeDeTarteTest : MemoryFixture {
    /// What the label says; empty where none is drawn.
    static std::string texte(KCPointeDeTarte* p, CGFloat depart, CGFloat fin) {
        Enregistrement e({200, 200});
        p->drawEtiquetteAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin_avecCadre(kCentre, kRayon, depart, fin,
                                                                                        kCadre);
        const auto textes = e.canvas.operations(Kind::text);
        return textes.empty() ? std::string() : NSString::from(textes.at(0).text)->utf8();
    }
};

TEST_F(KCPointeDeTarteTest, labelsSayWhatTheirKindTells) {
    const auto p = pointe(12345, NSColor::redColor(), u"Été"_ns);
    struct {
        NSUInteger sorte;
        NSInteger valeur;
        CGFloat depart, fin;
        const char* attendu;
    } const lignes[] = {
        {0, 5, 0, 90, ""},
        {1, 5, 0, 180, "50\u00A0%"}, // the angles count, not the value
        {1, 5, 10, 55.5, "12,6\u00A0%"},
        {1, 5, 90, 0, "-25\u00A0%"},
        {2, 5, 0, 90, "Été"},
        {3, 5, 0, 90, "Été\n25\u00A0%"},
        {4, 12345, 0, 90, "12\u00A0345"},
        {4, (NSInteger{1} << 32) + 5, 0, 90, "5"}, // the low 32 bits
        {4, (NSInteger{1} << 31), 0, 90, "-2\u00A0147\u00A0483\u00A0648"},
        {4, NSNotFound, 0, 90, "-1"},
        {5, -7, 0, 90, "Été\n-7"},
        {6, 5, 0, 90, ""},
        {~NSUInteger{0}, 5, 0, 90, ""},
    };
    for (const auto& l : lignes) {
        p->setEtiquette(l.sorte);
        p->setValeur(l.valeur);
        EXPECT_EQ(texte(p, l.depart, l.fin), l.attendu) << l.sorte << " " << l.valeur;
    }
}

TEST_F(KCPointeDeTarteTest, aSweepUnderATenthDrawsNothing) {
    const auto p = pointe(1, NSColor::redColor(), u"x"_ns, KCPointeDeTarteEtiquetteChaine);
    const auto attribue = NSAttributedString::initWithString(u"y"_ns);
    struct {
        CGFloat depart, fin;
        bool dessine;
    } const lignes[] = {{0, 0, false},  {0, 0.05, false}, {0, -0.05, false},  {0, 0.1, true}, {0, -0.1, true},
                        {90, 45, true}, {350, 370, true}, {5, 5.0999, false}, {0, 720, true}, {0, std::nan(""), true}};
    for (const auto& l : lignes) {
        Enregistrement e({200, 200});
        p->drawEtiquetteAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin_avecCadre(kCentre, kRayon, l.depart,
                                                                                        l.fin, kCadre);
        p->drawAttributedString_avecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin_avecCadre(
            attribue, kCentre, kRayon, l.depart, l.fin, kCadre);
        EXPECT_EQ(e.canvas.operations(Kind::text).size(), l.dessine ? 2u : 0u) << l.depart << " " << l.fin;
        p->drawAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin(kCentre, kRayon, l.depart, l.fin);
        EXPECT_EQ(e.canvas.operations(Kind::fill).size(), l.dessine ? 1u : 0u) << l.depart << " " << l.fin;
    }
}

TEST_F(KCPointeDeTarteTest, theBisectorIsHeldInSinglePrecision) {
    // Worked out with numbers of 32 bits; in double precision each line ends otherwise.
    struct {
        CGFloat depart, fin, distance, x, y;
    } const lignes[] = {
        {0, 90, 8, 5.6568541258578975, 5.65685437312686},
        {90, 180, 8, -5.656854283221035, 5.656854215763725},
        {0.1, 33.3, 100, 95.78224930854991, 28.736052571548377},
        {300, 361, 6.5, 5.6573127599638715, -3.200751839169973},
        {120.00001, 240.00002, 65, -64.99999999999655, -2.1179688341843304e-05},
        {10, 10, 8, 0, 0},
    };
    const auto p = pointe(1);
    for (const auto& l : lignes) {
        const NSSize o =
            p->offsetPourExtraireDeLaTarteAvecAngleDeDepart_avecAngleDeFin_avecDistance(l.depart, l.fin, l.distance);
        EXPECT_NEAR(o.width, l.x, 1e-13) << l.depart;
        EXPECT_NEAR(o.height, l.y, 1e-13) << l.depart;
    }
}

TEST_F(KCPointeDeTarteTest, bodyAndLabelTravelWithTheExtraction) {
    struct {
        float extraction;
        CGFloat pas, police;
    } const lignes[] = {{0, 0, 11}, {-1, 0, 9}, {0.5F, 4 * std::sqrt(0.5), 12}, {1, 8 * std::sqrt(0.5), 13}};
    const auto p = pointe(1, NSColor::greenColor(), u"x"_ns, KCPointeDeTarteEtiquetteChaine);
    for (const auto& l : lignes) {
        p->setPourcentageExtraction(l.extraction);
        Enregistrement e({200, 200});
        p->drawAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin(kCentre, kRayon, 0, 90);
        EXPECT_NEAR(e.last().path.points.at(0).x, 100 + l.pas, 1e-6);
        EXPECT_NEAR(e.last().path.points.at(0).y, 100 + l.pas, 1e-6);
        EXPECT_EQ(e.last().color, (backend::Color{0, 1, 0, 1}));
        p->drawEtiquetteAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin_avecCadre(kCentre, kRayon, 0, 90, kCadre);
        const auto& texte = e.last();
        EXPECT_NEAR(NSMidX(texte.rect), 100 + 52 * std::sqrt(0.5) + l.pas, 1e-4);
        EXPECT_NEAR(NSMidY(texte.rect), 100 + 52 * std::sqrt(0.5) + l.pas, 1e-4);
        ASSERT_EQ(texte.runs.size(), 1u);
        EXPECT_EQ(texte.runs[0].font->pointSize(), l.police);
        EXPECT_EQ(texte.runs[0].color, (backend::Color{1, 1, 1, 1}));
        EXPECT_EQ(texte.runs[0].shadow, (backend::Shadow{{0, -1}, 2, {0, 0, 0, 1}}));
    }
}

TEST_F(KCPointeDeTarteTest, labelsStayInsideTheFrame) {
    const auto p = pointe(1, NSColor::redColor(), u"Une légende bien trop longue pour son cadre"_ns,
                          KCPointeDeTarteEtiquetteChaine);
    // The origin of the frame does not count.
    for (const NSPoint origine : {NSPoint{0, 0}, NSPoint{500, -300}}) {
        Enregistrement e({200, 200});
        p->drawEtiquetteAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin_avecCadre({30, 20}, 15, 0, 90,
                                                                                        {origine, {60, 40}});
        ASSERT_EQ(e.canvas.operations(Kind::text).size(), 1u);
        EXPECT_EQ(e.last().rect.origin.x, 0);
        EXPECT_GT(e.last().rect.size.width, 0);
        EXPECT_LE(e.last().rect.size.width, 60);
    }
    p->setChaine(u"ab"_ns);
    struct {
        CGFloat depart, fin;
        bool droite, haut;
    } const coins[] = {{0, 90, true, true}, {90, 180, false, true}, {180, 270, false, false}, {270, 360, true, false}};
    for (const auto& c : coins) {
        Enregistrement e({200, 200});
        // An anchor far out of the frame.
        p->drawEtiquetteAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin_avecCadre({30, 20}, 500, c.depart, c.fin,
                                                                                        {{0, 0}, {60, 40}});
        const NSRect r = e.last().rect;
        EXPECT_NEAR(c.droite ? NSMaxX(r) : NSMinX(r), c.droite ? 60 : 0, 1e-6);
        EXPECT_NEAR(c.haut ? NSMaxY(r) : NSMinY(r), c.haut ? 40 : 0, 1e-6);
    }
}

TEST_F(KCPointeDeTarteTest, whatIsMissingIsTheCallersFaultAndNoCrash) {
    const auto p = make<KCPointeDeTarte>();
    Enregistrement e({200, 200});
    p->drawAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin(kCentre, kRayon, 0, 90);
    EXPECT_EQ(e.canvas.operations(Kind::fill).size(), 1u);
    p->setEtiquette(KCPointeDeTarteEtiquetteChaine);
    EXPECT_EQ(raised([&] {
                  p->drawEtiquetteAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin_avecCadre(kCentre, kRayon, 0,
                                                                                                  90, kCadre);
              }),
              "NSInvalidArgumentException");
    EXPECT_EQ(e.canvas.operations(Kind::text).size(), 0u);
}

} // namespace

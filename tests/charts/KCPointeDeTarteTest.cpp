#include "Graphiques.h"

#include <cmath>

using namespace libvue;
using namespace libvue::test;

namespace {

constexpr NSPoint kCentre{100, 100};
constexpr CGFloat kRayon = 80;

using Operations = std::vector<backend::RecordingCanvas::Operation>;

struct KCPointeDeTarteTest : MemoryFixture {
    const Ref<KCPointeDeTarte> p = pointe(1, NSColor::greenColor(), u"Été"_ns, KCPointeDeTarteEtiquetteChaine);

    [[nodiscard]] Operations corps(CGFloat depart, CGFloat fin) const {
        Enregistrement e;
        p->drawAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin(kCentre, kRayon, depart, fin);
        return e.canvas.operations();
    }
    [[nodiscard]] Operations etiquette(CGFloat depart, CGFloat fin, NSPoint centre = kCentre, CGFloat rayon = kRayon,
                                       const NSRect& cadre = {{0, 0}, {200, 200}}) const {
        Enregistrement e;
        p->drawEtiquetteAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin_avecCadre(centre, rayon, depart, fin,
                                                                                        cadre);
        return e.canvas.operations();
    }
};

TEST_F(KCPointeDeTarteTest, labelsSayWhatTheirKindTells) {
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
        {5, -7, 0, 90, "Été\n-7"},
        {6, 5, 0, 90, ""},
        {~NSUInteger{0}, 5, 0, 90, ""},
    };
    for (const auto& l : lignes) {
        p->setEtiquette(l.sorte);
        p->setValeur(l.valeur);
        const auto textes = etiquette(l.depart, l.fin);
        EXPECT_EQ(textes.empty() ? "" : NSString::from(textes[0].text)->utf8(), l.attendu) << l.sorte;
    }
}

TEST_F(KCPointeDeTarteTest, aSweepUnderATenthDrawsNothing) {
    const auto attribue = NSAttributedString::initWithString(u"y"_ns);
    struct {
        CGFloat depart, fin;
        std::size_t dessins;
    } const lignes[] = {{0, 0, 0},   {0, 0.05, 0},  {0, -0.05, 0},  {0, 0.1, 1}, {0, -0.1, 1},
                        {90, 45, 1}, {350, 370, 1}, {5, 5.0999, 0}, {0, 720, 1}, {0, std::nan(""), 1}};
    for (const auto& l : lignes) {
        SCOPED_TRACE(l.fin);
        EXPECT_EQ(corps(l.depart, l.fin).size(), l.dessins);
        EXPECT_EQ(etiquette(l.depart, l.fin).size(), l.dessins);
        Enregistrement e;
        p->drawAttributedString_avecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin_avecCadre(
            attribue, kCentre, kRayon, l.depart, l.fin, {{0, 0}, {200, 200}});
        EXPECT_EQ(e.canvas.operations().size(), l.dessins);
    }
}

TEST_F(KCPointeDeTarteTest, theBisectorIsHeldInSinglePrecision) {
    // Worked out with numbers of 32 bits; in double precision each line ends otherwise.
    struct {
        CGFloat depart, fin, distance, x, y;
    } const lignes[] = {
        {0, 90, 8, 5.6568541258578975, 5.65685437312686},
        {0.1, 33.3, 100, 95.78224930854991, 28.736052571548377},
        {300, 361, 6.5, 5.6573127599638715, -3.200751839169973},
        {120.00001, 240.00002, 65, -64.99999999999655, -2.1179688341843304e-05},
        {10, 10, 8, 0, 0},
    };
    for (const auto& l : lignes) {
        const NSSize o =
            p->offsetPourExtraireDeLaTarteAvecAngleDeDepart_avecAngleDeFin_avecDistance(l.depart, l.fin, l.distance);
        EXPECT_NEAR(o.width, l.x, 1e-13) << l.depart;
        EXPECT_NEAR(o.height, l.y, 1e-13) << l.depart;
    }
}

TEST_F(KCPointeDeTarteTest, bodyAndLabelTravelWithTheExtraction) {
    const CGFloat diagonale = std::sqrt(0.5);
    struct {
        float extraction;
        CGFloat pas, police;
    } const lignes[] = {{0, 0, 11}, {-1, 0, 11}, {0.5F, 4 * diagonale, 12}, {1, 8 * diagonale, 13}};
    for (const auto& l : lignes) {
        SCOPED_TRACE(l.extraction);
        p->setPourcentageExtraction(l.extraction);
        const auto forme = corps(0, 90).at(0);
        EXPECT_NEAR(forme.path.points.at(0).x, 100 + l.pas, 1e-6);
        EXPECT_NEAR(forme.path.points.at(0).y, 100 + l.pas, 1e-6);
        EXPECT_EQ(forme.color, (backend::Color{0, 1, 0, 1}));
        const auto texte = etiquette(0, 90).at(0);
        EXPECT_NEAR(NSMidX(texte.rect), 100 + 52 * diagonale + l.pas, 1e-4);
        EXPECT_NEAR(NSMidY(texte.rect), 100 + 52 * diagonale + l.pas, 1e-4);
        EXPECT_EQ(texte.runs.at(0).font->pointSize(), l.police);
        EXPECT_EQ(texte.runs.at(0).color, (backend::Color{1, 1, 1, 1}));
        EXPECT_EQ(texte.runs.at(0).shadow, (backend::Shadow{{0, -1}, 2, {0, 0, 0, 1}}));
    }
}

TEST_F(KCPointeDeTarteTest, labelsStayInsideTheFrame) {
    p->setChaine(u"ab"_ns);
    struct {
        CGFloat depart, fin;
        bool droite, haut;
    } const coins[] = {{0, 90, true, true}, {90, 180, false, true}, {180, 270, false, false}, {270, 360, true, false}};
    for (const auto& c : coins) {
        // The anchor lies far out of the frame, whose own origin does not count.
        const NSRect r = etiquette(c.depart, c.fin, {30, 20}, 500, {{500, -300}, {60, 40}}).at(0).rect;
        EXPECT_NEAR(c.droite ? NSMaxX(r) : NSMinX(r), c.droite ? 60 : 0, 1e-6);
        EXPECT_NEAR(c.haut ? NSMaxY(r) : NSMinY(r), c.haut ? 40 : 0, 1e-6);
    }
    p->setChaine(u"Une légende bien trop longue pour son cadre"_ns);
    const NSRect large = etiquette(0, 90, {30, 20}, 15, {{0, 0}, {60, 40}}).at(0).rect;
    EXPECT_EQ(large.origin.x, 0);
    EXPECT_LE(large.size.width, 60);
}

TEST_F(KCPointeDeTarteTest, whatIsMissingIsTheCallersFaultAndNoCrash) {
    p->setCouleur(nullptr);
    EXPECT_EQ(corps(0, 90).size(), 1u);
    p->setChaine(nullptr);
    EXPECT_EQ(raised([&] { (void)etiquette(0, 90); }), "NSInvalidArgumentException");
}

} // namespace

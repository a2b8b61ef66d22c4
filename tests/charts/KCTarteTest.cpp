#include "Graphiques.h"

#include <cmath>
#include <random>
#include <utility>

#include <libvue/charts/TableAccessible.h>
#include <libvue/platform/foundation/NSDictionary.h>

using namespace libvue;
using namespace libvue::test;

namespace {

/// Keeps the angles that it is drawn with.
class PointeTemoin : public KCPointeDeTarte {
public:
    static void describe(ClassDescription<PointeTemoin, KCPointeDeTarte>&) {}
    std::vector<double> fins;
    void drawAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin(NSPoint, CGFloat, CGFloat, CGFloat fin) override {
        fins.push_back(fin);
    }
};

/// The end of a slice, from that of the one before.
float finDe(const KCTarte& t, NSUInteger i, float depart) {
    return depart + static_cast<float>(t.pretePointe(i)->valeur()) / static_cast<float>(t.total()) * 360.0F;
}

/// The hit as the outlines alone give it.
NSInteger parLesContours(const KCTarte& t, NSPoint p) {
    float depart = 0;
    for (NSUInteger i = 0; i < t.pointes()->count(); ++i) {
        const float fin = finDe(t, i, depart);
        const auto contour = t.pretePointe(i)->pointeAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin(
            t.centre(), t.rayon(), static_cast<double>(depart), static_cast<double>(fin));
        if (contour->containsPoint(p)) return static_cast<NSInteger>(i);
        depart = fin;
    }
    return -1;
}

struct KCTarteTest : AppFixture {
    static std::vector<backend::RecordingCanvas::Operation> dessine(KCTarte* t) {
        Enregistrement e(t->bounds().size);
        t->drawRect(t->bounds());
        return e.canvas.operations();
    }
};

TEST_F(KCTarteTest, bodiesTwiceThenLabels) {
    const auto t = make<KCTarte>(NSRect{{0, 0}, {200, 120}});
    for (NSColor* c : {NSColor::redColor(), NSColor::blueColor()})
        t->ajoutePointe(pointe(1, c, u"s"_ns, KCPointeDeTarteEtiquetteChaine));
    const auto ops = dessine(t);
    ASSERT_EQ(ops.size(), 6u);
    const backend::Shadow ombre{{2, -2}, 5, {0, 0, 0, 0.6666666666666666}};
    for (std::size_t i = 0; i < 6; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(ops[i].kind, i < 4 ? Kind::fill : Kind::text);
        EXPECT_EQ(ops[i].shadow, i < 2 ? std::optional(ombre) : std::nullopt);
        EXPECT_EQ(ops[i].color, i >= 4  ? (backend::Color{1, 1, 1, 1})
                                : i % 2 ? (backend::Color{0, 0, 1, 1})
                                        : (backend::Color{1, 0, 0, 1}));
    }
    EXPECT_EQ(ops[0].path, ops[2].path);
    EXPECT_EQ(ops[0].path.points.at(0), (NSPoint{100, 60}));
    EXPECT_EQ(ops[0].path.points.at(1), (NSPoint{147, 60})); // the first starts at the right
}

TEST_F(KCTarteTest, withoutATotalItIsAGreyDisc) {
    for (const auto& valeurs : std::vector<std::vector<NSInteger>>{{}, {0, 0}, {5, -5}}) {
        const auto t = tarteDe(valeurs, {{0, 0}, {100, 200}});
        const auto ops = dessine(t);
        ASSERT_EQ(ops.size(), 2u);
        EXPECT_TRUE(ops[0].shadow.has_value());
        EXPECT_FALSE(ops[1].shadow.has_value());
        for (const auto& op : ops) {
            EXPECT_NEAR(op.color.red, 2.0 / 3, 1e-6);
            EXPECT_EQ(op.path.points.at(0), (NSPoint{87, 100}));
        }
        const auto w = fenetreDe(t);
        t->setSelectedIndex(NSNumber::numberWithInteger(-3)); // which a click beside the slices would make -1
        click(w, 60, 110);
        EXPECT_EQ(t->selectedIndex()->integerValue(), -3);
        w->close();
    }
}

TEST_F(KCTarteTest, anglesAreWalkedInSinglePrecision) {
    struct {
        std::vector<NSInteger> valeurs;
        std::vector<double> fins; ///< the last ones
    } const lignes[] = {
        {{7, 7, 7, 1}, {114.54545593261719, 229.09091186523438, 343.6363525390625, 360}},
        {{3, 0, 5, 11, 2, 9}, {36, 36, 96, 228, 252, 360}},
        // Nothing makes up for the rounding of the sum.
        {std::vector<NSInteger>(7, 1), {308.57147216796875, 360.00006103515625}},
        {std::vector<NSInteger>(1000, 1), {359.99615478515625}},
    };
    for (const auto& l : lignes) {
        const auto t = tarteDe({});
        for (const NSInteger v : l.valeurs) {
            const auto temoin = make<PointeTemoin>();
            temoin->setValeur(v);
            t->ajoutePointe(temoin);
        }
        (void)dessine(t);
        const std::size_t avant = l.valeurs.size() - l.fins.size();
        for (std::size_t i = 0; i < l.fins.size(); ++i)
            EXPECT_EQ(t->pointes()->at<PointeTemoin>(avant + i)->fins, std::vector<double>(2, l.fins[i])) << i;
    }
}

TEST_F(KCTarteTest, theListKeepsItsTotal) {
    const auto t = tarteDe({10, 20, 30});
    const Ref<KCPointeDeTarte> vingt = t->pretePointe(1);
    t->setValeur_deLaPointe(25, 1);
    EXPECT_EQ(t->total(), 65);
    t->ajoutePointe(vingt);
    EXPECT_EQ(t->total(), 90);
    t->enlevePointe(vingt); // both entries, one value
    EXPECT_EQ(t->total(), 65);
    EXPECT_EQ(t->pointes()->count(), 2u);
    t->enlevePointe(vingt);
    t->enlevePointe(nullptr);
    EXPECT_EQ(raised([&] { (void)t->pretePointe(2); }), "NSRangeException");
    EXPECT_EQ(raised([&] { t->setValeur_deLaPointe(1, 2); }), "NSRangeException");
    EXPECT_EQ(raised([&] { t->ajoutePointe(nullptr); }), "NSInvalidArgumentException");
    EXPECT_EQ(t->total(), 65);
    // A sum that leaves 64 bits wraps round, and comes back.
    const auto deborde = tarteDe({NSNotFound, NSNotFound});
    deborde->setValeur_deLaPointe(1, 0);
    deborde->setValeur_deLaPointe(2, 1);
    EXPECT_EQ(deborde->total(), 3);
}

TEST_F(KCTarteTest, changesAskForARedrawAndAPieStartsEmptyWithoutOne) {
    const auto t = tarteDe({1, 2});
    const auto w = fenetreDe(t);
    const std::pair<bool, std::function<void()>> cas[] = {
        {true, [&] { t->setValeur_deLaPointe(1, 0); }},
        {true, [&] { t->enlevePointe(t->pretePointe(0)); }},
        {true, [&] { t->ajoutePointe(pointe(4)); }},
        {false, [&] { t->enlevePointe(pointe(9)); }},
        {false, [&] { t->initTarte(); }},
    };
    for (const auto& [demande, change] : cas) {
        drain();
        change();
        EXPECT_EQ(t->needsDisplay(), demande) << (&change - &cas[0].second);
    }
    const auto lue = throughKeyedArchive(*tarteDe({1, 2}, {{5, 6}, {70, 80}}));
    for (const KCTarte* vide : {t.get(), lue.get()}) {
        ASSERT_TRUE(vide);
        EXPECT_EQ(vide->pointes()->count(), 0u);
        EXPECT_EQ(vide->total(), 0);
        EXPECT_EQ(vide->selectedIndex()->integerValue(), -1);
    }
    EXPECT_EQ(lue->frame(), (NSRect{{5, 6}, {70, 80}}));
    w->close();
}

TEST_F(KCTarteTest, hitsAreThoseOfTheOutlines) {
    std::mt19937 hasard(7);
    const auto entier = [&](int bas, int haut) { return std::uniform_int_distribution<int>(bas, haut)(hasard); };
    const auto reel = [&](double bas, double haut) { return std::uniform_real_distribution<>(bas, haut)(hasard); };
    const std::function<NSInteger()> sortes[] = {
        [&] { return entier(0, 3); },
        [&] { return entier(-5, 20); },
        [&] { return NSInteger{1} << entier(0, 62); },
        [&] { return entier(1, 3) * (entier(0, 9) ? 1 : 1000000); },
        [&] { return entier(1, 9); },
    };
    int touches = 0;
    for (int essai = 0; essai < 160; ++essai) {
        const NSSize taille{reel(20, 500), reel(20, 500)};
        const auto t = make<KCTarte>(NSRect{{3, 4}, taille});
        for (int n = entier(1, essai % 5 == 4 ? 300 : 40); n > 0; --n)
            t->ajoutePointe(pointe(sortes[essai % 5]()));
        const NSPoint c = t->centre();
        for (int k = 0; k < 60; ++k) {
            NSPoint p{reel(-5, taille.width + 5), reel(-5, taille.height + 5)};
            // Next to a boundary, to the rim and to the centre, where a shortcut would go wrong.
            if (k % 3) {
                float bord = 0;
                const auto derniere = static_cast<NSUInteger>(entier(0, static_cast<int>(t->pointes()->count()) - 1));
                for (NSUInteger i = 0; i <= derniere; ++i)
                    bord = finDe(*t, i, bord);
                const double ecart = k % 2 ? 0.02 : 1e-9;
                const double a = (static_cast<double>(bord) + reel(-ecart, ecart)) * M_PI / 180;
                const auto [bas, haut] = k % 4 == 0   ? std::pair(0.999, 1.0015)
                                         : k % 4 == 1 ? std::pair(0.0, 2e-3)
                                                      : std::pair(0.0, 1.0);
                const double d = t->rayon() * reel(bas, haut);
                p = {c.x + d * std::cos(a), c.y + d * std::sin(a)};
            }
            const NSInteger attendu = parLesContours(*t, p);
            touches += attendu >= 0;
            ASSERT_EQ(t->indexPointeAtLocation(p), attendu) << essai << " " << p.x << " " << p.y;
        }
        ASSERT_EQ(t->indexPointeAtLocation(c), parLesContours(*t, c));
        ASSERT_EQ(t->indexPointeAtLocation({NAN, INFINITY}), -1);
    }
    EXPECT_GT(touches, 3000);
}

TEST_F(KCTarteTest, hitsFollowEveryChange) {
    const auto t = tarteDe({1, 1, 1, 1});
    const std::pair<NSInteger, std::function<void()>> cas[] = {
        {2, [] {}},
        {0, [&] { t->setValeur_deLaPointe(9, 0); }},
        // Behind the pie's back, which keeps its total.
        {3, [&] { t->pointes()->exchangeObjectAtIndex_withObjectAtIndex(0, 3); }},
        {2, [&] { t->pointes()->removeObjectAtIndex(1); }},
        {-1, [&] { t->pretePointe(2)->setValeur(1); }},
        {-1, [&] { t->pointes()->removeAllObjects(); }},
        {0, [&] { t->ajoutePointe(pointe(100)); }},
        {-1,
         [&] {
             t->setFrame({{0, 0}, {80, 80}});
         }}, // the point is beside the disc now
    };
    const NSPoint p{40, 90}; // about 190 degrees
    for (const auto& [index, change] : cas) {
        change();
        EXPECT_EQ(t->indexPointeAtLocation(p), index) << (&change - &cas[0].second);
        EXPECT_EQ(parLesContours(*t, p), index);
    }
}

TEST_F(KCTarteTest, aPulledOutSliceIsHitAtItsPlaceAtRest) {
    const auto t = tarteDe({1, 1, 1, 1});
    t->pretePointe(0)->setPourcentageExtraction(1);
    EXPECT_EQ(t->rayon(), 87);
    EXPECT_EQ(t->indexPointeAtLocation({100.5, 100.5}), 0); // where the disc now has a gap
    EXPECT_EQ(t->indexPointeAtLocation({100 + 65, 100 + 65}), -1);
    EXPECT_EQ(t->pointeAtLocation({40, 90}), t->pretePointe(2));
    EXPECT_EQ(t->pointeAtLocation({0, 0}), nullptr);
}

TEST_F(KCTarteTest, hostileValuesAndSizesDrawAndHit) {
    const NSInteger grand = NSNotFound, petit = -NSNotFound - 1;
    for (const auto& valeurs : std::vector<std::vector<NSInteger>>{
             {grand}, {grand, grand}, {grand, 1}, {petit, petit}, {petit, grand, 1}, {-3, 1}, {grand, petit, 2}})
        for (const NSSize taille : {NSSize{200, 200}, NSSize{10, 10}, NSSize{0, 0}, NSSize{1e9, 30}}) {
            const auto t = tarteDe(valeurs, {{0, 0}, taille});
            for (KCPointeDeTarte* p : t->pointes()->as<KCPointeDeTarte>()) {
                p->setEtiquette(KCPointeDeTarteEtiquettePourcentage);
                p->setPourcentageExtraction(p == t->pretePointe(0) ? INFINITY : NAN);
            }
            Pixels pixels(20, 20);
            t->drawRect(t->bounds());
            EXPECT_EQ(t->indexPointeAtLocation({60, 60}), parLesContours(*t, {60, 60}));
            EXPECT_EQ(t->tableAccessible().lignes.size(), valeurs.size());
        }
    const auto t = tarteDe(std::vector<NSInteger>(10000, 3));
    EXPECT_EQ(dessine(t).size(), 0u); // all of them are too thin to draw
    EXPECT_EQ(t->indexPointeAtLocation({130, 140}), parLesContours(*t, {130, 140}));
}

TEST_F(KCTarteTest, assistiveToolsGetATable) {
    const auto t = make<KCTarte>(NSRect{{0, 0}, {100, 100}});
    t->ajoutePointe(pointe(1250, NSColor::redColor(), u"E"_ns));
    t->ajoutePointe(pointe(3750, NSColor::redColor(), u"A"_ns));
    t->setSelectedIndex(NSNumber::numberWithInteger(1));
    drain();
    const auto d = t->accessibilityDescription();
    EXPECT_EQ(d.role->utf8(), "table");
    EXPECT_EQ(d.value->utf8(), "E\u00A0: 1\u00A0250, 25\u00A0%\nA\u00A0: 3\u00A0750, 75\u00A0%");
    EXPECT_FALSE(t->tableAccessible().lignes[0].choisie);
    EXPECT_TRUE(t->tableAccessible().lignes[1].choisie);
}

} // namespace

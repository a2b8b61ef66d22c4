#include "Graphiques.h"

#include <cmath>
#include <random>
#include <utility>

#include <libvue/charts/KCTranslationAnimation.h>
#include <libvue/charts/KCTranslationInverseAnimation.h>
#include <libvue/charts/TableAccessible.h>
#include <libvue/platform/foundation/NSDictionary.h>

using namespace libvue;
using namespace libvue::test;

namespace {

/// Keeps the angles that it is drawn with.
class PointeTemoin : public KCPointeDeTarte {
public:
    static void describe(ClassDescription<PointeTemoin, KCPointeDeTarte>&) {}
    std::vector<std::pair<double, double>> angles;
    void drawAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin(NSPoint centre, CGFloat rayon, CGFloat depart,
                                                                   CGFloat fin) override {
        angles.emplace_back(depart, fin);
        KCPointeDeTarte::drawAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin(centre, rayon, depart, fin);
    }
};

/// The hit as the outlines alone give it.
NSInteger parLesContours(const KCTarte& t, NSPoint p) {
    float a = 0;
    for (NSUInteger i = 0; i < t.pointes()->count(); ++i) {
        KCPointeDeTarte* s = t.pretePointe(i);
        const float debut = a;
        a += static_cast<float>(s->valeur()) / static_cast<float>(t.total()) * 360.0F;
        const auto contour = s->pointeAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin(
            t.centre(), t.rayon(), static_cast<double>(debut), static_cast<double>(a));
        if (contour->containsPoint(p)) return static_cast<NSInteger>(i);
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
    for (int i = 0; i < 2; ++i)
        t->ajoutePointe(
            pointe(i + 1, i ? NSColor::blueColor() : NSColor::redColor(), u"s"_ns, KCPointeDeTarteEtiquetteChaine));
    EXPECT_EQ(t->centre(), (NSPoint{100, 60}));
    EXPECT_EQ(t->rayon(), 47);
    const auto ops = dessine(t);
    ASSERT_EQ(ops.size(), 6u);
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(ops[i].kind, i < 4 ? Kind::fill : Kind::text) << i;
        EXPECT_EQ(ops[i].shadow.has_value(), i < 2) << i;
        if (i < 4) {
            EXPECT_EQ(ops[i].color, (i % 2 ? backend::Color{0, 0, 1, 1} : backend::Color{1, 0, 0, 1})) << i;
        }
    }
    EXPECT_EQ(ops[0].shadow, (backend::Shadow{{2, -2}, 5, {0, 0, 0, 0.6666666666666666}}));
    EXPECT_EQ(ops[0].path, ops[2].path);
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
        const Ref<NSWindow> w = windowAt({{100, 100}, {100, 200}});
        w->contentView()->addSubview(t);
        show(w);
        int postes = 0;
        const auto jeton = NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
            kTarteSelectionWillChange, t, nullptr, [&](NSNotification*) { ++postes; });
        click(w, 60, 110);
        EXPECT_EQ(postes, 0);
        NSNotificationCenter::defaultCenter()->removeObserver(jeton);
        w->close();
    }
}

TEST_F(KCTarteTest, anglesAreWalkedInSinglePrecision) {
    struct {
        std::vector<NSInteger> valeurs;
        std::vector<double> fins;
    } const lignes[] = {
        {{7, 7, 7, 1}, {114.54545593261719, 229.09091186523438, 343.6363525390625, 360}},
        {{3, 0, 5, 11, 2, 9}, {36, 36, 96, 228, 252, 360}},
        // Nothing makes up for the rounding of the sum.
        {std::vector<NSInteger>(7, 1), {-1, -1, -1, -1, -1, 308.57147216796875, 360.00006103515625}},
        {std::vector<NSInteger>(1000, 1), std::vector<double>(999, -1)},
    };
    for (const auto& l : lignes) {
        const auto t = tarteDe({});
        std::vector<Ref<PointeTemoin>> temoins;
        for (const NSInteger v : l.valeurs) {
            temoins.push_back(make<PointeTemoin>());
            temoins.back()->setValeur(v);
            t->ajoutePointe(temoins.back());
        }
        (void)dessine(t);
        double avant = 0;
        for (std::size_t i = 0; i < l.valeurs.size(); ++i) {
            ASSERT_EQ(temoins[i]->angles.size(), 2u);
            EXPECT_EQ(temoins[i]->angles[0], temoins[i]->angles[1]);
            EXPECT_EQ(temoins[i]->angles[0].first, avant);
            avant = temoins[i]->angles[0].second;
            if (i < l.fins.size() && l.fins[i] >= 0) {
                EXPECT_EQ(avant, l.fins[i]) << i;
            }
        }
        if (l.valeurs.size() == 1000) {
            EXPECT_EQ(avant, 359.99615478515625);
        }
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
    EXPECT_EQ(t->total(), 65);
    EXPECT_EQ(raised([&] { (void)t->pretePointe(2); }), "NSRangeException");
    EXPECT_EQ(raised([&] { t->setValeur_deLaPointe(1, 2); }), "NSRangeException");
    EXPECT_EQ(raised([&] { t->ajoutePointe(nullptr); }), "NSInvalidArgumentException");
    EXPECT_EQ(t->total(), 65);
}

TEST_F(KCTarteTest, changesAskForARedrawAndStartingAnewDoesNot) {
    const auto t = tarteDe({1, 2});
    const Ref<NSWindow> w = windowAt({{100, 100}, {200, 200}});
    w->contentView()->addSubview(t);
    show(w);
    const auto demande = [&](const std::function<void()>& f) {
        drain();
        EXPECT_FALSE(t->needsDisplay());
        f();
        return t->needsDisplay();
    };
    EXPECT_TRUE(demande([&] { t->setValeur_deLaPointe(1, 0); }));
    EXPECT_TRUE(demande([&] { t->enlevePointe(t->pretePointe(0)); }));
    EXPECT_TRUE(demande([&] { t->ajoutePointe(pointe(4)); }));
    EXPECT_FALSE(demande([&] { t->enlevePointe(pointe(9)); }));
    EXPECT_FALSE(demande([&] { t->initTarte(); }));
    EXPECT_EQ(t->pointes()->count(), 0u);
    EXPECT_EQ(t->total(), 0);
    w->close();
}

TEST_F(KCTarteTest, hitsAreThoseOfTheOutlines) {
    std::mt19937 hasard(7);
    const auto entier = [&](int bas, int haut) { return std::uniform_int_distribution<int>(bas, haut)(hasard); };
    const auto reel = [&](double bas, double haut) { return std::uniform_real_distribution<>(bas, haut)(hasard); };
    std::size_t touches = 0;
    for (int essai = 0; essai < 160; ++essai) {
        const NSSize taille{reel(20, 500), reel(20, 500)};
        const auto t = make<KCTarte>(NSRect{{3, 4}, taille});
        const int sorte = essai % 5;
        for (int n = entier(1, sorte == 4 ? 300 : 40); n > 0; --n)
            t->ajoutePointe(pointe(sorte == 0   ? entier(0, 3)
                                   : sorte == 1 ? entier(-5, 20)
                                   : sorte == 2 ? NSInteger{1} << entier(0, 62)
                                   : sorte == 3 ? entier(1, 3) * (entier(0, 9) ? 1 : 1000000)
                                                : entier(1, 9)));
        const NSPoint c = t->centre();
        for (int k = 0; k < 60; ++k) {
            NSPoint p{reel(-5, taille.width + 5), reel(-5, taille.height + 5)};
            // Next to a boundary, to the rim and to the centre, where a shortcut would go wrong.
            if (k % 3) {
                float bord = 0;
                const auto combien = static_cast<NSUInteger>(entier(0, static_cast<int>(t->pointes()->count()) - 1));
                for (NSUInteger i = 0; i <= combien; ++i)
                    bord += static_cast<float>(t->pretePointe(i)->valeur()) / static_cast<float>(t->total()) * 360.0F;
                const double a =
                    (static_cast<double>(bord) + (k % 2 ? reel(-0.02, 0.02) : reel(-1e-9, 1e-9))) * M_PI / 180;
                const double d = k % 4 == 0   ? t->rayon() * reel(0.999, 1.0015)
                                 : k % 4 == 1 ? t->rayon() * reel(0, 2e-3)
                                              : t->rayon() * reel(0, 1);
                p = {c.x + d * std::cos(a), c.y + d * std::sin(a)};
            }
            const NSInteger attendu = parLesContours(*t, p);
            touches += attendu >= 0;
            ASSERT_EQ(t->indexPointeAtLocation(p), attendu) << essai << " " << p.x << " " << p.y;
        }
        ASSERT_EQ(t->indexPointeAtLocation(c), parLesContours(*t, c));
        ASSERT_EQ(t->indexPointeAtLocation({NAN, INFINITY}), -1);
    }
    EXPECT_GT(touches, 3000u);
}

TEST_F(KCTarteTest, hitsFollowEveryChange) {
    const auto t = tarteDe({1, 1, 1, 1});
    const NSPoint p{40, 90}; // about 190 degrees
    const auto verifie = [&](NSInteger attendu) {
        EXPECT_EQ(t->indexPointeAtLocation(p), attendu);
        EXPECT_EQ(parLesContours(*t, p), attendu);
    };
    verifie(2);
    t->setValeur_deLaPointe(9, 0);
    verifie(0);
    t->pretePointe(0)->setValeur(0); // behind the pie's back: the total is another's now
    verifie(-1);
    t->setValeur_deLaPointe(1, 0);
    t->pointes()->exchangeObjectAtIndex_withObjectAtIndex(0, 3);
    t->pointes()->removeObjectAtIndex(1);
    verifie(parLesContours(*t, p));
    t->pointes()->removeAllObjects();
    verifie(-1);
    t->initTarte();
    for (const NSInteger v : {1, 0, 0, 0, 0, 8})
        t->ajoutePointe(pointe(v));
    verifie(5);
    t->setFrame({{0, 0}, {80, 80}}); // the point is at the left of another disc
    verifie(-1);
    t->setFrame({{0, 0}, {90, 180}});
    EXPECT_EQ(t->indexPointeAtLocation(p), parLesContours(*t, p));
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

TEST_F(KCTarteTest, anArchivedPieComesBackEmpty) {
    const auto t = tarteDe({1, 2}, {{5, 6}, {70, 80}});
    const auto lue = throughKeyedArchive(*t);
    ASSERT_TRUE(lue);
    EXPECT_EQ(lue->frame(), (NSRect{{5, 6}, {70, 80}}));
    EXPECT_EQ(lue->pointes()->count(), 0u);
    EXPECT_EQ(lue->total(), 0);
    EXPECT_EQ(lue->selectedIndex()->integerValue(), -1);
}

TEST_F(KCTarteTest, hostileValuesAndSizesDrawAndHit) {
    const NSInteger grand = NSNotFound, petit = -NSNotFound - 1;
    for (const auto& valeurs : std::vector<std::vector<NSInteger>>{
             {grand}, {grand, grand}, {grand, 1}, {petit, petit}, {petit, grand, 1}, {-3, 1}, {grand, petit, 2}})
        for (const NSSize taille : {NSSize{200, 200}, NSSize{10, 10}, NSSize{0, 0}, NSSize{1e9, 30}}) {
            const auto t = tarteDe(valeurs, {{0, 0}, taille});
            for (NSUInteger i = 0; i < valeurs.size(); ++i) {
                t->pretePointe(i)->setEtiquette(KCPointeDeTarteEtiquettePourcentage);
                t->pretePointe(i)->setPourcentageExtraction(i ? NAN : INFINITY);
            }
            Pixels pixels(20, 20);
            t->drawRect(t->bounds());
            EXPECT_EQ(t->indexPointeAtLocation({60, 60}), parLesContours(*t, {60, 60}));
            EXPECT_EQ(t->tableAccessible().lignes.size(), valeurs.size());
        }
    const auto t = tarteDe(std::vector<NSInteger>(10000, 3));
    EXPECT_EQ(dessine(t).size(), 0u); // all of them are too thin to draw
    EXPECT_EQ(t->indexPointeAtLocation({130, 140}), parLesContours(*t, {130, 140}));
    EXPECT_GE(t->indexPointeAtLocation({130, 140}), 0);
    // The sum wraps and comes back.
    const auto deborde = tarteDe({grand, grand, grand});
    deborde->setValeur_deLaPointe(1, 0);
    deborde->setValeur_deLaPointe(2, 1);
    deborde->setValeur_deLaPointe(3, 2);
    EXPECT_EQ(deborde->total(), 6);
}

TEST_F(KCTarteTest, assistiveToolsGetATable) {
    const auto t = make<KCTarte>(NSRect{{0, 0}, {100, 100}});
    t->ajoutePointe(pointe(1250, NSColor::redColor(), u"E"_ns));
    t->ajoutePointe(pointe(3750, NSColor::redColor(), u"A"_ns));
    t->setSelectedIndex(NSNumber::numberWithInteger(1));
    const auto d = t->accessibilityDescription();
    EXPECT_EQ(d.role->utf8(), "table");
    EXPECT_EQ(d.value->utf8(), "E\u00A0: 1\u00A0250, 25\u00A0%\nA\u00A0: 3\u00A0750, 75\u00A0%");
    EXPECT_FALSE(t->tableAccessible().lignes[0].choisie);
    EXPECT_TRUE(t->tableAccessible().lignes[1].choisie);
    NSObject::cancelPreviousPerformRequestsWithTarget(t);
    drain();
}

} // namespace

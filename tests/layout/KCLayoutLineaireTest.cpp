#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include <libvue/layout/KCLayoutLineaire.h>
#include <libvue/layout/KCLayoutView.h>
#include <libvue/platform/appkit/NSBox.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>

namespace libvue::test {

namespace {

enum Genre { vue, boite, texte };

struct Element {
    Genre genre = vue;
    NSRect frame;
    bool cache = false;
};

struct CasPlacement {
    const char* nom;
    int direction;
    CGFloat espacement;
    std::vector<Element> elements;
    std::vector<NSPoint> origines;
    NSSize contenu; ///< what the host takes when it fits itself
};

Ref<NSView> cree(const Element& e) {
    Ref<NSView> v;
    switch (e.genre) {
    case vue:
        v = make<NSView>(e.frame);
        break;
    case boite:
        v = make<NSBox>(e.frame);
        break;
    case texte:
        v = make<NSTextField>(e.frame);
        break;
    }
    v->setHidden(e.cache);
    return v;
}

NSRect taille(CGFloat w, CGFloat h) { return {{0, 0}, {w, h}}; }

} // namespace

TEST(KCLayoutLineaireTest, placesInOrderWithItsGapAndFitsItsHost) {
    const CasPlacement cas[] = {
        {"three in a row",
         0,
         5,
         {{vue, taille(10, 1)}, {vue, taille(20, 1)}, {vue, taille(30, 1)}},
         {{0, 0}, {15, 0}, {40, 0}},
         {70, 1}},
        {"a hidden last one keeps the gap before it",
         0,
         5,
         {{vue, taille(10, 1)}, {vue, taille(20, 1)}, {vue, {{99, 7}, {30, 1}}, true}},
         {{0, 0}, {15, 0}, {99, 7}},
         {40, 1}},
        {"a hidden one in the middle takes neither room nor gap",
         0,
         5,
         {{vue, taille(10, 1)}, {vue, taille(20, 1), true}, {vue, taille(30, 1)}},
         {{0, 0}, {0, 0}, {15, 0}},
         {45, 1}},
        {"an offset across the row counts", 0, 0, {{vue, {{3, 7}, {10, 13}}}}, {{0, 7}}, {10, 20}},
        {"a negative offset does not shrink the content", 0, 0, {{vue, {{0, -50}, {10, 13}}}}, {{0, -50}}, {10, 0}},
        {"a box right after a text stands three points further",
         1,
         4,
         {{texte, taille(50, 20)}, {boite, taille(60, 10)}},
         {{0, 0}, {0, 27}},
         {60, 37}},
        {"a box first", 1, 4, {{boite, taille(60, 10)}, {texte, taille(50, 20)}}, {{0, 0}, {0, 14}}, {60, 34}},
        {"a hidden view between text and box",
         1,
         4,
         {{texte, taille(50, 20)}, {vue, taille(1, 1), true}, {boite, taille(60, 10)}},
         {{0, 0}, {0, 0}, {0, 24}},
         {60, 34}},
        {"a hidden text before a box",
         1,
         4,
         {{texte, taille(50, 20), true}, {boite, taille(60, 10)}},
         {{0, 0}, {0, 3}},
         {60, 13}},
        {"in a row a box gets nothing extra",
         0,
         4,
         {{texte, taille(50, 20)}, {boite, taille(60, 10)}},
         {{0, 0}, {54, 0}},
         {114, 20}},
        {"any other direction is a column",
         -7,
         2,
         {{vue, {{5, 9}, {10, 11}}}, {vue, {{1, 9}, {10, 12}}}},
         {{5, 0}, {1, 13}},
         {15, 25}},
        {"a negative gap overlaps", 0, -4, {{vue, taille(10, 1)}, {vue, taille(10, 1)}}, {{0, 0}, {6, 0}}, {16, 1}},
        {"nothing at all", 0, 5, {}, {}, {0, 0}},
    };
    for (const CasPlacement& c : cas) {
        SCOPED_TRACE(c.nom);
        auto hote = make<KCLayoutView>(NSRect{{11, 12}, {300, 300}});
        auto m = make<KCLayoutLineaire>();
        m->setDirection(c.direction);
        m->setEspacement(c.espacement);
        for (const Element& e : c.elements)
            hote->addSubview(cree(e));
        m->effectueLayout(hote);
        ASSERT_EQ(hote->subviews().size(), c.origines.size());
        for (std::size_t i = 0; i < c.origines.size(); ++i) {
            EXPECT_EQ(hote->subviews()[i]->frame().origin, c.origines[i]) << "view " << i;
            EXPECT_EQ(hote->subviews()[i]->frame().size, c.elements[i].frame.size);
        }
        EXPECT_EQ(hote->frame(), NSMakeRect(11, 12, 300, 300)) << "the content's size is thrown away";
        m->setAjusteTailleAuContenu(YES);
        // Frames along the axis start over at each pass.
        m->effectueLayout(hote);
        EXPECT_EQ(hote->frame().origin, NSMakePoint(11, 12));
        EXPECT_EQ(hote->frame().size, c.contenu);
    }
}

TEST(KCLayoutLineaireTest, stretchesAcrossItsAxisByTheFarMarginAlone) {
    constexpr NSUInteger W = NSViewWidthSizable, H = NSViewHeightSizable;
    struct Cas {
        const char* nom;
        int direction;
        NSUInteger masque;
        NSRect avant;
        NSSize ancienne, nouvelle;
        NSSize apres;
    };
    const Cas cas[] = {
        {"a near offset is added though the host has not changed",
         0,
         H,
         {{0, 10}, {5, 50}},
         {100, 100},
         {100, 100},
         {5, 60}},
        {"without an offset nothing happens", 0, H, {{0, 0}, {5, 50}}, {100, 100}, {100, 100}, {5, 50}},
        {"the host grows", 0, H, {{0, 0}, {5, 50}}, {100, 100}, {100, 130}, {5, 80}},
        {"in a column the width", 1, W, {{10, 0}, {50, 5}}, {100, 100}, {120, 100}, {80, 5}},
        {"never negative", 0, H, {{0, 0}, {5, 10}}, {100, 100}, {100, 20}, {5, 0}},
        {"a flexible far margin", 0, H | NSViewMaxYMargin, {{0, 10}, {5, 50}}, {100, 100}, {100, 200}, {5, 50}},
        {"a flexible near margin", 0, H | NSViewMinYMargin, {{0, 10}, {5, 50}}, {100, 100}, {100, 200}, {5, 50}},
        {"a flexible margin along the row does not matter",
         0,
         H | NSViewMinXMargin,
         {{0, 0}, {5, 50}},
         {100, 100},
         {100, 200},
         {5, 150}},
        {"the width is not touched in a row", 0, W, {{0, 0}, {5, 50}}, {100, 100}, {200, 200}, {5, 50}},
        {"the height is not touched in a column", 1, H, {{0, 0}, {5, 50}}, {100, 100}, {200, 200}, {5, 50}},
        {"a flexible margin in a column", 1, W | NSViewMaxXMargin, {{0, 0}, {50, 5}}, {100, 100}, {200, 100}, {50, 5}},
    };
    for (const Cas& c : cas) {
        for (bool cache : {false, true}) {
            SCOPED_TRACE(c.nom);
            auto hote = make<KCLayoutView>(NSRect{{0, 0}, c.nouvelle});
            auto v = make<NSView>(c.avant);
            v->setAutoresizingMask(c.masque);
            v->setHidden(cache);
            hote->addSubview(v);
            auto m = make<KCLayoutLineaire>();
            m->setDirection(c.direction);
            m->layoutView_resizeSubviewsWithOldSize(hote, c.ancienne);
            EXPECT_EQ(v->frame().size, c.apres);
            EXPECT_EQ(v->frame().origin, c.avant.origin);
        }
    }
}

TEST(KCLayoutLineaireTest, aHostThatChangesSizeStretchesAtOnceAndPlacesLater) {
    auto hote = make<KCLayoutView>(NSRect{{0, 0}, {100, 100}});
    auto m = make<KCLayoutLineaire>();
    hote->setLayoutManager(m);
    EXPECT_EQ(m->hote(), hote.get());
    auto v = make<NSView>(NSRect{{40, 0}, {10, 100}});
    v->setAutoresizingMask(NSViewHeightSizable);
    hote->addSubview(v);
    hote->setFrameSize({100, 150});
    EXPECT_EQ(v->frame(), NSMakeRect(40, 0, 10, 150)) << "the cross axis alone is synchronous";
    hote->layoutSiNecessaire();
    EXPECT_EQ(v->frame(), NSMakeRect(0, 0, 10, 150));
}

TEST(KCLayoutLineaireTest, onlyTheDirectionAsksForAPass) {
    auto hote = make<KCLayoutView>(NSRect{{0, 0}, {100, 100}});
    auto m = make<KCLayoutLineaire>();
    hote->setLayoutManager(m);
    m->setEspacement(3);
    m->setAjusteTailleAuContenu(YES);
    EXPECT_FALSE(hote->necessiteLayout());
    m->setDirection(1);
    EXPECT_TRUE(hote->necessiteLayout());
    hote = nullptr;
    EXPECT_EQ(m->hote(), nullptr);
    m->setDirection(0);
}

TEST(KCLayoutLineaireTest, aFrameThatMovesMayChangeTheList) {
    auto hote = make<KCLayoutView>(NSRect{{0, 0}, {100, 100}});
    auto m = make<KCLayoutLineaire>();
    std::vector<Ref<NSView>> vues;
    for (int i = 0; i < 3; ++i)
        hote->addSubview(vues.emplace_back(make<NSView>(NSRect{{90, 0}, {10, 10}})));
    auto* centre = NSNotificationCenter::defaultCenter();
    const Ref<NSObject> temoin = centre->addObserverForName_object_queue_usingBlock(
        NSViewFrameDidChangeNotification, vues[0], nullptr, [&](NSNotification*) {
            vues[1]->removeFromSuperview();
            vues[1] = nullptr;
        });
    m->effectueLayout(hote);
    centre->removeObserver(temoin);
    EXPECT_EQ(hote->subviews().size(), 2u);
    EXPECT_EQ(vues[2]->frame().origin, NSMakePoint(10, 0));
}

TEST(KCLayoutLineaireTest, nestedHostsFitFromTheInsideOut) {
    auto dehors = make<KCLayoutView>(NSRect{{0, 0}, {10, 10}});
    auto md = make<KCLayoutLineaire>();
    md->setAjusteTailleAuContenu(YES);
    md->setEspacement(2);
    dehors->setLayoutManager(md);
    for (int i = 0; i < 3; ++i) {
        auto dedans = make<KCLayoutView>(NSRect{{0, 0}, {1, 1}});
        auto m = make<KCLayoutLineaire>();
        m->setDirection(1);
        m->setAjusteTailleAuContenu(YES);
        dedans->setLayoutManager(m);
        for (int k = 0; k <= i; ++k)
            dedans->addSubview(make<NSView>(NSRect{{0, 0}, {10.0 + k, 5}}));
        dehors->addSubview(dedans);
    }
    dehors->layoutSiNecessaire();
    EXPECT_EQ(dehors->frame().size, NSMakeSize(10 + 2 + 11 + 2 + 12, 15));
    EXPECT_EQ(dehors->subviews()[2]->frame(), NSMakeRect(25, 0, 12, 15));
}

TEST(KCLayoutLineaireTest, hostileSizesEndAPass) {
    auto hote = make<KCLayoutView>(NSRect{{0, 0}, {100, 100}});
    auto m = make<KCLayoutLineaire>();
    m->setAjusteTailleAuContenu(YES);
    hote->setLayoutManager(m);
    const CGFloat inf = std::numeric_limits<CGFloat>::infinity(), nan = std::numeric_limits<CGFloat>::quiet_NaN();
    for (CGFloat w : {inf, -inf, nan, 1e308})
        hote->addSubview(make<NSView>(NSRect{{w, 0}, {w, 1}}));
    hote->layoutSiNecessaire();
    EXPECT_FALSE(hote->necessiteLayout());
    EXPECT_EQ(hote->subviews()[0]->frame().origin.x, 0);
}

} // namespace libvue::test

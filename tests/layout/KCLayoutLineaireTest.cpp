#include <vector>

#include <gtest/gtest.h>

#include <libvue/layout/KCLayoutLineaire.h>
#include <libvue/layout/KCLayoutView.h>
#include <libvue/platform/appkit/NSBox.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>

namespace libvue::test {

namespace {

Ref<NSView> vue(CGFloat w, CGFloat h, NSPoint origine = {}) { return make<NSView>(NSRect{origine, {w, h}}); }
Ref<NSView> boite(CGFloat w, CGFloat h) { return make<NSBox>(NSRect{{0, 0}, {w, h}}); }
Ref<NSView> texte(CGFloat w, CGFloat h) { return make<NSTextField>(NSRect{{0, 0}, {w, h}}); }
Ref<NSView> cachee(Ref<NSView> v) {
    v->setHidden(YES);
    return v;
}

/// A host of 100 by 100 with a linear layout as its manager.
struct Rangee {
    Ref<KCLayoutView> hote = make<KCLayoutView>(NSRect{{11, 12}, {100, 100}});
    Ref<KCLayoutLineaire> lineaire = make<KCLayoutLineaire>();

    explicit Rangee(int direction = 0) {
        hote->setLayoutManager(lineaire);
        lineaire->setDirection(direction);
    }
};

} // namespace

TEST(KCLayoutLineaireTest, placesInOrderWithItsGapAndFitsItsHost) {
    struct Cas {
        const char* nom;
        int direction;
        CGFloat espacement;
        std::vector<Ref<NSView>> vues;
        std::vector<NSPoint> origines;
        NSSize contenu; ///< what the host takes when it fits itself
    };
    const Cas cas[] = {
        {"three in a row", 0, 5, {vue(10, 1), vue(20, 1), vue(30, 1)}, {{0, 0}, {15, 0}, {40, 0}}, {70, 1}},
        {"a hidden last one keeps the gap before it",
         0,
         5,
         {vue(10, 1), vue(20, 1), cachee(vue(30, 1, {99, 7}))},
         {{0, 0}, {15, 0}, {99, 7}},
         {40, 1}},
        {"a hidden one takes nothing", 0, 5, {vue(10, 1), cachee(vue(20, 1)), vue(30, 1)}, {{}, {}, {15, 0}}, {45, 1}},
        {"an offset across the row counts", 0, 0, {vue(10, 13, {3, 7})}, {{0, 7}}, {10, 20}},
        {"a negative one does not", 0, 0, {vue(10, 13, {0, -50})}, {{0, -50}}, {10, 0}},
        {"a box right after a text", 1, 4, {texte(50, 20), boite(60, 10)}, {{0, 0}, {0, 27}}, {60, 37}},
        {"a box first", 1, 4, {boite(60, 10), texte(50, 20)}, {{0, 0}, {0, 14}}, {60, 34}},
        {"a hidden view between", 1, 4, {texte(50, 20), cachee(vue(1, 1)), boite(60, 10)}, {{}, {}, {0, 24}}, {60, 34}},
        {"a hidden text before a box", 1, 4, {cachee(texte(50, 20)), boite(60, 10)}, {{0, 0}, {0, 3}}, {60, 13}},
        {"in a row a box gets nothing extra", 0, 4, {texte(50, 20), boite(60, 10)}, {{0, 0}, {54, 0}}, {114, 20}},
        {"any other direction", -7, 2, {vue(10, 11, {5, 9}), vue(10, 12, {1, 9})}, {{5, 0}, {1, 13}}, {15, 25}},
        {"a negative gap overlaps", 0, -4, {vue(10, 1), vue(10, 1)}, {{0, 0}, {6, 0}}, {16, 1}},
        {"nothing at all", 0, 5, {}, {}, {0, 0}},
    };
    for (const Cas& c : cas) {
        SCOPED_TRACE(c.nom);
        const Rangee r(c.direction);
        r.lineaire->setEspacement(c.espacement);
        std::vector<NSSize> tailles;
        for (const Ref<NSView>& v : c.vues) {
            tailles.push_back(v->frame().size);
            r.hote->addSubview(v);
        }
        r.lineaire->effectueLayout(r.hote);
        for (std::size_t i = 0; i < c.vues.size(); ++i)
            EXPECT_EQ(c.vues[i]->frame(), (NSRect{c.origines[i], tailles[i]})) << "view " << i;
        EXPECT_EQ(r.hote->frame(), NSMakeRect(11, 12, 100, 100)) << "the content's size is thrown away";
        r.lineaire->setAjusteTailleAuContenu(YES);
        r.lineaire->effectueLayout(r.hote);
        EXPECT_EQ(r.hote->frame(), (NSRect{{11, 12}, c.contenu}));
    }
}

TEST(KCLayoutLineaireTest, stretchesAcrossItsAxisByTheFarMarginAlone) {
    constexpr NSUInteger W = NSViewWidthSizable, H = NSViewHeightSizable;
    struct Cas {
        const char* nom;
        int direction;
        NSUInteger masque;
        NSRect avant;
        NSSize nouvelle; ///< of the host, which had 100 by 100
        NSSize apres;
    };
    const Cas cas[] = {
        {"a near offset is added though the host is the same", 0, H, {{0, 10}, {5, 50}}, {100, 100}, {5, 60}},
        {"without an offset nothing happens", 0, H, {{0, 0}, {5, 50}}, {100, 100}, {5, 50}},
        {"the host grows", 0, H, {{0, 0}, {5, 50}}, {100, 130}, {5, 80}},
        {"in a column the width", 1, W, {{10, 0}, {50, 5}}, {120, 100}, {80, 5}},
        {"never negative", 0, H, {{0, 0}, {5, 10}}, {100, 20}, {5, 0}},
        {"a flexible far margin", 0, H | NSViewMaxYMargin, {{0, 10}, {5, 50}}, {100, 200}, {5, 50}},
        {"a flexible near margin", 0, H | NSViewMinYMargin, {{0, 10}, {5, 50}}, {100, 200}, {5, 50}},
        {"one along the row does not matter", 0, H | NSViewMinXMargin, {{0, 0}, {5, 50}}, {100, 200}, {5, 150}},
        {"the width is not touched in a row", 0, W, {{0, 0}, {5, 50}}, {200, 200}, {5, 50}},
        {"a flexible margin in a column", 1, W | NSViewMaxXMargin, {{0, 0}, {50, 5}}, {200, 100}, {50, 5}},
    };
    for (const Cas& c : cas) {
        for (const BOOL cache : {NO, YES}) {
            SCOPED_TRACE(c.nom);
            const Rangee r(c.direction);
            const auto v = make<NSView>(c.avant);
            v->setAutoresizingMask(c.masque);
            v->setHidden(cache);
            r.hote->addSubview(v);
            r.hote->setFrameSize(c.nouvelle);
            if (c.nouvelle == NSSize{100, 100}) r.lineaire->layoutView_resizeSubviewsWithOldSize(r.hote, c.nouvelle);
            EXPECT_EQ(v->frame(), (NSRect{c.avant.origin, c.apres}));
        }
    }
}

TEST(KCLayoutLineaireTest, onlyTheDirectionAsksForAPass) {
    Rangee r;
    r.hote->setNecessiteLayout(NO);
    r.lineaire->setEspacement(3);
    r.lineaire->setAjusteTailleAuContenu(YES);
    EXPECT_FALSE(r.hote->necessiteLayout());
    r.lineaire->setDirection(1);
    EXPECT_TRUE(r.hote->necessiteLayout());
    r.hote = nullptr;
    r.lineaire->setDirection(0); // nobody to tell
}

TEST(KCLayoutLineaireTest, aFrameThatMovesMayChangeTheList) {
    const Rangee r;
    std::vector<Ref<NSView>> vues;
    for (int i = 0; i < 3; ++i)
        r.hote->addSubview(vues.emplace_back(vue(10, 10, {90, 0})));
    auto* centre = NSNotificationCenter::defaultCenter();
    const Ref<NSObject> temoin = centre->addObserverForName_object_queue_usingBlock(
        NSViewFrameDidChangeNotification, vues[0], nullptr, [&](NSNotification*) {
            vues[1]->removeFromSuperview();
            vues[1] = nullptr;
        });
    r.lineaire->effectueLayout(r.hote);
    centre->removeObserver(temoin);
    EXPECT_EQ(r.hote->subviews().size(), 2u);
    EXPECT_EQ(vues[2]->frame().origin, NSMakePoint(10, 0));
}

} // namespace libvue::test

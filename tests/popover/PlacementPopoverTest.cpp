#include <popover/PopoverFixture.h>

#include <random>

#include <libvue/popover/ContourPopover.h>

using namespace libvue;
using namespace libvue::test;

namespace {

constexpr NSRect kEcran{{0, 0}, {1000, 800}};

constexpr NSSize kTaille{200, 100};

TEST(PlacementPopoverTest, EachEdgeShrinksAndSlidesTheBalloon) {
    constexpr NSUInteger aucun = 7, gauche = NSMinXEdge, dessous = NSMinYEdge, droite = NSMaxXEdge, dessus = NSMaxYEdge;
    struct Cas {
        const char* quoi;
        NSUInteger edge;
        NSPoint ancre; ///< of 40 by 20
        NSRect rect;
        NSSize voulue = kTaille;
        NSRect visible = kEcran;
    };
    for (const Cas& c : {
             Cas{"left", gauche, {500, 400}, {{300, 360}, kTaille}},
             Cas{"below", dessous, {500, 400}, {{420, 300}, kTaille}},
             Cas{"right", droite, {500, 400}, {{540, 360}, kTaille}},
             Cas{"above", dessus, {500, 400}, {{420, 420}, kTaille}},
             Cas{"no edge", aucun, {500, 400}, {{500, 400}, kTaille}},
             Cas{"no edge, slid", aucun, {900, 750}, {{800, 700}, kTaille}},
             Cas{"slid from the left", dessus, {10, 400}, {{0, 420}, kTaille}},
             Cas{"slid from the right", dessus, {960, 400}, {{800, 420}, kTaille}},
             Cas{"above, shrunk", dessus, {500, 700}, {{420, 720}, {200, 80}}},
             Cas{"below, shrunk", dessous, {500, 70}, {{420, 0}, {200, 70}}},
             Cas{"left, shrunk", gauche, {150, 400}, {{0, 360}, {150, 100}}},
             Cas{"right, shrunk", droite, {850, 400}, {{890, 360}, {110, 100}}},
             Cas{"wider than the screen", dessus, {500, 400}, {{0, 420}, {1000, 100}}, {1200, 100}},
             Cas{"right of an anchor past the left edge", droite, {-300, 400}, {{0, 360}, kTaille}},
             Cas{"left of an anchor past the right edge", gauche, {1200, 400}, {{800, 360}, kTaille}},
             Cas{"past the left edge: less than no room", gauche, {-60, 400}, {{0, 360}, {-60, 100}}},
             Cas{"above an anchor past the top", dessus, {500, 830}, {{420, 850}, {200, -50}}},
             Cas{"elsewhere", dessus, {-490, 900}, {{-500, 920}, kTaille}, kTaille, {{-500, 800}, {600, 300}}},
         })
        EXPECT_EQ(rectPopover({{c.ancre, {40, 20}}, c.visible}, c.edge, c.voulue), c.rect) << c.quoi;
    EXPECT_EQ(rectPopover({}, dessus, kTaille), NSZeroRect) << "no anchor, no screen";
}

TEST(PlacementPopoverTest, TheBestEdgeIsTheLargestAndOnATieTheFirstTried) {
    // 200 points above, 500 below, 100 on each side; and the middle of a square, with the same on all sides.
    const AncragePopover a{{{100, 500}, {400, 100}}, {{0, 0}, {600, 800}}};
    const AncragePopover carre{{{400, 400}, {200, 200}}, {{0, 0}, {1000, 1000}}};
    const NSSize s{400, 300}, t{400, 400}, trop{1000, 1000};
    struct Cas {
        const char* quoi;
        const AncragePopover& ancrage;
        NSUInteger prefere, masque;
        NSSize taille, actuelle;
        NSUInteger edge;
        NSSize donne;
    };
    for (const Cas& c : {
             Cas{"below wins by area", a, 3, 15, s, s, 1, {400, 300}},
             Cas{"the others are masked out", a, 3, 8, s, s, 3, {400, 200}},
             Cas{"no edge at all", a, 3, 0, s, s, 3, {400, 200}},
             Cas{"the preferred edge fits: no mask is read", a, 1, 0, s, s, 1, {400, 300}},
             Cas{"the others are weighed with the present size", a, 3, 15, s, {100, 100}, 3, {400, 200}},
             Cas{"and with a larger one", a, 3, 15, {400, 201}, {500, 400}, 1, {500, 400}},
             Cas{"only the sides: a shrunk preferred edge is larger", a, 3, 5, s, s, 3, {400, 200}},
             Cas{"as large as the others", carre, 3, 15, trop, trop, 3, {1000, 400}},
             Cas{"2 comes before 1 and 0", carre, 3, 15, {300, 401}, t, 2, t},
             Cas{"1 before 0", carre, 3, 3, {300, 401}, t, 1, t},
             Cas{"3 before 2 and 1", carre, 0, 15, {401, 300}, t, 3, t},
             Cas{"0 before 3 and 2", carre, 1, 15, {300, 401}, t, 0, t},
             Cas{"1 before 0 and 3", carre, 2, 15, {401, 300}, t, 1, t},
         }) {
        const PlacementPopover p = placementOptimal(c.ancrage, c.prefere, c.masque, c.taille, c.actuelle);
        EXPECT_EQ(p.edge, c.edge) << c.quoi;
        EXPECT_EQ(p.rect.size, c.donne) << c.quoi;
    }
}

TEST(PlacementPopoverTest, AnyBalloonGoesWhereTheRuleCanPutIt) {
    std::mt19937 alea(20260);
    // Whole numbers, so that equal areas are equal.
    const auto tire = [&](int de, int a) {
        return static_cast<double>(std::uniform_int_distribution<int>(de, a)(alea));
    };
    int ajustes = 0, changes = 0, fleches = 0;
    for (int essai = 0; essai < 20000; ++essai) {
        const NSRect v{{tire(-500, 500), tire(-500, 500)}, {tire(300, 1500), tire(300, 1200)}};
        const NSRect ancre{{tire(static_cast<int>(NSMinX(v)) - 150, static_cast<int>(NSMaxX(v)) + 100),
                            tire(static_cast<int>(NSMinY(v)) - 150, static_cast<int>(NSMaxY(v)) + 100)},
                           {tire(1, 60) * 2, tire(1, 60) * 2}};
        const NSSize s{tire(30, 400) * 2, tire(30, 400) * 2};
        const NSUInteger prefere = static_cast<NSUInteger>(tire(0, 3)), masque = static_cast<NSUInteger>(tire(0, 15));
        const PlacementPopover p = placementOptimal({ancre, v}, prefere, masque, s, s);
        changes += p.edge != prefere;

        // No edge that may be taken gives more, unless the preferred one gives all.
        const auto aire = [](const NSRect& r) { return r.size.width * r.size.height; };
        EXPECT_EQ(p.rect, rectPopover({ancre, v}, p.edge, s));
        const bool tient = rectPopover({ancre, v}, prefere, s).size == s;
        for (NSUInteger e = 0; e < 4 && !tient; ++e) {
            if (e != prefere && !(masque >> e & 1)) continue;
            ASSERT_GE(aire(p.rect), aire(rectPopover({ancre, v}, e, s))) << "try " << essai << ", edge " << e;
        }

        // On the screen, wherever there is room beyond that side of the anchor.
        if (p.rect.size.width <= 0 || p.rect.size.height <= 0) continue;
        ++ajustes;
        ASSERT_TRUE(NSContainsRect(NSInsetRect(v, -1e-9, -1e-9), p.rect)) << "try " << essai;
        EXPECT_LE(p.rect.size.width, s.width);
        EXPECT_LE(p.rect.size.height, s.height);

        // The tip meets what can be seen of the anchor, unless a corner holds the arrow back.
        const NSRect visible = NSIntersectionRect(ancre, v);
        if (NSIsEmptyRect(visible)) continue;
        const NSRect bounds{{0, 0}, p.rect.size};
        const NSRect vue = NSOffsetRect(visible, -p.rect.origin.x, -p.rect.origin.y);
        const NSRect r = NSInsetRect(bounds, kRetraitExterieur, kRetraitExterieur);
        const bool verticale = p.edge == 0 || p.edge == 2;
        const CGFloat bas = verticale ? NSMinY(vue) : NSMinX(vue), haut = verticale ? NSMaxY(vue) : NSMaxX(vue);
        const CGFloat debut = (verticale ? NSMinY(r) : NSMinX(r)) + 10.5,
                      fin = (verticale ? NSMaxY(r) : NSMaxX(r)) - 10.5;
        if (fin < debut || haut < debut || bas > fin) continue;
        ++fleches;
        const CGFloat c = centreFleche(r, vue, bounds, p.edge);
        EXPECT_GE(c, bas - 1) << "try " << essai;
        EXPECT_LE(c, haut + 1) << "try " << essai;
    }
    // The draw reaches all the cases.
    EXPECT_GT(ajustes, 10000);
    EXPECT_GT(changes, 2000);
    EXPECT_GT(fleches, 5000);
}

class PlacementDeKCPopoverTest : public PopoverFixture {};

TEST_F(PlacementDeKCPopoverTest, ReadsTheAnchorOnTheScreen) {
    const Ref<KCPopover> p = bulle();
    EXPECT_EQ(p->contentRect(), NSMakeRect(-11, -15, 142, 90));
    montre(p, NSMaxYEdge);
    // The anchor stands at (550, 400), 80 by 20.
    EXPECT_EQ(p->panel()->frame(), NSMakeRect(519, 420, 142, 90));
    EXPECT_EQ(p->rectAvecEdge(NSMinXEdge), NSMakeRect(408, 365, 142, 90));
    EXPECT_EQ(p->rectAvecEdge_contentSize(NSMaxXEdge, {50, 40}), NSMakeRect(630, 390, 50, 40));
    EXPECT_EQ(p->contentViewController()->view()->frame(), NSMakeRect(11, 15, 120, 60));
    EXPECT_EQ(p->edgeTemporaire(), NSUInteger{NSMaxYEdge});
    ferme(p);
}

TEST_F(PlacementDeKCPopoverTest, AnAnnouncedSizeGrowsByTheMarginsOfItsState) {
    const Ref<KCPopover> p = bulle();
    montre(p);
    NSView* vue = p->contentViewController()->view();
    // The view of the balloon takes the announced size first, then the content's as it stands.
    std::vector<NSSize> prises;
    const Ref<NSObject> jeton = NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
        NSViewFrameDidChangeNotification, p->panel()->contentView(), nullptr,
        [&](NSNotification*) { prises.push_back(p->panel()->contentView()->frame().size); });
    const auto annonce = [&](NSSize s) {
        prises.clear();
        p->contentWouldChangeSize(
            NSNotification::notificationWithName_object_userInfo(u"kViewWouldChangeBounds"_ns, nullptr, taille(s)));
    };
    annonce({200, 100});
    EXPECT_EQ(prises, (std::vector<NSSize>{{222, 130}, {142, 90}})); // the content has not taken it yet
    vue->setFrameSize({200, 100});
    annonce({200, 100});
    EXPECT_EQ(p->panel()->frame(), NSMakeRect(479, 420, 222, 130));
    p->decrochePopover();
    annonce({200, 150});
    EXPECT_EQ(prises.front(), NSMakeSize(200, 160));
    NSNotificationCenter::defaultCenter()->removeObserver(jeton);
    ferme(p);
}

} // namespace

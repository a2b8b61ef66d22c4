#include <popover/PopoverFixture.h>

#include <algorithm>
#include <array>
#include <random>

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSValue.h>
#include <libvue/popover/ContourPopover.h>

using namespace libvue;
using namespace libvue::test;

namespace {

constexpr NSRect kEcran{{0, 0}, {1000, 800}};

constexpr NSSize taille{200, 100};

TEST(PlacementPopoverTest, EachEdgeShrinksAndSlidesTheBalloon) {
    constexpr NSUInteger aucun = 7, gauche = NSMinXEdge, dessous = NSMinYEdge, droite = NSMaxXEdge, dessus = NSMaxYEdge;
    struct Cas {
        const char* quoi;
        NSUInteger edge;
        NSPoint ancre; ///< of 40 by 20
        NSRect rect;
        NSSize voulue = taille;
        NSRect visible = kEcran;
    };
    for (const Cas& c : {
             Cas{"left", gauche, {500, 400}, {{300, 360}, taille}},
             Cas{"below", dessous, {500, 400}, {{420, 300}, taille}},
             Cas{"right", droite, {500, 400}, {{540, 360}, taille}},
             Cas{"above", dessus, {500, 400}, {{420, 420}, taille}},
             Cas{"no edge", aucun, {500, 400}, {{500, 400}, taille}},
             Cas{"no edge, slid", aucun, {900, 750}, {{800, 700}, taille}},
             Cas{"slid from the left", dessus, {10, 400}, {{0, 420}, taille}},
             Cas{"slid from the right", dessus, {960, 400}, {{800, 420}, taille}},
             Cas{"above, shrunk", dessus, {500, 700}, {{420, 720}, {200, 80}}},
             Cas{"below, shrunk", dessous, {500, 70}, {{420, 0}, {200, 70}}},
             Cas{"left, shrunk", gauche, {150, 400}, {{0, 360}, {150, 100}}},
             Cas{"right, shrunk", droite, {850, 400}, {{890, 360}, {110, 100}}},
             Cas{"wider than the screen", dessus, {500, 400}, {{0, 420}, {1000, 100}}, {1200, 100}},
             Cas{"right of an anchor past the left edge", droite, {-300, 400}, {{0, 360}, taille}},
             Cas{"left of an anchor past the right edge", gauche, {1200, 400}, {{800, 360}, taille}},
             Cas{"past the left edge: less than no room", gauche, {-60, 400}, {{0, 360}, {-60, 100}}},
             Cas{"above an anchor past the top", dessus, {500, 830}, {{420, 850}, {200, -50}}},
             Cas{"elsewhere", dessus, {-490, 900}, {{-500, 920}, taille}, taille, {{-500, 800}, {600, 300}}},
         })
        EXPECT_EQ(rectPopover({{c.ancre, {40, 20}}, c.visible}, c.edge, c.voulue), c.rect) << c.quoi;
    EXPECT_EQ(rectPopover({}, dessus, taille), NSZeroRect) << "no anchor, no screen";
}

TEST(PlacementPopoverTest, TheBestEdgeIsTheLargest) {
    // 200 points above, 500 below, 100 on each side.
    const AncragePopover a{{{100, 500}, {400, 100}}, {{0, 0}, {600, 800}}};
    const NSSize s{400, 300};
    struct Cas {
        const char* quoi;
        NSUInteger prefere, masque;
        NSSize taille, actuelle;
        NSUInteger edge;
        NSRect rect;
    };
    for (const Cas& c : {
             Cas{"below wins by area", 3, 15, s, s, 1, {{100, 200}, {400, 300}}},
             Cas{"the others are masked out", 3, 8, s, s, 3, {{100, 600}, {400, 200}}},
             Cas{"no edge at all", 3, 0, s, s, 3, {{100, 600}, {400, 200}}},
             Cas{"the preferred edge fits: no mask is read", 1, 0, s, s, 1, {{100, 200}, {400, 300}}},
             Cas{"the others are weighed with the present size", 3, 15, s, {100, 100}, 3, {{100, 600}, {400, 200}}},
             Cas{"and with a larger one", 3, 15, {400, 201}, {500, 400}, 1, {{50, 100}, {500, 400}}},
             Cas{"only the sides: a shrunk preferred edge is larger", 3, 5, s, s, 3, {{100, 600}, {400, 200}}},
         }) {
        const PlacementPopover p = placementOptimal(a, c.prefere, c.masque, c.taille, c.actuelle);
        EXPECT_EQ(p.edge, c.edge) << c.quoi;
        EXPECT_EQ(p.rect, c.rect) << c.quoi;
    }
}

TEST(PlacementPopoverTest, OnATieTheFirstTriedStays) {
    // In the middle of a square of a screen, far too large: all four sides leave the same.
    const AncragePopover a{{{400, 400}, {200, 200}}, {{0, 0}, {1000, 1000}}};
    const NSSize s{400, 400}, trop{1000, 1000};
    // Above is preferred and too small for what is asked; 2 comes before 1 and 0.
    EXPECT_EQ(placementOptimal(a, 3, 15, {800, 401}, s).edge, 3U);
    EXPECT_EQ(placementOptimal(a, 3, 15, {300, 401}, s).edge, 2U);
    EXPECT_EQ(placementOptimal(a, 3, 3, {300, 401}, s).edge, 1U);
    EXPECT_EQ(placementOptimal(a, 0, 15, {401, 300}, s).edge, 3U);
    EXPECT_EQ(placementOptimal(a, 1, 15, {300, 401}, s).edge, 0U);
    EXPECT_EQ(placementOptimal(a, 2, 15, {401, 300}, s).edge, 1U);
    EXPECT_EQ(placementOptimal(a, 3, 15, trop, trop).edge, 3U);
}

// The same rule, put another way: each axis is an interval, all candidates are listed and sorted.
struct Intervalle {
    double de, a;
    [[nodiscard]] double longueur() const { return a - de; }
};

Intervalle tient(Intervalle voulu, Intervalle place) {
    const double l = std::min(voulu.longueur(), place.longueur());
    if (voulu.de < place.de) return {place.de, place.de + l};
    if (voulu.de + l > place.a) return {place.a - l, place.a};
    return {voulu.de, voulu.de + l};
}

NSRect lent(const NSRect& ancre, const NSRect& v, NSUInteger edge, NSSize s) {
    Intervalle placeX{NSMinX(v), NSMaxX(v)}, placeY{NSMinY(v), NSMaxY(v)};
    const double mx = NSMidX(ancre), my = NSMidY(ancre);
    Intervalle x{mx - s.width / 2, mx + s.width / 2}, y{my - s.height / 2, my + s.height / 2};
    if (edge == 0) {
        placeX.a = std::min(placeX.a, NSMinX(ancre));
        x = {NSMinX(ancre) - s.width, NSMinX(ancre)};
    } else if (edge == 1) {
        placeY.a = std::min(placeY.a, NSMinY(ancre));
        y = {NSMinY(ancre) - s.height, NSMinY(ancre)};
    } else if (edge == 2) {
        placeX.de = std::max(placeX.de, NSMaxX(ancre));
        x = {NSMaxX(ancre), NSMaxX(ancre) + s.width};
    } else {
        placeY.de = std::max(placeY.de, NSMaxY(ancre));
        y = {NSMaxY(ancre), NSMaxY(ancre) + s.height};
    }
    x = tient(x, placeX);
    y = tient(y, placeY);
    return {{x.de, y.de}, {x.longueur(), y.longueur()}};
}

void expectPresque(const NSRect& a, const NSRect& b) {
    EXPECT_NEAR(a.origin.x, b.origin.x, 1e-6);
    EXPECT_NEAR(a.origin.y, b.origin.y, 1e-6);
    EXPECT_NEAR(a.size.width, b.size.width, 1e-6);
    EXPECT_NEAR(a.size.height, b.size.height, 1e-6);
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

        // The edge that an exhaustive search picks.
        const NSRect premier = lent(ancre, v, prefere, s);
        NSUInteger attendu = prefere;
        if (premier.size != s) {
            std::array<NSUInteger, 4> ordre{prefere, (prefere + 3) % 4, (prefere + 2) % 4, (prefere + 1) % 4};
            const auto aire = [&](NSUInteger e) {
                const NSRect r = lent(ancre, v, e, s);
                return r.size.width * r.size.height;
            };
            const auto fin = std::stable_partition(ordre.begin() + 1, ordre.end(),
                                                   [&](NSUInteger e) { return (masque >> e & 1) != 0; });
            attendu =
                *std::max_element(ordre.begin(), fin, [&](NSUInteger x, NSUInteger y) { return aire(x) < aire(y); });
        }
        ASSERT_EQ(p.edge, attendu) << "try " << essai;
        expectPresque(p.rect, lent(ancre, v, p.edge, s));
        changes += p.edge != prefere;

        // On the screen, wherever there is room beyond that side of the anchor.
        if (p.rect.size.width <= 0 || p.rect.size.height <= 0) continue;
        ++ajustes;
        EXPECT_GE(NSMinX(p.rect), NSMinX(v));
        EXPECT_GE(NSMinY(p.rect), NSMinY(v));
        EXPECT_LE(NSMaxX(p.rect), NSMaxX(v) + 1e-9);
        EXPECT_LE(NSMaxY(p.rect), NSMaxY(v) + 1e-9);
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
    NSSize vu;
    const auto annonce = [&](NSSize s) {
        // The view of the balloon takes the announced size first, then the content's as it stands.
        const Ref<NSObject> jeton = NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
            NSViewFrameDidChangeNotification, p->panel()->contentView(), nullptr, [&](NSNotification*) {
                if (vu == NSSize{}) vu = p->panel()->contentView()->frame().size;
            });
        vu = {};
        const Ref<NSNotification> n = NSNotification::notificationWithName_object_userInfo(
            u"kViewWouldChangeBounds"_ns, p->contentViewController(),
            NSDictionary::dictionaryWithObject_forKey(NSValue::valueWithSize(s), u"size"_ns));
        p->contentWouldChangeSize(n);
        NSNotificationCenter::defaultCenter()->removeObserver(jeton);
    };
    annonce({200, 100});
    EXPECT_EQ(vu, NSMakeSize(222, 130));
    EXPECT_EQ(p->panel()->frame().size, NSMakeSize(142, 90)); // the content has not taken it yet
    vue->setFrameSize({200, 100});
    annonce({200, 100});
    EXPECT_EQ(p->panel()->frame(), NSMakeRect(479, 420, 222, 130));

    p->decrochePopover();
    annonce({200, 150});
    EXPECT_EQ(vu, NSMakeSize(200, 160));
    ferme(p);
}

} // namespace

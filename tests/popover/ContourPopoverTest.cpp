#include <popover/PopoverFixture.h>

#include <cmath>
#include <random>
#include <sstream>
#include <utility>

#include <graphics/Dessin.h>

#include <libvue/platform/graphics/PathGeometry.h>
#include <libvue/popover/ContourPopover.h>

using namespace libvue;
using namespace libvue::test;

namespace {

using Sorte = ElementContour::Sorte;

/// "m x y", "l x y", "c x y (x y)" with both control points in the brackets, "z".
std::string texteDe(const ContourPopover& c) {
    std::ostringstream texte;
    for (const ElementContour& e : c.elements()) {
        texte << (e.sorte == Sorte::debut ? "" : " ") << "mlcz"[static_cast<int>(e.sorte)];
        if (e.sorte != Sorte::fermeture) texte << ' ' << e.point.x << ' ' << e.point.y;
        if (e.sorte == Sorte::courbe) texte << " (" << e.controle.x << ' ' << e.controle.y << ')';
    }
    return texte.str();
}

TEST(ContourPopoverTest, EachEdgeGivesItsOutlinePointForPoint) {
    // Up the right side, along the high one, down the left one, along the low one.
    // With the detour of the arrow behind the side that it is on.
    const auto contour = [](NSUInteger cote, const char* fleche) {
        std::string texte = "m 114.5 23.5 ";
        for (const auto& [edge, trait] : {std::pair<NSUInteger, const char*>{NSMinXEdge, ""},
                                          {NSMinYEdge, "l 114.5 68.5 c 107.5 75.5 (114.5 75.5) "},
                                          {NSMaxXEdge, "l 22.5 75.5 c 15.5 68.5 (15.5 75.5) "},
                                          {NSMaxYEdge, "l 15.5 23.5 c 22.5 16.5 (15.5 16.5) "}}) {
            texte += trait;
            if (edge == cote) texte += fleche;
        }
        return texte += "l 107.5 16.5 c 114.5 23.5 (114.5 16.5) z";
    };
    struct Cas {
        NSUInteger edge;
        NSRect ancre;
        const char* fleche;
    };
    // All tips but one follow the origin of the bounds.
    const NSRect bounds{{5, 6}, {120, 80}};
    for (const Cas& c : {
             // Its middle is 35.5, rounded to 36, half a point up on this edge and down on the opposite one.
             Cas{NSMinXEdge, {{130, 20}, {20, 31}}, "l 114.5 26.5 l 124.5 36.5 l 114.5 46.5 "},
             Cas{NSMinYEdge, {{40, 90}, {40, 20}}, "l 70.5 75.5 l 60.5 85.5 l 50.5 75.5 "},
             Cas{NSMaxXEdge, {{-30, 20}, {20, 31}}, "l 15.5 45.5 l 0.5 35.5 l 15.5 25.5 "},
             Cas{NSMaxYEdge, {{40, -30}, {40, 20}}, "l 49.5 16.5 l 59.5 6.5 l 69.5 16.5 "},
             Cas{4, {{40, -30}, {40, 20}}, ""},
         })
        EXPECT_EQ(texteDe(contourPopover(NSInsetRect(bounds, 10, 10), c.ancre, bounds, c.edge)),
                  contour(c.edge, c.fleche));
}

TEST(ContourPopoverTest, TheArrowsCentreFollowsTheVisibleMiddle) {
    struct Cas {
        const char* quoi;
        NSUInteger edge;
        NSRect r, ancre;
        CGFloat centre;
        NSSize vue{120, 120};
    };
    const NSRect r{{10, 10}, {100, 100}}, grand{{-20, -20}, {100, 100}};
    for (const Cas& c : {
             Cas{"7.5 on edge 0", NSMinXEdge, grand, {{60, 5}, {1, 5}}, 8.5},
             Cas{"7.5 on edge 2", NSMaxXEdge, grand, {{60, 5}, {1, 5}}, 7.5},
             Cas{"6.5 on edge 1", NSMinYEdge, grand, {{4, 60}, {5, 1}}, 7.5},
             Cas{"6.5 on edge 3", NSMaxYEdge, grand, {{4, 60}, {5, 1}}, 6.5},
             Cas{"the part inside the view of a wide anchor", NSMinYEdge, r, {{40, 150}, {1000, 10}}, 80.5},
             Cas{"held at the lower end", NSMaxYEdge, r, {{0, -20}, {6, 10}}, 20.5},
             Cas{"held at the upper end", NSMinXEdge, r, {{130, 110}, {6, 10}}, 99.5},
             Cas{"too short: the lower limit wins",
                 NSMinYEdge,
                 {{10, 10}, {16, 60}},
                 {{0, 90}, {30, 10}},
                 20.5,
                 {36, 80}},
             Cas{"single precision",
                 NSMinYEdge,
                 {{-1e9, 0}, {2e9, 10}},
                 {{16777217, 0}, {0.5, 1}},
                 16777218.5,
                 {1e9, 10}},
         })
        EXPECT_EQ(centreFleche(c.r, c.ancre, {{0, 0}, c.vue}, c.edge), c.centre) << c.quoi;
}

/// Whether the two sides cross.
bool seCroisent(NSPoint a, NSPoint b, NSPoint c, NSPoint d) {
    const auto cote = [](NSPoint o, NSPoint p, NSPoint q) {
        return (p.x - o.x) * (q.y - o.y) - (p.y - o.y) * (q.x - o.x);
    };
    const double mince = 1e-9;
    return cote(a, b, c) * cote(a, b, d) < -mince && cote(c, d, a) * cote(c, d, b) < -mince;
}

TEST(ContourPopoverTest, OutlinesAreClosedAndSimpleBesideTheKink) {
    std::mt19937 alea(4711);
    std::uniform_real_distribution<double> longueur(60, 500), place(-600, 600), taille(1, 300);
    for (int essai = 0; essai < 4000; ++essai) {
        const NSRect bounds{{0, 0}, {longueur(alea), longueur(alea)}};
        const NSRect ancre{{place(alea), place(alea)}, {taille(alea), taille(alea)}};
        const CGFloat retrait = essai % 2 ? kRetraitExterieur : kRetraitInterieur;
        const NSRect r = NSInsetRect(bounds, retrait, retrait);
        const NSUInteger edge = static_cast<NSUInteger>(essai % 5);
        backend::Path chemin;
        const ContourPopover contour = contourPopover(r, ancre, bounds, edge);
        for (const ElementContour& e : contour.elements()) {
            chemin.verbs.push_back(static_cast<backend::PathVerb>(e.sorte));
            if (e.sorte == Sorte::courbe) chemin.points.insert(chemin.points.end(), 2, e.controle);
            if (e.sorte != Sorte::fermeture) chemin.points.push_back(e.point);
        }
        ASSERT_EQ(chemin.verbs.back(), backend::PathVerb::close);
        ASSERT_EQ(chemin.points.front(), chemin.points.back());
        // Where the arrow's base ends in a corner, there is a kink.
        const bool verticale = edge == NSMinXEdge || edge == NSMaxXEdge;
        const CGFloat c = centreFleche(r, ancre, bounds, edge);
        const CGFloat debut = (verticale ? NSMinY(r) : NSMinX(r)) + 7.5;
        const CGFloat fin = (verticale ? NSMaxY(r) : NSMaxX(r)) - 7.5;
        if (edge < 4 && (c - 10 < debut || c + 10 > fin)) continue;
        const std::vector<NSPoint> p = outline::flattened(chemin, 0.1).points;
        for (std::size_t i = 0; i + 1 < p.size(); ++i)
            for (std::size_t j = i + 2; j + 1 < p.size(); ++j)
                ASSERT_FALSE(seCroisent(p[i], p[i + 1], p[j], p[j + 1])) << "edge " << edge << ", " << i << " " << j;
    }
}

class VuePopoverTest : public PopoverFixture {
protected:
    Ref<KCPopover> p = bulle();
    Ref<VuePopover> vue = as<VuePopover>(Ref<NSView>(p->panel()->contentView()));

    void SetUp() override {
        PopoverFixture::SetUp();
        montre(p);
    }
    void TearDown() override {
        ferme(p);
        p = nullptr;
        vue = nullptr;
        PopoverFixture::TearDown();
    }
};

TEST_F(VuePopoverTest, OutlinesAreKeptUntilTheyAreInvalidated) {
    const Ref<NSBezierPath> avant(vue->contourExterieur());
    vue->setNeedsDisplay(YES);
    drain();
    EXPECT_EQ(vue->contourExterieur(), avant.get());
    p->layoutEtPositionne(nullptr);
    const Ref<NSBezierPath> apres(vue->contourExterieur());
    EXPECT_NE(apres, avant);
    p->setCouleurBordure(NSColor::redColor());
    EXPECT_NE(vue->contourExterieur(), apres.get());
    const Ref<NSBezierPath> encore(vue->contourInterieur());
    vue->setBounds(vue->bounds());
    EXPECT_NE(vue->contourInterieur(), encore.get());
}

TEST_F(VuePopoverTest, AnAnchorThatCannotBeSeenGivesARoundedRectangle) {
    const NSRect r{{3, 4}, {90, 50}};
    const Ref<NSBezierPath> rond = NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(r, 7, 7);
    EXPECT_FALSE(vue->contourAvecRectInterieur(r)->isEqual(rond));
    for (const NSRect& cachee : {NSRect{{5, 5}, {0, 0}}, NSRect{{-5000, 0}, {10, 10}}, NSRect{{0, 0}, {10, 0}}}) {
        p->setRectAncre(cachee);
        EXPECT_TRUE(vue->contourAvecRectInterieur(r)->isEqual(rond));
    }
}

TEST_F(VuePopoverTest, DrawsFillHighlightAndBorderByKeyStatus) {
    using Kind = backend::RecordingCanvas::Kind;
    p->setCouleurFond(NSColor::colorWithCalibratedRed_green_blue_alpha(0, 1, 0, 1));
    p->setCouleurBordure(NSColor::colorWithCalibratedRed_green_blue_alpha(1, 0, 0, 0.5));
    const auto dessine = [&] {
        const Enregistrement e(vue->bounds().size);
        vue->drawRect(vue->bounds());
        return e.canvas.operations();
    };
    struct Trait {
        Kind sorte;
        NSBezierPath* contour;
        backend::Color couleur;
    };
    const Trait traits[] = {{Kind::fill, vue->contourInterieur(), {0, 1, 0, 1}},
                            {Kind::stroke, vue->contourInterieur(), {1, 1, 1, 0.95}},
                            {Kind::stroke, vue->contourExterieur(), {1, 0, 0, 0.5}}}; // the parent is key
    const auto operations = dessine();
    ASSERT_EQ(operations.size(), std::size(traits));
    for (std::size_t i = 0; i < operations.size(); ++i) {
        EXPECT_EQ(operations[i].kind, traits[i].sorte);
        EXPECT_EQ(operations[i].path, traits[i].contour->backendPath());
        EXPECT_EQ(operations[i].color, traits[i].couleur);
    }
    const Ref<NSWindow> autre = windowAt({{20, 20}, {100, 100}});
    show(autre);
    EXPECT_EQ(dessine()[2].color, (backend::Color{1, 0, 0, 0.1}));
    parent->makeKeyWindow();
    p->decrochePopover();
    EXPECT_TRUE(dessine().empty());
    autre->close();
}

TEST_F(VuePopoverTest, WithoutACompositorABalloonIsCutToItsOutline) {
    EXPECT_FALSE(native(p->panel()).hasShape) << "it is blended";
    ferme(p);
    windows().setCompositor(false);
    montre(p);
    const auto& w = native(p->panel());
    ASSERT_TRUE(w.hasShape);
    const auto dedans = [&](CGFloat x, CGFloat y) {
        return outline::contains(w.shape, {x, y}, backend::FillRule::nonZero);
    };
    const NSSize s = p->panel()->frame().size;
    EXPECT_TRUE(dedans(s.width / 2, s.height / 2));
    EXPECT_TRUE(dedans(s.width / 2, 4)); // the arrow
    EXPECT_FALSE(dedans(s.width / 2 - 20, 4));
    EXPECT_FALSE(dedans(11, s.height - 11)); // a corner
    p->decrochePopover();
    drain();
    EXPECT_FALSE(w.hasShape);
}

} // namespace

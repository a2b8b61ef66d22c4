#include "Graphiques.h"

#include <cmath>
#include <sstream>

#include <gmock/gmock.h>

#include <libvue/charts/KCHistogramme.h>
#include <libvue/charts/TableAccessible.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSShadow.h>
#include <libvue/platform/graphics/NSTextAttributes.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

Ref<NSArray> nombres(const std::vector<double>& valeurs) {
    const Ref<NSMutableArray> a = NSMutableArray::array();
    for (const double v : valeurs)
        a->addObject(NSNumber::numberWithDouble(v));
    return a;
}

Ref<NSArray> couleurs(NSUInteger combien) {
    return NSArray::arrayWithObjects({NSColor::redColor(), NSColor::greenColor(), NSColor::blueColor()})
        ->subarrayWithRange({0, combien});
}

/// Says which steps a drawing took; labels are 20 points wide.
class HistogrammeTemoin : public KCHistogramme {
public:
    static void describe(ClassDescription<HistogrammeTemoin, KCHistogramme>&) {}
    using KCHistogramme::KCHistogramme;
    std::vector<std::string> etapes;
    CGFloat largeurEtiquette(NSInteger) const override { return 20; }
    void drawGraduations_maximum_largeur_positionY(NSInteger n, CGFloat maximum, CGFloat l, CGFloat y) override {
        dis("graduations", {static_cast<double>(n), maximum, l, y});
        KCHistogramme::drawGraduations_maximum_largeur_positionY(n, maximum, l, y);
    }
    void drawBandesAvecTotalMax_avecLargeur(CGFloat m, CGFloat l) override {
        dis("bandes", {m, l});
        KCHistogramme::drawBandesAvecTotalMax_avecLargeur(m, l);
    }
    void drawAxesAvecLargeur_avecHauteur(CGFloat l, CGFloat h) override {
        dis("axes", {l, h});
        KCHistogramme::drawAxesAvecLargeur_avecHauteur(l, h);
    }

private:
    void dis(const char* quoi, const std::vector<double>& nombres) {
        std::ostringstream s;
        s << quoi;
        for (const double n : nombres)
            s << ' ' << n;
        etapes.push_back(s.str());
    }
};

class Cible : public NSObject {
public:
    static void describe(ClassDescription<Cible>& c) { c.answers<&Cible::clic>("clic:"); }
    std::vector<NSInteger> bandes;
    void clic(NSObject* o) { bandes.push_back(as<KCHistogramme>(o)->clickedBar()); }
};

struct KCHistogrammeTest : AppFixture {
    static Ref<HistogrammeTemoin> histogramme(const std::vector<double>& valeurs, NSUInteger sections = 1,
                                              NSSize taille = {400, 200}) {
        Ref<HistogrammeTemoin> h = make<HistogrammeTemoin>(NSRect{{0, 0}, taille});
        h->setCouleurs(couleurs(sections));
        h->setDonnees(nombres(valeurs));
        return h;
    }
    /// A line an operation, in the view's coordinates: of a text its middle and its top, of a rectangle its corners.
    static std::vector<std::string> dessine(KCHistogramme* h) {
        Enregistrement e(h->bounds().size, YES);
        h->drawRect(h->bounds());
        std::vector<std::string> lignes;
        for (const auto& op : e.canvas.operations()) {
            const std::string dite = op.describe(backend::RecordingCanvas::Space::user);
            std::ostringstream s;
            if (op.kind == Kind::text) {
                s << NSString::from(op.text)->utf8() << " at " << NSMidX(op.rect) << ' ' << NSMinY(op.rect);
            } else if (const auto fin = dite.find("Z #"); fin != std::string::npos) {
                const NSPoint a = op.path.points[0], b = op.path.points[2];
                s << dite.substr(0, dite.find(' ')) << ' ' << a.x << ' ' << a.y << " to " << b.x << ' ' << b.y
                  << dite.substr(fin + 1);
            } else
                s << dite;
            lignes.push_back(s.str());
        }
        return lignes;
    }
};

TEST_F(KCHistogrammeTest, theStepsOfADrawing) {
    struct {
        std::vector<double> valeurs;
        NSUInteger sections;
        bool absolu;
        CGFloat largeur;
        std::vector<std::string> etapes;
        NSInteger bandes;
    } const lignes[] = {
        {{20, 17, 3, 2}, 2, true, 400, {"graduations 10 40 387.5 39", "bandes 37 358.438", "axes 387.5 39"}, 2},
        {{30, 90, 0}, 3, false, 400, {"graduations 10 100 387.5 22", "bandes 120 387.5", "axes 387.5 22"}, 1},
        {{30, 30, 30, 30}, 1, false, 400, {"graduations 9 27 387.5 73", "bandes 30 358.796", "axes 387.5 73"}, 4},
        // An empty chart stands for five bands; without a total the scale is the same.
        {{}, 1, true, 400, {"graduations 1 1 387.5 90", "bandes 1 387.5", "axes 387.5 90"}, 5},
        {{}, 1, false, 400, {"graduations 10 100 387.5 90", "bandes 1 387.5", "axes 387.5 90"}, 5},
        {{0, 0}, 1, true, 400, {"graduations 1 1 387.5 39", "bandes 1 387.5", "axes 387.5 39"}, 2},
        // The last band is not complete.
        {{1, 1, 1, 1, 1, 1, 90}, 2, true, 400, {"graduations 2 2 387.5 56", "bandes 2 387.5", "axes 387.5 56"}, 3},
        {{5}, 1, true, 2.4, {}, 1},
        {{5}, 1, true, 12.5, {}, 1},
        {{5}, 1, true, 22.5, {"graduations 0 5 10 22", "bandes 5 10", "axes 10 22"}, 1},
    };
    for (const auto& l : lignes) {
        const auto h = histogramme(l.valeurs, l.sections, {l.largeur, 90});
        h->setEtiquettesAbsolues(l.absolu);
        EXPECT_EQ(h->nombreBandes(), 0);
        (void)dessine(h);
        EXPECT_EQ(h->etapes, l.etapes) << l.valeurs.size();
        EXPECT_EQ(h->nombreBandes(), l.bandes);
    }
}

TEST_F(KCHistogrammeTest, whatIsDrawnInWhichOrder) {
    const auto h = histogramme({3, 1, 0, 2}, 2, {122.5, 60});
    const Ref<NSShadow> ombre = make<NSShadow>();
    ombre->setShadowOffset({1, -1});
    ombre->setShadowBlurRadius(2);
    ombre->setShadowColor(NSColor::blackColor());
    h->setOmbrage(ombre);
    h->setCouleurBordureDesBandes(NSColor::grayColor());
    // Three labels and their gaps fit: 4 is halved, to steps of 2. The axis is 110 points long.
    EXPECT_THAT(dessine(h),
                ElementsAre("line {55.5, 39.5} {55.5, 43.5} #000000ff width 1", "2 at 55.5 45.5",
                            "line {110.5, 39.5} {110.5, 43.5} #000000ff width 1", "4 at 110.5 45.5",
                            "fill 0.5 5.5 to 109.5 16.5 #ffffffff shadow (1, -1) 2 #000000ff",
                            "fill 0 5 to 82.5 17 #ff0000ff", "stroke 0 5.5 to 82.5 16.5 #808080ff width 1",
                            "fill 82.5 5 to 110 17 #00ff00ff", "stroke 82.5 5.5 to 110 16.5 #808080ff width 1",
                            "fill 0.5 22.5 to 54.5 33.5 #ffffffff shadow (1, -1) 2 #000000ff",
                            // What is nothing takes no room.
                            "fill 0 22 to 55 34 #00ff00ff", "stroke 0 22.5 to 55 33.5 #808080ff width 1",
                            "line {0.5, 0} {0.5, 39} #000000ff width 1",
                            "line {0.5, 39.5} {110.5, 39.5} #000000ff width 1"));
}

TEST_F(KCHistogrammeTest, gradientsAndOddEntries) {
    const auto h = histogramme({1, 1, 1}, 3, {122.5, 60});
    const Ref<NSArray> degrade = NSArray::arrayWithObjects({NSColor::redColor(), NSColor::blueColor()});
    h->setCouleurs(NSArray::arrayWithObjects({degrade, u"rien"_ns, NSColor::greenColor()}));
    h->setCouleurBordureDesBandes(nullptr);
    // The section that is not filled keeps its room.
    const auto lignes = dessine(h);
    ASSERT_EQ(lignes.size(), 10u);
    EXPECT_EQ(lignes[6], "gradient {18.333, 5} {18.333, 17} 0 #ff0000ff 1 #0000ffff in {{0, 43}, {36.667, 12}}");
    EXPECT_EQ(lignes[7], "fill 73.3333 5 to 110 17 #00ff00ff");
    h->setCouleurs(NSArray::arrayWithObject(NSArray::arrayWithObject(NSColor::redColor())));
    EXPECT_EQ(raised([&] { (void)dessine(h); }), "NSRangeException");
}

TEST_F(KCHistogrammeTest, aBandOfAnyPositiveTotalIsTwoPointsLong) {
    // Bands of a total of 0 or less keep their place and draw nothing, nor do negative sections.
    const auto h = histogramme({1000, 0, 0.25, 0.75, -5, 2, -5, 9, -9, 3}, 2);
    h->setCouleurBordureDesBandes(nullptr);
    std::vector<std::string> pleins;
    for (const auto& l : dessine(h))
        if (l.starts_with("fill")) pleins.push_back(l);
    EXPECT_THAT(pleins, ElementsAre("fill 0 5 to 387.5 17 #ff0000ff", "fill 0 22 to 0.5 34 #ff0000ff",
                                    "fill 0.5 22 to 2 34 #00ff00ff", "fill 0 56 to 4.5 68 #00ff00ff"));
}

TEST_F(KCHistogrammeTest, labelsAreGroupedAndMeasuredWithoutGroups) {
    const auto h = make<KCHistogramme>(NSRect{{0, 0}, {400, 100}});
    const Ref<NSFont> police = NSFont::fontWithName_size(u"Lucida Grande"_ns, 11);
    EXPECT_TRUE(h->attributsEtiquettes()->get<NSFont>(NSFontAttributeName)->isEqual(police));
    EXPECT_NEAR(h->largeurEtiquette(12345), police->widthOfString(u"12345"_ns), 1e-6);
    h->setDonnees(nombres({12000}));
    Enregistrement e({400, 100}, YES);
    h->drawRect(h->bounds());
    EXPECT_EQ(NSString::from(e.canvas.operations(Kind::text).back().text)->utf8(), "12\u00A0000");
    // More than 32 bits show the low ones.
    e.canvas.clear();
    h->drawGraduations_maximum_largeur_positionY(1, 4294967296.0 + 1024, 100, 10);
    EXPECT_EQ(NSString::from(e.last().text)->utf8(), "1\u00A0024");
}

TEST_F(KCHistogrammeTest, eachBandOwnsHalfTheGapsAroundIt) {
    const auto h = histogramme({1, 2, 3});
    EXPECT_EQ(h->barAtPoint({10, 30}), -1); // not drawn yet
    (void)dessine(h);
    struct {
        CGFloat y;
        NSInteger bande;
    } const lignes[] = {{-50, 0},  {0, 0},   {19.4, 0},  {19.5, 1}, {36.4, 1},
                        {36.5, 2}, {900, 2}, {1e300, 2}, {NAN, 0},  {-INFINITY, 0}};
    for (const auto& l : lignes)
        EXPECT_EQ(h->barAtPoint({-1e9, l.y}), l.bande) << l.y;
    h->setFrame({{7, 9}, {50, 300}});
    EXPECT_EQ(h->origineGraphiquePourNbBandes(3), (NSPoint{7, 9 + 300 - 56}));
    h->setDonnees(NSArray::array());
    EXPECT_EQ(h->barAtPoint({0, 900}), 2); // until the next drawing
    (void)dessine(h);
    EXPECT_EQ(h->barAtPoint({0, 900}), 4);
    h->setLargeurBandes(0);
    h->setEspacementBandes(0);
    EXPECT_EQ(h->barAtPoint({0, 5}), 0);
}

TEST_F(KCHistogrammeTest, aClickNamesTheBandAndSendsTheAction) {
    const auto h = histogramme({1, 2, 3});
    const auto w = fenetreDe(h);
    h->setClickedBar(42);
    click(w, 50, 200 - 30);
    EXPECT_EQ(h->clickedBar(), 42); // without an action
    auto cible = make<Cible>();
    const Weak<Cible> faible(cible.get());
    h->setTarget(cible);
    h->setAction(sel("clic:"));
    for (const CGFloat y : {10, 30, 190})
        click(w, 50, 200 - y);
    EXPECT_THAT(cible->bandes, ElementsAre(0, 1, 2));
    cible = nullptr;
    EXPECT_NE(faible.get(), nullptr); // shared
    h->setTarget(nullptr);
    w->close();
}

TEST_F(KCHistogrammeTest, settersAskForARedrawWhereTheyShould) {
    const auto h = histogramme({1});
    const auto w = fenetreDe(h);
    const std::pair<Ref<NSString>, bool> cas[] = {
        {u"donnees"_ns, true},
        {u"couleurs"_ns, true},
        {u"ombrage"_ns, true},
        {u"couleurBordureDesBandes"_ns, true},
        {u"couleurDesAxes"_ns, true},
        {u"etiquettesAbsolues"_ns, true},
        {u"largeurBandes"_ns, true},
        {u"espacementBandes"_ns, true},
        {u"attributsEtiquettes"_ns, false},
        {u"clickedBar"_ns, false},
        {u"target"_ns, false},
    };
    for (const auto& [cle, demande] : cas) {
        drain();
        h->setValue_forKey(h->valueForKey(cle), cle);
        EXPECT_EQ(h->needsDisplay(), demande) << cle->utf8();
    }
    w->close();
}

TEST_F(KCHistogrammeTest, anArchivedOneComesBackWithTheDefaults) {
    const auto h = make<KCHistogramme>(NSRect{{0, 0}, {70, 80}});
    h->setEspacementBandes(99);
    h->setCouleurs(couleurs(3));
    h->setDonnees(nombres({1, 2, 3}));
    const auto lu = throughKeyedArchive(*h);
    ASSERT_TRUE(lu);
    EXPECT_EQ(lu->espacementBandes(), 5);
    EXPECT_EQ(lu->largeurBandes(), 12);
    EXPECT_EQ(lu->nombreSections(), 1);
    EXPECT_EQ(lu->donnees()->count(), 0u);
}

TEST_F(KCHistogrammeTest, hostileDataDraws) {
    const double grand = 1.7e308, maximum = 9223372036854775807.0;
    const std::vector<std::vector<double>> hostiles = {
        {NAN},          {NAN, 3},     {INFINITY, 3}, {-INFINITY, 3}, {INFINITY, -INFINITY},
        {grand, grand}, {maximum, 1}, {-5, -6},      {1e-320},       std::vector<double>(10000, 2)};
    for (const auto& valeurs : hostiles)
        for (const BOOL absolu : {YES, NO})
            for (const NSSize taille : {NSSize{400, 200}, NSSize{30, 5}, NSSize{0, 0}}) {
                const auto h = histogramme(valeurs, 1, taille);
                h->setEtiquettesAbsolues(absolu);
                Pixels pixels(40, 40);
                h->drawRect(h->bounds());
                (void)h->tableAccessible().texte();
            }
    // Texts are read as numbers, what answers nothing counts as 0.
    const auto h = histogramme({});
    h->setDonnees(NSArray::arrayWithObjects({u"37"_ns, make<Cible>().get()}));
    (void)dessine(h);
    EXPECT_EQ(h->etapes.at(1), "bandes 37 358.438");
}

TEST_F(KCHistogrammeTest, aListOfNoColoursIsTheCallersError) {
    const auto h = histogramme({1, 2}, 0);
    EXPECT_EQ(h->nombreSections(), 0);
    EXPECT_EQ(h->tableAccessible().lignes.size(), 0u);
#ifdef NDEBUG
    (void)dessine(h);
    EXPECT_EQ(h->nombreBandes(), 5);
#else
    EXPECT_DEATH((void)dessine(h), "at least one colour");
#endif
}

TEST_F(KCHistogrammeTest, assistiveToolsGetATableBySection) {
    const auto h = histogramme({1000, 500, 250, 250, 9}, 2);
    h->setLegendesAccessibles(NSArray::arrayWithObject(u"Noms"_ns));
    h->setLegendesDesSectionsAccessibles(NSArray::arrayWithObject(u"propres"_ns));
    EXPECT_EQ(h->accessibilityDescription().role->utf8(), "table");
    EXPECT_EQ(h->accessibilityDescription().value->utf8(),
              "Noms, propres\u00A0: 1\u00A0000, 50\u00A0%\nNoms, 2\u00A0: 500, 25\u00A0%\n"
              "2, propres\u00A0: 250, 12,5\u00A0%\n2, 2\u00A0: 250, 12,5\u00A0%");
    EXPECT_EQ(h->tableDesBandes().texte()->utf8(), "Noms\u00A0: 1\u00A0500, 75\u00A0%\n2\u00A0: 500, 25\u00A0%");
    EXPECT_FALSE(h->accessibilityDescription().action);
    // Of a single section, the band says it all.
    h->setCouleurs(couleurs(1));
    h->setDonnees(nombres({3, 1}));
    EXPECT_EQ(h->tableAccessible().texte()->utf8(), "Noms\u00A0: 3, 75\u00A0%\n2\u00A0: 1, 25\u00A0%");
}

} // namespace

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
    NSColor* const toutes[] = {NSColor::redColor(), NSColor::greenColor(), NSColor::blueColor()};
    const Ref<NSMutableArray> a = NSMutableArray::array();
    for (NSUInteger i = 0; i < combien; ++i)
        a->addObject(toutes[i % 3]);
    return a;
}

/// Says which steps a drawing took; labels are 20 points wide.
class HistogrammeTemoin : public KCHistogramme {
public:
    static void describe(ClassDescription<HistogrammeTemoin, KCHistogramme>&) {}
    using KCHistogramme::KCHistogramme;
    std::vector<std::string> etapes;
    CGFloat etiquette = 20;
    CGFloat largeurEtiquette(NSInteger) const override { return etiquette; }
    void drawGraduations_maximum_largeur_positionY(NSInteger n, CGFloat maximum, CGFloat l, CGFloat y) override {
        say("graduations", {static_cast<double>(n), maximum, l, y});
        KCHistogramme::drawGraduations_maximum_largeur_positionY(n, maximum, l, y);
    }
    void drawBandesAvecTotalMax_avecLargeur(CGFloat m, CGFloat l) override {
        say("bandes", {m, l});
        KCHistogramme::drawBandesAvecTotalMax_avecLargeur(m, l);
    }
    void drawAxesAvecLargeur_avecHauteur(CGFloat l, CGFloat h) override {
        say("axes", {l, h});
        KCHistogramme::drawAxesAvecLargeur_avecHauteur(l, h);
    }

private:
    void say(const char* quoi, const std::vector<double>& nombres) {
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
    /// In the view's coordinates, a line an operation.
    static std::string dessine(KCHistogramme* h,
                               backend::RecordingCanvas::Space espace = backend::RecordingCanvas::Space::user) {
        Enregistrement e(h->bounds().size, YES);
        h->drawRect(h->bounds());
        return e.canvas.describe(espace);
    }
};

TEST_F(KCHistogrammeTest, theStepsOfADrawing) {
    struct {
        std::vector<double> valeurs;
        NSUInteger sections;
        bool absolu;
        NSSize taille;
        std::vector<std::string> etapes;
        NSInteger bandes;
    } const lignes[] = {
        {{37, 5}, 1, true, {400, 90}, {"graduations 10 40 387.5 39", "bandes 37 358.438", "axes 387.5 39"}, 2},
        {{20, 17, 3, 2}, 2, true, {400, 90}, {"graduations 10 40 387.5 39", "bandes 37 358.438", "axes 387.5 39"}, 2},
        {{30, 90, 0}, 3, false, {400, 9}, {"graduations 10 100 387.5 22", "bandes 120 387.5", "axes 387.5 22"}, 1},
        {{30, 30, 30, 30}, 1, false, {400, 9}, {"graduations 9 27 387.5 73", "bandes 30 358.796", "axes 387.5 73"}, 4},
        // An empty chart stands for five bands; without a total the scale is the same.
        {{}, 1, true, {400, 90}, {"graduations 1 1 387.5 90", "bandes 1 387.5", "axes 387.5 90"}, 5},
        {{}, 1, false, {400, 90}, {"graduations 10 100 387.5 90", "bandes 1 387.5", "axes 387.5 90"}, 5},
        {{0, 0}, 1, true, {400, 90}, {"graduations 1 1 387.5 39", "bandes 1 387.5", "axes 387.5 39"}, 2},
        // The last band is not complete.
        {{1, 1, 1, 1, 1, 1, 90}, 2, true, {400, 9}, {"graduations 2 2 387.5 56", "bandes 2 387.5", "axes 387.5 56"}, 3},
        {{5}, 1, true, {2.4, 90}, {}, 1},
        {{5}, 1, true, {12.5, 90}, {}, 1},
        {{5}, 1, true, {22.5, 90}, {"graduations 0 5 10 22", "bandes 5 10", "axes 10 22"}, 1},
    };
    for (const auto& l : lignes) {
        const auto h = histogramme(l.valeurs, l.sections, l.taille);
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
    const std::string noir = " #000000ff", gris = " #808080ff";
    const std::string texte = dessine(h);
    std::vector<std::string> lignes;
    std::istringstream flot(texte);
    for (std::string l; std::getline(flot, l);)
        if (l.rfind("text", 0) != 0) lignes.push_back(l);
    EXPECT_THAT(lignes, ElementsAre(testing::StartsWith("line {55.5, 39.5} {55.5, 43.5}"),
                                    testing::StartsWith("line {110.5, 39.5} {110.5, 43.5}"),
                                    testing::AllOf(testing::HasSubstr("#ffffffff"), testing::HasSubstr("shadow")),
                                    testing::HasSubstr("#ff0000ff"), testing::HasSubstr(gris),
                                    testing::HasSubstr("#00ff00ff"), testing::HasSubstr(gris),
                                    testing::AllOf(testing::HasSubstr("#ffffffff"), testing::HasSubstr("shadow")),
                                    testing::HasSubstr("#00ff00ff"), testing::HasSubstr(gris),
                                    testing::StartsWith("line {0.5, 0} {0.5, 39}"),
                                    testing::StartsWith("line {0.5, 39.5} {110.5, 39.5}")))
        << texte;

    Enregistrement e({122.5, 60}, YES);
    h->drawRect(h->bounds());
    const auto fills = e.canvas.operations(Kind::fill);
    ASSERT_EQ(fills.size(), 5u);
    const auto boite = [](const backend::RecordingCanvas::Operation& op) {
        return NSRect{op.path.points[0],
                      {op.path.points[2].x - op.path.points[0].x, op.path.points[2].y - op.path.points[0].y}};
    };
    EXPECT_EQ(boite(fills[0]), (NSRect{{0.5, 5.5}, {109, 11}}));
    EXPECT_EQ(boite(fills[1]), (NSRect{{0, 5}, {82.5, 12}}));
    EXPECT_EQ(boite(fills[2]), (NSRect{{82.5, 5}, {27.5, 12}}));
    EXPECT_EQ(boite(fills[4]), (NSRect{{0, 22}, {55, 12}})); // nothing before it takes no room
    for (const auto& op : fills)
        EXPECT_EQ(op.shadow.has_value(), op.color == (backend::Color{1, 1, 1, 1}));
    const auto traits = e.canvas.operations(Kind::stroke);
    ASSERT_EQ(traits.size(), 3u);
    EXPECT_EQ(boite(traits[0]), (NSRect{{0, 5.5}, {82.5, 11}}));
    const auto textes = e.canvas.operations(Kind::text);
    ASSERT_EQ(textes.size(), 2u);
    EXPECT_EQ(NSString::from(textes[0].text)->utf8(), "2");
    EXPECT_EQ(NSString::from(textes[1].text)->utf8(), "4");
    EXPECT_NEAR(NSMidX(textes[0].rect), 55.5, 1e-9);
    EXPECT_EQ(textes[0].rect.origin.y, 45.5);
}

TEST_F(KCHistogrammeTest, gradientsAndOddEntries) {
    const auto h = histogramme({1, 1, 1}, 3, {122.5, 60});
    const Ref<NSArray> degrade = NSArray::arrayWithObjects({NSColor::redColor(), NSColor::blueColor()});
    h->setCouleurs(NSArray::arrayWithObjects({degrade, u"rien"_ns, NSColor::greenColor()}));
    h->setCouleurBordureDesBandes(nullptr);
    Enregistrement e({122.5, 60}, YES);
    h->drawRect(h->bounds());
    ASSERT_EQ(e.canvas.operations(Kind::gradient).size(), 1u);
    EXPECT_EQ(e.canvas.operations(Kind::stroke).size(), 0u);
    const auto fills = e.canvas.operations(Kind::fill);
    ASSERT_EQ(fills.size(), 1u);
    EXPECT_NEAR(fills[0].path.points[0].x, 110 * 2.0 / 3, 1e-9); // the unfilled section keeps its room
    h->setCouleurs(NSArray::arrayWithObject(NSArray::arrayWithObject(NSColor::redColor())));
    EXPECT_EQ(raised([&] { h->drawRect(h->bounds()); }), "NSRangeException");
}

TEST_F(KCHistogrammeTest, aBandOfAnyPositiveTotalIsTwoPointsLong) {
    const auto h = histogramme({1000, 0, 0.25, 0.75, -5, 2, -5, 9, -9, 3}, 2);
    h->setCouleurBordureDesBandes(nullptr);
    Enregistrement e({400, 200}, YES);
    h->drawRect(h->bounds());
    const auto fills = e.canvas.operations(Kind::fill);
    // Bands of a total of 0 or less keep their place and draw nothing, nor do negative sections.
    ASSERT_EQ(fills.size(), 4u);
    EXPECT_NEAR(fills[1].path.points[2].x, 0.5, 1e-9);
    EXPECT_NEAR(fills[2].path.points[2].x, 2.0, 1e-9);
    EXPECT_EQ(fills[2].path.points[0].y, 22);
    EXPECT_EQ(fills[3].path.points[0].x, 0);
    EXPECT_EQ(fills[3].path.points[0].y, 5 + 3 * 17);
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
    } const lignes[] = {{-50, 0},  {0, 0},   {2.5, 0},   {19.4, 0}, {19.5, 1},     {36.4, 1},
                        {36.5, 2}, {900, 2}, {1e300, 2}, {NAN, 0},  {-INFINITY, 0}};
    for (const auto& l : lignes)
        EXPECT_EQ(h->barAtPoint({-1e9, l.y}), l.bande) << l.y;
    h->setDonnees(NSArray::array());
    EXPECT_EQ(h->barAtPoint({0, 900}), 2); // until the next drawing
    (void)dessine(h);
    EXPECT_EQ(h->barAtPoint({0, 900}), 4);
    h->setLargeurBandes(0);
    h->setEspacementBandes(0);
    EXPECT_EQ(h->barAtPoint({0, 900}), 4);
    EXPECT_EQ(h->barAtPoint({0, 5}), 0);
    h->setLargeurBandes(12);
    h->setEspacementBandes(5);
    h->setFrame({{7, 9}, {50, 300}});
    EXPECT_EQ(h->origineGraphiquePourNbBandes(3), (NSPoint{7, 9 + 300 - 56}));
}

TEST_F(KCHistogrammeTest, aClickNamesTheBandAndSendsTheAction) {
    const auto h = histogramme({1, 2, 3});
    const Ref<NSWindow> w = windowAt({{100, 100}, {400, 200}});
    w->contentView()->addSubview(h);
    show(w);
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
    EXPECT_EQ(faible.get(), nullptr);
    w->close();
}

TEST_F(KCHistogrammeTest, settersAskForARedrawWhereTheyShould) {
    const auto h = histogramme({1});
    const Ref<NSWindow> w = windowAt({{100, 100}, {400, 200}});
    w->contentView()->addSubview(h);
    show(w);
    const std::vector<std::pair<bool, std::function<void()>>> cas = {
        {true, [&] { h->setDonnees(nombres({2})); }},
        {true, [&] { h->setCouleurs(couleurs(1)); }},
        {true, [&] { h->setCouleurBordureDesBandes(nullptr); }},
        {true, [&] { h->setCouleurDesAxes(NSColor::redColor()); }},
        {true, [&] { h->setOmbrage(nullptr); }},
        {true, [&] { h->setEtiquettesAbsolues(YES); }},
        {true, [&] { h->setLargeurBandes(3); }},
        {true, [&] { h->setEspacementBandes(3); }},
        {false, [&] { h->setAttributsEtiquettes(NSDictionary::dictionary()); }},
        {false, [&] { h->setClickedBar(3); }},
        {false, [&] { h->setAction(sel("clic:")); }},
        {false, [&] { h->setTarget(nullptr); }},
    };
    for (std::size_t i = 0; i < cas.size(); ++i) {
        drain();
        cas[i].second();
        EXPECT_EQ(h->needsDisplay(), cas[i].first) << i;
    }
    w->close();
}

TEST_F(KCHistogrammeTest, anArchivedOneComesBackWithTheDefaults) {
    const auto h = histogramme({1, 2, 3}, 3, {70, 80});
    h->setEspacementBandes(99);
    const Ref<KCHistogramme> lu = throughKeyedArchive<KCHistogramme>(*make<KCHistogramme>(NSRect{{0, 0}, {70, 80}}));
    ASSERT_TRUE(lu);
    EXPECT_EQ(lu->frame().size, (NSSize{70, 80}));
    EXPECT_EQ(lu->espacementBandes(), 5);
    EXPECT_EQ(lu->largeurBandes(), 12);
    EXPECT_EQ(lu->nombreSections(), 1);
    EXPECT_EQ(lu->donnees()->count(), 0u);
    EXPECT_TRUE(lu->etiquettesAbsolues());
    EXPECT_EQ(lu->ombrage(), nullptr);
}

TEST_F(KCHistogrammeTest, hostileDataDraws) {
    const double grand = 1.7e308;
    for (const auto& valeurs : std::vector<std::vector<double>>{{NAN},
                                                                {NAN, 3},
                                                                {INFINITY, 3},
                                                                {-INFINITY, 3},
                                                                {INFINITY, -INFINITY},
                                                                {grand, grand},
                                                                {9223372036854775807.0, 1},
                                                                {-5, -6},
                                                                {1e-320},
                                                                std::vector<double>(10000, 2)})
        for (const BOOL absolu : {YES, NO})
            for (const NSSize taille : {NSSize{400, 200}, NSSize{30, 5}, NSSize{0, 0}}) {
                const auto h = make<KCHistogramme>(NSRect{{0, 0}, taille});
                h->setDonnees(nombres(valeurs));
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

#include <collections/GrilleEssai.h>

#include <limits>

#include <libvue/collections/DecoupePages.h>
#include <libvue/platform/foundation/NSTimer.h>

using namespace libvue;
using namespace libvue::test;

namespace {

std::vector<NSRect> pages(std::initializer_list<NSRect> r) { return r; }

TEST(DecoupePagesTest, pagesHoldWholeRows) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    struct Row {
        const char* what;
        RangeesAImprimer r;
        std::vector<NSRect> pages;
    };
    const Row rows[] = {
        {"ten rows that lap over",
         {{552, 717}, 910, 0, 100, -10, 10},
         pages({{{0, 0}, {552, 640}}, {{0, 630}, {552, 640}}})},
        {"just one page", {{552, 717}, 640, 0, 100, -10, 7}, pages({{{0, 0}, {552, 640}}})},
        {"a row more", {{552, 717}, 730, 0, 100, -10, 8}, pages({{{0, 0}, {552, 640}}, {{0, 630}, {552, 640}}})},
        {"a header on the first",
         {{552, 717}, 1300, 60, 100, 20, 10},
         pages({{{0, 0}, {552, 640}}, {{0, 660}, {552, 700}}})},
        {"a header that leaves no room for a row",
         {{552, 717}, 1700, 650, 100, 10, 9},
         pages({{{0, 0}, {552, 640}}, {{0, 650}, {552, 650}}, {{0, 1310}, {552, 650}}})},
        {"the grid is higher than its rows", {{552, 717}, 3000, 0, 100, 0, 3}, pages({{{0, 0}, {552, 700}}})},
        {"the foot of the grid makes no page", {{552, 717}, 790, 0, 100, 0, 7}, pages({{{0, 0}, {552, 700}}})},
        {"no row", {{552, 717}, 717, 0, 100, 0, 0}, {}},
        {"less high than one item", {{552, 717}, 80, 0, 100, 0, 5}, {}},
        {"items higher than the page: one each",
         {{552, 90}, 290, 0, 100, -5, 3},
         pages({{{0, 0}, {552, 100}}, {{0, 95}, {552, 100}}, {{0, 190}, {552, 100}}})},
        {"and the header before them",
         {{552, 90}, 240, 40, 100, 0, 2},
         pages({{{0, 0}, {552, 40}}, {{0, 40}, {552, 100}}, {{0, 140}, {552, 100}}})},
        {"margins that leave nothing",
         {{552, -50}, 200, 0, 100, 0, 2},
         pages({{{0, 0}, {552, 100}}, {{0, 100}, {552, 100}}})},
        {"rows over one another", {{552, 717}, 700, 0, 100, -100, 9}, pages({{{0, 0}, {552, 717}}})},
        {"no number", {{552, 717}, 700, 0, 100, nan, 9}, pages({{{0, 0}, {552, 717}}})},
        {"a paper of no height known",
         {{552, nan}, 200, 0, 100, 0, 2},
         pages({{{0, 0}, {552, 100}}, {{0, 100}, {552, 100}}})},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        const auto cut = decoupePages(row.r);
        ASSERT_EQ(cut.size(), row.pages.size());
        for (std::size_t i = 0; i < cut.size(); ++i)
            EXPECT_TRUE(NSEqualRects(cut[i], row.pages[i])) << NSStringFromRect(cut[i])->utf8();
    }
    EXPECT_LE(decoupePages({{552, 717}, 1e300, 1e299, 100, 0, 5}).size(), 1000000u);
}

struct KCCollectionViewImpressionTest : GrilleEssai {
    void SetUp() override {
        GrilleEssai::SetUp();
        Vignette::cote = {100, 100};
        grille->setClasseVueItem(&classOf<Vignette>()); // asks for its size
        printing().addPrinter({"bureau", "Bureau", true, true});
        const auto letter = make<NSPrintInfo>();
        letter->setPaperSize({612, 792});
        NSPrintInfo::setSharedPrintInfo(letter);
    }
    /// What print: sends to the printer once Return is pressed in its panel.
    std::string imprime() {
        const auto timer = NSTimer::timerWithTimeInterval_repeats_block(0, NO, [&](NSTimer*) { windows().key(u'\r'); });
        NSRunLoop::mainRunLoop()->addTimer_forMode(timer, NSModalPanelRunLoopMode.get());
        const auto avant = printing().jobs().size();
        grille->print(nullptr);
        if (printing().jobs().size() != avant + 1) {
            ADD_FAILURE() << "no job";
            return {};
        }
        const auto& octets = printing().jobs().back().bytes;
        return {octets.begin(), octets.end()};
    }
};

TEST_F(KCCollectionViewImpressionTest, printHasEachRowOnOnePageWithItsBorder) {
    struct Row {
        int mots;
        CGFloat entete, pied, hauteur;
        int pages, premiere, suivantes; ///< rows on them
    };
    // 552 wide, items of 100 that lap over by 10: five columns.
    const Row rows[] = {{95, 0, 0, 100, 3, 7, 7},    {95, 100, 0, 100, 3, 6, 7}, {95, 0, 40, 100, 3, 7, 7},
                        {40, 700, 20, 100, 3, 0, 6}, {3, 0, 0, 100, 1, 7, 7},    {12, 0, 0, 900, 3, 1, 1}};
    for (const Row& row : rows) {
        SCOPED_TRACE(std::to_string(row.mots) + " words, header " + std::to_string(row.entete));
        Vignette::cote.height = row.hauteur;
        delegue->hauteurEntete = row.entete;
        delegue->hauteurPied = row.pied;
        grille->setDonnees(objets(row.mots));
        grille->setNomApp_etCopyright(u"Lexique"_ns, u"Droits"_ns);
        const auto lus = motsDuPDF(imprime());
        const int colonnes = 5;
        for (int i = 0; i < row.mots; ++i) {
            const int rangee = i / colonnes;
            const int page = rangee < row.premiere ? 1 : 2 + (rangee - row.premiere) / row.suivantes;
            ASSERT_EQ(pagesDuMot(lus, "mot" + std::to_string(i)), std::vector<int>{page}) << "mot" << i;
        }
        std::vector<int> toutes;
        for (int p = 1; p <= row.pages; ++p)
            toutes.push_back(p);
        for (const char* bord : {"Zerlanto", "Lexique", "Droits", "Page", "pied"})
            EXPECT_EQ(pagesDuMot(lus, bord), toutes) << bord;
        EXPECT_EQ(pagesDuMot(lus, "entete"), row.entete > 0 ? std::vector<int>{1} : std::vector<int>{});
        for (const MotPDF& m : lus) {
            if (m.mot == "Lexique") {
                EXPECT_NEAR(m.y, 20, 2.5);
                EXPECT_NEAR(m.x, 30, 1);
                EXPECT_NEAR(m.hauteur, 11.2, 1); // of 10 points
            } else if (m.mot == "Droits") {
                EXPECT_NEAR(m.x + m.largeur / 2, 306, 1);
            } else if (m.mot == std::to_string(m.page) && m.y > 700) {
                EXPECT_NEAR(m.x + m.largeur, 582, 1);
            } else if (m.mot == "mot0" && row.hauteur == 100 && row.premiere > 0) {
                EXPECT_NEAR(m.y, 45 + row.entete + 42, 4);
            }
            if (m.mot.starts_with("mot")) {
                EXPECT_LE(m.y + m.hauteur, 792 - 30 - row.pied);
            }
        }
    }
}

TEST_F(KCCollectionViewImpressionTest, printBuildsAGridOfItsOwn) {
    delegue->hauteurPied = 25;
    grille->setEspacement({33, 33});
    grille->setDonnees(objets(20));
    objet(0)->dit.clear();
    const NSRect avant = grille->frame();
    (void)imprime();
    EXPECT_TRUE(NSEqualRects(grille->frame(), avant));
    EXPECT_TRUE(NSEqualSizes(grille->espacement(), {33, 33}));
    EXPECT_EQ(objet(0)->dit, std::vector<bool>{false}) << "the other grid deselects its first object";
    const NSPrintInfo* partage = NSPrintInfo::sharedPrintInfo();
    EXPECT_EQ(partage->leftMargin(), 30);
    EXPECT_EQ(partage->rightMargin(), 30);
    EXPECT_EQ(partage->topMargin(), 45);
    EXPECT_EQ(partage->bottomMargin(), 55);
    EXPECT_FALSE(partage->isHorizontallyCentered());
    EXPECT_EQ(printing().jobs().back().job.title, "Zerlanto - Dictionnaires");
    ASSERT_FALSE(delegue->pieds.empty());
    EXPECT_TRUE(NSEqualRects(delegue->pieds.back(), {{30, 792 - 25 - 25}, {552, 25}}));
}

TEST_F(KCCollectionViewImpressionTest, onlyAGridFromAResourceHasItsRectangles) {
    grille->setDonnees(objets(200));
    for (const BOOL eveille : {NO, YES}) {
        if (eveille) grille->awakeFromNib();
        NSRange range{};
        const auto o = operation(grille);
        NSPrintOperation::setCurrentOperation(o);
        EXPECT_TRUE(grille->knowsPageRange(&range));
        NSPrintOperation::setCurrentOperation(nullptr);
        // 540 wide: five columns, forty rows of a hundred points; seven on a page.
        EXPECT_EQ(range.location, 1u);
        EXPECT_EQ(range.length, 6u);
        EXPECT_TRUE(NSEqualRects(grille->rectForPage(2), eveille ? NSRect{{0, 700}, {540, 700}} : NSZeroRect));
        for (const NSInteger page : {NSInteger{0}, NSInteger{-1}, NSInteger{7}, NSInteger{NSNotFound}})
            EXPECT_TRUE(NSEqualRects(grille->rectForPage(page), NSZeroRect));
        EXPECT_TRUE(NSEqualRects(grille->divisionForPage_(2), {{0, 700}, {540, 700}}));
        const auto pdf = printed(grille);
        EXPECT_EQ(nombreDePages(pdf->view()), 6);
        EXPECT_EQ(pagesDuMot(motsDuPDF(pdf->view()), "mot40"), std::vector<int>{2});
    }
}

TEST_F(KCCollectionViewImpressionTest, aPageEndsWithTheLastRowThatFits) {
    grille->setDonnees(objets(20));
    delegue->hauteurEntete = 40;
    grille->setEspacement({0, 10});
    const struct { CGFloat bottom, expected; } rows[] = {{140, 140}, {139, 30}, {250, 250}, {359.9, 250}, {1000, 910}};
    for (const auto& row : rows) {
        CGFloat bottom = -1;
        grille->adjustPageHeightNew_top_bottom_limit(&bottom, 777, row.bottom, 888);
        EXPECT_EQ(bottom, row.expected) << row.bottom;
    }
}

TEST_F(KCCollectionViewImpressionTest, nothingToPrintIsOneSheetWithItsBorder) {
    grille->setDonnees(objets(0));
    delegue->hauteurEntete = 30;
    const auto lus = motsDuPDF(imprime());
    EXPECT_EQ(pagesDuMot(lus, "Zerlanto"), std::vector<int>{1});
    EXPECT_EQ(pagesDuMot(lus, "entete"), std::vector<int>{1});
    // Margins that leave no room for a column.
    grille->setDonnees(objets(5));
    info->setLeftMargin(500);
    const auto pdf = printed(grille);
    EXPECT_EQ(pagesDuMot(motsDuPDF(pdf->view()), "Zerlanto"), std::vector<int>{1});
}

} // namespace

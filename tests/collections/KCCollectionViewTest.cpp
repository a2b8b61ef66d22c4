#include <collections/GrilleEssai.h>

#include <gmock/gmock.h>

#include <support/Silence.h>

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSKeyValueObserving.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

class GrilleTest : public GrilleEssai {
protected:
    void touche(const char* commande) { grille->doCommandBySelector(sel(commande)); }
};

TEST_F(GrilleTest, ColumnsAreThoseThatFitBetweenTheMargins) {
    const struct {
        CGFloat largeur, ecart;
        std::int64_t colonnes;
    } cas[] = {{320, 0, 3},  {319.9, 0, 2}, {120, 0, 1},   {119.9, 0, 0}, {0, 0, 0},      {320, 10, 2},
               {340, 10, 3}, {320, -10, 3}, {300, -10, 3}, {299, -10, 2}, {320, -99, 201}};
    for (const auto& c : cas) {
        grille->setFrameSize({c.largeur, 50});
        grille->setEspacement({c.ecart, 0});
        EXPECT_EQ(grille->nbObjetsEnLargeur(), c.colonnes) << c.largeur << " " << c.ecart;
    }
}

TEST_F(GrilleTest, AWidthOfNoColumnShowsNothingAndSelectsWithoutScrolling) {
    grille->setFrameSize({100, 200});
    grille->setDonnees(objets(10));
    grille->setSelection(4);
    EXPECT_EQ(grille->selection(), 4);
    EXPECT_EQ(grille->mesVignettesAffichees(), NSMakeRange(0, 0));
    EXPECT_EQ(grille->subviews().count(), 0u);
    EXPECT_EQ(grille->frame().size.height, 200);
}

TEST_F(GrilleTest, WithoutDataAPoolOfFourWaits) {
    grille->setDelegate(nullptr);
    show(fenetre);
    grille->setDonnees(objets(0));
    ASSERT_TRUE(grille->mesVues());
    EXPECT_EQ(grille->mesVues()->taille(), 4u);
    EXPECT_EQ(grille->subviews().count(), 0u);
    EXPECT_EQ(grille->frame().size.height, 200);
    EXPECT_FALSE(grille->aUnSuivant());
    grille->setDonnees(objets(1));
    EXPECT_TRUE(grille->aUnSuivant());
}

TEST_F(GrilleTest, NothingHappensWithoutAConformingClass) {
    const auto nu = make<KCCollectionView>(NSMakeRect(0, 0, 320, 200));
    nu->setNomNib(u"vignette"_ns);
    nu->setDonnees(objets(3));
    EXPECT_EQ(nu->donnees(), nullptr);
    nu->setClasseVueItem(&classOf<NSView>());
    nu->setDonnees(objets(3));
    EXPECT_EQ(nu->donnees(), nullptr);
    EXPECT_EQ(nu->selection(), 0); // nothing stored yet reads as the first
    nu->awakeFromNib();
    EXPECT_EQ(nu->selection(), -1);
}

TEST_F(GrilleTest, AResourceThatCannotBeBuiltIsAskedForOnce) {
    int demandes = 0;
    NSNib::registerBuilder(u"vignette"_ns, [&](NSObject*, NSMutableArray*) -> BOOL {
        ++demandes;
        return NO;
    });
    const Silence quiet;
    show(fenetre);
    grille->setDonnees(objets(10));
    grille->ajusteContenu();
    grille->setNeedsDisplay(YES);
    drain();
    EXPECT_EQ(demandes, 1);
    EXPECT_EQ(grille->mesVues(), nullptr);
}

TEST_F(GrilleTest, HeaderRowsGapsAndFooterHaveTheirHeightAndBands) {
    delegue->hauteurEntete = 30;
    delegue->hauteurPied = 12;
    grille->setDonnees(objets(2));
    show(fenetre);
    EXPECT_EQ(delegue->entetes.back(), NSMakeRect(0, 0, 320, 30));
    EXPECT_EQ(delegue->pieds.back(), NSMakeRect(0, 200 - 12, 320, 12)); // a short content: at the bottom
    grille->setEspacement({0, 5});
    grille->setDonnees(objets(100)); // 34 rows of 3
    drain();
    EXPECT_EQ(grille->frame().size, (NSSize{320, 30 + 50 + 33 * 55 + 12}));
    EXPECT_EQ(delegue->pieds.back(), NSMakeRect(0, 30 + 50 + 33 * 55, 320, 12));
    delegue->entetes.clear();
    defile(100);
    EXPECT_TRUE(delegue->entetes.empty());
}

TEST_F(GrilleTest, SelectionTellsTheObjectsOnTheNewListAlready) {
    const auto a = objets(5), b = objets(5, 100);
    grille->setDonnees(a);
    grille->setSelection(2);
    EXPECT_THAT(a->at<Objet>(2)->dit, ElementsAre(true));
    grille->setDonnees(b);
    EXPECT_THAT(a->at<Objet>(2)->dit, ElementsAre(true)); // is not told
    EXPECT_THAT(b->at<Objet>(2)->dit, ElementsAre(false));
    EXPECT_EQ(grille->selection(), -1);
    grille->setSelectedObject(objet(3));
    EXPECT_EQ(grille->selection(), 3);
    EXPECT_EQ(grille->selectedObject(), objet(3));
    for (const NSInteger i : {NSInteger{5}, NSInteger{-7}, NSNotFound}) {
        grille->setSelection(i);
        EXPECT_EQ(grille->selection(), -1);
        EXPECT_EQ(grille->selectedObject(), nullptr);
    }
    EXPECT_THAT(objet(3)->dit, ElementsAre(true, false));
}

/// Notes which keys changed.
class Temoin : public NSObject {
public:
    static void describe(ClassDescription<Temoin>&) {}
    std::vector<std::string> entendu;
    void observeValueForKeyPath_ofObject_change_context(NSString* path, NSObject*, NSDictionary* change,
                                                        void*) override {
        const auto* avant = change->get<NSNumber>(NSKeyValueChangeNotificationIsPriorKey);
        entendu.push_back((avant ? "-" : "+") + path->utf8());
    }
};

TEST_F(GrilleTest, NeighboursAreAnnouncedAroundTheSelection) {
    grille->setDonnees(objets(3));
    const auto t = make<Temoin>();
    for (NSString* k : {u"aUnSuivant"_ns, u"aUnPrecedent"_ns, u"selection"_ns})
        grille->addObserver_forKeyPath_options_context(t, k, NSKeyValueObservingOptionPrior, nullptr);
    grille->setSelection(1);
    EXPECT_THAT(t->entendu, ElementsAre("-aUnPrecedent", "-aUnSuivant", "-selection", "+selection", "+aUnSuivant",
                                        "+aUnPrecedent"));
    t->entendu.clear();
    grille->willChangeValueForKey(u"selection"_ns); // what depends on it follows
    grille->didChangeValueForKey(u"selection"_ns);
    EXPECT_EQ(t->entendu.size(), 6u);
    for (NSString* k : {u"aUnSuivant"_ns, u"aUnPrecedent"_ns, u"selection"_ns})
        grille->removeObserver_forKeyPath(t, k);
}

TEST_F(GrilleTest, KeysMoveWithoutWrapping) {
    const struct {
        NSInteger depuis;
        const char* commande;
        NSInteger vers;
    } cas[] = {{-1, "moveRight:", 0},
               {-1, "moveUp:", 0},
               {0, "moveLeft:", 0},
               {0, "moveRight:", 1},
               {4, "moveRight:", 4},
               {3, "moveLeft:", 2},
               {1, "moveDown:", 4},
               {2, "moveDown:", 2},
               {4, "moveUp:", 1},
               {2, "moveUp:", 2},
               {0, "moveDown:", 3},
               {1, "selectionnerSuivant:", 2},
               {2, "selectionnerPrecedent:", 1}};
    grille->setDonnees(objets(5)); // three columns
    for (const auto& c : cas) {
        grille->setSelection(c.depuis);
        touche(c.commande);
        EXPECT_EQ(grille->selection(), c.vers) << c.depuis << " " << c.commande;
    }
    EXPECT_EQ(delegue->changements, 0);
    grille->setDonnees(objets(0));
    for (const auto& c : cas) {
        touche(c.commande);
        EXPECT_EQ(grille->selection(), -1);
    }
}

TEST_F(GrilleTest, KeysScrollWithoutSelecting) {
    show(fenetre);
    grille->setDonnees(objets(300)); // 100 rows
    fenetre->makeFirstResponder(grille);
    const auto haut = [&] { return defilement->documentVisibleRect().origin.y; };
    touche("scrollToEndOfDocument:");
    EXPECT_EQ(haut(), 5000 - 200);
    touche("scrollPageUp:");
    EXPECT_LT(haut(), 4800);
    touche("scrollToBeginningOfDocument:");
    EXPECT_EQ(haut(), 0);
    touche("scrollPageDown:");
    EXPECT_GT(haut(), 100);
    EXPECT_EQ(grille->selection(), -1);
    grille->setSelection(299); // comes into sight
    EXPECT_EQ(haut(), 4800);
}

TEST_F(GrilleTest, ClicksSelectTheItemUnderThemAndSayItAlways) {
    grille->setDonnees(objets(7));
    show(fenetre);
    const struct {
        CGFloat x, y;
        int fois;
        NSInteger choisi;
        std::vector<int> doubles;
    } cas[] = {
        {15, 5, 1, 0, {}},     {215, 60, 1, 5, {}}, // second row, third column
        {5, 5, 1, -1, {}},                          // the margin
        {115, 110, 3, -1, {}},                      // no item: seven make two rows and one
        {115, 60, 3, 4, {4}},                       // the second of three opens
    };
    for (const auto& c : cas) {
        delegue->changements = 0;
        const NSPoint p = grille->convertPoint_toView({c.x, c.y}, nullptr);
        for (int i = 0; i < c.fois; ++i)
            click(fenetre, p.x, p.y);
        EXPECT_EQ(grille->selection(), c.choisi) << c.x;
        EXPECT_EQ(delegue->changements, c.fois) << c.x;
        EXPECT_EQ(delegue->doubles, c.doubles) << c.x;
        pass(2);
    }
    EXPECT_EQ(fenetre->firstResponder(), grille.get());
}

TEST_F(GrilleTest, ADelegateMayChangeTheDataWhileItIsAsked) {
    show(fenetre);
    const auto court = objets(2, 500);
    bool fait = false;
    delegue->enDemandant = [&] {
        if (std::exchange(fait, true)) return;
        grille->setDonnees(court);
    };
    grille->setDonnees(objets(300));
    fait = false;
    defile(2000);
    drain();
    ASSERT_EQ(grille->donnees(), court.get());
    EXPECT_EQ(grille->mesVignettesAffichees(), NSMakeRange(0, 2));
    delegue->enDemandant = {};
    // And while an item is bound: a list that shrinks under the grid, and one that is replaced.
    const Ref<NSMutableArray> liste = NSMutableArray::arrayWithArray(objets(300));
    Vignette::enLiant = [&] {
        if (liste->count() > 4) liste->removeLastObject();
    };
    grille->setDonnees(liste);
    drain();
    int fois = 0;
    Vignette::enLiant = [&] {
        if (++fois == 5) grille->setDonnees(objets(9, 900));
    };
    grille->setDonnees(objets(300));
    drain();
    Vignette::enLiant = {};
    EXPECT_EQ(grille->mesVignettesAffichees(), NSMakeRange(0, 9));
    for (const Vignette* v : vignettes())
        EXPECT_TRUE(v->isHidden() || v->numero() >= 900);
}

TEST_F(GrilleTest, ViewsRemovedOrHiddenBehindItsBackComeBack) {
    grille->setDonnees(objets(1000));
    show(fenetre);
    const Ref<Vignette> retiree = vignettes()[3], cachee = vignettes()[4];
    retiree->removeFromSuperview();
    cachee->setHidden(YES);
    cachee->setObjetConnectay(objet(77));
    cachee->setFrameOrigin({-500, -500});
    grille->ajusteContenu();
    EXPECT_EQ(retiree->superview(), grille.get());
    EXPECT_FALSE(cachee->isHidden());
    EXPECT_NE(cachee->numero(), 77);
    EXPECT_GE(cachee->frame().origin.x, 10);
}

} // namespace

#include <alerts/AlerteFixture.h>

#include <libvue/platform/appkit/AlertLayout.h>
#include <libvue/platform/appkit/NSAccessibility.h>
#include <libvue/platform/appkit/NSAlert.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSException.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

class Aide : public NSObject {
public:
    static void describe(ClassDescription<Aide>& c) { c.answers<&Aide::alertShowHelp>(op::alertShowHelp); }
    int demandes = 0;
    BOOL alertShowHelp(NSAlert*) { return ++demandes > 0; }
};

class NSAlertTest : public AlerteFixture {
protected:
    Ref<NSAlert> alerte;
    std::vector<NSInteger> codes;

    void SetUp() override {
        AlerteFixture::SetUp();
        alerte = make<NSAlert>();
        alerte->setMessageText(u"Remplacer le document ?"_ns);
        alerte->setInformativeText(u"L’ancien sera perdu."_ns);
    }
    void TearDown() override {
        alerte = nullptr;
        AlerteFixture::TearDown();
    }
    void enFeuille(std::initializer_list<Ref<NSString>> titres = {}) {
        for (const auto& s : titres)
            alerte->addButtonWithTitle(s);
        alerte->beginSheetModalForWindow_completionHandler(fenetre, [this](NSInteger c) { codes.push_back(c); });
        drain();
    }
    [[nodiscard]] NSResponder* focus() const { return alerte->window()->firstResponder(); }
    [[nodiscard]] NSButton* bouton(NSUInteger i) const {
        const auto tous = alerte->buttons();
        return as<NSButton>(tous->objectAtIndex(i));
    }
};

TEST_F(NSAlertTest, TheFirstButtonHasReturnAndTheOneThatCancelsEscape) {
    enFeuille({u"Remplacer"_ns, u"Annuler"_ns, u"Garder les deux"_ns});
    EXPECT_EQ(titres(alerte->window()), "Remplacer|Annuler|Garder les deux");
    touche(kEchap);
    enFeuille();
    touche(kRetour);
    // The order of adding, whatever the tags are.
    bouton(2)->setTag(5);
    enFeuille();
    clique(bouton(2));
    drain();
    EXPECT_THAT(codes, ElementsAre(1001, 1000, 1002));
}

TEST_F(NSAlertTest, TabGoesThroughTheButtonsFirstAndSpacePressesTheFocusedOne) {
    alerte->setShowsSuppressionButton(YES);
    alerte->setShowsHelp(YES);
    enFeuille({u"Un"_ns, u"Deux"_ns, u"Trois"_ns});
    EXPECT_EQ(focus(), bouton(0));
    touche(kTab);
    EXPECT_EQ(focus(), bouton(1));
    touche(kTab);
    touche(kTab);
    EXPECT_EQ(as<NSButton>(focus())->accessibilityLabel()->utf8(), "Aide");
    touche(kTab);
    EXPECT_EQ(focus(), alerte->suppressionButton());
    touche(u' ');
    EXPECT_EQ(alerte->suppressionButton()->state(), NSOnState);
    touche(kTab);
    EXPECT_EQ(focus(), bouton(0)) << "round";
    touche(kTab);
    touche(u' ');
    EXPECT_THAT(codes, ElementsAre(1001));
}

TEST_F(NSAlertTest, AnAlertWithoutAWayOutStays) {
    enFeuille({u"Un"_ns, u"Deux"_ns});
    touche(kEchap);
    alerte->window()->performClose(nullptr);
    EXPECT_EQ(windows().beeps(), 2u);
    EXPECT_TRUE(alerte->window()->isVisible());
    touche(kRetour);

    // One button is a way out, for the desktop as well.
    const auto seule = make<NSAlert>();
    quandModale([&](NSWindow* w) { w->performClose(nullptr); });
    EXPECT_EQ(seule->runModal(), 1000);
    quandModale([&](NSWindow* w) { w->close(); });
    EXPECT_EQ(seule->runModal(), NSRunAbortedResponse);
}

TEST_F(NSAlertTest, HelpIsTheDelegatesAndDoesNotAnswer) {
    const auto aide = make<Aide>();
    alerte->setShowsHelp(YES);
    enFeuille();
    for (NSObject* delegue : {static_cast<NSObject*>(aide), static_cast<NSObject*>(nullptr)}) {
        alerte->setDelegate(delegue);
        clique(boutons(alerte->window()).back());
        drain();
    }
    EXPECT_EQ(aide->demandes, 1);
    EXPECT_EQ(windows().beeps(), 1u);
    EXPECT_TRUE(codes.empty());
    touche(kRetour);
}

TEST_F(NSAlertTest, LongTextsScrollByTheKeysAndTheWindowStaysOnTheScreen) {
    alerte->setInformativeText(u""_ns->stringByPaddingToLength_withString_startingAtIndex(20000, u"encore "_ns, 0));
    enFeuille({u"OK"_ns});
    NSScrollView* defile = nullptr;
    for (NSView* v : alerte->window()->contentView()->subviews())
        if (auto* s = as<NSScrollView>(v)) defile = s;
    ASSERT_TRUE(defile);
    EXPECT_LE(alerte->window()->frame().size.height, 560);
    EXPECT_GT(defile->documentView()->frame().size.height, defile->frame().size.height);
    const auto haut = [&] { return NSMinY(defile->documentVisibleRect()); };
    EXPECT_EQ(haut(), 0);
    touche(char16_t{NSPageDownFunctionKey});
    EXPECT_GT(haut(), 100) << "with the focus on the button";
    touche(char16_t{NSEndFunctionKey});
    EXPECT_NEAR(NSMaxY(defile->documentVisibleRect()), defile->documentView()->frame().size.height, 1);
    touche(kTab);
    EXPECT_EQ(focus(), defile->documentView());
    touche(char16_t{NSHomeFunctionKey});
    EXPECT_EQ(haut(), 0);
    touche(char16_t{NSDownArrowFunctionKey});
    EXPECT_GT(haut(), 0);
    touche(kRetour);
    EXPECT_THAT(codes, ElementsAre(1000));

    // The sheet of a window that lies low.
    fenetre->setFrame_display(NSMakeRect(200, 10, 600, 300), YES);
    enFeuille();
    EXPECT_GE(NSMinY(alerte->window()->frame()), 0);
    EXPECT_GT(alerte->window()->frame().size.height, 150);
    touche(kRetour);
}

TEST_F(NSAlertTest, AssistiveToolsAreToldAtOnce) {
    std::vector<std::string> dit;
    auto* centre = NSNotificationCenter::defaultCenter();
    const auto jeton = centre->addObserverForName_object_queue_usingBlock(
        NSAccessibilityAnnouncementRequestedNotification, alerte->window(), nullptr, [&](NSNotification* n) {
            dit.push_back(as<NSString>(n->userInfo()->objectForKey(NSAccessibilityAnnouncementKey.get()))->utf8());
        });
    enFeuille();
    EXPECT_THAT(dit, ElementsAre("Remplacer le document ?\nL’ancien sera perdu."));
    centre->removeObserver(jeton);
    EXPECT_EQ(alerte->window()->contentView()->accessibilityDescription().role->utf8(), "alert");
    EXPECT_EQ(nomDe(alerte->window()), "Remplacer le document ?");
    // It is up: it cannot be shown again.
    EXPECT_THROW(alerte->beginSheetModalForWindow_completionHandler(fenetre, {}), NSExceptionRaised);
    EXPECT_THROW((void)alerte->runModal(), NSExceptionRaised);
    touche(kRetour);
    EXPECT_EQ(codes.size(), 1u);
    EXPECT_THROW(alerte->beginSheetModalForWindow_completionHandler(nullptr, {}), NSExceptionRaised);
}

// Where everything goes.

AlertParts parties(std::vector<CGFloat> boutons, CGFloat message = 16, CGFloat texte = 30) {
    AlertParts p;
    p.message = [=](CGFloat) { return message; };
    p.informative = [=](CGFloat) { return texte; };
    p.buttonWidths = std::move(boutons);
    return p;
}

TEST(AlertLayoutTest, ButtonsLieInARowAsLongAsTheyFit) {
    struct {
        const char* nom;
        std::vector<CGFloat> largeurs;
        bool aide, empiles;
    } const rangees[] = {
        {"one", {40}, false, false},
        {"three", {90, 100, 60}, false, false},
        {"wider than the texts", {150, 150, 150}, false, false},
        {"just so", {246, 246}, false, false},
        {"one point too many", {251, 252}, false, true},
        {"with help no more", {246, 246}, true, true},
        {"one that is too wide", {900}, false, true},
        {"eight", {100, 100, 100, 100, 100, 100, 100, 100}, true, true},
    };
    for (const auto& r : rangees) {
        SCOPED_TRACE(r.nom);
        AlertParts p = parties(r.largeurs);
        p.help = r.aide;
        const AlertPlaces a = placeAlert(p);
        EXPECT_EQ(a.stacked, r.empiles);
        ASSERT_EQ(a.buttons.size(), r.largeurs.size());
        EXPECT_EQ(NSMaxX(a.buttons[0]), a.size.width - 20) << "the first one stands on the right";
        const NSRect dedans = NSInsetRect({{0, 0}, a.size}, 20, 20);
        for (std::size_t i = 0; i < a.buttons.size(); ++i) {
            const NSRect b = a.buttons[i], avant = i > 0 ? a.buttons[i - 1] : NSOffsetRect(b, 1e4, -1e4);
            EXPECT_TRUE(NSContainsRect(dedans, b)) << i;
            EXPECT_FALSE(NSIntersectsRect(b, a.help)) << i;
            EXPECT_TRUE(a.stacked ? NSMinY(b) > NSMaxY(avant) : NSMaxX(b) < NSMinX(avant)) << i;
            EXPECT_TRUE(a.stacked || b.size.width >= r.largeurs[i]) << i;
        }
    }
}

TEST(AlertLayoutTest, TextsScrollBeyondTheLimit) {
    struct {
        CGFloat message, texte;
        bool message_defile, texte_defile;
    } const rangees[] = {{16, 100, false, false},
                         {16, 2000, false, true},
                         {2000, 30, true, false},
                         {2000, 2000, true, true},
                         {100, 300, false, true}};
    for (const auto& r : rangees) {
        SCOPED_TRACE(std::to_string(r.message) + " " + std::to_string(r.texte));
        AlertParts p = parties({80, 80}, r.message, r.texte);
        p.suppression = {200, 18};
        p.maxHeight = 400;
        const AlertPlaces a = placeAlert(p);
        EXPECT_LE(a.size.height, 400);
        EXPECT_EQ(a.messageScrolls > 0, r.message_defile);
        EXPECT_EQ(a.informativeScrolls > 0, r.texte_defile);
        EXPECT_GT(NSMinY(a.informative), NSMaxY(a.message));
        EXPECT_GT(NSMinY(a.suppression), NSMaxY(a.informative));
        EXPECT_GT(NSMinY(a.buttons[0]), NSMaxY(a.suppression));
        EXPECT_EQ(a.size.height - NSMaxY(a.buttons[0]), 20);
    }
}

} // namespace

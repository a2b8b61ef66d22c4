#include <appkit/Cible.h>
#include <gmock/gmock.h>
#include <support/PageWeb.h>

#include <libvue/alerts/KAlerteEphemere.h>
#include <libvue/platform/appkit/NSAccessibility.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSForm.h>
#include <libvue/platform/appkit/NSFormCell.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSPasteboard.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSText.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/search/KPanneauRecherche.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Finds or not, as it is told, and says what it was asked.
class Client : public NSView {
public:
    static void describe(ClassDescription<Client, NSView>& c) {
        c.answers<&Client::cherche>(op::cherche_direction_respecterCasse_boucle_typeRecherche);
        c.answers<&Client::donneSelection>(op::donneSelection);
    }
    explicit Client(Log& log) : NSView({{0, 0}, {300, 200}}), log_(&log) {}
    BOOL trouve = YES;
    Ref<NSString> selection;

private:
    BOOL cherche(NSString* texte, BOOL avant, BOOL casse, BOOL boucle, int type) {
        log_->push_back(texte->utf8() + (avant ? " avant" : " arrière") + (casse ? " casse" : "") +
                        (boucle ? " boucle" : "") + " " + std::to_string(type));
        return trouve;
    }
    Ref<NSString> donneSelection() { return selection; }
    Log* log_;
};

class ClientLimite : public Client {
public:
    static void describe(ClassDescription<ClientLimite, Client>& c) {
        c.answers<&ClientLimite::contientSeulement>(op::contientSeulement);
    }
    using Client::Client;
    BOOL limite = YES;

private:
    BOOL contientSeulement() { return limite; }
};

class Delegue : public NSObject {
public:
    static void describe(ClassDescription<Delegue>& c) { c.answers<&Delegue::panneau>(op::panneauRecherche); }
    Ref<KPanneauRecherche> sien;

private:
    KPanneauRecherche* panneau() { return sien; }
};

class KPanneauRechercheTest : public AppFixture {
protected:
    Ref<KPanneauRecherche> panneau;
    Ref<NSWindow> fenetre;
    Ref<Client> client;
    Ref<NSObject> ecoute;

    void SetUp() override {
        panneau = KPanneauRecherche::panneauDeRessource();
        ASSERT_NE(panneau, nullptr);
        fenetre = windowAt({{400, 300}, {300, 200}});
        client = make<Client>(log);
        fenetre->contentView()->addSubview(client);
        show(fenetre);
        panneau->initialisePourClient(client);
        ecoute = NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
            NSAccessibilityAnnouncementRequestedNotification, nullptr, nullptr,
            [this](NSNotification*) { log.push_back("annonce"); });
    }
    void TearDown() override {
        NSNotificationCenter::defaultCenter()->removeObserver(ecoute);
        KAlerteEphemere::annuleAlerte();
        NSPasteboard::pasteboardWithName(NSFindPboard)->clearContents();
        panneau = nullptr;
        AppFixture::TearDown();
    }
    [[nodiscard]] std::string champ() const { return panneau->formulaire()->cellAtIndex(0)->stringValue()->utf8(); }
    /// What other applications read.
    [[nodiscard]] std::string partage() const {
        const auto octets = backend.findText().read("text/plain");
        return {octets.begin(), octets.end()};
    }
    void partageAilleurs(const std::string& texte) const {
        backend.findText().setFromElsewhere({{"text/plain", {texte.begin(), texte.end()}}});
    }
    void commande(NSInteger tag) const {
        const auto element = make<NSMenuItem>(u"Rechercher"_ns, nullptr, nullptr);
        element->setTag(tag);
        panneau->actionPanneauRecherche(element);
    }
    void clique(NSView* vue) {
        const NSRect cadre = vue->convertRect_toView(vue->bounds(), nullptr);
        Geste{windows(), panneau}.at(NSMidX(cadre), NSMidY(cadre)).down().up().end();
    }
    [[nodiscard]] NSButton* precedent() const {
        for (NSView* v : panneau->contentView()->subviews())
            if (auto* b = as<NSButton>(v); b && b->tag() == kRecherchePrecedent) return b;
        return nullptr;
    }
    /// The notice stands in a child of the client's window.
    [[nodiscard]] bool avisMontre() const {
        const Ref<NSArray> enfants(fenetre->childWindows());
        return enfants && enfants->count() > 0;
    }
    [[nodiscard]] bool texteEnSelection() const {
        auto* editeur = as<NSText>(panneau->firstResponder());
        return editeur && editeur->selectedRange() == NSRange{0, editeur->string()->length()};
    }
};

TEST_F(KPanneauRechercheTest, TheClientHearsWhatThePanelSays) {
    EXPECT_EQ(panneau->typeRech()->numberOfItems(), 4);
    EXPECT_EQ(panneau->defaultButtonCell(), panneau->suivant()->buttonCell());
    panneau->setString(u"été"_ns);
    commande(kRechercheSuivant);
    panneau->ignorerMajuscules()->setState(NSOffState);
    panneau->boiteBoucle()->setState(NSOffState);
    panneau->typeRech()->selectItemAtIndex(2);
    commande(kRecherchePrecedent);
    EXPECT_THAT(taken(), ElementsAre("été avant boucle 0", "été arrière casse 2"));
    for (const NSInteger tag : {-1, 0, 4, 5, 6, 8})
        commande(tag);
    panneau->actionPanneauRecherche(nullptr);
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_FALSE(panneau->isVisible());

    EXPECT_EQ(KPanneauRecherche::panneauRecherche(), nullptr) << "no delegate";
    const auto delegue = make<Delegue>();
    delegue->sien = panneau;
    NSApp()->setDelegate(delegue);
    EXPECT_EQ(KPanneauRecherche::panneauRecherche(), panneau.get());
    NSApp()->setDelegate(nullptr);
}

TEST_F(KPanneauRechercheTest, ReturnClosesAndAClickDoesNot) {
    const auto espaceSurPrecedent = [&] {
        panneau->makeFirstResponder(precedent());
        windows().key(u' ');
    };
    struct Rangee {
        const char* nom;
        std::function<void()> geste;
        bool resteTrouve, avisIntrouvable;
    };
    const Rangee rangees[] = {
        {"Return", [&] { windows().key(u'\r'); }, false, false},
        {"click", [&] { clique(panneau->suivant()); }, true, false},
        {"click on previous", [&] { clique(precedent()); }, true, false},
        {"key on previous", espaceSurPrecedent, true, false},
        {"command", [&] { commande(kRechercheSuivant); }, true, true},
    };
    for (const Rangee& r : rangees)
        for (const BOOL trouve : {YES, NO}) {
            SCOPED_TRACE(std::string(r.nom) + (trouve ? ", found" : ", not found"));
            KAlerteEphemere::annuleAlerte();
            panneau->setString(u"mot"_ns);
            commande(kRechercheMontrer);
            drain();
            ASSERT_TRUE(panneau->isKeyWindow());
            EXPECT_TRUE(panneau->msgIntrouvable()->isHidden());
            EXPECT_TRUE(texteEnSelection());
            (void)taken();
            client->trouve = trouve;
            windows().typeText(u"é"); // replaces what is selected
            drain();
            r.geste();
            drain();
            const Log entendu = taken();
            ASSERT_FALSE(entendu.empty());
            EXPECT_EQ(entendu[0].find("é a"), 0u) << entendu[0];
            EXPECT_EQ(entendu.size(), trouve ? 1u : 2u) << "announced once where it was not found";
            EXPECT_EQ(panneau->isVisible(), !trouve || r.resteTrouve);
            EXPECT_EQ(panneau->msgIntrouvable()->isHidden(), trouve);
            EXPECT_EQ(avisMontre(), !trouve && r.avisIntrouvable);
            EXPECT_TRUE(texteEnSelection());
            EXPECT_EQ(partage(), "é");
        }
}

TEST_F(KPanneauRechercheTest, EscapeAndTheKeyboardAlone) {
    const auto touches = [&](std::u16string_view toutes) {
        for (const char16_t touche : toutes)
            windows().key(touche);
        drain();
    };
    partageAilleurs("mer");
    commande(kRechercheMontrer);
    drain();
    Log noms; // from the text round to it, as assistive tools call them
    for (touches(u"\t"); !as<NSText>(panneau->firstResponder()) && noms.size() < 9; touches(u"\t"))
        noms.push_back(as<NSView>(panneau->firstResponder())->accessibilityDescription().label->utf8());
    EXPECT_THAT(noms, ElementsAre("Type", "Ignorer les majuscules", "Reprendre au début", "Précédent", "Suivant"));
    touches(u"\t");
    EXPECT_EQ(panneau->firstResponder(), panneau->typeRech());
    // Its menu has a loop of its own, which finds all three.
    touches(u"\uF701\uF701\r");
    const NSInteger choisi = panneau->typeRech()->indexOfSelectedItem();
    EXPECT_GT(choisi, 0);
    touches(u"\t ");
    EXPECT_TRUE(panneau->respecterCasse());
    touches(u"\t ");
    EXPECT_FALSE(panneau->boucle());
    touches(u"\r");
    EXPECT_THAT(taken(), ElementsAre("mer avant casse " + std::to_string(choisi)));
    EXPECT_FALSE(panneau->isVisible());
    commande(kRechercheMontrer);
    drain();
    touches(u"\u001B");
    EXPECT_FALSE(panneau->isVisible());
}

TEST_F(KPanneauRechercheTest, TheFindTextIsShared) {
    partageAilleurs("d’ailleurs");
    commande(kRechercheMontrer);
    drain();
    EXPECT_EQ(champ(), "d’ailleurs");
    windows().typeText(u"ici");
    drain();
    EXPECT_EQ(partage(), "d’ailleurs") << "what is only typed is nobody's yet";
    EXPECT_EQ(panneau->string()->utf8(), "ici");
    EXPECT_EQ(partage(), "ici");
    panneau->setString(nullptr);
    EXPECT_EQ(champ(), "ici");
    panneau->setString(u"là"_ns);
    EXPECT_EQ(champ() + partage(), "làlà");
    backend.findText().setFromElsewhere({{"image/png", {1, 2}}});
    commande(kRechercheMontrer);
    EXPECT_EQ(champ(), "là") << "there is no text";

    for (const auto& selection : {u"choisi"_ns, Ref<NSString>()}) {
        client->selection = selection;
        commande(kRechercheUtiliserSelection);
        EXPECT_EQ(champ() + partage(), "choisichoisi");
        EXPECT_TRUE(texteEnSelection());
    }
}

TEST_F(KPanneauRechercheTest, AClientThatOnlyFindsTextsTakesTheTypeAway) {
    panneau->typeRech()->selectItemAtIndex(2);
    const auto limite = make<ClientLimite>(log);
    panneau->initialisePourClient(limite);
    EXPECT_EQ(panneau->typeRech()->indexOfSelectedItem(), 0);
    EXPECT_FALSE(panneau->typeRech()->isEnabled());
    limite->limite = NO;
    panneau->initialisePourClient(limite); // already the client: not asked again
    EXPECT_FALSE(panneau->typeRech()->isEnabled());
    panneau->initialisePourClient(client);
    EXPECT_TRUE(panneau->typeRech()->isEnabled());
    EXPECT_EQ(panneau->typeRech()->indexOfSelectedItem(), 0) << "the choice is not given back";
    panneau->initialisePourClient(limite);
    EXPECT_TRUE(panneau->typeRech()->isEnabled()) << "it answers NO now";
}

TEST_F(KPanneauRechercheTest, WithoutAClientOrViewsNothingIsReported) {
    panneau->setString(u"mot"_ns);
    client->trouve = NO;
    commande(kRechercheMontrer);
    clique(panneau->suivant());
    EXPECT_FALSE(panneau->msgIntrouvable()->isHidden());
    client->removeFromSuperview();
    client = nullptr;
    drain();
    (void)taken();
    clique(panneau->suivant());
    commande(kRechercheUtiliserSelection);
    EXPECT_FALSE(panneau->msgIntrouvable()->isHidden()) << "it stays as it was";
    EXPECT_EQ(champ(), "mot");

    panneau->close();
    panneau = make<KPanneauRecherche>();
    client = make<Client>(log);
    panneau->initialisePourClient(client);
    for (NSInteger tag = 1; tag < 8; ++tag)
        commande(tag);
    EXPECT_TRUE(panneau->isVisible());
    EXPECT_THAT(taken(), IsEmpty()) << "there is no text to search for";
}

TEST_F(KPanneauRechercheTest, ThePlatformsFindPanelIsClosed) {
    const auto fenetreNommee = windowAt({{0, 0}, {100, 100}});
    const auto autre = make<NSPanel>(), premier = make<NSPanel>(), second = make<NSPanel>();
    fenetreNommee->setFrameAutosaveName(u"Autre"_ns);
    autre->setFrameAutosaveName(u"Outils"_ns);
    premier->setFrameAutosaveName(u"NSFindPanel"_ns);
    for (NSWindow* w : {fenetreNommee.get(), static_cast<NSWindow*>(autre), static_cast<NSWindow*>(premier),
                        static_cast<NSWindow*>(second)})
        show(w);
    commande(kRechercheMontrer);
    EXPECT_FALSE(premier->isVisible());
    EXPECT_TRUE(fenetreNommee->isVisible() && autre->isVisible() && second->isVisible() && panneau->isVisible());
}

TEST_F(KPanneauRechercheTest, WebViewsAreClients) {
    const auto page = make<Page>();
    page->plage = make<Plage>("page");
    panneau->initialisePourClient(page);
    EXPECT_FALSE(panneau->typeRech()->isEnabled());
    panneau->setString(u"aujourd'hui l’'"_ns);
    commande(kRecherchePrecedent);
    EXPECT_EQ(page->cherchee, "aujourd’hui l’’ arrière boucle");
    EXPECT_TRUE(panneau->msgIntrouvable()->isHidden());
    commande(kRechercheUtiliserSelection);
    EXPECT_EQ(champ(), "page");
    page->plage = nullptr;
    commande(kRechercheUtiliserSelection);
    EXPECT_EQ(champ(), "page");
}

} // namespace

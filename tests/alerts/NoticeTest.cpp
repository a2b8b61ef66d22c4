#include <appkit/AppFixture.h>

#include <gmock/gmock.h>

#include <libvue/alerts/KAlerteEphemere.h>
#include <libvue/platform/appkit/CGWindowLevel.h>
#include <libvue/platform/appkit/NSAccessibility.h>
#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSWindowController.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNotification.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

/// Something that knows its window, and has none at first.
class AvecFenetre : public NSObject {
public:
    static void describe(ClassDescription<AvecFenetre>& c) { c.answers<&AvecFenetre::window>("window"); }
    NSWindow* window() { return fenetre; }
    Ref<NSWindow> fenetre;
};

struct NoticeTest : AppFixture {
    Ref<NSWindow> fenetre;

    void SetUp() override {
        fenetre = windowAt({{200, 300}, {600, 400}});
        show(fenetre);
    }
    void TearDown() override {
        KAlerteEphemere::annuleAlerte();
        fenetre = nullptr;
        AppFixture::TearDown();
    }
    static void montre(NSObject* place, BOOL enfant = YES, NSString* texte = nullptr) {
        KAlerteEphemere::alerteAvecTitre_explication_icone_emplacement_commeEnfant(u"Copié"_ns, texte, nullptr, place,
                                                                                   enfant);
        drain();
    }
    /// Those on the screen.
    static std::vector<NSPanel*> avis() {
        std::vector<NSPanel*> tous;
        const Ref<NSArray> fenetres = NSApp()->orderedWindows();
        for (NSUInteger i = 0; i < fenetres->count(); ++i)
            if (auto* p = fenetres->at<NSPanel>(i)) tous.push_back(p);
        return tous;
    }
};

TEST_F(NoticeTest, isCentredOverWhatItConcerns) {
    const auto vue = viewIn(fenetre, {{51, 40}, {101, 31}}, "v");
    const auto defilement = make<NSScrollView>(NSMakeRect(300, 100, 200, 150));
    const auto document = make<NSView>(NSMakeRect(0, 0, 200, 3000));
    defilement->setDocumentView(document);
    fenetre->contentView()->addSubview(defilement);
    const auto libre = make<NSView>(NSMakeRect(10, 20, 300, 100));
    const auto cible = make<AvecFenetre>(), sansFenetre = make<AvecFenetre>();
    cible->fenetre = fenetre;
    const auto controleur = make<NSWindowController>(fenetre.get());
    const Ref<NSString> texte = u"x"_ns;
    const NSRect cadre = fenetre->frame(), ecran = NSScreen::mainScreen()->frame();

    struct Row {
        const char* nom;
        NSObject* place;
        NSRect autour;
        BOOL enfant, fermee = NO;
    };
    for (const Row& row : {
             Row{"a view", vue, {{251, 340}, {101, 31}}, YES},
             Row{"a document", document, {{500, 400}, {200, 150}}, YES},
             Row{"a view without a window", libre, {{210, 320}, {300, 100}}, YES},
             Row{"a window", fenetre, cadre, YES},
             Row{"what answers window", cible, cadre, YES},
             Row{"a window's controller", controleur, cadre, YES},
             Row{"what has no window", sansFenetre, NSZeroRect, YES},
             Row{"nothing", nullptr, ecran, NO},
             Row{"any object", texte, ecran, NO},
             Row{"a view where no window was ever main", libre, {{10, 20}, {300, 100}}, NO, YES},
         }) {
        if (row.fermee) fenetre->close();
        for (const BOOL demande : {YES, NO}) {
            SCOPED_TRACE(std::string(row.nom) + (demande ? " as a child" : ""));
            montre(row.place, demande);
            ASSERT_EQ(avis().size(), 1U);
            NSPanel* p = avis().front();
            const NSRect attendu{{row.autour.origin.x + std::rint(0.5 * (row.autour.size.width - 256)),
                                  row.autour.origin.y + std::rint(0.5 * (row.autour.size.height - 58))},
                                 {256, 58}};
            EXPECT_EQ(p->frame(), attendu);
            const BOOL enfant = demande && row.enfant;
            EXPECT_EQ(p->parentWindow(), enfant ? fenetre.get() : nullptr);
            EXPECT_EQ(p->level(), enfant ? NSNormalWindowLevel : CGWindowLevelForKey(9));
            EXPECT_TRUE(p->isVisible());
        }
    }
}

TEST_F(NoticeTest, takesNoInputAndGoesByItself) {
    montre(fenetre, YES, u"Une explication"_ns);
    ASSERT_EQ(avis().size(), 1U);
    const Ref<NSPanel> p(avis().front());
    EXPECT_EQ(p->frame().size, (NSSize{256, 76}));
    EXPECT_TRUE(p->ignoresMouseEvents() && p->isOnAllDesktops() && p->isOneShot() && p->becomesKeyOnlyIfNeeded());
    EXPECT_FALSE(p->isOpaque() || p->hasShadow() || p->hidesOnDeactivate() || p->canHide());
    EXPECT_TRUE(fenetre->isKeyWindow());
    // A second as it is, then twenty steps down and one to close.
    pass(0.99);
    EXPECT_EQ(p->alphaValue(), 1);
    pass(0.3);
    EXPECT_LT(p->alphaValue(), 0.8);
    EXPECT_TRUE(p->isVisible());
    EXPECT_EQ(p->parentWindow(), fenetre.get());
    pass(0.5);
    EXPECT_FALSE(p->isVisible() || p->parentWindow());
    EXPECT_EQ(fenetre->childWindows()->count(), 0U);
}

TEST_F(NoticeTest, aSecondOneEndsTheFirst) {
    montre(fenetre);
    const Ref<NSPanel> premier(avis().front());
    pass(0.5);
    montre(nullptr, YES);
    EXPECT_FALSE(premier->isVisible() || premier->parentWindow());
    ASSERT_EQ(avis().size(), 1U);
    // The new one has its whole time before it.
    pass(0.99);
    EXPECT_EQ(avis().front()->alphaValue(), 1);
    KAlerteEphemere::annuleAlerte();
    EXPECT_TRUE(avis().empty());
    KAlerteEphemere::annuleAlerte();
}

TEST_F(NoticeTest, outlivesNeitherItsParentNorHarmsIt) {
    montre(fenetre);
    const Weak<NSPanel> p(avis().front());
    fenetre->close();
    fenetre = nullptr;
    pass(3);
    EXPECT_FALSE(p);
    EXPECT_TRUE(avis().empty());
}

TEST_F(NoticeTest, isReadOut) {
    auto* centre = NSNotificationCenter::defaultCenter();
    const auto jeton = centre->addObserverForName_object_queue_usingBlock(
        NSAccessibilityAnnouncementRequestedNotification, nullptr, nullptr, [&](NSNotification* n) {
            log.push_back(n->userInfo()->get<NSString>(NSAccessibilityAnnouncementKey)->utf8());
        });
    KAlerteEphemere::alerteAvecTitre_explication_icone_emplacement_commeEnfant_largeur(
        u"Recherche"_ns, u"Introuvable"_ns, nullptr, fenetre, NO, 320);
    EXPECT_EQ(avis().front()->frame().size.width, 320);
    KAlerteEphemere::alerteAvecTitre_explication_icone_emplacement_commeEnfant(nullptr, nullptr, nullptr, nullptr, NO);
    EXPECT_THAT(taken(), ElementsAre("Recherche\nIntrouvable"));
    centre->removeObserver(jeton);
}

} // namespace

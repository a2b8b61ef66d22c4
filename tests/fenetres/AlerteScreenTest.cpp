// Alerts and notifications on a desktop, answered by a person's hand.
#include <cstdlib>
#include <fstream>

#include <unistd.h>

#include <fenetres/EcranFixture.h>

#include <libvue/alerts/KAlerte.h>
#include <libvue/platform/appkit/NSAlert.h>
#include <libvue/platform/appkit/NSUserNotificationCenter.h>
#include <libvue/platform/foundation/NSTimer.h>

using namespace libvue;
using namespace libvue::test;
using namespace libvue::KDialogue;

namespace {

struct Receveur : KAlerteReceveur {
    mutable std::vector<int> reponses;
    void TraiteReponseAlerte(int&, int reponse) const override { reponses.push_back(reponse); }
};

class AlerteScreenTest : public EcranFixture {
protected:
    Ref<NSWindow> fenetre = make<NSWindow>(NSMakeRect(200, 300, 640, 480), NSTitledWindowMask | NSClosableWindowMask);
    Receveur receveur;

    void ouvre(NSString* titre) {
        fenetre->setTitle(titre);
        fenetre->makeKeyAndOrderFront(nullptr);
        ASSERT_TRUE(comes([&] { return isOnTheDesktop(titre->utf8()) && fenetre->isKeyWindow(); }));
    }
    /// Where LIBVUE_ESSAI_IMAGES names a folder, the screen goes there for a look.
    static void photographie(const char* nom) {
        const char* dossier = std::getenv("LIBVUE_ESSAI_IMAGES");
        if (dossier) output("import -window root " + std::string(dossier) + "/" + nom + ".png");
    }
    static void touche(const char* nom) { output(std::string("xdotool key ") + nom); }
    /// Does that, once, as soon as a modal alert has the keys.
    static void quandModale(const std::function<void(NSWindow*)>& geste) {
        constexpr NSTimeInterval pas = 0.05;
        const auto minuterie = NSTimer::timerWithTimeInterval_repeats_block(pas, YES, [geste](NSTimer* t) {
            const Ref<NSWindow> alerte(NSApp()->modalWindow());
            if (!alerte || !alerte->isKeyWindow() || alerte->displayPassCount() == 0) return;
            t->invalidate();
            geste(alerte);
        });
        NSRunLoop::mainRunLoop()->addTimer_forMode(minuterie, NSRunLoopCommonModes);
    }
};

TEST_F(AlerteScreenTest, ASheetIsAnsweredByTheKeys) {
    ouvre(u"alertefeuille"_ns);
    FenAlerte f(fenetre.get());
    const KAlerteInfo info{u"Remplacer le document ?", u"L’ancien sera perdu.", kDialogueAttention};
    for (const auto& [nom, reponse] : {std::pair{"Return", 128}, std::pair{"Escape", 2}}) {
        ASSERT_EQ(KAlerte(&f, info, 128 | 512 | 2, kBoutonOui, kBoutonAnnuler, &receveur), 1);
        const Ref<NSWindow> feuille(fenetre->attachedSheet());
        ASSERT_TRUE(feuille);
        ASSERT_TRUE(comes([&] { return feuille->isKeyWindow() && feuille->displayPassCount() > 0; }));
        photographie("feuille");
        touche(nom);
        EXPECT_TRUE(comes([&] { return !receveur.reponses.empty(); })) << nom;
        EXPECT_EQ(receveur.reponses, std::vector<int>{reponse});
        receveur.reponses.clear();
        EXPECT_TRUE(comes([&] { return fenetre->isKeyWindow(); }));
    }
}

TEST_F(AlerteScreenTest, AModalAlertIsAnsweredByTheKeysAndTheMouse) {
    ouvre(u"alertemodale"_ns);
    const KAlerteInfo info{u"Le fichier est abîmé.", u"Rien n’a été perdu.", kDialogueErreur};
    const auto demande = [&] { return KAlerte(nullptr, info, 1 | 2 | 64, kBoutonOK, kBoutonAnnuler, nullptr); };
    quandModale([&](NSWindow*) {
        photographie("modale");
        touche("Return");
    });
    EXPECT_EQ(demande(), 1);
    quandModale([&](NSWindow*) { touche("Escape"); });
    EXPECT_EQ(demande(), 2);
    // Tab goes on to the second button, Space presses it.
    quandModale([&](NSWindow*) { output("xdotool key Tab key space"); });
    EXPECT_EQ(demande(), 64);
    quandModale([&](NSWindow* alerte) {
        // The window below stays as it is.
        click(fenetre->convertBaseToScreen({8, 8}));
        quandModale([&, garde = Ref<NSWindow>(alerte)](NSWindow*) {
            const NSSize t = garde->contentView()->frame().size;
            click(garde->convertBaseToScreen({t.width - 60, 30}));
        });
    });
    EXPECT_EQ(demande(), 1);
    EXPECT_TRUE(comes([&] { return fenetre->isKeyWindow(); }));
}

/// Runs the test that is under way in a process and on a message bus of their own; true in that process.
bool aSonPropreBus() {
    constexpr const char* marque = "LIBVUE_ESSAI_BUS";
    if (std::getenv(marque)) return true;
    // A bus that starts no service by itself.
    const std::string reglage = testing::TempDir() + "bus-" + std::to_string(getpid()) + ".conf";
    std::ofstream(reglage) << "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen>"
                              "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                              "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>";
    char programme[4096] = {};
    EXPECT_GT(readlink("/proc/self/exe", programme, sizeof programme - 1), 0);
    const auto* essai = testing::UnitTest::GetInstance()->current_test_info();
    const std::string dit = output("dbus-run-session --config-file=" + reglage + " -- env " + marque + "=1 " +
                                   programme + " --gtest_filter=" + essai->test_suite_name() + "." + essai->name());
    std::remove(reglage.c_str());
    EXPECT_NE(dit.find("[  PASSED  ] 1 test."), std::string::npos) << dit;
    return false;
}

/// The application's delegate, which is told of a click on a notification.
class Delegue : public NSObject {
public:
    static void describe(ClassDescription<Delegue>& c) {
        c.answers<&Delegue::choisie>(op::userNotificationCenter_didActivateNotification);
    }
    std::string titre;
    void choisie(NSUserNotificationCenter*, NSUserNotification* n) { titre = n->title()->utf8(); }
};

/// The notification daemon of Debian's.
struct Demon {
    std::string numero;
    Demon() { numero = output("dunst >/dev/null 2>&1 & echo -n $!"); }
    ~Demon() { signale("KILL"); }
    void signale(const char* nom) const { output(std::string("kill -") + nom + " " + numero); }
    /// How many it shows; less than nothing where it does not answer.
    static int montre() {
        const std::string dit = output("timeout 2 dunstctl count displayed");
        return dit.find_first_not_of("0123456789\n") == std::string::npos && !dit.empty() ? std::atoi(dit.c_str()) : -1;
    }
};

TEST_F(AlerteScreenTest, ANotificationIsShownByWhoeverThereIsAndNeverLost) {
    if (!aSonPropreBus()) return;
    ouvre(u"alerteavis"_ns);
    FenAlerte f(fenetre.get());
    const auto avise = [&](const char16_t* texte) {
        return KAlerte(&f, KAlerteInfo{texte, u"Tous les fichiers < 10 Mo & plus sont là.", kDialogueNotification});
    };
    const auto vientEnFeuille = [&] {
        return comes([&] {
            const NSWindow* feuille = fenetre->attachedSheet();
            return feuille && feuille->isKeyWindow() && feuille->displayPassCount() > 0;
        });
    };
    const auto fermeLaFeuille = [&] {
        touche("Return");
        return comes([&] { return !fenetre->attachedSheet(); });
    };
    // Nobody: the first time that turns out afterwards, then it is known.
    EXPECT_EQ(avise(u"Personne"), 1);
    EXPECT_FALSE(fenetre->attachedSheet());
    ASSERT_TRUE(vientEnFeuille());
    photographie("sans-service");
    EXPECT_TRUE(fermeLaFeuille());
    EXPECT_EQ(avise(u"Toujours personne"), 1);
    EXPECT_TRUE(fenetre->attachedSheet());
    ASSERT_TRUE(vientEnFeuille());
    EXPECT_TRUE(fermeLaFeuille());

    const Demon demon;
    const auto delegue = make<Delegue>();
    NSApp()->setDelegate(delegue);
    auto* centre = NSUserNotificationCenter::defaultUserNotificationCenter();
    ASSERT_TRUE(comes([&] { return centre->isAvailable_(); }));
    EXPECT_EQ(avise(u"Copie terminée"), 1);
    ASSERT_TRUE(comes([&] { return Demon::montre() == 1; }));
    photographie("notification");
    EXPECT_EQ(avise(u"Deuxième copie terminée"), 1);
    EXPECT_TRUE(comes([&] {
        const auto remises = centre->deliveredNotifications();
        return as<NSUserNotification>(remises->lastObject())->isPresented() && Demon::montre() == 1;
    }));
    EXPECT_FALSE(fenetre->attachedSheet());
    output("dunstctl action 0"); // as a click does
    EXPECT_TRUE(comes([&] { return delegue->titre == "Deuxième copie terminée"; })) << delegue->titre;

    // It hangs, and then it is gone.
    demon.signale("STOP");
    const NSTimeInterval avant = NSRunLoop::mainRunLoop()->now();
    EXPECT_EQ(avise(u"Sans réponse"), 1);
    EXPECT_LT(NSRunLoop::mainRunLoop()->now() - avant, 1) << "the call waits for nobody";
    ASSERT_TRUE(vientEnFeuille());
    EXPECT_TRUE(fermeLaFeuille());
    demon.signale("KILL");
    ASSERT_TRUE(comes([&] { return !centre->isAvailable_(); }));
    EXPECT_EQ(avise(u"Parti"), 1);
    ASSERT_TRUE(vientEnFeuille());
    EXPECT_TRUE(fermeLaFeuille());
    centre->removeAllDeliveredNotifications();
}

} // namespace

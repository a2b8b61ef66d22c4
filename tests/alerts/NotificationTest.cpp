#include <alerts/AlerteFixture.h>

#include <libvue/alerts/ReponseAlerte.h>
#include <libvue/platform/appkit/NSUserNotificationCenter.h>
#include <libvue/platform/backend/memory/MemoryNotificationService.h>
#include <libvue/platform/foundation/NSUserDefaults.h>

using namespace libvue;
using namespace libvue::test;
using namespace libvue::KDialogue;
using backend::MemoryNotificationService;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// The application's delegate, which hears of its notifications.
class Delegue : public NSObject {
public:
    static void describe(ClassDescription<Delegue>& c) {
        c.answers<&Delegue::remis>(op::userNotificationCenter_didDeliverNotification);
        c.answers<&Delegue::active>(op::userNotificationCenter_didActivateNotification);
    }
    Log log;
    void remis(NSUserNotificationCenter*, NSUserNotification* n) { log.push_back("remis " + n->title()->utf8()); }
    void active(NSUserNotificationCenter*, NSUserNotification* n) { log.push_back("active " + n->title()->utf8()); }
};

class NotificationTest : public AlerteFixture {
protected:
    Ref<Delegue> delegue = make<Delegue>();
    FenAlerte feuille{nullptr};

    void SetUp() override {
        AlerteFixture::SetUp();
        feuille = FenAlerte(fenetre.get());
        NSApp()->setDelegate(delegue);
    }
    void TearDown() override {
        NSUserNotificationCenter::defaultUserNotificationCenter()->removeAllDeliveredNotifications();
        NSUserNotificationCenter::defaultUserNotificationCenter()->setDelegate(nullptr);
        delegue = nullptr;
        AlerteFixture::TearDown();
    }
    [[nodiscard]] static MemoryNotificationService& service() {
        return dynamic_cast<MemoryNotificationService&>(*backend::Backend::current().notices);
    }
    [[nodiscard]] static std::vector<std::string> montres() {
        std::vector<std::string> t;
        for (const auto& n : service().shown())
            t.push_back(n.title + "|" + n.body + (n.sound ? "|son" : ""));
        return t;
    }
    static KAlerteInfo avis(const char16_t* message) { return KAlerteInfo{message, u"Détail", kDialogueNotification}; }
};

TEST_F(NotificationTest, AtMostOneStandsAndTheApplicationsDelegateHearsOfIt) {
    EXPECT_EQ(KAlerte(nullptr, avis(u"Un")), 1);
    EXPECT_EQ(KAlerte(&feuille, avis(u"Deux")), 1);
    EXPECT_THAT(montres(), ElementsAre("Deux|Détail|son"));
    EXPECT_EQ(service().count(), 2u);
    EXPECT_FALSE(fenetre->attachedSheet());
    drain();
    service().activate(service().shown().front().id);
    EXPECT_THAT(delegue->log, ElementsAre("remis Deux")) << "amid the event nobody is told";
    drain();
    EXPECT_THAT(delegue->log, ElementsAre("remis Deux", "active Deux"));
}

TEST_F(NotificationTest, MaskAndReceiverDecideWhetherItIsAnAlert) {
    // The default flag comes back, whatever it is.
    EXPECT_EQ(KAlerte(nullptr, avis(u"Un"), 0, kBoutonFermer, kBoutonOK, nullptr), 8);
    EXPECT_EQ(KAlerte(nullptr, avis(u"Deux"), -5, kBoutonNon, kBoutonOK, nullptr), 512) << "compared with its sign";
    EXPECT_EQ(service().count(), 2u);
    modaleRecoit(kRetour);
    EXPECT_EQ(KAlerte(nullptr, avis(u"Trois"), 1 | 2, kBoutonOK, kBoutonAnnuler, nullptr), 1);
    Receveur r;
    EXPECT_EQ(KAlerte(&feuille, avis(u"Quatre"), 1, kBoutonOK, kBoutonOK, &r), 1);
    repond(kRetour);
    EXPECT_THAT(r.reponses, ElementsAre(1));
    EXPECT_EQ(service().count(), 2u);
}

TEST_F(NotificationTest, WithoutAServiceItIsAnAlert) {
    service().setService(MemoryNotificationService::Service::absent);
    quandModale([&](NSWindow* a) {
        EXPECT_EQ(titres(a), "OK");
        windows().key(kRetour);
    });
    EXPECT_EQ(KAlerte(nullptr, avis(u"Seule")), 1);
    backend::Backend::current().notices = nullptr;
    EXPECT_EQ(KAlerte(&feuille, avis(u"Seule")), 1);
    ASSERT_TRUE(fenetre->attachedSheet());
    repond(kRetour);
}

TEST_F(NotificationTest, AServiceThatVanishesLeavesAnAlertForTheRunLoop) {
    service().setService(MemoryNotificationService::Service::vanishing);
    EXPECT_EQ(KAlerte(&feuille, avis(u"Perdu ?")), 1);
    EXPECT_FALSE(fenetre->attachedSheet()) << "the call is over";
    drain();
    ASSERT_TRUE(fenetre->attachedSheet());
    EXPECT_EQ(nomDe(fenetre->attachedSheet()), "Perdu ?");
    repond(kRetour);

    // The window went in the meantime: a window of its own, which remembers as it was asked to.
    service().setService(MemoryNotificationService::Service::vanishing);
    {
        const Ref<NSWindow> passante = windowAt({{0, 0}, {200, 200}});
        show(passante);
        FenAlerte p(passante.get());
        const UniChaine& sans = kUniChaineNulle;
        EXPECT_EQ(KAlerteRappel(&p, avis(u"Encore"), kStockeurPreferences, u"perdue", 1, kBoutonOK, kBoutonAnnuler,
                                sans, sans, sans, sans, sans, nullptr),
                  1);
        passante->close();
    }
    std::string dit;
    auTourSuivant([&] {
        quandModale([&](NSWindow* a) {
            ASSERT_TRUE(a);
            dit = nomDe(a);
            clique(boite(a));
            auTourSuivant([&] { windows().key(kRetour); });
        });
    });
    drain();
    EXPECT_EQ(dit, "Encore");
    EXPECT_TRUE(estReponseRetenue(u"perdue"));
    oublieReponse(u"perdue");
    NSUserDefaults::resetStandardUserDefaults();
    EXPECT_FALSE(NSApp()->modalWindow());
    EXPECT_THAT(montres(), IsEmpty());
}

TEST_F(NotificationTest, OneThatWasTakenBackDoesNotFail) {
    auto* centre = NSUserNotificationCenter::defaultUserNotificationCenter();
    int echecs = 0;
    const auto n = make<NSUserNotification>();
    n->setTitle(u"Titre"_ns);
    n->setSubtitle(u"Sous-titre"_ns);
    n->setInformativeText(u"Texte"_ns);
    n->setFailureHandler_([&] { ++echecs; });
    centre->deliverNotification(n);
    centre->deliverNotification(n);
    EXPECT_THAT(montres(), ElementsAre("Titre|Sous-titre\nTexte")) << "in its own place";
    drain();
    EXPECT_TRUE(n->isPresented());
    service().setService(MemoryNotificationService::Service::vanishing);
    centre->deliverNotification(n);
    centre->removeDeliveredNotification(n);
    drain();
    EXPECT_EQ(echecs, 0);
    centre->deliverNotification(n);
    centre->deliverNotification(nullptr);
    drain();
    EXPECT_EQ(echecs, 1);
    const auto restent = centre->deliveredNotifications();
    EXPECT_EQ(restent->count(), 0u);
}

} // namespace

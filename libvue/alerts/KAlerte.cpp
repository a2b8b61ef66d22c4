#include <libvue/alerts/KAlerte.h>

#include <algorithm>
#include <array>
#include <optional>

#include <libvue/alerts/BoutonsAlerte.h>
#include <libvue/alerts/KAlerteEphemere.h>
#include <libvue/alerts/ParentCallbackProxy.h>
#include <libvue/alerts/ReponseAlerte.h>
#include <libvue/platform/appkit/NSAlert.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSUserNotificationCenter.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSThread.h>

namespace libvue {

using namespace KDialogue;

namespace {

constexpr LibellesAlerte kSansLibelles{&kUniChaineNulle, &kUniChaineNulle, &kUniChaineNulle, &kUniChaineNulle,
                                       &kUniChaineNulle};
constexpr int kFeuilleMontree = 1;

/// What an alert asks; everything in it lasts for the call.
struct Demande {
    const KAlerteInfo& info;
    const KAlerteReceveur* receveur = nullptr;
    eTypStockeur stockeur = kStockeurAucun;
    const UniChaine* cle = nullptr;
    int masque = kBoutonOK;
    eBoutons defaut = kBoutonOK, annuler = kBoutonOK;
    LibellesAlerte libelles = kSansLibelles;
};

NSWindow* fenetreDe(const FenAlerte* f) { return f ? static_cast<NSWindow*>(f->DonneFenetre()) : nullptr; }

/// A window that has never been on the screen has nothing that a sheet could hang on.
bool portesFeuilles(const NSWindow* f) { return f && f->windowNumber() > 0 && f->nativeId_() != 0; }

NSAlertStyle styleDe(int type) {
    switch (type) {
    case kDialogueInformation:
        return NSInformationalAlertStyle;
    case kDialogueErreur:
        return NSCriticalAlertStyle;
    default:
        return NSWarningAlertStyle;
    }
}

Ref<NSAlert> alerteDe(const Demande& d) {
    auto alerte = make<NSAlert>();
    alerte->setAlertStyle(styleDe(d.info.DonneTypeDialogue()));
    alerte->setShowsSuppressionButton(d.stockeur == kStockeurPreferences);
    for (const int bouton : ordreBoutons(d.masque, d.defaut, d.annuler)) {
        NSButton* b = alerte->addButtonWithTitle(titreBouton(bouton, d.libelles));
        b->setKeyEquivalent(bouton == d.defaut ? u"\r"_ns : bouton == d.annuler ? u"\u001B"_ns : NSString::string());
        b->setTag(bouton);
    }
    alerte->setMessageText(d.info.DonneMessage());
    alerte->setInformativeText(d.info.DonneExplication());
    return alerte;
}

void montreFeuille(NSAlert* alerte, NSWindow* fenetre, const Demande& d) {
    if (!d.receveur) {
        alerte->beginSheetModalForWindow_modalDelegate_didEndSelector_contextInfo(fenetre, nullptr, nullptr, nullptr);
        return;
    }
    const auto proxy = ParentCallbackProxy::initAvecParentCallback(d.receveur);
    if (d.cle) proxy->setMaClePreferencesNePlusAfficher(new UniChaine(*d.cle));
    proxy->setMonBoutonAnnuler(d.annuler);
    static const SEL fini = sel("alertDidEnd:returnCode:contextInfo:");
    alerte->beginSheetModalForWindow_modalDelegate_didEndSelector_contextInfo(fenetre, proxy, fini, nullptr);
    // Its own from here on, until the sheet ends.
    (void)Ref<ParentCallbackProxy>(proxy).leak();
}

int montre(NSWindow* fenetre, const Demande& d) {
    const auto alerte = alerteDe(d);
    if (portesFeuilles(fenetre)) {
        montreFeuille(alerte, fenetre, d);
        return kFeuilleMontree;
    }
    return reponseAlerte(alerte, alerte->runModal(), d.cle, d.annuler);
}

/// What was asked, kept beyond the call.
class DemandeGardee {
public:
    DemandeGardee(NSWindow* fenetre, const Demande& d)
        : maFenetre(fenetre),
          monInfo(d.info.DonneMessage(), d.info.DonneExplication(), d.info.DonneTypeDialogue()),
          monStockeur(d.stockeur),
          monMasque(d.masque),
          monDefaut(d.defaut),
          monAnnuler(d.annuler) {
        if (d.cle) maCle = *d.cle;
        std::ranges::transform(d.libelles, mesLibelles.begin(), [](const UniChaine* l) { return *l; });
    }
    void montre() const {
        Demande d{monInfo, nullptr, monStockeur, maCle ? &*maCle : nullptr, monMasque, monDefaut, monAnnuler, {}};
        std::ranges::transform(mesLibelles, d.libelles.begin(), [](const UniChaine& l) { return &l; });
        const Ref<NSWindow> fenetre = maFenetre.ref();
        (void)libvue::montre(fenetre, d);
    }

private:
    Weak<NSWindow> maFenetre;
    KAlerteInfo monInfo;
    eTypStockeur monStockeur;
    std::optional<UniChaine> maCle;
    int monMasque;
    eBoutons monDefaut, monAnnuler;
    std::array<UniChaine, 5> mesLibelles;
};

bool seNotifie(const Demande& d) {
    return !d.receveur && d.masque <= kBoutonOK && d.info.DonneTypeDialogue() == kDialogueNotification &&
           NSClassFromString(u"NSUserNotification"_ns) &&
           NSUserNotificationCenter::defaultUserNotificationCenter()->isAvailable_();
}

/// At most one stands at a time.
void notifie(NSWindow* fenetre, const Demande& d) {
    const auto avis = make<NSUserNotification>();
    avis->setTitle(d.info.DonneMessage());
    avis->setInformativeText(d.info.DonneExplication());
    avis->setSoundName(NSUserNotificationDefaultSoundName);
    avis->setFailureHandler_([gardee = DemandeGardee(fenetre, d)] { gardee.montre(); });
    auto* centre = NSUserNotificationCenter::defaultUserNotificationCenter();
    centre->setDelegate(NSApp()->delegate());
    centre->removeAllDeliveredNotifications();
    centre->deliverNotification(avis);
}

int alerte(const FenAlerte* f, const Demande& d) {
    // First: texts, too, belong to the main thread.
    if (!NSThread::isMainThread() || d.info.DonneMessage().EstVide()) return 0;
    const Ref<NSWindow> fenetre(fenetreDe(f));
    if (d.info.DonneTypeDialogue() == kDialogueEphemere) {
        KAlerteEphemere::alerteAvecTitre_explication_icone_emplacement_commeEnfant(
            d.info.DonneMessage(), d.info.DonneExplication(), nullptr, fenetre, YES);
        return 0;
    }
    if (d.cle && d.stockeur == kStockeurPreferences && estReponseRetenue(*d.cle)) return d.defaut;
    if (seNotifie(d)) {
        notifie(fenetre, d);
        return d.defaut;
    }
    return montre(fenetre, d);
}

} // namespace

int KAlerte(FenAlerte* fenetre, const KAlerteInfo& info) { return alerte(fenetre, {info}); }

int KAlerte(FenAlerte* fenetre, const KAlerteInfo& info, int masque, eBoutons defaut, eBoutons annuler,
            const KAlerteReceveur* receveur) {
    return alerte(fenetre, {info, receveur, kStockeurAucun, nullptr, masque, defaut, annuler, kSansLibelles});
}

int KAlerte(FenAlerte* fenetre, const KAlerteInfo& info, int masque, eBoutons defaut, eBoutons annuler,
            const UniChaine& autre1, const UniChaine& autre2, const UniChaine& autre3, const UniChaine& autre4,
            const UniChaine& autre5, const KAlerteReceveur* receveur) {
    return alerte(fenetre, {info,
                            receveur,
                            kStockeurAucun,
                            nullptr,
                            masque,
                            defaut,
                            annuler,
                            {&autre1, &autre2, &autre3, &autre4, &autre5}});
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): by value, as its callers have always given it.
int KAlerteRappel(FenAlerte* fenetre, const KAlerteInfo& info, eTypStockeur stockeur, UniChaine cle, int masque,
                  eBoutons defaut, eBoutons annuler, const UniChaine& autre1, const UniChaine& autre2,
                  const UniChaine& autre3, const UniChaine& autre4, const UniChaine& autre5,
                  const KAlerteReceveur* receveur) {
    return alerte(
        fenetre,
        {info, receveur, stockeur, &cle, masque, defaut, annuler, {&autre1, &autre2, &autre3, &autre4, &autre5}});
}

int KAlerteErreur(FenAlerte* fenetre, const KAlerteInfoErreur& info) { return KAlerte(fenetre, info); }

int KAlerteCentrageNatif(void* fenetre, const KAlerteInfo& info) {
    FenAlerte f(fenetre);
    return KAlerte(&f, info);
}

void KAlerteOublieToutesLesReponses(eTypStockeur) {}

} // namespace libvue

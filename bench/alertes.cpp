// An alert: from the call to its first paint, beside a message box of Qt's with the same texts and buttons.

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>

#ifdef LIBVUE_HAVE_WIDGETS
#include <QMessageBox>
#include <QPushButton>
#include <QString>
#endif

#include <libvue/alerts/KAlerte.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSRunLoop.h>

#include "PremierePeinture.h"

using namespace libvue;
using namespace libvue::KDialogue;

namespace {

constexpr int ouvertures = 300;

/// Texts that nobody has laid out before: an alert says something new as a rule.
std::u16string message(int i) {
    std::u16string s = u"Remplacer le document « Abricots ";
    for (const char c : std::to_string(i))
        s += static_cast<char16_t>(c);
    return s + u" » ?";
}
std::u16string explication(int i) {
    std::u16string s;
    for (const char c : std::to_string(i))
        s += static_cast<char16_t>(c);
    return s + u" versions précédentes seront perdues. Les textes se coupent aux mots, et l’alerte s’élargit un peu "
               u"quand ils sont longs.";
}

/// The whole way: a modal alert of three buttons, from the call to its first paint.
double ouvre(int i) {
    double duree = 0;
    banc::Chronometre temps;
    // The first turn of the alert's own run.
    NSRunLoop::mainRunLoop()->performBlock([&] {
        const Ref<NSWindow> alerte(NSApp()->modalWindow());
        alerte->displayIfNeeded();
        duree = temps.secondes();
        if (alerte->displayPassCount() == 0) throw std::runtime_error("the alert was not painted");
        NSApp()->abortModal();
    });
    const KAlerteInfo info{UniChaine(message(i)), UniChaine(explication(i)), kDialogueAttention};
    temps = {};
    (void)KAlerte(nullptr, info, kBoutonOui | kBoutonNon | kBoutonAnnuler, kBoutonOui, kBoutonAnnuler, nullptr);
    return duree;
}

#ifdef LIBVUE_HAVE_WIDGETS
double ouvreQt(int i) {
    const QString titre = QString::fromStdU16String(message(i)), texte = QString::fromStdU16String(explication(i));
    return banc::premierePeinture([&] {
        auto boite = std::make_unique<banc::Peint<QMessageBox>>();
        boite->setIcon(QMessageBox::Warning);
        boite->setText(titre);
        boite->setInformativeText(texte);
        QPushButton* oui = boite->addButton(QStringLiteral("Oui"), QMessageBox::YesRole);
        boite->addButton(QStringLiteral("Non"), QMessageBox::NoRole);
        QPushButton* annuler = boite->addButton(QStringLiteral("Annuler"), QMessageBox::RejectRole);
        boite->setDefaultButton(oui);
        boite->setEscapeButton(annuler);
        boite->setModal(true);
        return boite;
    });
}
#else
constexpr std::nullptr_t ouvreQt = nullptr;
#endif

banc::Mesures mesureOuverture() { return banc::tourATour(ouvertures, ouvre, ouvreQt); }

} // namespace

int main(int argc, char** argv) {
#ifdef LIBVUE_HAVE_WIDGETS
    const banc::ApplicationPair application(argc, argv);
#endif
    backend::Backend::install(backend::makeMemoryBackend());
    banc::Banc banc;
    banc.ajoute({"alert-open", "us", mesureOuverture});
    const int etat = banc.lance(argc, argv);
    NSApplication::resetSharedApplication();
    return etat;
}

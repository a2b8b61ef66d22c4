// An alert: from the call to its first paint, beside a message box of Qt's with the same texts and buttons.

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#ifdef LIBVUE_HAVE_WIDGETS
#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QString>
#endif

#include <libvue/alerts/KAlerte.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSRunLoop.h>

#include "Banc.h"

using namespace libvue;
using namespace libvue::KDialogue;

namespace {

constexpr int ouvertures = 300;

using Horloge = std::chrono::steady_clock;

double secondes(Horloge::time_point debut) { return std::chrono::duration<double>(Horloge::now() - debut).count(); }

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
    Horloge::time_point debut;
    // The first turn of the alert's own run.
    NSRunLoop::mainRunLoop()->performBlock([&] {
        const Ref<NSWindow> alerte(NSApp()->modalWindow());
        alerte->displayIfNeeded();
        duree = secondes(debut);
        if (alerte->displayPassCount() == 0) throw std::runtime_error("the alert was not painted");
        NSApp()->abortModal();
    });
    const KAlerteInfo info{UniChaine(message(i)), UniChaine(explication(i)), kDialogueAttention};
    debut = Horloge::now();
    (void)KAlerte(nullptr, info, kBoutonOui | kBoutonNon | kBoutonAnnuler, kBoutonOui, kBoutonAnnuler, nullptr);
    return duree;
}

#ifdef LIBVUE_HAVE_WIDGETS
class Boite : public QMessageBox {
public:
    using QMessageBox::QMessageBox;
    bool peinte = false;

protected:
    void paintEvent(QPaintEvent* e) override {
        QMessageBox::paintEvent(e);
        peinte = true;
    }
};

double ouvreQt(int i) {
    const QString titre = QString::fromStdU16String(message(i)), texte = QString::fromStdU16String(explication(i));
    const auto debut = Horloge::now();
    auto boite = std::make_unique<Boite>();
    boite->setIcon(QMessageBox::Warning);
    boite->setText(titre);
    boite->setInformativeText(texte);
    QPushButton* oui = boite->addButton(QStringLiteral("Oui"), QMessageBox::YesRole);
    boite->addButton(QStringLiteral("Non"), QMessageBox::NoRole);
    QPushButton* annuler = boite->addButton(QStringLiteral("Annuler"), QMessageBox::RejectRole);
    boite->setDefaultButton(oui);
    boite->setEscapeButton(annuler);
    boite->setModal(true);
    boite->show();
    while (!boite->peinte)
        QCoreApplication::processEvents();
    const double duree = secondes(debut);
    boite->close();
    boite.reset();
    QCoreApplication::processEvents();
    return duree;
}
#endif

banc::Mesures mesureOuverture() {
    std::vector<double> notres;
    banc::Mesures m;
#ifdef LIBVUE_HAVE_WIDGETS
    std::vector<double> pairs;
#endif
    // In turn, so that a machine that slows down slows both; the first ones warm the caches.
    for (int i = 0; i < ouvertures; ++i) {
        const double notre = ouvre(i);
        if (i >= ouvertures / 10) notres.push_back(notre * 1e6);
#ifdef LIBVUE_HAVE_WIDGETS
        const double pair = ouvreQt(i);
        if (i >= ouvertures / 10) pairs.push_back(pair * 1e6);
#endif
    }
    m.notre = banc::mediane(notres);
#ifdef LIBVUE_HAVE_WIDGETS
    m.pair = banc::mediane(pairs);
#endif
    return m;
}

} // namespace

int main(int argc, char** argv) {
#ifdef LIBVUE_HAVE_WIDGETS
    // Widgets need their own kind of application; the backend takes the one that there is.
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    // What its platform has to say of every window would be paid for by the peer.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
#endif
    backend::Backend::install(backend::makeMemoryBackend());
    banc::Banc banc;
    banc.ajoute({"alert-open", "us", mesureOuverture});
    const int etat = banc.lance(argc, argv);
    NSApplication::resetSharedApplication();
    return etat;
}

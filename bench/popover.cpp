// A balloon: from the call to its first paint beside a popup of Qt's with the same content; its placement and its
// outline, which have no peer.

#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <stdexcept>

#ifdef LIBVUE_HAVE_WIDGETS
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#endif

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/appkit/NSViewController.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/popover/ContourPopover.h>
#include <libvue/popover/KCPopover.h>
#include <libvue/popover/MaFenetre.h>
#include <libvue/popover/PlacementPopover.h>
#include <libvue/popover/VuePopover.h>

#include "PremierePeinture.h"

using namespace libvue;

namespace {

std::size_t allocations = 0;

constexpr int ouvertures = 300;
constexpr NSSize contenu{240, 120};
/// From the lower left corner of the content.
constexpr NSRect texteIci{{12, 84}, {216, 20}}, champIci{{12, 50}, {216, 22}}, boutonIci{{128, 12}, {100, 28}};

/// A window with an anchor in its middle.
struct Fenetre {
    Fenetre() {
        fenetre->contentView()->addSubview(ancre);
        fenetre->makeKeyAndOrderFront(nullptr);
        NSApp()->drain_();
    }
    ~Fenetre() { fenetre->close(); }
    Ref<NSWindow> fenetre = make<NSWindow>(NSMakeRect(300, 200, 600, 400), NSTitledWindowMask);
    Ref<NSView> ancre = make<NSView>(NSMakeRect(250, 180, 80, 20));

    [[nodiscard]] static Ref<KCPopover> bulle() {
        const Ref<NSView> vue = make<NSView>(NSRect{{0, 0}, contenu});
        const Ref<NSTextField> texte = NSTextField::labelWithString(u"Trente-six chandelles"_ns);
        texte->setFrame(texteIci);
        vue->addSubview(texte);
        const Ref<NSTextField> champ = make<NSTextField>(champIci);
        champ->setStringValue(u"à modifier"_ns);
        vue->addSubview(champ);
        const Ref<NSButton> bouton = make<NSButton>(boutonIci);
        bouton->setTitle(u"Remplacer"_ns);
        vue->addSubview(bouton);
        const Ref<NSViewController> c = make<NSViewController>();
        c->setView(vue);
        const Ref<KCPopover> p = make<KCPopover>();
        p->setContentViewController(c);
        return p;
    }
    void montre(KCPopover* p) const { p->showRelativeToRect_ofView_preferredEdge(ancre->bounds(), ancre, NSMaxYEdge); }

    /// Content, balloon and window are made anew each time; what closes them is not measured.
    double ouvre() const {
        const banc::Chronometre temps;
        const Ref<KCPopover> p = bulle();
        montre(p);
        p->panel()->displayIfNeeded();
        const double duree = temps.secondes();
        if (p->panel()->displayPassCount() == 0) throw std::runtime_error("the balloon was not painted");
        p->panel()->close();
        NSApp()->drain_();
        return duree;
    }
};

#ifdef LIBVUE_HAVE_WIDGETS
class Popup : public banc::Peint<QFrame> {
public:
    explicit Popup(QWidget* parent) : Peint(parent, Qt::Popup | Qt::FramelessWindowHint) {
        setFrameShape(QFrame::StyledPanel);
        setAttribute(Qt::WA_TranslucentBackground);
        const auto ici = [](const NSRect& r) {
            return QRect(static_cast<int>(r.origin.x + 11), static_cast<int>(contenu.height + 15 - NSMaxY(r)),
                         static_cast<int>(r.size.width), static_cast<int>(r.size.height));
        };
        (new QLabel("Trente-six chandelles", this))->setGeometry(ici(texteIci));
        (new QLineEdit("à modifier", this))->setGeometry(ici(champIci));
        (new QPushButton("Remplacer", this))->setGeometry(ici(boutonIci));
        setGeometry(500, 300, static_cast<int>(contenu.width) + 22, static_cast<int>(contenu.height) + 30);
    }
};

struct FenetreQt {
    FenetreQt() {
        fenetre.setGeometry(300, 200, 600, 400);
        fenetre.show();
        QCoreApplication::processEvents();
    }
    QWidget fenetre;

    double ouvre() {
        return banc::premierePeinture([this] { return std::make_unique<Popup>(&fenetre); });
    }
};
#endif

banc::Mesures mesureOuverture() {
    const Fenetre nous;
    std::function<double(int)> pair;
#ifdef LIBVUE_HAVE_WIDGETS
    FenetreQt eux;
    pair = [&](int) { return eux.ouvre(); };
#endif
    return banc::tourATour(
        ouvertures, [&](int) { return nous.ouvre(); }, pair);
}

/// Every edge is weighed: on none of them the balloon fits.
PlacementPopover place(double i) {
    return placementOptimal({{{500 + i, 400}, {40, 20}}, {{0, 0}, {1000, 800}}}, 3, 15, {700, 500}, {700, 500});
}

banc::Chemin placement() {
    const std::size_t avant = allocations;
    banc::garde(place(1));
    banc::garde(contourPopover({{10, 10}, {200, 100}}, {{50, 150}, {20, 20}}, {{0, 0}, {220, 120}}, NSMinYEdge));
    if (allocations != avant) throw std::runtime_error("a placement allocates");
    return {[i = 0.0]() mutable {
                i = i > 10 ? 0 : i + 0.5;
                banc::garde(place(i));
            },
            nullptr};
}

banc::Chemin contour() {
    auto nous = std::make_shared<Fenetre>();
    const Ref<KCPopover> p = Fenetre::bulle();
    nous->montre(p);
    NSApp()->drain_();
    auto* vue = as<VuePopover>(p->panel()->contentView());
    const Ref<NSBezierPath> avant(vue->contourExterieur());
    vue->setNeedsDisplay(YES);
    NSApp()->drain_();
    if (vue->contourExterieur() != avant.get()) throw std::runtime_error("an outline is built for nothing");
    // The balloon goes with what is measured.
    const auto ferme = std::shared_ptr<KCPopover>(p.get(), [p](KCPopover*) { p->panel()->close(); });
    return {[nous, ferme, vue] { banc::garde(vue->contourAvecRectInterieur(NSInsetRect(vue->bounds(), 10, 10))); },
            nullptr};
}

} // namespace

// Counted, to show that a placement makes none.
void* operator new(std::size_t taille) {
    ++allocations;
    if (void* p = std::malloc(taille)) return p;
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }

int main(int argc, char** argv) {
#ifdef LIBVUE_HAVE_WIDGETS
    const banc::ApplicationPair application(argc, argv);
#endif
    backend::Backend::install(backend::makeMemoryBackend());
    banc::Banc banc;
    banc.ajoute({"popover-open", "us", mesureOuverture});
    banc.ajoute("popover-place", placement);
    banc.ajoute("outline-build", contour);
    const int etat = banc.lance(argc, argv);
    NSApplication::resetSharedApplication();
    return etat;
}

// A panel that slides in beside another: one frame of it, beside the same two pictures copied by QPainter.

#include <chrono>
#include <cmath>
#include <stdexcept>
#include <vector>

#include <QImage>
#include <QPainter>

#include <libvue/panels/KCAnimationsDePanneauGlissant.h>
#include <libvue/panels/KCConteneurDePanneauxGlissants.h>
#include <libvue/panels/KCPanneauGlissant.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSSlider.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSNotification.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>

#include "Banc.h"

using namespace libvue;

namespace {

constexpr int largeur = 800, hauteur = 600, glissements = 60;
constexpr NSRect cadre{{0, 0}, {largeur, hauteur}};

using Horloge = std::chrono::steady_clock;

double secondes(Horloge::time_point debut) { return std::chrono::duration<double>(Horloge::now() - debut).count(); }

/// A page that is full: 18 times a label, a field, a box to tick, a menu, a slider and a button.
class Page : public KCPanneauGlissant {
public:
    static void describe(ClassDescription<Page, KCPanneauGlissant>&) {}
    explicit Page(NSColor* fond) : KCPanneauGlissant(cadre), fond_(fond) {
        for (int rangee = 0; rangee < 3; ++rangee)
            for (int colonne = 0; colonne < 6; ++colonne)
                groupe(10 + colonne * 132, 10 + rangee * 196);
    }
    void drawRect(const NSRect& r) override {
        fond_->set();
        NSRectFill(r);
    }

private:
    void met(NSView* v, CGFloat x, CGFloat y) {
        v->setFrame({{x, y}, {120, 26}});
        addSubview(v);
    }
    void groupe(CGFloat x, CGFloat y) {
        const Ref<NSTextField> texte = NSTextField::labelWithString(u"Trente-six chandelles"_ns);
        met(texte, x, y + 155);
        const auto champ = make<NSTextField>(NSZeroRect);
        champ->setStringValue(u"à modifier"_ns);
        met(champ, x, y + 124);
        met(NSButton::checkboxWithTitle_target_action(u"À cocher"_ns, nullptr, nullptr), x, y + 93);
        const auto menu = make<NSPopUpButton>(NSZeroRect);
        menu->addItemWithTitle(u"Au choix"_ns);
        met(menu, x, y + 62);
        met(make<NSSlider>(NSZeroRect), x, y + 31);
        met(NSButton::buttonWithTitle_target_action(u"Remplacer"_ns, nullptr, nullptr), x, y);
    }
    Ref<NSColor> fond_;
};

/// Takes the time from each frame of the strip to the next: its display pass, and a wait that is none in virtual time.
class Chronometre : public NSObject {
public:
    static void describe(ClassDescription<Chronometre>& c) { c.answers<&Chronometre::bouge>("bouge:"); }
    explicit Chronometre(NSView* parent) : parent_(parent) {
        NSNotificationCenter::defaultCenter()->addObserver_selector_name_object(
            this, sel("bouge:"), NSViewFrameDidChangeNotification.get(), nullptr);
    }
    ~Chronometre() override { NSNotificationCenter::defaultCenter()->removeObserver(this); }
    std::vector<double> images; ///< microseconds
    std::vector<NSPoint> places;
    void recommence() { images.clear(), places.clear(); }
    void bouge(NSNotification* n) {
        const auto* v = as<NSView>(n->object());
        if (v->superview() != parent_) return;
        if (!places.empty()) images.push_back(secondes(depart_) * 1e6);
        places.push_back(v->frame().origin);
        depart_ = Horloge::now();
    }

private:
    NSView* parent_;
    Horloge::time_point depart_;
};

QImage enQt(NSView* v) {
    const Ref<NSData> png = v->pngDataInsideRect_scale(v->bounds(), 1);
    return QImage::fromData(static_cast<const uchar*>(png->bytes()), static_cast<int>(png->length()))
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

/// The frame in the middle: the panels have been drawn by then. The frames are composed and not shown, as the peer's.
banc::Mesures mesure() {
    const auto fenetre = make<NSWindow>(NSMakeRect(100, 100, largeur, hauteur), NSBorderlessWindowMask);
    const auto conteneur = make<KCConteneurDePanneauxGlissants>(cadre);
    fenetre->setContentView(conteneur);
    const Ref<NSView> pages[2] = {make<Page>(NSColor::colorWithSRGBRed_green_blue_alpha(0.93, 0.94, 0.97, 1)),
                                  make<Page>(NSColor::colorWithSRGBRed_green_blue_alpha(0.98, 0.95, 0.9, 1))};
    conteneur->afficherPanneau_avecAnimation(pages[0], nullptr);
    fenetre->makeKeyAndOrderFront(nullptr);
    NSApp()->drain_();
    fenetre->disableFlushWindow();

    QImage surface(largeur, hauteur, QImage::Format_ARGB32_Premultiplied);
    surface.fill(0);
    const QImage photos[2] = {enQt(pages[0]), enQt(pages[1])};

    const auto chronometre = make<Chronometre>(conteneur);
    std::vector<double> notres, pairs;
    for (int i = 0; i < glissements; ++i) {
        const Ref<NSView> arrive = pages[(i + 1) % 2];
        const auto glisse = KCAnimationDePanneauGlissantVersLaGauche::animationPanneau();
        chronometre->recommence();
        conteneur->afficherPanneau_avecAnimation(arrive, glisse);
        if (chronometre->images.size() < 10) throw std::runtime_error("the panel did not slide");
        if (i < glissements / 10) continue;
        notres.insert(notres.end(), chronometre->images.begin(), chronometre->images.end());
        for (std::size_t k = 0; k + 1 < chronometre->places.size(); ++k) {
            const auto debut = Horloge::now();
            const int x = static_cast<int>(std::floor(chronometre->places[k].x + 0.5));
            {
                QPainter p(&surface);
                p.drawImage(x, 0, photos[i % 2]);
                p.drawImage(x + largeur, 0, photos[(i + 1) % 2]);
            }
            banc::garde(surface.constBits());
            pairs.push_back(secondes(debut) * 1e6);
        }
    }
    fenetre->close();
    return {banc::mediane(notres), banc::mediane(pairs)};
}

} // namespace

int main(int argc, char** argv) {
    backend::Backend::install(backend::makeMemoryBackend());
    banc::Banc banc;
    banc.ajoute({"slide-frame", "us", mesure});
    const int etat = banc.lance(argc, argv);
    NSApplication::resetSharedApplication();
    return etat;
}

#include <libvue/alerts/KAlerteEphemere.h>

#include <cmath>

#include <libvue/controls/KVueTranslucide.h>
#include <libvue/platform/appkit/CGWindowLevel.h>
#include <libvue/platform/appkit/NSAccessibility.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/popover/FadingWindowController.h>
#include <libvue/popover/NSWindowSticky.h>

namespace libvue {

namespace {

const ClassRegistration<KAlerteEphemere> enregistrement;

constexpr CGFloat kLargeur = 256, kHauteur = 152;
constexpr NSTimeInterval kDuree = 1;
constexpr Operation<NSWindow*()> fenetreDe{"window"};

/// The one that is shown; it keeps itself.
Weak<FadingWindowController>& courante() {
    static Weak<FadingWindowController> c;
    return c;
}

/// Stands for the class where a delegate must be an object.
class DelegueDeClasse : public NSObject {
public:
    static void describe(ClassDescription<DelegueDeClasse>& c) {
        c.answers<&DelegueDeClasse::estSorti>(op::didFadeOut);
    }
    static DelegueDeClasse* partage() {
        static DelegueDeClasse* const seul = keptForever(make<DelegueDeClasse>());
        return seul;
    }
    void estSorti(FadingWindowController* c) { KAlerteEphemere::didFadeOut(c); }
};

Ref<NSPanel> panneau(CGFloat largeur) {
    auto p = make<NSPanel>(NSMakeRect(0, 0, largeur, kHauteur), NSBorderlessWindowMask, NSBackingStoreBuffered, NO);
    p->setBecomesKeyOnlyIfNeeded(YES);
    p->setHidesOnDeactivate(NO);
    p->setBackgroundColor(NSColor::clearColor());
    p->setIgnoresMouseEvents(YES);
    setSticky(p, YES);
    p->setOpaque(NO);
    p->setHasShadow(NO);
    p->setCanHide(NO);
    p->setOneShot(YES);
    p->useOptimizedDrawing(YES);
    return p;
}

/// What a notice is centred over, in screen coordinates, and the window that it belongs to.
struct Place {
    NSRect cadre = NSZeroRect;
    Ref<NSWindow> parent;
};

Place placeDe(NSView* vue) {
    // What is seen of a document is its scroll view.
    if (const auto* clip = as<NSClipView>(vue->superview()))
        if (auto* defilement = as<NSScrollView>(clip->superview())) vue = defilement;
    Place p;
    p.parent = vue->window() ? vue->window() : NSApp()->mainWindow();
    p.cadre = vue->convertRect_toView(vue->bounds(), nullptr);
    if (p.parent) p.cadre.origin = p.parent->convertBaseToScreen(p.cadre.origin);
    return p;
}

Place placeDe(NSObject* emplacement) {
    if (auto* vue = as<NSView>(emplacement)) return placeDe(vue);
    if (auto* fenetre = as<NSWindow>(emplacement)) return {fenetre->frame(), Ref<NSWindow>(fenetre)};
    if (const auto fenetre = fenetreDe.of(emplacement)) {
        const Ref<NSWindow> sienne(fenetre());
        if (sienne) return {sienne->frame(), sienne};
        return {NSZeroRect, Ref<NSWindow>(NSApp()->mainWindow())};
    }
    const NSScreen* ecran = NSScreen::mainScreen();
    return {ecran ? ecran->frame() : NSZeroRect, nullptr};
}

CGFloat centre(CGFloat origine, CGFloat place, CGFloat taille) { return origine + std::rint(0.5 * (place - taille)); }

} // namespace

void KAlerteEphemere::describe(ClassDescription<KAlerteEphemere>& c) {
    c.classAnswers<&KAlerteEphemere::annuleAlerte>("annuleAlerte");
    c.classAnswers<&KAlerteEphemere::didFadeOut>("didFadeOut:");
}

void KAlerteEphemere::alerteAvecTitre_explication_icone_emplacement_commeEnfant(NSString* titre, NSString* explication,
                                                                                NSImage* icone, NSObject* emplacement,
                                                                                BOOL enfant) {
    alerteAvecTitre_explication_icone_emplacement_commeEnfant_largeur(titre, explication, icone, emplacement, enfant,
                                                                      kLargeur);
}

void KAlerteEphemere::alerteAvecTitre_explication_icone_emplacement_commeEnfant_largeur(
    NSString* titre, NSString* explication, NSImage* icone, NSObject* emplacement, BOOL enfant, CGFloat largeur) {
    const Ref<NSPanel> p = panneau(largeur);
    const auto vue = make<KVueTranslucide>(p->contentView()->frame());
    p->setContentView(vue);
    vue->setTitle(titre);
    vue->setText(explication);
    vue->setIcon(icone);
    vue->sizeToFit();
    p->setContentSize(vue->frame().size);

    const Place place = placeDe(emplacement);
    const NSSize taille = p->frame().size;
    p->setFrame_display({{centre(place.cadre.origin.x, place.cadre.size.width, taille.width),
                          centre(place.cadre.origin.y, place.cadre.size.height, taille.height)},
                         taille},
                        NO);
    if (place.parent && enfant) {
        place.parent->addChildWindow_ordered(p, NSWindowAbove);
    } else {
        p->setLevel(CGWindowLevelForKey(kCGStatusWindowLevelKey));
        p->orderFront(nullptr);
    }

    annuleAlerte();
    const auto controleur = make<FadingWindowController>(p);
    courante() = controleur;
    controleur->setDelegate(DelegueDeClasse::partage());
    controleur->setAutomaticallyFadesOut(YES);
    controleur->setDisplayTime(kDuree);
    controleur->startFadeIn();
    announceForAccessibility(vue, vue->annonce(), NSAccessibilityPriorityMedium);
}

void KAlerteEphemere::didFadeOut(FadingWindowController* controleur) {
    const Ref<NSWindow> fenetre(controleur ? controleur->window() : nullptr);
    if (fenetre)
        if (const Ref<NSWindow> parent{fenetre->parentWindow()}) parent->removeChildWindow(fenetre);
    courante() = nullptr;
}

void KAlerteEphemere::annuleAlerte() {
    if (const Ref<FadingWindowController> c = courante().ref()) c->stopFadeOut();
}

} // namespace libvue

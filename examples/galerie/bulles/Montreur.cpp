#include <bulles/Montreur.h>

#include <bulles/ContenuBulle.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/foundation/NSNotification.h>
#include <libvue/popover/KCPopover.h>
#include <libvue/popover/KCPopoverManager.h>
#include <libvue/popover/MaFenetre.h>

namespace galerie {

namespace {

Ref<NSString> cleDe(const NSView* ancre) {
    return NSString::stringWithFormat(u"bulle.%p"_ns, static_cast<const void*>(ancre));
}

/// What a wrapper of the page was opened with.
class Billet : public NSObject {
public:
    static void describe(ClassDescription<Billet>&) {}
    Billet(NSView* ancre, NSString* cle) : ancre(ancre), cle(cle) {}
    Weak<NSView> ancre;
    Ref<NSString> cle;
    BOOL parClavier = NO;
};

BOOL estAppui(const NSEvent* e) {
    return e && (e->type() == NSLeftMouseDown || e->type() == NSLeftMouseUp || e->type() == NSLeftMouseDragged);
}

NSInteger pressionEnCours() {
    const NSEvent* e = NSApp()->currentEvent();
    return estAppui(e) ? e->eventNumber() : -1;
}

} // namespace

void Montreur::describe(ClassDescription<Montreur>& c) {
    c.answers<&Montreur::detachableWindowForPopover>(op::detachableWindowForPopover);
    c.answers<&Montreur::popoverWillClose>(op::popoverWillClose);
    c.answers<&Montreur::popoverDidClose>(op::popoverDidClose);
}

Montreur::~Montreur() = default;

void Montreur::montre(NSView* ancre) { montre_genre(ancre, reglages_.systeme); }

void Montreur::montre_genre(NSView* ancre, BOOL systeme) {
    // The press that closed the balloon is not the one that opens it again.
    const NSInteger pression = pressionEnCours();
    if (pression >= 0 && pression == pression_ && dernierPressay_.get() == ancre) return;
    if (!fermePour(ancre)) ouvre(ancre, systeme, reglages_.bord);
}

void Montreur::montreLesDeux(NSView* notre, NSView* systeme) {
    const BOOL ferme = fermePour(notre);
    if (fermePour(systeme) || ferme) return;
    ouvre(notre, NO, NSMinXEdge);
    ouvre(systeme, YES, NSMaxXEdge);
}

BOOL Montreur::fermePour(NSView* ancre) {
    const Ref<KCPopoverWrapper> w(as<KCPopoverWrapper>(KCPopoverManager::popoverAvecCle(cleDe(ancre))));
    if (!w) return NO;
    w->close();
    return YES;
}

void Montreur::ouvre(NSView* ancre, BOOL systeme, NSUInteger bord) {
    const Ref<KCPopoverWrapper> w =
        systeme ? KCPopoverWrapper::nouveauPopoverSysteme() : KCPopoverWrapper::nouveauPopoverMaison();
    const Ref<NSString> cle = cleDe(ancre);
    const Weak<KCPopoverWrapper> faible(w);
    // On the balloon: to the right of it, where there is room.
    const auto contenu = make<ContenuBulle>(
        systeme ? u"Bulle du système"_ns : u"Bulle maison"_ns,
        [this, systeme](NSObject* emetteur) {
            auto* bouton = as<NSView>(emetteur);
            if (!fermePour(bouton)) ouvre(bouton, systeme, NSMaxXEdge);
        },
        [faible](NSObject*) {
            if (const Ref<KCPopoverWrapper> lui = faible.ref()) lui->close();
        });
    w->setContentViewController(contenu);
    w->setDelegate(this);
    const NSEvent* e = NSApp()->currentEvent();
    const auto billet = make<Billet>(ancre, cle);
    billet->parClavier = e && e->type() == NSKeyDown;
    w->setUserInfo(billet);
    w->setDetachable(reglages_.detachable);
    w->setMasqueEdgeAutorisay(reglages_.masque);
    w->setBehavior(reglages_.comportement);
    w->setCouleurFond(reglages_.fond);
    auto* maison = as<KCPopover>(w->popover());
    if (maison) {
        maison->setCouleurBordure(reglages_.bordure);
        maison->panel()->setTitle(contenu->title());
    }
    KCPopoverManager::associePopover_avecCle(w, cle);
    // The edges of the page are those on the screen; the system's popover, asked directly, would speak of the view's.
    w->showRelativeToRect_ofView_preferredEdge(ancre->bounds(), ancre, bord);
    if (!maison || !billet->parClavier) return;
    // Opened by keyboard, it is used by keyboard.
    maison->panel()->makeFirstResponder(contenu->premier());
    maison->panel()->makeKeyWindow();
}

void Montreur::fermeTout() {
    const Ref<NSArray> tous = KCPopoverManager::popovers();
    for (NSUInteger i = 0; i < tous->count(); ++i)
        if (auto* w = as<KCPopoverWrapper>(tous->objectAtIndex(i)); w && w->delegate() == this) w->close();
    for (const Ref<NSWindow>& f : std::exchange(fenetres_, {}))
        f->close();
}

NSWindow* Montreur::detachableWindowForPopover(NSObject*) {
    // The window takes the balloon's content over.
    std::erase_if(fenetres_, [](const Ref<NSWindow>& f) { return !f->isVisible(); });
    const auto f =
        make<NSPanel>(NSMakeRect(0, 0, 100, 100), NSTitledWindowMask | NSClosableWindowMask | NSUtilityWindowMask);
    f->setTitle(u"Bulle détachée"_ns);
    f->setFloatingPanel(YES);
    return fenetres_.emplace_back(f);
}

void Montreur::popoverWillClose(NSNotification* n) {
    const auto* w = as<KCPopoverWrapper>(n->object());
    const auto* billet = w ? as<Billet>(w->userInfo()) : nullptr;
    if (!billet) return;
    dernierPressay_ = billet->ancre;
    pression_ = pressionEnCours();
}

void Montreur::popoverDidClose(NSNotification* n) {
    const Ref<KCPopoverWrapper> w(as<KCPopoverWrapper>(n->object()));
    const auto* billet = w ? as<Billet>(w->userInfo()) : nullptr;
    if (!billet) return;
    const Ref<NSString> cle = billet->cle;
    if (KCPopoverManager::popoverAvecCle(cle) == w.get()) KCPopoverManager::enlevePopoverAvecCle(cle);
    // Whoever came from there by keyboard goes on from there.
    const Ref<NSView> ancre = billet->ancre.ref();
    if (billet->parClavier && ancre && ancre->window()) ancre->window()->makeFirstResponder(ancre);
}

} // namespace galerie

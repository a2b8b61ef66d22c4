#include <libvue/popover/KCPopoverWrapper.h>

#include <utility>

#include <libvue/layout/KCLayoutViewDelegate.h>
#include <libvue/layout/NotificationsVue.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSPopover.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/popover/KCPopover.h>
#include <libvue/popover/MaFenetre.h>

namespace libvue {

static const ClassRegistration<KCPopoverWrapper> enregistrement;

namespace {

constexpr NSUInteger kMasqueAbsent = 0;
constexpr NSInteger kComportementAbsent = NSPopoverBehaviorSemitransient;

// What the two implementations have, by name: which one it is matters to few.
constexpr Operation<NSUInteger()> leMasque{"masqueEdgeAutorisay"};
constexpr Operation<void(NSUInteger)> metsMasque{"setMasqueEdgeAutorisay:"};
constexpr Operation<NSInteger()> leComportement{"behavior"};
constexpr Operation<void(NSInteger)> metsComportement{"setBehavior:"};
constexpr Operation<NSColor*()> laCouleur{"couleurFond"};
constexpr Operation<void(NSColor*)> metsCouleur{"setCouleurFond:"};
constexpr Operation<void(NSObject*)> metsDelegue{"setDelegate:"};
constexpr Operation<NSViewController*()> leControleur{"contentViewController"};
constexpr Operation<void(NSViewController*)> metsControleur{"setContentViewController:"};
constexpr Operation<BOOL()> estAffichay{"isShown"};
constexpr Operation<void()> ferme{"close"};
constexpr Operation<void(const NSRect&, NSView*, NSUInteger)> montre{"showRelativeToRect:ofView:preferredEdge:"};

SEL changementDeTaille() {
    static const SEL selecteur = sel("contentWouldChangeSize:");
    return selecteur;
}

constexpr NSUInteger retourne(NSUInteger edge) noexcept {
    return edge == NSMinYEdge ? NSMaxYEdge : edge == NSMaxYEdge ? NSMinYEdge : edge;
}

Ref<KCPopoverWrapper> enveloppe(NSObject* popover) {
    Ref<KCPopoverWrapper> w = make<KCPopoverWrapper>();
    w->setPopover(popover);
    return w;
}

} // namespace

void KCPopoverWrapper::describe(ClassDescription<KCPopoverWrapper>& c) {
    c.answers<&KCPopoverWrapper::popoverEstDetachable>(op::popoverEstDetachable);
    c.answers<&KCPopoverWrapper::detachableWindowForPopover>(op::detachableWindowForPopover);
    c.answers<&KCPopoverWrapper::popoverShouldClose>(op::popoverShouldClose);
    c.answers<&KCPopoverWrapper::popoverWillShow>(op::popoverWillShow);
    c.answers<&KCPopoverWrapper::popoverDidShow>(op::popoverDidShow);
    c.answers<&KCPopoverWrapper::popoverWillClose>(op::popoverWillClose);
    c.answers<&KCPopoverWrapper::popoverDidClose>(op::popoverDidClose);
    c.answers<&KCPopoverWrapper::sourceDidResize>("sourceDidResize:");
    c.answers<&KCPopoverWrapper::sourceDidScroll>("sourceDidScroll:");
    c.answers<&KCPopoverWrapper::close>("close");
    c.answers<&KCPopoverWrapper::isShown>("isShown");
    c.key<&KCPopoverWrapper::detachable, &KCPopoverWrapper::setDetachable>("detachable");
    c.key<&KCPopoverWrapper::userInfo, &KCPopoverWrapper::setUserInfo>("userInfo");
}

KCPopoverWrapper::KCPopoverWrapper() = default;

KCPopoverWrapper::~KCPopoverWrapper() {
    NSNotificationCenter* centre = NSNotificationCenter::defaultCenter();
    if (NSViewController* c = contentViewController())
        centre->removeObserver_name_object(popover_, kContentWouldChangeSizeNotification, c);
    centre->removeObserver(this);
    popover_ = nullptr;
    userInfo_ = nullptr;
}

Ref<KCPopoverWrapper> KCPopoverWrapper::nouveauPopover() { return enveloppe(make<NSPopover>()); }
Ref<KCPopoverWrapper> KCPopoverWrapper::nouveauPopoverMaison() { return enveloppe(make<KCPopover>()); }
Ref<KCPopoverWrapper> KCPopoverWrapper::nouveauPopoverSysteme() { return enveloppe(make<NSPopover>()); }

void KCPopoverWrapper::setPopover(NSObject* popover) {
    const Ref<NSObject> ancien = std::exchange(popover_, Ref<NSObject>(popover));
    if (const auto mets = metsDelegue.of(popover_)) mets(this);
    appliqueDetachable();
}

void KCPopoverWrapper::setDetachable(BOOL detachable) {
    detachable_ = detachable;
    appliqueDetachable();
}

void KCPopoverWrapper::appliqueDetachable() {
    // One that may not come off cannot be dragged either.
    if (auto* maison = as<KCPopover>(popover_)) maison->panel()->setMovable(detachable_);
}

// What goes on to the implementation.

NSUInteger KCPopoverWrapper::masqueEdgeAutorisay() const {
    const auto lis = leMasque.of(popover_);
    return lis ? lis() : kMasqueAbsent;
}

void KCPopoverWrapper::setMasqueEdgeAutorisay(NSUInteger masque) {
    if (const auto mets = metsMasque.of(popover_)) mets(masque);
}

NSInteger KCPopoverWrapper::behavior() const {
    const auto lis = leComportement.of(popover_);
    return lis ? lis() : kComportementAbsent;
}

void KCPopoverWrapper::setBehavior(NSInteger behavior) {
    if (const auto mets = metsComportement.of(popover_)) mets(behavior);
}

Ref<NSColor> KCPopoverWrapper::couleurFond() const {
    const auto lis = laCouleur.of(popover_);
    return lis ? Ref<NSColor>(lis()) : Ref<NSColor>();
}

void KCPopoverWrapper::setCouleurFond(NSColor* couleur) {
    if (const auto mets = metsCouleur.of(popover_)) mets(couleur);
}

NSViewController* KCPopoverWrapper::contentViewController() const {
    const auto lis = leControleur.of(popover_);
    return lis ? lis() : nullptr;
}

void KCPopoverWrapper::setContentViewController(NSViewController* controller) {
    const Ref<KCPopoverWrapper> moi(this);
    const Ref<NSObject> popover = popover_;
    const Ref<NSViewController> nouveau(controller);
    NSNotificationCenter* centre = NSNotificationCenter::defaultCenter();
    // An absent controller stands for any object: there is nothing of that kind to end, or to listen to.
    if (const Ref<NSViewController> ancien{contentViewController()})
        centre->removeObserver_name_object(popover, kContentWouldChangeSizeNotification, ancien);
    if (const auto mets = metsControleur.of(popover)) mets(controller);
    if (nouveau && popover && popover->respondsToSelector(changementDeTaille()))
        centre->addObserver_selector_name_object(popover, changementDeTaille(), kContentWouldChangeSizeNotification,
                                                 nouveau);
}

BOOL KCPopoverWrapper::isShown() const {
    const auto lis = estAffichay.of(popover_);
    return lis ? lis() : NO;
}

void KCPopoverWrapper::close() {
    const Ref<KCPopoverWrapper> moi(this);
    if (const auto fermer = ferme.of(popover_)) fermer();
}

void KCPopoverWrapper::showRelativeToRect_ofView_preferredEdge(const NSRect& rect, NSView* view, NSUInteger edge) {
    const auto montrer = montre.of(popover_);
    if (!montrer || !view || !view->window()) return;
    const Ref<KCPopoverWrapper> moi(this);
    const Ref<NSView> vue(view);
    const Ref<NSWindow> fenetre(view->window());
    moiAffichay_ = this;
    const Ref<NSViewController> controleur(contentViewController());
    if (auto* ideal = as<TaillePreferee>(controleur)) controleur->view()->setFrameSize(ideal->donneTailleIdeale());
    // The system's popover speaks of the view's own edges, a KCPopover of those on the screen.
    if (vue->isFlipped() && as<NSPopover>(popover_)) edge = retourne(edge);
    montrer(rect, view, edge);

    NSNotificationCenter* centre = NSNotificationCenter::defaultCenter();
    centre->addObserver<&KCPopoverWrapper::sourceDidResize>(this, NSViewFrameDidChangeNotification, vue);
    centre->addObserver<&KCPopoverWrapper::sourceDidResize>(this, NSWindowDidResizeNotification, fenetre);
    if (const NSScrollView* defilement = vue->enclosingScrollView())
        centre->addObserver<&KCPopoverWrapper::sourceDidScroll>(this, NSViewBoundsDidChangeNotification,
                                                                defilement->contentView());
}

// What the anchor tells.

BOOL KCPopoverWrapper::estAttachay() const {
    const auto* maison = as<KCPopover>(popover_);
    return maison && maison->attachay();
}

void KCPopoverWrapper::sourceDidResize(NSNotification*) {
    if (estAttachay()) close();
}

void KCPopoverWrapper::sourceDidScroll(NSNotification*) {
    if (!estAttachay()) return;
    // The balloon goes with its window: a scroll that a move of the window caused leaves it where it belongs.
    const NSEvent* e = NSApp()->currentEvent();
    if (e && e->type() == NSAppKitDefined && e->subtype() == NSWindowMovedEventType) return;
    close();
}

// What the implementation asks and tells.

BOOL KCPopoverWrapper::popoverEstDetachable(NSObject*) { return detachable_; }

NSWindow* KCPopoverWrapper::detachableWindowForPopover(NSObject*) {
    if (!detachable_) return nullptr;
    const auto demande = op::detachableWindowForPopover.of(delegate_);
    return demande ? demande(this) : nullptr;
}

BOOL KCPopoverWrapper::popoverShouldClose(NSObject*) {
    const auto demande = op::popoverShouldClose.of(delegate_);
    return demande ? demande(this) : YES;
}

void KCPopoverWrapper::transmets(NSNotification* notification, const Operation<void(NSNotification*)>& operation) {
    const auto dit = operation.of(delegate_);
    if (!dit || !notification) return;
    const Ref<KCPopoverWrapper> moi(this);
    const Ref<NSNotification> sienne =
        NSNotification::notificationWithName_object_userInfo(notification->name(), this, notification->userInfo());
    dit(sienne);
}

void KCPopoverWrapper::popoverWillShow(NSNotification* n) { transmets(n, op::popoverWillShow); }
void KCPopoverWrapper::popoverDidShow(NSNotification* n) { transmets(n, op::popoverDidShow); }
void KCPopoverWrapper::popoverWillClose(NSNotification* n) { transmets(n, op::popoverWillClose); }

void KCPopoverWrapper::popoverDidClose(NSNotification* n) {
    const Ref<KCPopoverWrapper> moi(this);
    moiAffichay_ = nullptr;
    transmets(n, op::popoverDidClose);
}

} // namespace libvue

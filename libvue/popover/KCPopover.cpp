#include <libvue/popover/KCPopover.h>

#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/appkit/NSViewAnimation.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSValue.h>
#include <libvue/platform/foundation/ScopeExit.h>
#include <libvue/popover/MaFenetre.h>
#include <libvue/popover/NSWindowKerlan.h>
#include <libvue/popover/VueFirstResponder.h>
#include <libvue/popover/VuePopover.h>

namespace libvue {

static const ClassRegistration<KCPopover> enregistrement;

namespace {

constexpr NSUInteger kTousLesBords = 15;
constexpr CGFloat kAlphaBordure = 0.15;
/// Before the first layout.
constexpr NSRect kCadreInitial{{0, 0}, {200, 20}};
constexpr NSUInteger kStyleDetachay = NSTitledWindowMask | NSClosableWindowMask | NSUtilityWindowMask;

constexpr NSPoint origineDe(NSSize marges) noexcept { return {marges.width, marges.height}; }

VuePopover* bulleDe(MaFenetre* panel) { return as<VuePopover>(panel->contentView()); }

void invalideBulle(MaFenetre* panel) {
    if (VuePopover* bulle = bulleDe(panel)) bulle->invalidateContour();
}

/// Keeps the content as large as it is while the balloon changes its form round it.
class ContenuTenu {
public:
    explicit ContenuTenu(MaFenetre* fenetre) : bulle_(fenetre->contentView()) { tiens(NO); }
    ~ContenuTenu() { tiens(YES); }
    ContenuTenu(const ContenuTenu&) = delete;
    ContenuTenu& operator=(const ContenuTenu&) = delete;

private:
    void tiens(BOOL suit) {
        if (bulle_) bulle_->setAutoresizesSubviews(suit);
    }
    Ref<NSView> bulle_;
};

} // namespace

void KCPopover::describe(ClassDescription<KCPopover>& c) {
    c.answers<&KCPopover::transientPanelClose>(op::transientPanelClose);
    c.answers<&KCPopover::transientPanelShouldCloseOnParentWindowResignActive>(
        op::transientPanelShouldCloseOnParentWindowResignActive);
    c.answers<&KCPopover::transientPanelShouldCloseOnParentWindowResignKey>(
        op::transientPanelShouldCloseOnParentWindowResignKey);
    c.answers<&KCPopover::transientPanelShouldCloseOnUnrelatedWindowUsage>(
        op::transientPanelShouldCloseOnUnrelatedWindowUsage);
    c.answers<&KCPopover::windowDidBecomeKey>(op::windowDidBecomeKey);
    c.answers<&KCPopover::windowWillClose>(op::windowWillClose);
    c.answers<&KCPopover::animationDidEnd>(op::animationDidEnd);
    c.answers<&KCPopover::contentWouldChangeSize>("contentWouldChangeSize:");
    c.answers<&KCPopover::layoutEtPositionne>("layoutEtPositionne:");
    c.answers<&KCPopover::parentWindowDidBecomeMain>("parentWindowDidBecomeMain:");
    c.answers<&KCPopover::parentWindowDidResignMain>("parentWindowDidResignMain:");
    c.answers<&KCPopover::parentWindowWillMiniaturize>("parentWindowWillMiniaturize:");
    c.answers<&KCPopover::close>("close");
    c.answers<&KCPopover::isShown>("isShown");
    c.answers<&KCPopover::showRelativeToRect_ofView_preferredEdge>("showRelativeToRect:ofView:preferredEdge:");
    c.answers<&KCPopover::contentViewController>("contentViewController");
    c.answers<&KCPopover::setContentViewController>("setContentViewController:");
    c.answers<&KCPopover::setDelegate>("setDelegate:");
    c.answers<&KCPopover::masqueEdgeAutorisay>("masqueEdgeAutorisay");
    c.answers<&KCPopover::setMasqueEdgeAutorisay>("setMasqueEdgeAutorisay:");
    c.answers<&KCPopover::couleurFond>("couleurFond");
    c.answers<&KCPopover::setCouleurFond>("setCouleurFond:");
    c.key<&KCPopover::contentViewController, &KCPopover::setContentViewController>("contentViewController");
    c.key<&KCPopover::masqueEdgeAutorisay, &KCPopover::setMasqueEdgeAutorisay>("masqueEdgeAutorisay");
    c.key<&KCPopover::couleurFond, &KCPopover::setCouleurFond>("couleurFond");
    c.key<&KCPopover::couleurBordure, &KCPopover::setCouleurBordure>("couleurBordure");
    c.key<&KCPopover::attachay>("attachay");
    c.key<&KCPopover::isShown>("shown");
}

KCPopover::KCPopover()
    : masqueEdgeAutorisay_(kTousLesBords),
      couleurFond_(NSColor::colorWithCalibratedWhite_alpha(1, 1)),
      couleurBordure_(NSColor::colorWithCalibratedWhite_alpha(0, kAlphaBordure)) {}

KCPopover::~KCPopover() {
    NSNotificationCenter::defaultCenter()->removeObserver(this);
    if (panel_) panel_->setTransientDelegate(nullptr);
    panel_ = nullptr;
    vueAncre_ = nullptr;
    contentViewController_ = nullptr;
    couleurFond_ = nullptr;
    couleurBordure_ = nullptr;
}

MaFenetre* KCPopover::panel() {
    if (panel_) return panel_;
    const Ref<VuePopover> bulle = make<VuePopover>(kCadreInitial);
    bulle->setPopover(this);
    panel_ = make<MaFenetre>(kCadreInitial, NSBorderlessWindowMask, NSBackingStoreBuffered, NO);
    panel_->setPopover(this);
    panel_->setContentView(bulle);
    panel_->setBackgroundColor(NSColor::clearColor());
    panel_->setMovable(YES);
    panel_->setMovableByWindowBackground(YES);
    panel_->setOpaque(NO);
    panel_->setExcludedFromWindowsMenu(YES);
    panel_->setBecomesKeyOnlyIfNeeded(YES);
    panel_->setHasShadow(YES);
    panel_->setHidesOnDeactivate(NO);
    panel_->setDelegate(this);
    panel_->setTransientDelegate(this);
    return panel_;
}

void KCPopover::setPanel(MaFenetre* panel) { panel_ = panel; }

BOOL KCPopover::isShown() { return panel()->isVisible(); }

void KCPopover::setContentViewController(NSViewController* controller) {
    const Ref<NSViewController> ancien = std::exchange(contentViewController_, Ref<NSViewController>(controller));
    if (ancien) ancien->view()->removeFromSuperview();
}

NSColor* KCPopover::couleurFond() {
    if (!couleurFond_) couleurFond_ = NSColor::whiteColor();
    return couleurFond_;
}

void KCPopover::setCouleurFond(NSColor* couleur) {
    couleurFond_ = couleur;
    invalideBulle(panel());
}

NSColor* KCPopover::couleurBordure() {
    if (!couleurBordure_) couleurBordure_ = NSColor::blackColor();
    return couleurBordure_;
}

void KCPopover::setCouleurBordure(NSColor* couleur) {
    couleurBordure_ = couleur;
    invalideBulle(panel());
}

// Opening.

void KCPopover::showRelativeToRect_ofView_preferredEdge(const NSRect& rect, NSView* view, NSUInteger edge) {
    if (!view || !view->window()) return;
    const Ref<KCPopover> moi(this);
    const Ref<NSWindow> fenetre(view->window());
    moiAffichay_ = this;
    setVueAncre(view);
    setRectAncre(rect);
    setEdgeAncre(edge);
    setAttachay(YES);
    {
        // It may hold the content of an earlier showing, when it was a window.
        const ContenuTenu tenu(panel());
        rendsSaForme();
        installeFirstResponder(fenetre);
        panel()->contentView()->setFrameSize(contentRect().size);
    }
    if (const Ref<NSView> vue = contenu()) {
        vue->setFrameOrigin(origineDe(kMargesBulle));
        panel()->contentView()->addSubview(vue);
    }
    layoutEtPositionne(contentViewController_);
    observeFenetre(fenetre);
    fenetre->addChildWindow_ordered(panel(), NSWindowAbove);
    raccordeRepondeurs();
}

void KCPopover::rendsSaForme() {
    // One that came off at an earlier showing is a balloon again.
    MaFenetre* fenetre = panel();
    if (fenetre->styleMask() == NSBorderlessWindowMask) return;
    fenetre->setHidesOnDeactivate(NO);
    fenetre->setFloatingPanel(NO);
    fenetre->setStyleMask(NSBorderlessWindowMask);
    fenetre->setBackgroundColor(NSColor::clearColor());
}

void KCPopover::installeFirstResponder(NSWindow* fenetre) {
    // A balloon that is shown elsewhere while it is up goes there, and does not close over the focus that it moves.
    enleveFirstResponder();
    const Ref<VueFirstResponder> vue = make<VueFirstResponder>(NSZeroRect);
    setFirstResponder(vue);
    vue->setPopover(this);
    fenetre->contentView()->addSubview(vue);
    if (fenetre->makeFirstResponder(vue)) return;
    // An editor that keeps the focus is told to end. The balloon is shown in any case.
    const Ref<NSResponder> present(fenetre->firstResponder());
    static const SEL delegueDe = sel("delegate");
    if (present && present->respondsToSelector(delegueDe)) fenetre->endEditingFor(present->performSelector(delegueDe));
}

void KCPopover::enleveFirstResponder() {
    const Ref<NSView> vue = std::exchange(firstResponder_, nullptr);
    if (!vue) return;
    // It gives up the focus by leaving, and that is not the user turning away.
    if (auto* sien = as<VueFirstResponder>(vue)) sien->setPopover(nullptr);
    vue->removeFromSuperview();
}

void KCPopover::observeFenetre(NSWindow* fenetre) {
    NSNotificationCenter* centre = NSNotificationCenter::defaultCenter();
    // Those of an earlier showing end with the popover only; once is enough.
    centre->removeObserver_name_object(this, nullptr, fenetre);
    centre->addObserver<&KCPopover::parentWindowDidBecomeMain>(this, NSWindowDidBecomeMainNotification, fenetre);
    centre->addObserver<&KCPopover::parentWindowDidResignMain>(this, NSWindowDidResignMainNotification, fenetre);
    centre->addObserver<&KCPopover::parentWindowWillMiniaturize>(this, NSWindowWillMiniaturizeNotification, fenetre);
}

void KCPopover::raccordeRepondeurs() {
    if (!firstResponder_) return;
    // Keys typed in the anchor's window go to the balloon, and from there on as before.
    const Ref<NSResponder> suivant(firstResponder_->nextResponder());
    firstResponder_->setNextResponder(panel()->firstResponder());
    panel()->setNextResponder(suivant);
}

// Placement.

NSView* KCPopover::contenu() const { return contentViewController_ ? contentViewController_->view() : nullptr; }

NSRect KCPopover::contentRect() const {
    const NSView* vue = contenu();
    return NSInsetRect(vue ? vue->frame() : NSZeroRect, -kMargesBulle.width, -kMargesBulle.height);
}

AncragePopover KCPopover::ancrage() const {
    AncragePopover a;
    const NSWindow* fenetre = vueAncre_ ? vueAncre_->window() : nullptr;
    if (!vueAncre_) return a;
    a.ancre = vueAncre_->convertRect_toView(rectAncre_, nullptr);
    if (!fenetre) return a;
    a.ancre.origin = fenetre->convertBaseToScreen(a.ancre.origin);
    if (const NSScreen* ecran = fenetre->screen()) a.cadreVisible = ecran->visibleFrame();
    return a;
}

NSRect KCPopover::rectAvecEdge(NSUInteger edge) const { return rectAvecEdge_contentSize(edge, contentRect().size); }

NSRect KCPopover::rectAvecEdge_contentSize(NSUInteger edge, NSSize taille) const {
    return rectPopover(ancrage(), edge, taille);
}

void KCPopover::rectPourAffichageOptimal_edge(NSRect* rect, NSUInteger* edge) const {
    rectPourAffichageOptimal_edge_contentSize(rect, edge, contentRect().size);
}

void KCPopover::rectPourAffichageOptimal_edge_contentSize(NSRect* rect, NSUInteger* edge, NSSize taille) const {
    const PlacementPopover p =
        placementOptimal(ancrage(), edgeAncre_, masqueEdgeAutorisay_, taille, contentRect().size);
    if (rect) *rect = p.rect;
    if (edge) *edge = p.edge;
}

void KCPopover::layoutEtPositionne(NSViewController*) {
    const Ref<NSView> vue = contenu();
    if (!vue || !vueAncre_) return;
    const Ref<KCPopover> moi(this);
    const Ref<MaFenetre> fenetre(panel());
    if (!attachay_) {
        // The lower left corner stays put, whatever the desktop draws round the content.
        NSRect r = fenetre->contentRectForFrameRect(fenetre->frame());
        r.size = NSInsetRect(vue->frame(), -kMargesDetachay.width, -kMargesDetachay.height).size;
        fenetre->setFrame_display(fenetre->frameRectForContentRect(r), YES);
        return;
    }
    NSRect r;
    rectPourAffichageOptimal_edge(&r, &edgeTemporaire_);
    invalideBulle(fenetre);
    fenetre->contentView()->setFrameSize(r.size);
    vue->setFrameOrigin(origineDe(kMargesBulle));
    fenetre->setFrame_display(r, YES);
}

void KCPopover::contentWouldChangeSize(NSNotification* notification) {
    const Ref<KCPopover> moi(this);
    const NSDictionary* info = notification ? notification->userInfo() : nullptr;
    const auto* valeur = info ? info->get<NSValue>(u"size"_ns) : nullptr;
    if (!valeur) return;
    const NSSize marges = attachay_ ? kMargesBulle : kMargesDetachay;
    NSSize s = valeur->sizeValue();
    s.width += 2 * marges.width;
    s.height += 2 * marges.height;
    NSRect r;
    rectPourAffichageOptimal_edge_contentSize(&r, nullptr, s);
    panel()->contentView()->setFrameSize(r.size);
    layoutEtPositionne(contentViewController_);
}

// Coming off.

BOOL KCPopover::estDetachable() {
    const auto demande = op::popoverEstDetachable.of(delegate_);
    return demande ? demande(this) : YES;
}

void KCPopover::decrochePopover() {
    if (!attachay_ || !estDetachable()) return;
    const Ref<KCPopover> moi(this);
    const Ref<MaFenetre> fenetre(panel());
    setAttachay(NO);
    const ContenuTenu tenu(fenetre);
    fenetre->setOpaque(NO);
    fenetre->setBackgroundColor(couleurFond());
    NSRect c = fenetre->contentRectForFrameRect(fenetre->frame());
    fenetre->setStyleMask(kStyleDetachay);
    invalideBulle(fenetre);
    const Ref<NSView> vue = contenu();
    if (vue) vue->setFrameOrigin(origineDe(kMargesDetachay));
    // The content stays on the screen just where it was.
    c.size = NSInsetRect(vue ? vue->frame() : NSZeroRect, -kMargesDetachay.width, -kMargesDetachay.height).size;
    c.origin.x += kMargesBulle.width - kMargesDetachay.width;
    c.origin.y += kMargesBulle.height - kMargesDetachay.height;
    c = fenetre->frameRectForContentRect(c);
    if (const Ref<NSWindow> parent = fenetre->parentWindow()) parent->removeChildWindow(fenetre);
    fenetre->setHidesOnDeactivate(YES);
    fenetre->setFloatingPanel(YES);
    fenetre->setFrame_display(c, YES);
}

// What its panel and its windows tell it.

void KCPopover::transientPanelClose(KCTransientPanel*) { close(); }
BOOL KCPopover::transientPanelShouldCloseOnParentWindowResignActive(KCTransientPanel*) { return NO; }
BOOL KCPopover::transientPanelShouldCloseOnParentWindowResignKey(KCTransientPanel*) { return NO; }
BOOL KCPopover::transientPanelShouldCloseOnUnrelatedWindowUsage(KCTransientPanel*) { return NO; }

void KCPopover::parentWindowDidBecomeMain(NSNotification*) {
    // What was closed stays closed, although the window is heard of until the end.
    if (!attachay_ && moiAffichay_) panel()->orderFront(nullptr);
}

void KCPopover::parentWindowDidResignMain(NSNotification*) {
    if (!attachay_) panel()->orderOut(nullptr);
}

void KCPopover::parentWindowWillMiniaturize(NSNotification*) {
    if (attachay_) close();
}

void KCPopover::windowDidBecomeKey(NSNotification*) {
    const Ref<KCPopover> moi(this);
    if (const Ref<NSWindow> parent = panel()->parentWindow()) parent->makeMainWindow();
    // The border's colour tells the key status.
    panel()->contentView()->setNeedsDisplay(YES);
}

// Closing.

void KCPopover::close() {
    // Not shown, there is nothing to fade; a later showing must not be caught in the middle of it.
    if (fermetureEnCours_ || !moiAffichay_) return;
    const Ref<KCPopover> moi(this);
    fermetureEnCours_ = YES;
    const Ref<NSMutableArray> fenetres = NSMutableArray::arrayWithObject(panel());
    getAllWindowDescendants(panel(), fenetres);
    const Ref<NSMutableArray> entrees = NSMutableArray::arrayWithCapacity(fenetres->count());
    for (NSUInteger i = 0; i < fenetres->count(); ++i)
        entrees->addObject(NSDictionary::dictionaryWithObjectsAndKeys(
            {{NSViewAnimationTargetKey.get(), fenetres->objectAtIndex(i)},
             {NSViewAnimationEffectKey.get(), NSViewAnimationFadeOutEffect.get()}}));
    const Ref<NSViewAnimation> animation = make<NSViewAnimation>(entrees);
    // The user goes on meanwhile.
    animation->setAnimationBlockingMode(NSAnimationNonblocking);
    animation->setDelegate(this);
    moiFermant_ = this;
    animation->startAnimation();
}

void KCPopover::animationDidEnd(NSAnimation*) {
    const Ref<KCPopover> moi(this);
    const Ref<MaFenetre> fenetre(panel());
    moiFermant_ = nullptr;
    const ScopeExit fini([&] { fermetureEnCours_ = NO; });
    if (const Ref<NSWindow> parent = fenetre->parentWindow()) parent->removeChildWindow(fenetre);
    fenetre->close();
}

void KCPopover::windowWillClose(NSNotification*) {
    const Ref<KCPopover> moi(this);
    if (NSWindow* parent = panel()->parentWindow())
        NSNotificationCenter::defaultCenter()->removeObserver_name_object(this, nullptr, parent);
    enleveFirstResponder();
    // A window that is closed once more, by its box in the middle of the fade, has been told of already.
    if (!std::exchange(moiAffichay_, nullptr)) return;
    if (const auto dit = op::popoverDidClose.of(delegate_))
        dit(NSNotification::notificationWithName_object(KCPopoverDidCloseNotification, this));
}

} // namespace libvue

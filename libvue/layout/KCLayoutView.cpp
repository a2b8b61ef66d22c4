#include <libvue/layout/KCLayoutView.h>

#include <libvue/platform/foundation/KindTest.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>

namespace libvue {

static const ClassRegistration<KCLayoutView> enregistrement;

namespace {

constexpr ConstantString kHidden{u"hidden"};

/// The view as a layout view, or null.
KCLayoutView* layoutView(NSView* vue) {
    static KindTest<KCLayoutView> test;
    return test(vue) ? static_cast<KCLayoutView*>(vue) : nullptr;
}

} // namespace

KCLayoutViewDelegate::~KCLayoutViewDelegate() = default;
KCLayoutManager::~KCLayoutManager() = default;
TaillePreferee::~TaillePreferee() = default;

void KCLayoutView::describe(ClassDescription<KCLayoutView, NSView>& c) {
    c.key<&KCLayoutView::necessiteLayout, &KCLayoutView::setNecessiteLayout>("necessiteLayout");
    c.answers<&KCLayoutView::subviewFrameDidChange>("subviewFrameDidChange:");
}

KCLayoutView::~KCLayoutView() {
    NSNotificationCenter::defaultCenter()->removeObserver(this);
    if (layoutManager_) layoutManager_->setHote(nullptr);
    layoutManager_ = nullptr;
    gerant_ = nullptr;
}

void KCLayoutView::setLayoutManager(KCLayoutManager* manager) {
    layoutManager_ = manager;
    gerant_ = objectBehind(manager);
    if (layoutManager_) layoutManager_->setHote(this);
}

void KCLayoutView::setLayoutDelegate(KCLayoutViewDelegate* delegate) {
    layoutDelegate_ = delegate;
    setNecessiteLayout(YES);
}

void KCLayoutView::setNecessiteLayout(BOOL v) {
    necessiteLayout_ = v;
    if (KCLayoutView* p = parent) p->setNecessiteLayout(v);
    if (NSView* s = superview()) s->setNeedsDisplay(YES);
}

void KCLayoutView::layoutSiNecessaire() {
    if (necessiteLayout_) zerl_layout();
}

void KCLayoutView::layoutSiNecessaireRecursifDepthFirst(NSView* vue) {
    if (KCLayoutView* layout = layoutView(vue)) {
        layout->layoutSiNecessaire();
        return;
    }
    descend(vue);
}

void KCLayoutView::descend(const NSView* vue) {
    // Place by place in the list as it is then: what runs in a pass may change it.
    for (std::size_t i = 0; i < vue->subviews().size(); ++i) {
        NSView* const v = *SubviewList::Iterator(vue->subviews(), i);
        if (KCLayoutView* layout = layoutView(v))
            layout->layoutSiNecessaire();
        else if (!v->subviews().empty()) {
            const Ref<NSView> kept(v);
            descend(v);
        }
    }
}

void KCLayoutView::zerl_layout() {
    const Ref<KCLayoutView> self(this);
    descend(this);

    KCLayoutViewDelegate* const d = layoutDelegate_;
    KCLayoutManager* const m = layoutManager_;
    const Ref<NSObject> delegue(objectBehind(d)), gerant = gerant_;
    // The delegate comes first on the way in and has the last word after it; in between the manager leads.
    if (auto will = op::willLayout.of(delegue)) will(this);
    if (auto will = op::willLayout.of(gerant)) will(this);
    if (m) m->effectueLayout(this);
    if (d) d->effectueLayout(this);
    if (auto did = op::didLayout.of(gerant)) did(this);
    if (auto did = op::didLayout.of(delegue)) did(this);
    // In the field: neither the parent nor the superview hears of it, and what the pass itself raised here is wiped.
    necessiteLayout_ = NO;
}

void KCLayoutView::trouveParent() {
    parent = nullptr;
    for (NSView* v = superview(); v; v = v->superview())
        if (auto* layout = as<KCLayoutView>(v)) {
            parent = layout;
            return;
        }
}

void KCLayoutView::subviewFrameDidChange(NSNotification*) { setNecessiteLayout(YES); }

void KCLayoutView::resizeSubviewsWithOldSize(const NSSize& oldSize) {
    const Ref<KCLayoutView> self(this);
    if (auto resize = op::layoutView_resizeSubviewsWithOldSize.of(gerant_)) resize(this, oldSize);
    if (auto resize = op::layoutView_resizeSubviewsWithOldSize.of(layoutDelegate_)) resize(this, oldSize);
    setNecessiteLayout(YES);
}

void KCLayoutView::drawRect(const NSRect& rect) {
    layoutSiNecessaire();
    NSView::drawRect(rect);
}

void KCLayoutView::viewDidMoveToSuperview() {
    NSView::viewDidMoveToSuperview();
    trouveParent();
}

void KCLayoutView::viewDidMoveToWindow() {
    NSView::viewDidMoveToWindow();
    trouveParent();
}

void KCLayoutView::didAddSubview(NSView* vue) {
    NSView::didAddSubview(vue);
    vue->addObserver_forKeyPath_options_context(this, kHidden, NSKeyValueObservingOptionNone, nullptr);
    NSNotificationCenter::defaultCenter()->addObserver<&KCLayoutView::subviewFrameDidChange>(
        this, NSViewFrameDidChangeNotification, vue);
    setNecessiteLayout(YES);
}

void KCLayoutView::willRemoveSubview(NSView* vue) {
    NSView::willRemoveSubview(vue);
    vue->removeObserver_forKeyPath(this, kHidden);
    NSNotificationCenter::defaultCenter()->removeObserver_name_object(this, NSViewFrameDidChangeNotification, vue);
    setNecessiteLayout(YES);
}

void KCLayoutView::observeValueForKeyPath_ofObject_change_context(NSString* path, NSObject* object,
                                                                  NSDictionary* change, void* context) {
    if (path->isEqualToString(kHidden))
        setNecessiteLayout(YES);
    else
        NSView::observeValueForKeyPath_ofObject_change_context(path, object, change, context);
}

} // namespace libvue

#include <libvue/platform/appkit/NSView.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/DrawingPass.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSViewExtras.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSKeyValueBinding.h>

namespace libvue {

namespace {
const ExposedBinding exposed[] = {{&classOf<NSView>, NSHiddenBinding}, {&classOf<NSView>, NSToolTipBinding}};
}

void NSView::describe(ClassDescription<NSView, NSResponder>& c) {
    c.key<&NSView::frame, &NSView::setFrame>("frame");
    c.key<&NSView::bounds, &NSView::setBounds>("bounds");
    c.key<&NSView::isHidden, &NSView::setHidden>("hidden");
    c.key<&NSView::alphaValue, &NSView::setAlphaValue>("alphaValue");
    c.key<&NSView::toolTip, &NSView::setToolTip>("toolTip");
    c.key<&NSView::superview>("superview");
    c.key<&NSView::window>("window");
    c.answers<&NSView::print>(op::print);
}

NSView::NSView() = default;

NSView::NSView(const NSRect& frame) : frame_(frame), bounds_{{0, 0}, frame.size} {}

NSView::NSView(NSCoder& coder) {
    coder.beginDecoding(this);
    frame_ = coder.decodeRectForKey(u"NSFrame"_ns);
    bounds_.size = frame_.size;
    mask_ = static_cast<std::uint8_t>(coder.decodeIntegerForKey(u"NSAutoresizingMask"_ns));
    hidden_ = coder.decodeBoolForKey(u"NSHidden"_ns);
    if (const Ref<NSArray> views = as<NSArray>(coder.decodeObjectForKey(u"NSSubviews"_ns)))
        for (NSObject* o : *views)
            if (auto* v = as<NSView>(o); v && !isDescendantOf(v)) addSubview(v);
}

void NSView::encodeWithCoder(NSCoder& coder) const {
    coder.encodeRect_forKey(frame_, u"NSFrame"_ns);
    coder.encodeInteger_forKey(mask_, u"NSAutoresizingMask"_ns);
    if (hidden_) coder.encodeBool_forKey(YES, u"NSHidden"_ns);
    if (!subviews_.empty()) coder.encodeObject_forKey(subviews_.array(), u"NSSubviews"_ns);
}

NSView::~NSView() {
    // Nobody is told: a view that dies with its subviews takes the whole branch along.
    for (auto& v : subviews_.views_) {
        v->superview_ = nullptr;
        if (v->retainCount() > 1) {
            if (v->window_) v->moveToWindow_(nullptr);
            v->setNextResponder(nullptr);
            v->viewDidMoveToSuperview();
        }
    }
}

NSView::Extras& NSView::extras() {
    if (!extras_) extras_ = std::make_unique<Extras>();
    return *extras_;
}

// The tree.

namespace {

/// Tells the view and those below it; what is hidden by itself has not changed.
void tellHidden(NSView* view, BOOL hidden) {
    const Ref<NSView> kept(view);
    if (hidden)
        view->viewDidHide();
    else
        view->viewDidUnhide();
    for (const auto& below : view->subviews().copy())
        if (below->superview() == view && !below->isHidden()) tellHidden(below, hidden);
}

} // namespace

void NSView::addSubview(NSView* view) { addSubview_positioned_relativeTo(view, NSWindowAbove, nullptr); }

void NSView::addSubview_positioned_relativeTo(NSView* view, NSWindowOrderingMode place, NSView* other) {
    if (!view) raiseNamed(NSInvalidArgumentException, "addSubview: of no view");
    if (isDescendantOf(view)) raiseNamed(NSInvalidArgumentException, "addSubview: of the view itself or one above it");
    const Ref<NSView> kept(view), self(this);
    if (view->superview_) view->unlink(YES);
    std::size_t index = place == NSWindowBelow ? 0 : subviews_.size();
    if (other) {
        const NSUInteger at = subviews_.indexOfObject(other);
        if (at != NSUInteger{NSNotFound}) index = place == NSWindowBelow ? at : at + 1;
    }
    link(view, index);
}

void NSView::link(NSView* view, std::size_t index) {
    view->viewWillMoveToSuperview(this);
    ++subviews_.changes_;
    subviews_.views_.insert(subviews_.views_.begin() + static_cast<std::ptrdiff_t>(std::min(index, subviews_.size())),
                            Ref<NSView>(view));
    view->superview_ = this;
    view->setNextResponder(this);
    if (view->window_ != window_) view->moveToWindow_(window_);
    view->viewDidMoveToSuperview();
    view->wholeDirty_ = false;
    view->setNeedsDisplay(YES);
    markSubtreeDirty();
    didAddSubview(view);
    if (!view->hidden_ && view->superview_ == this && isHiddenOrHasHiddenAncestor()) tellHidden(view, YES);
}

void NSView::unlink(BOOL needsDisplay) {
    const Ref<NSView> self(this);
    const Ref<NSView> parent(superview_);
    if (!parent) return;
    parent->willRemoveSubview(this);
    // The superview may have removed the view on hearing of it.
    if (superview_ != parent.get()) return;
    viewWillMoveToSuperview(nullptr);
    if (needsDisplay) parent->setNeedsDisplayInRect(frame_);
    const BOOL comesInSight = !hidden_ && parent->isHiddenOrHasHiddenAncestor();
    auto& views = parent->subviews_.views_;
    const auto at = std::find_if(views.begin(), views.end(), [&](const Ref<NSView>& v) { return v.get() == this; });
    ++parent->subviews_.changes_;
    superview_ = nullptr;
    if (at != views.end()) views.erase(at);
    // After the link is cut, so that what looks upward on leaving the window no longer sees the old branch.
    if (window_) moveToWindow_(nullptr);
    // Somewhere on the way the view may have been put elsewhere.
    if (superview_) return;
    setNextResponder(nullptr);
    viewDidMoveToSuperview();
    if (comesInSight && !superview_) tellHidden(this, NO);
}

void NSView::removeFromSuperview() { unlink(YES); }
void NSView::removeFromSuperviewWithoutNeedingDisplay() { unlink(NO); }

void NSView::replaceSubview_with(NSView* old, NSView* replacement) {
    if (subviews_.indexOfObject(old) == NSUInteger{NSNotFound})
        raiseNamed(NSInvalidArgumentException, "replaceSubview: of a view that is none");
    if (old == replacement) return;
    if (replacement && isDescendantOf(replacement))
        raiseNamed(NSInvalidArgumentException, "replaceSubview: with a view above it");
    const Ref<NSView> keptOld(old), kept(replacement), self(this);
    // The replacement leaves first: where it stood before the old one, the place moves down by one.
    if (replacement && replacement->superview_) replacement->unlink(YES);
    const NSUInteger at = subviews_.indexOfObject(old);
    if (at != NSUInteger{NSNotFound}) old->unlink(YES);
    if (replacement) link(replacement, std::min<std::size_t>(at, subviews_.size()));
}

void NSView::setSubviews(NSArray* views) {
    const Ref<NSArray> kept(views);
    const Ref<NSView> self(this);
    std::vector<Ref<NSView>> wanted;
    if (views)
        for (NSObject* o : *views)
            if (auto* v = as<NSView>(o)) wanted.emplace_back(v);
    for (const auto& v : subviews_.copy())
        if (std::find(wanted.begin(), wanted.end(), v) == wanted.end() && v->superview_ == this) v->unlink(YES);
    for (const auto& v : wanted)
        if (v->superview_ != this) addSubview(v);
    // All of them are in now; what is left is their order.
    std::vector<Ref<NSView>> ordered;
    for (const auto& v : wanted)
        if (v->superview_ == this && std::find(ordered.begin(), ordered.end(), v) == ordered.end())
            ordered.push_back(v);
    if (ordered.size() == subviews_.size() && ordered != subviews_.views_) {
        ++subviews_.changes_;
        subviews_.views_ = std::move(ordered);
        setNeedsDisplay(YES);
    }
}

void NSView::didAddSubview(NSView*) {}
void NSView::willRemoveSubview(NSView*) {}
void NSView::viewWillMoveToSuperview(NSView*) {}
void NSView::viewDidMoveToSuperview() {}
void NSView::viewWillMoveToWindow(NSWindow*) {}
void NSView::viewDidMoveToWindow() {}

void NSView::moveToWindow_(NSWindow* window) {
    const Ref<NSView> self(this);
    viewWillMoveToWindow(window);
    if (const Ref<NSWindow> former = window_; former && former != window) {
        // The focus does not stay on a view that leaves. Whoever hears of that may take the view elsewhere.
        if (former->firstResponder() == this) former->makeFirstResponder(nullptr);
        if (extras_) former->invalidateCursorRectsForView(this);
    }
    window_ = window;
    for (std::size_t i = 0; i < subviews_.views_.size(); ++i) {
        const Ref<NSView> v = subviews_.views_[i];
        if (v->window_ != window) v->moveToWindow_(window);
    }
    if (window && extras_) window->invalidateCursorRectsForView(this);
    viewDidMoveToWindow();
}

BOOL NSView::isDescendantOf(const NSView* view) const noexcept {
    for (const NSView* v = this; v; v = v->superview_)
        if (v == view) return YES;
    return NO;
}

NSView* NSView::viewWithTag(NSInteger tag) {
    if (this->tag() == tag) return this;
    for (NSView* v : subviews_)
        if (NSView* found = v->viewWithTag(tag)) return found;
    return nullptr;
}

NSScrollView* NSView::enclosingScrollView() const {
    for (NSView* v = superview_; v; v = v->superview_)
        if (auto* s = as<NSScrollView>(v)) return s;
    return nullptr;
}

NSString* NSView::identifier() const { return extras_ ? extras_->identifier.get() : nullptr; }
void NSView::setIdentifier(NSString* identifier) { extras().identifier = identifier; }

// Hiding.

void NSView::setHidden(BOOL hidden) {
    if (hidden == hidden_) return;
    const Ref<NSView> self(this);
    const auto key = u"hidden"_ns;
    const bool observed = sideIfAny() != nullptr;
    if (observed) willChangeValueForKey(key);
    if (hidden && window_) {
        // The focus leaves a branch that can no longer be seen.
        auto* first = as<NSView>(window_->firstResponder());
        if (first && first->isDescendantOf(this)) window_->makeFirstResponder(nullptr);
    }
    hidden_ = hidden;
    if (superview_ && !DrawingScope::draws(superview_, frame_)) superview_->setNeedsDisplayInRect(frame_);
    if (!hidden) {
        wholeDirty_ = false;
        setNeedsDisplay(YES);
    }
    if (!superview_ || !superview_->isHiddenOrHasHiddenAncestor()) tellHidden(this, hidden);
    if (observed) didChangeValueForKey(key);
}

BOOL NSView::isHiddenOrHasHiddenAncestor() const noexcept {
    for (const NSView* v = this; v; v = v->superview_)
        if (v->hidden_) return YES;
    return NO;
}

CGFloat NSView::alphaValue() const noexcept { return extras_ ? extras_->alpha : 1; }
void NSView::setAlphaValue(CGFloat alpha) {
    const CGFloat held = std::clamp(alpha, 0.0, 1.0);
    if (std::isnan(alpha) || held == alphaValue()) return;
    extras().alpha = held;
    setNeedsDisplay(YES);
}

} // namespace libvue

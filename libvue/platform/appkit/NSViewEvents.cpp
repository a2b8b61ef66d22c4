#include <algorithm>

#include <libvue/platform/appkit/CoordinateMap.h>
#include <libvue/platform/appkit/NSCursor.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSTrackingArea.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/appkit/NSViewExtras.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSArray.h>

namespace libvue {

// Finding.

NSView* NSView::hitTest(NSPoint p) {
    if (hidden_ || !NSPointInRect(p, frame_)) return nullptr;
    const NSPoint own = CoordinateMap::toSuperview(frame_, bounds_, isFlipped(), superview_ && superview_->isFlipped())
                            .inverted()
                            .apply(p);
    // Front to back; by index, since an override may change the list.
    for (std::size_t i = subviews_.size(); i-- > 0;) {
        if (i >= subviews_.size()) continue;
        const Ref<NSView> v(subviews_[i]);
        if (NSView* hit = v->hitTest(own)) return hit;
    }
    return this;
}

BOOL NSView::mouse_inRect(NSPoint p, const NSRect& r) const { return NSMouseInRect(p, r, isFlipped()); }
BOOL NSView::acceptsFirstMouse(NSEvent*) { return NO; }

BOOL NSView::performKeyEquivalent(NSEvent* e) {
    const Ref<NSView> self(this);
    for (const auto& v : subviews_.copy())
        if (v->superview_ == this && !v->hidden_ && v->performKeyEquivalent(e)) return YES;
    return NO;
}

// Context menus.

NSMenu* NSView::menu() const { return extras_ ? extras_->menu.get() : nullptr; }
void NSView::setMenu(NSMenu* menu) { extras().menu = menu; }
NSMenu* NSView::menuForEvent(NSEvent*) { return menu(); }

void NSView::rightMouseDown(NSEvent* e) {
    const Ref<NSView> self(this);
    if (const Ref<NSMenu> m = menuForEvent(e))
        NSMenu::popUpContextMenu_withEvent_forView(m, e, this);
    else
        NSResponder::rightMouseDown(e);
}

// The loop of key views: links where they were set, else the order of the tree.

NSView* NSView::nextKeyView() const { return extras_ ? extras_->nextKeyView.get() : nullptr; }
NSView* NSView::previousKeyView() const { return extras_ ? extras_->previousKeyView.get() : nullptr; }

void NSView::setNextKeyView(NSView* view) {
    if (NSView* old = nextKeyView(); old && old->previousKeyView() == this) old->extras().previousKeyView = nullptr;
    extras().nextKeyView = view;
    if (view) view->extras().previousKeyView = this;
}

BOOL NSView::canBecomeKeyView() { return window_ && acceptsFirstResponder() && !isHiddenOrHasHiddenAncestor(); }

namespace {

void appendInTreeOrder(NSView* v, std::vector<NSView*>& out) {
    out.push_back(v);
    // Reading order: rows from the top, each from the left; equal places keep the order of the list.
    std::vector<NSView*> children;
    for (NSView* c : v->subviews())
        if (!c->isHidden()) children.push_back(c);
    const bool down = v->isFlipped();
    const auto top = [&](const NSView* c) { return down ? NSMinY(c->frame()) : -NSMaxY(c->frame()); };
    std::stable_sort(children.begin(), children.end(), [&](NSView* a, NSView* b) { return top(a) < top(b); });
    // Of one row are those that hold each other's middle line: neighbours differ a little in height.
    const auto holdsMiddle = [](const NSView* a, const NSView* b) {
        const CGFloat middle = NSMidY(b->frame());
        return NSMinY(a->frame()) <= middle && middle <= NSMaxY(a->frame());
    };
    for (auto row = children.begin(); row != children.end();) {
        const auto end = std::find_if(row + 1, children.end(),
                                      [&](const NSView* c) { return !holdsMiddle(*row, c) || !holdsMiddle(c, *row); });
        std::stable_sort(row, end, [](NSView* a, NSView* b) { return NSMinX(a->frame()) < NSMinX(b->frame()); });
        row = end;
    }
    for (NSView* c : children)
        appendInTreeOrder(c, out);
}

NSView* neighbour(NSView* from, bool forward) {
    // Links that were set lead first.
    std::vector<NSView*> seen;
    for (NSView* v = forward ? from->nextKeyView() : from->previousKeyView(); v && v != from;
         v = forward ? v->nextKeyView() : v->previousKeyView()) {
        if (std::find(seen.begin(), seen.end(), v) != seen.end()) break;
        if (v->canBecomeKeyView()) return v;
        seen.push_back(v);
    }
    NSView* root = from;
    while (root->superview())
        root = root->superview();
    std::vector<NSView*> all;
    appendInTreeOrder(root, all);
    const auto at = std::find(all.begin(), all.end(), from);
    const std::size_t n = all.size(), start = at == all.end() ? 0 : static_cast<std::size_t>(at - all.begin());
    for (std::size_t k = 1; k <= n; ++k) {
        NSView* v = all[(start + (forward ? k : n - k)) % n];
        if (v != from && v->canBecomeKeyView()) return v;
    }
    return from->canBecomeKeyView() ? from : nullptr;
}

} // namespace

NSView* NSView::nextValidKeyView() { return neighbour(this, true); }
NSView* NSView::previousValidKeyView() { return neighbour(this, false); }

void NSView::setFocusRingType(NSFocusRingType t) {
    if (focusRing_ == t) return;
    focusRing_ = static_cast<std::uint8_t>(t);
    setNeedsDisplay(YES);
}

// Cursors, tracking, tool tips.

void NSView::resetCursorRects() {}

void NSView::addCursorRect_cursor(const NSRect& r, NSCursor* cursor) {
    if (cursor && !NSIsEmptyRect(r)) extras().cursorRects.push_back({r, Ref<NSObject>(cursor)});
}

void NSView::discardCursorRects() {
    if (extras_) extras_->cursorRects.clear();
}

void NSView::addTrackingArea(NSTrackingArea* area) {
    if (area) extras().trackingAreas.emplace_back(area);
}

void NSView::removeTrackingArea(NSTrackingArea* area) {
    if (extras_) std::erase_if(extras_->trackingAreas, [&](const Ref<NSObject>& o) { return o.get() == area; });
}

void NSView::updateTrackingAreas() {}

Ref<NSArray> NSView::trackingAreas() const {
    auto out = NSMutableArray::array();
    if (extras_)
        for (const auto& o : extras_->trackingAreas)
            out->addObject(o);
    return out;
}

namespace {
NSInteger nextTag() {
    static NSInteger last = 0;
    return ++last;
}
} // namespace

NSTrackingRectTag NSView::addTrackingRect_owner_userData_assumeInside(const NSRect& r, NSObject* owner, void*, BOOL) {
    const auto area = make<NSTrackingArea>(r, NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways, owner, nullptr);
    addTrackingArea(area);
    const NSTrackingRectTag tag = nextTag();
    extras().trackingRects.emplace_back(tag, Ref<NSObject>(area));
    return tag;
}

void NSView::removeTrackingRect(NSTrackingRectTag tag) {
    if (!extras_) return;
    auto& rects = extras_->trackingRects;
    const auto at = std::find_if(rects.begin(), rects.end(), [&](const auto& r) { return r.first == tag; });
    if (at == rects.end()) return;
    const Ref<NSObject> area = at->second;
    rects.erase(at);
    removeTrackingArea(as<NSTrackingArea>(area));
}

NSString* NSView::toolTip() const { return extras_ ? extras_->toolTip.get() : nullptr; }

void NSView::setToolTip(NSString* text) {
    Extras& e = extras();
    std::erase_if(e.toolTips, [](const auto& t) { return t.wholeView; });
    e.toolTip = text ? NSString::stringWithString(text) : nullptr;
    if (text && text->length() > 0) e.toolTips.push_back({nextTag(), bounds_, YES, nullptr, e.toolTip, nullptr});
}

NSToolTipTag NSView::addToolTipRect_owner_userData(const NSRect& r, NSObject* owner, void* data) {
    const NSToolTipTag tag = nextTag();
    Ref<NSString> text;
    if (auto* s = as<NSString>(owner)) text = s;
    extras().toolTips.push_back({tag, r, NO, owner, text, data});
    return tag;
}

void NSView::removeToolTip(NSToolTipTag tag) {
    if (extras_) std::erase_if(extras_->toolTips, [&](const auto& t) { return t.tag == tag; });
}

void NSView::removeAllToolTips() {
    if (!extras_) return;
    extras_->toolTips.clear();
    extras_->toolTip = nullptr;
}

// Accessibility.

AccessibilityDescription NSView::accessibilityDescription() const {
    AccessibilityDescription d;
    d.label = accessibilityLabel();
    if (d.label) d.role = u"group"_ns;
    return d;
}

void NSView::setAccessibilityLabel(NSString* label) { extras().accessibilityLabel = label; }
NSString* NSView::accessibilityLabel() const { return extras_ ? extras_->accessibilityLabel.get() : nullptr; }

} // namespace libvue

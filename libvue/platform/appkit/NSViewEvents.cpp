#include <algorithm>

#include <libvue/platform/appkit/NSCursor.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSTrackingArea.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/appkit/NSViewExtras.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/ViewCoordinates.h>
#include <libvue/platform/foundation/NSArray.h>

namespace libvue {

// Finding.

NSView* NSView::hitTest(NSPoint p) {
    if (hidden_ || !NSPointInRect(p, frame_)) return nullptr;
    const NSPoint own = mapToSuperview(this).inverted().apply(p);
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

// The focus ring.

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

NSToolTipTag nextTag() {
    static NSToolTipTag last = 0;
    return ++last;
}

} // namespace

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

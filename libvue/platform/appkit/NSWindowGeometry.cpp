#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/appkit/NSViewAnimation.h>
#include <libvue/platform/appkit/NSWindowPrivate.h>
#include <libvue/platform/foundation/FiniteGeometry.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSUserDefaults.h>
#include <libvue/platform/foundation/NSValue.h>

namespace libvue {

namespace {

/// What a title bar takes while the desktop has not said: it says so once a window is on the screen, and then the frame
/// changes round the content, which stays.
constexpr NSEdgeInsets titledInsets{22, 0, 0, 0};
constexpr NSEdgeInsets noInsets{};
/// Seconds.
constexpr NSTimeInterval restBeforeSaving = 0.5;

NSRect grown(const NSRect& content, const NSEdgeInsets& i) {
    return {{content.origin.x - i.left, content.origin.y - i.bottom},
            {content.size.width + i.left + i.right, content.size.height + i.top + i.bottom}};
}

NSRect shrunk(const NSRect& frame, const NSEdgeInsets& i) {
    return {{frame.origin.x + i.left, frame.origin.y + i.bottom},
            {std::max(0.0, frame.size.width - i.left - i.right), std::max(0.0, frame.size.height - i.top - i.bottom)}};
}

} // namespace

NSRect NSWindow::frameRectForContentRect(const NSRect& content) const {
    if (!isTitled()) return content;
    return grown(content, insets_ == noInsets ? titledInsets : insets_);
}

NSRect NSWindow::contentRectForFrameRect(const NSRect& frame) const {
    if (!isTitled()) return frame;
    return shrunk(frame, insets_ == noInsets ? titledInsets : insets_);
}

void NSWindow::applyFrame(const NSRect& frame, BOOL tellServer) {
    const NSRect old = frame_;
    if (frame == old || !isFinite(frame)) return;
    const Ref<NSWindow> self(this);
    const NSSize oldContent = root_->frame().size;
    frame_ = frame;
    const NSRect content = contentRectForFrameRect(frame_);
    if (tellServer && native_) windowServer().setContent(native_, content);
    if (content.size != oldContent) root_->setFrameSize(content.size);
    // Children keep their place from the corner at which a window hangs.
    const NSPoint delta{frame.origin.x - old.origin.x, NSMaxY(frame) - NSMaxY(old)};
    if (delta != NSPoint{0, 0}) moveChildren(delta);
    if (frame.size != old.size) {
        placeSheet();
        if (const Ref<NSWindow> owner = sheetParent_.ref()) owner->placeSheet();
    }
    if (frame.size != old.size) postDelegateNotification(NSWindowDidResizeNotification, op::windowDidResize);
    if (frame.origin != old.origin) postDelegateNotification(NSWindowDidMoveNotification, op::windowDidMove);
    noteScreen();
    if (autosaveName_) saveFrameSoon();
}

void NSWindow::moveChildren(NSPoint delta) {
    const std::vector<Ref<NSWindow>> children = children_;
    for (const auto& child : children) {
        // An observer of an earlier one's move may have let go of this one.
        if (child->parent_.get() != this) continue;
        child->applyFrame(NSOffsetRect(child->frame_, delta.x, delta.y), YES);
    }
}

void NSWindow::setFrame_display(const NSRect& frame, BOOL display) {
    NSRect f = frame;
    f.size = {std::max(f.size.width, 0.0), std::max(f.size.height, 0.0)};
    const Ref<NSWindow> self(this);
    applyFrame(f, YES);
    if (display) displayIfNeeded();
}

void NSWindow::setFrame_display_animate(const NSRect& frame, BOOL display, BOOL animate) {
    if (!animate || !visible_ || !isFinite(frame) || frame == frame_) {
        setFrame_display(frame, display);
        return;
    }
    const Ref<NSWindow> self(this);
    const Ref<NSDictionary> entry = NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSViewAnimationTargetKey.get(), this},
         {NSViewAnimationEndFrameKey.get(), NSValue::valueWithRect(frame).get()}});
    const Ref<NSViewAnimation> animation = make<NSViewAnimation>(NSArray::arrayWithObject(entry));
    animation->setDuration(animationResizeTime(frame));
    animation->setAnimationBlockingMode(NSAnimationBlocking);
    animation->startAnimation();
}

NSTimeInterval NSWindow::animationResizeTime(const NSRect& frame) const {
    constexpr CGFloat pointsAStep = 150;
    constexpr NSTimeInterval step = 0.2;
    const CGFloat farthest =
        std::max({std::abs(NSMinX(frame) - NSMinX(frame_)), std::abs(NSMinY(frame) - NSMinY(frame_)),
                  std::abs(NSMaxX(frame) - NSMaxX(frame_)), std::abs(NSMaxY(frame) - NSMaxY(frame_))});
    return step * farthest / pointsAStep;
}

void NSWindow::setFrameOrigin(NSPoint origin) { setFrame_display({origin, frame_.size}, NO); }
void NSWindow::setFrameTopLeftPoint(NSPoint p) { setFrameOrigin({p.x, p.y - frame_.size.height}); }

void NSWindow::setContentSize(NSSize size) {
    // The top left corner stays: that is where a window hangs.
    NSRect content = contentRectForFrameRect(frame_);
    const CGFloat top = NSMaxY(content);
    content.size = {std::clamp(size.width, minSize_.width, std::max(minSize_.width, maxSize_.width)),
                    std::clamp(size.height, minSize_.height, std::max(minSize_.height, maxSize_.height))};
    content.origin.y = top - content.size.height;
    setFrame_display(frameRectForContentRect(content), NO);
}

void NSWindow::center() {
    const NSScreen* s = screen() ? screen() : NSScreen::mainScreen();
    if (!s) return;
    const NSRect room = s->visibleFrame();
    // A third of the free height above, two below: the middle as the eye sees it.
    setFrameOrigin({std::round(NSMinX(room) + (NSWidth(room) - NSWidth(frame_)) / 2),
                    std::round(NSMinY(room) + (NSHeight(room) - NSHeight(frame_)) * 2 / 3)});
}

void NSWindow::setMinSize(NSSize s) {
    const auto held = [](CGFloat v) { return v > 0 ? std::min(v, unlimited) : 0; };
    minSize_ = {held(s.width), held(s.height)};
    if (native_) windowServer().setLimits(native_, minSize_, maxSize_);
}

void NSWindow::setMaxSize(NSSize s) {
    const auto held = [](CGFloat v) { return v < unlimited ? std::max(0.0, v) : unlimited; };
    maxSize_ = {held(s.width), held(s.height)};
    if (native_) windowServer().setLimits(native_, minSize_, maxSize_);
}

// Base coordinates and the screen's.

NSPoint NSWindow::convertBaseToScreen(NSPoint p) const {
    const NSPoint o = contentRectForFrameRect(frame_).origin;
    return {p.x + o.x, p.y + o.y};
}

NSPoint NSWindow::convertScreenToBase(NSPoint p) const {
    const NSPoint o = contentRectForFrameRect(frame_).origin;
    return {p.x - o.x, p.y - o.y};
}

NSRect NSWindow::convertRectToScreen(const NSRect& r) const { return {convertBaseToScreen(r.origin), r.size}; }
NSRect NSWindow::convertRectFromScreen(const NSRect& r) const { return {convertScreenToBase(r.origin), r.size}; }

NSScreen* NSWindow::screen() const { return NSScreen::screenForRect_(frame_); }

CGFloat NSWindow::backingScaleFactor() const {
    if (native_) return windowServer().scale(native_);
    const NSScreen* s = screen() ? screen() : NSScreen::mainScreen();
    return s ? s->backingScaleFactor() : 1;
}

NSPoint NSWindow::mouseLocationOutsideOfEventStream() const {
    return convertScreenToBase(windowServer().mousePosition());
}

// What the desktop does.

void NSWindow::noteInsets() {
    if (!native_ || !isTitled()) return;
    const NSEdgeInsets told = windowServer().frameInsets(native_);
    if (told == insets_ || told == noInsets) return;
    // The content is where it was, so this is no move and no resize.
    const NSRect content = contentRectForFrameRect(frame_);
    insets_ = told;
    frame_ = frameRectForContentRect(content);
}

void NSWindow::nativeMoved_(const NSRect& content) {
    if (!native_) return;
    const Ref<NSWindow> self(this);
    noteInsets();
    NSRect frame = frameRectForContentRect(content);
    if (frame.size != frame_.size)
        if (const auto asks = op::windowWillResize_toSize.of(delegate_)) {
            const NSSize wanted = asks(this, frame.size);
            if (wanted != frame.size) {
                frame.origin.y = NSMaxY(frame) - wanted.height;
                frame.size = wanted;
                applyFrame(frame, YES);
                return;
            }
        }
    applyFrame(frame, NO);
    // A sheet goes nowhere without its window.
    if (const Ref<NSWindow> owner = sheetParent_.ref()) owner->placeSheet();
}

void NSWindow::nativeScaleChanged_() {
    displayState().whole = true;
    setViewsNeedDisplay(YES);
    postDelegateNotification(NSWindowDidChangeBackingPropertiesNotification, op::windowDidChangeBackingProperties);
}

void NSWindow::noteScreen() {
    if (!visible_) return;
    Display& d = displayState();
    NSScreen* now = screen();
    if (d.screen.get() == now) return;
    const bool first = !d.screenKnown;
    d.screenKnown = true;
    d.screen = now;
    if (!first) postDelegateNotification(NSWindowDidChangeScreenNotification, op::windowDidChangeScreen);
}

// The frame in the user's settings.

namespace {

Ref<NSString> frameKey(NSString* name) { return NSString::stringWithFormat(u"NSWindow Frame %@"_ns, name); }

} // namespace

BOOL NSWindow::setFrameAutosaveName(NSString* name) {
    if (!name || name->length() == 0) {
        autosaveName_ = nullptr;
        return YES;
    }
    for (NSWindow* w : NSApp()->windows_)
        if (w != this && w->autosaveName_ && w->autosaveName_->isEqualToString(name)) return NO;
    autosaveName_ = NSString::stringWithString(name);
    setFrameUsingName(autosaveName_);
    return YES;
}

void NSWindow::saveFrameSoon() {
    // A window on its way under the pointer writes once, when it has come to rest.
    auto& timer = tracking().saveTimer;
    if (timer) timer->invalidate();
    timer = NSTimer::scheduledTimerWithTimeInterval_repeats_block(restBeforeSaving, NO,
                                                                  [weak = Weak<NSWindow>(this)](NSTimer*) {
                                                                      if (const Ref<NSWindow> w = weak.ref())
                                                                          w->savePendingFrame();
                                                                  });
}

void NSWindow::savePendingFrame() {
    if (!tracking_ || !tracking_->saveTimer) return;
    std::exchange(tracking_->saveTimer, nullptr)->invalidate();
    if (autosaveName_) saveFrameUsingName(autosaveName_);
}

void NSWindow::saveFrameUsingName(NSString* name) {
    if (!name) return;
    NSUserDefaults::standardUserDefaults()->setObject_forKey(NSStringFromRect(frame_), frameKey(name));
}

BOOL NSWindow::setFrameUsingName(NSString* name) {
    if (!name) return NO;
    const Ref<NSString> text = NSUserDefaults::standardUserDefaults()->stringForKey(frameKey(name));
    if (!text) return NO;
    NSRect frame = NSRectFromString(text);
    if (NSIsEmptyRect(frame) || !isFinite(frame)) return NO;
    if (!(style_ & NSResizableWindowMask)) {
        frame.origin.y = NSMaxY(frame) - frame_.size.height;
        frame.size = frame_.size;
    }
    if (!NSScreen::screenForRect_(frame)) {
        // The screen that it was on is gone.
        const NSScreen* s = NSScreen::mainScreen();
        if (!s) return NO;
        const NSRect room = s->visibleFrame();
        frame.origin = {NSMinX(room), NSMaxY(room) - frame.size.height};
    }
    setFrame_display(frame, NO);
    return YES;
}

} // namespace libvue

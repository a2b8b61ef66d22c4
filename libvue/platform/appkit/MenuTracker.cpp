#include <libvue/platform/appkit/MenuTracker.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include <libvue/platform/appkit/MenuView.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/ThemeDrawing.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/graphics/NSColor.h>

namespace libvue {

namespace {

/// A press that opened a menu and goes up at once, where it went down, leaves the menu open.
constexpr NSTimeInterval kClickTime = 0.4;
constexpr CGFloat kClickDistance = 4;

/// A window of a menu: it takes no focus, so that keys still come to the window below it.
class MenuWindow : public NSPanel {
public:
    explicit MenuWindow(const NSRect& frame) : NSPanel(frame, NSBorderlessWindowMask | NSNonactivatingPanelMask) {
        setOpaque(NO);
        setBackgroundColor(NSColor::clearColor());
        setLevel(NSPopUpMenuWindowLevel);
        setHidesOnDeactivate(NO);
        setExcludedFromWindowsMenu(YES);
    }
    [[nodiscard]] BOOL canBecomeKeyWindow() const override { return NO; }
    [[nodiscard]] BOOL canBecomeMainWindow() const override { return NO; }

protected:
    [[nodiscard]] int nativeKind_() const override { return NSMenuNativeWindow; }
    [[nodiscard]] BOOL acceptsNativeFocus_() const override { return NO; }
};

bool isPress(NSEventType t) { return t == NSLeftMouseDown || t == NSRightMouseDown || t == NSOtherMouseDown; }
bool isRelease(NSEventType t) { return t == NSLeftMouseUp || t == NSRightMouseUp || t == NSOtherMouseUp; }

/// Has the loop that waits for events look again whether it is done.
void stopWaiting() {
    NSEvent::Fields f;
    f.type = NSAppKitDefined;
    f.subtype = NSApplicationDeactivatedEventType;
    NSApp()->postEvent_atStart(make<NSEvent>(f), YES);
}

} // namespace

MenuTracker* MenuTracker::current = nullptr;

MenuTracker::MenuTracker(NSMenu* menu, NSWindow* owner) : former_(current), root_(menu), owner_(owner) {
    current = this;
}

MenuTracker::~MenuTracker() {
    if (observer_) NSNotificationCenter::defaultCenter()->removeObserver(observer_);
    closeFrom(0);
    current = former_;
}

NSSize MenuTracker::sizeOf(const NSMenu& menu) { return MenuView::naturalSize(menu); }

void MenuTracker::cancel(const NSMenu* menu) {
    for (MenuTracker* t = current; t; t = t->former_)
        for (const Level& l : t->levels_)
            if (l.menu.get() == menu) {
                t->done_ = true;
                stopWaiting();
                return;
            }
}

// Opening.

NSRect MenuTracker::placed(NSSize size, NSPoint topLeft) {
    const auto visible = [&]() -> NSRect {
        const Ref<NSArray> screens = NSScreen::screens();
        for (NSObject* o : *screens)
            if (auto* s = as<NSScreen>(o); s && NSPointInRect(topLeft, s->frame())) return s->visibleFrame();
        return NSScreen::mainScreen() ? NSScreen::mainScreen()->visibleFrame() : NSRect{{0, 0}, {1280, 800}};
    }();
    NSRect r{{topLeft.x, topLeft.y - size.height}, size};
    r.size = {std::min(size.width, visible.size.width), std::min(size.height, visible.size.height)};
    if (r.origin.y < visible.origin.y) r.origin.y = visible.origin.y;
    if (NSMaxY(r) > NSMaxY(visible)) r.origin.y = NSMaxY(visible) - r.size.height;
    r.origin.x = std::max(NSMinX(visible), std::min(r.origin.x, NSMaxX(visible) - r.size.width));
    return r;
}

void MenuTracker::open(NSMenu* menu, const NSRect& frame) {
    const Ref<NSMenu> kept(menu);
    auto view = make<MenuView>(menu);
    auto window = make<MenuWindow>(frame);
    window->setContentView(view);
    levels_.push_back({kept, window, view});
    if (auto tell = op::menuWillOpen.of(menu->delegate())) tell(menu);
    window->orderFrontRegardless();
}

void MenuTracker::closeFrom(std::size_t level) {
    while (levels_.size() > level) {
        const Level l = levels_.back();
        levels_.pop_back();
        l.menu->setHighlightedItem_(nullptr);
        l.window->orderOut(nullptr);
        l.window->close();
        if (auto tell = op::menuDidClose.of(l.menu->delegate())) tell(l.menu);
    }
}

void MenuTracker::openSubmenuOf(std::size_t level, NSMenuItem* item) {
    if (level + 1 < levels_.size() && levels_[level + 1].menu.get() == item->submenu()) return;
    const Ref<NSMenuItem> kept(item);
    closeFrom(level + 1);
    if (!item->hasSubmenu() || !item->isEnabled()) return;
    const Ref<NSMenu> submenu = item->submenu();
    submenu->update();
    // A delegate was asked on the way.
    if (level >= levels_.size() || item->menu() != levels_[level].menu.get()) return;
    const Level& l = levels_[level];
    const NSRect row = l.window->convertRectToScreen(l.view->convertRect_toView(l.view->rectOfItem(item), nullptr));
    const NSSize size = sizeOf(*submenu);
    NSPoint topLeft{NSMaxX(l.window->frame()) - 3, NSMaxY(row) + theme::kMenuMargin};
    // To the left where the right has no room.
    const NSRect frame = placed(size, topLeft);
    if (frame.origin.x < topLeft.x - 1) topLeft.x = NSMinX(l.window->frame()) - frame.size.width + 3;
    open(submenu, placed(size, topLeft));
}

void MenuTracker::enterSubmenuOf(std::size_t level, NSMenuItem* item) {
    if (!item || !item->hasSubmenu()) return;
    openSubmenuOf(level, item);
    if (levels_.size() > level + 1) step(1);
}

Ref<NSMenuItem> MenuTracker::run(NSPoint screen, NSMenuItem* positioning) {
    const Ref<NSMenuItem> kept(positioning);
    root_->update();
    if (root_->numberOfItems() == 0) return nullptr;
    const NSSize size = sizeOf(*root_);
    NSRect frame;
    if (positioning && positioning->menu() == root_.get()) {
        // The item comes to lie on the point; what does not fit on the screen scrolls.
        const Ref<MenuView> probe = make<MenuView>(root_.get());
        probe->setFrame({{0, 0}, size});
        const NSRect row = probe->rectOfItem(positioning);
        frame = placed(size, {screen.x, screen.y + row.origin.y});
    } else
        frame = placed(size, screen);
    // Where the press that opened it went down: the pointer may be ahead of its events.
    start_ = NSEvent::mouseLocation();
    if (const NSEvent* cause = NSApp()->currentEvent(); cause && cause->isMouseEvent())
        start_ = cause->window() ? cause->window()->convertBaseToScreen(cause->locationInWindow())
                                 : cause->locationInWindow();
    openedAt_ = backend::Backend::current().windows->now();
    open(root_, frame);
    if (positioning && positioning->menu() == root_.get()) highlight(0, positioning);

    observer_ = NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
        NSApplicationDidResignActiveNotification, nullptr, nullptr, [this](NSNotification*) {
            done_ = true;
            stopWaiting();
        });
    while (!done_) {
        const Ref<NSEvent> e = NSApp()->nextEventMatchingMask_untilDate_inMode_dequeue(
            NSAnyEventMask, std::numeric_limits<double>::infinity(), NSEventTrackingRunLoopMode, YES);
        if (!e) break;
        if (e->isMouseEvent() || e->type() == NSScrollWheel)
            mouse(e);
        else if (e->type() == NSKeyDown)
            key(e);
    }
    closeFrom(0);
    return chosen_;
}

// Following.

void MenuTracker::highlight(std::size_t level, NSMenuItem* item) {
    const Level& l = levels_[level];
    if (l.menu->highlightedItem() == item) return;
    l.menu->setHighlightedItem_(item);
    if (item) l.view->showItem(item);
    l.view->setNeedsDisplay(YES);
}

void MenuTracker::choose(NSMenuItem* item) {
    if (!item || !item->isEnabled() || item->isSeparatorItem() || item->hasSubmenu()) return;
    chosen_ = item;
    done_ = true;
}

std::ptrdiff_t MenuTracker::levelAt(NSPoint p) const {
    for (std::size_t i = levels_.size(); i-- > 0;)
        if (NSPointInRect(p, levels_[i].window->frame())) return static_cast<std::ptrdiff_t>(i);
    return -1;
}

NSTimeInterval MenuTracker::timeOpen() const { return backend::Backend::current().windows->now() - openedAt_; }

void MenuTracker::mouseOutside(NSEventType type) {
    if (isPress(type)) done_ = true;
    // Let go outside after a drag: the menu is left.
    if (isRelease(type) && movedSinceOpen_ && timeOpen() > kClickTime) done_ = true;
    if (!isPress(type) && !isRelease(type) && levels_.size() == 1) highlight(0, nullptr);
}

void MenuTracker::mouse(NSEvent* e) {
    NSPoint p = e->locationInWindow();
    if (NSWindow* w = e->window()) p = w->convertBaseToScreen(p);
    const std::ptrdiff_t at = levelAt(p);
    const NSEventType type = e->type();
    if (std::hypot(p.x - start_.x, p.y - start_.y) > kClickDistance) movedSinceOpen_ = true;
    if (at < 0) {
        mouseOutside(type);
        return;
    }
    const auto level = static_cast<std::size_t>(at);
    const Level l = levels_[level];
    const NSPoint own = l.view->convertPoint_fromView(l.window->convertScreenToBase(p), nullptr);
    if (type == NSScrollWheel) {
        l.view->scrollBy(-e->scrollingDeltaY());
        return;
    }
    const Ref<NSMenuItem> item(l.view->itemAt(own));
    highlight(level, item);
    if (item && item->hasSubmenu())
        openSubmenuOf(level, item);
    else
        closeFrom(level + 1);
    // Near the ends a menu that is too high scrolls under the pointer.
    if (own.y < theme::kMenuMargin + 8) l.view->scrollBy(-theme::kMenuItemHeight / 2);
    if (own.y > l.view->bounds().size.height - theme::kMenuMargin - 8) l.view->scrollBy(theme::kMenuItemHeight / 2);
    if (isPress(type)) pressedSinceOpen_ = true;
    const bool justClicked = !movedSinceOpen_ && !pressedSinceOpen_ && timeOpen() <= kClickTime;
    if (isRelease(type) && !justClicked) choose(item);
}

void MenuTracker::step(int direction) {
    const std::size_t level = levels_.size() - 1;
    const Ref<NSMenu> m = levels_[level].menu;
    const NSInteger n = m->numberOfItems();
    NSInteger i = m->indexOfItem(m->highlightedItem());
    for (NSInteger k = 0; k < n; ++k) {
        i = i < 0 ? (direction > 0 ? 0 : n - 1) : (i + direction + n) % n;
        NSMenuItem* item = m->itemAtIndex(i);
        if (!item->isSeparatorItem() && !item->isHidden() && item->isEnabled()) {
            highlight(level, item);
            return;
        }
    }
}

void MenuTracker::findByLetter(unichar c) {
    const std::size_t level = levels_.size() - 1;
    const Ref<NSMenu> m = levels_[level].menu;
    const auto wanted = NSString::from({&c, 1})->lowercaseString();
    const NSInteger n = m->numberOfItems(), from = m->indexOfItem(m->highlightedItem());
    for (NSInteger k = 1; k <= n; ++k) {
        NSMenuItem* item = m->itemAtIndex((from + k + n) % n);
        if (item->isEnabled() && !item->isHidden() && item->title()->lowercaseString()->hasPrefix(wanted)) {
            highlight(level, item);
            return;
        }
    }
}

void MenuTracker::key(NSEvent* e) {
    NSString* s = e->charactersIgnoringModifiers();
    if (!s || s->length() == 0 || levels_.empty()) return;
    const std::size_t level = levels_.size() - 1;
    const Ref<NSMenuItem> item(levels_[level].menu->highlightedItem());
    switch (const unichar c = s->unit(0)) {
    case NSDownArrowFunctionKey:
        step(1);
        break;
    case NSUpArrowFunctionKey:
        step(-1);
        break;
    case NSHomeFunctionKey:
        highlight(level, nullptr);
        step(1);
        break;
    case NSEndFunctionKey:
        highlight(level, nullptr);
        step(-1);
        break;
    case NSRightArrowFunctionKey:
        enterSubmenuOf(level, item);
        break;
    case NSLeftArrowFunctionKey:
        if (level > 0) closeFrom(level);
        break;
    case NSEscapeCharacter:
        if (level > 0)
            closeFrom(level);
        else
            done_ = true;
        break;
    case NSTabCharacter:
        done_ = true;
        break;
    case u' ':
    case NSEnterCharacter:
    case NSCarriageReturnCharacter:
        enterSubmenuOf(level, item);
        choose(item);
        break;
    default:
        findByLetter(c);
    }
}

} // namespace libvue

#include <libvue/platform/appkit/NSPopover.h>

#include <utility>

#include <libvue/platform/appkit/BalloonPlacement.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSViewController.h>
#include <libvue/platform/appkit/PopoverMotion.h>
#include <libvue/platform/appkit/PopoverWindow.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>

namespace libvue {

namespace {

constexpr NSEventMask kSeen = NSLeftMouseDownMask | NSRightMouseDownMask | NSOtherMouseDownMask | NSKeyDownMask;

constexpr NSRectEdge upsideDown(NSRectEdge edge) noexcept {
    return edge == NSMinYEdge ? NSMaxYEdge : edge == NSMaxYEdge ? NSMinYEdge : edge;
}

/// Loads it on the way.
NSView* viewOf(const Ref<NSViewController>& controller) { return controller ? controller->view() : nullptr; }

NSSize sizeOf(const NSView* view) { return view ? view->frame().size : NSZeroSize; }

} // namespace

void NSPopover::describe(ClassDescription<NSPopover, NSResponder>& c) {
    c.answers<&NSPopover::performClose>("performClose:");
    c.answers<&NSPopover::close>("close");
    c.answers<&NSPopover::isShown>("isShown");
    c.answers<&NSPopover::showRelativeToRect_ofView_preferredEdge>("showRelativeToRect:ofView:preferredEdge:");
    c.answers<&NSPopover::contentViewController>("contentViewController");
    c.answers<&NSPopover::setContentViewController>("setContentViewController:");
    c.answers<&NSPopover::behavior>("behavior");
    c.answers<&NSPopover::setBehavior>("setBehavior:");
    c.answers<&NSPopover::setDelegate>("setDelegate:");
    c.key<&NSPopover::animates, &NSPopover::setAnimates>("animates");
    c.key<&NSPopover::contentViewController, &NSPopover::setContentViewController>("contentViewController");
}

NSPopover::NSPopover() = default;

NSPopover::~NSPopover() {
    NSNotificationCenter::defaultCenter()->removeObserver(this);
    if (monitor_) NSEvent::removeMonitor(monitor_);
}

NSWindow* NSPopover::window_() const noexcept { return balloon_; }

// What it shows.

NSSize NSPopover::contentSize() const {
    if (size_.width > 0 && size_.height > 0) return size_;
    // From its showing on the balloon decides on the view's own size.
    if (balloon_) return natural_;
    return sizeOf(viewOf(controller_));
}

void NSPopover::setContentSize(NSSize size) {
    size_ = size.width > 0 && size.height > 0 ? size : NSZeroSize;
    if (shown_ && !closing_) place(animates_ ? Manner::animated : Manner::atOnce);
}

void NSPopover::setContentViewController(NSViewController* controller) {
    if (controller_ == controller) return;
    controller_ = controller;
    // Who hears that it will show may set it, before there is a balloon.
    if (!balloon_ || closing_) return;
    const Ref<NSPopover> kept(this);
    const Ref<NSView> content(viewOf(controller_));
    // Loading it may have closed the popover.
    if (!balloon_ || closing_) return;
    natural_ = sizeOf(content);
    balloon_->setContent(content);
    place(animates_ ? Manner::animated : Manner::atOnce);
}

void NSPopover::setBehavior(NSInteger behavior) {
    if (behavior >= NSPopoverBehaviorApplicationDefined && behavior <= NSPopoverBehaviorSemitransient)
        behavior_ = static_cast<NSPopoverBehavior>(behavior);
}

void NSPopover::setPositioningRect(const NSRect& rect) {
    rect_ = rect;
    if (shown_ && !closing_) place(Manner::atOnce);
}

// Opening.

void NSPopover::showRelativeToRect_ofView_preferredEdge(const NSRect& rect, NSView* view, NSUInteger edge) {
    if (!view || !view->window())
        raiseNamed("NSInvalidArgumentException", "a popover is shown from a view in a window");
    const Ref<NSPopover> kept(this);
    const Ref<NSView> keptView(view);
    if (closing_) ended();
    rect_ = rect;
    anchor_ = view;
    edge_ = edge <= NSMaxYEdge ? static_cast<NSRectEdge>(edge) : NSMaxYEdge;
    if (shown_)
        open();
    else {
        shown_ = YES;
        reason_ = Reason::standard;
        self_ = this;
        notify(NSPopoverWillShowNotification, op::popoverWillShow);
        if (shown_ && !closing_) open();
    }
}

void NSPopover::open() {
    const Ref<NSView> content(viewOf(controller_));
    // Whoever loads it may have closed the popover, as may those who hear of its windows further down.
    if (!shown_ || closing_) return;
    const Ref<NSWindow> host(anchor_ ? anchor_->window() : nullptr);
    if (!host) {
        end(Reason::standard, Manner::atOnce);
        return;
    }
    const bool appears = !balloon_;
    if (appears) {
        balloon_ = make<PopoverWindow>(this);
        natural_ = sizeOf(content);
    }
    host_ = host;
    watchAnchor();
    place(Manner::atOnce);
    balloon_->setContent(content);
    if (!balloon_) return;
    if (appears && animates_) balloon_->setAlphaValue(0);
    host->addChildWindow_ordered(balloon_, NSWindowAbove);
    if (!appears || !shown_ || closing_) return;
    monitor_ = NSEvent::addLocalMonitorForEventsMatchingMask_handler(
        kSeen, [weak = Weak<NSPopover>(this)](NSEvent* e) -> Ref<NSEvent> {
            const Ref<NSPopover> self = weak.ref();
            return self ? self->sees(e) : Ref<NSEvent>(e);
        });
    takeKeys();
    if (!shown_ || closing_) return;
    if (animates_) {
        motion_ = make<PopoverMotion>(balloon_, PopoverMotion::What::fadesIn, NSZeroRect);
        motion_->startAnimation();
    } else
        notify(NSPopoverDidShowNotification, op::popoverDidShow);
}

void NSPopover::watchAnchor() {
    stopWatching();
    NSNotificationCenter* centre = NSNotificationCenter::defaultCenter();
    const Ref<NSView> view = anchor_.ref();
    const Ref<NSWindow> host = host_.ref();
    centre->addObserver<&NSPopover::anchorMoved>(this, NSViewFrameDidChangeNotification, view);
    centre->addObserver<&NSPopover::anchorMoved>(this, NSWindowDidResizeNotification, host);
    watched_ = {view, host, balloon_, NSApp()};
    if (const NSScrollView* scroll = view->enclosingScrollView()) {
        centre->addObserver<&NSPopover::anchorMoved>(this, NSViewBoundsDidChangeNotification, scroll->contentView());
        watched_.emplace_back(scroll->contentView());
    }
    centre->addObserver<&NSPopover::windowWillClose>(this, NSWindowWillCloseNotification, host);
    centre->addObserver<&NSPopover::windowWillClose>(this, NSWindowWillCloseNotification, balloon_);
    centre->addObserver<&NSPopover::windowWillClose>(this, NSWindowWillMiniaturizeNotification, host);
    centre->addObserver<&NSPopover::applicationWillResignActive>(this, NSApplicationWillResignActiveNotification,
                                                                 NSApp());
}

void NSPopover::stopWatching() {
    // Others may have registered it for what its content says: only these go.
    for (const Weak<NSObject>& object : std::exchange(watched_, {}))
        if (object) NSNotificationCenter::defaultCenter()->removeObserver_name_object(this, nullptr, object.get());
}

void NSPopover::takeKeys() {
    const Ref<NSWindow> host = host_.ref();
    const Ref<NSView> content(viewOf(controller_));
    if (!balloon_ || !host || !host->isKeyWindow() || !content) return;
    const Ref<NSView> first(content->canBecomeKeyView() ? content.get() : content->nextValidKeyView());
    if (!first || !first->isDescendantOf(content)) return;
    // Whoever goes on by keyboard goes on in the balloon.
    const Ref<PopoverWindow> balloon = balloon_;
    balloon->makeFirstResponder(first);
    if (balloon_ == balloon) balloon->makeKeyWindow();
}

// Placement.

BOOL NSPopover::isAnchorInSight() const {
    const NSView* view = anchor_.get();
    if (!view || view->isHiddenOrHasHiddenAncestor()) return NO;
    const NSRect wanted = NSIsEmptyRect(rect_) ? view->bounds() : rect_;
    return !NSIsEmptyRect(NSIntersectionRect(wanted, view->visibleRect()));
}

NSRect NSPopover::anchorOnScreen_() const {
    const NSView* view = anchor_.get();
    const NSWindow* host = view ? view->window() : nullptr;
    if (!host) return NSZeroRect;
    NSRect r = NSIsEmptyRect(rect_) ? view->bounds() : rect_;
    if (isAnchorInSight()) r = NSIntersectionRect(r, view->visibleRect());
    return host->convertRectToScreen(view->convertRect_toView(r, nullptr));
}

void NSPopover::place(Manner manner) {
    const Ref<PopoverWindow> balloon = balloon_;
    const Ref<NSWindow> host = host_.ref();
    if (!balloon || !host) return;
    const NSRect anchor = anchorOnScreen_();
    const NSScreen* screen = host->screen() ? host->screen() : NSScreen::mainScreen();
    // The edges of a flipped view are its own.
    const NSRectEdge edge = anchor_ && anchor_->isFlipped() ? upsideDown(edge_) : edge_;
    const BalloonPlacement p = placeBalloon(anchor, screen ? screen->visibleFrame() : anchor, contentSize(), edge);
    if (motion_ && motion_->what() == PopoverMotion::What::glides) std::exchange(motion_, nullptr)->stopAnimation();
    balloon->setEdge(p.edge);
    if (manner == Manner::animated && balloon->isVisible() && !motion_) {
        motion_ = make<PopoverMotion>(balloon, PopoverMotion::What::glides, p.window);
        motion_->startAnimation();
    } else
        balloon->setFrame_display(p.window, YES);
}

void NSPopover::anchorMoved(NSNotification*) {
    if (!shown_ || closing_) return;
    const Ref<NSPopover> kept(this);
    if (!isAnchorInSight() && behavior_ != NSPopoverBehaviorApplicationDefined)
        close();
    else
        place(Manner::atOnce);
}

void NSPopover::motionEnded_(PopoverMotion* motion) {
    if (motion_ != motion) return;
    const Ref<NSPopover> kept(this);
    const Ref<PopoverMotion> keptMotion = std::exchange(motion_, nullptr);
    if (motion->what() == PopoverMotion::What::fadesIn)
        notify(NSPopoverDidShowNotification, op::popoverDidShow);
    else if (motion->what() == PopoverMotion::What::fadesOut)
        ended();
}

// Closing.

void NSPopover::close() { end(Reason::standard, animates_ ? Manner::animated : Manner::atOnce); }

void NSPopover::performClose(NSObject*) {
    if (!shown_ || closing_) return;
    const Ref<NSPopover> kept(this);
    const auto asks = op::popoverShouldClose.of(delegate_);
    if (!asks || asks(this)) close();
}

void NSPopover::end(Reason reason, Manner manner) {
    if (!shown_) return;
    const Ref<NSPopover> kept(this);
    if (!closing_) {
        closing_ = YES;
        reason_ = reason;
        notifyEnd(NSPopoverWillCloseNotification, op::popoverWillClose);
        if (!closing_) return;
    }
    if (motion_) {
        if (manner == Manner::animated && motion_->what() == PopoverMotion::What::fadesOut) return;
        std::exchange(motion_, nullptr)->stopAnimation();
    }
    if (manner == Manner::animated && balloon_ && balloon_->isVisible()) {
        motion_ = make<PopoverMotion>(balloon_, PopoverMotion::What::fadesOut, NSZeroRect);
        motion_->startAnimation();
    } else
        ended();
}

void NSPopover::ended() {
    const Ref<NSPopover> kept(this);
    shown_ = NO;
    closing_ = NO;
    stopWatching();
    if (const Ref<NSObject> monitor = std::exchange(monitor_, nullptr)) NSEvent::removeMonitor(monitor);
    if (const Ref<PopoverMotion> motion = std::exchange(motion_, nullptr)) motion->stopAnimation();
    if (const Ref<PopoverWindow> balloon = std::exchange(balloon_, nullptr)) {
        balloon->close();
        balloon->setContent(nullptr);
    }
    host_ = nullptr;
    anchor_ = nullptr;
    self_ = nullptr;
    notifyEnd(NSPopoverDidCloseNotification, op::popoverDidClose);
}

void NSPopover::windowWillClose(NSNotification*) { end(reason_, Manner::atOnce); }

void NSPopover::applicationWillResignActive(NSNotification*) {
    if (behavior_ == NSPopoverBehaviorTransient) performClose(nullptr);
}

// What the user does.

BOOL NSPopover::holds(const NSWindow* w) const noexcept {
    for (; w; w = w->sheetParent() ? w->sheetParent() : w->parentWindow())
        if (w == balloon_.get()) return YES;
    return NO;
}

Ref<NSEvent> NSPopover::sees(NSEvent* e) {
    Ref<NSEvent> event(e);
    if (!shown_ || closing_ || behavior_ == NSPopoverBehaviorApplicationDefined) return event;
    const Ref<NSWindow> w(e->window());
    if (e->type() == NSKeyDown) {
        if (!seesEscape(e)) return event;
        performClose(nullptr);
        return nullptr;
    }
    // A menu belongs to whoever popped it up.
    if (!w || holds(w) || w->level() >= NSPopUpMenuWindowLevel) return event;
    // The click goes on to where it went.
    if (behavior_ == NSPopoverBehaviorTransient || w == host_.ref()) performClose(nullptr);
    return event;
}

BOOL NSPopover::seesEscape(const NSEvent* e) {
    const NSString* keys = e->charactersIgnoringModifiers();
    if (!keys || keys->length() != 1 || keys->characterAtIndex(0) != NSEscapeCharacter) return NO;
    // In the balloon itself the key goes its way, past the view that has the focus.
    const NSWindow* w = e->window();
    if (!w || holds(w)) return NO;
    // What hangs on the balloon closes before it does.
    const Ref<NSArray> children = balloon_->childWindows();
    for (NSUInteger i = 0; i < children->count(); ++i)
        if (children->at<NSWindow>(i)->isVisible()) return NO;
    for (const NSWindow* p = host_.get(); p; p = p->parentWindow())
        if (p == w) return YES;
    return NO;
}

void NSPopover::draggedFrom_(NSPoint press) {
    if (!shown_ || closing_) return;
    const Ref<NSPopover> kept(this);
    const auto asks = op::detachableWindowForPopover.of(delegate_);
    const Ref<NSWindow> window(asks ? asks(this) : nullptr);
    if (!window || !shown_ || closing_) return;
    const Ref<PopoverWindow> balloon = balloon_;
    const NSRect body = balloon->convertRectToScreen(balloon->body());
    closing_ = YES;
    reason_ = Reason::detachToWindow;
    notifyEnd(NSPopoverWillCloseNotification, op::popoverWillClose);
    if (!closing_) return;

    NSRect f = window->contentRectForFrameRect(window->frame());
    const Ref<NSView> content(viewOf(controller_));
    if (content && window->contentView()->subviews().empty() && window->contentView() != content.get()) {
        f.size = body.size;
        window->setContentSize(f.size);
        window->contentView()->addSubview(content);
        content->setFrame(window->contentView()->bounds());
        content->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
    }
    // What was under the pointer stays there: the upper left corners of the contents meet.
    f.origin = {NSMinX(body), NSMaxY(body) - f.size.height};
    window->setFrame_display(window->frameRectForContentRect(f), NO);
    // The press belongs to the balloon's window: it goes when the button is released.
    balloon->setAlphaValue(0);
    window->makeKeyAndOrderFront(nullptr);
    NSPoint last = press;
    const auto follow = [&](const NSEvent* e) {
        const NSPoint p = e->fields().screenLocation;
        const NSPoint o = window->frame().origin;
        window->setFrameOrigin({o.x + p.x - last.x, o.y + p.y - last.y});
        last = p;
    };
    follow(NSApp()->currentEvent());
    while (const Ref<NSEvent> e = NSApp()->nextDragOrRelease_()) {
        follow(e);
        if (e->type() == NSLeftMouseUp) break;
    }
    end(Reason::detachToWindow, Manner::atOnce);
}

// Who is told.

void NSPopover::send(NSNotification* n, const Operation<void(NSNotification*)>& operation) {
    const Ref<NSPopover> kept(this);
    if (const auto hears = operation.of(delegate_)) hears(n);
    NSNotificationCenter::defaultCenter()->postNotification(n);
}

void NSPopover::notify(const ConstantString& name, const Operation<void(NSNotification*)>& operation) {
    const Ref<NSNotification> n = NSNotification::notificationWithName_object(name, this);
    send(n, operation);
}

void NSPopover::notifyEnd(const ConstantString& name, const Operation<void(NSNotification*)>& operation) {
    const ConstantString& why =
        reason_ == Reason::standard ? NSPopoverCloseReasonStandard : NSPopoverCloseReasonDetachToWindow;
    const Ref<NSDictionary> info =
        NSDictionary::dictionaryWithObjectsAndKeys({{NSPopoverCloseReasonKey.get(), why.get()}});
    const Ref<NSNotification> n = NSNotification::notificationWithName_object_userInfo(name, this, info);
    send(n, operation);
}

} // namespace libvue

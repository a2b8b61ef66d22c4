#include <libvue/platform/appkit/NSWindow.h>

#include <algorithm>
#include <cmath>
#include <string>

#include <libvue/platform/appkit/NSApplicationNative.h>
#include <libvue/platform/appkit/NSButtonCell.h>
#include <libvue/platform/appkit/NSText.h>
#include <libvue/platform/appkit/NSViewController.h>
#include <libvue/platform/appkit/NSWindowController.h>
#include <libvue/platform/appkit/NSWindowPrivate.h>
#include <libvue/platform/appkit/WindowFrameView.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/graphics/NSColor.h>

namespace libvue {

namespace {

NSInteger lastNumber = 0;

} // namespace

void NSWindow::describe(ClassDescription<NSWindow, NSResponder>& c) {
    c.answers<&NSWindow::performClose>("performClose:");
    c.answers<&NSWindow::miniaturize>("miniaturize:");
    c.answers<&NSWindow::deminiaturize>("deminiaturize:");
    c.answers<&NSWindow::performMiniaturize>("performMiniaturize:");
    c.answers<&NSWindow::zoom>("zoom:");
    c.answers<&NSWindow::zoom>("performZoom:");
    c.answers<&NSWindow::orderFront>("orderFront:");
    c.answers<&NSWindow::orderBack>("orderBack:");
    c.answers<&NSWindow::orderOut>("orderOut:");
    c.answers<&NSWindow::makeKeyAndOrderFront>("makeKeyAndOrderFront:");
    c.answers<&NSWindow::selectNextKeyView>("selectNextKeyView:");
    c.answers<&NSWindow::selectPreviousKeyView>("selectPreviousKeyView:");
    c.answers<&NSWindow::cancelOperation>("cancelOperation:");
    c.key<&NSWindow::title, &NSWindow::setTitle>("title");
    c.key<&NSWindow::frame>("frame");
    c.key<&NSWindow::isVisible>("visible");
    c.key<&NSWindow::alphaValue, &NSWindow::setAlphaValue>("alphaValue");
    c.key<&NSWindow::contentView, &NSWindow::setContentView>("contentView");
    c.key<&NSWindow::firstResponder>("firstResponder");
    c.key<&NSWindow::isDocumentEdited, &NSWindow::setDocumentEdited>("documentEdited");
}

NSWindow::NSWindow() : NSWindow(NSMakeRect(100, 100, 100, 100), NSTitledWindowMask) {}

NSWindow::NSWindow(const NSRect& contentRect, NSUInteger styleMask, NSBackingStoreType, BOOL)
    : title_(NSString::string()), style_(styleMask), number_(++lastNumber) {
    const auto finite = [](CGFloat v) { return std::isfinite(v) ? v : 0; };
    const NSRect content{
        {finite(contentRect.origin.x), finite(contentRect.origin.y)},
        {std::max(finite(contentRect.size.width), 0.0), std::max(finite(contentRect.size.height), 0.0)}};
    frame_ = frameRectForContentRect(content);
    root_ = make<WindowFrameView>(NSRect{{0, 0}, content.size});
    root_->setNextResponder(this);
    root_->moveToWindow_(this);
    NSApp()->addWindow_(this);
    setContentView(nullptr);
}

NSWindow::~NSWindow() {
    savePendingFrame();
    if (tracking_ && tracking_->tipTimer) tracking_->tipTimer->invalidate();
    firstResponder_ = nullptr;
    root_->moveToWindow_(nullptr);
    root_->setNextResponder(nullptr);
    for (const auto& child : std::exchange(children_, {})) {
        child->parent_ = nullptr;
        if (child->native_) windowServer().setParent(child->native_, 0);
    }
    closeNative();
    if (NSApplication* app = NSApplication::sharedIfAny_()) app->removeWindow_(this);
}

NSWindow* NSWindow::windowWithNumber(NSInteger number) noexcept {
    const NSApplication* app = NSApplication::sharedIfAny_();
    return app && number != 0 ? app->windowWithWindowNumber(number) : nullptr;
}

void NSWindow::postDelegateNotification(NSString* name, const Operation<void(NSNotification*)>& operation) {
    const Ref<NSWindow> self(this);
    if (const auto answer = operation.of(delegate_)) answer(NSNotification::notificationWithName_object(name, this));
    NSNotificationCenter::defaultCenter()->postNotificationName_object(name, this);
}

// Content.

void NSWindow::setContentView(NSView* view) {
    if (view && view == contentView_) return;
    const Ref<NSWindow> self(this);
    const Ref<NSView> old = contentView_;
    Ref<NSView> content(view);
    if (!content) content = make<NSView>(root_->bounds());
    if (content->superview()) content->removeFromSuperview();
    contentView_ = content;
    if (old && old->superview() == root_) old->removeFromSuperview();
    content->setFrame(root_->bounds());
    root_->addSubview(content);
}

NSViewController* NSWindow::contentViewController() const noexcept { return contentController_; }

void NSWindow::setContentViewController(NSViewController* controller) {
    contentController_ = controller;
    setContentView(controller ? controller->view() : nullptr);
}

void NSWindow::setTitle(NSString* title) {
    willChangeValueForKey(u"title"_ns);
    title_ = title ? NSString::stringWithString(title) : NSString::string();
    if (native_) windowServer().setTitle(native_, title_->utf8());
    didChangeValueForKey(u"title"_ns);
}

void NSWindow::setDelegate(NSObject* delegate) { delegate_ = delegate; }

NSWindowController* NSWindow::windowController() const noexcept { return controller_; }

void NSWindow::setWindowController(NSWindowController* controller) {
    controller_ = controller;
    setNextResponder(controller);
}

NSColor* NSWindow::backgroundColor() const noexcept {
    return background_ ? background_.get() : NSColor::windowBackgroundColor();
}

void NSWindow::setBackgroundColor(NSColor* color) {
    background_ = color;
    root_->setNeedsDisplay(YES);
}

void NSWindow::setOpaque(BOOL flag) {
    if (opaque_ == flag) return;
    opaque_ = flag;
    updateNativeSpec();
    root_->setNeedsDisplay(YES);
}

void NSWindow::setHasShadow(BOOL flag) { hasShadow_ = flag; }

void NSWindow::setAlphaValue(CGFloat alpha) {
    alpha = std::isnan(alpha) ? 1 : std::clamp(alpha, 0.0, 1.0);
    if (alpha == alpha_) return;
    alpha_ = alpha;
    if (!native_) return;
    windowServer().setOpacity(native_, alpha);
    // A fade that blocks the loop shows only what has reached the desktop.
    windowServer().flush();
}

void NSWindow::beginFadeOut_() {
    if (fades_++ == 0) alphaBeforeFade_ = alpha_;
}

void NSWindow::endFadeOut_(BOOL reached) {
    const Ref<NSWindow> self(this);
    --fades_;
    if (!reached) return;
    if (visible_ && alpha_ == 0) orderWindow_relativeTo(NSWindowOut, 0);
    if (fades_ == 0 && !visible_) setAlphaValue(alphaBeforeFade_);
}

void NSWindow::setDocumentEdited(BOOL flag) {
    if (edited_ == flag) return;
    edited_ = flag;
    if (native_) windowServer().setModified(native_, flag);
}

// Style.

void NSWindow::setStyleMask(NSUInteger mask) {
    if (mask == style_) return;
    const NSRect content = contentRectForFrameRect(frame_);
    style_ = mask;
    insets_ = {};
    // The content stays where it is; the frame changes round it.
    frame_ = frameRectForContentRect(content);
    updateNativeSpec();
    if (visible_) noteInsets();
    placeSheet();
    root_->setNeedsDisplay(YES);
}

void NSWindow::setLevel(NSInteger level) {
    if (level == level_) return;
    level_ = level;
    if (native_) windowServer().setLevel(native_, static_cast<int>(level));
    if (visible_) NSApp()->windowOrdered_(this, YES);
}

void NSWindow::setIgnoresMouseEvents(BOOL flag) {
    ignoresMouse_ = flag;
    if (native_) windowServer().setIgnoresMouse(native_, flag);
}

void NSWindow::setAllDesktops(BOOL flag) {
    allDesktops_ = flag;
    if (native_) windowServer().setAllDesktops(native_, flag);
}

// The native window.

int NSWindow::nativeKind_() const {
    if (style_ & NSUtilityWindowMask) return NSUtilityNativeWindow;
    return NSNormalNativeWindow;
}

namespace {

backend::WindowSpec specOf(NSWindow& w, int kind, bool acceptsFocus) {
    backend::WindowSpec s;
    const NSUInteger style = w.styleMask();
    s.content = w.contentRectForFrameRect(w.frame());
    s.kind = w.isSheet() ? backend::WindowKind::dialog : static_cast<backend::WindowKind>(kind);
    s.titled = style & NSTitledWindowMask && !w.isSheet();
    s.closable = style & NSClosableWindowMask;
    s.miniaturizable = style & NSMiniaturizableWindowMask;
    s.resizable = style & NSResizableWindowMask;
    s.transparent = !w.isOpaque();
    s.acceptsFocus = acceptsFocus;
    s.parent = w.parentWindow() ? w.parentWindow()->nativeId_() : 0;
    s.title = w.title() ? w.title()->utf8() : std::string();
    return s;
}

} // namespace

void NSWindow::ensureNative() {
    if (native_) return;
    NSApp()->addWindow_(this);
    if (parent_ && parent_->visible_) parent_->ensureNative();
    auto& s = windowServer();
    native_ = s.create(specOf(*this, nativeKind_(), acceptsNativeFocus_()));
    if (!native_) return;
    if (minSize_ != NSSize{0, 0} || maxSize_.width < unlimited || maxSize_.height < unlimited)
        s.setLimits(native_, minSize_, maxSize_);
    if (level_ != NSNormalWindowLevel) s.setLevel(native_, static_cast<int>(level_));
    if (alpha_ < 1) s.setOpacity(native_, alpha_);
    if (ignoresMouse_) s.setIgnoresMouse(native_, true);
    if (allDesktops_) s.setAllDesktops(native_, true);
    if (edited_) s.setModified(native_, true);
    for (const auto& child : children_)
        if (child->native_) s.setParent(child->native_, native_);
    displayState().whole = true;
}

void NSWindow::updateNativeSpec() {
    if (native_) windowServer().setSpec(native_, specOf(*this, nativeKind_(), acceptsNativeFocus_()));
}

void NSWindow::closeNative() {
    if (tracking_) tracking_->tip = nullptr;
    if (!native_) return;
    // A backend that was replaced took its windows along.
    if (backend::Backend::exists() && NSApplication::sharedIfAny_()) windowServer().destroy(native_);
    native_ = 0;
    display_.reset();
}

} // namespace libvue

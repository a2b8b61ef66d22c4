#include <libvue/platform/appkit/NSWindowController.h>

#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/ScopeExit.h>

namespace libvue {

void NSWindowController::describe(ClassDescription<NSWindowController, NSResponder>& c) {
    c.answers<&NSWindowController::showWindow>("showWindow:");
    c.answers<&NSWindowController::window>("window");
    c.key<&NSWindowController::window, &NSWindowController::setWindow>("window");
}

NSWindowController::NSWindowController() = default;
NSWindowController::NSWindowController(NSWindow* window) {
    if (!window) return;
    window_ = window;
    window->setWindowController(this);
}

NSWindowController::~NSWindowController() {
    if (window_ && window_->windowController() == this) window_->setWindowController(nullptr);
}

NSWindow* NSWindowController::window() {
    if (window_ || loading_ || loaded_) return window_;
    const Ref<NSWindowController> self(this);
    {
        loading_ = true;
        const ScopeExit ended([this] { loading_ = false; });
        windowWillLoad();
        loadWindow();
    }
    loaded_ = true;
    if (window_) windowDidLoad();
    return window_;
}

void NSWindowController::setWindow(NSWindow* window) {
    if (window_ == window) return;
    const Ref<NSWindow> old = window_;
    if (old && old->windowController() == this) old->setWindowController(nullptr);
    window_ = window;
    if (!window) return;
    window->setWindowController(this);
    if (autosaveName_) window->setFrameAutosaveName(autosaveName_);
}

void NSWindowController::showWindow(NSObject* sender) {
    if (const Ref<NSWindow> w = window()) w->makeKeyAndOrderFront(sender);
}

void NSWindowController::close() {
    const Ref<NSWindowController> self(this);
    if (const Ref<NSWindow> w = window_) w->close();
}

NSString* NSWindowController::windowFrameAutosaveName() const noexcept { return autosaveName_; }

void NSWindowController::setWindowFrameAutosaveName(NSString* name) {
    autosaveName_ = name;
    if (window_) window_->setFrameAutosaveName(name);
}

} // namespace libvue

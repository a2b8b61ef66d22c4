#pragma once

#include <libvue/platform/appkit/NSResponder.h>

namespace libvue {

/// Owns a window. It follows the window in the responder chain.
class LIBVUE_API NSWindowController : public NSResponder {
public:
    static void describe(ClassDescription<NSWindowController, NSResponder>& c);
    NSWindowController();
    /// Takes the window, which may be null: then loadWindow makes it on first use.
    explicit NSWindowController(NSWindow* window);
    ~NSWindowController() override;

    /// Loads it on first use; null where loadWindow made none.
    [[nodiscard]] virtual NSWindow* window();
    virtual void setWindow(NSWindow* window);
    [[nodiscard]] BOOL isWindowLoaded() const noexcept { return window_ != nullptr; }
    /// The base makes nothing. An override gives a window to setWindow:.
    virtual void loadWindow() {}
    virtual void windowWillLoad() {}
    virtual void windowDidLoad() {}
    /// Loads it, puts it in front and makes it key.
    virtual void showWindow(NSObject* sender);
    /// Closes the window.
    virtual void close();
    [[nodiscard]] NSString* windowFrameAutosaveName() const noexcept;
    void setWindowFrameAutosaveName(NSString* name);

private:
    Ref<NSWindow> window_;
    Ref<NSString> autosaveName_;
    bool loading_ = false;
    bool loaded_ = false;
};

} // namespace libvue

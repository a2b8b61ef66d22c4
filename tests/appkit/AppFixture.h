#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <support/TestBackend.h>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSRunLoop.h>

namespace libvue::test {

using Log = std::vector<std::string>;

/// A view that says in a log what it hears, and lets a test step in.
class LogView : public NSView {
public:
    static void describe(ClassDescription<LogView, NSView>&) {}
    LogView(const NSRect& frame, Log& log, std::string name) : NSView(frame), log_(&log), name_(std::move(name)) {}

    BOOL accepts = NO, becomes = YES, resigns = YES, firstMouse = NO;
    std::function<void(NSEvent*)> onMouse;
    std::function<void(const NSRect&)> onDraw;
    std::function<void()> onResign;

    BOOL acceptsFirstResponder() override { return accepts; }
    BOOL acceptsFirstMouse(NSEvent*) override { return firstMouse; }
    BOOL becomeFirstResponder() override {
        say("become");
        return becomes;
    }
    BOOL resignFirstResponder() override {
        say("resign");
        if (onResign) onResign();
        return resigns;
    }
    void mouseDown(NSEvent* e) override { mouse("down", e); }
    void mouseDragged(NSEvent* e) override { mouse("drag", e); }
    void mouseUp(NSEvent* e) override { mouse("up", e); }
    void rightMouseDown(NSEvent* e) override { mouse("right", e); }
    void scrollWheel(NSEvent* e) override { mouse("wheel", e); }
    void mouseEntered(NSEvent* e) override { mouse("entered", e); }
    void mouseExited(NSEvent* e) override { mouse("exited", e); }
    void keyDown(NSEvent* e) override { say("key " + e->characters()->utf8()); }
    void insertText(NSObject* text) override { say("insert " + as<NSString>(text)->utf8()); }
    void textInput(NSEvent* e) override {
        if (e->fields().isPreedit) say("preedit " + e->characters()->utf8());
        NSView::textInput(e);
    }
    void drawRect(const NSRect& r) override {
        if (onDraw) onDraw(r);
    }

private:
    void say(const std::string& what) { log_->push_back(name_ + " " + what); }
    void mouse(const char* what, NSEvent* e) {
        say(what);
        if (onMouse) onMouse(e);
    }
    Log* log_;
    std::string name_;
};

/// An application in memory: fresh for each test, with nothing of it left afterwards.
struct AppFixture : MemoryFixture {
    Log log;

    void TearDown() override { NSApplication::resetSharedApplication(); }

    [[nodiscard]] static Ref<NSWindow> windowAt(const NSRect& content, NSUInteger style = NSTitledWindowMask |
                                                                                          NSClosableWindowMask |
                                                                                          NSResizableWindowMask) {
        return make<NSWindow>(content, style);
    }
    /// In the content view.
    [[nodiscard]] Ref<LogView> viewIn(NSWindow* w, const NSRect& frame, const std::string& name) {
        const Ref<LogView> v = make<LogView>(frame, log, name);
        w->contentView()->addSubview(v);
        return v;
    }
    static void show(NSWindow* w) {
        w->makeKeyAndOrderFront(nullptr);
        NSApp()->drain_();
    }
    static void drain() { NSApp()->drain_(); }
    /// Lets virtual time pass, with everything that falls due on the way.
    static void pass(NSTimeInterval seconds) {
        NSRunLoop* loop = NSRunLoop::mainRunLoop();
        const NSTimeInterval end = loop->now() + seconds;
        NSApp()->drain_();
        while (loop->now() < end - 1e-6)
            NSApp()->runOnceUntil_(end);
        NSApp()->drain_();
    }
    [[nodiscard]] const backend::MemoryWindow& native(NSWindow* w) const { return *windows().window(w->nativeId_()); }
    /// The pointer, in the window's base coordinates.
    void move(NSWindow* w, CGFloat x, CGFloat y) const {
        windows().moveMouse(w->convertBaseToScreen({x, y}));
        drain();
    }
    void press(NSWindow* w, CGFloat x, CGFloat y, int button = 0) const {
        windows().moveMouse(w->convertBaseToScreen({x, y}));
        windows().press(button);
        drain();
    }
    void release(int button = 0) const {
        windows().release(button);
        drain();
    }
    void click(NSWindow* w, CGFloat x, CGFloat y) const {
        press(w, x, y);
        release();
    }
    /// What was logged since the last call.
    Log taken() { return std::exchange(log, {}); }
};

} // namespace libvue::test

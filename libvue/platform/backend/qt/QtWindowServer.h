#pragma once

#include <atomic>
#include <deque>
#include <map>
#include <memory>

#include <QObject>
#include <QPointF>
#include <QTimer>

#include <libvue/platform/backend/WindowServer.h>
#include <libvue/platform/backend/WindowStacking.h>
#include <libvue/platform/backend/qt/QtFocus.h>
#include <libvue/platform/backend/qt/QtWindowServerAppearance.h>

class QAbstractEventDispatcher;

namespace libvue::backend {

class QtWindow;

/// Real windows and the real clock. Everything but `wake` on the main thread.
class QtWindowServer final : public WindowServer {
public:
    QtWindowServer();
    ~QtWindowServer() override;

    [[nodiscard]] Time now() override;
    bool next(Event& event, Time deadline) override;
    void sleepUntil(Time t) override;
    void wake() override;
    void post(const Event& event) override { queue_.push_back(event); }

    [[nodiscard]] std::vector<Screen> screens() override;
    [[nodiscard]] bool hasDisplay() const override;
    [[nodiscard]] bool hasCompositor() const override;
    [[nodiscard]] bool prefersDark() const override { return appearance_.prefersDark(); }
    [[nodiscard]] bool prefersReducedMotion() const override { return appearance_.prefersReducedMotion(); }
    [[nodiscard]] bool prefersOverlayScrollers() const override { return appearance_.prefersOverlayScrollers(); }
    [[nodiscard]] NSPoint mousePosition() override;
    [[nodiscard]] std::uint32_t buttonsDown() override;
    [[nodiscard]] Time doubleClickInterval() const override;
    void beep() override;
    bool openURL(std::string_view url) override;

    [[nodiscard]] WindowId create(const WindowSpec& spec) override;
    void destroy(WindowId w) override;
    void setSpec(WindowId w, const WindowSpec& spec) override;
    void setTitle(WindowId w, std::string_view title) override;
    void setModified(WindowId w, bool modified) override;
    void show(WindowId w, bool activate) override;
    void hide(WindowId w) override;
    void setContent(WindowId w, const NSRect& rect) override;
    [[nodiscard]] NSRect content(WindowId w) override;
    [[nodiscard]] NSEdgeInsets frameInsets(WindowId w) override;
    [[nodiscard]] double scale(WindowId w) override;
    void setLimits(WindowId w, NSSize minimum, NSSize maximum) override;
    void setParent(WindowId w, WindowId parent) override;
    void raise(WindowId w) override;
    void order(WindowId w, WindowId above) override;
    void activate(WindowId w) override;
    void setAcceptsFocus(WindowId w, bool accepts) override;
    void setLevel(WindowId w, int level) override;
    void setOpacity(WindowId w, double opacity) override;
    void setIgnoresMouse(WindowId w, bool ignores) override;
    void setAllDesktops(WindowId w, bool all) override;
    void miniaturize(WindowId w, bool mini) override;
    void zoom(WindowId w) override;
    void setShape(WindowId w, const Path* shape) override;
    void startMove(WindowId w) override;
    [[nodiscard]] std::shared_ptr<Picture> surface(WindowId w) override;
    void present(WindowId w, std::span<const NSRect> dirty) override;
    void flush() override;
    [[nodiscard]] std::shared_ptr<Picture> capture(WindowId w) override;
    void grabMouse(WindowId w, bool grab) override;
    void setCursor(WindowId w, Cursor cursor) override;
    void setTextInput(WindowId w, bool on, const NSRect& caret) override;

    // What windows tell.

    void noteGeometry() { geometryChanged_ = true; }
    /// Whether the window had it not before.
    [[nodiscard]] bool noteFocus(WindowId w);
    void noteFocusLeft(WindowId w, WId native) { focus_.left(w, native); }
    void noteTheme() { appearance_.update(); }
    /// Where the pointer was at its last event, in Qt's screen coordinates, without asking the X server.
    [[nodiscard]] QPointF lastPointer() const noexcept { return pointer_; }
    void notePointer(QPointF screen) noexcept { pointer_ = screen; }

private:
    struct Entry {
        std::unique_ptr<QtWindow> window;
        std::string title;
        bool modified = false;
        Cursor cursor = Cursor::arrow;
    };
    [[nodiscard]] QtWindow* find(WindowId w) const;
    bool take(Event& event);
    void settle();
    void watchScreens();
    void screensChanged();
    void restackAbove(WindowId w);
    void wait(Time deadline);

    // Windows that go away tell the others.
    std::deque<Event> queue_;
    WindowStacking stacking_;
    QtFocus focus_;
    std::map<WindowId, Entry> windows_;
    QtWindowServerAppearance appearance_;
    QObject context_; ///< ends the connections with this object
    QTimer timer_;
    QAbstractEventDispatcher* dispatcher_;
    std::atomic<bool> woken_ = false;
    QPointF pointer_;
    Time settleAt_ = never;
    WindowId last_ = 0;
    bool geometryChanged_ = false, presented_ = false;
};

} // namespace libvue::backend

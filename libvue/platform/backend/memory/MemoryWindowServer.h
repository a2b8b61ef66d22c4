#pragma once

#include <atomic>
#include <deque>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <libvue/platform/backend/WindowServer.h>
#include <libvue/platform/backend/WindowStacking.h>
#include <libvue/platform/backend/memory/Forward.h>

namespace libvue::backend {

/// A window of the memory server, as a test may look at it.
struct MemoryWindow {
    WindowId id = 0;
    WindowSpec spec; ///< without what follows, which changes on its own
    NSRect content;
    std::string title;
    bool visible = false, miniaturized = false, zoomed = false, modified = false;
    bool acceptsFocus = true, ignoresMouse = false, allDesktops = false;
    WindowId parent = 0;
    int level = 0;
    double opacity = 1;
    std::vector<double> opacityHistory; ///< every value that was set, in order
    NSSize minimum, maximum{1e7, 1e7};
    Cursor cursor = Cursor::arrow;
    bool textInput = false;
    NSRect caret;
    bool hasShape = false;
    Path shape;
    bool movesWithPointer = false;      ///< between startMove and the release of the buttons
    std::size_t presents = 0;           ///< calls of present
    std::vector<NSRect> lastPresented;  ///< the rectangles of the last call
    std::shared_ptr<Picture> surface;   ///< null until it is asked for
    std::shared_ptr<Picture> presented; ///< null until it has to differ from the surface, or somebody looks
    std::vector<NSRect> unseen;         ///< what was presented and is not copied from the surface yet
    NSRect before;                      ///< the content that zooming again goes back to
};

/// Windows, screens and time in memory. Time moves only by next, sleepUntil and advance. What a person or a window
/// manager would do, the helpers do: they post the events that real windows would get.
class LIBVUE_API MemoryWindowServer final : public WindowServer {
public:
    /// One screen of 1440 by 900 points, with a bar of 25 points at its top. `graphics` must outlive this.
    explicit MemoryWindowServer(GraphicsEngine& graphics);
    ~MemoryWindowServer() override;

    // Time and events.

    [[nodiscard]] Time now() override { return now_; }
    /// A queued event; else the clock jumps to a finite deadline. Never waits: without a deadline and without an event
    /// it answers false at once.
    bool next(Event& event, Time deadline) override;
    void sleepUntil(Time t) override;
    void wake() override { woken_.store(true); }
    void post(const Event& event) override { queue_.push_back(event); }
    void advance(double seconds) { sleepUntil(now_ + seconds); }
    [[nodiscard]] std::size_t pendingEvents() const noexcept { return queue_.size(); }

    // The surroundings.

    [[nodiscard]] std::vector<Screen> screens() override { return screens_; }
    [[nodiscard]] bool hasDisplay() const override { return false; }
    [[nodiscard]] bool hasCompositor() const override { return compositor_; }
    [[nodiscard]] bool prefersDark() const override { return dark_; }
    [[nodiscard]] bool prefersReducedMotion() const override { return reducedMotion_; }
    [[nodiscard]] bool prefersOverlayScrollers() const override { return overlayScrollers_; }
    [[nodiscard]] NSPoint mousePosition() override { return mouse_; }
    [[nodiscard]] std::uint32_t buttonsDown() override { return buttons_; }
    [[nodiscard]] Time doubleClickInterval() const override { return 0.5; }
    void beep() override { ++beeps_; }
    bool openURL(std::string_view url) override;

    /// The first one is the main screen. Windows stay where they are; none at all is ignored.
    void setScreens(std::vector<Screen> screens);
    /// The scale of every screen.
    void setScale(double scale);
    void setPrefersDark(bool dark);
    void setPrefersReducedMotion(bool reduced) { reducedMotion_ = reduced; }
    void setPrefersOverlayScrollers(bool overlay);
    void setCompositor(bool present) { compositor_ = present; }
    /// The decoration of titled windows; 22 points at the top at the start.
    void setFrameInsets(const NSEdgeInsets& insets) { insets_ = insets; }
    [[nodiscard]] std::size_t beeps() const noexcept { return beeps_; }
    [[nodiscard]] const std::vector<std::string>& openedURLs() const noexcept { return opened_; }

    // Windows. An unknown identifier does nothing, and answers zero.

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
    [[nodiscard]] std::shared_ptr<Picture> surface(WindowId w) override { return surfaceToDrawAnew(w, {}); }
    [[nodiscard]] std::shared_ptr<Picture> surfaceToDrawAnew(WindowId w, std::span<const NSRect> rects) override;
    void present(WindowId w, std::span<const NSRect> dirty) override;
    void flush() override { ++flushes_; }
    /// A copy of what was presented, and of nothing else; null before that.
    [[nodiscard]] std::shared_ptr<Picture> capture(WindowId w) override;
    void grabMouse(WindowId w, bool grab) override;
    void setCursor(WindowId w, Cursor cursor) override;
    void setTextInput(WindowId w, bool on, const NSRect& caret) override;

    // For tests.

    /// Null for an unknown identifier; valid until the window is destroyed.
    [[nodiscard]] const MemoryWindow* window(WindowId w) const;
    /// All windows from back to front, hidden ones too.
    [[nodiscard]] const std::vector<WindowId>& stacking() const noexcept { return stack_.backToFront(); }
    [[nodiscard]] WindowId focusedWindow() const noexcept { return focus_; }
    [[nodiscard]] WindowId mouseGrabber() const noexcept { return grab_; }
    [[nodiscard]] std::size_t flushes() const noexcept { return flushes_; }
    /// The window whose content the pointer would hit there, past those that ignore the mouse; 0 for none, or for a
    /// decoration.
    [[nodiscard]] WindowId windowAt(NSPoint screen) const;

    // The pointer, in screen coordinates. While a button is down, and for a grab, events go to that window.

    void moveMouse(NSPoint screen);
    /// In a window that can have the focus, brings that forward first.
    void press(int button = 0);
    void release(int button = 0);
    void click(NSPoint screen, int button = 0);
    /// Lines, or points where precise.
    void wheel(double deltaX, double deltaY, bool precise = false, std::uint8_t phase = 0);

    // Keys, for the window that has the focus.

    /// Held from now on, for keys and the pointer alike.
    void setModifiers(std::uint32_t modifiers);
    /// Down and up. Function keys are U+F700 and on. `modifiers` come to those that are held.
    void key(char16_t character, std::uint32_t modifiers = 0);
    void keyDown(char16_t character, std::uint32_t modifiers = 0, bool repeat = false);
    void keyUp(char16_t character, std::uint32_t modifiers = 0);
    /// One key a UTF-16 unit; "\n" is Return, "\t" is Tab.
    void typeText(std::u16string_view text);
    /// What an input method composes; the selection is inside of it.
    void preedit(std::u16string_view text, NSRange selection);
    /// What an input method, or a dead key with the key after it, gives in the end.
    void commit(std::u16string_view text, NSRange replacement = {});

    // What a person does to a window through its frame.

    void requestClose(WindowId w);
    void moveByUser(WindowId w, NSPoint origin);
    /// Held to the window's limits; not for a window that cannot be resized.
    void resizeByUser(WindowId w, const NSRect& content);

private:
    [[nodiscard]] MemoryWindow* find(WindowId w);
    [[nodiscard]] Event make(Event::Kind kind, WindowId w) const;
    [[nodiscard]] bool shown(const MemoryWindow& w) const noexcept { return w.visible && !w.miniaturized; }
    [[nodiscard]] const Screen& screenOf(const NSRect& rect) const;
    void setFocus(WindowId w);
    void focusAnother(WindowId than);
    void leave(WindowId w);
    void changeContent(MemoryWindow& w, const NSRect& rect);
    void updateHover();
    void dropPictures(MemoryWindow& w);
    /// Brings `presented` up to what was presented, but for what lies in one of these rectangles.
    void copyUnseen(MemoryWindow& w, std::span<const NSRect> except);
    [[nodiscard]] WindowId mouseTarget() const;
    void postKey(Event::Kind kind, char16_t character, std::uint32_t modifiers, bool repeat);

    GraphicsEngine& graphics_;
    std::map<WindowId, MemoryWindow> windows_;
    WindowStacking stack_;
    std::deque<Event> queue_;
    std::vector<Screen> screens_;
    std::vector<std::string> opened_;
    NSEdgeInsets insets_{22, 0, 0, 0};
    Time now_ = 1000;
    std::atomic<bool> woken_ = false;
    NSPoint mouse_;
    std::uint32_t buttons_ = 0, modifiers_ = 0;
    WindowId last_ = 0, focus_ = 0, hover_ = 0, grab_ = 0, pressed_ = 0;
    std::size_t beeps_ = 0, flushes_ = 0;
    bool dark_ = false, reducedMotion_ = false, compositor_ = true, overlayScrollers_ = true;
};

} // namespace libvue::backend

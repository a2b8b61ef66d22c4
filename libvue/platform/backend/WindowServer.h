#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <libvue/platform/backend/Canvas.h>

namespace libvue::backend {

using Time = double; ///< seconds, monotonic
inline constexpr Time never = std::numeric_limits<double>::infinity();
using WindowId = std::uint64_t; ///< 0 is none

enum Modifier : std::uint32_t {
    modifierCapsLock = 1u << 16,
    modifierShift = 1u << 17,
    modifierControl = 1u << 18,
    modifierOption = 1u << 19,
    modifierCommand = 1u << 20,
    modifierNumericPad = 1u << 21,
    modifierFunction = 1u << 23
};

/// What a native event says. Positions are in the window's base coordinates, y upward, in points.
struct Event {
    enum class Kind : std::uint8_t {
        none,
        mouseDown,
        mouseUp,
        mouseMoved, ///< also while a button is down
        mouseEntered,
        mouseExited,
        wheel,
        keyDown,
        keyUp,
        modifiers,
        textCommit, ///< from an input method or a dead key
        textPreedit,
        focusIn,
        focusOut,
        closeRequest,
        moved, ///< by the user or the window manager; content in `rect`
        resized,
        exposed,  ///< it can be seen (again); `rect`, empty as a rule, needs to be presented
        occluded, ///< nothing of it can be seen, though it was not hidden
        miniaturized,
        deminiaturized,
        scaleChanged,
        screensChanged,
        appearanceChanged,
        clipboardChanged,
        dragEntered,
        dragMoved,
        dragExited,
        dragDropped
    };
    Kind kind = Kind::none;
    WindowId window = 0;
    Time time = 0;
    NSPoint position;
    NSPoint screenPosition;
    int button = 0; ///< 0 left, 1 right, 2 other…
    std::uint32_t buttonsDown = 0;
    std::uint32_t modifiers = 0;
    double deltaX = 0, deltaY = 0; ///< wheel, in points where precise, else in lines; positive shows what is above
    bool precise = false;
    std::uint8_t phase = 0; ///< 0 none, 1 began, 2 changed, 3 ended, 4 momentum
    std::uint16_t keyCode = 0;
    std::u16string characters;
    std::u16string charactersIgnoringModifiers; ///< function keys as U+F700…
    bool repeat = false;
    NSRange selection; ///< inside the preedit text
    NSRange replacement;
    NSRect rect;
};

struct Screen {
    NSRect frame;        ///< y upward, the main screen's origin at (0, 0)
    NSRect visibleFrame; ///< without bars and docks
    double scale = 1;
    std::string name;
};

enum class WindowKind : std::uint8_t { normal, utility, dialog, popup, tooltip, menu };

struct WindowSpec {
    NSRect content; ///< screen coordinates of the content area
    WindowKind kind = WindowKind::normal;
    bool titled = true, closable = true, miniaturizable = true, resizable = true;
    bool transparent = false;
    bool acceptsFocus = true;
    WindowId parent = 0;
    std::string title;
};

enum class Cursor : std::uint8_t {
    arrow,
    ibeam,
    crosshair,
    closedHand,
    openHand,
    pointingHand,
    resizeLeftRight,
    resizeUpDown,
    resizeDiagonalDown,
    resizeDiagonalUp,
    operationNotAllowed,
    dragCopy,
    wait,
    hidden
};

/// Windows, screens, events and time. It queues events and never calls the toolkit.
class LIBVUE_API WindowServer {
public:
    virtual ~WindowServer() = default;

    [[nodiscard]] virtual Time now() = 0;
    /// The next event, waiting until the deadline for one; false where none came. A virtual clock jumps to the
    /// deadline.
    virtual bool next(Event& event, Time deadline) = 0;
    virtual void sleepUntil(Time t) = 0;
    /// Ends the wait that is under way, or the next one; from any thread. That `next` answers false.
    virtual void wake() = 0;
    /// Appends an event as if it had come from outside.
    virtual void post(const Event& event) = 0;

    [[nodiscard]] virtual std::vector<Screen> screens() = 0;
    [[nodiscard]] virtual bool hasDisplay() const = 0; ///< real windows that a person sees
    [[nodiscard]] virtual bool hasCompositor() const = 0;
    [[nodiscard]] virtual bool prefersDark() const = 0;
    /// Whether the desktop asks that things be where they go rather than move there.
    [[nodiscard]] virtual bool prefersReducedMotion() const { return false; }
    /// Scrollers that lie over what they scroll and fade out, rather than beside it.
    [[nodiscard]] virtual bool prefersOverlayScrollers() const { return true; }
    [[nodiscard]] virtual NSPoint mousePosition() = 0; ///< screen coordinates
    [[nodiscard]] virtual std::uint32_t buttonsDown() = 0;
    [[nodiscard]] virtual Time doubleClickInterval() const = 0;
    virtual void beep() = 0;
    virtual bool openURL(std::string_view url) = 0;

    [[nodiscard]] virtual WindowId create(const WindowSpec& spec) = 0;
    virtual void destroy(WindowId w) = 0;
    virtual void setSpec(WindowId w, const WindowSpec& spec) = 0; ///< style changes on a live window
    virtual void setTitle(WindowId w, std::string_view title) = 0;
    virtual void setModified(WindowId w, bool modified) = 0;
    virtual void show(WindowId w, bool activate) = 0;
    virtual void hide(WindowId w) = 0;
    virtual void setContent(WindowId w, const NSRect& rect) = 0;
    [[nodiscard]] virtual NSRect content(WindowId w) = 0;
    [[nodiscard]] virtual NSEdgeInsets frameInsets(WindowId w) = 0;
    [[nodiscard]] virtual double scale(WindowId w) = 0;
    virtual void setLimits(WindowId w, NSSize minimum, NSSize maximum) = 0;
    virtual void setParent(WindowId w, WindowId parent) = 0;
    virtual void raise(WindowId w) = 0;
    virtual void order(WindowId w, WindowId above) = 0; ///< directly above; 0: at the back
    virtual void activate(WindowId w) = 0;
    virtual void setAcceptsFocus(WindowId w, bool accepts) = 0;
    virtual void setLevel(WindowId w, int level) = 0;
    virtual void setOpacity(WindowId w, double opacity) = 0;
    virtual void setIgnoresMouse(WindowId w, bool ignores) = 0;
    virtual void setAllDesktops(WindowId w, bool all) = 0;
    virtual void miniaturize(WindowId w, bool mini) = 0;
    virtual void zoom(WindowId w) = 0;
    virtual void setShape(WindowId w, const Path* shape) = 0; ///< the fallback without a compositor; null: a rectangle
    virtual void startMove(WindowId w) = 0; ///< lets the window manager move it with the pressed pointer

    /// The window's surface, of the size and scale of its content; changes identity when those change.
    [[nodiscard]] virtual std::shared_ptr<Picture> surface(WindowId w) = 0;
    /// The same for whoever draws all of these rectangles anew and presents them at once: what stood there is lost.
    [[nodiscard]] virtual std::shared_ptr<Picture> surfaceToDrawAnew(WindowId w, std::span<const NSRect> rects) {
        (void)rects;
        return surface(w);
    }
    /// Shows what changed of the surface: rectangles in points, y upward. Before the window can be seen it is kept, and
    /// shown then; what a window lost to another one above it comes back by itself.
    virtual void present(WindowId w, std::span<const NSRect> dirty) = 0;
    virtual void flush() = 0;
    /// What the window shows now.
    [[nodiscard]] virtual std::shared_ptr<Picture> capture(WindowId w) = 0;

    virtual void grabMouse(WindowId w, bool grab) = 0;
    virtual void setCursor(WindowId w, Cursor cursor) = 0;
    /// Whether text is being entered, and where its caret stands (window coordinates), for input methods.
    virtual void setTextInput(WindowId w, bool on, const NSRect& caret) = 0;
};

/// The clipboard: several representations at once, read lazily from a foreign owner.
class LIBVUE_API Clipboard {
public:
    struct Item {
        std::string type; ///< MIME
        std::vector<std::uint8_t> bytes;
    };
    virtual ~Clipboard() = default;
    virtual void set(std::vector<Item> items) = 0;
    [[nodiscard]] virtual std::vector<std::string> types() = 0;
    /// Empty where the type is not offered.
    [[nodiscard]] virtual std::vector<std::uint8_t> read(std::string_view type) = 0;
    [[nodiscard]] virtual std::uint64_t changeCount() = 0;
};

} // namespace libvue::backend

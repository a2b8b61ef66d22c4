#pragma once

#include <vector>

#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/appkit/NSView.h>

namespace libvue {

class MenuView;

/// Opens a menu and its submenus in windows of their own and follows mouse and keys until something was chosen or the
/// menu was left. One runs at a time for a chain of menus.
class MenuTracker {
public:
    MenuTracker(NSMenu* menu, NSWindow* owner);
    ~MenuTracker();
    MenuTracker(const MenuTracker&) = delete;
    MenuTracker& operator=(const MenuTracker&) = delete;

    /// Opens at a point of the screen, with the item (or the top left corner) there. Null where nothing was chosen.
    [[nodiscard]] Ref<NSMenuItem> run(NSPoint screen, NSMenuItem* positioning);

    [[nodiscard]] static NSSize sizeOf(const NSMenu& menu);
    /// Ends the tracking of that menu, or of the chain it belongs to.
    static void cancel(const NSMenu* menu);

private:
    struct Level {
        Ref<NSMenu> menu;
        Ref<NSWindow> window;
        Ref<MenuView> view;
    };

    void open(NSMenu* menu, const NSRect& frame);
    void closeFrom(std::size_t level);
    void openSubmenuOf(std::size_t level, NSMenuItem* item);
    /// Opens it and goes to its first item, from the keyboard.
    void enterSubmenuOf(std::size_t level, NSMenuItem* item);
    /// A menu of that size at the point, moved onto the screen that the point is on, and no larger than that.
    [[nodiscard]] static NSRect placed(NSSize size, NSPoint topLeft);
    void highlight(std::size_t level, NSMenuItem* item);
    void mouse(NSEvent* e);
    void mouseOutside(NSEventType type);
    void key(NSEvent* e);
    void step(int direction);
    void findByLetter(unichar c);
    void choose(NSMenuItem* item);
    /// The deepest open level under a screen point, or none.
    [[nodiscard]] std::ptrdiff_t levelAt(NSPoint screen) const;

    [[nodiscard]] NSTimeInterval timeOpen() const;

    static MenuTracker* current;
    MenuTracker* former_; ///< whose loop this one runs in
    Ref<NSMenu> root_;
    Ref<NSWindow> owner_;
    std::vector<Level> levels_;
    Ref<NSMenuItem> chosen_;
    Ref<NSObject> observer_; ///< of the application's leaving
    NSPoint start_;
    NSTimeInterval openedAt_ = 0;
    bool done_ = false;
    bool movedSinceOpen_ = false;
    bool pressedSinceOpen_ = false;
};

} // namespace libvue

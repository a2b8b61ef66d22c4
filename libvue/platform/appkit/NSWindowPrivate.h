#pragma once

#include <algorithm>
#include <memory>
#include <vector>

#include <libvue/platform/appkit/DrawingPass.h>
#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/appkit/NSTrackingArea.h>
#include <libvue/platform/appkit/NSViewExtras.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/ToolTipWindow.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSTimer.h>

namespace libvue {

[[nodiscard]] inline backend::WindowServer& windowServer() { return *backend::Backend::current().windows; }

/// A tracking area that the pointer is in.
struct NSWindow::Inside {
    Ref<NSTrackingArea> area;
    Weak<NSView> view;
    bool replaced = false; ///< by the view, as it brought its areas up to date
};

/// Where the pointer is in a window, and what it holds.
struct NSWindow::Tracking {
    /// The view that got the press of each button: left, right, others.
    Weak<NSView> pressed[3];
    struct Released {
        Weak<NSView> view;
        NSInteger number = 0; ///< of the event
        std::size_t button = 0;
    } released; ///< since the last press
    /// The window follows the pointer, which was there (screen coordinates).
    bool dragging = false;
    NSPoint dragPoint;
    bool dragged = false; ///< and has moved with it

    std::vector<Inside> inside;

    /// The view whose cursor rectangles, and whose ancestors', are up to date.
    Weak<NSView> cursorView;
    NSRect cursorVisible;
    bool cursorRectsValid = false;

    Weak<NSView> tipView;
    NSToolTipTag tipTag = 0;
    NSPoint tipPoint; ///< in base coordinates
    Ref<NSTimer> tipTimer;
    Ref<NSTimer> saveTimer; ///< runs while a frame waits to be saved
    Ref<ToolTipWindow> tip;
};

/// The sheets of a window: the one that is up in front, then those that wait.
struct NSWindow::Sheets {
    struct Session {
        Ref<NSWindow> sheet;
        SheetHandler ended;
    };
    std::vector<Session> sessions;

    [[nodiscard]] std::vector<Session>::iterator find(const NSWindow* sheet) {
        return std::find_if(sessions.begin(), sessions.end(), [&](const Session& s) { return s.sheet == sheet; });
    }
};

/// What a window shows and has still to show.
struct NSWindow::Display {
    std::weak_ptr<backend::Picture> surface; ///< the one that was drawn into last
    NSView::DirtySink present;               ///< drawn or exposed, and not handed to the server yet
    NSRect ring;                             ///< round which the focus ring was drawn; empty for none
    CGFloat ringRadius = 0;
    backend::Path shape;   ///< that the window is cut to, without a compositor; empty for a rectangle
    Weak<NSScreen> screen; ///< that it was told to be on
    bool screenKnown = false;
    bool whole = true; ///< nothing on the surface is good

    /// The ring is to be round there (empty: nowhere) from now on: what it leaves and what it comes to is dirty.
    void moveRing(const NSRect& to, CGFloat radius, const NSRect& bounds, NSView::DirtySink& dirty);
};

} // namespace libvue

#pragma once

#include <QtGui/qwindowdefs.h>

class QImage;
class QSize;

/// What X11 windows are told beside Qt. Without an X11 connection each of these does nothing.
namespace libvue::backend::x11 {

/// Whether a compositor owns the screen, so that transparent pixels are transparent.
[[nodiscard]] bool hasCompositor();
/// Sends what is buffered.
void flush();
void bell();
/// For the window manager, also for kinds of windows that Qt does not tell about; 0 for none.
void setTransientFor(WId window, WId parent);
/// Lets the pointer through to what lies below. To be said again after each mapping.
void setMouseTransparent(WId window, bool transparent);
/// A property before the window is mapped, a wish to the window manager afterwards.
void setOnAllDesktops(WId window, bool all, bool mapped);
/// Takes the steps out of the sizes that the window manager allows. At a scale of 1.5 Qt asks for steps of two pixels.
void allowEverySize(WId window);
/// Whether the window manager calls it the active window. False without a window manager that says so.
[[nodiscard]] bool isActive(WId window);
/// Whether the native event of Qt's filters says that the active window may be another one.
[[nodiscard]] bool tellsActiveWindow(const void* event);
/// The window's own pixels, without what lies above it and whatever a compositor makes of it; null where the server
/// does not have them.
[[nodiscard]] QImage contents(WId window, QSize pixels);

} // namespace libvue::backend::x11

#pragma once

#include <memory>

#include <libvue/platform/backend/GraphicsEngine.h>
#include <libvue/platform/backend/NotificationService.h>
#include <libvue/platform/backend/PrintService.h>
#include <libvue/platform/backend/TextEngine.h>
#include <libvue/platform/backend/WindowServer.h>

namespace libvue::backend {

/// What stands behind the platform surface: one set a process.
struct LIBVUE_API Backend {
    std::unique_ptr<GraphicsEngine> graphics;
    std::unique_ptr<TextEngine> text;
    std::unique_ptr<WindowServer> windows;
    std::unique_ptr<Clipboard> clipboard;
    std::unique_ptr<PrintService> printing;
    std::unique_ptr<NotificationService> notices; ///< null: the desktop shows none
    /// What is being searched for, in all applications of the user.
    std::unique_ptr<Clipboard> findText;

    /// The installed one; made on first use by makeDefaultBackend.
    [[nodiscard]] static Backend& current();
    [[nodiscard]] static bool exists() noexcept;
    /// Replaces it; with null, the next use makes a new one.
    static void install(std::unique_ptr<Backend> backend);
};

/// Windows, clipboard and time in memory (virtual time), with the raster engine of the Qt backend for pictures and
/// text.
[[nodiscard]] LIBVUE_API std::unique_ptr<Backend> makeMemoryBackend();
/// Real windows: xcb where there is a display, else Qt's offscreen platform.
[[nodiscard]] LIBVUE_API std::unique_ptr<Backend> makeQtBackend();
/// LIBVUE_BACKEND=memory or qt; without it, qt.
[[nodiscard]] LIBVUE_API std::unique_ptr<Backend> makeDefaultBackend();

/// The raster engines over Qt Gui alone, for both backends.
[[nodiscard]] LIBVUE_API std::unique_ptr<GraphicsEngine> makeRasterGraphics();
[[nodiscard]] LIBVUE_API std::unique_ptr<TextEngine> makeRasterText();

/// The parts of the memory backend, to put together with other ones. The windows keep their pictures in `graphics`, the
/// clipboard announces foreign changes through `windows`; both must outlive what they are given to.
[[nodiscard]] LIBVUE_API std::unique_ptr<WindowServer> makeMemoryWindows(GraphicsEngine& graphics);
[[nodiscard]] LIBVUE_API std::unique_ptr<Clipboard> makeMemoryClipboard(WindowServer& windows);
/// Jobs that stay in memory, drawn with `graphics`, which must outlive it. No printer until one is added.
[[nodiscard]] LIBVUE_API std::unique_ptr<PrintService> makeMemoryPrinting(GraphicsEngine& graphics);
/// PDF files, and the printers of the desktop.
[[nodiscard]] LIBVUE_API std::unique_ptr<PrintService> makeQtPrinting();
[[nodiscard]] LIBVUE_API std::unique_ptr<NotificationService> makeMemoryNotices();

} // namespace libvue::backend

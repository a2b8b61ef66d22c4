#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/backend/FileClipboard.h>
#include <libvue/platform/backend/qt/QtApplication.h>
#include <libvue/platform/backend/qt/QtClipboard.h>
#include <libvue/platform/backend/qt/QtNotificationService.h>
#include <libvue/platform/backend/qt/QtPrinting.h>
#include <libvue/platform/backend/qt/QtWindowServer.h>

namespace libvue::backend {

std::unique_ptr<Backend> makeMemoryBackend() {
    ensureQtApplication(QtDisplay::none);
    auto backend = std::make_unique<Backend>();
    backend->graphics = makeRasterGraphics();
    backend->text = makeRasterText();
    backend->windows = makeMemoryWindows(*backend->graphics);
    backend->clipboard = makeMemoryClipboard(*backend->windows);
    backend->printing = makeMemoryPrinting(*backend->graphics);
    backend->notices = makeMemoryNotices();
    backend->findText = makeMemoryClipboard(*backend->windows);
    return backend;
}

std::unique_ptr<Backend> makeQtBackend() {
    ensureQtApplication();
    auto backend = std::make_unique<Backend>();
    backend->graphics = makeRasterGraphics();
    backend->text = makeRasterText();
    backend->windows = std::make_unique<QtWindowServer>();
    backend->clipboard = std::make_unique<QtClipboard>(*backend->windows);
    backend->printing = std::make_unique<QtPrinting>();
    backend->notices = makeQtNotices();
    // The desktop has one selection too few for it.
    backend->findText = std::make_unique<FileClipboard>(FileClipboard::findTextPath());
    return backend;
}

std::unique_ptr<Backend> makeDefaultBackend() {
    const char* named = std::getenv("LIBVUE_BACKEND");
    const std::string_view name = named ? named : "";
    if (name == "memory") return makeMemoryBackend();
    if (!name.empty() && name != "qt")
        std::fprintf(stderr, "libvue: LIBVUE_BACKEND is qt or memory, not \"%s\"; qt is used\n", named);
    return makeQtBackend();
}

} // namespace libvue::backend

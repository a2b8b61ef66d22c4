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
    const char* name = std::getenv("LIBVUE_BACKEND");
    return name && std::string_view(name) == "memory" ? makeMemoryBackend() : makeQtBackend();
}

} // namespace libvue::backend

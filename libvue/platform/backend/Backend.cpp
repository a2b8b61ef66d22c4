#include <libvue/platform/backend/Backend.h>

#include <utility>

namespace libvue::backend {

namespace {

// Never destroyed at exit: the tables of the engines below may be gone by then.
Backend* installed = nullptr;

} // namespace

Backend& Backend::current() {
    if (!installed) installed = makeDefaultBackend().release();
    return *installed;
}

bool Backend::exists() noexcept { return installed != nullptr; }

void Backend::install(std::unique_ptr<Backend> backend) {
    // The old one goes after the new one stands, so that nobody sees a half-destroyed backend as the current one.
    const std::unique_ptr<Backend> former(std::exchange(installed, backend.release()));
}

} // namespace libvue::backend

#include <libvue/platform/foundation/NSThread.h>

#include <sys/syscall.h>
#include <unistd.h>

namespace libvue {

BOOL NSThread::isMainThread() noexcept {
    // A fork keeps one thread and makes it the main one, so the process is asked each time it is another one.
    thread_local pid_t process = 0;
    thread_local bool main = false;
    if (const pid_t now = getpid(); process != now) {
        process = now;
        main = syscall(SYS_gettid) == now;
    }
    return main;
}

} // namespace libvue

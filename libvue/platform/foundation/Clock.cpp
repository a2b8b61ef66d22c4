#include <libvue/platform/foundation/Clock.h>

#include <chrono>

#include <libvue/platform/foundation/NSDate.h>

namespace libvue {

namespace {

class SystemClock : public Clock {
public:
    NSTimeInterval now() override {
        return origin_ + std::chrono::duration<NSTimeInterval>(std::chrono::steady_clock::now() - start_).count();
    }

private:
    using Wall = std::chrono::system_clock;
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    const NSTimeInterval origin_ =
        std::chrono::duration<NSTimeInterval>(Wall::now().time_since_epoch()).count() - NSTimeIntervalSince1970;
};

Clock* installed = nullptr;

} // namespace

Clock::~Clock() = default;

Clock& Clock::current() {
    if (installed) return *installed;
    static SystemClock system;
    return system;
}

void Clock::install(Clock* clock) noexcept { installed = clock; }

} // namespace libvue

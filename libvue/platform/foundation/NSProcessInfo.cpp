#include <libvue/platform/foundation/NSProcessInfo.h>

#include <cerrno> // program_invocation_short_name
#include <ctime>
#include <random>
#include <string>
#include <thread>

#include <fcntl.h>
#include <limits.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {
const ClassRegistration<NSProcessInfo> registration;
}

void NSProcessInfo::describe(ClassDescription<NSProcessInfo>& c) { c.key<&NSProcessInfo::processName>("processName"); }

NSProcessInfo::NSProcessInfo() {
    // Not the name under which it was called: settings must not depend on links to the program.
    char path[PATH_MAX];
    ssize_t n = readlink("/proc/self/exe", path, sizeof path);
    std::string_view name = n > 0 ? std::string_view(path, static_cast<std::size_t>(n)) : program_invocation_short_name;
    if (auto slash = name.rfind('/'); slash != std::string_view::npos) name.remove_prefix(slash + 1);
    name_ = NSString::fromUTF8(name);
    markLiveObjectAsExpected(name_);
}

NSProcessInfo::~NSProcessInfo() = default;

NSProcessInfo* NSProcessInfo::processInfo() {
    static NSProcessInfo* const one = keptForever(make<NSProcessInfo>());
    return one;
}

void NSProcessInfo::setProcessName(const NSString* name) {
    if (name && name->length()) name_ = NSString::stringWithString(name);
}

int NSProcessInfo::processIdentifier() const noexcept { return getpid(); }

Ref<NSArray> NSProcessInfo::arguments() const {
    auto all = NSMutableArray::array();
    std::string bytes;
    if (int fd = open("/proc/self/cmdline", O_RDONLY | O_CLOEXEC); fd >= 0) {
        char buffer[4096];
        for (ssize_t n = 0; (n = read(fd, buffer, sizeof buffer)) > 0;)
            bytes.append(buffer, static_cast<std::size_t>(n));
        close(fd);
    }
    for (std::size_t at = 0; at < bytes.size();) {
        std::size_t end = std::min(bytes.find('\0', at), bytes.size());
        all->addObject(NSString::fromUTF8(std::string_view(bytes).substr(at, end - at)));
        at = end + 1;
    }
    return all;
}

Ref<NSDictionary> NSProcessInfo::environment() const {
    auto all = NSMutableDictionary::dictionary();
    for (char** e = environ; e && *e; ++e) {
        std::string_view entry(*e);
        auto equal = entry.find('=');
        if (equal == std::string_view::npos) continue;
        all->setObject_forKey(NSString::fromUTF8(entry.substr(equal + 1)), NSString::fromUTF8(entry.substr(0, equal)));
    }
    return all;
}

Ref<NSString> NSProcessInfo::hostName() const {
    char name[HOST_NAME_MAX + 1] = {};
    return gethostname(name, sizeof name - 1) == 0 ? NSString::fromUTF8(name) : u"localhost"_ns;
}

Ref<NSString> NSProcessInfo::operatingSystemVersionString() const {
    utsname u{};
    if (uname(&u) != 0) return NSString::string();
    return NSString::fromUTF8(std::string(u.sysname) + " " + u.release);
}

Ref<NSString> NSProcessInfo::globallyUniqueString() const {
    std::random_device random;
    std::string text;
    constexpr char digits[] = "0123456789ABCDEF";
    for (int i = 0; i < 32; ++i) {
        if (i == 8 || i == 12 || i == 16 || i == 20) text.push_back('-');
        text.push_back(digits[random() % 16]);
    }
    return NSString::fromLatin1(text);
}

NSUInteger NSProcessInfo::processorCount() const noexcept {
    unsigned n = std::thread::hardware_concurrency();
    return n ? n : 1;
}

NSTimeInterval NSProcessInfo::systemUptime() const noexcept {
    timespec t{};
    clock_gettime(CLOCK_BOOTTIME, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

} // namespace libvue

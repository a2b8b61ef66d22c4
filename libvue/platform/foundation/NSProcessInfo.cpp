#include <libvue/platform/foundation/NSProcessInfo.h>

#include <cerrno> // program_invocation_short_name
#include <string>

#include <limits.h>
#include <unistd.h>

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

} // namespace libvue

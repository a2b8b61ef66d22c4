#pragma once

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// The process itself.
class LIBVUE_API NSProcessInfo : public NSObject {
public:
    static void describe(ClassDescription<NSProcessInfo>& c);
    NSProcessInfo();
    ~NSProcessInfo() override;
    [[nodiscard]] static NSProcessInfo* processInfo();

    /// The name of the executable file; names the folder of the user defaults.
    [[nodiscard]] NSString* processName() const noexcept { return name_; }

private:
    Ref<NSString> name_;
};

} // namespace libvue

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

    /// The name of the executable file unless set; names the folder of the user defaults.
    [[nodiscard]] NSString* processName() const noexcept { return name_; }
    void setProcessName(const NSString* name);
    [[nodiscard]] int processIdentifier() const noexcept;
    [[nodiscard]] Ref<NSArray> arguments() const;
    [[nodiscard]] Ref<NSDictionary> environment() const;
    [[nodiscard]] Ref<NSString> hostName() const;
    [[nodiscard]] Ref<NSString> operatingSystemVersionString() const;
    /// Different at each call, in this process and others.
    [[nodiscard]] Ref<NSString> globallyUniqueString() const;
    [[nodiscard]] NSUInteger processorCount() const noexcept;
    /// Seconds since the machine started.
    [[nodiscard]] NSTimeInterval systemUptime() const noexcept;

private:
    Ref<NSString> name_;
};

} // namespace libvue

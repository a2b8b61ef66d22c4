#pragma once

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// The one object that stands for nothing inside collections.
class LIBVUE_API NSNull : public NSObject {
public:
    static void describe(ClassDescription<NSNull>& c);
    [[nodiscard]] static NSNull* null();
    /// The null object from an archive.
    [[nodiscard]] static Ref<NSNull> initWithCoder(NSCoder& coder);

    [[nodiscard]] Ref<NSString> description() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    void encodeWithCoder(NSCoder&) const override {}

private:
    NSNull() noexcept = default;
};

} // namespace libvue

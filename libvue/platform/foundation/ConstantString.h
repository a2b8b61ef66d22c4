#pragma once

#include <string_view>

#include <libvue/platform/foundation/Forward.h>
#include <libvue/platform/foundation/Ref.h>

namespace libvue {

/// A named text that is the same everywhere: a notification's name, a dictionary's key. Costs nothing until it is read,
/// and is then one NSString for the rest of the process:
///
///     inline constexpr ConstantString NSRangeException{u"NSRangeException"};
///
/// It stands wherever an NSString* is expected, except in the dots of a format, where it needs get(). Main thread.
class LIBVUE_API ConstantString {
public:
    constexpr explicit ConstantString(std::u16string_view text) noexcept : text_(text) {}
    ConstantString(const ConstantString&) = delete;
    ConstantString& operator=(const ConstantString&) = delete;

    [[nodiscard]] NSString* get() const { return made_ ? made_ : make(); }
    operator NSString*() const { return get(); }
    NSString* operator->() const { return get(); }
    [[nodiscard]] constexpr std::u16string_view text() const noexcept { return text_; }

private:
    NSString* make() const;

    std::u16string_view text_;
    mutable NSString* made_ = nullptr;
};

} // namespace libvue

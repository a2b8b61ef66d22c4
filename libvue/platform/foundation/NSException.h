#pragma once

#include <cstdarg>
#include <exception>
#include <string>
#include <string_view>

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

inline constexpr ConstantString NSGenericException{u"NSGenericException"};
inline constexpr ConstantString NSRangeException{u"NSRangeException"};
inline constexpr ConstantString NSInvalidArgumentException{u"NSInvalidArgumentException"};
inline constexpr ConstantString NSInternalInconsistencyException{u"NSInternalInconsistencyException"};
inline constexpr ConstantString NSUndefinedKeyException{u"NSUndefinedKeyException"};
inline constexpr ConstantString NSObjectNotAvailableException{u"NSObjectNotAvailableException"};
inline constexpr ConstantString NSInvalidUnarchiveOperationException{u"NSInvalidUnarchiveOperationException"};
inline constexpr ConstantString NSInvalidArchiveOperationException{u"NSInvalidArchiveOperationException"};
inline constexpr ConstantString NSParseErrorException{u"NSParseErrorException"};

/// What is raised on a programmer's error, or where raising is the defined answer: a name and a reason.
class LIBVUE_API NSException : public NSObject {
public:
    static void describe(ClassDescription<NSException>& c);
    NSException(NSString* name, NSString* reason, NSDictionary* userInfo = nullptr);
    ~NSException() override;
    [[nodiscard]] static Ref<NSException> exceptionWithName_reason_userInfo(NSString* name, NSString* reason,
                                                                            NSDictionary* userInfo);

    [[nodiscard]] NSString* name() const noexcept;
    /// Null where none was given.
    [[nodiscard]] NSString* reason() const noexcept;
    [[nodiscard]] NSDictionary* userInfo() const noexcept;

    /// Throws an NSExceptionRaised that carries this exception.
    [[noreturn]] void raise();
    [[noreturn]] static void raise_format(NSString* name, const NSString* format, ...);
    [[noreturn]] static void raise_format_arguments(NSString* name, const NSString* format, va_list arguments);

    /// "name: reason".
    [[nodiscard]] Ref<NSString> description() const override;

private:
    Ref<NSString> name_;
    Ref<NSString> reason_;
    Ref<NSDictionary> userInfo_;
};

/// The C++ exception that travels: caught by const reference. `what()` is "name: reason" in UTF-8.
struct LIBVUE_API NSExceptionRaised : std::exception {
    explicit NSExceptionRaised(Ref<NSException> e);
    NSExceptionRaised(const NSExceptionRaised&) noexcept;
    NSExceptionRaised& operator=(const NSExceptionRaised&) noexcept;
    ~NSExceptionRaised() override;
    [[nodiscard]] const char* what() const noexcept override;

    Ref<NSException> exception;

private:
    std::string text_;
};

/// Raises from the platform's own code, which has its reason as UTF-8.
[[noreturn]] LIBVUE_API void raiseNamed(NSString* name, std::string_view reason);
[[noreturn]] LIBVUE_API void raiseNamed(std::string_view name, std::string_view reason);

} // namespace libvue

#include <libvue/platform/foundation/NSException.h>

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

void NSException::describe(ClassDescription<NSException>& c) {
    c.key<&NSException::name>("name");
    c.key<&NSException::reason>("reason");
    c.key<&NSException::userInfo>("userInfo");
}

NSException::NSException(NSString* name, NSString* reason, NSDictionary* userInfo)
    : name_(name ? name : NSGenericException.get()), reason_(reason), userInfo_(userInfo) {}

NSException::~NSException() = default;

Ref<NSException> NSException::exceptionWithName_reason_userInfo(NSString* name, NSString* reason,
                                                                NSDictionary* userInfo) {
    return make<NSException>(name, reason, userInfo);
}

NSString* NSException::name() const noexcept { return name_; }
NSString* NSException::reason() const noexcept { return reason_; }
NSDictionary* NSException::userInfo() const noexcept { return userInfo_; }

void NSException::raise() { throw NSExceptionRaised(Ref<NSException>(this)); }

void NSException::raise_format(NSString* name, const NSString* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    // The list is ended before the throw, not after it.
    const Ref<NSString> reason = NSString::initWithFormat_arguments(format, arguments);
    va_end(arguments);
    throw NSExceptionRaised(make<NSException>(name, reason));
}

void NSException::raise_format_arguments(NSString* name, const NSString* format, va_list arguments) {
    throw NSExceptionRaised(make<NSException>(name, NSString::initWithFormat_arguments(format, arguments)));
}

Ref<NSString> NSException::description() const {
    if (!reason_) return name_;
    return name_->stringByAppendingString(NSString::fromLatin1(": "))->stringByAppendingString(reason_);
}

NSExceptionRaised::NSExceptionRaised(Ref<NSException> e)
    : exception(std::move(e)), text_(exception ? exception->description()->utf8() : std::string()) {}
NSExceptionRaised::NSExceptionRaised(const NSExceptionRaised&) noexcept = default;
NSExceptionRaised& NSExceptionRaised::operator=(const NSExceptionRaised&) noexcept = default;
NSExceptionRaised::~NSExceptionRaised() = default;
const char* NSExceptionRaised::what() const noexcept { return text_.c_str(); }

void raiseNamed(NSString* name, std::string_view reason) {
    throw NSExceptionRaised(make<NSException>(name, NSString::fromUTF8(reason)));
}

void raiseNamed(std::string_view name, std::string_view reason) { raiseNamed(NSString::fromUTF8(name), reason); }

} // namespace libvue

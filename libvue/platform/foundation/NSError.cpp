#include <libvue/platform/foundation/NSError.h>

#include <system_error>

#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

const ClassRegistration<NSError> registration;

constexpr ConstantString domainKey{u"NSDomain"};
constexpr ConstantString codeKey{u"NSCode"};
constexpr ConstantString userInfoKey{u"NSUserInfo"};

} // namespace

void NSError::describe(ClassDescription<NSError>& c) {
    c.key<&NSError::domain>("domain");
    c.key<&NSError::code>("code");
    c.key<&NSError::userInfo>("userInfo");
    c.key<&NSError::localizedDescription>("localizedDescription");
}

NSError::NSError(NSString* domain, NSInteger code, NSDictionary* userInfo)
    : domain_(domain ? domain : NSCocoaErrorDomain.get()),
      code_(code),
      userInfo_(userInfo ? Ref<NSDictionary>(userInfo) : NSDictionary::dictionary()) {}

NSError::NSError(NSCoder& coder) : code_(0) {
    coder.beginDecoding(this);
    const bool keyed = coder.allowsKeyedCoding();
    domain_ = keyed ? coder.decodeObjectOf_forKey<NSString>(domainKey) : coder.decodeObjectOf<NSString>();
    code_ = keyed ? coder.decodeIntegerForKey(codeKey) : coder.decodeInteger();
    userInfo_ = keyed ? coder.decodeObjectOf_forKey<NSDictionary>(userInfoKey) : coder.decodeObjectOf<NSDictionary>();
    if (!domain_) domain_ = NSCocoaErrorDomain.get();
    if (!userInfo_) userInfo_ = NSDictionary::dictionary();
}

NSError::~NSError() = default;

Ref<NSError> NSError::errorWithDomain_code_userInfo(NSString* domain, NSInteger code, NSDictionary* userInfo) {
    return make<NSError>(domain, code, userInfo);
}

Ref<NSError> NSError::fromErrno(int code, NSString* path) {
    const Ref<NSString> text = NSString::fromUTF8(std::generic_category().message(code));
    if (!path) {
        const auto info = NSDictionary::dictionaryWithObject_forKey(text, NSLocalizedDescriptionKey);
        return make<NSError>(NSPOSIXErrorDomain.get(), code, info.get());
    }
    const auto info = NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSLocalizedDescriptionKey.get(), text}, {NSFilePathErrorKey.get(), path}});
    return make<NSError>(NSPOSIXErrorDomain.get(), code, info.get());
}

NSString* NSError::domain() const noexcept { return domain_; }
NSDictionary* NSError::userInfo() const { return userInfo_; }

Ref<NSString> NSError::textForKey(NSString* key) const { return as<NSString>(userInfo_->objectForKey(key)); }

Ref<NSString> NSError::localizedDescription() const {
    if (Ref<NSString> text = textForKey(NSLocalizedDescriptionKey)) return text;
    return NSString::fromUTF8(domain_->utf8() + " (" + std::to_string(code_) + ")");
}

Ref<NSString> NSError::localizedFailureReason() const { return textForKey(NSLocalizedFailureReasonErrorKey); }

Ref<NSString> NSError::localizedRecoverySuggestion() const { return textForKey(NSLocalizedRecoverySuggestionErrorKey); }

BOOL NSError::isEqual(const NSObject* other) const {
    if (this == other) return YES;
    const auto* e = as<const NSError>(other);
    return e && code_ == e->code_ && domain_->isEqualToString(e->domain_) && userInfo_->isEqual(e->userInfo_);
}

NSUInteger NSError::hash() const { return domain_->hash() ^ static_cast<NSUInteger>(code_); }

Ref<NSString> NSError::description() const {
    return NSString::fromUTF8(domain_->utf8() + " " + std::to_string(code_) + ": " + localizedDescription()->utf8());
}

Ref<NSObject> NSError::copyWithZone() const { return Ref<NSObject>(const_cast<NSError*>(this)); }

void NSError::encodeWithCoder(NSCoder& coder) const {
    if (coder.allowsKeyedCoding()) {
        coder.encodeObject_forKey(domain_, domainKey);
        coder.encodeInteger_forKey(code_, codeKey);
        coder.encodeObject_forKey(userInfo_, userInfoKey);
    } else {
        coder.encodeObject(domain_);
        coder.encodeInteger(code_);
        coder.encodeObject(userInfo_);
    }
}

} // namespace libvue

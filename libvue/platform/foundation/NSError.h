#pragma once

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

inline constexpr ConstantString NSCocoaErrorDomain{u"NSCocoaErrorDomain"};
inline constexpr ConstantString NSPOSIXErrorDomain{u"NSPOSIXErrorDomain"};
inline constexpr ConstantString NSLocalizedDescriptionKey{u"NSLocalizedDescription"};
inline constexpr ConstantString NSLocalizedFailureReasonErrorKey{u"NSLocalizedFailureReason"};
inline constexpr ConstantString NSLocalizedRecoverySuggestionErrorKey{u"NSLocalizedRecoverySuggestion"};
inline constexpr ConstantString NSUnderlyingErrorKey{u"NSUnderlyingError"};
inline constexpr ConstantString NSFilePathErrorKey{u"NSFilePath"};

/// Why something could not be done: a domain, a code in it, and what more is known.
class LIBVUE_API NSError : public NSObject {
public:
    static void describe(ClassDescription<NSError>& c);
    NSError(NSString* domain, NSInteger code, NSDictionary* userInfo = nullptr);
    explicit NSError(NSCoder& coder);
    ~NSError() override;
    [[nodiscard]] static Ref<NSError> errorWithDomain_code_userInfo(NSString* domain, NSInteger code,
                                                                    NSDictionary* userInfo);
    /// An error of the C library (`errno`), with its text as the description.
    [[nodiscard]] static Ref<NSError> fromErrno(int code, NSString* path = nullptr);

    [[nodiscard]] NSString* domain() const noexcept;
    [[nodiscard]] NSInteger code() const noexcept { return code_; }
    /// Never null.
    [[nodiscard]] NSDictionary* userInfo() const;
    /// The text under NSLocalizedDescriptionKey, else one made of domain and code.
    [[nodiscard]] Ref<NSString> localizedDescription() const;
    [[nodiscard]] Ref<NSString> localizedFailureReason() const;
    [[nodiscard]] Ref<NSString> localizedRecoverySuggestion() const;

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSString> description() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;

private:
    Ref<NSString> textForKey(NSString* key) const;

    Ref<NSString> domain_;
    NSInteger code_;
    Ref<NSDictionary> userInfo_;
};

} // namespace libvue

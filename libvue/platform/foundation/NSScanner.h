#pragma once

#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

/// Reads a text from left to right. Each scan first skips white space (or the set that is given); where it does not
/// find what it looks for it answers NO and stays. Results may be null.
class LIBVUE_API NSScanner : public NSObject {
public:
    static void describe(ClassDescription<NSScanner>& c);
    /// Null raises NSInvalidArgumentException.
    explicit NSScanner(const NSString* s);
    ~NSScanner() override;
    [[nodiscard]] static Ref<NSScanner> scannerWithString(const NSString* s);

    [[nodiscard]] NSString* string() const noexcept { return string_; }
    [[nodiscard]] NSUInteger scanLocation() const noexcept { return location_; }
    /// Beyond the end raises NSRangeException.
    void setScanLocation(NSUInteger location);
    /// Null skips nothing.
    void setCharactersToBeSkipped(NSCharacterSet* set);
    [[nodiscard]] NSCharacterSet* charactersToBeSkipped() const noexcept { return skipped_; }
    [[nodiscard]] BOOL caseSensitive() const noexcept { return caseSensitive_; }
    void setCaseSensitive(BOOL yes) noexcept { caseSensitive_ = yes; }
    /// Only skipped characters are left.
    [[nodiscard]] BOOL isAtEnd() const;

    BOOL scanInt(int* value);
    BOOL scanInteger(NSInteger* value);
    /// With or without "0x".
    BOOL scanHexInt(unsigned* value);
    BOOL scanDouble(double* value);
    BOOL scanString_intoString(const NSString* s, Ref<NSString>* value);
    BOOL scanCharactersFromSet_intoString(const NSCharacterSet* set, Ref<NSString>* value);
    BOOL scanUpToString_intoString(const NSString* s, Ref<NSString>* value);
    BOOL scanUpToCharactersFromSet_intoString(const NSCharacterSet* set, Ref<NSString>* value);

private:
    [[nodiscard]] NSUInteger afterSkipped() const;
    BOOL take(NSUInteger from, NSUInteger to, Ref<NSString>* value);

    Ref<NSString> string_;
    Ref<NSCharacterSet> skipped_;
    NSUInteger location_ = 0;
    BOOL caseSensitive_ = NO;
};

} // namespace libvue

#pragma once

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// The domain of the errors of JSON.
inline constexpr ConstantString SBJSONErrorDomain{u"org.vistaret.JSON.ErrorDomain"};

/// The numbers of the errors, which reader and writer share.
enum SBJSONErrorCode : NSUInteger {
    SBJSONErrorUnsupported = 1,
    SBJSONErrorParseNumber = 2,
    SBJSONErrorParse = 3,
    SBJSONErrorFragment = 4,
    SBJSONErrorControl = 5,
    SBJSONErrorUnicode = 6,
    SBJSONErrorDepth = 7,
    SBJSONErrorEscape = 8,
    SBJSONErrorTrailingComma = 9,
    SBJSONErrorTrailingGarbage = 10,
    SBJSONErrorEOF = 11,
    SBJSONErrorInput = 12
};

/// What reader, writer and facade share: the limit of nesting and the errors of the last operation.
///
/// "errorTrace" can be observed. One instance serves one operation at a time.
class LIBVUE_API SBJsonBase : public NSObject {
public:
    static void describe(ClassDescription<SBJsonBase>& c);
    /// The limit of nesting is 512.
    SBJsonBase();
    ~SBJsonBase() override;

    /// The deepest nesting that is taken; 0 for any.
    [[nodiscard]] virtual NSUInteger maxDepth() const;
    virtual void setMaxDepth(NSUInteger depth);

    /// A copy of the errors of the last operation, the innermost first; null where there are none.
    [[nodiscard]] Ref<NSArray> errorTrace() const;
    /// Appends an error, which wraps the last one as its underlying error.
    void addErrorWithCode_description(NSUInteger code, NSString* text);
    void clearErrorTrace();

protected:
    /// Absent while there are no errors.
    Ref<NSMutableArray> errorTrace_;
    /// The nesting of the operation under way.
    NSUInteger depth_ = 0;
    NSUInteger maxDepth_ = 0;
};

} // namespace libvue

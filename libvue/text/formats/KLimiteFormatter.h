#pragma once

#include <cstdint>
#include <limits>

#include <libvue/platform/foundation/NSFormatter.h>
#include <libvue/text/formats/Forward.h>

namespace libvue {

/// Lets texts pass as they are, and stops typing that would make them longer than a limit.
class LIBVUE_API KLimiteFormatter : public NSFormatter {
public:
    static void describe(ClassDescription<KLimiteFormatter, NSFormatter>& c);
    KLimiteFormatter() noexcept = default;
    explicit KLimiteFormatter(NSCoder& coder) : NSFormatter(coder) {}

    /// In UTF-16 units. Nothing is limited until it is set; below 0 no text passes at all.
    [[nodiscard]] std::int32_t maximumLength() const noexcept { return maxLength; }
    void setMaximumLength(std::int32_t length) noexcept { maxLength = length; }

    /// The text itself; null, so that the platform writes it, for what is no text.
    [[nodiscard]] Ref<NSString> stringForObjectValue(NSObject* value) override;
    /// Always YES, with the text itself as the value. `error` is left alone.
    BOOL getObjectValue_forString_errorDescription(Ref<NSObject>* value, NSString* string,
                                                   Ref<NSString>* error) override;
    /// NO for what is too long, with null in `newString`: what stood there stays. `error` is left alone.
    BOOL isPartialStringValid_newEditingString_errorDescription(NSString* partial, Ref<NSString>* newString,
                                                                Ref<NSString>* error) override;
    /// Null: the plain text is drawn.
    [[nodiscard]] Ref<NSAttributedString>
    attributedStringForObjectValue_withDefaultAttributes(NSObject* value, NSDictionary* attributes) override;
    /// A formatter with the same limit.
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

private:
    std::int32_t maxLength = std::numeric_limits<std::int32_t>::max();
};

} // namespace libvue

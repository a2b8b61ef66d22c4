#pragma once

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// Seconds from 1 January 1970 to the reference date, 1 January 2001, both UTC.
inline constexpr NSTimeInterval NSTimeIntervalSince1970 = 978307200.0;

/// A moment, in seconds since the reference date. Immutable.
class LIBVUE_API NSDate : public NSObject {
public:
    static void describe(ClassDescription<NSDate>& c);
    /// Now.
    NSDate();
    explicit NSDate(NSTimeInterval sinceReferenceDate) noexcept : time_(sinceReferenceDate) {}
    explicit NSDate(NSCoder& coder);

    [[nodiscard]] static Ref<NSDate> date();
    [[nodiscard]] static Ref<NSDate> dateWithTimeIntervalSinceNow(NSTimeInterval seconds);
    [[nodiscard]] static Ref<NSDate> dateWithTimeIntervalSinceReferenceDate(NSTimeInterval seconds);
    [[nodiscard]] static Ref<NSDate> dateWithTimeIntervalSince1970(NSTimeInterval seconds);
    [[nodiscard]] static Ref<NSDate> distantPast();
    [[nodiscard]] static Ref<NSDate> distantFuture();

    /// The time of the process's clock, see Clock.
    [[nodiscard]] static NSTimeInterval currentTimeIntervalSinceReferenceDate();

    [[nodiscard]] NSTimeInterval timeIntervalSinceReferenceDate() const noexcept { return time_; }
    [[nodiscard]] NSTimeInterval timeIntervalSince1970() const noexcept { return time_ + NSTimeIntervalSince1970; }
    [[nodiscard]] NSTimeInterval timeIntervalSinceNow() const;
    [[nodiscard]] NSComparisonResult compare(const NSDate* d) const noexcept;
    [[nodiscard]] BOOL isEqualToDate(const NSDate* d) const noexcept { return d && time_ == d->time_; }

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    /// "2001-01-01 00:00:00 +0000".
    [[nodiscard]] Ref<NSString> description() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;

private:
    NSTimeInterval time_;
};

} // namespace libvue

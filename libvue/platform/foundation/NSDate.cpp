#include <libvue/platform/foundation/NSDate.h>

#include <cmath>
#include <functional>

#include <libvue/platform/foundation/Clock.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {
const ClassRegistration<NSDate> registration;

/// The year, month and day of a day counted from 1 January 1970, in the Gregorian calendar without end.
struct CivilDay {
    long long year;
    unsigned month, day;

    explicit CivilDay(long long days) noexcept {
        // Years begin in March here, so that the leap day is the last one; 719468 days lie between 1 March 0 and 1970.
        constexpr long long daysOfEra = 146097, daysToMarch0 = 719468;
        days += daysToMarch0;
        long long era = (days >= 0 ? days : days - (daysOfEra - 1)) / daysOfEra;
        auto inEra = static_cast<unsigned>(days - era * daysOfEra);
        unsigned yearOfEra = (inEra - inEra / 1460 + inEra / 36524 - inEra / 146096) / 365;
        unsigned inYear = inEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
        unsigned marchMonth = (5 * inYear + 2) / 153;
        day = inYear - (153 * marchMonth + 2) / 5 + 1;
        month = marchMonth < 10 ? marchMonth + 3 : marchMonth - 9;
        year = static_cast<long long>(yearOfEra) + era * 400 + (month <= 2);
    }
};

} // namespace

void NSDate::describe(ClassDescription<NSDate>& c) {
    c.answers<&NSDate::compare>("compare:");
    c.key<&NSDate::timeIntervalSinceReferenceDate>("timeIntervalSinceReferenceDate");
}

NSDate::NSDate() : time_(currentTimeIntervalSinceReferenceDate()) {}

NSDate::NSDate(NSCoder& coder)
    : time_(coder.allowsKeyedCoding() ? coder.decodeDoubleForKey(u"NS.time"_ns) : coder.decodeDouble()) {}

Ref<NSDate> NSDate::date() { return make<NSDate>(); }
Ref<NSDate> NSDate::dateWithTimeIntervalSinceNow(NSTimeInterval seconds) {
    return make<NSDate>(currentTimeIntervalSinceReferenceDate() + seconds);
}
Ref<NSDate> NSDate::dateWithTimeIntervalSinceReferenceDate(NSTimeInterval seconds) { return make<NSDate>(seconds); }
Ref<NSDate> NSDate::dateWithTimeIntervalSince1970(NSTimeInterval seconds) {
    return make<NSDate>(seconds - NSTimeIntervalSince1970);
}
Ref<NSDate> NSDate::distantPast() { return make<NSDate>(-63113904000.0); }  // 1 January of the year 1
Ref<NSDate> NSDate::distantFuture() { return make<NSDate>(63113904000.0); } // 1 January 4001

NSTimeInterval NSDate::currentTimeIntervalSinceReferenceDate() { return Clock::current().now(); }
NSTimeInterval NSDate::timeIntervalSinceNow() const { return time_ - currentTimeIntervalSinceReferenceDate(); }

NSComparisonResult NSDate::compare(const NSDate* d) const noexcept {
    NSTimeInterval other = d ? d->time_ : 0;
    return time_ < other ? NSOrderedAscending : time_ > other ? NSOrderedDescending : NSOrderedSame;
}

BOOL NSDate::isEqual(const NSObject* other) const {
    return this == other || isEqualToDate(dynamic_cast<const NSDate*>(other));
}
NSUInteger NSDate::hash() const { return std::hash<double>()(time_); }

Ref<NSString> NSDate::description() const {
    constexpr double secondsOfDay = 86400, farthest = 1e15;
    double since1970 = timeIntervalSince1970();
    if (!(std::fabs(since1970) < farthest)) return NSString::stringWithFormat(u"%g"_ns, time_);
    double days = std::floor(since1970 / secondsOfDay);
    int seconds = static_cast<int>(since1970 - days * secondsOfDay);
    CivilDay d(static_cast<long long>(days));
    return NSString::stringWithFormat(u"%04lld-%02u-%02u %02d:%02d:%02d +0000"_ns, d.year, d.month, d.day,
                                      seconds / 3600, seconds / 60 % 60, seconds % 60);
}

Ref<NSObject> NSDate::copyWithZone() const { return Ref<NSObject>(const_cast<NSDate*>(this)); }

void NSDate::encodeWithCoder(NSCoder& coder) const {
    if (coder.allowsKeyedCoding())
        coder.encodeDouble_forKey(time_, u"NS.time"_ns);
    else
        coder.encodeDouble(time_);
}

} // namespace libvue

#include <libvue/platform/foundation/NSAttributedString.h>

#include <algorithm>
#include <string>

#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/StringBuilder.h>

namespace libvue {

void NSAttributedString::describe(ClassDescription<NSAttributedString>&) {}

NSAttributedString::NSAttributedString() : text_(NSString::string()) {}

NSAttributedString::NSAttributedString(const NSString* s) : NSAttributedString(s, nullptr) {}

NSAttributedString::NSAttributedString(const NSString* s, const NSDictionary* attributes)
    : NSAttributedString(NSString::stringWithString(s), std::vector<Run>()) {
    if (text_->length()) runs_.push_back({0, frozen(attributes)});
}

NSAttributedString::NSAttributedString(const NSAttributedString* other) {
    if (!other) raiseNamed(NSInvalidArgumentException, "an attributed string is needed");
    text_ = NSString::stringWithString(other->text_);
    runs_ = other->runs_;
}

NSAttributedString::NSAttributedString(Ref<NSString> text, std::vector<Run> runs)
    : text_(std::move(text)), runs_(std::move(runs)) {}

NSAttributedString::~NSAttributedString() = default;

Ref<NSAttributedString> NSAttributedString::initWithString(const NSString* s) { return make<NSAttributedString>(s); }

Ref<NSAttributedString> NSAttributedString::initWithString_attributes(const NSString* s,
                                                                      const NSDictionary* attributes) {
    return make<NSAttributedString>(s, attributes);
}

Ref<NSAttributedString> NSAttributedString::initWithAttributedString(const NSAttributedString* other) {
    return make<NSAttributedString>(other);
}

Ref<NSDictionary> NSAttributedString::frozen(const NSDictionary* attributes) {
    static NSDictionary* const none = keptForever(NSDictionary::dictionary());
    if (!attributes || attributes->count() == 0) return none;
    return static_cast<NSDictionary*>(attributes->copyWithZone().get());
}

bool NSAttributedString::same(const NSDictionary* a, const NSDictionary* b) {
    return a == b || a->isEqualToDictionary(b);
}

void NSAttributedString::checkIndex(NSUInteger i) const {
    if (i >= length())
        raiseNamed(NSRangeException, "index " + std::to_string(i) + " is out of an attributed text of " +
                                         std::to_string(length()) + " units");
}

void NSAttributedString::checkRange(NSRange range) const {
    if (range.location > length() || range.length > length() - range.location)
        raiseNamed(NSRangeException, "range {" + std::to_string(range.location) + ", " + std::to_string(range.length) +
                                         "} is out of an attributed text of " + std::to_string(length()) + " units");
}

std::size_t NSAttributedString::runAt(NSUInteger i) const noexcept {
    const auto behind =
        std::upper_bound(runs_.begin(), runs_.end(), i, [](NSUInteger at, const Run& run) { return at < run.from; });
    return static_cast<std::size_t>(behind - runs_.begin()) - 1;
}

NSRange NSAttributedString::rangeOfRun(std::size_t run) const noexcept {
    const NSUInteger end = run + 1 < runs_.size() ? runs_[run + 1].from : length();
    return {runs_[run].from, end - runs_[run].from};
}

std::vector<NSAttributedString::Run> NSAttributedString::runsInRange(NSRange range) const {
    std::vector<Run> runs;
    if (range.length == 0) return runs;
    for (std::size_t r = runAt(range.location); r < runs_.size() && runs_[r].from < NSMaxRange(range); ++r)
        runs.push_back({std::max(runs_[r].from, range.location) - range.location, runs_[r].attributes});
    return runs;
}

NSDictionary* NSAttributedString::attributesAtIndex_effectiveRange(NSUInteger i, NSRange* range) const {
    checkIndex(i);
    const std::size_t run = runAt(i);
    if (range) *range = rangeOfRun(run);
    return runs_[run].attributes;
}

NSDictionary* NSAttributedString::attributesAtIndex_longestEffectiveRange_inRange(NSUInteger i, NSRange* range,
                                                                                  NSRange within) const {
    checkRange(within);
    // Neighbours are never equal, so a run is as long as it can be.
    NSDictionary* attributes = attributesAtIndex_effectiveRange(i, range);
    if (range) *range = NSIntersectionRange(*range, within);
    return attributes;
}

NSObject* NSAttributedString::attribute_atIndex_effectiveRange(const NSString* name, NSUInteger i,
                                                               NSRange* range) const {
    return attributesAtIndex_effectiveRange(i, range)->objectForKey(name);
}

NSObject* NSAttributedString::attribute_atIndex_longestEffectiveRange_inRange(const NSString* name, NSUInteger i,
                                                                              NSRange* range, NSRange within) const {
    checkIndex(i);
    checkRange(within);
    const std::size_t run = runAt(i);
    NSObject* value = runs_[run].attributes->objectForKey(name);
    if (!range) return value;
    const auto hasIt = [&](std::size_t r) { return libvue::isEqual(runs_[r].attributes->objectForKey(name), value); };
    std::size_t first = run, last = run;
    while (first > 0 && runs_[first].from > within.location && hasIt(first - 1))
        --first;
    while (last + 1 < runs_.size() && runs_[last + 1].from < NSMaxRange(within) && hasIt(last + 1))
        ++last;
    *range = NSIntersectionRange({runs_[first].from, NSMaxRange(rangeOfRun(last)) - runs_[first].from}, within);
    return value;
}

Ref<NSAttributedString> NSAttributedString::attributedSubstringFromRange(NSRange range) const {
    checkRange(range);
    (void)classOf<NSAttributedString>();
    return adopt(
        new NSAttributedString(NSString::stringWithString(text_->substringWithRange(range)), runsInRange(range)));
}

BOOL NSAttributedString::isEqualToAttributedString(const NSAttributedString* other) const {
    if (other == this) return YES;
    if (!other || runs_.size() != other->runs_.size() || !text_->isEqualToString(other->text_)) return NO;
    return std::equal(runs_.begin(), runs_.end(), other->runs_.begin(),
                      [](const Run& a, const Run& b) { return a.from == b.from && same(a.attributes, b.attributes); });
}

namespace {

/// Goes through a range in the steps that `valueAt(index, &run, within)` finds. Each step is looked up when it comes,
/// as the block may have changed it; what it took from the end is gone.
template <class ValueAt, class Block>
void enumerate(const NSAttributedString& s, NSRange range, NSUInteger options, ValueAt valueAt, const Block& block) {
    const Ref<const NSAttributedString> kept(&s);
    const bool reverse = options & NSAttributedStringEnumerationReverse;
    BOOL stop = NO;
    NSUInteger from = range.location, to = NSMaxRange(range);
    while (from < to && !stop) {
        NSRange run;
        const Ref value = valueAt(reverse ? to - 1 : from, &run, NSRange{from, to - from});
        block(value, run, &stop);
        if (reverse)
            to = run.location;
        else
            from = NSMaxRange(run);
        to = std::min(to, s.length());
    }
}

} // namespace

void NSAttributedString::enumerateAttributesInRange_options_usingBlock(NSRange range, NSUInteger options,
                                                                       const AttributesBlock& block) const {
    checkRange(range);
    enumerate(
        *this, range, options,
        [this](NSUInteger i, NSRange* run, NSRange within) {
            return attributesAtIndex_longestEffectiveRange_inRange(i, run, within);
        },
        block);
}

void NSAttributedString::enumerateAttribute_inRange_options_usingBlock(const NSString* name, NSRange range,
                                                                       NSUInteger options,
                                                                       const AttributeBlock& block) const {
    checkRange(range);
    enumerate(
        *this, range, options,
        [this, name](NSUInteger i, NSRange* run, NSRange within) {
            return attribute_atIndex_longestEffectiveRange_inRange(name, i, run, within);
        },
        block);
}

BOOL NSAttributedString::isEqual(const NSObject* other) const {
    return other == this || isEqualToAttributedString(dynamic_cast<const NSAttributedString*>(other));
}

NSUInteger NSAttributedString::hash() const { return text_->hash(); }

Ref<NSString> NSAttributedString::description() const {
    StringBuilder out;
    for (std::size_t r = 0; r < runs_.size(); ++r) {
        const NSRange range = rangeOfRun(r);
        out.append(text_, range.location, range.length);
        const Ref<NSString> attributes = runs_[r].attributes->description();
        out.append(attributes.get());
    }
    return out.build();
}

Ref<NSObject> NSAttributedString::copyWithZone() const { return const_cast<NSAttributedString*>(this); }
Ref<NSObject> NSAttributedString::mutableCopyWithZone() const { return make<NSMutableAttributedString>(this); }

} // namespace libvue

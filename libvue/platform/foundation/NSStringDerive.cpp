#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSCharacterSet.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/StringBuilder.h>
#include <libvue/platform/foundation/StringUnits.h>

namespace libvue {

Ref<NSString> NSString::substringFromIndex(NSUInteger from) const {
    if (from > length_) raiseOutOfRange(from);
    return substringWithRange({from, length_ - from});
}

Ref<NSString> NSString::substringToIndex(NSUInteger to) const {
    if (to > length_) raiseOutOfRange(to);
    return substringWithRange({0, to});
}

Ref<NSString> NSString::substringWithRange(NSRange range) const {
    checkRange(range);
    if (range.length == length_ && !mutable_) return const_cast<NSString*>(this);
    if (wide_) return from({units16() + range.location, range.length});
    return fromLatin1({reinterpret_cast<const char*>(units8()) + range.location, range.length});
}

Ref<NSString> NSString::stringByAppendingString(const NSString* s) const {
    if (!s) raiseNamed(NSInvalidArgumentException, "stringByAppendingString: a text is needed");
    return stringByReplacingCharactersInRange_withString({length_, 0}, s);
}

Ref<NSString> NSString::stringByReplacingCharactersInRange_withString(NSRange range, const NSString* by) const {
    checkRange(range);
    if (!by) raiseNamed(NSInvalidArgumentException, "stringByReplacingCharactersInRange: a text is needed");
    StringBuilder out(length_ - range.length + by->length());
    out.append(this, 0, range.location);
    out.append(by);
    out.append(this, NSMaxRange(range), length_ - NSMaxRange(range));
    return out.build();
}

Ref<NSString> NSString::replacing(const NSString* s, const NSString* by, NSUInteger options, NSRange range,
                                  NSUInteger& count) const {
    checkRange(range);
    if (!s || !by) raiseNamed(NSInvalidArgumentException, "replacing occurrences: texts are needed");
    count = 0;
    std::vector<NSRange> places;
    const bool backwards = options & NSBackwardsSearch, anchored = options & NSAnchoredSearch;
    NSRange rest = range;
    for (;;) {
        const NSRange at = rangeOfString_options_range(s, options, rest);
        if (at.location == static_cast<NSUInteger>(NSNotFound)) break;
        places.push_back(at);
        if (anchored) break;
        if (backwards)
            rest.length = at.location - rest.location;
        else
            rest = {NSMaxRange(at), NSMaxRange(range) - NSMaxRange(at)};
    }
    count = places.size();
    if (places.empty()) return immutable();
    if (backwards) std::reverse(places.begin(), places.end());
    // Said before any memory is asked for: many places for a long text make more than there is.
    const NSUInteger most = length_ + places.size() * by->length();
    if (most > 2 * NSUInteger{std::numeric_limits<std::uint32_t>::max()})
        raiseNamed(NSInvalidArgumentException, "replacing occurrences: the text would be too long");
    StringBuilder out(most);
    NSUInteger done = 0;
    for (const NSRange& at : places) {
        out.append(this, done, at.location - done);
        out.append(by);
        done = NSMaxRange(at);
    }
    out.append(this, done, length_ - done);
    return out.build();
}

Ref<NSString> NSString::stringByReplacingOccurrencesOfString_withString(const NSString* s, const NSString* by) const {
    return stringByReplacingOccurrencesOfString_withString_options_range(s, by, 0, {0, length_});
}

Ref<NSString> NSString::stringByReplacingOccurrencesOfString_withString_options_range(const NSString* s,
                                                                                      const NSString* by,
                                                                                      NSUInteger options,
                                                                                      NSRange range) const {
    NSUInteger count;
    return replacing(s, by, options, range, count);
}

Ref<NSString> NSString::stringByTrimmingCharactersInSet(const NSCharacterSet* set) const {
    if (!set) raiseNamed(NSInvalidArgumentException, "stringByTrimmingCharactersInSet: a set is needed");
    NSUInteger from = 0, to = length_;
    while (from < to) {
        const bool pair =
            from + 1 < to && detail::isHighSurrogate(unit(from)) && detail::isLowSurrogate(unit(from + 1));
        const char32_t c = pair ? detail::codePoint(unit(from), unit(from + 1)) : unit(from);
        if (!set->longCharacterIsMember(c)) break;
        from += pair ? 2 : 1;
    }
    while (to > from) {
        const bool pair =
            to - from >= 2 && detail::isHighSurrogate(unit(to - 2)) && detail::isLowSurrogate(unit(to - 1));
        const char32_t c = pair ? detail::codePoint(unit(to - 2), unit(to - 1)) : unit(to - 1);
        if (!set->longCharacterIsMember(c)) break;
        to -= pair ? 2 : 1;
    }
    return substringWithRange({from, to - from});
}

Ref<NSString> NSString::stringByPaddingToLength_withString_startingAtIndex(NSUInteger length, const NSString* pad,
                                                                           NSUInteger index) const {
    if (length <= length_) return substringToIndex(length);
    if (!pad || pad->length() == 0)
        raiseNamed(NSInvalidArgumentException, "padding: a text that is not empty is needed");
    if (index >= pad->length()) pad->raiseOutOfRange(index);
    // Said before any memory is asked for: a length that wrapped around is a usual mistake.
    if (length > std::numeric_limits<std::uint32_t>::max() - 1)
        raiseNamed(NSRangeException, "padding: no text has " + std::to_string(length) + " units");
    StringBuilder out(length);
    out.append(this);
    while (out.length() < length) {
        out.append(pad->unit(index));
        if (++index == pad->length()) index = 0;
    }
    return out.build();
}

Ref<NSArray> NSString::componentsSeparatedByString(const NSString* separator) const {
    std::vector<Ref<NSString>> parts;
    NSRange rest{0, length_};
    // Separators are matched unit by unit: a split never hangs on what marks follow.
    while (separator && separator->length()) {
        const NSRange at = rangeOfString_options_range(separator, NSLiteralSearch, rest);
        if (at.location == static_cast<NSUInteger>(NSNotFound)) break;
        parts.push_back(substringWithRange({rest.location, at.location - rest.location}));
        rest = {NSMaxRange(at), length_ - NSMaxRange(at)};
    }
    parts.push_back(substringWithRange(rest));
    return NSArray::arrayWithRefs(parts);
}

Ref<NSArray> NSString::componentsSeparatedByCharactersInSet(const NSCharacterSet* set) const {
    std::vector<Ref<NSString>> parts;
    NSRange rest{0, length_};
    while (set) {
        const NSRange at = rangeOfCharacterFromSet_options_range(set, 0, rest);
        if (at.location == static_cast<NSUInteger>(NSNotFound)) break;
        parts.push_back(substringWithRange({rest.location, at.location - rest.location}));
        rest = {NSMaxRange(at), length_ - NSMaxRange(at)};
    }
    parts.push_back(substringWithRange(rest));
    return NSArray::arrayWithRefs(parts);
}

} // namespace libvue

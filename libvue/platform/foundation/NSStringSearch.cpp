#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include <unicode/ubrk.h>

#include <libvue/platform/foundation/NSCharacterSet.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/StringFolding.h>
#include <libvue/platform/foundation/StringUnits.h>

namespace libvue {

namespace {

constexpr NSRange notFound{static_cast<NSUInteger>(NSNotFound), 0};
constexpr std::size_t none = static_cast<std::size_t>(-1);

/// What a search is to do, besides how it sees units.
struct Way {
    explicit Way(NSUInteger options) : backwards(options & NSBackwardsSearch), anchored(options & NSAnchoredSearch) {}
    bool backwards, anchored;
};

/// The first (or last, or anchored) place at which `fits(place)` holds among those where `count` units stand within
/// `all`.
template <class Fits> std::size_t place(std::size_t all, std::size_t count, Way way, Fits fits) {
    if (count > all) return none;
    const std::size_t last = all - count;
    if (way.anchored) {
        const std::size_t at = way.backwards ? last : 0;
        return fits(at) ? at : none;
    }
    if (way.backwards) {
        for (std::size_t i = last + 1; i-- > 0;)
            if (fits(i)) return i;
        return none;
    }
    for (std::size_t i = 0; i <= last; ++i)
        if (fits(i)) return i;
    return none;
}

std::size_t findUnits(const std::uint8_t* in, std::size_t all, const std::uint8_t* what, std::size_t count, Way way) {
    if (!way.backwards && !way.anchored) {
        const void* at = count == 1 ? std::memchr(in, *what, all) : ::memmem(in, all, what, count);
        return at ? static_cast<std::size_t>(static_cast<const std::uint8_t*>(at) - in) : none;
    }
    return place(all, count, way, [&](std::size_t i) { return in[i] == what[0] && !std::memcmp(in + i, what, count); });
}

std::size_t findUnits(const unichar* in, std::size_t all, const unichar* what, std::size_t count, Way way) {
    const std::u16string_view text(in, all), part(what, count);
    if (way.anchored) return place(all, count, way, [&](std::size_t i) { return text.substr(i, count) == part; });
    const std::size_t at = way.backwards ? text.rfind(part) : text.find(part);
    return at == std::u16string_view::npos ? none : at;
}

NSRange found(std::size_t at, NSRange range, std::size_t count) {
    return at == none ? notFound : NSRange{range.location + at, count};
}

/// Unit by unit. The part is brought to the storage of the text that it is looked for in.
NSRange findLiterally(const NSString& text, NSRange range, const NSString& part, Way way) {
    const std::size_t count = part.length();
    if (const unichar* wide = text._fastCharacterContents()) {
        const detail::WideUnits what(part);
        return found(findUnits(wide + range.location, range.length, what.data(), count, way), range, count);
    }
    const std::uint8_t* narrow = text.latin1Contents() + range.location;
    if (const std::uint8_t* what = part.latin1Contents())
        return found(findUnits(narrow, range.length, what, count, way), range, count);
    const unichar* wide = part._fastCharacterContents();
    if (!detail::fitsLatin1(wide, count)) return notFound;
    std::string what(count, '\0');
    detail::narrowUnits(wide, count, reinterpret_cast<std::uint8_t*>(what.data()));
    return found(findUnits(narrow, range.length, reinterpret_cast<const std::uint8_t*>(what.data()), count, way), range,
                 count);
}

/// Two 8-bit texts without regard to case.
NSRange findLatin1WithoutCase(const NSString& text, NSRange range, const NSString& part, Way way) {
    const std::uint8_t* in = text.latin1Contents() + range.location;
    const std::size_t count = part.length();
    std::string what(count, '\0');
    std::transform(part.latin1Contents(), part.latin1Contents() + count, what.begin(),
                   [](std::uint8_t c) { return static_cast<char>(detail::foldLatin1(c)); });
    const auto* folded = reinterpret_cast<const std::uint8_t*>(what.data());
    const std::size_t at = place(range.length, count, way, [&](std::size_t i) {
        std::size_t k = 0;
        while (k < count && detail::foldLatin1(in[i + k]) == folded[k])
            ++k;
        return k == count;
    });
    return found(at, range, count);
}

NSRange findFolded(const NSString& text, NSRange range, const NSString& part, NSUInteger options) {
    const detail::FoldedText what(part, {0, part.length()}, options);
    if (what.units.empty()) return notFound;
    const detail::FoldedText in(text, range, options);
    const std::u16string_view units(in.units);
    const std::size_t count = what.units.size();
    const Way way(options);
    if (count > units.size()) return notFound;
    const auto whole = [&](std::size_t at) {
        return in.origins[at] != detail::FoldedText::inside && in.origins[at + count] != detail::FoldedText::inside;
    };
    const auto answer = [&](std::size_t at) {
        return NSRange{in.origins[at], in.origins[at + count] - in.origins[at]};
    };
    if (way.anchored) {
        const std::size_t at = way.backwards ? units.size() - count : 0;
        return units.substr(at, count) == what.units && whole(at) ? answer(at) : notFound;
    }
    if (way.backwards) {
        for (std::size_t at = units.rfind(what.units); at != units.npos;
             at = at ? units.rfind(what.units, at - 1) : units.npos)
            if (whole(at)) return answer(at);
    } else {
        for (std::size_t at = units.find(what.units); at != units.npos; at = units.find(what.units, at + 1))
            if (whole(at)) return answer(at);
    }
    return notFound;
}

bool holdsSharpS(const NSString& s, NSRange range) {
    return std::memchr(s.latin1Contents() + range.location, 0xDF, range.length) != nullptr;
}

bool inert(const NSString& s, NSRange range) {
    return detail::visitUnits(s, range,
                              [](const auto* units, std::size_t count) { return detail::areInert(units, count); });
}

/// Whether the text begins or ends with half a pair, which would be found within whole ones.
bool endsInHalves(const NSString& s) {
    return detail::isLowSurrogate(s.unit(0)) || detail::isHighSurrogate(s.unit(s.length() - 1));
}

} // namespace

NSRange NSString::rangeOfString_options(const NSString* s, NSUInteger options) const {
    return rangeOfString_options_range(s, options, {0, length_});
}

NSRange NSString::rangeOfString_options_range(const NSString* s, NSUInteger options, NSRange range) const {
    if (!s) raiseNamed(NSInvalidArgumentException, "rangeOfString: a text is needed");
    checkRange(range);
    if (s->length() == 0 || range.length == 0) return notFound;
    const bool folds = options & detail::foldingOptions;
    const NSRange whole{0, s->length()};
    if (!folds) {
        if ((options & NSLiteralSearch) || (inert(*this, range) && inert(*s, whole) && !endsInHalves(*s)))
            return findLiterally(*this, range, *s, Way(options));
    } else if ((options & detail::foldingOptions) == NSCaseInsensitiveSearch && latin1Contents() &&
               s->latin1Contents()) {
        // Only the sharp s has a longer counterpart, and only without NSLiteralSearch.
        if ((options & NSLiteralSearch) || (!holdsSharpS(*this, range) && !holdsSharpS(*s, whole)))
            return findLatin1WithoutCase(*this, range, *s, Way(options));
    }
    return findFolded(*this, range, *s, options);
}

NSRange NSString::rangeOfCharacterFromSet(const NSCharacterSet* set) const {
    return rangeOfCharacterFromSet_options_range(set, 0, {0, length_});
}

NSRange NSString::rangeOfCharacterFromSet_options(const NSCharacterSet* set, NSUInteger options) const {
    return rangeOfCharacterFromSet_options_range(set, options, {0, length_});
}

NSRange NSString::rangeOfCharacterFromSet_options_range(const NSCharacterSet* set, NSUInteger options,
                                                        NSRange range) const {
    if (!set) raiseNamed(NSInvalidArgumentException, "rangeOfCharacterFromSet: a set is needed");
    checkRange(range);
    const Way way(options);
    const NSUInteger end = NSMaxRange(range);
    const auto atPair = [&](NSUInteger i) {
        return wide_ && i + 1 < end && detail::isHighSurrogate(unit(i)) && detail::isLowSurrogate(unit(i + 1));
    };
    if (way.backwards) {
        for (NSUInteger i = end; i > range.location;) {
            const bool pair = i - range.location >= 2 && atPair(i - 2);
            const char32_t c = pair ? detail::codePoint(unit(i - 2), unit(i - 1)) : unit(i - 1);
            const NSUInteger count = pair ? 2 : 1;
            if (set->longCharacterIsMember(c)) return {i - count, count};
            if (way.anchored) break;
            i -= count;
        }
        return notFound;
    }
    for (NSUInteger i = range.location; i < end;) {
        const bool pair = atPair(i);
        const NSUInteger count = pair ? 2 : 1;
        if (pair ? set->longCharacterIsMember(detail::codePoint(unit(i), unit(i + 1)))
                 : set->characterIsMember(unit(i)))
            return {i, count};
        if (way.anchored) break;
        i += count;
    }
    return notFound;
}

NSRange NSString::rangeOfComposedCharacterSequenceAtIndex(NSUInteger i) const {
    if (i >= length_) raiseOutOfRange(i);
    // Below U+0300 only CR and LF make one character of two units.
    const auto plain = [this](NSUInteger k) { return k >= length_ || unit(k) < 0x300; };
    if (plain(i) && plain(i + 1) && (i == 0 || plain(i - 1))) {
        if (unit(i) == '\r' && i + 1 < length_ && unit(i + 1) == '\n') return {i, 2};
        if (unit(i) == '\n' && i > 0 && unit(i - 1) == '\r') return {i - 1, 2};
        return {i, 1};
    }
    UErrorCode status = U_ZERO_ERROR;
    static UBreakIterator* const characters = ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status);
    if (!characters) return {i, 1};
    status = U_ZERO_ERROR;
    ubrk_setText(characters, units16(), static_cast<std::int32_t>(length_), &status);
    if (U_FAILURE(status)) return {i, 1};
    const std::int32_t end = ubrk_following(characters, static_cast<std::int32_t>(i));
    const std::int32_t start = ubrk_previous(characters);
    const NSUInteger from = start == UBRK_DONE ? 0 : static_cast<NSUInteger>(start);
    return {from, (end == UBRK_DONE ? length_ : static_cast<NSUInteger>(end)) - from};
}

} // namespace libvue

#include <algorithm>
#include <cstring>
#include <string_view>

#include <unicode/ucol.h>
#include <unicode/uloc.h>

#include <libvue/platform/foundation/AsciiDigits.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/StringFolding.h>
#include <libvue/platform/foundation/StringUnits.h>
#include <libvue/platform/foundation/TextSort.h>

namespace libvue {

namespace {

template <class A, class B> NSComparisonResult order(A a, B b) noexcept {
    return a < b ? NSOrderedAscending : b < a ? NSOrderedDescending : NSOrderedSame;
}

using detail::isDigit;

/// Runs of digits by their value, everything else unit by unit.
NSComparisonResult compareNumerically(std::u16string_view a, std::u16string_view b) noexcept {
    std::size_t i = 0, k = 0;
    while (i < a.size() && k < b.size()) {
        if (!isDigit(a[i]) || !isDigit(b[k])) {
            if (a[i] != b[k]) return order(a[i], b[k]);
            ++i;
            ++k;
            continue;
        }
        while (i < a.size() && a[i] == '0')
            ++i;
        while (k < b.size() && b[k] == '0')
            ++k;
        const std::size_t fromA = i, fromB = k;
        while (i < a.size() && isDigit(a[i]))
            ++i;
        while (k < b.size() && isDigit(b[k]))
            ++k;
        if (i - fromA != k - fromB) return order(i - fromA, k - fromB);
        const int difference = a.substr(fromA, i - fromA).compare(b.substr(fromB, k - fromB));
        if (difference) return order(difference, 0);
    }
    return order(a.size() - i, b.size() - k);
}

template <class A, class B>
NSComparisonResult compareLiterally(const A* a, std::size_t countA, const B* b, std::size_t countB) noexcept {
    const std::size_t common = std::min(countA, countB);
    if constexpr (sizeof(A) == 1 && sizeof(B) == 1) {
        const int difference = common ? std::memcmp(a, b, common) : 0;
        if (difference) return order(difference, 0);
    } else {
        for (std::size_t i = 0; i < common; ++i)
            if (a[i] != b[i]) return order(static_cast<unichar>(a[i]), static_cast<unichar>(b[i]));
    }
    return order(countA, countB);
}

/// The answer where it does not hang on marks or decompositions: the first difference lies between two ASCII units, or
/// one text ends before an unmarked unit of the other. Else false, and from `differs` on the texts must be folded.
template <class A, class B>
bool compareSimply(const A* a, std::size_t countA, const B* b, std::size_t countB, bool fold, std::size_t& differs,
                   NSComparisonResult& result) noexcept {
    const std::size_t common = std::min(countA, countB);
    std::size_t i = 0;
    for (; i < common; ++i) {
        if (a[i] == b[i]) continue;
        if (a[i] >= 0x80 || b[i] >= 0x80) break;
        const auto x = static_cast<std::uint8_t>(a[i]), y = static_cast<std::uint8_t>(b[i]);
        const std::uint8_t seenX = fold ? detail::foldLatin1(x) : x, seenY = fold ? detail::foldLatin1(y) : y;
        if (seenX == seenY) continue;
        result = order(seenX, seenY);
        return true;
    }
    if (i == common && (countA == common || a[common] < 0x300) && (countB == common || b[common] < 0x300)) {
        result = order(countA, countB);
        return true;
    }
    // Back to where a character begins in both: what stands before is equal, and no mark reaches over.
    const auto begins = [](const auto* units, std::size_t count, std::size_t at) {
        return at == count || units[at] < 0x300;
    };
    while (i > 0 && !(begins(a, countA, i) && begins(b, countB, i)))
        --i;
    differs = i;
    return false;
}

/// An ICU collator, or null where ICU has none.
UCollator* openCollator(UCollationStrength strength) {
    UErrorCode status = U_ZERO_ERROR;
    const char* locale = uloc_getDefault();
    // The "C" locale is no language: its users get the order that is common to all.
    if (std::strstr(locale, "POSIX")) locale = "";
    UCollator* collator = ucol_open(locale, &status);
    if (U_FAILURE(status)) return nullptr;
    ucol_setStrength(collator, strength);
    ucol_setAttribute(collator, UCOL_NORMALIZATION_MODE, UCOL_ON, &status);
    return collator;
}

NSComparisonResult collate(const UCollator* collator, const NSString& a, const NSString& b) {
    const detail::WideUnits x(a), y(b);
    return order(static_cast<int>(ucol_strcoll(collator, x.data(), static_cast<std::int32_t>(x.size()), y.data(),
                                               static_cast<std::int32_t>(y.size()))),
                 0);
}

NSString::Comparison installedComparison = nullptr;

/// What a null argument compares as.
const NSString* orEmpty(const NSString* s, Ref<NSString>& room) {
    if (s) return s;
    room = NSString::string();
    return room;
}

} // namespace

NSComparisonResult NSString::compare_options(const NSString* s, NSUInteger options) const {
    return compare_options_range(s, options, {0, length_});
}

NSComparisonResult NSString::compare_options_range(const NSString* s, NSUInteger options, NSRange range) const {
    checkRange(range);
    Ref<NSString> room;
    s = orEmpty(s, room);
    const NSRange whole{0, s->length()};
    const auto literally = [&] {
        return detail::visitUnits(*this, range, [&](const auto* a, std::size_t countA) {
            return detail::visitUnits(
                *s, [&](const auto* b, std::size_t countB) { return compareLiterally(a, countA, b, countB); });
        });
    };
    const NSUInteger folds = options & detail::foldingOptions;
    NSComparisonResult result = NSOrderedSame;
    if ((options & NSNumericSearch) || (folds & ~NSUInteger{NSCaseInsensitiveSearch}) ||
        (folds && (options & NSLiteralSearch))) {
        const detail::FoldedText a(*this, range, options), b(*s, whole, options);
        result = options & NSNumericSearch ? compareNumerically(a.units, b.units) : order(a.units.compare(b.units), 0);
    } else if (options & NSLiteralSearch)
        return literally();
    else {
        std::size_t differs = 0;
        const bool simple = detail::visitUnits(*this, range, [&](const auto* a, std::size_t countA) {
            return detail::visitUnits(*s, [&](const auto* b, std::size_t countB) {
                return compareSimply(a, countA, b, countB, folds != 0, differs, result);
            });
        });
        if (!simple) {
            const detail::FoldedText a(*this, {range.location + differs, range.length - differs}, options);
            const detail::FoldedText b(*s, {differs, whole.length - differs}, options);
            result = order(a.units.compare(b.units), 0);
        }
    }
    return result == NSOrderedSame && (options & NSForcedOrderingSearch) ? literally() : result;
}

NSComparisonResult NSString::caseInsensitiveCompare(const NSString* s) const {
    return compare_options(s, NSCaseInsensitiveSearch);
}

NSComparisonResult NSString::localizedCompare(const NSString* s) const {
    Ref<NSString> room;
    s = orEmpty(s, room);
    if (isEqualToString(s)) return NSOrderedSame;
    static UCollator* const collator = openCollator(UCOL_TERTIARY);
    return collator ? collate(collator, *this, *s) : compare(s);
}

NSComparisonResult NSString::localizedCaseInsensitiveCompare(const NSString* s) const {
    if (installedComparison && s) return installedComparison(this, s);
    Ref<NSString> room;
    s = orEmpty(s, room);
    if (installedComparison) return installedComparison(this, s);
    if (isEqualToString(s)) return NSOrderedSame;
    static UCollator* const collator = openCollator(UCOL_SECONDARY);
    return collator ? collate(collator, *this, *s) : caseInsensitiveCompare(s);
}

void NSString::installLocalizedCaseInsensitiveCompare(Comparison comparison) noexcept {
    installedComparison = comparison;
}

NSString::Comparison detail::installedTextComparison() noexcept { return installedComparison; }

} // namespace libvue

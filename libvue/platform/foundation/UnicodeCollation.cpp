#include <libvue/platform/foundation/UnicodeCollation.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <set>
#include <string>

#include <unicode/ucol.h>
#include <unicode/ucoleitr.h>
#include <unicode/uset.h>

#include <libvue/platform/foundation/CollationWeights.h>
#include <libvue/platform/foundation/StringUnits.h>

namespace libvue {

struct OpaqueLocaleRef {
    std::string name;
};

namespace {

struct CloseCollator {
    void operator()(UCollator* c) const { ucol_close(c); }
};
struct CloseElements {
    void operator()(UCollationElements* e) const { ucol_closeElements(e); }
};
struct CloseSet {
    void operator()(USet* s) const { uset_close(s); }
};

using Weight = detail::CollationWeights::Weight;

/// What the collator makes of one unit that stands alone.
std::vector<Weight> weights(UCollationElements* elements, unichar unit, UErrorCode& status) {
    std::vector<Weight> out;
    ucol_setText(elements, &unit, 1, &status);
    while (U_SUCCESS(status)) {
        const std::int32_t order = ucol_next(elements, &status);
        if (order == UCOL_NULLORDER) break;
        const auto bits = static_cast<std::uint32_t>(order);
        // Long weights come in two halves, and the second has these bits.
        constexpr std::uint32_t continued = 0xC0;
        if ((bits & continued) == continued && !out.empty()) {
            out.back().primary |= bits >> 16;
            out.back().secondary |= bits >> 8 & 0xFF;
        } else
            out.push_back({bits & 0xFFFF0000u, bits & 0xFF00u});
    }
    return out;
}

/// The units that are not weighed alone where another one stands before them. No other unit makes the difference
/// as long as both are covered.
bool joiningUnits(const UCollator* collator, std::set<unichar>& out) {
    const std::unique_ptr<USet, CloseSet> contractions(uset_openEmpty());
    UErrorCode status = U_ZERO_ERROR;
    ucol_getContractionsAndExpansions(collator, contractions.get(), nullptr, true, &status);
    for (std::int32_t i = 0, n = uset_getItemCount(contractions.get()); i < n && U_SUCCESS(status); ++i) {
        unichar units[64];
        UChar32 first = 0, last = 0;
        const std::int32_t length = uset_getItem(contractions.get(), i, &first, &last, units, 64, &status);
        if (length >= 2 && detail::CollationWeights::covers(units[0])) out.insert(units[1]);
    }
    return U_SUCCESS(status);
}

int collate(const UCollator* collator, const unichar* a, std::size_t countA, const unichar* b, std::size_t countB) {
    return ucol_strcoll(collator, a, static_cast<std::int32_t>(countA), b, static_cast<std::int32_t>(countB));
}

/// Whether weights and collator agree on every known unit beside the next ones of the order.
bool agree(const detail::CollationWeights& weights, const UCollator* collator, std::vector<unichar> units) {
    const auto order = [&](unichar a, unichar b) {
        int o = 0;
        (void)weights.compare(&a, 1, &b, 1, o);
        return o;
    };
    std::sort(units.begin(), units.end(), [&](unichar a, unichar b) { return order(a, b) < 0; });
    for (std::size_t i = 0; i + 1 < units.size(); ++i)
        if (order(units[i], units[i + 1]) != collate(collator, &units[i], 1, &units[i + 1], 1)) return false;
    return true;
}

/// The weights of a collator that compares letters and then, from behind, accents; null for any other.
std::unique_ptr<detail::CollationWeights> makeWeights(const UCollator* collator) {
    UErrorCode status = U_ZERO_ERROR;
    if (ucol_getStrength(collator) != UCOL_SECONDARY ||
        ucol_getAttribute(collator, UCOL_FRENCH_COLLATION, &status) != UCOL_ON ||
        ucol_getAttribute(collator, UCOL_ALTERNATE_HANDLING, &status) != UCOL_NON_IGNORABLE ||
        ucol_getAttribute(collator, UCOL_CASE_LEVEL, &status) != UCOL_OFF ||
        ucol_getAttribute(collator, UCOL_NUMERIC_COLLATION, &status) != UCOL_OFF)
        return nullptr;
    std::set<unichar> joining;
    if (!joiningUnits(collator, joining)) return nullptr;
    const std::unique_ptr<UCollationElements, CloseElements> elements(ucol_openElements(collator, u"", 0, &status));
    std::vector<detail::CollationWeights::Character> characters;
    for (unsigned u = 0; u < 0x10000 && U_SUCCESS(status); ++u) {
        const auto unit = static_cast<unichar>(u);
        if (detail::CollationWeights::covers(unit) && !joining.contains(unit))
            characters.push_back({unit, weights(elements.get(), unit, status)});
    }
    auto made = std::make_unique<detail::CollationWeights>();
    if (U_FAILURE(status) || !made->fill(characters)) return nullptr;
    std::vector<unichar> known;
    for (const auto& c : characters)
        if (made->knows(c.unit)) known.push_back(c.unit);
    return agree(*made, collator, known) ? std::move(made) : nullptr;
}

} // namespace

/// Making the weights takes as long as some ten thousands of ICU's comparisons, so they are made once there have been
/// that many.
struct OpaqueCollatorRef {
    std::unique_ptr<UCollator, CloseCollator> icu;
    std::unique_ptr<detail::CollationWeights> weights; // null: ICU is asked
    std::uint64_t comparisons = 0;                     // that ICU was asked for, until the weights are made or given up

    void expect(std::uint64_t more) {
        constexpr std::uint64_t enough = 100000;
        if (comparisons >= enough) return;
        comparisons += more;
        if (comparisons >= enough) weights = makeWeights(icu.get());
    }
};

OSStatus LocaleRefFromLocaleString(const char* name, LocaleRef* locale) {
    if (!name || !locale) return paramErr;
    struct Before {
        bool operator()(const OpaqueLocaleRef& a, const OpaqueLocaleRef& b) const { return a.name < b.name; }
    };
    static auto& known = *new std::set<OpaqueLocaleRef, Before>;
    *locale = &*known.insert({name}).first;
    return noErr;
}

OSStatus UCCreateCollator(LocaleRef locale, LocaleOperationVariant variant, UCCollateOptions options,
                          CollatorRef* collator) {
    if (!collator) return paramErr;
    *collator = nullptr;
    if (!locale || variant) return paramErr;
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<UCollator, CloseCollator> icu(ucol_open(locale->name.c_str(), &status));
    if (U_FAILURE(status)) return status == U_MEMORY_ALLOCATION_ERROR ? memFullErr : paramErr;
    const bool anyCase = options & (kUCCollateCaseInsensitiveMask | kUCCollateWidthInsensitiveMask);
    ucol_setStrength(icu.get(), options & kUCCollateDiacritInsensitiveMask ? UCOL_PRIMARY
                                : anyCase                                  ? UCOL_SECONDARY
                                                                           : UCOL_TERTIARY);
    if (anyCase == false && (options & kUCCollateDiacritInsensitiveMask))
        ucol_setAttribute(icu.get(), UCOL_CASE_LEVEL, UCOL_ON, &status);
    if (options & kUCCollateComposeInsensitiveMask)
        ucol_setAttribute(icu.get(), UCOL_NORMALIZATION_MODE, UCOL_ON, &status);
    if (U_FAILURE(status)) return paramErr;
    *collator = new OpaqueCollatorRef{std::move(icu), nullptr};
    return noErr;
}

OSStatus UCDisposeCollator(CollatorRef* collator) {
    if (!collator || !*collator) return paramErr;
    delete *collator;
    *collator = nullptr;
    return noErr;
}

OSStatus UCCompareText(CollatorRef collator, const UniChar* text1, UniCharCount length1, const UniChar* text2,
                       UniCharCount length2, Boolean* equivalent, SInt32* order) {
    constexpr UniCharCount longest = std::numeric_limits<std::int32_t>::max();
    if (!collator || length1 > longest || length2 > longest || (length1 && !text1) || (length2 && !text2))
        return paramErr;
    int result = 0;
    if (!length1) text1 = u"";
    if (!length2) text2 = u"";
    if (!collator->weights) collator->expect(1);
    if (!collator->weights || !collator->weights->compare(text1, length1, text2, length2, result))
        result = collate(collator->icu.get(), text1, length1, text2, length2);
    if (equivalent) *equivalent = result == 0;
    if (order) *order = result;
    return noErr;
}

SInt32 compareTexts(CollatorRef collator, const NSString& a, const NSString& b) {
    if (!collator || &a == &b) return 0;
    int order = 0;
    if (const auto* weights = collator->weights.get()) {
        const bool known = detail::visitUnits(a, [&](const auto* x, std::size_t countX) {
            return detail::visitUnits(
                b, [&](const auto* y, std::size_t countY) { return weights->compare(x, countX, y, countY, order); });
        });
        if (known) return order;
    }
    collator->expect(1);
    const detail::WideUnits x(a), y(b);
    SInt32 result = 0;
    if (x.size() <= std::numeric_limits<std::int32_t>::max() && y.size() <= std::numeric_limits<std::int32_t>::max())
        result = collate(collator->icu.get(), x.data(), x.size(), y.data(), y.size());
    return result;
}

const detail::CollationWeights* detail::weightsFor(CollatorRef collator, std::uint64_t comparisons) {
    if (!collator) return nullptr;
    collator->expect(comparisons);
    return collator->weights.get();
}

} // namespace libvue

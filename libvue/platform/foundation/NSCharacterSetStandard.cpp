#include <initializer_list>
#include <vector>

#include <unicode/uchar.h>
#include <unicode/uset.h>

#include <libvue/platform/foundation/NSCharacterSet.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// Makes the standard sets from the character properties.
class StandardSets {
public:
    using Turns = std::vector<std::uint32_t>;

    /// The code points of the general categories of the mask, and the others.
    static NSCharacterSet* ofCategories(std::uint32_t mask, std::initializer_list<std::uint32_t> others = {}) {
        USet* set = uset_openEmpty();
        UErrorCode status = U_ZERO_ERROR;
        uset_applyIntPropertyValue(set, UCHAR_GENERAL_CATEGORY_MASK, static_cast<std::int32_t>(mask), &status);
        for (const std::uint32_t c : others)
            uset_add(set, static_cast<UChar32>(c));
        return keep(set);
    }
    static NSCharacterSet* ofPoints(std::initializer_list<std::uint32_t> points) {
        USet* set = uset_openEmpty();
        for (const std::uint32_t c : points)
            uset_add(set, static_cast<UChar32>(c));
        return keep(set);
    }
    static NSCharacterSet* ofProperty(UProperty property, std::int32_t value) {
        USet* set = uset_openEmpty();
        UErrorCode status = U_ZERO_ERROR;
        uset_applyIntPropertyValue(set, property, value, &status);
        return keep(set);
    }

private:
    /// The set is the process's for good.
    static NSCharacterSet* keep(USet* set) {
        Turns turns;
        const std::int32_t ranges = uset_getItemCount(set);
        for (std::int32_t i = 0; i < ranges; ++i) {
            UChar32 from, to;
            UErrorCode status = U_ZERO_ERROR;
            if (uset_getItem(set, i, &from, &to, nullptr, 0, &status) != 0) continue;
            turns.push_back(static_cast<std::uint32_t>(from));
            turns.push_back(static_cast<std::uint32_t>(to) + 1);
        }
        uset_close(set);
        return keptForever(NSCharacterSet::ofTurns(std::move(turns)));
    }
};

namespace {

constexpr std::uint32_t marks = U_GC_M_MASK;

} // namespace

NSCharacterSet* NSCharacterSet::alphanumericCharacterSet() {
    static NSCharacterSet* const set = StandardSets::ofCategories(U_GC_L_MASK | marks | U_GC_N_MASK);
    return set;
}
NSCharacterSet* NSCharacterSet::letterCharacterSet() {
    static NSCharacterSet* const set = StandardSets::ofCategories(U_GC_L_MASK | marks);
    return set;
}
NSCharacterSet* NSCharacterSet::decimalDigitCharacterSet() {
    static NSCharacterSet* const set = StandardSets::ofCategories(U_GC_ND_MASK);
    return set;
}
NSCharacterSet* NSCharacterSet::whitespaceCharacterSet() {
    static NSCharacterSet* const set = StandardSets::ofCategories(U_GC_ZS_MASK, {0x09});
    return set;
}
NSCharacterSet* NSCharacterSet::whitespaceAndNewlineCharacterSet() {
    static NSCharacterSet* const set =
        StandardSets::ofCategories(U_GC_ZS_MASK, {0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x85, 0x2028, 0x2029});
    return set;
}
NSCharacterSet* NSCharacterSet::newlineCharacterSet() {
    static NSCharacterSet* const set = StandardSets::ofPoints({0x0A, 0x0B, 0x0C, 0x0D, 0x85, 0x2028, 0x2029});
    return set;
}
NSCharacterSet* NSCharacterSet::punctuationCharacterSet() {
    static NSCharacterSet* const set = StandardSets::ofCategories(U_GC_P_MASK);
    return set;
}
NSCharacterSet* NSCharacterSet::symbolCharacterSet() {
    static NSCharacterSet* const set = StandardSets::ofCategories(U_GC_S_MASK);
    return set;
}
NSCharacterSet* NSCharacterSet::uppercaseLetterCharacterSet() {
    static NSCharacterSet* const set = StandardSets::ofCategories(U_GC_LU_MASK | U_GC_LT_MASK);
    return set;
}
NSCharacterSet* NSCharacterSet::lowercaseLetterCharacterSet() {
    static NSCharacterSet* const set = StandardSets::ofCategories(U_GC_LL_MASK);
    return set;
}
NSCharacterSet* NSCharacterSet::capitalizedLetterCharacterSet() {
    static NSCharacterSet* const set = StandardSets::ofCategories(U_GC_LT_MASK);
    return set;
}
NSCharacterSet* NSCharacterSet::nonBaseCharacterSet() {
    static NSCharacterSet* const set = StandardSets::ofCategories(marks);
    return set;
}
NSCharacterSet* NSCharacterSet::controlCharacterSet() {
    static NSCharacterSet* const set = StandardSets::ofCategories(U_GC_CC_MASK | U_GC_CF_MASK);
    return set;
}
NSCharacterSet* NSCharacterSet::illegalCharacterSet() {
    static NSCharacterSet* const set = StandardSets::ofCategories(U_GC_CN_MASK);
    return set;
}
NSCharacterSet* NSCharacterSet::decomposableCharacterSet() {
    static NSCharacterSet* const set = StandardSets::ofProperty(UCHAR_DECOMPOSITION_TYPE, U_DT_CANONICAL);
    return set;
}

} // namespace libvue

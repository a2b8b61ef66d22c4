#include <libvue/text/chaines/NSStringComparaisonAvancee.h>

#include <libvue/platform/foundation/TextSort.h>
#include <libvue/platform/foundation/UnicodeCollation.h>

namespace libvue {

namespace {

/// Made on first use and never released. One that could not be made is null, and then all texts compare as equal.
CollatorRef collateur() {
    static CollatorRef unique = nullptr;
    if (!unique) {
        LocaleRef locale = nullptr;
        LocaleRefFromLocaleString("fr_CA", &locale);
        UCCreateCollator(
            locale, 0,
            kUCCollateComposeInsensitiveMask | kUCCollateWidthInsensitiveMask | kUCCollateCaseInsensitiveMask, &unique);
    }
    return unique;
}

void trie(NSString** textes, NSUInteger nombre) { sortTexts(collateur(), textes, nombre); }

const struct Installation {
    Installation() noexcept {
        NSString::installLocalizedCaseInsensitiveCompare(&localizedCaseInsensitiveCompare);
        installTextSort(&localizedCaseInsensitiveCompare, &trie);
    }
} installation;

} // namespace

NSComparisonResult localizedCaseInsensitiveCompare(const NSString* s, const NSString* other) {
    if (s && other) return static_cast<NSComparisonResult>(compareTexts(collateur(), *s, *other));
    const Ref<NSString> vide = NSString::string();
    return static_cast<NSComparisonResult>(compareTexts(collateur(), s ? *s : *vide, other ? *other : *vide));
}

} // namespace libvue

#include <libvue/platform/foundation/StringFolding.h>

#include <array>

#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include <libvue/platform/foundation/StringUnits.h>

namespace libvue::detail {

namespace {

constexpr std::array<std::uint8_t, 256> makeLatin1Folding() {
    std::array<std::uint8_t, 256> table{};
    for (unsigned c = 0; c < 256; ++c) {
        const bool upper = (c >= 'A' && c <= 'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7);
        table[c] = static_cast<std::uint8_t>(upper ? c + 0x20 : c);
    }
    return table;
}
constexpr std::array<std::uint8_t, 256> latin1Folding = makeLatin1Folding();

bool isInert(unichar c) noexcept {
    if (c < 0x300) return true;
    if (c < 0xD800) return (c >= 0x2002 && c < 0x20D0) || (c >= 0x3400 && c < 0xA000);
    // Emoji: their surrogates and the signs that choose their look. A low surrogate goes by the high one before it.
    return (c >= 0xD83C && c <= 0xD83E) || (c >= 0xDC00 && c < 0xE000) || (c >= 0xFE00 && c <= 0xFE0F);
}

/// Folds segment after segment into a FoldedText.
class Folder {
public:
    Folder(FoldedText& to, NSUInteger options)
        : to_(to),
          fold_(options & NSCaseInsensitiveSearch),
          strip_(options & NSDiacriticInsensitiveSearch),
          narrow_(options & NSWidthInsensitiveSearch),
          literal_(options & NSLiteralSearch) {
        UErrorCode status = U_ZERO_ERROR;
        nfd_ = unorm2_getNFDInstance(&status);
        nfc_ = unorm2_getNFCInstance(&status);
        nfkd_ = unorm2_getNFKDInstance(&status);
        if (U_FAILURE(status)) literal_ = true;
    }

    void run(const unichar* units, std::size_t count, std::size_t origin) {
        to_.units.reserve(count + count / 8);
        to_.origins.reserve(count + count / 8 + 1);
        for (std::size_t i = 0; i < count;) {
            const std::size_t start = i;
            const bool alone = i + 1 == count || units[i + 1] < 0x300;
            if (alone && units[i] < 0x80) {
                const auto c = static_cast<std::uint8_t>(units[i++]);
                put(fold_ ? latin1Folding[c] : c, origin + start);
                continue;
            }
            const char32_t first = nextCodePoint(units, count, i);
            if (!literal_)
                while (i < count) {
                    std::size_t next = i;
                    if (unorm2_hasBoundaryBefore(nfc_, static_cast<UChar32>(nextCodePoint(units, count, next)))) break;
                    i = next;
                }
            segment(first, {units + start, i - start}, origin + start);
        }
        to_.origins.push_back(static_cast<std::uint32_t>(origin + count));
    }

private:
    void put(unichar c, std::size_t origin) {
        to_.units.push_back(c);
        to_.origins.push_back(static_cast<std::uint32_t>(origin));
    }

    void segment(char32_t first, std::u16string_view units, std::size_t origin) {
        piece_.assign(units);
        if (literal_) {
            if (fold_) {
                unichar folded[2];
                piece_.assign(folded, putCodePoint(static_cast<char32_t>(
                                                       u_foldCase(static_cast<UChar32>(first), U_FOLD_CASE_DEFAULT)),
                                                   folded));
            }
        } else {
            if (narrow_) takeWidth();
            decompose();
            if (fold_) {
                foldCase();
                decompose();
            }
            if (strip_) takeMarks();
        }
        std::uint32_t from = static_cast<std::uint32_t>(origin);
        for (const unichar c : piece_) {
            to_.units.push_back(c);
            to_.origins.push_back(from);
            from = FoldedText::inside;
        }
    }

    /// Runs an ICU operation of the shape (source, length, destination, capacity, status) on the piece.
    template <class Operation> void transform(Operation operation) {
        other_.resize(piece_.size() * 3 + 8);
        for (int attempt = 0; attempt < 2; ++attempt) {
            UErrorCode status = U_ZERO_ERROR;
            const std::int32_t size = operation(piece_.data(), static_cast<std::int32_t>(piece_.size()), other_.data(),
                                                static_cast<std::int32_t>(other_.size()), &status);
            if (size > static_cast<std::int32_t>(other_.size())) {
                other_.resize(static_cast<std::size_t>(size));
                continue;
            }
            if (U_FAILURE(status)) return;
            other_.resize(static_cast<std::size_t>(size));
            piece_.swap(other_);
            return;
        }
    }
    void decompose() {
        if (piece_.size() == 1 && piece_[0] < 0xC0) return;
        transform([this](auto... a) { return unorm2_normalize(nfd_, a...); });
    }
    void foldCase() {
        transform([](const UChar* s, std::int32_t n, UChar* to, std::int32_t room, UErrorCode* status) {
            return u_strFoldCase(to, room, s, n, U_FOLD_CASE_DEFAULT, status);
        });
    }
    void takeMarks() {
        std::size_t to = 0;
        for (std::size_t i = 0; i < piece_.size();) {
            const std::size_t from = i;
            const char32_t c = nextCodePoint(piece_.data(), piece_.size(), i);
            // Classes below 10 are the signs of Indic scripts and of kana, which make other letters and are no accents.
            if (c >= 0x300 && u_getCombiningClass(static_cast<UChar32>(c)) >= 10) continue;
            for (std::size_t k = from; k < i; ++k)
                piece_[to++] = piece_[k];
        }
        piece_.resize(to);
    }
    void takeWidth() {
        other_.clear();
        for (std::size_t i = 0; i < piece_.size();) {
            const char32_t c = nextCodePoint(piece_.data(), piece_.size(), i);
            unichar units[18];
            if (c == 0x3000 || (c >= 0xFF00 && c <= 0xFFEF)) {
                UErrorCode status = U_ZERO_ERROR;
                const std::int32_t size =
                    unorm2_getRawDecomposition(nfkd_, static_cast<UChar32>(c), units, 18, &status);
                if (size > 0 && U_SUCCESS(status)) {
                    other_.append(units, static_cast<std::size_t>(size));
                    continue;
                }
            }
            other_.append(units, putCodePoint(c, units));
        }
        piece_.swap(other_);
    }

    FoldedText& to_;
    bool fold_, strip_, narrow_, literal_;
    const UNormalizer2* nfd_ = nullptr;
    const UNormalizer2* nfc_ = nullptr;
    const UNormalizer2* nfkd_ = nullptr;
    std::u16string piece_, other_;
};

} // namespace

FoldedText::FoldedText(const NSString& s, NSRange range, NSUInteger options) {
    const WideUnits wide(s, range);
    Folder(*this, options).run(wide.data(), wide.size(), range.location);
}

std::uint8_t foldLatin1(std::uint8_t unit) noexcept { return latin1Folding[unit]; }

bool areInert(const std::uint8_t*, std::size_t) noexcept { return true; }

bool areInert(const unichar* units, std::size_t count) noexcept {
    for (std::size_t i = 0; i < count; ++i)
        if (!isInert(units[i])) return false;
    return true;
}

} // namespace libvue::detail

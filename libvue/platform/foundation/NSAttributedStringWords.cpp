#include <unicode/ubrk.h>
#include <unicode/uloc.h>

#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSCharacterSet.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/StringUnits.h>

namespace libvue {

namespace {

NSAttributedString::DoubleClick installedDoubleClick = nullptr;
NSAttributedString::NextWord installedNextWord = nullptr;

/// The word boundaries of a text, as the user's language has them.
class Words {
public:
    explicit Words(const NSString& s) : units_(s) {
        static UBreakIterator* const iterator = [] {
            UErrorCode status = U_ZERO_ERROR;
            return ubrk_open(UBRK_WORD, uloc_getDefault(), nullptr, 0, &status);
        }();
        UErrorCode status = U_ZERO_ERROR;
        if (iterator) ubrk_setText(iterator, units_.data(), static_cast<std::int32_t>(units_.size()), &status);
        if (U_SUCCESS(status)) iterator_ = iterator;
    }
    [[nodiscard]] bool usable() const noexcept { return iterator_ != nullptr; }

    /// The stretch between two boundaries that holds the unit.
    [[nodiscard]] NSRange around(NSUInteger i) const {
        const std::int32_t end = ubrk_following(iterator_, static_cast<std::int32_t>(i));
        const std::int32_t start = ubrk_previous(iterator_);
        const auto from = static_cast<NSUInteger>(start == UBRK_DONE ? 0 : start);
        return {from, (end == UBRK_DONE ? units_.size() : static_cast<NSUInteger>(end)) - from};
    }
    /// The end of the first word that ends behind `i`; the end of the text where there is none.
    [[nodiscard]] NSUInteger endAfter(NSUInteger i) const {
        for (std::int32_t at = ubrk_following(iterator_, static_cast<std::int32_t>(i)); at != UBRK_DONE;
             at = ubrk_next(iterator_))
            if (ubrk_getRuleStatus(iterator_) >= UBRK_WORD_NUMBER) return static_cast<NSUInteger>(at);
        return units_.size();
    }
    /// The start of the last word that begins before `i`; 0 where there is none.
    [[nodiscard]] NSUInteger startBefore(NSUInteger i) const {
        auto end = static_cast<std::int32_t>(i);
        if (!ubrk_isBoundary(iterator_, end)) end = ubrk_current(iterator_);
        while (end > 0) {
            const std::int32_t start = ubrk_preceding(iterator_, end);
            if (start == UBRK_DONE) return 0;
            // The status of a boundary tells of what stands before it.
            if (ubrk_isBoundary(iterator_, end) && ubrk_getRuleStatus(iterator_) >= UBRK_WORD_NUMBER)
                return static_cast<NSUInteger>(start);
            end = start;
        }
        return 0;
    }

private:
    detail::WideUnits units_;
    UBreakIterator* iterator_ = nullptr;
};

} // namespace

NSRange NSAttributedString::doubleClickAtIndex(NSUInteger i) const {
    if (installedDoubleClick) return installedDoubleClick(this, i);
    checkIndex(i);
    const NSCharacterSet* blanks = NSCharacterSet::whitespaceCharacterSet();
    if (blanks->characterIsMember(text_->unit(i))) {
        NSUInteger from = i, to = i + 1;
        while (from > 0 && blanks->characterIsMember(text_->unit(from - 1)))
            --from;
        while (to < length() && blanks->characterIsMember(text_->unit(to)))
            ++to;
        return {from, to - from};
    }
    const Words words(*text_);
    return words.usable() ? words.around(i) : NSRange{i, 1};
}

NSUInteger NSAttributedString::nextWordFromIndex_forward(NSUInteger i, BOOL forward) const {
    if (installedNextWord) return installedNextWord(this, i, forward);
    if (i > length()) checkIndex(i);
    if (forward ? i == length() : i == 0) return i;
    const Words words(*text_);
    if (!words.usable()) return forward ? i + 1 : i - 1;
    return forward ? words.endAfter(i) : words.startBefore(i);
}

void NSAttributedString::installWordBoundaries(DoubleClick doubleClick, NextWord nextWord) noexcept {
    installedDoubleClick = doubleClick;
    installedNextWord = nextWord;
}

} // namespace libvue

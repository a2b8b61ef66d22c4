#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

bool endsLine(unichar c) noexcept { return c == '\n' || c == '\r' || c == 0x85 || c == 0x2028 || c == 0x2029; }
bool endsParagraph(unichar c) noexcept { return c == '\n' || c == '\r' || c == 0x2029; }

struct Extent {
    NSUInteger start, end, contentsEnd;
};

template <class Ends> Extent extent(const NSString& s, NSRange range, Ends ends) {
    const NSUInteger length = s.length();
    NSUInteger start = range.location;
    // A place between CR and LF belongs to the line that both end.
    if (start > 0 && start < length && s.unit(start) == '\n' && s.unit(start - 1) == '\r') --start;
    while (start > 0 && !ends(s.unit(start - 1)))
        --start;
    NSUInteger last = range.length ? NSMaxRange(range) - 1 : range.location;
    if (last > 0 && last < length && s.unit(last) == '\n' && s.unit(last - 1) == '\r') --last;
    while (last < length && !ends(s.unit(last)))
        ++last;
    if (last == length) return {start, length, length};
    const bool two = s.unit(last) == '\r' && last + 1 < length && s.unit(last + 1) == '\n';
    return {start, last + (two ? 2 : 1), last};
}

} // namespace

void NSString::getLineStart_end_contentsEnd_forRange(NSUInteger* start, NSUInteger* end, NSUInteger* contentsEnd,
                                                     NSRange range) const {
    checkRange(range);
    const Extent line = extent(*this, range, endsLine);
    if (start) *start = line.start;
    if (end) *end = line.end;
    if (contentsEnd) *contentsEnd = line.contentsEnd;
}

NSRange NSString::lineRangeForRange(NSRange range) const {
    checkRange(range);
    const Extent line = extent(*this, range, endsLine);
    return {line.start, line.end - line.start};
}

NSRange NSString::paragraphRangeForRange(NSRange range) const {
    checkRange(range);
    const Extent paragraph = extent(*this, range, endsParagraph);
    return {paragraph.start, paragraph.end - paragraph.start};
}

} // namespace libvue

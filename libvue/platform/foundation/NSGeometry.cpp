#include <libvue/platform/foundation/NSGeometry.h>

#include <algorithm>
#include <charconv>
#include <limits>

#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/NumberText.h>
#include <libvue/platform/foundation/StringBuilder.h>

namespace libvue {

namespace {

NSUInteger endOf(NSRange r) noexcept {
    constexpr NSUInteger most = std::numeric_limits<NSUInteger>::max();
    return r.length > most - r.location ? most : r.location + r.length;
}

/// The numbers of a text one after the other; 0 where there are no more.
class NumberReader {
public:
    explicit NumberReader(NSString* s) : text_(s ? s->utf8() : std::string()) {}

    double next() {
        while (at_ < text_.size()) {
            const char* from = text_.data() + at_;
            const char* end = text_.data() + text_.size();
            double v = 0;
            if (auto [behind, fault] = std::from_chars(from, end, v); behind != from) {
                at_ = static_cast<std::size_t>(behind - text_.data());
                return fault == std::errc() ? v : 0;
            }
            ++at_;
        }
        return 0;
    }
    NSUInteger nextUnsigned() {
        while (at_ < text_.size()) {
            const char* from = text_.data() + at_;
            NSUInteger v = 0;
            if (auto [behind, fault] = std::from_chars(from, text_.data() + text_.size(), v); behind != from) {
                at_ = static_cast<std::size_t>(behind - text_.data());
                return fault == std::errc() ? v : static_cast<NSUInteger>(NSNotFound);
            }
            ++at_;
        }
        return 0;
    }

private:
    std::string text_;
    std::size_t at_ = 0;
};

void append(StringBuilder& b, double first, double second) {
    b.append('{');
    appendShortest(b, first);
    b.append(", ");
    appendShortest(b, second);
    b.append('}');
}

} // namespace

NSRange NSIntersectionRange(NSRange a, NSRange b) noexcept {
    NSUInteger from = std::max(a.location, b.location), to = std::min(endOf(a), endOf(b));
    return from < to ? NSRange{from, to - from} : NSRange{};
}

NSRange NSUnionRange(NSRange a, NSRange b) noexcept {
    NSUInteger from = std::min(a.location, b.location);
    return {from, std::max(endOf(a), endOf(b)) - from};
}

BOOL NSMouseInRect(const NSPoint& p, const NSRect& r, BOOL flipped) noexcept {
    if (flipped) return NSPointInRect(p, r);
    return p.x >= NSMinX(r) && p.x < NSMaxX(r) && p.y > NSMinY(r) && p.y <= NSMaxY(r);
}

BOOL NSContainsRect(const NSRect& outer, const NSRect& inner) noexcept {
    return !NSIsEmptyRect(inner) && NSMinX(outer) <= NSMinX(inner) && NSMinY(outer) <= NSMinY(inner) &&
           NSMaxX(outer) >= NSMaxX(inner) && NSMaxY(outer) >= NSMaxY(inner);
}

BOOL NSIntersectsRect(const NSRect& a, const NSRect& b) noexcept {
    // Comparisons with what is not a number are false: such rectangles meet nothing.
    return !NSIsEmptyRect(a) && !NSIsEmptyRect(b) && NSMinX(a) < NSMaxX(b) && NSMinX(b) < NSMaxX(a) &&
           NSMinY(a) < NSMaxY(b) && NSMinY(b) < NSMaxY(a);
}

NSRect NSIntersectionRect(const NSRect& a, const NSRect& b) noexcept {
    if (!NSIntersectsRect(a, b)) return NSZeroRect;
    CGFloat x = std::max(NSMinX(a), NSMinX(b)), y = std::max(NSMinY(a), NSMinY(b));
    return {{x, y}, {std::min(NSMaxX(a), NSMaxX(b)) - x, std::min(NSMaxY(a), NSMaxY(b)) - y}};
}

NSRect NSUnionRect(const NSRect& a, const NSRect& b) noexcept {
    if (NSIsEmptyRect(a)) return NSIsEmptyRect(b) ? NSZeroRect : b;
    if (NSIsEmptyRect(b)) return a;
    CGFloat x = std::min(NSMinX(a), NSMinX(b)), y = std::min(NSMinY(a), NSMinY(b));
    return {{x, y}, {std::max(NSMaxX(a), NSMaxX(b)) - x, std::max(NSMaxY(a), NSMaxY(b)) - y}};
}

NSRect NSIntegralRect(const NSRect& r) noexcept {
    if (NSIsEmptyRect(r)) return NSZeroRect;
    CGFloat x = std::floor(NSMinX(r)), y = std::floor(NSMinY(r));
    return {{x, y}, {std::ceil(NSMaxX(r)) - x, std::ceil(NSMaxY(r)) - y}};
}

void NSDivideRect(const NSRect& r, NSRect* slice, NSRect* remainder, CGFloat amount, NSRectEdge edge) noexcept {
    NSRect cut = r, rest = r; // `r` may be one of the results
    bool horizontal = edge == NSMinXEdge || edge == NSMaxXEdge;
    CGFloat extent = horizontal ? r.size.width : r.size.height;
    if (!(amount > 0)) amount = 0;
    if (amount > extent) amount = std::max(extent, 0.0);
    CGFloat left = extent - amount;
    (horizontal ? cut.size.width : cut.size.height) = amount;
    (horizontal ? rest.size.width : rest.size.height) = left;
    switch (edge) {
    case NSMinXEdge:
        rest.origin.x += amount;
        break;
    case NSMaxXEdge:
        cut.origin.x += left;
        break;
    case NSMinYEdge:
        rest.origin.y += amount;
        break;
    case NSMaxYEdge:
        cut.origin.y += left;
        break;
    }
    if (slice) *slice = cut;
    if (remainder) *remainder = rest;
}

Ref<NSString> NSStringFromPoint(const NSPoint& p) {
    StringBuilder b;
    append(b, p.x, p.y);
    return b.build();
}

Ref<NSString> NSStringFromSize(const NSSize& s) {
    StringBuilder b;
    append(b, s.width, s.height);
    return b.build();
}

Ref<NSString> NSStringFromRect(const NSRect& r) {
    StringBuilder b;
    b.append('{');
    append(b, r.origin.x, r.origin.y);
    b.append(", ");
    append(b, r.size.width, r.size.height);
    b.append('}');
    return b.build();
}

Ref<NSString> NSStringFromRange(const NSRange& r) {
    StringBuilder b;
    b.append('{');
    b.appendUnsigned(r.location);
    b.append(", ");
    b.appendUnsigned(r.length);
    b.append('}');
    return b.build();
}

NSPoint NSPointFromString(NSString* s) {
    NumberReader in(s);
    CGFloat x = in.next();
    return {x, in.next()};
}

NSSize NSSizeFromString(NSString* s) {
    NSPoint p = NSPointFromString(s);
    return {p.x, p.y};
}

NSRect NSRectFromString(NSString* s) {
    NumberReader in(s);
    NSRect r;
    for (CGFloat* field : {&r.origin.x, &r.origin.y, &r.size.width, &r.size.height})
        *field = in.next();
    return r;
}

NSRange NSRangeFromString(NSString* s) {
    NumberReader in(s);
    NSUInteger location = in.nextUnsigned();
    return {location, in.nextUnsigned()};
}

} // namespace libvue

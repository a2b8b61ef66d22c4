#pragma once

#include <cmath>

#include <libvue/platform/foundation/Forward.h>

namespace libvue {

/// Geometry in points. All fields are doubles; equality is exact.
struct NSPoint {
    CGFloat x = 0, y = 0;
    friend bool operator==(const NSPoint&, const NSPoint&) = default;
};
/// Width and height; nothing keeps them from being negative.
struct NSSize {
    CGFloat width = 0, height = 0;
    friend bool operator==(const NSSize&, const NSSize&) = default;
};
/// `origin` is the corner with the smallest coordinates, whichever way y grows.
struct NSRect {
    NSPoint origin;
    NSSize size;
    friend bool operator==(const NSRect&, const NSRect&) = default;
};
/// A stretch of places in a text or a list, from `location` up to and without `location + length`.
struct NSRange {
    NSUInteger location = 0, length = 0;
    friend bool operator==(const NSRange&, const NSRange&) = default;
};
/// Distances inward from the sides of a rectangle.
struct NSEdgeInsets {
    CGFloat top = 0, left = 0, bottom = 0, right = 0;
    friend bool operator==(const NSEdgeInsets&, const NSEdgeInsets&) = default;
};

/// One side of a rectangle; edge masks are built on these values.
enum NSRectEdge : NSUInteger { NSMinXEdge = 0, NSMinYEdge = 1, NSMaxXEdge = 2, NSMaxYEdge = 3 };

inline constexpr NSPoint NSZeroPoint{};
inline constexpr NSSize NSZeroSize{};
inline constexpr NSRect NSZeroRect{};

constexpr NSPoint NSMakePoint(CGFloat x, CGFloat y) noexcept { return {x, y}; }
constexpr NSSize NSMakeSize(CGFloat w, CGFloat h) noexcept { return {w, h}; }
constexpr NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat w, CGFloat h) noexcept { return {{x, y}, {w, h}}; }
constexpr NSRange NSMakeRange(NSUInteger location, NSUInteger length) noexcept { return {location, length}; }
constexpr NSUInteger NSMaxRange(NSRange r) noexcept { return r.location + r.length; }
constexpr BOOL NSLocationInRange(NSUInteger i, NSRange r) noexcept {
    return i >= r.location && i - r.location < r.length;
}
constexpr BOOL NSEqualRanges(NSRange a, NSRange b) noexcept { return a == b; }
/// The common places; (0, 0) where there are none.
LIBVUE_API NSRange NSIntersectionRange(NSRange a, NSRange b) noexcept;
/// The shortest range that holds both, with what lies between them.
LIBVUE_API NSRange NSUnionRange(NSRange a, NSRange b) noexcept;

constexpr CGFloat NSMinX(const NSRect& r) noexcept { return r.origin.x; }
constexpr CGFloat NSMinY(const NSRect& r) noexcept { return r.origin.y; }
constexpr CGFloat NSMidX(const NSRect& r) noexcept { return r.origin.x + r.size.width / 2; }
constexpr CGFloat NSMidY(const NSRect& r) noexcept { return r.origin.y + r.size.height / 2; }
constexpr CGFloat NSMaxX(const NSRect& r) noexcept { return r.origin.x + r.size.width; }
constexpr CGFloat NSMaxY(const NSRect& r) noexcept { return r.origin.y + r.size.height; }
constexpr CGFloat NSWidth(const NSRect& r) noexcept { return r.size.width; }
constexpr CGFloat NSHeight(const NSRect& r) noexcept { return r.size.height; }

/// The origin moved by (dx, dy), the size reduced by twice that; negative values grow the rectangle.
constexpr NSRect NSInsetRect(const NSRect& r, CGFloat dx, CGFloat dy) noexcept {
    return {{r.origin.x + dx, r.origin.y + dy}, {r.size.width - 2 * dx, r.size.height - 2 * dy}};
}
constexpr NSRect NSOffsetRect(const NSRect& r, CGFloat dx, CGFloat dy) noexcept {
    return {{r.origin.x + dx, r.origin.y + dy}, r.size};
}
/// True when width or height is zero, negative or not a number.
constexpr BOOL NSIsEmptyRect(const NSRect& r) noexcept { return !(r.size.width > 0 && r.size.height > 0); }
/// Lower edges included, upper edges excluded.
constexpr BOOL NSPointInRect(const NSPoint& p, const NSRect& r) noexcept {
    return p.x >= NSMinX(r) && p.x < NSMaxX(r) && p.y >= NSMinY(r) && p.y < NSMaxY(r);
}
/// The same with the side that a view's flipping asks for: a flipped one excludes its lower edge as drawn.
LIBVUE_API BOOL NSMouseInRect(const NSPoint& p, const NSRect& r, BOOL flipped) noexcept;
constexpr BOOL NSEqualPoints(const NSPoint& a, const NSPoint& b) noexcept { return a == b; }
constexpr BOOL NSEqualSizes(const NSSize& a, const NSSize& b) noexcept { return a == b; }
constexpr BOOL NSEqualRects(const NSRect& a, const NSRect& b) noexcept { return a == b; }
/// Whether `inner`, which may touch its sides, lies in `outer`. An empty rectangle lies in none.
LIBVUE_API BOOL NSContainsRect(const NSRect& outer, const NSRect& inner) noexcept;
/// Whether they overlap; touching sides do not.
LIBVUE_API BOOL NSIntersectsRect(const NSRect& a, const NSRect& b) noexcept;
/// The common rectangle; NSZeroRect where they do not overlap.
LIBVUE_API NSRect NSIntersectionRect(const NSRect& a, const NSRect& b) noexcept;
/// The smallest rectangle that holds both; an empty argument gives the other one.
LIBVUE_API NSRect NSUnionRect(const NSRect& a, const NSRect& b) noexcept;
/// Outward to whole points.
LIBVUE_API NSRect NSIntegralRect(const NSRect& r) noexcept;
/// Cuts a strip `amount` thick from `edge` of `r` into `slice`, the rest into `remainder` (either may be null).
/// `amount` is held to the rectangle's extent.
LIBVUE_API void NSDivideRect(const NSRect& r, NSRect* slice, NSRect* remainder, CGFloat amount,
                             NSRectEdge edge) noexcept;

/// "{x, y}", "{width, height}", "{{x, y}, {width, height}}", "{location, length}", with the digits that give the same
/// number back.
LIBVUE_API Ref<NSString> NSStringFromPoint(const NSPoint& p);
LIBVUE_API Ref<NSString> NSStringFromSize(const NSSize& s);
LIBVUE_API Ref<NSString> NSStringFromRect(const NSRect& r);
LIBVUE_API Ref<NSString> NSStringFromRange(const NSRange& r);
/// The numbers of a text in that order, whatever stands between them; missing ones, and a null text, read as 0.
LIBVUE_API NSPoint NSPointFromString(NSString* s);
LIBVUE_API NSSize NSSizeFromString(NSString* s);
LIBVUE_API NSRect NSRectFromString(NSString* s);
LIBVUE_API NSRange NSRangeFromString(NSString* s);

} // namespace libvue

#include <libvue/platform/appkit/FocusRing.h>

#include <cmath>

#include <libvue/platform/appkit/KeptDrawing.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>

namespace libvue {

namespace {

constexpr CGFloat ringWidth = 3;
/// Room for the pixels that smooth the edge.
constexpr CGFloat ringMargin = ringWidth + 1;

/// The strip from the rectangle out to `width`.
void fillStrip(const NSRect& rect, CGFloat radius, CGFloat width, CGFloat alpha) {
    const Ref<NSBezierPath> strip = NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(
        NSInsetRect(rect, -width, -width), radius + width, radius + width);
    strip->appendBezierPathWithRoundedRect_xRadius_yRadius(rect, radius, radius);
    strip->setWindingRule(NSEvenOddWindingRule);
    NSColor::keyboardFocusIndicatorColor()->colorWithAlphaComponent(alpha)->set();
    strip->fill();
}

} // namespace

NSRect focusRingBounds(const NSRect& rect) noexcept { return NSInsetRect(rect, -ringMargin, -ringMargin); }

void drawFocusRing(const NSRect& rect, CGFloat radius) {
    const CGFloat end = ringMargin + std::ceil(radius) + 1;
    drawKept({KeptLook::Kind::focusRing, 0, radius}, focusRingBounds(rect), end, [&](const NSRect& room) {
        const NSRect inner = NSInsetRect(room, ringMargin, ringMargin);
        // One strip over the other: strongest at the rectangle.
        fillStrip(inner, radius, ringWidth, 0.3);
        fillStrip(inner, radius, ringWidth * 2 / 3, 0.35);
        fillStrip(inner, radius, ringWidth / 3, 0.4);
    });
}

} // namespace libvue

#include <libvue/platform/appkit/AlertViews.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/AlertPanel.h>
#include <libvue/platform/appkit/KeptDrawing.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/ThemeDrawing.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/NSStringDrawing.h>

namespace libvue {

// The whole.

void AlertContentView::drawRect(const NSRect&) {
    if (!window() || !window()->isSheet()) return;
    const NSRect b = bounds();
    const CGFloat line = fineLine();
    // It comes out from under the title bar.
    constexpr CGFloat shade = 6;
    NSColor* ink = NSColor::labelColor();
    fillRoundedVertical({{0, 0}, {b.size.width, shade}}, 0, ink->colorWithAlphaComponent(0.12),
                        ink->colorWithAlphaComponent(0));
    ink->colorWithAlphaComponent(0.3)->setFill();
    for (const NSRect& edge :
         {NSRect{{0, 0}, {line, b.size.height}}, NSRect{{b.size.width - line, 0}, {line, b.size.height}},
          NSRect{{line, b.size.height - line}, {b.size.width - 2 * line, line}}})
        NSRectFillUsingOperation(edge, NSCompositeSourceOver);
}

AccessibilityDescription AlertContentView::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"alert"_ns;
    if (!d.label) d.label = message;
    d.value = informative;
    return d;
}

// The sign.

void AlertIconView::show(NSAlertStyle style, NSImage* picture) {
    style_ = style;
    picture_ = picture;
    setNeedsDisplay(YES);
}

namespace {

Ref<NSColor> lighter(NSColor* color, CGFloat part) {
    auto c = color->blendedColorWithFraction_ofColor(part, NSColor::whiteColor());
    return c ? c : Ref<NSColor>(color);
}
Ref<NSColor> darker(NSColor* color, CGFloat part) {
    auto c = color->blendedColorWithFraction_ofColor(part, NSColor::blackColor());
    return c ? c : Ref<NSColor>(color);
}

/// A polygon whose corners are rounded.
Ref<NSBezierPath> rounded(const std::vector<NSPoint>& corners, CGFloat radius) {
    auto path = NSBezierPath::bezierPath();
    const std::size_t n = corners.size();
    const NSPoint first = corners[0], last = corners[n - 1];
    path->moveToPoint({(first.x + last.x) / 2, (first.y + last.y) / 2});
    for (std::size_t i = 0; i < n; ++i)
        path->appendBezierPathWithArcFromPoint_toPoint_radius(corners[i], corners[(i + 1) % n], radius);
    path->closePath();
    return path;
}

Ref<NSBezierPath> signOf(NSAlertStyle style, const NSRect& r) {
    const CGFloat w = r.size.width;
    const NSPoint m{NSMidX(r), NSMidY(r)};
    switch (style) {
    case NSInformationalAlertStyle:
        return NSBezierPath::bezierPathWithOvalInRect(r);
    case NSCriticalAlertStyle: {
        std::vector<NSPoint> corners;
        constexpr double eighth = 0.78539816339744831;
        for (int i = 0; i < 8; ++i) {
            const double a = eighth * (i + 0.5);
            // Its flat sides touch the rectangle.
            const CGFloat radius = w / 2 / std::cos(eighth / 2);
            corners.push_back({m.x + radius * std::cos(a), m.y + radius * std::sin(a)});
        }
        return rounded(corners, w * 0.06);
    }
    default:
        // The rounding takes back what stands out of the rectangle.
        return rounded({{NSMinX(r) - w * 0.1, NSMinY(r) + w * 0.04},
                        {NSMaxX(r) + w * 0.1, NSMinY(r) + w * 0.04},
                        {m.x, NSMaxY(r) + w * 0.08}},
                       w * 0.1);
    }
}

/// The stroke and the dot of "!", or of "i" with the dot above; for the critical sign a cross.
void drawMark(NSAlertStyle style, const NSRect& r) {
    const CGFloat w = r.size.width;
    const NSPoint m{NSMidX(r), NSMidY(r)};
    if (style == NSCriticalAlertStyle) {
        const auto cross = NSBezierPath::bezierPath();
        const CGFloat arm = w * 0.17;
        cross->moveToPoint({m.x - arm, m.y - arm});
        cross->lineToPoint({m.x + arm, m.y + arm});
        cross->moveToPoint({m.x - arm, m.y + arm});
        cross->lineToPoint({m.x + arm, m.y - arm});
        cross->setLineWidth(w * 0.105);
        cross->setLineCapStyle(NSRoundLineCapStyle);
        cross->stroke();
        return;
    }
    const CGFloat thick = w * (style == NSInformationalAlertStyle ? 0.115 : 0.1), tall = w * 0.29;
    const bool information = style == NSInformationalAlertStyle;
    // The triangle's weight lies low.
    const CGFloat low = information ? m.y - w * 0.25 : NSMinY(r) + w * 0.15;
    const CGFloat bar = information ? low : low + thick * 1.5, dot = information ? low + tall + thick * 0.65 : low;
    NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius({{m.x - thick / 2, bar}, {thick, tall}}, thick / 2,
                                                            thick / 2)
        ->fill();
    const CGFloat d = thick * 1.12;
    NSBezierPath::bezierPathWithOvalInRect({{m.x - d / 2, dot}, {d, d}})->fill();
}

Ref<NSColor> colorOf(NSAlertStyle style) {
    switch (style) {
    case NSInformationalAlertStyle:
        return NSColor::controlAccentColor();
    case NSCriticalAlertStyle:
        // The palette's danger and warning are for texts, and differ by the appearance; a sign does not.
        return NSColor::colorWithSRGBRed_green_blue_alpha(0.87, 0.21, 0.19, 1);
    default:
        return NSColor::colorWithSRGBRed_green_blue_alpha(0.98, 0.76, 0.13, 1);
    }
}

void drawSign(NSAlertStyle style, const NSRect& r) {
    const Ref<NSColor> base = colorOf(style);
    const Ref<NSBezierPath> sign = signOf(style, r);
    NSGraphicsContext::saveGraphicsState();
    sign->addClip();
    fillRoundedVertical(NSInsetRect(r, -4, -4), 0, lighter(base, 0.16), darker(base, 0.06));
    NSGraphicsContext::restoreGraphicsState();
    darker(base, 0.22)->setStroke();
    sign->setLineWidth(1);
    sign->stroke();
    // On the yellow one white would be lost.
    const bool dark = style == NSWarningAlertStyle;
    const Ref<NSColor> ink = NSColor::colorWithCalibratedWhite_alpha(dark ? 0.13 : 1, dark ? 0.92 : 1);
    ink->setFill();
    ink->setStroke();
    drawMark(style, r);
}

} // namespace

void AlertIconView::drawRect(const NSRect&) {
    if (!picture_) {
        drawKept({KeptLook::Kind::alertSign, static_cast<std::uint32_t>(style_)}, bounds(), bounds().size.width,
                 [this](const NSRect& room) { drawSign(style_, NSInsetRect(room, 3, 3)); });
        return;
    }
    const NSSize s = picture_->size();
    if (s.width <= 0 || s.height <= 0) return;
    const CGFloat scale = std::min(bounds().size.width / s.width, bounds().size.height / s.height);
    const NSSize size{s.width * scale, s.height * scale};
    const NSRect room{{(bounds().size.width - size.width) / 2, (bounds().size.height - size.height) / 2}, size};
    picture_->drawInRect_fromRect_operation_fraction(room, NSZeroRect, NSCompositeSourceOver, 1);
}

AccessibilityDescription AlertIconView::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"image"_ns;
    if (picture_)
        d.label = picture_->accessibilityDescription();
    else
        d.label = style_ == NSInformationalAlertStyle ? u"Information"_ns
                  : style_ == NSCriticalAlertStyle    ? u"Erreur"_ns
                                                      : u"Attention"_ns;
    return d;
}

// The texts.

AlertTextView::AlertTextView(NSString* text, NSFont* font, NSColor* color) : text_(text) {
    const auto attributes = NSMutableDictionary::dictionary();
    attributes->setObject_forKey(font, NSFontAttributeName.get());
    attributes->setObject_forKey(color, NSForegroundColorAttributeName.get());
    attributes_ = attributes;
    setFocusRingType(NSFocusRingTypeExterior);
}

AlertTextView::~AlertTextView() = default;

CGFloat AlertTextView::heightForWidth(CGFloat width) const {
    return boundingRectWithSize_options_attributes(text_, {width, 0}, NSStringDrawingUsesLineFragmentOrigin,
                                                   attributes_)
        .size.height;
}

void AlertTextView::drawRect(const NSRect&) {
    drawWithRect_options_attributes(text_, NSInsetRect(bounds(), padding_, padding_),
                                    NSStringDrawingUsesLineFragmentOrigin, attributes_);
}

NSRect AlertTextView::focusRingMaskBounds() const {
    // The ring lies outside of what it goes round, and the clip view cuts it off.
    constexpr CGFloat ring = 3;
    return NSInsetRect(visibleRect(), ring, ring);
}

void AlertTextView::keyDown(NSEvent* e) {
    if (!scrollByKey(enclosingScrollView(), e)) NSView::keyDown(e);
}

AccessibilityDescription AlertTextView::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"text"_ns;
    d.value = text_;
    return d;
}

} // namespace libvue

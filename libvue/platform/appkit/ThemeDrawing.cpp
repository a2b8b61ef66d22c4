#include <libvue/platform/appkit/ThemeDrawing.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/KeptDrawing.h>
#include <libvue/platform/appkit/NSCell.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/graphics/Appearance.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSShadow.h>
#include <libvue/platform/graphics/Palette.h>

namespace libvue {

namespace {

constexpr CGFloat kDisabledFace = 0.55; ///< how much of a face is left when it cannot be used

bool flippedContext() {
    const auto* c = NSGraphicsContext::currentContext();
    return c && c->isFlipped();
}

CGFloat deviceScale() {
    const auto* c = NSGraphicsContext::currentContext();
    if (!c) return 1;
    const backend::Transform t = c->canvas().transform();
    return std::max(0.01, std::hypot(t.a, t.b) * c->canvas().scale());
}

Ref<NSBezierPath> rounded(const NSRect& r, CGFloat radius) {
    return NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(r, radius, radius);
}

/// How far its corners reach into a face.
CGFloat endOf(CGFloat radius) { return std::ceil(radius) + 2; }

Ref<NSColor> faded(NSColor* c, CGFloat part) { return c->colorWithAlphaComponent(c->alphaComponent() * part); }

Ref<NSColor> mixed(NSColor* a, CGFloat part, NSColor* b) {
    auto m = a->blendedColorWithFraction_ofColor(part, b);
    return m ? m : Ref<NSColor>(a);
}

void fill(const NSRect& r, CGFloat radius, NSColor* color) {
    color->setFill();
    rounded(r, radius)->fill();
}

Ref<NSColor> accentTop(const FaceState& s) {
    NSColor* accent = NSColor::controlAccentColor();
    if (s.pressed) return mixed(accent, 0.18, NSColor::blackColor());
    return mixed(accent, 0.10, NSColor::whiteColor());
}
Ref<NSColor> accentBottom(const FaceState& s) {
    NSColor* accent = NSColor::controlAccentColor();
    return s.pressed ? mixed(accent, 0.22, NSColor::blackColor()) : mixed(accent, 0.04, NSColor::blackColor());
}

/// The small lift under a face, one soft line.
void dropUnder(const NSRect& r, CGFloat radius) {
    NSRect low = r;
    low.origin.y += flippedContext() ? fineLine() : -fineLine();
    fill(low, radius, NSColor::colorWithCalibratedWhite_alpha(0, 0.07));
}

/// The face of small marks (boxes, radio buttons, knobs).
void drawFace(const NSRect& r, CGFloat radius, const FaceState& s) {
    const bool accent = (s.on || s.mixed) && s.enabled && s.active;
    if (s.enabled) dropUnder(r, radius);
    if (accent) {
        fillRoundedVertical(r, radius, accentTop(s), accentBottom(s));
        strokeRoundedInside(r, radius, mixed(NSColor::controlAccentColor(), 0.25, NSColor::blackColor()));
        return;
    }
    if (s.pressed)
        fill(r, radius, NSColor::systemColor(SystemColor::controlPressed));
    else if (!s.enabled)
        fill(r, radius, faded(NSColor::systemColor(SystemColor::controlBottom), kDisabledFace));
    else
        fillRoundedVertical(r, radius, NSColor::systemColor(SystemColor::controlTop),
                            NSColor::systemColor(SystemColor::controlBottom));
    strokeRoundedInside(r, radius,
                        s.enabled ? Ref<NSColor>(NSColor::systemColor(SystemColor::controlBorder))
                                  : faded(NSColor::systemColor(SystemColor::controlBorder), kDisabledFace));
}

Ref<NSColor> markColor(const FaceState& s) {
    if (!s.enabled) return NSColor::disabledControlTextColor();
    return s.active ? Ref<NSColor>(NSColor::alternateSelectedControlTextColor())
                    : Ref<NSColor>(NSColor::controlTextColor());
}

} // namespace

FaceState faceStateOf(const NSCell* cell, NSView* view) {
    FaceState s;
    s.enabled = cell->isEnabled();
    s.pressed = cell->isHighlighted() && s.enabled;
    s.on = cell->state() == NSOnState;
    s.mixed = cell->state() == NSMixedState;
    s.active = !view || !view->window() || view->window()->isKeyWindow();
    return s;
}

NSRect alignedToPixels(const NSRect& r) {
    const auto* c = NSGraphicsContext::currentContext();
    if (!c) return r;
    const backend::Transform t = c->canvas().transform();
    const double scale = c->canvas().scale();
    if (t.b != 0 || t.c != 0 || scale <= 0) return r;
    // Halves go to the right and, y running upward here, down: as clips do. The sum of a fraction and its complement
    // may miss a half by a little.
    constexpr double slack = 1e-6;
    const auto across = [&](double v) { return std::floor(v * scale + 0.5 + slack); };
    const auto upward = [&](double v) { return std::ceil(v * scale - 0.5 - slack); };
    NSRect d = t.apply(r);
    const double left = across(d.origin.x), bottom = upward(d.origin.y);
    double right = across(d.origin.x + d.size.width), top = upward(d.origin.y + d.size.height);
    // A fine line stays one.
    if (d.size.width > 0) right = std::max(right, left + 1);
    if (d.size.height > 0) top = std::max(top, bottom + 1);
    d = {{left / scale, bottom / scale}, {(right - left) / scale, (top - bottom) / scale}};
    return t.inverted().apply(d);
}

CGFloat fineLine() {
    const CGFloat scale = deviceScale();
    return std::max(1.0, std::floor(scale)) / scale;
}

void fillRoundedVertical(const NSRect& r, CGFloat radius, NSColor* top, NSColor* bottom) {
    auto* context = NSGraphicsContext::currentContext();
    if (!context || NSIsEmptyRect(r)) return;
    const bool down = context->isFlipped();
    backend::AxialGradient g;
    g.start = {NSMidX(r), down ? NSMinY(r) : NSMaxY(r)};
    g.end = {NSMidX(r), down ? NSMaxY(r) : NSMinY(r)};
    g.stops = {{0, top->resolved()}, {1, bottom->resolved()}};
    g.extendStart = g.extendEnd = true;
    context->saveState();
    rounded(r, radius)->addClip();
    context->canvas().drawGradient(g);
    context->restoreState();
}

void strokeRoundedInside(const NSRect& r, CGFloat radius, NSColor* color) {
    const CGFloat line = fineLine();
    const auto path = rounded(NSInsetRect(r, line / 2, line / 2), std::max(0.0, radius - line / 2));
    path->setLineWidth(line);
    color->setStroke();
    path->stroke();
}

void drawPushButtonBezel(const NSRect& frame, const FaceState& s, CGFloat radius) {
    FaceState face = s;
    face.mixed = false;
    face.on = s.enabled && s.active && (s.isDefault || s.on);
    // Where the accent does not show it, a button that is on looks held down.
    if (!face.on && s.on && s.enabled) face.pressed = true;
    const std::uint32_t state = face.on | face.pressed << 1 | face.enabled << 2 | face.active << 3;
    drawKept({KeptLook::Kind::face, state, radius}, alignedToPixels(frame), endOf(radius), [&](NSRect r) {
        const CGFloat line = fineLine();
        // Room for the lift below.
        r.size.height -= line;
        if (!flippedContext()) r.origin.y += line;
        drawFace(r, std::min(radius, r.size.height / 2), face);
    });
}

void drawRecessedBezel(const NSRect& frame, const FaceState& s) {
    if (!s.pressed && !s.on && !s.hovered) return;
    const NSRect r = alignedToPixels(frame);
    const CGFloat part = s.pressed ? 0.20 : s.on ? 0.14 : 0.07;
    fill(r, theme::kRadius - 1, faded(NSColor::labelColor(), s.enabled ? part : part / 2));
}

void drawTextFieldBezel(const NSRect& frame, BOOL enabled) {
    constexpr CGFloat radius = theme::kRadius - 1;
    drawKept({KeptLook::Kind::field, enabled, radius}, alignedToPixels(frame), endOf(radius), [&](const NSRect& r) {
        NSColor* ground = NSColor::textBackgroundColor();
        fill(r, radius, enabled ? Ref<NSColor>(ground) : faded(ground, kDisabledFace));
        NSColor* border = NSColor::systemColor(SystemColor::controlBorder);
        strokeRoundedInside(r, radius, enabled ? Ref<NSColor>(border) : faded(border, kDisabledFace));
    });
}

void drawCheckBox(const NSRect& box, const FaceState& s) {
    const NSRect r = alignedToPixels(box);
    drawFace(r, 4, s);
    if (s.on)
        drawCheckmark(NSInsetRect(r, r.size.width * 0.2, r.size.height * 0.2), markColor(s));
    else if (s.mixed) {
        const CGFloat thick = std::max(fineLine() * 2, r.size.height * 0.13);
        fill(alignedToPixels({{NSMinX(r) + r.size.width * 0.25, NSMidY(r) - thick / 2}, {r.size.width * 0.5, thick}}),
             thick / 2, markColor(s));
    }
}

void drawRadioButton(const NSRect& box, const FaceState& s) {
    const NSRect r = alignedToPixels(box);
    drawFace(r, r.size.width / 2, s);
    if (s.on) {
        const CGFloat d = r.size.width * 0.4;
        fill({{NSMidX(r) - d / 2, NSMidY(r) - d / 2}, {d, d}}, d / 2, markColor(s));
    }
}

void drawSliderTrack(const NSRect& track, const NSRect& filled, const FaceState& s) {
    const NSRect r = alignedToPixels(track);
    const CGFloat radius = std::min(r.size.width, r.size.height) / 2;
    fill(r, radius, faded(NSColor::labelColor(), s.enabled ? 0.16 : 0.08));
    const NSRect f = NSIntersectionRect(alignedToPixels(filled), r);
    if (NSIsEmptyRect(f)) return;
    NSColor* accent = s.active && s.enabled ? NSColor::controlAccentColor() : NSColor::knobColor();
    fill(f, radius, s.enabled ? Ref<NSColor>(accent) : faded(accent, kDisabledFace));
}

void drawSliderKnob(const NSRect& knob, const FaceState& s) {
    const CGFloat radius = std::min(knob.size.width, knob.size.height) / 2;
    // On a dark ground too the knob is what stands out.
    const bool dark = currentAppearance() == Appearance::dark;
    const Ref<NSColor> face = NSColor::colorWithCalibratedWhite_alpha(dark ? (s.enabled ? 0.84 : 0.42) : 1, 1);
    {
        const GraphicsStateScope saved;
        if (s.enabled) {
            auto shadow = make<NSShadow>();
            shadow->setShadowOffset({0, -1});
            shadow->setShadowBlurRadius(2);
            shadow->setShadowColor(NSColor::colorWithCalibratedWhite_alpha(0, 0.22));
            shadow->set();
        }
        fill(knob, radius, s.pressed ? mixed(face, 0.10, NSColor::blackColor()) : face);
    }
    strokeRoundedInside(knob, radius, faded(NSColor::controlDarkShadowColor(), s.enabled ? 0.7 : 0.4));
}

void drawScrollerKnob(const NSRect& knob, BOOL hovered) {
    fill(knob, std::min(knob.size.width, knob.size.height) / 2,
         faded(hovered ? NSColor::selectedKnobColor() : NSColor::knobColor(), hovered ? 0.95 : 0.75));
}

void drawScrollerSlot(const NSRect& slot, BOOL vertical, BOOL overDocument) {
    faded(NSColor::labelColor(), overDocument ? 0.06 : 0.045)->setFill();
    NSBezierPath::fillRect(slot);
    if (overDocument) return;
    NSRect edge = slot;
    (vertical ? edge.size.width : edge.size.height) = fineLine();
    faded(NSColor::labelColor(), 0.08)->setFill();
    NSBezierPath::fillRect(edge);
}

void drawGroupBox(const NSRect& frame) {
    const NSRect r = alignedToPixels(frame);
    fill(r, theme::kRadius, faded(NSColor::labelColor(), 0.035));
    strokeRoundedInside(r, theme::kRadius, NSColor::separatorColor());
}

void drawSeparator(const NSRect& frame) {
    const CGFloat line = fineLine();
    NSRect r = frame;
    if (r.size.width >= r.size.height) {
        r.origin.y = NSMidY(frame) - line / 2;
        r.size.height = line;
    } else {
        r.origin.x = NSMidX(frame) - line / 2;
        r.size.width = line;
    }
    NSColor::separatorColor()->setFill();
    NSBezierPath::fillRect(alignedToPixels(r));
}

void drawMenuBackground(const NSRect& frame) {
    const NSRect r = alignedToPixels(frame);
    fill(r, theme::kMenuRadius, NSColor::systemColor(SystemColor::menuBackground));
    strokeRoundedInside(r, theme::kMenuRadius, NSColor::systemColor(SystemColor::controlBorder));
}

void drawChevron(const NSRect& room, Chevron which, NSColor* color) {
    const CGFloat down = flippedContext() ? 1 : -1; // which way y runs as seen
    const auto stroke = [&](NSPoint a, NSPoint tip, NSPoint b) {
        auto p = NSBezierPath::bezierPath();
        p->moveToPoint(a);
        p->lineToPoint(tip);
        p->lineToPoint(b);
        p->setLineWidth(1.5);
        p->setLineCapStyle(NSRoundLineCapStyle);
        p->setLineJoinStyle(NSRoundLineJoinStyle);
        color->setStroke();
        p->stroke();
    };
    const CGFloat x = NSMidX(room), y = NSMidY(room), w = 3, h = 3;
    if (!std::isfinite(x) || !std::isfinite(y)) return;
    switch (which) {
    case Chevron::down:
        stroke({x - w, y - down * h / 2}, {x, y + down * h / 2}, {x + w, y - down * h / 2});
        break;
    case Chevron::up:
        stroke({x - w, y + down * h / 2}, {x, y - down * h / 2}, {x + w, y + down * h / 2});
        break;
    case Chevron::right:
        stroke({x - h / 2, y - w}, {x + h / 2, y}, {x - h / 2, y + w});
        break;
    case Chevron::upDown:
        stroke({x - w, y - down * 2}, {x, y - down * 5}, {x + w, y - down * 2});
        stroke({x - w, y + down * 2}, {x, y + down * 5}, {x + w, y + down * 2});
        break;
    }
}

void drawCheckmark(const NSRect& room, NSColor* color) {
    const CGFloat down = flippedContext() ? 1 : -1;
    const CGFloat w = room.size.width, h = room.size.height;
    if (!std::isfinite(NSMaxX(room)) || !std::isfinite(NSMaxY(room))) return;
    auto p = NSBezierPath::bezierPath();
    p->moveToPoint({NSMinX(room) + w * 0.08, NSMidY(room) + down * h * 0.06});
    p->lineToPoint({NSMinX(room) + w * 0.38, NSMidY(room) + down * h * 0.36});
    p->lineToPoint({NSMinX(room) + w * 0.94, NSMidY(room) - down * h * 0.36});
    p->setLineWidth(std::max(1.4, w * 0.19));
    p->setLineCapStyle(NSRoundLineCapStyle);
    p->setLineJoinStyle(NSRoundLineJoinStyle);
    color->setStroke();
    p->stroke();
}

} // namespace libvue

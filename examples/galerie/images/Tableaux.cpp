#include <images/Tableaux.h>

#include <cmath>
#include <initializer_list>

#include <libvue/images/NSBezierPathAMShading.h>
#include <libvue/platform/foundation/ScopeExit.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>

namespace galerie {

namespace {

/// They are drawn larger than they are shown, so that they are crisp on every screen.
constexpr CGFloat kFinesse = 2;

Ref<NSColor> teinte(unsigned rvb, CGFloat alpha = 1) {
    return NSColor::colorWithSRGBRed_green_blue_alpha((rvb >> 16) / 255.0, (rvb >> 8 & 255) / 255.0,
                                                      (rvb & 255) / 255.0, alpha);
}

/// A ridge from edge to edge, its heights in fractions of the size, closed down to `pied`.
Ref<NSBezierPath> crete(NSSize t, CGFloat pied, std::initializer_list<NSPoint> points) {
    auto p = NSBezierPath::bezierPath();
    p->moveToPoint({0, pied * t.height});
    for (const NSPoint& point : points)
        p->lineToPoint({point.x * t.width, point.y * t.height});
    p->lineToPoint({t.width, pied * t.height});
    p->closePath();
    return p;
}

void sapin(NSPoint pied, CGFloat haut) {
    const auto p = NSBezierPath::bezierPath();
    for (int etage = 0; etage < 3; ++etage) {
        const CGFloat bas = pied.y + haut * (0.08 + 0.26 * etage), demi = haut * (0.22 - 0.055 * etage);
        p->moveToPoint({pied.x - demi, bas});
        p->lineToPoint({pied.x + demi, bas});
        p->lineToPoint({pied.x, bas + haut * 0.42});
        p->closePath();
    }
    p->appendBezierPathWithRect({{pied.x - haut * 0.025, pied.y}, {haut * 0.05, haut * 0.12}});
    p->fill();
}

} // namespace

Ref<NSImage> paysage(NSSize taille) {
    const NSSize t{taille.width * kFinesse, taille.height * kFinesse};
    auto image = make<NSImage>(t);
    image->lockFocus();
    const ScopeExit fin([image, taille] {
        image->unlockFocus();
        image->setSize(taille);
    });
    const CGFloat eau = 0.34;
    const auto bande = [&](CGFloat bas, CGFloat haut) {
        return NSBezierPath::bezierPathWithRect({{0, bas * t.height}, {t.width, (haut - bas) * t.height}});
    };
    linearGradientFillWithStartColor_endColor(bande(eau, 0.62), teinte(0xFFD9A0), teinte(0xF2A68B));
    linearGradientFillWithStartColor_endColor(bande(0.62, 1), teinte(0xF2A68B), teinte(0x4A6FA5));
    const NSPoint soleil{0.64 * t.width, 0.55 * t.height};
    for (int halo = 5; halo >= 1; --halo) {
        const CGFloat r = t.height * (0.07 + 0.035 * halo);
        teinte(0xFFF1C9, 0.10)->setFill();
        NSBezierPath::bezierPathWithOvalInRect({{soleil.x - r, soleil.y - r}, {2 * r, 2 * r}})->fill();
    }
    const CGFloat rayon = t.height * 0.075;
    linearGradientFillWithStartColor_endColor(
        NSBezierPath::bezierPathWithOvalInRect({{soleil.x - rayon, soleil.y - rayon}, {2 * rayon, 2 * rayon}}),
        teinte(0xFFE3A3), teinte(0xFFF8E1));

    linearGradientFillWithStartColor_endColor(crete(t, eau,
                                                    {{0, 0.56},
                                                     {0.1, 0.64},
                                                     {0.2, 0.57},
                                                     {0.32, 0.72},
                                                     {0.45, 0.55},
                                                     {0.56, 0.5},
                                                     {0.7, 0.47},
                                                     {0.82, 0.6},
                                                     {0.92, 0.53},
                                                     {1, 0.62}}),
                                              teinte(0xD7A79B), teinte(0x7F7BA1));
    linearGradientFillWithStartColor_endColor(
        crete(t, eau,
              {{0, 0.5}, {0.12, 0.46}, {0.24, 0.53}, {0.4, 0.42}, {0.55, 0.4}, {0.74, 0.42}, {0.88, 0.52}, {1, 0.47}}),
        teinte(0x6E6486), teinte(0x4B4A70));

    linearGradientFillWithStartColor_endColor(bande(0, eau), teinte(0x2B3A5E), teinte(0xE8A98C));
    for (int i = 0; i < 11; ++i) {
        const CGFloat y = (eau - 0.015 - i * 0.028) * t.height,
                      demi = t.width * (0.035 + 0.009 * (i * 7 % 5) + 0.004 * i);
        teinte(0xFFF0CC, 0.5 - 0.035 * i)->setFill();
        NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(
            {{soleil.x - demi + (i * 5 % 3 - 1) * t.width * 0.012, y}, {2 * demi, t.height * 0.009}}, 2, 2)
            ->fill();
    }
    linearGradientFillWithStartColor_endColor(
        crete(t, 0, {{0, 0.2}, {0.1, 0.19}, {0.22, 0.13}, {0.36, 0.07}, {0.5, 0.03}, {0.62, 0}}), teinte(0x10182B),
        teinte(0x1E2A44));
    teinte(0x141D33)->setFill();
    sapin({0.06 * t.width, 0.17 * t.height}, 0.52 * t.height);
    sapin({0.15 * t.width, 0.14 * t.height}, 0.38 * t.height);
    sapin({0.235 * t.width, 0.1 * t.height}, 0.3 * t.height);
    sapin({0.335 * t.width, 0.055 * t.height}, 0.2 * t.height);
    return image;
}

Ref<NSImage> voilier(CGFloat cote) {
    const CGFloat c = cote * kFinesse;
    auto image = make<NSImage>(NSSize{c, c});
    image->lockFocus();
    const ScopeExit fin([image, cote] {
        image->unlockFocus();
        image->setSize({cote, cote});
    });
    const auto trace = [c](std::initializer_list<NSPoint> points, CGFloat alpha) {
        const auto p = NSBezierPath::bezierPath();
        bool premier = true;
        for (const NSPoint& point : points) {
            const NSPoint ici{point.x * c, point.y * c};
            if (premier)
                p->moveToPoint(ici);
            else
                p->lineToPoint(ici);
            premier = false;
        }
        p->closePath();
        teinte(0x7C8AA5, alpha)->setFill();
        p->fill();
    };
    trace({{0.52, 0.32}, {0.52, 0.94}, {0.9, 0.32}}, 1);
    trace({{0.46, 0.32}, {0.46, 0.82}, {0.16, 0.32}}, 0.55);
    const auto coque = NSBezierPath::bezierPath();
    coque->moveToPoint({0.08 * c, 0.26 * c});
    coque->lineToPoint({0.94 * c, 0.26 * c});
    coque->curveToPoint_controlPoint1_controlPoint2({0.7 * c, 0.08 * c}, {0.9 * c, 0.15 * c}, {0.82 * c, 0.08 * c});
    coque->lineToPoint({0.28 * c, 0.08 * c});
    coque->curveToPoint_controlPoint1_controlPoint2({0.08 * c, 0.26 * c}, {0.18 * c, 0.08 * c}, {0.12 * c, 0.15 * c});
    coque->closePath();
    teinte(0x7C8AA5)->setFill();
    coque->fill();
    return image;
}

} // namespace galerie

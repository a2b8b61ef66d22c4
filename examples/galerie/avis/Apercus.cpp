#include <avis/Apercus.h>

#include <algorithm>
#include <cmath>

#include <libvue/images/NSBezierPathAMShading.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSAffineTransform.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/Palette.h>

namespace galerie {

namespace {

constexpr CGFloat kLargeur = 256, kHauteur = 152, kEcart = 16, kLegende = 20, kRayon = 10;
constexpr int kColonnes = 2;

/// Drawn at twice its size, so that it is crisp at every scale.
template <class F> Ref<NSImage> icone(F trace) {
    auto image = make<NSImage>(NSSize{144, 144});
    image->lockFocus();
    NSColor::whiteColor()->set();
    const auto p = NSBezierPath::bezierPath();
    p->setLineWidth(10);
    p->setLineCapStyle(NSRoundLineCapStyle);
    p->setLineJoinStyle(NSRoundLineJoinStyle);
    trace(*p);
    p->stroke();
    image->unlockFocus();
    image->setSize({72, 72});
    return image;
}

} // namespace

Ref<NSImage> iconeCoche() {
    return icone([](NSBezierPath& p) {
        p.appendBezierPathWithOvalInRect({{17, 17}, {110, 110}});
        p.moveToPoint({46, 72});
        p.lineToPoint({65, 52});
        p.lineToPoint({98, 94});
    });
}

Ref<NSImage> iconeLoupe() {
    return icone([](NSBezierPath& p) {
        p.appendBezierPathWithOvalInRect({{22, 48}, {74, 74}});
        p.moveToPoint({86, 58});
        p.lineToPoint({122, 22});
    });
}

Ref<NSImage> iconeFeuille() {
    return icone([](NSBezierPath& p) {
        p.appendBezierPathWithRoundedRect_xRadius_yRadius({{32, 17}, {80, 110}}, 10, 10);
        for (const CGFloat y : {98.0, 74.0, 50.0}) {
            p.moveToPoint({52, y});
            p.lineToPoint({y > 60 ? 92.0 : 74.0, y});
        }
    });
}

Apercus::Apercus() : NSView(NSZeroRect) {}

void Apercus::ajoute(NSString* legende, NSString* titre, NSString* texte, NSImage* icone) {
    Avis a;
    a.legende = legende;
    a.panneau = make<NSPanel>(NSMakeRect(0, 0, kLargeur, kHauteur), NSBorderlessWindowMask);
    a.vue = make<KVueTranslucide>(NSMakeRect(0, 0, kLargeur, kHauteur));
    a.panneau->setContentView(a.vue);
    a.vue->setTitle(titre);
    a.vue->setText(texte);
    a.vue->setIcon(icone);
    a.vue->sizeToFit();
    avis_.push_back(std::move(a));
}

void Apercus::drawRect(const NSRect&) {
    const NSRect b = bounds();
    const auto feuille = NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(b, kRayon, kRayon);
    linearGradientFillWithStartColor_endColor(feuille, NSColor::colorWithSRGBRed_green_blue_alpha(0.27, 0.36, 0.52, 1),
                                              NSColor::colorWithSRGBRed_green_blue_alpha(0.42, 0.56, 0.66, 1));

    // Where two columns do not fit at their size, they are drawn smaller.
    const CGFloat voulu = kColonnes * kLargeur + (kColonnes + 1) * kEcart;
    const CGFloat echelle = std::min(1.0, (b.size.width - (kColonnes + 1) * kEcart) / (kColonnes * kLargeur));
    if (!(echelle > 0)) return;
    const CGFloat largeur = kLargeur * echelle;
    const CGFloat marge = echelle < 1 ? kEcart : std::floor((b.size.width - voulu) / 2) + kEcart;
    const auto attributs = NSMutableDictionary::dictionary();
    attributs->setObject_forKey(NSFont::systemFontOfSize(NSFont::smallSystemFontSize()), NSFontAttributeName);
    attributs->setObject_forKey(NSColor::colorWithCalibratedWhite_alpha(1, 0.85), NSForegroundColorAttributeName);
    CGFloat y = kEcart;
    for (std::size_t i = 0; i < avis_.size(); i += static_cast<std::size_t>(kColonnes)) {
        CGFloat haut = 0;
        const std::size_t fin = std::min(avis_.size(), i + static_cast<std::size_t>(kColonnes));
        for (std::size_t k = i; k < fin; ++k)
            haut = std::max(haut, avis_[k].vue->frame().size.height * echelle);
        for (std::size_t k = i; k < fin; ++k) {
            const Avis& a = avis_[k];
            const CGFloat x = marge + static_cast<CGFloat>(k - i) * (largeur + kEcart);
            drawAtPoint_withAttributes(a.legende, {x + 4, y}, attributs);
            // The view has y upward, from its lower edge.
            const CGFloat h = a.vue->frame().size.height;
            NSGraphicsContext::saveGraphicsState();
            const auto place = NSAffineTransform::transform();
            place->translateXBy_yBy(x, y + kLegende);
            place->scaleBy(echelle);
            place->concat();
            NSGraphicsContext* c = NSGraphicsContext::currentContext();
            a.vue->displayRectIgnoringOpacity_inContext({{0, 0}, {kLargeur, h}}, c);
            NSGraphicsContext::restoreGraphicsState();
        }
        y += kLegende + std::ceil(haut) + kEcart;
    }
}

AccessibilityDescription Apercus::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"image"_ns;
    d.label = u"Les avis, tels qu’ils se montrent"_ns;
    return d;
}

} // namespace galerie

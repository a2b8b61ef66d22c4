#include <images/CaseImage.h>

#include <cmath>

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/NSTextAttributes.h>

namespace galerie {

namespace {

constexpr CGFloat kLegende = 19, kRayon = 6, kCarreau = 8;

} // namespace

CaseImage::CaseImage(NSSize taille, NSString* legende)
    : NSView({NSZeroPoint, {taille.width, taille.height + kLegende}}), legende_(legende) {}

void CaseImage::setLegende(NSString* legende) {
    legende_ = legende;
    setNeedsDisplay(YES);
}

NSRect CaseImage::cadre() const {
    const NSRect b = bounds();
    return {{0, kLegende}, {b.size.width, b.size.height - kLegende}};
}

void CaseImage::drawRect(const NSRect&) {
    const NSRect c = cadre();
    {
        const GraphicsStateScope etat;
        NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(c, kRayon, kRayon)->addClip();
        NSColor::controlBackgroundColor()->setFill();
        NSRectFill(c);
        NSColor::tertiaryLabelColor()->colorWithAlphaComponent(0.16)->setFill();
        for (int ligne = 0; ligne * kCarreau < c.size.height; ++ligne)
            for (int colonne = ligne % 2; colonne * kCarreau < c.size.width; colonne += 2)
                NSRectFillUsingOperation(
                    {{c.origin.x + colonne * kCarreau, c.origin.y + ligne * kCarreau}, {kCarreau, kCarreau}},
                    NSCompositeSourceOver);
        if (dessin) dessin(c);
        if (const Ref<NSImage> i = image ? image() : nullptr) {
            const NSSize t = i->size();
            i->drawInRect({{std::floor(NSMidX(c) - t.width / 2), std::floor(NSMidY(c) - t.height / 2)}, t});
        }
    }
    NSColor::separatorColor()->setStroke();
    NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(NSInsetRect(c, 0.5, 0.5), kRayon - 0.5, kRayon - 0.5)
        ->stroke();
    const auto attributs = NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSFontAttributeName, NSFont::systemFontOfSize(NSFont::smallSystemFontSize())},
         {NSForegroundColorAttributeName, NSColor::secondaryLabelColor()}});
    const NSSize t = sizeWithAttributes(legende_, attributs);
    drawAtPoint_withAttributes(legende_, {std::floor((bounds().size.width - t.width) / 2), 0}, attributs);
}

AccessibilityDescription CaseImage::accessibilityDescription() const {
    AccessibilityDescription d;
    d.role = u"image"_ns;
    d.label = legende_;
    return d;
}

} // namespace galerie

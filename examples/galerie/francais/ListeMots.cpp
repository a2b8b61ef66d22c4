#include <francais/ListeMots.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/foundation/NSCharacterSet.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/NSTextAttributes.h>

namespace galerie {

namespace {

constexpr CGFloat kPas = 20, kBord = 8;

} // namespace

ListeMots::ListeMots(CGFloat largeur, SystemColor encre) : NSView(NSMakeRect(0, 0, largeur, kPas)), encre_(encre) {}

void ListeMots::montre(NSArray* mots) {
    mots_ = NSArray::arrayWithArray(mots);
    const CGFloat visible = enclosingScrollView() ? enclosingScrollView()->contentSize().height : 0;
    setFrameSize({frame().size.width, std::max(visible, kPas * static_cast<CGFloat>(mots_->count()))});
    setNeedsDisplay(YES);
}

void ListeMots::drawRect(const NSRect& r) {
    const auto fonds = NSColor::controlAlternatingRowBackgroundColors();
    const auto attributs = NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSFontAttributeName, NSFont::systemFontOfSize(NSFont::systemFontSize())},
         {NSForegroundColorAttributeName, NSColor::systemColor(encre_)}});
    const auto premiere = static_cast<NSUInteger>(std::max(0.0, std::floor(NSMinY(r) / kPas)));
    const auto derniere = static_cast<NSUInteger>(std::max(0.0, std::ceil(NSMaxY(r) / kPas)));
    for (NSUInteger i = premiere; i < derniere; ++i) {
        const NSRect rangee = NSMakeRect(0, static_cast<CGFloat>(i) * kPas, bounds().size.width, kPas);
        fonds->at<NSColor>(i % 2)->setFill();
        NSRectFill(rangee);
        if (i >= mots_->count()) continue;
        const auto* mot = mots_->at<NSString>(i);
        const NSSize taille = sizeWithAttributes(mot, attributs);
        drawAtPoint_withAttributes(mot, {kBord, std::floor(NSMidY(rangee) - taille.height / 2)}, attributs);
    }
}

AccessibilityDescription ListeMots::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"list"_ns;
    d.label = mots_->componentsJoinedByString(u", "_ns);
    return d;
}

Ref<NSArray> motsDeLaLigne(const NSString* ligne) {
    const auto separateurs = NSMutableCharacterSet::characterSetWithCharactersInString(u",;"_ns);
    separateurs->formUnionWithCharacterSet(NSCharacterSet::whitespaceAndNewlineCharacterSet());
    const Ref<NSArray> morceaux = ligne->componentsSeparatedByCharactersInSet(separateurs);
    return morceaux->filteredArray([](NSObject* o) { return as<NSString>(o)->length() > 0; });
}

} // namespace galerie

#include <libvue/controls/KVueTranslucide.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/NSLayoutManager.h>
#include <libvue/platform/graphics/NSParagraphStyle.h>
#include <libvue/platform/graphics/NSShadow.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/NSTextContainer.h>
#include <libvue/platform/graphics/NSTextStorage.h>

namespace libvue {

namespace {

const ClassRegistration<KVueTranslucide> enregistrement;

constexpr CGFloat kRayon = 20, kMarge = 12, kIcone = 72;
/// Of single precision, as are the steps of the title below: what is drawn hangs on their last digits.
constexpr CGFloat kAlphaFond = static_cast<CGFloat>(0.15F);

constexpr CGFloat kIconeAvecTexte = 66, kIconeSansTexte = 48;
constexpr CGFloat kTitreAvecTexte = 36, kTitreSansTexte = 18;
/// What a notice without an icon, or without a text, is lower by.
constexpr CGFloat kHauteurIcone = 76, kHauteurTexte = 18;

constexpr CGFloat kTailleTitre = 20, kPas = static_cast<CGFloat>(1.9F), kPlusPetite = static_cast<CGFloat>(12.9F);
constexpr CGFloat kMontee = 0.5; ///< of the title at each step

constexpr CGFloat kTailleTexte = 14, kTailleLongTexte = 12, kHauteurBoite = 26, kBasTexte = 4;
constexpr NSInteger kLignesLongTexte = 5;
constexpr CGFloat kHauteurMinimale = 20;

bool tropLarge(NSSize titre, CGFloat largeur) { return titre.width > largeur - titre.height * 0.5; }

} // namespace

void KVueTranslucide::describe(ClassDescription<KVueTranslucide, NSView>& c) {
    c.answers<&KVueTranslucide::sizeToFit>("sizeToFit");
}

KVueTranslucide::KVueTranslucide(const NSRect& frame)
    : NSView(frame),
      textColor(NSColor::whiteColor()),
      backgroundColor(NSColor::blackColor()),
      layoutManager(make<NSLayoutManager>()),
      origHeight(frame.size.height) {}

KVueTranslucide::~KVueTranslucide() = default;

void KVueTranslucide::setIcon(NSImage* image) {
    icon = image;
    setNeedsDisplay(YES);
}

void KVueTranslucide::setTitle(const NSString* string) {
    title = string ? NSString::stringWithString(string) : Ref<NSString>();
    setNeedsDisplay(YES);
}

void KVueTranslucide::setText(const NSString* string) {
    text = string ? NSString::stringWithString(string) : Ref<NSString>();
    setNeedsDisplay(YES);
}

bool KVueTranslucide::hasText() const { return text && text->length() > 0; }

void KVueTranslucide::sizeToFit() {
    CGFloat height = origHeight;
    if (!icon) height -= kHauteurIcone;
    if (!hasText()) height -= kHauteurTexte;
    setFrameSize({frame().size.width, height});
}

CGFloat KVueTranslucide::descriptionHeight_attributes_width(const NSString* string, const NSDictionary* attributes,
                                                            CGFloat width) {
    static constexpr ConstantString kVide{u""};
    const Ref<NSTextStorage> storage =
        NSTextStorage::initWithString_attributes(string ? string : kVide.get(), attributes);
    const Ref<NSTextContainer> container = make<NSTextContainer>(NSSize{width, std::numeric_limits<CGFloat>::max()});
    container->setLineFragmentPadding(0);
    // In front: the containers of earlier measures stay, and the first one takes all the text.
    layoutManager->insertTextContainer_atIndex(container, 0);
    storage->addLayoutManager(layoutManager);
    (void)layoutManager->glyphRangeForTextContainer(container);
    return std::max(kHauteurMinimale, layoutManager->usedRectForTextContainer(container).size.height);
}

void KVueTranslucide::ajusteTitre(NSMutableDictionary* attributs, NSMutableParagraphStyle* style, CGFloat largeur,
                                  NSSize& taille, CGFloat& y) const {
    CGFloat corps = kTailleTitre, montee = 0;
    while (corps >= kPlusPetite) {
        const CGFloat essai = corps - kPas;
        attributs->setObject_forKey(NSFont::boldSystemFontOfSize(essai), NSFontAttributeName.get());
        montee += kMontee;
        taille = sizeWithAttributes(title, attributs);
        if (!tropLarge(taille, largeur)) break;
        corps = essai;
    }
    y += std::ceil(montee);
    // The description is set in the same style, and is cut with the title.
    if (corps < kPlusPetite) style->setLineBreakMode(NSLineBreakByTruncatingTail);
}

void KVueTranslucide::drawRect(const NSRect&) {
    backgroundColor->colorWithAlphaComponent(kAlphaFond)->set();
    NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(bounds(), kRayon, kRayon)->fill();

    const NSView* contenu = window() ? window()->contentView() : nullptr;
    const CGFloat largeurContenu = contenu ? contenu->frame().size.width : 0;
    const CGFloat largeur = largeurContenu - 2 * kMarge;
    const bool avecTexte = hasText();
    CGFloat yTitre = avecTexte ? kTitreAvecTexte : kTitreSansTexte;

    const auto ombre = make<NSShadow>();
    ombre->setShadowOffset({0, -2});
    ombre->setShadowBlurRadius(3);
    ombre->setShadowColor(NSColor::blackColor());
    const Ref<NSMutableParagraphStyle> style = NSParagraphStyle::defaultParagraphStyle()->mutableCopy();
    style->setAlignment(NSCenterTextAlignment);
    const auto attributs = NSMutableDictionary::dictionary();
    attributs->setObject_forKey(textColor, NSForegroundColorAttributeName.get());
    attributs->setObject_forKey(style, NSParagraphStyleAttributeName.get());
    attributs->setObject_forKey(NSFont::boldSystemFontOfSize(kTailleTitre), NSFontAttributeName.get());
    attributs->setObject_forKey(ombre, NSShadowAttributeName.get());

    NSSize taille = sizeWithAttributes(title, attributs);
    if (tropLarge(taille, largeur)) ajusteTitre(attributs, style, largeur, taille, yTitre);
    drawInRect_withAttributes(title, {{kMarge, yTitre}, {largeur, taille.height}}, attributs);

    if (avecTexte) {
        const auto police = NSFont::systemFontOfSize(kTailleTexte);
        attributs->setObject_forKey(police, NSFontAttributeName.get());
        const CGFloat hauteur = descriptionHeight_attributes_width(text, attributs, largeur);
        const auto lignes = static_cast<NSInteger>(hauteur / layoutManager->defaultLineHeightForFont(police));
        if (lignes >= kLignesLongTexte)
            attributs->setObject_forKey(NSFont::systemFontOfSize(kTailleLongTexte), NSFontAttributeName.get());
        drawInRect_withAttributes(text, {{kMarge, kBasTexte}, {largeur, kHauteurBoite}}, attributs);
    }

    if (icon) {
        icon->setFlipped(NO);
        icon->drawInRect_fromRect_operation_fraction(
            {{std::rint((largeurContenu - kIcone) * 0.5), avecTexte ? kIconeAvecTexte : kIconeSansTexte},
             {kIcone, kIcone}},
            NSZeroRect, NSCompositeSourceOver, 1);
    }
}

Ref<NSString> KVueTranslucide::annonce() const {
    if (!hasText()) return title;
    if (!title || title->length() == 0) return text;
    return NSString::stringWithFormat(u"%@\n%@"_ns, title.get(), text.get());
}

AccessibilityDescription KVueTranslucide::accessibilityDescription() const {
    AccessibilityDescription d;
    d.role = u"notification"_ns;
    NSString* given = accessibilityLabel();
    d.label = given ? Ref<NSString>(given) : title;
    d.value = text;
    return d;
}

} // namespace libvue

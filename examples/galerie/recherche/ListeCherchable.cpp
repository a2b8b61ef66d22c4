#include <recherche/ListeCherchable.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/Palette.h>
#include <libvue/search/TesteCandidatRecherche.h>
#include <recherche/Occurrences.h>

namespace galerie {

namespace {

constexpr CGFloat kPas = 22, kBord = 10;

} // namespace

ListeCherchable::ListeCherchable(CGFloat largeur, NSArray* mots)
    : ClientRecherche(largeur), mots_(mots), trouves_(mots->count(), false) {
    setFrameSize({largeur, kPas * static_cast<CGFloat>(mots->count())});
}

ListeCherchable::~ListeCherchable() = default;

NSRect ListeCherchable::rangee(NSInteger rang) const {
    return NSMakeRect(0, static_cast<CGFloat>(rang) * kPas, bounds().size.width, kPas);
}

void ListeCherchable::setChoisi(NSInteger rang) {
    choisi_ = std::clamp<NSInteger>(rang, -1, static_cast<NSInteger>(mots_->count()) - 1);
    if (choisi_ >= 0) montre(rangee(choisi_));
    setNeedsDisplay(YES);
}

Ref<NSString> ListeCherchable::donneSelection() {
    return choisi_ < 0 ? nullptr : mots_->at<NSString>(static_cast<NSUInteger>(choisi_));
}

ClientRecherche::Bilan ListeCherchable::repond(const Demande& d) {
    std::vector<NSRange> rangs;
    for (NSUInteger i = 0; i < mots_->count(); ++i) {
        trouves_[i] = testeCandidatRechercheParJetons(mots_->at<NSString>(i), d.texte, d.respecterCasse, d.type);
        if (trouves_[i]) rangs.push_back({i, 1});
    }
    const NSRange ici = choisi_ < 0 ? NSRange{0, 0} : NSRange{static_cast<NSUInteger>(choisi_), 1};
    const auto suivant = occurrenceSuivante(rangs, ici, d.avant, d.boucle);
    if (suivant) setChoisi(static_cast<NSInteger>(rangs[*suivant].location));
    return {rangs.size(), suivant ? *suivant + 1 : 0};
}

void ListeCherchable::drawRect(const NSRect& r) {
    const auto fonds = NSColor::controlAlternatingRowBackgroundColors();
    const auto police = NSFont::systemFontOfSize(NSFont::systemFontSize());
    for (NSInteger i = 0; i < static_cast<NSInteger>(mots_->count()); ++i) {
        const NSRect place = rangee(i);
        if (NSIsEmptyRect(NSIntersectionRect(place, r))) continue;
        const auto rang = static_cast<NSUInteger>(i);
        const bool choisi = i == choisi_;
        fonds->at<NSColor>(rang % 2)->setFill();
        NSRectFill(place);
        if (trouves_[rang] || choisi) {
            const Ref<NSColor> couleur = !choisi    ? fondTrouve()
                                         : active() ? Ref<NSColor>(NSColor::systemColor(SystemColor::accent))
                                                    : fondCourant();
            couleur->setFill();
            NSRectFillUsingOperation(place, NSCompositeSourceOver);
        }
        NSColor* encre = choisi && active() ? NSColor::alternateSelectedControlTextColor() : NSColor::textColor();
        const auto attributs = NSDictionary::dictionaryWithObjectsAndKeys(
            {{NSFontAttributeName, police.get()}, {NSForegroundColorAttributeName, encre}});
        const auto* mot = mots_->at<NSString>(rang);
        const NSSize taille = sizeWithAttributes(mot, attributs);
        drawAtPoint_withAttributes(mot, {kBord, std::floor(NSMidY(place) - taille.height / 2)}, attributs);
    }
}

void ListeCherchable::mouseDown(NSEvent* e) {
    const NSPoint p = convertPoint_fromView(e->locationInWindow(), nullptr);
    setChoisi(static_cast<NSInteger>(std::floor(p.y / kPas)));
}

void ListeCherchable::keyDown(NSEvent* e) {
    const auto* touches = e->charactersIgnoringModifiers();
    const unichar touche = touches && touches->length() ? touches->unit(0) : 0;
    if (touche == NSDownArrowFunctionKey)
        setChoisi(choisi_ + 1);
    else if (touche == NSUpArrowFunctionKey)
        setChoisi(std::max<NSInteger>(0, choisi_ - 1));
    else
        ClientRecherche::keyDown(e);
}

AccessibilityDescription ListeCherchable::accessibilityDescription() const {
    AccessibilityDescription d = ClientRecherche::accessibilityDescription();
    d.role = u"list"_ns;
    if (choisi_ >= 0) d.value = mots_->at<NSString>(static_cast<NSUInteger>(choisi_));
    return d;
}

} // namespace galerie

#include <francais/BandeauMots.h>

#include <cmath>

#include <Composition.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/NSTextAttributes.h>
#include <libvue/platform/graphics/Palette.h>

namespace galerie {

namespace {

constexpr CGFloat kLigne = 26, kPiece = 22, kBord = 4, kEntre = 2, kRayon = 4;

/// Null for what has no colour.
Ref<NSColor> couleurDeRegle(RegleMot regle) {
    switch (regle) {
    case RegleMot::mot:
    case RegleMot::apostropheFinale:
        return NSColor::controlAccentColor()->colorWithAlphaComponent(0.26);
    case RegleMot::elision:
        return NSColor::systemColor(SystemColor::warning)->colorWithAlphaComponent(0.32);
    case RegleMot::hui:
        return NSColor::systemColor(SystemColor::success)->colorWithAlphaComponent(0.32);
    case RegleMot::ponctuation:
        return NSColor::secondaryLabelColor()->colorWithAlphaComponent(0.16);
    case RegleMot::blancs:
        return nullptr;
    }
    return nullptr;
}

Ref<NSDictionary> attributs(NSColor* couleur) {
    return NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSFontAttributeName, NSFont::systemFontOfSize(NSFont::systemFontSize())},
         {NSForegroundColorAttributeName, couleur}});
}

class Couleur : public NSView {
public:
    static void describe(ClassDescription<Couleur, NSView>&) {}
    explicit Couleur(RegleMot regle) : NSView(NSMakeRect(0, 0, 12, 12)), regle_(regle) {}
    void drawRect(const NSRect&) override {
        couleurDeRegle(regle_)->setFill();
        NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(bounds(), 3, 3)->fill();
    }

private:
    RegleMot regle_;
};

Ref<NSString> raison(RegleMot regle) {
    switch (regle) {
    case RegleMot::ponctuation:
        return u"Un signe seul\u00A0: ni lettre, ni chiffre, ni trait d’union."_ns;
    case RegleMot::mot:
        return u"Un mot\u00A0: lettres, chiffres et traits d’union."_ns;
    case RegleMot::blancs:
        return u"Des blancs qui se suivent."_ns;
    case RegleMot::apostropheFinale:
        return u"Aucun mot ne suit l’apostrophe\u00A0: elle reste dehors."_ns;
    case RegleMot::elision:
        return u"Une élision\u00A0: l’apostrophe va avec ce qu’elle termine."_ns;
    case RegleMot::hui:
        return u"«\u00A0hui\u00A0» n’est pas un mot à part\u00A0: le tout est pris."_ns;
    }
    return u""_ns;
}

} // namespace

BandeauMots::BandeauMots(const NSRect& cadre) : NSView(cadre), texte_(NSString::string()) {}

void BandeauMots::montre(NSString* texte, NSRange selection) {
    if (!texte_->isEqualToString(texte)) {
        texte_ = NSString::stringWithString(texte);
        coupe();
    }
    selection_ = selection;
    setNeedsDisplay(YES);
}

void BandeauMots::coupe() {
    morceaux_.clear();
    const auto mesure = attributs(NSColor::labelColor());
    for (NSUInteger i = 0; i < texte_->length();) {
        const ClicMot c = clicSurMot(texte_, i);
        const bool blancs = c.regle == RegleMot::blancs;
        Ref<NSString> t =
            blancs ? NSString::string()->stringByPaddingToLength_withString_startingAtIndex(c.plage.length, u"·"_ns, 0)
                   : texte_->substringWithRange(c.plage);
        const NSSize taille = sizeWithAttributes(t, mesure);
        morceaux_.push_back({c, t, NSMakeRect(0, 0, std::ceil(taille.width) + 2 * kBord, kPiece)});
        i = NSMaxRange(c.plage);
    }
    dispose();
}

void BandeauMots::dispose() {
    CGFloat x = 0, y = 0;
    for (Morceau& m : morceaux_) {
        if (x > 0 && x + m.cadre.size.width > bounds().size.width) {
            x = 0;
            y += kLigne;
        }
        m.cadre.origin = {x, y};
        x += m.cadre.size.width + kEntre;
    }
}

void BandeauMots::setFrameSize(const NSSize& taille) {
    NSView::setFrameSize(taille);
    dispose();
    setNeedsDisplay(YES);
}

void BandeauMots::drawRect(const NSRect&) {
    const auto encre = attributs(NSColor::labelColor()), pale = attributs(NSColor::tertiaryLabelColor());
    for (const Morceau& m : morceaux_) {
        const NSRect r = m.cadre;
        if (NSMaxY(r) > bounds().size.height) return;
        const NSRange p = m.clic.plage;
        const bool choisi =
            selection_.length > 0 && p.location < NSMaxRange(selection_) && NSMaxRange(p) > selection_.location;
        const auto forme =
            NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(NSInsetRect(r, 0.5, 0.5), kRayon, kRayon);
        if (const auto couleur = couleurDeRegle(m.clic.regle)) {
            couleur->setFill();
            forme->fill();
        }
        if (choisi) {
            NSColor::controlAccentColor()->setStroke();
            forme->setLineWidth(1.5);
            forme->stroke();
        }
        const auto& avec = m.clic.regle == RegleMot::blancs ? pale : encre;
        const NSSize taille = sizeWithAttributes(m.texte, avec);
        drawAtPoint_withAttributes(m.texte, {r.origin.x + kBord, std::floor(NSMidY(r) - taille.height / 2)}, avec);
    }
}

void BandeauMots::mouseDown(NSEvent* e) {
    const NSPoint p = convertPoint_fromView(e->locationInWindow(), nullptr);
    for (const Morceau& m : morceaux_)
        if (NSPointInRect(p, m.cadre)) {
            if (surClic) surClic(m.clic.plage.location);
            return;
        }
}

AccessibilityDescription BandeauMots::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"group"_ns;
    d.label = u"Découpage en mots"_ns;
    return d;
}

Ref<NSView> BandeauMots::legendeDesCouleurs() {
    std::vector<Ref<NSView>> vues;
    const auto ajoute = [&](RegleMot regle, NSString* nom) {
        vues.push_back(make<Couleur>(regle));
        vues.push_back(legende(nom));
    };
    ajoute(RegleMot::mot, u"mot  "_ns);
    ajoute(RegleMot::elision, u"élision  "_ns);
    ajoute(RegleMot::hui, u"mot en «\u00A0hui\u00A0»  "_ns);
    ajoute(RegleMot::ponctuation, u"signe"_ns);
    return rangee(vues, 5);
}

Explication explique(const NSString* texte, NSRange selection) {
    const auto cite = [&](NSRange r) { return texte->substringWithRange(r); };
    const auto nombre = [](NSUInteger n) { return static_cast<unsigned long>(n); };
    if (NSMaxRange(selection) > texte->length()) return {u""_ns, u""_ns};
    if (selection.length > 0) {
        const ClicMot c = clicSurMot(texte, selection.location);
        auto quoi = NSString::stringWithFormat(u"«\u00A0%@\u00A0», de %lu à %lu"_ns, cite(selection).get(),
                                               nombre(selection.location), nombre(NSMaxRange(selection)));
        return {quoi, c.plage == selection ? raison(c.regle)
                                           : u"Une sélection libre, qui n’est pas celle d’un double-clic."_ns};
    }
    const NSUInteger ici = selection.location;
    const NSUInteger apres = motSuivant(texte, ici), avant = motPrecedent(texte, ici);
    auto quoi = NSString::stringWithFormat(u"Le curseur est en %lu."_ns, nombre(ici));
    auto pourquoi = NSString::stringWithFormat(u"Ctrl+← mène en %lu, Ctrl+→ en %lu, par-dessus «\u00A0%@\u00A0»."_ns,
                                               nombre(avant), nombre(apres), cite({ici, apres - ici}).get());
    if (apres == ici) pourquoi = NSString::stringWithFormat(u"Ctrl+← mène en %lu."_ns, nombre(avant));
    return {quoi, pourquoi};
}

} // namespace galerie

#include <json/ArbreJson.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSNull.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/NSTextAttributes.h>
#include <libvue/platform/graphics/Palette.h>

namespace galerie {

namespace {

constexpr CGFloat kRangee = 21, kHaut = 6, kMarge = 12, kNiveau = 16, kTriangle = 14, kRayon = 4;
constexpr NSUInteger kPlusDeLignes = 20000, kPlusDeTexte = 200;

Ref<NSFont> police() { return NSFont::userFixedPitchFontOfSize(12); }

Ref<NSDictionary> attributs(NSFont* font, NSColor* couleur) {
    return NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSFontAttributeName, font}, {NSForegroundColorAttributeName, couleur}});
}

/// One line of a text: control characters are shown as they are escaped, what is long is cut.
Ref<NSString> enUneLigne(const NSString* s) {
    std::u16string sortie;
    for (NSUInteger i = 0; i < s->length() && i < kPlusDeTexte; ++i) {
        const unichar c = s->characterAtIndex(i);
        if (c >= 0x20)
            sortie += c;
        else if (c >= 8 && c <= 13 && c != 11)
            (sortie += u'\\') += u"btn?fr"[c - 8];
        else
            (sortie += u"\\u00") += NSString::stringWithFormat(u"%02x"_ns, static_cast<unsigned>(c))->utf16();
    }
    if (s->length() > kPlusDeTexte) sortie += u'…';
    return NSString::from(sortie);
}

Ref<NSString> compte(NSUInteger n, const char16_t* un, const char16_t* plusieurs) {
    return NSString::stringWithFormat(u"%lu %@"_ns, n, NSString::from(n < 2 ? un : plusieurs).get());
}

NSColor* couleurDe(SystemColor role) { return NSColor::systemColor(role); }

} // namespace

ArbreJson::ArbreJson() {
    setFocusRingType(NSFocusRingTypeNone);
    setAccessibilityLabel(u"Arbre des valeurs"_ns);
}

// Lines.

void ArbreJson::ajoute(NSObject* valeur, NSUInteger niveau, NSString* cle) {
    Ligne l{Genre::nul, niveau, cle ? enUneLigne(cle) : Ref<NSString>(), u"null"_ns};
    if (auto* d = as<NSDictionary>(valeur)) {
        l.genre = Genre::objet;
        l.texte = NSString::stringWithFormat(u"objet · %@"_ns, compte(d->count(), u"clé", u"clés").get());
    } else if (auto* a = as<NSArray>(valeur)) {
        l.genre = Genre::tableau;
        l.texte = NSString::stringWithFormat(u"tableau · %@"_ns, compte(a->count(), u"valeur", u"valeurs").get());
    } else if (auto* s = as<NSString>(valeur)) {
        l.genre = Genre::texte;
        l.texte = NSString::stringWithFormat(u"«\u00A0%@\u00A0»"_ns, enUneLigne(s).get());
    } else if (auto* n = as<NSNumber>(valeur)) {
        l.genre = n->isBoolean() ? Genre::logique : Genre::nombre;
        l.texte = n->isBoolean() ? (n->boolValue() ? u"true"_ns : u"false"_ns) : n->stringValue();
    }
    lignes_.push_back(l);
}

void ArbreJson::montreValeur(NSObject* valeur) {
    lignes_.clear();
    // A container whose elements are being listed, and which comes next.
    struct Ouvert {
        NSUInteger ligne;
        Ref<NSArray> cles, valeurs;
        NSUInteger suivant = 0;
    };
    std::vector<Ouvert> pile;
    const auto entre = [&](NSObject* v, NSString* cle) {
        ajoute(v, pile.size(), cle);
        lignes_.back().fin = lignes_.size();
        if (auto* d = as<NSDictionary>(v)) {
            const auto cles = d->allKeys(), valeurs = d->allValues();
            pile.push_back({lignes_.size() - 1, cles, valeurs});
        } else if (auto* a = as<NSArray>(v))
            pile.push_back({lignes_.size() - 1, nullptr, Ref<NSArray>(a)});
    };
    entre(valeur, nullptr);
    while (!pile.empty()) {
        Ouvert& o = pile.back();
        const bool trop = lignes_.size() >= kPlusDeLignes;
        if (trop || o.suivant == o.valeurs->count()) {
            lignes_[o.ligne].fin = lignes_.size();
            pile.pop_back();
            continue;
        }
        const NSUInteger i = o.suivant++;
        NSString* cle = o.cles ? o.cles->at<NSString>(i) : nullptr;
        entre(o.valeurs->objectAtIndex(i), cle);
    }
    if (lignes_.size() >= kPlusDeLignes)
        lignes_.push_back({Genre::suite, 0, nullptr, u"la suite n’est pas montrée"_ns, lignes_.size() + 1});
    recompte();
}

void ArbreJson::montreErreurs(NSArray* erreurs) {
    lignes_.clear();
    if (erreurs)
        for (NSError* e : erreurs->as<NSError>()) {
            if (lignes_.size() == kPlusDeLignes) break;
            const auto code = NSString::stringWithFormat(u"%ld"_ns, static_cast<long>(e->code()));
            lignes_.push_back({Genre::erreur, 0, code, enUneLigne(e->localizedDescription()), lignes_.size() + 1});
        }
    recompte();
}

bool ArbreJson::pliable(const Ligne& l) const {
    return (l.genre == Genre::objet || l.genre == Genre::tableau) &&
           l.fin > static_cast<NSUInteger>(&l - lignes_.data()) + 1;
}

void ArbreJson::recompte() {
    visibles_.clear();
    largeur_ = 0;
    const auto font = police();
    for (NSUInteger i = 0; i < lignes_.size(); i = lignes_[i].pliee ? lignes_[i].fin : i + 1) {
        visibles_.push_back(i);
        const Ligne& l = lignes_[i];
        largeur_ = std::max(largeur_, gauche(l) + font->widthOfString(l.texte) +
                                          (l.cle ? font->widthOfString(l.cle) + 2 * kMarge : 0) + kMarge);
    }
    if (choisie_ >= visibles_.size()) choisie_ = NSNotFound;
    ajusteTaille();
    setNeedsDisplay(YES);
}

void ArbreJson::ajusteTaille() {
    NSSize t{std::ceil(largeur_), 2 * kHaut + kRangee * static_cast<CGFloat>(visibles_.size())};
    if (auto* defilement = enclosingScrollView()) {
        const NSSize place = defilement->contentSize();
        t = {std::max(t.width, place.width), std::max(t.height, place.height)};
    }
    setFrameSize(t);
}

Ref<NSString> ArbreJson::texteDeRangee(NSUInteger i) const {
    const Ligne& l = lignes_[visibles_.at(i)];
    if (!l.cle) return l.texte;
    return NSString::stringWithFormat(u"%@ : %@"_ns, l.cle.get(), l.texte.get());
}

// Drawing.

CGFloat ArbreJson::gauche(const Ligne& l) const {
    if (l.genre == Genre::erreur) return kMarge;
    return kMarge + kTriangle + kNiveau * static_cast<CGFloat>(l.niveau);
}

void ArbreJson::dessine(const Ligne& l, CGFloat y, bool active) const {
    const auto font = police();
    const CGFloat base = y + std::floor((kRangee - font->defaultLineHeightForFont()) / 2);
    NSColor* blanc = NSColor::alternateSelectedControlTextColor();
    CGFloat x = gauche(l);
    if (pliable(l)) {
        // Points down when open, to the right when folded.
        const CGFloat cx = x - kTriangle / 2 - 2, cy = y + kRangee / 2, t = 3.5;
        const auto triangle = NSBezierPath::bezierPath();
        triangle->moveToPoint(l.pliee ? NSPoint{cx - t / 2, cy - t} : NSPoint{cx - t, cy - t / 2});
        triangle->lineToPoint(l.pliee ? NSPoint{cx + t, cy} : NSPoint{cx, cy + t});
        triangle->lineToPoint(l.pliee ? NSPoint{cx - t / 2, cy + t} : NSPoint{cx + t, cy - t / 2});
        triangle->closePath();
        (active ? blanc : NSColor::secondaryLabelColor())->setFill();
        triangle->fill();
    }
    if (l.genre == Genre::erreur) {
        const CGFloat large = std::max(26.0, std::ceil(font->widthOfString(l.cle)) + 12);
        const NSRect plaque = NSMakeRect(x, y + 2.5, large, kRangee - 5);
        couleurDe(SystemColor::danger)->setFill();
        NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(plaque, kRayon, kRayon)->fill();
        const CGFloat milieu = x + (large - font->widthOfString(l.cle)) / 2;
        drawAtPoint_withAttributes(l.cle, {std::floor(milieu), base}, attributs(font, NSColor::whiteColor()));
        x += large + 8;
    } else if (l.cle) {
        const auto cle = NSString::stringWithFormat(u"%@ : "_ns, l.cle.get());
        drawAtPoint_withAttributes(cle, {x, base}, attributs(font, active ? blanc : NSColor::labelColor()));
        x += font->widthOfString(cle);
    }
    NSColor* couleur = blanc;
    if (!active) switch (l.genre) {
        case Genre::texte:
            couleur = couleurDe(SystemColor::success);
            break;
        case Genre::nombre:
            couleur = couleurDe(SystemColor::link);
            break;
        case Genre::logique:
            couleur = couleurDe(SystemColor::warning);
            break;
        case Genre::erreur:
            couleur = NSColor::labelColor();
            break;
        default:
            couleur = NSColor::secondaryLabelColor();
        }
    drawAtPoint_withAttributes(l.texte, {x, base}, attributs(font, couleur));
}

void ArbreJson::drawRect(const NSRect& r) {
    const bool clef = window() && window()->isKeyWindow() && window()->firstResponder() == this;
    const auto rangee = [&](CGFloat y) {
        return static_cast<NSUInteger>(
            std::clamp(std::floor((y - kHaut) / kRangee), 0.0, static_cast<CGFloat>(visibles_.size())));
    };
    for (NSUInteger i = rangee(NSMinY(r)), fin = std::min<NSUInteger>(rangee(NSMaxY(r)) + 1, visibles_.size()); i < fin;
         ++i) {
        const CGFloat y = kHaut + kRangee * static_cast<CGFloat>(i);
        const bool choisie = i == choisie_;
        if (choisie) {
            (clef ? NSColor::alternateSelectedControlColor() : NSColor::secondarySelectedControlColor())->setFill();
            const NSRect fond = NSMakeRect(kMarge / 2, y, bounds().size.width - kMarge, kRangee);
            NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(fond, kRayon, kRayon)->fill();
        }
        dessine(lignes_[visibles_[i]], y, choisie && clef);
    }
}

// Choosing and folding.

void ArbreJson::choisit(NSUInteger i) {
    if (i >= visibles_.size()) return;
    choisie_ = i;
    scrollRectToVisible(NSMakeRect(visibleRect().origin.x, kHaut + kRangee * static_cast<CGFloat>(i), 1, kRangee));
    setNeedsDisplay(YES);
}

void ArbreJson::plie(NSUInteger i, bool oui) {
    Ligne& l = lignes_[visibles_[i]];
    if (!pliable(l) || l.pliee == oui) return;
    l.pliee = oui;
    recompte();
}

void ArbreJson::mouseDown(NSEvent* e) {
    if (window()) window()->makeFirstResponder(this);
    const NSPoint p = convertPoint_fromView(e->locationInWindow(), nullptr);
    const CGFloat n = std::floor((p.y - kHaut) / kRangee);
    if (n < 0 || n >= static_cast<CGFloat>(visibles_.size())) return;
    const auto i = static_cast<NSUInteger>(n);
    const Ligne& l = lignes_[visibles_[i]];
    choisit(i);
    const bool triangle = p.x < gauche(l) && p.x >= gauche(l) - kTriangle - kRayon;
    if (triangle || e->clickCount() == 2) plie(i, !l.pliee);
}

void ArbreJson::keyDown(NSEvent* e) {
    NSString* touches = e->charactersIgnoringModifiers();
    const bool aucune = choisie_ == static_cast<NSUInteger>(NSNotFound);
    switch (touches && touches->length() ? touches->characterAtIndex(0) : 0) {
    case NSUpArrowFunctionKey:
        return choisit(aucune || choisie_ == 0 ? 0 : choisie_ - 1);
    case NSDownArrowFunctionKey:
        return choisit(aucune ? 0 : choisie_ + 1);
    case NSHomeFunctionKey:
        return choisit(0);
    case NSEndFunctionKey:
        return choisit(visibles_.size() - 1);
    case NSLeftArrowFunctionKey:
        if (!aucune) plie(choisie_, true);
        return;
    case NSRightArrowFunctionKey:
        if (!aucune) plie(choisie_, false);
        return;
    default:
        NSView::keyDown(e);
    }
}

BOOL ArbreJson::becomeFirstResponder() {
    if (choisie_ == static_cast<NSUInteger>(NSNotFound)) choisit(0);
    setNeedsDisplay(YES);
    return YES;
}

BOOL ArbreJson::resignFirstResponder() {
    setNeedsDisplay(YES);
    return YES;
}

} // namespace galerie

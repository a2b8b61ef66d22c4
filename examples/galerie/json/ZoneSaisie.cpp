#include <json/ZoneSaisie.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/NSTextAttributes.h>

namespace galerie {

namespace {

constexpr CGFloat kRetrait = 10, kHaut = 8;
/// A selected line end shows as a short piece behind the line.
constexpr CGFloat kFinDeLigne = 6;

} // namespace

ZoneSaisie::ZoneSaisie()
    : PlainTextEditor(NSFont::userFixedPitchFontOfSize(12)),
      interligne_(std::ceil(font()->defaultLineHeightForFont()) + 2) {
    setFocusRingType(NSFocusRingTypeNone);
    setAccessibilityLabel(u"Texte JSON"_ns);
}

// Text and lines.

std::u16string ZoneSaisie::admitted(std::u16string_view s) const {
    std::u16string sortie;
    sortie.reserve(s.size());
    for (std::size_t i = 0; i < s.size(); ++i) {
        const char16_t c = s[i];
        if (c == u'\r' && i + 1 < s.size() && s[i + 1] == u'\n') continue;
        if (c == u'\n' || c == u'\r' || c == 0x85 || c == 0x2028 || c == 0x2029)
            sortie += u'\n';
        else if (c == u'\t')
            sortie += u"  ";
        else if (c >= 0x20 && c != 0x7F)
            sortie += c;
    }
    return sortie;
}

void ZoneSaisie::setString(NSString* s) {
    PlainTextEditor::setString(NSString::from(s ? admitted(s->utf16()) : std::u16string()));
}

void ZoneSaisie::replaceCharactersInRange_withString(NSRange range, NSString* s) {
    PlainTextEditor::replaceCharactersInRange_withString(range,
                                                         NSString::from(s ? admitted(s->utf16()) : std::u16string()));
}

void ZoneSaisie::remplaceTout(NSString* s) {
    edit({0, text().size()}, admitted(s->utf16()), Edit::other);
    select(0, 0);
}

void ZoneSaisie::layoutChanged() {
    montre_ = shown();
    arrivee_ = NSNotFound;
    debuts_.assign(1, 0);
    for (std::size_t i = montre_.find(u'\n'); i != std::u16string::npos; i = montre_.find(u'\n', i + 1))
        debuts_.push_back(i + 1);
    largeurTexte_ = 0;
    for (NSUInteger n = 0; n < nombreDeLignes(); ++n)
        largeurTexte_ = std::max(largeurTexte_, font()->widthOfString(NSString::from(ligne(n))));
    ajusteTaille();
    setNeedsDisplay(YES);
}

void ZoneSaisie::ajusteTaille() {
    NSSize t{std::ceil(largeurTexte_) + 2 * kRetrait, static_cast<CGFloat>(nombreDeLignes()) * interligne_ + 2 * kHaut};
    if (auto* defilement = enclosingScrollView()) {
        const NSSize place = defilement->contentSize();
        t = {std::max(t.width, place.width), std::max(t.height, place.height)};
    }
    setFrameSize(t);
}

NSUInteger ZoneSaisie::ligneDe(NSUInteger indice) const {
    return static_cast<NSUInteger>(std::upper_bound(debuts_.begin(), debuts_.end(), indice) - debuts_.begin()) - 1;
}

NSUInteger ZoneSaisie::ligneA(CGFloat y) const {
    const CGFloat n = std::floor((y - kHaut) / interligne_);
    return static_cast<NSUInteger>(std::clamp(n, 0.0, static_cast<CGFloat>(nombreDeLignes() - 1)));
}

std::u16string_view ZoneSaisie::ligne(NSUInteger numero) const {
    const NSUInteger debut = debuts_[numero];
    const NSUInteger fin = numero + 1 < nombreDeLignes() ? debuts_[numero + 1] - 1 : montre_.size();
    return std::u16string_view(montre_).substr(debut, fin - debut);
}

CGFloat ZoneSaisie::abscisse(NSUInteger indice) const {
    const NSUInteger numero = ligneDe(indice);
    return kRetrait + font()->widthOfString(NSString::from(ligne(numero).substr(0, indice - debuts_[numero])));
}

CGFloat ZoneSaisie::ordonnee(NSUInteger numero) const { return kHaut + static_cast<CGFloat>(numero) * interligne_; }

ZoneSaisie::Place ZoneSaisie::placeEn(NSUInteger numero, CGFloat x) const {
    const auto l = NSString::from(ligne(numero));
    NSUInteger bas = 0, haut = l->length();
    Place p{debuts_[numero] + haut, debuts_[numero] + haut};
    // Found by halving.
    while (bas < haut) {
        const NSRange c = l->rangeOfComposedCharacterSequenceAtIndex((bas + haut) / 2);
        const CGFloat gauche = kRetrait + font()->widthOfString(l->substringToIndex(c.location));
        const CGFloat droite = kRetrait + font()->widthOfString(l->substringToIndex(NSMaxRange(c)));
        p = {debuts_[numero] + c.location, debuts_[numero] + (x < (gauche + droite) / 2 ? c.location : NSMaxRange(c))};
        if (x < gauche)
            haut = c.location;
        else if (x >= droite)
            bas = NSMaxRange(c);
        else
            break;
    }
    return p;
}

NSUInteger ZoneSaisie::indexAt(NSPoint p) const { return placeEn(ligneA(p.y), p.x).bord; }
NSUInteger ZoneSaisie::characterAt(NSPoint p) const { return placeEn(ligneA(p.y), p.x).caractere; }

NSRange ZoneSaisie::lineAt(NSPoint p) const {
    const NSUInteger n = ligneA(p.y);
    return {debuts_[n], (n + 1 < nombreDeLignes() ? debuts_[n + 1] : montre_.size()) - debuts_[n]};
}

NSRect ZoneSaisie::partie(NSUInteger numero, NSRange range) const {
    const NSUInteger debut = debuts_[numero], bout = finDe(numero);
    if (range.length == 0 || range.location > bout || NSMaxRange(range) <= debut) return NSZeroRect;
    const CGFloat gauche = abscisse(std::max(range.location, debut));
    const CGFloat droite = abscisse(std::min(NSMaxRange(range), bout)) + (NSMaxRange(range) > bout ? kFinDeLigne : 0);
    return NSMakeRect(gauche, ordonnee(numero), droite - gauche, interligne_);
}

// The caret.

NSRect ZoneSaisie::caretRect() const {
    const NSUInteger i = shownCaret();
    return NSMakeRect(abscisse(i), ordonnee(ligneDe(i)), caretWidth, interligne_);
}

void ZoneSaisie::keepCaretVisible() { scrollRangeToVisible({shownCaret(), 0}); }

void ZoneSaisie::scrollRangeToVisible(NSRange range) {
    const NSUInteger i = std::min<NSUInteger>(range.location, montre_.size());
    const NSRect r = NSMakeRect(abscisse(i), ordonnee(ligneDe(i)), caretWidth, interligne_);
    // The margins show with the first and the last character.
    scrollRectToVisible(NSIntersectionRect(NSInsetRect(r, -kRetrait, -kHaut), bounds()));
}

NSUInteger ZoneSaisie::lignesParPage() const {
    return static_cast<NSUInteger>(std::max(1.0, visibleRect().size.height / interligne_ - 1));
}

NSUInteger ZoneSaisie::dansLaColonne(NSUInteger numero, NSUInteger depart) {
    if (depart != arrivee_) colonne_ = abscisse(depart);
    return arrivee_ = placeEn(numero, colonne_).bord;
}

NSUInteger ZoneSaisie::target(Move m, NSUInteger from) {
    const NSUInteger numero = ligneDe(from), derniere = nombreDeLignes() - 1;
    const NSUInteger avant = numero - std::min(numero, m == Move::up ? 1 : lignesParPage());
    const NSUInteger apres = std::min(derniere, numero + (m == Move::down ? 1 : lignesParPage()));
    switch (m) {
    case Move::left:
        return from ? string()->rangeOfComposedCharacterSequenceAtIndex(from - 1).location : 0;
    case Move::right:
        return from < text().size() ? NSMaxRange(string()->rangeOfComposedCharacterSequenceAtIndex(from)) : from;
    case Move::up:
    case Move::pageUp:
        return numero ? dansLaColonne(avant, from) : 0;
    case Move::down:
    case Move::pageDown:
        return numero < derniere ? dansLaColonne(apres, from) : text().size();
    case Move::lineStart:
        return debuts_[numero];
    case Move::lineEnd:
        return finDe(numero);
    case Move::start:
        return 0;
    default:
        return text().size();
    }
}

void ZoneSaisie::insertNewline(NSObject*) {
    // Under the first character of the line, as far as that stands before the caret.
    const NSRange choix = selectedRange();
    std::u16string par = u"\n";
    for (NSUInteger i = debuts_[ligneDe(choix.location)]; i < choix.location && text()[i] == u' '; ++i)
        par += u' ';
    edit(choix, par, Edit::typing);
}

void ZoneSaisie::insertTab(NSObject*) {
    if (window()) window()->selectNextKeyView(this);
}

void ZoneSaisie::insertBacktab(NSObject*) {
    if (window()) window()->selectPreviousKeyView(this);
}

// Drawing.

void ZoneSaisie::drawRect(const NSRect& r) {
    const bool compose = !preedit().empty();
    const NSRange choix = selectedRange();
    const auto attributs = NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSFontAttributeName.get(), font()}, {NSForegroundColorAttributeName.get(), textColor()}});
    for (NSUInteger n = ligneA(NSMinY(r)), fin = ligneA(NSMaxY(r)); n <= fin; ++n) {
        if (!compose) {
            (isKey() ? NSColor::selectedTextBackgroundColor() : NSColor::secondarySelectedControlColor())->setFill();
            NSRectFill(partie(n, choix));
        }
        drawAtPoint_withAttributes(NSString::from(ligne(n)), {kRetrait, ordonnee(n) + 1}, attributs);
        if (compose) {
            const NSRect sous = partie(n, composed());
            textColor()->setFill();
            NSRectFill(NSMakeRect(sous.origin.x, NSMaxY(sous) - 2, sous.size.width, 1));
        }
    }
    if (!isKey() || !caretIsShown() || (choix.length && !compose)) return;
    textColor()->setFill();
    NSRectFill(caretRect());
}

} // namespace galerie

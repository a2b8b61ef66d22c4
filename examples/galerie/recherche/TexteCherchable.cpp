#include <recherche/TexteCherchable.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSCursor.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/Appearance.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSParagraphStyle.h>
#include <libvue/platform/graphics/NSTextAttributes.h>
#include <libvue/text/mots/MotsFrancais.h>
#include <recherche/Occurrences.h>

namespace galerie {

namespace {

constexpr CGFloat kBord = 16, kInterligne = 3, kEntreParagraphes = 10;

} // namespace

void TexteCherchable::describe(ClassDescription<TexteCherchable, ClientRecherche>& c) {
    c.answers<&TexteCherchable::contientSeulement>(op::contientSeulement);
}

TexteCherchable::TexteCherchable(CGFloat largeur, NSString* texte)
    : ClientRecherche(largeur),
      texte_(NSTextStorage::initWithString(texte)),
      colonne_(make<NSTextContainer>(NSMakeSize(largeur - 2 * kBord, 0))) {
    colonne_->setLineFragmentPadding(0);
    miseEnLignes_->addTextContainer(colonne_);
    texte_->addLayoutManager(miseEnLignes_);
    habille();
    setFrameSize({largeur, std::ceil(miseEnLignes_->usedRectForTextContainer(colonne_).size.height) + 2 * kBord});
}

TexteCherchable::~TexteCherchable() = default;

/// What is laid out holds the colours of the appearance at that time.
void TexteCherchable::habille() {
    sombre_ = currentAppearance() == Appearance::dark;
    const auto paragraphe = make<NSMutableParagraphStyle>();
    paragraphe->setLineSpacing(kInterligne);
    paragraphe->setParagraphSpacing(kEntreParagraphes);
    const auto attributs =
        NSDictionary::dictionaryWithObjectsAndKeys({{NSFontAttributeName, NSFont::systemFontOfSize(13)},
                                                    {NSForegroundColorAttributeName, NSColor::textColor()},
                                                    {NSParagraphStyleAttributeName, paragraphe.get()}});
    texte_->setAttributes_range(attributs, {0, texte_->length()});
}

void TexteCherchable::setSelection(NSRange plage) {
    selection_ = plage;
    NSRect r = miseEnLignes_->boundingRectForGlyphRange_inTextContainer(plage, colonne_);
    if (plage.length) montre(NSOffsetRect(r, kBord, kBord));
    setNeedsDisplay(YES);
}

Ref<NSString> TexteCherchable::donneSelection() {
    return selection_.length ? texte_->string()->substringWithRange(selection_) : nullptr;
}

ClientRecherche::Bilan TexteCherchable::repond(const Demande& d) {
    trouvees_ = occurrences(texte_->string(), d.texte, d.respecterCasse);
    const auto choisie = occurrenceSuivante(trouvees_, selection_, d.avant, d.boucle);
    if (choisie) setSelection(trouvees_[*choisie]);
    return {trouvees_.size(), choisie ? *choisie + 1 : 0};
}

void TexteCherchable::remplis(NSRange plage, NSColor* couleur, const NSRect& visible) {
    couleur->setFill();
    for (const NSRect& r : miseEnLignes_->rectsForCharacterRange_inTextContainer(plage, colonne_)) {
        const NSRect ici = NSOffsetRect(r, kBord, kBord);
        if (!NSIsEmptyRect(NSIntersectionRect(ici, visible))) NSRectFillUsingOperation(ici, NSCompositeSourceOver);
    }
}

void TexteCherchable::drawRect(const NSRect& r) {
    if (sombre_ != (currentAppearance() == Appearance::dark)) habille();
    NSColor::textBackgroundColor()->setFill();
    NSRectFill(r);
    for (const NSRange& p : trouvees_)
        remplis(p, fondTrouve(), r);
    if (selection_.length) remplis(selection_, fondCourant(), r);
    const NSRange lignes =
        miseEnLignes_->glyphRangeForBoundingRect_inTextContainer(NSOffsetRect(r, -kBord, -kBord), colonne_);
    miseEnLignes_->drawGlyphsForGlyphRange_atPoint(lignes, {kBord, kBord});
}

// Selecting.

NSUInteger TexteCherchable::indiceDe(NSEvent* e) {
    const NSPoint p = convertPoint_fromView(e->locationInWindow(), nullptr);
    CGFloat part = 0;
    const NSUInteger i = miseEnLignes_->glyphIndexForPoint_inTextContainer_fractionOfDistanceThroughGlyph(
        {p.x - kBord, p.y - kBord}, colonne_, &part);
    return std::min(i + (part > 0.5 ? 1 : 0), texte_->length());
}

void TexteCherchable::mouseDown(NSEvent* e) {
    const Ref<TexteCherchable> moi(this);
    const NSUInteger ancre = indiceDe(e);
    if (e->clickCount() == 2 && ancre < texte_->length())
        return setSelection(clicSurMot(texte_->string(), ancre).plage);
    setSelection({ancre, 0});
    while (const Ref<NSEvent> suite = NSApp()->nextDragOrRelease_()) {
        if (suite->type() == NSLeftMouseUp) break;
        const NSUInteger ici = indiceDe(suite);
        setSelection({std::min(ancre, ici), std::max(ancre, ici) - std::min(ancre, ici)});
    }
}

void TexteCherchable::keyDown(NSEvent* e) {
    const auto* touches = e->charactersIgnoringModifiers();
    const Ref<NSString> texte(texte_->string());
    const unichar touche = touches && touches->length() ? touches->unit(0) : 0;
    if (touche == NSRightArrowFunctionKey) {
        const NSUInteger fin = motSuivant(texte, NSMaxRange(selection_));
        const NSUInteger debut = motPrecedent(texte, fin);
        setSelection({debut, fin - debut});
    } else if (touche == NSLeftArrowFunctionKey) {
        const NSUInteger debut = motPrecedent(texte, selection_.location);
        setSelection({debut, motSuivant(texte, debut) - debut});
    } else
        ClientRecherche::keyDown(e);
}

void TexteCherchable::resetCursorRects() { addCursorRect_cursor(visibleRect(), NSCursor::IBeamCursor()); }

AccessibilityDescription TexteCherchable::accessibilityDescription() const {
    AccessibilityDescription d = ClientRecherche::accessibilityDescription();
    d.role = u"text"_ns;
    d.value = texte_->string();
    return d;
}

} // namespace galerie

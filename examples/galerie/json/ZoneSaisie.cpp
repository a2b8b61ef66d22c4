#include <json/ZoneSaisie.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSCursor.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSPasteboard.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/foundation/NSTimer.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/NSTextAttributes.h>

namespace galerie {

namespace {

constexpr CGFloat kRetrait = 10, kHaut = 8, kCurseur = 1.5;
constexpr NSTimeInterval kClignotement = 0.5;
constexpr std::size_t kAnnulations = 200;

/// Line ends of any kind become line feeds, tabs two spaces; other control characters go.
std::u16string propre(std::u16string_view s) {
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

} // namespace

template <ZoneSaisie::Pas P>
void ZoneSaisie::inscrit(ClassDescription<ZoneSaisie, NSText>& c, const char* const (&noms)[2]) {
    c.answers<&ZoneSaisie::va<P, Etend::non>>(noms[0]);
    c.answers<&ZoneSaisie::va<P, Etend::oui>>(noms[1]);
}

void ZoneSaisie::describe(ClassDescription<ZoneSaisie, NSText>& c) {
    inscrit<Pas::gauche>(c, {"moveLeft:", "moveLeftAndModifySelection:"});
    inscrit<Pas::droite>(c, {"moveRight:", "moveRightAndModifySelection:"});
    inscrit<Pas::motGauche>(c, {"moveWordLeft:", "moveWordLeftAndModifySelection:"});
    inscrit<Pas::motDroite>(c, {"moveWordRight:", "moveWordRightAndModifySelection:"});
    inscrit<Pas::haut>(c, {"moveUp:", "moveUpAndModifySelection:"});
    inscrit<Pas::bas>(c, {"moveDown:", "moveDownAndModifySelection:"});
    inscrit<Pas::debutLigne>(c, {"moveToBeginningOfLine:", "moveToBeginningOfLineAndModifySelection:"});
    inscrit<Pas::finLigne>(c, {"moveToEndOfLine:", "moveToEndOfLineAndModifySelection:"});
    inscrit<Pas::debutLigne>(c, {"moveToBeginningOfParagraph:", "moveToBeginningOfParagraphAndModifySelection:"});
    inscrit<Pas::finLigne>(c, {"moveToEndOfParagraph:", "moveToEndOfParagraphAndModifySelection:"});
    inscrit<Pas::debut>(c, {"moveToBeginningOfDocument:", "moveToBeginningOfDocumentAndModifySelection:"});
    inscrit<Pas::fin>(c, {"moveToEndOfDocument:", "moveToEndOfDocumentAndModifySelection:"});
    inscrit<Pas::pageHaut>(c, {"pageUp:", "pageUpAndModifySelection:"});
    inscrit<Pas::pageBas>(c, {"pageDown:", "pageDownAndModifySelection:"});
    c.answers<&ZoneSaisie::efface<Pas::gauche>>("deleteBackward:");
    c.answers<&ZoneSaisie::efface<Pas::droite>>("deleteForward:");
    c.answers<&ZoneSaisie::efface<Pas::motGauche>>("deleteWordBackward:");
    c.answers<&ZoneSaisie::efface<Pas::motDroite>>("deleteWordForward:");
    c.answers<&ZoneSaisie::insertNewline>("insertNewline:");
    c.answers<&ZoneSaisie::insertTab>("insertTab:");
    c.answers<&ZoneSaisie::insertBacktab>("insertBacktab:");
}

ZoneSaisie::ZoneSaisie()
    : police_(NSFont::userFixedPitchFontOfSize(12)), interligne_(std::ceil(police_->defaultLineHeightForFont()) + 2) {
    setFocusRingType(NSFocusRingTypeNone);
    setAccessibilityLabel(u"Texte JSON"_ns);
}

ZoneSaisie::~ZoneSaisie() {
    clignote(false);
    NSNotificationCenter::defaultCenter()->removeObserver(this);
}

// Text and lines.

void ZoneSaisie::texteChange() {
    debuts_.assign(1, 0);
    for (std::size_t i = texte_.find(u'\n'); i != std::u16string::npos; i = texte_.find(u'\n', i + 1))
        debuts_.push_back(i + 1);
    largeurTexte_ = 0;
    for (NSUInteger n = 0; n < debuts_.size(); ++n)
        largeurTexte_ = std::max(largeurTexte_, police_->widthOfString(NSString::from(ligne(n))));
    ajusteTaille();
    setNeedsDisplay(YES);
}

void ZoneSaisie::ajusteTaille() {
    NSSize t{std::ceil(largeurTexte_) + 2 * kRetrait, static_cast<CGFloat>(debuts_.size()) * interligne_ + 2 * kHaut};
    if (auto* defilement = enclosingScrollView()) {
        const NSSize place = defilement->contentSize();
        t = {std::max(t.width, place.width), std::max(t.height, place.height)};
    }
    setFrameSize(t);
}

NSUInteger ZoneSaisie::ligneDe(NSUInteger indice) const {
    return static_cast<NSUInteger>(std::upper_bound(debuts_.begin(), debuts_.end(), indice) - debuts_.begin()) - 1;
}

std::u16string_view ZoneSaisie::ligne(NSUInteger numero) const {
    const NSUInteger debut = debuts_[numero];
    const NSUInteger fin = numero + 1 < debuts_.size() ? debuts_[numero + 1] - 1 : texte_.size();
    return std::u16string_view(texte_).substr(debut, fin - debut);
}

CGFloat ZoneSaisie::abscisse(NSUInteger indice) const {
    const NSUInteger numero = ligneDe(indice);
    return kRetrait + police_->widthOfString(NSString::from(ligne(numero).substr(0, indice - debuts_[numero])));
}

NSUInteger ZoneSaisie::indiceEn(NSUInteger numero, CGFloat x) const {
    // The nearest place between two characters, found by halving.
    const auto l = NSString::from(ligne(numero));
    NSUInteger bas = 0, haut = l->length();
    while (bas < haut) {
        const NSRange c = l->rangeOfComposedCharacterSequenceAtIndex((bas + haut) / 2);
        const CGFloat gauche = police_->widthOfString(l->substringToIndex(c.location));
        const CGFloat droite = police_->widthOfString(l->substringToIndex(NSMaxRange(c)));
        if (x - kRetrait < (gauche + droite) / 2)
            haut = c.location;
        else
            bas = NSMaxRange(c);
    }
    return debuts_[numero] + std::min(bas, l->length());
}

NSUInteger ZoneSaisie::indiceAuPoint(NSPoint p) const {
    const CGFloat n = std::floor((p.y - kHaut) / interligne_);
    return indiceEn(static_cast<NSUInteger>(std::clamp(n, 0.0, static_cast<CGFloat>(debuts_.size() - 1))), p.x);
}

NSRect ZoneSaisie::rectCurseur() const {
    return NSMakeRect(abscisse(curseur_), kHaut + static_cast<CGFloat>(ligneDe(curseur_)) * interligne_, kCurseur,
                      interligne_);
}

void ZoneSaisie::setString(NSString* s) {
    texte_ = s ? propre(s->utf16()) : std::u16string();
    curseur_ = ancre_ = 0;
    avant_.clear();
    apres_.clear();
    dernier_ = Genre::aucun;
    texteChange();
}

void ZoneSaisie::remplaceTout(NSString* s) {
    edite({0, texte_.size()}, propre(s->utf16()), Genre::autre);
    choisit(0, 0);
}

void ZoneSaisie::replaceCharactersInRange_withString(NSRange range, NSString* s) {
    const NSUInteger debut = std::min<NSUInteger>(range.location, texte_.size());
    texte_.replace(debut, range.length, s ? propre(s->utf16()) : std::u16string());
    curseur_ = std::min<NSUInteger>(curseur_, texte_.size());
    ancre_ = std::min<NSUInteger>(ancre_, texte_.size());
    texteChange();
}

// Selection.

NSRange ZoneSaisie::selectedRange() const {
    return {std::min(curseur_, ancre_), std::max(curseur_, ancre_) - std::min(curseur_, ancre_)};
}

void ZoneSaisie::setSelectedRange(NSRange range) {
    const NSUInteger debut = std::min<NSUInteger>(range.location, texte_.size());
    choisit(debut, debut + std::min<NSUInteger>(range.length, texte_.size() - debut));
}

void ZoneSaisie::choisit(NSUInteger ancre, NSUInteger curseur) {
    ancre_ = ancre;
    curseur_ = curseur;
    dernier_ = Genre::aucun;
    colonne_ = -1;
    montreCurseur();
}

void ZoneSaisie::montreCurseur() {
    setNeedsDisplay(YES);
    scrollRangeToVisible({curseur_, 0});
    if (!active()) return;
    clignote(true);
    window()->setCaretRect_(YES, convertRect_toView(rectCurseur(), nullptr));
}

void ZoneSaisie::scrollRangeToVisible(NSRange range) {
    NSRect r = rectCurseur();
    if (range.location != curseur_) {
        const NSUInteger i = std::min<NSUInteger>(range.location, texte_.size());
        r.origin = {abscisse(i), kHaut + static_cast<CGFloat>(ligneDe(i)) * interligne_};
    }
    // The margins show with the first and the last character.
    scrollRectToVisible(NSIntersectionRect(NSInsetRect(r, -kRetrait, -kHaut), bounds()));
}

NSUInteger ZoneSaisie::lignesParPage() const {
    return static_cast<NSUInteger>(std::max(1.0, visibleRect().size.height / interligne_ - 1));
}

NSUInteger ZoneSaisie::cible(Pas p) {
    const NSUInteger numero = ligneDe(curseur_);
    const auto vers = [&](NSUInteger autre) {
        const CGFloat x = colonne_ < 0 ? abscisse(curseur_) : colonne_;
        colonne_ = x;
        return indiceEn(autre, x);
    };
    const NSUInteger derniere = debuts_.size() - 1;
    switch (p) {
    case Pas::gauche:
        return curseur_ ? string()->rangeOfComposedCharacterSequenceAtIndex(curseur_ - 1).location : 0;
    case Pas::droite:
        return curseur_ < texte_.size() ? NSMaxRange(string()->rangeOfComposedCharacterSequenceAtIndex(curseur_))
                                        : curseur_;
    case Pas::motGauche:
    case Pas::motDroite: {
        if (texte_.empty()) return 0;
        const auto a = NSAttributedString::initWithString(string());
        return std::min<NSUInteger>(a->nextWordFromIndex_forward(curseur_, p == Pas::motDroite), texte_.size());
    }
    case Pas::haut:
        return numero ? vers(numero - 1) : 0;
    case Pas::bas:
        return numero < derniere ? vers(numero + 1) : texte_.size();
    case Pas::pageHaut:
        return numero ? vers(numero - std::min(numero, lignesParPage())) : 0;
    case Pas::pageBas:
        return numero < derniere ? vers(std::min(derniere, numero + lignesParPage())) : texte_.size();
    case Pas::debutLigne:
        return debuts_[numero];
    case Pas::finLigne:
        return debuts_[numero] + ligne(numero).size();
    case Pas::debut:
        return 0;
    case Pas::fin:
        return texte_.size();
    }
    return curseur_;
}

void ZoneSaisie::deplace(Pas p, Etend e) {
    const NSRange s = selectedRange();
    NSUInteger vers;
    if (e == Etend::non && s.length && (p == Pas::gauche || p == Pas::droite))
        vers = p == Pas::gauche ? s.location : NSMaxRange(s);
    else
        vers = cible(p);
    const CGFloat colonne = colonne_;
    choisit(e == Etend::oui ? ancre_ : vers, vers);
    if (p == Pas::haut || p == Pas::bas || p == Pas::pageHaut || p == Pas::pageBas) colonne_ = colonne;
}

void ZoneSaisie::selectAll(NSObject*) { choisit(0, texte_.size()); }

// Editing.

void ZoneSaisie::edite(NSRange range, std::u16string_view par, Genre genre) {
    if (range.length == 0 && par.empty()) return;
    const bool suite = genre == dernier_ && (genre == Genre::frappe || genre == Genre::efface) && !avant_.empty() &&
                       (genre == Genre::efface || range.length == 0) && par != u" " && par.find(u'\n') == par.npos;
    if (!suite) {
        avant_.push_back({texte_, curseur_, ancre_});
        if (avant_.size() > kAnnulations) avant_.erase(avant_.begin());
    }
    apres_.clear();
    texte_.replace(range.location, range.length, par);
    curseur_ = ancre_ = range.location + par.size();
    colonne_ = -1;
    texteChange();
    montreCurseur();
    dernier_ = genre;
    if (surChangement) surChangement();
}

void ZoneSaisie::effaceVers(Pas p) {
    NSRange s = selectedRange();
    if (s.length == 0) {
        const NSUInteger vers = cible(p);
        s = {std::min(vers, curseur_), std::max(vers, curseur_) - std::min(vers, curseur_)};
    }
    edite(s, {}, Genre::efface);
}

void ZoneSaisie::insertText(NSObject* text) {
    Ref<NSString> s(as<NSString>(text));
    if (auto* a = as<NSAttributedString>(text)) s = a->string();
    if (s) edite(selectedRange(), propre(s->utf16()), Genre::frappe);
}

void ZoneSaisie::insertNewline(NSObject*) {
    // Under the first character of the line, as far as that stands before the caret.
    const NSUInteger debut = debuts_[ligneDe(selectedRange().location)];
    std::u16string par = u"\n";
    for (NSUInteger i = debut; i < selectedRange().location && texte_[i] == u' '; ++i)
        par += u' ';
    edite(selectedRange(), par, Genre::frappe);
}

void ZoneSaisie::insertTab(NSObject*) {
    if (window()) window()->selectNextKeyView(this);
}

void ZoneSaisie::insertBacktab(NSObject*) {
    if (window()) window()->selectPreviousKeyView(this);
}

void ZoneSaisie::remet(const Etat& e) {
    texte_ = e.texte;
    texteChange();
    choisit(e.ancre, e.curseur);
    if (surChangement) surChangement();
}

void ZoneSaisie::undo(NSObject*) {
    if (avant_.empty()) return;
    const Etat e = std::move(avant_.back());
    avant_.pop_back();
    apres_.push_back({texte_, curseur_, ancre_});
    remet(e);
}

void ZoneSaisie::redo(NSObject*) {
    if (apres_.empty()) return;
    const Etat e = std::move(apres_.back());
    apres_.pop_back();
    avant_.push_back({texte_, curseur_, ancre_});
    remet(e);
}

void ZoneSaisie::copy(NSObject*) {
    const NSRange s = selectedRange();
    if (s.length == 0) return;
    auto* presse = NSPasteboard::generalPasteboard();
    presse->declareTypes_owner(NSArray::arrayWithObjects({NSStringPboardType.get()}), nullptr);
    presse->setString_forType(NSString::from(std::u16string_view(texte_).substr(s.location, s.length)),
                              NSStringPboardType);
}

void ZoneSaisie::cut(NSObject* sender) {
    copy(sender);
    edite(selectedRange(), {}, Genre::autre);
}

void ZoneSaisie::paste(NSObject*) {
    const auto s = NSPasteboard::generalPasteboard()->stringForType(NSStringPboardType);
    if (s) edite(selectedRange(), propre(s->utf16()), Genre::autre);
}

NSMenu* ZoneSaisie::menuForEvent(NSEvent*) {
    if (!menu_) {
        menu_ = make<NSMenu>(NSString::string().get());
        menu_->addItemWithTitle_action_keyEquivalent(u"Couper"_ns, sel("cut:"), u"x"_ns);
        menu_->addItemWithTitle_action_keyEquivalent(u"Copier"_ns, sel("copy:"), u"c"_ns);
        menu_->addItemWithTitle_action_keyEquivalent(u"Coller"_ns, sel("paste:"), u"v"_ns);
        menu_->addItem(NSMenuItem::separatorItem());
        menu_->addItemWithTitle_action_keyEquivalent(u"Tout sélectionner"_ns, sel("selectAll:"), u"a"_ns);
    }
    return menu_;
}

// Events.

void ZoneSaisie::keyDown(NSEvent* e) { interpretKeyEvents(NSArray::arrayWithObjects({e})); }

void ZoneSaisie::mouseDown(NSEvent* e) {
    const Ref<ZoneSaisie> soi(this);
    if (window() && !active() && !window()->makeFirstResponder(this)) return;
    const auto point = [this](NSEvent* ev) { return convertPoint_fromView(ev->locationInWindow(), nullptr); };
    const NSInteger clics = e->clickCount();
    const auto unite = [&](NSUInteger i) -> NSRange {
        if (clics >= 3) {
            const NSUInteger n = ligneDe(i);
            return {debuts_[n], (n + 1 < debuts_.size() ? debuts_[n + 1] : texte_.size()) - debuts_[n]};
        }
        if (clics == 2 && !texte_.empty())
            return NSAttributedString::initWithString(string())->doubleClickAtIndex(
                std::min<NSUInteger>(i, texte_.size() - 1));
        return {i, 0};
    };
    const bool etend = (e->modifierFlags() & NSShiftKeyMask) != 0;
    const NSRange base = etend ? NSRange{ancre_, 0} : unite(indiceAuPoint(point(e)));
    const auto jusqua = [&](NSPoint p) {
        const NSRange r = unite(indiceAuPoint(p));
        if (r.location < base.location)
            choisit(NSMaxRange(base), r.location);
        else
            choisit(base.location, std::max(NSMaxRange(base), NSMaxRange(r)));
    };
    jusqua(point(e));
    while (window()) {
        const Ref<NSEvent> suivant = NSApp()->nextEventMatchingMask_untilDate_inMode_dequeue(
            NSLeftMouseDraggedMask | NSLeftMouseUpMask, std::numeric_limits<double>::infinity(),
            NSEventTrackingRunLoopMode, YES);
        if (!suivant || suivant->type() == NSLeftMouseUp) break;
        jusqua(point(suivant));
    }
}

bool ZoneSaisie::active() const {
    return window() && window()->firstResponder() == static_cast<const NSResponder*>(this);
}

BOOL ZoneSaisie::becomeFirstResponder() {
    clignote(true);
    setNeedsDisplay(YES);
    return YES;
}

BOOL ZoneSaisie::resignFirstResponder() {
    clignote(false);
    if (window()) window()->setCaretRect_(NO, NSZeroRect);
    setNeedsDisplay(YES);
    return YES;
}

void ZoneSaisie::viewDidMoveToWindow() {
    NSText::viewDidMoveToWindow();
    auto* centre = NSNotificationCenter::defaultCenter();
    centre->removeObserver(this);
    clignote(false);
    if (!window()) return;
    centre->addObserver<&ZoneSaisie::fenetreChange>(this, NSWindowDidBecomeKeyNotification, window());
    centre->addObserver<&ZoneSaisie::fenetreChange>(this, NSWindowDidResignKeyNotification, window());
}

void ZoneSaisie::fenetreChange(NSNotification*) {
    if (active()) clignote(window()->isKeyWindow());
    setNeedsDisplay(YES);
}

void ZoneSaisie::clignote(bool oui) {
    if (clignotement_) clignotement_->invalidate();
    clignotement_ = nullptr;
    curseurMontre_ = true;
    if (!oui) return;
    clignotement_ = NSTimer::scheduledTimerWithTimeInterval_repeats_block(
        kClignotement, YES, [soi = Weak<ZoneSaisie>(this)](NSTimer* t) {
            const Ref<ZoneSaisie> z = soi.ref();
            if (!z || !z->active() || !z->window()->isKeyWindow()) return t->invalidate();
            z->curseurMontre_ = !z->curseurMontre_;
            z->setNeedsDisplayInRect(NSInsetRect(z->rectCurseur(), -1, -1));
        });
}

void ZoneSaisie::resetCursorRects() { addCursorRect_cursor(visibleRect(), NSCursor::IBeamCursor()); }

// Drawing.

void ZoneSaisie::drawRect(const NSRect& r) {
    const bool clef = active() && window()->isKeyWindow();
    const NSRange choix = selectedRange();
    const auto attributs = NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSFontAttributeName, police_.get()}, {NSForegroundColorAttributeName, NSColor::textColor()}});
    const auto numero = [this](CGFloat y) {
        return static_cast<NSUInteger>(
            std::clamp(std::floor((y - kHaut) / interligne_), 0.0, static_cast<CGFloat>(debuts_.size() - 1)));
    };
    for (NSUInteger n = numero(NSMinY(r)), fin = numero(NSMaxY(r)); n <= fin; ++n) {
        const CGFloat y = kHaut + static_cast<CGFloat>(n) * interligne_;
        const NSUInteger debut = debuts_[n], bout = debut + ligne(n).size();
        if (choix.length && choix.location <= bout && NSMaxRange(choix) > debut) {
            const CGFloat gauche = abscisse(std::max(choix.location, debut));
            // A selected line end shows as a short piece behind the line.
            const bool fini = NSMaxRange(choix) <= bout;
            const CGFloat droite = abscisse(std::min(NSMaxRange(choix), bout)) + (fini ? 0 : 6);
            (clef ? NSColor::selectedTextBackgroundColor() : NSColor::secondarySelectedControlColor())->setFill();
            NSRectFill(NSMakeRect(gauche, y, droite - gauche, interligne_));
        }
        if (bout > debut) drawAtPoint_withAttributes(NSString::from(ligne(n)), {kRetrait, y + 1}, attributs);
    }
    if (!clef || !curseurMontre_ || choix.length) return;
    NSColor::textColor()->setFill();
    NSRectFill(rectCurseur());
}

} // namespace galerie

#pragma once

#include <functional>
#include <string>
#include <vector>

#include <libvue/platform/appkit/NSText.h>

namespace galerie {

using namespace libvue;

/// An editor of plain text in a font of fixed pitch, for a scroll view: lines are not wrapped, Return keeps the
/// indentation, Tab goes on to the next control.
class ZoneSaisie : public NSText {
public:
    static void describe(ClassDescription<ZoneSaisie, NSText>& c);
    ZoneSaisie();
    ~ZoneSaisie() override;

    /// Told of every change that a person made.
    std::function<void()> surChangement;

    [[nodiscard]] Ref<NSString> string() const override { return NSString::from(texte_); }
    /// Forgets what could be undone, and puts the caret at the start.
    void setString(NSString* s) override;
    /// Replaces everything as a person would, who can undo it. Tells surChangement.
    void remplaceTout(NSString* s);
    void replaceCharactersInRange_withString(NSRange range, NSString* s) override;
    [[nodiscard]] NSRange selectedRange() const override;
    void setSelectedRange(NSRange range) override;
    void scrollRangeToVisible(NSRange range) override;

    void cut(NSObject* sender) override;
    void copy(NSObject* sender) override;
    void paste(NSObject* sender) override;
    void selectAll(NSObject* sender) override;
    void undo(NSObject* sender) override;
    void redo(NSObject* sender) override;

    void keyDown(NSEvent* e) override;
    void insertText(NSObject* text) override;
    void mouseDown(NSEvent* e) override;
    [[nodiscard]] NSMenu* menuForEvent(NSEvent* e) override;
    [[nodiscard]] BOOL acceptsFirstResponder() override { return YES; }
    BOOL becomeFirstResponder() override;
    BOOL resignFirstResponder() override;
    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    [[nodiscard]] BOOL mouseDownCanMoveWindow() const override { return NO; }
    void drawRect(const NSRect& r) override;
    void resetCursorRects() override;
    void viewDidMoveToWindow() override;
    /// As large as the text, and no smaller than what the scroll view shows.
    void ajusteTaille();

private:
    enum class Pas {
        gauche,
        droite,
        motGauche,
        motDroite,
        haut,
        bas,
        debutLigne,
        finLigne,
        debut,
        fin,
        pageHaut,
        pageBas
    };
    enum class Etend { non, oui };
    enum class Genre { aucun, frappe, efface, autre };
    struct Etat {
        std::u16string texte;
        NSUInteger curseur, ancre;
    };

    template <Pas P, Etend E> void va(NSObject*) { deplace(P, E); }
    template <Pas P> void efface(NSObject*) { effaceVers(P); }
    template <Pas P> static void inscrit(ClassDescription<ZoneSaisie, NSText>& c, const char* const (&noms)[2]);
    void deplace(Pas p, Etend e);
    void effaceVers(Pas p);
    [[nodiscard]] NSUInteger cible(Pas p);
    void insertNewline(NSObject*);
    void insertTab(NSObject*);
    void insertBacktab(NSObject*);
    void fenetreChange(NSNotification*);

    void edite(NSRange range, std::u16string_view par, Genre genre);
    void remet(const Etat& e);
    void choisit(NSUInteger ancre, NSUInteger curseur);
    void montreCurseur();
    void clignote(bool oui);

    void texteChange();
    [[nodiscard]] NSUInteger ligneDe(NSUInteger indice) const;
    [[nodiscard]] std::u16string_view ligne(NSUInteger numero) const;
    [[nodiscard]] CGFloat abscisse(NSUInteger indice) const;
    [[nodiscard]] NSUInteger indiceEn(NSUInteger numero, CGFloat x) const;
    [[nodiscard]] NSUInteger indiceAuPoint(NSPoint p) const;
    [[nodiscard]] NSRect rectCurseur() const;
    [[nodiscard]] NSUInteger lignesParPage() const;
    [[nodiscard]] bool active() const;

    std::u16string texte_;
    std::vector<NSUInteger> debuts_{0}; ///< where each line begins
    NSUInteger curseur_ = 0, ancre_ = 0;
    CGFloat colonne_ = -1; ///< where moves up and down aim at; negative when they start anew
    Ref<NSFont> police_;
    CGFloat interligne_, largeurTexte_ = 0;
    Ref<NSTimer> clignotement_;
    Ref<NSMenu> menu_;
    std::vector<Etat> avant_, apres_;
    Genre dernier_ = Genre::aucun;
    bool curseurMontre_ = true;
};

} // namespace galerie

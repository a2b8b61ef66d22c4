#pragma once

#include <vector>

#include <libvue/platform/appkit/NSView.h>

namespace galerie {

using namespace libvue;

/// A tree of JSON values, or a chain of errors, one a row, for a scroll view. A click or the arrows fold and choose.
class ArbreJson : public NSView {
public:
    static void describe(ClassDescription<ArbreJson, NSView>&) {}
    ArbreJson();

    void montreValeur(NSObject* valeur);
    /// The errors as the reader gives them, the innermost first.
    void montreErreurs(NSArray* erreurs);
    /// As large as the rows, and no smaller than what the scroll view shows.
    void ajusteTaille();
    [[nodiscard]] NSUInteger nombreDeRangees() const noexcept { return visibles_.size(); }
    /// The text of a visible row, without its fold mark.
    [[nodiscard]] Ref<NSString> texteDeRangee(NSUInteger i) const;

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    [[nodiscard]] BOOL acceptsFirstResponder() override { return YES; }
    BOOL becomeFirstResponder() override;
    BOOL resignFirstResponder() override;
    [[nodiscard]] BOOL mouseDownCanMoveWindow() const override { return NO; }
    void drawRect(const NSRect& r) override;
    void mouseDown(NSEvent* e) override;
    void keyDown(NSEvent* e) override;

private:
    enum class Genre : std::uint8_t { objet, tableau, texte, nombre, logique, nul, erreur, suite };
    struct Ligne {
        Genre genre;
        NSUInteger niveau;
        Ref<NSString> cle; ///< null in an array; of an error, its code
        Ref<NSString> texte;
        NSUInteger fin = 0; ///< the line behind its descendants
        bool pliee = false;
    };

    void ajoute(NSObject* valeur, NSUInteger niveau, NSString* cle);
    void recompte();
    void plie(NSUInteger rangee, bool oui);
    void choisit(NSUInteger rangee);
    [[nodiscard]] bool pliable(const Ligne& l) const;
    [[nodiscard]] CGFloat gauche(const Ligne& l) const;
    void dessine(const Ligne& l, CGFloat y, bool active) const;

    std::vector<Ligne> lignes_;
    std::vector<NSUInteger> visibles_;
    NSUInteger choisie_ = NSNotFound;
    CGFloat largeur_ = 0;
};

} // namespace galerie

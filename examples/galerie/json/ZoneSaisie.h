#pragma once

#include <string>
#include <vector>

#include <libvue/platform/appkit/PlainTextEditor.h>

namespace galerie {

using namespace libvue;

/// An editor of plain text in a font of fixed pitch, for a scroll view: lines are not wrapped, Return keeps the
/// indentation, Tab goes on to the next control.
class ZoneSaisie : public PlainTextEditor {
public:
    static void describe(ClassDescription<ZoneSaisie, PlainTextEditor>&) {}
    ZoneSaisie();

    void setString(NSString* s) override;
    void replaceCharactersInRange_withString(NSRange range, NSString* s) override;
    /// Replaces everything as a person would, who can undo it.
    void remplaceTout(NSString* s);
    void scrollRangeToVisible(NSRange range) override;
    [[nodiscard]] NSRect caretRect() const override;
    void drawRect(const NSRect& r) override;
    /// As large as the text, and no smaller than what the scroll view shows.
    void ajusteTaille();

protected:
    /// Line ends of any kind become line feeds, tabs two spaces; other control characters go.
    [[nodiscard]] std::u16string admitted(std::u16string_view s) const override;
    [[nodiscard]] NSUInteger target(Move m, NSUInteger from) override;
    [[nodiscard]] NSUInteger indexAt(NSPoint p) const override;
    [[nodiscard]] NSUInteger characterAt(NSPoint p) const override;
    [[nodiscard]] NSRange lineAt(NSPoint p) const override;
    void layoutChanged() override;
    void keepCaretVisible() override;
    void insertTab(NSObject* sender) override;
    void insertBacktab(NSObject* sender) override;
    void insertNewline(NSObject* sender) override;

private:
    struct Place {
        NSUInteger caractere; ///< the one there
        NSUInteger bord;      ///< its nearer edge
    };

    [[nodiscard]] NSUInteger nombreDeLignes() const { return debuts_.size(); }
    [[nodiscard]] NSUInteger ligneDe(NSUInteger indice) const;
    [[nodiscard]] NSUInteger ligneA(CGFloat y) const;
    [[nodiscard]] std::u16string_view ligne(NSUInteger numero) const;
    [[nodiscard]] NSUInteger finDe(NSUInteger numero) const { return debuts_[numero] + ligne(numero).size(); }
    [[nodiscard]] CGFloat abscisse(NSUInteger indice) const;
    [[nodiscard]] CGFloat ordonnee(NSUInteger numero) const;
    [[nodiscard]] Place placeEn(NSUInteger numero, CGFloat x) const;
    [[nodiscard]] NSUInteger lignesParPage() const;
    /// Where in another line, in the column that moves up and down keep to.
    [[nodiscard]] NSUInteger dansLaColonne(NSUInteger numero, NSUInteger depart);
    /// The part of the line within the range, as a rectangle; empty where there is none.
    [[nodiscard]] NSRect partie(NSUInteger numero, NSRange range) const;

    std::u16string montre_;             ///< what shows, with what is being composed
    std::vector<NSUInteger> debuts_{0}; ///< where each line begins
    CGFloat colonne_ = 0;               ///< of a run of moves up and down
    NSUInteger arrivee_ = NSNotFound;   ///< where the last of them led
    CGFloat interligne_, largeurTexte_ = 0;
};

} // namespace galerie

#pragma once

#include <functional>
#include <vector>

#include <libvue/platform/appkit/NSView.h>
#include <libvue/text/mots/MotsFrancais.h>

namespace galerie {

using namespace libvue;

/// A text cut into what a double click selects, each piece in the colour of its rule.
class BandeauMots : public NSView {
public:
    static void describe(ClassDescription<BandeauMots, NSView>&) {}
    explicit BandeauMots(const NSRect& cadre);

    /// A click on a piece, with the index of its first character.
    std::function<void(NSUInteger)> surClic;

    void montre(NSString* texte, NSRange selection);
    [[nodiscard]] NSUInteger nombre() const noexcept { return morceaux_.size(); }
    /// Where the piece lies.
    [[nodiscard]] NSRect rectDuMorceau(NSUInteger i) const { return morceaux_.at(i).cadre; }

    /// The colours and what they mean, on one line.
    [[nodiscard]] static Ref<NSView> legendeDesCouleurs();

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    void setFrameSize(const NSSize& taille) override;
    void drawRect(const NSRect& r) override;
    void mouseDown(NSEvent* e) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    struct Morceau {
        ClicMot clic;
        Ref<NSString> texte;
        NSRect cadre;
    };
    void coupe();
    void dispose();

    Ref<NSString> texte_;
    NSRange selection_{0, 0};
    std::vector<Morceau> morceaux_;
};

/// What a selection or a caret in the text is, in two sentences: which part, and by which rule.
struct Explication {
    Ref<NSString> quoi, pourquoi;
};
[[nodiscard]] Explication explique(const NSString* texte, NSRange selection);

} // namespace galerie

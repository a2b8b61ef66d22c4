#pragma once

#include <functional>

#include <libvue/platform/appkit/NSTextField.h>

namespace galerie {

using namespace libvue;

// The leaves of the tree that the page lays out: views of four kinds, each with a name that can be read on it.

enum class GenreFeuille : NSInteger { pastille, etiquette, champ, boite };

/// A translucent coloured view with its name and its size on it.
class Pastille : public NSView {
public:
    static void describe(ClassDescription<Pastille, NSView>&) {}
    /// `teinte` counts through a few system colours.
    Pastille(NSString* nom, NSUInteger teinte, NSSize taille);

    [[nodiscard]] NSString* nom() const noexcept { return nom_; }
    void setNom(NSString* nom);
    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    void setFrame(const NSRect& cadre) override;
    void setFrameSize(const NSSize& taille) override;
    void drawRect(const NSRect& r) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    Ref<NSString> nom_;
    NSUInteger teinte_;
};

/// A field that says when a person goes into it.
class ChampFeuille : public NSTextField {
public:
    static void describe(ClassDescription<ChampFeuille, NSTextField>&) {}
    using NSTextField::NSTextField;
    std::function<void(NSView*)> surEntree;
    BOOL becomeFirstResponder() override;
    void mouseDown(NSEvent* e) override;
    void textDidChange(NSNotification* n) override;
};

[[nodiscard]] Ref<NSView> fabriqueFeuille(GenreFeuille genre, NSString* nom, NSUInteger teinte, NSSize taille);
/// What stands on a leaf: the name of a coloured view, the text of a label or a field, the title of a box.
[[nodiscard]] Ref<NSString> nomDeFeuille(const NSView* feuille);
void nommeFeuille(NSView* feuille, NSString* nom);

} // namespace galerie

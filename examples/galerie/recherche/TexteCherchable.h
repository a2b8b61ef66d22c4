#pragma once

#include <vector>

#include <recherche/ClientRecherche.h>

#include <libvue/platform/graphics/NSLayoutManager.h>
#include <libvue/platform/graphics/NSTextContainer.h>
#include <libvue/platform/graphics/NSTextStorage.h>

namespace galerie {

/// A long text to read and to search, of which words can be selected. It searches anywhere in the text alone.
class TexteCherchable : public ClientRecherche {
public:
    static void describe(ClassDescription<TexteCherchable, ClientRecherche>& c);
    TexteCherchable(CGFloat largeur, NSString* texte);
    ~TexteCherchable() override;

    [[nodiscard]] NSRange selection() const noexcept { return selection_; }
    void setSelection(NSRange plage);
    [[nodiscard]] Ref<NSString> donneSelection() override;

    void drawRect(const NSRect& r) override;
    void mouseDown(NSEvent* e) override;
    void keyDown(NSEvent* e) override;
    void resetCursorRects() override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

protected:
    [[nodiscard]] Bilan repond(const Demande& d) override;

private:
    BOOL contientSeulement() { return YES; }
    void habille();
    [[nodiscard]] NSUInteger indiceDe(NSEvent* e);
    void remplis(NSRange plage, NSColor* couleur, const NSRect& visible);

    Ref<NSTextStorage> texte_;
    Ref<NSLayoutManager> miseEnLignes_ = make<NSLayoutManager>();
    Ref<NSTextContainer> colonne_;
    std::vector<NSRange> trouvees_;
    NSRange selection_{0, 0};
    bool sombre_ = false;
};

} // namespace galerie

#pragma once

#include <vector>

#include <recherche/ClientRecherche.h>

#include <libvue/platform/foundation/NSArray.h>

namespace galerie {

/// Words and short phrases below each other, searched by every type.
class ListeCherchable : public ClientRecherche {
public:
    static void describe(ClassDescription<ListeCherchable, ClientRecherche>&) {}
    ListeCherchable(CGFloat largeur, NSArray* mots);
    ~ListeCherchable() override;

    /// -1 for none.
    [[nodiscard]] NSInteger choisi() const noexcept { return choisi_; }
    void setChoisi(NSInteger rang);
    [[nodiscard]] Ref<NSString> donneSelection() override;

    void drawRect(const NSRect& r) override;
    void mouseDown(NSEvent* e) override;
    void keyDown(NSEvent* e) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

protected:
    [[nodiscard]] Bilan repond(const Demande& d) override;

private:
    [[nodiscard]] NSRect rangee(NSInteger rang) const;

    Ref<NSArray> mots_;
    std::vector<bool> trouves_;
    NSInteger choisi_ = -1;
};

} // namespace galerie

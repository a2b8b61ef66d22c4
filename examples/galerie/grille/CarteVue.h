#pragma once

#include <libvue/collections/KCCollectionItemView.h>
#include <libvue/platform/appkit/NSTextField.h>

namespace galerie {

using namespace libvue;

class CarteVue;

/// A word with its number: the data object of one card.
class Carte : public NSObject {
public:
    static void describe(ClassDescription<Carte>& c);
    Carte(NSString* mot, NSUInteger numero) : mot_(mot), numero_(numero) {}
    [[nodiscard]] NSString* mot() const noexcept { return mot_; }
    /// From 1.
    [[nodiscard]] NSUInteger numero() const noexcept { return numero_; }
    [[nodiscard]] BOOL estChoisie() const noexcept { return choisie_; }
    void setSelected(BOOL choisie);
    /// The view that shows it now; not kept.
    void setVue(CarteVue* vue) noexcept { vue_ = vue; }
    [[nodiscard]] CarteVue* vue() const noexcept { return vue_; }

private:
    Ref<NSString> mot_;
    NSUInteger numero_;
    CarteVue* vue_ = nullptr; // the view takes it back before it goes
    BOOL choisie_ = NO;
};

/// A card, from the interface resource "Carte".
class CarteVue : public NSView, public KCCollectionItemView {
public:
    static void describe(ClassDescription<CarteVue, NSView>& c);
    static NSSize taille() { return {152, 82}; }
    CarteVue() = default;
    ~CarteVue() override;

    [[nodiscard]] NSObject* collectionView() const override { return grille_; }
    void setCollectionView(NSObject* grille) override { grille_ = grille; }
    [[nodiscard]] NSObject* objetConnectay() const override { return carte_; }
    void setObjetConnectay(NSObject* objet) override;

    [[nodiscard]] NSTextField* titre() const noexcept { return titre_; }
    void setTitre(NSTextField* champ) { titre_ = champ; }
    [[nodiscard]] NSTextField* detail() const noexcept { return detail_; }
    void setDetail(NSTextField* champ) { detail_ = champ; }

    void drawRect(const NSRect& r) override;
    /// Its texts take no clicks.
    [[nodiscard]] NSView* hitTest(NSPoint p) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    void montre();
    friend class Carte;

    Weak<NSObject> grille_;
    Ref<Carte> carte_;
    Weak<NSTextField> titre_, detail_;
};

} // namespace galerie

#pragma once

#include <dossier/FichierImage.h>
#include <dossier/ReserveVignettes.h>
#include <libvue/collections/KCCollectionItemView.h>

namespace galerie {

/// An item of the grid of pictures: the thumbnail, or what stands for it, and the file's name.
class CarteImage : public NSView, public KCCollectionItemView {
public:
    static void describe(ClassDescription<CarteImage, NSView>& c);
    CarteImage();
    ~CarteImage() override;
    [[nodiscard]] static NSSize taille() { return {184, 166}; }
    /// What a thumbnail may take of a card.
    [[nodiscard]] static NSSize place() { return {152, 112}; }
    /// The name of the interface resource with one card; registered at the first call.
    [[nodiscard]] static NSString* ressource();

    [[nodiscard]] NSObject* collectionView() const override { return grille_; }
    void setCollectionView(NSObject* grille) override { grille_ = grille; }
    [[nodiscard]] NSObject* objetConnectay() const override { return fichier_; }
    void setObjetConnectay(NSObject* objet) override;
    void setHidden(BOOL cache) override;
    void drawRect(const NSRect& r) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    void montre();
    void lache();
    void dessineManque(const NSRect& place, bool illisible) const;

    Weak<NSObject> grille_;
    Ref<FichierImage> fichier_;
};

} // namespace galerie

#pragma once

#include <string_view>

#include <dossier/BarreTravail.h>
#include <dossier/ImagesEssai.h>
#include <dossier/LectureDossier.h>
#include <dossier/ReserveVignettes.h>
#include <libvue/collections/KCCollectionView.h>
#include <libvue/layout/KCFlippedView.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSTextField.h>

namespace galerie {

/// The pictures of a folder, in a grid: the folder's path, what is going on, and the thumbnails, which are loaded when
/// they come into view. Where no folder was named it paints landscapes for itself.
class VueDossier : public KCFlippedView {
public:
    static void describe(ClassDescription<VueDossier, KCFlippedView>& c);
    VueDossier();
    ~VueDossier() override;

    /// Reads the folder, or the landscapes for an empty path. The first time it comes into a window it does the latter.
    void montreDossier(NSString* chemin);
    /// Blocks until the folder has been read and the thumbnails in view are there.
    void attends();
    [[nodiscard]] KCCollectionView* grille() const noexcept { return grille_; }
    [[nodiscard]] NSTextField* champ() const noexcept { return chemin_; }
    /// The line that says what is going on.
    [[nodiscard]] NSTextField* etat() const noexcept { return etat_; }

    void resizeSubviewsWithOldSize(const NSSize& ancienne) override;
    void viewDidMoveToWindow() override;

private:
    void lis(NSObject*);
    void paysages(NSObject*);
    void annule(NSObject*);
    void place();
    void travaille(bool travaille);
    void dis(std::u16string_view texte);
    void lectureAvance();
    void lectureFinie(LectureDossier::Fin fin);
    void disNombre();

    Ref<NSTextField> titre_, chemin_, etat_;
    Ref<NSButton> lire_, paysages_, annuler_;
    Ref<BarreTravail> barre_;
    Ref<NSScrollView> defilement_;
    Ref<KCCollectionView> grille_;
    Ref<ReserveVignettes> reserve_;
    Ref<LectureDossier> lecture_;
    Ref<ImagesEssai> essai_;
    LectureDossier::Fin fin_ = LectureDossier::Fin::complete;
    bool commence_ = false;
};

} // namespace galerie

#pragma once

#include <dossier/BarreDossier.h>
#include <dossier/ImagesEssai.h>
#include <dossier/LectureDossier.h>
#include <dossier/ReserveVignettes.h>
#include <grille/SourceDeGrille.h>

namespace galerie {

/// The pictures of a folder as cards, whose thumbnails are loaded when they come into view. Where no folder was named
/// it paints landscapes for itself.
class ImagesDeDossier : public SourceDeGrille {
public:
    static void describe(ClassDescription<ImagesDeDossier, SourceDeGrille>&) {}
    ImagesDeDossier();
    ~ImagesDeDossier() override;

    [[nodiscard]] Ref<NSString> nom() const override { return u"Images d’un dossier"_ns; }
    [[nodiscard]] NSUInteger maximum() override { return fichiers_->count(); }
    [[nodiscard]] NSUInteger auDebut() override { return maximum(); }
    [[nodiscard]] Ref<NSArray> objets(NSUInteger nombre) override;
    [[nodiscard]] const Class& classeVue() const override;
    [[nodiscard]] Ref<NSString> nomNib() const override;
    [[nodiscard]] Ref<NSString> dit(NSObject* objet) const override;
    [[nodiscard]] NSView* barre() override { return barre_; }
    /// Reads the landscapes, the first time.
    void commence() override;
    /// Blocks until the folder has been read and the thumbnails in view are there.
    void attends() override;

    /// Reads the folder, or the landscapes for an empty path.
    void montreDossier(NSString* chemin);
    void annule();
    [[nodiscard]] ReserveVignettes* reserve() const noexcept { return reserve_; }
    [[nodiscard]] NSString* etat() const { return barre_->etat(); }

private:
    void peintureAvance();
    void lectureAvance();
    void lectureFinie(LectureDossier::Fin fin);
    void disNombre();

    Ref<BarreDossier> barre_;
    Ref<ReserveVignettes> reserve_;
    Ref<LectureDossier> lecture_;
    Ref<ImagesEssai> essai_;
    Ref<NSMutableArray> fichiers_;
    LectureDossier::Fin fin_ = LectureDossier::Fin::complete;
    bool commence_ = false, peintureCoupee_ = false;
};

} // namespace galerie

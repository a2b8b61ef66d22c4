#pragma once

#include <disposition/Scene.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSSlider.h>

namespace galerie {

/// A slider and a field for one number, always the same on both.
struct Reglage {
    Ref<NSSlider> curseur;
    Ref<NSTextField> champ;

    [[nodiscard]] static Reglage fabrique(NSString* nom, double min, double max, NSObject* cible, SEL action);
    [[nodiscard]] Ref<NSView> rangee(NSString* nom) const;
    void montre(double v) const;
    void setActif(BOOL actif) const;
    /// What the control that sent an action says now; held to the limits.
    [[nodiscard]] double lis(const NSObject* emetteur) const;
};

/// The controls beside the scene: they show the chosen view and change it.
class Inspecteur : public NSObject {
public:
    static void describe(ClassDescription<Inspecteur>& c);
    static constexpr CGFloat kLargeur = 244;
    /// `scene` must outlive it.
    explicit Inspecteur(Scene& scene);
    ~Inspecteur() override;

    [[nodiscard]] KCLayoutView* vue() const noexcept { return vue_; }
    [[nodiscard]] const Reglage& espacement() const noexcept { return espacement_; }
    [[nodiscard]] NSTextField* champNom() const noexcept { return nom_; }

private:
    void construit();
    void montreTout();
    void montreConteneur();
    void montreEnfants();
    void montreFeuille();
    void montreNom();
    void montreCompte();

    void conteneurChoisi(NSObject* emetteur);
    void directionChoisie(NSObject* emetteur);
    void espacementChange(NSObject* emetteur);
    void ajustementChange(NSObject* emetteur);
    void enfantBascule(NSObject* emetteur);
    void tailleChange(NSObject* emetteur);
    void ajoute(NSObject* emetteur);
    void retire(NSObject* emetteur);
    void controlTextDidChange(NSNotification* n);
    void controlTextDidEndEditing(NSNotification* n);

    Scene& scene_;
    Ref<KCLayoutView> vue_;
    Ref<NSPopUpButton> conteneurs_, ajouter_;
    Ref<NSButton> horizontale_, verticale_, ajuste_, retirer_;
    Reglage espacement_, largeur_, hauteur_;
    Ref<KCLayoutView> enfants_;
    Ref<NSTextField> nom_, titreChoix_, derniere_, total_;
    Weak<Cadre> montre_;
    NSUInteger ajoutees_ = 0;
};

} // namespace galerie

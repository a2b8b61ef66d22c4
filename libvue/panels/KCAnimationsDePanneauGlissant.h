#pragma once

#include <libvue/panels/KCAnimationDePanneauxGlissants.h>
#include <libvue/panels/KCAnimationDePanneauxOutils.h>

namespace libvue {

// The eight slides. A push has both panels move, side by side on a strip of twice the container's size; a cover has the
// new one move in over the old one. Directions are those of the motion, with y upward.

/// The old panel keeps its frame in the strip: one that does not stand at (0, 0) keeps its offset.
class LIBVUE_API KCAnimationDePanneauGlissantVersLaGauche : public KCAnimationDePanneauxOutils,
                                                            public KCAnimationDePanneauxGlissants {
public:
    static void describe(ClassDescription<KCAnimationDePanneauGlissantVersLaGauche, KCAnimationDePanneauxOutils>& c);
    [[nodiscard]] static Ref<KCAnimationDePanneauGlissantVersLaGauche> animationPanneau();
    void animerPourRemplacerVue_avecVue_dansLaVueParent(NSView* ancienne, NSView* nouvelle,
                                                        KCConteneurDePanneauxGlissants* parent) override;
};

class LIBVUE_API KCAnimationDePanneauGlissantVersLaDroite : public KCAnimationDePanneauxOutils,
                                                            public KCAnimationDePanneauxGlissants {
public:
    static void describe(ClassDescription<KCAnimationDePanneauGlissantVersLaDroite, KCAnimationDePanneauxOutils>& c);
    [[nodiscard]] static Ref<KCAnimationDePanneauGlissantVersLaDroite> animationPanneau();
    void animerPourRemplacerVue_avecVue_dansLaVueParent(NSView* ancienne, NSView* nouvelle,
                                                        KCConteneurDePanneauxGlissants* parent) override;
};

class LIBVUE_API KCAnimationDePanneauGlissantVersLeHaut : public KCAnimationDePanneauxOutils,
                                                          public KCAnimationDePanneauxGlissants {
public:
    static void describe(ClassDescription<KCAnimationDePanneauGlissantVersLeHaut, KCAnimationDePanneauxOutils>& c);
    [[nodiscard]] static Ref<KCAnimationDePanneauGlissantVersLeHaut> animationPanneau();
    void animerPourRemplacerVue_avecVue_dansLaVueParent(NSView* ancienne, NSView* nouvelle,
                                                        KCConteneurDePanneauxGlissants* parent) override;
};

class LIBVUE_API KCAnimationDePanneauGlissantVersLeBas : public KCAnimationDePanneauxOutils,
                                                         public KCAnimationDePanneauxGlissants {
public:
    static void describe(ClassDescription<KCAnimationDePanneauGlissantVersLeBas, KCAnimationDePanneauxOutils>& c);
    [[nodiscard]] static Ref<KCAnimationDePanneauGlissantVersLeBas> animationPanneau();
    void animerPourRemplacerVue_avecVue_dansLaVueParent(NSView* ancienne, NSView* nouvelle,
                                                        KCConteneurDePanneauxGlissants* parent) override;
};

class LIBVUE_API KCAnimationDePanneauGlissantParDessusVersLaGauche : public KCAnimationDePanneauxOutils,
                                                                     public KCAnimationDePanneauxGlissants {
public:
    static void
    describe(ClassDescription<KCAnimationDePanneauGlissantParDessusVersLaGauche, KCAnimationDePanneauxOutils>& c);
    [[nodiscard]] static Ref<KCAnimationDePanneauGlissantParDessusVersLaGauche> animationPanneau();
    void animerPourRemplacerVue_avecVue_dansLaVueParent(NSView* ancienne, NSView* nouvelle,
                                                        KCConteneurDePanneauxGlissants* parent) override;
};

class LIBVUE_API KCAnimationDePanneauGlissantParDessusVersLaDroite : public KCAnimationDePanneauxOutils,
                                                                     public KCAnimationDePanneauxGlissants {
public:
    static void
    describe(ClassDescription<KCAnimationDePanneauGlissantParDessusVersLaDroite, KCAnimationDePanneauxOutils>& c);
    [[nodiscard]] static Ref<KCAnimationDePanneauGlissantParDessusVersLaDroite> animationPanneau();
    void animerPourRemplacerVue_avecVue_dansLaVueParent(NSView* ancienne, NSView* nouvelle,
                                                        KCConteneurDePanneauxGlissants* parent) override;
};

class LIBVUE_API KCAnimationDePanneauGlissantParDessusVersLeHaut : public KCAnimationDePanneauxOutils,
                                                                   public KCAnimationDePanneauxGlissants {
public:
    static void
    describe(ClassDescription<KCAnimationDePanneauGlissantParDessusVersLeHaut, KCAnimationDePanneauxOutils>& c);
    [[nodiscard]] static Ref<KCAnimationDePanneauGlissantParDessusVersLeHaut> animationPanneau();
    void animerPourRemplacerVue_avecVue_dansLaVueParent(NSView* ancienne, NSView* nouvelle,
                                                        KCConteneurDePanneauxGlissants* parent) override;
};

class LIBVUE_API KCAnimationDePanneauGlissantParDessusVersLeBas : public KCAnimationDePanneauxOutils,
                                                                  public KCAnimationDePanneauxGlissants {
public:
    static void
    describe(ClassDescription<KCAnimationDePanneauGlissantParDessusVersLeBas, KCAnimationDePanneauxOutils>& c);
    [[nodiscard]] static Ref<KCAnimationDePanneauGlissantParDessusVersLeBas> animationPanneau();
    void animerPourRemplacerVue_avecVue_dansLaVueParent(NSView* ancienne, NSView* nouvelle,
                                                        KCConteneurDePanneauxGlissants* parent) override;
};

} // namespace libvue

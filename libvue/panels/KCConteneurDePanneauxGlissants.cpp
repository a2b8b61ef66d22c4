#include <libvue/panels/KCConteneurDePanneauxGlissants.h>

#include <libvue/panels/KCAnimationDePanneauxGlissants.h>
#include <libvue/panels/KCPanneauxGlissants.h>
#include <libvue/platform/foundation/Class.h>
#include <libvue/platform/foundation/NSArray.h>

namespace libvue {

static const ClassRegistration<KCConteneurDePanneauxGlissants> enregistrement;

void KCConteneurDePanneauxGlissants::describe(ClassDescription<KCConteneurDePanneauxGlissants, NSView>& c) {
    c.key<&KCConteneurDePanneauxGlissants::panneauActuel, &KCConteneurDePanneauxGlissants::setPanneauActuel>(
        "panneauActuel");
}

KCConteneurDePanneauxGlissants::~KCConteneurDePanneauxGlissants() = default;

void KCConteneurDePanneauxGlissants::setPanneauActuel(NSView* panneau) { monPanneauActuel = panneau; }

void KCConteneurDePanneauxGlissants::afficherPanneau_avecAnimation(NSView* panneau,
                                                                   KCAnimationDePanneauxGlissants* animation) {
    if (!panneau) return;
    const Ref<NSView> self(this), nouveau(panneau);
    auto* glissant = dynamic_cast<KCPanneauxGlissants*>(panneau);
    if (monPanneauActuel == panneau) {
        if (glissant) glissant->panneauEstAffichay();
        return;
    }
    if (animation) {
        const Ref<NSView> ancien = monPanneauActuel;
        setPanneauActuel(panneau);
        animation->animerPourRemplacerVue_avecVue_dansLaVueParent(ancien, panneau, this);
        return;
    }
    nouveau->setFrame(bounds());
    setSubviews(NSArray::arrayWithObject(panneau));
    setPanneauActuel(panneau);
    setNeedsDisplay(YES);
    if (glissant) glissant->panneauEstAffichay();
}

} // namespace libvue

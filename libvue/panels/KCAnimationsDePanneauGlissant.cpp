#include <libvue/panels/KCAnimationsDePanneauGlissant.h>

#include <optional>

#include <libvue/panels/KCConteneurDePanneauxGlissants.h>
#include <libvue/platform/appkit/NSViewAnimation.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSValue.h>

namespace libvue {

namespace {

Ref<NSDictionary> entree(NSView* mobile, const NSRect& depart, const NSRect& arrivee) {
    const auto e = NSMutableDictionary::dictionary();
    e->setObject_forKey(mobile, NSViewAnimationTargetKey);
    e->setObject_forKey(NSValue::valueWithRect(depart), NSViewAnimationStartFrameKey);
    e->setObject_forKey(NSValue::valueWithRect(arrivee), NSViewAnimationEndFrameKey);
    return e;
}

/// The frames of a push: of the strip in the container, and of the panels in the strip.
struct Poussee {
    NSRect depart, arrivee;
    std::optional<NSRect> ancienne; ///< none: it keeps its own
    NSRect nouvelle;
};

void pousser(KCAnimationDePanneauxOutils& outils, NSView* ancienne, NSView* nouvelle,
             KCConteneurDePanneauxGlissants* parent, const Poussee& p) {
    const auto bande = make<NSView>(p.depart);
    if (const Ref<NSView> gardee{ancienne}) {
        gardee->removeFromSuperviewWithoutNeedingDisplay();
        if (p.ancienne) gardee->setFrame(*p.ancienne);
        bande->addSubview(gardee);
    }
    nouvelle->setFrame(p.nouvelle);
    bande->addSubview(nouvelle);
    parent->addSubview(bande);
    const Ref<NSDictionary> e = entree(bande, bande->frame(), p.arrivee);
    outils.animer_avecNouvelleVue_avecVueParent(e, nouvelle, parent);
}

void couvrir(KCAnimationDePanneauxOutils& outils, NSView* nouvelle, KCConteneurDePanneauxGlissants* parent,
             const NSRect& depart) {
    nouvelle->setFrame(depart);
    parent->addSubview(nouvelle);
    const Ref<NSDictionary> e = entree(nouvelle, depart, parent->bounds());
    outils.animer_avecNouvelleVue_avecVueParent(e, nouvelle, parent);
}

/// What every class of the eight has, but for its frames.
template <class T> void decrire(ClassDescription<T, KCAnimationDePanneauxOutils>& c) {
    c.template classAnswers<&T::animationPanneau>("animationPanneau");
}

const ClassRegistration<KCAnimationDePanneauGlissantVersLaGauche> enregistrementVersLaGauche;
const ClassRegistration<KCAnimationDePanneauGlissantVersLaDroite> enregistrementVersLaDroite;
const ClassRegistration<KCAnimationDePanneauGlissantVersLeHaut> enregistrementVersLeHaut;
const ClassRegistration<KCAnimationDePanneauGlissantVersLeBas> enregistrementVersLeBas;
const ClassRegistration<KCAnimationDePanneauGlissantParDessusVersLaGauche> enregistrementParDessusVersLaGauche;
const ClassRegistration<KCAnimationDePanneauGlissantParDessusVersLaDroite> enregistrementParDessusVersLaDroite;
const ClassRegistration<KCAnimationDePanneauGlissantParDessusVersLeHaut> enregistrementParDessusVersLeHaut;
const ClassRegistration<KCAnimationDePanneauGlissantParDessusVersLeBas> enregistrementParDessusVersLeBas;

} // namespace

void KCAnimationDePanneauGlissantVersLaGauche::describe(
    ClassDescription<KCAnimationDePanneauGlissantVersLaGauche, KCAnimationDePanneauxOutils>& c) {
    decrire(c);
}

Ref<KCAnimationDePanneauGlissantVersLaGauche> KCAnimationDePanneauGlissantVersLaGauche::animationPanneau() {
    return make<KCAnimationDePanneauGlissantVersLaGauche>();
}

void KCAnimationDePanneauGlissantVersLaGauche::animerPourRemplacerVue_avecVue_dansLaVueParent(
    NSView* ancienne, NSView* nouvelle, KCConteneurDePanneauxGlissants* parent) {
    if (!nouvelle || !parent) return;
    const auto [x, y] = parent->bounds().origin;
    const auto [w, h] = parent->bounds().size;
    pousser(*this, ancienne, nouvelle, parent,
            {{{x, y}, {2 * w, h}}, {{x - w, y}, {2 * w, h}}, std::nullopt, NSRect{{w, 0}, {w, h}}});
}

void KCAnimationDePanneauGlissantVersLaDroite::describe(
    ClassDescription<KCAnimationDePanneauGlissantVersLaDroite, KCAnimationDePanneauxOutils>& c) {
    decrire(c);
}

Ref<KCAnimationDePanneauGlissantVersLaDroite> KCAnimationDePanneauGlissantVersLaDroite::animationPanneau() {
    return make<KCAnimationDePanneauGlissantVersLaDroite>();
}

void KCAnimationDePanneauGlissantVersLaDroite::animerPourRemplacerVue_avecVue_dansLaVueParent(
    NSView* ancienne, NSView* nouvelle, KCConteneurDePanneauxGlissants* parent) {
    if (!nouvelle || !parent) return;
    const auto [x, y] = parent->bounds().origin;
    const auto [w, h] = parent->bounds().size;
    pousser(*this, ancienne, nouvelle, parent,
            {{{x - w, y}, {2 * w, h}}, {{x, y}, {2 * w, h}}, NSRect{{w, 0}, {w, h}}, NSRect{{0, 0}, {w, h}}});
}

void KCAnimationDePanneauGlissantVersLeHaut::describe(
    ClassDescription<KCAnimationDePanneauGlissantVersLeHaut, KCAnimationDePanneauxOutils>& c) {
    decrire(c);
}

Ref<KCAnimationDePanneauGlissantVersLeHaut> KCAnimationDePanneauGlissantVersLeHaut::animationPanneau() {
    return make<KCAnimationDePanneauGlissantVersLeHaut>();
}

void KCAnimationDePanneauGlissantVersLeHaut::animerPourRemplacerVue_avecVue_dansLaVueParent(
    NSView* ancienne, NSView* nouvelle, KCConteneurDePanneauxGlissants* parent) {
    if (!nouvelle || !parent) return;
    const auto [x, y] = parent->bounds().origin;
    const auto [w, h] = parent->bounds().size;
    pousser(*this, ancienne, nouvelle, parent,
            {{{x, y - h}, {w, 2 * h}}, {{x, y}, {w, 2 * h}}, NSRect{{0, h}, {w, h}}, NSRect{{0, 0}, {w, h}}});
}

void KCAnimationDePanneauGlissantVersLeBas::describe(
    ClassDescription<KCAnimationDePanneauGlissantVersLeBas, KCAnimationDePanneauxOutils>& c) {
    decrire(c);
}

Ref<KCAnimationDePanneauGlissantVersLeBas> KCAnimationDePanneauGlissantVersLeBas::animationPanneau() {
    return make<KCAnimationDePanneauGlissantVersLeBas>();
}

void KCAnimationDePanneauGlissantVersLeBas::animerPourRemplacerVue_avecVue_dansLaVueParent(
    NSView* ancienne, NSView* nouvelle, KCConteneurDePanneauxGlissants* parent) {
    if (!nouvelle || !parent) return;
    const auto [x, y] = parent->bounds().origin;
    const auto [w, h] = parent->bounds().size;
    pousser(*this, ancienne, nouvelle, parent,
            {{{x, y}, {w, 2 * h}}, {{x, y - h}, {w, 2 * h}}, NSRect{{0, 0}, {w, h}}, NSRect{{0, h}, {w, h}}});
}

void KCAnimationDePanneauGlissantParDessusVersLaGauche::describe(
    ClassDescription<KCAnimationDePanneauGlissantParDessusVersLaGauche, KCAnimationDePanneauxOutils>& c) {
    decrire(c);
}

Ref<KCAnimationDePanneauGlissantParDessusVersLaGauche>
KCAnimationDePanneauGlissantParDessusVersLaGauche::animationPanneau() {
    return make<KCAnimationDePanneauGlissantParDessusVersLaGauche>();
}

void KCAnimationDePanneauGlissantParDessusVersLaGauche::animerPourRemplacerVue_avecVue_dansLaVueParent(
    NSView*, NSView* nouvelle, KCConteneurDePanneauxGlissants* parent) {
    if (!nouvelle || !parent) return;
    const auto [x, y] = parent->bounds().origin;
    const auto [w, h] = parent->bounds().size;
    couvrir(*this, nouvelle, parent, {{x + w, y}, {w, h}});
}

void KCAnimationDePanneauGlissantParDessusVersLaDroite::describe(
    ClassDescription<KCAnimationDePanneauGlissantParDessusVersLaDroite, KCAnimationDePanneauxOutils>& c) {
    decrire(c);
}

Ref<KCAnimationDePanneauGlissantParDessusVersLaDroite>
KCAnimationDePanneauGlissantParDessusVersLaDroite::animationPanneau() {
    return make<KCAnimationDePanneauGlissantParDessusVersLaDroite>();
}

void KCAnimationDePanneauGlissantParDessusVersLaDroite::animerPourRemplacerVue_avecVue_dansLaVueParent(
    NSView*, NSView* nouvelle, KCConteneurDePanneauxGlissants* parent) {
    if (!nouvelle || !parent) return;
    const auto [x, y] = parent->bounds().origin;
    const auto [w, h] = parent->bounds().size;
    couvrir(*this, nouvelle, parent, {{x - w, y}, {w, h}});
}

void KCAnimationDePanneauGlissantParDessusVersLeHaut::describe(
    ClassDescription<KCAnimationDePanneauGlissantParDessusVersLeHaut, KCAnimationDePanneauxOutils>& c) {
    decrire(c);
}

Ref<KCAnimationDePanneauGlissantParDessusVersLeHaut>
KCAnimationDePanneauGlissantParDessusVersLeHaut::animationPanneau() {
    return make<KCAnimationDePanneauGlissantParDessusVersLeHaut>();
}

void KCAnimationDePanneauGlissantParDessusVersLeHaut::animerPourRemplacerVue_avecVue_dansLaVueParent(
    NSView*, NSView* nouvelle, KCConteneurDePanneauxGlissants* parent) {
    if (!nouvelle || !parent) return;
    const auto [x, y] = parent->bounds().origin;
    const auto [w, h] = parent->bounds().size;
    couvrir(*this, nouvelle, parent, {{x, y - h}, {w, h}});
}

void KCAnimationDePanneauGlissantParDessusVersLeBas::describe(
    ClassDescription<KCAnimationDePanneauGlissantParDessusVersLeBas, KCAnimationDePanneauxOutils>& c) {
    decrire(c);
}

Ref<KCAnimationDePanneauGlissantParDessusVersLeBas> KCAnimationDePanneauGlissantParDessusVersLeBas::animationPanneau() {
    return make<KCAnimationDePanneauGlissantParDessusVersLeBas>();
}

void KCAnimationDePanneauGlissantParDessusVersLeBas::animerPourRemplacerVue_avecVue_dansLaVueParent(
    NSView*, NSView* nouvelle, KCConteneurDePanneauxGlissants* parent) {
    if (!nouvelle || !parent) return;
    const auto [x, y] = parent->bounds().origin;
    const auto [w, h] = parent->bounds().size;
    couvrir(*this, nouvelle, parent, {{x, y + h}, {w, h}});
}

} // namespace libvue

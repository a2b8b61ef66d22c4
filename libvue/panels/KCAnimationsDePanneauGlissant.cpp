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

/// The frames of a push, in sizes of the container.
struct Poussee {
    NSSize bande;
    NSPoint depart, arrivee;         ///< of the strip, from the origin of the container's bounds
    std::optional<NSPoint> ancienne; ///< in the strip; none: it keeps its own frame
    NSPoint nouvelle;                ///< in the strip
};

constexpr Poussee kVersLaGauche{{2, 1}, {0, 0}, {-1, 0}, std::nullopt, {1, 0}};
constexpr Poussee kVersLaDroite{{2, 1}, {-1, 0}, {0, 0}, NSPoint{1, 0}, {0, 0}};
constexpr Poussee kVersLeHaut{{1, 2}, {0, -1}, {0, 0}, NSPoint{0, 1}, {0, 0}};
constexpr Poussee kVersLeBas{{1, 2}, {0, 0}, {0, -1}, NSPoint{0, 0}, {0, 1}};

NSRect cadre(NSPoint origine, NSSize unite, NSPoint place, NSSize taille) {
    return {{origine.x + place.x * unite.width, origine.y + place.y * unite.height},
            {taille.width * unite.width, taille.height * unite.height}};
}

void pousser(KCAnimationDePanneauxOutils& outils, NSView* ancienne, NSView* nouvelle,
             KCConteneurDePanneauxGlissants* parent, const Poussee& p) {
    if (!nouvelle || !parent) return;
    const auto [origine, unite] = parent->bounds();
    constexpr NSSize un{1, 1};
    const auto bande = make<NSView>(cadre(origine, unite, p.depart, p.bande));
    if (const Ref<NSView> gardee{ancienne}) {
        gardee->removeFromSuperviewWithoutNeedingDisplay();
        if (p.ancienne) gardee->setFrame(cadre(NSZeroPoint, unite, *p.ancienne, un));
        bande->addSubview(gardee);
    }
    nouvelle->setFrame(cadre(NSZeroPoint, unite, p.nouvelle, un));
    bande->addSubview(nouvelle);
    parent->addSubview(bande);
    const Ref<NSDictionary> e = entree(bande, bande->frame(), cadre(origine, unite, p.arrivee, p.bande));
    outils.animer_avecNouvelleVue_avecVueParent(e, nouvelle, parent);
}

/// `depart` in sizes of the container, from the origin of its bounds.
void couvrir(KCAnimationDePanneauxOutils& outils, NSView* nouvelle, KCConteneurDePanneauxGlissants* parent,
             NSPoint depart) {
    if (!nouvelle || !parent) return;
    const auto [origine, unite] = parent->bounds();
    const NSRect debut = cadre(origine, unite, depart, {1, 1});
    nouvelle->setFrame(debut);
    parent->addSubview(nouvelle);
    const Ref<NSDictionary> e = entree(nouvelle, debut, parent->bounds());
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
    pousser(*this, ancienne, nouvelle, parent, kVersLaGauche);
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
    pousser(*this, ancienne, nouvelle, parent, kVersLaDroite);
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
    pousser(*this, ancienne, nouvelle, parent, kVersLeHaut);
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
    pousser(*this, ancienne, nouvelle, parent, kVersLeBas);
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
    couvrir(*this, nouvelle, parent, {1, 0});
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
    couvrir(*this, nouvelle, parent, {-1, 0});
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
    couvrir(*this, nouvelle, parent, {0, -1});
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
    couvrir(*this, nouvelle, parent, {0, 1});
}

} // namespace libvue

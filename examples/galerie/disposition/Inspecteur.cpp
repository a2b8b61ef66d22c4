#include <disposition/Inspecteur.h>

#include <algorithm>
#include <cmath>

#include <Composition.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSNotification.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>

namespace galerie {

namespace {

constexpr CGFloat kIntitule = 84, kChamp = 44;
constexpr double kEspacementMax = 40, kCoteMin = 8, kLargeurMax = 320, kHauteurMax = 200;

Ref<NSTextField> intitule(NSString* texte) { return large(etiquette(texte), kIntitule); }

Ref<NSTextField> ligne() {
    auto l = legende(u" "_ns);
    return large(l, Inspecteur::kLargeur);
}

Ref<NSString> pluriel(NSUInteger n, NSString* un, NSString* plusieurs) {
    // Below two a French count is singular.
    return NSString::stringWithFormat(u"%lu\u00A0%@"_ns, static_cast<unsigned long>(n), n < 2 ? un : plusieurs);
}

} // namespace

// One number.

Reglage Reglage::fabrique(NSString* nom, double min, double max, NSObject* cible, SEL action) {
    Reglage r;
    r.curseur = NSSlider::sliderWithValue_minValue_maxValue_target_action(min, min, max, cible, action);
    r.curseur->sliderCell()->setAltIncrementValue(1);
    r.curseur->setAccessibilityLabel(nom);
    r.curseur->sizeToFit();
    r.curseur = large(r.curseur, Inspecteur::kLargeur - kIntitule - kChamp - 2 * kEcart);
    r.champ = large(NSTextField::textFieldWithString(u"0"_ns), kChamp);
    r.champ->setAlignment(NSRightTextAlignment);
    r.champ->setAccessibilityLabel(nom);
    r.champ->setDelegate(cible);
    r.champ->setTarget(cible);
    r.champ->setAction(action);
    return r;
}

Ref<NSView> Reglage::rangee(NSString* nom) const { return galerie::rangee({intitule(nom), curseur, champ}); }

void Reglage::montre(double v) const {
    curseur->setDoubleValue(v);
    if (!champ->currentEditor()) champ->setStringValue(enTexte(v));
}

void Reglage::setActif(BOOL actif) const {
    curseur->setEnabled(actif);
    champ->setEnabled(actif);
}

double Reglage::lis(const NSObject* emetteur) const {
    const double v = emetteur == champ.get() ? champ->doubleValue() : curseur->doubleValue();
    return std::clamp(std::round(v), curseur->minValue(), curseur->maxValue());
}

// The panel.

void Inspecteur::describe(ClassDescription<Inspecteur>& c) {
    c.answers<&Inspecteur::conteneurChoisi>("conteneurChoisi:");
    c.answers<&Inspecteur::directionChoisie>("directionChoisie:");
    c.answers<&Inspecteur::espacementChange>("espacementChange:");
    c.answers<&Inspecteur::ajustementChange>("ajustementChange:");
    c.answers<&Inspecteur::enfantBascule>("enfantBascule:");
    c.answers<&Inspecteur::tailleChange>("tailleChange:");
    c.answers<&Inspecteur::ajoute>("ajoute:");
    c.answers<&Inspecteur::retire>("retire:");
    c.answers<&Inspecteur::controlTextDidChange>(op::controlTextDidChange);
    c.answers<&Inspecteur::controlTextDidEndEditing>(op::controlTextDidEndEditing);
}

Inspecteur::Inspecteur(Scene& scene) : scene_(scene) {
    construit();
    scene_.surChoix = [this] { montreTout(); };
    scene_.surTexte = [this] { montreNom(); };
    scene_.surCompte = [this] { montreCompte(); };
    montreTout();
    montreCompte();
}

Inspecteur::~Inspecteur() {
    scene_.surChoix = nullptr;
    scene_.surTexte = nullptr;
    scene_.surCompte = nullptr;
}

void Inspecteur::construit() {
    conteneurs_ = make<NSPopUpButton>(NSZeroRect);
    conteneurs_->setTarget(this);
    conteneurs_->setAction(sel("conteneurChoisi:"));
    conteneurs_->setAccessibilityLabel(u"Conteneur"_ns);
    conteneurs_->addItemWithTitle(u"Racine"_ns);
    conteneurs_->sizeToFit();

    horizontale_ = NSButton::radioButtonWithTitle_target_action(u"Horizontale"_ns, this, sel("directionChoisie:"));
    verticale_ = NSButton::radioButtonWithTitle_target_action(u"Verticale"_ns, this, sel("directionChoisie:"));
    espacement_ = Reglage::fabrique(u"Espacement"_ns, 0, kEspacementMax, this, sel("espacementChange:"));
    ajuste_ =
        NSButton::checkboxWithTitle_target_action(u"Ajuster la taille au contenu"_ns, this, sel("ajustementChange:"));
    enfants_ = pile({}, 5);

    ajouter_ = make<NSPopUpButton>(NSZeroRect, YES);
    ajouter_->addItemsWithTitles(NSArray::arrayWithObjects(
        {u"Ajouter"_ns, u"Vue colorée"_ns, u"Étiquette"_ns, u"Champ de texte"_ns, u"Boîte"_ns, u"Conteneur"_ns}));
    ajouter_->setTarget(this);
    ajouter_->setAction(sel("ajoute:"));
    ajouter_->sizeToFit();
    retirer_ = NSButton::buttonWithTitle_target_action(u"Retirer"_ns, this, sel("retire:"));
    retirer_->setToolTip(u"Retire la vue choisie (Suppr dans l’arbre)"_ns);
    const CGFloat moitie = (kLargeur - kEcart) / 2;

    nom_ = large(NSTextField::textFieldWithString(u""_ns), kLargeur - kIntitule - kEcart);
    nom_->setDelegate(this);
    nom_->setAccessibilityLabel(u"Nom"_ns);
    largeur_ = Reglage::fabrique(u"Largeur"_ns, kCoteMin, kLargeurMax, this, sel("tailleChange:"));
    hauteur_ = Reglage::fabrique(u"Hauteur"_ns, kCoteMin, kHauteurMax, this, sel("tailleChange:"));
    titreChoix_ = large(titreGroupe(u"Vue choisie"_ns), kLargeur);
    derniere_ = ligne();
    total_ = ligne();

    const auto conteneur =
        groupe(u"Conteneur"_ns, {large(conteneurs_, kLargeur),
                                 galerie::rangee({intitule(u"Direction"_ns), pile({horizontale_, verticale_}, 4)}),
                                 espacement_.rangee(u"Espacement"_ns), ajuste_, legende(u"Enfants visibles"_ns),
                                 enfants_, galerie::rangee({large(ajouter_, moitie), large(retirer_, moitie)})});
    const auto feuille = pile({titreChoix_, galerie::rangee({intitule(u"Nom"_ns), nom_}),
                               largeur_.rangee(u"Largeur"_ns), hauteur_.rangee(u"Hauteur"_ns)});
    const auto passes = pile({titreGroupe(u"Passes"_ns), derniere_, total_}, 4);
    vue_ = pile({conteneur, filet(kLargeur), feuille, filet(kLargeur), passes}, 14);
}

// Showing.

void Inspecteur::montreTout() {
    montreConteneur();
    montreFeuille();
}

void Inspecteur::montreConteneur() {
    Cadre* conteneur = scene_.conteneur();
    if (!conteneur) return;
    const auto cadres = scene_.cadres();
    conteneurs_->removeAllItems();
    for (Cadre* c : cadres) {
        conteneurs_->addItemWithTitle(c->nom());
        conteneurs_->itemAtIndex(conteneurs_->numberOfItems() - 1)
            ->setIndentationLevel(static_cast<NSInteger>(c->profondeur()));
    }
    const auto ici = std::find(cadres.begin(), cadres.end(), conteneur);
    conteneurs_->selectItemAtIndex(ici - cadres.begin());

    const bool deCote = conteneur->lineaire()->direction() == 0;
    horizontale_->setState(deCote ? NSOnState : NSOffState);
    verticale_->setState(deCote ? NSOffState : NSOnState);
    espacement_.montre(conteneur->lineaire()->espacement());
    ajuste_->setState(conteneur->lineaire()->ajusteTailleAuContenu() ? NSOnState : NSOffState);
    montreEnfants();
}

void Inspecteur::montreEnfants() {
    KCLayoutView* ou = scene_.conteneur()->disposition();
    const auto nombre = ou->subviews().count();
    // Only another container or another number of children takes other check boxes: the focus stays where it is.
    if (montre_.get() != scene_.conteneur() || enfants_->subviews().count() != nombre) {
        montre_ = scene_.conteneur();
        for (const auto& v : enfants_->subviews().copy())
            v->removeFromSuperview();
        for (std::size_t i = 0; i < nombre; ++i) {
            auto c = NSButton::checkboxWithTitle_target_action(u"—"_ns, this, sel("enfantBascule:"));
            c->setTag(static_cast<NSInteger>(i));
            enfants_->addSubview(large(c, kLargeur));
        }
    }
    for (std::size_t i = 0; i < nombre; ++i) {
        auto* c = as<NSButton>(enfants_->subviews()[i]);
        NSView* enfant = ou->subviews()[i];
        const auto* cadre = as<const Cadre>(enfant);
        const Ref<NSString> nom = cadre ? Ref<NSString>(cadre->nom()) : nomDeFeuille(enfant);
        c->setTitle(nom->length() > 0 ? nom : u"(sans nom)"_ns);
        c->setState(enfant->isHidden() ? NSOffState : NSOnState);
    }
}

void Inspecteur::montreFeuille() {
    NSView* choisie = scene_.choisie();
    if (!choisie) return;
    auto* cadre = as<Cadre>(choisie);
    montreNom();
    retirer_->setEnabled(choisie != scene_.racine());
    // A container that fits its content has no size of its own.
    NSView* mesuree = cadre ? cadre->disposition() : choisie;
    const BOOL libre = !cadre || !cadre->lineaire()->ajusteTailleAuContenu();
    largeur_.montre(mesuree->frame().size.width);
    hauteur_.montre(mesuree->frame().size.height);
    largeur_.setActif(libre);
    hauteur_.setActif(libre);
    titreChoix_->setStringValue(cadre ? u"Vue choisie\u00A0: conteneur"_ns : u"Vue choisie\u00A0: feuille"_ns);
}

void Inspecteur::montreNom() {
    NSView* choisie = scene_.choisie();
    if (!choisie) return;
    auto* cadre = as<Cadre>(choisie);
    if (!nom_->currentEditor()) nom_->setStringValue(cadre ? Ref<NSString>(cadre->nom()) : nomDeFeuille(choisie));
    montreEnfants();
}

void Inspecteur::montreCompte() {
    const ComptePasses& p = scene_.compte();
    if (p.dispositionsEnTout == 0) {
        derniere_->setStringValue(u"Rien n’a changé depuis l’ouverture."_ns);
        total_->setStringValue(u"Un changement ne coûte qu’une image."_ns);
        return;
    }
    const auto compte = [](NSString* quand, NSUInteger dispositions, NSUInteger affichages) {
        return NSString::stringWithFormat(u"%@\u00A0: %@, %@"_ns, quand,
                                          pluriel(dispositions, u"disposition"_ns, u"dispositions"_ns).get(),
                                          pluriel(affichages, u"affichage"_ns, u"affichages"_ns).get());
    };
    derniere_->setStringValue(compte(u"Cette image"_ns, p.dispositions, p.affichages));
    total_->setStringValue(compte(u"En tout"_ns, p.dispositionsEnTout, p.affichagesEnTout));
    // The pass may have given the chosen view another size.
    montreFeuille();
}

// Changing.

void Inspecteur::conteneurChoisi(NSObject*) {
    const auto cadres = scene_.cadres();
    const NSInteger i = conteneurs_->indexOfSelectedItem();
    if (i >= 0 && i < static_cast<NSInteger>(cadres.size())) scene_.choisit(cadres[static_cast<std::size_t>(i)]);
}

void Inspecteur::directionChoisie(NSObject* emetteur) {
    Cadre* c = scene_.conteneur();
    if (!c) return;
    scene_.noteChangement();
    // What stood beside each other starts at the edge again, and the other way round.
    for (NSView* v : c->disposition()->subviews())
        v->setFrameOrigin(NSZeroPoint);
    c->lineaire()->setDirection(emetteur == horizontale_.get() ? 0 : 1);
    c->setNeedsDisplay(YES);
}

void Inspecteur::espacementChange(NSObject* emetteur) {
    Cadre* c = scene_.conteneur();
    if (!c) return;
    const double v = espacement_.lis(emetteur);
    espacement_.montre(v);
    if (v == c->lineaire()->espacement()) return;
    scene_.noteChangement();
    c->lineaire()->setEspacement(v);
    c->disposeANouveau();
}

void Inspecteur::ajustementChange(NSObject*) {
    Cadre* c = scene_.conteneur();
    if (!c) return;
    scene_.noteChangement();
    c->lineaire()->setAjusteTailleAuContenu(ajuste_->state() == NSOnState);
    c->disposeANouveau();
    montreFeuille();
}

void Inspecteur::enfantBascule(NSObject* emetteur) {
    auto* b = as<NSButton>(emetteur);
    Cadre* c = scene_.conteneur();
    if (!b || !c) return;
    const auto i = static_cast<std::size_t>(b->tag());
    if (i >= c->disposition()->subviews().count()) return;
    scene_.noteChangement();
    c->disposition()->subviews()[i]->setHidden(b->state() != NSOnState);
}

void Inspecteur::tailleChange(NSObject* emetteur) {
    NSView* choisie = scene_.choisie();
    if (!choisie) return;
    if (auto* c = as<Cadre>(choisie)) choisie = c->disposition();
    const bool enLargeur = emetteur == largeur_.curseur.get() || emetteur == largeur_.champ.get();
    const Reglage& r = enLargeur ? largeur_ : hauteur_;
    const double v = r.lis(emetteur);
    r.montre(v);
    NSSize taille = choisie->frame().size;
    (enLargeur ? taille.width : taille.height) = v;
    if (NSEqualSizes(taille, choisie->frame().size)) return;
    scene_.noteChangement();
    choisie->setFrameSize(taille);
}

void Inspecteur::ajoute(NSObject*) {
    static constexpr NSSize tailles[] = {{88, 40}, {120, 18}, {150, 24}, {150, 64}};
    const NSInteger choix = ajouter_->indexOfSelectedItem();
    if (choix < 1 || choix > 5) return;
    const auto numero = enTexte(static_cast<CGFloat>(++ajoutees_));
    const auto nom = NSString::stringWithFormat(u"%@\u00A0%@"_ns, choix == 5 ? u"Conteneur"_ns.get() : u"Vue"_ns.get(),
                                                numero.get());
    if (choix == 5)
        scene_.ajoute(make<Cadre>(nom, 0, 8));
    else
        scene_.ajoute(fabriqueFeuille(static_cast<GenreFeuille>(choix - 1), nom, ajoutees_, tailles[choix - 1]));
}

void Inspecteur::retire(NSObject*) { scene_.retire(); }

// The name follows each key; a number waits until it is whole.
void Inspecteur::controlTextDidChange(NSNotification* n) {
    if (n->object() != nom_.get() || !scene_.choisie()) return;
    scene_.noteChangement();
    const auto nom = nom_->stringValue();
    if (auto* c = as<Cadre>(scene_.choisie())) {
        c->setNom(nom);
        montreConteneur();
    } else {
        nommeFeuille(scene_.choisie(), nom);
        montreEnfants();
    }
}

void Inspecteur::controlTextDidEndEditing(NSNotification* n) {
    for (const Reglage* r : {&espacement_, &largeur_, &hauteur_})
        if (n->object() == r->champ.get()) {
            if (r == &espacement_)
                espacementChange(r->champ);
            else
                tailleChange(r->champ);
            r->champ->setStringValue(enTexte(r->curseur->doubleValue()));
        }
}

} // namespace galerie

#include <disposition/Scene.h>

#include <algorithm>

#include <disposition/Marques.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/foundation/NSTimer.h>

namespace galerie {

namespace {

constexpr CGFloat kMargeScene = 16;

/// What the page starts with: three levels, and a column in which a box follows a field.
Ref<Cadre> arbreDuDebut() {
    using G = GenreFeuille;
    auto racine = make<Cadre>(u"Racine"_ns, 1, 14);
    const auto mets = [](Cadre* dans, NSView* vue) { dans->disposition()->addSubview(vue); };

    const auto barre = make<Cadre>(u"Barre"_ns, 0, 8);
    mets(barre, fabriqueFeuille(G::pastille, u"Accueil"_ns, 0, {96, 44}));
    mets(barre, fabriqueFeuille(G::pastille, u"Recherche"_ns, 0, {108, 44}));
    mets(barre, fabriqueFeuille(G::pastille, u"Réglages"_ns, 0, {96, 44}));

    const auto corps = make<Cadre>(u"Corps"_ns, 0, 12);
    const auto colonne = make<Cadre>(u"Colonne"_ns, 1, 6);
    mets(colonne, fabriqueFeuille(G::etiquette, u"Prénom"_ns, 0, {150, 18}));
    mets(colonne, fabriqueFeuille(G::champ, u"Hélène"_ns, 0, {150, 24}));
    mets(colonne, fabriqueFeuille(G::boite, u"Adresse"_ns, 0, {150, 135}));
    const auto galerie = make<Cadre>(u"Galerie"_ns, 1, 8);
    mets(galerie, fabriqueFeuille(G::pastille, u"Aperçu"_ns, 1, {196, 110}));
    const auto vignettes = make<Cadre>(u"Vignettes"_ns, 0, 6);
    mets(vignettes, fabriqueFeuille(G::pastille, u"Été"_ns, 1, {85, 44}));
    mets(vignettes, fabriqueFeuille(G::pastille, u"Noël"_ns, 1, {85, 44}));
    mets(galerie, vignettes);
    mets(corps, colonne);
    mets(corps, galerie);

    const auto pied = make<Cadre>(u"Pied"_ns, 0, 8);
    const auto pret = fabriqueFeuille(G::etiquette, u"Prêt"_ns, 0, {190, 18});
    // Across the axis a view stays where it is, here in the middle of its neighbours.
    pret->setFrameOrigin({0, 7});
    mets(pied, pret);
    mets(pied, fabriqueFeuille(G::pastille, u"Annuler"_ns, 2, {96, 32}));
    mets(pied, fabriqueFeuille(G::pastille, u"Garder"_ns, 2, {96, 32}));

    mets(racine, barre);
    mets(racine, corps);
    mets(racine, pied);
    return racine;
}

} // namespace

void Scene::describe(ClassDescription<Scene, NSView>& c) { c.answers<&Scene::didLayout>(op::didLayout); }

Scene::Scene() : racine_(arbreDuDebut()), marques_(make<Marques>(*this)) {
    setFocusRingType(NSFocusRingTypeNone);
    setAccessibilityLabel(u"Arbre de vues"_ns);
    racine_->setFrameOrigin({kMargeScene, kMargeScene});
    addSubview(racine_);
    addSubview(marques_);
    adopte(racine_);
    racine_->disposition()->zerl_layout();
    NSNotificationCenter::defaultCenter()->addObserver<&Scene::racineAChange>(this, NSViewFrameDidChangeNotification,
                                                                              racine_.get());
    racineAChange();
    for (Cadre* c : cadres())
        if (c->nom()->isEqualToString(u"Colonne"_ns)) choisie_ = c;
}

Scene::~Scene() {
    NSNotificationCenter::defaultCenter()->removeObserver(this);
    delaisse(racine_);
}

// Everything that comes into the tree is counted, and its fields say when they are entered.
void Scene::adopte(NSView* vue) {
    if (auto* c = as<Cadre>(vue)) {
        c->disposition()->setLayoutDelegate(this);
        for (NSView* v : c->disposition()->subviews())
            adopte(v);
    } else if (auto* champ = as<ChampFeuille>(vue))
        champ->surEntree = [this](NSView* v) {
            if (choisie_ != v)
                choisit(v);
            else if (surTexte)
                surTexte();
        };
}

void Scene::delaisse(NSView* vue) {
    if (auto* c = as<Cadre>(vue))
        for (NSView* v : c->disposition()->subviews())
            delaisse(v);
    else if (auto* champ = as<ChampFeuille>(vue))
        champ->surEntree = nullptr;
}

// Choosing.

Cadre* Scene::conteneur() const {
    if (auto* c = as<Cadre>(choisie_.get())) return c;
    return Cadre::autourDe(choisie_);
}

void Scene::choisit(NSView* vue) {
    if (!vue || vue == choisie_.get()) return;
    choisie_ = vue;
    marques_->setNeedsDisplay(YES);
    if (!vue->isHidden()) vue->scrollRectToVisible(NSInsetRect(vue->bounds(), -8, -8));
    if (surChoix) surChoix();
}

void Scene::parcours(Cadre* c, std::vector<Cadre*>& dans) const {
    dans.push_back(c);
    for (NSView* v : c->disposition()->subviews())
        if (auto* dedans = as<Cadre>(v)) parcours(dedans, dans);
}

std::vector<Cadre*> Scene::cadres() const {
    std::vector<Cadre*> tous;
    parcours(racine_, tous);
    return tous;
}

void Scene::prendsLeClavier() {
    if (window() && window()->firstResponder() != this) window()->makeFirstResponder(this);
}

BOOL Scene::becomeFirstResponder() {
    marques_->setNeedsDisplay(YES);
    return YES;
}
BOOL Scene::resignFirstResponder() {
    marques_->setNeedsDisplay(YES);
    return YES;
}

void Scene::mouseDown(NSEvent*) { prendsLeClavier(); }

void Scene::keyDown(NSEvent* e) {
    NSString* touches = e->charactersIgnoringModifiers();
    const unichar touche = touches && touches->length() > 0 ? touches->characterAtIndex(0) : 0;
    NSView* ici = choisie_;
    Cadre* autour = Cadre::autourDe(ici);
    const auto voisine = [&](NSInteger pas) -> NSView* {
        if (!autour) return nullptr;
        const SubviewList& soeurs = autour->disposition()->subviews();
        auto i = static_cast<NSInteger>(soeurs.indexOfObject(ici));
        do
            i += pas;
        while (i >= 0 && i < static_cast<NSInteger>(soeurs.count()) && soeurs[static_cast<std::size_t>(i)]->isHidden());
        return i >= 0 && i < static_cast<NSInteger>(soeurs.count()) ? soeurs[static_cast<std::size_t>(i)] : nullptr;
    };
    switch (touche) {
    case NSUpArrowFunctionKey:
        choisit(autour);
        return;
    case NSDownArrowFunctionKey:
        if (auto* c = as<Cadre>(ici)) choisit(c->disposition()->subviews().firstObject());
        return;
    case NSLeftArrowFunctionKey:
        choisit(voisine(-1));
        return;
    case NSRightArrowFunctionKey:
        choisit(voisine(1));
        return;
    case NSDeleteFunctionKey:
    case NSDeleteCharacter:
    case NSBackspaceCharacter:
        retire();
        return;
    default:
        NSView::keyDown(e);
    }
}

// The tree.

void Scene::ajoute(NSView* vue) {
    Cadre* dans = conteneur();
    if (!dans || !vue) return;
    noteChangement();
    adopte(vue);
    dans->disposition()->addSubview(vue);
    choisit(vue);
}

void Scene::retire() {
    const Ref<NSView> partante = choisie_.ref();
    Cadre* dans = Cadre::autourDe(partante);
    if (!partante || !dans) return;
    noteChangement();
    const SubviewList& soeurs = dans->disposition()->subviews();
    const NSUInteger i = soeurs.indexOfObject(partante);
    NSView* suivante = dans;
    if (i + 1 < soeurs.count())
        suivante = soeurs[i + 1];
    else if (i > 0)
        suivante = soeurs[i - 1];
    choisie_ = suivante;
    delaisse(partante);
    partante->removeFromSuperview();
    marques_->setNeedsDisplay(YES);
    if (surChoix) surChoix();
}

void Scene::setPlace(NSSize place) {
    place_ = place;
    racineAChange();
}

void Scene::racineAChange() {
    const NSRect r = racine_->frame();
    const NSSize taille{std::max(place_.width, NSMaxX(r) + kMargeScene),
                        std::max(place_.height, NSMaxY(r) + kMargeScene)};
    marques_->setFrame({NSZeroPoint, taille});
    marques_->setNeedsDisplay(YES);
    setFrameSize(taille);
}

// Counting.

void Scene::noteChangement() { compteActif_ = true; }

void Scene::didLayout(KCLayoutView*) {
    marques_->setNeedsDisplay(YES);
    if (!compteActif_) return;
    if (!tourOuvert_) {
        tourOuvert_ = true;
        enCours_ = {};
        // Layout runs within a display pass, which has been counted already.
        affichagesAuDebut_ = window() ? window()->displayPassCount() - 1 : 0;
        // Also while a slider is dragged.
        const auto fin = NSTimer::timerWithTimeInterval_repeats_block(0, NO, [scene = Weak<Scene>(this)](NSTimer*) {
            if (scene) scene->finDuTour();
        });
        NSRunLoop::mainRunLoop()->addTimer_forMode(fin, NSRunLoopCommonModes);
    }
    ++enCours_.dispositions;
}

void Scene::finDuTour() {
    tourOuvert_ = false;
    const NSUInteger maintenant = window() ? window()->displayPassCount() : affichagesAuDebut_;
    compte_.dispositions = enCours_.dispositions;
    compte_.affichages = maintenant - affichagesAuDebut_;
    compte_.dispositionsEnTout += compte_.dispositions;
    compte_.affichagesEnTout += compte_.affichages;
    if (surCompte) surCompte();
}

AccessibilityDescription Scene::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"group"_ns;
    if (auto* c = as<Cadre>(choisie_.get()))
        d.value = c->nom();
    else if (choisie_)
        d.value = nomDeFeuille(choisie_);
    return d;
}

} // namespace galerie

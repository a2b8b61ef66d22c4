#include <libvue/collections/KCCollectionView.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include <libvue/collections/BassinCirculaire.h>
#include <libvue/collections/KCNibHelper.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSBundle.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>

namespace libvue {

namespace {

constexpr CGFloat kMargesEnLargeur = 20.0; // both sides
constexpr CGFloat kMargeGauche = 10.0;

/// While nothing is live the pool still has a few views.
constexpr std::uint64_t kBassinMinimal = 4;

/// Towards zero; what no integer can hold becomes the nearest one, and what is no number 0.
template <class T> T tronque(CGFloat v) {
    constexpr auto haut = static_cast<CGFloat>(std::numeric_limits<T>::max());
    constexpr auto bas = static_cast<CGFloat>(std::numeric_limits<T>::min());
    if (std::isnan(v)) return 0;
    if (v >= haut) return std::numeric_limits<T>::max();
    if (v <= bas) return std::numeric_limits<T>::min();
    return static_cast<T>(v);
}

const ClassRegistration<KCCollectionView> enregistrement;

} // namespace

void KCCollectionView::describe(ClassDescription<KCCollectionView, NSView>& c) {
    using K = KCCollectionView;
    c.answers<&K::selectionnerSuivant>("selectionnerSuivant:");
    c.answers<&K::selectionnerPrecedent>("selectionnerPrecedent:");
    c.answers<&K::moveLeft>("moveLeft:");
    c.answers<&K::moveRight>("moveRight:");
    c.answers<&K::moveUp>("moveUp:");
    c.answers<&K::moveDown>("moveDown:");
    c.answers<&K::scrollToBeginningOfDocument>("scrollToBeginningOfDocument:");
    c.answers<&K::scrollToEndOfDocument>("scrollToEndOfDocument:");
    c.answers<&K::scrollPageDown>("scrollPageDown:");
    c.answers<&K::scrollPageUp>("scrollPageUp:");
    c.answers<&K::insertTab>("insertTab:");
    c.answers<&K::insertBacktab>("insertBacktab:");
    c.classAnswers<&K::keyPathsForValuesAffectingAUnPrecedent>("keyPathsForValuesAffectingAUnPrecedent");
    c.classAnswers<&K::keyPathsForValuesAffectingAUnSuivant>("keyPathsForValuesAffectingAUnSuivant");
    c.key<&K::selectedIndex, &K::setSelectedIndex>("selectedIndex");
    c.key<&K::selection, &K::setSelection>("selection");
    c.key<&K::selectedObject, &K::setSelectedObject>("selectedObject");
    c.key<&K::aUnPrecedent>("aUnPrecedent");
    c.key<&K::aUnSuivant>("aUnSuivant");
    c.key<&K::donnees, &K::setDonnees>("donnees");
    c.key<&K::nomNib, &K::setNomNib>("nomNib");
    c.key<&K::espacement, &K::setEspacement>("espacement");
}

KCCollectionView::KCCollectionView() = default;
KCCollectionView::KCCollectionView(const NSRect& frame) : NSView(frame) {}
KCCollectionView::~KCCollectionView() = default;

// What it shows.

void KCCollectionView::setClasseVueItem(const Class* classe) {
    maClasseVueItem = classe;
    maTailleElement = classe ? tailleVueItem(*classe) : NSZeroSize;
    nibManquant_ = false;
}

void KCCollectionView::setNomNib(NSString* nom) {
    if (monNomNib == nom) return;
    monNomNib = nom;
    nibManquant_ = false;
}

void KCCollectionView::setBundleNib(NSBundle* bundle) {
    if (monBundleNib == bundle) return;
    monBundleNib = bundle;
    nibManquant_ = false;
}

void KCCollectionView::setEspacement(NSSize espacement) {
    monEspacement = espacement;
    setNeedsDisplay(YES);
}

void KCCollectionView::setDelegate(NSObject* delegate) {
    const Ref<NSObject> ancien = monDelegate;
    monDelegate = delegate;
}

void KCCollectionView::setDonnees(NSArray* donnees) {
    if (!estClasseVueItem(maClasseVueItem)) return;
    const Ref<KCCollectionView> self(this);
    const Ref<NSArray> anciennes = mesDonnees;
    mesDonnees = donnees;
    ++passe_;
    // On the new list already: it is the new object at the old index that hears of it.
    setSelection(-1);
    scrollRectToVisible(NSZeroRect);
    resizeSubviewsWithOldSize(NSZeroSize);
    setNeedsDisplay(YES);
}

void KCCollectionView::awakeFromNib() {
    setSelection(-1);
    setAutoresizesSubviews(YES);
    printFrames = NSMutableArray::array();
}

BassinCirculaire* KCCollectionView::mesVues() const noexcept { return mesVues_; }

NSUInteger KCCollectionView::nombre() const noexcept { return mesDonnees ? mesDonnees->count() : 0; }

// Arithmetic.

std::int64_t KCCollectionView::nbObjetsEnLargeur() const {
    const CGFloat libre = frame().size.width - kMargesEnLargeur;
    if (libre < maTailleElement.width) return 0;
    // The last column needs no gap behind it.
    return std::int64_t{1} +
           tronque<std::int32_t>((libre - maTailleElement.width) / (maTailleElement.width + monEspacement.width));
}

std::int64_t KCCollectionView::nbObjetsEnHauteur(std::int64_t colonnes) const {
    if (colonnes == 0) return 0;
    return tronque<std::int64_t>(std::ceil(static_cast<CGFloat>(nombre()) / static_cast<CGFloat>(colonnes)));
}

NSPoint KCCollectionView::origineElement(std::int64_t x, std::int64_t y, CGFloat entete) const noexcept {
    const auto colonne = static_cast<CGFloat>(x), rangee = static_cast<CGFloat>(y);
    return {maTailleElement.width * colonne + kMargeGauche + monEspacement.width * colonne,
            monEspacement.height * rangee + maTailleElement.height * rangee + entete};
}

void KCCollectionView::setPositionDeLaVue_x_y_tailleEntete(NSView* vue, std::int64_t x, std::int64_t y,
                                                           CGFloat entete) {
    if (vue) vue->setFrameOrigin(origineElement(x, y, entete));
}

void KCCollectionView::setElementVisible(std::uint64_t index) {
    const auto colonnes = static_cast<std::uint64_t>(nbObjetsEnLargeur());
    if (colonnes == 0) return;
    const Ref<KCCollectionView> self(this);
    const CGFloat entete = tailleEntete();
    scrollRectToVisible({origineElement(static_cast<std::int64_t>(index % colonnes),
                                        static_cast<std::int64_t>(index / colonnes), entete),
                         maTailleElement});
}

CGFloat KCCollectionView::tailleEntete() {
    const auto taille = op::collectionViewTailleEntete.of(monDelegate);
    return taille ? taille(this) : 0.0;
}

CGFloat KCCollectionView::taillePiedDePage() {
    const auto taille = op::collectionViewTaillePiedDePage.of(monDelegate);
    return taille ? taille(this) : 0.0;
}

CGFloat KCCollectionView::hauteurContenu() {
    const std::int64_t rangees = nbObjetsEnHauteur(nbObjetsEnLargeur());
    CGFloat hauteur = tailleEntete() + taillePiedDePage();
    if (rangees > 0)
        hauteur += maTailleElement.height +
                   static_cast<CGFloat>(rangees - 1) * (monEspacement.height + maTailleElement.height);
    return hauteur;
}

void KCCollectionView::resizeSubviewsWithOldSize(const NSSize&) {
    if (!mesDonnees) return;
    const Ref<KCCollectionView> self(this);
    CGFloat largeur = 0;
    do {
        largeur = frame().size.width;
        const CGFloat hauteur = hauteurContenu();
        const NSScrollView* defilement = enclosingScrollView();
        const CGFloat visible = defilement ? defilement->documentVisibleRect().size.height : 0;
        setFrameSize({largeur, std::max(visible, hauteur)});
        // A scroller that has just appeared may have made it narrower, and its content higher.
    } while (frame().size.width < largeur);
    ajusteContenu();
}

// The recycling.

void KCCollectionView::ajusteContenu() {
    if (!mesDonnees || !monNomNib || !maClasseVueItem) return;
    const Ref<KCCollectionView> self(this);
    const Ref<NSArray> donnees = mesDonnees;
    const unsigned passe = ++passe_;
    const std::int64_t colonnes = nbObjetsEnLargeur();
    const std::uint64_t n = donnees->count();
    const NSScrollView* defilement = enclosingScrollView();
    const NSRect visible = defilement ? defilement->documentVisibleRect() : NSZeroRect;
    const CGFloat entete = tailleEntete();
    // Whoever is asked may change the data, which runs a pass of its own: that one counts.
    if (passe != passe_) return;
    const CGFloat pas = maTailleElement.height + monEspacement.height;
    // One row more than fits. Unsigned, as all that follows: no overflow is undefined.
    const auto rangees = static_cast<std::uint64_t>(tronque<std::int64_t>(std::ceil(visible.size.height / pas) + 1));
    const std::uint64_t capacite = rangees * static_cast<std::uint64_t>(colonnes);
    const std::uint64_t vivants = std::min(n, capacite);
    const CGFloat haut = std::floor((visible.origin.y - entete) / pas) * static_cast<CGFloat>(colonnes);
    const auto premier = tronque<std::uint64_t>(std::min(haut, static_cast<CGFloat>(n - vivants)));
    if (!prepareBassin(vivants)) return;
    const Ref<BassinCirculaire> bassin = mesVues_;
    if (vivants > vignettesAffichees_.length)
        bassin->setTaille(vivants);
    else if (vivants < vignettesAffichees_.length)
        masqueTout();
    if (passe != passe_) return;
    bassin->scroll(static_cast<std::int64_t>(premier - vignettesAffichees_.location));
    // At once, so that the ring and the range agree also for a pass that runs within this one.
    vignettesAffichees_ = {premier, vivants};
    for (std::uint64_t i = premier; i < premier + vivants; ++i) {
        const Ref<KCNibHelper> element = static_cast<KCNibHelper*>(bassin->preteElement(i));
        if (!montre(element, i, static_cast<NSUInteger>(colonnes), entete, donnees, passe)) return;
    }
    masqueEgares(visible);
}

void KCCollectionView::masqueEgares(const NSRect& visible) {
    // Views out of the range stay where they were, mostly out of sight. After a resize, or where the ring has turned,
    // such a place may be in sight again and belong to another view.
    const Ref<BassinCirculaire> bassin = mesVues_;
    const std::uint64_t debut = bassin->premierNoElement(), taille = bassin->taille();
    for (std::uint64_t i = vignettesAffichees_.length; i < taille; ++i) {
        NSView* vue = static_cast<KCNibHelper*>(bassin->preteElement(debut + i))->vue();
        if (vue && !vue->isHidden() && NSIntersectsRect(vue->frame(), visible)) vue->setHidden(YES);
    }
}

bool KCCollectionView::prepareBassin(std::uint64_t vivants) {
    if (mesVues_) return true;
    if (nibManquant_) return false;
    const Ref<KCNibHelper> chargeur =
        KCNibHelper::initAvecNomNib_bundleNib_owner_classeView(monNomNib, monBundleNib, this, maClasseVueItem);
    nibManquant_ = !chargeur;
    if (!chargeur) return false;
    mesVues_ = make<BassinCirculaire>(vivants ? vivants : kBassinMinimal, chargeur.get());
    return true;
}

void KCCollectionView::masqueTout() {
    const Ref<BassinCirculaire> bassin = mesVues_;
    const std::uint64_t debut = bassin->premierNoElement(), taille = bassin->taille();
    for (std::uint64_t i = 0; i < taille; ++i)
        if (NSView* vue = static_cast<KCNibHelper*>(bassin->preteElement(debut + i))->vue()) vue->setHidden(YES);
}

bool KCCollectionView::montre(KCNibHelper* element, NSUInteger i, NSUInteger colonnes, CGFloat entete, NSArray* donnees,
                              unsigned passe) {
    NSView* vue = element->vue();
    KCCollectionItemView* item = element->vueItem();
    if (!vue || !item) return true;
    vue->setHidden(NO);
    if (!vue->superview()) {
        item->setCollectionView(this);
        addSubview(vue);
    }
    if (passe != passe_ || i >= donnees->count()) return false;
    NSObject* objet = donnees->objectAtIndex(i);
    if (item->objetConnectay() != objet) {
        item->setObjetConnectay(objet);
        if (passe != passe_) return false;
    }
    setPositionDeLaVue_x_y_tailleEntete(vue, static_cast<std::int64_t>(i % colonnes),
                                        static_cast<std::int64_t>(i / colonnes), entete);
    return passe == passe_;
}

// Drawing.

void KCCollectionView::drawRect(const NSRect& r) {
    const Ref<KCCollectionView> self(this);
    if (const auto dessine = op::collectionView_drawEntete.of(monDelegate)) {
        const NSRect bande = NSIntersectionRect(r, {{0, 0}, {frame().size.width, tailleEntete()}});
        if (bande.size.height > 0) dessine(this, bande);
    }
    const BOOL aLEcran = NSGraphicsContext::currentContextDrawingToScreen();
    // On paper what is drawn is what must be visible: the recycling looks there.
    if (!aLEcran) scrollRectToVisible(r);
    ajusteContenu();
    NSView::drawRect(r);
    if (!aLEcran) return;
    const auto dessine = op::collectionView_drawPiedDePage.of(monDelegate);
    if (!dessine) return;
    const CGFloat pied = taillePiedDePage();
    if (!(pied > 0)) return;
    CGFloat bas = hauteurContenu();
    // A short content leaves the foot at the bottom of what shows.
    if (const NSView* v = superview()) bas = std::max(bas, v->bounds().size.height - bounds().origin.y);
    dessine(this, {{bounds().origin.x, bas - pied}, {bounds().size.width, pied}});
}

AccessibilityDescription KCCollectionView::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"grid"_ns;
    return d;
}

} // namespace libvue

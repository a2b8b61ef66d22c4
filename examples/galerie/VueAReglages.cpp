#include <VueAReglages.h>

#include <algorithm>

#include <libvue/platform/appkit/NSScroller.h>

namespace galerie {

namespace {

constexpr CGFloat kHaut = 4, kSousFeuille = 12;

Ref<NSScrollView> defilant(NSView* document) {
    auto defilement = make<NSScrollView>(NSZeroRect);
    defilement->setDrawsBackground(NO);
    defilement->setHasVerticalScroller(YES);
    defilement->setDocumentView(document);
    return defilement;
}

} // namespace

VueAReglages::VueAReglages(CGFloat hauteurListe, CGFloat largeurIntitules)
    : NSView(NSZeroRect), hauteurListe_(hauteurListe), largeurIntitules_(largeurIntitules) {}

void VueAReglages::ajouteListe(NSView* document) {
    liste_ = defilant(document);
    addSubview(liste_);
}

void VueAReglages::ajouteReglages(NSView* contenu) {
    reglages_ = defilant(contenu);
    addSubview(reglages_);
}

NSRect VueAReglages::feuille() const {
    const NSSize t = bounds().size;
    return NSMakeRect(kMarge, kHaut, std::max(0.0, t.width - 3 * kMarge - kLargeurReglages),
                      std::max(0.0, t.height - kHaut - kMarge - hauteurListe_ - kSousFeuille));
}

void VueAReglages::resizeSubviewsWithOldSize(const NSSize&) {
    const NSSize t = bounds().size;
    reglages_->setFrame(NSMakeRect(t.width - kMarge - kLargeurReglages, kHaut,
                                   kLargeurReglages + NSScroller::scrollerWidth(),
                                   std::max(0.0, t.height - kHaut - kMarge)));
    const NSRect f = feuille();
    liste_->setFrame(NSInsetRect(NSMakeRect(NSMinX(f), NSMaxY(f) + kSousFeuille, f.size.width, hauteurListe_), 1, 1));
}

void VueAReglages::drawRect(const NSRect&) { dessineFeuille(NSInsetRect(liste_->frame(), -1, -1)); }

Ref<NSButton> VueAReglages::bouton(NSString* titre, Actions::Fonction f) {
    return NSButton::buttonWithTitle_target_action(titre, agis(std::move(f)), Actions::selecteur());
}

Ref<NSButton> VueAReglages::coche(NSString* titre, BOOL cochee, std::function<void(BOOL)> f) {
    auto c = NSButton::checkboxWithTitle_target_action(
        titre, agis([f = std::move(f)](NSObject* e) { f(static_cast<NSButton*>(e)->state() == NSOnState); }),
        Actions::selecteur());
    c->setState(cochee ? NSOnState : NSOffState);
    return c;
}

Ref<NSPopUpButton> VueAReglages::choix(NSString* nom, std::initializer_list<Ref<NSString>> titres, NSInteger choisi,
                                       std::function<void(NSInteger)> f) {
    auto p = make<NSPopUpButton>(NSZeroRect);
    for (const Ref<NSString>& t : titres)
        p->addItemWithTitle(t);
    p->selectItemAtIndex(choisi);
    p->setAccessibilityLabel(nom);
    if (f) {
        p->setTarget(
            agis([f = std::move(f)](NSObject* e) { f(static_cast<NSPopUpButton*>(e)->indexOfSelectedItem()); }));
        p->setAction(Actions::selecteur());
    }
    p->sizeToFit();
    return large(p, largeurReglage());
}

Ref<NSView> VueAReglages::ligne(NSString* nom, const Ref<NSView>& reglage) const {
    return rangee({large(etiquette(nom), largeurIntitules_), reglage});
}

} // namespace galerie

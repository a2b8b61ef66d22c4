#include <bulles/ContenuBulle.h>

#include <algorithm>

#include <Composition.h>
#include <libvue/layout/NotificationsVue.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSValue.h>

namespace galerie {

namespace {

constexpr CGFloat kBord = 14, kLargeur = 216, kEntreLignes = 4;
constexpr int kLignesMax = 6;

constexpr std::u16string_view kTextes[kLignesMax] = {
    u"La bulle grandit avec son contenu,", u"et cherche de nouveau sa place.", u"Sa flèche suit l’ancre.",
    u"Elle ne sort pas de l’écran,",       u"et passe sur un autre bord",      u"où il y a plus de place."};

} // namespace

ContenuBulle::ContenuBulle(NSString* titre, Actions::Fonction autreBulle, Actions::Fonction ferme)
    : autreBulle_(std::move(autreBulle)), ferme_(std::move(ferme)) {
    setTitle(titre);
}

void ContenuBulle::loadView() {
    const auto vue = make<KCFlippedView>(NSZeroRect);
    // It follows the balloon, which takes the size that the content announced.
    vue->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
    entete_ = titreGroupe(title());
    legende_ = legende(u"Échap ferme la bulle."_ns);
    champ_ = large(NSTextField::textFieldWithString(u""_ns), kLargeur);
    champ_->setPlaceholderString(u"Écrivez ici"_ns);
    const auto bouton = [&](NSString* nom, NSString* dit, Actions::Fonction f) {
        auto b = NSButton::buttonWithTitle_target_action(nom, actions_.cible(std::move(f)), Actions::selecteur());
        b->setAccessibilityLabel(dit);
        b->setToolTip(dit);
        return b;
    };
    plus_ =
        bouton(u"+"_ns, u"Agrandir la bulle"_ns, [this](NSObject*) { change(static_cast<int>(lignes_.size()) + 1); });
    moins_ =
        bouton(u"−"_ns, u"Réduire la bulle"_ns, [this](NSObject*) { change(static_cast<int>(lignes_.size()) - 1); });
    moins_->setEnabled(NO);
    boutons_ = rangee({plus_, moins_, bouton(u"Bulle"_ns, u"Une bulle sur la bulle"_ns, autreBulle_),
                       bouton(u"Fermer"_ns, u"Fermer la bulle"_ns, ferme_)},
                      6);
    for (NSView* v : std::initializer_list<NSView*>{entete_, legende_, champ_, boutons_})
        vue->addSubview(v);
    setView(vue);
    place();
    vue->setFrameSize(donneTailleIdeale());
}

void ContenuBulle::place() {
    CGFloat y = kBord;
    const auto pose = [&](NSView* v, CGFloat ecart) {
        v->setFrameOrigin({kBord, y});
        y += v->frame().size.height + ecart;
    };
    pose(entete_, 2);
    pose(legende_, 10);
    pose(champ_, 10);
    for (std::size_t i = 0; i < lignes_.size(); ++i)
        pose(lignes_[i], i + 1 < lignes_.size() ? kEntreLignes : 10);
    pose(boutons_, 0);
}

NSSize ContenuBulle::donneTailleIdeale() {
    (void)view();
    return {kLargeur + 2 * kBord, NSMaxY(boutons_->frame()) + kBord};
}

void ContenuBulle::change(int lignes) {
    lignes = std::clamp(lignes, 0, kLignesMax);
    if (lignes == static_cast<int>(lignes_.size())) return;
    while (static_cast<int>(lignes_.size()) > lignes) {
        lignes_.back()->removeFromSuperview();
        lignes_.pop_back();
    }
    while (static_cast<int>(lignes_.size()) < lignes) {
        const auto& l = lignes_.emplace_back(etiquette(NSString::from(kTextes[lignes_.size()])));
        view()->addSubview(l);
    }
    plus_->setEnabled(lignes < kLignesMax);
    moins_->setEnabled(lignes > 0);
    place();
    const Ref<NSValue> taille = NSValue::valueWithSize(donneTailleIdeale());
    const Ref<NSDictionary> info = NSDictionary::dictionaryWithObject_forKey(taille, u"size"_ns);
    NSNotificationCenter::defaultCenter()->postNotificationName_object_userInfo(kContentWouldChangeSizeNotification,
                                                                                this, info);
}

} // namespace galerie

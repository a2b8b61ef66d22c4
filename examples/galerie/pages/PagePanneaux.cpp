// Panels that slide into each other's place, by button and by key, and what they are told.
#include <algorithm>
#include <array>
#include <deque>
#include <functional>

#include <Actions.h>
#include <Composition.h>
#include <PageGalerie.h>
#include <libvue/layout/KCFlippedView.h>
#include <libvue/panels/KCAnimationsDePanneauGlissant.h>
#include <libvue/panels/KCConteneurDePanneauxGlissants.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/NSWorkspace.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/Palette.h>
#include <panneaux/PanneauDemo.h>

namespace galerie {

namespace {

constexpr CGFloat kHaut = 4, kInspecteur = 232, kCote = 40, kEntre = 6;
constexpr std::size_t kLignes = 9;

enum Sens : std::size_t { aGauche, aDroite, enHaut, enBas };

using Animation = Ref<NSObject>;
template <class T> Animation nouvelle() { return T::animationPanneau(); }

constexpr std::array<Animation (*)(), 8> kGlissements{nouvelle<KCAnimationDePanneauGlissantVersLaGauche>,
                                                      nouvelle<KCAnimationDePanneauGlissantVersLaDroite>,
                                                      nouvelle<KCAnimationDePanneauGlissantVersLeHaut>,
                                                      nouvelle<KCAnimationDePanneauGlissantVersLeBas>,
                                                      nouvelle<KCAnimationDePanneauGlissantParDessusVersLaGauche>,
                                                      nouvelle<KCAnimationDePanneauGlissantParDessusVersLaDroite>,
                                                      nouvelle<KCAnimationDePanneauGlissantParDessusVersLeHaut>,
                                                      nouvelle<KCAnimationDePanneauGlissantParDessusVersLeBas>};

/// Where the arrow keys slide: with shift, over what is there.
class Conteneur : public KCConteneurDePanneauxGlissants {
public:
    static void describe(ClassDescription<Conteneur, KCConteneurDePanneauxGlissants>&) {}
    using Glisse = std::function<void(std::size_t)>;
    explicit Conteneur(Glisse glisse) : KCConteneurDePanneauxGlissants(NSZeroRect), glisse_(std::move(glisse)) {
        setFocusRingType(NSFocusRingTypeExterior);
        setAccessibilityLabel(u"Panneaux\u00A0: les flèches les font glisser"_ns);
    }
    [[nodiscard]] BOOL acceptsFirstResponder() override { return YES; }
    [[nodiscard]] BOOL canBecomeKeyView() override { return window() != nullptr; }
    void mouseDown(NSEvent*) override {
        if (window()) window()->makeFirstResponder(this);
    }
    void keyDown(NSEvent* e) override {
        const Ref<NSString> touche = e->charactersIgnoringModifiers();
        const unichar c = touche && touche->length() == 1 ? touche->characterAtIndex(0) : 0;
        std::size_t sens = 0;
        switch (c) {
        case NSLeftArrowFunctionKey:
            sens = aGauche;
            break;
        case NSRightArrowFunctionKey:
            sens = aDroite;
            break;
        case NSUpArrowFunctionKey:
            sens = enHaut;
            break;
        case NSDownArrowFunctionKey:
            sens = enBas;
            break;
        default:
            KCConteneurDePanneauxGlissants::keyDown(e);
            return;
        }
        glisse_(sens + (e->modifierFlags() & NSShiftKeyMask ? 4 : 0));
    }

private:
    Glisse glisse_;
};

class VuePanneaux : public NSView {
public:
    static void describe(ClassDescription<VuePanneaux, NSView>&) {}
    VuePanneaux() : NSView(NSZeroRect) {
        const auto dit = [this](NSString* nom) { note(nom); };
        panneaux_ = {panneauReglages(dit), panneauTextes(dit)};
        conteneur_ = make<Conteneur>([this](std::size_t i) { glisse(kGlissements[i]()); });
        addSubview(conteneur_);
        cote_ = inspecteur();
        addSubview(cote_);
        journal_ = make<KCFlippedView>(NSZeroRect);
        for (std::size_t i = 0; i < kLignes; ++i) {
            const auto l = large(etiquette(u" "_ns), kInspecteur - 24);
            lignes_.push_back(l);
            journal_->addSubview(l);
        }
        journal_->setAccessibilityLabel(u"Ce que les panneaux entendent"_ns);
        addSubview(journal_);
        conteneur_->afficherPanneau_avecAnimation(panneaux_[0], nullptr);
    }

    [[nodiscard]] BOOL isFlipped() const override { return YES; }

    void resizeSubviewsWithOldSize(const NSSize&) override {
        const NSSize t = bounds().size;
        conteneur_->setFrame(NSMakeRect(kMarge, kHaut, std::max(0.0, t.width - 3 * kMarge - kInspecteur),
                                        std::max(0.0, t.height - kHaut - kMarge)));
        if (NSView* p = conteneur_->panneauActuel()) p->setFrame(conteneur_->bounds());
        const CGFloat x = t.width - kMarge - kInspecteur;
        cote_->setFrameOrigin({x, kHaut});
        const CGFloat y = NSMaxY(cote_->frame()) + 10;
        journal_->setFrame(NSMakeRect(x, y, kInspecteur, std::max(0.0, t.height - y - kMarge)));
        CGFloat ligne = 10;
        for (const auto& l : lignes_) {
            l->setFrameOrigin({12, ligne});
            l->setHidden(ligne + l->frame().size.height > journal_->frame().size.height - 8);
            ligne += l->frame().size.height + 4;
        }
    }

    void drawRect(const NSRect&) override {
        dessineFeuille(journal_->frame());
        NSColor::separatorColor()->setStroke();
        NSBezierPath::bezierPathWithRect(NSInsetRect(conteneur_->frame(), -0.5, -0.5))->stroke();
    }

private:
    NSObject* agis(Actions::Fonction f) { return actions_.cible(std::move(f)); }

    void glisse(const Animation& a) {
        NSView* suivant = conteneur_->panneauActuel() == panneaux_[0].get() ? panneaux_[1] : panneaux_[0];
        conteneur_->afficherPanneau_avecAnimation(suivant, dynamic_cast<KCAnimationDePanneauxGlissants*>(a.get()));
    }

    /// The newest at the top.
    void note(NSString* nom) {
        dits_.push_front(NSString::stringWithFormat(u"%d.  «\u00A0%@\u00A0» est affiché"_ns, ++combien_, nom));
        if (dits_.size() > kLignes) dits_.pop_back();
        for (std::size_t i = 0; i < dits_.size() && i < lignes_.size(); ++i)
            lignes_[i]->setStringValue(dits_[i]);
    }

    Ref<NSButton> fleche(NSString* titre, NSString* nom, std::size_t i) {
        auto b = NSButton::buttonWithTitle_target_action(
            titre, agis([this, i](NSObject*) { glisse(kGlissements[i]()); }), Actions::selecteur());
        b->setAccessibilityLabel(nom);
        b->setToolTip(nom);
        return large(b, kCote);
    }
    /// A cross of arrows.
    Ref<NSView> croix(std::size_t premier, NSString* verbe) {
        const auto nom = [verbe](const char16_t* ou) {
            return NSString::stringWithFormat(u"%@ %@"_ns, verbe, NSString::from(ou).get());
        };
        const auto g = fleche(u"←"_ns, nom(u"vers la gauche"), premier + aGauche);
        const auto d = fleche(u"→"_ns, nom(u"vers la droite"), premier + aDroite);
        const auto h = fleche(u"↑"_ns, nom(u"vers le haut"), premier + enHaut);
        const auto b = fleche(u"↓"_ns, nom(u"vers le bas"), premier + enBas);
        const CGFloat haut = g->frame().size.height;
        auto v = make<KCFlippedView>(NSMakeRect(0, 0, 3 * kCote + 2 * kEntre, 2 * haut + kEntre));
        h->setFrameOrigin({kCote + kEntre, 0});
        g->setFrameOrigin({0, haut + kEntre});
        b->setFrameOrigin({kCote + kEntre, haut + kEntre});
        d->setFrameOrigin({2 * (kCote + kEntre), haut + kEntre});
        for (const auto& bouton : {h, g, b, d})
            v->addSubview(bouton);
        return v;
    }

    Ref<NSView> inspecteur() {
        const auto simple = [this](NSString* titre, Actions::Fonction f) {
            return large(NSButton::buttonWithTitle_target_action(titre, agis(std::move(f)), Actions::selecteur()),
                         kInspecteur);
        };
        const bool calme = NSWorkspace::sharedWorkspace()->accessibilityDisplayShouldReduceMotion();
        return pile(
            {groupe(u"Pousser"_ns, {croix(0, u"Pousser"_ns)}), groupe(u"Couvrir"_ns, {croix(4, u"Couvrir"_ns)}),
             groupe(u"Sans glisser"_ns, {simple(u"Changer de panneau"_ns, [this](NSObject*) { glisse(nullptr); }),
                                         simple(u"Afficher le même encore"_ns,
                                                [this](NSObject*) {
                                                    conteneur_->afficherPanneau_avecAnimation(
                                                        conteneur_->panneauActuel(), nullptr);
                                                })}),
             pile({legende(u"Au clavier\u00A0: les flèches, avec Maj pour couvrir."_ns),
                   legende(calme ? u"Le bureau demande moins de mouvement."_ns : u"Le bureau permet le mouvement."_ns)},
                  4),
             titreGroupe(u"Ce que les panneaux entendent"_ns)},
            16);
    }

    Actions actions_;
    std::array<Ref<PanneauDemo>, 2> panneaux_;
    Ref<Conteneur> conteneur_;
    Ref<NSView> cote_, journal_;
    std::vector<Ref<NSTextField>> lignes_;
    std::deque<Ref<NSString>> dits_;
    int combien_ = 0;
};

class PagePanneaux : public PageGalerie {
public:
    static void describe(ClassDescription<PagePanneaux, PageGalerie>&) {}
    [[nodiscard]] Ref<NSString> nom() const override { return u"Panneaux"_ns; }
    [[nodiscard]] Ref<NSString> resume() const override {
        return u"Un panneau prend la place d’un autre\u00A0: il le pousse, ou le couvre, de quatre côtés."_ns;
    }
    [[nodiscard]] NSSize tailleMin() const override { return {620, 540}; }

protected:
    Ref<NSView> construitVue() override { return make<VuePanneaux>(); }
};

const InscriptionPage<PagePanneaux> inscription{34};

} // namespace

} // namespace galerie

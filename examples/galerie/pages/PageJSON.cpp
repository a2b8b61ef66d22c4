// JSON text that is typed or pasted, the tree that it makes or the errors that it has, and the ways to write it back.
#include <algorithm>
#include <cmath>
#include <string>

#include <Composition.h>
#include <PageGalerie.h>
#include <json/ArbreJson.h>
#include <json/ZoneSaisie.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/Palette.h>
#include <libvue/text/json/SBJsonParser.h>
#include <libvue/text/json/SBJsonWriter.h>

namespace galerie {

namespace {

constexpr CGFloat kHaut = 4, kTitre = 32, kPied = 40, kEntre = 16, kRayon = 8;

constexpr const char16_t* kExemple = uR"({
  "titre" : "Voyage d’hiver",
  "pages" : 312,
  "prix" : 24.90,
  "épuisé" : false,
  "préface" : null,
  "chapitres" : [
    { "nom" : "Le départ", "première" : 9 },
    { "nom" : "La neige", "première" : 57 },
    { "nom" : "\"Retour\"", "première" : 201 }
  ],
  "mots" : [ "froid", "train", "lettre\n" ]
})";

struct Exemple {
    const char16_t* nom;
    std::u16string texte;
};

const std::vector<Exemple>& exemples() {
    static const std::vector<Exemple> tous = {
        {u"Un livre", kExemple},
        {u"Une virgule de trop", u"{\n  \"villes\" : [\n    \"Québec\",\n    \"Lyon\",\n  ]\n}"},
        {u"Une valeur qui manque", u"{\n  \"a\" : {\n    \"b\" : [\n      1,\n      { \"c\" : }\n    ]\n  }\n}"},
        {u"Des virgules oubliées", u"[1 2 3 { \"a\" : 1 \"b\" : 2 }]"},
        {u"Un texte qui ne finit pas", u"[\n  \"il n’y a pas de guillemet\n]"},
        {u"Trop profond", std::u16string(513, u'[') + std::u16string(513, u']')},
    };
    return tous;
}

/// Two columns on sheets: the text at the left, what it says at the right.
class VueJSON : public NSView {
public:
    static void describe(ClassDescription<VueJSON, NSView>& c) {
        c.answers<&VueJSON::ecritCompact>("ecritCompact:");
        c.answers<&VueJSON::ecritIndente>("ecritIndente:");
        c.answers<&VueJSON::exempleChoisi>("exempleChoisi:");
        c.answers<&VueJSON::relit>("relit:");
        c.answers<&VueJSON::texteChange>(op::textDidChange);
    }

    VueJSON()
        : saisie_(make<ZoneSaisie>()),
          arbre_(make<ArbreJson>()),
          gauche_(make<NSScrollView>(NSZeroRect)),
          droite_(make<NSScrollView>(NSZeroRect)),
          titreTexte_(titreGroupe(u"Texte"_ns)),
          titreArbre_(titreGroupe(u"Arbre"_ns)),
          etat_(legende(u""_ns)),
          exemples_(make<NSPopUpButton>(NSMakeRect(0, 0, 190, 26), NO)),
          compact_(NSButton::buttonWithTitle_target_action(u"Compact"_ns, this, sel("ecritCompact:"))),
          indente_(NSButton::buttonWithTitle_target_action(u"Indenté"_ns, this, sel("ecritIndente:"))),
          trie_(NSButton::checkboxWithTitle_target_action(u"Clés triées"_ns, nullptr, nullptr)),
          seule_(NSButton::checkboxWithTitle_target_action(u"Valeur seule permise"_ns, this, sel("relit:"))) {
        for (NSScrollView* d : {gauche_.get(), droite_.get()}) {
            d->setDrawsBackground(NO);
            d->setHasVerticalScroller(YES);
            d->setHasHorizontalScroller(YES);
        }
        gauche_->setDocumentView(saisie_);
        droite_->setDocumentView(arbre_);
        for (const Exemple& e : exemples())
            exemples_->addItemWithTitle(NSString::from(e.nom));
        exemples_->setTarget(this);
        exemples_->setAction(sel("exempleChoisi:"));
        saisie_->setDelegate(this);
        for (NSView* v : std::initializer_list<NSView*>{titreTexte_, exemples_, gauche_, compact_, indente_, trie_,
                                                        titreArbre_, etat_, droite_, seule_})
            addSubview(v);
        exempleChoisi(nullptr);
    }

    [[nodiscard]] BOOL isFlipped() const override { return YES; }

    void resizeSubviewsWithOldSize(const NSSize&) override { place(); }

    void drawRect(const NSRect&) override {
        for (const NSRect& r : {feuille(0), feuille(1)}) {
            const auto fond =
                NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(NSInsetRect(r, 0.5, 0.5), kRayon, kRayon);
            NSColor::textBackgroundColor()->setFill();
            fond->fill();
            NSColor::separatorColor()->setStroke();
            fond->stroke();
        }
    }

private:
    [[nodiscard]] NSRect feuille(int colonne) const {
        const NSSize t = bounds().size;
        const CGFloat largeur = std::floor((t.width - 2 * kMarge - kEntre) / 2);
        return NSMakeRect(kMarge + colonne * (largeur + kEntre), kHaut + kTitre, std::max(0.0, largeur),
                          std::max(0.0, t.height - kHaut - kTitre - kPied - kMarge / 2));
    }

    void place() {
        const NSRect a = feuille(0), b = feuille(1);
        const auto milieu = [](NSView* v, CGFloat x, CGFloat y, CGFloat hauteur) {
            v->setFrameOrigin({x, y + std::floor((hauteur - v->frame().size.height) / 2)});
        };
        milieu(titreTexte_, a.origin.x, kHaut, kTitre - 4);
        milieu(exemples_, NSMaxX(a) - exemples_->frame().size.width, kHaut, kTitre - 4);
        milieu(titreArbre_, b.origin.x, kHaut, kTitre - 4);
        milieu(etat_, NSMaxX(b) - etat_->frame().size.width, kHaut, kTitre - 4);
        gauche_->setFrame(NSInsetRect(a, 1, 1));
        droite_->setFrame(NSInsetRect(b, 1, 1));
        saisie_->ajusteTaille();
        arbre_->ajusteTaille();
        const CGFloat pied = NSMaxY(a) + 4;
        milieu(compact_, a.origin.x, pied, kPied);
        milieu(indente_, NSMaxX(compact_->frame()) + kEcart, pied, kPied);
        milieu(trie_, NSMaxX(indente_->frame()) + kEntre, pied, kPied);
        milieu(seule_, b.origin.x, pied, kPied);
    }

    void exempleChoisi(NSObject*) {
        const NSInteger i = std::max<NSInteger>(0, exemples_->indexOfSelectedItem());
        saisie_->setString(NSString::from(exemples()[static_cast<std::size_t>(i)].texte));
        relit(nullptr);
    }

    void texteChange(NSNotification*) { relit(nullptr); }

    /// Reads the text, and shows what came of it.
    void relit(NSObject*) {
        const auto lecteur = make<SBJsonParser>();
        const auto texte = saisie_->string();
        valeur_ = seule_->state() ? lecteur->fragmentWithString(texte) : lecteur->objectWithString(texte);
        Ref<NSString> etat;
        if (valeur_) {
            arbre_->montreValeur(valeur_);
            etat = NSString::stringWithFormat(u"%lu unités lues"_ns, texte->length());
        } else {
            const auto erreurs = lecteur->errorTrace();
            arbre_->montreErreurs(erreurs);
            etat = erreurs->count() == 1
                       ? u"une erreur"_ns
                       : NSString::stringWithFormat(u"%lu erreurs, de la plus profonde à la plus englobante"_ns,
                                                    erreurs->count());
        }
        titreArbre_->setStringValue(valeur_ ? u"Arbre"_ns : u"Erreurs"_ns);
        titreArbre_->sizeToFit();
        etat_->setStringValue(etat);
        etat_->setTextColor(valeur_ ? NSColor::secondaryLabelColor() : NSColor::systemColor(SystemColor::danger));
        etat_->sizeToFit();
        compact_->setEnabled(valeur_ != nullptr);
        indente_->setEnabled(valeur_ != nullptr);
        place();
        setNeedsDisplay(YES);
    }

    void ecrit(BOOL indente) {
        if (!valeur_) return;
        const auto plume = make<SBJsonWriter>();
        plume->setHumanReadable(indente);
        plume->setSortKeys(trie_->state() != 0);
        if (const auto texte = plume->stringWithFragment(valeur_)) saisie_->remplaceTout(texte);
    }
    void ecritCompact(NSObject*) { ecrit(NO); }
    void ecritIndente(NSObject*) { ecrit(YES); }

    Ref<ZoneSaisie> saisie_;
    Ref<ArbreJson> arbre_;
    Ref<NSScrollView> gauche_, droite_;
    Ref<NSTextField> titreTexte_, titreArbre_, etat_;
    Ref<NSPopUpButton> exemples_;
    Ref<NSButton> compact_, indente_, trie_, seule_;
    Ref<NSObject> valeur_;
};

} // namespace

class PageJSON : public PageGalerie {
public:
    static void describe(ClassDescription<PageJSON, PageGalerie>&) {}
    [[nodiscard]] Ref<NSString> nom() const override { return u"JSON"_ns; }
    [[nodiscard]] Ref<NSString> resume() const override {
        return u"Tapez ou collez un texte : l’arbre suit, ou la chaîne des erreurs. Les boutons l’écrivent de nouveau."_ns;
    }
    [[nodiscard]] NSSize tailleMin() const override { return {640, 320}; }

protected:
    Ref<NSView> construitVue() override { return make<VueJSON>(); }
};

namespace {
const InscriptionPage<PageJSON> inscription{50};
} // namespace

} // namespace galerie

// French texts: an order of words that follows the typing, words in a text field, Roman numerals, blanks.
#include <algorithm>
#include <cmath>

#include <Composition.h>
#include <PageComposee.h>
#include <francais/BandeauMots.h>
#include <francais/ListeMots.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSSlider.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/PlainTextEditor.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/text/chaines/NSStringModificationChaine.h>
#include <libvue/text/formats/ChiffresRomainsFormateur.h>

namespace galerie {

namespace {

constexpr CGFloat kColonne = 356, kGouttiere = 28, kDemi = (kColonne - kEcart) / 2;
constexpr CGFloat kHauteurListe = 322, kHauteurBandeau = 78;
constexpr double kRomainMax = 3999;

constexpr const char* kOrdres[] = {
    "localizedCaseInsensitiveCompare:", "comparaisonTrimmay:", "comparaisonPlusLongueChaine:"};

Ref<NSTextField> champ(NSString* nom, NSString* texte, CGFloat largeur, NSObject* delegue) {
    auto c = large(NSTextField::textFieldWithString(texte), largeur);
    c->setAccessibilityLabel(nom);
    c->setDelegate(delegue);
    return c;
}

Ref<NSTextField> ligne() { return large(legende(u" "_ns), kColonne); }

/// The list is given back in `liste`.
Ref<NSView> listeDefilante(Ref<ListeMots>& liste, SystemColor encre) {
    const auto d = make<NSScrollView>(NSMakeRect(0, 0, kDemi, kHauteurListe));
    d->setBorderType(NSLineBorder);
    d->setHasVerticalScroller(YES);
    liste = make<ListeMots>(kDemi, encre);
    d->setDocumentView(liste);
    return d;
}

/// Everything on the page, and what ties it together.
class Francais : public NSObject {
public:
    static void describe(ClassDescription<Francais>& c) {
        c.answers<&Francais::ordreChoisi>("ordreChoisi:");
        c.answers<&Francais::nombreGlisse>("nombreGlisse:");
        c.answers<&Francais::controlTextDidChange>(op::controlTextDidChange);
        c.answers<&Francais::controlTextDidEndEditing>(op::controlTextDidEndEditing);
    }
    Francais();
    ~Francais() override;
    [[nodiscard]] KCLayoutView* vue() const noexcept { return vue_; }

private:
    Ref<NSView> construitListe();
    Ref<NSView> construitMots();
    Ref<NSView> construitRomains();
    Ref<NSView> construitEspaces();

    void ordreChoisi(NSObject*) { trie(); }
    void nombreGlisse(NSObject*) { montreNombre(std::round(curseur_->doubleValue()), nullptr); }
    void controlTextDidChange(NSNotification* n);
    void controlTextDidEndEditing(NSNotification* n);
    void selectionChange(NSNotification* n);

    void trie();
    void montreMots();
    void choisisMot(NSUInteger index);
    /// Shows the number everywhere but in the field that it was typed into. Out of 1 to 3999 it is refused.
    void montreNombre(double nombre, const NSTextField* sauf);
    void montreRomain(NSString* romain);
    void refuseNombre();
    void montreEspaces();

    Ref<KCLayoutView> vue_;
    Ref<NSTextField> liste_;
    Ref<NSPopUpButton> ordres_;
    Ref<ListeMots> triee_, brute_;
    Ref<NSTextField> mots_, quoi_, pourquoi_;
    Ref<BandeauMots> bandeau_;
    Ref<ChiffresRomainsFormateur> formateur_ = make<ChiffresRomainsFormateur>();
    Ref<NSTextField> nombre_, romain_, limites_;
    Ref<NSSlider> curseur_;
    Ref<NSTextField> espaces_, simples_;
};

Francais::Francais() {
    vue_ = colonnes({construitListe(), pile({construitMots(), construitRomains(), construitEspaces()}, kGroupe)},
                    kGouttiere);
    NSNotificationCenter::defaultCenter()->addObserver<&Francais::selectionChange>(
        this, NSTextViewDidChangeSelectionNotification, nullptr);
    trie();
    montreMots();
    montreNombre(1608, nullptr);
    montreEspaces();
}

Francais::~Francais() {
    NSNotificationCenter::defaultCenter()->removeObserver(this);
    bandeau_->surClic = nullptr;
}

// The list.

Ref<NSView> Francais::construitListe() {
    liste_ = champ(u"Mots à trier"_ns,
                   u"coté cote Côte côté côte élève élevé œuf oeuf zèbre Abel peut-être «été» l’ami pêcheur pécher"_ns,
                   kColonne, this);
    ordres_ = make<NSPopUpButton>(NSZeroRect);
    for (const char16_t* nom : {u"Ordre français", u"Sans la ponctuation autour", u"Les plus longs d’abord"})
        ordres_->addItemWithTitle(NSString::from(nom));
    ordres_->setAccessibilityLabel(u"Ordre"_ns);
    ordres_->setTarget(this);
    ordres_->setAction(sel("ordreChoisi:"));
    ordres_->sizeToFit();
    const auto codes = large(legende(u"Ordre des codes, pour comparer"_ns), kDemi);
    return groupe(u"Liste de mots"_ns, {liste_, rangee({large(ordres_, kDemi), codes}),
                                        rangee({listeDefilante(triee_, SystemColor::label),
                                                listeDefilante(brute_, SystemColor::secondaryLabel)}),
                                        legende(u"Des blancs ou des virgules séparent les mots."_ns)});
}

void Francais::trie() {
    const auto mots = motsDeLaLigne(liste_->stringValue());
    const NSInteger choix = std::clamp<NSInteger>(ordres_->indexOfSelectedItem(), 0, std::ssize(kOrdres) - 1);
    const auto tries = mots->sortedArrayUsingSelector(sel(kOrdres[choix]));
    triee_->montre(tries);
    const auto codes = mots->sortedArrayUsingSelector(sel("compare:"));
    brute_->montre(codes);
}

// Words.

Ref<NSView> Francais::construitMots() {
    mots_ = champ(u"Texte à parcourir"_ns, u"Aujourd’hui, l’ami du porte-monnaie n’a qu’une huile."_ns, kColonne, this);
    bandeau_ = make<BandeauMots>(NSMakeRect(0, 0, kColonne, kHauteurBandeau));
    bandeau_->surClic = [this](NSUInteger i) { choisisMot(i); };
    quoi_ = large(etiquette(u" "_ns), kColonne);
    pourquoi_ = ligne();
    return groupe(u"Mots"_ns, {mots_, bandeau_, pile({quoi_, pourquoi_}, 3), BandeauMots::legendeDesCouleurs()});
}

void Francais::montreMots() {
    const NSText* editeur = mots_->currentEditor();
    const Ref<NSString> texte = editeur ? editeur->string() : mots_->stringValue();
    const NSRange selection = editeur ? editeur->selectedRange() : NSRange{0, 0};
    bandeau_->montre(texte, selection);
    const Explication e = editeur ? explique(texte, selection)
                                  : Explication{u"Double-cliquez un mot du champ, ou un morceau ci-dessus."_ns,
                                                u"Ctrl+← et Ctrl+→ vont de mot en mot."_ns};
    quoi_->setStringValue(e.quoi);
    pourquoi_->setStringValue(e.pourquoi);
}

void Francais::choisisMot(NSUInteger index) {
    if (!mots_->currentEditor() && mots_->window()) mots_->window()->makeFirstResponder(mots_);
    NSText* editeur = mots_->currentEditor();
    if (!editeur) return;
    const auto texte = editeur->string();
    if (index < texte->length()) editeur->setSelectedRange(clicSurMot(texte, index).plage);
}

void Francais::selectionChange(NSNotification* n) {
    const NSText* editeur = mots_->currentEditor();
    if (editeur && n->object() == editeur) montreMots();
}

// Roman numerals.

Ref<NSView> Francais::construitRomains() {
    nombre_ = champ(u"Nombre"_ns, u""_ns, 64, this);
    nombre_->setAlignment(NSRightTextAlignment);
    romain_ = champ(u"Chiffres romains"_ns, u""_ns, 144, this);
    curseur_ = NSSlider::sliderWithValue_minValue_maxValue_target_action(1, 1, kRomainMax, this, sel("nombreGlisse:"));
    curseur_->setAccessibilityLabel(u"Nombre"_ns);
    curseur_->sliderCell()->setAltIncrementValue(1);
    curseur_->sizeToFit();
    curseur_ = large(curseur_, kColonne - 64 - 144 - 2 * kEcart);
    limites_ = ligne();
    return groupe(u"Chiffres romains"_ns, {rangee({nombre_, romain_, curseur_}), limites_});
}

void Francais::montreNombre(double nombre, const NSTextField* sauf) {
    if (!(nombre >= 1 && nombre <= kRomainMax) || nombre != std::round(nombre)) return refuseNombre();
    const auto valeur = NSNumber::numberWithInteger(static_cast<NSInteger>(nombre));
    if (sauf != nombre_.get()) nombre_->setStringValue(valeur->stringValue());
    const auto romain = formateur_->stringForObjectValue(valeur);
    if (sauf != romain_.get()) romain_->setStringValue(romain);
    curseur_->setDoubleValue(nombre);
    limites_->setTextColor(NSColor::secondaryLabelColor());
    limites_->setStringValue(u"De 1 à 3999, dans les deux sens."_ns);
}

void Francais::montreRomain(NSString* romain) {
    Ref<NSObject> valeur;
    try {
        // A text that adds up to nothing raises, one that is written otherwise is answered NO.
        if (!formateur_->getObjectValue_forString_errorDescription(&valeur, romain, nullptr)) return refuseNombre();
    } catch (const NSExceptionRaised&) {
        return refuseNombre();
    }
    const auto* nombre = as<NSNumber>(valeur);
    if (nombre) montreNombre(nombre->doubleValue(), romain_);
}

void Francais::refuseNombre() {
    limites_->setTextColor(NSColor::systemColor(SystemColor::danger));
    limites_->setStringValue(u"Ce n’est pas un nombre de 1 à 3999 dans son écriture d’usage."_ns);
}

// Blanks.

Ref<NSView> Francais::construitEspaces() {
    espaces_ = champ(u"Texte à espacer"_ns, u"  Trop   d’espaces  autour  des    mots  "_ns, kColonne, this);
    simples_ = large(etiquette(u" "_ns), kColonne);
    return groupe(u"Espaces simples"_ns, {espaces_, simples_});
}

void Francais::montreEspaces() {
    const auto simples = stringAvecEspacesSimples(espaces_->stringValue());
    const auto visibles = simples->stringByReplacingOccurrencesOfString_withString(u" "_ns, u"·"_ns);
    simples_->setStringValue(NSString::stringWithFormat(u"«%@»"_ns, visibles.get()));
}

void Francais::controlTextDidChange(NSNotification* n) {
    if (n->object() == liste_.get()) trie();
    if (n->object() == mots_.get()) montreMots();
    if (n->object() == nombre_.get()) {
        const auto texte = nombre_->stringValue();
        const NSInteger nombre = texte->integerValue();
        // What is not the number alone, such as "12a", is refused too.
        const auto relu = NSNumber::numberWithInteger(nombre)->stringValue();
        montreNombre(relu->isEqualToString(texte) ? static_cast<double>(nombre) : 0, nombre_);
    }
    if (n->object() == romain_.get()) montreRomain(romain_->stringValue());
    if (n->object() == espaces_.get()) montreEspaces();
}

void Francais::controlTextDidEndEditing(NSNotification* n) {
    if (n->object() == mots_.get()) montreMots();
    if (n->object() == nombre_.get() || n->object() == romain_.get())
        montreNombre(std::round(curseur_->doubleValue()), nullptr);
}

} // namespace

class PageFrancais : public PageDe<Francais> {
public:
    static void describe(ClassDescription<PageFrancais, PageComposee>&) {}
    [[nodiscard]] Ref<NSString> nom() const override { return u"Français"_ns; }
    [[nodiscard]] Ref<NSString> resume() const override {
        return u"L’ordre des dictionnaires, les mots et leurs apostrophes, les chiffres romains, les espaces."_ns;
    }
};

namespace {
const InscriptionPage<PageFrancais> inscription{40};
} // namespace

} // namespace galerie

#include <libvue/search/KPanneauRecherche.h>

#include <libvue/alerts/KAlerteEphemere.h>
#include <libvue/platform/appkit/NSAccessibility.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSForm.h>
#include <libvue/platform/appkit/NSFormCell.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSNib.h>
#include <libvue/platform/appkit/NSPasteboard.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/foundation/NSArray.h>

namespace libvue {

static const ClassRegistration<KPanneauRecherche> registration;
// The resource names it, and nothing else may have used it yet.
static const ClassRegistration<NSForm> formRegistration;

namespace {

constexpr ConstantString nomRessource{u"PanneauRecherche"};
constexpr ConstantString nomPanneauPlateforme{u"NSFindPanel"};
constexpr ConstantString messageIntrouvable{u"Introuvable"};
constexpr CGFloat largeurAvis = 200;

namespace attendu {
/// Whatever else sends actions may have a tag too.
constexpr Operation<NSInteger()> tag{"tag"};
} // namespace attendu

NSInteger etiquetteDe(NSObject* sender) {
    if (auto* vue = as<NSView>(sender)) return vue->tag();
    if (auto* element = as<NSMenuItem>(sender)) return element->tag();
    if (auto* cellule = as<NSCell>(sender)) return cellule->tag();
    const auto demande = attendu::tag.of(sender);
    return demande ? demande() : 0;
}

NSPasteboard* tableauRecherche() { return NSPasteboard::pasteboardWithName(NSFindPboard); }

Ref<NSArray> typeTexte() { return NSArray::arrayWithObjects({NSStringPboardType.get()}); }

} // namespace

void KPanneauRecherche::describe(ClassDescription<KPanneauRecherche, NSPanel>& c) {
    using K = KPanneauRecherche;
    c.key<&K::formulaire, &K::setFormulaire>("formulaire");
    c.key<&K::typeRech, &K::setTypeRech>("typeRech");
    c.key<&K::ignorerMajuscules, &K::setIgnorerMajuscules>("ignorerMajuscules");
    c.key<&K::boiteBoucle, &K::setBoiteBoucle>("boucle");
    c.key<&K::suivant, &K::setSuivant>("suivant");
    c.key<&K::msgIntrouvable, &K::setMsgIntrouvable>("msgIntrouvable");
    c.key<&K::string, &K::setString>("string");
    c.classAnswers<&K::panneauRecherche>("panneauRecherche");
    c.answers<&K::initialisePourClient>("initialisePourClient:");
    c.answers<&K::prendChaineRechercheDuPasteboard>("prendChaineRechercheDuPasteboard");
    c.answers<&K::setIntrouvable_actionVientDuPanneau>("setIntrouvable:actionVientDuPanneau:");
    c.answers<&K::actionPanneauRecherche>("actionPanneauRecherche:");
    c.answers<&K::fermeNSFindPanel_>("__fermeNSFindPanel");
    c.answers<&K::ecrisSurFindPB_>("__ecrisSurFindPB:");
}

KPanneauRecherche::KPanneauRecherche() = default;
KPanneauRecherche::~KPanneauRecherche() = default;

Ref<KPanneauRecherche> KPanneauRecherche::panneauDeRessource(NSBundle* bundle) {
    const Ref<NSNib> ressource = NSNib::initWithNibNamed_bundle(nomRessource, bundle);
    Ref<NSArray> objets;
    if (!ressource || !ressource->instantiateNibWithOwner_topLevelObjects(nullptr, &objets)) return nullptr;
    for (NSObject* o : *objets)
        if (auto* panneau = as<KPanneauRecherche>(o)) return panneau;
    return nullptr;
}

KPanneauRecherche* KPanneauRecherche::panneauRecherche() {
    const auto demande = op::panneauRecherche.of(NSApp()->delegate());
    return demande ? demande() : nullptr;
}

void KPanneauRecherche::awakeFromNib() {
    NSPanel::awakeFromNib();
    center();
}

void KPanneauRecherche::initialisePourClient(NSObject* client) {
    if (client == monClient_.get()) return;
    const Ref<KPanneauRecherche> moi(this);
    monClient_ = client;
    const auto seulement = op::contientSeulement.of(client);
    const BOOL limite = seulement && seulement();
    if (!typeRech_) return;
    if (limite) typeRech_->selectItemAtIndex(0);
    typeRech_->setEnabled(!limite);
}

// Outlets.

NSForm* KPanneauRecherche::formulaire() const noexcept { return formulaire_; }
NSPopUpButton* KPanneauRecherche::typeRech() const noexcept { return typeRech_; }
NSButton* KPanneauRecherche::ignorerMajuscules() const noexcept { return ignorerMajuscules_; }
NSButton* KPanneauRecherche::boiteBoucle() const noexcept { return boiteBoucle_; }
NSButton* KPanneauRecherche::suivant() const noexcept { return suivant_; }
NSTextField* KPanneauRecherche::msgIntrouvable() const noexcept { return msgIntrouvable_; }
void KPanneauRecherche::setFormulaire(NSForm* f) { formulaire_ = f; }
void KPanneauRecherche::setTypeRech(NSPopUpButton* p) { typeRech_ = p; }
void KPanneauRecherche::setIgnorerMajuscules(NSButton* b) { ignorerMajuscules_ = b; }
void KPanneauRecherche::setBoiteBoucle(NSButton* b) { boiteBoucle_ = b; }
void KPanneauRecherche::setSuivant(NSButton* b) { suivant_ = b; }
void KPanneauRecherche::setMsgIntrouvable(NSTextField* t) { msgIntrouvable_ = t; }

// The find text.

Ref<NSString> KPanneauRecherche::string() {
    NSFormCell* cellule = formulaire_ ? formulaire_->cellAtIndex(0) : nullptr;
    if (!cellule) return nullptr;
    Ref<NSString> texte = cellule->stringValue();
    ecrisSurFindPB_(texte);
    return texte;
}

void KPanneauRecherche::setString(NSString* texte) {
    if (!texte) return;
    const Ref<NSString> garde(texte);
    ecrisSurFindPB_(texte);
    if (NSFormCell* cellule = formulaire_ ? formulaire_->cellAtIndex(0) : nullptr) cellule->setStringValue(garde);
}

void KPanneauRecherche::ecrisSurFindPB_(NSString* texte) {
    if (!texte) return;
    NSPasteboard* tableau = tableauRecherche();
    tableau->declareTypes_owner(typeTexte(), nullptr);
    tableau->setString_forType(texte, NSStringPboardType);
}

void KPanneauRecherche::prendChaineRechercheDuPasteboard() {
    NSPasteboard* tableau = tableauRecherche();
    if (!tableau->availableTypeFromArray(typeTexte())) return;
    const Ref<NSString> texte = tableau->stringForType(NSStringPboardType);
    setString(texte);
}

// What the controls say.

BOOL KPanneauRecherche::respecterCasse() const {
    return !ignorerMajuscules_ || ignorerMajuscules_->state() == NSOffState;
}
BOOL KPanneauRecherche::boucle() const { return boiteBoucle_ && boiteBoucle_->state() == NSOnState; }

void KPanneauRecherche::selectionneTexte() {
    if (formulaire_) formulaire_->selectTextAtIndex(0);
}

// Outcome.

void KPanneauRecherche::setIntrouvable_actionVientDuPanneau(BOOL introuvable, BOOL duPanneau) {
    const Ref<KPanneauRecherche> moi(this);
    if (introuvable && !duPanneau)
        KAlerteEphemere::alerteAvecTitre_explication_icone_emplacement_commeEnfant_largeur(
            messageIntrouvable, nullptr, nullptr, monClient_, YES, largeurAvis);
    // The notice is announced by itself.
    if (introuvable && duPanneau) announceForAccessibility(this, messageIntrouvable, NSAccessibilityPriorityHigh);
    if (msgIntrouvable_) msgIntrouvable_->setHidden(!introuvable);
}

void KPanneauRecherche::fermeNSFindPanel_() {
    const Ref<NSArray> fenetres = NSApp()->windows();
    for (NSObject* o : *fenetres) {
        auto* panneau = as<NSPanel>(o);
        if (!panneau || panneau == this || !panneau->frameAutosaveName()) continue;
        if (!panneau->frameAutosaveName()->isEqualToString(nomPanneauPlateforme)) continue;
        panneau->close();
        return;
    }
}

// Actions.

void KPanneauRecherche::actionPanneauRecherche(NSObject* sender) {
    const Ref<KPanneauRecherche> moi(this);
    const BOOL duPanneau = isVisible() && as<NSButton>(sender);
    switch (etiquetteDe(sender)) {
    case kRechercheMontrer:
        montre(duPanneau);
        break;
    case kRechercheSuivant:
        cherche(Sens::avant, duPanneau);
        break;
    case kRecherchePrecedent:
        cherche(Sens::arriere, duPanneau);
        break;
    case kRechercheUtiliserSelection:
        utiliseSelection();
        break;
    default:
        break;
    }
}

void KPanneauRecherche::montre(BOOL duPanneau) {
    fermeNSFindPanel_();
    prendChaineRechercheDuPasteboard();
    selectionneTexte();
    setIntrouvable_actionVientDuPanneau(NO, duPanneau);
    makeKeyAndOrderFront(nullptr);
}

void KPanneauRecherche::cherche(Sens sens, BOOL duPanneau) {
    selectionneTexte();
    const auto demande = op::cherche_direction_respecterCasse_boucle_typeRecherche.of(monClient_.get());
    if (!demande) return;
    const Ref<NSString> texte = string();
    if (!texte) return;
    const BOOL casse = respecterCasse(), reprend = boucle();
    const int type = typeRech_ ? static_cast<int>(typeRech_->indexOfSelectedItem()) : 0;
    const BOOL trouve = demande(texte, sens == Sens::avant, casse, reprend, type);
    setIntrouvable_actionVientDuPanneau(!trouve, duPanneau);
    if (!trouve || !duPanneau || sens == Sens::arriere) return;
    const NSEvent* evenement = NSApp()->currentEvent();
    if (evenement && evenement->type() == NSKeyDown) orderOut(nullptr);
}

void KPanneauRecherche::utiliseSelection() {
    if (const auto demande = op::donneSelection.of(monClient_.get())) {
        const Ref<NSString> selection = demande();
        setString(selection);
    }
    selectionneTexte();
}

} // namespace libvue

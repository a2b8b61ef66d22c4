// The grid: any number of objects, as many views as show.
#include <algorithm>
#include <cmath>

#include <Composition.h>
#include <PageGalerie.h>
#include <grille/SourceDeGrille.h>
#include <libvue/collections/BassinCirculaire.h>
#include <libvue/collections/KCCollectionView.h>
#include <libvue/layout/KCFlippedView.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSSlider.h>
#include <libvue/platform/foundation/NSBundle.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/socle/UniChaine.h>

namespace galerie {

namespace {

constexpr NSSize kTaille{700, 460};
constexpr CGFloat kEntete = 34, kPied = 36, kBordCartes = 21, kHautListe = 78, kBasListe = 40;
constexpr CGFloat kCran = 1000; ///< steps of the slider of counts

Ref<NSString> nombreEnTexte(NSUInteger n) {
    return NSString::stringWithString(UniChaine::DonneNombreFormatay(static_cast<int>(n)).DonneChaine());
}

/// Small counts need as much room on the slider as large ones.
NSUInteger nombreDuCran(double cran, NSUInteger maximum) {
    return static_cast<NSUInteger>(std::lround(std::pow(cran / kCran, 3) * static_cast<double>(maximum)));
}
double cranDuNombre(NSUInteger n, NSUInteger maximum) {
    return maximum ? kCran * std::cbrt(static_cast<double>(n) / static_cast<double>(maximum)) : 0;
}

void ecris(NSString* texte, NSFont* police, NSColor* couleur, const NSRect& bande, CGFloat x) {
    const Ref<NSDictionary> attributs = NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSFontAttributeName, police}, {NSForegroundColorAttributeName, couleur}});
    const NSSize taille = sizeWithAttributes(texte, attributs);
    drawAtPoint_withAttributes(texte, {x, NSMidY(bande) - std::round(taille.height / 2)}, attributs);
}

class Grilles;

/// The grid keeps its delegate: this one does not keep the page.
class DelegueDeGrille : public NSObject {
public:
    static void describe(ClassDescription<DelegueDeGrille>& c) {
        c.answers<&DelegueDeGrille::entete>(op::collectionViewTailleEntete);
        c.answers<&DelegueDeGrille::pied>(op::collectionViewTaillePiedDePage);
        c.answers<&DelegueDeGrille::dessineEntete>(op::collectionView_drawEntete);
        c.answers<&DelegueDeGrille::dessinePied>(op::collectionView_drawPiedDePage);
        c.answers<&DelegueDeGrille::change>(op::collectionViewSelectionDidChange);
        c.answers<&DelegueDeGrille::double_>(op::collectionView_doubleCliqueSurObjet);
    }
    Weak<Grilles> page;

private:
    CGFloat entete(KCCollectionView*) { return kEntete; }
    CGFloat pied(KCCollectionView*) { return kPied; }
    void dessineEntete(KCCollectionView* grille, NSRect);
    void dessinePied(KCCollectionView* grille, NSRect bande);
    void change(KCCollectionView*);
    void double_(KCCollectionView*, NSObject* objet);
};

/// Everything on the page, and what ties it together.
class Grilles : public NSObject {
public:
    static void describe(ClassDescription<Grilles>& c) {
        c.answers<&Grilles::sourceChoisie>("sourceChoisie:");
        c.answers<&Grilles::glisse>("glisse:");
        c.answers<&Grilles::saisi>("saisi:");
        c.answers<&Grilles::ecarte>("ecarte:");
        c.answers<&Grilles::imprime>("imprime:");
    }
    Grilles();
    ~Grilles() override {
        NSNotificationCenter::defaultCenter()->removeObserver(this);
        quitte();
    }
    [[nodiscard]] NSView* vue() const noexcept { return vue_; }
    [[nodiscard]] SourceDeGrille& source() const { return *sources_[static_cast<std::size_t>(choisie_)]; }
    void attends() { source().attends(); }
    void dit(NSString* verbe, NSObject* objet);
    void observeValueForKeyPath_ofObject_change_context(NSString*, NSObject*, NSDictionary*, void*) override;

private:
    /// A grid of its own for a source: the views of a grid are all of one class.
    void installe(NSInteger source);
    void quitte();
    void montre(NSUInteger nombre);
    /// Says how many views there are.
    void compte();
    void place(NSNotification*);
    void sourceChoisie(NSObject*) { installe(choix_->indexOfSelectedItem()); }
    void glisse(NSObject*) { montre(nombreDuCran(curseur_->doubleValue(), source().maximum())); }
    void saisi(NSObject*);
    void ecarte(NSObject*);
    void imprime(NSObject* sender) { grille_->print(sender); }

    std::vector<Ref<SourceDeGrille>> sources_ = RegistreSources::fabriqueToutes();
    NSInteger choisie_ = 0;
    Ref<NSView> vue_;
    Ref<NSPopUpButton> choix_;
    Ref<NSSlider> curseur_, ecart_;
    Ref<NSTextField> champ_, dit_, vues_;
    Ref<NSScrollView> defilement_;
    Ref<KCCollectionView> grille_;
    Ref<DelegueDeGrille> delegue_;
};

void DelegueDeGrille::dessineEntete(KCCollectionView* grille, NSRect) {
    if (!page) return;
    // The whole band, whatever part of it was asked for: texts are not cut at its edge.
    const NSRect bande{{0, 0}, {grille->bounds().size.width, kEntete}};
    ecris(page->source().nom(), NSFont::boldSystemFontOfSize(15), NSColor::labelColor(), bande, kBordCartes);
}

void DelegueDeGrille::dessinePied(KCCollectionView* grille, NSRect bande) {
    const Ref<NSString> texte = NSString::stringWithFormat(
        u"%@ cartes"_ns, nombreEnTexte(grille->donnees() ? grille->donnees()->count() : 0).get());
    ecris(texte, NSFont::systemFontOfSize(NSFont::smallSystemFontSize()), NSColor::secondaryLabelColor(), bande,
          bande.origin.x + kBordCartes);
}

void DelegueDeGrille::change(KCCollectionView* grille) {
    if (page) page->dit(u"Clic"_ns, grille->selectedObject());
}

void DelegueDeGrille::double_(KCCollectionView*, NSObject* objet) {
    if (page) page->dit(u"Double clic"_ns, objet);
}

Grilles::Grilles() {
    delegue_ = make<DelegueDeGrille>();
    delegue_->page = this;
    choix_ = make<NSPopUpButton>(NSZeroRect);
    for (const auto& s : sources_)
        choix_->addItemWithTitle(s->nom());
    choix_->setAccessibilityLabel(u"Ce que la grille montre"_ns);
    choix_->setTarget(this);
    choix_->setAction(sel("sourceChoisie:"));
    choix_->sizeToFit();
    curseur_ = NSSlider::sliderWithValue_minValue_maxValue_target_action(0, 0, kCran, this, sel("glisse:"));
    curseur_->setAccessibilityLabel(u"Nombre de cartes"_ns);
    champ_ = large(NSTextField::textFieldWithString(u"0"_ns), 92);
    champ_->setAlignment(NSRightTextAlignment);
    champ_->setAccessibilityLabel(u"Nombre de cartes"_ns);
    champ_->setTarget(this);
    champ_->setAction(sel("saisi:"));
    ecart_ = large(NSSlider::sliderWithValue_minValue_maxValue_target_action(-10, -10, 30, this, sel("ecarte:")), 110);
    ecart_->setAccessibilityLabel(u"Écart entre les cartes"_ns);
    const auto bouton = NSButton::buttonWithTitle_target_action(u"Aperçu et impression…"_ns, this, sel("imprime:"));

    vue_ = make<KCFlippedView>(NSRect{{0, 0}, kTaille});
    const auto haut = rangee({choix_, bouton}, 12);
    const auto bas = rangee({etiquette(u"Nombre"_ns), curseur_, champ_, etiquette(u"Écart"_ns), ecart_}, 12);
    haut->setFrameOrigin({kMarge, 4});
    bas->setFrameOrigin({kMarge, 42});
    vue_->addSubview(haut);
    vue_->addSubview(bas);

    const NSRect liste{{kMarge, kHautListe}, {kTaille.width - 2 * kMarge, kTaille.height - kHautListe - kBasListe}};
    defilement_ = make<NSScrollView>(liste);
    defilement_->setBorderType(NSLineBorder);
    defilement_->setHasVerticalScroller(YES);
    defilement_->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
    vue_->addSubview(defilement_);
    const CGFloat yLigne = NSMaxY(liste) + 10;
    vues_ = large(legende(u"0 vue"_ns), 180);
    vues_->setAlignment(NSRightTextAlignment);
    vues_->setFrameOrigin({NSMaxX(liste) - 180, yLigne});
    vues_->setAutoresizingMask(NSViewMinXMargin | NSViewMinYMargin);
    dit_ = large(legende(u"Cliquez une carte, ou prenez les flèches du clavier."_ns), liste.size.width - 190);
    dit_->setFrameOrigin({kMarge, yLigne});
    dit_->setAutoresizingMask(NSViewWidthSizable | NSViewMinYMargin);
    vue_->addSubview(dit_);
    vue_->addSubview(vues_);
    NSNotificationCenter::defaultCenter()->addObserver<&Grilles::place>(this, NSViewFrameDidChangeNotification,
                                                                        defilement_->contentView());
    installe(0);
}

void Grilles::quitte() {
    if (grille_) grille_->removeObserver_forKeyPath(this, u"selectedIndex"_ns);
    grille_ = nullptr;
    source().surChangement = nullptr;
    if (NSView* barre = source().barre()) barre->removeFromSuperview();
}

void Grilles::installe(NSInteger source) {
    if (source < 0 || static_cast<std::size_t>(source) >= sources_.size()) return;
    quitte();
    choisie_ = source;
    // Between the controls and the list, at the width of the list.
    const NSSize page = vue_->bounds().size;
    NSRect liste{{kMarge, kHautListe},
                 {std::max(0.0, page.width - 2 * kMarge), std::max(0.0, page.height - kHautListe - kBasListe)}};
    if (NSView* barre = this->source().barre()) {
        const CGFloat haut = barre->frame().size.height;
        barre->setFrame({liste.origin, {liste.size.width, haut}});
        barre->setAutoresizingMask(NSViewWidthSizable | NSViewMaxYMargin);
        vue_->addSubview(barre);
        liste.origin.y += haut + kEcart;
        liste.size.height = std::max(0.0, liste.size.height - haut - kEcart);
    }
    defilement_->setFrame(liste);
    const NSSize place = defilement_->contentSize();
    grille_ = make<KCCollectionView>(NSRect{{0, 0}, place});
    grille_->setAutoresizingMask(NSViewWidthSizable);
    grille_->awakeFromNib(); // so that it keeps the rectangles of its pages
    grille_->setClasseVueItem(&this->source().classeVue());
    grille_->setNomNib(this->source().nomNib());
    grille_->setBundleNib(NSBundle::mainBundle());
    grille_->setDelegate(delegue_);
    grille_->setAccessibilityLabel(this->source().nom());
    grille_->setNomApp_etCopyright(u"Galerie LibVue"_ns, this->source().nom());
    defilement_->setDocumentView(grille_);
    grille_->addObserver_forKeyPath_options_context(this, u"selectedIndex"_ns, NSKeyValueObservingOptionNone, nullptr);
    ecarte(nullptr);
    this->source().surChangement = [this] { montre(this->source().auDebut()); };
    this->source().commence();
    montre(this->source().auDebut());
}

void Grilles::montre(NSUInteger nombre) {
    const NSUInteger maximum = source().maximum();
    nombre = std::min(nombre, maximum);
    grille_->setDonnees(source().objets(nombre));
    curseur_->setDoubleValue(cranDuNombre(nombre, maximum));
    champ_->setStringValue(nombreEnTexte(nombre));
    compte();
}

void Grilles::compte() {
    const auto* bassin = grille_ ? grille_->mesVues() : nullptr;
    vues_->setStringValue(
        NSString::stringWithFormat(u"%@ vues vivantes"_ns, nombreEnTexte(bassin ? bassin->taille() : 0).get()));
}

void Grilles::place(NSNotification*) {
    // A higher window shows more rows before it draws.
    if (grille_) grille_->ajusteContenu();
    compte();
}

void Grilles::saisi(NSObject*) {
    // Digits alone count: people write the blanks between thousands, or not.
    NSUInteger n = 0;
    const auto texte = champ_->stringValue();
    for (NSUInteger i = 0; i < texte->length(); ++i)
        if (const unichar u = texte->characterAtIndex(i); u >= u'0' && u <= u'9')
            n = std::min<NSUInteger>(n * 10 + (u - u'0'), 100'000'000);
    montre(n);
}

void Grilles::ecarte(NSObject*) {
    const CGFloat e = std::round(ecart_->doubleValue());
    grille_->setEspacement({e, e});
    grille_->resizeSubviewsWithOldSize(NSZeroSize);
    compte();
}

void Grilles::dit(NSString* verbe, NSObject* objet) {
    dit_->setStringValue(objet ? NSString::stringWithFormat(u"%@\u00A0: %@"_ns, verbe, source().dit(objet).get())
                               : NSString::stringWithFormat(u"%@\u00A0: rien n’est choisi"_ns, verbe));
}

void Grilles::observeValueForKeyPath_ofObject_change_context(NSString*, NSObject*, NSDictionary*, void*) {
    if (NSObject* objet = grille_ ? grille_->selectedObject() : nullptr) dit(u"Choisie"_ns, objet);
}

} // namespace

class PageGrille : public PageGalerie {
public:
    static void describe(ClassDescription<PageGrille, PageGalerie>&) {}
    [[nodiscard]] Ref<NSString> nom() const override { return u"Grille"_ns; }
    [[nodiscard]] Ref<NSString> resume() const override {
        return u"Un million d’objets, et seulement autant de vues que la fenêtre en montre."_ns;
    }
    [[nodiscard]] NSSize tailleMin() const override { return kTaille; }
    void attends() override {
        if (grilles_) grilles_->attends();
    }

protected:
    Ref<NSView> construitVue() override {
        grilles_ = make<Grilles>();
        return grilles_->vue();
    }

private:
    Ref<Grilles> grilles_;
};

namespace {
const InscriptionPage<PageGrille> inscription{75};
} // namespace

} // namespace galerie

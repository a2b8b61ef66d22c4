// The find panel over a long text and a list of words: every type, both ways, the selection, what is not found.
#include <Composition.h>
#include <PageGalerie.h>
#include <libvue/layout/KCFlippedView.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/search/KPanneauRecherche.h>
#include <recherche/ListeCherchable.h>
#include <recherche/TexteCherchable.h>

namespace galerie {

namespace {

constexpr CGFloat kTexte = 424, kListe = 288, kGouttiere = 28, kHauteur = 426;

constexpr const char16_t* kF3 = u"\uF706";

constexpr const char16_t* kRecit =
    u"Ce matin-là, la sœur d’Élodie ouvrit la fenêtre de l’auberge. Au cœur du village, le marché s’éveillait "
    u"déjà\u00A0: des œufs, des bœufs, un porte-monnaie oublié sur un banc. «\u00A0Aujourd’hui, dit-elle, "
    u"nous irons jusqu’à la mer.\u00A0»\n"
    u"Le chemin longeait l’œuvre inachevée d’un maître d’autrefois\u00A0: un arc-en-ciel de pierre, que les "
    u"gens d’ici nomment l’Œil. On y grimpe de bon cœur, l’on y redescend sans mot dire. L’ami qui les "
    u"accompagnait, Ægidius, avait la manie des listes\u00A0; il notait tout, et même les nœuds des arbres.\n"
    u"À midi, ils mangèrent près d’un moulin. Personne ne parlait. Le vent, lui, parlait pour tous. Élodie compta "
    u"les voiles ex æquo des deux bateaux qui rentraient\u00A0: ni l’un ni l’autre ne voulait céder. «\u00A0C’est le "
    u"cœur qui manque, pas le vent\u00A0», jugea la meunière.\n"
    u"Plus loin, le sentier se perd dans les ajoncs. Il faut alors prendre par la grève, à marée basse, et ne pas "
    u"traîner. Ægidius traîna. Il relisait son curriculum vitæ, qu’il corrigeait depuis un an sans en venir à bout, "
    u"et l’eau lui prit une chaussure.\n"
    u"On rit beaucoup. Puis le ciel se couvrit, et l’on se tut. Une vieille femme, sur le seuil d’une "
    u"maison basse, leur fit signe d’entrer. Elle avait un chat, trois chaises et une marmite. «\u00A0Prenez place, "
    u"dit-elle, la soupe n’attend pas.\u00A0» C’était une soupe de poisson, épaisse, où flottaient des herbes.\n"
    u"Le soir venu, les sœurs retrouvèrent l’auberge. Dans la salle, un chœur d’enfants répétait\u00A0; la plus petite "
    u"chantait faux, de tout son cœur. Personne n’eut le cœur de le lui dire. Élodie chercha son porte-monnaie et se "
    u"souvint du banc.\n"
    u"Le lendemain, il y était encore. Quelqu’un y avait glissé un mot\u00A0: «\u00A0Aujourd’hui comme hier, on trouve "
    u"ce que l’on cherche.\u00A0» Elle n’a jamais su qui. Ægidius, lui, sourit, et ne nota rien.";

constexpr const char16_t* kMots[] = {
    u"aujourd’hui",
    u"ami",
    u"l’ami d’enfance",
    u"amical",
    u"arc-en-ciel",
    u"bœuf",
    u"cœur",
    u"à contrecœur",
    u"de bon cœur",
    u"chœur",
    u"coeur (variante)",
    u"curriculum vitæ",
    u"Élève",
    u"élevé",
    u"ex æquo",
    u"Ægidius",
    u"monnaie",
    u"porte-monnaie",
    u"monnayer",
    u"nœud",
    u"œil",
    u"Œil-de-bœuf",
    u"œuf",
    u"œuvre",
    u"chef-d’œuvre",
    u"main d’œuvre",
    u"sœur",
    u"belle-sœur",
    u"demi-sœur",
    u"vœu",
};

Ref<NSScrollView> defilement(NSView* document, CGFloat largeur) {
    auto d = make<NSScrollView>(NSMakeRect(0, 0, largeur, kHauteur));
    d->setBorderType(NSLineBorder);
    d->setHasVerticalScroller(YES);
    d->setDocumentView(document);
    return d;
}

/// Everything on the page. It owns the panel, as the application's delegate does.
class Recherche : public NSObject {
public:
    static void describe(ClassDescription<Recherche>& c) {
        c.answers<&Recherche::commande>("commandeRecherche:");
        c.answers<&Recherche::panneau>(op::panneauRecherche);
    }
    Recherche();
    ~Recherche() override;
    [[nodiscard]] KCLayoutView* vue() const noexcept { return vue_; }

private:
    KPanneauRecherche* panneau() { return panneau_; }
    void commande(NSObject* emetteur);
    void choisis(ClientRecherche* client);
    Ref<NSView> bouton(NSString* titre, NSInteger tag, NSString* touches);
    void raccourci(NSString* titre, NSInteger tag, NSString* touche, NSUInteger modificateurs);

    Ref<KPanneauRecherche> panneau_ = KPanneauRecherche::panneauDeRessource();
    Ref<TexteCherchable> texte_;
    Ref<ListeCherchable> liste_;
    Ref<NSTextField> client_, etat_;
    Ref<KCLayoutView> vue_;
};

Recherche::Recherche() {
    texte_ = make<TexteCherchable>(kTexte, NSString::from(kRecit));
    texte_->setAccessibilityLabel(u"Texte"_ns);
    const auto mots = NSMutableArray::array();
    for (const char16_t* mot : kMots)
        mots->addObject(NSString::from(mot));
    liste_ = make<ListeCherchable>(kListe, mots);
    liste_->setAccessibilityLabel(u"Liste de mots"_ns);
    client_ = large(etiquette(u" "_ns), kTexte);
    etat_ = large(etiquette(u" "_ns), kListe);
    for (ClientRecherche* c : {static_cast<ClientRecherche*>(texte_), static_cast<ClientRecherche*>(liste_)}) {
        c->surFocus = [this](ClientRecherche* choisi) { choisis(choisi); };
        c->surRecherche = [this](NSString* bilan) { etat_->setStringValue(bilan); };
    }
    vue_ = pile(
        {rangee(
             {groupe(u"Texte"_ns, {defilement(texte_, kTexte),
                                   legende(u"N’importe où seulement\u00A0: le type du panneau est alors grisé."_ns)}),
              groupe(u"Liste de mots"_ns, {defilement(liste_, kListe), legende(u"Tous les types de recherche."_ns)})},
             kGouttiere),
         rangee({rangee({bouton(u"Rechercher…"_ns, kRechercheMontrer, u"Ctrl+F"_ns),
                         bouton(u"Suivant"_ns, kRechercheSuivant, u"F3 ou Ctrl+G"_ns),
                         bouton(u"Précédent"_ns, kRecherchePrecedent, u"Maj+F3 ou Ctrl+Maj+G"_ns),
                         bouton(u"Utiliser la sélection"_ns, kRechercheUtiliserSelection, u"Ctrl+E"_ns)}),
                 legende(u"Ctrl+F, F3, Maj+F3, Ctrl+E"_ns)},
                kGouttiere - 6),
         rangee({client_, etat_}, kGouttiere)},
        kEcart + 4);

    const auto f3 = NSString::from(kF3);
    raccourci(u"Rechercher"_ns, kRechercheMontrer, u"f"_ns, NSCommandKeyMask);
    raccourci(u"Suivant"_ns, kRechercheSuivant, u"g"_ns, NSCommandKeyMask);
    raccourci(u"Suivant"_ns, kRechercheSuivant, f3, 0);
    raccourci(u"Précédent"_ns, kRecherchePrecedent, u"g"_ns, NSCommandKeyMask | NSShiftKeyMask);
    raccourci(u"Précédent"_ns, kRecherchePrecedent, f3, NSShiftKeyMask);
    raccourci(u"Utiliser la sélection"_ns, kRechercheUtiliserSelection, u"e"_ns, NSCommandKeyMask);
    NSApp()->setDelegate(this);
    choisis(texte_);
}

Recherche::~Recherche() {
    for (ClientRecherche* c : {static_cast<ClientRecherche*>(texte_), static_cast<ClientRecherche*>(liste_)}) {
        c->surFocus = nullptr;
        c->surRecherche = nullptr;
    }
}

Ref<NSView> Recherche::bouton(NSString* titre, NSInteger tag, NSString* touches) {
    const auto b = NSButton::buttonWithTitle_target_action(titre, this, sel("commandeRecherche:"));
    b->setTag(tag);
    b->setToolTip(touches);
    return b;
}

void Recherche::raccourci(NSString* titre, NSInteger tag, NSString* touche, NSUInteger modificateurs) {
    NSMenu* menu = NSApp()->mainMenu();
    if (!menu) return;
    NSMenuItem* element = menu->addItemWithTitle_action_keyEquivalent(titre, sel("commandeRecherche:"), touche);
    element->setKeyEquivalentModifierMask(modificateurs);
    element->setTag(tag);
    element->setTarget(this);
}

void Recherche::commande(NSObject* emetteur) {
    // The commands belong to this page, as long as it shows.
    if (panneau_ && vue_->window()) panneau_->actionPanneauRecherche(emetteur);
}

void Recherche::choisis(ClientRecherche* client) {
    if (panneau_) panneau_->initialisePourClient(client);
    client_->setStringValue(client == texte_.get() ? u"Le panneau cherche dans le texte."_ns
                                                   : u"Le panneau cherche dans la liste."_ns);
}

} // namespace

class PageRecherche : public PageGalerie {
public:
    static void describe(ClassDescription<PageRecherche, PageGalerie>&) {}
    [[nodiscard]] Ref<NSString> nom() const override { return u"Recherche"_ns; }
    [[nodiscard]] Ref<NSString> resume() const override {
        return u"Un panneau de recherche, deux clients, et la règle qui trouve «\u00A0cœur\u00A0» par «\u00A0coeur\u00A0»."_ns;
    }
    [[nodiscard]] NSSize tailleMin() const override { return {2 * kMarge + kTexte + kGouttiere + kListe, hauteur_}; }

protected:
    Ref<NSView> construitVue() override {
        recherche_ = make<Recherche>();
        const auto page = make<KCFlippedView>(NSZeroRect);
        recherche_->vue()->setFrameOrigin({kMarge, 4});
        hauteur_ = 4 + recherche_->vue()->frame().size.height + kMarge;
        page->addSubview(recherche_->vue());
        return page;
    }

private:
    Ref<Recherche> recherche_;
    CGFloat hauteur_ = 480;
};

namespace {
const InscriptionPage<PageRecherche> inscription{110};
} // namespace

} // namespace galerie

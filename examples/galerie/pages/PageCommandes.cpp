// Every control in every state.
#include <Composition.h>
#include <PageComposee.h>
#include <libvue/platform/appkit/NSBox.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSSlider.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/Palette.h>

namespace galerie {

namespace {

constexpr CGFloat kColonne = 232, kGouttiere = 22;

Ref<NSTextField> champ(NSString* texte, CGFloat largeur = kColonne) {
    return large(NSTextField::textFieldWithString(texte), largeur);
}

Ref<NSButton> bouton(NSString* titre) { return NSButton::buttonWithTitle_target_action(titre, nullptr, nullptr); }

template <class T> Ref<T> inactif(Ref<T> c) {
    c->setEnabled(NO);
    return c;
}

/// A small five-pointed star, drawn at twice its size so that it is crisp at every scale.
Ref<NSImage> etoile() {
    const auto image = make<NSImage>(NSSize{32, 32});
    image->lockFocus();
    const auto trace = NSBezierPath::bezierPath();
    constexpr CGFloat x[] = {16, 20.1, 30.3, 22.7, 24.8, 16, 7.2, 9.3, 1.7, 11.9};
    constexpr CGFloat y[] = {31, 21.7, 20.6, 13.8, 3.9, 9, 3.9, 13.8, 20.6, 21.7};
    trace->moveToPoint({x[0], y[0]});
    for (int i = 1; i < 10; ++i)
        trace->lineToPoint({x[i], y[i]});
    trace->closePath();
    NSColor::colorWithSRGBRed_green_blue_alpha(0.93, 0.65, 0.13, 1)->setFill();
    trace->fill();
    image->unlockFocus();
    image->setSize({16, 16});
    return image;
}

Ref<NSView> textes() {
    const auto defaut = etiquette(u"Étiquette"_ns);
    const auto seconde = etiquette(u"Étiquette secondaire"_ns);
    seconde->setTextColor(NSColor::secondaryLabelColor());
    const auto grasse = titreGroupe(u"Étiquette grasse"_ns);
    const auto lien = etiquette(u"Texte à sélectionner"_ns);
    lien->setSelectable(YES);
    const auto normal = champ(u"Ça, c’est «\u00A0normal\u00A0»"_ns);
    const auto vide = champ(u""_ns);
    vide->setPlaceholderString(u"Texte indicatif"_ns);
    const auto droite = champ(u"1\u00A0234,50\u00A0$"_ns);
    droite->setAlignment(NSRightTextAlignment);
    return groupe(u"Textes et champs"_ns,
                  {rangee({defaut, grasse}, 16), seconde, lien, normal, vide, droite, inactif(champ(u"Inactif"_ns))});
}

Ref<NSView> boutons() {
    const auto defaut = bouton(u"Par défaut"_ns);
    defaut->setKeyEquivalent(u"\r"_ns);
    const auto image = bouton(u"Avec image"_ns);
    image->setImage(etoile());
    image->setImagePosition(NSImageLeft);
    image->sizeToFit();
    const auto seule = bouton(u""_ns);
    seule->setImage(etoile());
    seule->setImagePosition(NSImageOnly);
    seule->setAccessibilityLabel(u"Favori"_ns);
    seule->setToolTip(u"Ajouter aux favoris"_ns);
    seule->sizeToFit();
    const auto bascule = bouton(u"Bascule"_ns);
    bascule->setButtonType(NSPushOnPushOffButton);
    const auto active = bouton(u"Enclenchée"_ns);
    active->setButtonType(NSPushOnPushOffButton);
    active->setState(NSOnState);
    const auto plat = [](NSString* titre, NSInteger etat) {
        auto b = bouton(titre);
        b->setButtonType(NSPushOnPushOffButton);
        b->setBezelStyle(NSRecessedBezelStyle);
        b->setState(etat);
        b->sizeToFit();
        return b;
    };
    return groupe(u"Boutons"_ns, {rangee({bouton(u"Normal"_ns), defaut}),
                                  rangee({image, inactif(bouton(u"Inactif"_ns))}), rangee({bascule, active, seule}),
                                  rangee({plat(u"Encastré"_ns, NSOffState), plat(u"Choisi"_ns, NSOnState),
                                          inactif(plat(u"Inactif"_ns, NSOffState))},
                                         4)});
}

Ref<NSView> tailles() {
    const auto taille = [](NSString* nom, NSControlSize t) -> Ref<NSView> {
        const auto b = bouton(nom);
        const auto c = NSButton::checkboxWithTitle_target_action(nom, nullptr, nullptr);
        c->setState(NSOnState);
        const auto p = make<NSPopUpButton>(NSZeroRect);
        p->addItemsWithTitles(NSArray::arrayWithObjects({u"Un"_ns, u"Deux"_ns}));
        for (NSButton* chacun : std::initializer_list<NSButton*>{b, c, p}) {
            chacun->setControlSize(t);
            chacun->setFont(NSFont::systemFontOfSize(NSFont::systemFontSizeForControlSize(t)));
            chacun->sizeToFit();
        }
        return rangee({large(b, 78), large(c, 76), large(p, 62)});
    };
    return groupe(u"Trois tailles"_ns,
                  {taille(u"Normale"_ns, NSRegularControlSize), taille(u"Petite"_ns, NSSmallControlSize),
                   taille(u"Mini"_ns, NSMiniControlSize)});
}

Ref<NSView> cases() {
    const auto case_ = [](NSString* titre, NSInteger etat) {
        auto c = NSButton::checkboxWithTitle_target_action(titre, nullptr, nullptr);
        c->setAllowsMixedState(etat == NSMixedState);
        c->setState(etat);
        return large(c, 110);
    };
    return groupe(u"Cases à cocher"_ns,
                  {rangee({case_(u"Décochée"_ns, NSOffState), inactif(case_(u"Inactive"_ns, NSOffState))}),
                   rangee({case_(u"Cochée"_ns, NSOnState), inactif(case_(u"Inactive"_ns, NSOnState))}),
                   rangee({case_(u"Mixte"_ns, NSMixedState), inactif(case_(u"Inactive"_ns, NSMixedState))})});
}

Ref<NSView> radios() {
    // The radio buttons of one view are one group.
    const auto radio = [](NSString* titre) {
        return large(NSButton::radioButtonWithTitle_target_action(titre, nullptr, nullptr), 110);
    };
    const auto a = radio(u"Premier"_ns), b = radio(u"Deuxième"_ns), c = inactif(radio(u"Inactif"_ns));
    const auto d = inactif(radio(u"Inactif"_ns));
    a->setState(NSOnState);
    d->setState(NSOnState);
    return groupe(u"Boutons radio"_ns, {rangee({pile({a, b}), pile({c, d})})});
}

Ref<NSView> menus() {
    const auto choix = make<NSPopUpButton>(NSZeroRect);
    choix->addItemsWithTitles(NSArray::arrayWithObjects({u"Janvier"_ns, u"Février"_ns, u"Mars"_ns, u"Avril"_ns}));
    choix->selectItemAtIndex(1);
    choix->sizeToFit();
    const auto actions = make<NSPopUpButton>(NSZeroRect, YES);
    actions->addItemsWithTitles(
        NSArray::arrayWithObjects({u"Actions"_ns, u"Renommer"_ns, u"Dupliquer"_ns, u"Supprimer"_ns}));
    actions->menu()->insertItem_atIndex(NSMenuItem::separatorItem(), 3);
    actions->sizeToFit();
    const auto eteint = make<NSPopUpButton>(NSZeroRect);
    eteint->addItemWithTitle(u"Inactif"_ns);
    eteint->sizeToFit();
    return groupe(u"Menus locaux et déroulants"_ns,
                  {large(choix, kColonne), rangee({large(actions, 112), inactif(large(eteint, 112))})});
}

Ref<NSView> curseurs() {
    const auto curseur = [](double v, NSInteger graduations, CGFloat largeur) {
        auto s = NSSlider::sliderWithValue_minValue_maxValue_target_action(v, 0, 100, nullptr, nullptr);
        s->setNumberOfTickMarks(graduations);
        s->setFrameSize({largeur, 24});
        s->sizeToFit();
        return large(s, largeur);
    };
    const auto gradue = curseur(50, 5, 164);
    gradue->setAllowsTickMarkValuesOnly(YES);
    const auto debout = [](double v, NSInteger graduations) {
        auto s = make<NSSlider>(NSMakeRect(0, 0, graduations ? 28 : 20, 96));
        s->setMaxValue(100);
        s->setNumberOfTickMarks(graduations);
        s->setDoubleValue(v);
        return s;
    };
    return groupe(u"Curseurs"_ns, {rangee({pile({curseur(35, 0, 164), gradue, inactif(curseur(70, 0, 164))}, 10),
                                           debout(60, 0), debout(25, 5)},
                                          10)});
}

Ref<NSBox> boite(NSString* titre, NSSize taille) {
    auto b = make<NSBox>(NSRect{NSZeroPoint, taille});
    const auto contenu = make<NSView>(NSZeroRect);
    b->setContentView(contenu);
    b->setTitle(titre);
    b->setTitleFont(NSFont::systemFontOfSize(NSFont::smallSystemFontSize()));
    const auto texte = legende(u"Contenu"_ns);
    texte->setFrameOrigin({4, contenu->bounds().size.height - texte->frame().size.height - 2});
    texte->setAutoresizingMask(NSViewMinYMargin);
    contenu->addSubview(texte);
    return b;
}

Ref<NSView> boites() {
    constexpr NSSize kBoite{112, 68};
    const auto dessous = boite(u"Titre en bas"_ns, kBoite);
    dessous->setTitlePosition(NSAtBottom);
    const auto sans = boite(u""_ns, kBoite);
    sans->setTitlePosition(NSNoTitle);
    const auto libre = boite(u""_ns, kBoite);
    libre->setTitlePosition(NSNoTitle);
    libre->setBoxType(NSBoxCustom);
    libre->setBorderType(NSLineBorder);
    libre->setCornerRadius(10);
    libre->setBorderWidth(2);
    libre->setBorderColor(NSColor::controlAccentColor());
    libre->setFillColor(NSColor::selectedControlColor());
    return groupe(u"Boîtes"_ns, {rangee({boite(u"Avec titre"_ns, kBoite), dessous}), rangee({sans, libre}),
                                 legende(u"Séparateur"_ns), filet(kColonne)});
}

/// Rows of text in two backgrounds, larger than what shows of them.
class Lignes : public NSView {
public:
    static void describe(ClassDescription<Lignes, NSView>&) {}
    explicit Lignes(const NSRect& cadre) : NSView(cadre) {
        for (int i = 0; i < kNombre; ++i) {
            const auto l = etiquette(NSString::stringWithFormat(u"Ligne %d — défilez pour voir la suite"_ns, i + 1));
            l->setFrameOrigin({8, i * kPas + 3});
            addSubview(l);
        }
    }
    static constexpr int kNombre = 12;
    static constexpr CGFloat kPas = 22;
    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    void drawRect(const NSRect&) override {
        const auto fonds = NSColor::controlAlternatingRowBackgroundColors();
        for (int i = 0; i < kNombre; ++i) {
            as<NSColor>(fonds->objectAtIndex(static_cast<NSUInteger>(i % 2)))->setFill();
            NSRectFill(NSMakeRect(0, i * kPas, bounds().size.width, kPas));
        }
    }
};

Ref<NSView> defilements() {
    const auto d = make<NSScrollView>(NSMakeRect(0, 0, kColonne, 112));
    d->setBorderType(NSLineBorder);
    d->setHasVerticalScroller(YES);
    d->setHasHorizontalScroller(YES);
    d->setDocumentView(make<Lignes>(NSMakeRect(0, 0, 300, Lignes::kNombre * Lignes::kPas)));
    return groupe(u"Vue à défilement"_ns, {d});
}

} // namespace

class PageCommandes : public PageComposee {
public:
    static void describe(ClassDescription<PageCommandes, PageComposee>&) {}
    [[nodiscard]] Ref<NSString> nom() const override { return u"Commandes"_ns; }
    [[nodiscard]] Ref<NSString> resume() const override {
        return u"Chaque commande dans chacun de ses états. Tab passe de l’une à l’autre, l’espace appuie."_ns;
    }

protected:
    Ref<KCLayoutView> compose() override {
        return colonnes({pile({textes(), boutons(), tailles()}, kGroupe),
                         pile({cases(), radios(), menus(), curseurs()}, kGroupe),
                         pile({boites(), defilements()}, kGroupe)},
                        kGouttiere);
    }
};

namespace {
const InscriptionPage<PageCommandes> inscription{20};
} // namespace

} // namespace galerie

#include <FenetreGalerie.h>

#include <array>
#include <utility>

#include <Composition.h>
#include <ListePages.h>
#include <ZonePage.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSBox.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSFont.h>

namespace galerie {

namespace {

constexpr NSSize kTaille{1000, 680}, kTailleMin{720, 480};
/// Tags of the shortcuts to the neighbours of the page that is shown.
constexpr NSInteger kPrecedente = -2, kSuivante = -1;
constexpr CGFloat kLateral = 200, kEntete = 92, kPied = 44;

/// Escape goes back to the list, and from there out of the gallery.
class Fenetre : public NSWindow {
public:
    static void describe(ClassDescription<Fenetre, NSWindow>&) {}
    using NSWindow::NSWindow;
    void cancelOperation(NSObject* emetteur) override {
        NSApp()->sendAction_to_from(sel("annule:"), delegate(), emetteur);
    }
};

/// Paints what stands behind everything, so that a picture of the content has it too.
class Fond : public NSView {
public:
    static void describe(ClassDescription<Fond, NSView>&) {}
    using NSView::NSView;
    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    [[nodiscard]] BOOL isOpaque() const override { return YES; }
    void drawRect(const NSRect& r) override {
        NSColor::windowBackgroundColor()->setFill();
        NSRectFill(r);
        const NSRect lateral = NSMakeRect(0, 0, kLateral, bounds().size.height);
        NSColor::underPageBackgroundColor()->colorWithAlphaComponent(0.55)->setFill();
        NSRectFillUsingOperation(NSIntersectionRect(lateral, r), NSCompositeSourceOver);
    }
};

Ref<NSButton> boutonApparence(NSString* titre, ChoixApparence choix, NSObject* cible) {
    auto b = NSButton::buttonWithTitle_target_action(titre, cible, sel("apparenceChoisie:"));
    b->setButtonType(NSPushOnPushOffButton);
    b->setBezelStyle(NSRecessedBezelStyle);
    b->setControlSize(NSSmallControlSize);
    b->setFont(NSFont::systemFontOfSize(NSFont::smallSystemFontSize()));
    b->setTag(static_cast<NSInteger>(choix));
    b->sizeToFit();
    return b;
}

} // namespace

void FenetreGalerie::describe(ClassDescription<FenetreGalerie>& c) {
    c.answers<&FenetreGalerie::apparenceChoisie>("apparenceChoisie:");
    c.answers<&FenetreGalerie::pageDuMenu>("pageDuMenu:");
    c.answers<&FenetreGalerie::annule>("annule:");
}

FenetreGalerie::FenetreGalerie(std::vector<Ref<PageGalerie>> pages) : pages_(std::move(pages)) {
    // The application sets the desktop's look as it comes to life.
    NSApplication* application = NSApp();
    bureau_ = currentAppearance();
    fenetre_ = make<Fenetre>(NSRect{{120, 120}, kTaille}, NSTitledWindowMask | NSClosableWindowMask |
                                                              NSMiniaturizableWindowMask | NSResizableWindowMask);
    fenetre_->setTitle(u"LibVue — Galerie"_ns);
    fenetre_->setDelegate(this);
    construitContenu();
    construitMenu();
    fenetre_->setMinSize(fenetre_->frameRectForContentRect({NSZeroPoint, kTailleMin}).size);
    NSNotificationCenter::defaultCenter()->addObserver<&FenetreGalerie::bureauAChange>(
        this, NSApplicationDidChangeAppearanceNotification, application);
    montrePage(0);
}

FenetreGalerie::~FenetreGalerie() {
    NSNotificationCenter::defaultCenter()->removeObserver(this);
    liste_->surChoix = nullptr;
    fenetre_->setDelegate(nullptr);
}

NSWindow* FenetreGalerie::fenetre() const { return fenetre_; }

void FenetreGalerie::construitContenu() {
    const auto fond = make<Fond>(NSRect{NSZeroPoint, kTaille});

    std::vector<Ref<NSString>> noms;
    for (const auto& p : pages_)
        noms.push_back(p->nom());
    liste_ = make<ListePages>(noms);
    liste_->setFrame(NSMakeRect(0, 0, kLateral, liste_->frame().size.height));
    liste_->surChoix = [this](NSUInteger i) { montrePage(i); };
    const auto defilement =
        make<NSScrollView>(NSMakeRect(0, kEntete - 6, kLateral, kTaille.height - kPied - (kEntete - 6)));
    defilement->setDrawsBackground(NO);
    defilement->setHasVerticalScroller(YES);
    defilement->setAutohidesScrollers(YES);
    defilement->setAutoresizingMask(NSViewHeightSizable);
    defilement->setDocumentView(liste_);

    const auto marque = etiquette(u"LibVue"_ns);
    marque->setFont(NSFont::boldSystemFontOfSize(17));
    marque->sizeToFit();
    marque->setFrameOrigin({kMarge - 4, 22});
    const auto sous = legende(u"Galerie des composants"_ns);
    sous->setFrameOrigin({kMarge - 4, 22 + marque->frame().size.height});

    const auto bord = make<NSBox>(NSMakeRect(kLateral, 0, 1, kTaille.height));
    bord->setBoxType(NSBoxSeparator);
    bord->setAutoresizingMask(NSViewHeightSizable);

    boutonsApparence_ = {boutonApparence(u"Auto"_ns, ChoixApparence::automatique, this),
                         boutonApparence(u"Clair"_ns, ChoixApparence::clair, this),
                         boutonApparence(u"Sombre"_ns, ChoixApparence::sombre, this)};
    boutonsApparence_[0]->setToolTip(u"Suit l’apparence du bureau"_ns);
    boutonsApparence_[0]->setState(NSOnState);
    const auto choix = rangee({boutonsApparence_.begin(), boutonsApparence_.end()}, 4);
    choix->setAccessibilityLabel(u"Apparence"_ns);
    choix->setFrameOrigin({kMarge - 14, kTaille.height - kPied + 12});
    choix->setAutoresizingMask(NSViewMinYMargin);

    const CGFloat gauche = kLateral + 1 + kMarge, largeur = kTaille.width - gauche - kMarge;
    titre_ = etiquette(u"Titre"_ns);
    titre_->setFont(NSFont::boldSystemFontOfSize(22));
    titre_->sizeToFit();
    titre_->setFrame(NSMakeRect(gauche, 20, largeur, titre_->frame().size.height));
    titre_->setAutoresizingMask(NSViewWidthSizable);
    resume_ = etiquette(u"Résumé"_ns);
    resume_->setTextColor(NSColor::secondaryLabelColor());
    resume_->cell()->setLineBreakMode(NSLineBreakByTruncatingTail);
    resume_->setFrame(NSMakeRect(gauche, NSMaxY(titre_->frame()) + 4, largeur, resume_->frame().size.height));
    resume_->setAutoresizingMask(NSViewWidthSizable);

    zone_ = make<ZonePage>();
    zone_->setFrame(NSMakeRect(kLateral + 1, kEntete, kTaille.width - kLateral - 1, kTaille.height - kEntete));
    zone_->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);

    for (NSView* v : std::initializer_list<NSView*>{marque, sous, defilement, choix, bord, titre_, resume_, zone_})
        fond->addSubview(v);
    fenetre_->setContentView(fond);
    fenetre_->setInitialFirstResponder(liste_);
}

void FenetreGalerie::construitMenu() {
    // There is no menu bar; its items are the shortcuts.
    const auto raccourcis = make<NSMenu>(u"Galerie"_ns);
    for (NSUInteger i = 0; i < pages_.size() && i < 9; ++i) {
        NSMenuItem* page = raccourcis->addItemWithTitle_action_keyEquivalent(pages_[i]->nom(), sel("pageDuMenu:"),
                                                                             enTexte(static_cast<CGFloat>(i + 1)));
        page->setTag(static_cast<NSInteger>(i));
        page->setTarget(this);
    }
    constexpr std::array<std::pair<unichar, NSInteger>, 2> kVoisines{
        {{NSPageUpFunctionKey, kPrecedente}, {NSPageDownFunctionKey, kSuivante}}};
    for (const auto& [touche, pas] : kVoisines) {
        const auto equivalent = NSString::stringWithCharacters_length(&touche, 1);
        NSMenuItem* voisine = raccourcis->addItemWithTitle_action_keyEquivalent(
            pas == kSuivante ? u"Page suivante"_ns : u"Page précédente"_ns, sel("pageDuMenu:"), equivalent);
        voisine->setTag(pas);
        voisine->setTarget(this);
    }
    raccourcis->addItemWithTitle_action_keyEquivalent(u"Fermer"_ns, sel("performClose:"), u"w"_ns)->setTarget(fenetre_);
    raccourcis->addItemWithTitle_action_keyEquivalent(u"Quitter"_ns, sel("terminate:"), u"q"_ns)->setTarget(NSApp());
    NSApp()->setMainMenu(raccourcis);
}

void FenetreGalerie::montrePage(NSUInteger indice) {
    if (indice >= pages_.size() || indice == indice_) return;
    indice_ = indice;
    PageGalerie* page = pages_[indice];
    // What was being typed on the old page is taken over before the page goes.
    if (auto* v = as<NSView>(fenetre_->firstResponder()); v && v->isDescendantOf(zone_))
        fenetre_->makeFirstResponder(liste_);
    liste_->setChoisie(indice);
    titre_->setStringValue(page->nom());
    resume_->setStringValue(page->resume());
    NSView* vue = page->vue();
    static_cast<ZonePage*>(zone_.get())->montre(vue, page->tailleMin());
}

void FenetreGalerie::ouvre() {
    fenetre_->center();
    fenetre_->makeFirstResponder(liste_);
    fenetre_->makeKeyAndOrderFront(nullptr);
}

// The look.

void FenetreGalerie::setApparence(ChoixApparence choix) {
    apparence_ = choix;
    appliqueApparence();
}

void FenetreGalerie::setBureau(Appearance bureau) {
    bureau_ = bureau;
    appliqueApparence();
}

void FenetreGalerie::appliqueApparence() {
    const Appearance voulue = apparence_ == ChoixApparence::clair    ? Appearance::light
                              : apparence_ == ChoixApparence::sombre ? Appearance::dark
                                                                     : bureau_;
    for (const auto& b : boutonsApparence_)
        b->setState(b->tag() == static_cast<NSInteger>(apparence_) ? NSOnState : NSOffState);
    setCurrentAppearance(voulue);
    fenetre_->contentView()->setNeedsDisplay(YES);
}

void FenetreGalerie::apparenceChoisie(NSObject* emetteur) {
    if (auto* b = as<NSButton>(emetteur)) setApparence(static_cast<ChoixApparence>(b->tag()));
}

void FenetreGalerie::bureauAChange(NSNotification*) { setBureau(currentAppearance()); }

// Keys.

void FenetreGalerie::pageDuMenu(NSObject* emetteur) {
    auto* item = as<NSMenuItem>(emetteur);
    if (!item) return;
    const NSUInteger n = pages_.size();
    switch (item->tag()) {
    case kPrecedente:
        return montrePage((indice_ + n - 1) % n);
    case kSuivante:
        return montrePage((indice_ + 1) % n);
    default:
        montrePage(static_cast<NSUInteger>(item->tag()));
    }
}

void FenetreGalerie::annule(NSObject*) {
    if (fenetre_->firstResponder() == liste_.get())
        fenetre_->performClose(this);
    else
        fenetre_->makeFirstResponder(liste_);
}

// Pictures.

Ref<NSData> FenetreGalerie::image(CGFloat echelle) {
    NSView* contenu = fenetre_->contentView();
    // A first drawing settles what drawing itself places.
    fenetre_->displayIfNeeded();
    return contenu->pngDataInsideRect_scale(contenu->bounds(), echelle);
}

} // namespace galerie

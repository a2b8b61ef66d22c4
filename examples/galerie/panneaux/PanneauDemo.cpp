#include <panneaux/PanneauDemo.h>

#include <Composition.h>
#include <libvue/layout/KCFlippedView.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSSlider.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/Palette.h>

namespace galerie {

namespace {

constexpr CGFloat kBord = 20, kRayon = 8;

} // namespace

PanneauDemo::PanneauDemo(NSString* nom, NSColor* fond, Dit dit)
    : KCPanneauGlissant(NSZeroRect), nom_(nom), fond_(fond), dit_(std::move(dit)) {
    const auto titre = fond ? etiquette(nom) : titreGroupe(nom);
    if (fond) {
        titre->setFont(NSFont::boldSystemFontOfSize(20));
        titre->sizeToFit();
    }
    titre->setFrameOrigin(fond ? NSPoint{kBord, kBord} : NSPoint{14, 12});
    addSubview(titre);
}

void PanneauDemo::panneauEstAffichay() {
    if (dit_) dit_(nom_);
    KCPanneauGlissant::panneauEstAffichay();
}

void PanneauDemo::drawRect(const NSRect& r) {
    if (fond_) {
        NSColor::controlBackgroundColor()->set();
        NSRectFill(r);
        fond_->colorWithAlphaComponent(0.14)->set();
        NSRectFillUsingOperation(r, NSCompositeSourceOver);
        return;
    }
    NSColor::separatorColor()->setStroke();
    NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(NSInsetRect(bounds(), 0.5, 0.5), kRayon, kRayon)->stroke();
}

AccessibilityDescription PanneauDemo::accessibilityDescription() const {
    AccessibilityDescription d = KCPanneauGlissant::accessibilityDescription();
    d.role = u"group"_ns;
    d.label = nom_;
    return d;
}

Ref<PanneauDemo> panneauReglages(const PanneauDemo::Dit& dit) {
    auto p = make<PanneauDemo>(u"Réglages"_ns, NSColor::systemColor(SystemColor::accent), dit);
    const auto nom = large(NSTextField::textFieldWithString(u"Lettre à Élise"_ns), 180);
    nom->setAccessibilityLabel(u"Nom"_ns);
    const auto taille = make<NSSlider>(NSMakeRect(0, 0, 180, 20));
    taille->setAccessibilityLabel(u"Taille"_ns);
    const auto champs =
        pile({rangee({large(etiquette(u"Nom"_ns), 60), nom}), rangee({large(etiquette(u"Taille"_ns), 60), taille}),
              NSButton::checkboxWithTitle_target_action(u"En gras"_ns, nullptr, nullptr)});
    champs->setFrameOrigin({kBord, 62});
    p->addSubview(champs);
    // Told along with the one that it is in.
    const auto dedans = make<PanneauDemo>(u"Marges"_ns, nullptr, dit);
    const auto marges = pile({NSButton::checkboxWithTitle_target_action(u"Égales"_ns, nullptr, nullptr),
                              NSButton::checkboxWithTitle_target_action(u"En miroir"_ns, nullptr, nullptr)});
    marges->setFrameOrigin({14, 36});
    dedans->addSubview(marges);
    dedans->setFrame(NSMakeRect(kBord, 170, 150, 94));
    p->addSubview(dedans);
    // Behind a plain view: never told.
    const auto ecran = make<KCFlippedView>(NSMakeRect(kBord + 162, 170, 150, 94));
    const auto derriere = make<PanneauDemo>(u"Muet"_ns, nullptr, dit);
    const auto dit2 = legende(u"derrière une vue simple"_ns);
    dit2->setFrameOrigin({14, 38});
    derriere->addSubview(dit2);
    derriere->setFrame(NSMakeRect(0, 0, 150, 94));
    ecran->addSubview(derriere);
    p->addSubview(ecran);
    return p;
}

Ref<PanneauDemo> panneauTextes(PanneauDemo::Dit dit) {
    auto p = make<PanneauDemo>(u"Textes"_ns, NSColor::systemColor(SystemColor::warning), std::move(dit));
    std::vector<Ref<NSView>> lignes;
    for (const char16_t* titre : {u"Lettre à Élise", u"Le cœur a ses raisons", u"Où sont les neiges d’antan\u00A0?",
                                  u"Clair de lune", u"Demain, dès l’aube", u"Le dormeur du val"}) {
        const auto l = NSButton::checkboxWithTitle_target_action(NSString::from(titre), nullptr, nullptr);
        l->sizeToFit();
        lignes.push_back(l);
    }
    const auto liste = pile(lignes, 10);
    liste->setFrameOrigin({kBord, 62});
    p->addSubview(liste);
    return p;
}

} // namespace galerie

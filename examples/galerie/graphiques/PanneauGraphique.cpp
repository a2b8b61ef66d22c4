#include <graphiques/PanneauGraphique.h>

#include <Composition.h>
#include <graphiques/Exportation.h>
#include <libvue/platform/appkit/NSButton.h>

namespace galerie {

Ref<NSPopUpButton> PanneauGraphique::choix(NSString* nom, std::span<const char16_t* const> titres, const char* action) {
    auto p = make<NSPopUpButton>(NSZeroRect);
    for (const char16_t* t : titres)
        p->addItemWithTitle(NSString::from(t));
    p->setAccessibilityLabel(nom);
    p->setTarget(this);
    p->setAction(sel(action));
    p->sizeToFit();
    return large(p, colonne_ - kIntitule - kEcart);
}

Ref<NSSlider> PanneauGraphique::curseur(NSString* nom, double valeur, double plusGrande, const char* action) {
    auto s = NSSlider::sliderWithValue_minValue_maxValue_target_action(valeur, 0, plusGrande, this, sel(action));
    s->setAccessibilityLabel(nom);
    s->sizeToFit();
    return large(s, colonne_ - kIntitule - kEcart);
}

Ref<NSView> PanneauGraphique::ligne(NSString* nom, const Ref<NSView>& reglage) {
    return rangee({large(etiquette(nom), kIntitule), reglage});
}

void PanneauGraphique::compose(const Ref<NSView>& graphique, const Ref<NSView>& reglages, NSView* aExporter,
                               CGFloat gouttiere) {
    aExporter_ = aExporter;
    dit_ = large(legende(u" "_ns), colonne_);
    const auto bouton = [this](NSString* titre, const char* action) {
        return NSButton::buttonWithTitle_target_action(titre, this, sel(action));
    };
    const auto boutons =
        ligne(u"Exporter en"_ns, rangee({bouton(u"PDF"_ns, "exportePDF:"), bouton(u"PNG"_ns, "exportePNG:")}));
    vue_ = colonnes({graphique, pile({reglages, pile({boutons, dit_})}, kGroupe)}, gouttiere);
}

void PanneauGraphique::exportePDF(NSObject*) { dit_->setStringValue(exporte(aExporter_, fichier_, Format::pdf)); }
void PanneauGraphique::exportePNG(NSObject*) { dit_->setStringValue(exporte(aExporter_, fichier_, Format::png)); }

} // namespace galerie

#pragma once

#include <span>
#include <string>

#include <libvue/layout/KCLayoutView.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSSlider.h>
#include <libvue/platform/appkit/NSTextField.h>

namespace galerie {

using namespace libvue;

/// What the pages of charts have in common: a chart at the left, settings at the right that send their actions here,
/// and the export of the chart.
class PanneauGraphique : public NSObject {
public:
    static void describe(ClassDescription<PanneauGraphique>& c) {
        c.answers<&PanneauGraphique::exportePDF>("exportePDF:");
        c.answers<&PanneauGraphique::exportePNG>("exportePNG:");
    }
    [[nodiscard]] KCLayoutView* vue() const noexcept { return vue_; }

protected:
    /// `fichier` is what an export is named, without its ending; `colonne` is how wide the settings are.
    PanneauGraphique(std::string fichier, CGFloat colonne) : fichier_(std::move(fichier)), colonne_(colonne) {}

    /// A menu and a slider as wide as the settings leave beside their names.
    [[nodiscard]] Ref<NSPopUpButton> choix(NSString* nom, std::span<const char16_t* const> titres, const char* action);
    [[nodiscard]] Ref<NSSlider> curseur(NSString* nom, double valeur, double plusGrande, const char* action);
    /// The setting after its name.
    [[nodiscard]] static Ref<NSView> ligne(NSString* nom, const Ref<NSView>& reglage);
    /// The chart and its settings side by side, the buttons of the export below the latter.
    void compose(const Ref<NSView>& graphique, const Ref<NSView>& reglages, NSView* aExporter, CGFloat gouttiere);

    static constexpr CGFloat kIntitule = 78; ///< of a setting's name

private:
    void exportePDF(NSObject*);
    void exportePNG(NSObject*);

    std::string fichier_;
    CGFloat colonne_;
    Ref<KCLayoutView> vue_;
    Ref<NSView> aExporter_;
    Ref<NSTextField> dit_; ///< what became of an export
};

} // namespace galerie

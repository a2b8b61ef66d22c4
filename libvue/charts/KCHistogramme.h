#pragma once

#include <libvue/charts/Forward.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/Selector.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSShadow.h>

namespace libvue {

/// Horizontal stacked bars over an axis of values, and a click that names the bar.
///
/// The data is one flat list, band after band; the number of colours says how many entries (sections) a band has. A
/// list of no colours is the caller's error: asserted in debug builds, else a chart without bands. Lengths in points,
/// y downward.
class LIBVUE_API KCHistogramme : public NSView {
public:
    static void describe(ClassDescription<KCHistogramme, NSView>& c);
    KCHistogramme();
    explicit KCHistogramme(const NSRect& frame);
    /// Comes back with the defaults: nothing of its own is archived.
    explicit KCHistogramme(NSCoder& coder);
    ~KCHistogramme() override;

    // What it shows and how.

    /// Text attributes of the graduations' labels. Setting them asks for no redraw.
    [[nodiscard]] NSDictionary* attributsEtiquettes() const noexcept { return mesAttributsEtiquette; }
    void setAttributsEtiquettes(NSDictionary* attributs) { mesAttributsEtiquette = attributs; }
    /// Numbers, or whatever answers doubleValue. A last band that is not complete is left out.
    [[nodiscard]] NSArray* donnees() const noexcept { return mesDonnees; }
    void setDonnees(NSArray* donnees);
    /// An entry a section: an NSColor, or an NSArray with the two colours of a gradient. Anything else leaves the
    /// section unfilled.
    [[nodiscard]] NSArray* couleurs() const noexcept { return mesCouleurs; }
    void setCouleurs(NSArray* couleurs);
    /// Under each band; null for none.
    [[nodiscard]] NSShadow* ombrage() const noexcept { return monOmbrage; }
    void setOmbrage(NSShadow* ombrage);
    /// Outline of the sections; null for none.
    [[nodiscard]] NSColor* couleurBordureDesBandes() const noexcept { return maCouleurBordureDesBandes; }
    void setCouleurBordureDesBandes(NSColor* couleur);
    /// Of the axes and the graduations.
    [[nodiscard]] NSColor* couleurDesAxes() const noexcept { return maCouleurDesAxes; }
    void setCouleurDesAxes(NSColor* couleur);
    /// Of the last drawing; 0 before the first, 5 for an empty chart.
    [[nodiscard]] NSInteger nombreBandes() const noexcept { return monNombreBandes; }
    [[nodiscard]] NSInteger nombreSections() const noexcept { return monNombreSections; }
    /// Thickness of a band.
    [[nodiscard]] CGFloat largeurBandes() const noexcept { return maLargeurBandes; }
    void setLargeurBandes(CGFloat largeur);
    [[nodiscard]] CGFloat espacementBandes() const noexcept { return monEspacementBandes; }
    void setEspacementBandes(CGFloat espacement);
    /// YES: the axis shows values; NO: percentages of the total of all bands.
    [[nodiscard]] BOOL etiquettesAbsolues() const noexcept { return mesEtiquettesAbsolues; }
    void setEtiquettesAbsolues(BOOL absolues);

    // The click.

    /// The band of the last click.
    [[nodiscard]] NSInteger clickedBar() const noexcept { return maBandeCliquee; }
    void setClickedBar(NSInteger bande) noexcept { maBandeCliquee = bande; }
    /// Sent on a click; without one a click changes nothing.
    [[nodiscard]] SEL action() const noexcept { return action_; }
    void setAction(SEL action) noexcept { action_ = action; }
    /// Shared, unlike a control's: break the circle where the target owns the chart.
    [[nodiscard]] NSObject* target() const noexcept { return target_; }
    void setTarget(NSObject* target) { target_ = target; }
    /// The band at that height, each with half the gap above and below; past the last one it is the last. -1 before
    /// the first drawing.
    [[nodiscard]] virtual NSInteger barAtPoint(NSPoint p) const;
    /// The upper left corner of that many bands that stand at the bottom of the frame, in the superview's coordinates.
    [[nodiscard]] NSPoint origineGraphiquePourNbBandes(NSInteger nombre) const;

    // The steps of a drawing.

    /// Scales to the width of `rect`, be it that of the view or of a part.
    void drawRect(const NSRect& rect) override;
    virtual void drawGraduations_maximum_largeur_positionY(NSInteger nombre, CGFloat maximum, CGFloat largeur,
                                                           CGFloat y);
    /// `largeur` is the length of a band of that total.
    virtual void drawBandesAvecTotalMax_avecLargeur(CGFloat totalMax, CGFloat largeur);
    virtual void drawAxesAvecLargeur_avecHauteur(CGFloat largeur, CGFloat hauteur);
    /// Of the plain decimal text, without the separators that the drawn label has.
    [[nodiscard]] virtual CGFloat largeurEtiquette(NSInteger valeur) const;

    /// Captions of the bands for assistive tools; without one a band goes by its number.
    [[nodiscard]] NSArray* legendesAccessibles() const noexcept { return mesLegendes; }
    void setLegendesAccessibles(NSArray* legendes) { mesLegendes = legendes; }
    /// Captions of the sections, the same ones in each band; without one a section goes by its number.
    [[nodiscard]] NSArray* legendesDesSectionsAccessibles() const noexcept { return mesLegendesDesSections; }
    void setLegendesDesSectionsAccessibles(NSArray* legendes) { mesLegendesDesSections = legendes; }
    /// A row a section, band after band, with its share of the whole. The rows of bands that have one section go by
    /// the band alone.
    [[nodiscard]] TableAccessible tableAccessible() const;
    /// A row a band, with its total.
    [[nodiscard]] TableAccessible tableDesBandes() const;

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    /// Does nothing: whoever takes the press gets the release.
    void mouseDown(NSEvent* e) override;
    void mouseUp(NSEvent* e) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    static constexpr CGFloat kMarge = 5.0; ///< above the first band and below the last
    struct Totaux {
        NSInteger bandes = 0;
        CGFloat plusGrand = 0; ///< of a band
        CGFloat ensemble = 0;  ///< of all of them
    };
    void initPrivay();
    [[nodiscard]] NSInteger compteBandes() const;
    [[nodiscard]] static CGFloat valeur(const NSArray& donnees, NSInteger indice);
    [[nodiscard]] CGFloat totalDeLaBande(const NSArray& donnees, NSInteger bande) const;
    [[nodiscard]] Totaux totaux() const;
    [[nodiscard]] CGFloat hauteurPour(NSInteger bandes) const;
    void dessineSection(const NSRect& rect, NSObject* couleur) const;

    Ref<NSDictionary> mesAttributsEtiquette;
    Ref<NSArray> mesDonnees;
    Ref<NSArray> mesCouleurs;
    Ref<NSShadow> monOmbrage;
    Ref<NSColor> maCouleurBordureDesBandes;
    Ref<NSColor> maCouleurDesAxes;
    NSInteger monNombreBandes = 0;
    NSInteger monNombreSections = 0;
    CGFloat maLargeurBandes = 0;
    CGFloat monEspacementBandes = 0;
    BOOL mesEtiquettesAbsolues = YES;
    NSInteger maBandeCliquee = 0;
    SEL action_ = nullptr;
    Ref<NSObject> target_;
    Ref<NSArray> mesLegendes;
    Ref<NSArray> mesLegendesDesSections;
};

} // namespace libvue

#pragma once

#include <libvue/charts/Forward.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>

namespace libvue {

// What the label of a slice shows; any other number draws none.

inline constexpr NSUInteger KCPointeDeTarteEtiquetteAucune = 0;
inline constexpr NSUInteger KCPointeDeTarteEtiquettePourcentage = 1;
inline constexpr NSUInteger KCPointeDeTarteEtiquetteChaine = 2;
inline constexpr NSUInteger KCPointeDeTarteEtiquetteChaineEtPourcentage = 3;
inline constexpr NSUInteger KCPointeDeTarteEtiquetteCardinalite = 4;
inline constexpr NSUInteger KCPointeDeTarteEtiquetteChaineEtCardinalite = 5;

/// One slice of a pie: its value, colour, caption and kind of label. Its place comes from the pie at each drawing:
/// angles in degrees, counter-clockwise from the positive x axis, distances in points.
///
/// Slices whose sweep lies strictly between -0.1 and 0.1 degrees draw nothing.
class LIBVUE_API KCPointeDeTarte : public NSObject {
public:
    static void describe(ClassDescription<KCPointeDeTarte>& c);
    /// How far a slice goes when it is fully pulled out, points.
    static constexpr CGFloat kDistanceExtraction = 8.0;

    /// Everything zero or absent.
    KCPointeDeTarte() noexcept = default;
    ~KCPointeDeTarte() override;

    /// The caller's own; never read here.
    [[nodiscard]] NSObject* userdata() const noexcept { return monUserdata; }
    void setUserdata(NSObject* o) { monUserdata = o; }
    [[nodiscard]] NSColor* couleur() const noexcept { return maCouleur; }
    void setCouleur(NSColor* c) { maCouleur = c; }
    [[nodiscard]] NSInteger valeur() const noexcept { return maValeur; }
    /// Of a slice that lies in a pie, the pie's setValeur_deLaPointe changes the value.
    void setValeur(NSInteger v) noexcept;
    /// 0 at rest, 1 fully pulled out.
    [[nodiscard]] float pourcentageExtraction() const noexcept { return monPourcentageExtraction; }
    void setPourcentageExtraction(float p) noexcept { monPourcentageExtraction = p; }
    [[nodiscard]] NSString* chaine() const noexcept { return maChaine; }
    void setChaine(NSString* s) { maChaine = s; }
    [[nodiscard]] NSUInteger etiquette() const noexcept { return monEtiquette; }
    /// A KCPointeDeTarteEtiquette….
    void setEtiquette(NSUInteger e) noexcept { monEtiquette = e; }

    /// A new wedge with its tip on the centre.
    [[nodiscard]] virtual Ref<NSBezierPath> pointeAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin(NSPoint centre,
                                                                                                        CGFloat rayon,
                                                                                                        CGFloat depart,
                                                                                                        CGFloat fin);
    /// Along the bisector, which is held in single precision; zero where both angles are the same.
    [[nodiscard]] virtual NSSize
    offsetPourExtraireDeLaTarteAvecAngleDeDepart_avecAngleDeFin_avecDistance(CGFloat depart, CGFloat fin,
                                                                             CGFloat distance);
    /// The body, pulled out by what the extraction says.
    virtual void drawAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin(NSPoint centre, CGFloat rayon,
                                                                           CGFloat depart, CGFloat fin);
    /// The label, wholly inside a frame of that size at (0, 0). Its percentage is that of the angles; its value shows
    /// the low 32 bits.
    virtual void drawEtiquetteAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin_avecCadre(
        NSPoint centre, CGFloat rayon, CGFloat depart, CGFloat fin, const NSRect& cadre);
    /// Any text in the label's place.
    virtual void drawAttributedString_avecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin_avecCadre(
        NSAttributedString* texte, NSPoint centre, CGFloat rayon, CGFloat depart, CGFloat fin, const NSRect& cadre);

    /// Grows whenever any slice takes another value or goes: what was worked out before may not hold any more.
    [[nodiscard]] static NSUInteger generation_() noexcept;

private:
    [[nodiscard]] NSPoint extrait(NSPoint p, CGFloat depart, CGFloat fin);
    [[nodiscard]] Ref<NSString> texteEtiquette(CGFloat depart, CGFloat fin) const;

    Ref<NSObject> monUserdata;
    Ref<NSColor> maCouleur;
    NSInteger maValeur = 0;
    float monPourcentageExtraction = 0;
    Ref<NSString> maChaine;
    NSUInteger monEtiquette = KCPointeDeTarteEtiquetteAucune;
};

} // namespace libvue

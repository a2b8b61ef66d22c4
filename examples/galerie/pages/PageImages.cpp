// Images: a thumbnail with its region, derived images, grey gradients, fills of paths.
#include <cmath>

#include <Composition.h>
#include <PageComposee.h>
#include <images/CaseImage.h>
#include <images/Tableaux.h>
#include <images/VignetteTirable.h>
#include <libvue/images/NSBezierPathAMShading.h>
#include <libvue/images/NSImageDegrade.h>
#include <libvue/images/NSImageKCAdditions.h>
#include <libvue/platform/appkit/NSSlider.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/Palette.h>
#include <libvue/socle/UniChaine.h>

namespace galerie {

namespace {

constexpr CGFloat kColonne = 356, kGouttiere = 28;
constexpr CGFloat kCase = (kColonne - 2 * kEcart) / 3, kHautCase = 76;
constexpr NSSize kPhoto{kColonne, 272};
constexpr CGFloat kIcone = 56, kNom = 64, kValeur = 48;

Ref<CaseImage> vide(NSString* legende) { return make<CaseImage>(NSSize{std::floor(kCase), kHautCase}, legende); }

Ref<CaseImage> caseDe(std::function<Ref<NSImage>()> image, NSString* legende) {
    auto c = vide(legende);
    c->image = std::move(image);
    return c;
}

NSString* enPourcent(Ref<NSString>& texte, double valeur) {
    texte = UniChaine::DonneNombreFormatay(valeur * 100, false, 0) + u"\u00A0%";
    return texte;
}

/// Everything on the page, and what ties it together.
class Images : public NSObject {
public:
    static void describe(ClassDescription<Images>& c) {
        c.answers<&Images::opaciteGlisse>("opaciteGlisse:");
        c.answers<&Images::angleGlisse>("angleGlisse:");
        c.answers<&Images::rejoue>("rejoue:");
        c.answers<&Images::centre>("centre:");
    }
    Images();
    ~Images() override;
    [[nodiscard]] KCLayoutView* vue() const noexcept { return vue_; }

private:
    Ref<NSView> construitVignette();
    Ref<NSView> construitDerivees();
    Ref<NSView> construitDegrades();
    Ref<NSView> construitRemplissages();
    /// From 0 up to the greatest value.
    Ref<NSSlider> curseur(NSString* nom, double valeur, double plusGrande, const char* action);
    /// A name, the slider, and what it stands at.
    static Ref<NSView> ligneDe(NSString* nom, NSSlider* curseur, Ref<NSTextField>& valeur);
    void montreRegion();
    void opaciteGlisse(NSObject*);
    void angleGlisse(NSObject*);
    void rejoue(NSObject*) { vignette_->rejoue(); }
    void centre(NSObject*) { vignette_->choisis({{0.25, 0.25}, {0.5, 0.5}}); }

    Ref<KCLayoutView> vue_;
    Ref<NSImage> photo_ = paysage(kPhoto);
    Ref<NSImage> petite_ = paysage({std::floor(kCase), kHautCase}), icone_ = voilier(kIcone);
    Ref<VignetteTirable> vignette_;
    Ref<NSTextField> region_, valeurOpacite_, valeurAngle_;
    Ref<NSSlider> opacite_, angle_;
    Ref<CaseImage> pale_;
    std::vector<Ref<CaseImage>> remplies_;
};

Images::Images() {
    vue_ = colonnes({pile({construitVignette(), construitDegrades()}, kGroupe),
                     pile({construitDerivees(), construitRemplissages()}, kGroupe)},
                    kGouttiere);
    montreRegion();
    opaciteGlisse(nullptr);
    angleGlisse(nullptr);
}

Images::~Images() { vignette_->surRegion = nullptr; }

Ref<NSSlider> Images::curseur(NSString* nom, double valeur, double plusGrande, const char* action) {
    auto c = NSSlider::sliderWithValue_minValue_maxValue_target_action(valeur, 0, plusGrande, this, sel(action));
    c->setAccessibilityLabel(nom);
    c->sizeToFit();
    return large(c, kColonne - kNom - kValeur - 2 * kEcart);
}

Ref<NSView> Images::ligneDe(NSString* nom, NSSlider* curseur, Ref<NSTextField>& valeur) {
    valeur = large(etiquette(u" "_ns), kValeur);
    valeur->setAlignment(NSRightTextAlignment);
    return rangee({large(etiquette(nom), kNom), curseur, valeur});
}

// The thumbnail.

Ref<NSView> Images::construitVignette() {
    vignette_ = make<VignetteTirable>(photo_, NSRect{{0.5, 0.26}, {0.3, 0.36}});
    vignette_->surRegion = [this] { montreRegion(); };
    region_ = large(legende(u" "_ns), kColonne);
    const auto bouton = [this](NSString* titre, const char* action) {
        return NSButton::buttonWithTitle_target_action(titre, this, sel(action));
    };
    return groupe(u"Vignette et région d’intérêt"_ns,
                  {legende(u"Tracez une région à la souris, ou tirez celle qui est là."_ns), vignette_, region_,
                   rangee({bouton(u"Rejouer le fondu"_ns, "rejoue:"), bouton(u"Au centre"_ns, "centre:")})});
}

void Images::montreRegion() {
    const NSRect r = vignette_->region();
    Ref<NSString> x, y, l, h;
    region_->setStringValue(NSString::stringWithFormat(u"À %@ de la gauche et %@ du haut, large de %@, haute de %@"_ns,
                                                       enPourcent(x, r.origin.x), enPourcent(y, r.origin.y),
                                                       enPourcent(l, r.size.width), enPourcent(h, r.size.height)));
}

// Derived images.

Ref<NSView> Images::construitDerivees() {
    opacite_ = curseur(u"Opacité"_ns, 0.45, 1, "opaciteGlisse:");
    const auto telle = [](const Ref<NSImage>& i) { return [i] { return i; }; };
    const auto teintee = [](const Ref<NSImage>& i, SystemColor teinte, CGFloat force) {
        return [=] { return imageComposedWithColor(i, NSColor::systemColor(teinte)->colorWithAlphaComponent(force)); };
    };
    const auto taille = [](const Ref<NSImage>& i, NSSize t) { return [=] { return imageWithSize(i, t); }; };
    pale_ = caseDe([i = petite_, c = opacite_] { return imageWithAlpha(i, c->doubleValue()); }, u"Transparente"_ns);
    return groupe(
        u"Images dérivées"_ns,
        {rangee({caseDe(telle(petite_), u"Avant"_ns), pale_,
                 caseDe(teintee(petite_, SystemColor::accent, 0.45), u"Teintée à demi"_ns)}),
         rangee({caseDe(telle(icone_), u"Avant"_ns), caseDe(teintee(icone_, SystemColor::accent, 1), u"En bleu"_ns),
                 caseDe(teintee(icone_, SystemColor::danger, 1), u"En rouge"_ns)}),
         rangee({caseDe(taille(icone_, {24, 24}), u"24 sur 24"_ns), caseDe(taille(icone_, {96, 32}), u"96 sur 32"_ns),
                 caseDe(taille(photo_, {40, 64}), u"40 sur 64"_ns)}),
         ligneDe(u"Opacité"_ns, opacite_, valeurOpacite_)});
}

void Images::opaciteGlisse(NSObject*) {
    Ref<NSString> texte;
    valeurOpacite_->setStringValue(enPourcent(texte, opacite_->doubleValue()));
    pale_->setNeedsDisplay(YES);
}

// Gradients.

Ref<NSView> Images::construitDegrades() {
    const NSSize taille{std::floor(kCase), kHautCase};
    const auto gris = [&](std::int32_t type, NSString* nom) {
        return caseDe([=] { return greyGradientImageWithSize_type(taille, type); }, nom);
    };
    return groupe(u"Dégradés de gris"_ns,
                  {rangee({gris(0, u"Foncé"_ns), gris(2, u"Clair"_ns), gris(3, u"Reflet"_ns)})});
}

Ref<NSView> Images::construitRemplissages() {
    const auto premiere = NSColor::colorWithSRGBRed_green_blue_alpha(0.16, 0.47, 0.86, 1);
    const auto seconde = NSColor::colorWithSRGBRed_green_blue_alpha(0.98, 0.72, 0.35, 1);
    angle_ = curseur(u"Angle"_ns, 90, 360, "angleGlisse:");
    const auto angle = [c = angle_] { return c->doubleValue() / 180 * pi; };
    const auto remplie = [this](NSString* nom, std::function<void(const NSRect&)> dessin) {
        auto c = vide(nom);
        c->dessin = std::move(dessin);
        remplies_.push_back(c);
        return c;
    };
    const auto lineaire = remplie(u"Linéaire"_ns, [=](const NSRect& r) {
        linearGradientFillWithStartColor_endColor_angle(NSBezierPath::bezierPathWithRect(r), premiere, seconde,
                                                        angle());
    });
    const auto miroir = remplie(u"En miroir"_ns, [=](const NSRect& r) {
        bilinearGradientFillWithOuterColor_innerColor_angle(NSBezierPath::bezierPathWithRect(r), premiere, seconde,
                                                            angle());
    });
    const auto forme = remplie(u"Dans une forme"_ns, [=](const NSRect& r) {
        const CGFloat d = r.size.height - 16;
        const NSRect rond{{NSMidX(r) - d / 2, NSMidY(r) - d / 2}, {d, d}};
        linearGradientFillWithStartColor_endColor_angle(NSBezierPath::bezierPathWithOvalInRect(rond), premiere, seconde,
                                                        angle());
    });
    return groupe(u"Remplissages"_ns, {rangee({lineaire, miroir, forme}), ligneDe(u"Angle"_ns, angle_, valeurAngle_)});
}

void Images::angleGlisse(NSObject*) {
    valeurAngle_->setStringValue(UniChaine::DonneNombreFormatay(angle_->doubleValue(), false, 0) + u"°");
    for (const auto& c : remplies_)
        c->setNeedsDisplay(YES);
}

} // namespace

class PageImages : public PageDe<Images> {
public:
    static void describe(ClassDescription<PageImages, PageComposee>&) {}
    [[nodiscard]] Ref<NSString> nom() const override { return u"Images"_ns; }
    [[nodiscard]] Ref<NSString> resume() const override {
        return u"Une vignette et sa région d’intérêt, des images qui en donnent d’autres, des dégradés."_ns;
    }
};

namespace {
const InscriptionPage<PageImages> inscription{80};
} // namespace

} // namespace galerie

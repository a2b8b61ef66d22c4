#include <graphiques/Couleurs.h>

#include <algorithm>
#include <cmath>

namespace galerie {

namespace {

struct Teinte {
    CGFloat rouge, vert, bleu;
};

/// Chosen by hand: quiet, apart from each other, and of about one lightness.
constexpr Teinte kTeintes[] = {{0.165, 0.388, 0.690}, {0.106, 0.565, 0.588}, {0.275, 0.588, 0.298},
                               {0.678, 0.612, 0.149}, {0.859, 0.510, 0.141}, {0.796, 0.302, 0.212},
                               {0.725, 0.227, 0.431}, {0.514, 0.286, 0.643}, {0.345, 0.329, 0.698}};

Teinte entre(const Teinte& a, const Teinte& b, CGFloat t) {
    return {a.rouge + (b.rouge - a.rouge) * t, a.vert + (b.vert - a.vert) * t, a.bleu + (b.bleu - a.bleu) * t};
}

Ref<NSColor> couleur(const Teinte& t) { return NSColor::colorWithSRGBRed_green_blue_alpha(t.rouge, t.vert, t.bleu, 1); }

} // namespace

std::vector<Ref<NSColor>> roueDeCouleurs(std::size_t combien) {
    constexpr std::size_t n = std::size(kTeintes);
    std::vector<Ref<NSColor>> roue;
    for (std::size_t i = 0; i < combien; ++i) {
        const double place = static_cast<double>(i) * n / static_cast<double>(std::max<std::size_t>(combien, 1));
        const auto a = static_cast<std::size_t>(place);
        roue.push_back(couleur(entre(kTeintes[a % n], kTeintes[(a + 1) % n], place - std::floor(place))));
    }
    return roue;
}

Ref<NSArray> couleursDeSections(Palette palette, std::size_t sections) {
    const Ref<NSMutableArray> couleurs = NSMutableArray::array();
    const auto roue = roueDeCouleurs(std::max<std::size_t>(sections, 1));
    constexpr Teinte ardoise{0.18, 0.345, 0.545}, pale{0.70, 0.80, 0.91}, blanc{1, 1, 1};
    for (std::size_t s = 0; s < std::max<std::size_t>(sections, 1); ++s) {
        const double t = sections > 1 ? static_cast<double>(s) / static_cast<double>(sections - 1) : 0;
        if (palette == Palette::ardoise) {
            couleurs->addObject(couleur(entre(ardoise, pale, t)));
        } else if (palette == Palette::roue) {
            couleurs->addObject(roue[s]);
        } else {
            // In a chart, y is downward: the first colour is at the top.
            const Teinte bas = kTeintes[(s * 4) % std::size(kTeintes)];
            const Ref<NSColor> clair = couleur(entre(bas, blanc, 0.45)), plein = couleur(bas);
            couleurs->addObject(NSArray::arrayWithObjects({clair, plein}));
        }
    }
    return couleurs;
}

NSColor* couleurDeLegende(const NSArray* couleurs, std::size_t section) {
    if (const auto* degrade = couleurs->at<NSArray>(section)) return degrade->at<NSColor>(1);
    return couleurs->at<NSColor>(section);
}

} // namespace galerie

#include "ImageReference.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include <libvue/platform/backend/Backend.h>

namespace libvue::test {

namespace {

constexpr int kCarre = 6, kPas = 3; ///< the squares and how far they stand apart, pixels

/// A picture on white, each pixel evened out with its neighbours, so that a smoothed edge may lie a hair aside.
class Adoucie {
public:
    explicit Adoucie(const backend::Picture& p) : large_(p.pixelWidth()), haute_(p.pixelHeight()) {
        std::vector<Pixel> bruts;
        bruts.reserve(static_cast<std::size_t>(large_) * static_cast<std::size_t>(haute_));
        for (int y = 0; y < haute_; ++y)
            for (int x = 0; x < large_; ++x) {
                const backend::Color c = p.pixel(x, y);
                const auto surBlanc = [&](double v) { return 255 * (v * c.alpha + 1 - c.alpha); };
                bruts.push_back({surBlanc(c.red), surBlanc(c.green), surBlanc(c.blue)});
            }
        for (int y = 0; y < haute_; ++y)
            for (int x = 0; x < large_; ++x) {
                Pixel somme{};
                for (int dy = -1; dy <= 1; ++dy)
                    for (int dx = -1; dx <= 1; ++dx) {
                        const Pixel& v =
                            bruts[rang(std::clamp(x + dx, 0, large_ - 1), std::clamp(y + dy, 0, haute_ - 1))];
                        for (std::size_t k = 0; k < 3; ++k)
                            somme[k] += v[k] / 9;
                    }
                pixels_.push_back(somme);
            }
    }
    [[nodiscard]] int large() const noexcept { return large_; }
    [[nodiscard]] int haute() const noexcept { return haute_; }
    /// The greatest difference of a component.
    [[nodiscard]] double ecartEn(int x, int y, const Adoucie& autre) const {
        double plusGrand = 0;
        for (std::size_t k = 0; k < 3; ++k)
            plusGrand = std::max(plusGrand, std::abs(pixels_[rang(x, y)][k] - autre.pixels_[rang(x, y)][k]));
        return plusGrand;
    }

private:
    using Pixel = std::array<double, 3>;
    [[nodiscard]] std::size_t rang(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(large_) + static_cast<std::size_t>(x);
    }
    int large_, haute_;
    std::vector<Pixel> pixels_;
};

struct Pire {
    double ecart = 0;
    int x = 0, y = 0; ///< of the square, from the upper left corner
};

Pire compare(const Adoucie& a, const Adoucie& b) {
    if (a.large() != b.large() || a.haute() != b.haute()) return {255, 0, 0};
    Pire pire;
    for (int y0 = 0; y0 < a.haute(); y0 += kPas)
        for (int x0 = 0; x0 < a.large(); x0 += kPas) {
            double somme = 0;
            for (int y = y0; y < std::min(y0 + kCarre, a.haute()); ++y)
                for (int x = x0; x < std::min(x0 + kCarre, a.large()); ++x)
                    somme += a.ecartEn(x, y, b);
            if (const double moyenne = somme / (kCarre * kCarre); moyenne > pire.ecart) pire = {moyenne, x0, y0};
        }
    return pire;
}

void ecris(const std::filesystem::path& fichier, const backend::Picture& image) {
    const auto png = backend::Backend::current().graphics->encode(image, "png");
    std::filesystem::create_directories(fichier.parent_path());
    std::ofstream(fichier, std::ios::binary)
        .write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
}

} // namespace

double ecart(const backend::Picture& a, const backend::Picture& b) { return compare(Adoucie(a), Adoucie(b)).ecart; }

::testing::AssertionResult ressemble(const backend::Picture& image, const std::string& nom) {
    const std::filesystem::path dossier = LIBVUE_TEST_IMAGES;
    const auto fichier = dossier / (nom + ".png"), obtenue = dossier / (nom + ".obtenue.png");
    if (std::getenv("LIBVUE_RENOUVELLE_IMAGES") != nullptr) {
        ecris(fichier, image);
        return ::testing::AssertionFailure() << fichier << " is renewed: look at it, and run without renewing";
    }
    std::ifstream flot(fichier, std::ios::binary);
    const std::vector<char> lus((std::istreambuf_iterator<char>(flot)), std::istreambuf_iterator<char>());
    const std::vector<std::uint8_t> octets(lus.begin(), lus.end());
    std::string raison;
    const auto reference = backend::Backend::current().graphics->decode(octets, &raison);
    if (!reference) {
        ecris(obtenue, image);
        return ::testing::AssertionFailure() << fichier << " cannot be read: " << raison << "; see " << obtenue;
    }
    const Pire pire = compare(Adoucie(image), Adoucie(*reference));
    if (pire.ecart <= kEcartMax) {
        std::filesystem::remove(obtenue);
        return ::testing::AssertionSuccess();
    }
    ecris(obtenue, image);
    return ::testing::AssertionFailure() << obtenue << " differs by " << pire.ecart << " from the reference at "
                                         << pire.x << ", " << pire.y << " (" << image.pixelWidth() << " by "
                                         << image.pixelHeight() << ", the reference " << reference->pixelWidth()
                                         << " by " << reference->pixelHeight() << ")";
}

} // namespace libvue::test

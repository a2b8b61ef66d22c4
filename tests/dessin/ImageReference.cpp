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

struct Pire {
    double ecart = 0;
    int x = 0, y = 0; ///< of the square, from the upper left corner
};

/// The mean colour of a square on white. Edges that were smoothed in another way have the same one, nearly.
std::array<double, 3> moyenne(const backend::Picture& p, int x0, int y0) {
    std::array<double, 3> somme{};
    for (int y = y0; y < y0 + kCarre; ++y)
        for (int x = x0; x < x0 + kCarre; ++x) {
            const backend::Color c = p.pixel(std::min(x, p.pixelWidth() - 1), std::min(y, p.pixelHeight() - 1));
            const double composantes[] = {c.red, c.green, c.blue};
            for (std::size_t k = 0; k < 3; ++k)
                somme[k] += 255 * (composantes[k] * c.alpha + 1 - c.alpha) / (kCarre * kCarre);
        }
    return somme;
}

Pire compare(const backend::Picture& a, const backend::Picture& b) {
    if (a.pixelWidth() != b.pixelWidth() || a.pixelHeight() != b.pixelHeight()) return {255, 0, 0};
    Pire pire;
    for (int y = 0; y < a.pixelHeight(); y += kPas)
        for (int x = 0; x < a.pixelWidth(); x += kPas) {
            const auto ma = moyenne(a, x, y), mb = moyenne(b, x, y);
            for (std::size_t k = 0; k < 3; ++k)
                if (const double e = std::abs(ma[k] - mb[k]); e > pire.ecart) pire = {e, x, y};
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

double ecart(const backend::Picture& a, const backend::Picture& b) { return compare(a, b).ecart; }

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
    const Pire pire = compare(image, *reference);
    if (pire.ecart <= kEcartMax) {
        std::filesystem::remove(obtenue);
        return ::testing::AssertionSuccess();
    }
    ecris(obtenue, image);
    return ::testing::AssertionFailure() << obtenue << " differs by " << pire.ecart << " from the reference at "
                                         << pire.x << ", " << pire.y << " (or is of another size)";
}

} // namespace libvue::test

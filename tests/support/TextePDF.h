#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace libvue::test {

/// A word that a reader of the PDF finds, in points from the top left corner of its page.
struct MotPDF {
    int page; ///< from 1
    double x, y, largeur, hauteur;
    std::string mot;
};

/// What pdftotext finds, in its order. Fails the test where the bytes are no PDF.
[[nodiscard]] std::vector<MotPDF> motsDuPDF(std::string_view octets);
/// The pages on which that word stands, in order, once for each time.
[[nodiscard]] std::vector<int> pagesDuMot(const std::vector<MotPDF>& mots, std::string_view mot);
/// The number of pages, by pdfinfo; 0 for none.
[[nodiscard]] int nombreDePages(std::string_view octets);

/// A picture file (PNG) of its first page, at that many pixels a point.
[[nodiscard]] std::vector<std::uint8_t> imageDuPDF(std::string_view octets, int pixelsAPoint);

} // namespace libvue::test

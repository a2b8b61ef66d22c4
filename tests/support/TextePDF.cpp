#include <support/TextePDF.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <unistd.h>

#include <gtest/gtest.h>

namespace libvue::test {

namespace {

/// What a program says about the PDF.
std::string sortie(const std::string& debut, std::string_view octets, const std::string& fin) {
    const auto fichier = std::filesystem::temp_directory_path() / ("libvue-pdf-" + std::to_string(::getpid()) + ".pdf");
    std::ofstream(fichier, std::ios::binary).write(octets.data(), static_cast<std::streamsize>(octets.size()));
    std::string texte;
    if (FILE* lu = ::popen((debut + " '" + fichier.string() + "' " + fin).c_str(), "r")) {
        std::array<char, 4096> bloc;
        for (std::size_t n; (n = std::fread(bloc.data(), 1, bloc.size(), lu)) > 0;)
            texte.append(bloc.data(), n);
        EXPECT_EQ(::pclose(lu), 0) << debut << " of poppler-utils is needed, and a PDF";
    }
    std::filesystem::remove(fichier);
    return texte;
}

} // namespace

std::vector<MotPDF> motsDuPDF(std::string_view octets) {
    const std::string texte = sortie("pdftotext -bbox", octets, "-");
    // A line an element: <page …>, <word xMin="…" yMin="…" xMax="…" yMax="…">text</word>.
    std::vector<MotPDF> mots;
    int page = 0;
    std::istringstream lignes(texte);
    for (std::string ligne; std::getline(lignes, ligne);) {
        if (ligne.find("<page ") != std::string::npos) ++page;
        double x = 0, y = 0, droite = 0, bas = 0;
        int debut = 0;
        if (std::sscanf(ligne.c_str(), " <word xMin=\"%lf\" yMin=\"%lf\" xMax=\"%lf\" yMax=\"%lf\">%n", &x, &y, &droite,
                        &bas, &debut) != 4 ||
            debut == 0)
            continue;
        const auto longueur = ligne.find("</word>") - static_cast<std::size_t>(debut);
        mots.push_back({page, x, y, droite - x, bas - y, ligne.substr(static_cast<std::size_t>(debut), longueur)});
    }
    return mots;
}

std::vector<int> pagesDuMot(const std::vector<MotPDF>& mots, std::string_view mot) {
    std::vector<int> pages;
    for (const MotPDF& m : mots)
        if (m.mot == mot) pages.push_back(m.page);
    return pages;
}

int nombreDePages(std::string_view octets) {
    const std::string texte = sortie("pdfinfo", octets, "");
    const auto ou = texte.find("Pages:");
    return ou == std::string::npos ? 0 : std::atoi(texte.c_str() + ou + 6);
}

std::vector<std::uint8_t> imageDuPDF(std::string_view octets, int pixelsAPoint) {
    const std::string png = sortie("pdftoppm -png -singlefile -r " + std::to_string(72 * pixelsAPoint), octets, "");
    return {png.begin(), png.end()};
}

} // namespace libvue::test

#include <support/TextePDF.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>

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
    static const std::regex balise(
        "<page |<word xMin=\"([-.0-9]+)\" yMin=\"([-.0-9]+)\" xMax=\"([-.0-9]+)\" yMax=\"([-.0-9]+)\">([^<]*)</word>");
    std::vector<MotPDF> mots;
    int page = 0;
    for (auto i = std::sregex_iterator(texte.begin(), texte.end(), balise); i != std::sregex_iterator(); ++i) {
        const std::smatch& m = *i;
        if (!m[5].matched) {
            ++page;
            continue;
        }
        const double x = std::stod(m[1]), y = std::stod(m[2]);
        mots.push_back({page, x, y, std::stod(m[3]) - x, std::stod(m[4]) - y, m[5]});
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

} // namespace libvue::test

#include "Mots.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <random>
#include <stdexcept>

namespace banc {

std::vector<std::string> mots() {
    const char* nomme = std::getenv("LIBVUE_BENCH_WORDS");
    const std::string chemin = nomme && *nomme ? nomme : "/usr/share/dict/french";
    std::ifstream fichier(chemin);
    std::vector<std::string> tous;
    for (std::string ligne; std::getline(fichier, ligne);)
        if (!ligne.empty()) tous.push_back(ligne);
    if (tous.size() < 2) throw std::runtime_error("no words in " + chemin);
    return tous;
}

std::vector<std::string> motsMelanges(std::size_t nombre) {
    const std::vector<std::string> tous = mots();
    std::vector<std::string> choisis;
    for (std::size_t i = 0; i < nombre; ++i)
        choisis.push_back(tous[i * tous.size() / nombre]);
    std::shuffle(choisis.begin(), choisis.end(), std::mt19937(1));
    return choisis;
}

} // namespace banc

#include "Banc.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <exception>
#include <fstream>
#include <utility>

namespace banc {

namespace {

constexpr int manches = 9;
constexpr double dureeDUneManche = 0.04;

using Horloge = std::chrono::steady_clock;

double duree(const std::function<void()>& travail, long fois) {
    const auto debut = Horloge::now();
    for (long i = 0; i < fois; ++i)
        travail();
    return std::chrono::duration<double>(Horloge::now() - debut).count();
}

/// How many times the work fits into one round; the trials also warm the caches.
long calibre(const std::function<void()>& travail) {
    long fois = 1;
    for (;;) {
        const double ecoule = duree(travail, fois);
        if (ecoule >= dureeDUneManche / 4)
            return std::max(1L, static_cast<long>(static_cast<double>(fois) * dureeDUneManche / ecoule));
        fois *= 4;
    }
}

std::string lisible(double secondes) {
    char texte[32];
    if (secondes < 1e-6)
        std::snprintf(texte, sizeof texte, "%.2fns", secondes * 1e9);
    else if (secondes < 1e-3)
        std::snprintf(texte, sizeof texte, "%.2fus", secondes * 1e6);
    else
        std::snprintf(texte, sizeof texte, "%.3fms", secondes * 1e3);
    return texte;
}

void imprime(const std::string& nom, const std::string& notre, const std::string& pair, double rapport) {
    std::printf("%-28s %12s %12s %8.2f\n", nom.c_str(), notre.c_str(), pair.c_str(), rapport);
    std::fflush(stdout);
}

void imprimeSansPair(const std::string& nom, const std::string& notre) {
    std::printf("%-28s %12s %12s %8s\n", nom.c_str(), notre.c_str(), "-", "-");
    std::fflush(stdout);
}

void repete(const std::string& nom, const Chemin& chemin) {
    const long foisNotre = calibre(chemin.notre);
    const long foisPair = chemin.pair ? calibre(chemin.pair) : 0;
    std::vector<double> notres;
    std::vector<double> pairs;
    std::vector<double> rapports;
    // The rounds alternate, so that a machine that slows down slows both.
    for (int manche = 0; manche < manches; ++manche) {
        notres.push_back(duree(chemin.notre, foisNotre) / static_cast<double>(foisNotre));
        if (!chemin.pair) continue;
        pairs.push_back(duree(chemin.pair, foisPair) / static_cast<double>(foisPair));
        rapports.push_back(pairs.back() / notres.back());
    }
    if (chemin.pair)
        imprime(nom, lisible(mediane(notres)), lisible(mediane(pairs)), mediane(rapports));
    else
        imprimeSansPair(nom, lisible(mediane(notres)));
}

void mesureLibre(const CheminLibre& chemin) {
    const auto texte = [&](double valeur) {
        char lettres[48];
        std::snprintf(lettres, sizeof lettres, "%.6g%s", valeur, chemin.unite.c_str());
        return std::string(lettres);
    };
    const Mesures mesures = chemin.mesurer();
    if (!mesures.pair) {
        imprimeSansPair(chemin.nom, texte(mesures.notre));
        return;
    }
    // Two zeros are equal; a zero of ours beside something else is printed as "inf".
    const double rapport = *mesures.pair == mesures.notre ? 1 : *mesures.pair / mesures.notre;
    imprime(chemin.nom, texte(mesures.notre), texte(*mesures.pair), rapport);
}

} // namespace

void Banc::ajoute(std::string nom, std::function<Chemin()> construire) {
    auto execute = [nom, construire = std::move(construire)] { repete(nom, construire()); };
    entrees_.push_back({std::move(nom), std::move(execute)});
}

void Banc::ajoute(CheminLibre chemin) {
    std::string nom = chemin.nom;
    entrees_.push_back({std::move(nom), [chemin = std::move(chemin)] { mesureLibre(chemin); }});
}

int Banc::lance(int argc, char** argv) {
    if (argc > 1 && std::strcmp(argv[1], "--list") == 0) {
        for (const Entree& entree : entrees_)
            std::printf("%s\n", entree.nom.c_str());
        return 0;
    }
    bool trouve = argc == 1;
    for (const Entree& entree : entrees_) {
        const auto nomme = [&](const char* prefixe) { return entree.nom.starts_with(prefixe); };
        if (argc > 1 && std::none_of(argv + 1, argv + argc, nomme)) continue;
        trouve = true;
        try {
            entree.execute();
        } catch (const std::exception& erreur) {
            std::fprintf(stderr, "%s: %s\n", entree.nom.c_str(), erreur.what());
            return 1;
        }
    }
    if (!trouve) std::fprintf(stderr, "no path of this benchmark has such a name\n");
    return trouve ? 0 : 1;
}

double mediane(std::vector<double> valeurs) {
    if (valeurs.empty()) return 0;
    const auto milieu = valeurs.begin() + static_cast<std::ptrdiff_t>(valeurs.size() / 2);
    std::nth_element(valeurs.begin(), milieu, valeurs.end());
    return *milieu;
}

std::size_t memoireResidente(int processus) {
    const std::string qui = processus == 0 ? "self" : std::to_string(processus);
    std::ifstream fichier("/proc/" + qui + "/smaps_rollup");
    std::string ligne;
    while (std::getline(fichier, ligne)) {
        std::size_t kilooctets = 0;
        if (std::sscanf(ligne.c_str(), "Rss: %zu", &kilooctets) == 1) return kilooctets * 1024;
    }
    return 0;
}

double tempsProcesseur() {
    timespec temps{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &temps);
    return static_cast<double>(temps.tv_sec) + static_cast<double>(temps.tv_nsec) * 1e-9;
}

} // namespace banc

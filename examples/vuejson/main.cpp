// Reads JSON and writes it back, or says what is wrong with it.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/text/json/SBJsonParser.h>
#include <libvue/text/json/SBJsonWriter.h>

using namespace libvue;

namespace {

constexpr const char* kUsage =
    R"(usage : vuejson [--indente | --compact] [--trie] [--fragment] [--profondeur N] [FICHIER]

Lit un document JSON dans un fichier, ou sur l’entrée standard sans fichier (ou avec « - »), et l’écrit sur la
sortie standard.

  --indente        une ligne par élément, deux espaces par niveau (c’est le défaut)
  --compact        tout sur une ligne, sans espaces
  --trie           les clés des objets dans leur ordre
  --fragment       accepte aussi un texte, un nombre, true, false ou null à la racine
  --profondeur N   nombre de niveaux permis, 512 sans cette option ; 0 n’en fixe aucun, et demande --compact
  --help           ce texte

Un octet nul termine le texte ; ce qui le suit n’est pas lu.

Rend 0 et le document s’il est juste. Rend 1 s’il ne l’est pas, et écrit sur la sortie d’erreur la chaîne des erreurs,
une par ligne avec son code et son message, de la plus profonde à la plus englobante. Rend 2 quand l’entrée ne peut pas
être lue, quand elle n’est pas en UTF-8, ou quand une option n’est pas connue.
)";

constexpr int kFaux = 1, kIllisible = 2;

struct Options {
    bool compact = false, trie = false, fragment = false, aide = false;
    std::optional<NSUInteger> profondeur;
    std::optional<std::string> fichier;
};

[[noreturn]] void refuse(const std::string& raison) {
    std::fprintf(stderr, "vuejson\u00A0: %s\n", raison.c_str());
    std::exit(kIllisible);
}

NSUInteger lisProfondeur(const char* texte) {
    char* fin = nullptr;
    errno = 0;
    const unsigned long long n = std::strtoull(texte, &fin, 10);
    if (*texte < '0' || *texte > '9' || *fin || errno) refuse(std::string("pas un nombre de niveaux\u00A0: ") + texte);
    return n;
}

Options lisOptions(int argc, char** argv) {
    Options o;
    bool indente = false, fichiersSeulement = false;
    for (int i = 1; i < argc; ++i) {
        const std::string nom = argv[i];
        if (fichiersSeulement || nom == "-" || nom.empty() || nom[0] != '-') {
            if (o.fichier) refuse("un seul fichier à la fois");
            o.fichier = nom;
        } else if (nom == "--")
            fichiersSeulement = true;
        else if (nom == "--indente")
            indente = true;
        else if (nom == "--compact")
            o.compact = true;
        else if (nom == "--trie")
            o.trie = true;
        else if (nom == "--fragment")
            o.fragment = true;
        else if (nom == "--profondeur") {
            if (++i >= argc) refuse(nom + " demande une valeur");
            o.profondeur = lisProfondeur(argv[i]);
        } else if (nom == "--help" || nom == "-h")
            o.aide = true;
        else
            refuse("option inconnue «\u00A0" + nom + "\u00A0» (--help les énumère)");
    }
    if (indente && o.compact) refuse("--indente et --compact s’excluent");
    // The indentation counts the levels, and counts none while there is no limit.
    if (o.profondeur == NSUInteger{0} && !o.compact) refuse("--profondeur 0 demande --compact");
    return o;
}

std::string lisTout(const std::string& fichier) {
    const bool entree = fichier == "-";
    const std::string nom = entree ? "l’entrée standard" : "«\u00A0" + fichier + "\u00A0»";
    std::FILE* f = entree ? stdin : std::fopen(fichier.c_str(), "rb");
    if (!f) refuse("impossible de lire " + nom + "\u00A0: " + std::strerror(errno));
    std::string octets;
    char bloc[65536];
    while (const std::size_t lus = std::fread(bloc, 1, sizeof bloc, f))
        octets.append(bloc, lus);
    if (std::ferror(f)) refuse("impossible de lire " + nom + "\u00A0: " + std::strerror(errno));
    if (!entree) std::fclose(f);
    return octets;
}

int ecris(const std::string& sortie) {
    if (std::fwrite(sortie.data(), 1, sortie.size(), stdout) != sortie.size() || std::fflush(stdout) != 0)
        refuse(std::string("impossible d’écrire\u00A0: ") + std::strerror(errno));
    return 0;
}

int ecrisErreurs(const SBJsonBase& base) {
    // One error a level: there may be a million of them.
    std::setvbuf(stderr, nullptr, _IOFBF, 65536);
    const auto trace = base.errorTrace();
    for (NSError* e : trace->as<NSError>())
        std::fprintf(stderr, "%ld %s\n", static_cast<long>(e->code()), e->localizedDescription()->utf8().c_str());
    return kFaux;
}

} // namespace

int main(int argc, char** argv) {
    const Options options = lisOptions(argc, argv);
    if (options.aide) return ecris(kUsage);
    // Neither the bytes nor the text are kept longer than they are needed: documents may be large.
    std::string octets = lisTout(options.fichier.value_or("-"));
    auto texte = NSString::initWithBytes_length_encoding(octets.data(), octets.size(), NSUTF8StringEncoding);
    if (!texte) refuse("l’entrée n’est pas en UTF-8");
    std::string().swap(octets);

    const auto lecteur = make<SBJsonParser>();
    const auto plume = make<SBJsonWriter>();
    if (options.profondeur) {
        lecteur->setMaxDepth(*options.profondeur);
        plume->setMaxDepth(*options.profondeur);
    }
    plume->setHumanReadable(!options.compact);
    plume->setSortKeys(options.trie);

    const auto valeur = options.fragment ? lecteur->fragmentWithString(texte) : lecteur->objectWithString(texte);
    texte = nullptr;
    if (!valeur) return ecrisErreurs(*lecteur);
    const auto ecrit = plume->stringWithFragment(valeur);
    if (!ecrit) return ecrisErreurs(*plume);
    return ecris(ecrit->utf8() + '\n');
}

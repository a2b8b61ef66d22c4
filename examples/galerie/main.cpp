// The gallery: every family of components on a page of its own, in a window or as pictures.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include <FenetreGalerie.h>
#include <Images.h>
#include <libvue/platform/appkit/NSApplication.h>

using namespace galerie;

namespace {

constexpr const char* kUsage =
    R"(usage : galerie [--page NOM] [--pictures DOSSIER] [--scale S] [--appearance light|dark] [--list]

Ouvre la galerie dans une fenêtre.

  --page NOM               ouvre, ou dessine, cette page (la casse et les accents ne comptent pas)
  --pictures DOSSIER       dessine les pages en PNG dans ce dossier, sans fenêtre, et écrit leurs chemins :
                           les deux apparences, aux échelles 1, 1,5 et 2
  --scale S                cette échelle seulement, de 0,5 à 4
  --appearance light|dark  cette apparence seulement
  --list                   écrit les noms des pages
  --help                   ce texte
)";

struct Options {
    std::optional<std::string> page, dossier;
    std::optional<double> echelle;
    std::optional<ChoixApparence> apparence;
    bool liste = false, aide = false;
};

[[noreturn]] void refuse(const std::string& raison) {
    std::fprintf(stderr, "galerie\u00A0: %s\n", raison.c_str());
    std::exit(2);
}

double lisEchelle(const std::string& texte) {
    char* fin = nullptr;
    const double s = std::strtod(texte.c_str(), &fin);
    if (fin == texte.c_str() || *fin != '\0' || !(s >= 0.5 && s <= 4))
        refuse("«\u00A0" + texte + "\u00A0» n’est pas une échelle de 0.5 à 4");
    return s;
}

ChoixApparence lisApparence(const std::string& texte) {
    if (texte == "light") return ChoixApparence::clair;
    if (texte == "dark") return ChoixApparence::sombre;
    refuse("«\u00A0" + texte + "\u00A0» n’est pas une apparence\u00A0: light ou dark");
}

Options lisOptions(int argc, char** argv) {
    Options o;
    for (int i = 1; i < argc; ++i) {
        const std::string nom = argv[i];
        const auto valeur = [&]() -> std::string {
            if (++i >= argc) refuse(nom + " demande une valeur");
            return argv[i];
        };
        if (nom == "--page")
            o.page = valeur();
        else if (nom == "--pictures")
            o.dossier = valeur();
        else if (nom == "--scale")
            o.echelle = lisEchelle(valeur());
        else if (nom == "--appearance")
            o.apparence = lisApparence(valeur());
        else if (nom == "--list")
            o.liste = true;
        else if (nom == "--help" || nom == "-h")
            o.aide = true;
        else
            refuse("option inconnue «\u00A0" + nom + "\u00A0» (--help les énumère)");
    }
    return o;
}

NSUInteger indiceDePage(const std::vector<Ref<PageGalerie>>& pages, const std::string& nom) {
    const auto cherche = NSString::fromUTF8(nom);
    std::string connues;
    for (NSUInteger i = 0; i < pages.size(); ++i) {
        const auto trouve = pages[i]->nom();
        if (trouve->compare_options(cherche, NSCaseInsensitiveSearch | NSDiacriticInsensitiveSearch) == NSOrderedSame)
            return i;
        connues += (i ? ", " : "") + trouve->utf8();
    }
    refuse("aucune page ne se nomme «\u00A0" + nom + "\u00A0»\u00A0; il y a\u00A0: " + connues);
}

} // namespace

int main(int argc, char** argv) {
    const Options options = lisOptions(argc, argv);
    if (options.aide) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    // Before the first use of the library, which chooses what stands behind it.
    if (options.dossier || options.liste) {
        setenv("LIBVUE_BACKEND", "memory", 1);
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    } else if (options.echelle)
        setenv("QT_SCALE_FACTOR", std::to_string(*options.echelle).c_str(), 1);

    const auto pages = RegistrePages::fabriqueToutes();
    if (options.liste) {
        for (const auto& p : pages)
            std::printf("%s\n", p->nom()->utf8().c_str());
        return 0;
    }
    std::optional<NSUInteger> page;
    if (options.page) page = indiceDePage(pages, *options.page);

    const auto galerie = make<FenetreGalerie>(pages);
    if (page) galerie->montrePage(*page);
    if (options.apparence) galerie->setApparence(*options.apparence);
    galerie->ouvre();
    if (!options.dossier) {
        NSApp()->run();
        return 0;
    }
    DemandeImages demande{*options.dossier, {}, {Appearance::light, Appearance::dark}, {1, 1.5, 2}};
    if (page)
        demande.pages = {*page};
    else
        for (NSUInteger i = 0; i < pages.size(); ++i)
            demande.pages.push_back(i);
    if (options.apparence)
        demande.apparences = {*options.apparence == ChoixApparence::sombre ? Appearance::dark : Appearance::light};
    if (options.echelle) demande.echelles = {*options.echelle};
    return ecritImages(*galerie, demande) ? 0 : 1;
}

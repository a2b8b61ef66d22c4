#pragma once

#include <string>
#include <vector>

#include <FenetreGalerie.h>

namespace galerie {

/// What of the pages is drawn into files.
struct DemandeImages {
    std::string dossier;
    std::vector<NSUInteger> pages;
    std::vector<Appearance> apparences; ///< of the desktop
    std::vector<CGFloat> echelles;
};

/// Draws the pages as PNG files and prints a path a line. False where a file could not be written; why is said on the
/// standard error output.
[[nodiscard]] bool ecritImages(FenetreGalerie& galerie, const DemandeImages& demande);

/// The name of a page in the names of its files: lower case, without accents or blanks.
[[nodiscard]] std::string nomDeFichier(const NSString* page);

} // namespace galerie

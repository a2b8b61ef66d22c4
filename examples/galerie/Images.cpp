#include <Images.h>

#include <cstdio>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSFileManager.h>

namespace galerie {

namespace {

std::string raison(const Ref<NSError>& erreur) {
    return erreur ? erreur->localizedDescription()->utf8() : std::string("raison inconnue");
}

} // namespace

std::string nomDeFichier(const NSString* page) {
    std::string nom;
    for (const char c : page->stringByFoldingWithOptions(NSDiacriticInsensitiveSearch)->lowercaseString()->utf8())
        nom += (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ? c : '-';
    return nom;
}

bool ecritImages(FenetreGalerie& galerie, const DemandeImages& demande) {
    const auto dossier = NSString::fromUTF8(demande.dossier);
    Ref<NSError> erreur;
    if (!NSFileManager::defaultManager()->createDirectoryAtPath_withIntermediateDirectories_attributes_error(
            dossier, YES, nullptr, &erreur)) {
        std::fprintf(stderr, "galerie\u00A0: le dossier «\u00A0%s\u00A0» ne peut pas être créé\u00A0: %s\n",
                     demande.dossier.c_str(), raison(erreur).c_str());
        return false;
    }
    for (const NSUInteger i : demande.pages) {
        galerie.montrePage(i);
        for (const Appearance a : demande.apparences) {
            galerie.setBureau(a);
            NSApp()->drain_();
            galerie.pages()[i]->attends();
            for (const CGFloat echelle : demande.echelles) {
                char suite[48];
                std::snprintf(suite, sizeof suite, "-%s@%gx.png", a == Appearance::dark ? "sombre" : "clair", echelle);
                const auto chemin = dossier->stringByAppendingPathComponent(
                    NSString::fromUTF8(nomDeFichier(galerie.pages()[i]->nom()) + suite));
                const auto png = galerie.image(echelle);
                if (!png || !png->writeToFile_options_error(chemin, NSDataWritingAtomic, &erreur)) {
                    std::fprintf(stderr, "galerie\u00A0: «\u00A0%s\u00A0» ne peut pas être écrit\u00A0: %s\n",
                                 chemin->utf8().c_str(),
                                 png ? raison(erreur).c_str() : "l’image n’a pas pu être dessinée");
                    return false;
                }
                std::printf("%s\n", chemin->utf8().c_str());
                std::fflush(stdout);
            }
        }
    }
    return true;
}

} // namespace galerie

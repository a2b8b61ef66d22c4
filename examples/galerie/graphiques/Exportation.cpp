#include <graphiques/Exportation.h>

#include <cstdlib>

#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSFileManager.h>
#include <libvue/platform/graphics/Appearance.h>

namespace galerie {

namespace {

constexpr CGFloat kEchelle = 2;

Ref<NSString> dossier() {
    const char* voulu = std::getenv("GALERIE_EXPORTS");
    return voulu && *voulu ? NSString::fromUTF8(voulu) : NSHomeDirectory();
}

} // namespace

Ref<NSString> exporte(NSView* vue, const std::string& nom, Format format) {
    // On paper the background is white.
    const AppearanceScope clair(Appearance::light);
    const Ref<NSData> octets = format == Format::pdf ? vue->dataWithPDFInsideRect(vue->bounds())
                                                     : vue->pngDataInsideRect_scale(vue->bounds(), kEchelle);
    if (!octets || octets->length() == 0) return u"Il n’y a rien à exporter."_ns;
    const auto chemin =
        dossier()->stringByAppendingPathComponent(NSString::fromUTF8(nom + (format == Format::pdf ? ".pdf" : ".png")));
    Ref<NSError> erreur;
    if (octets->writeToFile_options_error(chemin, NSDataWritingAtomic, &erreur))
        return NSString::stringWithFormat(u"Écrit dans %@"_ns, chemin.get());
    const Ref<NSString> raison = erreur ? erreur->localizedDescription() : u"raison inconnue"_ns;
    return NSString::stringWithFormat(u"%@ ne peut pas être écrit\u00A0: %@"_ns, chemin.get(), raison.get());
}

} // namespace galerie

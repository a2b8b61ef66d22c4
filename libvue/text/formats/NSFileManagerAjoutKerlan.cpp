#include <libvue/text/formats/NSFileManagerAjoutKerlan.h>

#include <libvue/platform/foundation/ClassExtension.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

static const ClassExtension<NSFileManager> extension([](ClassExtension<NSFileManager>::Description& c) {
    c.answers<&attributesOfItemAtPath_traverseLink_error>("attributesOfItemAtPath:traverseLink:error:");
});

Ref<NSDictionary> attributesOfItemAtPath_traverseLink_error(const NSFileManager* manager, const NSString* path,
                                                            BOOL traverse, Ref<NSError>* error) {
    if (!manager) return nullptr;
    Ref<const NSString> ici(path);
    for (;;) {
        Ref<NSDictionary> attributs = manager->attributesOfItemAtPath_error(ici, error);
        if (!traverse || !attributs || !isEqual(attributs->objectForKey(NSFileType), NSFileTypeSymbolicLink))
            return attributs;
        Ref<NSError> perdu;
        const Ref<NSString> cible = manager->destinationOfSymbolicLinkAtPath_error(ici, &perdu);
        if (!cible) {
            // The link went in between: nothing to go on with.
            if (error) *error = perdu;
            return nullptr;
        }
        const bool absolue = cible->length() > 0 && cible->unit(0) == u'/';
        ici = absolue ? cible : ici->stringByAppendingPathComponent(cible);
    }
}

} // namespace libvue

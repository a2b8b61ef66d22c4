#include <libvue/search/WebViewRecherche.h>

#include <libvue/platform/foundation/ClassExtension.h>
#include <libvue/search/ClientRecherche.h>

namespace libvue {

namespace {

const ClassExtension<WebView> extension([](ClassExtension<WebView>::Description& c) {
    c.answers<&cherche_direction_respecterCasse_boucle_typeRecherche>(
        "cherche:direction:respecterCasse:boucle:typeRecherche:");
    c.answers<&contientSeulement>("contientSeulement");
    c.answers<&donneSelection>("donneSelection");
});

} // namespace

BOOL cherche_direction_respecterCasse_boucle_typeRecherche(WebView* vue, NSString* texte, BOOL avant,
                                                           BOOL respecterCasse, BOOL boucle, int) {
    if (!vue || !texte) return NO;
    const Ref<NSString> cherche = texte->stringByReplacingOccurrencesOfString_withString(u"'"_ns, u"\u2019"_ns);
    return vue->searchFor_direction_caseSensitive_wrap(cherche, avant, respecterCasse, boucle);
}

BOOL contientSeulement(WebView*) { return YES; }

Ref<NSString> donneSelection(WebView* vue) {
    const Ref<DOMRange> selection = vue ? vue->selectedDOMRange() : nullptr;
    return selection ? selection->toString() : nullptr;
}

} // namespace libvue

#include <libvue/text/chaines/NSStringModificationChaine.h>

#include <algorithm>
#include <string>

#include <libvue/platform/foundation/ClassExtension.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/StringBuilder.h>

namespace libvue {

namespace {

constexpr unichar espaceInsecable = 0xA0;

const ClassExtension<NSString> extension([](ClassExtension<NSString>::Description& c) {
    c.answers<&stringByRemovingOccurencesOfString>("stringByRemovingOccurencesOfString:");
    c.answers<&stringByReversing>("stringByReversing");
    c.answers<&stringEnTronquantApresXEspaces>("stringEnTronquantApresXEspaces:");
    c.answers<&stringAvecEspacesSimples>("stringAvecEspacesSimples");
});

template <class T> std::basic_string<T> aRebours(const T* unites, NSUInteger nombre) {
    std::basic_string<T> r(unites, nombre);
    std::reverse(r.begin(), r.end());
    return r;
}

} // namespace

Ref<NSString> stringByRemovingOccurencesOfString(const NSString* s, const NSString* partie) {
    if (!s) return nullptr;
    const Ref<NSArray> morceaux = s->componentsSeparatedByString(partie);
    return morceaux->componentsJoinedByString(u""_ns);
}

Ref<NSString> stringByReversing(const NSString* s) {
    if (!s) return nullptr;
    if (const unichar* unites = s->_fastCharacterContents()) return NSString::from(aRebours(unites, s->length()));
    return NSString::fromLatin1(aRebours(reinterpret_cast<const char*>(s->latin1Contents()), s->length()));
}

Ref<NSString> stringEnTronquantApresXEspaces(const NSString* s, NSUInteger nombre) {
    if (!s) return nullptr;
    NSUInteger espaces = 0, fin = 0;
    for (; fin < s->length(); ++fin)
        if (s->unit(fin) == ' ' && ++espaces >= nombre) break;
    // The pieces are one more than the spaces.
    if (espaces < nombre) return Ref<NSString>(const_cast<NSString*>(s));
    StringBuilder resultat(fin + 2);
    if (nombre) resultat.append(s, 0, fin);
    resultat.append(u" \u2026");
    return resultat.build();
}

Ref<NSString> stringAvecEspacesSimples(const NSString* s) {
    if (!s) return nullptr;
    StringBuilder resultat(s->length());
    bool espace = false;
    for (NSUInteger i = 0; i < s->length(); ++i) {
        const unichar u = s->unit(i);
        if (u == ' ' || u == '\t' || u == '\n') {
            espace = true;
            continue;
        }
        if (espace && !resultat.isEmpty()) resultat.append(' ');
        espace = false;
        resultat.append(u == '\r' ? espaceInsecable : u);
    }
    return resultat.build();
}

} // namespace libvue

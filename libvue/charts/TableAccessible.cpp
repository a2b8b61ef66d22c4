#include <libvue/charts/TableAccessible.h>

#include <cmath>

#include <libvue/socle/UniChaine.h>

namespace libvue {

namespace {

constexpr int kDecimales = 1;

} // namespace

void TableAccessible::ajoute(NSString* legende, double valeur, double part, BOOL choisie) {
    Ligne ligne{legende, UniChaine::DonneNombreFormatay(valeur, false, kDecimales).DonneChaine(), nullptr, choisie};
    if (std::isfinite(part))
        ligne.part = NSString::stringWithFormat(
            u"%@\u00A0%%"_ns, UniChaine::DonneNombreFormatay(part * 100, false, kDecimales).DonneChaine());
    lignes.push_back(std::move(ligne));
}

Ref<NSString> TableAccessible::texteDeLaLigne(NSUInteger ligne) const {
    if (ligne >= lignes.size()) return NSString::string();
    const Ligne& l = lignes[ligne];
    const Ref<NSMutableString> texte = NSMutableString::stringWithCapacity(32);
    if (l.legende) texte->appendString(l.legende);
    texte->appendString(u"\u00A0: "_ns);
    texte->appendString(l.valeur);
    if (l.part) {
        texte->appendString(u", "_ns);
        texte->appendString(l.part);
    }
    return texte;
}

Ref<NSString> TableAccessible::texte() const {
    const Ref<NSMutableString> texte = NSMutableString::stringWithCapacity(lignes.size() * 24);
    for (NSUInteger i = 0; i < lignes.size(); ++i) {
        if (i) texte->appendString(u"\n"_ns);
        texte->appendString(texteDeLaLigne(i));
    }
    return texte;
}

} // namespace libvue

#pragma once

#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSNull.h>
#include <libvue/text/json/SBJsonParser.h>
#include <libvue/text/json/SBJsonWriter.h>

#include "LecteurSimple.h"

namespace essai {

using namespace libvue;

/// The value as LecteurSimple writes it; an object of any other class than the reader's own gives a "?".
inline std::string enTexte(const NSObject* o) {
    if (!o) return "(null)";
    const std::type_info& type = typeid(*o);
    std::string s;
    if (type == typeid(NSMutableDictionary)) {
        for (auto [cle, v] : *static_cast<const NSMutableDictionary*>(o))
            s += lisible(as<NSString>(cle)->utf16()) + ":" + enTexte(v) + ",";
        return "{" + s + "}";
    }
    if (type == typeid(NSMutableArray)) {
        for (NSObject* v : *static_cast<const NSMutableArray*>(o))
            s += enTexte(v) + ",";
        return "[" + s + "]";
    }
    if (type == typeid(NSMutableString)) return "'" + lisible(static_cast<const NSMutableString*>(o)->utf16()) + "'";
    if (type == typeid(NSDecimalNumber)) return static_cast<const NSDecimalNumber*>(o)->stringValue()->utf8();
    if (o == NSNull::null()) return "null";
    if (o == NSNumber::numberWithBool(YES)) return "true";
    if (o == NSNumber::numberWithBool(NO)) return "false";
    return "?";
}

inline std::vector<std::string> erreursDe(const SBJsonBase& base) {
    std::vector<std::string> lignes;
    const Ref<NSArray> erreurs = base.errorTrace();
    if (erreurs)
        for (NSError* e : erreurs->as<NSError>())
            lignes.push_back(std::to_string(e->code()) + " " + lisible(e->localizedDescription()->utf16()));
    return lignes;
}

/// Reads the bytes with the reader and with the plain one, and writes the value again: an empty text where they agree,
/// else what is wrong. The plain one recurses, so the bytes must not be too many.
inline std::string epreuve(std::string_view octets) {
    const Ref<NSString> texte = NSString::fromUTF8(octets);
    for (const NSUInteger profondeur : {0, 3}) {
        const auto lecteur = make<SBJsonParser>();
        lecteur->setMaxDepth(profondeur);
        const Ref<NSObject> valeur = lecteur->fragmentWithString(texte);
        LecteurSimple simple;
        const bool lu = simple.lis(texte->utf8(), profondeur);
        if (lu != static_cast<bool>(valeur)) return "one of the two readers fails";
        if (erreursDe(*lecteur) != simple.erreurs) return "the errors differ";
        if (!lu) continue;
        const std::string forme = enTexte(valeur);
        if (forme != simple.valeur) return "the values differ: " + forme + " and " + simple.valeur;

        // Not numbers have no JSON, and lone halves of pairs no UTF-8.
        if (forme.find("NaN") != std::string::npos || forme.find("\\ud") != std::string::npos) continue;
        const auto plume = make<SBJsonWriter>();
        plume->setHumanReadable(profondeur != 0);
        const Ref<NSString> ecrit = plume->stringWithFragment(valeur);
        if (!ecrit) return "the value cannot be written";
        const Ref<NSObject> relu = lecteur->fragmentWithString(ecrit);
        if (enTexte(relu) != forme) return "what is written reads differently: " + ecrit->utf8();
    }
    return "";
}

} // namespace essai

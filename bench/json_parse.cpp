// A document read into objects and given up again, beside the peer's reader of UTF-8; and what the objects of a
// document hold of memory, beside the peer's document of UTF-16. Both read UTF-8 that is at hand.

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include <rapidjson/document.h>
#include <rapidjson/memorystream.h>

#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/SmallBlocks.h>
#include <libvue/text/json/SBJsonParser.h>

#include "Banc.h"
#include "DocumentsJson.h"

using namespace libvue;

namespace {

[[noreturn]] void refuse(const std::string& nom) {
    std::fprintf(stderr, "%s cannot be read\n", nom.c_str());
    std::exit(1);
}

banc::Chemin lecture(const std::string& nom) {
    const std::string& octets = banc::documentJson(nom).octets;
    struct Notre {
        Ref<NSString> texte;
        Ref<SBJsonParser> lecteur = make<SBJsonParser>();
    };
    auto notre = std::make_shared<Notre>();
    notre->texte = NSString::fromUTF8(octets);
    if (!notre->lecteur->objectWithString(notre->texte)) refuse(nom);
    return {[notre] {
                const Ref<NSObject> document = notre->lecteur->objectWithString(notre->texte);
                banc::garde(document.get());
            },
            [&octets] {
                rapidjson::Document document;
                document.Parse(octets.c_str());
                banc::garde(document.IsObject());
            }};
}

/// What the heap and the lists of small blocks have given out, the heap's own share included.
std::size_t octetsPris() {
    const auto tas = mallinfo2();
    return tas.uordblks + tas.hblkhd + detail::SmallBlocks::bytesInUse();
}

banc::Mesures memoire(const std::string& nom) {
    const std::string& octets = banc::documentJson(nom).octets;
    const Ref<NSString> texte = NSString::fromUTF8(octets);
    const auto lecteur = make<SBJsonParser>();
    // Once before, for what is made on first use.
    if (!lecteur->objectWithString(texte)) refuse(nom);
    std::size_t avant = octetsPris();
    const Ref<NSObject> notre = lecteur->objectWithString(texte);
    const auto notres = static_cast<double>(octetsPris() - avant);

    using Document16 = rapidjson::GenericDocument<rapidjson::UTF16<>>;
    avant = octetsPris();
    auto pair = std::make_unique<Document16>();
    rapidjson::MemoryStream flux(octets.data(), octets.size());
    rapidjson::EncodedInputStream<rapidjson::UTF8<>, rapidjson::MemoryStream> entree(flux);
    pair->ParseStream<rapidjson::kParseDefaultFlags, rapidjson::UTF8<>>(entree);
    if (pair->HasParseError()) refuse(nom);
    return {notres, static_cast<double>(octetsPris() - avant)};
}

} // namespace

int main(int argc, char** argv) {
    banc::Banc banc;
    for (const std::string& nom : banc::nomsDocumentsJson())
        banc.ajoute("json-parse-" + nom, [nom] { return lecture(nom); });
    for (const std::string& nom : banc::nomsDocumentsJson())
        banc.ajoute(banc::CheminLibre{"json-memory-" + nom, "B", [nom] { return memoire(nom); }});
    banc.ajoute(banc::CheminLibre{"json-memory", "B", [] {
                                      banc::Mesures toutes{0, 0.0};
                                      for (const std::string& nom : banc::nomsDocumentsJson()) {
                                          const banc::Mesures m = memoire(nom);
                                          toutes.notre += m.notre;
                                          *toutes.pair += *m.pair;
                                      }
                                      return toutes;
                                  }});
    return banc.lance(argc, argv);
}

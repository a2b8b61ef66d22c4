// A document written as JSON text on one line, beside the peer's writer on its own document.

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <libvue/platform/foundation/NSString.h>
#include <libvue/text/json/SBJsonParser.h>
#include <libvue/text/json/SBJsonWriter.h>

#include "Banc.h"
#include "DocumentsJson.h"

using namespace libvue;

namespace {

[[noreturn]] void refuse(const std::string& nom) {
    std::fprintf(stderr, "%s cannot be read\n", nom.c_str());
    std::exit(1);
}

banc::Chemin ecriture(const std::string& nom) {
    const std::string& octets = banc::documentJson(nom).octets;

    struct Notre {
        Ref<NSObject> document;
        Ref<SBJsonWriter> plume = make<SBJsonWriter>();
    };
    auto notre = std::make_shared<Notre>();
    notre->document = make<SBJsonParser>()->objectWithString(NSString::fromUTF8(octets));
    auto pair = std::make_shared<rapidjson::Document>();
    pair->Parse(octets.c_str());
    if (!notre->document || pair->HasParseError()) refuse(nom);

    return {[notre] { banc::garde(notre->plume->stringWithObject(notre->document)->length()); },
            [pair] {
                rapidjson::StringBuffer texte;
                rapidjson::Writer<rapidjson::StringBuffer> plume(texte);
                pair->Accept(plume);
                banc::garde(texte.GetSize());
            }};
}

} // namespace

int main(int argc, char** argv) {
    banc::Banc banc;
    for (const std::string& nom : banc::nomsDocumentsJson())
        banc.ajoute("json-write-" + nom, [nom] { return ecriture(nom); });
    return banc.lance(argc, argv);
}

#include "DocumentsJson.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>

namespace banc {

namespace {

/// The same numbers at every run.
class Hasard {
public:
    std::uint32_t sous(std::uint32_t borne) {
        etat_ = etat_ * 6364136223846793005u + 1442695040888963407u;
        return static_cast<std::uint32_t>((etat_ >> 33) % borne);
    }

private:
    std::uint64_t etat_ = 42;
};

template <std::size_t n> const char* choix(Hasard& h, const char* const (&parmi)[n]) {
    return parmi[h.sous(static_cast<std::uint32_t>(n))];
}

std::string phrase(Hasard& h, int mots) {
    static const char* const lexique[] = {"bonjour",
                                          "le monde",
                                          "名前：",
                                          "今の印象",
                                          "ありすぎ😊",
                                          "\\n",
                                          "https:\\/\\/exemple.fr\\/a1b2",
                                          "café",
                                          "déjà vu",
                                          "\\\"cité\\\"",
                                          "ok",
                                          "réponse",
                                          "RT @vue",
                                          "こんにちは",
                                          "搭乗",
                                          "une phrase plus longue"};
    std::string s;
    for (int i = 0; i < mots; ++i) {
        if (i) s += ' ';
        s += choix(h, lexique);
    }
    return s;
}

std::string nombre(std::uint64_t v) { return std::to_string(v); }

std::string messages() {
    Hasard h;
    std::string s = "{\n  \"statuses\": [";
    for (int i = 0; i < 520; ++i) {
        const std::uint64_t id = 505874900000000000u + h.sous(1000000000);
        s += i ? ",\n    {" : "\n    {";
        s += R"(
      "metadata": { "result_type": "recent", "iso_language_code": "ja" },
      "created_at": "Sun Aug 31 00:29:15 +0000 2014",
      "id": )" +
             nombre(id) + ",\n      \"id_str\": \"" + nombre(id) + "\",\n      \"text\": \"" +
             phrase(h, 4 + static_cast<int>(h.sous(9))) + R"(",
      "source": "<a href=\"http:\/\/exemple.fr\/telephone\" rel=\"nofollow\">Client</a>",
      "truncated": false, "in_reply_to_status_id": null, "in_reply_to_user_id": )" +
             nombre(h.sous(1000000)) + R"(,
      "user": {
        "id": )" +
             nombre(h.sous(2000000000)) + R"(, "name": ")" + phrase(h, 2) + R"(", "screen_name": "vue)" +
             nombre(h.sous(100000)) + R"(", "location": "", "description": ")" + phrase(h, 8) + R"(",
        "protected": false, "followers_count": )" +
             nombre(h.sous(5000)) + R"(, "friends_count": )" + nombre(h.sous(5000)) +
             R"(, "utc_offset": null, "time_zone": null, "geo_enabled": false, "verified": false,
        "profile_image_url": "http:\/\/exemple.fr\/images\/)" +
             nombre(h.sous(100000000)) + R"(_normal.jpeg", "profile_link_color": "0084B4", "following": false
      },
      "geo": null, "coordinates": null, "place": null, "retweet_count": )" +
             nombre(h.sous(100)) + R"(,
      "entities": { "hashtags": [], "symbols": [], "urls": [], "user_mentions": [
        { "screen_name": "vue)" +
             nombre(h.sous(1000)) + R"(", "indices": [0, )" + nombre(3 + h.sous(15)) + R"(] } ] },
      "favorited": false, "retweeted": false, "lang": "ja"
    })";
    }
    return s + "\n  ]\n}\n";
}

std::string catalogue() {
    Hasard h;
    std::string s = "{\n    \"areaNames\": {";
    for (int i = 0; i < 40; ++i)
        s += std::string(i ? "," : "") + "\n        \"" + nombre(205705993 + static_cast<unsigned>(i)) +
             "\": \"Arrière-scène central\"";
    s += "\n    },\n    \"performances\": [";
    for (int i = 0; i < 900; ++i) {
        s += std::string(i ? "," : "") + "\n        {\n            \"eventId\": " + nombre(138586341 + h.sous(500)) +
             ",\n            \"id\": " + nombre(339887544 + h.sous(1000)) +
             ",\n            \"logo\": null,\n            \"name\": null,\n            \"prices\": [";
        for (unsigned p = 0, n = 1 + h.sous(4); p < n; ++p)
            s += std::string(p ? "," : "") +
                 "\n                {\n                    \"amount\": " + nombre(1000 * (9 + h.sous(200))) +
                 ",\n                    \"audienceSubCategoryId\": 337100890,\n                    "
                 "\"seatCategoryId\": " +
                 nombre(338937235 + h.sous(9000)) + "\n                }";
        s += "\n            ],\n            \"seatCategories\": [";
        for (unsigned c = 0, n = 1 + h.sous(4); c < n; ++c) {
            s += std::string(c ? "," : "") + "\n                {\n                    \"areas\": [";
            for (unsigned a = 0, m = 2 + h.sous(6); a < m; ++a)
                s += std::string(a ? "," : "") +
                     "\n                        {\n                            \"areaId\": " +
                     nombre(205705999 + h.sous(40)) +
                     ",\n                            \"blockIds\": []\n                        }";
            s += "\n                    ],\n                    \"seatCategoryId\": " +
                 nombre(338937235 + h.sous(9000)) + "\n                }";
        }
        s += "\n            ],\n            \"seatMapImage\": null,\n            \"start\": 1372701600000,\n"
             "            \"venueCode\": \"PLEYEL_PLEYEL\"\n        }";
    }
    return s + "\n    ]\n}\n";
}

std::string coordonnees() {
    Hasard h;
    std::string s = R"({ "type": "FeatureCollection", "features": [
{ "type": "Feature", "properties": { "name": "Terre" }, "geometry": { "type": "Polygon", "coordinates": [)";
    for (int anneau = 0; anneau < 480; ++anneau) {
        s += anneau ? ",\n[" : "[";
        for (int i = 0; i < 116; ++i) {
            char paire[64];
            // Seventeen digits, as a program prints a double exactly.
            std::snprintf(paire, sizeof paire, "%s[-%u.%06u%09u,%u.%06u%09u]", i ? "," : "", 52 + h.sous(90),
                          h.sous(1000000), h.sous(1000000000), 41 + h.sous(42), h.sous(1000000), h.sous(1000000000));
            s += paire;
        }
        s += ']';
    }
    return s + "] } }\n]\n}\n";
}

std::string lis(const std::string& chemin) {
    std::ifstream fichier(chemin, std::ios::binary);
    std::string octets{std::istreambuf_iterator<char>(fichier), {}};
    if (!fichier || octets.empty()) {
        std::fprintf(stderr, "%s cannot be read\n", chemin.c_str());
        std::exit(1);
    }
    return octets;
}

} // namespace

std::vector<std::string> nomsDocumentsJson() { return {"twitter", "citm_catalog", "canada"}; }

const DocumentJson& documentJson(const std::string& nom) {
    static std::map<std::string, DocumentJson> documents;
    DocumentJson& d = documents[nom];
    if (!d.octets.empty()) return d;
    d.nom = nom;
    if (const char* dossier = std::getenv("LIBVUE_BENCH_JSON"); dossier && *dossier)
        d.octets = lis(std::string(dossier) + "/" + nom + ".json");
    else
        d.octets = nom == "twitter" ? messages() : nom == "citm_catalog" ? catalogue() : coordonnees();
    return d;
}

} // namespace banc

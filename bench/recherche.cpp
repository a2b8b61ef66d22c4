// Whether candidates match a sought French text, beside the same on QString.

#include <array>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <QString>

#include <libvue/platform/foundation/NSString.h>
#include <libvue/search/TesteCandidatRecherche.h>

#include "Banc.h"
#include "Mots.h"

using namespace libvue;

namespace {

constexpr std::size_t nombre = 100000;

/// A hundred thousand words in no order, one in eight of them with an article and a typographic apostrophe.
std::vector<std::string> candidats() {
    std::vector<std::string> choisis = banc::motsMelanges(nombre);
    for (std::size_t i = 0; i < nombre; i += 8)
        choisis[i].insert(0, "l\u2019");
    return choisis;
}

QString normalisee(const QString& s) {
    static const std::array<std::pair<QString, QString>, 5> paires{{{QStringLiteral("\u2019"), QStringLiteral("'")},
                                                                    {QStringLiteral("\u0153"), QStringLiteral("oe")},
                                                                    {QStringLiteral("\u0152"), QStringLiteral("OE")},
                                                                    {QStringLiteral("\u00E6"), QStringLiteral("ae")},
                                                                    {QStringLiteral("\u00C6"), QStringLiteral("Ae")}}};
    QString copie = s;
    for (const auto& [cherche, par] : paires)
        copie.replace(cherche, par);
    return copie;
}

/// The sought text is already normalised, once for all candidates.
bool commenceUnMot(const QString& candidat, const QString& cherche) {
    const QString texte = normalisee(candidat);
    for (qsizetype i = texte.indexOf(cherche, 0, Qt::CaseInsensitive); i >= 0;
         i = texte.indexOf(cherche, i + 1, Qt::CaseInsensitive))
        if (i == 0 || !texte[i - 1].isLetterOrNumber()) return true;
    return false;
}

banc::Chemin correspondance(const char16_t* cherche) {
    struct Donnees {
        std::vector<Ref<NSString>> notres;
        std::vector<QString> pairs;
        Ref<NSString> cherche;
        QString cherchePair;
    };
    auto d = std::make_shared<Donnees>();
    for (const std::string& mot : candidats()) {
        d->notres.push_back(NSString::fromUTF8(mot));
        d->pairs.push_back(QString::fromStdString(mot));
    }
    d->cherche = NSString::from(cherche);
    d->cherchePair = normalisee(QString::fromUtf16(cherche));
    const auto notre = [d] {
        std::size_t trouves = 0;
        for (const auto& mot : d->notres)
            trouves += testeCandidatRechercheParJetons(mot, d->cherche, NO, 1) ? 1 : 0;
        return trouves;
    };
    const auto pair = [d] {
        std::size_t trouves = 0;
        for (const QString& mot : d->pairs)
            trouves += commenceUnMot(mot, d->cherchePair) ? 1 : 0;
        return trouves;
    };
    if (notre() != pair() || notre() == 0) throw std::runtime_error("the two do not find the same words");
    return {[notre] { banc::garde(notre()); }, [pair] { banc::garde(pair()); }};
}

} // namespace

int main(int argc, char** argv) {
    banc::Banc banc;
    banc.ajoute("match-french", [] { return correspondance(u"contre"); });
    banc.ajoute("match-french-ligature", [] { return correspondance(u"C\u0153ur"); });
    return banc.lance(argc, argv);
}

#include <climits>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include <libvue/socle/UniChaine.h>

using namespace libvue;

namespace {

std::string texteDe(const UniChaine& c) {
    std::string s = c.DonneChaine()->utf8();
    // No-break spaces are shown as ~, so that the tables can be read.
    for (std::size_t i; (i = s.find("\u00A0")) != std::string::npos;)
        s.replace(i, 2, "~");
    return s;
}

TEST(UniChaineTest, findsTheLastPlaceOfAUnit) {
    const UniChaine chemin = "images/petites/fleche.2x.png";
    const auto point = chemin.TrouveDernier('.');
    EXPECT_TRUE(point.trouvee);
    EXPECT_EQ(point.position, 24);
    EXPECT_EQ(chemin.TrouveDernier('.', point.position - 1).position, 21);
    EXPECT_EQ(chemin.TrouveDernier('i', 0).position, 0);
    EXPECT_EQ(chemin.TrouveDernier('.', 1000).position, 24);
    EXPECT_FALSE(chemin.TrouveDernier('.', 20).trouvee);
    EXPECT_FALSE(chemin.TrouveDernier(u'é').trouvee);
    EXPECT_FALSE(UniChaine().TrouveDernier('.').trouvee);
    EXPECT_EQ(UniChaine(u"œ.œ").TrouveDernier(u'œ').position, 2);
}

TEST(UniChaineTest, partsAreHeldToTheText) {
    struct {
        NSInteger debut, longueur;
        const char* attendu;
    } const lignes[] = {{0, 3, "bon"}, {3, -1, "jour"},    {3, 100, "jour"},
                        {7, -1, ""},   {100, -1, ""},      {-5, 3, "bon"},
                        {2, 0, ""},    {0, -1, "bonjour"}, {LONG_MAX, LONG_MAX, ""}};
    for (const auto& l : lignes)
        EXPECT_EQ(texteDe(UniChaine("bonjour").SousChaine(l.debut, l.longueur)), l.attendu) << l.debut;
    EXPECT_TRUE(kUniChaineNulle.SousChaine(0).EstVide());
}

TEST(UniChaineTest, aCopyKeepsItsTextWhenTheOriginalChanges) {
    const Ref<NSMutableString> muable = make<NSMutableString>(u"été"_ns);
    UniChaine a = muable.get();
    const UniChaine b = a;
    muable->appendString(u"!"_ns);
    a += " œuf";
    EXPECT_EQ(texteDe(a), "été œuf");
    EXPECT_EQ(texteDe(b), "été");
    EXPECT_EQ(b.Longueur(), 3);
    EXPECT_LT(b, a);
    EXPECT_EQ(b + UniChaine(" œuf"), a);
    a = UniChaine();
    EXPECT_EQ(a, kUniChaineNulle);
    EXPECT_TRUE(UniChaine(static_cast<const NSString*>(nullptr)).EstVide());
    EXPECT_EQ(kUniChaineNulle.DonneChaine()->length(), 0u);
}

TEST(UniChaineTest, wholeNumbersAreGroupedByThree) {
    struct {
        int nombre;
        const char* attendu;
    } const lignes[] = {{0, "0"},
                        {7, "7"},
                        {-7, "-7"},
                        {999, "999"},
                        {1000, "1~000"},
                        {-123456, "-123~456"},
                        {1234567, "1~234~567"},
                        {INT_MAX, "2~147~483~647"},
                        {INT_MIN, "-2~147~483~648"}};
    for (const auto& l : lignes)
        EXPECT_EQ(texteDe(UniChaine::DonneNombreFormatay(l.nombre)), l.attendu);
}

TEST(UniChaineTest, decimalsAreRoundedAndZerosKeptOnDemand) {
    constexpr double infini = std::numeric_limits<double>::infinity();
    struct {
        double nombre;
        bool zeros;
        int decimales;
        const char* attendu;
    } const lignes[] = {
        {50, false, 1, "50"},
        {50, true, 1, "50,0"},
        {33.333333, false, 1, "33,3"},
        {12.5, true, 2, "12,50"},
        {12.5, false, 2, "12,5"},
        {99.96, false, 1, "100"},
        {999.96, true, 1, "1~000,0"},
        {-1234.5, false, 1, "-1~234,5"},
        {-0.04, false, 1, "0"},
        {-0.04, true, 1, "0,0"},
        {-0.06, true, 1, "-0,1"},
        {1200, false, 0, "1~200"},
        {100, false, -3, "100"},
        {0.1, true, 100, "0,100000000000000"},
        {1e21, false, 2, "1~000~000~000~000~000~000~000"},
        {infini, false, 1, "∞"},
        {-infini, true, 1, "-∞"},
        {std::nan(""), true, 1, "NaN"},
    };
    for (const auto& l : lignes)
        EXPECT_EQ(texteDe(UniChaine::DonneNombreFormatay(l.nombre, l.zeros, l.decimales)), l.attendu) << l.nombre;
    EXPECT_EQ(UniChaine::DonneNombreFormatay(std::numeric_limits<double>::max(), true, 15).Longueur(),
              309 + 102 + 1 + 15);
}

} // namespace

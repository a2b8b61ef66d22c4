#include <formats/ChampFixture.h>
#include <foundation/Valeurs.h>

#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/text/formats/ChiffresRomainsFormateur.h>

using namespace libvue;
using namespace libvue::test;
using valeurs::number;
using valeurs::shown;
using valeurs::text;

namespace {

/// The writing, or what is raised instead.
std::string ecrit(NSObject* valeur) {
    try {
        return shown(make<ChiffresRomainsFormateur>()->stringForObjectValue(valeur));
    } catch (const NSExceptionRaised& e) {
        return e.what();
    }
}

/// The number, "refuse", or what is raised.
std::string lit(NSString* s) {
    Ref<NSObject> valeur;
    Ref<NSString> erreur = text(u"d’avant");
    try {
        const BOOL lu =
            make<ChiffresRomainsFormateur>()->getObjectValue_forString_errorDescription(&valeur, s, &erreur);
        EXPECT_EQ(erreur, nullptr);
        EXPECT_EQ(valeur != nullptr, lu == YES);
        return lu ? valeurs::described(valeur) : "refuse";
    } catch (const NSExceptionRaised& e) {
        return e.what();
    }
}

const char* const kTrop = "Number to large: Le nombre doit être entre 0 et 4000";

} // namespace

TEST(ChiffresRomainsFormateur, numbersAreWrittenFromOneTo3999) {
    const struct {
        Ref<NSObject> valeur;
        std::string texte;
    } rows[] = {
        {number(1), "I"},
        {number(4), "IV"},
        {number(444), "CDXLIV"},
        {number(1999), "MCMXCIX"},
        {number(3888), "MMMDCCCLXXXVIII"},
        {number(3999), "MMMCMXCIX"},
        {NSNumber::numberWithDouble(12.9), "XII"},
        {number(0), kTrop},
        {number(4000), kTrop},
        {number(-1), kTrop},
        {NSNumber::numberWithDouble(0.9), kTrop},
        {text(u"12"), ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ecrit(row.valeur), row.texte) << valeurs::described(row.valeur);
}

TEST(ChiffresRomainsFormateur, onlyTheCanonicalWritingIsRead) {
    const struct {
        const char16_t* texte;
        std::string resultat;
    } rows[] = {
        {u"IV", "4"},
        {u"MCMXCIX", "1999"},
        {u"IIII", "refuse"},
        {u"IIV", "refuse"},
        {u"VX", "refuse"},
        {u"XIIa", "refuse"},
        {u"xX", "refuse"},
        // Nothing that adds up to a number is an exception, and not a refusal.
        {u"", kTrop},
        {u"xii", kTrop},
        {u"MMMM", kTrop},
    };
    for (const auto& row : rows)
        EXPECT_EQ(lit(text(row.texte)), row.resultat) << shown(row.texte);
    EXPECT_EQ(lit(textes::wideText(u"XIV")), "14");
    EXPECT_EQ(lit(nullptr), kTrop);
    EXPECT_TRUE(
        make<ChiffresRomainsFormateur>()->getObjectValue_forString_errorDescription(nullptr, text(u"X"), nullptr));
}

TEST(ChiffresRomainsFormateur, eachWritingReadsBack) {
    for (NSInteger n = 1; n < 4000; ++n)
        ASSERT_EQ(lit(text(NSString::fromUTF8(ecrit(number(n)))->utf16())), std::to_string(n));
}

using ChampRomain = ChampFixture;

TEST_F(ChampRomain, aFieldShowsLettersAndHoldsTheNumber) {
    champ->setFormatter(make<ChiffresRomainsFormateur>());
    champ->setObjectValue(number(1999));
    EXPECT_EQ(champ->stringValue()->utf8(), "MCMXCIX");
    window->makeFirstResponder(champ);
    // What is refused stays in editing.
    tape(u"IIII");
    touche(u'\r');
    EXPECT_EQ(affiche(), "IIII");
    // Where the formatter raises the key is lost, and what was begun is as it was.
    editeur()->selectAll(nullptr);
    tape(u"abc");
    EXPECT_EQ(valeurs::raised([&] { touche(u'\r'); }), "Number to large");
    EXPECT_EQ(affiche(), "abc");
    editeur()->selectAll(nullptr);
    tape(u"XIV");
    touche(u'\r');
    EXPECT_TRUE(isEqual(champ->cell()->objectValue(), number(14)));
    EXPECT_EQ(champ->cell()->attributedStringValue()->string()->utf8(), "XIV");
}

TEST_F(ChampRomain, aNumberThatCannotBeWrittenDoesNotStopTheWindow) {
    champ->setFormatter(make<ChiffresRomainsFormateur>());
    champ->setObjectValue(number(0));
    EXPECT_EQ(valeurs::raised([&] { window->display(); }), "Number to large");
    champ->setObjectValue(number(5));
    drain();
    window->display();
    EXPECT_EQ(champ->stringValue()->utf8(), "V");
}

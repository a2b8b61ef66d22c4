#include <formats/ChampFixture.h>
#include <foundation/Valeurs.h>

#include <cmath>

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSKeyValueBinding.h>
#include <libvue/text/formats/AjouteUnValueTransformer.h>

using namespace libvue;
using namespace libvue::test;
using valeurs::number;
using valeurs::text;

namespace {

/// The result, or what is raised instead.
std::string essaie(NSObject* v, bool retour) {
    auto t = make<AjouteUnValueTransformer>();
    try {
        return valeurs::described(retour ? t->reverseTransformedValue(v) : t->transformedValue(v));
    } catch (const NSExceptionRaised& e) {
        return e.what();
    }
}

/// A model that counts from 0.
class Page : public NSObject {
public:
    static void describe(ClassDescription<Page>& c) { c.key<&Page::rang, &Page::setRang>("rang"); }
    NSInteger rang() const { return rang_; }
    void setRang(NSInteger r) {
        willChangeValueForKey(u"rang"_ns);
        rang_ = r;
        didChangeValueForKey(u"rang"_ns);
    }

private:
    NSInteger rang_ = 0;
};

} // namespace

TEST(AjouteUnValueTransformer, oneMoreAndOneLess) {
    const char* const kRefus = "NSInternalInconsistencyException: Valeur (NSArray) ne répond pas à -intValue.";
    const struct {
        Ref<NSObject> valeur;
        std::string plus, moins;
    } rows[] = {
        {nullptr, "(null)", "(null)"},
        {number(0), "1", "-1"},
        {NSNumber::numberWithDouble(2.9), "3", "1"},
        {NSNumber::numberWithDouble(-2.9), "-1", "-3"},
        {text(u"41.5 pages"), "42", "40"},
        // Read in single precision, so what does not fit in 24 bits is rounded.
        {number(16777217), "16777217", "16777215"},
        // Held to 32 bits.
        {NSNumber::numberWithDouble(1e12), "2147483647", "2147483646"},
        {NSNumber::numberWithDouble(-HUGE_VAL), "-2147483647", "-2147483648"},
        {NSNumber::numberWithDouble(NAN), "1", "-1"},
        {NSArray::array(), kRefus, kRefus},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(essaie(row.valeur, false), row.plus) << valeurs::described(row.valeur);
        EXPECT_EQ(essaie(row.valeur, true), row.moins) << valeurs::described(row.valeur);
    }
}

using ChampLie = ChampFixture;

TEST_F(ChampLie, aFieldShowsAndTakesPositionsFromOneOn) {
    EXPECT_TRUE(NSValueTransformer::valueTransformerForName(text(u"AjouteUnValueTransformer"))->allowsReverse());
    auto page = make<Page>();
    bind_toObject_withKeyPath_options(champ, NSValueBinding, page, text(u"rang"),
                                      NSDictionary::dictionaryWithObject_forKey(text(u"AjouteUnValueTransformer"),
                                                                                NSValueTransformerNameBindingOption));
    EXPECT_EQ(champ->stringValue()->utf8(), "1");
    page->setRang(6);
    EXPECT_EQ(champ->stringValue()->utf8(), "7");
    window->makeFirstResponder(champ);
    tape(u"12");
    EXPECT_EQ(page->rang(), 6);
    touche(u'\r');
    EXPECT_EQ(page->rang(), 11);
    EXPECT_EQ(champ->stringValue()->utf8(), "12");
    NSValueTransformer::setValueTransformer_forName(nullptr, text(u"AjouteUnValueTransformer"));
}

#include <gmock/gmock.h>

#include <support/Silence.h>
#include <support/TestBackend.h>

#include <libvue/collections/BassinCirculaire.h>
#include <libvue/collections/KCNibHelper.h>
#include <libvue/platform/appkit/NSNib.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSNumber.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

Ref<ListeCirculaire> anneau(const std::string& lettres) {
    auto l = make<ListeCirculaire>(lettres.size());
    for (const char c : lettres)
        l->ajouteElement(NSString::fromUTF8(std::string(1, c)));
    return l;
}

/// The elements from that number on.
std::string lit(const ListeCirculaire* l, std::uint64_t depuis, std::size_t n) {
    std::string s;
    for (std::size_t i = 0; i < n; ++i)
        s += as<NSString>(l->preteElement(depuis + i))->utf8();
    return s;
}

TEST(ListeCirculaireTest, NumbersAddressTheRingFromItsHead) {
    const auto l = anneau("abc");
    EXPECT_EQ(lit(l, 0, 7), "abcabca");
    EXPECT_EQ(lit(l, ~std::uint64_t{0}, 1), "c");
    l->ajouteElement(u"d"_ns); // full
    EXPECT_EQ(lit(l, 0, 3), "abc");
    l->setPremierNoElement(10);
    EXPECT_EQ(lit(l, 10, 3), "abc");
}

TEST(ListeCirculaireTest, ScrollingMovesTheHeadByUnsignedArithmetic) {
    const struct {
        const char* lettres;
        std::vector<std::int64_t> pas;
        const char* depuisPremier;
    } cas[] = {
        {"abcdef", {2}, "cdefab"},
        {"abcdef", {6}, "abcdef"},
        {"abcdef", {-1}, "fabcde"},
        {"abcdef", {1, -1}, "efabcd"}, // from slot 0: 2^64 - 1 leaves 3 by six, not 5
        {"abcdef", {2, -1}, "bcdefa"},
        {"abcd", {-1}, "dabc"}, // four divides 2^64
        {"abcdefgh", {3, -5, 1}, "habcdefg"},
        {"abc", {0}, "abc"},
    };
    for (const auto& c : cas) {
        const auto l = anneau(c.lettres);
        std::uint64_t premier = 0;
        for (const std::int64_t p : c.pas) {
            l->scroll(p);
            premier += static_cast<std::uint64_t>(p);
        }
        EXPECT_EQ(l->premierNoElement(), premier);
        EXPECT_EQ(lit(l, premier, std::string(c.lettres).size()), c.depuisPremier);
    }
}

/// Copies carry the number of copies made before them.
class Moule : public NSObject {
public:
    static void describe(ClassDescription<Moule>&) {}
    mutable int copies = 0;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override {
        return copies < limite ? NSNumber::numberWithInt(copies++) : nullptr;
    }
    int limite = 1000;
};

TEST(BassinCirculaireTest, GrowingKeepsTheOldNumbers) {
    const auto moule = make<Moule>();
    const auto b = make<BassinCirculaire>(3, moule);
    const auto valeurs = [&](std::uint64_t depuis, std::size_t n) {
        std::vector<NSInteger> v;
        for (std::size_t i = 0; i < n; ++i)
            v.push_back(as<NSNumber>(b->preteElement(depuis + i))->integerValue());
        return v;
    };
    EXPECT_EQ(b->taille(), 3u);
    b->scroll(4);
    EXPECT_THAT(valeurs(4, 3), ElementsAre(1, 2, 0));
    b->setTaille(5);
    EXPECT_THAT(valeurs(4, 5), ElementsAre(1, 2, 0, 3, 4));
    b->setTaille(2);
    EXPECT_EQ(b->taille(), 5u);
    EXPECT_EQ(moule->copies, 5);
    moule->limite = 5;
    EXPECT_THROW(b->setTaille(6), NSExceptionRaised);
    EXPECT_THROW(make<BassinCirculaire>(1, nullptr), NSExceptionRaised);
}

class NibHelperTest : public MemoryFixture {};

TEST_F(NibHelperTest, TheLastViewOfTheClassIsTheMainOne) {
    NSNib::registerBuilder(u"deux"_ns, [](NSObject*, NSMutableArray* o) -> BOOL {
        o->addObject(make<NSView>(NSMakeRect(1, 0, 1, 1)));
        o->addObject(make<NSView>(NSMakeRect(2, 0, 1, 1)));
        o->addObject(NSNumber::numberWithInt(3));
        return YES;
    });
    const auto charge = [](const Class* c) {
        return KCNibHelper::initAvecNomNib_bundleNib_owner_classeView(u"deux"_ns, nullptr, nullptr, c);
    };
    const auto un = charge(&classOf<NSView>());
    ASSERT_TRUE(un && un->vue());
    EXPECT_EQ(un->vue()->frame().origin.x, 2);
    EXPECT_EQ(un->vueItem(), nullptr);
    const Ref<NSObject> copie = un->copyWithZone();
    EXPECT_NE(as<KCNibHelper>(copie)->vue(), un->vue());
    EXPECT_EQ(charge(nullptr)->preteVuePrincipale(), nullptr);
    const Silence quiet;
    const auto sans = charge(&classOf<NSString>());
    ASSERT_TRUE(sans);
    EXPECT_EQ(sans->preteVuePrincipale(), nullptr);
    NSNib::registerBuilder(u"deux"_ns, {});
    EXPECT_EQ(un->copyWithZone(), nullptr);
}

} // namespace

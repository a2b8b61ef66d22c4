#include "Valeurs.h"

#include <map>

#include <libvue/platform/foundation/NSDictionary.h>

using namespace libvue;
using namespace libvue::textes;
using namespace libvue::valeurs;

namespace {

/// All keys fall into one place of a table.
class Clashing : public NSObject {
public:
    explicit Clashing(int v) : value(v) {}
    NSUInteger hash() const override { return 7; }
    BOOL isEqual(const NSObject* other) const override {
        auto* c = dynamic_cast<const Clashing*>(other);
        return c && c->value == value;
    }
    Ref<NSObject> copyWithZone() const override { return Ref<NSObject>(const_cast<Clashing*>(this)); }
    const int value;
};

} // namespace

TEST(NSDictionary, nullAndUncopiableKeysAreRaised) {
    class Plain : public NSObject {};
    auto d = NSMutableDictionary::dictionary();
    auto one = NSArray::arrayWithObject(number(1));
    expectRaised("NSInvalidArgumentException",
                 {[&] { d->setObject_forKey(nullptr, text(u"k")); }, [&] { d->setObject_forKey(number(1), nullptr); },
                  [&] { d->removeObjectForKey(nullptr); }, [&] { d->setObject_forKey(number(1), make<Plain>()); },
                  [&] { (void)NSDictionary::dictionaryWithObjects_forKeys(one, NSArray::array()); }});
    EXPECT_EQ(d->objectForKey(nullptr), nullptr);
    d->setValue_forKey(number(1), text(u"k"));
    d->setValue_forKey(nullptr, text(u"k"));
    EXPECT_EQ(d->count(), 0u);
}

TEST(NSDictionary, aKeyThatChangesLaterDoesNotChangeTheDictionary) {
    auto d = NSMutableDictionary::dictionary();
    auto key = NSMutableString::stringWithString(text(u"a"));
    d->setObject_forKey(number(1), key);
    key->appendString(text(u"b"));
    EXPECT_EQ(described(d->objectForKey(text(u"a"))), "1");
    EXPECT_EQ(d->objectForKey(text(u"ab")), nullptr);
}

TEST(NSDictionary, behavesAsAMapUnderAnySequenceOfChanges) {
    for (std::uint64_t seed = 1; seed <= 6; ++seed) {
        Dice dice(seed);
        const std::uint64_t keys = seed % 2 ? 12 : 300; // around the switch to the index, and far beyond it
        std::map<std::string, NSInteger> model;
        auto d = NSMutableDictionary::dictionary();
        for (int step = 0; step < 4000; ++step) {
            auto name = std::to_string(dice.below(keys));
            auto key = NSString::fromUTF8(name);
            switch (dice.below(step % 1000 < 700 ? 3 : 8)) {
            case 0:
            case 1: {
                auto v = static_cast<NSInteger>(dice.below(1000));
                d->setObject_forKey(number(v), key);
                model[name] = v;
                break;
            }
            case 7:
                if (dice.below(100) == 0) {
                    d->removeAllObjects();
                    model.clear();
                }
                break;
            default:
                d->removeObjectForKey(key);
                model.erase(name);
            }
            ASSERT_EQ(d->count(), model.size());
            auto found = model.find(name);
            ASSERT_EQ(unboxed<NSInteger>(d->objectForKey(key)), found == model.end() ? 0 : found->second);
        }
        std::map<std::string, NSInteger> seen;
        for (auto [key, value] : *d)
            ASSERT_TRUE(seen.emplace(described(key), unboxed<NSInteger>(value)).second);
        EXPECT_EQ(seen, model);
        auto copy = NSMutableDictionary::dictionaryWithDictionary(d);
        EXPECT_TRUE(copy->isEqual(d));
        copy->setObject_forKey(number(-1), text(u"new"));
        EXPECT_FALSE(copy->isEqual(d));
        EXPECT_EQ(d->objectForKey(text(u"new")), nullptr);
    }
}

TEST(NSDictionary, clashingHashes) {
    auto d = NSMutableDictionary::dictionary();
    for (int i = 0; i < 40; ++i)
        d->setObject_forKey(number(i), make<Clashing>(i));
    for (int i = 0; i < 40; i += 2)
        d->removeObjectForKey(make<Clashing>(i));
    for (int i = 0; i < 40; ++i)
        EXPECT_EQ(d->objectForKey(make<Clashing>(i)) != nullptr, i % 2 == 1) << i;
}

TEST(NSDictionary, keepsTheOrderOfTheKeys) {
    auto d = NSMutableDictionary::dictionaryWithObjectsAndKeys(
        {{text(u"z"), number(1)}, {text(u"a"), number(2)}, {text(u"m"), number(3)}});
    d->setObject_forKey(number(9), text(u"a"));
    d->removeObjectForKey(text(u"z"));
    d->setObject_forKey(number(4), text(u"z"));
    EXPECT_EQ(shown(d->allKeys()), "|a|m|z|");
    EXPECT_EQ(described(d), "{\\u000A    a = 9;\\u000A    m = 3;\\u000A    z = 4;\\u000A}");
    EXPECT_EQ(shown(d->keysSortedByValueUsingSelector(sel("compare:"))), "|m|z|a|");
    EXPECT_EQ(shown(d->allKeysForObject(number(3))), "|m|");
}

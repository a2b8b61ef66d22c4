#include "Valeurs.h"

#include <sys/stat.h>

#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSDate.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSNull.h>
#include <libvue/platform/foundation/NSProcessInfo.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/foundation/NSUserDefaults.h>

using namespace libvue;
using namespace libvue::valeurs;

namespace {

class NSUserDefaultsTest : public testing::Test {
protected:
    ~NSUserDefaultsTest() override { NSRunLoop::mainRunLoop()->cancelAll(); }
    Ref<NSUserDefaults> open() const { return make<NSUserDefaults>(folder.at("a/defaults.json")); }
    std::size_t asideCount() const {
        std::size_t n = 0;
        for (const auto& e : std::filesystem::directory_iterator(folder.path / "a"))
            n += e.path().filename().string().find(".damaged-") != std::string::npos;
        return n;
    }
    Folder folder;
    Log log;
};

} // namespace

TEST_F(NSUserDefaultsTest, valuesComeBackInTheNextProcess) {
    auto nested = NSDictionary::dictionaryWithObjectsAndKeys(
        {{text(u"liste"), NSArray::arrayWithObjects({number(1), text(u"deux")})}, {text(u"$date"), number(3)}});
    auto lookalike = NSDictionary::dictionaryWithObject_forKey(text(u"AAAA"), text(u"$data"));
    const struct {
        const char16_t* key;
        Ref<NSObject> value;
    } rows[] = {
        {u"texte", text(u"é\n\"\u4E00")},
        {u"", text(u"")},
        {u"entier", number(std::numeric_limits<NSInteger>::min())},
        {u"naturel", NSNumber::numberWithUnsignedInteger(~NSUInteger(0))},
        {u"réel", NSNumber::numberWithDouble(0.1)},
        {u"entier réel", NSNumber::numberWithDouble(3)},
        {u"infini", NSNumber::numberWithDouble(-HUGE_VAL)},
        {u"oui", NSNumber::numberWithBool(YES)},
        {u"données", NSData::from(std::string_view("\0\xFF", 2))},
        {u"date", NSDate::dateWithTimeIntervalSinceReferenceDate(-0.1)},
        {u"arbre", nested},
        {u"$dictionary", lookalike},
        {u"sosie", lookalike},
        {u"double sosie", NSDictionary::dictionaryWithObject_forKey(lookalike, text(u"$dictionary"))},
    };
    auto d = open();
    for (const auto& row : rows)
        d->setObject_forKey(row.value, text(row.key));
    EXPECT_TRUE(d->synchronize());
    d = nullptr;
    auto back = open();
    for (const auto& row : rows) {
        NSObject* v = back->objectForKey(text(row.key));
        EXPECT_TRUE(isEqual(v, row.value)) << shown(row.key) << ": " << described(v);
    }
    EXPECT_TRUE(as<NSNumber>(back->objectForKey(text(u"oui")))->isBoolean());
    EXPECT_TRUE(as<NSNumber>(back->objectForKey(text(u"entier réel")))->isFloating());
    EXPECT_TRUE(log.lines.empty());
    EXPECT_EQ(asideCount(), 0u);
}

TEST_F(NSUserDefaultsTest, aFileCutAnywhereIsPutAsideAndSaid) {
    {
        auto d = open();
        d->setObject_forKey(NSArray::arrayWithObjects({number(12), text(u"é")}), text(u"k"));
        d->setBool_forKey(NO, text(u"b"));
    }
    const std::string whole = folder.read("a/defaults.json");
    ASSERT_EQ(whole.back(), '\n');
    for (std::size_t n = 0; n + 1 < whole.size(); ++n) {
        folder.write("a/defaults.json", std::string_view(whole).substr(0, n));
        log.lines.clear();
        auto d = open();
        EXPECT_EQ(d->objectForKey(text(u"k")), nullptr) << n;
        ASSERT_EQ(log.lines.size(), 1u) << n;
        EXPECT_NE(log.lines[0].find("defaults.json"), std::string::npos);
        ASSERT_EQ(asideCount(), n + 1) << n; // none was overwritten
        d->setInteger_forKey(static_cast<NSInteger>(n), text(u"k"));
        EXPECT_TRUE(d->synchronize());
        EXPECT_EQ(open()->integerForKey(text(u"k")), static_cast<NSInteger>(n));
    }
    // What was put aside is what was there.
    std::size_t longest = 0;
    for (const auto& e : std::filesystem::directory_iterator(folder.path / "a"))
        if (e.path().filename().string().find(".damaged-") != std::string::npos)
            longest = std::max<std::size_t>(longest, e.file_size());
    EXPECT_EQ(longest, whole.size() - 2);
}

TEST_F(NSUserDefaultsTest, singleValuesThatMakeNoSenseAreLeftOut) {
    folder.write("a/defaults.json",
                 R"({"a": null, "b": 1, "c": {"$date": "hier"}, "d": {"$data": "*"}, "e": [null], "f": {"$x": 1}})");
    auto d = open();
    EXPECT_EQ(described(d->dictionaryRepresentation()), "{\\u000A    b = 1;\\u000A}");
    EXPECT_EQ(log.lines.size(), 5u);
    EXPECT_EQ(asideCount(), 0u);
}

TEST_F(NSUserDefaultsTest, unfitValuesAreRaised) {
    auto d = open();
    auto loop = NSMutableArray::array();
    loop->addObject(loop);
    const Ref<NSObject> unfit[] = {NSNull::null(), loop, NSArray::arrayWithObject(NSNull::null()),
                                   NSDictionary::dictionaryWithObject_forKey(text(u"v"), number(1))};
    for (const auto& v : unfit)
        EXPECT_EQ(raised([&] { d->setObject_forKey(v, text(u"k")); }), "NSInvalidArgumentException");
    EXPECT_EQ(raised([&] { d->setObject_forKey(number(1), nullptr); }), "NSInvalidArgumentException");
    EXPECT_EQ(d->objectForKey(text(u"k")), nullptr);
    loop->removeAllObjects();
}

TEST_F(NSUserDefaultsTest, whatIsStoredIsACopy) {
    auto d = open();
    auto list = NSMutableArray::arrayWithObject(NSMutableString::stringWithString(text(u"a")));
    d->setObject_forKey(list, text(u"k"));
    as<NSMutableString>(list->objectAtIndex(0))->appendString(text(u"b"));
    list->addObject(number(1));
    EXPECT_EQ(shown(d->stringArrayForKey(text(u"k"))), "|a|");
}

TEST_F(NSUserDefaultsTest, registeredValuesStandBehindStoredOnes) {
    auto d = open();
    d->registerDefaults(
        NSDictionary::dictionaryWithObjectsAndKeys({{text(u"n"), number(5)}, {text(u"t"), text(u"12.5")}}));
    EXPECT_EQ(d->integerForKey(text(u"n")), 5);
    d->setInteger_forKey(6, text(u"n"));
    EXPECT_EQ(d->integerForKey(text(u"n")), 6);
    d->removeObjectForKey(text(u"n"));
    EXPECT_EQ(d->integerForKey(text(u"n")), 5);
    EXPECT_EQ(d->doubleForKey(text(u"t")), 12.5);
    EXPECT_EQ(d->arrayForKey(text(u"t")), nullptr);
    EXPECT_EQ(described(d->stringForKey(text(u"n"))), "5");
    EXPECT_FALSE(d->boolForKey(text(u"absent")));
    d->synchronize();
    EXPECT_EQ(open()->objectForKey(text(u"n")), nullptr); // registered values are not written
}

TEST_F(NSUserDefaultsTest, changesArePostedAndObserved) {
    auto d = open();
    int posts = 0;
    auto token = NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
        NSUserDefaultsDidChangeNotification, d, nullptr, [&](NSNotification*) { ++posts; });
    d->setBool_forKey(YES, text(u"k"));
    d->removeObjectForKey(text(u"k"));
    d->removeObjectForKey(text(u"k")); // nothing is there
    EXPECT_EQ(posts, 2);
    NSNotificationCenter::defaultCenter()->removeObserver(token);
}

TEST_F(NSUserDefaultsTest, theNextTurnWrites) {
    auto d = open();
    d->setInteger_forKey(1, text(u"k"));
    EXPECT_FALSE(std::filesystem::exists(folder.path / "a/defaults.json"));
    NSRunLoop::mainRunLoop()->runOnce(0);
    EXPECT_EQ(open()->integerForKey(text(u"k")), 1);
}

TEST_F(NSUserDefaultsTest, aFailedWriteLeavesTheFileAndTheValues) {
    // The folder's place is taken by a file: that stops even the superuser.
    folder.write("a", "in the way");
    auto d = open();
    d->setInteger_forKey(2, text(u"k"));
    EXPECT_FALSE(d->synchronize());
    EXPECT_EQ(folder.read("a"), "in the way");
    EXPECT_EQ(d->integerForKey(text(u"k")), 2);
    EXPECT_FALSE(log.lines.empty());
    std::filesystem::remove(folder.path / "a");
    EXPECT_TRUE(d->synchronize()); // it is tried again
    EXPECT_EQ(open()->integerForKey(text(u"k")), 2);
}

TEST_F(NSUserDefaultsTest, aNewFileIsItsOwnersAlone) {
    open()->setInteger_forKey(1, text(u"k"));
    struct stat s {};
    ASSERT_EQ(::stat((folder.path / "a/defaults.json").c_str(), &s), 0);
    EXPECT_EQ(s.st_mode & 0777, 0600u);
}

TEST_F(NSUserDefaultsTest, theStandardOnesLieInTheConfigurationFolder) {
    Variable xdg("XDG_CONFIG_HOME", folder.path.c_str());
    NSUserDefaults::resetStandardUserDefaults();
    NSUserDefaults::standardUserDefaults()->setBool_forKey(YES, text(u"smartQuotes"));
    NSUserDefaults::resetStandardUserDefaults();
    auto name = NSProcessInfo::processInfo()->processName()->utf8();
    EXPECT_NE(folder.read(name + "/defaults.json").find("\"smartQuotes\": true"), std::string::npos);
    {
        Variable relative("XDG_CONFIG_HOME", "relative");
        Variable home("HOME", folder.path.c_str());
        EXPECT_EQ(NSUserDefaults::standardUserDefaults()->path()->utf8(),
                  (folder.path / ".config" / name / "defaults.json").string());
        NSUserDefaults::resetStandardUserDefaults();
    }
}

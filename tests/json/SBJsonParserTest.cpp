#include "Documents.h"
#include "Json.h"

#include "../fuzz/json/Epreuve.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include <libvue/text/json/SBJsonParser.h>
#include <libvue/text/json/SBJsonWriter.h>

using namespace libvue;
using namespace libvue::json;

namespace {

/// The value on one line, or the errors.
std::string read(const Ref<SBJsonParser>& parser, std::string_view json) {
    const auto value = parser->fragmentWithString(NSString::fromUTF8(json));
    return value ? make<SBJsonWriter>()->stringWithFragment(value)->utf8() : trace(*parser);
}

} // namespace

TEST(SBJsonParser, everyDocumentGivesItsValueOrItsErrors) {
    for (const Document& d : documents())
        EXPECT_EQ(read(make<SBJsonParser>(), d.json), d.result) << d.json.substr(0, 200);
}

TEST(SBJsonParser, theRootMayHaveToBeACollection) {
    const struct {
        Ref<NSString> json;
        const char* errors; // of a second reading by the same reader, which begins with none
    } rows[] = {
        {nullptr, "12 Input was 'nil'\n"},
        {u"4 2"_ns, "10 Garbage after JSON\n"},
        {u"42"_ns, "4 Valid fragment, but not JSON\n"},
        {u"null"_ns, "4 Valid fragment, but not JSON\n"},
        {u"[42]"_ns, ""},
        {u"{}"_ns, ""},
    };
    const auto parser = make<SBJsonParser>();
    for (const auto& row : rows) {
        EXPECT_EQ(parser->objectWithString(row.json) != nullptr, *row.errors == 0);
        EXPECT_EQ(trace(*parser), row.errors);
    }
    EXPECT_EQ(parser->fragmentWithString(nullptr), nullptr);
    EXPECT_EQ(trace(*parser), "12 Input was 'nil'\n");
}

TEST(SBJsonParser, nestingIsHeldToTheLimit) {
    const auto parser = make<SBJsonParser>();
    parser->setMaxDepth(2);
    // A failure leaves nothing behind for the next reading.
    EXPECT_EQ(read(parser, "[[{}]]"), "7 Nested too deep\n" + times(2, inArray));
    EXPECT_EQ(read(parser, "[{\"a\":1},{\"b\":2}]"), "[{\"a\":1},{\"b\":2}]");
    EXPECT_EQ(read(parser, "[{\"a\":[]}]"), "7 Nested too deep\n" + inObject("a") + inArray);
}

TEST(SBJsonParser, withoutALimitAMillionLevelsAreReadAndGivenUp) {
    const struct {
        const char *begin, *end;
        std::size_t times, levels;
    } rows[] = {{"[", "]", 1000000, 1000000}, {"[1,{\"b\":", ",\"c\":[]}]", 200000, 400000}};
    const auto parser = make<SBJsonParser>();
    parser->setMaxDepth(0);
    for (const auto& [begin, end, deep, expected] : rows) {
        const auto value =
            parser->fragmentWithString(NSString::fromLatin1(times(deep, begin) + "0" + times(deep, end)));
        const auto key = u"b"_ns;
        std::size_t levels = 0;
        for (NSObject* o = value; o; ++levels)
            if (auto* a = as<NSArray>(o))
                o = a->lastObject();
            else if (auto* d = as<NSDictionary>(o))
                o = d->objectForKey(key);
            else
                break;
        EXPECT_EQ(levels, expected);
    }
}

TEST(SBJsonParser, aLongChainOfErrorsIsWhole) {
    constexpr std::size_t deep = 100000;
    const auto parser = make<SBJsonParser>();
    parser->setMaxDepth(0);
    EXPECT_EQ(parser->fragmentWithString(NSString::fromLatin1(times(deep, "[{\"a\":"))), nullptr);
    const auto errors = parser->errorTrace();
    ASSERT_EQ(errors->count(), 2 * deep + 1);
    EXPECT_EQ(as<NSError>(errors->firstObject())->code(), 11);
    std::size_t chain = 0;
    for (NSError* e = as<NSError>(errors->lastObject()); e; ++chain)
        e = as<NSError>(e->userInfo()->objectForKey(NSUnderlyingErrorKey));
    EXPECT_EQ(chain, 2 * deep + 1);
}

TEST(SBJsonParser, theTraceCanBeObserved) {
    class Observer : public NSObject {
    public:
        void observeValueForKeyPath_ofObject_change_context(NSString* path, NSObject* object, NSDictionary*,
                                                            void*) override {
            EXPECT_TRUE(path->isEqualTo(u"errorTrace"));
            const auto errors = static_cast<SBJsonParser*>(object)->errorTrace();
            counts.push_back(errors ? errors->count() : 0);
        }
        std::vector<NSUInteger> counts;
    };
    const auto parser = make<SBJsonParser>();
    const auto observer = make<Observer>();
    parser->addObserver_forKeyPath_options_context(observer, u"errorTrace"_ns, 0, nullptr);
    (void)parser->objectWithString(u"[[x]]"_ns);
    EXPECT_EQ(observer->counts, (std::vector<NSUInteger>{0, 1, 2, 3}));
    const auto before = parser->errorTrace();
    (void)parser->objectWithString(u"[1]"_ns);
    EXPECT_EQ(observer->counts.back(), 0u);
    EXPECT_EQ(parser->errorTrace(), nullptr);
    EXPECT_EQ(before->count(), 3u); // what was handed out is a copy
    parser->removeObserver_forKeyPath(observer, u"errorTrace"_ns);
}

TEST(SBJsonParser, whatIsReadCanChange) {
    const auto parser = make<SBJsonParser>();
    const auto value = [&](const std::string& json) { return parser->fragmentWithString(NSString::fromUTF8(json)); };
    // Around the sizes at which texts and lists stand in their objects, and beyond.
    for (const std::size_t n : {0u, 7u, 8u, 14u, 15u, 16u, 17u, 30u, 31u, 59u, 60u, 61u, 300u, 486u, 487u, 488u}) {
        for (const std::string letter : {"a", "é", "名"}) {
            const auto read = value("\"" + times(n, letter) + "\"");
            auto* s = as<NSMutableString>(read);
            const auto whole = NSString::fromUTF8(times(n, letter));
            EXPECT_TRUE(s->isEqualToString(whole));
            EXPECT_EQ(s->hash(), whole->hash());
            const auto kept = s->copyWithZone();
            s->appendString(u"b名"_ns);
            s->insertString_atIndex(u"c"_ns, 0);
            EXPECT_EQ(s->utf8(), "c" + whole->utf8() + "b名");
            EXPECT_TRUE(kept->isEqual(whole));
        }
        const auto list = value("[" + times(n, "1 ") + "]");
        auto* a = as<NSMutableArray>(list);
        EXPECT_EQ(a->count(), n);
        const auto kept = a->copyWithZone();
        a->addObject(u"end"_ns);
        a->insertObject_atIndex(u"begin"_ns, 0);
        EXPECT_EQ(a->count(), n + 2);
        a->removeAllObjects();
        a->setArray(as<NSArray>(kept));
        EXPECT_TRUE(a->isEqual(kept));
    }
    const auto object = value("{\"a\":1,\"b\":2}");
    auto* d = as<NSMutableDictionary>(object);
    for (int i = 0; i < 40; ++i)
        d->setObject_forKey(u"x"_ns, NSString::fromUTF8(std::to_string(i)));
    d->removeObjectForKey(u"a"_ns);
    EXPECT_EQ(d->count(), 41u);
    EXPECT_TRUE(d->objectForKey(u"b"_ns)->isEqual(decimal("2")));
}

TEST(SBJsonParser, objectsOfManyKeysKeepTheLastOfEach) {
    std::string json, last;
    for (int i = 0; i < 300; ++i) {
        const std::string member = "\"key " + std::to_string(i % 100) + "\":" + std::to_string(i) + ",";
        json += member;
        if (i >= 200) last += member;
    }
    json.back() = last.back() = '}';
    const auto value = make<SBJsonParser>()->objectWithString(NSString::fromLatin1("{" + json));
    EXPECT_EQ(make<SBJsonWriter>()->stringWithObject(value)->utf8(), "{" + last);
    EXPECT_TRUE(as<NSDictionary>(value)->objectForKey(u"key 42"_ns)->isEqual(decimal("242")));
}

TEST(SBJsonParser, agreesWithThePlainReaderOnEveryShortText) {
    const std::string letters = "[]{},:\"1 a\\";
    for (std::size_t length = 0, texts = 1; length <= 4; ++length, texts *= letters.size())
        for (std::size_t n = 0; n < texts; ++n) {
            std::string json;
            for (std::size_t rest = n; json.size() < length; rest /= letters.size())
                json += letters[rest % letters.size()];
            ASSERT_EQ(essai::epreuve(json), "") << json;
        }
}

TEST(SBJsonParser, agreesWithThePlainReaderOnTheCorpusAndItsMutations) {
    std::mt19937 random(1);
    const auto below = [&](std::size_t n) { return random() % n; };
    const std::string letters = "[]{},:\"\\/ \t01-+.eEu9dDtrfnlé\x01";
    std::vector<std::string> documents;
    const auto corpus = std::filesystem::path(LIBVUE_TEST_IMAGES).parent_path() / "fuzz" / "json" / "corpus";
    for (const auto& file : std::filesystem::directory_iterator(corpus)) {
        std::ifstream in(file.path(), std::ios::binary);
        documents.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    ASSERT_GT(documents.size(), 30u);
    for (const std::string& document : documents) {
        EXPECT_EQ(essai::epreuve(document), "") << document;
        for (int i = 0; i < 200; ++i) {
            std::string json = document;
            for (std::size_t changes = 1 + below(3); changes > 0; --changes) {
                const std::size_t at = below(json.size() + 1);
                if (at < json.size() && below(2))
                    json.erase(at, 1 + below(3));
                else
                    json.insert(at, 1, letters[below(letters.size())]);
            }
            ASSERT_EQ(essai::epreuve(json), "") << json;
        }
    }
}

#include "Json.h"

#include <libvue/text/json/NSObjectSBJSON.h>
#include <libvue/text/json/NSStringSBJSON.h>
#include <libvue/text/json/SBJSON.h>

using namespace libvue;
using namespace libvue::json;
using textes::shown;

TEST(SBJSON, forwardsToItsReaderAndWriter) {
    const auto json = make<SBJSON>();
    const auto value = json->objectWithString(u"{\"b\":[1,2],\"a\":true}"_ns);
    ASSERT_TRUE(value);
    EXPECT_EQ(json->stringWithObject(value)->utf8(), R"({"b":[1,2],"a":true})");
    json->setSortKeys(YES);
    json->setHumanReadable(YES);
    EXPECT_TRUE(json->sortKeys() && json->humanReadable());
    EXPECT_EQ(json->stringWithObject(value)->utf8(), "{\n  \"a\" : true,\n  \"b\" : [\n    1,\n    2\n  ]\n}");

    Ref<NSError> error;
    EXPECT_TRUE(json->fragmentWithString_error(u"42"_ns, &error)->isEqual(decimal("42")));
    EXPECT_TRUE(json->objectWithString_allowScalar_error(u"null"_ns, YES, nullptr));
    EXPECT_EQ(shown(json->stringWithFragment_error(text(u"a"), &error).get()), "\"a\"");
    EXPECT_EQ(error, nullptr);
    EXPECT_EQ(json->errorTrace(), nullptr);
}

TEST(SBJSON, aFailureGivesTheTraceAndItsOutermostError) {
    const auto json = make<SBJSON>();
    Ref<NSError> error;
    EXPECT_EQ(json->objectWithString_error(u"[[x]]"_ns, &error), nullptr);
    EXPECT_EQ(trace(*json), "3 Unrecognised leading character\n3 Expected value while parsing array\n"
                            "3 Expected value while parsing array\n");
    EXPECT_EQ(error, json->errorTrace()->lastObject());
    // A success leaves the errors of an earlier failure where they are, the error too.
    EXPECT_TRUE(json->objectWithString_error(u"[]"_ns, &error));
    EXPECT_EQ(json->errorTrace()->count(), 3u);
    EXPECT_EQ(error->code(), 3);

    EXPECT_EQ(json->objectWithString_error(u"42"_ns, nullptr), nullptr);
    EXPECT_EQ(trace(*json), "4 Valid fragment, but not JSON\n");
    EXPECT_EQ(json->stringWithObject_error(text(u"a"), &error), nullptr);
    EXPECT_EQ(trace(*json), "4 Not valid type for JSON\n");
    EXPECT_EQ(error->code(), 4);
    EXPECT_EQ(json->objectWithString(nullptr), nullptr);
    EXPECT_EQ(trace(*json), "12 Input was 'nil'\n");
    EXPECT_EQ(json->stringWithObject_allowScalar_error(make<SBJsonBase>(), YES, &error), nullptr);
    EXPECT_EQ(error->code(), 1);
}

TEST(SBJSON, theLimitOfNestingReachesBoth) {
    const auto json = make<SBJSON>();
    EXPECT_EQ(json->maxDepth(), 512u);
    json->setMaxDepth(1);
    EXPECT_EQ(json->maxDepth(), 1u);
    EXPECT_EQ(json->objectWithString(u"[[]]"_ns), nullptr);
    EXPECT_EQ(trace(*json), "7 Nested too deep\n3 Expected value while parsing array\n");
    EXPECT_EQ(json->stringWithObject(nested(2)), nullptr);
    EXPECT_EQ(trace(*json), "7 Nested too deep\n");
    json->setMaxDepth(0);
    EXPECT_TRUE(json->objectWithString(u"[[]]"_ns));
    EXPECT_TRUE(json->stringWithObject(nested(2)));
}

TEST(JsonConveniences, logWhyTheyFail) {
    valeurs::Log log;
    EXPECT_EQ(JSONFragment(text(u"a"))->utf8(), "\"a\"");
    EXPECT_EQ(JSONRepresentation(list({decimal("1")}))->utf8(), "[1]");
    EXPECT_TRUE(JSONValue(u"[1]"_ns)->isEqual(list({decimal("1")})));
    EXPECT_TRUE(JSONFragmentValue(u"1"_ns)->isEqual(decimal("1")));
    EXPECT_FALSE(JSONFragment(nullptr) || JSONRepresentation(nullptr) || JSONValue(nullptr) ||
                 JSONFragmentValue(nullptr));
    EXPECT_TRUE(log.lines.empty());
    EXPECT_FALSE(JSONFragment(make<SBJsonBase>()) || JSONRepresentation(text(u"a")) || JSONValue(u"1"_ns) ||
                 JSONFragmentValue(u"x"_ns));
    const struct {
        std::string operation, reason;
    } rows[] = {
        {"JSONFragment", "JSON serialisation not supported for SBJsonBase"},
        {"JSONRepresentation", "Not valid type for JSON"},
        {"JSONValue", "Valid fragment, but not JSON"},
        {"JSONFragmentValue", "Unrecognised leading character"},
    };
    ASSERT_EQ(log.lines.size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_TRUE(log.lines[i].starts_with("-" + rows[i].operation + " failed. Error trace is: (")) << log.lines[i];
        EXPECT_NE(log.lines[i].find(rows[i].reason), std::string::npos) << log.lines[i];
    }
}

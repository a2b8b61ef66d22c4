// Documents through the tool itself: what each says, and with which status.
#include "../foundation/Valeurs.h"

#include <cctype>
#include <cerrno>
#include <functional>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

using namespace libvue;
using valeurs::Folder;

extern char** environ;

namespace {

struct Result {
    int status = -1;
    std::string out, errors;
};

/// Runs the tool; the document comes on its standard input.
class Tool {
public:
    Result run(const std::string& document, std::vector<std::string> arguments) {
        const char* examples = std::getenv("LIBVUE_EXAMPLES");
        const std::string program = std::string(examples ? examples : ".") + "/vuejson";
        arguments.insert(arguments.begin(), program);
        std::vector<char*> argv;
        argv.reserve(arguments.size() + 1);
        for (std::string& a : arguments)
            argv.push_back(a.data());
        argv.push_back(nullptr);
        folder_.write("in", document);
        posix_spawn_file_actions_t files;
        posix_spawn_file_actions_init(&files);
        const char* const names[] = {"in", "out", "errors"};
        for (int i = 0; i < 3; ++i)
            posix_spawn_file_actions_addopen(&files, i, (folder_.path / names[i]).c_str(),
                                             i == 0 ? O_RDONLY : O_WRONLY | O_CREAT | O_TRUNC, 0600);
        pid_t child = 0;
        const int failed = posix_spawn(&child, program.c_str(), &files, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&files);
        Result r;
        if (failed) {
            ADD_FAILURE() << program << " cannot be run";
            return r;
        }
        int status = 0;
        while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
        }
        r.status = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
        r.out = folder_.read("out");
        r.errors = folder_.read("errors");
        return r;
    }

private:
    Folder folder_;
};

std::string shortened(const std::string& s) { return s.size() < 300 ? s : s.substr(0, 300) + "…"; }

class Documents : public testing::Test {
protected:
    /// The document is right, and is written so on one line.
    void gives(const std::string& document, const std::string& compact, const std::string& option = "--fragment") {
        const Result r = tool_.run(document, {"--compact", option});
        EXPECT_EQ(r.status, 0) << shortened(document) << "\n" << shortened(r.errors);
        EXPECT_TRUE(r.out == compact + "\n") << shortened(document) << "\ngave " << shortened(r.out);
        EXPECT_EQ(r.errors, "");
    }
    /// The document has these errors, the innermost first.
    void fails(const std::string& document, const std::string& errors, const std::string& option = "--fragment") {
        const Result r = tool_.run(document, {"--compact", option});
        EXPECT_EQ(r.status, 1) << shortened(document);
        EXPECT_EQ(r.out, "") << shortened(document);
        EXPECT_TRUE(r.errors == errors) << shortened(document) << "\ngave " << shortened(r.errors);
    }
    Tool tool_;
};

const std::string inArray = "3 Expected value while parsing array\n";
std::string inObject(const std::string& key) { return "3 Object value expected for key: " + key + "\n"; }

std::string times(std::size_t n, const std::string& s) {
    std::string all;
    while (n--)
        all += s;
    return all;
}

std::string hex(unsigned v) {
    char text[16];
    std::snprintf(text, sizeof text, "%x", v);
    return text;
}

} // namespace

TEST_F(Documents, thatAreRight) {
    const struct {
        std::string document, compact;
    } rows[] = {
        {"[]", "[]"},
        {"{}", "{}"},
        {" \t\n\v\f\r[ \t\n\v\f\r] \t\n\v\f\r", "[]"},
        {" \t\n\v\f\r{ \t\n\v\f\r} \t\n\v\f\r", "{}"},
        {"[ 1 , 2 ]", "[1,2]"},
        {"{ \"a\" : 1 , \"b\" : [ ] }", R"({"a":1,"b":[]})"},
        {"[true,false,null]", "[true,false,null]"},
        {"true", "true"},
        {" null ", "null"},
        {"false\n", "false"},
        {"\"\"", "\"\""},
        {"\"a/b\"", "\"a/b\""},
        {"[\"é\",\"名前\",\"😊\"]", "[\"é\",\"名前\",\"😊\"]"},
        {"{\"clé\":\"valeur\"}", "{\"clé\":\"valeur\"}"},
        {"{\"\":0}", "{\"\":0}"},
        {"{\"a\":1,\"a\":2}", R"({"a":2})"},
        {"{\"b\":1,\"a\":2,\"b\":3}", R"({"b":3,"a":2})"},
        {"[[],[[]],{}]", "[[],[[]],{}]"},
        // Commas between elements may be left out.
        {"[1 2 3]", "[1,2,3]"},
        {"[1\n2,3]", "[1,2,3]"},
        {"{\"a\":1 \"b\":2}", R"({"a":1,"b":2})"},
        {"{\"a\":[]\"b\":{}}", R"({"a":[],"b":{}})"},
        {"[\"a\"\"b\"]", R"(["a","b"])"},
        {"[truefalsenull]", "[true,false,null]"},
        {"[1\"a\"{}[]]", R"([1,"a",{},[]])"},
        {"[1-2]", "[1,-2]"},
        {"[[1][2]]", "[[1],[2]]"},
        // The text ends at its first NUL.
        {std::string("[1]\0garbage", 11), "[1]"},
        {"\"\x7F\"", "\"\x7F\""},
    };
    for (const auto& row : rows)
        gives(row.document, row.compact);
}

TEST_F(Documents, whoseRootIsAScalar) {
    for (const char* scalar : {"42", "\"a\"", "true", "null", "-0.5"})
        fails(scalar, "4 Valid fragment, but not JSON\n", "--compact");
    gives("[42]", "[42]", "--compact");
    gives("{}", "{}", "--compact");
    fails("nul", "3 Expected 'null'\n", "--compact");
}

TEST_F(Documents, withNumbers) {
    const std::string z30(30, '0'), z127(127, '0');
    const struct {
        std::string number, written;
    } right[] = {
        {"0", "0"},
        {"-0", "0"},
        {"0.0", "0"},
        {"-0.000e12", "0"},
        {"1", "1"},
        {"-1", "-1"},
        {"10", "10"},
        {"1.50", "1.5"},
        {"0.1", "0.1"},
        {"-0.001", "-0.001"},
        {"1E-2", "0.01"},
        {"1e2", "100"},
        {"1e+2", "100"},
        {"1.5e3", "1500"},
        {"12.75e1", "127.5"},
        {"100e-2", "1"},
        {"0e5", "0"},
        {"9007199254740993", "9007199254740993"},
        {"18446744073709551616", "18446744073709551616"},
        {"-65.613616999999977", "-65.613616999999977"},
        {"12345678901234567890123456789012345678", "12345678901234567890123456789012345678"},
        {"0.12345678901234567890123456789012345678", "0.12345678901234567890123456789012345678"},
        // Thirty-eight digits are kept, the last one rounded.
        {"1234567890123456789012345678901234567849", "1234567890123456789012345678901234567800"},
        {"1234567890123456789012345678901234567850", "1234567890123456789012345678901234567900"},
        {"1" + z30, "1" + z30},
        {"1e127", "1" + z127},
        {"1e-128", "0." + z127 + "1"},
        {"1e-400", "0"},
        {"1e400", "NaN"},
        {"-1e400", "NaN"},
        {"1e-99999999999999999999", "0"},
    };
    for (const auto& row : right) {
        gives(row.number, row.written);
        gives("[" + row.number + ",{\"n\":" + row.number + "}]", "[" + row.written + ",{\"n\":" + row.written + "}]");
    }
    const struct {
        const char *number, *error;
    } wrong[] = {
        {"+1", "2 Leading + disallowed in number\n"},
        {"+", "2 Leading + disallowed in number\n"},
        {"01", "2 Leading 0 disallowed in number\n"},
        {"00", "2 Leading 0 disallowed in number\n"},
        {"-01", "2 Leading 0 disallowed in number\n"},
        {"-", "2 No digits after initial minus\n"},
        {"--1", "2 No digits after initial minus\n"},
        {"-.5", "2 No digits after initial minus\n"},
        {"-a", "2 No digits after initial minus\n"},
        {"1.", "2 No digits after decimal point\n"},
        {"0.", "2 No digits after decimal point\n"},
        {"1.e5", "2 No digits after decimal point\n"},
        {"1.x", "2 No digits after decimal point\n"},
        {"1e", "2 No digits after exponent\n"},
        {"1E", "2 No digits after exponent\n"},
        {"1e+", "2 No digits after exponent\n"},
        {"1e-", "2 No digits after exponent\n"},
        {"1.5ex", "2 No digits after exponent\n"},
        {"1e.5", "2 No digits after exponent\n"},
        {".5", "3 Unrecognised leading character\n"},
        {"Infinity", "3 Unrecognised leading character\n"},
        {"NaN", "3 Unrecognised leading character\n"},
    };
    for (const auto& row : wrong) {
        fails(row.number, row.error);
        fails(std::string("[") + row.number + "]", row.error + inArray);
        fails(std::string("{\"k\":") + row.number + "}", row.error + inObject("k"));
    }
    // What ends a number begins what follows it.
    fails("1.5.2", "10 Garbage after JSON\n");
    fails("0x10", "10 Garbage after JSON\n");
    fails("[1.5.2]", "3 Unrecognised leading character\n" + inArray);
}

TEST_F(Documents, withEveryEscape) {
    const std::string known = "\"\\/bfnrtu";
    const struct {
        const char *escape, *written;
    } rows[] = {
        {"\\\"", "\\\""}, {"\\\\", "\\\\"}, {"\\/", "/"},   {"\\b", "\\b"},
        {"\\f", "\\f"},   {"\\n", "\\n"},   {"\\r", "\\r"}, {"\\t", "\\t"},
    };
    for (const auto& row : rows) {
        gives(std::string("\"") + row.escape + "\"", std::string("\"") + row.written + "\"");
        gives(std::string("{\"a") + row.escape + "b\":\"" + row.escape + row.escape + "\"}",
              std::string("{\"a") + row.written + "b\":\"" + row.written + row.written + "\"}");
    }
    for (char c = 0x20; c < 0x7F; ++c)
        if (known.find(c) == std::string::npos)
            fails(std::string("[\"\\") + c + "\"]",
                  "8 Illegal escape sequence '0x" + hex(static_cast<unsigned char>(c)) + "'\n" + inArray);
    fails("\"\\\n\"", "8 Illegal escape sequence '0xa'\n");
    fails("{\"a\\q\":1}", "8 Illegal escape sequence '0x71'\n3 Object key string expected\n");
}

TEST_F(Documents, withEveryControlCharacter) {
    for (unsigned c = 1; c < 0x20; ++c) {
        const std::string document = std::string("[\"a") + static_cast<char>(c) + "b\"]";
        if (c <= 0x19)
            fails(document, "5 Unescaped control character '0x" + hex(c) + "'\n" + inArray);
        else
            gives(document, "[\"a\\u00" + hex(c) + "b\"]");
        // Escaped, each comes through.
        const std::string digits = (c < 0x10 ? "0" : "") + hex(c);
        const char* const letter = c == 8    ? "\\b"
                                   : c == 9  ? "\\t"
                                   : c == 10 ? "\\n"
                                   : c == 12 ? "\\f"
                                   : c == 13 ? "\\r"
                                             : nullptr;
        gives("\"\\u00" + digits + "\"", letter ? std::string("\"") + letter + "\"" : "\"\\u00" + digits + "\"");
    }
    gives("\"\\u0000\"", "\"\\u0000\"");
}

TEST_F(Documents, withUnicodeEscapes) {
    const std::string broken = "6 Broken unicode character\n";
    const std::string noQuad = "6 Missing hex digit in quad\n6 Missing hex quad\n" + broken;
    const std::string noLow = "6 Missing low character in surrogate pair\n" + broken;
    const std::string badLow = "6 Invalid low surrogate char\n" + broken;
    const std::string badHigh = "6 Invalid high character in surrogate pair\n" + broken;
    const struct {
        const char *escape, *written;
    } right[] = {
        {"\\u0041", "A"},
        {"\\u00e9\\u00E9", "éé"},
        {"\\u0022", "\\\""},
        {"\\u005c", "\\\\"},
        {"\\u540D", "名"},
        {"\\uD7FF", "\xED\x9F\xBF"},
        {"\\uE000", "\xEE\x80\x80"},
        {"\\uffff", "\xEF\xBF\xBF"},
        // A pair leaves the low sixteen bits of its character.
        {"\\ud83d\\ude00", "\xEF\x98\x80"},
        {"\\ud800\\udffe", "\xCF\xBE"},
        {"\\uD801\\uDC37", "\xD0\xB7"},
    };
    for (const auto& row : right)
        gives(std::string("\"<") + row.escape + ">\"", std::string("\"<") + row.written + ">\"");
    const struct {
        const char* escape;
        const std::string& errors;
    } wrong[] = {
        {"\\u", noQuad},
        {"\\u12", noQuad},
        {"\\u123g", noQuad},
        {"\\u 123", noQuad},
        {"\\ud800", noLow},
        {"\\ud800x", noLow},
        {"\\udbff\\n", noLow},
        {"\\ud800\\u0041", badLow},
        {"\\ud800\\udfff", badLow},
        {"\\ud800\\ud800", badLow},
        {"\\ud800\\ue000", badLow},
        {"\\udc00", badHigh},
        {"\\udfff", badHigh},
        {"\\ude00\\ud83d", badHigh},
    };
    for (const auto& row : wrong) {
        fails(std::string("\"") + row.escape + "\"", row.errors);
        fails(std::string("[\"") + row.escape + "\"]", row.errors + inArray);
    }
    fails("\"\\ud800\\u12\"", "6 Missing hex digit in quad\n" + noLow);
}

TEST_F(Documents, thatStopOrGoOn) {
    const struct {
        std::string document, errors;
    } rows[] = {
        {"", "11 Unexpected end of string\n"},
        {" \n\t", "11 Unexpected end of string\n"},
        {"[", "11 End of input while parsing array\n"},
        {"[ ", "11 Unexpected end of string\n" + inArray},
        {"[1", "11 End of input while parsing array\n"},
        {"[1 ", "11 End of input while parsing array\n"},
        {"[1,", "11 End of input while parsing array\n"},
        {"[1, ", "11 End of input while parsing array\n"},
        {"[[", "11 End of input while parsing array\n" + inArray},
        {"[[1]", "11 End of input while parsing array\n"},
        {"{", "11 End of input while parsing object\n"},
        {"{ ", "3 Object key string expected\n"},
        {"{\"", "5 Unescaped control character '0x0'\n3 Object key string expected\n"},
        {"{\"a\"", "3 Expected ':' separating key and value\n"},
        {"{\"a\":", "11 Unexpected end of string\n" + inObject("a")},
        {"{\"a\":1", "11 End of input while parsing object\n"},
        {"{\"a\":1,", "11 End of input while parsing object\n"},
        {"{\"a\":{", "11 End of input while parsing object\n" + inObject("a")},
        {"\"", "5 Unescaped control character '0x0'\n"},
        {"\"abc", "5 Unescaped control character '0x0'\n"},
        {"\"a\\n", "11 Unexpected EOF while parsing string\n"},
        {"\"\\u0041", "11 Unexpected EOF while parsing string\n"},
        {"\"a\\", "8 Illegal escape sequence '0x0'\n"},
        {"t", "3 Expected 'true'\n"},
        {"tru", "3 Expected 'true'\n"},
        {"True", "3 Unrecognised leading character\n"},
        {"tRUE", "3 Expected 'true'\n"},
        {"f", "3 Expected 'false'\n"},
        {"fals", "3 Expected 'false'\n"},
        {"falsy", "3 Expected 'false'\n"},
        {"n", "3 Expected 'null'\n"},
        {"nil", "3 Expected 'null'\n"},
        {"[tru]", "3 Expected 'true'\n" + inArray},
        {"truex", "10 Garbage after JSON\n"},
        {"[truex]", "3 Unrecognised leading character\n" + inArray},
        {"[]]", "10 Garbage after JSON\n"},
        {"[] []", "10 Garbage after JSON\n"},
        {"{},", "10 Garbage after JSON\n"},
        {"1 2", "10 Garbage after JSON\n"},
        {"\"a\"b", "10 Garbage after JSON\n"},
        {"[1,]", "9 Trailing comma disallowed in array\n"},
        {"[1 , ]", "9 Trailing comma disallowed in array\n"},
        {"[,]", "3 Unrecognised leading character\n" + inArray},
        {"[,1]", "3 Unrecognised leading character\n" + inArray},
        {"[1,,2]", "3 Unrecognised leading character\n" + inArray},
        {"{\"a\":1,}", "9 Trailing comma disallowed in object\n"},
        {"{\"a\":1 , }", "9 Trailing comma disallowed in object\n"},
        {"{,}", "3 Object key string expected\n"},
        {"{\"a\":1,,\"b\":2}", "3 Object key string expected\n"},
        {"{a:1}", "3 Object key string expected\n"},
        {"{1:2}", "3 Object key string expected\n"},
        {"{null:2}", "3 Object key string expected\n"},
        {"{\"a\" 1}", "3 Expected ':' separating key and value\n"},
        {"{\"a\",1}", "3 Expected ':' separating key and value\n"},
        {"{\"a\"}", "3 Expected ':' separating key and value\n"},
        {"{\"a\":}", "3 Unrecognised leading character\n" + inObject("a")},
        {"{\"é\":]}", "3 Unrecognised leading character\n" + inObject("é")},
        {"[}", "3 Unrecognised leading character\n" + inArray},
        {"{]", "3 Object key string expected\n"},
        {"]", "3 Unrecognised leading character\n"},
        {"}", "3 Unrecognised leading character\n"},
        {"'a'", "3 Unrecognised leading character\n"},
        {"// rien", "3 Unrecognised leading character\n"},
        {"[1, // rien\n2]", "3 Unrecognised leading character\n" + inArray},
        {"\xEF\xBB\xBF[]", "3 Unrecognised leading character\n"},
        {"\xC2\xA0[]", "3 Unrecognised leading character\n"},
        // Each level adds its own, from the inside out.
        {"[[[tru]]]", "3 Expected 'true'\n" + times(3, inArray)},
        {"{\"a\":{\"b\":[}}", "3 Unrecognised leading character\n" + inArray + inObject("b") + inObject("a")},
        {"[{\"a\":[{\"b\":01}]}]",
         "2 Leading 0 disallowed in number\n" + inObject("b") + inArray + inObject("a") + inArray},
    };
    for (const auto& row : rows)
        fails(row.document, row.errors);
}

TEST_F(Documents, thatNestDeeply) {
    const auto arrays = [](std::size_t n) { return times(n, "[") + times(n, "]"); };
    const auto objects = [](std::size_t n) { return times(n, "{\"k\":") + "1" + times(n, "}"); };
    gives(arrays(512), arrays(512));
    gives(objects(512), objects(512));
    fails(arrays(513), "7 Nested too deep\n" + times(512, inArray));
    fails(objects(513), "7 Nested too deep\n" + times(512, inObject("k")));
    fails(times(100000, "["), "7 Nested too deep\n" + times(512, inArray));
    // Containers beside each other do not add up.
    gives("[" + times(600, "[],") + "[]]", "[" + times(600, "[],") + "[]]");

    const std::string deep = arrays(200000);
    const Result free = tool_.run(deep, {"--compact", "--profondeur", "0"});
    EXPECT_EQ(free.status, 0);
    EXPECT_TRUE(free.out == deep + "\n");
    const Result open = tool_.run(times(200000, "{\"k\":"), {"--compact", "--profondeur", "0"});
    EXPECT_EQ(open.status, 1);
    EXPECT_TRUE(open.errors == "11 Unexpected end of string\n" + times(200000, inObject("k")));
    const Result two = tool_.run("[[[]]]", {"--profondeur", "2"});
    EXPECT_EQ(two.status, 1);
    EXPECT_EQ(two.errors, "7 Nested too deep\n" + times(2, inArray));
}

TEST_F(Documents, areWrittenAsAsked) {
    const std::string document = R"({"b":[1,{"d":null,"c":[]}],"a":{},"é":"x","A":true})";
    const struct {
        std::vector<std::string> options;
        std::string out;
    } rows[] = {
        {{"--compact"}, document},
        {{"--compact", "--trie"}, R"({"A":true,"a":{},"b":[1,{"c":[],"d":null}],"é":"x"})"},
        {{},
         "{\n  \"b\" : [\n    1,\n    {\n      \"d\" : null,\n      \"c\" : []\n    }\n  ],\n  \"a\" : {},\n"
         "  \"é\" : \"x\",\n  \"A\" : true\n}"},
        {{"--indente", "--trie"},
         "{\n  \"A\" : true,\n  \"a\" : {},\n  \"b\" : [\n    1,\n    {\n      \"c\" : [],\n      \"d\" : null\n    }\n"
         "  ],\n  \"é\" : \"x\"\n}"},
    };
    for (const auto& row : rows) {
        const Result r = tool_.run(document, row.options);
        EXPECT_EQ(r.status, 0) << r.errors;
        EXPECT_EQ(r.out, row.out + "\n");
    }
    const Result file = [&] {
        Folder folder;
        folder.write("document.json", document);
        return tool_.run("", {"--compact", (folder.path / "document.json").string()});
    }();
    EXPECT_EQ(file.out, document + "\n");
}

TEST_F(Documents, thatCannotBeRead) {
    Folder folder;
    const struct {
        std::string document;
        std::vector<std::string> arguments;
        std::string says;
    } rows[] = {
        {"", {(folder.path / "absent").string()}, "absent"},
        {"", {folder.path.string()}, folder.path.string()},
        {"[\"\xFF\"]", {}, "UTF-8"},
        {"[\"\xED\xA0\x80\"]", {}, "UTF-8"},
        {"[]", {"--rien"}, "--rien"},
        {"[]", {"--profondeur"}, "--profondeur"},
        {"[]", {"--profondeur", "-1"}, "-1"},
        {"[]", {"--profondeur", "99999999999999999999"}, "99999999999999999999"},
        {"[]", {"--profondeur", "0"}, "--compact"},
        {"[]", {"--indente", "--compact"}, "--compact"},
        {"[]", {"un", "deux"}, "un seul"},
    };
    for (const auto& row : rows) {
        const Result r = tool_.run(row.document, row.arguments);
        EXPECT_EQ(r.status, 2) << row.says;
        EXPECT_EQ(r.out, "");
        EXPECT_NE(r.errors.find(row.says), std::string::npos) << r.errors;
    }
    const Result help = tool_.run("", {"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.errors, "");
    for (const char* option : {"--indente", "--compact", "--trie", "--fragment", "--profondeur", "--help"})
        EXPECT_NE(help.out.find(option), std::string::npos) << option;
}

TEST_F(Documents, withAZeroByteEndThere) {
    const std::string zero(1, '\0');
    gives("[1,2]" + zero + "what follows does not count", "[1,2]");
    fails("[1," + zero + "2]", "11 End of input while parsing array\n");
    fails("[\"a" + zero + "b\"]", "5 Unescaped control character '0x0'\n" + inArray);
    fails(zero, "11 Unexpected end of string\n");
    gives("[\"\\u0000b\"]", "[\"\\u0000b\"]");
}

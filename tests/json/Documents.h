#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace libvue::json {

/// A document, and what a reader that takes any value makes of it: the value on one line; or its errors, "code message"
/// a line, the innermost first.
struct Document {
    std::string json, result;
    [[nodiscard]] bool isRight() const { return !result.ends_with('\n'); }
};

inline std::string times(std::size_t n, std::string_view s) {
    std::string all;
    all.reserve(n * s.size());
    while (n--)
        all += s;
    return all;
}

inline const std::string inArray = "3 Expected value while parsing array\n";
inline std::string inObject(const std::string& key) { return "3 Object value expected for key: " + key + "\n"; }

/// Right ones, broken ones, deep ones, large numbers, every escape and every control character.
inline std::vector<Document> documents() {
    using namespace std::string_literals;
    const std::string endOfString = "11 Unexpected end of string\n",
                      endOfArray = "11 End of input while parsing array\n",
                      endOfObject = "11 End of input while parsing object\n",
                      endInText = "11 Unexpected EOF while parsing string\n", noKey = "3 Object key string expected\n",
                      noColon = "3 Expected ':' separating key and value\n",
                      unknown = "3 Unrecognised leading character\n", garbage = "10 Garbage after JSON\n",
                      arrayComma = "9 Trailing comma disallowed in array\n",
                      objectComma = "9 Trailing comma disallowed in object\n",
                      unended = "5 Unescaped control character '0x0'\n", broken = "6 Broken unicode character\n",
                      noQuad = "6 Missing hex digit in quad\n6 Missing hex quad\n",
                      noLow = "6 Missing low character in surrogate pair\n";
    std::vector<Document> all = {
        // What begins a value, and what follows it.
        {"", endOfString},
        {" \t\n\v\f\r", endOfString},
        {"\0[]"s, endOfString},
        {"[1,2]\0what follows does not count"s, "[1,2]"},
        {"[1,\0 2]"s, endOfArray},
        {"[\"a\0b\"]"s, unended + inArray},
        {"\v\f[\v1\f,\v2\f]\v\f", "[1,2]"},
        {"[" + times(7, " \t\n\v\f\r") + "1" + times(9, "\r\n") + "," + times(33, " ") + "2]", "[1,2]"},
        {"\xC2\xA0[]", unknown},
        {"\xEF\xBB\xBF[]", unknown},
        {"]", unknown},
        {"'a'", unknown},
        {"// rien", unknown},
        {"[] x", garbage},
        {"1 2", garbage},
        {"\"a\"b", garbage},
        // Words: what follows them is not looked at.
        {"true", "true"},
        {"false\n", "false"},
        {" null ", "null"},
        {"tru", "3 Expected 'true'\n"},
        {"True", unknown},
        {"falsE", "3 Expected 'false'\n"},
        {"n", "3 Expected 'null'\n"},
        {"[nil]", "3 Expected 'null'\n" + inArray},
        {"truex", garbage},
        {"[truefalsenull]", "[true,false,null]"},
        {"[truex]", unknown + inArray},
        // Arrays. Commas between the elements may be left out.
        {"[]", "[]"},
        {"[1 2\n3]", "[1,2,3]"},
        {"[1[2]\"a\"{}null]", "[1,[2],\"a\",{},null]"},
        {"[", endOfArray},
        {"[ ", endOfString + inArray},
        {"[1", endOfArray},
        {"[1, ", endOfArray},
        {"[[", endOfArray + inArray},
        {"[1,]", arrayComma},
        {"[,]", unknown + inArray},
        {"[1,,2]", unknown + inArray},
        {"[[[x]]]", unknown + times(3, inArray)},
        {"[}", unknown + inArray},
        // Objects.
        {"{}", "{}"},
        {"{\"clé\" : 1 , \"b\" : [ ]}", "{\"clé\":1,\"b\":[]}"},
        {"{\"a\":1 \"b\":{}}", R"({"a":1,"b":{}})"},
        {"{\"b\":1,\"a\":2,\"b\":3}", R"({"b":3,"a":2})"},
        {"{\"\":{\"\":[]}}", R"({"":{"":[]}})"},
        {"{", endOfObject},
        {"{ ", noKey},
        {"{\"a\":1", endOfObject},
        {"{\"a\":{", endOfObject + inObject("a")},
        {"{\"a\":1,}", objectComma},
        {"{\"a\":1,,\"b\":2}", noKey},
        {"{,}", noKey},
        {"{1:2}", noKey},
        {"{\"a", unended + noKey},
        {"{\"\\x\":1}", "8 Illegal escape sequence '0x78'\n" + noKey},
        {"{\"a\"}", noColon},
        {"{\"a\"", noColon},
        {"{\"a\" 1}", noColon},
        {"{\"a\":", endOfString + inObject("a")},
        {"{\"a\":}", unknown + inObject("a")},
        {"{\"a\":{\"b\" 1}}", noColon + inObject("a")},
        {"[{\"a\":1,}]", objectComma + inArray},
        {"[1,{\"é\\n\":x}]", unknown + inObject("é\n") + inArray},
        {"[{\"a\":[{\"b\":01}]}]",
         "2 Leading 0 disallowed in number\n" + inObject("b") + inArray + inObject("a") + inArray},
        // Texts.
        {"\"\"", "\"\""},
        {"[\"é\",\"名前\",\"😊\",\"\x7F\"]", "[\"é\",\"名前\",\"😊\",\"\x7F\"]"},
        {R"("\"\\\/\b\f\n\r\t")", R"("\"\\/\b\f\n\r\t")"},
        {R"({"\"\\\/\b":"\f\n"})", R"({"\"\\/\b":"\f\n"})"},
        {R"("\u0041\u00e9\uABCD\u0000\u0022\u005c")", "\"Aé\xEA\xAF\x8D\\u0000\\\"\\\\\""},
        {R"("\uD7FF\uE000\uffff")", "\"\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF\""},
        {"\"", unended},
        {"\"é", unended},
        {"\"a\\n", endInText},
        {"\"\\u0041", endInText},
        {"\"\\", "8 Illegal escape sequence '0x0'\n"},
        {"\"\\\xC3\xA9\"", "8 Illegal escape sequence '0xc3'\n"},
        {"\"\\\n\"", "8 Illegal escape sequence '0xa'\n"},
        // A pair leaves the low sixteen bits of its character.
        {R"("\ud83d\ude00")", "\"\xEF\x98\x80\""},
        {R"("\uD801\uDC37")", "\"\xD0\xB7\""},
        {R"("\uD800\uDC00")", "\"\\u0000\""},
        {R"("\uDBFF\uDFFE")", "\"\xEF\xBF\xBE\""},
        {R"("\ud800\udfff")", "6 Invalid low surrogate char\n" + broken},
        {R"("\ud800\u0041")", "6 Invalid low surrogate char\n" + broken},
        {R"("\ud800\ud800")", "6 Invalid low surrogate char\n" + broken},
        {R"("\ud800")", noLow + broken},
        {R"("\ud800\n")", noLow + broken},
        {R"("\ud800\u12")", "6 Missing hex digit in quad\n" + noLow + broken},
        {R"("\udc00")", "6 Invalid high character in surrogate pair\n" + broken},
        {R"("\udfff\ud800")", "6 Invalid high character in surrogate pair\n" + broken},
        {R"(["\u12g4"])", noQuad + broken + inArray},
        {R"("\u 123")", noQuad + broken},
        {"\"\\u", noQuad + broken},
        // What ends a number begins what follows it.
        {"1.2.3", garbage},
        {"0x10", garbage},
        {"[1-2]", "[1,-2]"},
        {"[0-0.5e1]", "[0,-5]"},
        {"[1.5.2]", unknown + inArray},
    };

    const std::string z30(30, '0'), z127(127, '0');
    const Document numbers[] = {
        {"0", "0"},
        {"-0", "0"},
        {"0.0", "0"},
        {"-0.000e12", "0"},
        {"-12.50", "-12.5"},
        {"1E-2", "0.01"},
        {"1e+2", "100"},
        {"12.75e1", "127.5"},
        {"0e5", "0"},
        {"9007199254740993", "9007199254740993"},
        {"18446744073709551616", "18446744073709551616"},
        {"-65.613616999999977", "-65.613616999999977"},
        // Thirty-eight digits are kept, the last one rounded.
        {"1234567890123456789012345678901234567849", "1234567890123456789012345678901234567800"},
        {"1234567890123456789012345678901234567850", "1234567890123456789012345678901234567900"},
        {"1" + z30, "1" + z30},
        {"1e127", "1" + z127},
        {"1e-128", "0." + z127 + "1"},
        {"1e-400", "0"},
        {"-1e400", "NaN"},
        {"1e-99999999999999999999", "0"},
        {"+1", "2 Leading + disallowed in number\n"},
        {"01", "2 Leading 0 disallowed in number\n"},
        {"-01", "2 Leading 0 disallowed in number\n"},
        {"-", "2 No digits after initial minus\n"},
        {"-+1", "2 No digits after initial minus\n"},
        {"-.5", "2 No digits after initial minus\n"},
        {"1.", "2 No digits after decimal point\n"},
        {"0.e1", "2 No digits after decimal point\n"},
        {"1e", "2 No digits after exponent\n"},
        {"1e+", "2 No digits after exponent\n"},
        {"1.5E-x", "2 No digits after exponent\n"},
        {".5", unknown},
        {"NaN", unknown},
    };
    for (const Document& n : numbers) {
        all.push_back(n);
        all.push_back({"[" + n.json + "]", n.isRight() ? "[" + n.result + "]" : n.result + inArray});
        all.push_back({"{\"k\":" + n.json + "}", n.isRight() ? "{\"k\":" + n.result + "}" : n.result + inObject("k")});
    }

    const auto formatted = [](const char* format, unsigned v) {
        char text[64];
        std::snprintf(text, sizeof text, format, v);
        return std::string(text);
    };
    for (char c = 0x20; c < 0x7F; ++c)
        if (std::string_view("\"\\/bfnrtu").find(c) == std::string_view::npos)
            all.push_back({std::string("[\"\\") + c + "\"]",
                           formatted("8 Illegal escape sequence '0x%x'\n", static_cast<unsigned char>(c)) + inArray});
    for (unsigned c = 1; c < 0x20; ++c) {
        const char* const letters = "btn?fr";
        const std::string escaped =
            c >= 8 && c <= 13 && c != 11 ? std::string("\\") + letters[c - 8] : formatted("\\u%04x", c);
        all.push_back({"[\"" + formatted("\\u%04X", c) + "\"]", "[\"" + escaped + "\"]"});
        all.push_back(
            {std::string("[\"a") + static_cast<char>(c) + "b\"]",
             c <= 0x19 ? formatted("5 Unescaped control character '0x%x'\n", c) + inArray : "[\"a" + escaped + "b\"]"});
    }

    // Containers beside each other do not add up.
    const std::string beside = "[" + times(600, "[],") + "[]]";
    all.push_back({beside, beside});
    const struct {
        std::string begin, middle, end, error;
    } nests[] = {{"[", "", "]", inArray}, {"{\"k\":", "1", "}", inObject("k")}};
    for (const auto& n : nests) {
        const std::string right = times(512, n.begin) + n.middle + times(512, n.end);
        all.push_back({right, right});
        all.push_back({n.begin + right + n.end, "7 Nested too deep\n" + times(512, n.error)});
        all.push_back({times(100000, n.begin), "7 Nested too deep\n" + times(512, n.error)});
    }
    return all;
}

} // namespace libvue::json

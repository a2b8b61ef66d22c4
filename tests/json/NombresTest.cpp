#include "Json.h"

#include <algorithm>
#include <iterator>
#include <random>
#include <sstream>
#include <string>

#include <libvue/text/json/SBJsonParser.h>
#include <libvue/text/json/SBJsonWriter.h>

using namespace libvue;
using namespace libvue::json;

namespace {

/// What a decimal number of 38 digits and an exponent from -128 to 127 makes of the token: worked out on the digits as
/// text, with one rounding, half away from zero.
std::string exact(const std::string& token) {
    const bool negative = token[0] == '-';
    std::string digits;
    long e = 0;
    std::size_t i = negative;
    bool behind = false;
    for (; i < token.size() && token[i] != 'e' && token[i] != 'E'; ++i) {
        if (token[i] == '.') {
            behind = true;
            continue;
        }
        digits += token[i];
        e -= behind;
    }
    if (i < token.size()) e += std::stol(token.substr(i + 1));
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));

    const long count = static_cast<long>(digits.size());
    if (const long dropped = std::max(count - 38, -128 - e); dropped > 0) {
        const bool up = dropped <= count && digits[static_cast<std::size_t>(count - dropped)] >= '5';
        digits = "0" + digits.substr(0, static_cast<std::size_t>(std::max(0L, count - dropped)));
        for (std::size_t at = digits.size(); up;) {
            char& d = digits[--at];
            if (d != '9') {
                ++d;
                break;
            }
            d = '0';
        }
        e += dropped;
    }
    while (!digits.empty() && digits.back() == '0') {
        digits.pop_back();
        ++e;
    }
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
    if (digits.empty()) return "0";
    for (; e > 127 && digits.size() < 38; --e)
        digits += '0';
    if (e > 127) return "NaN";

    if (e >= 0)
        digits.append(static_cast<std::size_t>(e), '0');
    else {
        const auto point = static_cast<std::size_t>(-e);
        if (digits.size() <= point) digits.insert(0, point + 1 - digits.size(), '0');
        digits.insert(digits.size() - point, 1, '.');
    }
    return (negative ? "-" : "") + digits;
}

class Tokens {
public:
    std::string next() {
        std::string t;
        if (below(2)) t += '-';
        const std::string whole = digits(below(4) ? 1 + below(20) : 1 + below(60));
        const std::size_t first = whole.find_first_not_of('0');
        t += first == std::string::npos ? "0" : whole.substr(first);
        if (below(3)) t += "." + digits(below(4) ? 1 + below(20) : 1 + below(80));
        if (below(3) == 0) {
            t += below(2) ? 'e' : 'E';
            if (below(3) == 0)
                t += '+';
            else if (below(2))
                t += '-';
            t += std::to_string(below(4) ? below(40) : below(400));
        }
        return t;
    }

private:
    std::size_t below(std::size_t n) { return random_() % n; }
    std::string digits(std::size_t n) {
        std::string s;
        const std::size_t habit = below(5);
        while (s.size() < n)
            s += habit == 0 ? '0' : habit == 1 ? '9' : static_cast<char>('0' + below(10));
        if (below(4) == 0)
            for (std::size_t zeros = below(n); zeros > 0; --zeros)
                s[n - zeros] = '0';
        return s;
    }
    std::mt19937 random_{7};
};

} // namespace

TEST(JsonNumbers, areReadAndWrittenAsExactArithmeticSays) {
    const auto parser = make<SBJsonParser>();
    const char* const edges =
        "0 -0 0e99999999999 9999999999999999999 10000000000000000000 18446744073709551615 "
        "18446744073709551616 99999999999999999999999999999999999999e127 "
        "999999999999999999999999999999999999995e126 1e165 1e-128 5e-129 4.9e-129 0.1e-127 "
        "99999999999999999999999999999999999999.5 288230376151711743 288230376151711744 1e31 1e32 1e-32 1e-33 "
        "17592186044416e100 17592186044416e101 -99999999999999999999999999999999999999e-128 "
        "99999999999999999999999999999999999999e-37 99999999999999999999999999999999999999e-38 "
        "99999999999999999999999999999999999999e-39 1000000000000000000000000 100000001 288230376151711743000";
    std::istringstream in(edges);
    std::vector<std::string> tokens{std::istream_iterator<std::string>(in), {}};
    const auto writer = make<SBJsonWriter>();
    Tokens random;
    for (int i = 0; i < 20000; ++i)
        tokens.push_back(random.next());
    std::string together, written;
    for (const std::string& token : tokens) {
        const auto value = parser->fragmentWithString(NSString::fromLatin1(token));
        ASSERT_TRUE(value) << token << trace(*parser);
        ASSERT_EQ(typeid(*value), typeid(NSDecimalNumber));
        const std::string expected = exact(token);
        ASSERT_EQ(as<NSDecimalNumber>(value)->stringValue()->utf8(), expected) << token;
        ASSERT_EQ(writer->stringWithFragment(value)->utf8(), expected) << token;
        together += "," + token;
        written += "," + expected;
    }
    // In one document equal ones may be one object, and what is written may be stored wide.
    for (const std::string beside : {"[\"a\"", "[\"\u4E00\""}) {
        const auto all = parser->objectWithString(NSString::fromUTF8(beside + together + "]"));
        ASSERT_TRUE(all);
        ASSERT_TRUE(writer->stringWithObject(all)->utf8() == beside + written + "]") << beside;
    }
}

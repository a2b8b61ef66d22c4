#include "Json.h"

#include <random>

#include <libvue/text/json/SBJsonParser.h>
#include <libvue/text/json/SBJsonWriter.h>

using namespace libvue;
using namespace libvue::json;

namespace {

/// Trees of values, the same for the same seed.
class Trees {
public:
    explicit Trees(unsigned seed) : random_(seed) {}

    Ref<NSObject> tree(int depth) {
        const unsigned kind = below(depth > 0 ? 10 : 6);
        switch (kind) {
        case 0:
            return NSNull::null();
        case 1:
            return NSNumber::numberWithBool(below(2) != 0);
        case 2:
        case 3:
            return number();
        case 4:
        case 5:
            return string();
        default:
            return container(depth, kind < 8);
        }
    }
    Ref<NSObject> container(int depth, bool array) {
        auto a = NSMutableArray::array();
        auto d = NSMutableDictionary::dictionary();
        for (unsigned i = 0, n = below(7); i < n; ++i) {
            const auto value = tree(depth - 1);
            if (array)
                a->addObject(value);
            else
                d->setObject_forKey(value, string());
        }
        return array ? Ref<NSObject>(a) : Ref<NSObject>(d);
    }

private:
    unsigned below(unsigned n) { return static_cast<unsigned>(random_() % n); }

    Ref<NSObject> number() {
        std::string digits = below(2) ? "-" : "";
        for (unsigned i = 0, n = 1 + below(38); i < n; ++i)
            digits += static_cast<char>('0' + below(10));
        return decimal(digits + "e" + std::to_string(static_cast<int>(below(210)) - 120));
    }
    Ref<NSString> string() {
        std::u16string units;
        const unsigned alphabet = below(3);
        for (unsigned i = 0, n = below(below(8) ? 24 : 1500); i < n; ++i) {
            char32_t c = below(alphabet == 0 ? 0x80 : alphabet == 1 ? 0x100 : 0x11000);
            if (alphabet == 2 && below(4) == 0) c *= 16;
            if (c >= 0xD800 && c < 0xE000) c = U'\\';
            if (c < 0x10000)
                units += static_cast<char16_t>(c);
            else {
                units += static_cast<char16_t>(0xD7C0 + (c >> 10));
                units += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
            }
        }
        return text(units);
    }

    std::mt19937 random_;
};

} // namespace

TEST(JsonRoundTrip, whatIsWrittenReadsBackAsTheSameTree) {
    const auto parser = make<SBJsonParser>();
    for (unsigned seed = 0; seed < 400; ++seed) {
        Trees trees(seed);
        const auto value = trees.container(5, seed % 2 == 0);
        for (const BOOL readable : {NO, YES})
            for (const BOOL sorted : {NO, YES}) {
                const auto writer = make<SBJsonWriter>();
                writer->setHumanReadable(readable);
                writer->setSortKeys(sorted);
                const auto written = writer->stringWithObject(value);
                ASSERT_TRUE(written);
                const auto again = parser->objectWithString(written);
                ASSERT_TRUE(again) << written->utf8() << trace(*parser);
                ASSERT_TRUE(again->isEqual(value)) << written->utf8();
                // Numbers equal booleans: the text tells them apart.
                const auto rewritten = writer->stringWithObject(again);
                ASSERT_TRUE(rewritten->isEqualToString(written)) << written->utf8() << rewritten->utf8();
            }
    }
}

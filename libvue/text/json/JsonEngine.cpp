#include <libvue/text/json/JsonEngine.h>

#include <algorithm>
#include <bit>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <libvue/platform/foundation/DecimalWord.h>
#include <libvue/platform/foundation/DocumentObjects.h>
#include <libvue/platform/foundation/NSDecimalNumber.h>
#include <libvue/platform/foundation/NSNull.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/text/json/JsonRuns.h>

namespace libvue {

namespace {

/// The six bytes that isspace() takes in the plain locale.
bool isSpace(char b) noexcept { return b == ' ' || (b >= '\t' && b <= '\r'); }

} // namespace

SBJsonParser::Engine::Engine(SBJsonParser& parser) : parser_(parser), c(parser.c), end_(c + std::strlen(c)) {
    detail::DocumentObjects::prepare();
    // Short texts have no use for large tables.
    const auto length = static_cast<std::size_t>(end_ - c);
    known_ = std::bit_floor(std::clamp<std::size_t>(length / 16, 4, 1024));
    keys_ = std::make_unique<KnownKey[]>(known_);
    numbers_ = std::make_unique<KnownNumber[]>(known_);
}

SBJsonParser::Engine::~Engine() {
    drop(0);
    for (std::size_t i = 0; i < known_; ++i) {
        if (keys_[i].key) keys_[i].key->release();
        if (numbers_[i].number) numbers_[i].number->release();
    }
}

void SBJsonParser::Engine::grow() {
    const auto used = static_cast<std::size_t>(top_ - stack_.get());
    const std::size_t size = std::max<std::size_t>(64, 2 * used);
    auto larger = std::make_unique_for_overwrite<NSObject*[]>(size);
    std::copy_n(stack_.get(), used, larger.get());
    stack_ = std::move(larger);
    top_ = stack_.get() + used;
    limit_ = stack_.get() + size;
}

void SBJsonParser::Engine::drop(std::size_t size) noexcept {
    while (top_ != stack_.get() + size)
        (*--top_)->release();
}

void SBJsonParser::Engine::error(NSUInteger code, const char* text) { error(code, NSString::fromLatin1(text)); }
void SBJsonParser::Engine::error(NSUInteger code, const Ref<NSString>& text) {
    parser_.addErrorWithCode_description(code, text);
}

/// Behind the white space at `p`.
inline const char* SBJsonParser::Engine::afterSpace(const char* p) const noexcept {
    if (static_cast<unsigned char>(*p) > ' ') return p;
    // One space stands behind most colons and commas.
    if (*p == ' ' && static_cast<unsigned char>(p[1]) > ' ') return p + 1;
#ifdef __SSE2__
    while (end_ - p >= 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const __m128i control = _mm_sub_epi8(bytes, _mm_set1_epi8('\t'));
        const __m128i space = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(' ')),
                                           _mm_cmpeq_epi8(_mm_min_epu8(control, _mm_set1_epi8(4)), control));
        const unsigned other = ~static_cast<unsigned>(_mm_movemask_epi8(space)) & 0xFFFFu;
        if (other) return p + std::countr_zero(other);
        p += 16;
    }
#endif
    while (isSpace(*p))
        ++p;
    return p;
}

bool SBJsonParser::Engine::scanIsAtEnd() {
    c = afterSpace(c);
    return *c == '\0';
}

// Texts of one run, and numbers.

inline const char* SBJsonParser::Engine::scanRestOfString(const char* p, Role role, NSObject*& value) {
    bool ascii = false;
    const char* const stop = json::runEnd(p, end_, ascii);
    // Nearly all texts are one run of plain letters.
    if (*stop != '"' || !ascii) [[unlikely]] {
        c = p;
        value = scanRestOfStringInPieces(role);
        return c;
    }
    const auto count = static_cast<std::size_t>(stop - p);
    if (role == Role::key)
        value = knownKey(p, count);
    else if (end_ - p >= static_cast<std::ptrdiff_t>(detail::DocumentObjects::shortText))
        value = detail::DocumentObjects::textWithMoreBehind(json::bytesOf(p), count);
    else
        value = detail::DocumentObjects::text(json::bytesOf(p), count);
    return stop + 1;
}

inline NSObject* SBJsonParser::Engine::knownKey(const char* from, std::size_t count) {
    std::uint64_t first = 0, last = 0;
    if (count >= 8) {
        first = json::eightBytes(from);
        last = json::eightBytes(from + count - 8);
    } else if (count != 0) {
        // The quote stands behind the key, and the text goes on or ends within these bytes.
        if (end_ - from >= 8 && std::endian::native == std::endian::little)
            first = json::eightBytes(from) << (64 - 8 * count) >> (64 - 8 * count);
        else
            std::memcpy(&first, from, count);
    }
    const std::uint64_t spread = (first ^ std::rotl(last, 29) ^ count) * 0x9E3779B97F4A7C15u;
    KnownKey& known = keys_[spread >> 40 & (known_ - 1)];
    if (known.key && known.first == first && known.last == last && known.count == count &&
        (count <= 16 || std::memcmp(known.key->latin1Contents(), from, count) == 0)) {
        known.key->retain();
        keyHashes_.push_back(known.hash);
        return known.key;
    }
    NSString* const made = NSString::fromLatin1({from, count}).leak();
    made->retain();
    if (known.key) known.key->release();
    known = {first, last, static_cast<std::uint32_t>(count), detail::DocumentObjects::hashOf(made), made};
    keyHashes_.push_back(known.hash);
    return made;
}

NSObject* SBJsonParser::Engine::badNumber(const char* text) {
    error(SBJSONErrorParseNumber, text);
    return nullptr;
}

inline const char* SBJsonParser::Engine::scanNumber(const char* p, NSObject*& value) {
    using json::isDigit;
    const char* const start = p;
    const bool negative = *p == '-';
    if (negative) ++p;

    std::uint64_t mantissa = 0;
    std::ptrdiff_t digits = 1, behindPoint = 0;
    if (*p == '0') {
        ++p;
        if (isDigit(*p)) {
            value = badNumber("Leading 0 disallowed in number");
            return p;
        }
    } else if (!isDigit(*p)) {
        value = badNumber("No digits after initial minus");
        return p;
    } else {
        // One or two digit by digit: the processor guesses which, and goes on meanwhile.
        const char* const first = p;
        if (isDigit(p[1]) && isDigit(p[2]))
            p = json::scanDigits(p, end_, mantissa);
        else {
            mantissa = static_cast<unsigned>(*p++ - '0');
            if (isDigit(*p)) mantissa = mantissa * 10 + static_cast<unsigned>(*p++ - '0');
        }
        digits = p - first;
    }
    if (*p == '.') {
        const char* const first = ++p;
        p = json::scanDigits(p, end_, mantissa);
        behindPoint = p - first;
        if (behindPoint == 0) {
            value = badNumber("No digits after decimal point");
            return p;
        }
        digits += behindPoint;
    }
    std::uint64_t power = 0;
    bool down = false;
    std::ptrdiff_t powerDigits = 0;
    if (*p == 'e' || *p == 'E') {
        ++p;
        down = *p == '-';
        if (*p == '+' || *p == '-') ++p;
        const char* const first = p;
        p = json::scanDigits(p, end_, power);
        powerDigits = p - first;
        if (powerDigits == 0) {
            value = badNumber("No digits after exponent");
            return p;
        }
    }

    // Up to 19 digits fit the mantissa; with an exponent in the middle of the range nothing has to be rounded.
    constexpr std::ptrdiff_t mostDigits = 19, mostPowerDigits = 3;
    constexpr int farthest = 100;
    const int exponent = (down ? -static_cast<int>(power) : static_cast<int>(power)) - static_cast<int>(behindPoint);
    if (digits <= mostDigits && powerDigits <= mostPowerDigits && exponent >= -farthest && exponent <= farthest)
        [[likely]]
        value = number(mantissa, exponent, negative);
    else
        value = longNumber(start, p);
    return p;
}

inline NSObject* SBJsonParser::Engine::number(std::uint64_t mantissa, int exponent, bool negative) {
    // Numbers cannot change, so that equal ones may be one object. Long ones seldom come again.
    constexpr std::uint64_t longOne = std::uint64_t(1) << 44;
    if (mantissa >= longOne) {
        if (NSObject* made = Decimal::inOneWord(mantissa, exponent, negative)) return made;
        return inManyWords(mantissa, exponent, negative);
    }
    const int sign = exponent * 2 + negative;
    KnownNumber& known =
        numbers_[((mantissa ^ static_cast<std::uint64_t>(sign) << 48) * 0x9E3779B97F4A7C15u >> 40) & (known_ - 1)];
    if (known.number && known.mantissa == mantissa && known.sign == sign) {
        known.number->retain();
        return known.number;
    }
    NSObject* made = Decimal::inOneWord(mantissa, exponent, negative);
    if (!made) made = inManyWords(mantissa, exponent, negative);
    made->retain();
    if (known.number) detail::DocumentObjects::release(known.number);
    known = {mantissa, sign, made};
    return made;
}

/// With a mantissa or an exponent that does not fit one word.
NSObject* SBJsonParser::Engine::inManyWords(std::uint64_t mantissa, int exponent, bool negative) {
    Decimal d = Decimal::of(mantissa, negative);
    d.exponent += exponent;
    return d.object().leak();
}

NSObject* SBJsonParser::Engine::longNumber(const char* from, const char* to) {
    NSObject* const made = NSDecimalNumber::decimalNumberWithText({from, static_cast<std::size_t>(to - from)}).leak();
    return made ? made : badNumber("Failed creating decimal instance");
}

// The levels.

inline bool SBJsonParser::Engine::open(Kind kind) {
    if (parser_.maxDepth_ != 0 && ++parser_.depth_ > parser_.maxDepth_) {
        error(SBJSONErrorDepth, "Nested too deep");
        return false;
    }
    levels_.push_back({static_cast<std::size_t>(top_ - stack_.get()), kind});
    return true;
}

inline NSObject* SBJsonParser::Engine::closed() {
    // Without a limit the depth was not increased; it wraps around, and nobody reads it.
    --parser_.depth_;
    const Level level = levels_.back();
    levels_.pop_back();
    NSObject** const first = stack_.get() + level.base;
    const auto count = static_cast<std::size_t>(top_ - first);
    NSObject* made = nullptr;
    if (level.kind == Kind::array)
        made = detail::DocumentObjects::array(first, count);
    else {
        const std::size_t firstHash = keyHashes_.size() - count / 2;
        made = detail::DocumentObjects::dictionary(first, keyHashes_.data() + firstHash, count / 2);
        keyHashes_.resize(firstHash);
    }
    top_ = first;
    return made;
}

void SBJsonParser::Engine::unwind() {
    while (!levels_.empty()) {
        const Level level = levels_.back();
        levels_.pop_back();
        if (level.kind == Kind::array)
            error(SBJSONErrorParse, "Expected value while parsing array");
        else {
            // On top lies the key whose value failed.
            error(SBJSONErrorParse,
                  NSString::stringWithFormat(u"Object value expected for key: %@"_ns.get(), *(top_ - 1)));
        }
        drop(level.base);
    }
}

inline const char* SBJsonParser::Engine::scanMoreOfArray(const char* p, NSObject*& done) {
    done = nullptr;
    if (*p == '\0') {
        error(SBJSONErrorEOF, "End of input while parsing array");
        return nullptr;
    }
    p = afterSpace(p);
    if (*p != ']') return p;
    c = p + 1;
    done = closed();
    return nullptr;
}

inline const char* SBJsonParser::Engine::scanMoreOfDictionary(const char* p, NSObject*& done) {
    done = nullptr;
    if (*p == '\0') {
        error(SBJSONErrorEOF, "End of input while parsing object");
        return nullptr;
    }
    p = afterSpace(p);
    if (*p == '}') {
        c = p + 1;
        done = closed();
        return nullptr;
    }
    NSObject* key = nullptr;
    if (*p == '"') p = scanRestOfString(p + 1, Role::key, key);
    if (!key) {
        error(SBJSONErrorParse, "Object key string expected");
        return nullptr;
    }
    push(key);
    p = afterSpace(p);
    if (*p != ':') {
        error(SBJSONErrorParse, "Expected ':' separating key and value");
        return nullptr;
    }
    return p + 1;
}

/// What is given up has added its own error already.
inline void SBJsonParser::Engine::abandon() noexcept {
    const Level level = levels_.back();
    levels_.pop_back();
    drop(level.base);
}

/// Null where a comma stands before the end.
inline const char* SBJsonParser::Engine::afterComma(const char* p, char end, const char* text) {
    p = afterSpace(p);
    if (*p != ',') return p;
    p = afterSpace(p + 1);
    if (*p != end) return p;
    error(SBJSONErrorTrailingComma, text);
    return nullptr;
}

NSObject* SBJsonParser::Engine::scanValue() {
    const char* p = c;
    for (;;) {
        NSObject* value = nullptr;
        const char* more = nullptr; // where a value within a collection that was opened is expected
        p = afterSpace(p);
        switch (*p) {
        case '{':
            if (!open(Kind::dictionary)) break;
            more = scanMoreOfDictionary(p + 1, value);
            if (more) break;
            if (!value) abandon();
            p = c;
            break;
        case '[':
            if (!open(Kind::array)) break;
            more = scanMoreOfArray(p + 1, value);
            if (more) break;
            if (!value) abandon();
            p = c;
            break;
        case '"':
            p = scanRestOfString(p + 1, Role::value, value);
            break;
        case '-':
        case '0':
        case '1':
        case '2':
        case '3':
        case '4':
        case '5':
        case '6':
        case '7':
        case '8':
        case '9':
            p = scanNumber(p, value);
            break;
        default:
            c = p;
            value = scanWord();
            p = c;
            break;
        }
        if (more) {
            p = more;
            continue;
        }
        for (;;) {
            if (!value) {
                unwind();
                return nullptr;
            }
            if (levels_.empty()) {
                c = p;
                return value;
            }
            push(value);
            value = nullptr;
            if (levels_.back().kind == Kind::array) {
                p = afterComma(p, ']', "Trailing comma disallowed in array");
                if (p) p = scanMoreOfArray(p, value);
            } else {
                p = afterComma(p, '}', "Trailing comma disallowed in object");
                if (p) p = scanMoreOfDictionary(p, value);
            }
            if (p) break;
            if (!value) abandon();
            p = c;
        }
    }
}

/// true, false and null, and what begins no value.
NSObject* SBJsonParser::Engine::scanWord() {
    switch (*c) {
    case 't':
        ++c;
        return scanRestOfTrue();
    case 'f':
        ++c;
        return scanRestOfFalse();
    case 'n':
        ++c;
        return scanRestOfNull();
    case '+':
        error(SBJSONErrorParseNumber, "Leading + disallowed in number");
        return nullptr;
    case '\0':
        error(SBJSONErrorEOF, "Unexpected end of string");
        return nullptr;
    default:
        error(SBJSONErrorParse, "Unrecognised leading character");
        return nullptr;
    }
}

// Words. What follows them is not looked at.

NSObject* SBJsonParser::Engine::scanRestOfTrue() {
    if (std::strncmp(c, "rue", 3) == 0) {
        c += 3;
        return NSNumber::numberWithBool(YES).leak();
    }
    error(SBJSONErrorParse, "Expected 'true'");
    return nullptr;
}

NSObject* SBJsonParser::Engine::scanRestOfFalse() {
    if (std::strncmp(c, "alse", 4) == 0) {
        c += 4;
        return NSNumber::numberWithBool(NO).leak();
    }
    error(SBJSONErrorParse, "Expected 'false'");
    return nullptr;
}

NSObject* SBJsonParser::Engine::scanRestOfNull() {
    if (std::strncmp(c, "ull", 3) == 0) {
        c += 3;
        return Ref<NSObject>(NSNull::null()).leak();
    }
    error(SBJSONErrorParse, "Expected 'null'");
    return nullptr;
}

} // namespace libvue

#include <libvue/text/json/JsonEngine.h>

#include <algorithm>
#include <bit>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <libvue/platform/foundation/DocumentObjects.h>
#include <libvue/platform/foundation/NSNull.h>
#include <libvue/platform/foundation/NSNumber.h>

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
    keys_ = std::make_unique<NSString*[]>(known_);
    numbers_ = std::make_unique<KnownNumber[]>(known_);
}

SBJsonParser::Engine::~Engine() {
    drop(0);
    for (std::size_t i = 0; i < known_; ++i) {
        if (keys_[i]) keys_[i]->release();
        if (numbers_[i].number) numbers_[i].number->release();
    }
}

void SBJsonParser::Engine::grow() {
    const auto used = static_cast<std::size_t>(top_ - stack_.get());
    const std::size_t size = std::max<std::size_t>(64, 2 * used);
    auto larger = std::make_unique_for_overwrite<NSObject*[]>(size);
    if (used) std::memcpy(larger.get(), stack_.get(), used * sizeof(NSObject*));
    stack_ = std::move(larger);
    top_ = stack_.get() + used;
    limit_ = stack_.get() + size;
}

void SBJsonParser::Engine::drop(std::size_t size) noexcept {
    while (top_ != stack_.get() + size)
        (*--top_)->release();
}

void SBJsonParser::Engine::error(NSUInteger code, const char* text) { error(code, NSString::fromLatin1(text)); }
void SBJsonParser::Engine::error(NSUInteger code, Ref<NSString> text) {
    parser_.addErrorWithCode_description(code, text);
}

inline void SBJsonParser::Engine::skipSpace() noexcept {
    const char* p = c;
    if (static_cast<unsigned char>(*p) > ' ') return;
#ifdef __SSE2__
    while (end_ - p >= 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const __m128i control = _mm_sub_epi8(bytes, _mm_set1_epi8('\t'));
        const __m128i space = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(' ')),
                                           _mm_cmpeq_epi8(_mm_min_epu8(control, _mm_set1_epi8(4)), control));
        const unsigned other = ~static_cast<unsigned>(_mm_movemask_epi8(space)) & 0xFFFFu;
        if (other) {
            c = p + std::countr_zero(other);
            return;
        }
        p += 16;
    }
#endif
    while (isSpace(*p))
        ++p;
    c = p;
}

bool SBJsonParser::Engine::scanIsAtEnd() {
    skipSpace();
    return *c == '\0';
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
    NSObject* made = level.kind == Kind::array
                         ? static_cast<NSObject*>(detail::DocumentObjects::array(first, count))
                         : static_cast<NSObject*>(detail::DocumentObjects::dictionary(first, count / 2));
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

inline bool SBJsonParser::Engine::scanMoreOfArray(NSObject*& done) {
    done = nullptr;
    if (*c == '\0') {
        error(SBJSONErrorEOF, "End of input while parsing array");
        return false;
    }
    skipSpace();
    if (*c != ']') return true;
    ++c;
    done = closed();
    return false;
}

inline bool SBJsonParser::Engine::scanMoreOfDictionary(NSObject*& done) {
    done = nullptr;
    if (*c == '\0') {
        error(SBJSONErrorEOF, "End of input while parsing object");
        return false;
    }
    skipSpace();
    if (*c == '}') {
        ++c;
        done = closed();
        return false;
    }
    NSObject* key = nullptr;
    if (*c == '"') {
        ++c;
        key = scanRestOfString(Role::key);
    }
    if (!key) {
        error(SBJSONErrorParse, "Object key string expected");
        return false;
    }
    push(key);
    skipSpace();
    if (*c != ':') {
        error(SBJSONErrorParse, "Expected ':' separating key and value");
        return false;
    }
    ++c;
    return true;
}

/// What is given up has added its own error already.
inline void SBJsonParser::Engine::abandon() noexcept {
    const Level level = levels_.back();
    levels_.pop_back();
    drop(level.base);
}

inline bool SBJsonParser::Engine::skipComma(char end, const char* text) {
    skipSpace();
    if (*c != ',') return true;
    ++c;
    skipSpace();
    if (*c != end) return true;
    error(SBJSONErrorTrailingComma, text);
    return false;
}

NSObject* SBJsonParser::Engine::scanValue() {
    for (;;) {
        NSObject* value = scanLeafOrOpen();
        if (value == opened) continue;
        for (;;) {
            if (!value) {
                unwind();
                return nullptr;
            }
            if (levels_.empty()) return value;
            push(value);
            value = nullptr;
            const bool more =
                levels_.back().kind == Kind::array
                    ? skipComma(']', "Trailing comma disallowed in array") && scanMoreOfArray(value)
                    : skipComma('}', "Trailing comma disallowed in object") && scanMoreOfDictionary(value);
            if (more) break;
            if (!value) abandon();
        }
    }
}

/// A value, null where it failed, or `opened` where it is a collection that has one more value to come.
inline NSObject* SBJsonParser::Engine::scanLeafOrOpen() {
    skipSpace();
    NSObject* value = nullptr;
    switch (*c) {
    case '{':
        ++c;
        if (!open(Kind::dictionary)) return nullptr;
        if (scanMoreOfDictionary(value)) return opened;
        break;
    case '[':
        ++c;
        if (!open(Kind::array)) return nullptr;
        if (scanMoreOfArray(value)) return opened;
        break;
    case '"':
        ++c;
        return scanRestOfString(Role::value);
    case 't':
        ++c;
        return scanRestOfTrue();
    case 'f':
        ++c;
        return scanRestOfFalse();
    case 'n':
        ++c;
        return scanRestOfNull();
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
        return scanNumber();
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
    if (!value) abandon();
    return value;
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

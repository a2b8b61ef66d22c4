#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <libvue/platform/foundation/NSString.h>
#include <libvue/text/json/SBJsonParser.h>

namespace libvue {

/// One reading of one text. Objects and arrays that are open lie on a list of levels, and what they hold so far on one
/// stack: nothing recurses, and each collection is made when its end is known, with exactly the room it needs.
class SBJsonParser::Engine {
public:
    /// Reads at the parser's cursor, and leaves it where the reading ended.
    explicit Engine(SBJsonParser& parser);
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    /// The value, whose count is the caller's; null with the errors added.
    [[nodiscard]] NSObject* scanValue();
    [[nodiscard]] bool scanIsAtEnd();

private:
    enum class Kind : bool { array, dictionary };
    enum class Role : bool { value, key };
    struct Level {
        std::size_t base; // of what it holds on the stack
        Kind kind;
    };
    /// Texts without escapes that came before, and numbers: the same ones come again and again in most documents.
    struct KnownKey {
        std::uint64_t first, last; // eight bytes each; all of them where there are fewer
        std::uint32_t count, hash;
        NSString* key; // counted
    };
    struct KnownNumber {
        std::uint64_t mantissa;
        int sign;         // and exponent
        NSObject* number; // counted
    };

    [[nodiscard]] const char* afterSpace(const char* p) const noexcept;
    void error(NSUInteger code, const char* text);
    void error(NSUInteger code, const Ref<NSString>& text);

    [[nodiscard]] NSObject* scanWord();
    [[nodiscard]] NSObject* scanRestOfTrue();
    [[nodiscard]] NSObject* scanRestOfFalse();
    [[nodiscard]] NSObject* scanRestOfNull();
    /// Answers where the cursor goes; the value is null where it failed.
    [[nodiscard]] const char* scanRestOfString(const char* p, Role role, NSObject*& value);
    [[nodiscard]] NSObject* scanRestOfStringInPieces(Role role);
    [[nodiscard]] bool scanEscape();
    [[nodiscard]] bool scanUnicodeChar(unichar& unit);
    [[nodiscard]] bool scanHexQuad(unichar& quad);
    [[nodiscard]] const char* scanNumber(const char* p, NSObject*& value);
    [[nodiscard]] NSObject* badNumber(const char* text);
    [[nodiscard]] NSObject* longNumber(const char* from, const char* to);
    [[nodiscard]] static NSObject* inManyWords(std::uint64_t mantissa, int exponent, bool negative);

    /// Begins an object or array.
    [[nodiscard]] bool open(Kind kind);
    /// Ends the innermost one.
    [[nodiscard]] NSObject* closed();
    /// Gives the innermost one up.
    void abandon() noexcept;
    /// What scanRestOfArray and scanRestOfDictionary do before each value: answers where a value is expected; else
    /// null, and `done` holds the finished collection (`c` stands behind it), or null where it failed.
    [[nodiscard]] const char* scanMoreOfArray(const char* p, NSObject*& done);
    [[nodiscard]] const char* scanMoreOfDictionary(const char* p, NSObject*& done);
    [[nodiscard]] const char* afterComma(const char* p, char end, const char* text);
    /// Each level that is still open adds its error.
    void unwind();

    /// Appends UTF-8 to the units; false where it is ill-formed.
    [[nodiscard]] bool appendRun(const char* from, const char* to);
    void appendUnit(unichar unit);
    void reserveUnits(std::size_t count);
    [[nodiscard]] NSObject* textOfUnits(Role role);
    /// Its hash is pushed.
    [[nodiscard]] NSObject* knownKey(const char* from, std::size_t count);
    [[nodiscard]] NSObject* number(std::uint64_t mantissa, int exponent, bool negative);

    void push(NSObject* o) {
        if (top_ == limit_) [[unlikely]]
            grow();
        *top_++ = o;
    }
    void grow();
    void drop(std::size_t size) noexcept;

    SBJsonParser& parser_;
    const char* c;
    const char* end_; // the final zero
    std::unique_ptr<NSObject*[]> stack_;
    NSObject** top_ = nullptr;
    NSObject** limit_ = nullptr;
    std::vector<Level> levels_;
    std::vector<std::uint32_t> keyHashes_; // of the keys on the stack
    std::unique_ptr<unichar[]> units_;     // of the text under way
    std::size_t unitCount_ = 0, unitRoom_ = 0;
    std::size_t known_; // a power of two
    std::unique_ptr<KnownKey[]> keys_;
    std::unique_ptr<KnownNumber[]> numbers_;
};

} // namespace libvue

#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <libvue/platform/foundation/NSString.h>
#include <libvue/text/json/JsonEscapes.h>

namespace libvue {

/// Gathers JSON text in a small block that stays in the processor's cache, and hands it on to a text block by block.
/// The units are 8-bit until one needs more.
///
/// Whoever writes keeps the place where the next unit goes, `Unit* at`, and calls ready() before each item: an item
/// takes no more than `room` units.
class JsonOutput {
public:
    static constexpr std::size_t room = 2048;

    explicit JsonOutput(NSMutableString& text) noexcept : text_(text) {}
    JsonOutput(const JsonOutput&) = delete;
    JsonOutput& operator=(const JsonOutput&) = delete;

    /// The start of the block. 16-bit units are for after widen().
    template <class Unit> [[nodiscard]] Unit* block() noexcept {
        if constexpr (sizeof(Unit) == 1)
            return narrow_;
        else
            return wide_;
    }
    /// A place with `room` behind it: `at`, or the start of the block, whose units have been handed on.
    template <class Unit> [[nodiscard]] Unit* ready(Unit* at) {
        return at <= block<Unit>() + blockUnits - room ? at : handOn(at);
    }
    /// Hands on what is gathered, and answers the start of the block.
    template <class Unit> Unit* handOn(Unit* at);
    template <class Unit> [[nodiscard]] Unit* putRepeated(char c, NSUInteger times, Unit* at);
    /// A text as it stands.
    template <class Unit> [[nodiscard]] Unit* putPlain(const NSString& s, Unit* at);
    /// The text between quotes, escaped where it must be: an item of its own unless it is at most `shortText` units
    /// long. Wide units go into wide ones only.
    template <class Unit> [[nodiscard]] Unit* putQuoted(const NSString& s, Unit* at) {
        if (s.length() > shortText) return putLong(s, at);
        *at++ = '"';
        if (const std::uint8_t* narrow = s.latin1Contents())
            at = JsonEscapes::copy(narrow, s.length(), at);
        else if constexpr (sizeof(Unit) > 1)
            at = JsonEscapes::copy(s._fastCharacterContents(), s.length(), at);
        *at++ = '"';
        return at;
    }

private:
    static constexpr std::size_t blockUnits = 8192;
    static constexpr std::size_t shortText = 128;

    template <class Unit> Unit* putLong(const NSString& s, Unit* at);
    template <class From, class Unit> Unit* putPieces(const From* units, std::size_t count, Unit* at);

    NSMutableString& text_;
    union {
        std::uint8_t narrow_[blockUnits];
        unichar wide_[blockUnits];
    };
};

} // namespace libvue

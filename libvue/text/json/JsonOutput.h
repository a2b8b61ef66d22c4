#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include <libvue/platform/foundation/NSString.h>
#include <libvue/text/json/JsonEscapes.h>

namespace libvue {

/// Gathers JSON text in a small block that stays in the processor's cache, and hands it on to a text block by block.
/// The units are 8-bit where none needs more; the text widens them itself once it holds one that does.
///
/// Whoever writes keeps the place where the next unit goes, `Unit* at`, and calls ready() before each item: an item
/// takes no more than `room` units.
class JsonOutput {
public:
    static constexpr std::size_t room = 2048;

    explicit JsonOutput(NSMutableString& text) noexcept : text_(text) {}
    JsonOutput(const JsonOutput&) = delete;
    JsonOutput& operator=(const JsonOutput&) = delete;

    /// The start of the block. Units of the other width must have been handed on.
    template <class Unit> [[nodiscard]] Unit* block() noexcept {
        if constexpr (sizeof(Unit) == 1)
            return narrow_;
        else
            return wide_;
    }
    /// Whether the place has `room` behind it.
    template <class Unit> [[nodiscard]] bool isReady(const Unit* at) noexcept {
        return at <= block<Unit>() + blockUnits - room;
    }
    /// A place with `room` behind it: `at`, or the start of the block, whose units have been handed on.
    template <class Unit> [[nodiscard]] Unit* ready(Unit* at) { return isReady(at) ? at : handOn(at); }
    /// Whether texts came that are stored wide since this was last asked.
    [[nodiscard]] bool tookWide() noexcept { return std::exchange(wideCame_, false); }
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
        else if constexpr (sizeof(Unit) > 1) {
            wideCame_ = true;
            at = JsonEscapes::copy(s._fastCharacterContents(), s.length(), at);
        }
        *at++ = '"';
        return at;
    }

private:
    static constexpr std::size_t blockUnits = 8192;
    static constexpr std::size_t shortText = 128;

    template <class Unit> Unit* putLong(const NSString& s, Unit* at);
    template <class From, class Unit> Unit* putPieces(const From* units, std::size_t count, Unit* at);

    NSMutableString& text_;
    bool wideCame_ = false;
    union {
        std::uint8_t narrow_[blockUnits];
        unichar wide_[blockUnits];
    };
};

} // namespace libvue

#pragma once

#include <cstddef>
#include <cstdint>

#include <libvue/platform/foundation/NSString.h>

namespace libvue {

/// Gathers JSON text in a small block that stays in the processor's cache, and hands it on to a text block by block.
/// The units are 8-bit until one needs more.
class JsonOutput {
public:
    explicit JsonOutput(NSMutableString& text) noexcept : text_(text) {}
    JsonOutput(const JsonOutput&) = delete;
    JsonOutput& operator=(const JsonOutput&) = delete;

    void put(char c) {
        need(1);
        if (wide_)
            block_.wide[length_++] = static_cast<unsigned char>(c);
        else
            block_.narrow[length_++] = static_cast<std::uint8_t>(c);
    }
    /// Latin-1 characters, no more than a block holds.
    void put(std::string_view latin1);
    void putRepeated(char c, NSUInteger times);
    /// The text as it stands.
    void putPlain(const NSString& s);
    /// The text between quotes, escaped where it must be.
    void putQuoted(const NSString& s);
    void putInteger(NSInteger v);
    void putUnsigned(NSUInteger v);
    /// As its `stringValue`.
    void putDecimal(const NSDecimalNumber& n);
    /// Hands on what is gathered.
    void flush();

private:
    static constexpr std::size_t blockUnits = 8192;
    /// What a copy may write beyond the units that it counts.
    static constexpr std::size_t slack = 32;

    void need(std::size_t units) {
        if (length_ + units > blockUnits) flush();
    }
    void widen();
    template <class Unit> void putEscaped(const Unit* units, std::size_t count);

    NSMutableString& text_;
    std::size_t length_ = 0;
    bool wide_ = false;
    union {
        std::uint8_t narrow[blockUnits + slack];
        unichar wide[blockUnits + slack];
    } block_;
};

} // namespace libvue

#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include <libvue/platform/foundation/Forward.h>
#include <libvue/platform/foundation/Ref.h>

namespace libvue {

/// Gathers a text piece by piece and builds it in one block. Short texts need no memory but the text's own; the
/// units stay 8-bit until one needs more.
class LIBVUE_API StringBuilder {
public:
    StringBuilder() noexcept = default;
    explicit StringBuilder(NSUInteger capacity) { reserve(capacity); }
    StringBuilder(const StringBuilder&) = delete;
    StringBuilder& operator=(const StringBuilder&) = delete;
    ~StringBuilder() { freeBuffer(); }

    /// Makes room for `units` units in all.
    void reserve(NSUInteger units) {
        if (units > capacity_) grow(units);
    }
    void append(unichar unit) {
        if (unit > 0xFF && !wide_) widen();
        if (length_ == capacity_) grow(length_ + 1);
        if (wide_)
            static_cast<unichar*>(buffer_)[length_++] = unit;
        else
            static_cast<std::uint8_t*>(buffer_)[length_++] = static_cast<std::uint8_t>(unit);
    }
    /// One ASCII character.
    void append(char c) { append(static_cast<unichar>(static_cast<unsigned char>(c))); }
    /// Latin-1 bytes; ASCII literals are such.
    void append(std::string_view latin1);
    void append(const char* latin1) { append(std::string_view(latin1)); }
    void append(std::u16string_view units);
    void append(const char16_t* units) { append(std::u16string_view(units)); }
    /// Null appends nothing.
    void append(const NSString* s);
    void append(const NSString* s, NSUInteger from, NSUInteger length);
    /// Ill-formed parts become U+FFFD.
    void appendUTF8(std::string_view bytes);
    void appendCodePoint(char32_t c);
    void appendNumber(NSInteger v);
    void appendUnsigned(NSUInteger v);
    void appendRepeated(unichar unit, NSUInteger times);

    [[nodiscard]] NSUInteger length() const noexcept { return length_; }
    [[nodiscard]] bool isEmpty() const noexcept { return length_ == 0; }
    [[nodiscard]] bool isWide() const noexcept { return wide_; }
    /// The unit at an index below length().
    [[nodiscard]] unichar unit(NSUInteger i) const noexcept {
        return wide_ ? static_cast<const unichar*>(buffer_)[i] : static_cast<const std::uint8_t*>(buffer_)[i];
    }
    /// Drops what stands behind the first `length` units.
    void truncate(NSUInteger length) noexcept {
        if (length < length_) length_ = length;
    }
    /// Empties the builder and keeps its room.
    void clear() noexcept { length_ = 0; }
    /// The text gathered so far; the builder keeps it.
    [[nodiscard]] Ref<NSString> build() const;

private:
    void grow(NSUInteger units);
    void widen();
    void freeBuffer() noexcept;

    static constexpr std::size_t inlineBytes = 256;
    void* buffer_ = inline_;
    NSUInteger length_ = 0;
    NSUInteger capacity_ = inlineBytes; // in units
    bool wide_ = false;
    alignas(unichar) std::uint8_t inline_[inlineBytes];
};

} // namespace libvue

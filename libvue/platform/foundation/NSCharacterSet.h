#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// A set of Unicode code points. Asking for a unit is one look into a table, which is made on first use.
class LIBVUE_API NSCharacterSet : public NSObject {
public:
    static void describe(ClassDescription<NSCharacterSet>& c);
    /// The empty set.
    NSCharacterSet();
    ~NSCharacterSet() override;

    // Standard sets: made on first use, owned by the process.

    /// Letters, marks and numbers of every script.
    [[nodiscard]] static NSCharacterSet* alphanumericCharacterSet();
    /// Letters and marks.
    [[nodiscard]] static NSCharacterSet* letterCharacterSet();
    [[nodiscard]] static NSCharacterSet* decimalDigitCharacterSet();
    /// Space, tab and their kin; no line ends.
    [[nodiscard]] static NSCharacterSet* whitespaceCharacterSet();
    [[nodiscard]] static NSCharacterSet* whitespaceAndNewlineCharacterSet();
    /// U+000A to U+000D, U+0085, U+2028, U+2029.
    [[nodiscard]] static NSCharacterSet* newlineCharacterSet();
    [[nodiscard]] static NSCharacterSet* punctuationCharacterSet();
    [[nodiscard]] static NSCharacterSet* symbolCharacterSet();
    /// Upper and title case.
    [[nodiscard]] static NSCharacterSet* uppercaseLetterCharacterSet();
    [[nodiscard]] static NSCharacterSet* lowercaseLetterCharacterSet();
    [[nodiscard]] static NSCharacterSet* capitalizedLetterCharacterSet();
    /// Marks.
    [[nodiscard]] static NSCharacterSet* nonBaseCharacterSet();
    [[nodiscard]] static NSCharacterSet* controlCharacterSet();
    /// Code points that no character is assigned to.
    [[nodiscard]] static NSCharacterSet* illegalCharacterSet();
    [[nodiscard]] static NSCharacterSet* decomposableCharacterSet();

    /// The characters of the text; a surrogate pair counts as one. Null gives the empty set.
    [[nodiscard]] static Ref<NSCharacterSet> characterSetWithCharactersInString(const NSString* s);
    /// Code points from location on. Raises NSInvalidArgumentException beyond U+10FFFF.
    [[nodiscard]] static Ref<NSCharacterSet> characterSetWithRange(NSRange range);
    /// Every code point that this set does not hold.
    [[nodiscard]] Ref<NSCharacterSet> invertedSet() const;

    /// A UTF-16 unit. A lone surrogate is looked for as such.
    [[nodiscard]] BOOL characterIsMember(unichar c) const {
        return c < 256 ? (latin_[c >> 6] >> (c & 63) & 1) != 0 : wideIsMember(c);
    }
    [[nodiscard]] BOOL longCharacterIsMember(char32_t c) const;
    /// Null is the empty set.
    [[nodiscard]] BOOL isSupersetOfSet(const NSCharacterSet* other) const;
    /// Whether a code point of that plane (0 to 16) is in the set.
    [[nodiscard]] BOOL hasMemberInPlane(std::uint8_t plane) const noexcept;

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    [[nodiscard]] Ref<NSObject> mutableCopyWithZone() const override;

protected:
    /// Sorted code points at which membership turns, starting from "not a member".
    using Turns = std::vector<std::uint32_t>;
    explicit NSCharacterSet(Turns turns);
    [[nodiscard]] static Ref<NSCharacterSet> ofTurns(Turns turns);
    [[nodiscard]] const Turns& turns() const noexcept { return turns_; }
    [[nodiscard]] static const Turns& turnsOf(const NSCharacterSet& other) noexcept { return other.turns_; }
    void setTurns(Turns turns);

private:
    friend class StandardSets;
    using Bits = std::array<std::uint64_t, 1024>;
    [[nodiscard]] BOOL wideIsMember(unichar c) const;
    [[nodiscard]] BOOL find(std::uint32_t c) const noexcept;
    void fillLatin() noexcept;

    Turns turns_;
    std::array<std::uint64_t, 4> latin_{};
    mutable std::unique_ptr<Bits> plane_; // the 65,536 first code points, made at the first question beyond Latin-1
};

/// A set that can change.
class LIBVUE_API NSMutableCharacterSet : public NSCharacterSet {
public:
    static void describe(ClassDescription<NSMutableCharacterSet, NSCharacterSet>& c);
    NSMutableCharacterSet() = default;
    /// Null gives the empty set.
    explicit NSMutableCharacterSet(const NSCharacterSet* other);
    [[nodiscard]] static Ref<NSMutableCharacterSet> characterSetWithCharactersInString(const NSString* s);
    [[nodiscard]] static Ref<NSMutableCharacterSet> characterSetWithRange(NSRange range);

    void addCharactersInString(const NSString* s);
    void removeCharactersInString(const NSString* s);
    void addCharactersInRange(NSRange range);
    void removeCharactersInRange(NSRange range);
    void formUnionWithCharacterSet(const NSCharacterSet* other);
    void formIntersectionWithCharacterSet(const NSCharacterSet* other);
    void invert();
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
};

} // namespace libvue

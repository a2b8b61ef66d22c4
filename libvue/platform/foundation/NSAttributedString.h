#pragma once

#include <functional>
#include <vector>

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

/// Reverse goes from the end to the start. The other is taken and changes nothing: ranges are always the longest.
enum NSAttributedStringEnumerationOptions : NSUInteger {
    NSAttributedStringEnumerationReverse = 2,
    NSAttributedStringEnumerationLongestEffectiveRangeNotRequired = 1 << 20
};

/// A text whose characters carry dictionaries of attributes, kept as runs: neighbours with equal dictionaries are one
/// run. Immutable. Indexes are UTF-16 units; an index or a range out of the text raises NSRangeException.
class LIBVUE_API NSAttributedString : public NSObject {
public:
    static void describe(ClassDescription<NSAttributedString>& c);
    NSAttributedString();
    /// A null text raises NSInvalidArgumentException.
    explicit NSAttributedString(const NSString* s);
    NSAttributedString(const NSString* s, const NSDictionary* attributes);
    /// Null raises NSInvalidArgumentException.
    explicit NSAttributedString(const NSAttributedString* other);
    explicit NSAttributedString(NSCoder& coder);
    ~NSAttributedString() override;
    [[nodiscard]] static Ref<NSAttributedString> initWithString(const NSString* s);
    [[nodiscard]] static Ref<NSAttributedString> initWithString_attributes(const NSString* s,
                                                                           const NSDictionary* attributes);
    [[nodiscard]] static Ref<NSAttributedString> initWithAttributedString(const NSAttributedString* other);

    /// The characters. Those of a mutable attributed string change with it: copy them to keep them.
    [[nodiscard]] NSString* string() const noexcept { return text_; }
    [[nodiscard]] NSUInteger length() const noexcept { return text_->length(); }

    /// The attributes at `i`, never null (borrowed until the next change). `range`, which may be null, gets the run as
    /// it is stored; the longest… forms give the longest part of `within` with equal attributes, or an equal value of
    /// the attribute.
    NSDictionary* attributesAtIndex_effectiveRange(NSUInteger i, NSRange* range) const;
    NSDictionary* attributesAtIndex_longestEffectiveRange_inRange(NSUInteger i, NSRange* range, NSRange within) const;
    /// Null where the character has no such attribute.
    NSObject* attribute_atIndex_effectiveRange(const NSString* name, NSUInteger i, NSRange* range) const;
    NSObject* attribute_atIndex_longestEffectiveRange_inRange(const NSString* name, NSUInteger i, NSRange* range,
                                                              NSRange within) const;
    [[nodiscard]] Ref<NSAttributedString> attributedSubstringFromRange(NSRange range) const;
    [[nodiscard]] BOOL isEqualToAttributedString(const NSAttributedString* other) const;

    using AttributesBlock = std::function<void(NSDictionary* attributes, NSRange range, BOOL* stop)>;
    using AttributeBlock = std::function<void(NSObject* value, NSRange range, BOOL* stop)>;
    /// Goes through the runs within the range. The block may change the attributes of the run that it is given.
    void enumerateAttributesInRange_options_usingBlock(NSRange range, NSUInteger options,
                                                       const AttributesBlock& block) const;
    /// The same for one attribute; the value is null where it is missing.
    void enumerateAttribute_inRange_options_usingBlock(const NSString* name, NSRange range, NSUInteger options,
                                                       const AttributeBlock& block) const;

    // Words.

    /// What a double click on the character at `i` selects.
    [[nodiscard]] NSRange doubleClickAtIndex(NSUInteger i) const;
    /// Where a move by a word from `i` lands.
    [[nodiscard]] NSUInteger nextWordFromIndex_forward(NSUInteger i, BOOL forward) const;
    using DoubleClick = NSRange (*)(const NSAttributedString* s, NSUInteger i);
    using NextWord = NSUInteger (*)(const NSAttributedString* s, NSUInteger i, BOOL forward);
    /// Replaces both for the whole process; null gives the platform's own back.
    static void installWordBoundaries(DoubleClick doubleClick, NextWord nextWord) noexcept;

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    /// The runs, each with its attributes.
    [[nodiscard]] Ref<NSString> description() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    [[nodiscard]] Ref<NSObject> mutableCopyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;

protected:
    /// Attributes from `from` to the start of the next run. No two neighbours are equal; none at all in an empty text.
    struct Run {
        NSUInteger from;
        Ref<NSDictionary> attributes;
    };
    NSAttributedString(Ref<NSString> text, std::vector<Run> runs);
    /// The runs of the text in an archive, whose text is already in place.
    void decodeRuns(const NSArray* starts, const NSArray* attributes);
    /// Attributes that nobody can change any more; the empty dictionary for null.
    [[nodiscard]] static Ref<NSDictionary> frozen(const NSDictionary* attributes);
    [[nodiscard]] static bool same(const NSDictionary* a, const NSDictionary* b);
    [[nodiscard]] static const std::vector<Run>& runsOf(const NSAttributedString& s) noexcept { return s.runs_; }
    [[nodiscard]] std::size_t runAt(NSUInteger i) const noexcept;
    [[nodiscard]] NSRange rangeOfRun(std::size_t run) const noexcept;
    [[nodiscard]] std::vector<Run> runsInRange(NSRange range) const;
    void checkIndex(NSUInteger i) const;
    void checkRange(NSRange range) const;

    Ref<NSString> text_; // an NSMutableString in the mutable class
    std::vector<Run> runs_;
};

/// An attributed text that can change.
///
/// Every change goes through the two primitives, replaceCharactersInRange_withString and setAttributes_range; a
/// subclass that overrides them (and calls the base) hears of all. Changes of several steps stand between beginEditing
/// and endEditing.
class LIBVUE_API NSMutableAttributedString : public NSAttributedString {
public:
    static void describe(ClassDescription<NSMutableAttributedString, NSAttributedString>& c);
    NSMutableAttributedString();
    explicit NSMutableAttributedString(const NSString* s);
    NSMutableAttributedString(const NSString* s, const NSDictionary* attributes);
    explicit NSMutableAttributedString(const NSAttributedString* other);
    explicit NSMutableAttributedString(NSCoder& coder);
    ~NSMutableAttributedString() override;
    [[nodiscard]] static Ref<NSMutableAttributedString> initWithString(const NSString* s);
    [[nodiscard]] static Ref<NSMutableAttributedString> initWithString_attributes(const NSString* s,
                                                                                  const NSDictionary* attributes);
    [[nodiscard]] static Ref<NSMutableAttributedString> initWithAttributedString(const NSAttributedString* other);

    /// The new characters take the attributes of the first that they replace, else those of the one before, else of the
    /// one behind. Null is the empty text.
    virtual void replaceCharactersInRange_withString(NSRange range, const NSString* s);
    /// Null is no attributes.
    virtual void setAttributes_range(const NSDictionary* attributes, NSRange range);
    virtual void beginEditing() {}
    virtual void endEditing() {}

    void addAttribute_value_range(const NSString* name, NSObject* value, NSRange range);
    void addAttributes_range(const NSDictionary* attributes, NSRange range);
    void removeAttribute_range(const NSString* name, NSRange range);
    void replaceCharactersInRange_withAttributedString(NSRange range, const NSAttributedString* s);
    void insertAttributedString_atIndex(const NSAttributedString* s, NSUInteger i);
    void appendAttributedString(const NSAttributedString* s);
    void deleteCharactersInRange(NSRange range);
    void setAttributedString(const NSAttributedString* s);

    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

private:
    [[nodiscard]] NSMutableString* backing() const noexcept { return static_cast<NSMutableString*>(text_.get()); }
    /// The index of the run that begins at `i`, which is split off where it lies within one.
    std::size_t splitAt(NSUInteger i);
    void mergeAround(std::size_t first, std::size_t end);
    /// Sets new attributes on each run within the range, through the primitive.
    void changeRuns(NSRange range, const std::function<Ref<NSDictionary>(NSDictionary*)>& change);
};

} // namespace libvue

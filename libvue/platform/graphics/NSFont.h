#pragma once

#include <cstdint>
#include <memory>

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

enum NSControlSize : NSUInteger { NSRegularControlSize = 0, NSSmallControlSize = 1, NSMiniControlSize = 2 };

enum NSFontTraitMask : NSUInteger {
    NSItalicFontMask = 0x1,
    NSBoldFontMask = 0x2,
    NSUnboldFontMask = 0x4,
    NSNonStandardCharacterSetFontMask = 0x8,
    NSNarrowFontMask = 0x10,
    NSExpandedFontMask = 0x20,
    NSCondensedFontMask = 0x40,
    NSSmallCapsFontMask = 0x80,
    NSPosterFontMask = 0x100,
    NSCompressedFontMask = 0x200,
    NSFixedPitchFontMask = 0x400,
    NSUnitalicFontMask = 0x1000000
};

/// A font at a size: immutable and shared. Measures in points; the descender is negative.
///
/// A family that is not installed keeps its name and is drawn with another one that stands in for it.
class LIBVUE_API NSFont : public NSObject {
public:
    static void describe(ClassDescription<NSFont>& c);
    explicit NSFont(NSCoder& coder);
    ~NSFont() override;

    /// By family ("Helvetica") or full name ("Helvetica-Bold"). A size of 0 or less is the user font's. Null for an
    /// absent or empty name.
    [[nodiscard]] static Ref<NSFont> fontWithName_size(const NSString* name, CGFloat size);
    /// A size of 0 or less is that kind's own.
    [[nodiscard]] static Ref<NSFont> systemFontOfSize(CGFloat size);
    [[nodiscard]] static Ref<NSFont> boldSystemFontOfSize(CGFloat size);
    [[nodiscard]] static Ref<NSFont> userFontOfSize(CGFloat size);
    [[nodiscard]] static Ref<NSFont> userFixedPitchFontOfSize(CGFloat size);
    [[nodiscard]] static Ref<NSFont> menuFontOfSize(CGFloat size);
    [[nodiscard]] static Ref<NSFont> toolTipsFontOfSize(CGFloat size);
    [[nodiscard]] static Ref<NSFont> labelFontOfSize(CGFloat size);
    [[nodiscard]] static constexpr CGFloat systemFontSize() noexcept { return 13; }
    [[nodiscard]] static constexpr CGFloat smallSystemFontSize() noexcept { return 11; }
    [[nodiscard]] static constexpr CGFloat labelFontSize() noexcept { return 10; }
    /// 13, 11 and 9; another number counts as regular.
    [[nodiscard]] static CGFloat systemFontSizeForControlSize(NSControlSize size) noexcept;

    /// "Family" or "Family-BoldItalic", without spaces.
    [[nodiscard]] Ref<NSString> fontName() const;
    [[nodiscard]] Ref<NSString> familyName() const;
    /// "Family Bold Italic".
    [[nodiscard]] Ref<NSString> displayName() const;
    [[nodiscard]] CGFloat pointSize() const noexcept { return size_; }
    /// NSFontTraitMask bits: italic, bold, condensed, fixed pitch.
    [[nodiscard]] NSUInteger symbolicTraits() const noexcept { return traits_; }
    [[nodiscard]] BOOL isFixedPitch() const noexcept;
    [[nodiscard]] CGFloat ascender() const;
    [[nodiscard]] CGFloat descender() const;
    [[nodiscard]] CGFloat leading() const;
    [[nodiscard]] CGFloat xHeight() const;
    [[nodiscard]] CGFloat capHeight() const;
    [[nodiscard]] CGFloat underlinePosition() const;
    [[nodiscard]] CGFloat underlineThickness() const;
    [[nodiscard]] NSSize maximumAdvancement() const;
    [[nodiscard]] NSRect boundingRectForFont() const;
    [[nodiscard]] CGFloat defaultLineHeightForFont() const;
    /// The advance of one line of that text.
    [[nodiscard]] CGFloat widthOfString(const NSString* text) const;
    /// 0 to 15, 5 regular, 9 bold.
    [[nodiscard]] NSInteger weight() const;
    /// Whether a glyph is there for it.
    [[nodiscard]] BOOL coversCharacter(char32_t character) const;

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSString> description() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;

    /// The family at the size with those traits, whatever the name's own.
    [[nodiscard]] static Ref<NSFont> fontWithFamily_traits_size(const NSString* family, NSUInteger traits,
                                                                CGFloat size);
    [[nodiscard]] const std::shared_ptr<const backend::FontFace>& face() const noexcept { return face_; }

private:
    enum class Kind : std::uint8_t { named, system };
    NSFont(Ref<NSString> family, NSUInteger traits, CGFloat size, Kind kind);
    static Ref<NSFont> shared(const NSString* family, NSUInteger traits, CGFloat size, Kind kind);
    static Ref<NSFont> system(CGFloat size, CGFloat standard, NSUInteger traits);
    void findFace();
    struct Table;

    Ref<NSString> family_;
    std::shared_ptr<const backend::FontFace> face_;
    CGFloat size_ = 13;
    NSUInteger traits_ = 0;
    Kind kind_ = Kind::named;
};

} // namespace libvue

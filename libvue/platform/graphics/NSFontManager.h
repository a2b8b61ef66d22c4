#pragma once

#include <libvue/platform/graphics/NSFont.h>

namespace libvue {

/// Turns fonts into their relatives. A null font gives null.
class LIBVUE_API NSFontManager : public NSObject {
public:
    static void describe(ClassDescription<NSFontManager>& c);
    [[nodiscard]] static NSFontManager* sharedFontManager();

    /// With the trait (an NSFontTraitMask; the unbold and unitalic ones take away); the same font where it has it
    /// already.
    [[nodiscard]] Ref<NSFont> convertFont_toHaveTrait(NSFont* font, NSUInteger trait) const;
    [[nodiscard]] Ref<NSFont> convertFont_toNotHaveTrait(NSFont* font, NSUInteger trait) const;
    /// By full name ("Helvetica-Bold"), at the font's size, with the traits that the name says alone; the font itself
    /// for an absent or empty name.
    [[nodiscard]] Ref<NSFont> convertFont_toFace(NSFont* font, const NSString* face) const;
    /// With the font's traits and size; the font itself for an absent or empty name.
    [[nodiscard]] Ref<NSFont> convertFont_toFamily(NSFont* font, const NSString* family) const;
    [[nodiscard]] Ref<NSFont> convertFont_toSize(NSFont* font, CGFloat size) const;
    /// 0 for null.
    [[nodiscard]] NSUInteger traitsOfFont(const NSFont* font) const noexcept;
    /// 0 to 15, 5 regular, 9 bold; 0 for null.
    [[nodiscard]] NSInteger weightOfFont(const NSFont* font) const;
    [[nodiscard]] Ref<NSArray> availableFontFamilies() const;
};

} // namespace libvue

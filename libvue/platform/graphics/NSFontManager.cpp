#include <libvue/platform/graphics/NSFontManager.h>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

constexpr NSUInteger removable = NSItalicFontMask | NSBoldFontMask | NSCondensedFontMask;

/// The system font stays the system's under its family's name.
Ref<NSFont> withTraits(NSFont* font, NSUInteger traits) {
    if (traits == (font->symbolicTraits() & removable)) return font;
    return NSFont::fontWithFamily_traits_size(font->familyName(), traits, font->pointSize());
}

} // namespace

void NSFontManager::describe(ClassDescription<NSFontManager>& c) {
    c.key<&NSFontManager::availableFontFamilies>("availableFontFamilies");
}

NSFontManager* NSFontManager::sharedFontManager() {
    static NSFontManager* const manager = keptForever(make<NSFontManager>());
    return manager;
}

Ref<NSFont> NSFontManager::convertFont_toHaveTrait(NSFont* font, NSUInteger trait) const {
    if (!font) return nullptr;
    NSUInteger traits = (font->symbolicTraits() | trait) & removable;
    if (trait & NSUnboldFontMask) traits &= ~NSUInteger{NSBoldFontMask};
    if (trait & NSUnitalicFontMask) traits &= ~NSUInteger{NSItalicFontMask};
    return withTraits(font, traits);
}

Ref<NSFont> NSFontManager::convertFont_toNotHaveTrait(NSFont* font, NSUInteger trait) const {
    if (!font) return nullptr;
    // To be neither bold nor unbold is to be plain: the negative traits take nothing away.
    return withTraits(font, font->symbolicTraits() & removable & ~trait);
}

Ref<NSFont> NSFontManager::convertFont_toFace(NSFont* font, const NSString* face) const {
    if (!font || !face || face->length() == 0) return font;
    return NSFont::fontWithName_size(face, font->pointSize());
}

Ref<NSFont> NSFontManager::convertFont_toFamily(NSFont* font, const NSString* family) const {
    if (!font || !family || family->length() == 0) return font;
    return NSFont::fontWithFamily_traits_size(family, font->symbolicTraits(), font->pointSize());
}

Ref<NSFont> NSFontManager::convertFont_toSize(NSFont* font, CGFloat size) const {
    if (!font || size == font->pointSize()) return font;
    return NSFont::fontWithFamily_traits_size(font->familyName(), font->symbolicTraits(), size);
}

NSUInteger NSFontManager::traitsOfFont(const NSFont* font) const noexcept { return font ? font->symbolicTraits() : 0; }

NSInteger NSFontManager::weightOfFont(const NSFont* font) const { return font ? font->weight() : 0; }

Ref<NSArray> NSFontManager::availableFontFamilies() const {
    std::vector<Ref<NSString>> names;
    for (const std::string& family : backend::Backend::current().text->families())
        names.push_back(NSString::fromUTF8(family));
    return NSArray::arrayWithRefs(names);
}

} // namespace libvue

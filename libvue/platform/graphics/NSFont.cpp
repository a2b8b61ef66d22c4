#include <libvue/platform/graphics/NSFont.h>

#include <cmath>
#include <functional>
#include <string>
#include <unordered_map>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/CoderAccess.h>
#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/FontName.h>

namespace libvue {

namespace {

const ClassRegistration<NSFont> registration;

constexpr ConstantString nameKey{u"NSName"};
constexpr ConstantString sizeKey{u"NSSize"};
constexpr ConstantString traitsKey{u"NSTraits"};
constexpr ConstantString systemKey{u"NSSystemFont"};

constexpr CGFloat userFontSize = 12;
constexpr CGFloat largestSize = 10000;
constexpr NSUInteger ownTraits = NSItalicFontMask | NSBoldFontMask | NSCondensedFontMask;

CGFloat goodSize(CGFloat size, CGFloat standard) {
    if (!(size > 0)) return standard;
    return size < largestSize ? size : largestSize;
}

backend::TextEngine& engine() { return *backend::Backend::current().text; }

} // namespace

/// The fonts in use lately. A font holds no more than its face, so a full table is simply emptied. Never torn down: at
/// the end of the process the engine may be gone before its faces.
struct NSFont::Table {
    struct Key {
        std::string family;
        NSUInteger traits;
        CGFloat size;
        Kind kind;
        bool operator==(const Key&) const = default;
    };
    struct Hash {
        std::size_t operator()(const Key& k) const noexcept {
            return std::hash<std::string>()(k.family) ^
                   (std::hash<double>()(k.size) * 31 + k.traits * 7 + static_cast<std::size_t>(k.kind));
        }
    };
    static constexpr std::size_t capacity = 512;
    std::unordered_map<Key, Ref<NSFont>, Hash> fonts;

    static Table& shared() {
        static Table& t = *new Table;
        return t;
    }
};

void NSFont::describe(ClassDescription<NSFont>& c) {
    c.key<&NSFont::fontName>("fontName");
    c.key<&NSFont::pointSize>("pointSize");
}

NSFont::NSFont(Ref<NSString> family, NSUInteger traits, CGFloat size, Kind kind)
    : family_(std::move(family)), size_(size), traits_(traits), kind_(kind) {
    findFace();
}

NSFont::~NSFont() = default;

void NSFont::findFace() {
    const std::string family = kind_ == Kind::system ? engine().systemFontFamily() : family_->utf8();
    if (!family_) family_ = NSString::fromUTF8(family);
    face_ = engine().font(family, size_, static_cast<std::uint32_t>(traits_ & ownTraits));
    traits_ = (traits_ & ownTraits) | (face_->traits() & NSFixedPitchFontMask);
}

Ref<NSFont> NSFont::shared(const NSString* family, NSUInteger traits, CGFloat size, Kind kind) {
    auto& fonts = Table::shared().fonts;
    Table::Key key{kind == Kind::system ? std::string() : family->utf8(), traits & ownTraits, size, kind};
    if (const auto found = fonts.find(key); found != fonts.end()) return found->second;
    if (fonts.size() >= Table::capacity) fonts.clear();
    Ref<NSString> name = kind == Kind::system ? nullptr : NSString::stringWithString(family);
    (void)classOf<NSFont>();
    Ref<NSFont> font = adopt(new NSFont(std::move(name), key.traits, size, kind));
    markLiveObjectAsExpected(font.get());
    markLiveObjectAsExpected(font->family_.get());
    fonts.emplace(std::move(key), font);
    return font;
}

Ref<NSFont> NSFont::system(CGFloat size, CGFloat standard, NSUInteger traits) {
    return shared(nullptr, traits, goodSize(size, standard), Kind::system);
}

Ref<NSFont> NSFont::fontWithName_size(const NSString* name, CGFloat size) {
    if (!name || name->length() == 0) return nullptr;
    const FontName& parsed = parseFontName(name->utf8());
    return shared(NSString::fromUTF8(parsed.family), parsed.traits, goodSize(size, userFontSize), Kind::named);
}

Ref<NSFont> NSFont::fontWithFamily_traits_size(const NSString* family, NSUInteger traits, CGFloat size) {
    if (!family || family->length() == 0) return nullptr;
    return shared(family, traits, goodSize(size, userFontSize), Kind::named);
}

Ref<NSFont> NSFont::systemFontOfSize(CGFloat size) { return system(size, systemFontSize(), 0); }
Ref<NSFont> NSFont::boldSystemFontOfSize(CGFloat size) { return system(size, systemFontSize(), NSBoldFontMask); }
Ref<NSFont> NSFont::menuFontOfSize(CGFloat size) { return system(size, systemFontSize(), 0); }
Ref<NSFont> NSFont::toolTipsFontOfSize(CGFloat size) { return system(size, smallSystemFontSize(), 0); }
Ref<NSFont> NSFont::labelFontOfSize(CGFloat size) { return system(size, labelFontSize(), 0); }

Ref<NSFont> NSFont::userFontOfSize(CGFloat size) { return fontWithName_size(u"Helvetica"_ns, size); }

Ref<NSFont> NSFont::userFixedPitchFontOfSize(CGFloat size) {
    for (const char* family : {"Liberation Mono", "DejaVu Sans Mono"})
        if (engine().hasFamily(family)) return fontWithFamily_traits_size(NSString::fromUTF8(family), 0, size);
    return fontWithFamily_traits_size(u"monospace"_ns, 0, size);
}

CGFloat NSFont::systemFontSizeForControlSize(NSControlSize size) noexcept {
    switch (size) {
    case NSSmallControlSize:
        return smallSystemFontSize();
    case NSMiniControlSize:
        return 9;
    default:
        return systemFontSize();
    }
}

Ref<NSString> NSFont::familyName() const { return family_; }

Ref<NSString> NSFont::fontName() const { return NSString::fromUTF8(fullFontName(family_->utf8(), traits_)); }

Ref<NSString> NSFont::displayName() const {
    std::string name = family_->utf8();
    if (traits_ & NSCondensedFontMask) name += " Condensed";
    if (traits_ & NSBoldFontMask) name += " Bold";
    if (traits_ & NSItalicFontMask) name += " Italic";
    return NSString::fromUTF8(name);
}

BOOL NSFont::isFixedPitch() const noexcept { return (traits_ & NSFixedPitchFontMask) != 0; }
CGFloat NSFont::ascender() const { return face_->ascender(); }
CGFloat NSFont::descender() const { return face_->descender(); }
CGFloat NSFont::leading() const { return face_->leading(); }
CGFloat NSFont::xHeight() const { return face_->xHeight(); }
CGFloat NSFont::capHeight() const { return face_->capHeight(); }
CGFloat NSFont::underlinePosition() const { return face_->underlinePosition(); }
CGFloat NSFont::underlineThickness() const { return face_->underlineThickness(); }
NSSize NSFont::maximumAdvancement() const { return {face_->maximumAdvance(), 0}; }
CGFloat NSFont::defaultLineHeightForFont() const { return ascender() - descender() + leading(); }
NSInteger NSFont::weight() const { return face_->weight(); }
BOOL NSFont::coversCharacter(char32_t character) const { return face_->covers(character); }

NSRect NSFont::boundingRectForFont() const {
    return {{0, descender()}, {face_->maximumAdvance(), ascender() - descender()}};
}

CGFloat NSFont::widthOfString(const NSString* text) const {
    if (!text || text->length() == 0) return 0;
    if (const unichar* units = text->_fastCharacterContents()) return engine().advance({units, text->length()}, *face_);
    return engine().advance(text->utf16(), *face_);
}

BOOL NSFont::isEqual(const NSObject* other) const {
    if (this == other) return YES;
    const auto* o = as<const NSFont>(other);
    return o && size_ == o->size_ && traits_ == o->traits_ && family_->isEqualToString(o->family_);
}

NSUInteger NSFont::hash() const { return family_->hash() ^ (std::hash<double>()(size_) + traits_); }

Ref<NSString> NSFont::description() const {
    return NSString::fromUTF8(fullFontName(family_->utf8(), traits_) + " " + std::to_string(size_) + " pt");
}

Ref<NSObject> NSFont::copyWithZone() const { return const_cast<NSFont*>(this); }

void NSFont::encodeWithCoder(NSCoder& coder) const {
    CoderWriter out(coder);
    out.object(family_, nameKey);
    out.real(size_, sizeKey);
    out.integer(static_cast<NSInteger>(traits_ & ownTraits), traitsKey);
    out.flag(kind_ == Kind::system, systemKey);
}

NSFont::NSFont(NSCoder& coder) {
    CoderReader in(coder, this);
    const auto name = in.object<NSString>(nameKey);
    size_ = goodSize(in.real(sizeKey), userFontSize);
    traits_ = static_cast<NSUInteger>(in.integer(traitsKey)) & ownTraits;
    const bool system = in.flag(systemKey);
    // The system font of this machine may have another name than the one of the archive's.
    kind_ = system || !name || name->length() == 0 ? Kind::system : Kind::named;
    if (kind_ == Kind::named) family_ = NSString::stringWithString(name);
    findFace();
}

} // namespace libvue

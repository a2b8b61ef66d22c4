#include "Dessin.h"

#include <libvue/platform/graphics/FontName.h>
#include <libvue/platform/graphics/NSFontManager.h>
#include <libvue/platform/graphics/NSParagraphStyle.h>

#include <libvue/platform/foundation/NSArray.h>

using namespace libvue;
using namespace libvue::test;

TEST(NSFontTest, namesSayFamilyAndTraits) {
    struct Row {
        const char16_t* name;
        const char* family;
        NSUInteger traits;
    };
    const Row rows[] = {
        {u"Quelconque", "Quelconque", 0},
        {u"Quelconque-Bold", "Quelconque", NSBoldFontMask},
        {u"Quelconque-BoldOblique", "Quelconque", NSBoldFontMask | NSItalicFontMask},
        {u"Quelconque-CondensedBoldItalic", "Quelconque", NSCondensedFontMask | NSBoldFontMask | NSItalicFontMask},
        {u"Quelconque-Regular", "Quelconque", 0},
        {u"Quelconque-BoldMT", "Quelconque", NSBoldFontMask},
        {u"Jean-Paul", "Jean-Paul", 0},
        {u"Jean-", "Jean-", 0},
        {u"-Bold", "-Bold", 0},
        {u"DejaVuSans-Bold", "DejaVu Sans", NSBoldFontMask},
        {u"DejaVu Sans", "DejaVu Sans", 0},
        {u"TimesNewRomanPS-ItalicMT", "Times New Roman", NSItalicFontMask},
    };
    for (const Row& row : rows) {
        const Ref<NSFont> font = NSFont::fontWithName_size(NSString::from(row.name), 14);
        EXPECT_EQ(font->familyName()->utf8(), row.family);
        EXPECT_EQ(font->symbolicTraits() & ~NSUInteger{NSFixedPitchFontMask}, row.traits) << row.family;
        // The full name leads back to the same font.
        EXPECT_TRUE(isEqual(NSFont::fontWithName_size(font->fontName(), 14), font)) << font->fontName()->utf8();
    }
    EXPECT_EQ(NSFont::fontWithName_size(nullptr, 12), nullptr);
    EXPECT_EQ(NSFont::fontWithName_size(NSString::string(), 12), nullptr);
}

TEST(NSFontTest, sizesFallBackToTheKindsOwn) {
    EXPECT_EQ(NSFont::systemFontOfSize(0)->pointSize(), 13);
    EXPECT_EQ(NSFont::labelFontOfSize(-1)->pointSize(), 10);
    EXPECT_EQ(NSFont::systemFontOfSize(NAN)->pointSize(), 13);
    EXPECT_EQ(NSFont::fontWithName_size(u"Helvetica"_ns, 0)->pointSize(), 12);
    EXPECT_EQ(NSFont::systemFontSizeForControlSize(NSMiniControlSize), 9);
    EXPECT_EQ(NSFont::systemFontSizeForControlSize(static_cast<NSControlSize>(7)), 13);
    EXPECT_EQ(NSFont::systemFontOfSize(11), NSFont::systemFontOfSize(11)) << "shared";
    const Ref<NSFont> f = NSFont::systemFontOfSize(20);
    EXPECT_GT(f->ascender(), 0);
    EXPECT_LT(f->descender(), 0);
    EXPECT_GT(f->capHeight(), f->xHeight());
    EXPECT_NEAR(f->widthOfString(u"MM"_ns), 2 * f->widthOfString(u"M"_ns), 0.5);
    EXPECT_TRUE(NSFont::userFixedPitchFontOfSize(0)->isFixedPitch());
}

TEST(NSFontTest, convertingChangesOneThing) {
    NSFontManager* const m = NSFontManager::sharedFontManager();
    const Ref<NSFont> plain = NSFont::fontWithName_size(u"Helvetica"_ns, 12);
    const Ref<NSFont> bold = m->convertFont_toHaveTrait(plain, NSBoldFontMask);
    const Ref<NSFont> both = m->convertFont_toHaveTrait(bold, NSItalicFontMask);
    EXPECT_EQ(both->fontName()->utf8(), "Helvetica-BoldItalic");
    EXPECT_EQ(m->traitsOfFont(both), NSUInteger{NSBoldFontMask | NSItalicFontMask});
    EXPECT_GT(m->weightOfFont(bold), m->weightOfFont(plain));
    EXPECT_TRUE(isEqual(m->convertFont_toHaveTrait(both, NSUnboldFontMask | NSUnitalicFontMask), plain));
    EXPECT_TRUE(isEqual(m->convertFont_toNotHaveTrait(both, NSBoldFontMask),
                        m->convertFont_toHaveTrait(plain, NSItalicFontMask)));
    EXPECT_EQ(m->convertFont_toHaveTrait(bold, NSBoldFontMask), bold) << "itself";
    // Every bit but its own, which says nothing against what the font is.
    const NSUInteger own = m->traitsOfFont(bold);
    EXPECT_EQ(m->convertFont_toNotHaveTrait(bold, (own | ~NSUInteger{0xFF7}) ^ 0xFF7), bold);
    EXPECT_EQ(m->convertFont_toNotHaveTrait(plain, NSUnboldFontMask | NSUnitalicFontMask), plain);

    const Ref<NSFont> larger = m->convertFont_toSize(both, 24);
    EXPECT_EQ(larger->pointSize(), 24);
    EXPECT_EQ(m->traitsOfFont(larger), m->traitsOfFont(both));
    EXPECT_EQ(m->convertFont_toFace(both, u"Courier"_ns)->fontName()->utf8(), "Courier");
    EXPECT_EQ(m->convertFont_toFamily(both, u"Courier"_ns)->fontName()->utf8(), "Courier-BoldItalic");
    EXPECT_EQ(m->convertFont_toFamily(both, nullptr), both);
    EXPECT_EQ(m->convertFont_toHaveTrait(nullptr, NSBoldFontMask), nullptr);
    EXPECT_EQ(m->traitsOfFont(nullptr), 0u);
    EXPECT_GT(m->availableFontFamilies()->count(), 0u);
}

TEST(NSFontTest, fontsComeBackFromArchives) {
    const Ref<NSFont> fonts[] = {NSFont::boldSystemFontOfSize(11),
                                 NSFont::fontWithName_size(u"Courier-Oblique"_ns, 15)};
    for (const Ref<NSFont>& f : fonts) {
        EXPECT_TRUE(isEqual(throughKeyedArchive(*f), f));
        EXPECT_TRUE(isEqual(throughArchive(*f), f));
        EXPECT_EQ(throughArchive(*f)->hash(), f->hash());
    }
}

TEST(NSParagraphStyleTest, aMutableCopyLeavesItsSourceAlone) {
    NSParagraphStyle* const standard = NSParagraphStyle::defaultParagraphStyle();
    const Ref<NSMutableParagraphStyle> style = standard->mutableCopy();
    style->setAlignment(NSCenterTextAlignment);
    style->setTailIndent(-10);
    EXPECT_EQ(standard->alignment(), NSNaturalTextAlignment);
    const Ref<NSParagraphStyle> frozen = as<NSParagraphStyle>(style->copyWithZone().get());
    style->setAlignment(NSRightTextAlignment);
    EXPECT_EQ(frozen->alignment(), NSCenterTextAlignment);
    EXPECT_EQ(frozen->copyWithZone(), frozen) << "nothing to copy";
    EXPECT_FALSE(isEqual(frozen, style));
    style->setAlignment(NSCenterTextAlignment);
    EXPECT_TRUE(isEqual(frozen, style));
    EXPECT_EQ(frozen->hash(), style->hash());
    for (const CGFloat at : {50.0, 10.0, 30.0})
        style->addTabStop(make<NSTextTab>(at));
    EXPECT_EQ(style->tabStops()->at<NSTextTab>(0)->location(), 10);
    EXPECT_EQ(style->tabStops()->at<NSTextTab>(2)->location(), 50);
    EXPECT_FALSE(isEqual(frozen, style));
    EXPECT_TRUE(isEqual(throughKeyedArchive(*style), style));
    EXPECT_TRUE(isEqual(throughArchive<NSParagraphStyle>(*style), style));
}

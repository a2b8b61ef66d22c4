#include <cmath>

#include "Dessin.h"

#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/graphics/Appearance.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSParagraphStyle.h>
#include <libvue/platform/graphics/NSShadow.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/TextLayoutBuilder.h>
#include <libvue/platform/graphics/TextLayoutCache.h>

using namespace libvue;
using namespace libvue::test;
using Kind = backend::RecordingCanvas::Kind;

namespace {

Ref<NSMutableDictionary> attributes(CGFloat size = 13) {
    Ref<NSMutableDictionary> d = NSMutableDictionary::dictionary();
    d->setObject_forKey(NSFont::systemFontOfSize(size), NSFontAttributeName);
    return d;
}

Ref<NSMutableParagraphStyle> style(NSTextAlignment alignment, NSLineBreakMode mode = NSLineBreakByWordWrapping) {
    Ref<NSMutableParagraphStyle> s = NSParagraphStyle::defaultParagraphStyle()->mutableCopy();
    s->setAlignment(alignment);
    s->setLineBreakMode(mode);
    return s;
}

struct Grille : NSObject, TextAttachmentDrawing {
    NSSize attachmentSize() const override {
        // What an attachment answers may measure texts: the text that it stands in must not notice.
        (void)sizeWithAttributes(u"autre texte, plus long que le premier"_ns, attributes());
        return {20, 10};
    }
    CGFloat attachmentBaselineOffset() const override { return -2; }
    void drawAttachmentInRect(const NSRect& rect) override { drawn = rect; }
    NSRect drawn;
};

} // namespace

TEST(NSStringDrawingTest, measuresDoNotDependOnTheCache) {
    TextLayoutCache& cache = TextLayoutCache::shared();
    const char16_t* const texts[] = {
        u"",  u"a", u"Été à Montréal", u"deux\nlignes", u"\tonglet", u"日本語とعربي", u"👩‍👩‍👧‍👦!",
        u"\n"};
    for (const char16_t* text : texts)
        for (const CGFloat size : {9.0, 13.0, 40.0}) {
            const Ref<NSString> s = NSString::from(text);
            cache.clear();
            const NSSize cold = sizeWithAttributes(s, attributes(size));
            const NSSize warm = sizeWithAttributes(s, attributes(size));
            EXPECT_EQ(cold, warm) << s->utf8();
            EXPECT_GT(cold.height, size * 0.9) << s->utf8();
            const Ref<NSAttributedString> a = NSAttributedString::initWithString_attributes(s, attributes(size));
            const NSSize attributed = libvue::size(a);
            EXPECT_TRUE(attributed == cold || s->length() == 0) << s->utf8();
        }
    EXPECT_GT(sizeWithAttributes(u"deux\nlignes"_ns, attributes()).height,
              1.9 * sizeWithAttributes(u"deux"_ns, attributes()).height);
    EXPECT_EQ(sizeWithAttributes(nullptr, nullptr).width, 0);
}

TEST(NSStringDrawingTest, theSameLabelIsShapedOnce) {
    TextLayoutCache& cache = TextLayoutCache::shared();
    cache.clear();
    const std::size_t before = cache.hits();
    Enregistrement r;
    const NSSize size = sizeWithAttributes(u"Étiquette"_ns, attributes());
    drawAtPoint_withAttributes(u"Étiquette"_ns, {0, 0}, attributes());
    drawAtPoint_withAttributes(NSMutableString::stringWithString(u"Étiquette"_ns), {0, 0}, attributes());
    EXPECT_EQ(cache.count(), 1u);
    EXPECT_EQ(cache.hits() - before, 2u);
    EXPECT_EQ(r.last().rect.size, size);
}

TEST(NSStringDrawingTest, aChangedAttributeIsSeenAlthoughItsObjectIsTheSame) {
    const Ref<NSMutableDictionary> a = attributes();
    const Ref<NSShadow> shadow = make<NSShadow>();
    shadow->setShadowOffset({1, -1});
    a->setObject_forKey(shadow, NSShadowAttributeName);
    a->setObject_forKey(NSColor::textColor(), NSForegroundColorAttributeName);
    Enregistrement r;
    drawAtPoint_withAttributes(u"ombre"_ns, {0, 0}, a);
    EXPECT_EQ(r.last().runs.at(0).shadow->offset, (NSSize{1, -1}));
    EXPECT_LT(r.last().runs.at(0).color.red, 0.3);
    shadow->setShadowOffset({3, -3});
    AppearanceScope dark(Appearance::dark);
    drawAtPoint_withAttributes(u"ombre"_ns, {0, 0}, a);
    EXPECT_EQ(r.last().runs.at(0).shadow->offset, (NSSize{3, -3}));
    EXPECT_GT(r.last().runs.at(0).color.red, 0.7);
}

TEST(NSStringDrawingTest, theCacheForgetsTheOldestFirst) {
    TextLayoutCache cache;
    const backend::TextRun run = TextLayoutBuilder::runWithAttributes(nullptr, {0, 4});
    const auto layout = [&](std::size_t i) {
        const std::u16string text = {u't', static_cast<char16_t>(u'a' + i / 676),
                                     static_cast<char16_t>(u'a' + i / 26 % 26), static_cast<char16_t>(u'a' + i % 26)};
        backend::TextInput in;
        in.text = text;
        in.runs = {&run, 1};
        return cache.layout(in);
    };
    const auto first = layout(0);
    for (std::size_t i = 1; i < TextLayoutCache::capacity; ++i)
        (void)layout(i);
    EXPECT_EQ(layout(0), first);
    (void)layout(TextLayoutCache::capacity);
    EXPECT_EQ(cache.count(), TextLayoutCache::capacity);
    EXPECT_EQ(layout(0), first) << "used since: another one went";
    EXPECT_EQ(cache.hits(), 2u);
    (void)layout(1);
    EXPECT_EQ(cache.hits(), 2u) << "the oldest went";
}

TEST(NSStringDrawingTest, textStandsUprightFromItsCorner) {
    const NSSize size = sizeWithAttributes(u"Haut"_ns, attributes());
    struct Row {
        BOOL flipped;
        backend::YAxis axis;
        double base; // the lower edge of the text drawn at (10, 20), in the surface
    };
    const Row rows[] = {{NO, backend::YAxis::up, 20}, {YES, backend::YAxis::down, 100 - 20 - size.height}};
    for (const Row& row : rows) {
        Enregistrement r({100, 100}, row.flipped);
        drawAtPoint_withAttributes(u"Haut"_ns, {10, 20}, attributes());
        EXPECT_EQ(r.last().axis, row.axis);
        const NSRect box = r.last().transform.apply(r.last().rect);
        EXPECT_NEAR(box.origin.x, 10, 1e-6);
        EXPECT_NEAR(box.origin.y, row.base, 1e-6);
        // In a rectangle: from the top as seen.
        drawInRect_withAttributes(u"Haut"_ns, {{10, 20}, {80, 60}}, attributes());
        const NSRect in = r.last().transform.apply(r.last().rect);
        EXPECT_NEAR(NSMaxY(in), 80, 1e-6);
    }
}

TEST(NSStringDrawingTest, alignmentWithoutAWidthLinesUpTheLines) {
    for (const NSTextAlignment alignment : {NSLeftTextAlignment, NSCenterTextAlignment, NSRightTextAlignment}) {
        const Ref<NSMutableDictionary> a = attributes();
        a->setObject_forKey(style(alignment), NSParagraphStyleAttributeName);
        Pixels p(120, 60);
        drawAtPoint_withAttributes(u"MMMMMM\nM"_ns, {5, 5}, a);
        const auto inkIn = [&](int x0, int x1) {
            int n = 0;
            for (int x = x0; x < x1; ++x)
                for (int y = 0; y < 60; ++y)
                    n += p.at(x, y).substr(6) != "00";
            return n;
        };
        const int width = static_cast<int>(std::ceil(sizeWithAttributes(u"MMMMMM\nM"_ns, a).width));
        EXPECT_GT(inkIn(5, 5 + width / 2), 0) << alignment;
        EXPECT_GT(inkIn(5 + width / 2, 5 + width), 0) << alignment;
        EXPECT_EQ(inkIn(0, 4), 0) << alignment;
        EXPECT_EQ(inkIn(5 + width + 2, 120), 0) << alignment;
    }
}

TEST(NSStringDrawingTest, whatDoesNotFitIsCutAndWhatFitsIsNot) {
    const Ref<NSString> text = u"un deux trois quatre cinq six sept"_ns;
    const NSRect fits =
        boundingRectWithSize_options_attributes(text, {60, 0}, NSStringDrawingUsesLineFragmentOrigin, attributes());
    EXPECT_LE(fits.size.width, 60);
    EXPECT_GT(fits.size.height, 2 * sizeWithAttributes(text, attributes()).height - 1);
    Enregistrement r({200, 200});
    drawInRect_withAttributes(text, {{0, 0}, {60, fits.size.height}}, attributes());
    EXPECT_EQ(r.last().clip, (NSRect{{0, 0}, {200, 200}})) << "no clip where nothing is cut";
    drawInRect_withAttributes(text, {{10, 10}, {60, 20}}, attributes());
    EXPECT_EQ(r.last().clip, (NSRect{{10, 10}, {60, 20}}));
    EXPECT_EQ(r.context->savedStates(), 0u);
    const std::size_t drawn = r.canvas.operations().size();
    drawInRect_withAttributes(text, {{10, 10}, {0, 20}}, attributes());
    drawInRect_withAttributes(u""_ns, {{10, 10}, {60, 20}}, attributes());
    EXPECT_EQ(r.canvas.operations().size(), drawn);
}

TEST(NSStringDrawingTest, withoutTheFragmentOriginTheBaselineStandsAtThePoint) {
    const Ref<NSString> text = u"gyp"_ns;
    const NSRect box = boundingRectWithSize_options_attributes(text, NSZeroSize, 0, attributes(20));
    const Ref<NSFont> font = NSFont::systemFontOfSize(20);
    EXPECT_NEAR(NSMaxY(box), font->ascender(), 1);
    EXPECT_NEAR(NSMinY(box), font->descender() - font->leading(), 1);
    for (const BOOL flipped : {NO, YES}) {
        Enregistrement r({100, 100}, flipped);
        drawWithRect_options_attributes(text, {{10, 40}, {0, 0}}, 0, attributes(20));
        const NSRect drawn = r.last().transform.apply(r.last().rect);
        const double baseline = flipped ? 60 : 40;
        EXPECT_NEAR(NSMinY(drawn), baseline + NSMinY(box), 1e-6) << flipped;
    }
}

TEST(NSStringDrawingTest, theLastVisibleLineIsTruncatedWhereThatIsAskedFor) {
    const Ref<NSString> text = u"un deux trois quatre cinq six sept huit neuf dix onze douze"_ns;
    const double line = sizeWithAttributes(text, attributes()).height;
    Enregistrement r({200, 200});
    const NSUInteger options = NSStringDrawingUsesLineFragmentOrigin | NSStringDrawingTruncatesLastVisibleLine;
    drawWithRect_options_attributes(text, {{0, 0}, {60, line * 2.5}}, options, attributes());
    EXPECT_NEAR(r.last().rect.size.height, line * 2, 1);
    EXPECT_LE(r.last().rect.size.width, 60.01);
}

TEST(NSStringDrawingTest, eachParagraphIsSetAsItsFirstCharacterSays) {
    const Ref<NSMutableAttributedString> text =
        NSMutableAttributedString::initWithString_attributes(u"un\r\ndeux\ntrois"_ns, attributes());
    text->addAttribute_value_range(NSParagraphStyleAttributeName, style(NSRightTextAlignment), {0, 6});
    text->addAttribute_value_range(NSParagraphStyleAttributeName, style(NSCenterTextAlignment), {6, 8});
    TextLayoutBuilder b;
    b.setAttributedString(text);
    ASSERT_EQ(b.paragraphs().size(), 3u);
    EXPECT_EQ(b.paragraphs()[0].range, (NSRange{0, 4})) << "CR and LF end one line";
    EXPECT_EQ(b.paragraphs()[0].alignment, backend::TextAlignment::right);
    EXPECT_EQ(b.paragraphs()[1].range, (NSRange{4, 5}));
    EXPECT_EQ(b.paragraphs()[1].alignment, backend::TextAlignment::right);
    EXPECT_EQ(b.paragraphs()[2].range, (NSRange{9, 5}));
    EXPECT_EQ(b.paragraphs()[2].alignment, backend::TextAlignment::center);
    NSUInteger covered = 0;
    for (const backend::TextRun& run : b.runs()) {
        EXPECT_EQ(run.range.location, covered);
        covered = NSMaxRange(run.range);
    }
    EXPECT_EQ(covered, text->length());
}

TEST(NSStringDrawingTest, attributesReachTheRuns) {
    const Ref<NSMutableDictionary> a = attributes(20);
    a->setObject_forKey(NSColor::redColor(), NSForegroundColorAttributeName);
    a->setObject_forKey(NSColor::yellowColor(), NSBackgroundColorAttributeName);
    a->setObject_forKey(NSNumber::numberWithInt(0x109), NSUnderlineStyleAttributeName);
    a->setObject_forKey(NSNumber::numberWithInt(1), NSStrikethroughStyleAttributeName);
    a->setObject_forKey(NSColor::blueColor(), NSUnderlineColorAttributeName);
    a->setObject_forKey(NSNumber::numberWithDouble(2.5), NSBaselineOffsetAttributeName);
    a->setObject_forKey(NSNumber::numberWithDouble(1.5), NSKernAttributeName);
    const backend::TextRun run = TextLayoutBuilder::runWithAttributes(a, {0, 3});
    EXPECT_EQ(run.color, (backend::Color{1, 0, 0, 1}));
    EXPECT_EQ(run.background, (backend::Color{1, 1, 0, 1}));
    EXPECT_EQ(run.underline, 9) << "a line whose pattern is not drawn";
    EXPECT_TRUE(run.strikethrough);
    EXPECT_EQ(run.underlineColor, (backend::Color{0, 0, 1, 1}));
    EXPECT_EQ(run.baselineOffset, 2.5);
    EXPECT_EQ(run.kern, 1.5);
    // Values of the wrong type are as good as none.
    a->setObject_forKey(u"rouge"_ns, NSForegroundColorAttributeName);
    a->setObject_forKey(u"gras"_ns, NSFontAttributeName);
    const backend::TextRun plain = TextLayoutBuilder::runWithAttributes(a, {0, 3});
    EXPECT_EQ(plain.color, backend::Color());
    EXPECT_EQ(plain.font->pointSize(), 12);
    EXPECT_EQ(plain.underline, 9) << "the others still count";
    a->removeObjectForKey(NSUnderlineStyleAttributeName);
    a->setObject_forKey(NSNumber::numberWithInt(-1), NSSuperscriptAttributeName);
    EXPECT_LT(TextLayoutBuilder::runWithAttributes(a, {0, 3}).baselineOffset, 0);
}

TEST(NSStringDrawingTest, attachmentsAreDrawnWhereTheirCharacterStands) {
    const Ref<Grille> grille = make<Grille>();
    const Ref<NSMutableAttributedString> text =
        NSMutableAttributedString::initWithString_attributes(u"a\uFFFCb"_ns, attributes());
    text->addAttribute_value_range(NSAttachmentAttributeName, grille, {1, 1});
    const double a = NSFont::systemFontOfSize(13)->widthOfString(u"a"_ns);
    const NSSize whole = libvue::size(text);
    EXPECT_NEAR(whole.width, sizeWithAttributes(u"ab"_ns, attributes()).width + 20, 1);
    for (const BOOL flipped : {NO, YES}) {
        Enregistrement r({100, 100}, flipped);
        drawAtPoint(text, {10, 30});
        EXPECT_NEAR(grille->drawn.origin.x, 10 + a, 0.5);
        EXPECT_EQ(grille->drawn.size, (NSSize{20, 10}));
        const NSRect drawn = r.context->canvas().transform().apply(grille->drawn);
        const NSRect box = r.last().transform.apply(r.last().rect);
        EXPECT_GE(NSMinY(drawn), NSMinY(box) - 0.5) << "inside of the line";
        EXPECT_LE(NSMaxY(drawn), NSMaxY(box) + 0.5);
    }
}

TEST(NSStringDrawingTest, aTextIsNotBrokenInTheRectangleThatWasMeasuredForIt) {
    for (const NSTextAlignment alignment : {NSLeftTextAlignment, NSCenterTextAlignment, NSRightTextAlignment})
        for (const char16_t* text : {u"ra", u"ta", u"f", u"AVA", u"un mot", u"deux\nlignes"}) {
            const Ref<NSMutableDictionary> d = attributes(11);
            d->setObject_forKey(style(alignment), NSParagraphStyleAttributeName);
            const Ref<NSString> s = NSString::from(text);
            const NSSize measured = sizeWithAttributes(s, d);
            Enregistrement e({200, 100});
            drawInRect_withAttributes(s, {{10, 10}, measured}, d);
            EXPECT_NEAR(e.last().rect.size.width, measured.width, 1e-6) << s->utf8() << alignment;
            EXPECT_NEAR(e.last().rect.size.height, measured.height, 1e-6) << s->utf8();
        }
}

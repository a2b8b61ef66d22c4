#include <algorithm>
#include <cmath>
#include <functional>
#include <random>

#include "Dessin.h"

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/graphics/Appearance.h>
#include <libvue/platform/graphics/LongTextLayout.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSLayoutManager.h>
#include <libvue/platform/graphics/NSParagraphStyle.h>
#include <libvue/platform/graphics/NSTextAttributes.h>
#include <libvue/platform/graphics/NSTextContainer.h>
#include <libvue/platform/graphics/NSTextStorage.h>
#include <libvue/platform/graphics/TextLayoutBuilder.h>
#include <libvue/platform/graphics/TextLayoutCache.h>

using namespace libvue;
using namespace libvue::test;

namespace {

constexpr double near = 1e-6;

/// Random texts and changes, the same ones at each run.
class Hasard {
public:
    explicit Hasard(unsigned graine) : suite_(graine) {}
    std::size_t sous(std::size_t fin) { return suite_() % std::max<std::size_t>(fin, 1); }
    NSRange dans(NSUInteger length, NSUInteger most) {
        const NSUInteger from = sous(length + 1);
        return {from, std::min<NSUInteger>(sous(most + 1), length - from)};
    }
    std::u16string texte() {
        static const std::u16string morceaux[] = {
            u"mot ",         u"l’été ",
            u"\n",           u"\n",
            u"\n\n",         u"\r\n",
            u"\r",           u"\u2029",
            u"\u2028",       u"\t",
            u"Wave fi ",     u"\U0001F600",
            u"e\u0301",      u"\U0001F1E8\U0001F1E6",
            u"שלום ",        u"مرحبا ",
            u"abc שלום 12 ", u"un paragraphe qui se coupe sûrement en plusieurs lignes, car il est long. "};
        std::u16string out;
        for (std::size_t n = sous(6); n > 0; --n)
            out += morceaux[sous(std::size(morceaux))];
        return out;
    }
    Ref<NSDictionary> attributs() {
        const Ref<NSMutableDictionary> d = NSMutableDictionary::dictionary();
        static constexpr CGFloat corps[] = {9, 13, 13, 24};
        d->setObject_forKey(sous(3) ? NSFont::systemFontOfSize(corps[sous(4)]) : NSFont::boldSystemFontOfSize(13),
                            NSFontAttributeName);
        if (!sous(3)) d->setObject_forKey(NSColor::textColor(), NSForegroundColorAttributeName);
        if (!sous(4)) d->setObject_forKey(NSNumber::numberWithInteger(1), NSUnderlineStyleAttributeName);
        if (!sous(4)) d->setObject_forKey(NSNumber::numberWithDouble(2.5), NSKernAttributeName);
        if (!sous(2)) {
            const auto p = make<NSMutableParagraphStyle>();
            p->setAlignment(static_cast<NSTextAlignment>(sous(5)));
            p->setParagraphSpacing(static_cast<CGFloat>(sous(3)) * 3.3);
            p->setParagraphSpacingBefore(static_cast<CGFloat>(sous(3)) * 1.7);
            p->setLineSpacing(static_cast<CGFloat>(sous(2)));
            p->setFirstLineHeadIndent(static_cast<CGFloat>(sous(2)) * 12);
            p->setHeadIndent(static_cast<CGFloat>(sous(2)) * 7);
            if (!sous(5)) p->setLineBreakMode(NSLineBreakByTruncatingTail);
            d->setObject_forKey(p, NSParagraphStyleAttributeName);
        }
        return d;
    }

private:
    std::mt19937 suite_;
};

/// That of the whole, from nothing.
std::shared_ptr<const backend::TextLayout> entier(NSAttributedString* text, double width) {
    TextLayoutBuilder builder;
    builder.setAttributedString(text);
    builder.setWidth(width);
    return builder.layoutUncached();
}

::testing::AssertionResult proche(const NSRect& a, const NSRect& b) {
    if (std::abs(NSMinX(a) - NSMinX(b)) < near && std::abs(NSMinY(a) - NSMinY(b)) < near &&
        std::abs(a.size.width - b.size.width) < near && std::abs(a.size.height - b.size.height) < near)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << testing::PrintToString(a) << " and " << testing::PrintToString(b);
}

void compare(const backend::TextLayout& found, const backend::TextLayout& asked, Hasard& h) {
    ASSERT_EQ(found.length(), asked.length());
    ASSERT_EQ(found.lines().size(), asked.lines().size());
    for (std::size_t i = 0; i < asked.lines().size(); ++i) {
        const backend::TextLine &a = found.lines()[i], &b = asked.lines()[i];
        ASSERT_EQ(a.range, b.range) << "line " << i;
        ASSERT_EQ(a.range.location, i > 0 ? NSMaxRange(found.lines()[i - 1].range) : 0) << "line " << i;
        ASSERT_TRUE(proche(a.rect, b.rect)) << "line " << i;
        ASSERT_TRUE(proche(a.used, b.used)) << "line " << i;
        ASSERT_NEAR(a.baseline, b.baseline, near);
        ASSERT_EQ(a.truncated, b.truncated);
    }
    ASSERT_NEAR(found.size().width, asked.size().width, near);
    ASSERT_NEAR(found.size().height, asked.size().height, near);
    for (NSUInteger i = 0; i <= asked.length() + 1; ++i) {
        ASSERT_TRUE(proche(found.caretRect(i), asked.caretRect(i))) << "caret " << i;
        ASSERT_EQ(found.nextCaretPosition(i, true), asked.nextCaretPosition(i, true)) << i;
        ASSERT_EQ(found.nextCaretPosition(i, false), asked.nextCaretPosition(i, false)) << i;
    }
    for (int k = 0; k < 20; ++k) {
        const NSPoint p{static_cast<double>(h.sous(240)) - 20,
                        static_cast<double>(h.sous(10 + static_cast<std::size_t>(asked.size().height))) - 5};
        double a = 0, b = 0;
        ASSERT_EQ(found.characterAtPoint(p, &a), asked.characterAtPoint(p, &b)) << p.x << ", " << p.y;
        ASSERT_NEAR(a, b, near);
        const NSRange range = h.dans(asked.length(), 60);
        const std::vector<NSRect> some = found.rects(range), all = asked.rects(range);
        ASSERT_EQ(some.size(), all.size()) << range.location << "+" << range.length;
        for (std::size_t i = 0; i < all.size(); ++i)
            ASSERT_TRUE(proche(some[i], all[i])) << range.location << "+" << range.length;
    }
}

TEST(LongTextLayout, whatAChangeLeavesEqualsTheLayoutOfTheWhole) {
    constexpr double width = 200;
    for (unsigned graine = 1; graine <= 24; ++graine) {
        Hasard h(graine);
        const auto storage = make<NSTextStorage>();
        for (int i = 0; i < 12; ++i)
            storage->appendAttributedString(
                NSAttributedString::initWithString_attributes(NSString::from(h.texte()), h.attributs()));
        // From a paragraph a part to a few parts in all.
        LongTextLayout layout(storage, width, 1 + h.sous(90));
        compare(layout, *entier(storage, width), h);
        if (testing::Test::HasFatalFailure()) return;
        for (int etape = 0; etape < 12; ++etape) {
            SCOPED_TRACE(testing::Message() << "seed " << graine << ", step " << etape);
            NSUInteger head = NSNotFound, tail = NSNotFound;
            // Now and then two changes before the layout is asked for.
            for (std::size_t k = 1 + h.sous(2); k > 0; --k) {
                NSRange at = h.dans(storage->length(), etape == 9 ? 400 : 30);
                NSUInteger now = at.length;
                if (h.sous(3)) {
                    const std::u16string with = h.texte();
                    now = with.size();
                    storage->replaceCharactersInRange_withString(at, NSString::from(with));
                } else {
                    storage->setAttributes_range(h.attributs(), at);
                }
                head = std::min(head, at.location);
                tail = std::min(tail, storage->length() - at.location - now);
            }
            layout.textChanged(storage, head, tail);
            compare(layout, *entier(storage, width), h);
            if (testing::Test::HasFatalFailure()) return;
        }
    }
}

TEST(LongTextLayout, partsEndWithTheirParagraphs) {
    struct Row {
        const char16_t* text;
        NSRange range;
        const char16_t* with;
        std::size_t parts; ///< of a unit or more each
    };
    Hasard h(1);
    for (const Row& row :
         {Row{u"a\rb", {2, 0}, u"\n", 2}, Row{u"a\r\nb", {2, 1}, u"", 2}, Row{u"a\r\nb", {1, 1}, u"", 2},
          Row{u"a\nb\nc", {1, 1}, u"", 2}, Row{u"", {0, 0}, u"x\ny", 2}, Row{u"a\nb", {0, 3}, u"", 1},
          Row{u"a\nb", {2, 1}, u"", 1}, Row{u"a", {1, 0}, u"\n", 1}}) {
        SCOPED_TRACE(NSString::from(row.text)->utf8());
        const auto text = NSMutableAttributedString::initWithString(NSString::from(row.text));
        LongTextLayout layout(text, 200, 1);
        text->replaceCharactersInRange_withString(row.range, NSString::from(row.with));
        layout.textChanged(text, row.range.location,
                           text->length() - row.range.location - std::u16string(row.with).size());
        compare(layout, *entier(text, 200), h);
        EXPECT_EQ(layout.partCount(), row.parts);
    }
}

/// The pixels of a layout from `top` on.
std::string pixels(double top, const std::function<void(NSPoint)>& draw) {
    constexpr int width = 200, height = 150;
    const Pixels on(width, height);
    draw({0, height + top});
    const auto* rows = reinterpret_cast<const char*>(on.picture->pixels());
    return {rows, rows + static_cast<std::ptrdiff_t>(width) * height * 4};
}

TEST(LongTextLayout, aManagerKeepsItBetweenChanges) {
    Hasard h(7);
    const auto storage = make<NSTextStorage>();
    while (storage->length() < 2 * TextLayoutCache::longestText)
        storage->appendAttributedString(
            NSAttributedString::initWithString_attributes(NSString::from(h.texte()), h.attributs()));
    const auto manager = make<NSLayoutManager>();
    const auto container = make<NSTextContainer>(NSSize{200, 0});
    container->setLineFragmentPadding(0);
    storage->addLayoutManager(manager);
    manager->addTextContainer(container);
    const auto agrees = [&](const char* what) {
        SCOPED_TRACE(what);
        const auto whole = entier(storage, container->containerSize().width);
        ASSERT_EQ(manager->glyphRangeForTextContainer(container), (NSRange{0, storage->length()}));
        for (const backend::TextLine& line : whole->lines()) {
            const NSUInteger at = line.range.location;
            if (line.range.length == 0) continue;
            ASSERT_TRUE(proche(manager->lineFragmentUsedRectForGlyphAtIndex_effectiveRange(at, nullptr), line.used))
                << at;
        }
        for (const double top : {0.0, whole->size().height / 2, whole->size().height - 100})
            EXPECT_TRUE(pixels(top,
                               [&](NSPoint at) {
                                   manager->drawGlyphsForGlyphRange_atPoint({0, storage->length()}, at);
                               }) == pixels(top,
                                            [&](NSPoint at) {
                                                NSGraphicsContext::currentContext()->canvas().drawText(
                                                    *whole, at, backend::YAxis::up);
                                            }))
                << top;
    };
    const auto type = [&](NSUInteger at, const char16_t* s) {
        storage->replaceCharactersInRange_withString({at, 0}, NSString::from(s));
    };
    agrees("at first");
    type(storage->length() / 2, u"x\ny");
    agrees("a line more in the middle");
    type(10, u"un ");
    type(storage->length(), u"\nla fin\n");
    agrees("at both ends at once");
    container->setContainerSize({150, 0});
    agrees("narrower");
    type(3000, u"deux");
    container->setContainerSize({170, 0});
    agrees("wider after a change");
    {
        type(20, u"clair");
        const AppearanceScope dark(Appearance::dark);
        agrees("other colours all over");
    }
    storage->deleteCharactersInRange({100, TextLayoutCache::longestText + 1000});
    agrees("no longer long");
    storage->setAttributedString(NSAttributedString::initWithString(u""_ns));
    EXPECT_EQ(manager->glyphRangeForTextContainer(container).length, 0U);
}

} // namespace

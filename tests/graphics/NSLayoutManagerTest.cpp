#include <functional>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "Dessin.h"

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSLayoutManager.h>
#include <libvue/platform/graphics/NSTextAttributes.h>
#include <libvue/platform/graphics/NSTextContainer.h>
#include <libvue/platform/graphics/NSTextStorage.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

Ref<NSDictionary> police(CGFloat corps) {
    return NSDictionary::dictionaryWithObject_forKey(NSFont::systemFontOfSize(corps), NSFontAttributeName.get());
}

/// A storage, a manager and its first container, without padding.
struct Texte {
    explicit Texte(NSString* s, NSSize size = {1000, 0})
        : storage(make<NSTextStorage>(s, police(14))),
          manager(make<NSLayoutManager>()),
          container(add(size)),
          line(NSFont::systemFontOfSize(14)->defaultLineHeightForFont()) {
        storage->addLayoutManager(manager);
    }
    Ref<NSTextContainer> add(NSSize size) const {
        auto c = make<NSTextContainer>(size);
        c->setLineFragmentPadding(0);
        manager->addTextContainer(c);
        return c;
    }
    [[nodiscard]] NSRange range() const { return manager->glyphRangeForTextContainer(container); }
    [[nodiscard]] NSSize used() const { return manager->usedRectForTextContainer(container).size; }

    Ref<NSTextStorage> storage;
    Ref<NSLayoutManager> manager;
    Ref<NSTextContainer> container;
    CGFloat line;
};

TEST(NSLayoutManager, usedHeightIsThatOfTheLines) {
    struct Row {
        const char16_t* text;
        int lines;
    };
    for (const Row& row :
         {Row{u"un", 1}, Row{u"un\ndeux", 2}, Row{u"un\n", 2}, Row{u"\n\n", 3}, Row{u"a\nb\nc\nd\ne", 5}}) {
        Texte t(NSString::from(row.text));
        EXPECT_DOUBLE_EQ(t.used().height, row.lines * t.line) << row.lines;
        EXPECT_EQ(t.range(), (NSRange{0, t.storage->length()}));
    }
}

TEST(NSLayoutManager, whatDoesNotFitGoesOnInTheNextContainer) {
    Texte t(u"un\ndeux\ntrois\nquatre\ncinq"_ns, {1000, 0});
    t.container->setContainerSize({1000, 2.5 * t.line});
    EXPECT_EQ(t.range(), (NSRange{0, 8}));
    const auto second = t.add({1000, t.line}), third = t.add({1000, 0}), fourth = t.add({1000, 0});
    EXPECT_EQ(t.manager->glyphRangeForTextContainer(second), (NSRange{8, 6}));
    EXPECT_EQ(t.manager->glyphRangeForTextContainer(third), (NSRange{14, 11}));
    EXPECT_DOUBLE_EQ(t.manager->usedRectForTextContainer(third).size.height, 2 * t.line);
    EXPECT_EQ(t.manager->glyphRangeForTextContainer(fourth).length, 0U);
    EXPECT_EQ(t.manager->usedRectForTextContainer(fourth), NSZeroRect);
    NSRange range;
    EXPECT_EQ(t.manager->textContainerForGlyphAtIndex_effectiveRange(16, &range), third.get());
    EXPECT_EQ(range, (NSRange{14, 11}));
    EXPECT_EQ(t.manager->lineFragmentRectForGlyphAtIndex_effectiveRange(22, &range).origin.y, t.line);
    EXPECT_EQ(range, (NSRange{21, 4}));
    // One that grows takes back what went on; one that goes hands on what it had.
    t.container->setContainerSize({1000, 3 * t.line});
    EXPECT_EQ(t.manager->glyphRangeForTextContainer(second), (NSRange{14, 7}));
    t.manager->removeTextContainerAtIndex(0);
    EXPECT_EQ(t.manager->glyphRangeForTextContainer(second), (NSRange{0, 3}));
    EXPECT_EQ(t.range().length, 0U);
    EXPECT_EQ(raised([&] { t.manager->removeTextContainerAtIndex(9); }), "NSRangeException");
}

TEST(NSLayoutManager, placesAndPointsAgree) {
    Texte t(u"premier\nsecond"_ns, {300, 0});
    t.container->setLineFragmentPadding(5);
    for (NSUInteger i : {0U, 3U, 8U, 13U}) {
        const NSRect r = t.manager->boundingRectForGlyphRange_inTextContainer({i, 1}, t.container);
        EXPECT_GE(NSMinX(r), 5);
        EXPECT_DOUBLE_EQ(NSMinY(r), i < 8 ? 0 : t.line);
        CGFloat part = 0;
        EXPECT_EQ(t.manager->glyphIndexForPoint_inTextContainer_fractionOfDistanceThroughGlyph({NSMidX(r), NSMidY(r)},
                                                                                               t.container, &part),
                  i);
        EXPECT_NEAR(part, 0.5, 0.1);
        const NSPoint at = t.manager->locationForGlyphAtIndex(i);
        EXPECT_NEAR(at.x, NSMinX(r), 0.01);
        EXPECT_GT(at.y, t.line / 2);
        EXPECT_LT(at.y, t.line);
    }
    EXPECT_EQ(t.manager->rectsForCharacterRange_inTextContainer({4, 8}, t.container).size(), 2U);
    EXPECT_EQ(t.manager->glyphRangeForBoundingRect_inTextContainer({{0, t.line + 1}, {10, 1}}, t.container),
              (NSRange{8, 6}));
    EXPECT_EQ(t.manager->boundingRectForGlyphRange_inTextContainer({90, 5}, t.container), NSZeroRect);
    EXPECT_EQ(t.manager->extraLineFragmentRect(), NSZeroRect);
    t.storage->replaceCharactersInRange_withString({14, 0}, u"\n"_ns);
    EXPECT_DOUBLE_EQ(t.manager->extraLineFragmentRect().origin.y, 2 * t.line);
}

/// A delegate of managers that does something on hearing of a container.
class Intrus : public NSObject {
public:
    static void describe(ClassDescription<Intrus>& c) {
        c.answers<&Intrus::fini>(op::layoutManager_didCompleteLayoutForTextContainer_atEnd);
    }
    std::function<void()> agit;
    void fini(NSLayoutManager*, NSTextContainer*, BOOL) {
        if (const auto f = std::exchange(agit, nullptr)) f();
    }
};

TEST(NSLayoutManager, theDelegateMayTakeTextAndContainersAwayAmidTheLayout) {
    const auto intrus = make<Intrus>();
    for (int what = 0; what < 3; ++what) {
        Texte t(u"un\ndeux\ntrois"_ns, {1000, 1});
        t.container->setContainerSize({1000, t.line});
        const auto second = t.add({1000, 0});
        intrus->agit = [&] {
            if (what == 0) t.storage->removeLayoutManager(t.manager);
            if (what == 1) t.storage->replaceCharactersInRange_withString({1, 12}, nullptr);
            if (what == 2) t.manager->removeTextContainerAtIndex(1);
        };
        t.manager->setDelegate(intrus);
        EXPECT_EQ(t.manager->glyphRangeForTextContainer(second).length, 0U) << what;
    }
}

class Oreille : public NSObject {
public:
    static void describe(ClassDescription<Oreille>& c) {
        c.answers<&Oreille::traite>(op::textStorageDidProcessEditing);
    }
    std::vector<std::string> dit;
    BOOL proteste = NO;
    void traite(NSNotification* n) {
        if (std::exchange(proteste, NO)) raiseNamed(NSGenericException, "not this text");
        const auto* s = as<NSTextStorage>(n->object());
        dit.push_back(std::to_string(s->editedMask()) + " " + std::to_string(s->editedRange().location) + "+" +
                      std::to_string(s->editedRange().length) + " " + std::to_string(s->changeInLength()));
    }
};

TEST(NSTextStorage, tellsWhatWasEditedAndHasItLaidOutAnew) {
    Texte t(u"un deux trois"_ns);
    const auto oreille = make<Oreille>();
    t.storage->setDelegate(oreille);
    t.storage->replaceCharactersInRange_withString({3, 4}, u"\n2\n"_ns);
    EXPECT_DOUBLE_EQ(t.used().height, 3 * t.line);
    t.storage->addAttribute_value_range(NSFontAttributeName.get(), NSFont::systemFontOfSize(28), {0, 1});
    EXPECT_GT(t.used().height, 3.5 * t.line);
    // Of several changes the whole is told once, in today's units.
    t.storage->beginEditing();
    t.storage->replaceCharactersInRange_withString({8, 2}, nullptr);
    t.storage->replaceCharactersInRange_withString({0, 0}, u"zéro "_ns);
    t.storage->endEditing();
    EXPECT_THAT(oreille->dit, ElementsAre("2 3+3 -1", "1 0+1 0", "2 0+13 3"));
    EXPECT_EQ(t.range().length, t.storage->length());
    // Layouts follow the text, whatever an observer thinks of it.
    oreille->proteste = YES;
    EXPECT_EQ(raised([&] { t.storage->replaceCharactersInRange_withString({0, 13}, nullptr); }), "NSGenericException");
    EXPECT_EQ(t.range().length, t.storage->length());
    t.storage->replaceCharactersInRange_withString({0, 0}, u"un\nde plus\n"_ns);
    EXPECT_EQ(t.range().length, t.storage->length());
}

TEST(NSTextStorage, handsAManagerOverAndLetsItGo) {
    Texte t(u"un"_ns);
    auto other = make<NSTextStorage>(u"un\ndeux"_ns, police(14));
    other->addLayoutManager(t.manager);
    EXPECT_EQ(t.storage->layoutManagers()->count(), 0U);
    EXPECT_DOUBLE_EQ(t.used().height, 2 * t.line);
    other = nullptr;
    EXPECT_EQ(t.manager->textStorage(), nullptr);
    EXPECT_EQ(t.used(), NSZeroSize);
    EXPECT_EQ(t.manager->numberOfGlyphs(), 0U);
}

TEST(NSLayoutManager, drawsTheLinesOfARange) {
    Texte t(u"un\ndeux\ntrois"_ns);
    Enregistrement e({200, 100}, YES);
    t.manager->drawGlyphsForGlyphRange_atPoint({0, 13}, {10, 20});
    t.manager->drawGlyphsForGlyphRange_atPoint({4, 2}, {10, 20});
    t.manager->drawGlyphsForGlyphRange_atPoint({40, 2}, {10, 20});
    t.container->setContainerSize({1000, t.line});
    for (int i = 0; i < 20; ++i)
        (void)t.add({1000, t.line});
    t.manager->drawGlyphsForGlyphRange_atPoint({0, 13}, {0, 0}); // the others are laid out for it
    const auto& ops = e.canvas.operations();
    ASSERT_EQ(ops.size(), 3U);
    EXPECT_EQ(ops[0].rect.origin, (NSPoint{10, 20}));
    EXPECT_EQ(ops[0].clip, NSMakeRect(0, 0, 200, 100));
    EXPECT_NEAR(NSMaxY(ops[1].clip), 80 - t.line, 0.01);
    EXPECT_NEAR(ops[1].clip.size.height, t.line, 0.01);
    EXPECT_EQ(ops[2].rect.origin, NSZeroPoint);
    EXPECT_NEAR(ops[2].rect.size.height, t.line, 0.01) << "of one container alone";
}

} // namespace

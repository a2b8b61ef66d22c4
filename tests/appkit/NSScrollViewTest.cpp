#include <appkit/WindowFixture.h>
#include <foundation/Valeurs.h>

#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSScroller.h>

using namespace libvue;
using namespace libvue::test;

namespace {

class Page : public NSView {
public:
    static void describe(ClassDescription<Page, NSView>&) {}
    Page(const NSRect& f, BOOL flipped) : NSView(f), flipped_(flipped) {}
    BOOL isFlipped() const override { return flipped_; }

private:
    BOOL flipped_;
};

/// A document of 200 by 500 points in a room of 200 by 100; both ways up.
struct ScrollTest : WindowFixture, testing::WithParamInterface<bool> {
    Ref<NSScrollView> scroll = add<NSScrollView>({{0, 0}, {200, 100}});
    Ref<Page> page = make<Page>(NSRect{{0, 0}, {200, 500}}, GetParam());

    ScrollTest() {
        scroll->setHasVerticalScroller(YES);
        scroll->setHasHorizontalScroller(YES);
        scroll->setDocumentView(page);
        drain();
    }
    /// How far below the top of the document the view stands.
    CGFloat fromTop() const {
        const NSRect r = scroll->documentVisibleRect();
        return GetParam() ? r.origin.y : 500 - NSMaxY(r);
    }
    NSRect band(CGFloat top, CGFloat height) const {
        return {{0, GetParam() ? top : 500 - top - height}, {200, height}};
    }
    NSScroller* bar() const { return scroll->verticalScroller(); }
    NSRect knob() const { return bar()->convertRect_toView(bar()->rectForPart(NSScrollerKnob), nullptr); }
};

INSTANTIATE_TEST_SUITE_P(, ScrollTest, testing::Values(true, false),
                         [](const auto& p) { return p.param ? "flipped" : "unflipped"; });

TEST_P(ScrollTest, ItStartsAtTheTopAndPages) {
    EXPECT_EQ(fromTop(), 0);
    struct Row {
        void (NSScrollView::*move)(NSObject*);
        CGFloat top;
    };
    for (const Row& row : {Row{&NSScrollView::pageUp, 0}, Row{&NSScrollView::pageDown, 80},
                           Row{&NSScrollView::scrollLineDown, 100}, Row{&NSScrollView::scrollLineUp, 80},
                           Row{&NSScrollView::scrollToEndOfDocument, 400}, Row{&NSScrollView::pageDown, 400},
                           Row{&NSScrollView::pageUp, 320}, Row{&NSScrollView::scrollToBeginningOfDocument, 0}}) {
        (scroll.get()->*row.move)(nullptr);
        EXPECT_DOUBLE_EQ(fromTop(), row.top);
    }
}

TEST_P(ScrollTest, TheKnobTellsWhereItStandsAndIsDragged) {
    EXPECT_TRUE(scroll->horizontalScroller()->isHidden()) << "the document is not wider";
    EXPECT_DOUBLE_EQ(bar()->knobProportion(), 0.2);
    EXPECT_DOUBLE_EQ(bar()->position(), 0);
    scroll->scrollToEndOfDocument(nullptr);
    EXPECT_DOUBLE_EQ(bar()->position(), 1);
    page->scrollRectToVisible(band(200, 100));
    EXPECT_DOUBLE_EQ(bar()->position(), 0.5);

    scroll->scrollToBeginningOfDocument(nullptr);
    const CGFloat way = bar()->bounds().size.height - 4 - knob().size.height, x = NSMidX(knob());
    mouse().at(x, NSMidY(knob())).down().at(x, NSMidY(knob()) - way / 2).end();
    EXPECT_NEAR(fromTop(), 200, 0.6);
    mouse().up().end();
    mouse().at(x, NSMidY(knob())).down().at(x, -500).up().end();
    EXPECT_DOUBLE_EQ(fromTop(), 400) << "past the end it stays at the end";
    mouse().click(x, 98).end(); // above the knob
    EXPECT_DOUBLE_EQ(fromTop(), 320);

    page->setFrameSize({200, 90}); // now it fits
    EXPECT_TRUE(bar()->isHidden());
    page->setFrameSize({300, 90});
    EXPECT_FALSE(scroll->horizontalScroller()->isHidden());
    EXPECT_TRUE(bar()->isHidden());
}

TEST_P(ScrollTest, RectsComeIntoViewByTheShortestWay) {
    struct Row {
        CGFloat top, height, expected;
    };
    for (const Row& row : {Row{150, 20, 70}, Row{80, 10, 70}, Row{160, 10, 70}, Row{60, 20, 60}, Row{490, 10, 400},
                           Row{0, 1, 0}, Row{900, 20, 400}}) {
        page->scrollRectToVisible(band(row.top, row.height));
        EXPECT_DOUBLE_EQ(fromTop(), row.expected) << row.top;
    }
}

TEST_P(ScrollTest, AnInnerOneThatStandsAtItsEndHandsTheWheelOn) {
    const auto inner = make<NSScrollView>(band(10, 60));
    const auto innerPage = make<Page>(NSRect{{0, 0}, {200, 100}}, YES);
    inner->setDocumentView(innerPage);
    page->addSubview(inner);
    EXPECT_EQ(innerPage->enclosingScrollView(), inner.get());
    EXPECT_EQ(inner->enclosingScrollView(), scroll.get());
    move(window, 50, 50);
    struct Row {
        CGFloat lines, inner, outer;
    };
    for (const Row& row : {Row{-2, 40, 0}, Row{-1, 40, 20}}) {
        windows().wheel(0, row.lines);
        drain();
        EXPECT_DOUBLE_EQ(inner->documentVisibleRect().origin.y, row.inner);
        EXPECT_DOUBLE_EQ(fromTop(), row.outer);
    }
    // What is shown in the inner one is brought into view of the outer one too.
    scroll->scrollToEndOfDocument(nullptr);
    innerPage->scrollRectToVisible({{0, 0}, {10, 5}});
    EXPECT_DOUBLE_EQ(inner->documentVisibleRect().origin.y, 0);
    EXPECT_LE(fromTop(), 10);
}

TEST_P(ScrollTest, ResizingKeepsTheTopAndNeverShowsPastTheDocument) {
    scroll->pageDown(nullptr);
    scroll->setFrameSize({200, 150});
    EXPECT_DOUBLE_EQ(fromTop(), 80);
    scroll->scrollToEndOfDocument(nullptr);
    scroll->setFrameSize({200, 200});
    EXPECT_DOUBLE_EQ(fromTop(), 300);
    scroll->setFrameSize({0, 0});
    scroll->setFrameSize({200, 100});
    EXPECT_GE(fromTop(), 0);
    scroll->contentView()->setBoundsSize({400, 200}); // shown at half its size
    scroll->tile();
    EXPECT_DOUBLE_EQ(bar()->knobProportion(), 0.4);
    scroll->contentView()->setBoundsSize({1000, 600}); // all of it fits
    scroll->tile();
    EXPECT_TRUE(bar()->isHidden());
}

TEST_P(ScrollTest, TheSameDocumentAgainAndAnotherOne) {
    scroll->setDocumentView(page);
    EXPECT_EQ(page->superview(), scroll->contentView());
    const auto other = make<Page>(NSRect{{0, 0}, {50, 50}}, YES);
    scroll->setDocumentView(other);
    EXPECT_EQ(page->superview(), nullptr);
    page->setFrameSize({200, 900}); // no longer heard
    EXPECT_TRUE(bar()->isHidden());
    other->removeFromSuperview();
    EXPECT_EQ(scroll->documentView(), nullptr);
    scroll->pageDown(nullptr);
}

} // namespace

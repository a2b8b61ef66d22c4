#include <appkit/Cible.h>

#include <libvue/platform/appkit/NSBox.h>
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

std::string s(const NSRect& r) {
    char out[96];
    std::snprintf(out, sizeof out, "%g %g %g %g", r.origin.x, r.origin.y, r.size.width, r.size.height);
    return out;
}

class ScrollTest : public AppFixture, public testing::WithParamInterface<bool> {
protected:
    Ref<NSWindow> window;
    Ref<NSScrollView> scroll;
    Ref<Page> page;

    void SetUp() override {
        window = windowAt({{100, 100}, {400, 300}});
        scroll = make<NSScrollView>(NSRect{{0, 0}, {200, 100}});
        scroll->setHasVerticalScroller(YES);
        scroll->setHasHorizontalScroller(YES);
        page = make<Page>(NSRect{{0, 0}, {200, 500}}, GetParam());
        scroll->setDocumentView(page);
        window->contentView()->addSubview(scroll);
        show(window);
    }
    void TearDown() override {
        window = nullptr;
        scroll = nullptr;
        page = nullptr;
        AppFixture::TearDown();
    }
    /// How far below the top of the document the view stands.
    CGFloat fromTop() const {
        const NSRect r = scroll->documentVisibleRect();
        return GetParam() ? r.origin.y : 500 - NSMaxY(r);
    }
    NSRect band(CGFloat top, CGFloat height) const {
        return {{0, GetParam() ? top : 500 - top - height}, {200, height}};
    }
    Geste mouse() { return {windows(), window}; }
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

TEST_P(ScrollTest, TheKnobTellsWhereItStands) {
    auto* v = scroll->verticalScroller();
    EXPECT_FALSE(v->isHidden());
    EXPECT_TRUE(scroll->horizontalScroller()->isHidden()) << "the document is not wider";
    EXPECT_DOUBLE_EQ(v->knobProportion(), 0.2);
    EXPECT_DOUBLE_EQ(v->position(), 0);
    scroll->scrollToEndOfDocument(nullptr);
    EXPECT_DOUBLE_EQ(v->position(), 1);
    page->scrollRectToVisible(band(200, 100));
    EXPECT_DOUBLE_EQ(v->position(), 0.5);
    page->setFrameSize({200, 90}); // now it fits
    EXPECT_TRUE(v->isHidden());
    page->setFrameSize({300, 90});
    EXPECT_FALSE(scroll->horizontalScroller()->isHidden());
    EXPECT_TRUE(v->isHidden());
}

TEST_P(ScrollTest, TheKnobIsDragged) {
    auto* v = scroll->verticalScroller();
    const NSRect knob = v->convertRect_toView(v->rectForPart(NSScrollerKnob), nullptr);
    const CGFloat way = v->bounds().size.height - 4 - knob.size.height;
    mouse().at(NSMidX(knob), NSMidY(knob)).down().at(NSMidX(knob), NSMidY(knob) - way / 2).end();
    EXPECT_NEAR(fromTop(), 200, 0.6);
    mouse().up().end();
    const NSRect now = v->convertRect_toView(v->rectForPart(NSScrollerKnob), nullptr);
    mouse().at(NSMidX(now), NSMidY(now)).down().at(NSMidX(now), -500).up().end();
    EXPECT_DOUBLE_EQ(fromTop(), 400) << "past the end it stays at the end";
    mouse().at(NSMidX(now), 98).down().up().end(); // above the knob
    EXPECT_DOUBLE_EQ(fromTop(), 320);
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

TEST_P(ScrollTest, TheWheelScrollsAndPassesOn) {
    windows().moveMouse(window->convertBaseToScreen({50, 50}));
    windows().wheel(0, -1); // a line
    drain();
    EXPECT_DOUBLE_EQ(fromTop(), 20);
    windows().wheel(0, -7, true); // points
    drain();
    EXPECT_DOUBLE_EQ(fromTop(), 27);
    windows().wheel(0, 100);
    drain();
    EXPECT_DOUBLE_EQ(fromTop(), 0);
    // An inner one that stands at its end hands the wheel to the outer one.
    const auto inner = make<NSScrollView>(band(10, 60));
    const auto innerPage = make<Page>(NSRect{{0, 0}, {200, 100}}, YES);
    inner->setDocumentView(innerPage);
    page->addSubview(inner);
    windows().wheel(0, -2);
    drain();
    EXPECT_DOUBLE_EQ(inner->documentVisibleRect().origin.y, 40);
    EXPECT_DOUBLE_EQ(fromTop(), 0);
    windows().wheel(0, -1);
    drain();
    EXPECT_DOUBLE_EQ(fromTop(), 20);
    EXPECT_EQ(innerPage->enclosingScrollView(), inner.get());
    EXPECT_EQ(inner->enclosingScrollView(), scroll.get());
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
    EXPECT_DOUBLE_EQ(scroll->verticalScroller()->knobProportion(), 0.4);
    scroll->contentView()->setBoundsSize({1000, 600}); // all of it fits
    scroll->tile();
    EXPECT_TRUE(scroll->verticalScroller()->isHidden());
}

TEST_P(ScrollTest, TheSameDocumentAgainAndAnotherOne) {
    scroll->setDocumentView(page);
    EXPECT_EQ(scroll->documentView(), page.get());
    EXPECT_EQ(page->superview(), scroll->contentView());
    const auto other = make<Page>(NSRect{{0, 0}, {50, 50}}, YES);
    scroll->setDocumentView(other);
    EXPECT_EQ(page->superview(), nullptr);
    page->setFrameSize({200, 900}); // no longer heard
    EXPECT_TRUE(scroll->verticalScroller()->isHidden());
    other->removeFromSuperview();
    EXPECT_EQ(scroll->documentView(), nullptr);
    scroll->pageDown(nullptr);
    scroll->setDocumentView(nullptr);
}

class BoxTest : public AppFixture {};

TEST_F(BoxTest, TheContentStandsInsideTheFrame) {
    const auto box = make<NSBox>(NSRect{{0, 0}, {200, 100}});
    const auto content = make<NSView>(NSZeroRect);
    box->setContentView(content);
    box->setTitlePosition(NSNoTitle);
    EXPECT_EQ(s(content->frame()), "6 6 188 88");
    box->setContentViewMargins({10, 0});
    EXPECT_EQ(s(content->frame()), "11 1 178 98");
    box->setBorderType(NSNoBorder);
    EXPECT_EQ(s(content->frame()), "10 0 180 100");
    box->setTitle(u"Titre"_ns);
    box->setTitlePosition(NSAtTop);
    EXPECT_LT(NSMaxY(content->frame()), NSMinY(box->titleRect()) + 0.01);
    EXPECT_EQ(NSMinY(content->frame()), 0);
    box->setTitlePosition(NSBelowBottom);
    EXPECT_GE(NSMinY(content->frame()), NSMaxY(box->titleRect()));
    box->setFrameSize({5, 5}); // too small for anything
    EXPECT_GE(content->frame().size.width, 0);
    EXPECT_GE(content->frame().size.height, 0);
    box->setFrameFromContentFrame({{20, 30}, {100, 40}});
    EXPECT_EQ(content->frame().size.width, 100);
}

TEST_F(BoxTest, ItTakesTheSizeOfItsContent) {
    const auto box = make<NSBox>(NSRect{{0, 0}, {200, 100}});
    const auto content = make<NSView>(NSZeroRect);
    box->setTitlePosition(NSNoTitle);
    box->setContentView(content);
    content->addSubview(make<NSView>(NSRect{{0, 0}, {50, 20}}));
    content->addSubview(make<NSView>(NSRect{{30, 10}, {50, 20}}));
    box->sizeToFit();
    EXPECT_EQ(s(content->frame()), "6 6 80 30");
    EXPECT_EQ(s(box->frame()), "0 0 92 42");
}

} // namespace

#include <cmath>

#include <fenetres/EcranFixture.h>

#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSScroller.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>

using namespace libvue;
using namespace libvue::test;

namespace {

/// Bands of two greys, 20 points high.
class Bandes : public NSView {
public:
    static void describe(ClassDescription<Bandes, NSView>&) {}
    using NSView::NSView;
    BOOL isFlipped() const override { return YES; }
    void drawRect(const NSRect& r) override {
        for (CGFloat y = std::floor(NSMinY(r) / 20) * 20; y < NSMaxY(r); y += 20) {
            NSColor::colorWithSRGBRed_green_blue_alpha(0, std::fmod(y, 40) == 0 ? 0.4 : 0.6, 0, 1)->setFill();
            NSBezierPath::fillRect({{NSMinX(r), y}, {r.size.width, 20}});
        }
    }
};

struct NSScrollViewScreenTest : EcranFixture {
    Ref<NSWindow> window;
    Ref<NSScrollView> scroll;

    void SetUp() override {
        output("xdotool mousemove 5 5");
        window = make<NSWindow>(NSRect{{200, 200}, {400, 300}}, NSTitledWindowMask | NSResizableWindowMask);
        window->setTitle(u"Défilement"_ns);
        scroll = make<NSScrollView>(NSRect{{0, 0}, {400, 300}});
        scroll->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
        scroll->setHasVerticalScroller(YES);
        scroll->setHasHorizontalScroller(YES);
        scroll->setDocumentView(make<Bandes>(NSRect{{0, 0}, {3000, 1e8}}));
        window->contentView()->addSubview(scroll);
        window->makeKeyAndOrderFront(nullptr);
        ASSERT_TRUE(comes([&] { return window->isKeyWindow(); }));
    }
    void TearDown() override {
        window->close();
        scroll = nullptr;
        window = nullptr;
    }
    [[nodiscard]] NSPoint shown() const { return scroll->documentVisibleRect().origin; }
    /// Notches that are still on their way arrive.
    static void settle() {
        NSRunLoop* loop = NSRunLoop::mainRunLoop();
        for (const NSTimeInterval end = loop->now() + 0.3; loop->now() < end;)
            (void)NSApp()->runOnceUntil_(end);
    }
    [[nodiscard]] NSPoint inScreen(NSPoint p) const { return window->convertBaseToScreen(p); }
};

TEST_F(NSScrollViewScreenTest, TheWheelAndItsTilts) {
    output("xdotool mousemove " + at(inScreen({150, 150})));
    struct Row {
        const char* buttons;
        int right, down; ///< which way it goes
    };
    for (const Row& row :
         {Row{"click --repeat 3 5", 0, 1}, Row{"click 4", 0, -1}, Row{"click 7", 1, 0}, Row{"click --repeat 2 7", 1, 0},
          Row{"click 6", -1, 0}, Row{"keydown shift click 5 keyup shift", 1, 0},
          Row{"keydown shift click 4 keyup shift", -1, 0}}) {
        const NSPoint before = shown();
        output(std::string("xdotool ") + row.buttons);
        EXPECT_TRUE(comes([&] { return shown() != before; })) << row.buttons;
        settle();
        const NSPoint by{shown().x - before.x, shown().y - before.y};
        EXPECT_TRUE(by.x * row.right > 0 || (row.right == 0 && by.x == 0)) << row.buttons << " " << by.x;
        EXPECT_TRUE(by.y * row.down > 0 || (row.down == 0 && by.y == 0)) << row.buttons << " " << by.y;
    }
}

TEST_F(NSScrollViewScreenTest, TheKnobIsDraggedThroughAHundredMillionPoints) {
    NSScroller* bar = scroll->verticalScroller();
    const NSRect knob = bar->convertRect_toView(bar->rectForPart(NSScrollerKnob), nullptr);
    const NSPoint from{NSMidX(knob), NSMidY(knob)};
    output("xdotool mousemove " + at(inScreen(from)) + " mousedown 1 mousemove " +
           at(inScreen({from.x, from.y - 100})) + " sleep 0.2 mouseup 1");
    EXPECT_TRUE(comes([&] { return shown().y > 3e7; }));
    EXPECT_LT(shown().y, 4.5e7);
    const NSPoint there = shown();
    output("xdotool mousemove " + at(inScreen({150, 150})) + " click 5");
    EXPECT_TRUE(comes([&] { return shown().y > there.y; }));
    EXPECT_LT(shown().y - there.y, 200) << "a notch is a notch there too";
}

} // namespace

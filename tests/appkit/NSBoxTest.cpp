#include <appkit/AppFixture.h>

#include <libvue/platform/appkit/NSBox.h>

using namespace libvue;
using namespace libvue::test;

namespace {

using BoxTest = AppFixture;

TEST_F(BoxTest, TheContentStandsInsideTheFrame) {
    const auto box = make<NSBox>(NSRect{{0, 0}, {200, 100}});
    const auto content = make<NSView>(NSZeroRect);
    box->setContentView(content);
    box->setTitlePosition(NSNoTitle);
    EXPECT_EQ(content->frame(), NSMakeRect(6, 6, 188, 88));
    box->setContentViewMargins({10, 0});
    EXPECT_EQ(content->frame(), NSMakeRect(11, 1, 178, 98));
    box->setBorderType(NSNoBorder);
    EXPECT_EQ(content->frame(), NSMakeRect(10, 0, 180, 100));
    box->setFrameFromContentFrame({{20, 30}, {100, 40}});
    EXPECT_EQ(content->frame().size.width, 100);

    const auto fitted = make<NSBox>(NSRect{{0, 0}, {200, 100}});
    fitted->setTitlePosition(NSNoTitle);
    for (const NSRect& r : {NSMakeRect(0, 0, 50, 20), NSMakeRect(30, 10, 50, 20)})
        fitted->contentView()->addSubview(make<NSView>(r));
    fitted->sizeToFit();
    EXPECT_EQ(fitted->frame(), NSMakeRect(0, 0, 92, 42));
}

TEST_F(BoxTest, TheTitleAndTheContentShareTheRoom) {
    struct Row {
        NSTitlePosition position;
        bool above, inside; ///< of the middle; of the border
    };
    for (const NSSize size : {NSMakeSize(200, 100), NSMakeSize(5, 5)})
        for (const Row& r :
             {Row{NSAboveTop, true, false}, Row{NSAtTop, true, false}, Row{NSBelowTop, true, true},
              Row{NSAboveBottom, false, true}, Row{NSAtBottom, false, false}, Row{NSBelowBottom, false, false}}) {
            const auto box = make<NSBox>(NSMakeRect(0, 0, 0, 0));
            box->setTitlePosition(r.position);
            box->setFrameSize(size);
            const NSRect title = box->titleRect(), content = box->contentView()->frame();
            EXPECT_TRUE(content.size.height >= 0 && content.size.width >= 0) << r.position;
            if (size.height < 50) continue;
            EXPECT_FALSE(NSIntersectsRect(title, content)) << r.position;
            EXPECT_TRUE(NSContainsRect(box->bounds(), title)) << r.position;
            EXPECT_EQ(NSMinY(title) >= NSMaxY(content), r.above) << r.position;
            EXPECT_EQ(NSContainsRect(box->borderRect(), title), r.inside) << r.position;
            EXPECT_GT(content.size.height, 60) << r.position;
        }
}

TEST_F(BoxTest, AContentThatIsTakenElsewhereIsNoLongerTheBoxes) {
    const auto box = make<NSBox>(NSMakeRect(0, 0, 200, 100)), other = make<NSBox>(NSMakeRect(0, 0, 80, 80));
    const Ref<NSView> content(box->contentView()), inside = make<NSView>();
    other->setContentView(content);
    EXPECT_EQ(box->contentView(), nullptr);
    const NSRect there = content->frame();
    box->setFrameSize({300, 300});
    EXPECT_EQ(content->frame(), there);
    // One that stands deeper in the same box.
    content->addSubview(inside);
    other->setContentView(inside);
    EXPECT_EQ(inside->superview(), other.get());
    EXPECT_EQ(other->contentView(), inside.get());
    EXPECT_EQ(content->superview(), nullptr);
}

} // namespace

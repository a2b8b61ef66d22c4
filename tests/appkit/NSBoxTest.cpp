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

    const auto fitted = make<NSBox>(NSRect{{0, 0}, {200, 100}});
    fitted->setTitlePosition(NSNoTitle);
    for (const NSRect& r : {NSMakeRect(0, 0, 50, 20), NSMakeRect(30, 10, 50, 20)})
        fitted->contentView()->addSubview(make<NSView>(r));
    fitted->sizeToFit();
    EXPECT_EQ(fitted->frame(), NSMakeRect(0, 0, 92, 42));
}

} // namespace

#include <cstdio>

#include <fenetres/EcranFixture.h>

#include <libvue/platform/appkit/NSPanel.h>

using namespace libvue;
using namespace libvue::test;

namespace {

class SheetScreenTest : public EcranFixture {};

TEST_F(SheetScreenTest, ASheetBelongsToItsWindowOnTheDesktop) {
    const auto owner = make<NSWindow>(NSMakeRect(200, 300, 400, 300), NSTitledWindowMask | NSClosableWindowMask);
    owner->setTitle(u"feuillemere"_ns);
    const auto sheet = make<NSPanel>(NSMakeRect(0, 0, 240, 100), NSTitledWindowMask);
    sheet->setTitle(u"feuille"_ns);
    owner->makeKeyAndOrderFront(nullptr);
    ASSERT_TRUE(comes([&] { return !output("xdotool search --onlyvisible --name '^feuillemere$'").empty(); }));
    NSInteger code = 0;
    owner->beginSheet_completionHandler(sheet, [&](NSInteger c) { code = c; });
    ASSERT_TRUE(comes(
        [&] { return output("xdotool search --onlyvisible --name '^feuille$'").find_first_of("0123456789") == 0; }));

    char hexadecimal[32];
    std::snprintf(hexadecimal, sizeof hexadecimal, "0x%lx",
                  std::stoul(output("xdotool search --onlyvisible --name '^feuillemere$'")));
    EXPECT_NE(output("xprop -name feuille WM_TRANSIENT_FOR").find(hexadecimal), std::string::npos);
    EXPECT_NE(output("xprop -name feuille _NET_WM_WINDOW_TYPE").find("_NET_WM_WINDOW_TYPE_DIALOG"), std::string::npos);
    EXPECT_NE(output("xprop -name feuille _NET_FRAME_EXTENTS").find("= 0, 0, 0, 0"), std::string::npos)
        << "it has no title bar";
    const auto hangs = [&] {
        const NSRect r = owner->convertRectFromScreen(sheet->frame());
        return NSMidX(r) == 200 && NSMaxY(r) == 300 &&
               backend::Backend::current().windows->content(sheet->nativeId_()) == sheet->frame();
    };
    EXPECT_TRUE(comes(hangs));
    EXPECT_TRUE(comes([&] { return sheet->isKeyWindow(); }));

    // Moved by the desktop, it takes the sheet along.
    output("xdotool search --onlyvisible --name '^feuillemere$' windowmove 420 150");
    const NSRect before = owner->frame();
    EXPECT_TRUE(comes([&] { return owner->frame().origin != before.origin; }));
    EXPECT_TRUE(comes(hangs));

    // A click on the window comes as far as the application, and no farther.
    const NSTimeInterval pressedAt = backend::Backend::current().windows->now();
    const auto isRelease = [&](const NSEvent* e) {
        return e && e->type() == NSLeftMouseUp && e->timestamp() >= pressedAt;
    };
    click(owner->convertBaseToScreen({20, 20}));
    EXPECT_TRUE(comes([&] { return isRelease(NSApp()->currentEvent()); }));
    EXPECT_TRUE(comes([&] { return sheet->isKeyWindow(); }));
    EXPECT_FALSE(owner->isKeyWindow());

    owner->endSheet_returnCode(sheet, 5);
    EXPECT_EQ(code, 5);
    EXPECT_TRUE(comes([&] { return output("xdotool search --onlyvisible --name '^feuille$'").empty(); }));
    EXPECT_TRUE(comes([&] { return owner->isKeyWindow(); }));
}

} // namespace

#include <fenetres/EcranFixture.h>

#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSViewController.h>
#include <libvue/popover/KCPopover.h>
#include <libvue/popover/MaFenetre.h>

using namespace libvue;
using namespace libvue::test;

namespace {

Ref<NSScrollView> defilant(const NSRect& cadre, NSSize document) {
    class Page : public NSView {
    public:
        static void describe(ClassDescription<Page, NSView>&) {}
        using NSView::NSView;
        BOOL isFlipped() const override { return YES; }
    };
    auto s = make<NSScrollView>(cadre);
    s->setHasVerticalScroller(YES);
    s->setDocumentView(make<Page>(NSRect{{0, 0}, document}));
    return s;
}

/// A balloon over a scrolled view, and a scrolled view in the balloon.
TEST_F(EcranFixture, AWheelOverABalloonScrollsNothingBeneath) {
    output("xdotool mousemove 5 5");
    const auto parent = make<NSWindow>(NSRect{{300, 300}, {500, 400}}, NSTitledWindowMask);
    const auto dessous = defilant({{0, 0}, {500, 400}}, {500, 5000});
    const auto ancre = make<NSView>(NSRect{{200, 300}, {80, 20}});
    dessous->documentView()->addSubview(ancre);
    parent->contentView()->addSubview(dessous);
    parent->makeKeyAndOrderFront(nullptr);
    ASSERT_TRUE(comes([&] { return parent->isKeyWindow(); }));
    const auto contenu = make<NSView>(NSRect{{0, 0}, {240, 120}});
    const auto dedans = defilant({{0, 0}, {120, 120}}, {120, 300});
    contenu->addSubview(dedans);
    const auto controleur = make<NSViewController>();
    controleur->setView(contenu);
    const auto bulle = make<KCPopover>();
    bulle->setContentViewController(controleur);
    bulle->showRelativeToRect_ofView_preferredEdge(ancre->bounds(), ancre, NSMaxYEdge);
    ASSERT_TRUE(comes([&] { return bulle->isShown() && bulle->panel()->alphaValue() == 1; }));

    const auto y = [](NSScrollView* s) { return s->documentVisibleRect().origin.y; };
    const auto tourne = [&](NSPoint dansContenu, const char* touches) {
        const NSPoint base = contenu->convertPoint_toView(dansContenu, nullptr);
        output("xdotool mousemove " + at(contenu->window()->convertBaseToScreen(base)) + touches);
        NSRunLoop* loop = NSRunLoop::mainRunLoop();
        for (const NSTimeInterval end = loop->now() + 0.4; loop->now() < end;)
            (void)NSApp()->runOnceUntil_(end);
    };
    ASSERT_TRUE(NSIntersectsRect(bulle->panel()->frame(), parent->frame())) << "it lies over what scrolls";
    tourne({180, 60}, " click --repeat 3 5"); // where nothing of it scrolls
    EXPECT_EQ(y(dessous), 0);
    EXPECT_TRUE(bulle->isShown());
    tourne({60, 60}, " click --repeat 2 5");
    EXPECT_GT(y(dedans), 0);
    EXPECT_EQ(y(dessous), 0);
    tourne({60, 60}, " click --repeat 9 5"); // past its end
    EXPECT_EQ(y(dedans), 180);
    EXPECT_EQ(y(dessous), 0);
    // Beside the balloon the page scrolls as ever.
    output("xdotool mousemove " + at(parent->convertBaseToScreen({30, 30})) + " click 5");
    EXPECT_TRUE(comes([&] { return y(dessous) > 0; }));
    bulle->close();
    (void)comes([&] { return !bulle->isShown(); });
    parent->close();
}

} // namespace

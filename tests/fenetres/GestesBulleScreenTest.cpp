#include <fenetres/MainReelle.h>

#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/popover/NSWindowSticky.h>

using namespace libvue;
using namespace libvue::test;

namespace {

struct GestesBulleScreenTest : EcranFixture {};

TEST_F(GestesBulleScreenTest, EachGestureInEachStateDoesWhatItDoesOnVirtualTime) {
    {
        MainReelle main;
        SceneBulle scene(main);
        for (const Geste& g : gestesBulle)
            scene.joue(g);
        output("xdotool mousemove 1270 1010");
    }
    // Until the last fade has given its balloon up.
    const NSTimeInterval fin = NSRunLoop::mainRunLoop()->now() + 0.6;
    EXPECT_TRUE(comes([&] { return NSRunLoop::mainRunLoop()->now() > fin; }));
}

TEST_F(GestesBulleScreenTest, TornOffItAsksForACloseBoxAlone) {
    const auto w = make<MaFenetre>(NSMakeRect(300, 300, 200, 100), NSBorderlessWindowMask);
    w->setTitle(u"detachee"_ns);
    w->orderFront(nullptr);
    ASSERT_TRUE(comes([] { return isOnTheDesktop("detachee"); }));
    w->setStyleMask(NSTitledWindowMask | NSClosableWindowMask | NSUtilityWindowMask);
    const auto permis = [] { return output("xprop -name detachee _NET_WM_ALLOWED_ACTIONS"); };
    EXPECT_TRUE(comes([&] { return permis().find("_NET_WM_ACTION_CLOSE") != std::string::npos; })) << permis();
    for (const char* boite : {"_NET_WM_ACTION_MAXIMIZE", "_NET_WM_ACTION_RESIZE"})
        EXPECT_EQ(permis().find(boite), std::string::npos) << permis();
    // Functions: resize, move, close; decorations: border, handles, title, menu. Some managers show a box for the dock
    // all the same.
    EXPECT_NE(output("xprop -name detachee _MOTIF_WM_HINTS").find("= 0x3, 0x26, 0x1e,"), std::string::npos);
    w->close();
}

TEST_F(GestesBulleScreenTest, AStickyWindowIsOnEveryDesktop) {
    const auto w = make<NSWindow>(NSMakeRect(300, 300, 200, 100), NSTitledWindowMask);
    w->setTitle(u"collante"_ns);
    const auto partout = [](bool oui) {
        return comes([=] {
            const std::string bureau = output("xprop -name collante _NET_WM_DESKTOP");
            return bureau.find(oui ? "= 4294967295" : "= 0") != std::string::npos;
        });
    };
    w->orderFront(nullptr);
    EXPECT_TRUE(partout(false));
    setSticky(w, YES);
    EXPECT_TRUE(partout(true));
    setSticky(w, NO);
    EXPECT_TRUE(partout(false));
    // Told before it comes, too; and to one that went and comes again.
    w->orderOut(nullptr);
    ASSERT_TRUE(comes([] { return !isOnTheDesktop("collante"); }));
    setSticky(w, YES);
    w->orderFront(nullptr);
    EXPECT_TRUE(partout(true));
    w->close();
}

TEST_F(GestesBulleScreenTest, OnASecondMonitorItStaysOnThatOne) {
    const NSSize tout = NSScreen::mainScreen()->frame().size;
    const auto moniteur = [&](const char* nom, int x, const char* sortie) {
        const int l = static_cast<int>(tout.width) / 2, h = static_cast<int>(tout.height);
        output("xrandr --setmonitor " + std::string(nom) + " " + std::to_string(l) + "/300x" + std::to_string(h) +
               "/500+" + std::to_string(x) + "+0 " + sortie);
    };
    moniteur("gauche", 0, "screen");
    moniteur("droite", static_cast<int>(tout.width) / 2, "none");
    EXPECT_TRUE(comes([] { return NSScreen::screens()->count() == 2; })) << output("xrandr --listmonitors");
    if (NSScreen::screens()->count() == 2) {
        // Beside the border of the two, so that to the left there is room on the other one only.
        const auto w = make<NSWindow>(NSMakeRect(tout.width / 2 + 10, 300, 300, 200), NSTitledWindowMask);
        w->setTitle(u"deuxieme"_ns);
        const auto ancre = make<NSView>(NSMakeRect(5, 100, 20, 20));
        w->contentView()->addSubview(ancre);
        w->makeKeyAndOrderFront(nullptr);
        EXPECT_TRUE(comes([&] { return isOnTheDesktop("deuxieme") && w->isKeyWindow(); }));
        const auto c = make<NSViewController>();
        c->setView(make<NSView>(NSMakeRect(0, 0, 160, 80)));
        const auto p = make<KCPopover>();
        p->setContentViewController(c);
        for (const NSUInteger edge : {NSMinXEdge, NSMaxYEdge}) {
            p->showRelativeToRect_ofView_preferredEdge(ancre->bounds(), ancre, edge);
            EXPECT_TRUE(NSContainsRect(w->screen()->visibleFrame(), p->panel()->frame()));
            EXPECT_GE(NSMinX(p->panel()->frame()), tout.width / 2);
            EXPECT_EQ(p->edgeTemporaire(), NSUInteger{NSMaxYEdge});
            p->panel()->close();
        }
        w->close();
    }
    output("xrandr --delmonitor droite; xrandr --delmonitor gauche");
    EXPECT_TRUE(comes([] { return NSScreen::screens()->count() == 1; }));
}

} // namespace

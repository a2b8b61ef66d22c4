#include <fenetres/EcranFixture.h>

#include <map>

#include <popover/GestesBulle.h>

#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/popover/NSWindowSticky.h>

using namespace libvue;
using namespace libvue::test;

namespace {

/// With a real pointer. After each gesture the application runs until it has seen what came of it.
class MainReelle : public Main {
public:
    MainReelle()
        : jeton_(NSEvent::addLocalMonitorForEventsMatchingMask_handler(NSAnyEventMask, [this](NSEvent* e) {
              ++vus_[e->type()];
              return Ref<NSEvent>(e);
          })) {}
    ~MainReelle() override { NSEvent::removeMonitor(jeton_); }
    MainReelle(const MainReelle&) = delete;
    MainReelle& operator=(const MainReelle&) = delete;

    void va(NSPoint ecran) override {
        constexpr NSEventType tires[] = {NSLeftMouseDragged, NSRightMouseDragged, NSOtherMouseDragged};
        fais("mousemove " + EcranFixture::at(ecran), tires[bouton_]);
    }
    void appuie(NSPoint ecran, int bouton) override {
        constexpr NSEventType appuis[] = {NSLeftMouseDown, NSRightMouseDown, NSOtherMouseDown};
        bouton_ = bouton;
        fais("mousemove " + EcranFixture::at(ecran) + " mousedown " + numero(), appuis[bouton]);
    }
    void relache(int bouton) override {
        constexpr NSEventType relachements[] = {NSLeftMouseUp, NSRightMouseUp, NSOtherMouseUp};
        bouton_ = bouton;
        fais("mouseup " + numero(), relachements[bouton]);
    }
    void molette(NSPoint ecran) override { fais("mousemove " + EcranFixture::at(ecran) + " click 4", NSScrollWheel); }
    void touche(char16_t c) override { fais(c == NSEscapeCharacter ? "key Escape" : "key x", NSKeyDown); }
    void active(NSWindow* w) override {
        if (!w->isKeyWindow()) w->makeKeyAndOrderFront(nullptr);
        const std::string titre = w->title()->utf8() + "\n";
        EXPECT_TRUE(attends([&] {
            if (w->isKeyWindow() && output("xdotool getwindowfocus getwindowname") == titre) return true;
            // A manager that is still at work on another window may give the focus back to that one.
            backend::Backend::current().windows->activate(w->nativeId_());
            return false;
        })) << titre
            << " never has the keys";
    }
    void voit(NSWindow* w) override {
        EXPECT_TRUE(attends([&] {
            return EcranFixture::isOnTheDesktop(w->title()->utf8()) &&
                   (w->frame().size == w->contentView()->frame().size ||
                    backend::Backend::current().windows->frameInsets(w->nativeId_()).top > 0);
        })) << "it never comes";
    }
    bool attends(const std::function<bool()>& vrai) override { return vrai() || EcranFixture::comes(vrai); }

private:
    [[nodiscard]] std::string numero() const {
        constexpr const char* numeros[] = {"1", "3", "2"};
        return numeros[bouton_];
    }
    void fais(const std::string& commande, NSEventType type) {
        const int avant = vus_[type];
        output("xdotool " + commande);
        EXPECT_TRUE(attends([&] { return vus_[type] > avant; })) << commande;
    }

    Ref<NSObject> jeton_;
    std::map<NSEventType, int> vus_;
    int bouton_ = 0;
};

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

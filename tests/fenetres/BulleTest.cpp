#include <array>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/appkit/NSViewController.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/popover/KCPopover.h>
#include <libvue/popover/MaFenetre.h>

using namespace libvue;
using namespace libvue::backend;

namespace {

/// Far more than any of these waits needs, in seconds.
constexpr double patience = 10;
constexpr Color vert{0, 0.5, 0, 1};

void lance(const std::string& commande) {
    std::string sortie;
    std::unique_ptr<FILE, int (*)(FILE*)> tube(popen((commande + " 2>&1").c_str(), "r"), nullptr);
    std::array<char, 256> part;
    while (std::fgets(part.data(), part.size(), tube.get()))
        sortie += part.data();
    EXPECT_EQ(pclose(tube.release()), 0) << commande << ": " << sortie;
}

class VueVerte : public NSView {
public:
    static void describe(ClassDescription<VueVerte, NSView>&) {}
    using NSView::NSView;
    void drawRect(const NSRect&) override {
        NSColor::colorWithSRGBRed_green_blue_alpha(vert.red, vert.green, vert.blue, 1)->setFill();
        NSBezierPath::fillRect(bounds());
    }
};

/// A balloon on an anchor in a real window, under a window manager and a compositor.
struct BulleTest : testing::Test {
    Ref<NSWindow> parent;
    Ref<NSView> ancre;
    Ref<KCPopover> bulle;
    Ref<NSTextField> champ;

    BulleTest() {
        Backend::install(makeQtBackend());
        EXPECT_TRUE(Backend::current().windows->hasDisplay()) << "these tests need a display";
        lance("xdotool mousemove 1270 1010");
        parent = make<NSWindow>(NSMakeRect(300, 300, 500, 300),
                                NSTitledWindowMask | NSClosableWindowMask | NSMiniaturizableWindowMask);
        ancre = make<NSView>(NSMakeRect(200, 100, 80, 20));
        parent->contentView()->addSubview(ancre);
        parent->makeKeyAndOrderFront(nullptr);
        attends("the parent is active", [&] { return NSApp()->isActive() && parent->isKeyWindow(); });
        pompe(0.5); // the manager puts it where it will stay
        const Ref<NSView> contenu = make<VueVerte>(NSMakeRect(0, 0, 240, 120));
        champ = make<NSTextField>(NSMakeRect(40, 20, 160, 24));
        contenu->addSubview(champ);
        const Ref<NSViewController> c = make<NSViewController>();
        c->setView(contenu);
        bulle = make<KCPopover>();
        bulle->setContentViewController(c);
        bulle->showRelativeToRect_ofView_preferredEdge(ancre->bounds(), ancre, NSMaxYEdge);
        pompe(0.3);
    }
    ~BulleTest() override {
        if (bulle) bulle->close();
        parent->close();
        pompe(1);
        bulle = nullptr;
        champ = nullptr;
        ancre = nullptr;
        parent = nullptr;
        NSApplication::resetSharedApplication();
        Backend::install(nullptr);
    }

    static void pompe(double secondes) {
        const NSTimeInterval fin = NSRunLoop::mainRunLoop()->now() + secondes;
        while (NSRunLoop::mainRunLoop()->now() < fin)
            NSApp()->runOnceUntil_(fin);
    }
    static void attends(const char* quoi, const std::function<bool()>& vrai) {
        const NSTimeInterval fin = NSRunLoop::mainRunLoop()->now() + patience;
        while (!vrai() && NSRunLoop::mainRunLoop()->now() < fin)
            NSApp()->runOnceUntil_(NSRunLoop::mainRunLoop()->now() + 0.05);
        EXPECT_TRUE(vrai()) << "never: " << quoi;
    }
    /// The pointer, in our screen coordinates; the commands of xdotool that follow it.
    static void souris(NSPoint p, const std::string& suite = "") {
        const NSRect ecran = Backend::current().windows->screens().front().frame;
        lance("xdotool mousemove " + std::to_string(static_cast<int>(p.x)) + " " +
              std::to_string(static_cast<int>(NSMaxY(ecran) - p.y)) + suite);
        pompe(0.15);
    }
    [[nodiscard]] NSPoint surEcran(const NSView* vue, NSPoint p) const {
        return vue->window()->convertBaseToScreen(vue->convertPoint_toView(p, nullptr));
    }
    [[nodiscard]] NSView* contenu() const { return bulle->contentViewController()->view(); }
    /// What the balloon's window shows at that point of the content.
    [[nodiscard]] Color pixel(NSPoint p) const {
        const NSPoint base = contenu()->convertPoint_toView(p, nullptr);
        const auto image = Backend::current().windows->capture(bulle->panel()->nativeId_());
        return image ? image->pixel(static_cast<int>(base.x), image->pixelHeight() - 1 - static_cast<int>(base.y))
                     : Color{};
    }
};

TEST_F(BulleTest, AClickElsewhereClosesItAndReachesItsView) {
    EXPECT_TRUE(bulle->isShown());
    EXPECT_TRUE(parent->isKeyWindow());
    EXPECT_NEAR(pixel({10, 10}).green, vert.green, 0.02);
    // In the balloon: nothing closes.
    souris(surEcran(contenu(), {20, 100}), " click 1");
    EXPECT_FALSE(bulle->fermetureEnCours());
    souris(parent->convertBaseToScreen({60, 40}), " click 1");
    attends("the balloon is gone", [&] { return !bulle->isShown(); });
    EXPECT_TRUE(parent->isKeyWindow());
}

TEST_F(BulleTest, ItMovesWithItsParentAndEscapeClosesIt) {
    const NSPoint la = bulle->panel()->frame().origin, parentLa = parent->frame().origin;
    parent->setFrameOrigin({parentLa.x + 40, parentLa.y - 30});
    pompe(0.4);
    EXPECT_NEAR(bulle->panel()->frame().origin.x, la.x + 40, 1);
    EXPECT_NEAR(bulle->panel()->frame().origin.y, la.y - 30, 1);
    EXPECT_TRUE(bulle->attachay());
    EXPECT_TRUE(bulle->isShown());
    lance("xdotool key Escape");
    attends("the balloon is gone", [&] { return !bulle->isShown(); });
}

TEST_F(BulleTest, TornOffByADragItKeepsItsContentAndItsCaret) {
    const NSRect ici = champ->bounds();
    souris(surEcran(champ, {NSMidX(ici), NSMidY(ici)}), " click 1");
    attends("the field has the keys", [&] { return bulle->panel()->isKeyWindow(); });
    pompe(0.3);
    lance("xdotool type ou");
    pompe(0.3);
    const Ref<NSResponder> editeur(bulle->panel()->firstResponder());
    EXPECT_NE(editeur.get(), bulle->panel());

    const NSPoint depart = surEcran(contenu(), {20, 100});
    souris(depart, " mousedown 1");
    for (int pas = 1; pas <= 6; ++pas)
        souris({depart.x + pas * 10, depart.y + pas * 5});
    lance("xdotool mouseup 1");
    attends("the balloon has come off", [&] { return !bulle->attachay(); });
    pompe(0.6);
    EXPECT_TRUE(bulle->isShown());
    EXPECT_EQ(bulle->panel()->styleMask(), NSUInteger{19});
    EXPECT_EQ(bulle->panel()->parentWindow(), nullptr);
    // Under the pointer, where it was gripped.
    const NSPoint arrivee = surEcran(contenu(), {20, 100});
    EXPECT_NEAR(arrivee.x, depart.x + 60, 15);
    EXPECT_NEAR(arrivee.y, depart.y + 30, 15);
    EXPECT_NEAR(pixel({10, 10}).green, vert.green, 0.02);
    EXPECT_EQ(bulle->panel()->firstResponder(), editeur.get());
    attends("it has the keys again", [&] {
        if (bulle->panel()->isKeyWindow()) return true;
        bulle->panel()->makeKeyWindow();
        return false;
    });
    pompe(0.3);
    lance("xdotool type i");
    pompe(0.3);
    bulle->panel()->makeFirstResponder(nullptr);
    EXPECT_EQ(champ->stringValue()->utf8(), "oui");
    bulle->panel()->performClose(nullptr);
    EXPECT_FALSE(bulle->isShown());
}

TEST_F(BulleTest, AParentThatGoesIntoTheDockTakesItAlong) {
    parent->miniaturize(nullptr);
    EXPECT_TRUE(bulle->fermetureEnCours());
    attends("the balloon is gone", [&] { return !bulle->fermetureEnCours(); });
    EXPECT_FALSE(bulle->isShown());
    parent->deminiaturize(nullptr);
    pompe(0.3);
    EXPECT_FALSE(bulle->isShown());
}

} // namespace

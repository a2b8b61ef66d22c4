#include <cmath>

#include <fenetres/MainReelle.h>

#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>

using namespace libvue;
using namespace libvue::test;

namespace {

constexpr backend::Color vert{0, 0.5, 0, 1};

class VueVerte : public NSView {
public:
    static void describe(ClassDescription<VueVerte, NSView>&) {}
    using NSView::NSView;
    void drawRect(const NSRect&) override {
        NSColor::colorWithSRGBRed_green_blue_alpha(vert.red, vert.green, vert.blue, 1)->setFill();
        NSBezierPath::fillRect(bounds());
    }
};

/// A balloon with a text field on an anchor in a real window, under a window manager and a compositor.
struct BulleTest : EcranFixture {
    Ref<NSWindow> parent;
    Ref<KCPopover> bulle;
    Ref<NSTextField> champ;
    std::unique_ptr<MainReelle> main;

    BulleTest() {
        main = std::make_unique<MainReelle>();
        parent = make<NSWindow>(NSMakeRect(300, 300, 500, 300), NSTitledWindowMask | NSClosableWindowMask);
        parent->setTitle(u"parent"_ns);
        const Ref<NSView> ancre = make<NSView>(NSMakeRect(200, 100, 80, 20));
        parent->contentView()->addSubview(ancre);
        parent->makeKeyAndOrderFront(nullptr);
        main->voit(parent);
        main->active(parent);
        const Ref<NSViewController> c = make<NSViewController>();
        c->setView(make<VueVerte>(NSMakeRect(0, 0, 240, 120)));
        champ = make<NSTextField>(NSMakeRect(40, 20, 160, 24));
        c->view()->addSubview(champ);
        bulle = make<KCPopover>();
        bulle->setContentViewController(c);
        bulle->panel()->setTitle(u"bulle"_ns);
        bulle->showRelativeToRect_ofView_preferredEdge(ancre->bounds(), ancre, NSMaxYEdge);
        main->voit(bulle->panel());
    }
    ~BulleTest() override {
        bulle->panel()->close();
        parent->close();
        main = nullptr;
    }

    [[nodiscard]] NSView* contenu() const { return bulle->contentViewController()->view(); }
    [[nodiscard]] static NSPoint surEcran(const NSView* vue, NSPoint p) {
        return vue->window()->convertBaseToScreen(vue->convertPoint_toView(p, nullptr));
    }
    /// Its window shows the content's colour there, and stands where the toolkit believes.
    [[nodiscard]] bool estPeinte() const {
        auto& serveur = *backend::Backend::current().windows;
        MaFenetre* panneau = bulle->panel();
        const auto image = serveur.capture(panneau->nativeId_());
        const NSPoint base = contenu()->convertPoint_toView({10, 10}, nullptr);
        if (!image || serveur.content(panneau->nativeId_()) != panneau->contentRectForFrameRect(panneau->frame()))
            return false;
        const auto p = image->pixel(static_cast<int>(base.x), image->pixelHeight() - 1 - static_cast<int>(base.y));
        return std::abs(p.green - vert.green) < 0.02 && p.red < 0.02;
    }
};

TEST_F(BulleTest, ItMovesWithItsParent) {
    EXPECT_TRUE(comes([&] { return estPeinte(); }));
    const NSPoint la = bulle->panel()->frame().origin, parentLa = parent->frame().origin;
    parent->setFrameOrigin({parentLa.x + 40, parentLa.y - 30});
    EXPECT_TRUE(comes([&] {
        const NSPoint ici = bulle->panel()->frame().origin;
        return std::abs(ici.x - la.x - 40) <= 1 && std::abs(ici.y - la.y + 30) <= 1 && estPeinte();
    }));
    EXPECT_TRUE(bulle->attachay());
    EXPECT_TRUE(bulle->isShown());
}

TEST_F(BulleTest, TornOffByADragItKeepsItsContentAndItsCaret) {
    const NSRect ici = champ->bounds();
    // A text follows its press to the release by itself.
    click(surEcran(champ, {NSMidX(ici), NSMidY(ici)}));
    EXPECT_TRUE(comes([&] { return bulle->panel()->isKeyWindow(); }));
    main->active(bulle->panel());
    main->touche(u'o');
    main->touche(u'u');
    const Ref<NSResponder> editeur(bulle->panel()->firstResponder());
    EXPECT_NE(editeur.get(), bulle->panel());

    const NSPoint depart = surEcran(contenu(), {20, 100});
    main->appuie(depart, 0);
    main->va({depart.x + 10, depart.y + 5});
    EXPECT_TRUE(comes([&] { return !bulle->attachay(); }));
    main->voit(bulle->panel());
    NSPoint doigt{depart.x + 10, depart.y + 5};
    // Its first drag as a window of its own hands it over to the window manager, which takes it from there.
    for (int pas = 0; pas < 30; ++pas) {
        doigt = {doigt.x + 2, doigt.y + 1};
        output("xdotool mousemove " + at(doigt));
        (void)NSApp()->runOnceUntil_(NSRunLoop::mainRunLoop()->now() + 0.01);
    }
    output("xdotool mouseup 1");
    // Under the pointer, where it was gripped.
    EXPECT_TRUE(comes([&] {
        const NSPoint la = surEcran(contenu(), {20, 100});
        return std::abs(la.x - doigt.x) < 15 && std::abs(la.y - doigt.y) < 15;
    }));
    EXPECT_TRUE(comes([&] { return estPeinte(); }));
    EXPECT_TRUE(bulle->isShown());
    EXPECT_EQ(bulle->panel()->styleMask(), NSUInteger{19});
    EXPECT_EQ(bulle->panel()->parentWindow(), nullptr);
    EXPECT_EQ(bulle->panel()->firstResponder(), editeur.get());
    bulle->panel()->makeKeyWindow();
    main->active(bulle->panel());
    main->touche(u'i');
    bulle->panel()->makeFirstResponder(nullptr);
    EXPECT_EQ(champ->stringValue()->utf8(), "oui");
    bulle->panel()->performClose(nullptr);
    EXPECT_FALSE(bulle->isShown());
}

} // namespace

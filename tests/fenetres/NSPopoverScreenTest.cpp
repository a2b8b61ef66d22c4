#include <cmath>

#include <fenetres/EcranFixture.h>

#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/appkit/NSPopover.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/appkit/NSViewController.h>

using namespace libvue;
using namespace libvue::test;

namespace {

class Delegue : public NSObject {
public:
    static void describe(ClassDescription<Delegue>& c) { c.answers<&Delegue::fenetre>(op::detachableWindowForPopover); }
    Ref<NSWindow> quelle;
    NSWindow* fenetre(NSObject*) { return quelle; }
};

class PopoverScreenTest : public EcranFixture {
protected:
    PopoverScreenTest() {
        fenetre = make<NSWindow>(NSMakeRect(300, 300, 500, 300), NSTitledWindowMask | NSClosableWindowMask);
        fenetre->setTitle(u"bulleancre"_ns);
        ancre = make<NSView>(NSMakeRect(200, 100, 80, 24));
        fenetre->contentView()->addSubview(ancre);
        fenetre->makeKeyAndOrderFront(nullptr);
        p = make<NSPopover>();
        const auto c = make<NSViewController>();
        c->setView(make<NSView>(NSMakeRect(0, 0, 180, 90)));
        p->setContentViewController(c);
        p->setBehavior(NSPopoverBehaviorTransient);
    }
    ~PopoverScreenTest() override {
        p->setAnimates(NO);
        p->close();
        fenetre->close();
    }
    void montre() const {
        ASSERT_TRUE(comes([&] { return fenetre->isKeyWindow() && isOnTheDesktop("bulleancre"); }));
        p->showRelativeToRect_ofView_preferredEdge(NSZeroRect, ancre, NSMaxYEdge);
        // There, and faded in.
        ASSERT_TRUE(comes([&] { return p->window_() && p->window_()->alphaValue() == 1; }));
        auto& serveur = *backend::Backend::current().windows;
        ASSERT_TRUE(comes([&] { return serveur.content(p->window_()->nativeId_()) == p->window_()->frame(); }));
    }
    [[nodiscard]] NSRect corps() const {
        const NSView* v = p->contentViewController()->view();
        return v->window()->convertRectToScreen(v->convertRect_toView(v->bounds(), nullptr));
    }

    Ref<NSWindow> fenetre;
    Ref<NSView> ancre;
    Ref<NSPopover> p;
};

TEST_F(PopoverScreenTest, ItTakesTheKeysOfWhatTypesAndGivesThemBack) {
    const auto champ = make<NSTextField>(NSMakeRect(10, 30, 160, 24));
    p->contentViewController()->view()->addSubview(champ);
    montre();
    EXPECT_TRUE(comes([&] { return p->window_()->isKeyWindow(); }));
    output("xdotool type bonjour");
    EXPECT_TRUE(comes([&] { return champ->stringValue()->isEqualToString(u"bonjour"_ns); }));
    // The first one is the field's, which gives up what was typed.
    output("xdotool key Escape");
    EXPECT_TRUE(comes([&] { return champ->stringValue()->length() == 0; }));
    EXPECT_TRUE(p->isShown());
    output("xdotool key Escape");
    EXPECT_TRUE(comes([&] { return !p->isShown(); }));
    EXPECT_TRUE(comes([&] { return fenetre->isKeyWindow(); }));
}

TEST_F(PopoverScreenTest, DraggedOffItBecomesAWindowUnderThePointer) {
    const auto delegue = make<Delegue>();
    const auto quelle = make<NSPanel>(NSMakeRect(0, 0, 50, 50), NSTitledWindowMask | NSClosableWindowMask);
    quelle->setTitle(u"bulledetachee"_ns);
    delegue->quelle = quelle;
    p->setDelegate(delegue);
    montre();
    const NSRect avant = corps();
    const NSPoint depart{NSMidX(avant), NSMidY(avant)};
    output("xdotool mousemove " + at(depart) + " mousedown 1 mousemove " + at({depart.x + 20, depart.y}) +
           " mousemove " + at({depart.x + 90, depart.y - 60}) + " mousemove " + at({depart.x + 120, depart.y - 80}) +
           " mouseup 1");
    EXPECT_TRUE(comes([&] { return !p->isShown() && isOnTheDesktop("bulledetachee"); }));
    EXPECT_EQ(p->contentViewController()->view()->window(), quelle.get());
    EXPECT_EQ(corps().size, avant.size);
    // The desktop's own idea of decoration may move it by a pixel or two.
    EXPECT_TRUE(comes([&] {
        return std::abs(NSMidX(corps()) - depart.x - 120) < 4 && std::abs(NSMidY(corps()) - depart.y + 80) < 4;
    })) << NSMidX(corps()) - depart.x
        << " " << NSMidY(corps()) - depart.y;
    quelle->close();
}

} // namespace

#include <appkit/AppFixture.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/NSViewController.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

class KeyViewsTest : public AppFixture {
protected:
    Ref<NSWindow> window;
    Ref<LogView> a, b, c;

    void SetUp() override {
        window = windowAt({{100, 100}, {400, 300}});
        // In the order of reading: a, b, c.
        c = viewIn(window, {{10, 10}, {50, 20}}, "c");
        b = viewIn(window, {{100, 200}, {50, 20}}, "b");
        a = viewIn(window, {{10, 200}, {50, 20}}, "a");
        for (const auto& v : {a, b, c})
            v->accepts = YES;
        show(window);
        log.clear();
    }
    void TearDown() override {
        a = b = c = nullptr;
        window = nullptr;
        AppFixture::TearDown();
    }
};

TEST_F(KeyViewsTest, TheOldResponderIsAskedFirst) {
    EXPECT_EQ(window->firstResponder(), window.get());
    EXPECT_TRUE(window->makeFirstResponder(a));
    EXPECT_TRUE(window->makeFirstResponder(b));
    EXPECT_TRUE(window->makeFirstResponder(b)); // nothing to do
    EXPECT_THAT(taken(), ElementsAre("a become", "a resign", "b become"));

    b->resigns = NO;
    EXPECT_FALSE(window->makeFirstResponder(a));
    EXPECT_EQ(window->firstResponder(), b.get());
    EXPECT_THAT(taken(), ElementsAre("b resign"));

    b->resigns = YES;
    a->becomes = NO;
    EXPECT_FALSE(window->makeFirstResponder(a));
    EXPECT_EQ(window->firstResponder(), window.get()); // the old one is gone, the new one would not

    const Ref<LogView> stranger = make<LogView>(NSZeroRect, log, "stranger");
    EXPECT_FALSE(window->makeFirstResponder(stranger));
}

TEST_F(KeyViewsTest, AViewNeedNotAcceptByItselfToBeMadeFirst) {
    a->accepts = NO;
    EXPECT_TRUE(window->makeFirstResponder(a));
    EXPECT_EQ(window->firstResponder(), a.get());
}

TEST_F(KeyViewsTest, ResigningMayMoveTheFocusElsewhere) {
    window->makeFirstResponder(a);
    a->onResign = [&] {
        a->onResign = nullptr;
        window->makeFirstResponder(c);
    };
    taken();
    EXPECT_TRUE(window->makeFirstResponder(b));
    EXPECT_EQ(window->firstResponder(), b.get());
    EXPECT_EQ(taken().back(), "b become");
}

TEST_F(KeyViewsTest, AFirstResponderThatLeavesOrDiesLeavesTheWindow) {
    window->makeFirstResponder(a);
    a->removeFromSuperview();
    EXPECT_EQ(window->firstResponder(), window.get());
    window->makeFirstResponder(b);
    b->setHidden(YES);
    EXPECT_EQ(window->firstResponder(), window.get());
    window->makeFirstResponder(c);
    c->resigns = NO;
    c->removeFromSuperview();
    EXPECT_EQ(window->firstResponder(), window.get()); // it was asked, and is gone nevertheless
    windows().key(u'x');
    drain();
    EXPECT_EQ(std::count(log.begin(), log.end(), "c key x"), 0);
}

TEST_F(KeyViewsTest, AClickMovesTheFocusUnlessItsHolderRefuses) {
    click(window, 20, 210);
    EXPECT_THAT(taken(), ElementsAre("a become", "a down", "a up"));
    a->resigns = NO;
    click(window, 110, 210);
    EXPECT_THAT(taken(), ElementsAre("a resign")); // the click is kept away too
    b->accepts = NO;
    click(window, 110, 210); // a view without focus gets its click all the same
    EXPECT_THAT(taken(), ElementsAre("b down", "b up"));
    EXPECT_EQ(window->firstResponder(), a.get());
}

/// Leaves the keys to the window.
class PassingView : public NSView {
public:
    static void describe(ClassDescription<PassingView, NSView>&) {}
    using NSView::NSView;
    BOOL acceptsFirstResponder() override { return YES; }
};

TEST_F(KeyViewsTest, TabWalksTheLoopBothWays) {
    const Ref<PassingView> x = make<PassingView>(NSMakeRect(10, 100, 20, 20)),
                           y = make<PassingView>(NSMakeRect(60, 100, 20, 20)),
                           z = make<PassingView>(NSMakeRect(110, 100, 20, 20));
    for (const auto& v : {a, b, c})
        v->removeFromSuperview();
    for (NSView* v : {z.get(), x.get(), y.get()})
        window->contentView()->addSubview(v);
    const auto tab = [&](bool back) {
        windows().key(u'\t', back ? std::uint32_t{backend::modifierShift} : 0u);
        drain();
        return window->firstResponder();
    };
    window->setInitialFirstResponder(y);
    EXPECT_EQ(tab(false), y.get()); // it starts where the window says
    EXPECT_EQ(tab(false), z.get());
    EXPECT_EQ(tab(false), x.get());
    EXPECT_EQ(tab(true), z.get());
    y->setHidden(YES);
    EXPECT_EQ(tab(true), x.get());
    // Links come before places.
    y->setHidden(NO);
    x->setNextKeyView(z);
    z->setNextKeyView(y);
    y->setNextKeyView(x);
    EXPECT_EQ(tab(false), z.get());
    EXPECT_EQ(tab(false), y.get());
    EXPECT_EQ(tab(true), z.get());
    window->recalculateKeyViewLoop();
    EXPECT_EQ(tab(false), x.get());
}

TEST_F(KeyViewsTest, AKeyThatNobodyWantsBeeps) {
    const auto before = windows().beeps();
    windows().key(u'q');
    drain();
    EXPECT_EQ(windows().beeps(), before + 1);
}

class CountingController : public NSViewController {
public:
    static void describe(ClassDescription<CountingController, NSViewController>&) {}
    void viewDidLoad() override { ++loads; }
    int loads = 0;
};

TEST_F(KeyViewsTest, AViewControllerMakesItsViewOnFirstUse) {
    const Ref<CountingController> controller = make<CountingController>();
    EXPECT_FALSE(controller->isViewLoaded());
    EXPECT_EQ(controller->loads, 0);
    window->setContentViewController(controller);
    EXPECT_EQ(window->contentView(), controller->view());
    EXPECT_EQ(controller->loads, 1);
    EXPECT_EQ(controller->view()->nextResponder(), window->frameView_()); // it puts itself into no chain
}

} // namespace

#include <appkit/WindowFixture.h>

#include <gmock/gmock.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

struct KeyViewsTest : WindowFixture {
    // In the order of reading: a, b, c.
    Ref<LogView> c = viewIn(window, {{10, 10}, {50, 20}}, "c"), b = viewIn(window, {{100, 200}, {50, 20}}, "b"),
                 a = viewIn(window, {{10, 200}, {50, 20}}, "a");

    KeyViewsTest() {
        for (const auto& v : {a, b, c})
            v->accepts = YES;
    }
    [[nodiscard]] NSResponder* first() const { return window->firstResponder(); }
};

TEST_F(KeyViewsTest, TheOldResponderIsAskedFirst) {
    EXPECT_EQ(first(), window.get());
    for (LogView* v : {a.get(), b.get(), b.get()}) // the last time there is nothing to do
        EXPECT_TRUE(window->makeFirstResponder(v));
    EXPECT_THAT(taken(), ElementsAre("a become", "a resign", "b become"));

    b->resigns = NO;
    EXPECT_FALSE(window->makeFirstResponder(a));
    EXPECT_EQ(first(), b.get());
    EXPECT_THAT(taken(), ElementsAre("b resign"));

    b->resigns = YES;
    a->becomes = NO;
    EXPECT_FALSE(window->makeFirstResponder(a));
    EXPECT_EQ(first(), window.get()); // the old one is gone, the new one would not
    EXPECT_FALSE(window->makeFirstResponder(make<LogView>(NSZeroRect, log, "stranger")));

    a->becomes = YES;
    a->accepts = NO; // it need not accept by itself to be made first
    EXPECT_TRUE(window->makeFirstResponder(a));
    a->onResign = [&] {
        a->onResign = nullptr;
        window->makeFirstResponder(c);
    };
    taken();
    EXPECT_TRUE(window->makeFirstResponder(b));
    EXPECT_EQ(first(), b.get()) << "resigning moved the focus elsewhere";
    EXPECT_EQ(taken().back(), "b become");
}

TEST_F(KeyViewsTest, AFirstResponderThatLeavesOrDiesLeavesTheWindow) {
    c->resigns = NO; // it is asked, and gone nevertheless
    for (LogView* v : {a.get(), b.get(), c.get()}) {
        window->makeFirstResponder(v);
        v == b.get() ? v->setHidden(YES) : v->removeFromSuperview();
        EXPECT_EQ(first(), window.get());
    }
    taken();
    const auto before = windows().beeps();
    key(u'x');
    EXPECT_THAT(taken(), ElementsAre());
    EXPECT_EQ(windows().beeps(), before + 1) << "a key that nobody wants";
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
    EXPECT_EQ(first(), a.get());
}

/// Leaves the keys to the window.
class PassingView : public NSView {
public:
    static void describe(ClassDescription<PassingView, NSView>&) {}
    using NSView::NSView;
    BOOL acceptsFirstResponder() override { return YES; }
};

TEST_F(KeyViewsTest, TabWalksTheLoopBothWays) {
    for (const auto& v : {a, b, c})
        v->removeFromSuperview();
    const auto z = add<PassingView>({{110, 100}, {20, 20}}), x = add<PassingView>({{10, 100}, {20, 20}}),
               y = add<PassingView>({{60, 100}, {20, 20}});
    const auto tab = [&](bool back) {
        key(u'\t', back ? std::uint32_t{backend::modifierShift} : 0u);
        return first();
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

} // namespace

#include <appkit/Cible.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/NSButton.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

class ButtonTest : public AppFixture {
protected:
    Ref<NSWindow> window;
    Ref<Cible> cible;

    void SetUp() override {
        window = windowAt({{100, 100}, {400, 300}});
        cible = make<Cible>();
        show(window);
    }
    void TearDown() override {
        window = nullptr;
        cible = nullptr;
        AppFixture::TearDown();
    }
    Ref<NSButton> add(const Ref<NSButton>& b, CGFloat x, CGFloat y) {
        b->setFrame({{x, y}, {100, 24}});
        b->setTarget(cible);
        b->setAction(sel("agir:"));
        window->contentView()->addSubview(b);
        return b;
    }
    Ref<NSButton> push(CGFloat x = 20, CGFloat y = 20) {
        return add(NSButton::buttonWithTitle_target_action(u"Ok"_ns, nullptr, nullptr), x, y);
    }
    Ref<NSButton> radio(CGFloat y) {
        return add(NSButton::radioButtonWithTitle_target_action(u"Choix"_ns, nullptr, nullptr), 20, y);
    }
    Geste mouse() { return {windows(), window}; }
};

TEST_F(ButtonTest, APressCountsWhereItIsLetGo) {
    const auto b = push();
    mouse().at(30, 30).down().up().end();
    EXPECT_EQ(cible->count, 1);
    EXPECT_EQ(cible->sender, b.get());
    mouse().at(30, 30).down().at(300, 200).up().end(); // let go outside
    EXPECT_EQ(cible->count, 1);
    mouse().at(30, 30).down().at(300, 200).at(40, 32).up().end(); // out and in again
    EXPECT_EQ(cible->count, 2);
    mouse().at(300, 200).down().at(30, 30).up().end(); // begun elsewhere
    EXPECT_EQ(cible->count, 2);
    EXPECT_FALSE(b->cell()->isHighlighted());
    b->setEnabled(NO);
    mouse().at(30, 30).down().up().end();
    EXPECT_EQ(cible->count, 2);
}

TEST_F(ButtonTest, ThePressShowsOnlyUnderThePointer) {
    const auto b = push();
    mouse().at(30, 30).down().at(300, 200).end(); // no release yet: the loop ends without events
    EXPECT_FALSE(b->cell()->isHighlighted());
    mouse().up().end();
    EXPECT_EQ(cible->count, 0);
}

TEST_F(ButtonTest, StatesGoRound) {
    struct Row {
        NSButtonType type;
        BOOL mixed;
        std::vector<NSInteger> states;
    };
    const Row rows[] = {
        {NSSwitchButton, NO, {1, 0, 1}},        {NSSwitchButton, YES, {-1, 1, 0}},
        {NSPushOnPushOffButton, NO, {1, 0, 1}}, {NSMomentaryPushInButton, NO, {0, 0, 0}},
        {NSRadioButton, NO, {1, 1, 1}},
    };
    for (const Row& row : rows) {
        const auto b = push();
        b->setButtonType(row.type);
        b->setAllowsMixedState(row.mixed);
        std::vector<NSInteger> seen;
        for (int i = 0; i < 3; ++i) {
            mouse().at(30, 30).down().up().end();
            seen.push_back(b->state());
        }
        EXPECT_EQ(seen, row.states) << row.type;
        b->removeFromSuperview();
    }
    const auto b = push();
    b->setState(-1);
    EXPECT_EQ(b->state(), NSOnState) << "mixed is on where it is not allowed";
    b->setState(7);
    EXPECT_EQ(b->state(), NSOnState);
}

TEST_F(ButtonTest, RadioButtonsOfOneActionAreAGroup) {
    const auto a = radio(20), b = radio(50), c = radio(80), other = radio(110);
    other->setAction(sel("autre:"));
    other->setState(NSOnState);
    a->setState(NSOnState);
    mouse().at(30, 60).down().up().end();
    EXPECT_EQ(cible->count, 1);
    EXPECT_EQ(a->state(), NSOffState);
    EXPECT_EQ(b->state(), NSOnState);
    EXPECT_EQ(other->state(), NSOnState);
    c->setState(NSOnState); // from the program too
    EXPECT_EQ(b->state(), NSOffState);
    window->makeFirstResponder(c);
    windows().key(NSDownArrowFunctionKey); // round to the first
    drain();
    EXPECT_EQ(a->state(), NSOnState);
    EXPECT_EQ(c->state(), NSOffState);
    EXPECT_EQ(window->firstResponder(), a.get());
    b->setEnabled(NO);
    windows().key(NSDownArrowFunctionKey); // past a disabled one
    drain();
    EXPECT_EQ(c->state(), NSOnState);
}

TEST_F(ButtonTest, RadioButtonsWithoutAnActionAreAGroupToo) {
    const auto a = radio(20), b = radio(50);
    a->setAction(nullptr);
    b->setAction(nullptr);
    a->setState(NSOnState);
    mouse().at(30, 60).down().up().end();
    EXPECT_EQ(a->state(), NSOffState);
    EXPECT_EQ(b->state(), NSOnState);
}

TEST_F(ButtonTest, KeysPress) {
    const auto space = push(20, 20), ret = push(20, 60), ctrl = push(20, 100);
    ret->setKeyEquivalent(u"\r"_ns);
    ctrl->setKeyEquivalent(u"d"_ns);
    ctrl->setKeyEquivalentModifierMask(NSCommandKeyMask);
    EXPECT_EQ(window->defaultButtonCell(), ret->buttonCell());
    window->makeFirstResponder(space);
    windows().key(u' ');
    drain();
    EXPECT_EQ(cible->sender, space.get());
    windows().key(u'\r');
    drain();
    EXPECT_EQ(cible->sender, ret.get());
    windows().key(u'd');
    drain();
    EXPECT_EQ(cible->count, 2) << "without its modifier it is no shortcut";
    windows().key(u'd', NSCommandKeyMask);
    drain();
    EXPECT_EQ(cible->sender, ctrl.get());
    EXPECT_EQ(cible->count, 3);
    ret->setHidden(YES);
    ctrl->setEnabled(NO);
    windows().key(u'd', NSCommandKeyMask);
    drain();
    EXPECT_EQ(cible->count, 3);
}

TEST_F(ButtonTest, AnActionMayRemoveTheButton) {
    Weak<NSButton> weak;
    {
        const auto b = push();
        weak = b.get();
    }
    cible->onAction = [&](NSObject* from) { as<NSView>(from)->removeFromSuperview(); };
    mouse().at(30, 30).down().up().end();
    EXPECT_EQ(cible->count, 1);
    drain();
    EXPECT_EQ(weak.get(), nullptr) << "nothing keeps it once its click is over";
}

TEST_F(ButtonTest, AnActionMayCloseTheWindowOrLoseTheTarget) {
    const auto b = push();
    cible->onAction = [&](NSObject*) {
        cible = nullptr;
        window->close();
        window = nullptr;
    };
    mouse().at(30, 30).down().up().end();
    EXPECT_EQ(b->target(), nullptr);
    b->performClick(nullptr); // nobody hears
    window = windowAt({{100, 100}, {200, 100}});
}

TEST_F(ButtonTest, TheNaturalSizeHoldsTheTitle) {
    const auto small = NSButton::buttonWithTitle_target_action(u"Ok"_ns, nullptr, nullptr);
    const auto wide = NSButton::buttonWithTitle_target_action(u"Tout remplacer"_ns, nullptr, nullptr);
    EXPECT_EQ(small->frame().size.height, 24);
    EXPECT_GT(wide->frame().size.width, small->frame().size.width + 40);
    const auto check = NSButton::checkboxWithTitle_target_action(u"Ok"_ns, nullptr, nullptr);
    const NSRect title = check->cell()->titleRectForBounds(check->bounds());
    EXPECT_GE(title.origin.x, NSMaxX(check->buttonCell()->markRectForBounds(check->bounds())));
    EXPECT_LE(NSMaxX(title), NSMaxX(check->bounds()) + 0.01);
}

} // namespace

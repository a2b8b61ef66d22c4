#include <appkit/WindowFixture.h>

#include <graphics/Dessin.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSImage.h>

using namespace libvue;
using namespace libvue::test;

namespace {

struct ButtonTest : WindowFixture {
    Ref<Cible> cible = make<Cible>();

    Ref<NSButton> button(CGFloat y = 20, NSButtonType type = NSMomentaryPushInButton) const {
        const auto b = add<NSButton>({{20, y}, {100, 24}});
        b->setButtonType(type);
        b->setTarget(cible);
        b->setAction(sel("agir:"));
        return b;
    }
};

TEST_F(ButtonTest, APressCountsAndShowsWhereItIsLetGo) {
    const auto b = button();
    mouse().click(30, 30).end();
    EXPECT_EQ(cible->count, 1);
    EXPECT_EQ(cible->sender, b.get());
    mouse().at(30, 30).down().at(300, 200).end(); // the loop ends without further events
    EXPECT_FALSE(b->cell()->isHighlighted());
    mouse().up().end(); // let go outside
    EXPECT_EQ(cible->count, 1);
    mouse().at(30, 30).down().at(300, 200).at(40, 32).up().end(); // out and in again
    EXPECT_EQ(cible->count, 2);
    mouse().at(300, 200).down().at(30, 30).up().end(); // begun elsewhere
    EXPECT_EQ(cible->count, 2);
    b->setEnabled(NO);
    mouse().click(30, 30).end();
    EXPECT_EQ(cible->count, 2);
}

TEST_F(ButtonTest, StatesGoRound) {
    struct Row {
        NSButtonType type;
        BOOL mixed;
        std::vector<NSInteger> states;
    };
    for (const Row& row : {Row{NSSwitchButton, NO, {1, 0, 1}}, Row{NSSwitchButton, YES, {-1, 1, 0}},
                           Row{NSPushOnPushOffButton, NO, {1, 0, 1}}, Row{NSMomentaryPushInButton, NO, {0, 0, 0}},
                           Row{NSRadioButton, NO, {1, 1, 1}}}) {
        const auto b = button(20, row.type);
        b->setAllowsMixedState(row.mixed);
        std::vector<NSInteger> seen;
        for (int i = 0; i < 3; ++i) {
            mouse().click(30, 30).end();
            seen.push_back(b->state());
        }
        EXPECT_EQ(seen, row.states) << row.type;
        b->removeFromSuperview();
    }
    const auto b = button();
    for (const NSInteger strange : {-1, 7}) { // mixed is on where it is not allowed
        b->setState(strange);
        EXPECT_EQ(b->state(), NSOnState);
    }
}

TEST_F(ButtonTest, RadioButtonsOfOneActionAreAGroup) {
    const auto a = button(20, NSRadioButton), b = button(50, NSRadioButton), c = button(80, NSRadioButton),
               other = button(110, NSRadioButton), alone = button(140, NSRadioButton);
    other->setAction(sel("autre:"));
    alone->setAction(nullptr);
    const auto on = [&] {
        std::string s;
        for (const auto& r : {a, b, c, other, alone})
            s += r->state() == NSOnState ? '1' : '0';
        return s;
    };
    for (const auto& r : {a, other, alone})
        r->setState(NSOnState);
    mouse().click(30, 60).end();
    EXPECT_EQ(cible->count, 1);
    EXPECT_EQ(on(), "01011");
    c->setState(NSOnState); // from the program too
    EXPECT_EQ(on(), "00111");
    window->makeFirstResponder(c);
    key(NSDownArrowFunctionKey); // round to the first
    EXPECT_EQ(on(), "10011");
    EXPECT_EQ(window->firstResponder(), a.get());
    b->setEnabled(NO);
    key(NSDownArrowFunctionKey); // past a disabled one
    EXPECT_EQ(on(), "00111");
    other->setAction(nullptr); // without an action they are a group too
    mouse().click(30, 120).end();
    EXPECT_EQ(on(), "00110");
}

TEST_F(ButtonTest, KeysPress) {
    const auto space = button(20), ret = button(60), ctrl = button(100);
    ret->setKeyEquivalent(u"\r"_ns);
    ctrl->setKeyEquivalent(u"d"_ns);
    ctrl->setKeyEquivalentModifierMask(NSCommandKeyMask);
    window->makeFirstResponder(space);
    struct Row {
        char16_t key;
        std::uint32_t modifiers;
        NSButton* pressed;
    };
    const auto press = [&](const Row& row) {
        cible->sender = nullptr;
        key(row.key, row.modifiers);
        EXPECT_EQ(cible->sender, row.pressed) << int{row.key} << " " << row.modifiers;
    };
    press({u' ', 0, space});
    press({u'\r', 0, ret});
    press({u'd', 0, nullptr});
    press({u'd', NSCommandKeyMask, ctrl});
    ctrl->setEnabled(NO);
    press({u'd', NSCommandKeyMask, nullptr});
    EXPECT_EQ(window->defaultButtonCell(), ret->buttonCell());
    ret->setKeyEquivalent(nullptr);
    EXPECT_EQ(window->defaultButtonCell(), nullptr);
    press({u'\r', 0, nullptr});
}

TEST_F(ButtonTest, ABorderThatShowsUnderThePointerMayBeAskedForLater) {
    const auto b = button();
    const auto drawn = [&] {
        Enregistrement r({100, 24});
        b->drawRect(b->bounds());
        return r.canvas.operations().size();
    };
    const std::size_t bordered = drawn();
    b->setShowsBorderOnlyWhileMouseInside(YES);
    EXPECT_LT(drawn(), bordered);
    move(window, 30, 30);
    EXPECT_EQ(drawn(), bordered);
    move(window, 300, 200);
    EXPECT_LT(drawn(), bordered);
}

TEST_F(ButtonTest, AMarkWithoutATitleDrawsNone) {
    const auto b = button(20, NSSwitchButton);
    b->setTitle(u"Titre"_ns);
    for (const NSCellImagePosition p : {NSNoImage, NSImageOnly}) {
        b->setImagePosition(p);
        Enregistrement r({100, 24});
        b->drawRect(b->bounds());
        EXPECT_EQ(r.text().find("Titre") != std::string::npos, p == NSNoImage);
    }
}

TEST_F(ButtonTest, AnActionMayRemoveTheButtonOrAllElse) {
    const Weak<NSButton> weak(button().get());
    cible->onAction = [&](NSObject* from) { as<NSView>(from)->removeFromSuperview(); };
    mouse().click(30, 30).end();
    EXPECT_EQ(cible->count, 1);
    EXPECT_EQ(weak.get(), nullptr) << "nothing keeps it once its click is over";

    const auto b = button();
    cible->onAction = [&](NSObject*) {
        cible = nullptr;
        window->close();
        window = nullptr;
    };
    mouse().click(30, 30).end();
    EXPECT_EQ(b->target(), nullptr);
    b->performClick(nullptr); // nobody hears
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

TEST_F(ButtonTest, ATemplateTakesTheColourOfTheText) {
    const auto image = make<NSImage>(NSMakeSize(10, 10));
    image->addRepresentation(NSBitmapImageRep::initWithPixelsWide_pixelsHigh(10, 10));
    image->lockFocus();
    NSColor::colorWithCalibratedRed_green_blue_alpha(1, 0, 0, 1)->setFill();
    NSRectFill({{0, 0}, {5, 10}});
    image->unlockFocus();
    const auto b = make<NSButton>(NSMakeRect(0, 0, 10, 10));
    b->setBordered(NO);
    b->setTitle(nullptr);
    b->setImage(image);
    const auto shown = [&] {
        Pixels p;
        b->drawRect(b->bounds());
        return p.at(2, 5) + " " + p.at(7, 5);
    };
    EXPECT_EQ(shown(), "ff0000ff 00000000");
    image->setTemplate(YES);
    const auto ink = NSColor::controlTextColor()->colorUsingColorSpaceName(NSDeviceRGBColorSpace);
    std::string seen = shown();
    EXPECT_NEAR(std::stoi(seen.substr(0, 2), nullptr, 16), ink->redComponent() * 255, 8) << seen;
    EXPECT_NEAR(std::stoi(seen.substr(6, 2), nullptr, 16), ink->alphaComponent() * 255, 8) << seen;
    EXPECT_EQ(seen.substr(9), "00000000");
}

} // namespace

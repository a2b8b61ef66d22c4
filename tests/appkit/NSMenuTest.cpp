#include <appkit/Cible.h>

#include <gmock/gmock.h>

#include <graphics/Dessin.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/foundation/NSException.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

/// A delegate and validator.
class Gardien : public NSObject {
public:
    static void describe(ClassDescription<Gardien>& c) {
        c.answers<&Gardien::update>(op::menuNeedsUpdate);
        c.answers<&Gardien::open>(op::menuWillOpen);
        c.answers<&Gardien::close>(op::menuDidClose);
        c.answers<&Gardien::agir>("agir:");
        c.answers<&Gardien::valide>(op::validateMenuItem);
    }
    Log log;
    std::function<void(NSMenu*)> onUpdate;
    BOOL valid = YES;
    void update(NSMenu* m) {
        log.push_back("update");
        if (onUpdate) onUpdate(m);
    }
    void open(NSMenu*) { log.push_back("open"); }
    void close(NSMenu*) { log.push_back("close"); }
    void agir(NSObject* from) { log.push_back("act " + as<NSMenuItem>(from)->title()->utf8()); }
    BOOL valide(NSMenuItem*) { return valid; }
};

class MenuTest : public AppFixture {
protected:
    Ref<NSWindow> window;
    Ref<NSMenu> menu, sub;
    Ref<Gardien> gardien;

    void SetUp() override {
        window = windowAt({{100, 300}, {400, 300}});
        gardien = make<Gardien>();
        menu = make<NSMenu>(u"Essai"_ns);
        sub = make<NSMenu>(u"Sous"_ns);
        add(menu, u"Un"_ns);
        menu->addItem(NSMenuItem::separatorItem());
        add(menu, u"Deux"_ns);
        add(menu, u"Trois"_ns)->setTarget(nullptr); // nobody answers: disabled
        menu->itemAtIndex(3)->setAction(sel("personne:"));
        auto* holder = menu->addItemWithTitle_action_keyEquivalent(u"Sous"_ns, nullptr, u""_ns);
        holder->setSubmenu(sub);
        add(sub, u"Dedans"_ns);
        add(sub, u"Encore"_ns);
        show(window);
    }
    void TearDown() override {
        window = nullptr;
        menu = sub = nullptr;
        gardien = nullptr;
        AppFixture::TearDown();
    }
    NSMenuItem* add(NSMenu* m, NSString* title) {
        auto* i = m->addItemWithTitle_action_keyEquivalent(title, sel("agir:"), u""_ns);
        i->setTarget(gardien);
        return i;
    }
    /// Opens it with its top left corner there, in the window, after the keys were queued.
    BOOL open(std::initializer_list<char16_t> keys = {}) {
        for (const char16_t k : keys)
            windows().key(k);
        return menu->popUpMenuPositioningItem_atLocation_inView(nullptr, {50, 200}, window->contentView());
    }
    /// The middle of a line of the menu opened by open().
    static NSPoint line(int i) {
        const CGFloat middles[] = {11, 26.5, 42, 64, 86};
        return {90, 195 - middles[i]};
    }
    Geste mouse() { return {windows(), window}; }
};

TEST_F(MenuTest, KeysChoose) {
    constexpr char16_t down = NSDownArrowFunctionKey, up = NSUpArrowFunctionKey, ret = u'\r', esc = 0x1B,
                       right = NSRightArrowFunctionKey, left = NSLeftArrowFunctionKey;
    struct Row {
        const char* what;
        std::initializer_list<char16_t> keys;
        Log chosen;
    };
    const Row rows[] = {
        {"the first", {down, ret}, {"act Un"}},
        {"past a separator", {down, down, ret}, {"act Deux"}},
        {"past a disabled one and round", {down, down, down, down, u' '}, {"act Un"}},
        {"from the end", {up, up, ret}, {"act Deux"}},
        {"by letter", {u'd', ret}, {"act Deux"}},
        {"home and end", {NSEndFunctionKey, NSHomeFunctionKey, ret}, {"act Un"}},
        {"into the submenu", {up, right, down, ret}, {"act Encore"}},
        {"Return opens it too", {up, ret, ret}, {"act Dedans"}},
        {"and out again", {up, right, left, up, ret}, {"act Deux"}},
        {"Escape leaves one level", {up, right, esc, up, ret}, {"act Deux"}},
        {"Escape", {down, esc}, {}},
        {"nothing highlighted", {ret, esc}, {}},
        {"Tab", {down, u'\t'}, {}},
    };
    for (const Row& row : rows) {
        gardien->log.clear();
        EXPECT_EQ(open(row.keys), !row.chosen.empty()) << row.what;
        EXPECT_EQ(gardien->log, row.chosen) << row.what;
        EXPECT_FALSE(menu->isTracking());
        EXPECT_EQ(menu->highlightedItem(), nullptr);
        drain();
    }
}

TEST_F(MenuTest, TheMouseChooses) {
    const auto press = [&](int i) { mouse().at(line(i).x, line(i).y).down().up(); };
    press(2);
    EXPECT_TRUE(open());
    EXPECT_THAT(gardien->log, ElementsAre("act Deux"));
    gardien->log.clear();
    press(1); // on the separator: it stays open
    press(3); // and on a disabled item
    press(0);
    EXPECT_TRUE(open());
    EXPECT_THAT(gardien->log, ElementsAre("act Un"));
    gardien->log.clear();
    mouse().at(390, 10).down().up(); // outside
    EXPECT_FALSE(open());
    EXPECT_TRUE(gardien->log.empty());
}

TEST_F(MenuTest, ADragChooses) {
    mouse().at(52, 202).down();
    drain();
    mouse().at(line(0).x, line(0).y).at(line(2).x, line(2).y).up();
    EXPECT_TRUE(open());
    EXPECT_THAT(gardien->log, ElementsAre("act Deux"));
}

TEST_F(MenuTest, ASubmenuOpensUnderThePointer) {
    mouse().at(line(4).x, line(4).y).at(line(4).x, line(4).y - 1);
    windows().key(NSDownArrowFunctionKey); // in the submenu, which is open by then
    windows().key(u'\r');
    EXPECT_TRUE(open());
    EXPECT_THAT(gardien->log, ElementsAre("act Dedans"));
}

TEST_F(MenuTest, TheDelegateFillsItIn) {
    menu->setDelegate(gardien);
    gardien->onUpdate = [&](NSMenu* m) {
        m->removeAllItems();
        add(m, u"Neuf"_ns);
    };
    EXPECT_TRUE(open({NSDownArrowFunctionKey, u'\r'}));
    EXPECT_THAT(gardien->log, ElementsAre("update", "open", "close", "act Neuf"));
    gardien->onUpdate = [](NSMenu* m) { m->removeAllItems(); };
    gardien->log.clear();
    EXPECT_FALSE(open()) << "an empty menu does not open";
    EXPECT_THAT(gardien->log, ElementsAre("update"));
}

TEST_F(MenuTest, LeavingTheApplicationLeavesTheMenu) {
    NSRunLoop::mainRunLoop()->performBlock([&] {
        NSNotificationCenter::defaultCenter()->postNotificationName_object(NSApplicationDidResignActiveNotification,
                                                                           NSApp());
        // These come too late for the menu.
        windows().key(NSDownArrowFunctionKey);
        windows().key(u'\r');
    });
    EXPECT_FALSE(open());
    EXPECT_TRUE(gardien->log.empty());
    drain();
}

TEST_F(MenuTest, TrackingIsCancelled) {
    const std::size_t before = windows().stacking().size();
    NSRunLoop::mainRunLoop()->performBlock([&] { menu->cancelTracking(); });
    EXPECT_FALSE(open());
    EXPECT_EQ(windows().stacking().size(), before) << "its window is gone";
    menu->cancelTracking(); // not open: nothing
}

TEST_F(MenuTest, ItemsAreEnabledByTheirTargets) {
    menu->update();
    std::string enabled;
    for (NSInteger i = 0; i < menu->numberOfItems(); ++i)
        enabled += menu->itemAtIndex(i)->isEnabled() ? '1' : '0';
    EXPECT_EQ(enabled[0], '1');
    EXPECT_EQ(enabled.substr(2), "101");
    gardien->valid = NO;
    menu->update();
    EXPECT_FALSE(menu->itemAtIndex(0)->isEnabled());
    gardien = nullptr; // the target dies
    menu->update();
    EXPECT_FALSE(menu->itemAtIndex(2)->isEnabled());
    menu->setAutoenablesItems(NO);
    menu->itemAtIndex(2)->setEnabled(YES);
    menu->update();
    EXPECT_TRUE(menu->itemAtIndex(2)->isEnabled());
}

TEST_F(MenuTest, KeyEquivalents) {
    auto* lower = menu->itemAtIndex(0);
    lower->setKeyEquivalent(u"k"_ns);
    auto* upper = menu->itemAtIndex(2);
    upper->setKeyEquivalent(u"K"_ns);
    sub->itemAtIndex(1)->setKeyEquivalent(u"e"_ns);
    NSApp()->setMainMenu(menu);
    struct Row {
        char16_t key;
        std::uint32_t modifiers;
        Log done;
    };
    for (const Row& row :
         {Row{u'k', NSCommandKeyMask, {"act Un"}}, Row{u'K', NSCommandKeyMask | NSShiftKeyMask, {"act Deux"}},
          Row{u'e', NSCommandKeyMask, {"act Encore"}}, Row{u'k', 0, {}},
          Row{u'k', NSCommandKeyMask | NSAlternateKeyMask, {}}}) {
        gardien->log.clear();
        windows().key(row.key, row.modifiers);
        drain();
        EXPECT_EQ(gardien->log, row.done) << int{row.key} << " " << row.modifiers;
    }
    lower->setHidden(YES);
    gardien->log.clear();
    windows().key(u'k', NSCommandKeyMask);
    drain();
    EXPECT_TRUE(gardien->log.empty());
}

TEST_F(MenuTest, ItemsBelongToOneMenu) {
    EXPECT_THROW(sub->addItem(menu->itemAtIndex(0)), NSExceptionRaised);
    EXPECT_THROW((void)menu->itemAtIndex(99), NSExceptionRaised);
    EXPECT_THROW(menu->addItem(nullptr), NSExceptionRaised);
    EXPECT_EQ(sub->supermenu(), menu.get());
    const Ref<NSMenuItem> holder(menu->itemAtIndex(4));
    menu->removeItem(holder);
    EXPECT_EQ(holder->menu(), nullptr);
    EXPECT_EQ(sub->supermenu(), nullptr);
    const Ref<NSMenu> copied(as<NSMenu>(menu->copyWithZone()));
    EXPECT_EQ(copied->numberOfItems(), menu->numberOfItems());
    EXPECT_EQ(copied->itemAtIndex(0)->menu(), copied.get());
}

class PopUpTest : public MenuTest {
protected:
    Ref<NSPopUpButton> button;
    Ref<Cible> cible;

    void SetUp() override {
        MenuTest::SetUp();
        cible = make<Cible>();
        button = make<NSPopUpButton>(NSRect{{50, 200}, {120, 24}});
        for (const char* t : {"un", "deux", "trois"})
            button->addItemWithTitle(NSString::fromUTF8(t));
        button->setTarget(cible);
        button->setAction(sel("agir:"));
        window->contentView()->addSubview(button);
    }
    void TearDown() override {
        button = nullptr;
        cible = nullptr;
        MenuTest::TearDown();
    }
};

TEST_F(PopUpTest, KeysChoose) {
    EXPECT_EQ(button->titleOfSelectedItem()->utf8(), "un");
    window->makeFirstResponder(button);
    for (const char16_t k : {char16_t{u' '}, char16_t{NSDownArrowFunctionKey}, char16_t{u'\r'}})
        windows().key(k);
    drain();
    EXPECT_EQ(button->titleOfSelectedItem()->utf8(), "deux");
    EXPECT_EQ(cible->count, 1);
    EXPECT_EQ(cible->sender, button.get());
    EXPECT_EQ(button->itemAtIndex(0)->state(), NSOffState);
    EXPECT_EQ(button->itemAtIndex(1)->state(), NSOnState);
    windows().key(NSDownArrowFunctionKey);
    windows().key(NSDownArrowFunctionKey);
    windows().key(0x1B);
    drain();
    EXPECT_EQ(button->indexOfSelectedItem(), 1) << "Escape leaves it";
    EXPECT_EQ(cible->count, 1);
    EXPECT_FALSE(button->cell()->isHighlighted());
}

TEST_F(PopUpTest, AClickOpensItAndASecondChooses) {
    mouse().at(100, 212).down().up(); // the chosen item lies under the pointer: it stays open
    mouse().at(100, 212 - 22).down().up();
    drain();
    EXPECT_EQ(button->titleOfSelectedItem()->utf8(), "deux");
    mouse().at(100, 212).down().at(100, 212 - 22).up(); // a drag from item to item
    drain();
    EXPECT_EQ(button->titleOfSelectedItem()->utf8(), "trois");
    EXPECT_EQ(cible->count, 2);
}

TEST_F(PopUpTest, APullDownKeepsItsTitle) {
    button->setPullsDown(YES);
    window->makeFirstResponder(button);
    for (const char16_t k : {char16_t{u' '}, char16_t{NSDownArrowFunctionKey}, char16_t{u'\r'}})
        windows().key(k);
    drain();
    EXPECT_EQ(button->indexOfSelectedItem(), 1) << "the first item is the title, and no choice";
    EXPECT_EQ(button->title()->utf8(), "un");
    EXPECT_FALSE(button->itemAtIndex(0)->isHidden());
}

TEST_F(PopUpTest, TheSelectionFollowsTheItems) {
    button->selectItemAtIndex(2);
    button->removeItemAtIndex(0);
    EXPECT_EQ(button->indexOfSelectedItem(), 1);
    button->removeItemAtIndex(1); // the selected one
    EXPECT_EQ(button->titleOfSelectedItem()->utf8(), "deux");
    button->selectItemAtIndex(9);
    EXPECT_EQ(button->titleOfSelectedItem(), nullptr);
    EXPECT_EQ(button->indexOfSelectedItem(), -1);
    button->removeAllItems();
    EXPECT_EQ(button->titleOfSelectedItem(), nullptr);
    button->performClick(nullptr); // nothing to open
    EXPECT_EQ(cible->count, 0);
}

TEST_F(PopUpTest, ACopyChoosesForItself) {
    button->selectItemAtIndex(1);
    const auto copied = button->popUpCell()->copyWithZone();
    auto* c = as<NSPopUpButtonCell>(copied);
    ASSERT_TRUE(c);
    EXPECT_EQ(c->indexOfSelectedItem(), 1);
    c->selectItemAtIndex(2);
    EXPECT_EQ(button->indexOfSelectedItem(), 1);
    EXPECT_EQ(c->popUpMenu()->itemAtIndex(0)->target(), c);
}

TEST_F(PopUpTest, AnActionMayRemoveTheButton) {
    Weak<NSPopUpButton> weak(button.get());
    cible->onAction = [&](NSObject*) {
        button->removeFromSuperview();
        button = nullptr;
    };
    window->makeFirstResponder(button);
    for (const char16_t k : {char16_t{u' '}, char16_t{NSDownArrowFunctionKey}, char16_t{u'\r'}})
        windows().key(k);
    drain();
    EXPECT_EQ(cible->count, 1);
    EXPECT_EQ(weak.get(), nullptr);
}

TEST_F(MenuTest, ArchivesKeepMenusAndTheirItems) {
    menu->itemAtIndex(0)->setKeyEquivalent(u"u"_ns);
    menu->itemAtIndex(0)->setKeyEquivalentModifierMask(NSAlternateKeyMask);
    menu->itemAtIndex(0)->setState(NSMixedState);
    menu->itemAtIndex(2)->setHidden(YES);
    menu->itemAtIndex(2)->setIndentationLevel(3);
    menu->itemAtIndex(2)->setTag(-7);
    menu->itemAtIndex(2)->setRepresentedObject(u"objet"_ns);
    menu->setMinimumWidth(120);
    menu->setAutoenablesItems(NO);
    menu->itemAtIndex(3)->setEnabled(NO);
    const auto back = throughKeyedArchive(*menu);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->title()->utf8(), "Essai");
    EXPECT_EQ(back->minimumWidth(), 120);
    EXPECT_FALSE(back->autoenablesItems());
    ASSERT_EQ(back->numberOfItems(), 5);
    const NSMenuItem& first = *back->itemAtIndex(0);
    EXPECT_EQ(first.menu(), back.get());
    EXPECT_EQ(first.action(), sel("agir:"));
    EXPECT_EQ(first.target(), nullptr) << "a target that the archive does not hold is none";
    EXPECT_EQ(first.keyEquivalent()->utf8(), "u");
    EXPECT_EQ(first.keyEquivalentModifierMask(), NSUInteger{NSAlternateKeyMask});
    EXPECT_EQ(first.state(), NSMixedState);
    EXPECT_TRUE(back->itemAtIndex(1)->isSeparatorItem());
    const NSMenuItem& third = *back->itemAtIndex(2);
    EXPECT_TRUE(third.isHidden());
    EXPECT_EQ(third.indentationLevel(), 3);
    EXPECT_EQ(third.tag(), -7);
    EXPECT_TRUE(isEqual(third.representedObject(), u"objet"_ns.get()));
    EXPECT_FALSE(back->itemAtIndex(3)->isEnabled());
    ASSERT_TRUE(back->itemAtIndex(4)->submenu());
    EXPECT_EQ(back->itemAtIndex(4)->submenu()->supermenu(), back.get());
    EXPECT_EQ(back->itemAtIndex(4)->submenu()->itemAtIndex(1)->title()->utf8(), "Encore");
}

TEST_F(MenuTest, APopUpOfAnArchiveHasItsItemsAndItsChoice) {
    const auto p = make<NSPopUpButton>(NSMakeRect(10, 10, 120, 24));
    p->addItemWithTitle(u"Un"_ns);
    p->addItemWithTitle(u"Deux"_ns);
    p->selectItemAtIndex(1);
    const auto back = throughKeyedArchive(*p);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->numberOfItems(), 2);
    EXPECT_EQ(back->titleOfSelectedItem()->utf8(), "Deux");
    // Its items choose in it, not in the one that was written.
    back->menu()->performActionForItemAtIndex(0);
    EXPECT_EQ(back->indexOfSelectedItem(), 0);
    EXPECT_EQ(p->indexOfSelectedItem(), 1);
}

TEST_F(MenuTest, AMenuDoesNotOpenFromItself) {
    EXPECT_THROW(sub->itemAtIndex(0)->setSubmenu(menu), NSExceptionRaised);
    EXPECT_THROW(sub->itemAtIndex(0)->setSubmenu(sub), NSExceptionRaised);
    const auto loose = make<NSMenuItem>(u"Boucle"_ns.get(), nullptr, nullptr);
    loose->setSubmenu(menu);
    EXPECT_THROW(sub->addItem(loose), NSExceptionRaised);
    EXPECT_EQ(sub->numberOfItems(), 2);
}

TEST_F(MenuTest, AnItemThatGoesWhileItsSubmenuIsAskedOpensNothing) {
    sub->setDelegate(gardien);
    gardien->onUpdate = [&](NSMenu*) { menu->removeItemAtIndex(4); };
    EXPECT_FALSE(open({NSEndFunctionKey, NSRightArrowFunctionKey, NSEscapeCharacter}));
    EXPECT_EQ(menu->numberOfItems(), 4);
    EXPECT_FALSE(menu->isTracking());
}

} // namespace

#include <appkit/WindowFixture.h>

#include <gmock/gmock.h>

#include <graphics/Dessin.h>
#include <libvue/platform/appkit/MenuView.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSImage.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

constexpr char16_t down = NSDownArrowFunctionKey, up = NSUpArrowFunctionKey, ret = u'\r', esc = 0x1B,
                   right = NSRightArrowFunctionKey, left = NSLeftArrowFunctionKey;

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
    Log taken() { return std::exchange(log, {}); }
};

/// A menu of "Un", a separator, "Deux", "Trois" which nobody answers, and "Sous" with a submenu of two.
struct MenuTest : WindowFixture {
    Ref<Gardien> gardien = make<Gardien>();
    Ref<NSMenu> menu = make<NSMenu>(u"Essai"_ns), sub = make<NSMenu>(u"Sous"_ns);

    MenuTest() {
        add(menu, u"Un"_ns);
        menu->addItem(NSMenuItem::separatorItem());
        add(menu, u"Deux"_ns);
        menu->addItemWithTitle_action_keyEquivalent(u"Trois"_ns, sel("personne:"), u""_ns);
        menu->addItemWithTitle_action_keyEquivalent(u"Sous"_ns, nullptr, u""_ns)->setSubmenu(sub);
        add(sub, u"Dedans"_ns);
        add(sub, u"Encore"_ns);
        window->setFrameOrigin({100, 300});
        drain();
    }
    using WindowFixture::add;
    void add(NSMenu* m, NSString* title) const {
        m->addItemWithTitle_action_keyEquivalent(title, sel("agir:"), u""_ns)->setTarget(gardien);
    }
    /// Opens it with its top left corner there, in the window, after the keys were queued.
    BOOL open(std::initializer_list<char16_t> queued = {}) const {
        for (const char16_t k : queued)
            windows().key(k);
        return menu->popUpMenuPositioningItem_atLocation_inView(nullptr, {50, 200}, window->contentView());
    }
    /// Moves to the middle of a line of the menu opened by open().
    Geste on(int line) const {
        const CGFloat middles[] = {11, 26.5, 42, 64, 86};
        return mouse().at(90, 195 - middles[line]);
    }
    /// What it does with what was queued.
    void chooses(const char* what, const Log& chosen, std::initializer_list<char16_t> queued = {}) const {
        gardien->taken();
        EXPECT_EQ(open(queued), !chosen.empty()) << what;
        EXPECT_EQ(gardien->taken(), chosen) << what;
        EXPECT_FALSE(menu->isTracking());
        EXPECT_EQ(menu->highlightedItem(), nullptr);
        drain();
    }
};

TEST_F(MenuTest, KeysChoose) {
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
    for (const Row& row : rows)
        chooses(row.what, row.chosen, row.keys);
}

TEST_F(MenuTest, TheMouseChooses) {
    on(2).down().up();
    chooses("a click", {"act Deux"});
    on(1).down().up(); // on the separator: it stays open
    on(3).down().up(); // and on a disabled item
    on(0).down().up();
    chooses("the third click", {"act Un"});
    mouse().click(390, 10);
    chooses("a click outside", {});
    mouse().at(52, 202).down().end();
    on(0);
    on(2).up();
    chooses("a drag", {"act Deux"});
    on(4).at(90, 195 - 87); // opens the submenu
    chooses("in the submenu", {"act Dedans"}, {down, ret});
}

TEST_F(MenuTest, TheDelegateFillsItIn) {
    menu->setDelegate(gardien);
    gardien->onUpdate = [&](NSMenu* m) {
        m->removeAllItems();
        add(m, u"Neuf"_ns);
    };
    EXPECT_TRUE(open({down, ret}));
    EXPECT_THAT(gardien->taken(), ElementsAre("update", "open", "close", "act Neuf"));
    gardien->onUpdate = [](NSMenu* m) { m->removeAllItems(); };
    EXPECT_FALSE(open()) << "an empty menu does not open";
    EXPECT_THAT(gardien->taken(), ElementsAre("update"));
}

TEST_F(MenuTest, LeavingTheApplicationOrCancellingLeavesTheMenu) {
    const std::size_t before = windows().stacking().size();
    for (const bool leaves : {true, false}) {
        NSRunLoop::mainRunLoop()->performBlock([&] {
            if (leaves)
                NSNotificationCenter::defaultCenter()->postNotificationName_object(
                    NSApplicationDidResignActiveNotification, NSApp());
            else
                menu->cancelTracking();
            // These come too late for the menu.
            windows().key(down);
            windows().key(ret);
        });
        chooses("nothing", {});
        EXPECT_EQ(windows().stacking().size(), before) << "its window is gone";
    }
    menu->cancelTracking(); // not open: nothing
}

TEST_F(MenuTest, ItemsAreEnabledByTheirTargets) {
    const auto enabled = [&] {
        std::string s;
        menu->update();
        for (const NSInteger i : {0, 2, 3, 4})
            s += menu->itemAtIndex(i)->isEnabled() ? '1' : '0';
        return s;
    };
    EXPECT_EQ(enabled(), "1101");
    gardien->valid = NO;
    EXPECT_EQ(enabled(), "0001");
    gardien = nullptr; // the target dies
    EXPECT_EQ(enabled(), "0001");
    menu->setAutoenablesItems(NO);
    menu->itemAtIndex(2)->setEnabled(YES);
    EXPECT_EQ(enabled(), "0101");
}

TEST_F(MenuTest, KeyEquivalents) {
    menu->itemAtIndex(0)->setKeyEquivalent(u"k"_ns);
    menu->itemAtIndex(2)->setKeyEquivalent(u"K"_ns);
    sub->itemAtIndex(1)->setKeyEquivalent(u"e"_ns);
    NSApp()->setMainMenu(menu);
    struct Row {
        char16_t key;
        std::uint32_t modifiers;
        Log done;
    };
    const auto check = [&](const Row& row) {
        key(row.key, row.modifiers);
        EXPECT_EQ(gardien->taken(), row.done) << int{row.key} << " " << row.modifiers;
    };
    for (const Row& row :
         {Row{u'k', NSCommandKeyMask, {"act Un"}}, Row{u'K', NSCommandKeyMask | NSShiftKeyMask, {"act Deux"}},
          Row{u'e', NSCommandKeyMask, {"act Encore"}}, Row{u'k', 0, {}},
          Row{u'k', NSCommandKeyMask | NSAlternateKeyMask, {}}})
        check(row);
    menu->itemAtIndex(0)->setHidden(YES);
    check({u'k', NSCommandKeyMask, {}});
}

TEST_F(MenuTest, ItemsBelongToOneMenuAndNoMenuToItself) {
    const auto loose = make<NSMenuItem>(u"Boucle"_ns.get(), nullptr, nullptr);
    loose->setSubmenu(menu);
    EXPECT_THROW(sub->addItem(loose), NSExceptionRaised);
    EXPECT_THROW(sub->itemAtIndex(0)->setSubmenu(menu), NSExceptionRaised);
    EXPECT_THROW(sub->itemAtIndex(0)->setSubmenu(sub), NSExceptionRaised);
    EXPECT_THROW(sub->addItem(menu->itemAtIndex(0)), NSExceptionRaised);
    EXPECT_THROW((void)menu->itemAtIndex(99), NSExceptionRaised);
    EXPECT_THROW(menu->addItem(nullptr), NSExceptionRaised);
    EXPECT_EQ(sub->numberOfItems(), 2);
    EXPECT_EQ(sub->supermenu(), menu.get());
    const Ref<NSMenuItem> holder(menu->itemAtIndex(4));
    menu->removeItem(holder);
    EXPECT_EQ(holder->menu(), nullptr);
    EXPECT_EQ(sub->supermenu(), nullptr);
}

TEST_F(MenuTest, AnItemThatGoesWhileItsSubmenuIsAskedOpensNothing) {
    sub->setDelegate(gardien);
    gardien->onUpdate = [&](NSMenu*) { menu->removeItemAtIndex(4); };
    EXPECT_FALSE(open({NSEndFunctionKey, right, esc}));
    EXPECT_EQ(menu->numberOfItems(), 4);
    EXPECT_FALSE(menu->isTracking());
}

TEST_F(MenuTest, AMenuIsNoLargerThanItsScreen) {
    std::u16string title(3000, u'm');
    add(sub, NSString::from(title));
    const NSSize screen = NSScreen::mainScreen()->visibleFrame().size;
    EXPECT_GT(sub->size().width, screen.width);
    std::vector<NSRect> seen;
    NSRunLoop::mainRunLoop()->performBlock([&] {
        const Ref<NSArray> all = NSApp()->orderedWindows();
        for (NSWindow* w : all->as<NSWindow>())
            if (w->level() == NSPopUpMenuWindowLevel) seen.push_back(w->frame());
    });
    chooses("the last of the submenu", {"act " + sub->itemAtIndex(2)->title()->utf8()}, {up, right, up, ret});
    for (const NSRect& r : seen)
        EXPECT_LE(r.size.width, screen.width);
}

TEST_F(MenuTest, ShortcutsAreWrittenAsTheKeysAreCalled) {
    struct Row {
        std::u16string key;
        NSUInteger modifiers;
        const char* written;
    };
    const auto item = menu->itemAtIndex(0);
    const Ref<MenuView> view = make<MenuView>(menu);
    view->setFrame({{0, 0}, menu->size()});
    for (const Row& r : {Row{u"k", NSCommandKeyMask, "Ctrl+K"}, Row{u"K", NSCommandKeyMask, "Ctrl+Maj+K"},
                         Row{u"\r", NSAlternateKeyMask, "Alt+Entrée"}, Row{{NSF1FunctionKey + 11}, 0, "F12"},
                         Row{{NSUpArrowFunctionKey}, NSControlKeyMask, "Super+Haut"},
                         Row{{NSDeleteFunctionKey}, 0, "Suppr"}, Row{u" ", NSCommandKeyMask, "Ctrl+Espace"}}) {
        item->setKeyEquivalent(NSString::from(r.key));
        item->setKeyEquivalentModifierMask(r.modifiers);
        Enregistrement drawn({300, 300});
        view->drawRect(view->rectOfItem(item));
        EXPECT_NE(drawn.text().find("text \"" + std::string(r.written) + "\""), std::string::npos) << r.written;
    }
}

struct PopUpTest : WindowFixture {
    Ref<Cible> cible = make<Cible>();
    Ref<NSPopUpButton> button = add<NSPopUpButton>({{50, 200}, {120, 24}});

    PopUpTest() {
        for (const char* t : {"un", "deux", "trois"})
            button->addItemWithTitle(NSString::fromUTF8(t));
        button->setTarget(cible);
        button->setAction(sel("agir:"));
        window->makeFirstResponder(button);
    }
    std::string chosen() const {
        NSString* title = button->titleOfSelectedItem();
        return title ? title->utf8() : "none";
    }
};

TEST_F(PopUpTest, KeysAndClicksChoose) {
    EXPECT_EQ(chosen(), "un");
    keys({u' ', down, ret});
    EXPECT_EQ(chosen(), "deux");
    EXPECT_EQ(cible->sender, button.get());
    EXPECT_EQ(button->itemAtIndex(0)->state(), NSOffState);
    EXPECT_EQ(button->itemAtIndex(1)->state(), NSOnState);
    keys({down, down, esc});
    EXPECT_EQ(chosen(), "deux") << "Escape leaves it";
    EXPECT_FALSE(button->cell()->isHighlighted());
    button->selectItemAtIndex(0);
    mouse().click(100, 212).click(100, 190).end(); // the chosen item lies under the pointer: it stays open
    EXPECT_EQ(chosen(), "deux");
    mouse().at(100, 212).down().at(100, 190).up().end(); // a drag from item to item
    EXPECT_EQ(chosen(), "trois");
    EXPECT_EQ(cible->count, 3);
    button->setPullsDown(YES);
    keys({u' ', down, ret});
    EXPECT_EQ(button->indexOfSelectedItem(), 1) << "the first item is the title, and no choice";
    EXPECT_EQ(button->title()->utf8(), "un");
}

TEST_F(PopUpTest, TheSelectionFollowsTheItems) {
    button->selectItemAtIndex(2);
    button->removeItemAtIndex(0);
    EXPECT_EQ(button->indexOfSelectedItem(), 1);
    button->removeItemAtIndex(1); // the selected one
    EXPECT_EQ(chosen(), "deux");
    button->selectItemAtIndex(9);
    EXPECT_EQ(chosen(), "none");
    EXPECT_EQ(button->indexOfSelectedItem(), -1);
    button->removeAllItems();
    EXPECT_EQ(chosen(), "none");
    button->performClick(nullptr); // nothing to open
    EXPECT_EQ(cible->count, 0);
}

TEST_F(PopUpTest, ACopyOrAnArchiveChoosesForItself) {
    button->selectItemAtIndex(1);
    const auto back = throughKeyedArchive(*button);
    ASSERT_TRUE(back);
    for (const Ref<NSPopUpButtonCell>& c :
         {Ref<NSPopUpButtonCell>(as<NSPopUpButtonCell>(button->cell()->copyWithZone().get())),
          Ref<NSPopUpButtonCell>(back->popUpCell())}) {
        ASSERT_TRUE(c);
        EXPECT_EQ(c->indexOfSelectedItem(), 1);
        c->popUpMenu()->performActionForItemAtIndex(0);
        EXPECT_EQ(c->indexOfSelectedItem(), 0);
        EXPECT_EQ(chosen(), "deux");
    }
}

TEST_F(PopUpTest, AnotherMenuAndAnotherKindShowTheirFirstItem) {
    button->selectItemAtIndex(2);
    button->setPullsDown(YES);
    button->setMenu(nullptr);
    EXPECT_EQ(button->title()->utf8(), "");
    button->insertItemWithTitle_atIndex(u"deux"_ns, 0);
    button->insertItemWithTitle_atIndex(u"un"_ns, 0);
    EXPECT_EQ(chosen(), "none") << "a pull-down chooses nothing by itself";
    button->setPullsDown(NO);
    EXPECT_EQ(chosen(), "un");
    EXPECT_THROW(button->insertItemWithTitle_atIndex(u"loin"_ns, 9), NSExceptionRaised);
    keys({u' ', down, ret});
    EXPECT_EQ(chosen(), "deux");
}

TEST_F(PopUpTest, ItShowsTheImageOfTheChosenItem) {
    const CGFloat narrow = button->cell()->cellSize().width;
    const auto image = make<NSImage>(NSMakeSize(40, 10));
    image->addRepresentation(NSBitmapImageRep::initWithPixelsWide_pixelsHigh(4, 1));
    button->itemAtIndex(1)->setImage(image);
    EXPECT_GT(button->cell()->cellSize().width, narrow + 20);
    for (const NSInteger i : {0, 1}) {
        button->selectItemAtIndex(i);
        Enregistrement r({120, 24});
        button->drawRect(button->bounds());
        EXPECT_EQ(r.text().find("picture") != std::string::npos, i == 1);
    }
}

TEST_F(PopUpTest, AnActionMayRemoveTheButton) {
    const Weak<NSPopUpButton> weak(button.get());
    cible->onAction = [&](NSObject*) {
        button->removeFromSuperview();
        button = nullptr;
    };
    keys({u' ', down, ret});
    EXPECT_EQ(cible->count, 1);
    EXPECT_EQ(weak.get(), nullptr);
}

} // namespace

#include <libvue/platform/appkit/NSMenu.h>

#include <algorithm>

#include <libvue/platform/appkit/MenuTracker.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/ScopeExit.h>
#include <libvue/platform/graphics/NSFont.h>

namespace libvue {

static const ClassRegistration<NSMenu> registration;

namespace {
constexpr ConstantString kTitle{u"NSTitle"}, kItems{u"NSMenuItems"}, kFont{u"NSMenuFont"}, kWidth{u"NSMinimumWidth"},
    kNoAutoenable{u"NSNoAutoenable"}, kDelegate{u"NSDelegate"};
}

void NSMenu::describe(ClassDescription<NSMenu>& c) { c.key<&NSMenu::title, &NSMenu::setTitle>("title"); }

NSMenu::NSMenu() : NSMenu(nullptr) {}
NSMenu::NSMenu(NSString* title) : title_(title ? NSString::stringWithString(title) : NSString::string()) {}
NSMenu::~NSMenu() {
    for (const auto& i : items_)
        i->menu_ = nullptr;
}

NSMenu::NSMenu(NSCoder& coder)
    : title_((coder.beginDecoding(this), coder.decodeObjectOf_forKey<NSString>(kTitle))),
      delegate_(coder.decodeObjectForKey(kDelegate)),
      font_(coder.decodeObjectOf_forKey<NSFont>(kFont)),
      minimumWidth_(std::clamp(coder.decodeDoubleForKey(kWidth), 0.0, 1e4)),
      autoenables_(!coder.decodeBoolForKey(kNoAutoenable)) {
    if (!title_) title_ = NSString::string();
    if (const auto items = coder.decodeObjectOf_forKey<NSArray>(kItems))
        for (NSObject* o : *items) {
            auto* i = as<NSMenuItem>(o);
            // What an archive may hold and a menu may not.
            if (!i || i->menu() || (i->submenu() && isInside_(i->submenu()))) continue;
            addItem(i);
        }
}

void NSMenu::encodeWithCoder(NSCoder& coder) const {
    coder.encodeObject_forKey(title_, kTitle);
    coder.encodeConditionalObject_forKey(delegate_.get(), kDelegate);
    coder.encodeObject_forKey(font_, kFont);
    coder.encodeDouble_forKey(minimumWidth_, kWidth);
    if (!autoenables_) coder.encodeBool_forKey(YES, kNoAutoenable);
    coder.encodeObject_forKey(itemArray(), kItems);
}

Ref<NSObject> NSMenu::copyWithZone() const {
    auto m = make<NSMenu>(title_);
    m->delegate_ = delegate_;
    m->font_ = font_;
    m->minimumWidth_ = minimumWidth_;
    m->autoenables_ = autoenables_;
    for (const auto& i : items_)
        m->addItem(as<NSMenuItem>(i->copyWithZone()));
    return m;
}

void NSMenu::setTitle(NSString* s) { title_ = s ? NSString::stringWithString(s) : NSString::string(); }
NSFont* NSMenu::font() const noexcept { return font_; }
void NSMenu::setFont(NSFont* f) { font_ = f; }

// Items.

NSMenuItem* NSMenu::itemAtIndex(NSInteger i) const {
    if (i < 0 || i >= numberOfItems())
        raiseNamed("NSRangeException", "menu item " + std::to_string(i) + " of " + std::to_string(numberOfItems()));
    return items_[static_cast<std::size_t>(i)];
}

Ref<NSArray> NSMenu::itemArray() const { return NSArray::arrayWithRefs(items_); }

namespace {
template <class F> NSInteger indexWhere(const std::vector<Ref<NSMenuItem>>& items, F wanted) {
    for (std::size_t i = 0; i < items.size(); ++i)
        if (wanted(items[i].get())) return static_cast<NSInteger>(i);
    return -1;
}
} // namespace

NSInteger NSMenu::indexOfItem(const NSMenuItem* item) const noexcept {
    return indexWhere(items_, [&](NSMenuItem* i) { return i == item; });
}
NSInteger NSMenu::indexOfItemWithTitle(const NSString* title) const noexcept {
    return indexWhere(items_, [&](NSMenuItem* i) { return title && i->title()->isEqualToString(title); });
}
NSInteger NSMenu::indexOfItemWithTag(NSInteger tag) const noexcept {
    return indexWhere(items_, [&](NSMenuItem* i) { return i->tag() == tag; });
}
NSInteger NSMenu::indexOfItemWithRepresentedObject(const NSObject* o) const noexcept {
    return indexWhere(items_, [&](NSMenuItem* i) { return libvue::isEqual(i->representedObject(), o); });
}
NSMenuItem* NSMenu::itemWithTitle(const NSString* title) const noexcept {
    const NSInteger i = indexOfItemWithTitle(title);
    return i < 0 ? nullptr : items_[static_cast<std::size_t>(i)].get();
}
NSMenuItem* NSMenu::itemWithTag(NSInteger tag) const noexcept {
    const NSInteger i = indexOfItemWithTag(tag);
    return i < 0 ? nullptr : items_[static_cast<std::size_t>(i)].get();
}

void NSMenu::addItem(NSMenuItem* item) { insertItem_atIndex(item, numberOfItems()); }

NSMenuItem* NSMenu::addItemWithTitle_action_keyEquivalent(NSString* title, SEL action, NSString* key) {
    return insertItemWithTitle_action_keyEquivalent_atIndex(title, action, key, numberOfItems());
}

void NSMenu::insertItem_atIndex(NSMenuItem* item, NSInteger i) {
    if (!item) raiseNamed("NSInvalidArgumentException", "a menu takes no absent item");
    if (item->menu()) raiseNamed("NSInvalidArgumentException", "the item stands in a menu already");
    if (item->submenu() && isInside_(item->submenu()))
        raiseNamed("NSInvalidArgumentException", "the item opens a menu that holds this one");
    if (i < 0 || i > numberOfItems()) raiseNamed("NSRangeException", "no such place in the menu");
    const Ref<NSMenu> self(this);
    items_.insert(items_.begin() + i, Ref<NSMenuItem>(item));
    item->menu_ = this;
    if (item->submenu()) item->submenu()->supermenu_ = this;
    if (messages_)
        NSNotificationCenter::defaultCenter()->postNotificationName_object(NSMenuDidAddItemNotification, this);
}

NSMenuItem* NSMenu::insertItemWithTitle_action_keyEquivalent_atIndex(NSString* title, SEL action, NSString* key,
                                                                     NSInteger i) {
    const auto item = make<NSMenuItem>(title, action, key);
    insertItem_atIndex(item, i);
    return item.get();
}

void NSMenu::removeItem(NSMenuItem* item) {
    const NSInteger i = indexOfItem(item);
    if (i >= 0) removeItemAtIndex(i);
}

void NSMenu::removeItemAtIndex(NSInteger i) {
    const Ref<NSMenuItem> item(itemAtIndex(i));
    const Ref<NSMenu> self(this);
    items_.erase(items_.begin() + i);
    item->menu_ = nullptr;
    if (item->submenu()) item->submenu()->supermenu_ = nullptr;
    if (messages_)
        NSNotificationCenter::defaultCenter()->postNotificationName_object(NSMenuDidRemoveItemNotification, this);
}

void NSMenu::removeAllItems() {
    while (!items_.empty())
        removeItemAtIndex(numberOfItems() - 1);
}

BOOL NSMenu::isInside_(const NSMenu* menu) const noexcept {
    for (const NSMenu* m = this; m; m = m->supermenu_)
        if (m == menu) return YES;
    return NO;
}

void NSMenu::setSubmenu_forItem(NSMenu* menu, NSMenuItem* item) {
    if (item) item->setSubmenu(menu);
}

void NSMenu::itemChanged_(NSMenuItem*) {
    if (messages_)
        NSNotificationCenter::defaultCenter()->postNotificationName_object(NSMenuDidChangeItemNotification, this);
}

// Enabling.

void NSMenu::update() {
    const Ref<NSMenu> self(this);
    if (auto ask = op::menuNeedsUpdate.of(delegate_)) ask(this);
    if (!autoenables_) return;
    const std::vector<Ref<NSMenuItem>> items = items_;
    for (const auto& i : items) {
        if (i->isSeparatorItem()) continue;
        BOOL enabled = i->hasSubmenu();
        if (!enabled && i->action()) {
            const Ref<NSObject> target = NSApp()->targetForAction_to_from(i->action(), i->target(), i);
            enabled = target != nullptr;
            if (auto ask = op::validateMenuItem.of(target)) enabled = ask(i);
        }
        i->setEnabled(enabled);
    }
}

BOOL NSMenu::performKeyEquivalent(NSEvent* e) {
    NSString* typed = e->charactersIgnoringModifiers();
    if (!typed || typed->length() == 0) return NO;
    const Ref<NSMenu> self(this);
    update();
    constexpr NSUInteger relevant = NSControlKeyMask | NSAlternateKeyMask | NSCommandKeyMask;
    const std::vector<Ref<NSMenuItem>> items = items_;
    for (const auto& i : items) {
        if (i->isHidden()) continue;
        if (const Ref<NSMenu> submenu = i->submenu()) {
            if (submenu->performKeyEquivalent(e)) return YES;
            continue;
        }
        NSString* key = i->keyEquivalent();
        if (key->length() == 0 || !i->isEnabled()) continue;
        // A capital stands for its letter with Shift.
        const bool capital = !key->isEqualToString(key->lowercaseString());
        const bool shift = (e->modifierFlags() & NSShiftKeyMask) != 0;
        if ((e->modifierFlags() & relevant) != (i->keyEquivalentModifierMask() & relevant)) continue;
        if (shift != (capital || (i->keyEquivalentModifierMask() & NSShiftKeyMask))) continue;
        if (!typed->lowercaseString()->isEqualToString(key->lowercaseString())) continue;
        // A delegate that was asked on the way may have taken it out.
        if (i->menu() == this) performActionForItemAtIndex(indexOfItem(i));
        return YES;
    }
    return NO;
}

void NSMenu::performActionForItemAtIndex(NSInteger index) {
    const Ref<NSMenu> self(this);
    const Ref<NSMenuItem> item(itemAtIndex(index));
    if (!item->isEnabled()) return;
    if (item->action()) NSApp()->sendAction_to_from(item->action(), item->target(), item);
    NSNotificationCenter::defaultCenter()->postNotificationName_object(NSMenuDidSendActionNotification, this);
}

// Opening.

NSSize NSMenu::size() const { return MenuTracker::sizeOf(*this); }

BOOL NSMenu::popUpMenuPositioningItem_atLocation_inView(NSMenuItem* item, NSPoint p, NSView* view) {
    if (tracking_) return NO;
    NSPoint screen = p;
    if (view && view->window()) screen = view->window()->convertBaseToScreen(view->convertPoint_toView(p, nullptr));
    const Ref<NSMenu> self(this);
    const Ref<NSMenuItem> chosen = [&] {
        tracking_ = true;
        const ScopeExit left([this] { tracking_ = false; });
        return MenuTracker(this, view ? view->window() : nullptr).run(screen, item);
    }();
    if (!chosen || !chosen->menu()) return NO;
    const Ref<NSMenu> of(chosen->menu());
    of->performActionForItemAtIndex(of->indexOfItem(chosen));
    return YES;
}

void NSMenu::popUpContextMenu_withEvent_forView(NSMenu* menu, NSEvent* e, NSView* view) {
    if (!menu || !e) return;
    NSPoint p = e->locationInWindow();
    if (NSWindow* w = e->window()) p = w->convertBaseToScreen(p);
    if (view && view->window()) p = view->convertPoint_fromView(view->window()->convertScreenToBase(p), nullptr);
    menu->popUpMenuPositioningItem_atLocation_inView(nullptr, p, view);
}

void NSMenu::setHighlightedItem_(NSMenuItem* item) { highlighted_ = item; }
void NSMenu::cancelTracking() { MenuTracker::cancel(this); }

} // namespace libvue

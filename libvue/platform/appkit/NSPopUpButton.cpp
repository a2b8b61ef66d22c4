#include <libvue/platform/appkit/NSPopUpButton.h>

#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSKeyValueBinding.h>

namespace libvue {

static const ClassRegistration<NSPopUpButton> registration;

namespace {
const ExposedBinding exposed{&classOf<NSPopUpButton>, NSSelectedIndexBinding};
}

void NSPopUpButton::describe(ClassDescription<NSPopUpButton, NSButton>& c) {
    c.key<&NSPopUpButton::indexOfSelectedItem, &NSPopUpButton::selectItemAtIndex>("selectedIndex");
}

NSPopUpButton::NSPopUpButton() : NSPopUpButton(NSZeroRect) {}
NSPopUpButton::NSPopUpButton(const NSRect& frame, BOOL pullsDown) : NSButton(frame) {
    setCell(make<NSPopUpButtonCell>(nullptr, pullsDown));
}
NSPopUpButton::NSPopUpButton(NSCoder& coder) : NSButton(coder) {
    if (!popUpCell()) setCell(make<NSPopUpButtonCell>());
}

NSPopUpButtonCell* NSPopUpButton::popUpCell() const { return as<NSPopUpButtonCell>(cell()); }
BOOL NSPopUpButton::pullsDown() const { return popUpCell() && popUpCell()->pullsDown(); }
void NSPopUpButton::setPullsDown(BOOL f) {
    if (auto* c = popUpCell()) c->setPullsDown(f);
}
NSRectEdge NSPopUpButton::preferredEdge() const { return popUpCell() ? popUpCell()->preferredEdge() : NSMaxYEdge; }
void NSPopUpButton::setPreferredEdge(NSRectEdge e) {
    if (auto* c = popUpCell()) c->setPreferredEdge(e);
}
NSMenu* NSPopUpButton::menu() const { return popUpCell() ? popUpCell()->popUpMenu() : nullptr; }
void NSPopUpButton::setMenu(NSMenu* menu) {
    if (auto* c = popUpCell()) c->setMenu(menu);
}
NSInteger NSPopUpButton::numberOfItems() const { return menu() ? menu()->numberOfItems() : 0; }
void NSPopUpButton::addItemWithTitle(NSString* title) {
    if (auto* c = popUpCell()) c->addItemWithTitle(title);
}
void NSPopUpButton::addItemsWithTitles(NSArray* titles) {
    if (!titles) return;
    for (NSObject* o : *titles)
        if (auto* s = as<NSString>(o)) addItemWithTitle(s);
}
void NSPopUpButton::insertItemWithTitle_atIndex(NSString* title, NSInteger i) {
    if (auto* c = popUpCell()) c->insertItemWithTitle_atIndex(title, i);
}
void NSPopUpButton::removeItemAtIndex(NSInteger i) {
    if (menu()) menu()->removeItemAtIndex(i);
}
void NSPopUpButton::removeAllItems() {
    if (auto* c = popUpCell()) c->removeAllItems();
}
NSMenuItem* NSPopUpButton::itemAtIndex(NSInteger i) const { return menu() ? menu()->itemAtIndex(i) : nullptr; }
NSInteger NSPopUpButton::indexOfItemWithTitle(NSString* title) const {
    return menu() ? menu()->indexOfItemWithTitle(title) : -1;
}
NSMenuItem* NSPopUpButton::selectedItem() const { return popUpCell() ? popUpCell()->selectedItem() : nullptr; }
NSInteger NSPopUpButton::indexOfSelectedItem() const { return popUpCell() ? popUpCell()->indexOfSelectedItem() : -1; }
NSString* NSPopUpButton::titleOfSelectedItem() const { return selectedItem() ? selectedItem()->title() : nullptr; }
void NSPopUpButton::selectItemAtIndex(NSInteger i) {
    if (auto* c = popUpCell()) c->selectItemAtIndex(i);
}
void NSPopUpButton::selectItemWithTitle(NSString* title) { selectItemAtIndex(indexOfItemWithTitle(title)); }
void NSPopUpButton::selectItemWithTag(NSInteger tag) {
    if (menu()) selectItemAtIndex(menu()->indexOfItemWithTag(tag));
}

void NSPopUpButton::mouseDown(NSEvent*) { performClick(nullptr); }

void NSPopUpButton::keyDown(NSEvent* e) {
    NSString* s = e->charactersIgnoringModifiers();
    const unichar c = s && s->length() == 1 ? s->unit(0) : u'\0';
    // The arrows open the menu, as the space does.
    if (isEnabled() && (c == NSDownArrowFunctionKey || c == NSUpArrowFunctionKey))
        performClick(nullptr);
    else
        NSButton::keyDown(e);
}

AccessibilityDescription NSPopUpButton::accessibilityDescription() const {
    AccessibilityDescription d = NSButton::accessibilityDescription();
    d.role = pullsDown() ? u"menu button"_ns : u"pop up button"_ns;
    d.label = accessibilityLabel();
    d.value = pullsDown() ? nullptr : titleOfSelectedItem();
    d.action = u"show menu"_ns;
    return d;
}

} // namespace libvue

#include <libvue/platform/appkit/NSPopUpButtonCell.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSControl.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/ThemeDrawing.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/ScopeExit.h>
#include <libvue/platform/graphics/HeldEnum.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/NSStringDrawing.h>

namespace libvue {

static const ClassRegistration<NSPopUpButtonCell> registration;

namespace {
constexpr CGFloat kPadding = 10, kArrowRoom = 20, kImageGap = 4;
constexpr ConstantString kPullsDown{u"NSPullDown"}, kArrow{u"NSArrowPosition"}, kEdge{u"NSPreferredEdge"},
    kMenu{u"NSMenu"}, kSelected{u"NSSelectedIndex"}, kAlters{u"NSAltersState"};
} // namespace

void NSPopUpButtonCell::describe(ClassDescription<NSPopUpButtonCell, NSButtonCell>& c) {
    c.answers<&NSPopUpButtonCell::menuChosen>("menuChosen:");
    c.key<&NSPopUpButtonCell::indexOfSelectedItem, &NSPopUpButtonCell::selectItemAtIndex>("selectedIndex");
}

NSPopUpButtonCell::NSPopUpButtonCell() : NSPopUpButtonCell(nullptr, NO) {}
NSPopUpButtonCell::NSPopUpButtonCell(NSString* title, BOOL pullsDown)
    : NSButtonCell(NSString::string().get()), pullsDown_(pullsDown) {
    setAlignment(NSLeftTextAlignment);
    setLineBreakMode(NSLineBreakByTruncatingTail);
    setMenu(make<NSMenu>());
    if (title && title->length() > 0) addItemWithTitle(title);
}
NSPopUpButtonCell::NSPopUpButtonCell(NSCoder& coder)
    : NSButtonCell(coder),
      arrow_(heldEnum(coder.decodeIntegerForKey(kArrow), NSPopUpNoArrow, NSPopUpArrowAtBottom, NSPopUpArrowAtBottom)),
      edge_(heldEnum(coder.decodeIntegerForKey(kEdge), NSMinXEdge, NSMaxYEdge, NSMaxYEdge)),
      pullsDown_(coder.decodeBoolForKey(kPullsDown)),
      alters_(!coder.containsValueForKey(kAlters) || coder.decodeBoolForKey(kAlters)) {
    setMenu(coder.decodeObjectOf_forKey<NSMenu>(kMenu));
    selectItemAtIndex(coder.decodeIntegerForKey(kSelected));
}
NSPopUpButtonCell::~NSPopUpButtonCell() { NSNotificationCenter::defaultCenter()->removeObserver(this); }

void NSPopUpButtonCell::encodeWithCoder(NSCoder& coder) const {
    NSButtonCell::encodeWithCoder(coder);
    coder.encodeBool_forKey(pullsDown_, kPullsDown);
    coder.encodeInteger_forKey(static_cast<NSInteger>(arrow_), kArrow);
    coder.encodeInteger_forKey(static_cast<NSInteger>(edge_), kEdge);
    coder.encodeBool_forKey(alters_, kAlters);
    coder.encodeObject_forKey(items_, kMenu);
    coder.encodeInteger_forKey(indexOfSelectedItem(), kSelected);
}

Ref<NSObject> NSPopUpButtonCell::copyWithZone() const {
    Ref<NSObject> made = NSButtonCell::copyWithZone();
    if (auto* c = as<NSPopUpButtonCell>(made)) {
        c->pullsDown_ = pullsDown_;
        c->arrow_ = arrow_;
        c->edge_ = edge_;
        c->alters_ = alters_;
        // A menu of its own: its items choose in the copy.
        const Ref<NSMenu> menu(as<NSMenu>(items_->copyWithZone()));
        for (NSInteger i = 0; i < menu->numberOfItems(); ++i)
            if (menu->itemAtIndex(i)->target() == this) menu->itemAtIndex(i)->setTarget(c);
        c->setMenu(menu);
        c->selectItemAtIndex(indexOfSelectedItem());
    }
    return made;
}

void NSPopUpButtonCell::setMenu(NSMenu* menu) {
    auto* centre = NSNotificationCenter::defaultCenter();
    if (items_) centre->removeObserver_name_object(this, nullptr, items_);
    items_ = menu ? Ref<NSMenu>(menu) : make<NSMenu>();
    NSButtonCell::setMenu(items_);
    for (NSString* name : {NSMenuDidAddItemNotification.get(), NSMenuDidRemoveItemNotification.get(),
                           NSMenuDidChangeItemNotification.get()})
        centre->addObserver<&NSPopUpButtonCell::menuChanged>(this, name, items_);
    selected_ = nullptr;
    menuChanged(nullptr);
}

void NSPopUpButtonCell::menuChanged(NSNotification*) {
    // A pop-up always shows something while it has items.
    if (!pullsDown_ && (!selected_ || selected_->menu() != items_.get()))
        selected_ = items_->numberOfItems() > 0 ? items_->itemAtIndex(0) : nullptr;
    redisplay();
}

void NSPopUpButtonCell::setPullsDown(BOOL f) {
    pullsDown_ = f;
    menuChanged(nullptr);
}
void NSPopUpButtonCell::setArrowPosition(NSPopUpArrowPosition p) {
    arrow_ = p;
    redisplay();
}

NSInteger NSPopUpButtonCell::numberOfItems() const { return items_->numberOfItems(); }

void NSPopUpButtonCell::insertItemWithTitle_atIndex(NSString* title, NSInteger i) {
    const auto item = make<NSMenuItem>(title, sel("menuChosen:"), nullptr);
    item->setTarget(this);
    items_->insertItem_atIndex(item, i);
}

void NSPopUpButtonCell::removeAllItems() {
    items_->removeAllItems();
    selected_ = nullptr;
    redisplay();
}

void NSPopUpButtonCell::selectItem(NSMenuItem* item) {
    if (item && item->menu() != items_.get()) item = nullptr;
    if (NSMenuItem* old = selected_; old && old != item && alters_ && !pullsDown_) old->setState(NSOffState);
    selected_ = item;
    if (item && alters_ && !pullsDown_) item->setState(NSOnState);
    redisplay();
}

void NSPopUpButtonCell::selectItemAtIndex(NSInteger i) {
    selectItem(i >= 0 && i < numberOfItems() ? items_->itemAtIndex(i) : nullptr);
}

NSInteger NSPopUpButtonCell::indexOfSelectedItem() const { return selected_ ? items_->indexOfItem(selected_) : -1; }

NSMenuItem* NSPopUpButtonCell::shownItem() const {
    if (!pullsDown_) return selected_;
    return items_ && items_->numberOfItems() > 0 ? items_->itemAtIndex(0) : nullptr;
}

NSString* NSPopUpButtonCell::title() const {
    const NSMenuItem* shown = shownItem();
    return shown ? shown->title() : NSButtonCell::title();
}

// Opening.

void NSPopUpButtonCell::menuChosen(NSObject* sender) {
    auto* item = as<NSMenuItem>(sender);
    if (!item) return;
    const Ref<NSPopUpButtonCell> self(this);
    selectItem(item);
    if (auto* control = as<NSControl>(controlView())) {
        const Ref<NSControl> kept(control);
        kept->setNeedsDisplay(YES);
        kept->sendAction_to(action(), target());
    }
}

void NSPopUpButtonCell::performClickWithFrame_inView(const NSRect& frame, NSView* view) {
    if (!isEnabled() || !view) return;
    const Ref<NSPopUpButtonCell> self(this);
    const Ref<NSView> kept(view);
    const bool flipped = view->isFlipped();
    items_->setMinimumWidth(frame.size.width);
    if (alters_ && !pullsDown_ && selected_) selected_->setState(NSOnState);
    setHighlighted(YES);
    const ScopeExit released([this] { setHighlighted(NO); });
    if (pullsDown_) {
        // Its first item is the title: the menu shows what follows, under the button.
        const Ref<NSMenuItem> hidden(items_->numberOfItems() > 0 ? items_->itemAtIndex(0) : nullptr);
        if (hidden) hidden->setHidden(YES);
        const ScopeExit shown([&] {
            if (hidden) hidden->setHidden(NO);
        });
        items_->popUpMenuPositioningItem_atLocation_inView(
            nullptr, {NSMinX(frame), flipped ? NSMaxY(frame) + 3 : NSMinY(frame) - 3}, view);
    } else {
        // The chosen item comes to lie over the button.
        const CGFloat middle = NSMidY(frame) + (flipped ? -1 : 1) * theme::kMenuItemHeight / 2;
        items_->popUpMenuPositioningItem_atLocation_inView(selected_ ? selected_.get() : nullptr,
                                                           {NSMinX(frame) - 13, middle}, view);
    }
}

void NSPopUpButtonCell::performClick(NSObject*) {
    if (const Ref<NSView> v = Ref<NSView>(controlView())) performClickWithFrame_inView(v->bounds(), v);
}

BOOL NSPopUpButtonCell::trackMouse_inRect_ofView_untilMouseUp(NSEvent*, const NSRect& frame, NSView* view, BOOL) {
    performClickWithFrame_inView(frame, view);
    return YES;
}

// Looks.

NSImage* NSPopUpButtonCell::imageBeside(const NSMenuItem* item) const {
    if (item && item->image()) return item->image();
    return imagePosition() != NSNoImage ? image() : nullptr;
}

NSSize NSPopUpButtonCell::cellSizeForBounds(const NSRect&) const {
    CGFloat width = 0;
    const auto look = textAttributes();
    const auto widthOf = [](const NSImage* picture) { return picture ? picture->size().width + kImageGap : 0; };
    const NSInteger shown = pullsDown_ ? std::min<NSInteger>(1, numberOfItems()) : numberOfItems();
    for (NSInteger i = 0; i < shown; ++i) {
        const NSMenuItem& item = *items_->itemAtIndex(i);
        width = std::max(width, sizeWithAttributes(item.title(), look).width + widthOf(imageBeside(&item)));
    }
    return {std::ceil(width) + 2 * kPadding + (arrow_ == NSPopUpNoArrow ? 0 : kArrowRoom),
            theme::controlHeight(controlSize())};
}

void NSPopUpButtonCell::drawInteriorWithFrame_inView(const NSRect& frame, NSView*) {
    NSRect room = isBordered() ? NSInsetRect(frame, kPadding, 1) : frame;
    if (arrow_ != NSPopUpNoArrow) {
        room.size.width = std::max(0.0, room.size.width - kArrowRoom + 4);
        NSColor* ink = isEnabled() ? NSColor::secondaryLabelColor() : NSColor::disabledControlTextColor();
        drawChevron({{NSMaxX(frame) - kArrowRoom, frame.origin.y}, {kArrowRoom - 2, frame.size.height - 1}},
                    pullsDown_ ? Chevron::down : Chevron::upDown, ink);
    }
    if (NSImage* picture = imageBeside(shownItem())) {
        const NSSize s = picture->size();
        drawImage_withFrame_inView(picture, {{room.origin.x, std::floor(NSMidY(room) - s.height / 2)}, s},
                                   controlView());
        room.origin.x += s.width + kImageGap;
        room.size.width = std::max(0.0, room.size.width - s.width - kImageGap);
        if (imagePosition() == NSImageOnly) return;
    }
    const auto text = NSAttributedString::initWithString_attributes(title(), textAttributes());
    const NSSize s = size(text);
    drawTitle_withFrame_inView(
        text, {{room.origin.x, std::floor(NSMidY(room) - s.height / 2 + 0.5)}, {room.size.width, std::ceil(s.height)}},
        controlView());
}

} // namespace libvue

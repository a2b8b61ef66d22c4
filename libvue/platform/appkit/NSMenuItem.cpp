#include <libvue/platform/appkit/NSMenuItem.h>

#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

void NSMenuItem::describe(ClassDescription<NSMenuItem>& c) {
    c.key<&NSMenuItem::title, &NSMenuItem::setTitle>("title");
    c.key<&NSMenuItem::isEnabled, &NSMenuItem::setEnabled>("enabled");
    c.key<&NSMenuItem::representedObject, &NSMenuItem::setRepresentedObject>("representedObject");
}

NSMenuItem::NSMenuItem() : NSMenuItem(nullptr, nullptr, nullptr) {}
NSMenuItem::NSMenuItem(NSString* title, SEL action, NSString* keyEquivalent)
    : title_(title ? NSString::stringWithString(title) : NSString::string()),
      key_(keyEquivalent ? NSString::stringWithString(keyEquivalent) : NSString::string()),
      action_(action) {}
NSMenuItem::~NSMenuItem() = default;

Ref<NSMenuItem> NSMenuItem::separatorItem() {
    auto item = make<NSMenuItem>();
    item->separator_ = true;
    item->enabled_ = false;
    return item;
}

Ref<NSObject> NSMenuItem::copyWithZone() const {
    auto c = make<NSMenuItem>(title_, action_, key_);
    c->toolTip_ = toolTip_;
    c->attributed_ = attributed_;
    c->image_ = image_;
    if (submenu_) c->setSubmenu(as<NSMenu>(submenu_->copyWithZone()));
    c->target_ = target_;
    c->represented_ = represented_;
    c->keyMask_ = keyMask_;
    c->state_ = state_;
    c->tag_ = tag_;
    c->indentation_ = indentation_;
    c->separator_ = separator_;
    c->enabled_ = enabled_;
    c->hidden_ = hidden_;
    return c;
}

void NSMenuItem::changed() {
    if (NSMenu* m = menu_) m->itemChanged_(this);
}

void NSMenuItem::setTitle(NSString* s) {
    title_ = s ? NSString::stringWithString(s) : NSString::string();
    attributed_ = nullptr;
    changed();
}
NSAttributedString* NSMenuItem::attributedTitle() const noexcept { return attributed_; }
void NSMenuItem::setAttributedTitle(NSAttributedString* s) {
    attributed_ = s;
    if (s) title_ = s->string();
    changed();
}
void NSMenuItem::setKeyEquivalent(NSString* s) {
    key_ = s ? NSString::stringWithString(s) : NSString::string();
    changed();
}
void NSMenuItem::setKeyEquivalentModifierMask(NSUInteger m) {
    keyMask_ = m;
    changed();
}
NSImage* NSMenuItem::image() const noexcept { return image_; }
void NSMenuItem::setImage(NSImage* i) {
    image_ = i;
    changed();
}
void NSMenuItem::setState(NSInteger s) {
    state_ = s;
    changed();
}
void NSMenuItem::setEnabled(BOOL f) {
    enabled_ = f;
    changed();
}
void NSMenuItem::setHidden(BOOL f) {
    hidden_ = f;
    changed();
}
NSMenu* NSMenuItem::submenu() const noexcept { return submenu_; }
void NSMenuItem::setSubmenu(NSMenu* m) {
    const Ref<NSMenu> kept(m);
    if (submenu_) submenu_->setSupermenu_(nullptr);
    submenu_ = m;
    if (m) m->setSupermenu_(menu_);
    changed();
}
void NSMenuItem::setToolTip(NSString* s) { toolTip_ = s; }

} // namespace libvue

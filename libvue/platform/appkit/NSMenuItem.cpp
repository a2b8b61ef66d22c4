#include <libvue/platform/appkit/NSMenuItem.h>

#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/graphics/HeldEnum.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

static const ClassRegistration<NSMenuItem> registration;

namespace {
constexpr ConstantString kTitle{u"NSTitle"}, kAttributed{u"NSAttributedTitle"}, kKey{u"NSKeyEquiv"},
    kKeyMask{u"NSKeyEquivModMask"}, kImage{u"NSImage"}, kSubmenu{u"NSSubmenu"}, kTarget{u"NSTarget"},
    kAction{u"NSAction"}, kRepresented{u"NSRepObject"}, kState{u"NSState"}, kTag{u"NSTag"}, kIndent{u"NSIndent"},
    kSeparator{u"NSIsSeparator"}, kDisabled{u"NSIsDisabled"}, kHidden{u"NSIsHidden"}, kToolTip{u"NSToolTip"};
}

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

NSMenuItem::NSMenuItem(NSCoder& coder)
    : title_((coder.beginDecoding(this), coder.decodeObjectOf_forKey<NSString>(kTitle))),
      key_(coder.decodeObjectOf_forKey<NSString>(kKey)),
      toolTip_(coder.decodeObjectOf_forKey<NSString>(kToolTip)),
      attributed_(coder.decodeObjectOf_forKey<NSAttributedString>(kAttributed)),
      image_(coder.decodeObjectOf_forKey<NSImage>(kImage)),
      target_(coder.decodeObjectForKey(kTarget)),
      represented_(coder.decodeObjectForKey(kRepresented)),
      action_(findSelector(coder.decodeObjectOf_forKey<NSString>(kAction))),
      keyMask_(static_cast<NSUInteger>(coder.decodeIntegerForKey(kKeyMask))),
      state_(heldEnum(coder.decodeIntegerForKey(kState), NSMixedState, NSOnState, NSOffState)),
      tag_(coder.decodeIntegerForKey(kTag)),
      indentation_(coder.decodeIntegerForKey(kIndent)),
      separator_(coder.decodeBoolForKey(kSeparator)),
      enabled_(!coder.decodeBoolForKey(kDisabled)),
      hidden_(coder.decodeBoolForKey(kHidden)) {
    if (!title_) title_ = NSString::string();
    if (!key_) key_ = NSString::string();
    setIndentationLevel(indentation_);
    setSubmenu(coder.decodeObjectOf_forKey<NSMenu>(kSubmenu));
}

void NSMenuItem::encodeWithCoder(NSCoder& coder) const {
    coder.encodeObject_forKey(title_, kTitle);
    coder.encodeObject_forKey(key_, kKey);
    coder.encodeObject_forKey(toolTip_, kToolTip);
    coder.encodeObject_forKey(attributed_, kAttributed);
    coder.encodeObject_forKey(image_, kImage);
    coder.encodeConditionalObject_forKey(target_.get(), kTarget);
    coder.encodeObject_forKey(represented_, kRepresented);
    coder.encodeObject_forKey(NSStringFromSelector(action_), kAction);
    coder.encodeInteger_forKey(static_cast<NSInteger>(keyMask_), kKeyMask);
    coder.encodeInteger_forKey(state_, kState);
    coder.encodeInteger_forKey(tag_, kTag);
    coder.encodeInteger_forKey(indentation_, kIndent);
    if (separator_) coder.encodeBool_forKey(YES, kSeparator);
    if (!enabled_) coder.encodeBool_forKey(YES, kDisabled);
    if (hidden_) coder.encodeBool_forKey(YES, kHidden);
    coder.encodeObject_forKey(submenu_, kSubmenu);
}

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
    if (enabled_ == f) return;
    enabled_ = f;
    changed();
}
void NSMenuItem::setHidden(BOOL f) {
    hidden_ = f;
    changed();
}
NSMenu* NSMenuItem::submenu() const noexcept { return submenu_; }
void NSMenuItem::setSubmenu(NSMenu* m) {
    if (m && menu_ && menu_->isInside_(m))
        raiseNamed("NSInvalidArgumentException", "a menu that holds the item cannot open from it");
    const Ref<NSMenu> kept(m);
    if (submenu_) submenu_->setSupermenu_(nullptr);
    submenu_ = m;
    if (m) m->setSupermenu_(menu_);
    changed();
}
void NSMenuItem::setToolTip(NSString* s) { toolTip_ = s ? NSString::stringWithString(s) : nullptr; }

} // namespace libvue

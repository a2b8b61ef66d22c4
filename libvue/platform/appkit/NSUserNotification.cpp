#include <libvue/platform/appkit/NSUserNotification.h>

#include <libvue/platform/foundation/NSString.h>

namespace libvue {

static const ClassRegistration<NSUserNotification> registration;

void NSUserNotification::describe(ClassDescription<NSUserNotification>& c) {
    c.key<&NSUserNotification::title, &NSUserNotification::setTitle>("title");
    c.key<&NSUserNotification::subtitle, &NSUserNotification::setSubtitle>("subtitle");
    c.key<&NSUserNotification::informativeText, &NSUserNotification::setInformativeText>("informativeText");
    c.key<&NSUserNotification::soundName, &NSUserNotification::setSoundName>("soundName");
}

NSUserNotification::NSUserNotification() = default;
NSUserNotification::~NSUserNotification() = default;

namespace {
Ref<NSString> copied(const NSString* s) { return s ? NSString::stringWithString(s) : nullptr; }
} // namespace

NSString* NSUserNotification::title() const noexcept { return title_; }
void NSUserNotification::setTitle(NSString* title) { title_ = copied(title); }
NSString* NSUserNotification::subtitle() const noexcept { return subtitle_; }
void NSUserNotification::setSubtitle(NSString* subtitle) { subtitle_ = copied(subtitle); }
NSString* NSUserNotification::informativeText() const noexcept { return text_; }
void NSUserNotification::setInformativeText(NSString* text) { text_ = copied(text); }
NSString* NSUserNotification::soundName() const noexcept { return sound_; }
void NSUserNotification::setSoundName(NSString* name) { sound_ = copied(name); }

} // namespace libvue

#include <libvue/platform/appkit/NSWorkspace.h>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSFileManager.h>
#include <libvue/platform/foundation/NSURL.h>

namespace libvue {

static const ClassRegistration<NSWorkspace> registration;

void NSWorkspace::describe(ClassDescription<NSWorkspace>& c) { c.answers<&NSWorkspace::openURL>("openURL:"); }

NSWorkspace* NSWorkspace::sharedWorkspace() {
    static NSWorkspace* const shared = keptForever(make<NSWorkspace>());
    return shared;
}

BOOL NSWorkspace::openURL(const NSURL* url) {
    if (!url || !url->absoluteString()) return NO;
    return backend::Backend::current().windows->openURL(url->absoluteString()->utf8());
}

BOOL NSWorkspace::openFile(const NSString* path) {
    if (!NSFileManager::defaultManager()->fileExistsAtPath(path)) return NO;
    return openURL(NSURL::fileURLWithPath(path));
}

BOOL NSWorkspace::accessibilityDisplayShouldReduceMotion() const {
    return backend::Backend::current().windows->prefersReducedMotion();
}

} // namespace libvue

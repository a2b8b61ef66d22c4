#include <libvue/platform/appkit/NSScreen.h>

#include <algorithm>
#include <vector>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

struct Known {
    std::vector<Ref<NSScreen>> screens;
    bool valid = false;
};

Known& lastKnown() {
    static Known& k = *new Known;
    return k;
}

const std::vector<Ref<NSScreen>>& known() {
    Known& k = lastKnown();
    if (k.valid) return k.screens;
    std::vector<Ref<NSScreen>> now;
    for (const backend::Screen& s : backend::Backend::current().windows->screens()) {
        const auto same = std::find_if(k.screens.begin(), k.screens.end(), [&](const Ref<NSScreen>& o) {
            return o->frame() == s.frame && o->visibleFrame() == s.visibleFrame && o->backingScaleFactor() == s.scale &&
                   o->localizedName()->utf8() == s.name;
        });
        now.push_back(same != k.screens.end()
                          ? *same
                          : make<NSScreen>(s.frame, s.visibleFrame, s.scale, NSString::fromUTF8(s.name).get()));
    }
    k.screens = std::move(now);
    k.valid = true;
    return k.screens;
}

} // namespace

void NSScreen::describe(ClassDescription<NSScreen>& c) {
    c.key<&NSScreen::frame>("frame");
    c.key<&NSScreen::visibleFrame>("visibleFrame");
}

NSScreen::NSScreen(const NSRect& frame, const NSRect& visibleFrame, CGFloat scale, NSString* name)
    : frame_(frame), visibleFrame_(visibleFrame), scale_(scale), name_(name) {}

NSScreen::~NSScreen() = default;

NSString* NSScreen::localizedName() const noexcept { return name_; }

Ref<NSArray> NSScreen::screens() { return NSArray::arrayWithRefs(known()); }

NSScreen* NSScreen::mainScreen() {
    const NSApplication* app = NSApplication::sharedIfAny_();
    if (const NSWindow* key = app ? app->keyWindow() : nullptr)
        if (NSScreen* s = key->screen()) return s;
    const auto& all = known();
    return all.empty() ? nullptr : all.front().get();
}

NSScreen* NSScreen::screenForRect_(const NSRect& rect) {
    NSScreen* best = nullptr;
    CGFloat most = 0;
    for (const auto& s : known()) {
        const NSRect part = NSIntersectionRect(s->frame(), rect);
        const CGFloat area = part.size.width * part.size.height;
        if (area > most) {
            most = area;
            best = s;
        }
    }
    if (best) return best;
    // A window of no size is where its corner is.
    for (const auto& s : known())
        if (NSPointInRect(rect.origin, s->frame())) return s;
    return nullptr;
}

void NSScreen::invalidate_() {
    Known& k = lastKnown();
    k.valid = false;
    if (!NSApplication::sharedIfAny_()) k.screens.clear();
}

} // namespace libvue

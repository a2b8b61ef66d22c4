#include <libvue/platform/appkit/NSTrackingArea.h>

#include <libvue/platform/foundation/NSDictionary.h>

namespace libvue {

void NSTrackingArea::describe(ClassDescription<NSTrackingArea>&) {}

NSTrackingArea::NSTrackingArea(const NSRect& rect, NSUInteger options, NSObject* owner, NSDictionary* userInfo)
    : rect_(rect), options_(options), owner_(owner), userInfo_(userInfo) {}

NSTrackingArea::~NSTrackingArea() = default;

NSDictionary* NSTrackingArea::userInfo() const noexcept { return userInfo_; }

} // namespace libvue

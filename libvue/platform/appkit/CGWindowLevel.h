#pragma once

#include <libvue/platform/appkit/NSWindow.h>

namespace libvue {

/// The kinds of windows that lie above each other.
enum CGWindowLevelKey : int {
    kCGNormalWindowLevelKey = 4,
    kCGFloatingWindowLevelKey = 5,
    kCGStatusWindowLevelKey = 9,
    kCGModalPanelWindowLevelKey = 10,
    kCGPopUpMenuWindowLevelKey = 11,
    kCGScreenSaverWindowLevelKey = 13
};

inline constexpr NSInteger NSStatusWindowLevel = 25;

/// The level that setLevel: takes for that kind; the normal one for a kind that is not known.
[[nodiscard]] constexpr NSInteger CGWindowLevelForKey(int key) noexcept {
    switch (key) {
    case kCGFloatingWindowLevelKey:
        return NSFloatingWindowLevel;
    case kCGStatusWindowLevelKey:
        return NSStatusWindowLevel;
    case kCGModalPanelWindowLevelKey:
        return NSModalPanelWindowLevel;
    case kCGPopUpMenuWindowLevelKey:
        return NSPopUpMenuWindowLevel;
    case kCGScreenSaverWindowLevelKey:
        return NSScreenSaverWindowLevel;
    default:
        return NSNormalWindowLevel;
    }
}

} // namespace libvue

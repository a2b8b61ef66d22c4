#pragma once

#include <libvue/platform/appkit/Forward.h>

namespace libvue::KeyBindings {

/// The operation that a key stands for in a text or a list (moveLeft:, insertTab:…); null where it is typed as a
/// character or means nothing.
[[nodiscard]] LIBVUE_API SEL commandForKey(unichar key, NSUInteger modifierFlags);
[[nodiscard]] LIBVUE_API SEL commandForEvent(const NSEvent& e);
/// What the event types: its characters where they are visible ones and no modifier makes it a shortcut, else null.
[[nodiscard]] LIBVUE_API NSString* textForEvent(const NSEvent& e);

} // namespace libvue::KeyBindings

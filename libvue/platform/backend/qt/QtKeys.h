#pragma once

#include <cstdint>

#include <QtCore/qnamespace.h>

#include <libvue/platform/backend/WindowServer.h>

class QKeyEvent;

namespace libvue::backend {

/// Control on the keyboard is the command modifier, Super is control, Alt is option.
[[nodiscard]] std::uint32_t modifiersOf(Qt::KeyboardModifiers modifiers);
/// The modifier that a key stands for; 0 for the others.
[[nodiscard]] std::uint32_t modifierOfKey(int key);
/// Fills in key code, characters, modifiers and repetition.
void describeKey(const QKeyEvent& key, Event& event);
/// 0 left, 1 right, 2 middle, 3 back, 4 forward…
[[nodiscard]] int buttonNumber(Qt::MouseButton button);
[[nodiscard]] std::uint32_t buttonBits(Qt::MouseButtons buttons);
[[nodiscard]] Qt::CursorShape cursorShape(Cursor cursor);

} // namespace libvue::backend

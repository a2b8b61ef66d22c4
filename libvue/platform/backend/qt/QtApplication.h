#pragma once

#include <cstdint>

namespace libvue::backend {

/// Whether the process asks for the display that it finds, or for none.
enum class QtDisplay : std::uint8_t { whatThereIs, none };

/// Makes Qt's application object, once a process; whoever asks first decides on the display. X11 where DISPLAY names a
/// server that answers, then Wayland, else Qt's offscreen platform. A QT_QPA_PLATFORM in the environment is tried
/// first. Main thread.
void ensureQtApplication(QtDisplay display = QtDisplay::whatThereIs);

/// Whether windows are X11 windows. False before ensureQtApplication.
[[nodiscard]] bool runsOnX11();
/// Whether a person can see windows.
[[nodiscard]] bool hasQtDisplay();

} // namespace libvue::backend

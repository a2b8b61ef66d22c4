#pragma once

#include <functional>
#include <memory>
#include <optional>

namespace libvue::backend {

/// Whether the desktop asks for dark windows. LIBVUE_APPEARANCE (dark, light) decides where it is set; then the
/// desktop's settings portal once it has answered; until then, or without one, the lightness of the theme's windows.
class QtWindowServerAppearance {
public:
    explicit QtWindowServerAppearance(std::function<void()> changed);
    ~QtWindowServerAppearance();

    [[nodiscard]] bool prefersDark() const;
    /// Whether animations are off: LIBVUE_REDUCED_MOTION (1, 0) decides where it is set; then the desktop's settings
    /// portal once it has answered; until then, or without one, the settings file of the desktop's toolkit.
    [[nodiscard]] bool prefersReducedMotion() const;
    /// Whether scrollers lie over what they scroll: LIBVUE_SCROLLERS (overlay, fixed) decides where it is set; then the
    /// desktop's settings portal; without one they do.
    [[nodiscard]] bool prefersOverlayScrollers() const;
    /// Begins to ask the portal, once. Costs a connection to the session bus, so it waits until a window has been
    /// shown.
    void askDesktop();
    /// The theme may have changed.
    void update();

private:
    struct Portal;
    std::function<void()> changed_;
    std::unique_ptr<Portal> portal_;
    mutable std::optional<bool> fileAnimates_; ///< read once
    bool dark_ = false, overlay_ = true, asked_ = false;
};

} // namespace libvue::backend

#pragma once

#include <functional>

#include <QAbstractNativeEventFilter>
#include <QtGui/qwindowdefs.h>

#include <libvue/platform/backend/WindowServer.h>

namespace libvue::backend {

/// Tells real losses of focus from passing ones. While the window manager moves a window or shows its switcher it holds
/// the keyboard, and X11 tells the window that its focus is gone although it stays the active one.
class QtFocus final : public QAbstractNativeEventFilter {
public:
    using Loss = std::function<void(WindowId)>;
    /// `loss` is told each window that is the active one no longer.
    explicit QtFocus(Loss loss);
    ~QtFocus() override;

    /// Qt says that the focus left the window, or came to it.
    void left(WindowId w, WId native);
    /// False when the window never ceased to be the active one.
    [[nodiscard]] bool came(WindowId w);
    /// The window goes off the screen: what was held back about it is real.
    void concealed(WindowId w);
    void forget(WindowId w);

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

private:
    void settle();

    Loss loss_;
    WindowId held_ = 0; ///< has left by Qt's account alone
    WId native_ = 0;
};

} // namespace libvue::backend

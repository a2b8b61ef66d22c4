#include <libvue/platform/backend/qt/QtFocus.h>

#include <utility>

#include <QCoreApplication>

#include <libvue/platform/backend/qt/QtWindowHints.h>

namespace libvue::backend {

QtFocus::QtFocus(Loss loss) : loss_(std::move(loss)) { qApp->installNativeEventFilter(this); }

QtFocus::~QtFocus() {
    if (qApp) qApp->removeNativeEventFilter(this);
}

void QtFocus::left(WindowId w, WId native) {
    settle();
    if (x11::isActive(native)) {
        held_ = w;
        native_ = native;
    } else {
        loss_(w);
    }
}

bool QtFocus::came(WindowId w) {
    if (held_ == w) {
        held_ = 0;
        return false;
    }
    settle();
    return true;
}

void QtFocus::concealed(WindowId w) {
    if (held_ == w) settle();
}

void QtFocus::forget(WindowId w) {
    if (held_ == w) held_ = 0;
}

bool QtFocus::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
    if (held_ && x11::tellsActiveWindow(message) && !x11::isActive(native_)) settle();
    return false;
}

void QtFocus::settle() {
    if (const WindowId w = std::exchange(held_, 0)) loss_(w);
}

} // namespace libvue::backend

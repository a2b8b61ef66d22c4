#pragma once

#include <functional>

#include <QObject>

class QDBusMessage;

namespace libvue::backend {

/// Hears signals of the message bus with their arguments. Qt hands those only to slots that it finds by name: this
/// object describes its only one at run time, instead of having it compiled in.
class DBusSignals final : public QObject {
public:
    using Heard = std::function<void(const QDBusMessage&)>;
    explicit DBusSignals(Heard heard);
    ~DBusSignals() override;

    /// Hears that signal from now on, on the session bus. Main thread; heard there as well.
    void listen(const char* service, const char* path, const char* interface, const char* signal);

    [[nodiscard]] const QMetaObject* metaObject() const override;
    int qt_metacall(QMetaObject::Call call, int method, void** arguments) override;

private:
    Heard heard_;
    QMetaObject* description_;
};

} // namespace libvue::backend

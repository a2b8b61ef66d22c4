#include <libvue/platform/backend/qt/DBusSignals.h>

#if LIBVUE_HAVE_DBUS

#include <cstdlib>
#include <utility>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <private/qmetaobjectbuilder_p.h>

namespace libvue::backend {

namespace {

QMetaObject* describe() {
    QMetaObjectBuilder builder;
    builder.setClassName("DBusSignals");
    builder.setSuperClass(&QObject::staticMetaObject);
    builder.addSlot("hear(QDBusMessage)");
    return builder.toMetaObject();
}

} // namespace

DBusSignals::DBusSignals(Heard heard) : heard_(std::move(heard)), description_(describe()) {}

// What the builder made is one block of the C library's.
DBusSignals::~DBusSignals() { std::free(description_); }

void DBusSignals::listen(const char* service, const char* path, const char* interface, const char* signal) {
    QDBusConnection::sessionBus().connect(QString::fromLatin1(service), QString::fromLatin1(path),
                                          QString::fromLatin1(interface), QString::fromLatin1(signal), this,
                                          SLOT(hear(QDBusMessage)));
}

const QMetaObject* DBusSignals::metaObject() const { return description_; }

int DBusSignals::qt_metacall(QMetaObject::Call call, int method, void** arguments) {
    const int own = QObject::qt_metacall(call, method, arguments);
    if (own != 0 || call != QMetaObject::InvokeMetaMethod) return own;
    heard_(*static_cast<const QDBusMessage*>(arguments[1]));
    return -1;
}

} // namespace libvue::backend

#endif

#include <libvue/platform/backend/qt/QtWindowServerAppearance.h>

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <utility>

#include <QColor>
#include <QGuiApplication>
#include <QPalette>

#if LIBVUE_HAVE_DBUS
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QTimer>
#include <QVariant>
#endif

namespace libvue::backend {

namespace {

/// What the environment says, which no desktop overrides.
std::optional<bool> fromEnvironment() {
    const char* value = std::getenv("LIBVUE_APPEARANCE");
    if (!value) return std::nullopt;
    if (std::string_view(value) == "dark") return true;
    if (std::string_view(value) == "light") return false;
    return std::nullopt;
}

bool fromTheme() { return QGuiApplication::palette().color(QPalette::Window).lightness() < 128; }

} // namespace

#if LIBVUE_HAVE_DBUS

/// The preference that the portal told: 1 dark, 2 light, 0 none.
struct QtWindowServerAppearance::Portal {
    explicit Portal(std::function<void()> told) : told_(std::move(told)) {
        refresh.setSingleShot(true);
        QObject::connect(&refresh, &QTimer::timeout, [this] { read(); });
    }

    void connect() {
        QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected()) return;
        // A signal's arguments need a receiver that was compiled for them; a timer that is started does without.
        bus.connect(service, path, interface, QStringLiteral("SettingChanged"), &refresh, SLOT(start()));
        read();
    }

    void read() {
        QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
        call << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme");
        call.setAutoStartService(true);
        const QDBusPendingCall pending = QDBusConnection::sessionBus().asyncCall(call);
        watcher = std::make_unique<QDBusPendingCallWatcher>(pending);
        QObject::connect(watcher.get(), &QDBusPendingCallWatcher::finished, [this] {
            const QDBusMessage reply = watcher->reply();
            if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return;
            // The answer is a variant in a variant.
            QVariant value = reply.arguments().constFirst();
            while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
                value = value.value<QDBusVariant>().variant();
            }
            scheme = value.toUInt();
            told_();
        });
    }

    const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
    const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
    const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
    std::function<void()> told_;
    QTimer refresh;
    std::unique_ptr<QDBusPendingCallWatcher> watcher;
    std::uint32_t scheme = 0;
};

#else

struct QtWindowServerAppearance::Portal {
    explicit Portal(std::function<void()>) {}
    void connect() {}
    std::uint32_t scheme = 0;
};

#endif

QtWindowServerAppearance::QtWindowServerAppearance(std::function<void()> changed) : changed_(std::move(changed)) {
    dark_ = prefersDark();
}

QtWindowServerAppearance::~QtWindowServerAppearance() = default;

bool QtWindowServerAppearance::prefersDark() const {
    if (const auto set = fromEnvironment()) return *set;
    if (portal_ && portal_->scheme != 0) return portal_->scheme == 1;
    return fromTheme();
}

void QtWindowServerAppearance::askDesktop() {
    if (std::exchange(asked_, true) || fromEnvironment()) return;
    // Without a session bus the library would try to start one.
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (!std::getenv("DBUS_SESSION_BUS_ADDRESS") && !(runtime && *runtime)) return;
    portal_ = std::make_unique<Portal>([this] { update(); });
    portal_->connect();
}

void QtWindowServerAppearance::update() {
    const bool dark = prefersDark();
    if (std::exchange(dark_, dark) != dark) changed_();
}

} // namespace libvue::backend

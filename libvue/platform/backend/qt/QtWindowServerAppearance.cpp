#include <libvue/platform/backend/qt/QtWindowServerAppearance.h>

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <utility>

#include <QColor>
#include <QGuiApplication>
#include <QPalette>
#include <QSettings>
#include <QStandardPaths>
#include <QString>
#include <QVariant>

#if LIBVUE_HAVE_DBUS
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QTimer>
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

std::optional<bool> reducedFromEnvironment() {
    const char* value = std::getenv("LIBVUE_REDUCED_MOTION");
    if (!value) return std::nullopt;
    if (std::string_view(value) == "1") return true;
    if (std::string_view(value) == "0") return false;
    return std::nullopt;
}

std::optional<bool> overlayFromEnvironment() {
    const char* value = std::getenv("LIBVUE_SCROLLERS");
    if (!value) return std::nullopt;
    if (std::string_view(value) == "overlay") return true;
    if (std::string_view(value) == "fixed") return false;
    return std::nullopt;
}

/// What the settings file says that desktops without a portal write.
bool animatesByFile() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    for (const char* version : {"gtk-4.0", "gtk-3.0"}) {
        const QSettings file(folder + QLatin1Char('/') + QLatin1String(version) + QLatin1String("/settings.ini"),
                             QSettings::IniFormat);
        const QVariant set = file.value(QStringLiteral("Settings/gtk-enable-animations"));
        // Written as true, 1, or their opposites.
        if (set.isValid()) return set.toBool();
    }
    return true;
}

bool fromTheme() { return QGuiApplication::palette().color(QPalette::Window).lightness() < 128; }

} // namespace

#if LIBVUE_HAVE_DBUS

/// The preferences that the portal told: 1 dark, 2 light, 0 none; whether things move, and whether
/// scrollers lie over.
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
        ask(scheme_, QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"),
            [this](const QVariant& value) { scheme = value.toUInt(); });
        ask(animates_, QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("enable-animations"),
            [this](const QVariant& value) { animates = value.toBool(); });
        ask(overlays_, QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("overlay-scrolling"),
            [this](const QVariant& value) { overlays = value.toBool(); });
    }

    template <class Take>
    void ask(std::unique_ptr<QDBusPendingCallWatcher>& watcher, const QString& group, const QString& key, Take take) {
        QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
        call << group << key;
        call.setAutoStartService(true);
        const QDBusPendingCall pending = QDBusConnection::sessionBus().asyncCall(call);
        watcher = std::make_unique<QDBusPendingCallWatcher>(pending);
        QObject::connect(watcher.get(), &QDBusPendingCallWatcher::finished, [this, &watcher, take] {
            const QDBusMessage reply = watcher->reply();
            if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return;
            // The answer is a variant in a variant.
            QVariant value = reply.arguments().constFirst();
            while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
                value = value.value<QDBusVariant>().variant();
            }
            take(value);
            told_();
        });
    }

    const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
    const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
    const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
    std::function<void()> told_;
    QTimer refresh;
    std::unique_ptr<QDBusPendingCallWatcher> scheme_, animates_, overlays_;
    std::uint32_t scheme = 0;
    std::optional<bool> animates, overlays;
};

#else

struct QtWindowServerAppearance::Portal {
    explicit Portal(std::function<void()>) {}
    void connect() {}
    std::uint32_t scheme = 0;
    std::optional<bool> animates, overlays;
};

#endif

QtWindowServerAppearance::QtWindowServerAppearance(std::function<void()> changed) : changed_(std::move(changed)) {
    dark_ = prefersDark();
    overlay_ = prefersOverlayScrollers();
}

QtWindowServerAppearance::~QtWindowServerAppearance() = default;

bool QtWindowServerAppearance::prefersDark() const {
    if (const auto set = fromEnvironment()) return *set;
    if (portal_ && portal_->scheme != 0) return portal_->scheme == 1;
    return fromTheme();
}

bool QtWindowServerAppearance::prefersReducedMotion() const {
    if (const auto set = reducedFromEnvironment()) return *set;
    if (portal_ && portal_->animates) return !*portal_->animates;
    if (!fileAnimates_) fileAnimates_ = animatesByFile();
    return !*fileAnimates_;
}

bool QtWindowServerAppearance::prefersOverlayScrollers() const {
    if (const auto set = overlayFromEnvironment()) return *set;
    return portal_ && portal_->overlays ? *portal_->overlays : true;
}

void QtWindowServerAppearance::askDesktop() {
    if (std::exchange(asked_, true) || (fromEnvironment() && reducedFromEnvironment() && overlayFromEnvironment()))
        return;
    // Without a session bus the library would try to start one.
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (!std::getenv("DBUS_SESSION_BUS_ADDRESS") && !(runtime && *runtime)) return;
    portal_ = std::make_unique<Portal>([this] { update(); });
    portal_->connect();
}

void QtWindowServerAppearance::update() {
    const bool dark = prefersDark(), overlay = prefersOverlayScrollers();
    const bool otherDark = std::exchange(dark_, dark) != dark;
    const bool otherOverlay = std::exchange(overlay_, overlay) != overlay;
    if (otherDark || otherOverlay) changed_();
}

} // namespace libvue::backend

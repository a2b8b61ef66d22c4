#include <libvue/platform/backend/qt/QtNotificationService.h>

#if LIBVUE_HAVE_DBUS
#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include <errno.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <libvue/platform/backend/qt/DBusSignals.h>
#endif

namespace libvue::backend {

#if LIBVUE_HAVE_DBUS

namespace {

/// A service that does not answer within that many milliseconds shows nothing either.
constexpr int kPatience = 5000;

constexpr const char* kService = "org.freedesktop.Notifications";
constexpr const char* kPath = "/org/freedesktop/Notifications";
/// What is done by a click on the notice itself.
constexpr const char* kDefaultAction = "default";

[[nodiscard]] QString serviceName() { return QString::fromLatin1(kService); }
[[nodiscard]] QString busName() { return QStringLiteral("org.freedesktop.DBus"); }

class QtNotificationService final : public NotificationService {
public:
    [[nodiscard]] bool isAvailable() override {
        start();
        return connected() && presence_ != Presence::absent;
    }

    void deliver(const Notice& notice) override {
        start();
        if (!connected()) {
            tell(notice.id, Outcome::failed);
            return;
        }
        sent_.push_back({notice, 0, false});
        if (capabilities_)
            notify(notice.id);
        else
            askCapabilities();
    }

    void withdraw(std::uint64_t id) override {
        const auto at = find(id);
        if (at == sent_.end()) return;
        if (at->number == 0) {
            // On its way: it is closed as soon as it has a number.
            at->withdrawn = true;
            return;
        }
        close(at->number);
        sent_.erase(at);
    }

private:
    enum class Presence : std::uint8_t { unknown, present, absent };
    /// What the service that runs can do.
    struct Capabilities {
        bool markup; ///< bodies are read as markup
        bool actions;
    };
    struct Sent {
        Notice notice;
        unsigned number; ///< the service's; 0 before it has answered
        bool withdrawn;
    };

    [[nodiscard]] std::vector<Sent>::iterator find(std::uint64_t id) {
        return std::ranges::find(sent_, id, [](const Sent& s) { return s.notice.id; });
    }

    [[nodiscard]] bool connected() const { return asked_ && QDBusConnection::sessionBus().isConnected(); }

    void start() {
        if (asked_ || refused_) return;
        // Without a session bus the library would try to start one.
        const char* runtime = std::getenv("XDG_RUNTIME_DIR");
        if (!std::getenv("DBUS_SESSION_BUS_ADDRESS") && !(runtime && *runtime)) {
            refused_ = true;
            return;
        }
        asked_ = true;
        if (!connected()) return;
        auto* watcher = new QDBusServiceWatcher(serviceName(), QDBusConnection::sessionBus(),
                                                QDBusServiceWatcher::WatchForOwnerChange, &root_);
        QObject::connect(watcher, &QDBusServiceWatcher::serviceRegistered, &root_, [this] {
            presence_ = Presence::present;
            capabilities_.reset();
        });
        QObject::connect(watcher, &QDBusServiceWatcher::serviceUnregistered, &root_, [this] {
            // What it showed went with it; the next one counts anew.
            std::erase_if(sent_, [](const Sent& s) { return s.number != 0; });
            lookForService();
        });
        for (const char* signal : {"ActionInvoked", "NotificationClosed"})
            signals_.listen(kService, kPath, kService, signal);
        lookForService();
    }

    /// Calls without waiting; `answered` gets the reply or the error.
    template <class Answered> void call(const QDBusMessage& message, const Answered& answered) {
        auto* watcher =
            new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message, kPatience), &root_);
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &root_, [watcher, answered] {
            watcher->deleteLater();
            answered(watcher->reply());
        });
    }

    [[nodiscard]] static QDBusMessage method(const char* name) {
        return QDBusMessage::createMethodCall(serviceName(), QString::fromLatin1(kPath), serviceName(),
                                              QString::fromLatin1(name));
    }
    [[nodiscard]] static QDBusMessage busMethod(const char* name) {
        return QDBusMessage::createMethodCall(busName(), QStringLiteral("/org/freedesktop/DBus"), busName(),
                                              QString::fromLatin1(name));
    }

    /// It is there where it runs, or where the bus would start it.
    void lookForService() {
        QDBusMessage owner = busMethod("NameHasOwner");
        owner << serviceName();
        call(owner, [this](const QDBusMessage& reply) {
            if (reply.type() == QDBusMessage::ReplyMessage && reply.arguments().value(0).toBool()) {
                presence_ = Presence::present;
                return;
            }
            call(busMethod("ListActivatableNames"), [this](const QDBusMessage& names) {
                if (names.type() != QDBusMessage::ReplyMessage) return;
                const bool starts = names.arguments().value(0).toStringList().contains(serviceName());
                presence_ = starts ? Presence::present : Presence::absent;
            });
        });
    }

    /// Asked of each service once, before its first notice.
    void askCapabilities() {
        if (asksCapabilities_) return;
        asksCapabilities_ = true;
        call(method("GetCapabilities"), [this](const QDBusMessage& reply) {
            asksCapabilities_ = false;
            if (reply.type() == QDBusMessage::ReplyMessage) {
                const QStringList all = reply.arguments().value(0).toStringList();
                capabilities_ =
                    Capabilities{all.contains(QStringLiteral("body-markup")), all.contains(QStringLiteral("actions"))};
            }
            const std::vector<Sent> waiting = sent_;
            for (const Sent& s : waiting) {
                if (s.number != 0) continue;
                if (capabilities_)
                    notify(s.notice.id);
                else
                    fail(s.notice.id);
            }
        });
    }

    void notify(std::uint64_t id) {
        const auto at = find(id);
        if (at == sent_.end()) return;
        if (at->withdrawn) {
            sent_.erase(at);
            return;
        }
        QString body = QString::fromStdString(at->notice.body);
        if (capabilities_->markup) body = body.toHtmlEscaped();
        QStringList actions;
        if (capabilities_->actions) actions << QString::fromLatin1(kDefaultAction) << QStringLiteral("Ouvrir");
        QVariantMap hints;
        hints.insert(QStringLiteral("urgency"), QVariant::fromValue(static_cast<uchar>(1)));
        if (at->notice.sound) hints.insert(QStringLiteral("sound-name"), QStringLiteral("message-new-instant"));
        QDBusMessage message = method("Notify");
        message << QString::fromLocal8Bit(program_invocation_short_name) << 0U << QString()
                << QString::fromStdString(at->notice.title) << body << actions << hints << -1;
        call(message, [this, id](const QDBusMessage& reply) {
            if (reply.type() != QDBusMessage::ReplyMessage) {
                fail(id);
                return;
            }
            const auto sent = find(id);
            if (sent == sent_.end()) return;
            sent->number = reply.arguments().value(0).toUInt();
            if (sent->withdrawn) {
                close(sent->number);
                sent_.erase(sent);
                return;
            }
            tell(id, Outcome::delivered);
        });
    }

    /// A click on a notice, or its end.
    void heard(const QDBusMessage& signal) {
        const unsigned number = signal.arguments().value(0).toUInt();
        const auto at = std::ranges::find(sent_, number, &Sent::number);
        if (number == 0 || at == sent_.end()) return;
        const std::uint64_t id = at->notice.id;
        if (signal.member() == QStringLiteral("ActionInvoked"))
            tell(id, Outcome::activated);
        else
            sent_.erase(at);
    }

    void fail(std::uint64_t id) {
        const auto at = find(id);
        if (at == sent_.end()) return;
        const bool missed = !at->withdrawn;
        sent_.erase(at);
        lookForService();
        if (missed) tell(id, Outcome::failed);
    }

    void close(unsigned number) {
        QDBusMessage message = method("CloseNotification");
        message << number;
        message.setAutoStartService(false);
        QDBusConnection::sessionBus().send(message);
    }

    std::vector<Sent> sent_;
    std::optional<Capabilities> capabilities_; ///< absent before it was asked
    Presence presence_ = Presence::unknown;
    bool asked_ = false, refused_ = false, asksCapabilities_ = false;
    QObject root_; ///< ends the calls under way when this goes
    DBusSignals signals_{[this](const QDBusMessage& signal) { heard(signal); }};
};

} // namespace

std::unique_ptr<NotificationService> makeQtNotices() { return std::make_unique<QtNotificationService>(); }

#else

std::unique_ptr<NotificationService> makeQtNotices() { return nullptr; }

#endif

} // namespace libvue::backend

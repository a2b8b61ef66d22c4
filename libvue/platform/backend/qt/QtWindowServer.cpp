#include <libvue/platform/backend/qt/QtWindowServer.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>
#include <utility>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QCursor>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QScreen>
#include <QStyleHints>
#include <QUrl>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/backend/qt/QtApplication.h>
#include <libvue/platform/backend/qt/QtKeys.h>
#include <libvue/platform/backend/qt/QtWindow.h>
#include <libvue/platform/backend/qt/QtWindowHints.h>

namespace libvue::backend {

namespace {

using Clock = std::chrono::steady_clock;

/// A wait at least as long as this is idle time, in which what is not urgent is done.
constexpr double idle = 0.02;
/// The longest that the timer is set for; a longer wait is begun again.
constexpr double longestWait = 86400;

Clock::time_point toClock(Time t) {
    return Clock::time_point(std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(t)));
}

} // namespace

QtWindowServer::QtWindowServer()
    : focus_([this](WindowId w) {
          Event event;
          event.kind = Event::Kind::focusOut;
          event.window = w;
          event.time = now();
          event.rect = content(w);
          post(event);
      }),
      appearance_([this] {
          Event event;
          event.kind = Event::Kind::appearanceChanged;
          event.time = now();
          post(event);
      }),
      dispatcher_(QAbstractEventDispatcher::instance()) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    watchScreens();
}

QtWindowServer::~QtWindowServer() = default;

// Time and events.

Time QtWindowServer::now() { return std::chrono::duration<double>(Clock::now().time_since_epoch()).count(); }

bool QtWindowServer::take(Event& event) {
    if (queue_.empty()) return false;
    event = std::move(queue_.front());
    queue_.pop_front();
    if (event.kind == Event::Kind::exposed) {
        // What was presented in the meantime is in sight already.
        const QtWindow* w = find(event.window);
        event.rect = w && !w->hasPresented() ? NSRect{{}, w->content().size} : NSZeroRect;
    }
    return true;
}

bool QtWindowServer::next(Event& event, Time deadline) {
    if (take(event)) return true;
    for (;;) {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        settle();
        if (take(event)) return true;
        if (woken_.exchange(false) || now() >= deadline) return false;
        wait(std::min(deadline, settleAt_));
    }
}

void QtWindowServer::wait(Time deadline) {
    const double left = std::min(deadline - now(), longestWait);
    if (left >= idle && presented_) appearance_.askDesktop();
    // The timer counts whole milliseconds; what is left of one is slept.
    if (left < 0.001) {
        if (left > 0) sleepUntil(deadline);
        return;
    }
    if (deadline != never) timer_.start(static_cast<int>(left * 1000));
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    timer_.stop();
}

void QtWindowServer::settle() {
    if (!geometryChanged_ && now() < settleAt_) return;
    geometryChanged_ = false;
    settleAt_ = never;
    for (auto& [id, entry] : windows_) {
        if (!entry.window->settleGeometry()) settleAt_ = std::min(settleAt_, entry.window->settlesAt());
    }
}

void QtWindowServer::sleepUntil(Time t) {
    flush();
    if (std::isfinite(t)) std::this_thread::sleep_until(toClock(t));
}

void QtWindowServer::wake() {
    woken_.store(true);
    if (dispatcher_) dispatcher_->wakeUp();
}

// The surroundings.

void QtWindowServer::screensChanged() {
    const auto queued = [](const Event& e) { return e.kind == Event::Kind::screensChanged; };
    if (std::ranges::any_of(queue_, queued)) return;
    Event event;
    event.kind = Event::Kind::screensChanged;
    event.time = now();
    post(event);
}

void QtWindowServer::watchScreens() {
    const auto watch = [this](QScreen* screen) {
        const auto changed = [this] { screensChanged(); };
        QObject::connect(screen, &QScreen::geometryChanged, &context_, changed);
        QObject::connect(screen, &QScreen::availableGeometryChanged, &context_, changed);
        QObject::connect(screen, &QScreen::logicalDotsPerInchChanged, &context_, changed);
    };
    for (QScreen* screen : QGuiApplication::screens()) {
        watch(screen);
    }
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &context_, [this, watch](QScreen* screen) {
        watch(screen);
        screensChanged();
    });
    QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, &context_, [this] { screensChanged(); });
    QObject::connect(qGuiApp, &QGuiApplication::primaryScreenChanged, &context_, [this] { screensChanged(); });
}

std::vector<Screen> QtWindowServer::screens() {
    std::vector<Screen> all;
    const QScreen* main = QGuiApplication::primaryScreen();
    for (const QScreen* screen : QGuiApplication::screens()) {
        Screen s;
        s.frame = fromQtScreen(screen->geometry());
        s.visibleFrame = fromQtScreen(screen->availableGeometry());
        s.scale = screen->devicePixelRatio();
        s.name = screen->name().toStdString();
        all.insert(screen == main ? all.begin() : all.end(), std::move(s));
    }
    return all;
}

bool QtWindowServer::hasDisplay() const { return hasQtDisplay(); }

bool QtWindowServer::hasCompositor() const { return runsOnX11() ? x11::hasCompositor() : true; }

NSPoint QtWindowServer::mousePosition() { return fromQtScreen(QPointF(QCursor::pos())); }

std::uint32_t QtWindowServer::buttonsDown() { return buttonBits(QGuiApplication::mouseButtons()); }

Time QtWindowServer::doubleClickInterval() const {
    return QGuiApplication::styleHints()->mouseDoubleClickInterval() / 1000.0;
}

void QtWindowServer::beep() { x11::bell(); }

bool QtWindowServer::openURL(std::string_view url) {
    const QUrl parsed(QString::fromUtf8(url.data(), static_cast<qsizetype>(url.size())));
    return hasDisplay() && parsed.isValid() && !parsed.isEmpty() && QDesktopServices::openUrl(parsed);
}

// Windows.

QtWindow* QtWindowServer::find(WindowId w) const {
    const auto found = windows_.find(w);
    return found == windows_.end() ? nullptr : found->second.window.get();
}

WindowId QtWindowServer::create(const WindowSpec& spec) {
    const WindowId id = ++last_;
    Entry& entry = windows_[id];
    entry.window = std::make_unique<QtWindow>(*this, id, spec);
    entry.title = spec.title;
    stacking_.add(id);
    setParent(id, spec.parent);
    return id;
}

void QtWindowServer::destroy(WindowId w) {
    const auto found = windows_.find(w);
    if (found == windows_.end()) return;
    // A window takes those that are transient for it along when it goes, unless they are let go first.
    for (auto& [id, entry] : windows_) {
        if (stacking_.parent(id) == w) entry.window->setOwner(nullptr);
    }
    const std::unique_ptr<QtWindow> dying = std::move(found->second.window);
    windows_.erase(found);
    stacking_.remove(w);
    dying->conceal();
    focus_.forget(w);
    std::erase_if(queue_, [w](const Event& e) { return e.window == w; });
}

void QtWindowServer::setSpec(WindowId w, const WindowSpec& spec) {
    QtWindow* at = find(w);
    if (!at) return;
    at->setSpec(spec);
    setTitle(w, spec.title);
    if (stacking_.parent(w) != spec.parent) setParent(w, spec.parent);
}

void QtWindowServer::setTitle(WindowId w, std::string_view title) {
    const auto found = windows_.find(w);
    if (found == windows_.end()) return;
    Entry& entry = found->second;
    entry.title = title;
    entry.window->setTitleAndMark(entry.title, entry.modified);
}

void QtWindowServer::setModified(WindowId w, bool modified) {
    const auto found = windows_.find(w);
    if (found == windows_.end()) return;
    Entry& entry = found->second;
    entry.modified = modified;
    entry.window->setTitleAndMark(entry.title, modified);
}

void QtWindowServer::show(WindowId w, bool activate) {
    QtWindow* at = find(w);
    if (!at) return;
    const bool comes = !at->isRevealed();
    at->reveal(activate);
    if (comes) {
        stacking_.raise(w);
        restackAbove(w);
    }
    flush();
}

void QtWindowServer::hide(WindowId w) {
    if (QtWindow* at = find(w)) at->conceal();
    focus_.concealed(w);
    flush();
}

bool QtWindowServer::noteFocus(WindowId w) {
    stacking_.raise(w);
    return focus_.came(w);
}

void QtWindowServer::setContent(WindowId w, const NSRect& rect) {
    if (QtWindow* at = find(w)) at->setContent(rect);
}

NSRect QtWindowServer::content(WindowId w) {
    const QtWindow* at = find(w);
    return at ? at->content() : NSZeroRect;
}

NSEdgeInsets QtWindowServer::frameInsets(WindowId w) {
    const QtWindow* at = find(w);
    return at ? at->frameInsets() : NSEdgeInsets{};
}

double QtWindowServer::scale(WindowId w) {
    const QtWindow* at = find(w);
    return at ? at->devicePixelRatio() : qGuiApp->devicePixelRatio();
}

void QtWindowServer::setLimits(WindowId w, NSSize minimum, NSSize maximum) {
    if (QtWindow* at = find(w)) at->setLimits(minimum, maximum);
}

void QtWindowServer::setParent(WindowId w, WindowId parent) {
    QtWindow* at = find(w);
    if (!at) return;
    stacking_.setParent(w, parent);
    at->setOwner(find(stacking_.parent(w)));
}

// X11 has no order by level for windows of one kind: whatever belongs above is raised again, from back to front.
void QtWindowServer::restackAbove(WindowId w) {
    const auto& order = stacking_.backToFront();
    auto above = std::ranges::find(order, w);
    if (above == order.end()) return;
    for (++above; above != order.end(); ++above) {
        if (QtWindow* at = find(*above); at && at->isRevealed()) at->raise();
    }
}

void QtWindowServer::raise(WindowId w) {
    QtWindow* at = find(w);
    if (!at) return;
    stacking_.raise(w);
    at->raise();
    restackAbove(w);
}

void QtWindowServer::order(WindowId w, WindowId above) {
    QtWindow* at = find(w);
    if (!at) return;
    stacking_.order(w, above);
    if (stacking_.backToFront().front() == w) {
        at->lower();
        return;
    }
    at->raise();
    restackAbove(w);
}

void QtWindowServer::activate(WindowId w) {
    if (QtWindow* at = find(w); at && at->isRevealed()) at->requestActivate();
}

void QtWindowServer::setAcceptsFocus(WindowId w, bool accepts) {
    if (QtWindow* at = find(w)) at->setAcceptsFocus(accepts);
}

void QtWindowServer::setLevel(WindowId w, int level) {
    QtWindow* at = find(w);
    if (!at || stacking_.level(w) == level) return;
    stacking_.setLevel(w, level);
    at->setLevel(level);
    if (at->isRevealed()) restackAbove(w);
}

void QtWindowServer::setOpacity(WindowId w, double opacity) {
    QtWindow* at = find(w);
    if (!at) return;
    at->setOpacity(std::clamp(opacity, 0.0, 1.0));
    flush();
}

void QtWindowServer::setIgnoresMouse(WindowId w, bool ignores) {
    if (QtWindow* at = find(w)) at->setIgnoresMouse(ignores);
    flush();
}

void QtWindowServer::setAllDesktops(WindowId w, bool all) {
    if (QtWindow* at = find(w)) at->setAllDesktops(all);
    flush();
}

void QtWindowServer::miniaturize(WindowId w, bool mini) {
    QtWindow* at = find(w);
    if (!at) return;
    const Qt::WindowStates states = at->windowStates();
    at->setWindowStates(mini ? states | Qt::WindowMinimized : states & ~Qt::WindowMinimized);
    if (!mini) at->requestActivate();
}

void QtWindowServer::zoom(WindowId w) {
    if (QtWindow* at = find(w)) at->zoom();
}

void QtWindowServer::setShape(WindowId w, const Path* shape) {
    if (QtWindow* at = find(w)) at->setOutline(shape);
    flush();
}

void QtWindowServer::startMove(WindowId w) {
    if (QtWindow* at = find(w)) at->startSystemMove();
    flush();
}

std::shared_ptr<Picture> QtWindowServer::surface(WindowId w) {
    QtWindow* at = find(w);
    return at ? at->surface() : nullptr;
}

void QtWindowServer::present(WindowId w, std::span<const NSRect> dirty) {
    QtWindow* at = find(w);
    if (!at) return;
    at->present(dirty);
    presented_ = true;
}

void QtWindowServer::flush() { x11::flush(); }

std::shared_ptr<Picture> QtWindowServer::capture(WindowId w) {
    QtWindow* at = find(w);
    return at ? at->capture() : nullptr;
}

void QtWindowServer::grabMouse(WindowId w, bool grab) {
    if (QtWindow* at = find(w)) at->setMouseGrabEnabled(grab);
}

void QtWindowServer::setCursor(WindowId w, Cursor cursor) {
    const auto found = windows_.find(w);
    if (found == windows_.end() || std::exchange(found->second.cursor, cursor) == cursor) return;
    found->second.window->setCursor(cursorShape(cursor));
}

void QtWindowServer::setTextInput(WindowId w, bool on, const NSRect& caret) {
    if (QtWindow* at = find(w)) at->setTextInput(on, caret);
}

} // namespace libvue::backend

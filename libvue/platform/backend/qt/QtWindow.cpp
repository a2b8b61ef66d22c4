#include <libvue/platform/backend/qt/QtWindow.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include <QGuiApplication>
#include <QImage>
#include <QInputMethod>
#include <QPainterPath>
#include <QPolygon>
#include <QScreen>
#include <QSurfaceFormat>
#include <QVariant>

#include <libvue/platform/backend/qt/QtApplication.h>
#include <libvue/platform/backend/qt/QtWindowHints.h>
#include <libvue/platform/backend/qt/QtWindowServer.h>
#include <libvue/platform/backend/qt/RasterMemory.h>
#include <libvue/platform/backend/qt/RasterPath.h>
#include <libvue/platform/backend/qt/RasterPicture.h>

namespace libvue::backend {

namespace {

/// How long a window manager may take to carry out a change before another geometry counts as its answer.
constexpr double patience = 0.25;
constexpr int largestSide = (1 << 24) - 1;

NSEdgeInsets lastInsets; // Of the last titled window on the screen: a good guess for one that is not there yet.

int whole(double v) {
    return std::isfinite(v) ? static_cast<int>(std::clamp(std::round(v), -1.0 * largestSide, 1.0 * largestSide)) : 0;
}

QRect mainScreen() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->geometry() : QRect();
}

QSize inPixels(QSize points, double scale) {
    return {std::max(1, qRound(points.width() * scale)), std::max(1, qRound(points.height() * scale))};
}

/// Between whole scales Qt asks the window manager for sizes in steps of whole points, which are several pixels. This
/// is the size to count the steps from, so that `points` comes out as it is.
int baseOfSteps(int points, double scale) {
    const int step = std::max(1, qRound(scale));
    const int wanted = qRound(points * scale) % step;
    int base = 0;
    while (base < step * step && qRound(base * scale) % step != wanted) {
        ++base;
    }
    return base;
}

/// `rect` in pixels of both; parts outside of either are left out.
void copyPixels(QImage& to, const QImage& from, const QRect& rect) {
    const QRect r = rect & to.rect() & from.rect();
    const auto bytes = static_cast<std::size_t>(r.width()) * 4;
    for (int y = r.top(); y <= r.bottom(); ++y) {
        std::memcpy(to.scanLine(y) + static_cast<std::ptrdiff_t>(r.left()) * 4,
                    from.constScanLine(y) + static_cast<std::ptrdiff_t>(r.left()) * 4, bytes);
    }
}

} // namespace

NSRect fromQtScreen(const QRect& rect) {
    const QRect main = mainScreen();
    return NSMakeRect(rect.x() - main.x(), main.y() + main.height() - rect.y() - rect.height(), rect.width(),
                      rect.height());
}

NSPoint fromQtScreen(QPointF point) {
    const QRect main = mainScreen();
    return {point.x() - main.x(), main.y() + main.height() - point.y()};
}

QRect toQtScreen(const NSRect& rect) {
    const QRect main = mainScreen();
    const int width = std::max(1, whole(rect.size.width));
    const int height = std::max(1, whole(rect.size.height));
    return {main.x() + whole(rect.origin.x), main.y() + main.height() - whole(rect.origin.y) - height, width, height};
}

QtWindow::QtWindow(QtWindowServer& server, WindowId id, const WindowSpec& spec)
    : server_(server), id_(id), spec_(spec), acceptsFocus_(spec.acceptsFocus) {
    scale_ = devicePixelRatio();
    if (spec.transparent) {
        QSurfaceFormat format;
        format.setAlphaBufferSize(8);
        setFormat(format);
    }
    setFlags(flagsOf(spec));
    setTitleAndMark(spec.title, false);
    setContent(spec.content);
    applyLimits();
    QObject::connect(this, &QWindow::screenChanged, this, [this] { noteScale(); });
}

QtWindow::~QtWindow() {
    // Qt would send the last events to the base class alone.
    revealed_ = false;
    backing_.reset();
    destroy();
}

bool QtWindow::isManaged() const noexcept {
    return spec_.kind < WindowKind::popup || (spec_.kind == WindowKind::popup && spec_.acceptsFocus);
}

Qt::WindowFlags QtWindow::flagsOf(const WindowSpec& spec) const {
    Qt::WindowFlags flags = Qt::Window;
    switch (spec.kind) {
    case WindowKind::normal:
        break;
    case WindowKind::utility:
        flags = Qt::Tool;
        break;
    case WindowKind::dialog:
        flags = Qt::Dialog;
        break;
    case WindowKind::popup:
        flags = isManaged() ? Qt::Tool : Qt::ToolTip;
        break;
    case WindowKind::menu:
    case WindowKind::tooltip:
        flags = Qt::ToolTip;
        break;
    }
    if (spec.titled && spec.kind < WindowKind::popup) {
        flags |= Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
        if (spec.closable) flags |= Qt::WindowCloseButtonHint;
        if (spec.miniaturizable) flags |= Qt::WindowMinimizeButtonHint;
        if (spec.resizable) flags |= Qt::WindowMaximizeButtonHint;
    } else {
        flags |= Qt::FramelessWindowHint;
    }
    // The compositor would draw its shadow around the whole rectangle.
    if (spec.transparent) flags |= Qt::NoDropShadowWindowHint;
    if (!acceptsFocus_) flags |= Qt::WindowDoesNotAcceptFocus;
    if (level_ > 0) flags |= Qt::WindowStaysOnTopHint;
    if (level_ < 0) flags |= Qt::WindowStaysOnBottomHint;
    return flags;
}

void QtWindow::setSpec(const WindowSpec& spec) {
    const bool wasManaged = isManaged();
    const bool wasTransparent = spec_.transparent;
    spec_ = spec;
    acceptsFocus_ = spec.acceptsFocus;
    // Whether it is managed and what its pixels hold is fixed when the native window is made.
    const bool anew = handle() && (isManaged() != wasManaged || spec.transparent != wasTransparent);
    const bool shown = revealed_;
    if (anew) {
        revealed_ = false;
        dropPictures();
        backing_.reset();
        destroy();
        QSurfaceFormat format;
        if (spec.transparent) format.setAlphaBufferSize(8);
        setFormat(format);
    }
    setFlags(flagsOf(spec));
    setContent(spec.content);
    applyLimits();
    if (anew && shown) reveal(false);
}

void QtWindow::setTitleAndMark(const std::string& title, bool modified) {
    const QString text = QString::fromStdString(title);
    setTitle(modified ? QLatin1Char('*') + text : text);
}

void QtWindow::reveal(bool activate) {
    if (!revealed_) {
        revealed_ = true;
        setProperty("_q_showWithoutActivating", !activate);
        if (!handle()) create();
        if (allDesktops_) x11::setOnAllDesktops(winId(), true, false);
        expectGeometry(patience);
        setVisible(true);
        allowEverySize();
        if (ignoresMouse_) setIgnoresMouse(true);
        if (const QWindow* owner = transientParent(); owner && owner->handle()) {
            x11::setTransientFor(winId(), owner->winId());
        }
    }
    if (activate) requestActivate();
}

void QtWindow::conceal() {
    if (!std::exchange(revealed_, false)) return;
    seen_ = false;
    setVisible(false);
}

// Geometry.

void QtWindow::expectGeometry(double seconds) { expectedUntil_ = server_.now() + seconds; }

void QtWindow::setContent(const NSRect& rect) {
    content_ = rect;
    const QRect wanted = toQtScreen(rect);
    if (wanted.size() != size_) {
        size_ = wanted.size();
        dropPictures();
    }
    if (scale_ != std::floor(scale_)) {
        setBaseSize({baseOfSteps(size_.width(), scale_), baseOfSteps(size_.height(), scale_)});
    }
    if (!spec_.resizable) applyLimits();
    if (wanted == geometry()) return;
    if (revealed_) expectGeometry(patience);
    setGeometry(wanted);
    allowEverySize();
}

NSEdgeInsets QtWindow::frameInsets() const {
    if (!spec_.titled || spec_.kind >= WindowKind::popup || !hasQtDisplay()) return {};
    const QMargins m = frameMargins();
    if (!m.isNull()) {
        lastInsets = {static_cast<double>(m.top()), static_cast<double>(m.left()), static_cast<double>(m.bottom()),
                      static_cast<double>(m.right())};
    }
    return lastInsets;
}

void QtWindow::setLimits(NSSize minimum, NSSize maximum) {
    minimum_ = minimum;
    maximum_ = maximum;
    applyLimits();
}

void QtWindow::applyLimits() {
    if (!spec_.resizable && isManaged()) {
        setMinimumSize(size_);
        setMaximumSize(size_);
    } else {
        const QSize low(whole(std::max(0.0, minimum_.width)), whole(std::max(0.0, minimum_.height)));
        setMinimumSize(low);
        setMaximumSize(QSize(whole(maximum_.width), whole(maximum_.height)).expandedTo(low));
    }
    allowEverySize();
}

// Qt tells the window manager anew at each change of the size or its limits.
void QtWindow::allowEverySize() {
    if (handle() && isManaged() && scale_ != std::floor(scale_)) x11::allowEverySize(winId());
}

bool QtWindow::settleGeometry() {
    settlesAt_ = never;
    const QRect actual = geometry();
    const QRect known = toQtScreen(content_);
    if (actual == known) return true;
    if (!revealed_) return true;
    if (server_.now() < expectedUntil_) {
        settlesAt_ = expectedUntil_;
        return false;
    }
    const NSRect now = fromQtScreen(actual);
    const bool moved = actual.bottomLeft() != known.bottomLeft();
    const bool resized = actual.size() != known.size();
    // What did not change keeps its fraction.
    if (moved) content_.origin = now.origin;
    if (resized) {
        content_.size = now.size;
        size_ = actual.size();
        dropPictures();
    }
    if (moved) server_.post(make(Event::Kind::moved));
    if (resized) server_.post(make(Event::Kind::resized));
    return true;
}

// States.

void QtWindow::setOwner(QtWindow* owner) {
    setTransientParent(owner);
    if (handle() && (!owner || owner->handle())) x11::setTransientFor(winId(), owner ? owner->winId() : 0);
}

void QtWindow::setAcceptsFocus(bool accepts) {
    acceptsFocus_ = accepts;
    setFlags(flagsOf(spec_));
}

void QtWindow::setLevel(int level) {
    level_ = level;
    setFlags(flagsOf(spec_));
}

void QtWindow::setIgnoresMouse(bool ignores) {
    ignoresMouse_ = ignores;
    if (revealed_ && runsOnX11()) {
        x11::setMouseTransparent(winId(), ignores);
    } else if (!runsOnX11()) {
        setFlag(Qt::WindowTransparentForInput, ignores);
    }
}

void QtWindow::setAllDesktops(bool all) {
    if (std::exchange(allDesktops_, all) != all && handle()) x11::setOnAllDesktops(winId(), all, revealed_);
}

void QtWindow::setOutline(const Path* shape) {
    if (!shape) {
        setMask(QRegion());
        return;
    }
    QPainterPath path;
    const Transform flip{1, 0, 0, -1, 0, static_cast<double>(size_.height())};
    if (!convertPath(*shape, flip, FillRule::nonZero, path)) return;
    setMask(QRegion(path.toFillPolygon().toPolygon()));
}

void QtWindow::zoom() {
    if (!spec_.resizable) return;
    // The manager moves it first and then changes its size; only the end counts.
    expectGeometry(patience / 2);
    setWindowStates(windowStates() ^ Qt::WindowMaximized);
}

void QtWindow::setTextInput(bool on, const NSRect& caret) {
    if (textInput_ == on && caret_ == caret) return;
    const bool was = std::exchange(textInput_, on);
    caret_ = caret;
    if (QGuiApplication::focusWindow() != this) return;
    QInputMethod* method = QGuiApplication::inputMethod();
    if (was && !on) method->reset();
    method->update(was == on ? Qt::ImCursorRectangle : Qt::ImEnabled | Qt::ImCursorRectangle);
}

// Pictures.

void QtWindow::dropPictures() {
    surface_.reset();
    shown_ = QRegion();
}

void QtWindow::noteScale() {
    const double scale = devicePixelRatio();
    if (std::exchange(scale_, scale) == scale) return;
    dropPictures();
    server_.post(make(Event::Kind::scaleChanged));
}

std::shared_ptr<Picture> QtWindow::surface() {
    if (!surface_) {
        QImage image = transparentImage(inPixels(size_, scale_));
        if (image.isNull()) return nullptr;
        surface_ = wrapImage(std::move(image), scale_);
        surface_->setOnScreen(true);
    }
    return surface_;
}

QRect QtWindow::toWindow(const NSRect& r) const {
    const double height = surface_->pixelHeight() / scale_;
    const auto down = [](double v) { return static_cast<int>(std::clamp(std::floor(v), -1e6, 1e6)); };
    const int left = down(NSMinX(r));
    const int top = down(height - NSMaxY(r));
    QRect outward(left, top, -down(-NSMaxX(r)) - left, -down(NSMinY(r) - height) - top);
    // Qt takes the edges of what it copies to the nearest pixel, not outward.
    if (scale_ != std::floor(scale_)) outward.adjust(-1, -1, 1, 1);
    return outward & QRect(QPoint(), size_);
}

void QtWindow::present(std::span<const NSRect> dirty) {
    if (!surface_) return;
    QRegion region;
    for (const NSRect& r : dirty) {
        if (!NSIsEmptyRect(r)) region += toWindow(r);
    }
    if (region.isEmpty()) return;
    if (!handle()) create();
    if (!backing_) backing_ = std::make_unique<QBackingStore>(this);
    if (backing_->size() != size_) backing_->resize(size_);
    backing_->beginPaint(region);
    auto* image = dynamic_cast<QImage*>(backing_->paintDevice());
    if (image && image->depth() == 32) {
        const QImage& source = imageOf(std::as_const(*surface_));
        for (const QRect& r : region) {
            const int left = static_cast<int>(std::floor(r.left() * scale_));
            const int top = static_cast<int>(std::floor(r.top() * scale_));
            const int right = static_cast<int>(std::ceil((r.left() + r.width()) * scale_));
            const int bottom = static_cast<int>(std::ceil((r.top() + r.height()) * scale_));
            copyPixels(*image, source, QRect(left, top, right - left, bottom - top));
        }
    }
    backing_->endPaint();
    shown_ += region;
    if (isExposed()) backing_->flush(region);
}

std::shared_ptr<Picture> QtWindow::capture() {
    if (shown_.isEmpty() || !backing_) return nullptr;
    QImage image;
    if (isExposed()) image = x11::contents(winId(), inPixels(size_, scale_));
    if (image.isNull()) {
        if (const auto* kept = dynamic_cast<QImage*>(backing_->paintDevice())) image = kept->copy();
    }
    if (image.isNull()) return nullptr;
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(1);
    return wrapImage(std::move(image), scale_);
}

} // namespace libvue::backend

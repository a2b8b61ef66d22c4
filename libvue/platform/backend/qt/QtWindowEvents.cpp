// What Qt tells a window, as events of the server.
#include <cmath>

#include <QEnterEvent>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QStyleHints>
#include <QWheelEvent>

#include <libvue/platform/backend/qt/QtKeys.h>
#include <libvue/platform/backend/qt/QtWindow.h>
#include <libvue/platform/backend/qt/QtWindowServer.h>

namespace libvue::backend {

namespace {

/// Qt's wheel angles are in eighths of a degree, 15 degrees a notch.
constexpr double anglePerNotch = 120;

std::uint8_t phaseOf(Qt::ScrollPhase phase) {
    switch (phase) {
    case Qt::NoScrollPhase:
        return 0;
    case Qt::ScrollBegin:
        return 1;
    case Qt::ScrollUpdate:
        return 2;
    case Qt::ScrollEnd:
        return 3;
    case Qt::ScrollMomentum:
        return 4;
    }
    return 0;
}

} // namespace

Event QtWindow::make(Event::Kind kind) const {
    Event event;
    event.kind = kind;
    event.window = id_;
    event.time = server_.now();
    event.rect = content_;
    return event;
}

void QtWindow::placeInPoints(Event& event, QPointF position, QPointF screen) const {
    event.position = {position.x(), size_.height() - position.y()};
    event.screenPosition = fromQtScreen(screen);
}

Event QtWindow::mouse(Event::Kind kind, QPointF position, QPointF screen, Qt::KeyboardModifiers modifiers) const {
    Event event = make(kind);
    placeInPoints(event, position, screen);
    server_.notePointer(screen);
    event.modifiers = modifiersOf(modifiers);
    event.buttonsDown = buttonBits(QGuiApplication::mouseButtons());
    return event;
}

bool QtWindow::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove: {
        // The pointer is placed in the window as it is now.
        settleGeometry();
        const auto& m = static_cast<QMouseEvent&>(*event);
        const auto kind = event->type() == QEvent::MouseButtonPress     ? Event::Kind::mouseDown
                          : event->type() == QEvent::MouseButtonRelease ? Event::Kind::mouseUp
                                                                        : Event::Kind::mouseMoved;
        Event e = mouse(kind, m.position(), m.globalPosition(), m.modifiers());
        e.button = buttonNumber(m.button());
        e.buttonsDown = buttonBits(m.buttons());
        server_.post(e);
        return true;
    }
    // It comes after a press of its own; clicks are counted above.
    case QEvent::MouseButtonDblClick:
        return true;
    case QEvent::Enter: {
        const auto& m = static_cast<QEnterEvent&>(*event);
        server_.post(mouse(Event::Kind::mouseEntered, m.position(), m.globalPosition(), m.modifiers()));
        return true;
    }
    case QEvent::Leave: {
        const QPointF at = server_.lastPointer();
        server_.post(mouse(Event::Kind::mouseExited, mapFromGlobal(at), at, QGuiApplication::keyboardModifiers()));
        return true;
    }
    case QEvent::Wheel:
        handleWheel(static_cast<QWheelEvent&>(*event));
        return true;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        handleKey(static_cast<QKeyEvent&>(*event));
        return true;
    case QEvent::InputMethod:
        handleInputMethod(static_cast<QInputMethodEvent&>(*event));
        return true;
    case QEvent::InputMethodQuery:
        answerInputMethod(static_cast<QInputMethodQueryEvent&>(*event));
        return true;
    case QEvent::Close:
        event->ignore();
        server_.post(make(Event::Kind::closeRequest));
        return true;
    case QEvent::WindowStateChange: {
        const Qt::WindowStates now = windowStates();
        const bool was = states_ & Qt::WindowMinimized;
        const bool is = now & Qt::WindowMinimized;
        states_ = now;
        if (was != is) server_.post(make(is ? Event::Kind::miniaturized : Event::Kind::deminiaturized));
        break;
    }
    case QEvent::ThemeChange:
        server_.noteTheme();
        break;
    default:
        break;
    }
    return QWindow::event(event);
}

void QtWindow::exposeEvent(QExposeEvent*) {
    const bool seen = isExposed();
    if (seen) {
        noteScale();
        if (!seen_) {
            // Only a mapped window can lose its input shape or be told about its owner for good.
            if (ignoresMouse_) setIgnoresMouse(true);
            server_.post(make(Event::Kind::exposed));
        }
    } else if (seen_ && revealed_) {
        server_.post(make(Event::Kind::occluded));
    }
    seen_ = seen;
}

void QtWindow::paintEvent(QPaintEvent* event) {
    const QRegion again = event->region() & shown_;
    if (backing_ && !again.isEmpty()) backing_->flush(again);
}

void QtWindow::moveEvent(QMoveEvent*) { server_.noteGeometry(); }

void QtWindow::resizeEvent(QResizeEvent*) {
    noteScale();
    server_.noteGeometry();
}

void QtWindow::focusInEvent(QFocusEvent*) {
    if (server_.noteFocus(id_)) server_.post(make(Event::Kind::focusIn));
}

void QtWindow::focusOutEvent(QFocusEvent*) {
    composing_ = false;
    server_.noteFocusLeft(id_, winId());
}

void QtWindow::handleKey(QKeyEvent& key) {
    const bool down = key.type() == QEvent::KeyPress;
    if (const std::uint32_t changed = modifierOfKey(key.key())) {
        if (key.isAutoRepeat()) return;
        Event event = make(Event::Kind::modifiers);
        event.keyCode = static_cast<std::uint16_t>(key.nativeScanCode());
        // Whether the key itself is among them depends on the platform.
        const std::uint32_t others = modifiersOf(key.modifiers()) & ~changed;
        event.modifiers = down ? others | changed : others;
        server_.post(event);
        return;
    }
    // A held key repeats its press alone.
    if (!down && key.isAutoRepeat()) return;
    Event event = make(down ? Event::Kind::keyDown : Event::Kind::keyUp);
    describeKey(key, event);
    const QPointF at = server_.lastPointer();
    placeInPoints(event, mapFromGlobal(at), at);
    event.buttonsDown = buttonBits(QGuiApplication::mouseButtons());
    server_.post(event);
}

void QtWindow::handleWheel(QWheelEvent& wheel) {
    settleGeometry();
    Event event = mouse(Event::Kind::wheel, wheel.position(), wheel.globalPosition(), wheel.modifiers());
    event.buttonsDown = buttonBits(wheel.buttons());
    event.phase = phaseOf(wheel.phase());
    const QPoint pixels = wheel.pixelDelta();
    const QPoint angle = wheel.angleDelta();
    event.precise = !pixels.isNull();
    if (event.precise) {
        event.deltaX = pixels.x();
        event.deltaY = pixels.y();
    } else {
        const double lines = QGuiApplication::styleHints()->wheelScrollLines();
        event.deltaX = angle.x() / anglePerNotch * lines;
        event.deltaY = angle.y() / anglePerNotch * lines;
    }
    // The ends of a gesture carry no distance, and are told all the same.
    if (event.deltaX == 0 && event.deltaY == 0 && event.phase == 0) return;
    server_.post(event);
}

void QtWindow::handleInputMethod(QInputMethodEvent& input) {
    if (!input.commitString().isEmpty()) {
        Event event = make(Event::Kind::textCommit);
        event.characters = input.commitString().toStdU16String();
        server_.post(event);
        composing_ = false;
    }
    const QString& preedit = input.preeditString();
    if (!preedit.isEmpty() || composing_) {
        Event event = make(Event::Kind::textPreedit);
        event.characters = preedit.toStdU16String();
        event.selection = {event.characters.size(), 0};
        for (const QInputMethodEvent::Attribute& attribute : input.attributes()) {
            if (attribute.type == QInputMethodEvent::Cursor && attribute.start >= 0) {
                event.selection.location = static_cast<NSUInteger>(attribute.start);
            }
        }
        composing_ = !preedit.isEmpty();
        server_.post(event);
    }
    input.accept();
}

void QtWindow::answerInputMethod(QInputMethodQueryEvent& query) const {
    const Qt::InputMethodQueries asked = query.queries();
    if (asked & Qt::ImEnabled) query.setValue(Qt::ImEnabled, textInput_);
    if (asked & Qt::ImCursorRectangle) {
        query.setValue(Qt::ImCursorRectangle,
                       QRectF(caret_.origin.x, size_.height() - NSMaxY(caret_), caret_.size.width, caret_.size.height));
    }
    if (asked & Qt::ImHints) query.setValue(Qt::ImHints, static_cast<int>(Qt::ImhNone));
    query.accept();
}

} // namespace libvue::backend

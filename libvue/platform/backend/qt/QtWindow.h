#pragma once

#include <memory>
#include <span>

#include <QBackingStore>
#include <QRect>
#include <QRegion>
#include <QWindow>

#include <libvue/platform/backend/WindowServer.h>

class QInputMethodEvent;
class QInputMethodQueryEvent;
class QKeyEvent;
class QWheelEvent;

namespace libvue::backend {

class QtWindowServer;

/// A native window. It turns what Qt tells into events of the server, and keeps what was presented so that it can show
/// it again.
class QtWindow final : public QWindow {
public:
    /// The server outlives its windows.
    QtWindow(QtWindowServer& server, WindowId id, const WindowSpec& spec);
    ~QtWindow() override;

    [[nodiscard]] WindowId id() const noexcept { return id_; }
    [[nodiscard]] const WindowSpec& spec() const noexcept { return spec_; }
    /// Whether a window manager places it and gives it the focus.
    [[nodiscard]] bool isManaged() const noexcept;

    void setSpec(const WindowSpec& spec);
    void setTitleAndMark(const std::string& title, bool modified);
    void reveal(bool activate);
    void conceal();
    [[nodiscard]] bool isRevealed() const noexcept { return revealed_; }

    void setContent(const NSRect& rect);
    [[nodiscard]] const NSRect& content() const noexcept { return content_; }
    [[nodiscard]] NSEdgeInsets frameInsets() const;
    void setLimits(NSSize minimum, NSSize maximum);
    /// Posts moved and resized where the window manager changed them. False while it waits for the manager to carry out
    /// what was asked of it last.
    bool settleGeometry();
    /// When settleGeometry is to be tried again.
    [[nodiscard]] Time settlesAt() const noexcept { return settlesAt_; }

    void setOwner(QtWindow* owner);
    void setAcceptsFocus(bool accepts);
    void setLevel(int level);
    void setIgnoresMouse(bool ignores);
    void setAllDesktops(bool all);
    void setOutline(const Path* shape);
    void zoom();
    void setTextInput(bool on, const NSRect& caret);

    [[nodiscard]] std::shared_ptr<Picture> surface();
    void present(std::span<const NSRect> dirty);
    [[nodiscard]] bool hasPresented() const noexcept { return !shown_.isEmpty(); }
    [[nodiscard]] std::shared_ptr<Picture> capture();

protected:
    bool event(QEvent* event) override;
    void exposeEvent(QExposeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    [[nodiscard]] Qt::WindowFlags flagsOf(const WindowSpec& spec) const;
    [[nodiscard]] Event make(Event::Kind kind) const;
    [[nodiscard]] Event mouse(Event::Kind kind, QPointF position, QPointF screen,
                              Qt::KeyboardModifiers modifiers) const;
    [[nodiscard]] QRect toWindow(const NSRect& points) const;
    void placeInPoints(Event& event, QPointF position, QPointF screen) const;
    void applyLimits();
    void allowEverySize();
    void expectGeometry(double seconds);
    void noteScale();
    void handleKey(QKeyEvent& key);
    void handleWheel(QWheelEvent& wheel);
    void handleInputMethod(QInputMethodEvent& input);
    void answerInputMethod(QInputMethodQueryEvent& query) const;
    void dropPictures();

    QtWindowServer& server_;
    const WindowId id_;
    WindowSpec spec_;
    NSRect content_; ///< as the toolkit knows it; Qt's own geometry is this in whole points
    QSize size_;     ///< of content_, in whole points
    NSSize minimum_, maximum_{1e7, 1e7};
    std::unique_ptr<QBackingStore> backing_;
    std::shared_ptr<Picture> surface_;
    QRegion shown_; ///< what was presented since the last change of size
    NSRect caret_;
    Time settlesAt_ = never, expectedUntil_ = 0;
    double scale_ = 1;
    Qt::WindowStates states_ = Qt::WindowNoState;
    int level_ = 0;
    bool revealed_ = false, seen_ = false, ignoresMouse_ = false, allDesktops_ = false, acceptsFocus_ = true;
    bool textInput_ = false, composing_ = false;
};

/// Qt's screen coordinates, y downward, and ours over the main screen.
[[nodiscard]] NSRect fromQtScreen(const QRect& rect);
[[nodiscard]] NSPoint fromQtScreen(QPointF point);
[[nodiscard]] QRect toQtScreen(const NSRect& rect);

} // namespace libvue::backend

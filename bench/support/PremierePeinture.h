#pragma once

#include <chrono>
#include <functional>
#include <memory>

#ifdef LIBVUE_HAVE_WIDGETS
#include <QApplication>
#include <QString>
#include <QWidget>
#endif

#include "Banc.h"

namespace banc {

/// Counts from its making.
class Chronometre {
public:
    [[nodiscard]] double secondes() const { return std::chrono::duration<double>(Horloge::now() - debut_).count(); }

private:
    using Horloge = std::chrono::steady_clock;
    Horloge::time_point debut_ = Horloge::now();
};

/// The medians, in microseconds, of what both pieces of work answer in seconds, done in turn, so that a machine that
/// slows down slows both. The first ones, which warm the caches, do not count. The peer's may be null.
Mesures tourATour(int fois, const std::function<double(int)>& notre, const std::function<double(int)>& pair);

#ifdef LIBVUE_HAVE_WIDGETS
/// The application that widgets need, of their own kind; our backend takes the one that there is.
class ApplicationPair {
public:
    ApplicationPair(int& argc, char** argv) : application_(argc, argv) {
        QApplication::setQuitOnLastWindowClosed(false);
        // What its platform has to say of every window would be paid for by the peer.
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    }

private:
    QApplication application_;
};

/// A widget that tells whether it was painted.
template <class Widget> class Peint : public Widget {
public:
    using Widget::Widget;
    [[nodiscard]] bool estPeint() const { return peint_; }

protected:
    void paintEvent(QPaintEvent* e) override {
        Widget::paintEvent(e);
        peint_ = true;
    }

private:
    bool peint_ = false;
};

/// Seconds from the making of a widget to its first paint. What closes it is not measured.
template <class Fait> double premierePeinture(const Fait& fait) {
    const Chronometre temps;
    auto widget = fait();
    widget->show();
    while (!widget->estPeint())
        QCoreApplication::processEvents();
    const double duree = temps.secondes();
    widget->close();
    widget.reset();
    QCoreApplication::processEvents();
    return duree;
}
#endif

} // namespace banc

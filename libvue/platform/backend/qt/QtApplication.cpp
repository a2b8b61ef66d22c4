#include <libvue/platform/backend/qt/QtApplication.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <errno.h>

#include <QByteArray>
#include <QGuiApplication>
#include <QString>

namespace libvue::backend {

namespace {

std::string platforms(QtDisplay display) {
    if (display == QtDisplay::none) return "offscreen";
    std::string list;
    const auto add = [&](const char* name) { list += list.empty() ? name : std::string(";") + name; };
    const auto set = [](const char* name) {
        const char* value = std::getenv(name);
        return value && *value;
    };
    if (set("QT_QPA_PLATFORM")) {
        add(std::getenv("QT_QPA_PLATFORM"));
    } else {
        if (set("DISPLAY")) add("xcb");
        if (set("WAYLAND_DISPLAY")) add("wayland");
    }
    // Qt ends the process when no platform of its list can be had, so the list ends with one that always can.
    if (list.find("offscreen") == std::string::npos) add("offscreen");
    return list;
}

} // namespace

void ensureQtApplication(QtDisplay display) {
    if (QCoreApplication::instance()) return;

    // Qt keeps references to these.
    static char option[] = "-platform";
    static std::string list;
    static char* arguments[] = {program_invocation_name, option, nullptr, nullptr};
    static int count = 3;
    list = platforms(display);
    arguments[2] = list.data();

    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    // Windows are drawn by the raster engine: no GL library needs to be loaded.
    const bool chooseGl = !qEnvironmentVariableIsSet("QT_XCB_GL_INTEGRATION");
    if (chooseGl) qputenv("QT_XCB_GL_INTEGRATION", "none");
    // Never destroyed: at the end of the process its own tables go before ours or after, and both must work.
    new QGuiApplication(count, arguments);
    if (chooseGl) qunsetenv("QT_XCB_GL_INTEGRATION");
    // Qt takes the environment's locale; numbers in files and archives are written with a point.
    std::setlocale(LC_NUMERIC, "C");
    QGuiApplication::setQuitOnLastWindowClosed(false);

    if (list != "offscreen" && !hasQtDisplay() && list.rfind("offscreen", 0) != 0) {
        std::fprintf(stderr, "libvue: no display could be opened (%s); windows are kept in memory\n", list.c_str());
    }
}

bool runsOnX11() { return QCoreApplication::instance() && QGuiApplication::platformName() == QLatin1String("xcb"); }

bool hasQtDisplay() {
    if (!QCoreApplication::instance()) return false;
    const QString name = QGuiApplication::platformName();
    return name != QLatin1String("offscreen") && name != QLatin1String("minimal");
}

} // namespace libvue::backend

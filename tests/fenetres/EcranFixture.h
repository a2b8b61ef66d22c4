#pragma once

#include <array>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSRunLoop.h>

namespace libvue::test {

/// What the command prints.
inline std::string output(const std::string& command) {
    std::string text;
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen((command + " 2>&1").c_str(), "r"), pclose);
    std::array<char, 256> part;
    while (std::fgets(part.data(), part.size(), pipe.get()))
        text += part.data();
    return text;
}

/// An application on a real display, which a person's hand is played on with xdotool.
struct EcranFixture : testing::Test {
    EcranFixture() { backend::Backend::install(backend::makeQtBackend()); }
    ~EcranFixture() override {
        NSApplication::resetSharedApplication();
        backend::Backend::install(nullptr);
    }

    /// Runs the application until that is so.
    static bool comes(const std::function<bool()>& condition) {
        constexpr NSTimeInterval patience = 10, step = 0.05;
        NSRunLoop* loop = NSRunLoop::mainRunLoop();
        for (const NSTimeInterval end = loop->now() + patience; loop->now() < end;) {
            (void)NSApp()->runOnceUntil_(loop->now() + step);
            if (condition()) return true;
        }
        return false;
    }
    /// A point of the screen, as xdotool takes it.
    static std::string at(NSPoint screen) {
        const auto screens = backend::Backend::current().windows->screens();
        const int top = static_cast<int>(NSMaxY(screens.front().frame));
        return std::to_string(static_cast<int>(screen.x)) + " " + std::to_string(top - static_cast<int>(screen.y));
    }
    static void click(NSPoint screen) { output("xdotool mousemove " + at(screen) + " click 1"); }
    static bool isOnTheDesktop(const std::string& title) {
        return output("xdotool search --onlyvisible --name '^" + title + "$'").find_first_of("0123456789") == 0;
    }
};

} // namespace libvue::test

#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <libvue/platform/backend/Backend.h>

using namespace libvue;
using namespace libvue::backend;

namespace {

using Kind = Event::Kind;

constexpr Color red{1, 0, 0, 1}, green{0, 1, 0, 1}, blue{0, 0, 1, 1};
/// Far more than any of these waits needs.
constexpr Time patience = 10;

/// What the command prints, with its status checked.
std::string run(const std::string& command) {
    std::string output;
    std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen((command + " 2>&1").c_str(), "r"), nullptr);
    std::array<char, 256> part;
    while (std::fgets(part.data(), part.size(), pipe.get())) {
        output += part.data();
    }
    EXPECT_EQ(pclose(pipe.release()), 0) << command << ": " << output;
    return output;
}

struct QtWindowServerTest : testing::Test {
    QtWindowServerTest() {
        Backend::install(makeQtBackend());
        EXPECT_TRUE(server().hasDisplay()) << "these tests need a display";
        run("xdotool mousemove 1270 1010");
    }
    ~QtWindowServerTest() override { Backend::install(nullptr); }

    static WindowServer& server() { return *Backend::current().windows; }

    /// Waits for an event that the condition takes; all that came meanwhile, that one at last, is kept in `seen`.
    Event waitFor(const char* what, const std::function<bool(const Event&)>& condition) {
        const Time end = server().now() + patience;
        Event event;
        while (server().now() < end) {
            if (!server().next(event, end)) continue;
            seen.push_back(event);
            if (condition(event)) return event;
        }
        ADD_FAILURE() << "no " << what;
        return {};
    }
    Event waitFor(const char* what, Kind kind, WindowId w) {
        return waitFor(what, [=](const Event& e) { return e.kind == kind && e.window == w; });
    }
    void pump(double seconds) {
        const Time end = server().now() + seconds;
        Event event;
        while (server().next(event, end)) {
            seen.push_back(event);
        }
    }
    [[nodiscard]] std::size_t count(Kind kind, WindowId w) const {
        std::size_t n = 0;
        for (const Event& e : seen) {
            n += e.kind == kind && e.window == w;
        }
        return n;
    }
    void click(NSPoint screen, int times = 1) {
        const int top = static_cast<int>(NSMaxY(server().screens().front().frame));
        run("xdotool mousemove " + std::to_string(static_cast<int>(screen.x)) + " " +
            std::to_string(top - static_cast<int>(screen.y)) + " click --repeat " + std::to_string(times) + " 1");
    }

    /// The manager may still be at work on a window that has just come, and give the focus back to it once.
    void activateForGood(WindowId w) {
        const Time end = server().now() + patience;
        for (std::size_t from = seen.size(); server().now() < end; from = seen.size()) {
            server().activate(w);
            pump(0.3);
            bool active = false;
            for (const Event& e : std::span(seen).subspan(from)) {
                if (e.kind == Kind::focusIn) active = e.window == w;
            }
            if (active) return;
        }
        ADD_FAILURE() << "the window never became active";
    }

    /// For changes that the window manager carries out in its own time.
    void clickUntilItReaches(WindowId w, NSPoint screen) {
        const Time end = server().now() + patience;
        Event event;
        while (server().now() < end) {
            click(screen);
            const Time answer = server().now() + 0.2;
            while (server().next(event, answer)) {
                if (event.kind == Kind::mouseUp && event.window == w) return;
            }
        }
        ADD_FAILURE() << "no click reached the window";
    }

    static WindowSpec specOf(const char* title, NSRect content, WindowKind kind = WindowKind::normal) {
        WindowSpec spec;
        spec.title = title;
        spec.content = content;
        spec.kind = kind;
        return spec;
    }
    /// On the screen, filled with the colour.
    WindowId open(const WindowSpec& spec, const Color& color, bool activate = true) {
        const WindowId w = server().create(spec);
        server().show(w, activate);
        fill(w, {{}, spec.content.size}, color);
        waitFor("expose", Kind::exposed, w);
        if (activate) waitFor("focus", Kind::focusIn, w);
        return w;
    }
    static void fill(WindowId w, const NSRect& rect, const Color& color) {
        Backend::current().graphics->canvasOn(server().surface(w))->fillRect(rect, color);
        server().present(w, {&rect, 1});
    }

    std::vector<Event> seen;
};

TEST_F(QtWindowServerTest, theScreenShowsWhatWasPresented) {
    const WindowId w = open(specOf("presented", {{200, 300}, {200, 100}}), red);
    fill(w, {{10, 20}, {30, 40}}, blue);
    // Drawn, but never presented.
    Backend::current().graphics->canvasOn(server().surface(w))->fillRect({{100, 0}, {50, 50}}, green);

    const auto shown = server().capture(w);
    ASSERT_NE(shown, nullptr);
    ASSERT_EQ(shown->pixelWidth(), 200);
    ASSERT_EQ(shown->pixelHeight(), 100);
    EXPECT_EQ(shown->pixel(0, 0), red);
    EXPECT_EQ(shown->pixel(199, 99), red);
    EXPECT_EQ(shown->pixel(10, 79), blue) << "the rectangle's lower left corner, y upward";
    EXPECT_EQ(shown->pixel(9, 79), red);
    EXPECT_EQ(shown->pixel(10, 80), red);
    EXPECT_EQ(shown->pixel(39, 40), blue);
    EXPECT_EQ(shown->pixel(40, 40), red);
    EXPECT_EQ(shown->pixel(120, 80), red) << "not presented";
}

TEST_F(QtWindowServerTest, aSurfaceBeyondReasonIsRefused) {
    const WindowId w = server().create(specOf("huge", {{0, 0}, {60000, 60000}}));
    EXPECT_EQ(server().surface(w), nullptr);
    server().setContent(w, {{0, 0}, {60, 60}});
    EXPECT_NE(server().surface(w), nullptr);
}

TEST_F(QtWindowServerTest, aWindowComesWhereItWasAskedForWithoutMovesOfItsOwn) {
    const NSRect content{{200, 300}, {320, 200}};
    const WindowId w = open(specOf("placed", content), red);
    EXPECT_EQ(server().content(w), content);
    EXPECT_GT(server().frameInsets(w).top, 0);
    server().setContent(w, {{300, 350}, {250, 150}});
    EXPECT_EQ(server().surface(w)->size(), NSMakeSize(250, 150)) << "at once";
    fill(w, {{}, {250, 150}}, blue);
    server().setContent(w, {{320, 360}, {260, 160}});
    fill(w, {{}, {260, 160}}, green);
    // A move by somebody else comes after the answers to ours.
    run("xdotool search --name '^placed$' windowmove 100 100");
    waitFor("move", Kind::moved, w);
    EXPECT_EQ(count(Kind::moved, w), 1u);
    EXPECT_EQ(count(Kind::resized, w), 0u);
    EXPECT_EQ(server().capture(w)->pixel(259, 159), green);
}

TEST_F(QtWindowServerTest, aChangeByTheWindowManagerIsTold) {
    const WindowId w = open(specOf("changed", {{200, 300}, {320, 200}}), red);
    run("xdotool search --name '^changed$' windowsize 400 250");
    const Event resized = waitFor("resize", Kind::resized, w);
    EXPECT_EQ(resized.rect.size, NSMakeSize(400, 250));
    EXPECT_EQ(server().content(w), resized.rect);
    EXPECT_EQ(NSMaxY(resized.rect), 500) << "the top edge stayed";
    EXPECT_EQ(server().surface(w)->size(), NSMakeSize(400, 250));

    server().zoom(w);
    const Event zoomed = waitFor("zoom", Kind::resized, w);
    const NSRect room = server().screens().front().visibleFrame;
    const NSEdgeInsets frame = server().frameInsets(w);
    EXPECT_EQ(zoomed.rect.size.height + frame.top + frame.bottom, NSHeight(room));
    server().zoom(w);
    const Event back = waitFor("zoom back", Kind::resized, w);
    EXPECT_EQ(back.rect, resized.rect);
}

TEST_F(QtWindowServerTest, aMiniaturizedWindowComesBack) {
    const WindowId w = open(specOf("mini", {{200, 300}, {100, 100}}), red);
    server().miniaturize(w, true);
    waitFor("miniaturization", Kind::miniaturized, w);
    server().miniaturize(w, false);
    waitFor("return", Kind::deminiaturized, w);
    if (count(Kind::exposed, w) < 2) waitFor("expose", Kind::exposed, w);
    EXPECT_EQ(seen.back().rect, NSZeroRect) << "nothing needs to be presented again";
    EXPECT_EQ(server().capture(w)->pixel(50, 50), red);
}

TEST_F(QtWindowServerTest, theFocusGoesFromOneWindowToTheOther) {
    const WindowId first = open(specOf("first", {{100, 300}, {100, 100}}), red);
    const WindowId second = open(specOf("second", {{400, 300}, {100, 100}}), blue);
    EXPECT_EQ(count(Kind::focusOut, first), 1u);
    activateForGood(first);
    EXPECT_EQ(count(Kind::focusOut, second), count(Kind::focusIn, second));

    WindowSpec panel = specOf("panel", {{700, 300}, {100, 100}}, WindowKind::popup);
    panel.titled = false;
    panel.acceptsFocus = false;
    const std::size_t before = count(Kind::focusOut, first);
    const WindowId third = open(panel, green, false);
    click({750, 350});
    waitFor("click", Kind::mouseUp, third);
    EXPECT_EQ(count(Kind::focusOut, first), before) << "a panel that takes no focus leaves it where it is";
}

TEST_F(QtWindowServerTest, clicksArriveInBaseCoordinates) {
    const WindowId w = open(specOf("clicked", {{200, 300}, {200, 100}}), red);
    click({230, 320}, 2);
    waitFor("press", Kind::mouseDown, w);
    waitFor("release", Kind::mouseUp, w);
    const Event again = waitFor("second press", Kind::mouseDown, w);
    const Event last = waitFor("second release", Kind::mouseUp, w);
    EXPECT_EQ(again.position, NSMakePoint(30, 20));
    EXPECT_EQ(again.screenPosition, NSMakePoint(230, 320));
    EXPECT_EQ(again.button, 0);
    EXPECT_EQ(again.buttonsDown, 1u);
    EXPECT_EQ(last.buttonsDown, 0u);
    EXPECT_EQ(count(Kind::mouseDown, w), 2u) << "a double click is two presses";
    EXPECT_GE(count(Kind::mouseEntered, w), 1u);
    EXPECT_LT(again.time - seen.front().time, patience);

    struct Row {
        const char* wheel;
        double x, y; ///< their signs: downward shows what is below
        std::uint32_t modifiers;
    };
    for (const Row& row : {Row{"click 5", 0, -1, 0}, Row{"click 4", 0, 1, 0}, Row{"click 7", -1, 0, 0},
                           Row{"click 6", 1, 0, 0}, Row{"keydown shift click 5 keyup shift", 0, -1, modifierShift}}) {
        run(std::string("xdotool ") + row.wheel);
        const Event wheel = waitFor(row.wheel, Kind::wheel, w);
        EXPECT_TRUE(wheel.deltaX * row.x > 0 || (row.x == 0 && wheel.deltaX == 0)) << row.wheel;
        EXPECT_TRUE(wheel.deltaY * row.y > 0 || (row.y == 0 && wheel.deltaY == 0)) << row.wheel;
        EXPECT_EQ(wheel.modifiers, row.modifiers) << row.wheel;
        EXPECT_FALSE(wheel.precise);
    }
}

TEST_F(QtWindowServerTest, aGrabHearsOfClicksOutside) {
    const WindowId owner = open(specOf("owner", {{200, 300}, {200, 100}}), red);
    WindowSpec spec = specOf("menu", {{500, 300}, {50, 50}}, WindowKind::menu);
    spec.acceptsFocus = false;
    spec.parent = owner;
    const WindowId menu = open(spec, blue, false);
    server().grabMouse(menu, true);
    click({210, 310});
    const Event press = waitFor("press", Kind::mouseDown, menu);
    EXPECT_EQ(press.position, NSMakePoint(-290, 10));
    server().grabMouse(menu, false);
    waitFor("release", Kind::mouseUp, menu);
    click({215, 310});
    waitFor("press", Kind::mouseDown, owner);
}

TEST_F(QtWindowServerTest, theFrontWindowThatListensIsClicked) {
    const WindowId low = open(specOf("low", {{200, 300}, {200, 200}}), red);
    WindowSpec spec = specOf("high", {{250, 350}, {200, 200}}, WindowKind::utility);
    spec.titled = false;
    const WindowId high = server().create(spec);
    server().setLevel(high, 3);
    server().show(high, false);
    fill(high, {{}, {200, 200}}, blue);
    waitFor("expose", Kind::exposed, high);

    server().raise(low);
    server().activate(low);
    click({300, 400});
    waitFor("click on the floating window", Kind::mouseUp, high);
    EXPECT_EQ(count(Kind::mouseDown, low), 0u);

    server().setIgnoresMouse(high, true);
    clickUntilItReaches(low, {301, 400});
    server().setIgnoresMouse(high, false);
    clickUntilItReaches(high, {302, 400});

    const Path corner{{PathVerb::move, PathVerb::line, PathVerb::line, PathVerb::line, PathVerb::close},
                      {{100, 100}, {200, 100}, {200, 200}, {100, 200}}};
    server().setShape(high, &corner);
    clickUntilItReaches(low, {303, 400});
    clickUntilItReaches(high, {360, 460});
}

TEST_F(QtWindowServerTest, keysArriveAsCharacters) {
    const WindowId w = open(specOf("keys", {{200, 300}, {200, 100}}), red);
    struct Row {
        const char* keys;
        std::u16string characters, ignoring;
        std::uint32_t modifiers;
    };
    const Row rows[] = {
        {"a", u"a", u"a", 0},
        {"shift+b", u"B", u"B", modifierShift},
        {"ctrl+c", u"c", u"c", modifierCommand},
        {"ctrl+shift+z", u"Z", u"Z", modifierCommand | modifierShift},
        {"super+k", u"\x0B", u"k", modifierControl},
        {"Left", u"\uF702", u"\uF702", modifierFunction | modifierNumericPad},
        {"F5", u"\uF708", u"\uF708", modifierFunction},
        {"Delete", u"\uF728", u"\uF728", modifierFunction},
        {"BackSpace", u"\x7F", u"\x7F", 0},
        {"Return", u"\r", u"\r", 0},
        {"KP_Enter", u"\x03", u"\x03", modifierNumericPad},
        {"shift+Tab", u"\x19", u"\x19", modifierShift},
        {"Escape", u"\x1B", u"\x1B", 0},
    };
    // The window manager keeps some combinations for itself.
    for (const Row& row : rows) {
        run(std::string("xdotool key ") + row.keys);
        const Event down = waitFor(row.keys, Kind::keyDown, w);
        ASSERT_FALSE(HasFailure());
        EXPECT_EQ(down.characters, row.characters) << row.keys;
        EXPECT_EQ(down.charactersIgnoringModifiers, row.ignoring) << row.keys;
        EXPECT_EQ(down.modifiers, row.modifiers) << row.keys;
        waitFor(row.keys, Kind::keyUp, w);
    }
    run("xdotool keydown shift");
    EXPECT_EQ(waitFor("shift", Kind::modifiers, w).modifiers, std::uint32_t{modifierShift});
    run("xdotool keyup shift");
    EXPECT_EQ(waitFor("shift up", Kind::modifiers, w).modifiers, 0u);
}

TEST_F(QtWindowServerTest, aDeadKeyAndItsLetterAreOneCommit) {
    run("setxkbmap us intl");
    const WindowId w = open(specOf("dead", {{200, 300}, {200, 100}}), red);
    server().setTextInput(w, true, {{10, 10}, {1, 12}});
    run("xdotool key dead_acute e");
    EXPECT_EQ(waitFor("commit", Kind::textCommit, w).characters, u"\u00E9");
    EXPECT_EQ(count(Kind::keyDown, w), 0u);
    // A key of its own is an ordinary key.
    run("setxkbmap ca");
    run("xdotool key eacute");
    EXPECT_EQ(waitFor("key", Kind::keyDown, w).characters, u"\u00E9");
    run("setxkbmap us");
}

TEST_F(QtWindowServerTest, closingIsAWishOnly) {
    const WindowId w = open(specOf("closing", {{200, 300}, {200, 100}}), red);
    run("xdotool key alt+F4");
    waitFor("close request", Kind::closeRequest, w);
    EXPECT_EQ(server().capture(w)->pixel(5, 5), red) << "still there";
}

TEST_F(QtWindowServerTest, theWindowManagerIsTold) {
    const WindowId parent = open(specOf("parent", {{200, 300}, {200, 100}}), red);
    WindowSpec spec = specOf("child", {{450, 300}, {100, 100}});
    spec.parent = parent;
    const WindowId child = server().create(spec);
    server().setAllDesktops(child, true);
    server().setOpacity(child, 0.5);
    server().show(child, false);
    fill(child, {{}, {100, 100}}, blue);
    waitFor("expose", Kind::exposed, child);

    const std::string owner = run("xprop -name parent WM_CLIENT_LEADER >/dev/null; xdotool search --name '^parent$'");
    char hexadecimal[32];
    std::snprintf(hexadecimal, sizeof hexadecimal, "0x%lx", std::stoul(owner));
    EXPECT_NE(run("xprop -name child WM_TRANSIENT_FOR").find(hexadecimal), std::string::npos);
    EXPECT_NE(run("xprop -name child _NET_WM_DESKTOP").find("= 4294967295"), std::string::npos);
    EXPECT_NE(run("xprop -name child _NET_WM_WINDOW_OPACITY").find("= 21474"), std::string::npos);
    // Half of the range, and without an event loop in between: a blocking fade.
    server().setOpacity(child, 0.25);
    EXPECT_NE(run("xprop -name child _NET_WM_WINDOW_OPACITY").find("= 10737"), std::string::npos);
    server().destroy(parent);
    EXPECT_EQ(server().capture(child)->pixel(5, 5), blue) << "a child outlives its parent";
}

TEST_F(QtWindowServerTest, aWaitEndsAtItsDeadlineOrByAWakeFromAnotherThread) {
    (void)open(specOf("waiting", {{200, 300}, {100, 100}}), red);
    Event event;
    // What is still on its way from opening the window.
    while (server().next(event, server().now() + 0.3)) {
    }
    const Time deadline = server().now() + 0.0205;
    EXPECT_FALSE(server().next(event, deadline));
    EXPECT_GE(server().now(), deadline);

    std::thread other([] { server().wake(); });
    EXPECT_FALSE(server().next(event, never));
    other.join();
}

TEST_F(QtWindowServerTest, theWindowManagerMovesAWindowWithThePointer) {
    const WindowId w = open(specOf("dragged", {{200, 300}, {200, 100}}), red);
    const int top = static_cast<int>(NSMaxY(server().screens().front().frame));
    const std::string y = " " + std::to_string(top - 320);
    const Time end = server().now() + patience;
    // The manager takes the pointer in its own time, and may tell of the move only at its end.
    while (count(Kind::moved, w) == 0 && server().now() < end) {
        run("xdotool mousemove 230" + y + " mousedown 1");
        waitFor("press", Kind::mouseDown, w);
        server().startMove(w);
        for (int x = 240; x <= 320; x += 20) {
            run("xdotool mousemove " + std::to_string(x) + y);
            pump(0.05);
        }
        run("xdotool mouseup 1");
        pump(0.2);
    }
    EXPECT_GT(server().content(w).origin.x, 200);
    EXPECT_EQ(server().content(w).size, NSMakeSize(200, 100));
    EXPECT_EQ(count(Kind::focusOut, w), 0u) << "the manager held the keyboard, the window stayed the active one";
    EXPECT_EQ(count(Kind::focusIn, w), 1u);
}

TEST_F(QtWindowServerTest, aForeignCopyIsTold) {
    Clipboard& clipboard = *Backend::current().clipboard;
    clipboard.set({{"text/plain", {'a'}}});
    const auto before = clipboard.changeCount();
    const std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> other(xcb_connect(nullptr, nullptr),
                                                                               xcb_disconnect);
    ASSERT_EQ(xcb_connection_has_error(other.get()), 0);
    const xcb_window_t window = xcb_generate_id(other.get());
    xcb_create_window(other.get(), XCB_COPY_FROM_PARENT, window,
                      xcb_setup_roots_iterator(xcb_get_setup(other.get())).data->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    const std::string name = "CLIPBOARD";
    const auto cookie = xcb_intern_atom(other.get(), 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    const std::unique_ptr<xcb_intern_atom_reply_t, void (*)(void*)> atom(
        xcb_intern_atom_reply(other.get(), cookie, nullptr), std::free);
    xcb_set_selection_owner(other.get(), window, atom->atom, XCB_CURRENT_TIME);
    xcb_flush(other.get());
    waitFor("change of the clipboard", [](const Event& e) { return e.kind == Kind::clipboardChanged; });
    EXPECT_EQ(clipboard.changeCount(), before + 1);
}

TEST_F(QtWindowServerTest, theClipboardHoldsSeveralTypesAtOnce) {
    Clipboard& clipboard = *Backend::current().clipboard;
    const auto before = clipboard.changeCount();
    const std::vector<std::uint8_t> rtf{'{', '}'};
    clipboard.set({{"text/plain", {'a', 'b'}}, {"text/rtf", rtf}});
    EXPECT_EQ(clipboard.changeCount(), before + 1);
    EXPECT_EQ(clipboard.read("text/rtf"), rtf);
    EXPECT_TRUE(clipboard.read("text/html").empty());
    clipboard.set({});
    EXPECT_TRUE(clipboard.read("text/plain").empty());
    EXPECT_EQ(clipboard.changeCount(), before + 2);
}

} // namespace

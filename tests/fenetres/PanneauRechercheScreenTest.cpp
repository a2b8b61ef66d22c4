#include "EcranFixture.h"

#include <cstdlib>
#include <filesystem>

#include <unistd.h>

#include <libvue/platform/backend/FileClipboard.h>

using namespace libvue;
using namespace libvue::test;

namespace {

/// What the session shares, apart from the session of whoever runs the tests.
struct Session {
    std::filesystem::path folder = std::filesystem::temp_directory_path() / ("session-" + std::to_string(::getpid()));
    Session() {
        std::filesystem::create_directories(folder);
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
        if (const char* before = std::getenv("XDG_RUNTIME_DIR")) before_ = before;
        ::setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
    }
    ~Session() {
        if (before_.empty())
            ::unsetenv("XDG_RUNTIME_DIR");
        else
            ::setenv("XDG_RUNTIME_DIR", before_.c_str(), 1);
        std::filesystem::remove_all(folder);
    }

private:
    std::string before_;
};

struct Application {
    std::string process, window;
    [[nodiscard]] std::string windowNamed(const std::string& name) const {
        const std::string found = output("xdotool search --onlyvisible --all --pid " + process + " --name " + name);
        return found.find_first_of("0123456789") == 0 ? found.substr(0, found.find('\n')) : "";
    }
};

struct PanneauRechercheScreenTest : Session, EcranFixture {
    Application first = started(), second = started();

    ~PanneauRechercheScreenTest() override { output("kill " + first.process + " " + second.process); }
    static Application started() {
        const char* examples = std::getenv("LIBVUE_EXAMPLES");
        const std::string program = std::string(examples ? examples : ".") + "/galerie";
        Application a;
        a.process = output(program + " --page Recherche >/dev/null 2>&1 & echo $!");
        a.process.erase(a.process.find_last_not_of('\n') + 1);
        EXPECT_TRUE(comes([&] { return !(a.window = a.windowNamed("Galerie")).empty(); })) << program;
        return a;
    }
    static bool isActive(const std::string& window) {
        const std::string active = output("xdotool getactivewindow");
        return !window.empty() && active.substr(0, active.find('\n')) == window;
    }
    /// Its find panel comes up with the keyboard alone.
    static void openPanel(const Application& a) {
        output("xdotool windowactivate " + a.window);
        ASSERT_TRUE(comes([&] { return isActive(a.window); }));
        output("xdotool key ctrl+f");
        ASSERT_TRUE(comes([&] { return isActive(a.windowNamed("^Rechercher$")); }));
    }
    /// Return searches, and closes the panel where the text was found.
    static void search(const Application& a) {
        output("xdotool key Return");
        ASSERT_TRUE(comes([&] { return a.windowNamed("^Rechercher$").empty(); }));
    }
    static std::string findText() {
        const auto bytes = backend::Backend::current().findText->read("text/plain");
        return {bytes.begin(), bytes.end()};
    }
};

TEST_F(PanneauRechercheScreenTest, TwoApplicationsShareTheFindText) {
    openPanel(first);
    output("xdotool type oeuf");
    search(first);
    EXPECT_EQ(findText(), "oeuf");

    // What the other one adds a letter to is what the first one sought.
    openPanel(second);
    output("xdotool key End; xdotool type s");
    search(second);
    EXPECT_EQ(findText(), "oeufs");
    openPanel(first);
    search(first);
    EXPECT_EQ(findText(), "oeufs");
}

} // namespace

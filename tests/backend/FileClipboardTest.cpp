#include <libvue/platform/backend/FileClipboard.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace libvue::backend;
using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;

namespace {

class FileClipboardTest : public testing::Test {
protected:
    std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("presse-papier-" + std::to_string(::getpid()));
    std::string path = (folder / "commun").string();

    void SetUp() override { std::filesystem::create_directories(folder); }
    void TearDown() override { std::filesystem::remove_all(folder); }

    static std::string text(Clipboard& c, const char* type = "text/plain") {
        const auto bytes = c.read(type);
        return {bytes.begin(), bytes.end()};
    }
    static void set(Clipboard& c, const std::string& text) { c.set({{"text/plain", {text.begin(), text.end()}}}); }
};

TEST_F(FileClipboardTest, TwoApplicationsSeeEachOther) {
    FileClipboard first(path), second(path);
    EXPECT_THAT(first.types(), IsEmpty());
    EXPECT_EQ(first.changeCount(), 0u);
    set(first, "été\n\0fin"s);
    EXPECT_EQ(first.changeCount(), 1u) << "its own change is one";
    EXPECT_EQ(second.changeCount(), 1u);
    EXPECT_EQ(text(second), text(first));
    second.set({{"text/plain", {'a'}}, {"text/rtf; charset=utf-8", {'b', '\n', 0, 'c'}}, {"bad\ntype", {'d'}}});
    EXPECT_EQ(first.changeCount(), 2u);
    EXPECT_THAT(first.types(), ElementsAre("text/plain", "text/rtf; charset=utf-8"));
    EXPECT_EQ(text(first, "text/rtf; charset=utf-8"), std::string("b\n\0c", 4));
    EXPECT_EQ(first.changeCount(), 2u) << "reading is no change";
    first.set({});
    EXPECT_THAT(second.types(), IsEmpty());

    FileClipboard third(path);
    EXPECT_EQ(third.changeCount(), 1u) << "what stood there before it came";
    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST_F(FileClipboardTest, WhatItCannotReadIsNothing) {
    const std::string head = "libvue-pasteboard 1\n";
    const std::pair<std::string, std::string> rows[] = {
        {"", ""},
        {"something else\ntext/plain 1\na", ""},
        {head + "text/plain 2\na", ""},
        {head + "text/plain -1\na", ""},
        {head + "text/plain 99999999999999999999\na", ""},
        {head + "text/plain\na", ""},
        {head + "text/plain 1", ""},
        {head + "text/plain 1\na" + "text/rtf 5\nb", "a"}, // what came before the damage is good
    };
    FileClipboard board(path);
    for (const auto& [bytes, expected] : rows) {
        std::filesystem::remove(path);
        std::ofstream(path) << bytes;
        EXPECT_EQ(text(board), expected) << bytes;
    }
    std::filesystem::remove(path);
    EXPECT_THAT(board.types(), IsEmpty());
    std::filesystem::create_directory(path);
    EXPECT_THAT(board.types(), IsEmpty());
}

TEST_F(FileClipboardTest, WithoutAFileItIsOfThisProcess) {
    for (const std::string& nowhere : {std::string(), (folder / "absent" / "commun").string()}) {
        FileClipboard board(nowhere);
        set(board, "mot");
        EXPECT_EQ(text(board), "mot");
        EXPECT_EQ(board.changeCount(), 1u);
    }
}

} // namespace

#include <support/Folder.h>
#include <support/Silence.h>
#include <support/TestBackend.h>

#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/ThumbnailLoader.h>

using namespace libvue;
using namespace libvue::test;

namespace {

struct ThumbnailLoaderTest : MemoryFixture {
    Folder folder;
    Ref<ThumbnailLoader> loader = make<ThumbnailLoader>();
    std::vector<std::string> told;

    [[nodiscard]] Ref<NSString> picture(const char* name, double width, double height, const char* format) const {
        auto& graphics = *backend::Backend::current().graphics;
        const auto p = graphics.makePicture({width, height}, 1);
        graphics.canvasOn(p)->fillRect({{0, 0}, {width, height}}, backend::Color{1, 0, 0, 1});
        return file(name, graphics.encode(*p, format));
    }
    [[nodiscard]] Ref<NSString> file(const char* name, const std::vector<std::uint8_t>& bytes) const {
        folder.write(name, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        return folder.at(name);
    }
    static std::string say(const NSImage* image, const std::string& error) {
        if (!image) return error.empty() ? "?" : "error";
        const NSSize s = image->size();
        return std::to_string(static_cast<int>(s.width)) + "x" + std::to_string(static_cast<int>(s.height));
    }
    ThumbnailLoader::Ticket ask(const NSString* path, const char* as, CGFloat scale = 1) {
        return loader->load(path, {40, 40}, scale, [this, as](NSImage* image, const std::string& error) {
            told.push_back(std::string(as) + " " + say(image, error));
        });
    }
    void finish() const {
        loader->wait();
        (void)NSRunLoop::mainRunLoop()->runOnce(NSRunLoop::mainRunLoop()->now());
    }
};

TEST_F(ThumbnailLoaderTest, FilesBecomeSmallImagesInTheirShape) {
    const Silence quiet;
    struct Row {
        Ref<NSString> path;
        CGFloat scale;
        const char* expected;
    };
    const Row rows[] = {
        {picture("a.png", 400, 200, "png"), 1, "x 40x20"},
        {picture("b.jpg", 100, 800, "jpeg"), 2, "x 5x40"},
        {picture("c.png", 30, 20, "png"), 1, "x 30x20"},
        {picture("d.png", 3000, 1, "png"), 1, "x 40x1"},
        {file("e.png", {0x89, 'P', 'N', 'G'}), 1, "x error"},
        {file("f.png", {}), 1, "x error"},
        {folder.at(), 1, "x error"},
        {u"/dev/zero"_ns, 1, "x error"},
        {u""_ns, 1, "x error"},
    };
    for (const Row& row : rows) {
        (void)ask(row.path, "x", row.scale);
        EXPECT_TRUE(told.empty()) << "never within the call";
        finish();
        EXPECT_EQ(told, std::vector<std::string>{row.expected}) << row.path->utf8();
        told.clear();
        std::string error;
        const auto atOnce = ThumbnailLoader::read(row.path, {40, 40}, row.scale, &error);
        EXPECT_EQ("x " + say(atOnce, error), row.expected) << row.path->utf8();
    }
}

TEST_F(ThumbnailLoaderTest, WhatIsCancelledIsNotTold) {
    const auto path = picture("a.png", 40, 40, "png");
    const auto first = ask(path, "1");
    const auto second = ask(path, "2");
    (void)ask(path, "3");
    loader->cancel(second);
    loader->cancel(second);
    EXPECT_EQ(loader->waiting(), 2u);
    loader->wait();
    loader->cancel(first); // read already, and still not told
    finish();
    EXPECT_EQ(told, std::vector<std::string>{"3 40x40"});
    EXPECT_EQ(loader->waiting(), 0u);
    (void)ask(path, "4");
    loader->wait();
    loader = nullptr;
    (void)NSRunLoop::mainRunLoop()->runOnce(NSRunLoop::mainRunLoop()->now());
    EXPECT_EQ(told.size(), 1u) << "nor once the loader is gone";
}

} // namespace

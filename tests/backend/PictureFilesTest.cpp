#include <algorithm>
#include <array>
#include <cstring>

#include "Surface.h"
#include "support/Silence.h"

using namespace libvue;
using namespace libvue::test;
using backend::Color;
using backend::Compositing;

namespace {

std::vector<std::uint8_t> sample(std::string_view format) {
    const Surface s(6, 4, 2);
    s.canvas->fillRect({{0, 0}, {6, 4}}, {0.2, 0.4, 0.6, 1});
    s.canvas->fillRect({{0, 0}, {2, 2}}, {1, 0, 0, 0.5}, Compositing::copy);
    return graphics().encode(*s.picture, format);
}

std::shared_ptr<backend::Picture> decode(const std::vector<std::uint8_t>& bytes, std::string* error = nullptr) {
    return graphics().decode(bytes, error);
}

TEST(PictureFiles, whatIsWrittenIsReadBack) {
    struct Row {
        std::string_view format;
        bool alpha;
        double tolerance;
    };
    for (const Row& row : {Row{"png", true, 0.01}, Row{"jpeg", false, 0.1}, Row{"bmp", false, 0.05}}) {
        SCOPED_TRACE(row.format);
        const auto picture = decode(sample(row.format));
        ASSERT_NE(picture, nullptr);
        EXPECT_EQ(picture->pixelWidth(), 12);
        EXPECT_EQ(picture->hasAlpha(), row.alpha);
        EXPECT_NEAR(picture->pixel(10, 1).blue, 0.6, row.tolerance);
        EXPECT_NEAR(picture->pixel(1, 7).alpha, row.alpha ? 0.5 : 1, 0.01);
        EXPECT_NEAR(picture->pixel(1, 7).red, 1, row.tolerance);
        // Without alpha, the red shines on white.
        EXPECT_NEAR(picture->pixel(1, 7).green, row.alpha ? 0 : 0.5, row.tolerance);
    }
    EXPECT_NEAR(decode(sample("png"))->size().width, 6, 0.01) << "two pixels a point";
    EXPECT_TRUE(sample("no such format").empty());
}

TEST(PictureFiles, bytesCutAnywhereGiveNoPictureOrAWholeOne) {
    const Silence silence;
    for (const std::string_view format : {"png", "jpeg", "bmp"}) {
        const auto whole = sample(format);
        for (std::size_t n = 0; n < whole.size(); ++n) {
            std::string error;
            const auto picture = decode({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n)}, &error);
            if (picture == nullptr)
                EXPECT_FALSE(error.empty()) << format << n;
            else
                EXPECT_EQ(picture->pixelWidth(), 12) << format << n;
        }
    }
    EXPECT_EQ(decode({}), nullptr);
}

TEST(PictureFiles, damagedBytesDoNoHarm) {
    const Silence silence;
    const auto whole = sample("png");
    for (std::size_t i = 0; i < whole.size(); ++i)
        for (const std::uint8_t flip : {0xff, 0x01, 0x80}) {
            auto bytes = whole;
            bytes[i] ^= flip;
            const auto picture = decode(bytes);
            if (picture) {
                EXPECT_LE(picture->pixelWidth() * static_cast<double>(picture->pixelHeight()), 1e8);
            }
        }
}

std::uint32_t checkSum(const std::uint8_t* bytes, std::size_t count) {
    std::uint32_t crc = 0xffffffffu;
    for (std::size_t i = 0; i < count; ++i) {
        crc ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) != 0 ? (crc >> 1) ^ 0xedb88320u : crc >> 1;
    }
    return ~crc;
}

TEST(PictureFiles, announcedSizesBeyondReasonAreRefusedWithAReason) {
    const Silence silence;
    const auto announce = [](std::uint32_t side) {
        auto bytes = sample("png");
        const auto write = [&](std::size_t at, std::uint32_t v) {
            for (std::size_t i = 0; i < 4; ++i)
                bytes[at + i] = static_cast<std::uint8_t>(v >> (24 - 8 * i));
        };
        constexpr std::size_t header = 12; // "IHDR", then width and height
        write(header + 4, side);
        write(header + 8, side);
        write(header + 17, checkSum(bytes.data() + header, 17));
        return bytes;
    };
    std::string error;
    EXPECT_EQ(decode(announce(20000), &error), nullptr);
    EXPECT_NE(error.find("too large: 20000 by 20000"), std::string::npos) << error;
    EXPECT_EQ(decode(announce(0x7fffffff), &error), nullptr);
}

TEST(PictureFiles, surfacesBeyondReasonAreRefused) {
    const double nan = std::nan("");
    for (const auto& [width, height, scale] : {std::array{1e6, 1e6, 1.0},
                                               {0.0, 10.0, 1.0},
                                               {-1.0, 10.0, 1.0},
                                               {10.0, 10.0, 0.0},
                                               {10.0, nan, 1.0},
                                               {10.0, 10.0, nan}})
        EXPECT_EQ(graphics().makePicture({width, height}, scale), nullptr) << width << " " << height << " " << scale;
    const auto fraction = graphics().makePicture({10.5, 10.2}, 1);
    ASSERT_NE(fraction, nullptr);
    EXPECT_EQ(fraction->pixelWidth(), 11);
    EXPECT_EQ(fraction->pixelHeight(), 11);
    const std::array<std::uint32_t, 3> few{};
    EXPECT_EQ(graphics().makePicture(few, 2, 2, {2, 2}), nullptr);
}

TEST(PictureFiles, aCopySharesNothing) {
    const Surface s;
    s.canvas->fillRect({{0, 0}, {20, 20}}, red);
    const auto copy = graphics().copy(*s.picture);
    s.canvas->fillRect({{0, 0}, {20, 20}}, blue);
    EXPECT_EQ(copy->pixel(3, 3), red);
    graphics().clear(*s.picture, {{0, 0}, {10, 20}});
    EXPECT_EQ(s.hex(9, 3), "00000000");
    EXPECT_EQ(s.hex(10, 3), "0000ffff");
    graphics().clear(*s.picture, {});
    EXPECT_EQ(s.coverage(), 0);
}

bool holds(const std::vector<std::uint8_t>& bytes, std::string_view text) {
    return std::search(bytes.begin(), bytes.end(), text.begin(), text.end()) != bytes.end();
}

TEST(Pages, textStaysTextAndWhatCannotBeComposedBecomesAPicture) {
    const auto text = backend::makeRasterText();
    const auto page = [&](bool darker) {
        auto pdf = graphics().makePDF({200, 100}, "Essai");
        backend::TextRun run;
        run.range = {0, 5};
        run.font = text->font("Times", 12, 0);
        backend::TextInput input;
        input.text = u"Titre";
        input.runs = {&run, 1};
        pdf.canvas->drawText(*text->layout(input), {10, 90}, backend::YAxis::up);
        pdf.canvas->fillRect({{10, 10}, {50, 20}}, red, darker ? Compositing::plusDarker : Compositing::sourceOver);
        graphics().beginPage(pdf);
        pdf.canvas->strokeLine({0, 0}, {200, 100}, {}, blue);
        return graphics().finish(pdf);
    };
    const auto plain = page(false);
    EXPECT_TRUE(holds(plain, "%PDF-"));
    EXPECT_TRUE(holds(plain, "/Count 2"));
    EXPECT_TRUE(holds(plain, "/FontFile"));
    EXPECT_FALSE(holds(plain, "/Subtype /Image"));
    EXPECT_TRUE(holds(page(true), "/Subtype /Image"));
}

} // namespace

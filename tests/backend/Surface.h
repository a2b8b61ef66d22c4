#pragma once

#include <cmath>
#include <cstdio>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <libvue/platform/backend/Backend.h>

namespace libvue::test {

/// The raster engine, one for all tests.
inline backend::GraphicsEngine& graphics() {
    static const std::unique_ptr<backend::GraphicsEngine> engine = backend::makeRasterGraphics();
    return *engine;
}

/// Pixels and a canvas on them. Positions are in pixels from the lower left corner, as the canvas has them at scale 1.
struct Surface {
    std::shared_ptr<backend::Picture> picture;
    std::unique_ptr<backend::Canvas> canvas;

    explicit Surface(double width = 20, double height = 20, double scale = 1)
        : picture(graphics().makePicture({width, height}, scale)), canvas(graphics().canvasOn(picture)) {}

    [[nodiscard]] backend::Color at(int x, int y) const { return picture->pixel(x, picture->pixelHeight() - 1 - y); }
    [[nodiscard]] std::string hex(int x, int y) const {
        const backend::Color c = at(x, y);
        char out[16];
        const auto byte = [](double v) { return static_cast<unsigned>(std::lround(v * 255)); };
        std::snprintf(out, sizeof out, "%02x%02x%02x%02x", byte(c.red), byte(c.green), byte(c.blue), byte(c.alpha));
        return out;
    }
    /// The sum of all alphas, in whole pixels.
    [[nodiscard]] double coverage() const {
        double sum = 0;
        for (int y = 0; y < picture->pixelHeight(); ++y)
            for (int x = 0; x < picture->pixelWidth(); ++x)
                sum += picture->pixel(x, y).alpha;
        return sum;
    }
    [[nodiscard]] std::string rows() const {
        std::string out;
        const auto* p = picture->pixels();
        out.assign(reinterpret_cast<const char*>(p), static_cast<std::size_t>(picture->pixelWidth()) *
                                                         static_cast<std::size_t>(picture->pixelHeight()) * 4);
        return out;
    }
};

inline constexpr backend::Color red{1, 0, 0, 1};
inline constexpr backend::Color green{0, 1, 0, 1};
inline constexpr backend::Color blue{0, 0, 1, 1};
inline constexpr backend::Color white{1, 1, 1, 1};
inline constexpr backend::Color black{0, 0, 0, 1};

/// A closed triangle.
inline backend::Path triangle(NSPoint a, NSPoint b, NSPoint c) {
    using backend::PathVerb;
    return {{PathVerb::move, PathVerb::line, PathVerb::line, PathVerb::close}, {a, b, c}};
}

} // namespace libvue::test

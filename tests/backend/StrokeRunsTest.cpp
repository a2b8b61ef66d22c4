#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "Surface.h"

using namespace libvue;
using namespace libvue::test;
using backend::Color;
using backend::LineJoin;
using backend::Path;
using backend::PathVerb;
using backend::Stroke;

namespace {

/// The largest difference of a channel between the path stroked and the same stroked without a shortcut, which a dash
/// without a gap has not, nor a kind of end that a closed outline does not show.
double difference(const Path& path, Stroke stroke, const Color& color, double scale = 1) {
    const Surface ours(120, 120, scale), slow(120, 120, scale);
    ours.canvas->fillRect({{0, 0}, {120, 120}}, {0.9, 0.8, 0.7, 1});
    slow.canvas->fillRect({{0, 0}, {120, 120}}, {0.9, 0.8, 0.7, 1});
    ours.canvas->stroke(path, stroke, color);
    if (path.verbs.back() == PathVerb::close)
        stroke.cap = backend::LineCap::square;
    else
        stroke.dash = {1e6, 1};
    slow.canvas->stroke(path, stroke, color);
    double most = 0;
    for (int y = 0; y < ours.picture->pixelHeight(); ++y)
        for (int x = 0; x < ours.picture->pixelWidth(); ++x) {
            const Color a = ours.at(x, y), b = slow.at(x, y);
            most = std::max({most, std::abs(a.red - b.red), std::abs(a.green - b.green), std::abs(a.blue - b.blue)});
        }
    return most;
}

constexpr Color tinted{0.1, 0.2, 0.6, 0.4};
/// Two steps of 255: the rasterizer rounds the ends of its pieces.
constexpr double alike = 2.5 / 255;

Path lines(std::initializer_list<NSPoint> points, bool close) {
    Path p;
    p.points = points;
    p.verbs.assign(points.size(), PathVerb::line);
    p.verbs.front() = PathVerb::move;
    if (close) p.verbs.push_back(PathVerb::close);
    return p;
}

TEST(StrokeRuns, CoverWhatTheStrokeCoversAndNoPixelTwice) {
    Path balloon;
    using enum PathVerb;
    balloon.verbs = {move, line, curve, line, curve, line, curve, line, line, line, line, curve, close};
    balloon.points = {{109.5, 17.5}, {109.5, 102.5}, {109.5, 109.5}, {109.5, 109.5}, {102.5, 109.5},
                      {17.5, 109.5}, {10.5, 109.5},  {10.5, 109.5},  {10.5, 102.5},  {10.5, 17.5},
                      {10.5, 10.5},  {10.5, 10.5},   {17.5, 10.5},   {49.5, 10.5},   {59.5, 0.5},
                      {69.5, 10.5},  {102.5, 10.5},  {109.5, 10.5},  {109.5, 10.5},  {109.5, 17.5}};
    struct Case {
        const char* what;
        Path path;
        double width;
        LineJoin join;
    };
    for (const Case& c : {
             Case{"a balloon", balloon, 1, LineJoin::miter},
             Case{"a square that closes by itself",
                  lines({{10.5, 10.5}, {90.5, 10.5}, {90.5, 90.5}, {10.5, 90.5}}, true), 1, LineJoin::miter},
             Case{"an open corner", lines({{10.5, 10.5}, {90.5, 10.5}, {90.5, 90.5}}, false), 1, LineJoin::round},
             Case{"a wide one", lines({{10, 10}, {100, 10}, {100, 100}, {10, 100}}, true), 4, LineJoin::bevel},
             Case{"sharp points on its sides",
                  lines({{10.5, 10.5}, {60.5, 10.5}, {62.5, 100.5}, {64.5, 10.5}, {110.5, 10.5}}, false), 1,
                  LineJoin::miter},
             Case{"one that crosses itself",
                  lines({{10.5, 50.5}, {110.5, 50.5}, {110.5, 110.5}, {60.5, 110.5}, {60.5, 5.5}}, false), 1,
                  LineJoin::miter},
             Case{"there and back", lines({{10.5, 50.5}, {110.5, 50.5}, {30.5, 50.5}}, false), 1, LineJoin::miter},
             Case{"a frame between the columns", lines({{10.3, 10.5}, {60.8, 10.5}, {60.8, 40.5}, {10.3, 40.5}}, true),
                  1, LineJoin::miter},
             Case{"a frame over the edge", lines({{-1.3, 10.5}, {2.4, 10.5}, {2.4, 40.5}, {-1.3, 40.5}}, true), 1,
                  LineJoin::miter},
             Case{"a wide frame", lines({{10.9, 12}, {60.1, 12}, {60.1, 40}, {10.9, 40}}, true), 4, LineJoin::miter},
             Case{"a narrow frame", lines({{10.2, 12.5}, {12, 12.5}, {12, 40.5}, {10.2, 40.5}}, true), 1,
                  LineJoin::miter},
             Case{"between the pixels", lines({{10.25, 50.25}, {110, 50.25}, {110, 100}}, false), 1, LineJoin::miter},
         }) {
        Stroke stroke;
        stroke.width = c.width;
        stroke.join = c.join;
        EXPECT_LE(difference(c.path, stroke, tinted), alike) << c.what;
        EXPECT_LE(difference(c.path, stroke, tinted, 2), alike) << c.what << ", twice as fine";
    }
}

TEST(StrokeRuns, AnyStaircaseIsTheSame) {
    std::mt19937 random(77);
    std::uniform_int_distribution<int> place(2, 117);
    for (int i = 0; i < 60; ++i) {
        Path p;
        NSPoint at{place(random) + 0.5, place(random) + 0.5};
        p.verbs.push_back(PathVerb::move);
        p.points.push_back(at);
        for (int k = 0; k < 6; ++k) {
            (k % 2 ? at.x : at.y) = place(random) + 0.5;
            p.verbs.push_back(PathVerb::line);
            p.points.push_back(at);
        }
        p.verbs.push_back(PathVerb::close);
        EXPECT_LE(difference(p, {}, tinted), alike) << i;
    }
}

TEST(StrokeRuns, AnOutlineOfAnyLengthCostsWhatIsSeenOfIt) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    for (const double far : {1e6, 1e9, 1e18, 1e300, infinite}) {
        const Surface s(120, 120);
        s.canvas->stroke(lines({{10.5, 10.5}, {far, 10.5}, {far, far}, {10.5, far}}, true), {}, {0, 0, 0, 1});
        // Beyond what a rasterizer counts in, nothing shows.
        if (far > 1e6) continue;
        EXPECT_EQ(s.at(60, 10).alpha, 1) << far;
        EXPECT_EQ(s.at(10, 60).alpha, 1) << far;
        EXPECT_EQ(s.at(60, 60).alpha, 0) << far;
    }
}

} // namespace

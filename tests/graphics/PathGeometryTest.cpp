#include <cmath>
#include <random>

#include "Dessin.h"

#include <libvue/platform/graphics/CGContext.h>
#include <libvue/platform/graphics/PathGeometry.h>

using namespace libvue;
using backend::FillRule;
using backend::Path;
using backend::PathVerb;

namespace {

Path curve(NSPoint a, NSPoint b, NSPoint c, NSPoint d) { return {{PathVerb::move, PathVerb::curve}, {a, b, c, d}}; }

NSPoint onCurve(const Path& p, double t) {
    const double u = 1 - t;
    const auto mix = [&](auto f) {
        return u * u * u * f(p.points[0]) + 3 * u * u * t * f(p.points[1]) + 3 * u * t * t * f(p.points[2]) +
               t * t * t * f(p.points[3]);
    };
    return {mix([](NSPoint q) { return q.x; }), mix([](NSPoint q) { return q.y; })};
}

/// By adding up the angles under which the sides of the polygon are seen.
double turnsAround(const std::vector<NSPoint>& polygon, NSPoint p) {
    double sum = 0;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const NSPoint a = polygon[i], b = polygon[(i + 1) % polygon.size()];
        double d = std::atan2(b.y - p.y, b.x - p.x) - std::atan2(a.y - p.y, a.x - p.x);
        while (d > pi)
            d -= 2 * pi;
        while (d < -pi)
            d += 2 * pi;
        sum += d;
    }
    return sum / (2 * pi);
}

double distanceToSides(const std::vector<NSPoint>& polygon, NSPoint p) {
    double nearest = 1e9;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const NSPoint a = polygon[i], b = polygon[(i + 1) % polygon.size()];
        const double dx = b.x - a.x, dy = b.y - a.y, length = dx * dx + dy * dy;
        const double t = length == 0 ? 0 : std::min(1.0, std::max(0.0, ((p.x - a.x) * dx + (p.y - a.y) * dy) / length));
        nearest = std::min(nearest, std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy));
    }
    return nearest;
}

} // namespace

TEST(PathGeometryTest, boundsOfACurveAreThoseOfItsPoints) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> at(-100, 100);
    const auto point = [&] { return NSPoint{at(random), at(random)}; };
    for (int i = 0; i < 300; ++i) {
        const Path p = curve(point(), point(), point(), point());
        const NSRect bounds = outline::bounds(p);
        double left = 1e9, right = -1e9, low = 1e9, high = -1e9;
        for (int k = 0; k <= 2000; ++k) {
            const NSPoint q = onCurve(p, k / 2000.0);
            left = std::min(left, q.x), right = std::max(right, q.x);
            low = std::min(low, q.y), high = std::max(high, q.y);
        }
        // Never inside of what was sampled, and outside by no more than the samples can have missed.
        ASSERT_LE(NSMinX(bounds), left + 1e-9);
        ASSERT_GE(NSMaxX(bounds), right - 1e-9);
        ASSERT_NEAR(NSMinX(bounds), left, 1e-3);
        ASSERT_NEAR(NSMaxX(bounds), right, 1e-3);
        ASSERT_NEAR(NSMinY(bounds), low, 1e-3);
        ASSERT_NEAR(NSMaxY(bounds), high, 1e-3);
    }
}

TEST(PathGeometryTest, boundsOfSpecialOutlines) {
    struct Row {
        Path path;
        NSRect expected;
    };
    Path oval, trailing;
    outline::appendOval(oval, {{10, 20}, {30, 8}});
    outline::appendRect(trailing, {{0, 0}, {5, 5}});
    trailing.verbs.push_back(PathVerb::move);
    trailing.points.push_back({100, 100});
    const Row rows[] = {
        {{}, NSZeroRect},
        {oval, {{10, 20}, {30, 8}}},
        {trailing, {{0, 0}, {5, 5}}},                                    // a move that nothing follows
        {{{PathVerb::move}, {{3, 4}}}, {{3, 4}, {0, 0}}},                // one point
        {curve({0, 0}, {10, 0}, {20, 0}, {30, 0}), {{0, 0}, {30, 0}}},   // straight
        {curve({0, 0}, {0, 10}, {10, 10}, {10, 0}), {{0, 0}, {10, 7.5}}} // the middle at 3/4 of the handles
    };
    for (const Row& row : rows) {
        const NSRect b = outline::bounds(row.path);
        EXPECT_NEAR(NSMinX(b), NSMinX(row.expected), 1e-9);
        EXPECT_NEAR(NSMinY(b), NSMinY(row.expected), 1e-9);
        EXPECT_NEAR(NSWidth(b), NSWidth(row.expected), 1e-9);
        EXPECT_NEAR(NSHeight(b), NSHeight(row.expected), 1e-9);
    }
}

TEST(PathGeometryTest, containsAgreesWithThePolygonThatTheCurvesMake) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> at(0, 50);
    const auto point = [&] { return NSPoint{at(random), at(random)}; };
    for (int i = 0; i < 60; ++i) {
        Path path{{PathVerb::move}, {point()}};
        std::vector<NSPoint> polygon{path.points[0]};
        for (int side = 0; side < 5; ++side) {
            if (random() % 2) {
                path.verbs.push_back(PathVerb::line);
                path.points.push_back(point());
                polygon.push_back(path.points.back());
            } else {
                const NSPoint c1 = point(), c2 = point(), end = point();
                const Path piece = curve(path.points.back(), c1, c2, end);
                for (int k = 1; k <= 400; ++k)
                    polygon.push_back(onCurve(piece, k / 400.0));
                path.verbs.push_back(PathVerb::curve);
                path.points.insert(path.points.end(), {c1, c2, end});
            }
        }
        if (i % 2) path.verbs.push_back(PathVerb::close); // an open outline counts as closed
        for (int k = 0; k < 60; ++k) {
            const NSPoint p = point();
            if (distanceToSides(polygon, p) < 0.01) continue;
            const long turns = std::lround(turnsAround(polygon, p));
            ASSERT_EQ(outline::contains(path, p, FillRule::nonZero), turns != 0) << i << ' ' << k;
            ASSERT_EQ(outline::contains(path, p, FillRule::evenOdd), turns % 2 != 0) << i << ' ' << k;
        }
    }
}

TEST(PathGeometryTest, neighbouringRectanglesShareNoPoint) {
    Path left, right;
    outline::appendRect(left, {{0, 0}, {10, 10}});
    outline::appendRect(right, {{10, 0}, {10, 10}});
    for (const double y : {0.0, 5.0, 10.0})
        for (const double x : {0.0, 10.0, 20.0}) {
            const int n = outline::contains(left, {x, y}, FillRule::nonZero) +
                          outline::contains(right, {x, y}, FillRule::nonZero);
            EXPECT_LE(n, 1) << x << ' ' << y;
        }
    EXPECT_FALSE(outline::contains(left, {NAN, 5}, FillRule::nonZero));
}

TEST(PathGeometryTest, arcsEndWhereTheirAngleSays) {
    struct Row {
        double start, end;
        outline::Turn turn;
        double sweep; // what is really turned
        int curves;
    };
    using enum outline::Turn;
    const Row rows[] = {
        {0, 90, counterClockwise, 90, 1},    {90, 180, counterClockwise, 90, 1},
        {180, 270, counterClockwise, 90, 1}, {270, 360, counterClockwise, 90, 1},
        {0, 360, counterClockwise, 360, 4},  {30, 60, counterClockwise, 30, 1},
        {60, 30, counterClockwise, 330, 4},  {-30, 30, counterClockwise, 60, 1},
        {350, 10, counterClockwise, 20, 1},  {90, 0, clockwise, 90, 1},
        {0, 90, clockwise, 270, 3},          {0, -45, clockwise, 45, 1},
        {0, 1000, counterClockwise, 360, 4}, {0, 0, counterClockwise, 0, 0},
        {720, 730, counterClockwise, 10, 1}, {0, 90.0001, counterClockwise, 90.0001, 2},
    };
    for (const Row& row : rows) {
        Path path{{PathVerb::move}, {{0, 0}}};
        const NSPoint center{5, -3};
        outline::appendArc(path, center, 10, row.start, row.end, row.turn);
        EXPECT_EQ(path.verbs.size(), 1u + static_cast<std::size_t>(row.curves)) << row.start << " to " << row.end;
        if (row.curves == 0) continue;
        const double end = row.end * pi / 180;
        EXPECT_NEAR(path.points.back().x, 5 + 10 * std::cos(end), 1e-9) << row.start << " to " << row.end;
        EXPECT_NEAR(path.points.back().y, -3 + 10 * std::sin(end), 1e-9) << row.start << " to " << row.end;
        // The middle of the first curve lies on the circle, in the direction of the turn.
        const NSPoint d = outline::directionAtDegrees(row.start);
        Path first = curve({5 + 10 * d.x, -3 + 10 * d.y}, path.points[1], path.points[2], path.points[3]);
        const NSPoint m = onCurve(first, 0.5);
        EXPECT_NEAR(std::hypot(m.x - 5, m.y + 3), 10, 0.01);
        const double half = row.sweep / row.curves / 2 * (row.turn == counterClockwise ? 1 : -1);
        const double angle = (row.start + half) * pi / 180;
        EXPECT_NEAR(m.x, 5 + 10 * std::cos(angle), 0.01) << row.start << " to " << row.end;
        EXPECT_NEAR(m.y, -3 + 10 * std::sin(angle), 0.01) << row.start << " to " << row.end;
    }
}

TEST(PathGeometryTest, flatteningStaysNearTheCurve) {
    const Path p = curve({0, 0}, {0, 100}, {100, 100}, {100, 0});
    const Path flat = outline::flattened(p, 0.1);
    EXPECT_EQ(flat.verbs.front(), PathVerb::move);
    EXPECT_EQ(flat.points.back(), (NSPoint{100, 0}));
    for (std::size_t i = 1; i < flat.verbs.size(); ++i)
        ASSERT_EQ(flat.verbs[i], PathVerb::line);
    std::vector<NSPoint> polygon = flat.points;
    for (int k = 0; k <= 100; ++k)
        EXPECT_LE(distanceToSides(polygon, onCurve(p, k / 100.0)), 0.1);
    // Differences that overflow are no reason to walk for ever.
    const Path huge = curve({-1e308, 0}, {1e308, 1e308}, {-1e308, 1e308}, {1e308, 0});
    EXPECT_LE(outline::flattened(huge, 0.1).points.size(), 1001u);
    EXPECT_FALSE(outline::contains(huge, {0, -1}, FillRule::nonZero));
    // A loop that comes back to its start keeps its last side.
    const Path loop = outline::flattened(curve({0, 0}, {50, 50}, {-50, 50}, {0, 0}), 0.1);
    EXPECT_EQ(loop.points.back(), (NSPoint{0, 0}));
}

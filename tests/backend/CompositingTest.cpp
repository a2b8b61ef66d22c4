#include <algorithm>
#include <array>

#include "Surface.h"

using namespace libvue;
using namespace libvue::test;
using backend::Color;
using backend::Compositing;
using backend::YAxis;

namespace {

struct Factors {
    Compositing op;
    const char* name;
    // What of the source and of the destination is kept, as functions of the two alphas.
    double (*source)(double sa, double da);
    double (*destination)(double sa, double da);
};
constexpr auto none = [](double, double) { return 0.0; };
constexpr auto all = [](double, double) { return 1.0; };
constexpr auto inSource = [](double sa, double) { return sa; };
constexpr auto outOfSource = [](double sa, double) { return 1 - sa; };
constexpr auto inDestination = [](double, double da) { return da; };
constexpr auto outOfDestination = [](double, double da) { return 1 - da; };

const Factors table[] = {
    {Compositing::clear, "clear", none, none},
    {Compositing::copy, "copy", all, none},
    {Compositing::sourceOver, "sourceOver", all, outOfSource},
    {Compositing::sourceIn, "sourceIn", inDestination, none},
    {Compositing::sourceOut, "sourceOut", outOfDestination, none},
    {Compositing::sourceAtop, "sourceAtop", inDestination, outOfSource},
    {Compositing::destinationOver, "destinationOver", outOfDestination, all},
    {Compositing::destinationIn, "destinationIn", none, inSource},
    {Compositing::destinationOut, "destinationOut", none, outOfSource},
    {Compositing::destinationAtop, "destinationAtop", outOfDestination, inSource},
    {Compositing::exclusiveOr, "exclusiveOr", outOfDestination, outOfSource},
    {Compositing::highlight, "highlight", all, outOfSource},
    {Compositing::plusLighter, "plusLighter", all, all},
};

Color composed(const Factors& f, const Color& s, const Color& d) {
    const double fs = f.source(s.alpha, d.alpha);
    const double fd = f.destination(s.alpha, d.alpha);
    const double a = std::min(1.0, s.alpha * fs + d.alpha * fd);
    if (a == 0) return {0, 0, 0, 0};
    const auto channel = [&](double sc, double dc) {
        return std::min(1.0, std::min(a, sc * s.alpha * fs + dc * d.alpha * fd) / a);
    };
    return {channel(s.red, d.red), channel(s.green, d.green), channel(s.blue, d.blue), a};
}

/// Premultiplied, in steps of a byte: two of them are what rounding may cost.
void expectNear(const Color& actual, const Color& wanted, const std::string& what) {
    constexpr double step = 2.01 / 255;
    EXPECT_NEAR(actual.alpha, wanted.alpha, step) << what;
    EXPECT_NEAR(actual.red * actual.alpha, wanted.red * wanted.alpha, step) << what;
    EXPECT_NEAR(actual.green * actual.alpha, wanted.green * wanted.alpha, step) << what;
    EXPECT_NEAR(actual.blue * actual.alpha, wanted.blue * wanted.alpha, step) << what;
}

const std::array<Color, 4> samples{{{1, 0.5, 0, 1}, {0.2, 0.4, 0.8, 0.5}, {0, 1, 0, 0.25}, {0, 0, 0, 0}}};

std::shared_ptr<backend::Picture> swatch(const Color& c) {
    const Surface s(4, 4);
    s.canvas->fillRect({{0, 0}, {4, 4}}, c, Compositing::copy);
    return s.picture;
}

TEST(Compositing, rectanglesAndPicturesFollowTheFormulas) {
    for (const Factors& f : table)
        for (const Color& s : samples)
            for (const Color& d : samples) {
                const auto drawn = [&](const Color& source, auto draw, const char* what) {
                    const Surface surface;
                    surface.canvas->fillRect({{0, 0}, {20, 20}}, d, Compositing::copy);
                    draw(*surface.canvas);
                    expectNear(surface.at(6, 6), composed(f, source, d), std::string(what) + f.name);
                    EXPECT_EQ(surface.hex(4, 6), surface.hex(15, 15)) << f.name << " beside the " << what;
                };
                const NSRect place{{5, 5}, {4, 4}};
                const auto picture = [&](double fraction) {
                    return [&, fraction](backend::Canvas& c) {
                        c.drawPicture(*swatch(s), {}, place, f.op, fraction, YAxis::up);
                    };
                };
                drawn(
                    s, [&](backend::Canvas& c) { c.fillRect(place, s, f.op); }, "rectangle ");
                drawn(s, picture(1), "picture ");
                // A fraction scales the source before the operation.
                drawn({s.red, s.green, s.blue, s.alpha * 0.5}, picture(0.5), "half picture ");
            }
}

TEST(Compositing, plusDarkerAddsTheDarknesses) {
    // Opaque: source + destination − 1, held at 0.
    const struct {
        Color s, d;
        const char* result;
    } rows[] = {
        {{0.8, 0.8, 0.8, 1}, {0.6, 0.4, 0.1, 1}, "663300ff"},
        {white, {0.2, 0.4, 0.6, 1}, "336699ff"},
        {black, {0.2, 0.4, 0.6, 1}, "000000ff"},
        // A fraction of the darkness, as a fraction of the source.
        {{0, 0, 0, 0.4}, white, "999999ff"},
        {{0, 0, 0, 0.4}, {0, 0, 0, 0}, "00000066"},
        {{1, 1, 1, 0.4}, {0, 0, 0, 0}, "ffffff66"},
    };
    for (const auto& row : rows) {
        const Surface s;
        s.canvas->fillRect({{0, 0}, {20, 20}}, row.d, Compositing::copy);
        s.canvas->fillRect({{5, 5}, {4, 4}}, row.s, Compositing::plusDarker);
        EXPECT_EQ(s.hex(6, 6), row.result);
        EXPECT_EQ(s.hex(4, 4), s.hex(19, 19));
        const Surface p;
        p.canvas->fillRect({{0, 0}, {20, 20}}, row.d, Compositing::copy);
        p.canvas->drawPicture(*swatch(row.s), {}, {{5, 5}, {4, 4}}, Compositing::plusDarker, 1, YAxis::up);
        EXPECT_EQ(p.hex(6, 6), row.result);
    }
}

TEST(Compositing, plusDarkerStaysInsideOfTheClipsOutline) {
    const Surface s;
    s.canvas->fillRect({{0, 0}, {20, 20}}, white);
    s.canvas->clip(triangle({0, 0}, {20, 0}, {0, 20}), backend::FillRule::nonZero);
    s.canvas->fillRect({{0, 0}, {20, 20}}, {0.5, 0.5, 0.5, 1}, Compositing::plusDarker);
    EXPECT_EQ(s.hex(3, 3), "808080ff");
    EXPECT_EQ(s.hex(17, 17), "ffffffff");
}

TEST(Compositing, theStatesOperationIsRestored) {
    const Surface s;
    s.canvas->fillRect({{0, 0}, {20, 20}}, red);
    s.canvas->save();
    s.canvas->setCompositing(Compositing::destinationOver);
    s.canvas->fillRect({{0, 0}, {5, 5}}, blue);
    s.canvas->restore();
    s.canvas->fillRect({{10, 0}, {5, 5}}, blue);
    EXPECT_EQ(s.hex(2, 2), "ff0000ff");
    EXPECT_EQ(s.hex(12, 2), "0000ffff");
}

} // namespace

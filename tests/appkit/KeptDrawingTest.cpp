#include <algorithm>
#include <cmath>
#include <functional>

#include <gtest/gtest.h>

#include <libvue/platform/appkit/FocusRing.h>
#include <libvue/platform/appkit/KeptDrawing.h>
#include <libvue/platform/appkit/ThemeDrawing.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/backend/RecordingCanvas.h>
#include <libvue/platform/graphics/Appearance.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>

using namespace libvue;
using backend::RecordingCanvas;

namespace {

constexpr NSSize taille{340, 60};

/// Pixels that are taken for the screen or not, and what was drawn into them.
struct Surface {
    Surface(bool screen, bool flipped, double scale) : scale(scale) {
        canvas.setDrawsToScreen(screen);
        canvas.fillRect({{0, 0}, taille}, {0.8, 0.9, 1, 1});
        if (flipped) canvas.concat({1, 0, 0, -1, 0, taille.height});
        canvas.clear();
        context = make<NSGraphicsContext>(canvas, flipped);
    }
    void draw(const std::function<void()>& paint) {
        canvas.clear();
        const GraphicsContextScope scope(context);
        paint();
    }
    [[nodiscard]] bool drew(RecordingCanvas::Kind kind) const { return !canvas.operations(kind).empty(); }

    double scale;
    std::shared_ptr<backend::Picture> picture = backend::Backend::current().graphics->makePicture(taille, scale);
    std::unique_ptr<backend::Canvas> pixels = backend::Backend::current().graphics->canvasOn(picture);
    RecordingCanvas canvas{taille, scale, pixels.get()};
    Ref<NSGraphicsContext> context;
};

/// The largest difference of a channel, of 255.
double difference(const backend::Picture& a, const backend::Picture& b) {
    double most = 0;
    for (int y = 0; y < a.pixelHeight(); ++y)
        for (int x = 0; x < a.pixelWidth(); ++x) {
            const backend::Color p = a.pixel(x, y), q = b.pixel(x, y);
            most = std::max({most, std::abs(p.red - q.red), std::abs(p.green - q.green), std::abs(p.blue - q.blue)});
        }
    return most * 255;
}

TEST(KeptDrawing, whatIsKeptLooksTheSameAtEveryWidth) {
    const auto button = [](FaceState s) { return [s](const NSRect& r) { drawPushButtonBezel(r, s, 6); }; };
    struct Row {
        const char* what;
        std::function<void(const NSRect&)> draw;
    };
    const Row rows[] = {
        {"button", button({})},
        {"pressed", button({.pressed = true})},
        {"default", button({.isDefault = true})},
        {"default, behind", button({.isDefault = true, .active = false})},
        {"disabled", button({.enabled = false})},
        {"capsule", [](const NSRect& r) { drawPushButtonBezel(r, {}, r.size.height / 2); }},
        {"field", [](const NSRect& r) { drawTextFieldBezel(r, YES); }},
        {"field, disabled", [](const NSRect& r) { drawTextFieldBezel(r, NO); }},
        {"ring", [](const NSRect& r) { drawFocusRing(r, 5); }},
    };
    for (const Row& row : rows)
        for (const Appearance appearance : {Appearance::light, Appearance::dark})
            for (const double scale : {1.0, 2.0})
                for (const CGFloat width : {13.0, 40.0, 150.0, 151.0, 300.0})
                    for (const bool flipped : {false, true}) {
                        SCOPED_TRACE(testing::Message() << row.what << ", " << width << " wide, scale " << scale
                                                        << (appearance == Appearance::dark ? ", dark" : "")
                                                        << (flipped ? ", flipped" : ""));
                        const AppearanceScope scope(appearance);
                        const auto paint = [&] { row.draw({{20, 14}, {width, 26}}); };
                        Surface screen(true, flipped, scale), page(false, flipped, scale);
                        screen.draw(paint);
                        page.draw(paint);
                        // Three layers at most, each of them rounded once more.
                        EXPECT_LT(difference(*screen.picture, *page.picture), 3.5);
                        EXPECT_TRUE(screen.drew(RecordingCanvas::Kind::picture));
                        EXPECT_FALSE(screen.drew(RecordingCanvas::Kind::fill));
                        EXPECT_FALSE(page.drew(RecordingCanvas::Kind::picture)) << "a page keeps its outlines";
                    }
}

TEST(KeptDrawing, whatPixelsCannotSayIsDrawnAnew) {
    struct Row {
        const char* what;
        backend::Transform transform;
    };
    for (const Row& row : {Row{"turned", {0.8, 0.6, -0.6, 0.8, 0, 0}}, Row{"larger", {2, 0, 0, 2, 0, 0}},
                           Row{"between pixels", {1, 0, 0, 1, 0.5, 0.5}}}) {
        Surface screen(true, false, 1);
        screen.canvas.concat(row.transform);
        screen.draw([&] {
            drawKept({KeptLook::Kind::field}, {{20, 14}, {100, 26}}, 5,
                     [](const NSRect& r) { strokeRoundedInside(r, 4, NSColor::redColor()); });
        });
        EXPECT_FALSE(screen.drew(RecordingCanvas::Kind::picture)) << row.what;
        EXPECT_TRUE(screen.drew(RecordingCanvas::Kind::stroke)) << row.what;
    }
}

} // namespace

#pragma once

#include <string>

#include <gtest/gtest.h>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/backend/RecordingCanvas.h>
#include <libvue/platform/foundation/NSArchiver.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSKeyedArchiver.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>

namespace libvue::test {

/// A current context that keeps what is drawn as data.
class Enregistrement {
public:
    explicit Enregistrement(NSSize size = {100, 100}, BOOL flipped = NO, double scale = 1)
        : canvas(size, scale), context(flip(size, flipped)), scope_(context) {}

    backend::RecordingCanvas canvas;
    Ref<NSGraphicsContext> context;

    /// A line an operation, in base coordinates.
    [[nodiscard]] std::string text() const { return canvas.describe(); }
    [[nodiscard]] const backend::RecordingCanvas::Operation& last() const { return canvas.operations().back(); }

private:
    Ref<NSGraphicsContext> flip(NSSize size, BOOL flipped) {
        if (flipped) canvas.concat({1, 0, 0, -1, 0, size.height});
        return make<NSGraphicsContext>(canvas, flipped);
    }
    GraphicsContextScope scope_;
};

/// A current context over real pixels.
class Pixels {
public:
    explicit Pixels(int width = 10, int height = 10)
        : picture(backend::Backend::current().graphics->makePicture(
              {static_cast<double>(width), static_cast<double>(height)}, 1)),
          context(make<NSGraphicsContext>(backend::Backend::current().graphics->canvasOn(picture), NO, picture)),
          scope_(context) {}

    std::shared_ptr<backend::Picture> picture;
    Ref<NSGraphicsContext> context;

    /// "rrggbbaa" of the pixel, from the lower left corner.
    [[nodiscard]] std::string at(int x, int y) const { return hex(*picture, x, picture->pixelHeight() - 1 - y); }

    static std::string hex(const backend::Picture& picture, int x, int yFromTop) {
        const backend::Color c = picture.pixel(x, yFromTop);
        char out[16];
        const auto byte = [](double v) { return static_cast<unsigned>(v * 255 + 0.5); };
        std::snprintf(out, sizeof out, "%02x%02x%02x%02x", byte(c.red), byte(c.green), byte(c.blue), byte(c.alpha));
        return out;
    }

private:
    GraphicsContextScope scope_;
};

/// The name of the exception that `f` raises, or nothing.
template <class F> std::string raised(F&& f) {
    try {
        f();
    } catch (const NSExceptionRaised& e) {
        return e.exception->name()->utf8();
    }
    return {};
}

/// Through a keyed archive and through an unkeyed one.
template <class T> Ref<T> throughKeyedArchive(const T& object) {
    return as<T>(
        NSKeyedUnarchiver::unarchiveObjectWithData(NSKeyedArchiver::archivedDataWithRootObject(&object)).get());
}
template <class T> Ref<T> throughArchive(const T& object) {
    return as<T>(NSUnarchiver::unarchiveObjectWithData(NSArchiver::archivedDataWithRootObject(&object)).get());
}

} // namespace libvue::test

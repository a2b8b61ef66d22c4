#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include <libvue/platform/backend/Drawing.h>
#include <libvue/platform/backend/Forward.h>

namespace libvue::backend {

/// Pixels that can be drawn and drawn into. Premultiplied, immutable while shared with a drawing that has not ended.
class LIBVUE_API Picture {
public:
    virtual ~Picture() = default;
    [[nodiscard]] virtual int pixelWidth() const = 0;
    [[nodiscard]] virtual int pixelHeight() const = 0;
    /// The size in points: pixels over scale, or what the file says.
    [[nodiscard]] virtual NSSize size() const = 0;
    /// One pixel, from the top left corner; transparent outside.
    [[nodiscard]] virtual Color pixel(int x, int y) const = 0;
    [[nodiscard]] virtual bool hasAlpha() const = 0;
    /// All pixels as 0xAARRGGBB, premultiplied, row after row from the top without gaps. Null where they are not in
    /// memory. Good until the next drawing into the picture.
    [[nodiscard]] virtual const std::uint32_t* pixels() const { return nullptr; }
    /// Whether it is a window's surface; canvases on it draw to the screen.
    [[nodiscard]] bool isOnScreen() const noexcept { return onScreen_; }
    void setOnScreen(bool yes) noexcept { onScreen_ = yes; }

private:
    bool onScreen_ = false;
};

/// What drawing goes through: a state stack, paths, pictures, text. A canvas starts with the identity over its surface
/// in points, y upward, origin bottom left; the transform maps user space to that base space.
class LIBVUE_API Canvas {
public:
    virtual ~Canvas() = default;

    // State, all of it saved and restored.

    virtual void save() = 0;
    /// Without a matching save, nothing.
    virtual void restore() = 0;
    virtual void concat(const Transform& t) = 0;
    [[nodiscard]] virtual Transform transform() const = 0;
    virtual void clip(const Path& path, FillRule rule) = 0;
    virtual void clip(const NSRect& rect) = 0;
    /// Intersects with the union of the rectangles.
    virtual void clip(const NSRect* rects, std::size_t count) = 0;
    /// The bounding box of the clip in user space.
    [[nodiscard]] virtual NSRect clipBounds() const = 0;
    virtual void setCompositing(Compositing op) = 0;
    virtual void setAlpha(double alpha) = 0;
    /// Null for none.
    virtual void setShadow(const Shadow* shadow) = 0;
    virtual void setAntialiasing(bool on) = 0;
    virtual void setInterpolation(Interpolation quality) = 0;

    // Drawing.

    virtual void fill(const Path& path, FillRule rule, const Color& color) = 0;
    virtual void fillRect(const NSRect& rect, const Color& color) = 0;
    /// With the operation instead of the state's.
    virtual void fillRect(const NSRect& rect, const Color& color, Compositing op) = 0;
    virtual void stroke(const Path& path, const Stroke& stroke, const Color& color) = 0;
    virtual void strokeLine(NSPoint from, NSPoint to, const Stroke& stroke, const Color& color) = 0;
    /// Paints the gradient into the clip.
    virtual void drawGradient(const AxialGradient& gradient) = 0;
    /// `source` in points of the picture, origin bottom left (empty: all of it).
    virtual void drawPicture(const Picture& picture, const NSRect& source, const NSRect& destination, Compositing op,
                             double fraction, YAxis axis) = 0;
    /// The layout's box with its top left corner, as seen, at `origin`.
    virtual void drawText(const TextLayout& text, NSPoint origin, YAxis axis) = 0;

    /// Everything until endLayer is drawn apart and then composed as one, with the state's operation, alpha and shadow.
    virtual void beginLayer() = 0;
    virtual void endLayer() = 0;

    /// True for a window, false for a picture or a page.
    [[nodiscard]] virtual bool drawsToScreen() const { return false; }
    /// Pixels a point.
    [[nodiscard]] virtual double scale() const { return 1; }
};

} // namespace libvue::backend

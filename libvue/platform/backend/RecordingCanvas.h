#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/backend/TextEngine.h>

namespace libvue::backend {

/// Keeps what is drawn as data, in order, so that it can be asked what was stroked where and in which colour. Draws
/// nothing unless it is given a canvas to hand everything on to.
class LIBVUE_API RecordingCanvas : public Canvas {
public:
    enum class Kind : std::uint8_t { fill, fillRect, stroke, line, gradient, picture, text, beginLayer, endLayer };
    /// Which coordinates a description is in: those of the surface, y upward, or those that the drawing code used.
    enum class Space : std::uint8_t { base, user };

    /// One drawing operation. Fields that its kind does not use keep their defaults. Geometry is in user space.
    struct Operation {
        Kind kind = Kind::fill;
        Path path; ///< fill, stroke
        FillRule rule = FillRule::nonZero;
        NSRect rect;      ///< fillRect; the destination of a picture; the box of a text
        NSPoint from, to; ///< line
        Color color;      ///< fill, fillRect, stroke, line; a text's first colour
        Stroke stroke;    ///< stroke, line
        AxialGradient gradient;
        const Picture* picture = nullptr; ///< only to be compared: it may be gone
        NSSize pictureSize;
        NSRect source;
        double fraction = 1;
        YAxis axis = YAxis::up;
        std::u16string text;
        std::vector<TextRun> runs;

        // The state that it was drawn with.
        Transform transform;         ///< user space to base space
        NSRect clip;                 ///< the bounding box of the clip, in base space
        std::vector<Path> clipPaths; ///< outlines of the clip that are not rectangles, in base space
        Compositing compositing = Compositing::sourceOver;
        double alpha = 1;
        std::optional<Shadow> shadow;
        bool antialiasing = true;
        Interpolation interpolation = Interpolation::low;

        /// One line without its end, such as "fillRect {{0, 0}, {10, 10}} #ff0000ff". Behind it, where they are not the
        /// usual ones: the compositing, "alpha 0.5", "shadow (2, -2) 5 #000000ff". Numbers have up to 3 decimals.
        [[nodiscard]] std::string describe(Space space = Space::base) const;
    };

    /// Records drawing on a surface of that size, in points. With `forward`, hands all of it on; that one is borrowed.
    explicit RecordingCanvas(NSSize size, double scale = 1, Canvas* forward = nullptr);
    ~RecordingCanvas() override;

    [[nodiscard]] const std::vector<Operation>& operations() const noexcept { return operations_; }
    /// Those of one kind, in order.
    [[nodiscard]] std::vector<Operation> operations(Kind kind) const;
    /// A line an operation.
    [[nodiscard]] std::string describe(Space space = Space::base) const;
    /// Forgets the operations and keeps the state.
    void clear() noexcept { operations_.clear(); }
    /// What drawsToScreen answers; false at first.
    void setDrawsToScreen(bool yes) noexcept { toScreen_ = yes; }

    void save() override;
    void restore() override;
    void concat(const Transform& t) override;
    [[nodiscard]] Transform transform() const override { return state_.transform; }
    void clip(const Path& path, FillRule rule) override;
    void clip(const NSRect& rect) override;
    void clip(const NSRect* rects, std::size_t count) override;
    [[nodiscard]] NSRect clipBounds() const override;
    void setCompositing(Compositing op) override;
    void setAlpha(double alpha) override;
    void setShadow(const Shadow* shadow) override;
    void setAntialiasing(bool on) override;
    void setInterpolation(Interpolation quality) override;

    void fill(const Path& path, FillRule rule, const Color& color) override;
    void fillRect(const NSRect& rect, const Color& color) override;
    void fillRect(const NSRect& rect, const Color& color, Compositing op) override;
    void stroke(const Path& path, const Stroke& stroke, const Color& color) override;
    void strokeLine(NSPoint from, NSPoint to, const Stroke& stroke, const Color& color) override;
    void drawGradient(const AxialGradient& gradient) override;
    void drawPicture(const Picture& picture, const NSRect& source, const NSRect& destination, Compositing op,
                     double fraction, YAxis axis) override;
    void drawText(const TextLayout& text, NSPoint origin, YAxis axis) override;
    void beginLayer() override;
    void endLayer() override;

    [[nodiscard]] bool drawsToScreen() const override { return toScreen_; }
    [[nodiscard]] double scale() const override { return scale_; }

private:
    struct State {
        Transform transform;
        NSRect clip;
        std::vector<Path> clipPaths;
        Compositing compositing = Compositing::sourceOver;
        double alpha = 1;
        std::optional<Shadow> shadow;
        bool antialiasing = true;
        Interpolation interpolation = Interpolation::low;
    };
    struct Layer {
        State state;
        std::size_t depth;
    };
    double scale_;
    Canvas* forward_;
    bool toScreen_ = false;
    State state_;
    std::vector<State> saved_;
    std::vector<Layer> layers_;
    std::vector<Operation> operations_;

    Operation& add(Kind kind);
    void narrow(const NSRect& base);
    void narrow(Path path);
};

} // namespace libvue::backend

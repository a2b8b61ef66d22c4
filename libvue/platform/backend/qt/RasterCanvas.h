#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <QBrush>
#include <QPainterPath>
#include <QPen>

#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/backend/qt/RasterPicture.h>
#include <libvue/platform/backend/qt/RasterTarget.h>

namespace libvue::backend {

class RasterTextLayout;

/// Draws into a picture's memory. Geometry is mapped to device pixels here, so that the painter's own state hardly
/// changes; whole pixels of one colour are written without it. Several canvases may draw into one picture at the same
/// time.
///
/// Rectangles of the clip go to the nearest pixel edges; outlines clip smoothly.
class RasterCanvas final : public Canvas {
public:
    explicit RasterCanvas(std::shared_ptr<RasterPicture> picture);
    ~RasterCanvas() override;

    void save() override;
    void restore() override;
    void concat(const Transform& t) override;
    [[nodiscard]] Transform transform() const override { return state_.user; }
    void clip(const Path& path, FillRule rule) override;
    void clip(const NSRect& rect) override;
    void clip(const NSRect* rects, std::size_t count) override;
    [[nodiscard]] NSRect clipBounds() const override;
    void setCompositing(Compositing op) override { state_.op = op; }
    void setAlpha(double alpha) override;
    void setShadow(const Shadow* shadow) override;
    void setAntialiasing(bool on) override { state_.antialias = on; }
    void setInterpolation(Interpolation quality) override { state_.interpolation = quality; }

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

    [[nodiscard]] bool drawsToScreen() const override { return picture_->isOnScreen(); }
    [[nodiscard]] double scale() const override { return picture_->scaleY(); }

private:
    struct State {
        Transform user;   // user space to base space
        Transform device; // user space to pixels
        Clip clip;
        Compositing op = Compositing::sourceOver;
        double alpha = 1;
        Shadow shadow;
        bool hasShadow = false;
        bool antialias = true;
        Interpolation interpolation = Interpolation::low;
    };
    struct Layer {
        std::unique_ptr<RasterTarget> target;
        State state;
        std::size_t depth;
    };
    using Paint = std::function<void(QPainter&, RasterTarget&)>;

    std::shared_ptr<RasterPicture> picture_;
    RasterTarget base_;
    RasterTarget* target_;
    State state_;
    std::vector<State> saved_;
    std::vector<Layer> layers_;
    QPainterPath path_; // used again for each conversion
    QBrush brush_{Qt::SolidPattern};
    QPen pen_;
    Stroke penStroke_; // what pen_ was made from
    double penScale_ = -1;
    std::vector<QRgb> ramp_; // used again for each gradient

    [[nodiscard]] bool isDirect(Compositing op) const noexcept {
        return !state_.hasShadow && op != Compositing::plusDarker;
    }
    /// Calls `paint` with a painter that is set up for device coordinates, or draws it apart where a shadow or the
    /// operation asks for that. `bounds` holds all that it draws.
    template <class F> void render(const QRectF& bounds, Compositing op, bool antialias, double opacity, F&& paint);
    void renderApart(const QRectF& bounds, Compositing op, bool antialias, double opacity, const Paint& paint);
    /// Composes finished pixels with the clip, as they are.
    void compose(const QImage& image, QPoint at, Compositing op, double opacity);
    void composePlusDarker(const QImage& image, QPoint at);

    /// The outline of a rectangle over whole rows: columns and rows of it, no pixel twice. False where it is none.
    bool strokeFrame(const Path& path, const Stroke& stroke, const Color& color);
    void strokePieces(const Path& path, const Stroke& stroke, const Color& color);
    void fillDevice(const QRectF& r, const Color& color, Compositing op);
    void fillPixels(const QRect& r, const Color& color, Compositing op);
    void fillConverted(const Color& color, Compositing op);
    void narrow(const QRect& r);
    void narrow(const QPainterPath& path);
    const QPen& penFor(const Stroke& stroke, double scale, const Color& color);
    /// Where every pixel of the image is one of the target; false where that is not so.
    bool blit(const QImage& image, const NSRect& destination, Compositing op, double opacity, YAxis axis);
    /// `owner` keeps reduced copies; null where nobody does.
    void drawImage(const QImage& image, const RasterPicture* owner, const QRectF& source, const Transform& toDevice,
                   Compositing op, double opacity);
    /// A gradient along an axis of the pixels; `strip` is what it covers.
    void drawStraightGradient(const AxialGradient& gradient, const QRectF& strip);
    /// Writes the pixels where the gradient replaces what is there; false where it does not.
    bool fillRamp(const AxialGradient& gradient, const QRect& pixels);
    /// Fills the outline that clips, where the gradient's strip holds all of it; false where that is not so.
    bool fillClipOutline(const QRectF& strip, const QBrush& brush);
    bool drawCachedText(const RasterTextLayout& text, const Transform& toDevice);
    void drawGlyphs(const RasterTextLayout& text, const Transform& toDevice);
};

template <class F>
void RasterCanvas::render(const QRectF& bounds, Compositing op, bool antialias, double opacity, F&& paint) {
    if (isDirect(op))
        paint(target_->painter(state_.clip, op, antialias, opacity), *target_);
    else
        renderApart(bounds, op, antialias, opacity, std::ref(paint));
}

} // namespace libvue::backend

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include <libvue/platform/backend/GraphicsEngine.h>
#include <libvue/platform/backend/qt/PdfPage.h>

class QImage;
class QIODevice;
class QPainterPath;

namespace libvue::backend {

class RasterTextLayout;

/// Draws pages. Everything is also drawn into pixels on the side: what a page description cannot compose (operations
/// that read what is below, layers) is taken from there as a picture, on white, and only a page with such a thing makes
/// them. All else stays text and outlines, over shadows that are translucent pictures.
class PdfCanvas final : public Canvas {
public:
    /// Into `device`, which is open and outlives it; null for memory.
    PdfCanvas(NSSize page, std::string_view title, QIODevice* device);
    ~PdfCanvas() override;

    void beginPage();
    [[nodiscard]] std::vector<std::uint8_t> finish();

    void save() override;
    void restore() override;
    void concat(const Transform& t) override;
    [[nodiscard]] Transform transform() const override { return state_.user; }
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
    void fillRect(const NSRect& rect, const Color& color) override { fillRect(rect, color, state_.op); }
    void fillRect(const NSRect& rect, const Color& color, Compositing op) override;
    void stroke(const Path& path, const Stroke& stroke, const Color& color) override;
    void strokeLine(NSPoint from, NSPoint to, const Stroke& stroke, const Color& color) override;
    void drawGradient(const AxialGradient& gradient) override;
    void drawPicture(const Picture& picture, const NSRect& source, const NSRect& destination, Compositing op,
                     double fraction, YAxis axis) override;
    void drawText(const TextLayout& text, NSPoint origin, YAxis axis) override;

    void beginLayer() override;
    void endLayer() override;

private:
    struct Page;
    struct Pixels;
    struct State {
        Transform user;
        Compositing op = Compositing::sourceOver;
        double alpha = 1;
        Shadow shadow;
        bool hasShadow = false;
        bool smooth = true;
        PdfClip clip;
    };
    std::unique_ptr<Page> page_;
    State state_;
    std::vector<State> saved_;
    std::vector<std::size_t> layers_; // how many states were saved at the start of each
    NSRect layerInk_;                 // what was drawn in the outermost layer, in points of the page

    /// From user space to the page's shared transform.
    [[nodiscard]] Transform toShared() const;
    /// Cuts what follows to a shape in user space with that box.
    void narrow(const NSRect& box, const QPainterPath& shape);
    /// Cuts what follows to a rectangle in user space, where that is one on the page too; else false.
    [[nodiscard]] bool narrowToBox(const NSRect& rect);
    /// Has the painter clip as it must for what inks `ink`, in user space. False where nothing of it can show.
    [[nodiscard]] bool useClip(const NSRect& ink);
    void resetPage();
    /// What is drawn, once more: for its shadow.
    using Drawing = std::function<void(Canvas&)>;
    /// Whether the page can show it by itself, its shadow being laid under it where `again` draws it; else what lies in
    /// `bounds` (user space) is taken from the pixels.
    bool isPlain(Compositing op, double alpha, const NSRect& bounds, const Drawing& again);
    void castShadow(const NSRect& bounds, const Drawing& again);
    /// The shadows of a text's runs.
    void castRunShadows(const RasterTextLayout& layout, const Transform& toUser, const NSRect& ink);
    /// Paints the pixels with their lower left corner at that point of the page, under the clip.
    void place(const QImage& pixels, NSPoint corner);
    /// Paints that part of the pixels, in points of the page, over what the page has there.
    void patch(const NSRect& bounds);
    /// The box and what its shadow reaches, in points of the page.
    [[nodiscard]] NSRect withShadow(const NSRect& box) const;
};

/// The engine's page functions.
namespace pdf {
/// Into a device, see PdfCanvas.
[[nodiscard]] std::unique_ptr<PdfCanvas> open(NSSize page, std::string_view title, QIODevice* device);
[[nodiscard]] GraphicsEngine::PDF make(NSSize page, std::string_view title);
void beginPage(GraphicsEngine::PDF& document);
[[nodiscard]] std::vector<std::uint8_t> finish(GraphicsEngine::PDF& document);
} // namespace pdf

} // namespace libvue::backend

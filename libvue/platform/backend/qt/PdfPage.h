#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include <QBrush>
#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QPainter>
#include <QPainterPath>
#include <QPdfWriter>
#include <QPen>

#include <libvue/platform/backend/Drawing.h>

namespace libvue::backend {

/// Where drawing is cut beside the box of a clip, in points of the page from its upper left corner.
struct PdfClipShape {
    QPainterPath path;
    std::shared_ptr<const PdfClipShape> outer;
};

/// A rectangle in points of the page, y upward, and the shapes inside of it, if any.
struct PdfClip {
    NSRect box;
    std::shared_ptr<const PdfClipShape> shape;
};

/// The page that is being written. Whenever its transform or clip changes, a page states its colours, pen and matrix
/// anew, which costs more than most drawings: so drawings share one transform where they can (points from the upper
/// left corner), a clip is set only for what it cuts, and an outline that is filled and then stroked is written once.
class PdfPage {
public:
    static constexpr int resolution = 1440;
    static constexpr double unitsAPoint = resolution / 72.0;

    /// Into `device`, which is open and outlives it; null for memory.
    PdfPage(NSSize size, std::string_view title, QIODevice* device);

    [[nodiscard]] NSSize size() const noexcept { return size_; }
    /// From points of the page, y upward, to the shared transform's.
    [[nodiscard]] Transform fromUpward() const noexcept { return {1, 0, 0, -1, 0, size_.height}; }

    void startNext();
    [[nodiscard]] std::vector<std::uint8_t> finish();

    /// Has the page clip as it must for what inks `box`, in points, y upward. False where nothing of it can show.
    [[nodiscard]] bool clipFor(const NSRect& box, const PdfClip& needed);
    void clipNothing();

    /// The painter under the shared transform.
    QPainter& painter();
    /// The painter for drawing in a space that `t` maps to points of the page, y upward.
    QPainter& painter(const Transform& t);

    /// In the shared transform's coordinates.
    void fill(const QPainterPath& path, const QColor& color);
    void fill(const QRectF& rect, const QColor& color);
    void stroke(const QPainterPath& path, const QPen& pen);

private:
    struct Filling {
        QPainterPath path;
        QColor color;
    };
    NSSize size_;
    QByteArray bytes_;
    QBuffer buffer_{&bytes_};
    QPdfWriter writer_;
    QPainter painter_;
    bool isShared_ = false; // the transform
    std::optional<PdfClip> clip_;
    std::optional<Filling> waiting_; // for a stroke of the same outline
    QBrush brush_{Qt::SolidPattern};

    void writeWaiting();
    void setBrush(const QColor& color);
};

} // namespace libvue::backend

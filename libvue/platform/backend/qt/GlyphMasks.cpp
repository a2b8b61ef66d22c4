#include <libvue/platform/backend/qt/GlyphMasks.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include <QGlyphRun>
#include <QPainter>

#include <libvue/platform/backend/qt/RasterMemory.h>

namespace libvue::backend {

namespace {

constexpr int quarters = 4;
/// Larger ones the painter fills as outlines, at their exact places.
constexpr double largest = 48;

/// Each channel times `a` / 255, rounded as the painter does.
constexpr QRgb times(QRgb x, quint32 a) noexcept {
    constexpr quint32 odd = 0x00ff00ff, half = 0x00800080;
    quint32 low = (x & odd) * a;
    low = ((low + ((low >> 8) & odd) + half) >> 8) & odd;
    quint32 high = ((x >> 8) & odd) * a;
    high = (high + ((high >> 8) & odd) + half) & ~odd;
    return high | low;
}

/// Transparent pixels for one text after another. Only where the last one stood must they be cleared.
class Sheet {
public:
    static constexpr int width = 512, height = 64;

    static Sheet& shared() {
        // Never destroyed, as images that others keep.
        static auto* const sheet = new Sheet;
        return *sheet;
    }
    /// With some room at the end of the rows.
    static bool holds(QSize size) { return size.width() + 4 <= width && size.height() <= height; }
    /// The first pixel of a part of that size at the upper left corner.
    QRgb* begin(QSize size) {
        for (int y = 0; y < used_.height(); ++y)
            std::memset(pixels_ + y * width, 0, static_cast<std::size_t>(used_.width()) * sizeof(QRgb));
        used_ = size;
        return pixels_;
    }
    [[nodiscard]] const QImage& image() const noexcept { return image_; }

private:
    Sheet() : image_(transparentImage({width, height})), pixels_(reinterpret_cast<QRgb*>(image_.bits())) {}

    QImage image_;
    QRgb* pixels_;
    QSize used_{0, 0};
};

/// Over what other glyphs have inked. False where the painter blends in another way: what is opaque already it takes
/// for a background.
bool blend(QRgb* out, const QRgb* tinted, const std::uint8_t* coverage, int width) noexcept {
    for (int x = 0; x < width; ++x) {
        if (coverage[x] == 0) continue;
        if (qAlpha(out[x]) == 255 && coverage[x] != 255) return false;
        out[x] = tinted[x] + times(out[x], 255 - static_cast<quint32>(qAlpha(tinted[x])));
    }
    return true;
}

/// Onto transparent pixels. Both must go on for three more behind the width.
void put(QRgb* out, const QRgb* tinted, int width) noexcept {
    for (int x = 0; x < width; x += 4)
        std::memcpy(out + x, tinted + x, 4 * sizeof(QRgb));
}

/// Like the painter: 64ths of a pixel, cut off.
int inParts(double pixels) { return static_cast<int>(pixels * 64); }

} // namespace

bool GlyphMasks::serves(const QRawFont& font, double scale) { return font.pixelSize() * scale <= largest; }

GlyphMasks::Scale& GlyphMasks::atScale(double scale) {
    if (scales_[0].scale == scale) return scales_[0];
    std::swap(scales_[0], scales_[1]);
    if (scales_[0].scale != scale) scales_[0] = {scale, {}, {}, {}};
    return scales_[0];
}

void GlyphMasks::make(Scale& s, Mask& mask, const QRawFont& font, quint32 glyph, int quarter) {
    mask.isMade = true;
    const int margin = 2 + static_cast<int>(std::ceil(font.pixelSize() * s.scale / 2));
    const QRectF box = font.boundingRect(glyph);
    const QRect area = QRectF(box.topLeft() * s.scale, box.size() * s.scale)
                           .toAlignedRect()
                           .adjusted(-margin, -margin, margin, margin);
    QImage image(area.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(0);
    {
        QPainter painter(&image);
        painter.setWorldTransform(
            QTransform(s.scale, 0, 0, s.scale, quarter / double(quarters) - area.left(), -area.top()));
        QGlyphRun run;
        run.setRawFont(font);
        run.setGlyphIndexes({glyph});
        run.setPositions({QPointF()});
        painter.setPen(Qt::black);
        painter.drawGlyphRun(QPointF(), run);
    }
    int left = area.width(), right = -1, top = area.height(), bottom = -1;
    for (int y = 0; y < area.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < area.width(); ++x) {
            if (row[x] == 0) continue;
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = y;
        }
    }
    if (right < 0) return;
    const auto small = [](int v) { return static_cast<std::int16_t>(v); };
    mask.left = small(area.left() + left);
    mask.top = small(area.top() + top);
    mask.width = small(right - left + 1);
    mask.height = small(bottom - top + 1);
    mask.at = static_cast<std::uint32_t>(s.coverage.size());
    for (int y = top; y <= bottom; ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = left; x <= right; ++x)
            s.coverage.push_back(static_cast<std::uint8_t>(qAlpha(row[x])));
        s.coverage.insert(s.coverage.end(), Mask::blanks, 0);
    }
    s.tinted.resize(s.coverage.size());
}

void GlyphMasks::tint(Scale& s, Mask& mask, QRgb ink) {
    mask.isTinted = true;
    mask.ink = ink;
    const std::size_t end = mask.at + static_cast<std::size_t>(mask.height * (mask.width + Mask::blanks));
    for (std::size_t i = mask.at; i < end; ++i)
        s.tinted[i] = times(ink, s.coverage[i]);
}

std::optional<GlyphMasks::Ink> GlyphMasks::draw(const QRawFont& font, double scale, std::span<const Placed> glyphs,
                                                QRgb ink, QSize size) {
    struct Spot {
        std::uint32_t mask;
        int x, y; // the upper left pixel
    };
    constexpr std::size_t most = 64;
    if (glyphs.size() > most) return std::nullopt;
    std::array<Spot, most> spots;
    Scale& s = atScale(scale);
    std::size_t count = 0;
    int left = size.width(), top = size.height(), right = 0, bottom = 0;
    for (const Placed& p : glyphs) {
        // A 64th below a quarter is drawn as that quarter; rows are whole.
        const int x = (inParts(p.at.x()) + 1) >> 4;
        const int y = (inParts(p.at.y()) + 32) >> 6;
        if (x < 0) return std::nullopt;
        const std::size_t index = p.index * quarters + static_cast<std::size_t>(x % quarters);
        if (index >= s.masks.size()) s.masks.resize(index + 1);
        Mask& mask = s.masks[index];
        if (!mask.isMade) make(s, mask, font, p.glyph, x % quarters);
        if (mask.width == 0) continue;
        if (!mask.isTinted || mask.ink != ink) tint(s, mask, ink);
        const Spot spot{static_cast<std::uint32_t>(index), x / quarters + mask.left, y + mask.top};
        left = std::min(left, spot.x);
        top = std::min(top, spot.y);
        right = std::max(right, spot.x + mask.width);
        bottom = std::max(bottom, spot.y + mask.height);
        spots[count++] = spot;
    }
    Sheet& sheet = Sheet::shared();
    if (count == 0 || qAlpha(ink) == 0) return Ink{&sheet.image(), {}, {}};
    const QSize used(right - left, bottom - top);
    if (left < 0 || top < 0 || right > size.width() || bottom > size.height() || !Sheet::holds(used))
        return std::nullopt;
    QRgb* const pixels = sheet.begin(used);
    int inked = left; // nothing stands from here on
    for (std::size_t i = 0; i < count; ++i) {
        const Mask& mask = s.masks[spots[i].mask];
        const int over = std::clamp(inked - spots[i].x, 0, int{mask.width});
        const std::uint8_t* coverage = s.coverage.data() + mask.at;
        const QRgb* tinted = s.tinted.data() + mask.at;
        QRgb* out = pixels + (spots[i].y - top) * Sheet::width + spots[i].x - left;
        for (int y = 0; y < mask.height; ++y) {
            if (over > 0 && !blend(out, tinted, coverage, over)) return std::nullopt;
            put(out + over, tinted + over, mask.width - over);
            out += Sheet::width;
            coverage += mask.width + Mask::blanks;
            tinted += mask.width + Mask::blanks;
        }
        inked = std::max(inked, spots[i].x + mask.width);
    }
    return Ink{&sheet.image(), QRect(QPoint(), used), {left, top}};
}

} // namespace libvue::backend

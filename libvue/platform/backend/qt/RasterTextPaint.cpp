#include <algorithm>
#include <cmath>
#include <list>
#include <utility>

#include <QPainter>

#include <libvue/platform/backend/qt/QtConvert.h>
#include <libvue/platform/backend/qt/RasterShadow.h>
#include <libvue/platform/backend/qt/RasterTarget.h>
#include <libvue/platform/backend/qt/RasterTextLayout.h>
#include <libvue/platform/backend/qt/TextFonts.h>

namespace libvue::backend {

/// The layouts whose pixels are kept, the last drawn first. Past the limit the ones at the end lose theirs.
class RenderedTexts {
public:
    static RenderedTexts& shared() {
        // Never destroyed: layouts may outlive every static object.
        static auto* texts = new RenderedTexts;
        return *texts;
    }
    void touch(const RasterTextLayout& text) { order_.splice(order_.begin(), order_, text.keptAt_); }
    void add(const RasterTextLayout& text) {
        order_.push_front(&text);
        text.keptAt_ = order_.begin();
        total_ += cost(text);
        while (total_ > limit && order_.size() > 1) {
            const RasterTextLayout& oldest = *order_.back();
            remove(oldest);
            oldest.kept_ = {};
        }
    }
    void remove(const RasterTextLayout& text) {
        total_ -= cost(text);
        order_.erase(text.keptAt_);
    }

private:
    static constexpr std::size_t limit = 16u << 20;
    static std::size_t cost(const RasterTextLayout& text) {
        return static_cast<std::size_t>(text.kept_.image.sizeInBytes()) + 64;
    }
    std::list<const RasterTextLayout*> order_;
    std::size_t total_ = 0;
};

RasterTextLayout::~RasterTextLayout() {
    if (kept_.phase >= 0) RenderedTexts::shared().remove(*this);
}

NSRect RasterTextLayout::inkBounds() const {
    NSRect bounds;
    for (const TextLine& line : lines_)
        bounds = NSUnionRect(bounds, NSInsetRect(line.used, -1, -1));
    const double margin = largestFont_ * 0.6;
    bounds = NSInsetRect(bounds, -margin, -margin);
    for (const TextRun& run : runs_) {
        if (run.baselineOffset != 0 && std::isfinite(run.baselineOffset))
            bounds = NSInsetRect(bounds, 0, -std::abs(run.baselineOffset));
        if (run.shadow) {
            const Shadow& s = *run.shadow;
            const double out = std::abs(s.offset.width) + std::abs(s.offset.height) + 2 * std::max(0.0, s.blur);
            if (std::isfinite(out)) bounds = NSInsetRect(bounds, -out, -out);
        }
    }
    return bounds;
}

std::optional<NSRect> RasterTextLayout::clippedTo() const {
    if (!clips_) return std::nullopt;
    for (const TextLine& line : lines_)
        if (NSMaxX(line.used) > width_ + 0.5) return NSRect{{0, 0}, {width_, NSMaxY(lines_.back().rect)}};
    return std::nullopt;
}

void RasterTextLayout::addDrawn(DrawnLine& out, std::size_t line, int from, int length, std::size_t run) const {
    if (length <= 0) return;
    const Place& place = places_[line];
    const TextLine& placed = lines_[line];
    const QTextLine shaped = shapedOf(blocks_[place.block])->lineAt(place.line);
    static const TextRun plain;
    const TextRun& look = run < runs_.size() ? runs_[run] : plain;
    const double baseline = placed.baseline - look.baselineOffset;
    if (!look.attachment) {
        const QPointF shift(place.x - shaped.x(), baseline - shaped.y() - shaped.ascent());
        const auto found = shaped.glyphRuns(from, length);
        for (const QGlyphRun& glyphs : found) {
            QList<QPointF> positions = glyphs.positions();
            for (QPointF& p : positions)
                p += shift;
            QGlyphRun moved;
            moved.setRawFont(glyphs.rawFont());
            moved.setGlyphIndexes(glyphs.glyphIndexes());
            moved.setPositions(positions);
            out.glyphs.push_back({moved, static_cast<std::uint32_t>(run)});
        }
    }
    const int style = look.underline & 0x0F;
    if (!look.background && style == 0 && !look.strikethrough) return;

    const RasterFontFace& face = rasterFace(look.font.get());
    int to = from + length;
    double a = shaped.cursorToX(from) + place.x;
    double b = shaped.cursorToX(to) + place.x;
    if (a > b) std::swap(a, b);
    b = std::min(b, std::max(a, NSMaxX(placed.used)));
    const double thickness = std::max(face.underlineThickness(), 0.5);
    const auto bar = [&](double top, double height, const Color& color, bool behind, bool isLine = true) {
        out.bars.push_back({{{a, top}, {b - a, height}}, color, behind, isLine});
    };
    if (look.background) bar(placed.used.origin.y, placed.used.size.height, *look.background, true, false);
    if (style != 0) {
        const Color& color = look.underlineColor ? *look.underlineColor : look.color;
        const bool isDouble = style == 9;
        const double thick = style == 2 ? 2 * thickness : thickness;
        const double top = baseline - face.underlinePosition() - thickness / 2;
        bar(top, thick, color, true);
        if (isDouble) bar(top + 2 * std::max(1.0, thickness), thick, color, true);
    }
    if (look.strikethrough) bar(baseline - face.xHeight() / 2 - thickness / 2, thickness, look.color, false);
}

const PlainGlyphs* RasterTextLayout::plainGlyphsOf(const Block& block) const {
    if (!block.isPlain) return nullptr;
    if (!runs_.empty() && (runs_[0].background || (runs_[0].underline & 0x0F) != 0 || runs_[0].strikethrough))
        return nullptr;
    const PlainGlyphs* glyphs = rasterFace(runs_.empty() ? nullptr : runs_[0].font.get()).plainGlyphs();
    // The font may have turned out unfit since.
    return glyphs != nullptr && glyphs->isFit() ? glyphs : nullptr;
}

bool RasterTextLayout::addPlain(DrawnLine& out, std::size_t line) const {
    const Place& place = places_[line];
    const Block& block = blocks_[place.block];
    const PlainGlyphs* glyphs = plainGlyphsOf(block);
    if (glyphs == nullptr) return false;
    const double offset = runs_.empty() ? 0 : runs_[0].baselineOffset;
    out.glyphs.push_back({glyphs->run(textOf(block), place.x, lines_[line].baseline - offset), 0});
    return true;
}

void RasterTextLayout::prepareDrawing() const {
    drawn_.resize(lines_.size());
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        const Block& block = blocks_[places_[i].block];
        if (addPlain(drawn_[i], i)) continue;
        const QTextLayout* layout = shapedOf(block);
        if (layout == nullptr || places_[i].line < 0) continue;
        const QTextLine shaped = layout->lineAt(places_[i].line);
        const int first = shaped.textStart();
        const int last = first + shaped.textLength();
        if (oneLook_) {
            addDrawn(drawn_[i], i, first, last - first, 0);
            continue;
        }
        const auto addRange = [&](int from, int to) {
            for (std::size_t run = runAt(block.toText(from)); run < runs_.size() && from < to; ++run) {
                const int end = std::min(to, block.toShaped(NSMaxRange(runs_[run].range)));
                addDrawn(drawn_[i], i, from, end - from, run);
                from = std::max(from, end);
            }
        };
        if (!block.truncated) {
            addRange(first, last);
            continue;
        }
        const int head = static_cast<int>(block.head);
        addRange(first, head);
        const std::size_t neighbour =
            block.head > 0 ? block.start + block.head - 1 : block.start + block.length - block.tail;
        addDrawn(drawn_[i], i, head, 1, runAt(std::min(neighbour, block.start + block.length - 1)));
        addRange(head + 1, last);
    }
}

void RasterTextLayout::paintGlyphs(QPainter& painter, const std::vector<Glyphs>& glyphs, double alpha,
                                   QPointF at) const {
    std::uint32_t look = UINT32_MAX;
    for (const Glyphs& g : glyphs) {
        if (g.look != look) {
            look = g.look;
            painter.setPen(toQt(look < runs_.size() ? runs_[look].color : Color{}, alpha));
        }
        painter.drawGlyphRun(at, g.run);
    }
}

void RasterTextLayout::paintShadows(QPainter& painter, std::size_t line, double alpha) const {
    const QTransform device = painter.worldTransform();
    const double scale = std::sqrt(std::abs(device.determinant()));
    const TextLine& placed = lines_[line];
    const double margin = largestFont_ * 0.6 + 1;
    for (std::size_t look = 0; look < runs_.size(); ++look) {
        const auto& shadow = runs_[look].shadow;
        if (!shadow || !(shadow->color.alpha > 0) ||
            !std::isfinite(shadow->blur + shadow->offset.width + shadow->offset.height))
            continue;
        std::vector<Glyphs> cast;
        for (const Glyphs& g : drawn_[line].glyphs)
            if (g.look == look) cast.push_back(g);
        if (cast.empty()) continue;
        const QRect area = outward(device.mapRect(toQt(NSInsetRect(placed.used, -margin, -margin))));
        constexpr int largest = 8192;
        if (area.isEmpty() || area.width() > largest || area.height() > largest) continue;
        RasterTarget apart(area);
        QPainter& p = apart.painter({area, nullptr}, Compositing::sourceOver, true);
        apart.pushTransform(device);
        paintGlyphs(p, cast, alpha);
        const BlurredShadow blurred = shadowOf(apart.image(), std::max(0.0, shadow->blur) * scale, shadow->color, 1);
        const QPoint offset(static_cast<int>(std::lround(shadow->offset.width * scale)),
                            static_cast<int>(std::lround(-shadow->offset.height * scale)));
        painter.setWorldTransform(QTransform());
        // The target may start elsewhere than at the device's origin: its own transform says where.
        painter.drawImage(area.topLeft() + blurred.offset + offset, blurred.image);
        painter.setWorldTransform(device);
    }
}

std::pair<std::size_t, std::size_t> RasterTextLayout::linesNear(const NSRect& visible) const {
    if (drawn_.empty()) prepareDrawing();
    const double margin = largestFont_ * 0.6 + 1;
    const double top = NSMinY(visible) - margin;
    const double bottom = NSMaxY(visible) + margin;
    const auto first = std::lower_bound(lines_.begin(), lines_.end(), top,
                                        [](const TextLine& line, double y) { return NSMaxY(line.rect) < y; });
    const auto begin = static_cast<std::size_t>(first - lines_.begin());
    std::size_t end = begin;
    while (end < lines_.size() && lines_[end].rect.origin.y <= bottom)
        ++end;
    return {begin, end};
}

void RasterTextLayout::paint(QPainter& painter, const NSRect& visible, double alpha, Shadows shadows) const {
    const auto [begin, end] = linesNear(visible);
    const QTransform device = painter.worldTransform();
    const auto paintBars = [&](std::size_t line, bool behind) {
        for (const Bar& bar : drawn_[line].bars) {
            if (bar.behind != behind) continue;
            QRectF r = toQt(bar.rect);
            if (device.type() <= QTransform::TxScale) {
                // Whole pixels, and at least one.
                const QRectF exact = device.mapRect(r);
                QRect pixels = nearest(exact);
                if (bar.isLine) pixels.setHeight(std::max(1, static_cast<int>(std::lround(exact.height()))));
                r = device.inverted().mapRect(QRectF(pixels));
            }
            painter.fillRect(r, toQt(bar.color, alpha));
        }
    };
    if (shadows == Shadows::alone) {
        for (std::size_t i = begin; i < end; ++i)
            paintShadows(painter, i, alpha);
        return;
    }
    for (std::size_t i = begin; i < end; ++i)
        paintBars(i, true);
    for (std::size_t i = begin; i < end; ++i) {
        if (hasRunShadow_ && shadows == Shadows::cast) paintShadows(painter, i, alpha);
        paintGlyphs(painter, drawn_[i].glyphs, alpha);
        paintBars(i, false);
    }
}

bool RasterTextLayout::paintBareGlyphs(QPainter& painter, QPointF corner, const NSRect& visible, double alpha) const {
    const auto [begin, end] = linesNear(visible);
    for (std::size_t i = begin; i < end; ++i)
        if (!drawn_[i].bars.empty()) return false;
    for (std::size_t i = begin; i < end; ++i)
        paintGlyphs(painter, drawn_[i].glyphs, alpha, corner);
    return true;
}

namespace {

/// The smallest rectangle that holds every pixel that is not transparent.
QRect inked(const QImage& image) {
    const int width = image.width();
    const int height = image.height();
    const qsizetype stride = image.bytesPerLine();
    const uchar* bits = image.constBits();
    const auto row = [=](int y) { return reinterpret_cast<const QRgb*>(bits + y * stride); };
    const auto isBlank = [=](int y) {
        const QRgb* pixels = row(y);
        return std::all_of(pixels, pixels + width, [](QRgb p) { return p == 0; });
    };
    int top = 0;
    while (top < height && isBlank(top))
        ++top;
    if (top == height) return {};
    int bottom = height - 1;
    while (isBlank(bottom))
        --bottom;
    int left = width;
    int right = -1;
    for (int y = top; y <= bottom; ++y) {
        const QRgb* pixels = row(y);
        // Only what widens the rectangle is looked for.
        const QRgb* first = std::find_if(pixels, pixels + left, [](QRgb p) { return p != 0; });
        left = static_cast<int>(first - pixels);
        int x = width - 1;
        while (x > right && pixels[x] == 0)
            --x;
        right = x;
    }
    return {QPoint(left, top), QPoint(right, bottom)};
}

} // namespace

std::optional<GlyphMasks::Ink> RasterTextLayout::plainInk(double scale, QPointF shift, QSize size) const {
    if (lines_.size() != 1 || hasRunShadow_) return std::nullopt;
    const Block& block = blocks_[places_[0].block];
    const PlainGlyphs* glyphs = plainGlyphsOf(block);
    if (glyphs == nullptr) return std::nullopt;
    const Color color = runs_.empty() ? Color{} : runs_[0].color;
    const double offset = runs_.empty() ? 0 : runs_[0].baselineOffset;
    return glyphs->draw(textOf(block), places_[0].x, lines_[0].baseline - offset, scale, shift, toPremultiplied(color),
                        size);
}

void RasterTextLayout::keep(QImage&& image, QPoint at, double scale, int phase) const {
    if (kept_.phase >= 0) RenderedTexts::shared().remove(*this);
    kept_ = {std::move(image), at, scale, phase};
    RenderedTexts::shared().add(*this);
}

std::optional<RasterTextLayout::Rendered> RasterTextLayout::rendered(double scale, NSPoint origin) const {
    constexpr double largestArea = 1 << 16;
    constexpr double far = 1e6;
    if (lines_.empty() || text_.empty()) return Rendered{&kept_.image, {}, {}};
    if (!(std::abs(origin.x) < far) || !(std::abs(origin.y) < far)) return std::nullopt;
    // The first baseline is on a whole pixel, as each line's is; across, glyphs stand at quarters.
    const double rise = lines_.front().baseline * scale;
    const double quarters = std::floor(origin.x * 4 + 0.5);
    const double wholeX = std::floor(quarters / 4);
    const int phase = static_cast<int>(quarters - wholeX * 4);
    const QPoint base(static_cast<int>(wholeX), static_cast<int>(std::floor(origin.y + rise + 0.5)));
    const auto finished = [&] { return Rendered{&kept_.image, kept_.image.rect(), base + kept_.at}; };
    if (kept_.phase == phase && kept_.scale == scale) {
        RenderedTexts::shared().touch(*this);
        return finished();
    }

    const NSRect ink = inkBounds();
    if (!(ink.size.width * scale * ink.size.height * scale <= largestArea)) return std::nullopt;
    const QRect area = outward(QRectF(ink.origin.x * scale + phase / 4.0, ink.origin.y * scale - rise,
                                      ink.size.width * scale, ink.size.height * scale));
    const QPointF shift(phase / 4.0 - area.left(), -rise - area.top());
    if (auto drawn = plainInk(scale, shift, area.size())) {
        drawn->at += area.topLeft();
        // Most labels of a list that scrolls far show only once.
        if (!std::exchange(wasDrawn_, true)) return Rendered{drawn->image, drawn->part, base + drawn->at};
        keep(drawn->part.isEmpty() ? QImage() : drawn->image->copy(drawn->part), drawn->at, scale, phase);
        return finished();
    }
    QImage image(area.size(), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) return std::nullopt;
    image.fill(0);
    {
        QPainter painter(&image);
        painter.setWorldTransform(QTransform(scale, 0, 0, scale, shift.x(), shift.y()));
        paint(painter, ink, 1);
    }
    const QRect used = inked(image);
    keep(used.isEmpty() ? QImage() : image.copy(used), area.topLeft() + used.topLeft(), scale, phase);
    return finished();
}

} // namespace libvue::backend

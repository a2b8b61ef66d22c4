#include <libvue/platform/appkit/BalloonDrawing.h>

#include <algorithm>
#include <cmath>
#include <list>
#include <memory>
#include <utility>
#include <vector>

#include <libvue/platform/appkit/NSWindowPrivate.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSShadow.h>

namespace libvue {

namespace {

void paint(const BalloonDrawing& b, bool withShadow) {
    {
        const GraphicsStateScope state;
        if (withShadow) {
            const Ref<NSShadow> shadow = make<NSShadow>();
            shadow->setShadowBlurRadius(b.shadow.blur);
            shadow->setShadowOffset({0, -b.shadow.drop});
            shadow->setShadowColor(NSColor::shadowColor()->colorWithAlphaComponent(b.shadow.alpha));
            shadow->set();
        }
        b.fill->setFill();
        b.body->fill();
    }
    for (const auto& line : b.lines) {
        line.color->setStroke();
        line.path->stroke();
    }
}

/// All that the pixels depend on.
struct Look {
    struct Outline {
        backend::Path path;
        std::vector<CGFloat> manner; ///< rule, width, cap, join, miter limit, phase and lengths of the dashes
        backend::Color color;
        friend bool operator==(const Outline&, const Outline&) = default;
    };
    double scale = 1;
    NSSize size;
    bool withShadow = false;
    BalloonDrawing::Shadow shadow{};
    backend::Color shade;
    std::vector<Outline> outlines; ///< the body, then the lines
    friend bool operator==(const Look&, const Look&) = default;
};

Look::Outline outlineOf(const NSBezierPath& path, const NSColor& color) {
    NSInteger dashes = 0;
    path.getLineDash_count_phase(nullptr, &dashes, nullptr);
    std::vector<CGFloat> manner{
        static_cast<CGFloat>(path.windingRule()),   path.lineWidth(),  static_cast<CGFloat>(path.lineCapStyle()),
        static_cast<CGFloat>(path.lineJoinStyle()), path.miterLimit(), 0};
    if (dashes > 0) {
        const std::size_t own = manner.size();
        manner.resize(own + static_cast<std::size_t>(dashes));
        path.getLineDash_count_phase(&manner[own], nullptr, &manner[own - 1]);
    }
    return {path.backendPath(), std::move(manner), color.resolved()};
}

Look lookOf(const BalloonDrawing& b, bool withShadow, double scale) {
    Look look{scale, b.size, withShadow, b.shadow, NSColor::shadowColor()->resolved(), {}};
    look.outlines.reserve(b.lines.size() + 1);
    look.outlines.push_back(outlineOf(*b.body, *b.fill));
    for (const auto& line : b.lines)
        look.outlines.push_back(outlineOf(*line.path, *line.color));
    return look;
}

bool hasPattern(const BalloonDrawing& b) {
    return b.fill->patternImage() ||
           std::any_of(b.lines.begin(), b.lines.end(), [](const auto& line) { return line.color->patternImage(); });
}

/// The last ones.
class Drawn {
public:
    static Drawn& shared() {
        static Drawn all;
        return all;
    }

    /// Null where it is too large to be kept.
    std::shared_ptr<backend::Picture> picture(const BalloonDrawing& b, bool withShadow, double scale) {
        Look look = lookOf(b, withShadow, scale);
        for (auto i = entries_.begin(); i != entries_.end(); ++i) {
            if (i->look != look) continue;
            entries_.splice(entries_.begin(), entries_, i);
            return entries_.front().picture;
        }
        if (!(b.size.width * b.size.height * scale * scale <= mostPixels)) return nullptr;
        auto& graphics = *backend::Backend::current().graphics;
        auto picture = graphics.makePicture(b.size, scale);
        if (!picture) return nullptr;
        {
            const Ref<NSGraphicsContext> context = make<NSGraphicsContext>(graphics.canvasOn(picture), NO, picture);
            const GraphicsContextScope scope(context);
            paint(b, withShadow);
        }
        entries_.push_front({std::move(look), picture});
        for (std::size_t pixels = 0, count = 0; auto& e : entries_) {
            pixels +=
                static_cast<std::size_t>(e.picture->pixelWidth()) * static_cast<std::size_t>(e.picture->pixelHeight());
            if (pixels > mostPixels || count >= mostEntries) {
                entries_.resize(count);
                break;
            }
            ++count;
        }
        return picture;
    }

private:
    static constexpr std::size_t mostEntries = 8, mostPixels = 2'000'000;
    struct Entry {
        Look look;
        std::shared_ptr<backend::Picture> picture;
    };
    std::list<Entry> entries_;
};

bool isWhole(CGFloat v) { return v == std::round(v); }

/// On whole pixels, the right way up, unturned.
bool liesOnPixels(const backend::Canvas& canvas) {
    const backend::Transform t = canvas.transform();
    const double scale = canvas.scale();
    return t.a == 1 && t.b == 0 && t.c == 0 && t.d == 1 && isWhole(t.tx * scale) && isWhole(t.ty * scale);
}

void draw(backend::Canvas& canvas, const backend::Picture& picture, const BalloonDrawing& b) {
    const auto part = [&](const NSRect& r) {
        if (!NSIsEmptyRect(r))
            canvas.drawPicture(picture, r, r, backend::Compositing::sourceOver, 1, backend::YAxis::up);
    };
    const NSRect all{{0, 0}, picture.size()};
    const CGFloat left = std::ceil(NSMinX(b.covered)), right = std::floor(NSMaxX(b.covered));
    const CGFloat bottom = std::ceil(NSMinY(b.covered)), top = std::floor(NSMaxY(b.covered));
    if (left >= right || bottom >= top || b.fill->resolved().alpha < 1 || !isWhole(canvas.scale())) return part(all);
    // Its middle is one colour, which is faster filled than copied.
    const CGFloat height = top - bottom;
    part({{0, 0}, {NSMaxX(all), bottom}});
    part({{0, top}, {NSMaxX(all), NSMaxY(all) - top}});
    part({{0, bottom}, {left, height}});
    part({{right, bottom}, {NSMaxX(all) - right, height}});
    b.fill->setFill();
    NSRectFill({{left, bottom}, {right - left, height}});
}

} // namespace

void drawBalloon(const NSWindow* window, const BalloonDrawing& balloon) {
    NSGraphicsContext* context = NSGraphicsContext::currentContext();
    if (!context || !balloon.body || !balloon.fill) return;
    const bool withShadow = window && window->hasShadow() && !window->isOpaque() && windowServer().hasCompositor();
    backend::Canvas& canvas = context->canvas();
    if (canvas.drawsToScreen() && !context->isFlipped() && !hasPattern(balloon) && liesOnPixels(canvas))
        if (const auto picture = Drawn::shared().picture(balloon, withShadow, canvas.scale()))
            return draw(canvas, *picture, balloon);
    paint(balloon, withShadow);
}

} // namespace libvue

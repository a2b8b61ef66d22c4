#include <libvue/platform/appkit/KeptDrawing.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <list>
#include <memory>
#include <utility>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/graphics/Appearance.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>

namespace libvue {

namespace {

/// What a picture holds between its ends, in points; wider drawings repeat it.
constexpr CGFloat middle = 128;
/// In points. What is wider is drawn where it shows.
constexpr CGFloat widest = 4096;

bool isWhole(double v) { return v == std::round(v); }

/// Whether the rectangle and its parts lie on whole pixels, the drawing neither turned nor stretched.
bool liesOnPixels(const backend::Canvas& canvas, const NSRect& r, CGFloat end) {
    const backend::Transform t = canvas.transform();
    const double scale = canvas.scale();
    if (t.a != 1 || t.b != 0 || t.c != 0 || std::abs(t.d) != 1) return false;
    for (const double v : {r.origin.x + t.tx, r.origin.y * t.d + t.ty, r.size.width, r.size.height, end, middle})
        if (!isWhole(v * scale)) return false;
    return true;
}

/// The last ones.
class Pictures {
public:
    static Pictures& shared() {
        static Pictures all;
        return all;
    }

    /// Null where it is too large to be kept.
    std::shared_ptr<backend::Picture> picture(const KeptLook& look, NSSize size, double scale,
                                              const std::function<void(const NSRect&)>& paint) {
        const Key key{look, size, scale, currentAppearance()};
        for (auto i = entries_.begin(); i != entries_.end(); ++i) {
            if (!(i->key == key)) continue;
            entries_.splice(entries_.begin(), entries_, i);
            return entries_.front().picture;
        }
        if (!(size.width * size.height * scale * scale <= mostPixels)) return nullptr;
        auto& graphics = *backend::Backend::current().graphics;
        auto picture = graphics.makePicture(size, scale);
        if (!picture) return nullptr;
        const Ref<NSGraphicsContext> context = make<NSGraphicsContext>(graphics.canvasOn(picture), NO, picture);
        {
            const GraphicsContextScope scope(context);
            paint({{0, 0}, size});
        }
        entries_.push_front({key, picture});
        if (entries_.size() > mostEntries) entries_.pop_back();
        return picture;
    }

private:
    static constexpr std::size_t mostEntries = 32;
    static constexpr double mostPixels = 1 << 16;
    struct Key {
        KeptLook look;
        NSSize size;
        double scale;
        Appearance appearance;
        friend bool operator==(const Key&, const Key&) = default;
    };
    struct Entry {
        Key key;
        std::shared_ptr<backend::Picture> picture;
    };
    std::list<Entry> entries_;
};

} // namespace

void drawKept(const KeptLook& look, const NSRect& room, CGFloat end, const std::function<void(const NSRect&)>& paint) {
    NSGraphicsContext* context = NSGraphicsContext::currentContext();
    if (!context || NSIsEmptyRect(room)) return;
    backend::Canvas& canvas = context->canvas();
    // A page keeps its outlines. A picture of pixels is what the screen would show.
    const bool onPixels = canvas.drawsToScreen() || context->picture();
    if (!onPixels || !(room.size.width <= widest) || context->compositingOperation() != NSCompositeSourceOver ||
        !liesOnPixels(canvas, room, end))
        return paint(room);
    const bool asOne = room.size.width <= 2 * end;
    const NSSize size{asOne ? room.size.width : 2 * end + middle, room.size.height};
    const auto picture = Pictures::shared().picture(look, size, canvas.scale(), paint);
    if (!picture) return paint(room);
    const backend::YAxis axis = context->isFlipped() ? backend::YAxis::down : backend::YAxis::up;
    const auto part = [&](CGFloat from, CGFloat to, CGFloat width) {
        canvas.drawPicture(*picture, {{from, 0}, {width, size.height}}, {{to, NSMinY(room)}, {width, size.height}},
                           backend::Compositing::sourceOver, 1, axis);
    };
    if (asOne) return part(0, NSMinX(room), size.width);
    const CGFloat right = NSMaxX(room) - end;
    CGFloat x = NSMinX(room);
    for (CGFloat from = 0; x < right; from = end) {
        const CGFloat width = std::min(end + middle - from, right - x);
        part(from, x, width);
        x += width;
    }
    part(end + middle, right, end);
}

} // namespace libvue

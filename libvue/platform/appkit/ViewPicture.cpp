#include <libvue/platform/appkit/ViewPicture.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/DrawingPass.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/foundation/ScopeExit.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

struct ViewPicture::Kept {
    explicit Kept(NSView* v) : view(v) {}
    Ref<NSView> view;
    std::shared_ptr<backend::Picture> picture;
    NSSize size;
    CGFloat scale = 0;
    bool stale = true;
    bool drawing = false;
    bool opaque = false; ///< no pixel lets anything through

    void bringUpToDate(CGFloat wanted) {
        const NSSize now = view->frame().size;
        if (!stale && size == now && scale == wanted) return;
        // Before drawing: what drawing changes is drawn at the next pass.
        stale = false;
        size = now;
        scale = wanted;
        // The pass under way leaves out what it has no need of; a picture is whole.
        const std::vector<NSRect> none;
        const DrawRegionScope everything(none);
        drawing = true;
        const ScopeExit done([this] { drawing = false; });
        const Ref<NSImage> image = view->imageInsideRect_scale(view->bounds(), scale);
        picture = image ? image->picture(scale) : nullptr;
        opaque = picture && isOpaque(*picture);
    }

    static bool isOpaque(const backend::Picture& p) {
        const std::uint32_t* pixels = p.pixels();
        if (!pixels) return false;
        const std::size_t count = static_cast<std::size_t>(p.pixelWidth()) * static_cast<std::size_t>(p.pixelHeight());
        std::uint32_t all = 0xFF000000;
        for (std::size_t i = 0; i < count; ++i)
            all &= pixels[i];
        return all >= 0xFF000000;
    }
};

std::size_t ViewPicture::count_ = 0;

namespace {

bool isWhole(CGFloat v) noexcept { return std::abs(v - std::round(v)) < 1e-6; }

/// Half a pixel goes the same way on both sides of 0: what stands side by side stays so.
CGFloat toPixel(CGFloat v, CGFloat scale) noexcept { return std::floor(v * scale + 0.5) / scale; }

/// Leaves what of the rectangles lies outside of `hole`: up to four for each that it cuts.
void cutOut(std::vector<NSRect>& rects, const NSRect& hole) {
    std::vector<NSRect> left;
    const auto keep = [&left](CGFloat x, CGFloat y, CGFloat toX, CGFloat toY) {
        constexpr CGFloat hair = 1e-6;
        if (toX - x > hair && toY - y > hair) left.push_back({{x, y}, {toX - x, toY - y}});
    };
    for (const NSRect& r : rects) {
        const NSRect in = NSIntersectionRect(r, hole);
        if (NSIsEmptyRect(in)) {
            left.push_back(r);
            continue;
        }
        keep(NSMinX(r), NSMinY(r), NSMaxX(r), NSMinY(in));
        keep(NSMinX(r), NSMaxY(in), NSMaxX(r), NSMaxY(r));
        keep(NSMinX(r), NSMinY(in), NSMinX(in), NSMaxY(in));
        keep(NSMaxX(in), NSMinY(in), NSMaxX(r), NSMaxY(in));
    }
    rects = std::move(left);
}

NSRect toPixels(const NSRect& r, CGFloat scale) noexcept {
    return {{toPixel(r.origin.x, scale), toPixel(r.origin.y, scale)}, r.size};
}

} // namespace

std::vector<ViewPicture::Kept*>& ViewPicture::all() {
    static auto& kept = *new std::vector<Kept*>;
    return kept;
}

ViewPicture::ViewPicture(NSView* view) {
    if (!view || of(view)) return;
    kept_ = std::make_unique<Kept>(view);
    all().push_back(kept_.get());
    count_ = all().size();
}

ViewPicture::ViewPicture(ViewPicture&& other) noexcept = default;

ViewPicture::~ViewPicture() {
    if (!kept_) return;
    std::erase(all(), kept_.get());
    count_ = all().size();
}

ViewPicture::Kept* ViewPicture::of(const NSView* view) noexcept {
    if (!any_()) return nullptr;
    const std::vector<Kept*>& kept = all();
    const auto found = std::find_if(kept.begin(), kept.end(), [view](const Kept* k) { return k->view == view; });
    return found == kept.end() ? nullptr : *found;
}

void ViewPicture::viewChanged_(const NSView* view) noexcept {
    if (Kept* k = of(view)) k->stale = true;
}

bool ViewPicture::draw_(NSView* view, NSGraphicsContext* context) {
    Kept* k = of(view);
    if (!k || k->drawing) return false;
    backend::Canvas& canvas = context->canvas();
    const backend::Transform toBase = canvas.transform();
    const bool moved = toBase.b == 0 && toBase.c == 0 && std::abs(toBase.a) == 1 && std::abs(toBase.d) == 1;
    const CGFloat scale = canvas.scale();
    const NSSize size = view->frame().size;
    if (!canvas.drawsToScreen() || !moved || !isWhole(size.width * scale) || !isWhole(size.height * scale))
        return false;
    k->bringUpToDate(scale);
    if (!k->picture) return false;
    const NSRect placed = toPixels(toBase.apply(view->frame()), scale);
    canvas.drawPicture(*k->picture, NSZeroRect, toBase.inverted().apply(placed), backend::Compositing::sourceOver, 1,
                       toBase.d < 0 ? backend::YAxis::down : backend::YAxis::up);
    return true;
}

bool ViewPicture::cover_(const NSWindow* window, const NSRect& rect) {
    const CGFloat scale = window->backingScaleFactor();
    std::vector<NSRect> bare{rect};
    for (const Kept* k : all()) {
        const NSView* v = k->view;
        const NSView* parent = v->superview();
        if (!k->opaque || k->stale || v->window() != window || !parent || k->size != v->frame().size ||
            k->scale != scale || v->isHiddenOrHasHiddenAncestor())
            continue;
        bool faded = false;
        for (const NSView* a = parent; a; a = a->superview())
            faded = faded || a->alphaValue() < 1;
        if (faded) continue;
        const NSRect seen = parent->convertRect_toView(parent->visibleRect(), nullptr);
        cutOut(bare, NSIntersectionRect(seen, toPixels(v->convertRect_toView(v->bounds(), nullptr), scale)));
    }
    return bare.empty();
}

} // namespace libvue

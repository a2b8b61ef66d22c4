#include <cstddef>
#include <cstdint>

#include <libvue/platform/appkit/NSWindowPrivate.h>

namespace libvue {

namespace {

/// What can be made out belongs to the window: a fine border that is mostly transparent, too.
constexpr std::uint32_t leastAlpha = 0x06;

/// From the left edge of the first pixel to that of the one behind the last.
struct Run {
    int from, to;
    friend bool operator==(const Run&, const Run&) = default;
};

void readRuns(const std::uint32_t* row, int width, std::vector<Run>& runs) {
    runs.clear();
    for (int x = 0; x < width; ++x) {
        if (row[x] >> 24 < leastAlpha) continue;
        if (!runs.empty() && runs.back().to == x)
            ++runs.back().to;
        else
            runs.push_back({x, x + 1});
    }
}

/// Rectangles, one for each stack of equal runs, in points with y upward.
backend::Path outlineOf(const backend::Picture& picture, const std::uint32_t* pixels) {
    const int width = picture.pixelWidth(), height = picture.pixelHeight();
    const CGFloat scale = picture.size().width > 0 ? width / picture.size().width : 1;
    backend::Path path;
    std::vector<Run> open, runs;
    int top = 0;
    const auto close = [&](int bottom) {
        for (const Run& r : open) {
            const CGFloat left = r.from / scale, right = r.to / scale;
            const CGFloat low = (height - bottom) / scale, high = (height - top) / scale;
            path.verbs.insert(path.verbs.end(),
                              {backend::PathVerb::move, backend::PathVerb::line, backend::PathVerb::line,
                               backend::PathVerb::line, backend::PathVerb::close});
            path.points.insert(path.points.end(), {{left, low}, {right, low}, {right, high}, {left, high}});
        }
    };
    for (int y = 0; y < height; ++y) {
        readRuns(pixels + static_cast<std::ptrdiff_t>(y) * width, width, runs);
        if (runs == open) continue;
        close(y);
        open.swap(runs);
        top = y;
    }
    close(height);
    return path;
}

} // namespace

void NSWindow::shapeWithoutCompositor() {
    // Where nothing blends windows, what a transparent one leaves out would be black: its shape is cut out instead.
    const bool wanted = !opaque_ && !(style_ & NSTitledWindowMask) && !windowServer().hasCompositor();
    Display& d = *display_;
    const auto surface = d.surface.lock();
    const std::uint32_t* pixels = wanted && surface ? surface->pixels() : nullptr;
    if (!pixels) {
        if (d.shape.empty()) return;
        d.shape = {};
        windowServer().setShape(native_, nullptr);
        return;
    }
    backend::Path shape = outlineOf(*surface, pixels);
    // A window of which nothing is to be seen yet keeps its rectangle: one without any area could not be clicked.
    if (shape.empty() || shape == d.shape) return;
    d.shape = std::move(shape);
    windowServer().setShape(native_, &d.shape);
}

} // namespace libvue

#include <libvue/platform/backend/qt/StrokeRuns.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace libvue::backend {

namespace {

/// More pieces than that, and comparing each with each costs more than it saves.
constexpr std::size_t mostSegments = 48;
/// Pixels that a run must have to be worth it.
constexpr double leastRun = 24;
constexpr double hair = 1e-6;

struct Segment {
    NSPoint from, c1, c2, to;
    bool curve = false;
    bool starts = false; ///< of its subpath the first
    bool closed = false; ///< its subpath is
};

struct Box {
    double left, bottom, right, top;
    [[nodiscard]] bool meets(const Box& o) const noexcept {
        return left < o.right && o.left < right && bottom < o.top && o.bottom < top;
    }
};

bool isWhole(double v) noexcept { return std::abs(v - std::round(v)) < hair; }

bool readSegments(const Path& path, std::vector<Segment>& segments) {
    NSPoint start, here;
    bool fresh = true;
    std::size_t at = 0, first = 0;
    const auto add = [&](Segment s) {
        s.from = here;
        s.starts = std::exchange(fresh, false);
        here = s.to;
        segments.push_back(s);
    };
    for (const PathVerb verb : path.verbs) {
        const NSPoint* p = path.points.data() + at;
        switch (verb) {
        case PathVerb::move:
            start = here = p[0];
            at += 1;
            fresh = true;
            first = segments.size();
            break;
        case PathVerb::line:
            add({{}, {}, {}, p[0]});
            at += 1;
            break;
        case PathVerb::curve:
            add({{}, p[0], p[1], p[2], true});
            at += 3;
            break;
        case PathVerb::close:
            if (fresh) return false;
            if (here != start) add({{}, {}, {}, start});
            for (std::size_t i = first; i < segments.size(); ++i)
                segments[i].closed = true;
            fresh = true;
            first = segments.size();
            here = start;
            break;
        }
        if (segments.size() > mostSegments) return false;
    }
    return true;
}

/// Where a run begins and ends along its axis, in whole pixels of the device, and the pixels it covers.
struct Run {
    bool taken = false;
    bool horizontal = false;
    double from = 0, to = 0;
    Box box{};
};

Run runOf(NSPoint a, NSPoint b, double half, double margin) {
    Run r;
    r.horizontal = a.y == b.y;
    if (r.horizontal == (a.x == b.x)) return r;
    const double across = r.horizontal ? a.y : a.x;
    if (!isWhole(across - half) || !isWhole(across + half)) return r;
    const double low = r.horizontal ? std::min(a.x, b.x) : std::min(a.y, b.y);
    const double high = r.horizontal ? std::max(a.x, b.x) : std::max(a.y, b.y);
    r.from = std::ceil(low + margin);
    r.to = std::floor(high - margin);
    if (const double length = r.to - r.from; !(length >= leastRun) || std::isinf(length)) return r;
    const double near = std::round(across - half), far = std::round(across + half);
    r.box = r.horizontal ? Box{r.from, near, r.to, far} : Box{near, r.from, far, r.to};
    r.taken = true;
    return r;
}

Box boxOf(const Segment& s, const Transform& device, double margin) {
    const NSPoint a = device.apply(s.from), b = device.apply(s.to);
    Box box{std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
    if (s.curve)
        for (const NSPoint& c : {device.apply(s.c1), device.apply(s.c2)})
            box = {std::min(box.left, c.x), std::min(box.bottom, c.y), std::max(box.right, c.x),
                   std::max(box.top, c.y)};
    return {box.left - margin, box.bottom - margin, box.right + margin, box.top + margin};
}

/// The way back to user space along one axis.
NSPoint cutAt(const Segment& s, const Run& run, double place, const Transform& device) {
    return run.horizontal ? NSPoint{(place - device.tx) / device.a, s.from.y}
                          : NSPoint{s.from.x, (place - device.ty) / device.d};
}

class Rest {
public:
    explicit Rest(Path& path) : path_(path) {}
    void move(NSPoint p) { add(PathVerb::move, p); }
    void line(NSPoint p) { add(PathVerb::line, p); }
    void segment(const Segment& s) {
        if (!s.curve) return line(s.to);
        path_.verbs.push_back(PathVerb::curve);
        path_.points.insert(path_.points.end(), {s.c1, s.c2, s.to});
    }
    void close() { path_.verbs.push_back(PathVerb::close); }

private:
    void add(PathVerb verb, NSPoint p) {
        path_.verbs.push_back(verb);
        path_.points.push_back(p);
    }
    Path& path_;
};

/// From this many rows on a filling is handed to threads, which for a line takes longer than all of it.
constexpr double mostRows = 64;

/// Only of what is seen: an outline may be as long as its maker likes.
void appendSlices(const Box& box, const NSRect& seen, std::vector<NSRect>& rects) {
    const NSRect r = NSIntersectionRect({{box.left, box.bottom}, {box.right - box.left, box.top - box.bottom}}, seen);
    for (double y = NSMinY(r); y < NSMaxY(r);) {
        rects.push_back({{r.origin.x, y}, {r.size.width, std::min(mostRows, NSMaxY(r) - y)}});
        y += mostRows;
    }
}

/// Small strokes are done at once, a large one is handed to threads, which takes longer than all of them.
void splitApart(Path path, const Transform& device, double margin, std::vector<Path>& pieces) {
    pieces.clear();
    std::vector<Box> boxes;
    std::size_t at = 0;
    for (const PathVerb verb : path.verbs) {
        const std::size_t count = verb == PathVerb::close ? 0 : verb == PathVerb::curve ? 3 : 1;
        if (verb == PathVerb::move) {
            pieces.emplace_back();
            const NSPoint p = device.apply(path.points[at]);
            boxes.push_back({p.x, p.y, p.x, p.y});
        }
        pieces.back().verbs.push_back(verb);
        for (std::size_t i = 0; i < count; ++i, ++at) {
            pieces.back().points.push_back(path.points[at]);
            const NSPoint p = device.apply(path.points[at]);
            Box& b = boxes.back();
            b = {std::min(b.left, p.x), std::min(b.bottom, p.y), std::max(b.right, p.x), std::max(b.top, p.y)};
        }
    }
    for (Box& b : boxes)
        b = {b.left - margin, b.bottom - margin, b.right + margin, b.top + margin};
    for (std::size_t i = 0; i < boxes.size(); ++i)
        for (std::size_t j = i + 1; j < boxes.size(); ++j)
            if (boxes[i].meets(boxes[j])) {
                pieces.resize(1);
                pieces.front() = std::move(path);
                return;
            }
}

} // namespace

bool takeOutRuns(const Path& path, const Stroke& stroke, const Transform& device, const NSRect& seen, StrokeRuns& out) {
    if (device.b != 0 || device.c != 0 || std::abs(device.a) != std::abs(device.d) || device.a == 0) return false;
    if (!stroke.dash.empty() || stroke.cap != LineCap::butt || !(stroke.width > 0)) return false;
    std::vector<Segment> segments;
    segments.reserve(mostSegments + 1);
    if (path.verbs.size() > 2 * mostSegments || !readSegments(path, segments)) return false;
    const double half = stroke.width * std::abs(device.a) / 2;
    // As far as a join may reach along a side.
    const double margin = half * std::max(2.0, stroke.join == LineJoin::miter ? stroke.miterLimit : 0.0) + 1;

    std::vector<Run> runs(segments.size());
    bool any = false;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const Segment& s = segments[i];
        if (s.curve) continue;
        runs[i] = runOf(device.apply(s.from), device.apply(s.to), half, margin);
        any = any || runs[i].taken;
    }
    if (!any) return false;
    // A run that another piece comes near stays in the stroke, which covers a pixel once however often it gets there.
    for (std::size_t j = 0; j < segments.size(); ++j) {
        const Box box = boxOf(segments[j], device, margin);
        for (std::size_t i = 0; i < segments.size(); ++i)
            if (i != j && runs[i].taken && runs[i].box.meets(box)) runs[i].taken = false;
    }
    if (std::none_of(runs.begin(), runs.end(), [](const Run& r) { return r.taken; })) return false;

    out.rects.clear();
    Path all;
    Rest rest(all);
    for (std::size_t first = 0; first < segments.size();) {
        std::size_t end = first + 1;
        while (end < segments.size() && !segments[end].starts)
            ++end;
        const std::size_t count = end - first;
        std::size_t cut = first;
        while (cut < end && !runs[cut].taken)
            ++cut;
        // An outline that closes is walked from its first cut on, so that the join at its start is kept.
        const bool turned = segments[first].closed && cut < end;
        const std::size_t offset = turned ? cut - first : 0;
        if (!turned) rest.move(segments[first].from);
        for (std::size_t k = 0; k < count; ++k) {
            const std::size_t i = first + (offset + k) % count;
            const Segment& s = segments[i];
            const Run& run = runs[i];
            if (!run.taken) {
                rest.segment(s);
                continue;
            }
            const bool forth = run.horizontal ? (s.to.x - s.from.x) * device.a > 0 : (s.to.y - s.from.y) * device.d > 0;
            const NSPoint in = cutAt(s, run, forth ? run.from : run.to, device);
            const NSPoint away = cutAt(s, run, forth ? run.to : run.from, device);
            if (!turned || k > 0) rest.line(in);
            rest.move(away);
            rest.line(s.to);
            appendSlices(run.box, seen, out.rects);
        }
        if (turned) {
            const Segment& s = segments[cut];
            const Run& run = runs[cut];
            const bool forth = run.horizontal ? (s.to.x - s.from.x) * device.a > 0 : (s.to.y - s.from.y) * device.d > 0;
            rest.line(cutAt(s, run, forth ? run.from : run.to, device));
        } else if (segments[first].closed)
            rest.close();
        first = end;
    }
    splitApart(std::move(all), device, margin, out.rest);
    return true;
}

} // namespace libvue::backend

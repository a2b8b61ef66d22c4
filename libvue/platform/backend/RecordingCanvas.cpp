#include <libvue/platform/backend/RecordingCanvas.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

namespace libvue::backend {

namespace {

std::string number(double v) {
    if (!std::isfinite(v)) return std::isnan(v) ? "nan" : v > 0 ? "inf" : "-inf";
    char text[64];
    std::snprintf(text, sizeof text, "%.3f", v);
    std::string out = text;
    while (out.back() == '0')
        out.pop_back();
    if (out.back() == '.') out.pop_back();
    return out == "-0" ? "0" : out;
}
std::string shown(NSPoint p) { return "{" + number(p.x) + ", " + number(p.y) + "}"; }
std::string shown(const NSRect& r) {
    return "{" + shown(r.origin) + ", {" + number(r.size.width) + ", " + number(r.size.height) + "}}";
}
std::string shown(const Color& c) {
    const auto byte = [](double v) { return static_cast<unsigned>(std::lround(std::clamp(v, 0.0, 1.0) * 255)); };
    char out[16];
    std::snprintf(out, sizeof out, "#%02x%02x%02x%02x", byte(c.red), byte(c.green), byte(c.blue), byte(c.alpha));
    return out;
}
std::string shown(const Path& path, const Transform& t) {
    std::string out;
    std::size_t next = 0;
    const auto point = [&] {
        return next < path.points.size() ? " " + shown(t.apply(path.points[next++])) : std::string();
    };
    for (const PathVerb verb : path.verbs) {
        if (!out.empty()) out += ' ';
        switch (verb) {
        case PathVerb::move:
            out += "M" + point();
            break;
        case PathVerb::line:
            out += "L" + point();
            break;
        case PathVerb::curve:
            out += "C" + point();
            out += point();
            out += point();
            break;
        case PathVerb::close:
            out += "Z";
            break;
        }
    }
    return out.empty() ? "empty" : out;
}
std::string shown(const Stroke& stroke) {
    std::string out = " width " + number(stroke.width);
    if (stroke.cap != LineCap::butt) out += stroke.cap == LineCap::round ? " cap round" : " cap square";
    if (stroke.join != LineJoin::miter) out += stroke.join == LineJoin::round ? " join round" : " join bevel";
    if (stroke.dash.empty()) return out;
    out += " dash";
    for (const double d : stroke.dash)
        out += " " + number(d);
    return out;
}
std::string shown(Compositing op) {
    static constexpr const char* names[] = {
        "clear",           "copy",          "sourceOver",     "sourceIn",        "sourceOut",   "sourceAtop",
        "destinationOver", "destinationIn", "destinationOut", "destinationAtop", "exclusiveOr", "plusDarker",
        "highlight",       "plusLighter"};
    return names[static_cast<std::size_t>(op)];
}
std::string utf8(std::u16string_view units) {
    std::string out;
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t c = units[i];
        const bool high = c >= 0xD800 && c < 0xDC00;
        if (high && i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000)
            c = 0x10000 + ((c - 0xD800) << 10) + (units[++i] - 0xDC00u);
        else if (c >= 0xD800 && c < 0xE000)
            c = 0xFFFD;
        if (c == '\n' || c == '\r' || c == '\t' || c == '"' || c == '\\') {
            out += '\\';
            out += c == '\n' ? 'n' : c == '\r' ? 'r' : c == '\t' ? 't' : static_cast<char>(c);
        } else if (c < 0x80) {
            out += static_cast<char>(c);
        } else {
            const int more = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
            static constexpr unsigned first[] = {0, 0xC0, 0xE0, 0xF0};
            out += static_cast<char>(first[more] | (c >> (6 * more)));
            for (int k = more - 1; k >= 0; --k)
                out += static_cast<char>(0x80 | ((c >> (6 * k)) & 0x3F));
        }
    }
    return out;
}

bool isStraight(const Transform& t) noexcept { return t.b == 0 && t.c == 0; }

Path outline(const NSRect& r) {
    return {{PathVerb::move, PathVerb::line, PathVerb::line, PathVerb::line, PathVerb::close},
            {r.origin, {NSMaxX(r), NSMinY(r)}, {NSMaxX(r), NSMaxY(r)}, {NSMinX(r), NSMaxY(r)}}};
}

/// A rectangle, or where it is turned, its corners.
std::string place(const NSRect& r, const Transform& t) {
    return isStraight(t) ? shown(t.apply(r)) : shown(outline(r), t);
}

Path mapped(const Path& path, const Transform& t) {
    Path out = path;
    for (NSPoint& p : out.points)
        p = t.apply(p);
    return out;
}

NSRect boundsOf(const Path& path) {
    if (path.points.empty()) return {};
    NSPoint low = path.points.front();
    NSPoint high = low;
    for (const NSPoint p : path.points) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    return {low, {high.x - low.x, high.y - low.y}};
}

bool isRectangle(const Path& p) {
    const auto& q = p.points;
    if (p.verbs.size() < 4 || q.size() < 4 || q.size() > 5 || p.verbs[0] != PathVerb::move) return false;
    if (q.size() == 5 && q[4] != q[0] && p.verbs.back() != PathVerb::move) return false;
    for (std::size_t i = 1; i < 4; ++i)
        if (p.verbs[i] != PathVerb::line) return false;
    return (q[0].x == q[1].x && q[1].y == q[2].y && q[2].x == q[3].x && q[3].y == q[0].y) ||
           (q[0].y == q[1].y && q[1].x == q[2].x && q[2].y == q[3].y && q[3].x == q[0].x);
}

} // namespace

std::string RecordingCanvas::Operation::describe(Space space) const {
    const Transform t = space == Space::base ? transform : Transform{};
    std::string out;
    switch (kind) {
    case Kind::fill:
        out = "fill " + shown(path, t) + " " + shown(color);
        if (rule == FillRule::evenOdd) out += " evenOdd";
        break;
    case Kind::fillRect:
        out = "fillRect " + place(rect, t) + " " + shown(color);
        break;
    case Kind::stroke:
        out = "stroke " + shown(path, t) + " " + shown(color) + shown(stroke);
        break;
    case Kind::line:
        out = "line " + shown(t.apply(from)) + " " + shown(t.apply(to)) + " " + shown(color) + shown(stroke);
        break;
    case Kind::gradient:
        out = "gradient " + shown(t.apply(gradient.start)) + " " + shown(t.apply(gradient.end));
        for (const GradientStop& stop : gradient.stops)
            out += " " + number(stop.position) + " " + shown(stop.color);
        if (gradient.extendStart) out += " extendStart";
        if (gradient.extendEnd) out += " extendEnd";
        out += " in " + (space == Space::base ? shown(clip) : shown(t.inverted().apply(clip)));
        break;
    case Kind::picture:
        out = "picture " + number(pictureSize.width) + " by " + number(pictureSize.height);
        if (!NSIsEmptyRect(source)) out += " from " + shown(source);
        out += " to " + place(rect, t);
        if (fraction != 1) out += " fraction " + number(fraction);
        break;
    case Kind::text:
        out = "text \"" + utf8(text) + "\" " + place(rect, t) + " " + shown(color);
        break;
    case Kind::beginLayer:
        out = "beginLayer";
        break;
    case Kind::endLayer:
        return "endLayer";
    }
    if (compositing != Compositing::sourceOver) out += " " + shown(compositing);
    if (alpha != 1) out += " alpha " + number(alpha);
    if (shadow)
        out += " shadow (" + number(shadow->offset.width) + ", " + number(shadow->offset.height) + ") " +
               number(shadow->blur) + " " + shown(shadow->color);
    return out;
}

RecordingCanvas::RecordingCanvas(NSSize size, double scale, Canvas* forward) : scale_(scale), forward_(forward) {
    state_.clip = {{0, 0}, size};
    if (forward_ != nullptr) state_.transform = forward_->transform();
}

RecordingCanvas::~RecordingCanvas() = default;

std::vector<RecordingCanvas::Operation> RecordingCanvas::operations(Kind kind) const {
    std::vector<Operation> out;
    std::copy_if(operations_.begin(), operations_.end(), std::back_inserter(out),
                 [kind](const Operation& o) { return o.kind == kind; });
    return out;
}

std::string RecordingCanvas::describe(Space space) const {
    std::string out;
    for (const Operation& o : operations_)
        out += o.describe(space) + "\n";
    return out;
}

RecordingCanvas::Operation& RecordingCanvas::add(Kind kind) {
    Operation& o = operations_.emplace_back();
    o.kind = kind;
    o.transform = state_.transform;
    o.clip = state_.clip;
    o.clipPaths = state_.clipPaths;
    o.compositing = state_.compositing;
    o.alpha = state_.alpha;
    o.shadow = state_.shadow;
    o.antialiasing = state_.antialiasing;
    o.interpolation = state_.interpolation;
    return o;
}

void RecordingCanvas::save() {
    saved_.push_back(state_);
    if (forward_ != nullptr) forward_->save();
}
void RecordingCanvas::restore() {
    if (saved_.size() <= (layers_.empty() ? 0 : layers_.back().depth)) return;
    state_ = std::move(saved_.back());
    saved_.pop_back();
    if (forward_ != nullptr) forward_->restore();
}
void RecordingCanvas::concat(const Transform& t) {
    state_.transform = t.then(state_.transform);
    if (forward_ != nullptr) forward_->concat(t);
}

void RecordingCanvas::narrow(const NSRect& base) { state_.clip = NSIntersectionRect(state_.clip, base); }
void RecordingCanvas::narrow(Path path) {
    narrow(boundsOf(path));
    if (!isRectangle(path)) state_.clipPaths.push_back(std::move(path));
}

void RecordingCanvas::clip(const Path& path, FillRule rule) {
    narrow(mapped(path, state_.transform));
    if (forward_ != nullptr) forward_->clip(path, rule);
}
void RecordingCanvas::clip(const NSRect& rect) {
    if (isStraight(state_.transform))
        narrow(state_.transform.apply(rect));
    else
        narrow(mapped(outline(rect), state_.transform));
    if (forward_ != nullptr) forward_->clip(rect);
}
void RecordingCanvas::clip(const NSRect* rects, std::size_t count) {
    Path all;
    for (std::size_t i = 0; i < count; ++i) {
        if (NSIsEmptyRect(rects[i])) continue;
        const Path one = mapped(outline(rects[i]), state_.transform);
        all.verbs.insert(all.verbs.end(), one.verbs.begin(), one.verbs.end());
        all.points.insert(all.points.end(), one.points.begin(), one.points.end());
    }
    narrow(std::move(all));
    if (forward_ != nullptr) forward_->clip(rects, count);
}
NSRect RecordingCanvas::clipBounds() const {
    return NSIsEmptyRect(state_.clip) ? NSRect{} : state_.transform.inverted().apply(state_.clip);
}

void RecordingCanvas::setCompositing(Compositing op) {
    state_.compositing = op;
    if (forward_ != nullptr) forward_->setCompositing(op);
}
void RecordingCanvas::setAlpha(double alpha) {
    state_.alpha = alpha;
    if (forward_ != nullptr) forward_->setAlpha(alpha);
}
void RecordingCanvas::setShadow(const Shadow* shadow) {
    state_.shadow = shadow != nullptr ? std::optional(*shadow) : std::nullopt;
    if (forward_ != nullptr) forward_->setShadow(shadow);
}
void RecordingCanvas::setAntialiasing(bool on) {
    state_.antialiasing = on;
    if (forward_ != nullptr) forward_->setAntialiasing(on);
}
void RecordingCanvas::setInterpolation(Interpolation quality) {
    state_.interpolation = quality;
    if (forward_ != nullptr) forward_->setInterpolation(quality);
}

void RecordingCanvas::fill(const Path& path, FillRule rule, const Color& color) {
    Operation& o = add(Kind::fill);
    o.path = path;
    o.rule = rule;
    o.color = color;
    if (forward_ != nullptr) forward_->fill(path, rule, color);
}
void RecordingCanvas::fillRect(const NSRect& rect, const Color& color) { fillRect(rect, color, state_.compositing); }
void RecordingCanvas::fillRect(const NSRect& rect, const Color& color, Compositing op) {
    Operation& o = add(Kind::fillRect);
    o.rect = rect;
    o.color = color;
    o.compositing = op;
    if (forward_ != nullptr) forward_->fillRect(rect, color, op);
}
void RecordingCanvas::stroke(const Path& path, const Stroke& stroke, const Color& color) {
    Operation& o = add(Kind::stroke);
    o.path = path;
    o.stroke = stroke;
    o.color = color;
    if (forward_ != nullptr) forward_->stroke(path, stroke, color);
}
void RecordingCanvas::strokeLine(NSPoint from, NSPoint to, const Stroke& stroke, const Color& color) {
    Operation& o = add(Kind::line);
    o.from = from;
    o.to = to;
    o.stroke = stroke;
    o.color = color;
    if (forward_ != nullptr) forward_->strokeLine(from, to, stroke, color);
}
void RecordingCanvas::drawGradient(const AxialGradient& gradient) {
    add(Kind::gradient).gradient = gradient;
    if (forward_ != nullptr) forward_->drawGradient(gradient);
}
void RecordingCanvas::drawPicture(const Picture& picture, const NSRect& source, const NSRect& destination,
                                  Compositing op, double fraction, YAxis axis) {
    Operation& o = add(Kind::picture);
    o.picture = &picture;
    o.pictureSize = picture.size();
    o.source = source;
    o.rect = destination;
    o.compositing = op;
    o.fraction = fraction;
    o.axis = axis;
    if (forward_ != nullptr) forward_->drawPicture(picture, source, destination, op, fraction, axis);
}
void RecordingCanvas::drawText(const TextLayout& layout, NSPoint origin, YAxis axis) {
    Operation& o = add(Kind::text);
    const NSSize size = layout.size();
    o.rect = {{origin.x, axis == YAxis::up ? origin.y - size.height : origin.y}, size};
    o.axis = axis;
    o.text = layout.text();
    o.runs.assign(layout.runs().begin(), layout.runs().end());
    if (!o.runs.empty()) o.color = o.runs.front().color;
    if (forward_ != nullptr) forward_->drawText(layout, origin, axis);
}

void RecordingCanvas::beginLayer() {
    add(Kind::beginLayer);
    layers_.push_back({state_, saved_.size()});
    state_.compositing = Compositing::sourceOver;
    state_.alpha = 1;
    state_.shadow.reset();
    if (forward_ != nullptr) forward_->beginLayer();
}
void RecordingCanvas::endLayer() {
    if (layers_.empty()) return;
    const Layer layer = std::move(layers_.back());
    layers_.pop_back();
    saved_.resize(layer.depth);
    state_ = layer.state;
    add(Kind::endLayer);
    if (forward_ != nullptr) forward_->endLayer();
}

} // namespace libvue::backend

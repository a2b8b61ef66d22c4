#include <libvue/platform/backend/memory/MemoryWindowServer.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/backend/GraphicsEngine.h>

namespace libvue::backend {

namespace {

/// Outward to whole pixels, so that a copy touches whole ones only.
NSRect toPixels(const NSRect& r, double scale) {
    const double x = std::floor(NSMinX(r) * scale) / scale;
    const double y = std::floor(NSMinY(r) * scale) / scale;
    return NSMakeRect(x, y, std::ceil(NSMaxX(r) * scale) / scale - x, std::ceil(NSMaxY(r) * scale) / scale - y);
}

double overlap(const NSRect& a, const NSRect& b) {
    const double w = std::min(NSMaxX(a), NSMaxX(b)) - std::max(NSMinX(a), NSMinX(b));
    const double h = std::min(NSMaxY(a), NSMaxY(b)) - std::max(NSMinY(a), NSMinY(b));
    return w > 0 && h > 0 ? w * h : 0;
}

bool isFrameless(const WindowSpec& spec) { return !spec.titled || spec.kind >= WindowKind::popup; }

} // namespace

MemoryWindowServer::MemoryWindowServer(GraphicsEngine& graphics)
    : graphics_(graphics), screens_{{{{0, 0}, {1440, 900}}, {{0, 0}, {1440, 875}}, 1, "memory"}} {}

MemoryWindowServer::~MemoryWindowServer() = default;

std::unique_ptr<WindowServer> makeMemoryWindows(GraphicsEngine& graphics) {
    return std::make_unique<MemoryWindowServer>(graphics);
}

// Time and events.

bool MemoryWindowServer::next(Event& event, Time deadline) {
    if (!queue_.empty()) {
        event = std::move(queue_.front());
        queue_.pop_front();
        // What was presented in the meantime is in sight already.
        if (event.kind == Event::Kind::exposed) {
            const MemoryWindow* w = window(event.window);
            const bool isShown = w && (w->presented || !w->unseen.empty());
            event.rect = w && !isShown ? NSRect{{}, w->content.size} : NSZeroRect;
        }
        return true;
    }
    if (woken_.exchange(false)) return false;
    if (deadline != never) sleepUntil(deadline);
    return false;
}

void MemoryWindowServer::sleepUntil(Time t) {
    if (std::isfinite(t)) now_ = std::max(now_, t);
}

Event MemoryWindowServer::make(Event::Kind kind, WindowId w) const {
    Event event;
    event.kind = kind;
    event.window = w;
    event.time = now_;
    event.modifiers = modifiers_;
    event.buttonsDown = buttons_;
    event.screenPosition = mouse_;
    if (const MemoryWindow* at = window(w)) {
        event.position = {mouse_.x - at->content.origin.x, mouse_.y - at->content.origin.y};
        event.rect = at->content;
    }
    return event;
}

// The surroundings.

bool MemoryWindowServer::openURL(std::string_view url) {
    if (url.empty()) return false;
    opened_.emplace_back(url);
    return true;
}

void MemoryWindowServer::setScreens(std::vector<Screen> screens) {
    if (screens.empty()) return;
    std::map<WindowId, double> former;
    for (const auto& [id, w] : windows_) {
        former[id] = scale(id);
    }
    screens_ = std::move(screens);
    post(make(Event::Kind::screensChanged, 0));
    for (auto& [id, w] : windows_) {
        if (scale(id) == former[id]) continue;
        dropPictures(w);
        post(make(Event::Kind::scaleChanged, id));
    }
}

void MemoryWindowServer::setScale(double scale) {
    if (!(scale > 0) || !std::isfinite(scale)) return;
    auto screens = screens_;
    for (Screen& screen : screens) {
        screen.scale = scale;
    }
    setScreens(std::move(screens));
}

void MemoryWindowServer::setPrefersDark(bool dark) {
    if (std::exchange(dark_, dark) != dark) post(make(Event::Kind::appearanceChanged, 0));
}

void MemoryWindowServer::setPrefersOverlayScrollers(bool overlay) {
    if (std::exchange(overlayScrollers_, overlay) != overlay) post(make(Event::Kind::appearanceChanged, 0));
}

const Screen& MemoryWindowServer::screenOf(const NSRect& rect) const {
    const Screen* best = &screens_.front();
    double most = 0;
    for (const Screen& screen : screens_) {
        const double here = overlap(screen.frame, rect);
        if (here > most) {
            most = here;
            best = &screen;
        }
    }
    return *best;
}

// Windows.

MemoryWindow* MemoryWindowServer::find(WindowId w) {
    const auto found = windows_.find(w);
    return found == windows_.end() ? nullptr : &found->second;
}

const MemoryWindow* MemoryWindowServer::window(WindowId w) const {
    const auto found = windows_.find(w);
    return found == windows_.end() ? nullptr : &found->second;
}

WindowId MemoryWindowServer::create(const WindowSpec& spec) {
    const WindowId id = ++last_;
    MemoryWindow& w = windows_[id];
    w.id = id;
    w.spec = spec;
    w.content = spec.content;
    w.parent = spec.parent;
    w.title = spec.title;
    w.acceptsFocus = spec.acceptsFocus;
    stack_.add(id);
    stack_.setParent(id, spec.parent);
    return id;
}

void MemoryWindowServer::destroy(WindowId w) {
    if (!find(w)) return;
    hide(w);
    windows_.erase(w);
    stack_.remove(w);
    for (auto& [id, other] : windows_) {
        if (other.parent == w) other.parent = 0;
    }
    std::erase_if(queue_, [w](const Event& e) { return e.window == w; });
}

void MemoryWindowServer::setSpec(WindowId w, const WindowSpec& spec) {
    MemoryWindow* at = find(w);
    if (!at) return;
    at->spec = spec;
    at->title = spec.title;
    setParent(w, spec.parent);
    setAcceptsFocus(w, spec.acceptsFocus);
    changeContent(*at, spec.content);
}

void MemoryWindowServer::setTitle(WindowId w, std::string_view title) {
    if (MemoryWindow* at = find(w)) at->title = title;
}

void MemoryWindowServer::setModified(WindowId w, bool modified) {
    if (MemoryWindow* at = find(w)) at->modified = modified;
}

void MemoryWindowServer::show(WindowId w, bool activate) {
    MemoryWindow* at = find(w);
    if (!at) return;
    if (!at->visible) {
        at->visible = true;
        at->miniaturized = false;
        raise(w);
        post(make(Event::Kind::exposed, w));
    }
    if (activate) this->activate(w);
}

void MemoryWindowServer::hide(WindowId w) {
    MemoryWindow* at = find(w);
    if (!at || !at->visible) return;
    at->visible = false;
    at->movesWithPointer = false;
    leave(w);
}

void MemoryWindowServer::leave(WindowId w) {
    if (grab_ == w) grab_ = 0;
    if (pressed_ == w) pressed_ = 0;
    if (hover_ == w) hover_ = 0;
    if (focus_ == w) focusAnother(w);
}

void MemoryWindowServer::changeContent(MemoryWindow& w, const NSRect& rect) {
    const double former = scale(w.id);
    const bool resized = w.content.size != rect.size;
    w.content = rect;
    const bool rescaled = scale(w.id) != former;
    if (resized || rescaled) dropPictures(w);
    if (rescaled) post(make(Event::Kind::scaleChanged, w.id));
}

void MemoryWindowServer::setContent(WindowId w, const NSRect& rect) {
    if (MemoryWindow* at = find(w)) {
        at->zoomed = false;
        changeContent(*at, rect);
    }
}

NSRect MemoryWindowServer::content(WindowId w) {
    const MemoryWindow* at = find(w);
    return at ? at->content : NSZeroRect;
}

NSEdgeInsets MemoryWindowServer::frameInsets(WindowId w) {
    const MemoryWindow* at = find(w);
    return at && !isFrameless(at->spec) ? insets_ : NSEdgeInsets{};
}

double MemoryWindowServer::scale(WindowId w) {
    const MemoryWindow* at = find(w);
    return at ? screenOf(at->content).scale : screens_.front().scale;
}

void MemoryWindowServer::setLimits(WindowId w, NSSize minimum, NSSize maximum) {
    if (MemoryWindow* at = find(w)) {
        at->minimum = minimum;
        at->maximum = maximum;
    }
}

void MemoryWindowServer::setParent(WindowId w, WindowId parent) {
    MemoryWindow* at = find(w);
    if (!at) return;
    stack_.setParent(w, parent);
    at->parent = stack_.parent(w);
}

void MemoryWindowServer::raise(WindowId w) { stack_.raise(w); }

void MemoryWindowServer::order(WindowId w, WindowId above) { stack_.order(w, above); }

void MemoryWindowServer::setLevel(WindowId w, int level) {
    if (MemoryWindow* at = find(w)) at->level = level;
    stack_.setLevel(w, level);
}

void MemoryWindowServer::setFocus(WindowId w) {
    if (focus_ == w) return;
    const WindowId former = std::exchange(focus_, w);
    if (former) post(make(Event::Kind::focusOut, former));
    if (w) post(make(Event::Kind::focusIn, w));
}

void MemoryWindowServer::focusAnother(WindowId than) {
    const auto can = [&](WindowId id) {
        const MemoryWindow* w = window(id);
        return w && id != than && shown(*w) && w->acceptsFocus;
    };
    if (const MemoryWindow* at = window(than); at && can(at->parent)) {
        setFocus(at->parent);
        return;
    }
    const auto& order = stacking();
    const auto found = std::find_if(order.rbegin(), order.rend(), can);
    setFocus(found == order.rend() ? 0 : *found);
}

void MemoryWindowServer::activate(WindowId w) {
    const MemoryWindow* at = find(w);
    if (at && shown(*at) && at->acceptsFocus) setFocus(w);
}

void MemoryWindowServer::setAcceptsFocus(WindowId w, bool accepts) {
    if (MemoryWindow* at = find(w)) at->acceptsFocus = accepts;
}

void MemoryWindowServer::setOpacity(WindowId w, double opacity) {
    if (MemoryWindow* at = find(w)) {
        at->opacity = std::clamp(opacity, 0.0, 1.0);
        at->opacityHistory.push_back(at->opacity);
    }
}

void MemoryWindowServer::setIgnoresMouse(WindowId w, bool ignores) {
    if (MemoryWindow* at = find(w)) at->ignoresMouse = ignores;
}

void MemoryWindowServer::setAllDesktops(WindowId w, bool all) {
    if (MemoryWindow* at = find(w)) at->allDesktops = all;
}

void MemoryWindowServer::miniaturize(WindowId w, bool mini) {
    MemoryWindow* at = find(w);
    if (!at || !at->visible || at->miniaturized == mini) return;
    at->miniaturized = mini;
    post(make(mini ? Event::Kind::miniaturized : Event::Kind::deminiaturized, w));
    post(make(mini ? Event::Kind::occluded : Event::Kind::exposed, w));
    if (mini) {
        leave(w);
    } else {
        raise(w);
        activate(w);
    }
}

void MemoryWindowServer::zoom(WindowId w) {
    MemoryWindow* at = find(w);
    if (!at || !at->visible || !at->spec.resizable) return;
    NSRect target = at->before;
    if (!at->zoomed) {
        at->before = at->content;
        const NSRect& room = screenOf(at->content).visibleFrame;
        const NSEdgeInsets edge = frameInsets(w);
        target = NSMakeRect(NSMinX(room) + edge.left, NSMinY(room) + edge.bottom,
                            NSWidth(room) - edge.left - edge.right, NSHeight(room) - edge.top - edge.bottom);
    }
    const bool zoomed = !at->zoomed;
    resizeByUser(w, target);
    at->zoomed = zoomed;
}

void MemoryWindowServer::setShape(WindowId w, const Path* shape) {
    if (MemoryWindow* at = find(w)) {
        at->hasShape = shape != nullptr;
        at->shape = shape ? *shape : Path{};
    }
}

void MemoryWindowServer::startMove(WindowId w) {
    MemoryWindow* at = find(w);
    if (at && buttons_) at->movesWithPointer = true;
}

// Pictures.

void MemoryWindowServer::dropPictures(MemoryWindow& w) {
    w.surface.reset();
    w.presented.reset();
    w.unseen.clear();
}

std::shared_ptr<Picture> MemoryWindowServer::surfaceToDrawAnew(WindowId w, std::span<const NSRect> rects) {
    MemoryWindow* at = find(w);
    if (!at) return nullptr;
    if (!at->surface) {
        at->surface = graphics_.makePicture(at->content.size, scale(w));
        if (at->surface) at->surface->setOnScreen(true);
    }
    copyUnseen(*at, rects);
    return at->surface;
}

void MemoryWindowServer::present(WindowId w, std::span<const NSRect> dirty) {
    MemoryWindow* at = find(w);
    if (!at || !at->surface || dirty.empty()) return;
    at->lastPresented.assign(dirty.begin(), dirty.end());
    ++at->presents;
    for (const NSRect& r : dirty) {
        std::erase_if(at->unseen, [&r](const NSRect& former) { return NSContainsRect(r, former); });
        at->unseen.push_back(r);
    }
}

void MemoryWindowServer::copyUnseen(MemoryWindow& w, std::span<const NSRect> except) {
    std::vector<NSRect> whole;
    std::erase_if(w.unseen, [&](const NSRect& r) {
        if (std::any_of(except.begin(), except.end(), [&r](const NSRect& e) { return NSContainsRect(e, r); }))
            return false;
        whole.push_back(toPixels(r, scale(w.id)));
        return true;
    });
    if (whole.empty()) return;
    if (!w.presented) w.presented = graphics_.makePicture(w.content.size, scale(w.id));
    if (!w.presented) return;
    const auto canvas = graphics_.canvasOn(w.presented);
    canvas->setInterpolation(Interpolation::none);
    canvas->clip(whole.data(), whole.size());
    canvas->drawPicture(*w.surface, NSZeroRect, {{}, w.surface->size()}, Compositing::copy, 1, YAxis::up);
}

std::shared_ptr<Picture> MemoryWindowServer::capture(WindowId w) {
    MemoryWindow* at = find(w);
    if (!at) return nullptr;
    copyUnseen(*at, {});
    return at->presented ? graphics_.copy(*at->presented) : nullptr;
}

void MemoryWindowServer::setCursor(WindowId w, Cursor cursor) {
    if (MemoryWindow* at = find(w)) at->cursor = cursor;
}

void MemoryWindowServer::setTextInput(WindowId w, bool on, const NSRect& caret) {
    if (MemoryWindow* at = find(w)) {
        at->textInput = on;
        at->caret = caret;
    }
}

} // namespace libvue::backend

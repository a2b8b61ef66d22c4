// What a person does: the pointer, the keys, the frames of windows.
#include <libvue/platform/backend/memory/MemoryWindowServer.h>

#include <algorithm>
#include <utility>

namespace libvue::backend {

namespace {

constexpr char16_t firstFunctionKey = 0xF700, lastFunctionKey = 0xF8FF, lastArrowKey = 0xF703;

/// Menus and tool tips are no business of the window manager, so a click does not give them the focus.
bool isManaged(const MemoryWindow& w) {
    return w.spec.kind < WindowKind::popup || (w.spec.kind == WindowKind::popup && w.spec.acceptsFocus);
}

std::uint32_t bit(int button) { return 1u << static_cast<unsigned>(std::clamp(button, 0, 31)); }

} // namespace

// The pointer.

WindowId MemoryWindowServer::windowAt(NSPoint screen) const {
    const auto& order = stacking();
    for (auto it = order.rbegin(); it != order.rend(); ++it) {
        const MemoryWindow& w = windows_.at(*it);
        if (!shown(w) || w.ignoresMouse) continue;
        if (NSPointInRect(screen, w.content)) return *it;
        if (!w.spec.titled || !isManaged(w)) continue;
        const NSRect frame = NSMakeRect(NSMinX(w.content) - insets_.left, NSMinY(w.content) - insets_.bottom,
                                        NSWidth(w.content) + insets_.left + insets_.right,
                                        NSHeight(w.content) + insets_.top + insets_.bottom);
        if (NSPointInRect(screen, frame)) return 0;
    }
    return 0;
}

WindowId MemoryWindowServer::mouseTarget() const {
    if (grab_) return grab_;
    return buttons_ ? pressed_ : windowAt(mouse_);
}

void MemoryWindowServer::updateHover() {
    // The window that a button went down in keeps the pointer until the last one is up.
    if (buttons_) return;
    WindowId now = windowAt(mouse_);
    if (grab_ && now != grab_) now = 0;
    const WindowId former = std::exchange(hover_, now);
    if (former == now) return;
    if (former) post(make(Event::Kind::mouseExited, former));
    if (now) post(make(Event::Kind::mouseEntered, now));
}

void MemoryWindowServer::moveMouse(NSPoint screen) {
    const NSPoint former = std::exchange(mouse_, screen);
    for (auto& [id, w] : windows_) {
        if (!w.movesWithPointer) continue;
        moveByUser(id, {w.content.origin.x + screen.x - former.x, w.content.origin.y + screen.y - former.y});
        return;
    }
    updateHover();
    if (const WindowId target = mouseTarget()) post(make(Event::Kind::mouseMoved, target));
}

void MemoryWindowServer::press(int button) {
    updateHover();
    const WindowId target = mouseTarget();
    if (!buttons_) pressed_ = target;
    buttons_ |= bit(button);
    if (!target) return;
    const MemoryWindow& w = windows_.at(target);
    if (!grab_ && isManaged(w) && w.acceptsFocus) {
        raise(target);
        activate(target);
    }
    Event event = make(Event::Kind::mouseDown, target);
    event.button = button;
    post(event);
}

void MemoryWindowServer::release(int button) {
    const WindowId target = mouseTarget();
    if (!(buttons_ & bit(button))) return;
    buttons_ &= ~bit(button);
    bool moved = false;
    if (!buttons_) {
        pressed_ = 0;
        for (auto& [id, w] : windows_) {
            moved |= std::exchange(w.movesWithPointer, false);
        }
    }
    // The window manager keeps the release that ends a move.
    if (target && !moved) {
        Event event = make(Event::Kind::mouseUp, target);
        event.button = button;
        post(event);
    }
    updateHover();
}

void MemoryWindowServer::click(NSPoint screen, int button) {
    if (mouse_ != screen) moveMouse(screen);
    press(button);
    release(button);
}

void MemoryWindowServer::wheel(double deltaX, double deltaY, bool precise, std::uint8_t phase) {
    updateHover();
    const WindowId target = mouseTarget();
    if (!target) return;
    Event event = make(Event::Kind::wheel, target);
    event.deltaX = deltaX;
    event.deltaY = deltaY;
    event.precise = precise;
    event.phase = phase;
    post(event);
}

void MemoryWindowServer::grabMouse(WindowId w, bool grab) {
    if (grab && find(w)) {
        grab_ = w;
    } else if (grab_ == w) {
        grab_ = 0;
    }
}

// Keys.

void MemoryWindowServer::setModifiers(std::uint32_t modifiers) {
    if (std::exchange(modifiers_, modifiers) != modifiers && focus_) post(make(Event::Kind::modifiers, focus_));
}

void MemoryWindowServer::postKey(Event::Kind kind, char16_t character, std::uint32_t modifiers, bool repeat) {
    if (!focus_) return;
    Event event = make(kind, focus_);
    event.modifiers |= modifiers;
    if (character >= firstFunctionKey && character <= lastFunctionKey) {
        event.modifiers |= modifierFunction;
        if (character <= lastArrowKey) event.modifiers |= modifierNumericPad;
    }
    event.charactersIgnoringModifiers = event.characters = std::u16string(1, character);
    if ((event.modifiers & modifierControl) && character >= u'a' && character <= u'z') {
        event.characters[0] = static_cast<char16_t>(character & 0x1f);
    }
    event.keyCode = character;
    event.repeat = repeat;
    post(event);
}

void MemoryWindowServer::keyDown(char16_t character, std::uint32_t modifiers, bool repeat) {
    postKey(Event::Kind::keyDown, character, modifiers, repeat);
}

void MemoryWindowServer::keyUp(char16_t character, std::uint32_t modifiers) {
    postKey(Event::Kind::keyUp, character, modifiers, false);
}

void MemoryWindowServer::key(char16_t character, std::uint32_t modifiers) {
    keyDown(character, modifiers);
    keyUp(character, modifiers);
}

void MemoryWindowServer::typeText(std::u16string_view text) {
    for (const char16_t c : text) {
        const bool upper = c >= u'A' && c <= u'Z';
        key(c == u'\n' ? u'\r' : c, upper ? std::uint32_t{modifierShift} : 0);
    }
}

void MemoryWindowServer::preedit(std::u16string_view text, NSRange selection) {
    if (!focus_) return;
    Event event = make(Event::Kind::textPreedit, focus_);
    event.characters = text;
    event.selection = selection;
    post(event);
}

void MemoryWindowServer::commit(std::u16string_view text, NSRange replacement) {
    if (!focus_) return;
    Event event = make(Event::Kind::textCommit, focus_);
    event.characters = text;
    event.replacement = replacement;
    post(event);
}

// Frames.

void MemoryWindowServer::requestClose(WindowId w) {
    const MemoryWindow* at = find(w);
    if (at && at->visible && at->spec.closable) post(make(Event::Kind::closeRequest, w));
}

void MemoryWindowServer::moveByUser(WindowId w, NSPoint origin) {
    MemoryWindow* at = find(w);
    if (!at || at->content.origin == origin) return;
    at->zoomed = false;
    changeContent(*at, {origin, at->content.size});
    post(make(Event::Kind::moved, w));
}

void MemoryWindowServer::resizeByUser(WindowId w, const NSRect& content) {
    MemoryWindow* at = find(w);
    if (!at || !at->spec.resizable) return;
    // What is held back is held at the corner that was not dragged: the top left one.
    NSRect held = content;
    held.size.width = std::clamp(held.size.width, at->minimum.width, std::max(at->minimum.width, at->maximum.width));
    held.size.height =
        std::clamp(held.size.height, at->minimum.height, std::max(at->minimum.height, at->maximum.height));
    held.origin.y = NSMaxY(content) - held.size.height;
    const NSRect former = at->content;
    if (held == former) return;
    at->zoomed = false;
    changeContent(*at, held);
    if (held.origin != former.origin) post(make(Event::Kind::moved, w));
    if (held.size != former.size) post(make(Event::Kind::resized, w));
}

} // namespace libvue::backend

#include <libvue/platform/appkit/NSCursor.h>

#include <map>
#include <vector>

#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/backend/Backend.h>

namespace libvue {

namespace {

/// What the pointer shows, for the process.
struct Pointer {
    NSCursor* current = nullptr; ///< the shared ones are never freed
    std::vector<NSCursor*> stack;
    int hidden = 0;
    Weak<NSWindow> window;     ///< in which it is
    std::uint64_t shownIn = 0; ///< the native window that shows `shown`
    int shown = -1;

    void show() {
        NSWindow* w = window;
        if (!w || !w->nativeId_() || !current) return;
        const int shape = hidden > 0 ? static_cast<int>(backend::Cursor::hidden) : current->nativeShape_();
        if (shownIn == w->nativeId_() && shown == shape) return;
        shownIn = w->nativeId_();
        shown = shape;
        backend::Backend::current().windows->setCursor(shownIn, static_cast<backend::Cursor>(shape));
    }
};

Pointer& pointer() {
    static Pointer& p = *new Pointer;
    return p;
}

} // namespace

void NSCursor::describe(ClassDescription<NSCursor>&) {}
NSCursor::~NSCursor() = default;

NSCursor* NSCursor::shared(int shape) {
    static auto& made = *new std::map<int, NSCursor*>;
    NSCursor*& c = made[shape];
    if (!c) {
        (void)classOf<NSCursor>();
        c = keptForever(adopt(new NSCursor(shape)));
    }
    return c;
}

namespace {
constexpr int shapeOf(backend::Cursor c) { return static_cast<int>(c); }
} // namespace

NSCursor* NSCursor::arrowCursor() { return shared(shapeOf(backend::Cursor::arrow)); }
NSCursor* NSCursor::IBeamCursor() { return shared(shapeOf(backend::Cursor::ibeam)); }
NSCursor* NSCursor::crosshairCursor() { return shared(shapeOf(backend::Cursor::crosshair)); }
NSCursor* NSCursor::closedHandCursor() { return shared(shapeOf(backend::Cursor::closedHand)); }
NSCursor* NSCursor::openHandCursor() { return shared(shapeOf(backend::Cursor::openHand)); }
NSCursor* NSCursor::pointingHandCursor() { return shared(shapeOf(backend::Cursor::pointingHand)); }
NSCursor* NSCursor::resizeLeftRightCursor() { return shared(shapeOf(backend::Cursor::resizeLeftRight)); }
NSCursor* NSCursor::resizeUpDownCursor() { return shared(shapeOf(backend::Cursor::resizeUpDown)); }
NSCursor* NSCursor::operationNotAllowedCursor() { return shared(shapeOf(backend::Cursor::operationNotAllowed)); }
NSCursor* NSCursor::dragCopyCursor() { return shared(shapeOf(backend::Cursor::dragCopy)); }
NSCursor* NSCursor::waitCursor() { return shared(shapeOf(backend::Cursor::wait)); }

NSCursor* NSCursor::currentCursor() { return pointer().current ? pointer().current : arrowCursor(); }

void NSCursor::set() {
    pointer().current = shared(shape_);
    pointer().show();
}

void NSCursor::push() {
    pointer().stack.push_back(currentCursor());
    set();
}

void NSCursor::popCursor() {
    auto& stack = pointer().stack;
    if (stack.empty()) return;
    NSCursor* former = stack.back();
    stack.pop_back();
    former->set();
}

void NSCursor::hide() {
    ++pointer().hidden;
    pointer().show();
}

void NSCursor::unhide() {
    if (pointer().hidden > 0) --pointer().hidden;
    pointer().show();
}

void NSCursor::pointerIsIn_(NSWindow* window) { pointer().window = window; }

} // namespace libvue

#include <libvue/platform/appkit/NSButton.h>

#include <algorithm>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSTrackingArea.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/ThemeDrawing.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSKeyValueBinding.h>
#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

static const ClassRegistration<NSButton> registration;

namespace {
const ExposedBinding exposed{&classOf<NSButton>, NSTitleBinding};
}

void NSButton::describe(ClassDescription<NSButton, NSControl>& c) {
    c.key<&NSButton::title, &NSButton::setTitle>("title");
    c.key<&NSButton::state, &NSButton::setState>("state");
    c.key<&NSButton::state, &NSButton::setState>("value");
    c.key<&NSButton::image, &NSButton::setImage>("image");
}

NSButton::NSButton() { setCell(make<NSButtonCell>()); }
NSButton::NSButton(const NSRect& frame) : NSControl(frame) { setCell(make<NSButtonCell>()); }
NSButton::NSButton(NSCoder& coder) : NSControl(coder) {
    if (!buttonCell()) setCell(make<NSButtonCell>());
}
NSButton::~NSButton() = default;

namespace {

Ref<NSButton> made(NSButtonType type, NSString* title, NSObject* target, SEL action) {
    auto b = make<NSButton>();
    b->setButtonType(type);
    b->setTitle(title);
    b->setTarget(target);
    b->setAction(action);
    b->sizeToFit();
    return b;
}

} // namespace

Ref<NSButton> NSButton::buttonWithTitle_target_action(NSString* title, NSObject* target, SEL action) {
    return made(NSMomentaryPushInButton, title, target, action);
}
Ref<NSButton> NSButton::checkboxWithTitle_target_action(NSString* title, NSObject* target, SEL action) {
    return made(NSSwitchButton, title, target, action);
}
Ref<NSButton> NSButton::radioButtonWithTitle_target_action(NSString* title, NSObject* target, SEL action) {
    return made(NSRadioButton, title, target, action);
}

NSButtonCell* NSButton::buttonCell() const { return as<NSButtonCell>(cell()); }

NSString* NSButton::title() const { return buttonCell() ? buttonCell()->title() : nullptr; }
void NSButton::setTitle(NSString* title) {
    if (auto* c = buttonCell()) c->setTitle(title);
}
NSString* NSButton::alternateTitle() const { return buttonCell() ? buttonCell()->alternateTitle() : nullptr; }
void NSButton::setAlternateTitle(NSString* title) {
    if (auto* c = buttonCell()) c->setAlternateTitle(title);
}
Ref<NSAttributedString> NSButton::attributedTitle() const {
    return buttonCell() ? buttonCell()->attributedTitle() : nullptr;
}
void NSButton::setAttributedTitle(NSAttributedString* title) {
    if (auto* c = buttonCell()) c->setAttributedTitle(title);
}
NSImage* NSButton::image() const { return cell() ? cell()->image() : nullptr; }
void NSButton::setImage(NSImage* image) {
    if (auto* c = buttonCell()) {
        c->setImage(image);
        // An image on a button without one is meant to be seen.
        if (image && c->imagePosition() == NSNoImage)
            c->setImagePosition(c->title() && c->title()->length() > 0 ? NSImageLeft : NSImageOnly);
    }
}
NSImage* NSButton::alternateImage() const { return buttonCell() ? buttonCell()->alternateImage() : nullptr; }
void NSButton::setAlternateImage(NSImage* image) {
    if (auto* c = buttonCell()) c->setAlternateImage(image);
}
NSCellImagePosition NSButton::imagePosition() const { return buttonCell() ? buttonCell()->imagePosition() : NSNoImage; }
void NSButton::setImagePosition(NSCellImagePosition p) {
    if (auto* c = buttonCell()) c->setImagePosition(p);
}
void NSButton::setButtonType(NSButtonType type) {
    if (auto* c = buttonCell()) c->setButtonType(type);
}
NSInteger NSButton::state() const { return cell() ? cell()->state() : NSOffState; }
void NSButton::setState(NSInteger state) {
    if (!cell()) return;
    cell()->setState(state);
    if (buttonCell() && buttonCell()->isRadioButton() && this->state() == NSOnState) clearRadioGroup();
}
BOOL NSButton::allowsMixedState() const { return cell() && cell()->allowsMixedState(); }
void NSButton::setAllowsMixedState(BOOL f) {
    if (cell()) cell()->setAllowsMixedState(f);
}
void NSButton::setNextState() {
    if (cell()) setState(cell()->nextState());
}
BOOL NSButton::isBordered() const { return cell() && cell()->isBordered(); }
void NSButton::setBordered(BOOL f) {
    if (cell()) cell()->setBordered(f);
}
BOOL NSButton::isTransparent() const { return buttonCell() && buttonCell()->isTransparent(); }
void NSButton::setTransparent(BOOL f) {
    if (auto* c = buttonCell()) c->setTransparent(f);
}
BOOL NSButton::showsBorderOnlyWhileMouseInside() const {
    return buttonCell() && buttonCell()->showsBorderOnlyWhileMouseInside();
}
void NSButton::setShowsBorderOnlyWhileMouseInside(BOOL f) {
    if (auto* c = buttonCell()) c->setShowsBorderOnlyWhileMouseInside(f);
    updateTrackingAreas();
}
NSBezelStyle NSButton::bezelStyle() const { return buttonCell() ? buttonCell()->bezelStyle() : NSRoundedBezelStyle; }
void NSButton::setBezelStyle(NSBezelStyle s) {
    if (auto* c = buttonCell()) c->setBezelStyle(s);
    updateTrackingAreas();
}
Ref<NSString> NSButton::keyEquivalent() const { return cell() ? cell()->keyEquivalent() : NSString::string(); }

namespace {
bool isReturn(NSString* key) { return key && key->length() == 1 && key->unit(0) == u'\r'; }
} // namespace

void NSButton::setKeyEquivalent(NSString* key) {
    auto* c = buttonCell();
    if (!c) return;
    c->setKeyEquivalent(key);
    NSWindow* w = window();
    if (!w) return;
    if (isReturn(key))
        w->setDefaultButtonCell(c);
    else if (w->defaultButtonCell() == c)
        w->setDefaultButtonCell(nullptr);
}
NSUInteger NSButton::keyEquivalentModifierMask() const { return cell() ? cell()->keyEquivalentModifierMask() : 0; }
void NSButton::setKeyEquivalentModifierMask(NSUInteger mask) {
    if (auto* c = buttonCell()) c->setKeyEquivalentModifierMask(mask);
}
void NSButton::highlight(BOOL f) {
    if (cell()) cell()->highlight_withFrame_inView(f, bounds(), this);
}

// Events.

BOOL NSButton::performKeyEquivalent(NSEvent* e) {
    if (isEnabled() && !isHiddenOrHasHiddenAncestor()) {
        const auto key = keyEquivalent();
        NSString* typed = e->charactersIgnoringModifiers();
        constexpr NSUInteger relevant = NSControlKeyMask | NSAlternateKeyMask | NSCommandKeyMask;
        if (key->length() > 0 && typed && typed->isEqualToString(key) &&
            (e->modifierFlags() & relevant) == (keyEquivalentModifierMask() & relevant)) {
            performClick(nullptr);
            return YES;
        }
    }
    return NSControl::performKeyEquivalent(e);
}

void NSButton::keyDown(NSEvent* e) {
    NSString* s = e->characters();
    if (s && s->length() == 1 && s->unit(0) == u' ' && isEnabled()) {
        performClick(nullptr);
        return;
    }
    // The arrows walk through a group of radio buttons.
    if (s && s->length() == 1 && buttonCell() && buttonCell()->isRadioButton() && superview()) {
        const unichar key = s->unit(0);
        const int step = key == NSDownArrowFunctionKey || key == NSRightArrowFunctionKey ? 1
                         : key == NSUpArrowFunctionKey || key == NSLeftArrowFunctionKey  ? -1
                                                                                         : 0;
        if (step != 0) {
            chooseInGroup(step);
            return;
        }
    }
    NSControl::keyDown(e);
}

std::vector<Ref<NSButton>> NSButton::radioGroup() const {
    std::vector<Ref<NSButton>> group;
    if (!superview()) return group;
    for (NSView* v : superview()->subviews())
        if (auto* b = as<NSButton>(v);
            b && b->buttonCell() && b->buttonCell()->isRadioButton() && b->action() == action())
            group.emplace_back(b);
    return group;
}

void NSButton::chooseInGroup(std::ptrdiff_t step) {
    std::vector<Ref<NSButton>> group = radioGroup();
    std::erase_if(group, [](const Ref<NSButton>& b) { return !b->isEnabled() || b->isHidden(); });
    const auto at = std::find(group.begin(), group.end(), this);
    if (at == group.end() || group.size() < 2) return;
    const auto n = static_cast<std::ptrdiff_t>(group.size());
    const Ref<NSButton> next = group[static_cast<std::size_t>(((at - group.begin()) + step + n) % n)];
    if (window()) window()->makeFirstResponder(next);
    next->performClick(nullptr);
}

void NSButton::mouseDown(NSEvent* e) {
    auto* c = cell();
    if (!c || !isEnabled()) return;
    const Ref<NSButton> self(this);
    const Ref<NSCell> kept(c);
    // The press shows only while the pointer is over the button, and comes back with it.
    for (;;) {
        c->highlight_withFrame_inView(YES, bounds(), this);
        const BOOL done = c->trackMouse_inRect_ofView_untilMouseUp(e, bounds(), this, NO);
        c->highlight_withFrame_inView(NO, bounds(), this);
        if (done || !window()) return;
        // Let go outside. The state of the buttons now says nothing: the pointer may be ahead of its events.
        if (const NSEvent* last = NSApp()->currentEvent(); last && last->type() == NSLeftMouseUp) return;
        // Outside, with the button still down: wait for it to come back or go up.
        for (;;) {
            const Ref<NSEvent> next = NSApp()->nextDragOrRelease_();
            if (!next || next->type() == NSLeftMouseUp || !window()) return;
            if (NSMouseInRect(convertPoint_fromView(next->locationInWindow(), nullptr), bounds(), isFlipped())) {
                e = next;
                break;
            }
        }
    }
}

void NSButton::mouseEntered(NSEvent* e) {
    if (auto* c = buttonCell()) c->mouseEntered(e);
}
void NSButton::mouseExited(NSEvent* e) {
    if (auto* c = buttonCell()) c->mouseExited(e);
}

void NSButton::updateTrackingAreas() {
    NSControl::updateTrackingAreas();
    const auto* c = buttonCell();
    const bool wanted = c && (c->showsBorderOnlyWhileMouseInside() || c->bezelStyle() == NSRecessedBezelStyle);
    if (hover_ && !wanted) {
        removeTrackingArea(hover_);
        hover_ = nullptr;
    } else if (wanted && !hover_) {
        hover_ = make<NSTrackingArea>(
            bounds(), NSTrackingMouseEnteredAndExited | NSTrackingActiveInKeyWindow | NSTrackingInVisibleRect, this,
            nullptr);
        addTrackingArea(hover_);
    }
}

void NSButton::viewDidMoveToWindow() {
    NSControl::viewDidMoveToWindow();
    if (window() && isReturn(keyEquivalent())) window()->setDefaultButtonCell(buttonCell());
    updateTrackingAreas();
}

BOOL NSButton::sendAction_to(SEL action, NSObject* target) {
    const Ref<NSButton> self(this);
    if (buttonCell() && buttonCell()->isRadioButton() && state() == NSOnState) {
        // The choice of one is news for the models of those that it clears, too.
        const std::vector<Ref<NSButton>> cleared = clearRadioGroup();
        for (const Ref<NSButton>& b : cleared)
            setBoundValue(b, NSValueBinding, ShowAfterwards::modelValue);
    }
    return NSControl::sendAction_to(action, target);
}

std::vector<Ref<NSButton>> NSButton::clearRadioGroup() {
    std::vector<Ref<NSButton>> cleared = radioGroup();
    std::erase_if(cleared, [this](const Ref<NSButton>& b) { return b == this || b->state() == NSOffState; });
    for (const Ref<NSButton>& b : cleared)
        b->cell()->setState(NSOffState);
    return cleared;
}

NSRect NSButton::focusRingMaskBounds() const {
    const auto* c = buttonCell();
    if (c && (c->isCheckBox() || c->isRadioButton())) return c->markRectForBounds(bounds());
    return bounds();
}

CGFloat NSButton::focusRingRadius() const {
    const auto* c = buttonCell();
    if (c && c->isRadioButton()) return focusRingMaskBounds().size.width / 2;
    if (c && c->isCheckBox()) return 4;
    return theme::kRadius;
}

AccessibilityDescription NSButton::accessibilityDescription() const {
    AccessibilityDescription d = NSControl::accessibilityDescription();
    const auto* c = buttonCell();
    d.role = c && c->isCheckBox() ? u"check box"_ns : c && c->isRadioButton() ? u"radio button"_ns : u"button"_ns;
    if (!d.label) d.label = title();
    const bool hasState = c && (c->isCheckBox() || c->isRadioButton() || c->showsStateBy() != NSNoCellMask);
    d.value = !hasState                 ? Ref<NSString>()
              : state() == NSOnState    ? u"on"_ns
              : state() == NSMixedState ? u"mixed"_ns
                                        : u"off"_ns;
    d.action = u"press"_ns;
    return d;
}

} // namespace libvue

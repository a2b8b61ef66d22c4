#include <libvue/platform/appkit/NSResponder.h>

#include <libvue/platform/appkit/KeyBindings.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSArray.h>

namespace libvue {

void NSResponder::describe(ClassDescription<NSResponder>& c) {
    c.answers<&NSResponder::mouseDown>("mouseDown:");
    c.answers<&NSResponder::mouseUp>("mouseUp:");
    c.answers<&NSResponder::mouseDragged>("mouseDragged:");
    c.answers<&NSResponder::mouseMoved>("mouseMoved:");
    c.answers<&NSResponder::mouseEntered>("mouseEntered:");
    c.answers<&NSResponder::mouseExited>("mouseExited:");
    c.answers<&NSResponder::rightMouseDown>("rightMouseDown:");
    c.answers<&NSResponder::rightMouseUp>("rightMouseUp:");
    c.answers<&NSResponder::rightMouseDragged>("rightMouseDragged:");
    c.answers<&NSResponder::otherMouseDown>("otherMouseDown:");
    c.answers<&NSResponder::otherMouseUp>("otherMouseUp:");
    c.answers<&NSResponder::otherMouseDragged>("otherMouseDragged:");
    c.answers<&NSResponder::scrollWheel>("scrollWheel:");
    c.answers<&NSResponder::keyDown>("keyDown:");
    c.answers<&NSResponder::keyUp>("keyUp:");
    c.answers<&NSResponder::flagsChanged>("flagsChanged:");
    c.answers<&NSResponder::cursorUpdate>("cursorUpdate:");
    c.answers<&NSResponder::helpRequested>("helpRequested:");
    c.answers<&NSResponder::performKeyEquivalent>("performKeyEquivalent:");
}

NSResponder::~NSResponder() = default;

// What is not handled here goes up the chain.

namespace {

void pass(NSResponder* from, void (NSResponder::*event)(NSEvent*), NSEvent* e, const char* name) {
    if (const Ref<NSResponder> next = from->nextResponder())
        (next.get()->*event)(e);
    else
        from->noResponderFor(sel(name));
}

} // namespace

void NSResponder::mouseDown(NSEvent* e) { pass(this, &NSResponder::mouseDown, e, "mouseDown:"); }
void NSResponder::mouseUp(NSEvent* e) { pass(this, &NSResponder::mouseUp, e, "mouseUp:"); }
void NSResponder::mouseDragged(NSEvent* e) { pass(this, &NSResponder::mouseDragged, e, "mouseDragged:"); }
void NSResponder::mouseMoved(NSEvent* e) { pass(this, &NSResponder::mouseMoved, e, "mouseMoved:"); }
void NSResponder::mouseEntered(NSEvent* e) { pass(this, &NSResponder::mouseEntered, e, "mouseEntered:"); }
void NSResponder::mouseExited(NSEvent* e) { pass(this, &NSResponder::mouseExited, e, "mouseExited:"); }
void NSResponder::rightMouseDown(NSEvent* e) { pass(this, &NSResponder::rightMouseDown, e, "rightMouseDown:"); }
void NSResponder::rightMouseUp(NSEvent* e) { pass(this, &NSResponder::rightMouseUp, e, "rightMouseUp:"); }
void NSResponder::rightMouseDragged(NSEvent* e) {
    pass(this, &NSResponder::rightMouseDragged, e, "rightMouseDragged:");
}
void NSResponder::otherMouseDown(NSEvent* e) { pass(this, &NSResponder::otherMouseDown, e, "otherMouseDown:"); }
void NSResponder::otherMouseUp(NSEvent* e) { pass(this, &NSResponder::otherMouseUp, e, "otherMouseUp:"); }
void NSResponder::otherMouseDragged(NSEvent* e) {
    pass(this, &NSResponder::otherMouseDragged, e, "otherMouseDragged:");
}
void NSResponder::scrollWheel(NSEvent* e) { pass(this, &NSResponder::scrollWheel, e, "scrollWheel:"); }
void NSResponder::keyDown(NSEvent* e) { pass(this, &NSResponder::keyDown, e, "keyDown:"); }
void NSResponder::keyUp(NSEvent* e) { pass(this, &NSResponder::keyUp, e, "keyUp:"); }
void NSResponder::flagsChanged(NSEvent* e) { pass(this, &NSResponder::flagsChanged, e, "flagsChanged:"); }
void NSResponder::cursorUpdate(NSEvent* e) { pass(this, &NSResponder::cursorUpdate, e, "cursorUpdate:"); }
void NSResponder::helpRequested(NSEvent* e) { pass(this, &NSResponder::helpRequested, e, "helpRequested:"); }

BOOL NSResponder::performKeyEquivalent(NSEvent*) { return NO; }

void NSResponder::noResponderFor(SEL operation) {
    // Only a key that nobody wanted is worth a sound.
    static const SEL key = sel("keyDown:");
    if (operation == key) backend::Backend::current().windows->beep();
}

void NSResponder::textInput(NSEvent* e) {
    if (!e->fields().isPreedit && e->characters() && e->characters()->length() > 0) insertText(e->characters());
}

// Keys.

void NSResponder::interpretKeyEvents(NSArray* events) {
    if (!events) return;
    const Ref<NSResponder> self(this);
    const Ref<NSArray> kept(events);
    for (NSUInteger i = 0; i < kept->count(); ++i) {
        auto* e = kept->at<NSEvent>(i);
        if (!e || e->type() != NSKeyDown) continue;
        if (const SEL command = KeyBindings::commandForEvent(*e))
            doCommandBySelector(command);
        else if (const Ref<NSString> text = KeyBindings::textForEvent(*e))
            insertText(text);
        else
            noResponderFor(sel("keyDown:"));
    }
}

void NSResponder::doCommandBySelector(SEL selector) {
    if (!selector) return;
    const Ref<NSResponder> self(this);
    if (respondsToSelector(selector))
        (void)performSelector_withObject(selector, this);
    else if (const Ref<NSResponder> next = nextResponder())
        next->doCommandBySelector(selector);
    else
        noResponderFor(sel("keyDown:"));
}

void NSResponder::insertText(NSObject* text) {
    if (const Ref<NSResponder> next = nextResponder())
        next->insertText(text);
    else
        noResponderFor(sel("keyDown:"));
}

BOOL NSResponder::tryToPerform_with(SEL action, NSObject* object) {
    if (!action) return NO;
    const Ref<NSObject> argument(object);
    for (Ref<NSResponder> r(this); r; r = r->nextResponder()) {
        if (!r->respondsToSelector(action)) continue;
        (void)r->performSelector_withObject(action, object);
        return YES;
    }
    return NO;
}

} // namespace libvue

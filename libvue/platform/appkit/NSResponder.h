#pragma once

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// A link of the responder chain: what a responder does not handle goes to the next one.
class LIBVUE_API NSResponder : public NSObject {
public:
    static void describe(ClassDescription<NSResponder>& c);
    NSResponder() = default;
    ~NSResponder() override;

    /// Not kept; absent at the end of the chain, or once it is gone.
    [[nodiscard]] virtual NSResponder* nextResponder() const { return nextResponder_.get(); }
    virtual void setNextResponder(NSResponder* r) { nextResponder_ = r; }

    /// Whether a click or Tab gives it the keys.
    [[nodiscard]] virtual BOOL acceptsFirstResponder() { return NO; }
    /// Sent by NSWindow's makeFirstResponder: to the new one; NO refuses, and the window itself becomes first.
    [[nodiscard]] virtual BOOL becomeFirstResponder() { return YES; }
    /// Sent by makeFirstResponder: to the old one; NO keeps the keys where they are.
    [[nodiscard]] virtual BOOL resignFirstResponder() { return YES; }

    // Events. The base passes each on to the next responder; at the end of the chain a key beeps.

    virtual void mouseDown(NSEvent* e);
    virtual void mouseUp(NSEvent* e);
    virtual void mouseDragged(NSEvent* e);
    virtual void mouseMoved(NSEvent* e);
    virtual void mouseEntered(NSEvent* e);
    virtual void mouseExited(NSEvent* e);
    virtual void rightMouseDown(NSEvent* e);
    virtual void rightMouseUp(NSEvent* e);
    virtual void rightMouseDragged(NSEvent* e);
    virtual void otherMouseDown(NSEvent* e);
    virtual void otherMouseUp(NSEvent* e);
    virtual void otherMouseDragged(NSEvent* e);
    virtual void scrollWheel(NSEvent* e);
    virtual void keyDown(NSEvent* e);
    virtual void keyUp(NSEvent* e);
    virtual void flagsChanged(NSEvent* e);
    /// Text of an input method or a dead key (NSTextInput). The base sends insertText: for text that is final; an
    /// editor overrides it to show text that is still being composed.
    virtual void textInput(NSEvent* e);
    /// The pointer is over a tracking area with NSTrackingCursorUpdate.
    virtual void cursorUpdate(NSEvent* e);
    virtual void helpRequested(NSEvent* e);
    /// YES where the event was a shortcut of this responder, which has acted on it.
    virtual BOOL performKeyEquivalent(NSEvent* e);
    /// At the end of the chain. Beeps for keyDown: alone.
    virtual void noResponderFor(SEL operation);

    /// Turns key events into the operations below (moveLeft:, insertTab:…), or insertText:.
    void interpretKeyEvents(NSArray* events);
    /// Runs the operation where it is answered, else asks the next responder; at the end of the chain beeps.
    virtual void doCommandBySelector(SEL selector);
    /// A text that was typed, a string or an attributed one. The base hands it up the chain; at its end beeps.
    virtual void insertText(NSObject* text);
    /// Runs an action on this responder or the first one up the chain that answers it; NO where none does, or for null.
    BOOL tryToPerform_with(SEL action, NSObject* object);

    /// The context menu; null for none.
    virtual NSMenu* menu() const { return nullptr; }

private:
    Weak<NSResponder> nextResponder_;
};

} // namespace libvue

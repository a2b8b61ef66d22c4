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

    [[nodiscard]] virtual BOOL acceptsFirstResponder() { return NO; }
    [[nodiscard]] virtual BOOL becomeFirstResponder() { return YES; }
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
    virtual void cursorUpdate(NSEvent* e);
    virtual void helpRequested(NSEvent* e);
    /// True when the event was a shortcut of this responder.
    virtual BOOL performKeyEquivalent(NSEvent* e);
    virtual void noResponderFor(SEL operation);

    /// Turns key events into the operations below (moveLeft:, insertTab:…), or insertText:.
    void interpretKeyEvents(NSArray* events);
    /// Runs the operation where it is answered, else asks the next responder; at the end of the chain beeps.
    virtual void doCommandBySelector(SEL selector);
    virtual void insertText(NSObject* text);
    /// Runs an action on this responder or the first one up the chain that answers it.
    BOOL tryToPerform_with(SEL action, NSObject* object);

    virtual NSMenu* menu() const { return nullptr; }

private:
    Weak<NSResponder> nextResponder_;
};

} // namespace libvue

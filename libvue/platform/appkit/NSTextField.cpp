#include <libvue/platform/appkit/NSTextField.h>

#include <libvue/platform/appkit/NSButtonCell.h>
#include <libvue/platform/appkit/NSCellHitTest.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSText.h>
#include <libvue/platform/appkit/NSTextFieldCell.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/backend/Drawing.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSFormatter.h>
#include <libvue/platform/foundation/NSKeyValueBinding.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/graphics/NSColor.h>

namespace libvue {

static const ClassRegistration<NSTextField> registration;

namespace {

const ExposedBinding exposed{&classOf<NSTextField>, NSEditableBinding};

NSTextFieldCell* textCell(const NSTextField* f) { return as<NSTextFieldCell>(f->cell()); }

} // namespace

void NSTextField::describe(ClassDescription<NSTextField, NSControl>& c) {
    c.answers<&NSTextField::selectText>("selectText:");
    c.answers<&NSTextField::textShouldBeginEditing>("textShouldBeginEditing:");
    c.answers<&NSTextField::textShouldEndEditing>("textShouldEndEditing:");
    c.answers<&NSTextField::textDidBeginEditing>("textDidBeginEditing:");
    c.answers<&NSTextField::textDidChange>("textDidChange:");
    c.answers<&NSTextField::textDidEndEditing>("textDidEndEditing:");
    c.answers<&NSTextField::textView_doCommandBySelector>("textView:doCommandBySelector:");
    c.key<&NSTextField::placeholderString, &NSTextField::setPlaceholderString>("placeholderString");
    c.key<&NSTextField::textColor, &NSTextField::setTextColor>("textColor");
    c.key<&NSTextField::isEditable, &NSTextField::setEditable>("editable");
}

NSTextField::NSTextField() : NSTextField(NSZeroRect) {}
NSTextField::NSTextField(const NSRect& frame) : NSControl(frame) {
    auto c = make<NSTextFieldCell>();
    c->setEditable(YES);
    c->setBezeled(YES);
    c->setDrawsBackground(YES);
    c->setScrollable(YES);
    setCell(c);
}
NSTextField::NSTextField(NSCoder& coder) : NSControl(coder) {
    if (!textCell(this)) setCell(make<NSTextFieldCell>());
}
NSTextField::~NSTextField() = default;

Ref<NSTextField> NSTextField::labelWithString(NSString* text) {
    auto f = make<NSTextField>();
    f->setEditable(NO);
    f->setSelectable(NO);
    f->setBezeled(NO);
    f->setDrawsBackground(NO);
    f->setTextColor(NSColor::labelColor());
    f->setStringValue(text);
    f->sizeToFit();
    return f;
}

Ref<NSTextField> NSTextField::textFieldWithString(NSString* text) {
    auto f = make<NSTextField>();
    f->setStringValue(text);
    f->sizeToFit();
    return f;
}

BOOL NSTextField::isEditable() const { return cell() && cell()->isEditable(); }
void NSTextField::setEditable(BOOL f) {
    if (cell()) cell()->setEditable(f);
}
BOOL NSTextField::isSelectable() const { return cell() && cell()->isSelectable(); }
void NSTextField::setSelectable(BOOL f) {
    if (cell()) cell()->setSelectable(f);
}
BOOL NSTextField::isBezeled() const { return cell() && cell()->isBezeled(); }
void NSTextField::setBezeled(BOOL f) {
    if (cell()) cell()->setBezeled(f);
    setNeedsDisplay(YES);
}
BOOL NSTextField::isBordered() const { return cell() && cell()->isBordered(); }
void NSTextField::setBordered(BOOL f) {
    if (cell()) cell()->setBordered(f);
    setNeedsDisplay(YES);
}
BOOL NSTextField::drawsBackground() const { return textCell(this) && textCell(this)->drawsBackground(); }
void NSTextField::setDrawsBackground(BOOL f) {
    if (auto* c = textCell(this)) c->setDrawsBackground(f);
}
NSColor* NSTextField::textColor() const { return textCell(this) ? textCell(this)->textColor() : nullptr; }
void NSTextField::setTextColor(NSColor* color) {
    if (auto* c = textCell(this)) c->setTextColor(color);
}
NSColor* NSTextField::backgroundColor() const { return textCell(this) ? textCell(this)->backgroundColor() : nullptr; }
void NSTextField::setBackgroundColor(NSColor* color) {
    if (auto* c = textCell(this)) c->setBackgroundColor(color);
}
NSString* NSTextField::placeholderString() const {
    return textCell(this) ? textCell(this)->placeholderString() : nullptr;
}
void NSTextField::setPlaceholderString(NSString* s) {
    if (auto* c = textCell(this)) c->setPlaceholderString(s);
}
BOOL NSTextField::isOpaque() const {
    if (!drawsBackground() || isBezeled()) return NO;
    const NSColor* color = backgroundColor();
    return color && !color->patternImage() && color->resolved().alpha >= 1;
}

// Editing.

NSText* NSTextField::currentEditor() const {
    NSText* e = editor_;
    return e && e->superview() == this ? e : nullptr;
}

Ref<NSText> NSTextField::takeEditor() {
    if (!window() || !cell() || !isSelectable() || !isEnabled()) return nullptr;
    Ref<NSText> e = window()->fieldEditor_forObject(YES, this);
    if (!e) return nullptr;
    // It may still be at work for another field, which is told that this ends before it hears of a new text.
    if (window()->firstResponder() == e.get() && (!window()->makeFirstResponder(nullptr) || !window())) return nullptr;
    editor_ = e.get();
    former_ = cell()->objectValue();
    return e;
}

void NSTextField::selectText(NSObject*) {
    const Ref<NSTextField> self(this);
    if (NSText* e = currentEditor()) {
        e->selectAll(this);
        return;
    }
    const Ref<NSText> e = takeEditor();
    if (!e) return;
    cell()->selectWithFrame_inView_editor_delegate_start_length(bounds(), this, e, this, 0, stringValue()->length());
    setNeedsDisplay(YES);
}

void NSTextField::mouseDown(NSEvent* event) {
    if (!window() || !cell() || !isSelectable() || !isEnabled()) {
        // A label leaves the press to what lies behind, unless its cell has a use for it.
        const bool tracks = window() && cell() && isEnabled() &&
                            (cell()->hitTestForEvent_inRect_ofView(event, bounds(), this) & NSCellHitTrackableArea);
        if (tracks)
            NSControl::mouseDown(event);
        else
            NSView::mouseDown(event);
        return;
    }
    const Ref<NSTextField> self(this);
    if (NSText* e = currentEditor()) {
        e->mouseDown(event);
        return;
    }
    const Ref<NSText> e = takeEditor();
    if (!e) return;
    cell()->editWithFrame_inView_editor_delegate_event(bounds(), this, e, this, event);
    setNeedsDisplay(YES);
}

BOOL NSTextField::acceptsFirstResponder() { return isEnabled() && isSelectable() && !refusesFirstResponder(); }

BOOL NSTextField::becomeFirstResponder() {
    // The editor takes the focus in the field's place.
    if (!currentEditor()) selectText(nullptr);
    return YES;
}

BOOL NSTextField::abortEditing() {
    const Ref<NSText> e = currentEditor();
    if (!e) return NO;
    const Ref<NSTextField> self(this);
    const bool focused = window() && window()->firstResponder() == e.get();
    editor_ = nullptr;
    e->setDelegate(nullptr);
    if (cell()) cell()->endEditing(e);
    if (focused && window()) window()->makeFirstResponder(nullptr);
    setNeedsDisplay(YES);
    return YES;
}

void NSTextField::validateEditing() {
    NSText* e = currentEditor();
    if (!e || !cell() || !isEditable()) return;
    const Ref<NSString> text = e->string();
    if (NSFormatter* f = cell()->formatter()) {
        Ref<NSObject> value;
        Ref<NSString> error;
        if (!f->getObjectValue_forString_errorDescription(&value, text, &error)) return;
        cell()->setObjectValue(value);
        return;
    }
    cell()->setStringValue(text);
}

void NSTextField::postEditing(NSString* name, const Operation<void(NSNotification*)>& operation, NSText* editor) {
    const auto info = NSDictionary::dictionaryWithObject_forKey(editor, u"NSFieldEditor"_ns);
    const auto n = make<NSNotification>(name, this, info);
    if (auto tell = operation.of(delegate_)) tell(n);
    NSNotificationCenter::defaultCenter()->postNotification(n);
}

BOOL NSTextField::textShouldBeginEditing(NSText* editor) {
    if (auto asked = op::control_textShouldBeginEditing.of(delegate_)) return asked(this, editor);
    return YES;
}

BOOL NSTextField::textShouldEndEditing(NSText* editor) {
    const Ref<NSTextField> self(this);
    if (isEditable() && cell() && cell()->formatter()) {
        Ref<NSObject> value;
        Ref<NSString> error;
        const Ref<NSString> text = editor->string();
        if (!cell()->formatter()->getObjectValue_forString_errorDescription(&value, text, &error)) {
            auto asked = op::control_didFailToFormatString_errorDescription.of(delegate_);
            if (!asked || !asked(this, text, error)) return NO;
        }
    }
    if (auto asked = op::control_textShouldEndEditing.of(delegate_)) return asked(this, editor);
    return YES;
}

void NSTextField::textDidBeginEditing(NSNotification* n) {
    postEditing(NSControlTextDidBeginEditingNotification, op::controlTextDidBeginEditing, as<NSText>(n->object()));
}

void NSTextField::textDidChange(NSNotification* n) {
    const Ref<NSTextField> self(this);
    const Ref<NSText> editor(as<NSText>(n->object()));
    if (isContinuous()) validateEditing();
    if (bindingUpdatesContinuously(this, NSValueBinding)) setBoundValue(this, NSValueBinding, ShowAfterwards::nothing);
    postEditing(NSControlTextDidChangeNotification, op::controlTextDidChange, editor);
    if (isContinuous()) sendAction_to(action(), target());
}

void NSTextField::textDidEndEditing(NSNotification* n) {
    const Ref<NSTextField> self(this);
    const Ref<NSText> editor(as<NSText>(n->object()));
    const Ref<NSWindow> w(window());
    NSInteger movement = NSIllegalTextMovement;
    if (n->userInfo())
        if (auto* m = as<NSNumber>(n->userInfo()->objectForKey(NSTextMovementKey))) movement = m->integerValue();
    validateEditing();
    editor_ = nullptr;
    if (cell() && editor) cell()->endEditing(editor);
    setNeedsDisplay(YES);
    setBoundValue(this, NSValueBinding, ShowAfterwards::modelValue);
    postEditing(NSControlTextDidEndEditingNotification, op::controlTextDidEndEditing, editor);
    switch (movement) {
    case NSReturnTextMovement:
        // Without an action of its own, Return goes on to the default button.
        if (action())
            sendAction_to(action(), target());
        else if (NSButtonCell* b = w ? w->defaultButtonCell() : nullptr) {
            const Ref<NSButtonCell> kept(b);
            kept->performClick(this);
        }
        // Still there, and nobody took the focus: go on in the field.
        if (w && window() == w.get() && w->firstResponder() == w.get()) selectText(nullptr);
        break;
    case NSTabTextMovement:
        if (w) w->selectKeyViewFollowingView(this);
        break;
    case NSBacktabTextMovement:
        if (w) w->selectKeyViewPrecedingView(this);
        break;
    default:
        break;
    }
}

BOOL NSTextField::textView_doCommandBySelector(NSText* editor, SEL command) {
    if (auto asked = op::control_textView_doCommandBySelector.of(delegate_))
        if (asked(this, editor, command)) return YES;
    static const SEL cancel = sel("cancelOperation:");
    if (command == cancel && currentEditor() == editor) {
        // Escape gives back what stood there.
        const Ref<NSTextField> self(this);
        const Ref<NSText> kept(editor);
        // The cell may hold what was typed since: whoever read the value in between took it in.
        const Ref<NSString> typed = editor->string();
        if (cell()) cell()->setObjectValue(former_);
        const Ref<NSString> old = cell() ? cell()->stringValue() : NSString::string();
        if (!typed->isEqualToString(old)) {
            editor->setString(old);
            editor->setSelectedRange({0, old->length()});
            return YES;
        }
    }
    return NO;
}

AccessibilityDescription NSTextField::accessibilityDescription() const {
    AccessibilityDescription d = NSControl::accessibilityDescription();
    d.role = isEditable() ? u"text field"_ns : u"label"_ns;
    if (NSText* e = currentEditor()) d.value = e->string();
    if (!d.label) d.label = placeholderString();
    return d;
}

} // namespace libvue

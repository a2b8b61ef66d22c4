#include <utility>

#include <libvue/platform/appkit/NSButtonCell.h>
#include <libvue/platform/appkit/NSControl.h>
#include <libvue/platform/appkit/NSText.h>
#include <libvue/platform/appkit/NSWindow.h>

namespace libvue {

namespace {
FieldEditorFactory fieldEditorFactory = nullptr;
} // namespace

void installFieldEditorFactory(FieldEditorFactory factory) noexcept { fieldEditorFactory = factory; }

// The first responder.

NSResponder* NSWindow::firstResponder() const noexcept {
    NSResponder* r = firstResponder_;
    // A view that would not resign may have left all the same.
    if (const auto* v = as<NSView>(r); v && v->window() != this) r = nullptr;
    return r ? r : const_cast<NSWindow*>(this);
}

BOOL NSWindow::makeFirstResponder(NSResponder* r) {
    const Ref<NSWindow> self(this);
    const Ref<NSResponder> next(r ? r : this);
    if (auto* v = as<NSView>(next); v && v->window() != this) return NO;
    const Ref<NSResponder> old(firstResponder());
    if (old == next) return YES;
    if (old.get() != this) {
        if (!old->resignFirstResponder()) return NO;
        // The old one may have passed the focus on while it gave it up; then that one is asked as well.
        if (const Ref<NSResponder> meanwhile(firstResponder()); meanwhile != old && meanwhile.get() != this) {
            if (meanwhile == next) return YES;
            if (!meanwhile->resignFirstResponder()) return NO;
        }
    }
    firstResponder_ = nullptr;
    if (next.get() != this) {
        if (auto* v = as<NSView>(next); v && v->window() != this) {
            firstResponderChanged();
            return NO;
        }
        // Set before it is asked: a text field hands the focus on to its editor in its answer.
        firstResponder_ = next.get();
        if (!next->becomeFirstResponder()) {
            if (firstResponder_.get() == next.get()) firstResponder_ = nullptr;
            firstResponderChanged();
            return NO;
        }
    }
    firstResponderChanged();
    return YES;
}

void NSWindow::firstResponderChanged() { setViewsNeedDisplay(YES); }

// The loop of key views.

namespace {

/// Where the way to the next key view starts: the control around the shared editor, or the view itself.
NSView* startOfWay(NSWindow& w, const NSText* editor) {
    auto* v = as<NSView>(w.firstResponder());
    if (!v || static_cast<const NSResponder*>(v) != static_cast<const NSResponder*>(editor)) return v;
    for (NSView* s = v->superview(); s; s = s->superview())
        if (as<NSControl>(s)) return s;
    return v;
}

} // namespace

void NSWindow::selectNextKeyView(NSObject*) {
    // With the focus nowhere, the way starts where the window says. A field that gives its focus up asks for the view
    // after itself, and gets that.
    if (firstResponder() == this && initialFirstResponder_ && initialFirstResponder_->canBecomeKeyView()) {
        makeFirstResponder(initialFirstResponder_);
        return;
    }
    NSView* from = startOfWay(*this, fieldEditor_);
    selectKeyViewFollowingView(from ? from : root_.get());
}

void NSWindow::selectPreviousKeyView(NSObject*) {
    NSView* from = startOfWay(*this, fieldEditor_);
    selectKeyViewPrecedingView(from ? from : root_.get());
}

void NSWindow::selectKeyViewFollowingView(NSView* view) {
    if (!view) return;
    if (const Ref<NSView> next = view->nextValidKeyView()) makeFirstResponder(next);
}

void NSWindow::selectKeyViewPrecedingView(NSView* view) {
    if (!view) return;
    if (const Ref<NSView> previous = view->previousValidKeyView()) makeFirstResponder(previous);
}

void NSWindow::recalculateKeyViewLoop() {
    // Without links the loop follows the places of the views.
    const auto clear = [](const auto& down, NSView* v) -> void {
        if (v->nextKeyView()) v->setNextKeyView(nullptr);
        for (std::size_t i = 0; i < v->subviews().size(); ++i)
            down(down, v->subviews()[i]);
    };
    clear(clear, root_);
}

// The shared editor.

NSText* NSWindow::fieldEditor_forObject(BOOL create, NSObject* object) {
    const Ref<NSWindow> self(this);
    if (const auto asks = op::windowWillReturnFieldEditor_toObject.of(delegate_))
        if (auto* own = as<NSText>(asks(this, object))) return own;
    if (!fieldEditor_ && create && fieldEditorFactory) fieldEditor_ = fieldEditorFactory(this);
    return fieldEditor_;
}

void NSWindow::endEditingFor(NSObject*) {
    const Ref<NSText> editor = fieldEditor_;
    if (!editor || firstResponder() != editor.get()) return;
    if (makeFirstResponder(nullptr)) return;
    // It ends now, even where the editor would rather go on.
    firstResponder_ = nullptr;
    if (editor->window() == this) editor->removeFromSuperview();
    firstResponderChanged();
}

// The default button.

NSButtonCell* NSWindow::defaultButtonCell() const noexcept { return defaultButton_; }
void NSWindow::setDefaultButtonCell(NSButtonCell* cell) {
    const Weak<NSButtonCell> former = std::exchange(defaultButton_, cell);
    for (NSButtonCell* changed : {former.get(), cell})
        if (NSView* v = changed ? changed->controlView() : nullptr) v->setNeedsDisplay(YES);
}

BOOL NSWindow::performDefaultButton() {
    const Ref<NSButtonCell> cell = defaultButton_.ref();
    if (!cell || !cell->isEnabled()) return NO;
    cell->performClick(this);
    return YES;
}

} // namespace libvue

#include <libvue/platform/appkit/NSControl.h>

#include <libvue/platform/appkit/NSActionCell.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSFormatter.h>
#include <libvue/platform/foundation/NSKeyValueBinding.h>

namespace libvue {

namespace {
const ExposedBinding exposed[] = {{&classOf<NSControl>, NSValueBinding}, {&classOf<NSControl>, NSEnabledBinding}};
}

void NSControl::describe(ClassDescription<NSControl, NSView>& c) {
    c.key<&NSControl::objectValue, &NSControl::setObjectValue>("value");
    c.key<&NSControl::objectValue, &NSControl::setObjectValue>("objectValue");
    c.key<&NSControl::stringValue, &NSControl::setStringValue>("stringValue");
    c.key<&NSControl::doubleValue, &NSControl::setDoubleValue>("doubleValue");
    c.key<&NSControl::integerValue, &NSControl::setIntegerValue>("integerValue");
    c.key<&NSControl::isEnabled, &NSControl::setEnabled>("enabled");
    c.answers<&NSControl::takeStringValueFrom>("takeStringValueFrom:");
    c.answers<&NSControl::takeDoubleValueFrom>("takeDoubleValueFrom:");
    c.answers<&NSControl::takeIntegerValueFrom>("takeIntegerValueFrom:");
    c.answers<&NSControl::performClick>("performClick:");
}

NSControl::NSControl() = default;
NSControl::NSControl(const NSRect& frame) : NSView(frame) {}
NSControl::NSControl(NSCoder& coder) : NSView(coder), tag_(coder.decodeIntegerForKey(u"NSTag"_ns)) {
    if (const Ref<NSCell> c = as<NSCell>(coder.decodeObjectForKey(u"NSCell"_ns))) NSControl::setCell(c);
}
NSControl::~NSControl() = default;

void NSControl::encodeWithCoder(NSCoder& coder) const {
    NSView::encodeWithCoder(coder);
    coder.encodeInteger_forKey(tag_, u"NSTag"_ns);
    coder.encodeObject_forKey(cell_, u"NSCell"_ns);
}

NSCell* NSControl::cell() const { return cell_; }

void NSControl::setCell(NSCell* cell) {
    if (cell_ && cell_->controlView() == this) cell_->setControlView(nullptr);
    cell_ = cell;
    if (cell_) cell_->setControlView(this);
    setNeedsDisplay(YES);
}

// Target and action.

NSObject* NSControl::target() const { return cell_ ? cell_->target() : nullptr; }
void NSControl::setTarget(NSObject* t) {
    if (cell_) cell_->setTarget(t);
}
SEL NSControl::action() const { return cell_ ? cell_->action() : nullptr; }
void NSControl::setAction(SEL a) {
    if (cell_) cell_->setAction(a);
}
BOOL NSControl::sendAction_to(SEL action, NSObject* target) {
    const Ref<NSControl> self(this);
    const Ref<NSObject> kept(target);
    // A bound model knows the value before the target hears of it. A text that is still being typed stays as it is.
    const ShowAfterwards afterwards = currentEditor() ? ShowAfterwards::nothing : ShowAfterwards::modelValue;
    setBoundValue(this, NSValueBinding, afterwards);
    setBoundValue(this, NSSelectedIndexBinding, afterwards);
    return action ? NSApp()->sendAction_to_from(action, target, this) : NO;
}

// What the cell holds.

BOOL NSControl::isEnabled() const { return !cell_ || cell_->isEnabled(); }

void NSControl::setEnabled(BOOL f) {
    if (!cell_ || cell_->isEnabled() == f) return;
    const Ref<NSControl> self(this);
    if (!f) abortEditing();
    // A control that can no longer be used passes the focus on.
    if (!f && window() && window()->firstResponder() == this) window()->selectKeyViewFollowingView(this);
    if (cell_) cell_->setEnabled(f);
    setNeedsDisplay(YES);
}

BOOL NSControl::isContinuous() const { return cell_ && cell_->isContinuous(); }
void NSControl::setContinuous(BOOL f) {
    if (cell_) cell_->setContinuous(f);
}
BOOL NSControl::refusesFirstResponder() const { return cell_ && cell_->refusesFirstResponder(); }
void NSControl::setRefusesFirstResponder(BOOL f) {
    if (cell_) cell_->setRefusesFirstResponder(f);
}

/// The cell that has the value, with what is being typed taken in: a value that is read is the one that shows.
static NSCell* valueCell(const NSControl* c) {
    const_cast<NSControl*>(c)->validateEditing();
    return c->selectedCell();
}
/// Sets the value of the cell in use; what is being typed is dropped.
template <class Set> static void putValue(NSControl* control, const Set& set) {
    control->abortEditing();
    if (NSCell* c = control->selectedCell()) set(*c);
    control->setNeedsDisplay(YES);
}

NSObject* NSControl::objectValue() const { return valueCell(this) ? selectedCell()->objectValue() : nullptr; }
void NSControl::setObjectValue(NSObject* v) {
    putValue(this, [&](NSCell& c) { c.setObjectValue(v); });
}
Ref<NSString> NSControl::stringValue() const {
    return valueCell(this) ? selectedCell()->stringValue() : NSString::string();
}
void NSControl::setStringValue(NSString* s) {
    putValue(this, [&](NSCell& c) { c.setStringValue(s); });
}
Ref<NSAttributedString> NSControl::attributedStringValue() const {
    return valueCell(this) ? selectedCell()->attributedStringValue() : make<NSAttributedString>();
}
void NSControl::setAttributedStringValue(NSAttributedString* s) {
    putValue(this, [&](NSCell& c) { c.setAttributedStringValue(s); });
}
NSInteger NSControl::integerValue() const { return valueCell(this) ? selectedCell()->integerValue() : 0; }
void NSControl::setIntegerValue(NSInteger v) {
    putValue(this, [&](NSCell& c) { c.setIntegerValue(v); });
}
double NSControl::doubleValue() const { return valueCell(this) ? selectedCell()->doubleValue() : 0; }
void NSControl::setDoubleValue(double v) {
    putValue(this, [&](NSCell& c) { c.setDoubleValue(v); });
}

void NSControl::takeStringValueFrom(NSObject* sender) {
    if (auto* c = as<NSControl>(sender)) setStringValue(c->stringValue());
}
void NSControl::takeDoubleValueFrom(NSObject* sender) {
    if (auto* c = as<NSControl>(sender)) setDoubleValue(c->doubleValue());
}
void NSControl::takeIntegerValueFrom(NSObject* sender) {
    if (auto* c = as<NSControl>(sender)) setIntegerValue(c->integerValue());
}

NSFormatter* NSControl::formatter() const { return cell_ ? cell_->formatter() : nullptr; }
void NSControl::setFormatter(NSFormatter* f) {
    if (cell_) cell_->setFormatter(f);
}
NSFont* NSControl::font() const { return cell_ ? cell_->font() : nullptr; }
void NSControl::setFont(NSFont* f) {
    if (cell_) cell_->setFont(f);
    setNeedsDisplay(YES);
}
NSTextAlignment NSControl::alignment() const { return cell_ ? cell_->alignment() : NSNaturalTextAlignment; }
void NSControl::setAlignment(NSTextAlignment a) {
    if (cell_) cell_->setAlignment(a);
    setNeedsDisplay(YES);
}
NSControlSize NSControl::controlSize() const { return cell_ ? cell_->controlSize() : NSRegularControlSize; }
void NSControl::setControlSize(NSControlSize s) {
    if (cell_) cell_->setControlSize(s);
    setNeedsDisplay(YES);
}

void NSControl::sizeToFit() {
    if (cell_) setFrameSize(cell_->cellSize());
}
void NSControl::updateCell(NSCell*) { setNeedsDisplay(YES); }
void NSControl::performClick(NSObject* sender) {
    const Ref<NSControl> self(this);
    if (NSCell* c = selectedCell()) c->performClick(sender);
}

// Editing: plain controls have none.

NSText* NSControl::currentEditor() const { return nullptr; }
BOOL NSControl::abortEditing() { return NO; }
void NSControl::validateEditing() {}

// Drawing and events.

void NSControl::drawRect(const NSRect&) {
    if (cell_) cell_->drawWithFrame_inView(bounds(), this);
}

void NSControl::mouseDown(NSEvent* e) {
    if (!cell_ || !isEnabled()) return;
    const Ref<NSControl> self(this);
    const Ref<NSCell> c(cell_);
    c->setHighlighted(YES);
    c->trackMouse_inRect_ofView_untilMouseUp(e, bounds(), this, YES);
    c->setHighlighted(NO);
}

BOOL NSControl::acceptsFirstResponder() { return cell_ && cell_->acceptsFirstResponder(); }

BOOL NSControl::becomeFirstResponder() {
    if (cell_) cell_->setShowsFirstResponder(YES);
    setNeedsDisplay(YES);
    return YES;
}

BOOL NSControl::resignFirstResponder() {
    if (cell_) cell_->setShowsFirstResponder(NO);
    setNeedsDisplay(YES);
    return YES;
}

void NSControl::resetCursorRects() {
    if (cell_) cell_->resetCursorRect_inView(bounds(), this);
}

AccessibilityDescription NSControl::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.enabled = isEnabled();
    d.value = stringValue();
    return d;
}

} // namespace libvue

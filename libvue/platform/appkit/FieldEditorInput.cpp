#include <libvue/platform/appkit/FieldEditor.h>

#include <algorithm>
#include <limits>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSPasteboard.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/ScopeExit.h>
#include <libvue/platform/backend/TextEngine.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSFormatter.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSRunLoop.h>

namespace libvue {

namespace {

/// Of the texts that are kept for undo, and of all their UTF-16 units.
constexpr std::ptrdiff_t kUndoDepth = 200;
constexpr std::size_t kUndoUnits = 1 << 20;

/// On one line: line ends and tabs become spaces, other control characters go.
std::u16string oneLine(std::u16string_view s) {
    std::u16string out;
    out.reserve(s.size());
    for (std::size_t i = 0; i < s.size(); ++i) {
        const char16_t c = s[i];
        if (c == u'\r' && i + 1 < s.size() && s[i + 1] == u'\n') continue;
        if (c == u'\n' || c == u'\r' || c == u'\t' || c == 0x0B || c == 0x0C || c == 0x85 || c == 0x2028 || c == 0x2029)
            out += u' ';
        else if (c >= 0x20 && c != 0x7F)
            out += c;
    }
    return out;
}

} // namespace

// Commands.

void FieldEditor::doCommandBySelector(SEL command) {
    const Ref<FieldEditor> self(this);
    if (auto asked = op::textView_doCommandBySelector.of(delegate()))
        if (asked(this, command)) return;
    NSText::doCommandBySelector(command);
}

void FieldEditor::keyDown(NSEvent* e) { interpretKeyEvents(NSArray::arrayWithObjects({e})); }

void FieldEditor::insertText(NSObject* text) {
    Ref<NSString> s(as<NSString>(text));
    if (auto* a = as<NSAttributedString>(text)) s = a->string();
    if (!s) return;
    const std::u16string typed = oneLine(s->utf16());
    if (!typed.empty()) edit(selectedRange(), typed, Edit::typing);
}

void FieldEditor::textInput(NSEvent* e) {
    if (!editable_) return;
    const Ref<FieldEditor> self(this);
    const std::u16string typed = e->characters() ? oneLine(e->characters()->utf16()) : std::u16string();
    if (e->fields().isPreedit) {
        if (!typed.empty() && !mayEdit()) return;
        preedit_ = typed;
        preeditCaret_ = std::min<NSUInteger>(NSMaxRange(e->fields().selection), preedit_.size());
        invalidateLayout();
        selectionChanged();
        return;
    }
    preedit_.clear();
    invalidateLayout();
    if (!typed.empty())
        edit(selectedRange(), typed, Edit::typing);
    else
        selectionChanged();
}

// Editing.

bool FieldEditor::mayEdit() {
    if (!editable_) return false;
    if (began_) return true;
    const Ref<FieldEditor> self(this);
    if (auto asked = op::textShouldBeginEditing.of(delegate()))
        if (!asked(this)) return false;
    began_ = true;
    const auto n = make<NSNotification>(NSTextDidBeginEditingNotification, this, nullptr);
    if (auto tell = op::textDidBeginEditing.of(delegate())) tell(n);
    NSNotificationCenter::defaultCenter()->postNotification(n);
    return true;
}

bool FieldEditor::passesFormatter(std::u16string& proposed, NSRange& selection) {
    auto* control = as<NSControl>(delegate());
    NSCell* cell = control ? control->selectedCell() : nullptr;
    const Ref<NSFormatter> formatter = cell ? cell->formatter() : nullptr;
    if (!formatter) return true;
    const Ref<NSControl> kept(control);
    const Ref<NSString> asked = NSString::from(proposed);
    Ref<NSString> partial = asked, error;
    const Ref<NSString> before = string();
    if (formatter->isPartialStringValid_proposedSelectedRange_originalString_originalSelectedRange_errorDescription(
            &partial, &selection, before, selectedRange(), &error))
        return true;
    const bool putRight = partial && partial != asked;
    if (putRight) {
        proposed = partial->utf16();
        selection.location = std::min<NSUInteger>(selection.location, proposed.size());
        selection.length = std::min<NSUInteger>(selection.length, proposed.size() - selection.location);
    }
    if (auto* field = as<NSTextField>(control))
        if (auto tell = op::control_didFailToValidatePartialString_errorDescription.of(field->delegate()))
            tell(field, asked, error);
    return putRight;
}

void FieldEditor::edit(NSRange range, std::u16string_view with, Edit kind) {
    if (range.length == 0 && with.empty()) return;
    const Ref<FieldEditor> self(this);
    if (!mayEdit() || NSMaxRange(range) > text_.size()) return;
    std::u16string proposed = text_;
    proposed.replace(range.location, range.length, with);
    NSRange selection{range.location + with.size(), 0};
    const std::u16string before = text_;
    // A formatter that changed the text by itself has had its way.
    if (!passesFormatter(proposed, selection) || text_ != before) return;
    // A run of typing, or of deleting, is undone as one.
    const bool runsOn = kind == last_ && (kind == Edit::typing || kind == Edit::deleting) && !undo_.empty() &&
                        (kind == Edit::deleting || range.length == 0) && with != u" ";
    if (!runsOn) remember();
    redo_.clear();
    text_ = std::move(proposed);
    anchor_ = selection.location;
    caret_ = NSMaxRange(selection);
    last_ = kind;
    changed();
}

void FieldEditor::changed() {
    const Ref<FieldEditor> self(this);
    invalidateLayout();
    selectionChanged();
    const auto n = make<NSNotification>(NSTextDidChangeNotification, this, nullptr);
    if (auto tell = op::textDidChange.of(delegate())) tell(n);
    NSNotificationCenter::defaultCenter()->postNotification(n);
}

void FieldEditor::remember() {
    undo_.push_back({text_, caret_, anchor_});
    std::size_t units = 0;
    std::ptrdiff_t kept = 0;
    for (auto s = undo_.rbegin(); s != undo_.rend() && kept < kUndoDepth; ++s, ++kept) {
        units += s->text.size();
        if (units > kUndoUnits && kept > 0) break;
    }
    undo_.erase(undo_.begin(), undo_.end() - kept);
}

void FieldEditor::restore(const Snapshot& s) {
    text_ = s.text;
    caret_ = std::min<NSUInteger>(s.caret, text_.size());
    anchor_ = std::min<NSUInteger>(s.anchor, text_.size());
    last_ = Edit::none;
    changed();
}

void FieldEditor::undo(NSObject*) {
    if (undo_.empty() || !mayEdit()) return;
    const Snapshot s = std::move(undo_.back());
    undo_.pop_back();
    redo_.push_back({text_, caret_, anchor_});
    restore(s);
}

void FieldEditor::redo(NSObject*) {
    if (redo_.empty() || !mayEdit()) return;
    const Snapshot s = std::move(redo_.back());
    redo_.pop_back();
    remember();
    restore(s);
}

// Moving.

NSUInteger FieldEditor::target(Move m, NSUInteger from) const {
    switch (m) {
    case Move::left:
        return from == 0 ? 0 : layout().nextCaretPosition(from, false);
    case Move::right:
        return from >= text_.size() ? text_.size() : layout().nextCaretPosition(from, true);
    case Move::wordLeft:
    case Move::wordRight: {
        if (text_.empty()) return 0;
        const auto a = NSAttributedString::initWithString(string());
        return std::min<NSUInteger>(a->nextWordFromIndex_forward(from, m == Move::wordRight), text_.size());
    }
    case Move::start:
        return 0;
    case Move::end:
        return text_.size();
    }
    return from;
}

void FieldEditor::move(Move m, Extend e) {
    const NSRange s = selectedRange();
    // Without extending, a single step out of a selection goes to its end on that side.
    if (e == Extend::no && s.length > 0 && m == Move::left)
        select(s.location, s.location);
    else if (e == Extend::no && s.length > 0 && m == Move::right)
        select(NSMaxRange(s), NSMaxRange(s));
    else {
        const NSUInteger to = target(m, caret_);
        select(e == Extend::yes ? anchor_ : to, to);
    }
}

void FieldEditor::deleteTo(Move m) {
    NSRange s = selectedRange();
    if (s.length == 0) {
        const NSUInteger to = target(m, caret_);
        s = {std::min(to, caret_), std::max(to, caret_) - std::min(to, caret_)};
    }
    edit(s, {}, Edit::deleting);
}

void FieldEditor::selectAll(NSObject*) { select(0, text_.size()); }

// Leaving.

void FieldEditor::endEditing(NSInteger movement) {
    const Ref<FieldEditor> self(this);
    if (auto asked = op::textShouldEndEditing.of(delegate()))
        if (!asked(this)) {
            selectAll(nullptr);
            return;
        }
    preedit_.clear();
    const Ref<NSWindow> w(window());
    const auto info =
        NSDictionary::dictionaryWithObject_forKey(NSNumber::numberWithInteger(movement), NSTextMovementKey);
    const auto n = make<NSNotification>(NSTextDidEndEditingNotification, this, info);
    began_ = false;
    stopBlinking();
    if (w) {
        w->setCaretRect_(NO, NSZeroRect);
        ending_ = true;
        const ScopeExit over([this] { ending_ = false; });
        if (isActive()) w->makeFirstResponder(nullptr);
    }
    if (auto tell = op::textDidEndEditing.of(delegate())) tell(n);
    NSNotificationCenter::defaultCenter()->postNotification(n);
}

BOOL FieldEditor::resignFirstResponder() {
    if (ending_) return YES;
    const Ref<FieldEditor> self(this);
    if (auto asked = op::textShouldEndEditing.of(delegate()))
        if (!asked(this)) return NO;
    preedit_.clear();
    invalidateLayout();
    began_ = false;
    stopBlinking();
    if (window()) window()->setCaretRect_(NO, NSZeroRect);
    const auto n = make<NSNotification>(NSTextDidEndEditingNotification, this, nullptr);
    {
        ending_ = true;
        const ScopeExit over([this] { ending_ = false; });
        if (auto tell = op::textDidEndEditing.of(delegate())) tell(n);
    }
    NSNotificationCenter::defaultCenter()->postNotification(n);
    return YES;
}

void FieldEditor::insertTab(NSObject*) { endEditing(NSTabTextMovement); }
void FieldEditor::insertBacktab(NSObject*) { endEditing(NSBacktabTextMovement); }
void FieldEditor::insertNewline(NSObject*) { endEditing(NSReturnTextMovement); }

// Clipboard.

void FieldEditor::copy(NSObject*) {
    const NSRange s = selectedRange();
    if (s.length == 0) return;
    auto* board = NSPasteboard::generalPasteboard();
    board->declareTypes_owner(NSArray::arrayWithObjects({NSStringPboardType.get()}), nullptr);
    board->setString_forType(NSString::from(std::u16string_view(text_).substr(s.location, s.length)),
                             NSStringPboardType);
}

void FieldEditor::cut(NSObject* sender) {
    if (!editable_) return;
    copy(sender);
    if (selectedRange().length > 0) edit(selectedRange(), {}, Edit::other);
}

void FieldEditor::paste(NSObject*) {
    if (!editable_) return;
    const auto s = NSPasteboard::generalPasteboard()->stringForType(NSStringPboardType);
    if (!s) return;
    const std::u16string text = oneLine(s->utf16());
    if (!text.empty()) edit(selectedRange(), text, Edit::other);
}

NSMenu* FieldEditor::menuForEvent(NSEvent*) {
    if (!contextMenu_) {
        contextMenu_ = make<NSMenu>(NSString::string().get());
        contextMenu_->addItemWithTitle_action_keyEquivalent(u"Couper"_ns, sel("cut:"), u"x"_ns);
        contextMenu_->addItemWithTitle_action_keyEquivalent(u"Copier"_ns, sel("copy:"), u"c"_ns);
        contextMenu_->addItemWithTitle_action_keyEquivalent(u"Coller"_ns, sel("paste:"), u"v"_ns);
        contextMenu_->addItem(NSMenuItem::separatorItem());
        contextMenu_->addItemWithTitle_action_keyEquivalent(u"Tout sélectionner"_ns, sel("selectAll:"), u"a"_ns);
    }
    return contextMenu_;
}

// Mouse.

void FieldEditor::mouseDown(NSEvent* e) {
    const Ref<FieldEditor> self(this);
    if (window() && !isActive() && !window()->makeFirstResponder(this)) return;
    if (!preedit_.empty()) {
        preedit_.clear();
        invalidateLayout();
    }
    const NSPoint place = convertPoint_fromView(e->locationInWindow(), nullptr);
    const NSInteger clicks = e->clickCount();
    // What the first click chose stays chosen while the drag extends it by units of the same kind.
    NSRange base{indexAt(place), 0};
    if (clicks == 2) base = wordAt(place);
    if (clicks >= 3) base = {0, text_.size()};
    if (e->modifierFlags() & NSShiftKeyMask) base = {anchor_, 0};
    const auto extend = [&](NSPoint p) {
        NSRange reach{indexAt(p), 0};
        if (clicks == 2) reach = wordAt(p);
        if (clicks >= 3) reach = base;
        if (reach.location < base.location)
            select(NSMaxRange(base), reach.location);
        else
            select(base.location, std::max(NSMaxRange(base), NSMaxRange(reach)));
    };
    extend(place);
    while (window()) {
        const Ref<NSEvent> next = NSApp()->nextEventMatchingMask_untilDate_inMode_dequeue(
            NSLeftMouseDraggedMask | NSLeftMouseUpMask, std::numeric_limits<double>::infinity(),
            NSEventTrackingRunLoopMode, YES);
        if (!next || next->type() == NSLeftMouseUp) break;
        extend(convertPoint_fromView(next->locationInWindow(), nullptr));
    }
}

} // namespace libvue

#include <algorithm>
#include <limits>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSPasteboard.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/PlainTextEditor.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSRunLoop.h>

namespace libvue {

namespace {

/// Of the texts that are kept for undo, and of all their UTF-16 units.
constexpr std::ptrdiff_t kUndoDepth = 200;
constexpr std::size_t kUndoUnits = 1 << 20;

} // namespace

// Commands and input.

void PlainTextEditor::doCommandBySelector(SEL command) {
    const Ref<PlainTextEditor> self(this);
    if (auto asked = op::textView_doCommandBySelector.of(delegate()))
        if (asked(this, command)) return;
    NSText::doCommandBySelector(command);
}

void PlainTextEditor::keyDown(NSEvent* e) { interpretKeyEvents(NSArray::arrayWithObjects({e})); }

void PlainTextEditor::insertText(NSObject* text) {
    Ref<NSString> s(as<NSString>(text));
    if (auto* a = as<NSAttributedString>(text)) s = a->string();
    if (!s) return;
    const std::u16string typed = admitted(s->utf16());
    if (!typed.empty()) edit(selectedRange(), typed, Edit::typing);
}

void PlainTextEditor::textInput(NSEvent* e) {
    if (!editable_) return;
    const Ref<PlainTextEditor> self(this);
    const std::u16string typed = e->characters() ? admitted(e->characters()->utf16()) : std::u16string();
    if (e->fields().isPreedit) {
        if (!typed.empty() && !mayEdit()) return;
        preedit_ = typed;
        preeditCaret_ = std::min<NSUInteger>(NSMaxRange(e->fields().selection), preedit_.size());
        layoutChanged();
        selectionChanged();
        return;
    }
    preedit_.clear();
    layoutChanged();
    if (!typed.empty())
        edit(selectedRange(), typed, Edit::typing);
    else
        selectionChanged();
}

// Editing.

void PlainTextEditor::edit(NSRange range, std::u16string_view with, Edit kind) {
    if (range.length == 0 && with.empty()) return;
    const Ref<PlainTextEditor> self(this);
    if (!mayEdit() || NSMaxRange(range) > text_.size()) return;
    std::u16string proposed = text_;
    proposed.replace(range.location, range.length, with);
    NSRange selection{range.location + with.size(), 0};
    const std::u16string before = text_;
    // What changed the text by itself while it was asked has had its way.
    if (!passes(proposed, selection) || text_ != before) return;
    // A run of typing, or of deleting, is undone as one.
    const bool runsOn = kind == last_ && (kind == Edit::typing || kind == Edit::deleting) && !undo_.empty() &&
                        (kind == Edit::deleting || range.length == 0) && with != u" " && with.find(u'\n') == with.npos;
    if (!runsOn) remember();
    redo_.clear();
    text_ = std::move(proposed);
    anchor_ = selection.location;
    caret_ = NSMaxRange(selection);
    last_ = kind;
    changed();
}

void PlainTextEditor::changed() {
    const Ref<PlainTextEditor> self(this);
    layoutChanged();
    selectionChanged();
    const auto n = make<NSNotification>(NSTextDidChangeNotification, this, nullptr);
    if (auto tell = op::textDidChange.of(delegate())) tell(n);
    NSNotificationCenter::defaultCenter()->postNotification(n);
}

void PlainTextEditor::deleteTo(Move m) {
    NSRange s = selectedRange();
    if (s.length == 0) {
        const NSUInteger to = reached(m);
        s = {std::min(to, caret_), std::max(to, caret_) - std::min(to, caret_)};
    }
    edit(s, {}, Edit::deleting);
}

void PlainTextEditor::remember() {
    undo_.push_back({text_, caret_, anchor_});
    std::size_t units = 0;
    std::ptrdiff_t kept = 0;
    for (auto s = undo_.rbegin(); s != undo_.rend() && kept < kUndoDepth; ++s, ++kept) {
        units += s->text.size();
        if (units > kUndoUnits && kept > 0) break;
    }
    undo_.erase(undo_.begin(), undo_.end() - kept);
}

void PlainTextEditor::restore(const Snapshot& s) {
    text_ = s.text;
    caret_ = std::min<NSUInteger>(s.caret, text_.size());
    anchor_ = std::min<NSUInteger>(s.anchor, text_.size());
    last_ = Edit::none;
    changed();
}

void PlainTextEditor::undo(NSObject*) {
    if (undo_.empty() || !mayEdit()) return;
    const Snapshot s = std::move(undo_.back());
    undo_.pop_back();
    redo_.push_back({text_, caret_, anchor_});
    restore(s);
}

void PlainTextEditor::redo(NSObject*) {
    if (redo_.empty() || !mayEdit()) return;
    const Snapshot s = std::move(redo_.back());
    redo_.pop_back();
    remember();
    restore(s);
}

// Clipboard.

void PlainTextEditor::copy(NSObject*) {
    const NSRange s = selectedRange();
    if (s.length == 0) return;
    auto* board = NSPasteboard::generalPasteboard();
    board->declareTypes_owner(NSArray::arrayWithObjects({NSStringPboardType.get()}), nullptr);
    board->setString_forType(NSString::from(std::u16string_view(text_).substr(s.location, s.length)),
                             NSStringPboardType);
}

void PlainTextEditor::cut(NSObject* sender) {
    if (!editable_) return;
    copy(sender);
    if (selectedRange().length > 0) edit(selectedRange(), {}, Edit::other);
}

void PlainTextEditor::paste(NSObject*) {
    if (!editable_) return;
    const auto s = NSPasteboard::generalPasteboard()->stringForType(NSStringPboardType);
    if (!s) return;
    const std::u16string pasted = admitted(s->utf16());
    if (!pasted.empty()) edit(selectedRange(), pasted, Edit::other);
}

NSMenu* PlainTextEditor::menuForEvent(NSEvent*) {
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

NSRange PlainTextEditor::unitAt(NSPoint p, NSInteger clicks) const {
    if (clicks >= 3) return lineAt(p);
    if (clicks < 2 || text_.empty()) return {indexAt(p), 0};
    // The character under the pointer, also where the caret would go behind it: a word may end there.
    const auto a = NSAttributedString::initWithString(string());
    return a->doubleClickAtIndex(std::min<NSUInteger>(characterAt(p), text_.size() - 1));
}

void PlainTextEditor::mouseDown(NSEvent* e) {
    const Ref<PlainTextEditor> self(this);
    if (window() && !isActive() && !window()->makeFirstResponder(this)) return;
    if (!preedit_.empty()) {
        preedit_.clear();
        layoutChanged();
    }
    const NSPoint place = convertPoint_fromView(e->locationInWindow(), nullptr);
    const NSInteger clicks = e->clickCount();
    // What the first click chose stays chosen while the drag extends it by units of the same kind.
    const bool shift = (e->modifierFlags() & NSShiftKeyMask) != 0;
    const NSRange base = shift ? NSRange{anchor_, 0} : unitAt(place, clicks);
    const auto extend = [&](NSPoint p) {
        const NSRange reach = unitAt(p, clicks);
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

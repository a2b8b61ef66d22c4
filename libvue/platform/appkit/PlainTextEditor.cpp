#include <libvue/platform/appkit/PlainTextEditor.h>

#include <algorithm>

#include <libvue/platform/appkit/NSCursor.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSTimer.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>

namespace libvue {

namespace {

constexpr NSTimeInterval kBlink = 0.5;

} // namespace

void PlainTextEditor::describe(ClassDescription<PlainTextEditor, NSText>& c) {
    using M = Move;
    using E = Extend;
    const auto moves = [&c]<M move>(std::initializer_list<const char*> names) {
        for (const char* name : names) {
            c.answers<&PlainTextEditor::moveBy<move, E::no>>((std::string(name) + ":").c_str());
            c.answers<&PlainTextEditor::moveBy<move, E::yes>>((std::string(name) + "AndModifySelection:").c_str());
        }
    };
    moves.operator()<M::left>({"moveLeft", "moveBackward"});
    moves.operator()<M::right>({"moveRight", "moveForward"});
    moves.operator()<M::wordLeft>({"moveWordLeft", "moveWordBackward"});
    moves.operator()<M::wordRight>({"moveWordRight", "moveWordForward"});
    moves.operator()<M::up>({"moveUp"});
    moves.operator()<M::down>({"moveDown"});
    moves.operator()<M::pageUp>({"pageUp"});
    moves.operator()<M::pageDown>({"pageDown"});
    // Lines are not broken: those of the text and those that show are the same.
    moves.operator()<M::lineStart>({"moveToBeginningOfLine", "moveToBeginningOfParagraph", "moveToLeftEndOfLine"});
    moves.operator()<M::lineEnd>({"moveToEndOfLine", "moveToEndOfParagraph", "moveToRightEndOfLine"});
    moves.operator()<M::start>({"moveToBeginningOfDocument"});
    moves.operator()<M::end>({"moveToEndOfDocument"});
    c.answers<&PlainTextEditor::deleteBy<M::left>>("deleteBackward:");
    c.answers<&PlainTextEditor::deleteBy<M::right>>("deleteForward:");
    c.answers<&PlainTextEditor::deleteBy<M::wordLeft>>("deleteWordBackward:");
    c.answers<&PlainTextEditor::deleteBy<M::wordRight>>("deleteWordForward:");
    c.answers<&PlainTextEditor::deleteBy<M::lineStart>>("deleteToBeginningOfLine:");
    c.answers<&PlainTextEditor::deleteBy<M::lineEnd>>("deleteToEndOfLine:");
    c.answers<&PlainTextEditor::insertTab>("insertTab:");
    c.answers<&PlainTextEditor::insertBacktab>("insertBacktab:");
    c.answers<&PlainTextEditor::insertNewline>("insertNewline:");
}

PlainTextEditor::PlainTextEditor(Ref<NSFont> font) : font_(std::move(font)) {}

PlainTextEditor::~PlainTextEditor() {
    stopBlinking();
    NSNotificationCenter::defaultCenter()->removeObserver(this);
}

// Text.

Ref<NSString> PlainTextEditor::string() const { return NSString::from(text_); }

void PlainTextEditor::setString(NSString* s) {
    text_ = s ? s->utf16() : std::u16string();
    preedit_.clear();
    caret_ = anchor_ = 0;
    undo_.clear();
    redo_.clear();
    last_ = Edit::none;
    layoutChanged();
    selectionChanged();
}

void PlainTextEditor::replaceCharactersInRange_withString(NSRange range, NSString* s) {
    const NSUInteger from = std::min<NSUInteger>(range.location, text_.size());
    const NSUInteger length = std::min<NSUInteger>(range.length, text_.size() - from);
    const std::u16string with = s ? s->utf16() : std::u16string();
    text_.replace(from, length, with);
    const auto moved = [&](NSUInteger i) {
        if (i <= from) return i;
        return i >= from + length ? i - length + with.size() : from + with.size();
    };
    caret_ = moved(caret_);
    anchor_ = moved(anchor_);
    layoutChanged();
    selectionChanged();
}

std::u16string PlainTextEditor::shown() const {
    std::u16string all = text_;
    const NSRange selected = selectedRange();
    if (!preedit_.empty()) all.replace(selected.location, selected.length, preedit_);
    return all;
}

NSFont* PlainTextEditor::font() const { return font_; }
void PlainTextEditor::setFont(NSFont* f) {
    if (f) font_ = f;
    layoutChanged();
}
NSColor* PlainTextEditor::textColor() const { return color_ ? color_.get() : NSColor::textColor(); }
void PlainTextEditor::setTextColor(NSColor* c) {
    color_ = c;
    layoutChanged();
}

// Selection.

NSRange PlainTextEditor::selectedRange() const {
    return {std::min(caret_, anchor_), std::max(caret_, anchor_) - std::min(caret_, anchor_)};
}

void PlainTextEditor::setSelectedRange(NSRange range) {
    const NSUInteger from = std::min<NSUInteger>(range.location, text_.size());
    select(from, from + std::min<NSUInteger>(range.length, text_.size() - from));
}

void PlainTextEditor::selectAll(NSObject*) { select(0, text_.size()); }

void PlainTextEditor::select(NSUInteger anchor, NSUInteger caret) {
    anchor_ = std::min<NSUInteger>(anchor, text_.size());
    caret_ = std::min<NSUInteger>(caret, text_.size());
    last_ = Edit::none;
    if (!preedit_.empty()) layoutChanged(); // it stands at the caret
    selectionChanged();
}

void PlainTextEditor::selectionChanged() {
    keepCaretVisible();
    if (isActive()) startBlinking();
    setNeedsDisplay(YES);
    if (isActive()) window()->setCaretRect_(editable_, convertRect_toView(caretRect(), nullptr));
    if (caret_ == toldCaret_ && anchor_ == toldAnchor_) return;
    toldCaret_ = caret_;
    toldAnchor_ = anchor_;
    const Ref<PlainTextEditor> self(this);
    NSNotificationCenter::defaultCenter()->postNotificationName_object(NSTextViewDidChangeSelectionNotification, this);
}

NSUInteger PlainTextEditor::shownCaret() const {
    return preedit_.empty() ? caret_ : selectedRange().location + preeditCaret_;
}

NSUInteger PlainTextEditor::reached(Move m) {
    if (m != Move::wordLeft && m != Move::wordRight) return target(m, caret_);
    if (text_.empty()) return 0;
    const auto a = NSAttributedString::initWithString(string());
    return std::min<NSUInteger>(a->nextWordFromIndex_forward(caret_, m == Move::wordRight), text_.size());
}

void PlainTextEditor::move(Move m, Extend e) {
    const NSRange s = selectedRange();
    // Without extending, a single step out of a selection goes to its end on that side.
    if (e == Extend::no && s.length > 0 && m == Move::left)
        select(s.location, s.location);
    else if (e == Extend::no && s.length > 0 && m == Move::right)
        select(NSMaxRange(s), NSMaxRange(s));
    else {
        const NSUInteger to = reached(m);
        select(e == Extend::yes ? anchor_ : to, to);
    }
}

// The caret.

bool PlainTextEditor::isActive() const {
    return window() && window()->firstResponder() == static_cast<const NSResponder*>(this);
}

bool PlainTextEditor::isKey() const { return isActive() && window()->isKeyWindow(); }

void PlainTextEditor::resetCursorRects() { addCursorRect_cursor(visibleRect(), NSCursor::IBeamCursor()); }

void PlainTextEditor::startBlinking() {
    stopBlinking();
    caretShown_ = true;
    if (!editable_) return;
    blinker_ = NSTimer::scheduledTimerWithTimeInterval_repeats_block(
        kBlink, YES, [self = Weak<PlainTextEditor>(this)](NSTimer* t) {
            const Ref<PlainTextEditor> e = self.ref();
            if (e && e->isKey()) {
                e->caretShown_ = !e->caretShown_;
                e->setNeedsDisplayInRect(NSInsetRect(e->caretRect(), -1, -1));
            } else {
                // Nobody sees it; it starts again with the window's key status or the next edit.
                t->invalidate();
            }
        });
}

void PlainTextEditor::stopBlinking() {
    if (blinker_) blinker_->invalidate();
    blinker_ = nullptr;
}

BOOL PlainTextEditor::becomeFirstResponder() {
    startBlinking();
    setNeedsDisplay(YES);
    return YES;
}

BOOL PlainTextEditor::resignFirstResponder() {
    leave();
    return YES;
}

void PlainTextEditor::leave() {
    if (!preedit_.empty()) {
        preedit_.clear();
        layoutChanged();
    }
    stopBlinking();
    if (window()) window()->setCaretRect_(NO, NSZeroRect);
    setNeedsDisplay(YES);
}

void PlainTextEditor::viewDidMoveToWindow() {
    NSText::viewDidMoveToWindow();
    auto* centre = NSNotificationCenter::defaultCenter();
    centre->removeObserver(this);
    if (!window()) {
        stopBlinking();
        return;
    }
    centre->addObserver<&PlainTextEditor::windowKeyStatusChanged>(this, NSWindowDidBecomeKeyNotification, window());
    centre->addObserver<&PlainTextEditor::windowKeyStatusChanged>(this, NSWindowDidResignKeyNotification, window());
}

void PlainTextEditor::windowKeyStatusChanged(NSNotification*) {
    if (isKey())
        startBlinking();
    else
        stopBlinking();
    caretShown_ = true;
    setNeedsDisplay(YES);
}

} // namespace libvue

#include <libvue/platform/appkit/FieldEditor.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSCursor.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/backend/TextEngine.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSTimer.h>
#include <libvue/platform/graphics/Appearance.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSTextAttributes.h>
#include <libvue/platform/graphics/TextLayoutBuilder.h>

namespace libvue {

namespace {

constexpr NSTimeInterval kBlink = 0.5;
constexpr CGFloat kCaretWidth = 1.5;

Ref<NSText> makeFieldEditor(NSWindow*) { return make<FieldEditor>(); }

struct Installer {
    Installer() noexcept { installFieldEditorFactory(&makeFieldEditor); }
};
const Installer installer;

} // namespace

void FieldEditor::describe(ClassDescription<FieldEditor, NSText>& c) {
    using M = Move;
    using E = Extend;
    c.answers<&FieldEditor::moveBy<M::left, E::no>>("moveLeft:");
    c.answers<&FieldEditor::moveBy<M::left, E::no>>("moveBackward:");
    c.answers<&FieldEditor::moveBy<M::left, E::yes>>("moveLeftAndModifySelection:");
    c.answers<&FieldEditor::moveBy<M::left, E::yes>>("moveBackwardAndModifySelection:");
    c.answers<&FieldEditor::moveBy<M::right, E::no>>("moveRight:");
    c.answers<&FieldEditor::moveBy<M::right, E::no>>("moveForward:");
    c.answers<&FieldEditor::moveBy<M::right, E::yes>>("moveRightAndModifySelection:");
    c.answers<&FieldEditor::moveBy<M::right, E::yes>>("moveForwardAndModifySelection:");
    c.answers<&FieldEditor::moveBy<M::wordLeft, E::no>>("moveWordLeft:");
    c.answers<&FieldEditor::moveBy<M::wordLeft, E::no>>("moveWordBackward:");
    c.answers<&FieldEditor::moveBy<M::wordLeft, E::yes>>("moveWordLeftAndModifySelection:");
    c.answers<&FieldEditor::moveBy<M::wordLeft, E::yes>>("moveWordBackwardAndModifySelection:");
    c.answers<&FieldEditor::moveBy<M::wordRight, E::no>>("moveWordRight:");
    c.answers<&FieldEditor::moveBy<M::wordRight, E::no>>("moveWordForward:");
    c.answers<&FieldEditor::moveBy<M::wordRight, E::yes>>("moveWordRightAndModifySelection:");
    c.answers<&FieldEditor::moveBy<M::wordRight, E::yes>>("moveWordForwardAndModifySelection:");
    // On one line the ends of the line, the paragraph and the document are the same, and so are up and down.
    for (const char* where : {"moveUp", "moveToBeginningOfLine", "moveToBeginningOfParagraph",
                              "moveToBeginningOfDocument", "moveToLeftEndOfLine", "pageUp"}) {
        c.answers<&FieldEditor::moveBy<M::start, E::no>>((std::string(where) + ":").c_str());
        c.answers<&FieldEditor::moveBy<M::start, E::yes>>((std::string(where) + "AndModifySelection:").c_str());
    }
    for (const char* where : {"moveDown", "moveToEndOfLine", "moveToEndOfParagraph", "moveToEndOfDocument",
                              "moveToRightEndOfLine", "pageDown"}) {
        c.answers<&FieldEditor::moveBy<M::end, E::no>>((std::string(where) + ":").c_str());
        c.answers<&FieldEditor::moveBy<M::end, E::yes>>((std::string(where) + "AndModifySelection:").c_str());
    }
    c.answers<&FieldEditor::deleteBy<M::left>>("deleteBackward:");
    c.answers<&FieldEditor::deleteBy<M::right>>("deleteForward:");
    c.answers<&FieldEditor::deleteBy<M::wordLeft>>("deleteWordBackward:");
    c.answers<&FieldEditor::deleteBy<M::wordRight>>("deleteWordForward:");
    c.answers<&FieldEditor::deleteBy<M::start>>("deleteToBeginningOfLine:");
    c.answers<&FieldEditor::deleteBy<M::end>>("deleteToEndOfLine:");
    c.answers<&FieldEditor::insertTab>("insertTab:");
    c.answers<&FieldEditor::insertBacktab>("insertBacktab:");
    c.answers<&FieldEditor::insertNewline>("insertNewline:");
}

FieldEditor::FieldEditor() : font_(NSFont::systemFontOfSize(NSFont::systemFontSize())) {
    setAutoresizingMask(NSViewWidthSizable);
}

FieldEditor::~FieldEditor() {
    stopBlinking();
    NSNotificationCenter::defaultCenter()->removeObserver(this);
}

// Text.

Ref<NSString> FieldEditor::string() const { return NSString::from(text_); }

void FieldEditor::setString(NSString* s) {
    text_ = s ? s->utf16() : std::u16string();
    preedit_.clear();
    caret_ = anchor_ = 0;
    scroll_ = 0;
    undo_.clear();
    redo_.clear();
    last_ = Edit::none;
    began_ = false;
    invalidateLayout();
    selectionChanged();
}

void FieldEditor::replaceCharactersInRange_withString(NSRange range, NSString* s) {
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
    invalidateLayout();
    selectionChanged();
}

NSRange FieldEditor::selectedRange() const {
    return {std::min(caret_, anchor_), std::max(caret_, anchor_) - std::min(caret_, anchor_)};
}

void FieldEditor::setSelectedRange(NSRange range) {
    const NSUInteger from = std::min<NSUInteger>(range.location, text_.size());
    select(from, from + std::min<NSUInteger>(range.length, text_.size() - from));
}

void FieldEditor::select(NSUInteger anchor, NSUInteger caret) {
    anchor_ = std::min<NSUInteger>(anchor, text_.size());
    caret_ = std::min<NSUInteger>(caret, text_.size());
    last_ = Edit::none;
    selectionChanged();
}

void FieldEditor::selectionChanged() {
    keepCaretVisible();
    if (isActive()) startBlinking();
    setNeedsDisplay(YES);
    if (isActive()) window()->setCaretRect_(editable_, convertRect_toView(caretRect(), nullptr));
    if (caret_ == toldCaret_ && anchor_ == toldAnchor_) return;
    toldCaret_ = caret_;
    toldAnchor_ = anchor_;
    const Ref<FieldEditor> self(this);
    NSNotificationCenter::defaultCenter()->postNotificationName_object(NSTextViewDidChangeSelectionNotification, this);
}

NSFont* FieldEditor::font() const { return font_; }
void FieldEditor::setFont(NSFont* f) {
    if (f) font_ = f;
    invalidateLayout();
}
NSColor* FieldEditor::textColor() const { return color_ ? color_.get() : NSColor::textColor(); }
void FieldEditor::setTextColor(NSColor* c) {
    color_ = c;
    invalidateLayout();
}
void FieldEditor::setAlignment(NSTextAlignment a) {
    alignment_ = a;
    setNeedsDisplay(YES);
}

// Layout. The composed text stands at the caret.

void FieldEditor::invalidateLayout() {
    layout_ = nullptr;
    setNeedsDisplay(YES);
}

const backend::TextLayout& FieldEditor::layout() const {
    const bool dark = currentAppearance() == Appearance::dark;
    if (layout_ && layoutDark_ == dark) return *layout_;
    layoutDark_ = dark;
    std::u16string shown = text_;
    const NSRange selected = selectedRange();
    if (!preedit_.empty()) shown.replace(selected.location, selected.length, preedit_);
    auto paragraph = make<NSMutableParagraphStyle>();
    paragraph->setLineBreakMode(NSLineBreakByClipping);
    const auto attributes =
        NSDictionary::dictionaryWithObjectsAndKeys({{NSFontAttributeName.get(), font_.get()},
                                                    {NSForegroundColorAttributeName.get(), textColor()},
                                                    {NSParagraphStyleAttributeName.get(), paragraph.get()}});
    auto a = NSMutableAttributedString::initWithString_attributes(NSString::from(shown), attributes);
    if (!preedit_.empty())
        a->addAttribute_value_range(NSUnderlineStyleAttributeName, NSNumber::numberWithInteger(1),
                                    {selected.location, preedit_.size()});
    TextLayoutBuilder builder;
    if (shown.empty())
        builder.setString_attributes(NSString::string(), attributes);
    else
        builder.setAttributedString(a);
    builder.setMaximumLines(1);
    layout_ = builder.layoutUncached();
    return *layout_;
}

NSPoint FieldEditor::textOrigin() const {
    const NSSize size = layout().size();
    const CGFloat room = bounds().size.width - size.width;
    CGFloat x = -scroll_;
    if (room > 0) x = alignment_ == NSCenterTextAlignment ? room / 2 : alignment_ == NSRightTextAlignment ? room : 0;
    return {x, std::floor((bounds().size.height - size.height) / 2 + 0.5)};
}

NSRect FieldEditor::caretRect() const {
    const NSUInteger at = preedit_.empty() ? caret_ : selectedRange().location + preeditCaret_;
    NSRect r = layout().caretRect(at);
    const NSPoint o = textOrigin();
    r.origin.x += o.x;
    r.origin.y += o.y;
    r.size.width = kCaretWidth;
    return r;
}

NSUInteger FieldEditor::indexAt(NSPoint p) const {
    const NSPoint o = textOrigin();
    double fraction = 0;
    const NSUInteger i = layout().characterAtPoint({p.x - o.x, p.y - o.y}, &fraction);
    if (fraction > 0.5 && i < text_.size()) return layout().nextCaretPosition(i, true);
    return std::min<NSUInteger>(i, text_.size());
}

NSRange FieldEditor::wordAt(NSPoint p) const {
    if (text_.empty()) return {0, 0};
    const NSPoint o = textOrigin();
    // The character under the pointer, also where the caret would go behind it: a word may end there.
    const NSUInteger i = layout().characterAtPoint({p.x - o.x, p.y - o.y}, nullptr);
    const auto a = NSAttributedString::initWithString(string());
    return a->doubleClickAtIndex(std::min<NSUInteger>(i, text_.size() - 1));
}

void FieldEditor::keepCaretVisible() {
    const CGFloat width = layout().size().width, room = bounds().size.width;
    if (width + kCaretWidth <= room) {
        scroll_ = 0;
        return;
    }
    const CGFloat x = layout().caretRect(preedit_.empty() ? caret_ : selectedRange().location + preeditCaret_).origin.x;
    if (x - scroll_ < 0) scroll_ = x;
    if (x - scroll_ > room - kCaretWidth) scroll_ = x - room + kCaretWidth;
    scroll_ = std::max(0.0, std::min(scroll_, width + kCaretWidth - room));
}

void FieldEditor::scrollRangeToVisible(NSRange) {
    keepCaretVisible();
    setNeedsDisplay(YES);
}

void FieldEditor::resizeSubviewsWithOldSize(const NSSize& oldSize) {
    NSText::resizeSubviewsWithOldSize(oldSize);
    keepCaretVisible();
}

// Drawing.

bool FieldEditor::isActive() const {
    return window() && window()->firstResponder() == static_cast<const NSResponder*>(this);
}

void FieldEditor::drawRect(const NSRect&) {
    auto* context = NSGraphicsContext::currentContext();
    if (!context) return;
    const NSPoint o = textOrigin();
    const NSRange selected = selectedRange();
    const bool key = window() && window()->isKeyWindow() && isActive();
    if (selected.length > 0 && preedit_.empty()) {
        (key ? NSColor::selectedTextBackgroundColor() : NSColor::secondarySelectedControlColor())->setFill();
        for (NSRect r : layout().rects(selected)) {
            r.origin.x += o.x;
            r.origin.y += o.y;
            NSRectFill(r);
        }
    }
    context->canvas().drawText(layout(), o, backend::YAxis::down);
    if (key && editable_ && caretShown_ && (selected.length == 0 || !preedit_.empty())) {
        NSRect caret = caretRect();
        caret.origin.x = std::min(std::max(0.0, caret.origin.x), std::max(0.0, bounds().size.width - kCaretWidth));
        textColor()->setFill();
        NSRectFill(caret);
    }
}

void FieldEditor::resetCursorRects() { addCursorRect_cursor(bounds(), NSCursor::IBeamCursor()); }

// The caret.

void FieldEditor::startBlinking() {
    stopBlinking();
    caretShown_ = true;
    if (!editable_) return;
    blinker_ = NSTimer::scheduledTimerWithTimeInterval_repeats_block(
        kBlink, YES, [self = Weak<FieldEditor>(this)](NSTimer* t) {
            const Ref<FieldEditor> e = self.ref();
            if (e && e->isActive() && e->window()->isKeyWindow()) {
                e->caretShown_ = !e->caretShown_;
                e->setNeedsDisplayInRect(NSInsetRect(e->caretRect(), -1, -1));
            } else {
                // Nobody sees it; it starts again with the window's key status or the next edit.
                t->invalidate();
            }
        });
}

void FieldEditor::stopBlinking() {
    if (blinker_) blinker_->invalidate();
    blinker_ = nullptr;
}

BOOL FieldEditor::becomeFirstResponder() {
    startBlinking();
    setNeedsDisplay(YES);
    return YES;
}

void FieldEditor::viewDidMoveToWindow() {
    NSText::viewDidMoveToWindow();
    auto* centre = NSNotificationCenter::defaultCenter();
    centre->removeObserver(this);
    if (!window()) {
        stopBlinking();
        return;
    }
    centre->addObserver<&FieldEditor::windowKeyStatusChanged>(this, NSWindowDidBecomeKeyNotification, window());
    centre->addObserver<&FieldEditor::windowKeyStatusChanged>(this, NSWindowDidResignKeyNotification, window());
}

void FieldEditor::windowKeyStatusChanged(NSNotification*) {
    if (isActive() && window()->isKeyWindow())
        startBlinking();
    else
        stopBlinking();
    caretShown_ = true;
    setNeedsDisplay(YES);
}

} // namespace libvue

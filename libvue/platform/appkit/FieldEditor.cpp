#include <libvue/platform/appkit/FieldEditor.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/backend/TextEngine.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSFormatter.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/ScopeExit.h>
#include <libvue/platform/graphics/Appearance.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSTextAttributes.h>
#include <libvue/platform/graphics/TextLayoutBuilder.h>

namespace libvue {

namespace {

Ref<NSText> makeFieldEditor(NSWindow*) { return make<FieldEditor>(); }

struct Installer {
    Installer() noexcept { installFieldEditorFactory(&makeFieldEditor); }
};
const Installer installer;

} // namespace

FieldEditor::FieldEditor() : PlainTextEditor(NSFont::systemFontOfSize(NSFont::systemFontSize())) {
    setAutoresizingMask(NSViewWidthSizable);
}

void FieldEditor::setString(NSString* s) {
    scroll_ = 0;
    began_ = false;
    PlainTextEditor::setString(s);
}

void FieldEditor::setAlignment(NSTextAlignment a) {
    alignment_ = a;
    setNeedsDisplay(YES);
}

std::u16string FieldEditor::admitted(std::u16string_view s) const {
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

// Layout. The composed text stands at the caret.

void FieldEditor::layoutChanged() {
    layout_ = nullptr;
    setNeedsDisplay(YES);
}

const backend::TextLayout& FieldEditor::layout() const {
    const bool dark = currentAppearance() == Appearance::dark;
    if (layout_ && layoutDark_ == dark) return *layout_;
    layoutDark_ = dark;
    const Ref<NSString> all = NSString::from(shown());
    auto paragraph = make<NSMutableParagraphStyle>();
    paragraph->setLineBreakMode(NSLineBreakByClipping);
    const auto attributes =
        NSDictionary::dictionaryWithObjectsAndKeys({{NSFontAttributeName.get(), font()},
                                                    {NSForegroundColorAttributeName.get(), textColor()},
                                                    {NSParagraphStyleAttributeName.get(), paragraph.get()}});
    auto a = NSMutableAttributedString::initWithString_attributes(all, attributes);
    if (!preedit().empty())
        a->addAttribute_value_range(NSUnderlineStyleAttributeName, NSNumber::numberWithInteger(1), composed());
    TextLayoutBuilder builder;
    if (all->length() == 0)
        builder.setString_attributes(all, attributes);
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
    NSRect r = layout().caretRect(shownCaret());
    const NSPoint o = textOrigin();
    r.origin.x += o.x;
    r.origin.y += o.y;
    r.size.width = caretWidth;
    return r;
}

NSUInteger FieldEditor::indexAt(NSPoint p) const {
    const NSPoint o = textOrigin();
    double fraction = 0;
    const NSUInteger i = layout().characterAtPoint({p.x - o.x, p.y - o.y}, &fraction);
    if (fraction > 0.5 && i < text().size()) return layout().nextCaretPosition(i, true);
    return std::min<NSUInteger>(i, text().size());
}

NSUInteger FieldEditor::characterAt(NSPoint p) const {
    const NSPoint o = textOrigin();
    return layout().characterAtPoint({p.x - o.x, p.y - o.y}, nullptr);
}

NSRange FieldEditor::lineAt(NSPoint) const { return {0, text().size()}; }

void FieldEditor::keepCaretVisible() {
    const CGFloat width = layout().size().width, room = bounds().size.width;
    if (width + caretWidth <= room) {
        scroll_ = 0;
        return;
    }
    const CGFloat x = layout().caretRect(shownCaret()).origin.x;
    if (x - scroll_ < 0) scroll_ = x;
    if (x - scroll_ > room - caretWidth) scroll_ = x - room + caretWidth;
    scroll_ = std::max(0.0, std::min(scroll_, width + caretWidth - room));
}

void FieldEditor::scrollRangeToVisible(NSRange) {
    keepCaretVisible();
    setNeedsDisplay(YES);
}

void FieldEditor::resizeSubviewsWithOldSize(const NSSize& oldSize) {
    NSText::resizeSubviewsWithOldSize(oldSize);
    keepCaretVisible();
}

NSUInteger FieldEditor::target(Move m, NSUInteger from) {
    switch (m) {
    case Move::left:
        return from == 0 ? 0 : layout().nextCaretPosition(from, false);
    case Move::right:
        return from >= text().size() ? text().size() : layout().nextCaretPosition(from, true);
    // On one line the ends of the line and of the text are the same, and so are up and down.
    case Move::up:
    case Move::pageUp:
    case Move::lineStart:
    case Move::start:
        return 0;
    default:
        return text().size();
    }
}

void FieldEditor::drawRect(const NSRect&) {
    auto* context = NSGraphicsContext::currentContext();
    if (!context) return;
    const NSPoint o = textOrigin();
    const NSRange selected = selectedRange();
    if (selected.length > 0 && preedit().empty()) {
        (isKey() ? NSColor::selectedTextBackgroundColor() : NSColor::secondarySelectedControlColor())->setFill();
        for (NSRect r : layout().rects(selected)) {
            r.origin.x += o.x;
            r.origin.y += o.y;
            NSRectFill(r);
        }
    }
    context->canvas().drawText(layout(), o, backend::YAxis::down);
    if (isKey() && isEditable() && caretIsShown() && (selected.length == 0 || !preedit().empty())) {
        NSRect caret = caretRect();
        caret.origin.x = std::min(std::max(0.0, caret.origin.x), std::max(0.0, bounds().size.width - caretWidth));
        textColor()->setFill();
        NSRectFill(caret);
    }
}

// The delegate and the formatter.

bool FieldEditor::mayEdit() {
    if (!isEditable()) return false;
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

bool FieldEditor::passes(std::u16string& proposed, NSRange& selection) {
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

// Leaving.

void FieldEditor::endEditing(NSInteger movement) {
    const Ref<FieldEditor> self(this);
    if (auto asked = op::textShouldEndEditing.of(delegate()))
        if (!asked(this)) {
            selectAll(nullptr);
            return;
        }
    const Ref<NSWindow> w(window());
    const auto info =
        NSDictionary::dictionaryWithObject_forKey(NSNumber::numberWithInteger(movement), NSTextMovementKey);
    const auto n = make<NSNotification>(NSTextDidEndEditingNotification, this, info);
    began_ = false;
    leave();
    if (w && isActive()) {
        ending_ = true;
        const ScopeExit over([this] { ending_ = false; });
        w->makeFirstResponder(nullptr);
    }
    if (auto tell = op::textDidEndEditing.of(delegate())) tell(n);
    NSNotificationCenter::defaultCenter()->postNotification(n);
}

BOOL FieldEditor::resignFirstResponder() {
    if (ending_) return YES;
    const Ref<FieldEditor> self(this);
    if (auto asked = op::textShouldEndEditing.of(delegate()))
        if (!asked(this)) return NO;
    began_ = false;
    leave();
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

} // namespace libvue

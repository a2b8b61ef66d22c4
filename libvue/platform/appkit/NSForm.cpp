#include <libvue/platform/appkit/NSForm.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSActionCell.h>
#include <libvue/platform/appkit/NSFormCell.h>
#include <libvue/platform/appkit/NSText.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/appkit/ThemeDrawing.h>

namespace libvue {

static const ClassRegistration<NSForm> registration;

namespace {

constexpr CGFloat kGap = 8;         ///< between a title and its field
constexpr CGFloat kLeastEntry = 60; ///< of a form that is fitted

/// The field of a row. What it sends comes from the form.
class FormField : public NSTextField {
public:
    static void describe(ClassDescription<FormField, NSTextField>&) {}
    explicit FormField(NSFormCell* cell) { setCell(cell); }

    BOOL sendAction_to(SEL action, NSObject* target) override {
        if (auto* form = as<NSForm>(superview())) return form->sendAction_to(action, target);
        return NSTextField::sendAction_to(action, target);
    }
};

} // namespace

void NSForm::describe(ClassDescription<NSForm, NSControl>& c) {
    c.answers<&NSForm::selectText>("selectText:");
    c.answers<&NSForm::addNibItem>("addNibItem:");
    c.key<&NSForm::interlineSpacing, &NSForm::setInterlineSpacing>("interlineSpacing");
}

NSForm::NSForm() : NSForm(NSZeroRect) {}
NSForm::NSForm(const NSRect& frame) : NSControl(frame) {
    const auto own = make<NSActionCell>();
    own->setAlignment(NSNaturalTextAlignment);
    setCell(own);
}
NSForm::~NSForm() = default;

// Rows.

const NSForm::Row* NSForm::row(NSInteger i) const {
    return i >= 0 && i < numberOfRows() ? &rows_[static_cast<std::size_t>(i)] : nullptr;
}

NSFormCell* NSForm::insertEntry_atIndex(NSString* title, NSInteger i) {
    if (i < 0 || i > numberOfRows()) return nullptr;
    const auto made = make<NSFormCell>(title);
    made->setTarget(target());
    made->setAction(action());
    made->setEnabled(isEnabled());
    made->setFont(font());
    made->setControlSize(controlSize());
    made->setAlignment(alignment());
    const Row r{NSTextField::labelWithString(made->title()), make<FormField>(made)};
    if (font()) r.title->setFont(font());
    r.title->setControlSize(controlSize());
    // Behind the row before, so that Tab and the assistive tools go through them in their order.
    NSView* before = row(i - 1) ? row(i - 1)->field.get() : nullptr;
    addSubview_positioned_relativeTo(r.title, before ? NSWindowAbove : NSWindowBelow, before);
    addSubview_positioned_relativeTo(r.field, NSWindowAbove, r.title);
    rows_.insert(rows_.begin() + i, r);
    tile();
    return made;
}

void NSForm::removeEntryAtIndex(NSInteger i) {
    const Row* found = row(i);
    if (!found) return;
    const Row r = *found;
    rows_.erase(rows_.begin() + i);
    r.field->abortEditing();
    r.title->removeFromSuperview();
    r.field->removeFromSuperview();
    tile();
}

NSFormCell* NSForm::cellAtIndex(NSInteger i) const {
    const Row* r = row(i);
    return r ? as<NSFormCell>(r->field->cell()) : nullptr;
}

NSInteger NSForm::indexOfCellWithTag(NSInteger tag) const {
    const auto at =
        std::find_if(rows_.begin(), rows_.end(), [&](const Row& r) { return r.field->cell()->tag() == tag; });
    return at == rows_.end() ? -1 : at - rows_.begin();
}

NSInteger NSForm::indexOfSelectedItem() const {
    const auto at = std::find_if(rows_.begin(), rows_.end(), [](const Row& r) { return r.field->currentEditor(); });
    return at == rows_.end() ? -1 : at - rows_.begin();
}

void NSForm::selectTextAtIndex(NSInteger i) {
    const Row* r = row(i);
    if (!r) return;
    const Ref<NSTextField> field(r->field);
    field->selectText(this);
}

void NSForm::addNibItem(NSObject* item) {
    if (auto* title = as<NSString>(item)) addEntry(title);
}

// As one control.

NSCell* NSForm::selectedCell() const {
    const NSInteger edited = indexOfSelectedItem();
    NSCell* c = cellAtIndex(edited < 0 ? aborted_ : edited);
    if (!c) c = cellAtIndex(0);
    return c ? c : cell();
}

void NSForm::setTarget(NSObject* t) {
    NSControl::setTarget(t);
    for (const Row& r : rows_)
        r.field->setTarget(t);
}

void NSForm::setAction(SEL a) {
    NSControl::setAction(a);
    for (const Row& r : rows_)
        r.field->setAction(a);
}

void NSForm::setEnabled(BOOL f) {
    const Ref<NSForm> self(this);
    NSControl::setEnabled(f);
    const std::vector<Row> rows = rows_; // Those who hear that editing ends may add some.
    for (const Row& r : rows)
        r.field->setEnabled(f);
}

void NSForm::setFont(NSFont* f) {
    NSControl::setFont(f);
    for (const Row& r : rows_) {
        r.title->setFont(f);
        r.field->setFont(f);
    }
    tile();
}

void NSForm::setControlSize(NSControlSize s) {
    NSControl::setControlSize(s);
    for (const Row& r : rows_) {
        r.title->setControlSize(s);
        r.field->setControlSize(s);
    }
    tile();
}

void NSForm::setAlignment(NSTextAlignment a) {
    NSControl::setAlignment(a);
    for (const Row& r : rows_)
        r.field->setAlignment(a);
}

NSText* NSForm::currentEditor() const {
    const Row* r = row(indexOfSelectedItem());
    return r ? r->field->currentEditor() : nullptr;
}

BOOL NSForm::abortEditing() {
    const NSInteger edited = indexOfSelectedItem();
    const Row* r = row(edited);
    // A value that is set ends the editing first, and is meant for the row that was edited.
    aborted_ = std::max<NSInteger>(0, edited);
    return r && Ref<NSTextField>(r->field)->abortEditing();
}

void NSForm::validateEditing() {
    if (const Row* r = row(indexOfSelectedItem())) r->field->validateEditing();
}

// Places.

CGFloat NSForm::rowHeight() const { return theme::controlHeight(controlSize()); }

CGFloat NSForm::titleColumn() const {
    CGFloat width = 0;
    for (const Row& r : rows_)
        width = std::max(width, std::ceil(r.title->cell()->cellSize().width));
    return width > 0 ? width + kGap : 0;
}

void NSForm::tile() {
    for (NSInteger i = 0; i < numberOfRows(); ++i) {
        const Row& r = rows_[static_cast<std::size_t>(i)];
        const NSFormCell* c = cellAtIndex(i);
        const Ref<NSString> title = c ? Ref<NSString>(c->title()) : NSString::string();
        if (!title->isEqualToString(r.title->stringValue())) r.title->setStringValue(title);
        r.title->setAlignment(titleAlignment_);
        r.field->setAccessibilityLabel(title->length() ? title.get() : nullptr);
    }
    const CGFloat column = std::min(titleColumn(), bounds().size.width), height = rowHeight();
    CGFloat y = 0;
    for (const Row& r : rows_) {
        const NSRect field = NSMakeRect(column, y, bounds().size.width - column, height);
        r.field->setFrame(field);
        // On the line of the field's text, which is counted from the field's lower edge.
        const NSRect text = r.field->cell()->titleRectForBounds(r.field->bounds());
        r.title->setFrame(NSMakeRect(0, y + height - NSMaxY(text), std::max(0.0, column - kGap), text.size.height));
        y += height + spacing_;
    }
    setNeedsDisplay(YES);
}

void NSForm::setInterlineSpacing(CGFloat spacing) {
    spacing_ = spacing;
    tile();
}

void NSForm::setTitleAlignment(NSTextAlignment a) {
    titleAlignment_ = a;
    tile();
}

void NSForm::sizeToFit() {
    const CGFloat rows = static_cast<CGFloat>(numberOfRows());
    setFrameSize({std::max(frame().size.width, titleColumn() + kLeastEntry),
                  std::max(0.0, rows * rowHeight() + (rows - 1) * spacing_)});
}

void NSForm::resizeSubviewsWithOldSize(const NSSize&) { tile(); }

void NSForm::mouseDown(NSEvent*) {
    // Beside the fields there is nothing to press.
}

AccessibilityDescription NSForm::accessibilityDescription() const {
    AccessibilityDescription d = NSControl::accessibilityDescription();
    d.role = u"group"_ns;
    d.value = nullptr; // The fields say theirs.
    return d;
}

} // namespace libvue

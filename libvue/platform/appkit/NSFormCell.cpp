#include <libvue/platform/appkit/NSFormCell.h>

#include <libvue/platform/appkit/NSForm.h>
#include <libvue/platform/appkit/NSText.h>
#include <libvue/platform/appkit/NSTextField.h>

namespace libvue {

static const ClassRegistration<NSFormCell> registration;

void NSFormCell::describe(ClassDescription<NSFormCell, NSTextFieldCell>& c) {
    c.key<&NSFormCell::title, &NSFormCell::setTitle>("title");
}

NSFormCell::NSFormCell() : NSFormCell(nullptr) {}
NSFormCell::NSFormCell(NSString* title) : title_(title ? NSString::stringWithString(title) : NSString::string()) {
    setEditable(YES);
    setBezeled(YES);
    setDrawsBackground(YES);
    setScrollable(YES);
}
NSFormCell::~NSFormCell() = default;

Ref<NSObject> NSFormCell::copyWithZone() const {
    Ref<NSObject> made = NSTextFieldCell::copyWithZone();
    if (auto* c = as<NSFormCell>(made)) c->title_ = title_;
    return made;
}

NSString* NSFormCell::title() const { return title_; }

void NSFormCell::setTitle(NSString* title) {
    title_ = title ? NSString::stringWithString(title) : NSString::string();
    if (controlView())
        if (auto* form = as<NSForm>(controlView()->superview())) form->tile();
}

Ref<NSString> NSFormCell::stringValue() const {
    if (auto* field = as<NSTextField>(controlView())) field->validateEditing();
    return NSTextFieldCell::stringValue();
}

void NSFormCell::setObjectValue(NSObject* value) {
    NSTextFieldCell::setObjectValue(value);
    auto* field = as<NSTextField>(controlView());
    const Ref<NSText> editor(field && field->cell() == this ? field->currentEditor() : nullptr);
    if (!editor) return;
    const Ref<NSString> shown = NSTextFieldCell::stringValue(), typed = editor->string();
    if (typed->isEqualToString(shown)) return;
    editor->setString(shown);
    editor->setSelectedRange({0, shown->length()});
}

} // namespace libvue

#pragma once

#include <libvue/platform/appkit/NSTextFieldCell.h>

namespace libvue {

class NSForm;

/// One row of a form: a title, and the text behind it. Its value is what shows, also while it is being typed, and what
/// is set replaces what is being typed.
class LIBVUE_API NSFormCell : public NSTextFieldCell {
public:
    static void describe(ClassDescription<NSFormCell, NSTextFieldCell>& c);
    NSFormCell();
    explicit NSFormCell(NSString* title);
    ~NSFormCell() override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

    [[nodiscard]] NSString* title() const override;
    /// Null is no title.
    void setTitle(NSString* title) override;
    [[nodiscard]] Ref<NSString> stringValue() const override;
    void setObjectValue(NSObject* value) override;

private:
    Ref<NSString> title_;
};

} // namespace libvue

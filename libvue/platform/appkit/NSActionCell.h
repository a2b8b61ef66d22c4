#pragma once

#include <libvue/platform/appkit/NSCell.h>

namespace libvue {

/// A cell with a target and an action.
class LIBVUE_API NSActionCell : public NSCell {
public:
    static void describe(ClassDescription<NSActionCell, NSCell>& c);
    using NSCell::NSCell;
    explicit NSActionCell(NSCoder& coder);
    /// The target is written only where something else in the archive writes it.
    void encodeWithCoder(NSCoder& coder) const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

    /// Held weakly; null for the first responder and up.
    [[nodiscard]] NSObject* target() const override { return target_; }
    void setTarget(NSObject* t) override { target_ = t; }
    [[nodiscard]] SEL action() const override { return action_; }
    void setAction(SEL a) override { action_ = a; }
    [[nodiscard]] NSInteger tag() const override { return tag_; }
    void setTag(NSInteger t) override { tag_ = t; }

private:
    Weak<NSObject> target_;
    SEL action_ = nullptr;
    NSInteger tag_ = 0;
};

} // namespace libvue

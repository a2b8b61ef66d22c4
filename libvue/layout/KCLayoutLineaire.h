#pragma once

#include <cstdint>

#include <libvue/layout/Forward.h>
#include <libvue/layout/KCLayoutViewDelegate.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// Lines the subviews of a KCLayoutView up in one row or one column, in their order, with a fixed gap, and can then
/// make the host exactly as large as its content.
class LIBVUE_API KCLayoutLineaire : public NSObject, public KCLayoutManager {
public:
    static void describe(ClassDescription<KCLayoutLineaire>& c);

    /// 0 stacks along x from left to right, anything else along y.
    [[nodiscard]] std::int32_t direction() const noexcept { return direction_; }
    /// Asks the host for a pass; the other setters ask for none.
    void setDirection(std::int32_t direction);
    /// Held weakly.
    [[nodiscard]] KCLayoutView* hote() const { return hote_; }
    void setHote(KCLayoutView* hote) override { hote_ = hote; }
    /// After each pass, the host takes the content's size.
    [[nodiscard]] BOOL ajusteTailleAuContenu() const noexcept { return ajusteTailleAuContenu_; }
    void setAjusteTailleAuContenu(BOOL ajuste) noexcept { ajusteTailleAuContenu_ = ajuste; }
    /// The gap between two neighbours, in points.
    [[nodiscard]] CGFloat espacement() const noexcept { return espacement_; }
    void setEspacement(CGFloat espacement) noexcept { espacement_ = espacement; }

    /// Sets the positions along the axis of stacking.
    void effectueLayout(KCLayoutView* h) override;
    /// Stretches the subviews across that axis, at once.
    void layoutView_resizeSubviewsWithOldSize(KCLayoutView* h, NSSize ancienne);

private:
    std::int32_t direction_ = 0;
    Weak<KCLayoutView> hote_;
    BOOL ajusteTailleAuContenu_ = NO;
    CGFloat espacement_ = 0.0;
};

} // namespace libvue

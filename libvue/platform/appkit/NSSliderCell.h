#pragma once

#include <libvue/platform/appkit/NSActionCell.h>

namespace libvue {

/// A value between two limits, shown as a knob on a track.
class LIBVUE_API NSSliderCell : public NSActionCell {
public:
    static void describe(ClassDescription<NSSliderCell, NSActionCell>& c);
    NSSliderCell();
    explicit NSSliderCell(NSCoder& coder);
    void encodeWithCoder(NSCoder& coder) const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

    [[nodiscard]] double minValue() const noexcept { return min_; }
    /// A limit that is no number, or beyond 1e300 either way, is ignored.
    void setMinValue(double v);
    [[nodiscard]] double maxValue() const noexcept { return max_; }
    void setMaxValue(double v);
    /// Held to the limits, and to the ticks where only they are allowed. A NaN is the lower limit.
    void setDoubleValue(double v) override;
    [[nodiscard]] NSInteger numberOfTickMarks() const noexcept { return ticks_; }
    /// Held to 0 … 10000.
    void setNumberOfTickMarks(NSInteger n);
    [[nodiscard]] BOOL allowsTickMarkValuesOnly() const noexcept { return ticksOnly_; }
    void setAllowsTickMarkValuesOnly(BOOL f);
    [[nodiscard]] double tickMarkValueAtIndex(NSInteger i) const noexcept;
    /// The value itself where there are no ticks.
    [[nodiscard]] double closestTickMarkValueToValue(double v) const noexcept;
    [[nodiscard]] double altIncrementValue() const noexcept { return step_; }
    void setAltIncrementValue(double v) noexcept { step_ = v; }
    /// The step of an arrow key: altIncrementValue, else from tick to tick, else a twentieth of the way.
    [[nodiscard]] double arrowStep() const noexcept;
    [[nodiscard]] BOOL isVerticalIn(const NSRect& bounds) const noexcept {
        return bounds.size.height > bounds.size.width;
    }
    /// Where the knob stands in a slider of those bounds, and the value of a place in it.
    [[nodiscard]] NSRect knobRectIn(const NSRect& bounds, BOOL flipped) const;
    [[nodiscard]] double valueAt(NSPoint p, const NSRect& bounds, BOOL flipped) const;

    [[nodiscard]] NSSize cellSizeForBounds(const NSRect& bounds) const override;
    void drawWithFrame_inView(const NSRect& frame, NSView* view) override;
    BOOL trackMouse_inRect_ofView_untilMouseUp(NSEvent* e, const NSRect& frame, NSView* view,
                                               BOOL untilMouseUp) override;

private:
    void drawTicks(const NSRect& frame, const NSRect& knob, bool flipped) const;

    double min_ = 0, max_ = 1, step_ = 0;
    NSInteger ticks_ = 0;
    bool ticksOnly_ = false;
};

} // namespace libvue

#pragma once

#include <libvue/platform/appkit/NSControl.h>
#include <libvue/platform/appkit/NSSliderCell.h>

namespace libvue {

/// A knob on a track; vertical where it is higher than wide.
class LIBVUE_API NSSlider : public NSControl {
public:
    static void describe(ClassDescription<NSSlider, NSControl>& c);
    NSSlider();
    explicit NSSlider(const NSRect& frame);
    explicit NSSlider(NSCoder& coder);
    /// 160 points wide; `target` is held weakly.
    [[nodiscard]] static Ref<NSSlider>
    sliderWithValue_minValue_maxValue_target_action(double value, double min, double max, NSObject* target, SEL action);

    /// The cell where it is a slider cell, which it is unless another was set.
    [[nodiscard]] NSSliderCell* sliderCell() const;
    [[nodiscard]] double minValue() const;
    void setMinValue(double v);
    [[nodiscard]] double maxValue() const;
    void setMaxValue(double v);
    [[nodiscard]] NSInteger numberOfTickMarks() const;
    void setNumberOfTickMarks(NSInteger n);
    [[nodiscard]] BOOL allowsTickMarkValuesOnly() const;
    void setAllowsTickMarkValuesOnly(BOOL f);
    [[nodiscard]] BOOL isVertical() const { return bounds().size.height > bounds().size.width; }

    void sizeToFit() override;
    void keyDown(NSEvent* e) override;
    void scrollWheel(NSEvent* e) override;
    [[nodiscard]] NSRect focusRingMaskBounds() const override;
    [[nodiscard]] CGFloat focusRingRadius() const override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    void changeBy(double delta);
};

} // namespace libvue

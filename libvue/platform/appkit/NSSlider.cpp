#include <libvue/platform/appkit/NSSlider.h>

#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/ThemeDrawing.h>

namespace libvue {

static const ClassRegistration<NSSlider> registration;

void NSSlider::describe(ClassDescription<NSSlider, NSControl>& c) {
    c.key<&NSSlider::doubleValue, &NSSlider::setDoubleValue>("value");
    c.key<&NSSlider::minValue, &NSSlider::setMinValue>("minValue");
    c.key<&NSSlider::maxValue, &NSSlider::setMaxValue>("maxValue");
}

NSSlider::NSSlider() : NSSlider(NSZeroRect) {}
NSSlider::NSSlider(const NSRect& frame) : NSControl(frame) { setCell(make<NSSliderCell>()); }
NSSlider::NSSlider(NSCoder& coder) : NSControl(coder) {
    if (!sliderCell()) setCell(make<NSSliderCell>());
}

Ref<NSSlider> NSSlider::sliderWithValue_minValue_maxValue_target_action(double value, double min, double max,
                                                                        NSObject* target, SEL action) {
    auto s = make<NSSlider>(NSRect{{0, 0}, {160, 20}});
    s->setMinValue(min);
    s->setMaxValue(max);
    s->setDoubleValue(value);
    s->setTarget(target);
    s->setAction(action);
    return s;
}

NSSliderCell* NSSlider::sliderCell() const { return as<NSSliderCell>(cell()); }
double NSSlider::minValue() const { return sliderCell() ? sliderCell()->minValue() : 0; }
void NSSlider::setMinValue(double v) {
    if (auto* c = sliderCell()) c->setMinValue(v);
}
double NSSlider::maxValue() const { return sliderCell() ? sliderCell()->maxValue() : 0; }
void NSSlider::setMaxValue(double v) {
    if (auto* c = sliderCell()) c->setMaxValue(v);
}
NSInteger NSSlider::numberOfTickMarks() const { return sliderCell() ? sliderCell()->numberOfTickMarks() : 0; }
void NSSlider::setNumberOfTickMarks(NSInteger n) {
    if (auto* c = sliderCell()) c->setNumberOfTickMarks(n);
}
BOOL NSSlider::allowsTickMarkValuesOnly() const { return sliderCell() && sliderCell()->allowsTickMarkValuesOnly(); }
void NSSlider::setAllowsTickMarkValuesOnly(BOOL f) {
    if (auto* c = sliderCell()) c->setAllowsTickMarkValuesOnly(f);
}

void NSSlider::sizeToFit() {
    if (!cell()) return;
    const NSSize s = cell()->cellSizeForBounds(bounds());
    setFrameSize(isVertical() ? NSSize{s.width, frame().size.height} : NSSize{frame().size.width, s.height});
}

void NSSlider::changeBy(double delta) {
    const Ref<NSSlider> self(this);
    const double before = doubleValue();
    setDoubleValue(before + delta);
    if (doubleValue() != before) sendAction_to(action(), target());
}

void NSSlider::keyDown(NSEvent* e) {
    NSString* s = e->charactersIgnoringModifiers();
    auto* c = sliderCell();
    if (!c || !isEnabled() || !s || s->length() != 1) {
        NSControl::keyDown(e);
        return;
    }
    switch (s->unit(0)) {
    case NSRightArrowFunctionKey:
    case NSUpArrowFunctionKey:
        changeBy(c->arrowStep());
        break;
    case NSLeftArrowFunctionKey:
    case NSDownArrowFunctionKey:
        changeBy(-c->arrowStep());
        break;
    case NSPageUpFunctionKey:
        changeBy(5 * c->arrowStep());
        break;
    case NSPageDownFunctionKey:
        changeBy(-5 * c->arrowStep());
        break;
    case NSHomeFunctionKey:
        changeBy(c->minValue() - doubleValue());
        break;
    case NSEndFunctionKey:
        changeBy(c->maxValue() - doubleValue());
        break;
    default:
        NSControl::keyDown(e);
    }
}

void NSSlider::scrollWheel(NSEvent* e) {
    // The wheel moves the slider only where the focus is: else it scrolls what the slider stands in.
    if (!isEnabled() || !sliderCell() || !sliderCell()->showsFirstResponder() || e->scrollingDeltaY() == 0) {
        NSControl::scrollWheel(e);
        return;
    }
    changeBy(e->scrollingDeltaY() > 0 ? sliderCell()->arrowStep() : -sliderCell()->arrowStep());
}

NSRect NSSlider::focusRingMaskBounds() const {
    return sliderCell() ? sliderCell()->knobRectIn(bounds(), isFlipped()) : bounds();
}
CGFloat NSSlider::focusRingRadius() const { return theme::kSliderKnob / 2; }

AccessibilityDescription NSSlider::accessibilityDescription() const {
    AccessibilityDescription d = NSControl::accessibilityDescription();
    d.role = u"slider"_ns;
    d.action = u"increment"_ns;
    return d;
}

} // namespace libvue

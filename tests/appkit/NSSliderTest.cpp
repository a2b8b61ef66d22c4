#include <appkit/Cible.h>

#include <cmath>
#include <limits>

#include <graphics/Dessin.h>
#include <libvue/platform/appkit/NSSlider.h>

using namespace libvue;
using namespace libvue::test;

namespace {

class SliderTest : public AppFixture {
protected:
    Ref<NSWindow> window;
    Ref<NSSlider> slider;
    Ref<Cible> cible;

    void SetUp() override {
        window = windowAt({{100, 100}, {400, 300}});
        cible = make<Cible>();
        slider = make<NSSlider>(NSRect{{20, 20}, {118, 20}}); // a way of 100 points
        slider->setMaxValue(100);
        slider->setTarget(cible);
        slider->setAction(sel("agir:"));
        window->contentView()->addSubview(slider);
        show(window);
    }
    void TearDown() override {
        window = nullptr;
        slider = nullptr;
        cible = nullptr;
        AppFixture::TearDown();
    }
    Geste mouse() { return {windows(), window}; }
    void key(char16_t c) {
        windows().key(c);
        drain();
    }
};

TEST_F(SliderTest, AClickOnTheTrackBringsTheKnob) {
    mouse().at(29 + 40, 30).down().up().end();
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 40);
    EXPECT_EQ(cible->count, 1);
}

TEST_F(SliderTest, ADragKeepsThePlaceOnTheKnobAndStopsAtTheEnds) {
    slider->setDoubleValue(50);
    mouse().at(29 + 50 + 5, 30).down().at(29 + 60 + 5, 30).up().end();
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 60);
    EXPECT_EQ(cible->count, 1) << "the press alone changes nothing";
    mouse().at(29 + 60, 30).down().at(900, 30).up().end();
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 100);
    mouse().at(29 + 100, 30).down().at(-50, 200).up().end();
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 0);
}

TEST_F(SliderTest, OneThatIsNotContinuousTellsAtTheEnd) {
    slider->setContinuous(NO);
    mouse().at(29 + 10, 30).down().at(29 + 20, 30).at(29 + 30, 30).up().end();
    EXPECT_EQ(cible->count, 1);
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 30);
}

TEST_F(SliderTest, KeysStep) {
    window->makeFirstResponder(slider);
    struct Row {
        char16_t key;
        double value;
    };
    slider->setDoubleValue(50);
    for (const Row& row :
         {Row{NSRightArrowFunctionKey, 55}, Row{NSUpArrowFunctionKey, 60}, Row{NSLeftArrowFunctionKey, 55},
          Row{NSPageUpFunctionKey, 80}, Row{NSPageDownFunctionKey, 55}, Row{NSHomeFunctionKey, 0},
          Row{NSDownArrowFunctionKey, 0}, Row{NSEndFunctionKey, 100}}) {
        key(row.key);
        EXPECT_DOUBLE_EQ(slider->doubleValue(), row.value) << int{row.key};
    }
    EXPECT_EQ(cible->count, 7) << "a step that changes nothing tells nobody";
}

TEST_F(SliderTest, TicksHoldTheValue) {
    slider->setNumberOfTickMarks(5);
    slider->setDoubleValue(30);
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 30);
    slider->setAllowsTickMarkValuesOnly(YES);
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 25);
    mouse().at(29 + 60, 25).down().up().end();
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 50);
    window->makeFirstResponder(slider);
    key(NSRightArrowFunctionKey);
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 75);
}

TEST_F(SliderTest, LimitsAlwaysHold) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    slider->setDoubleValue(50);
    slider->setDoubleValue(nan);
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 0);
    slider->setDoubleValue(inf);
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 100);
    slider->setMinValue(nan);
    slider->setMaxValue(inf);
    EXPECT_DOUBLE_EQ(slider->minValue(), 0);
    EXPECT_DOUBLE_EQ(slider->maxValue(), 100);
    slider->setMaxValue(20);
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 20);
    slider->setMinValue(20); // no way at all
    const NSRect knob = slider->sliderCell()->knobRectIn(slider->bounds(), NO);
    EXPECT_TRUE(NSContainsRect(slider->bounds(), knob));
    mouse().at(60, 30).down().at(100, 30).up().end();
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 20);
    slider->setMaxValue(10); // turned round
    slider->setDoubleValue(12);
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 12);
}

TEST_F(SliderTest, TheValueAtTheMiddleOfTheKnobIsTheValue) {
    for (const NSRect& b : {NSRect{{0, 0}, {118, 20}}, NSRect{{5, 7}, {20, 118}}})
        for (const BOOL flipped : {NO, YES})
            for (const double v : {0.0, 25.0, 100.0}) {
                slider->setDoubleValue(v);
                const NSRect k = slider->sliderCell()->knobRectIn(b, flipped);
                EXPECT_NEAR(slider->sliderCell()->valueAt({NSMidX(k), NSMidY(k)}, b, flipped), v, 1e-9);
            }
}

TEST_F(SliderTest, ACopyHasTheSameLimits) {
    slider->setMinValue(-3);
    slider->setNumberOfTickMarks(4);
    slider->setDoubleValue(42);
    const auto copied = slider->sliderCell()->copyWithZone();
    const auto* c = as<NSSliderCell>(copied);
    ASSERT_TRUE(c);
    EXPECT_DOUBLE_EQ(c->minValue(), -3);
    EXPECT_DOUBLE_EQ(c->maxValue(), 100);
    EXPECT_DOUBLE_EQ(c->doubleValue(), 42);
    EXPECT_EQ(c->numberOfTickMarks(), 4);
    EXPECT_EQ(c->action(), sel("agir:"));
}

TEST_F(SliderTest, ArchivesKeepTheLimits) {
    const auto s = NSSlider::sliderWithValue_minValue_maxValue_target_action(35, -50, 50, nullptr, sel("agir:"));
    s->setNumberOfTickMarks(11);
    s->setAllowsTickMarkValuesOnly(YES);
    s->sliderCell()->setAltIncrementValue(2.5);
    s->setTag(4);
    const auto back = throughKeyedArchive(*s);
    ASSERT_TRUE(back && back->sliderCell());
    EXPECT_EQ(back->minValue(), -50);
    EXPECT_EQ(back->maxValue(), 50);
    EXPECT_EQ(back->doubleValue(), 40) << "held to the ticks";
    EXPECT_EQ(back->numberOfTickMarks(), 11);
    EXPECT_TRUE(back->allowsTickMarkValuesOnly());
    EXPECT_EQ(back->sliderCell()->altIncrementValue(), 2.5);
    EXPECT_TRUE(back->isContinuous());
    EXPECT_EQ(back->action(), sel("agir:"));
    EXPECT_EQ(back->tag(), 4);
    s->setNumberOfTickMarks(std::numeric_limits<NSInteger>::max());
    EXPECT_EQ(s->numberOfTickMarks(), 10000);
}

} // namespace

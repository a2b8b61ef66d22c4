#include <appkit/WindowFixture.h>

#include <limits>

#include <graphics/Dessin.h>
#include <libvue/platform/appkit/NSSlider.h>

using namespace libvue;
using namespace libvue::test;

namespace {

struct SliderTest : WindowFixture {
    Ref<Cible> cible = make<Cible>();
    Ref<NSSlider> slider = add<NSSlider>({{20, 20}, {118, 20}}); // a way of 100 points from 29

    SliderTest() {
        slider->setMaxValue(100);
        slider->setTarget(cible);
        slider->setAction(sel("agir:"));
    }
    void expect(double value, int count, const char* what) const {
        EXPECT_DOUBLE_EQ(slider->doubleValue(), value) << what;
        EXPECT_EQ(cible->count, count) << what;
    }
};

TEST_F(SliderTest, TheMouseBringsTheKnobAndTells) {
    mouse().click(29 + 40, 30).end();
    expect(40, 1, "a click on the track");
    mouse().at(29 + 40 + 5, 30).down().at(29 + 60 + 5, 30).up().end();
    expect(60, 2, "a drag keeps the place on the knob, and its press changes nothing");
    mouse().at(29 + 60, 30).down().at(900, 30).up().end();
    expect(100, 3, "up to the end");
    mouse().at(29 + 100, 30).down().at(-50, 200).up().end();
    expect(0, 4, "down to the end");
    slider->setContinuous(NO);
    mouse().at(29 + 10, 30).down().at(29 + 20, 30).at(29 + 30, 30).up().end();
    expect(30, 5, "one that is not continuous tells at the end");
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
    mouse().click(29 + 60, 25).end();
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 50);
    window->makeFirstResponder(slider);
    key(NSRightArrowFunctionKey);
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 75);
    slider->setNumberOfTickMarks(std::numeric_limits<NSInteger>::max());
    EXPECT_EQ(slider->numberOfTickMarks(), 10000);
}

TEST_F(SliderTest, LimitsAlwaysHold) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    slider->setDoubleValue(50);
    slider->setDoubleValue(nan);
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 0);
    slider->setDoubleValue(inf);
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 100);
    slider->setMinValue(nan);
    slider->setMinValue(-1e308);
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

TEST_F(SliderTest, ArchivesAndCopiesKeepTheLimits) {
    slider->setMinValue(-50);
    slider->setNumberOfTickMarks(16);
    slider->setAllowsTickMarkValuesOnly(YES);
    slider->sliderCell()->setAltIncrementValue(2.5);
    slider->setDoubleValue(43);
    slider->setTag(4);
    const auto back = throughKeyedArchive(*slider);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->tag(), 4);
    for (const Ref<NSSliderCell>& c : {Ref<NSSliderCell>(back->sliderCell()),
                                       Ref<NSSliderCell>(as<NSSliderCell>(slider->cell()->copyWithZone().get()))}) {
        ASSERT_TRUE(c);
        EXPECT_EQ(c->minValue(), -50);
        EXPECT_EQ(c->maxValue(), 100);
        EXPECT_EQ(c->doubleValue(), 40) << "held to the ticks";
        EXPECT_EQ(c->numberOfTickMarks(), 16);
        EXPECT_TRUE(c->allowsTickMarkValuesOnly() && c->isContinuous());
        EXPECT_EQ(c->altIncrementValue(), 2.5);
        EXPECT_EQ(c->action(), sel("agir:"));
    }
}

} // namespace

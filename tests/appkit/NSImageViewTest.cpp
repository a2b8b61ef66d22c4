#include <appkit/WindowFixture.h>

#include <gmock/gmock.h>

#include <graphics/Dessin.h>
#include <libvue/platform/appkit/NSImageView.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSImage.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

Ref<NSImage> picture(NSSize size) {
    const auto image = make<NSImage>(size);
    image->addRepresentation(NSBitmapImageRep::initWithPixelsWide_pixelsHigh(4, 4));
    return image;
}

using ImageViewTest = WindowFixture;

TEST_F(ImageViewTest, AnImageIsScaledAndPlaced) {
    struct Row {
        NSImageScaling scaling;
        NSImageAlignment alignment;
        NSSize image;
        NSRect expected; ///< in a room of 100 by 60, y upward
    };
    const Row rows[] = {
        {NSImageScaleProportionallyDown, NSImageAlignCenter, {20, 10}, {{40, 25}, {20, 10}}},
        {NSImageScaleProportionallyDown, NSImageAlignTop, {200, 60}, {{0, 30}, {100, 30}}},
        {NSImageScaleProportionallyUpOrDown, NSImageAlignRight, {10, 10}, {{40, 0}, {60, 60}}},
        {NSImageScaleAxesIndependently, NSImageAlignTopLeft, {10, 10}, {{0, 0}, {100, 60}}},
        {NSImageScaleNone, NSImageAlignTopRight, {150, 80}, {{-50, -20}, {150, 80}}},
        {NSImageScaleNone, NSImageAlignLeft, {11, 11}, {{0, 24}, {11, 11}}},
    };
    const auto cell = make<NSImageCell>();
    for (const Row& r : rows) {
        cell->setImage(picture(r.image));
        cell->setImageScaling(r.scaling);
        cell->setImageAlignment(r.alignment);
        EXPECT_EQ(cell->imageRectForBounds({{0, 0}, {100, 60}}), r.expected)
            << "scaling " << r.scaling << ", alignment " << r.alignment;
    }
    // Upright, whichever way the view counts.
    class Flipped : public NSImageView {
    public:
        using NSImageView::NSImageView;
        [[nodiscard]] BOOL isFlipped() const override { return YES; }
    };
    const auto down = make<Flipped>(NSMakeRect(0, 0, 100, 60));
    down->setImage(picture({20, 10}));
    down->setImageAlignment(NSImageAlignTop);
    EXPECT_EQ(down->imageCell()->imageRectForBounds(down->bounds()), NSMakeRect(40, 0, 20, 10));
    EXPECT_EQ(scaledImageSize(NSImageScaleProportionallyUpOrDown, {0, 5}, {10, 10}), NSZeroSize);
}

TEST_F(ImageViewTest, WhatDoesNotFitIsCutOffInsideOfTheFrame) {
    const auto v = NSImageView::imageViewWithImage(picture({40, 30}));
    EXPECT_EQ(v->frame().size, NSMakeSize(40, 30));
    v->setImageFrameStyle(NSImageFramePhoto);
    v->sizeToFit();
    EXPECT_EQ(v->frame().size, NSMakeSize(48, 38));
    v->setImageScaling(NSImageScaleNone);
    v->setFrameSize({28, 28});
    Enregistrement r({28, 28});
    for (const BOOL enabled : {YES, NO}) {
        v->setEnabled(enabled);
        v->drawRect(v->bounds());
        EXPECT_EQ(r.last().kind, backend::RecordingCanvas::Kind::picture);
        EXPECT_EQ(r.last().rect, NSMakeRect(-6, -1, 40, 30));
        EXPECT_EQ(r.last().clip, NSMakeRect(4, 4, 20, 20));
        EXPECT_EQ(r.last().fraction, enabled ? 1 : 0.5);
    }
}

TEST_F(ImageViewTest, AClickGoesToTheViewBehind) {
    const Ref<LogView> behind = viewIn(window, {{0, 0}, {200, 200}}, "behind");
    behind->addSubview(NSImageView::imageViewWithImage(picture({100, 100})));
    click(window, 50, 50);
    EXPECT_THAT(taken(), ElementsAre("behind down", "behind up"));
}

} // namespace

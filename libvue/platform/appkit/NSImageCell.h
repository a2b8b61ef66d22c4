#pragma once

#include <libvue/platform/appkit/NSCell.h>

namespace libvue {

enum NSImageScaling : NSUInteger {
    NSImageScaleProportionallyDown = 0, ///< smaller where it does not fit, never larger
    NSImageScaleAxesIndependently = 1,  ///< filling the room
    NSImageScaleNone = 2,               ///< at its own size, cut off where it does not fit
    NSImageScaleProportionallyUpOrDown = 3
};
enum NSImageAlignment : NSUInteger {
    NSImageAlignCenter = 0,
    NSImageAlignTop = 1,
    NSImageAlignTopLeft = 2,
    NSImageAlignTopRight = 3,
    NSImageAlignLeft = 4,
    NSImageAlignBottom = 5,
    NSImageAlignBottomLeft = 6,
    NSImageAlignBottomRight = 7,
    NSImageAlignRight = 8
};
enum NSImageFrameStyle : NSUInteger {
    NSImageFrameNone = 0,
    NSImageFramePhoto = 1,
    NSImageFrameGrayBezel = 2,
    NSImageFrameGroove = 3,
    NSImageFrameButton = 4
};

/// The size of an image in a room of that size. Empty sizes give an empty one.
[[nodiscard]] LIBVUE_API NSSize scaledImageSize(NSImageScaling scaling, NSSize image, NSSize room) noexcept;

/// Shows one image, scaled and placed, in a frame. Its object value is the image.
class LIBVUE_API NSImageCell : public NSCell {
public:
    static void describe(ClassDescription<NSImageCell, NSCell>& c);
    NSImageCell();
    explicit NSImageCell(NSImage* image); ///< initImageCell:
    explicit NSImageCell(NSCoder& coder);
    void encodeWithCoder(NSCoder& coder) const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

    [[nodiscard]] NSImageScaling imageScaling() const noexcept { return scaling_; }
    void setImageScaling(NSImageScaling s);
    /// Where the image stands in what it leaves free, as seen.
    [[nodiscard]] NSImageAlignment imageAlignment() const noexcept { return placed_; }
    void setImageAlignment(NSImageAlignment a);
    [[nodiscard]] NSImageFrameStyle imageFrameStyle() const noexcept { return frameStyle_; }
    void setImageFrameStyle(NSImageFrameStyle s);

    [[nodiscard]] NSObject* objectValue() const noexcept override;
    /// What is no image is none.
    void setObjectValue(NSObject* value) override;

    /// The image at its own size, in its frame.
    [[nodiscard]] NSSize cellSizeForBounds(const NSRect& bounds) const override;
    [[nodiscard]] NSRect drawingRectForBounds(const NSRect& bounds) const override;
    /// Where the image is drawn; without scaling, more than there is room for.
    [[nodiscard]] NSRect imageRectForBounds(const NSRect& bounds) const override;
    void drawWithFrame_inView(const NSRect& frame, NSView* view) override;
    void drawInteriorWithFrame_inView(const NSRect& frame, NSView* view) override;

private:
    NSImageScaling scaling_ = NSImageScaleProportionallyDown;
    NSImageAlignment placed_ = NSImageAlignCenter;
    NSImageFrameStyle frameStyle_ = NSImageFrameNone;
};

} // namespace libvue

#pragma once

#include <libvue/platform/graphics/NSImageRep.h>

namespace libvue {

enum NSBitmapImageFileType : NSUInteger {
    NSTIFFFileType = 0,
    NSBMPFileType = 1,
    NSGIFFileType = 2,
    NSJPEGFileType = 3,
    NSPNGFileType = 4
};

/// Pixels. Coordinates of pixels run from the top left corner.
class LIBVUE_API NSBitmapImageRep : public NSImageRep {
public:
    static void describe(ClassDescription<NSBitmapImageRep, NSImageRep>& c);
    /// Shares the pixels. `picture` is not null.
    explicit NSBitmapImageRep(std::shared_ptr<backend::Picture> picture);
    explicit NSBitmapImageRep(NSCoder& coder);
    ~NSBitmapImageRep() override;
    /// Null where the bytes are no picture that can be read, or one too large.
    [[nodiscard]] static Ref<NSBitmapImageRep> initWithData(NSData* data);
    [[nodiscard]] static Ref<NSBitmapImageRep> imageRepWithData(NSData* data) { return initWithData(data); }
    /// Transparent pixels, one a point; null where the size is empty or too large.
    [[nodiscard]] static Ref<NSBitmapImageRep> initWithPixelsWide_pixelsHigh(NSInteger wide, NSInteger high);
    /// A copy of what the current context shows there, in its user space; null where it cannot be read.
    [[nodiscard]] static Ref<NSBitmapImageRep> initWithFocusedViewRect(const NSRect& rect);

    [[nodiscard]] NSInteger pixelsWide() const override;
    [[nodiscard]] NSInteger pixelsHigh() const override;
    [[nodiscard]] BOOL hasAlpha() const override;
    BOOL draw() override;
    [[nodiscard]] std::shared_ptr<backend::Picture> picture(CGFloat scale) override;

    /// Null out of the pixels. Device RGB.
    [[nodiscard]] Ref<NSColor> colorAtX_y(NSInteger x, NSInteger y) const;
    /// Out of the pixels, nothing.
    void setColor_atX_y(NSColor* color, NSInteger x, NSInteger y);
    /// The file's bytes; null for a type that cannot be written. `properties` may be null, nothing in it is read.
    [[nodiscard]] Ref<NSData> representationUsingType_properties(NSBitmapImageFileType type,
                                                                 NSDictionary* properties) const;
    [[nodiscard]] Ref<NSData> TIFFRepresentation() const;
    [[nodiscard]] Ref<NSData> PNGRepresentation() const;

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    /// A copy shares the pixels until one of both is drawn into.
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;

    /// The pixels for drawing into them: copied first while anyone else holds them.
    [[nodiscard]] const std::shared_ptr<backend::Picture>& pictureForWriting();

private:
    std::shared_ptr<backend::Picture> picture_;
};

} // namespace libvue

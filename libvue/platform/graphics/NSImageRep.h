#pragma once

#include <memory>

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/graphics/NSCompositingOperation.h>

namespace libvue {

/// One form of an image.
class LIBVUE_API NSImageRep : public NSObject {
public:
    static void describe(ClassDescription<NSImageRep>& c);
    /// The representation in a file or in bytes; null where it cannot be read.
    [[nodiscard]] static Ref<NSImageRep> imageRepWithContentsOfFile(const NSString* path);
    [[nodiscard]] static Ref<NSImageRep> imageRepWithData(NSData* data);

    /// Points.
    [[nodiscard]] NSSize size() const noexcept { return size_; }
    void setSize(NSSize size) noexcept { size_ = size; }
    [[nodiscard]] virtual NSInteger pixelsWide() const { return 0; }
    [[nodiscard]] virtual NSInteger pixelsHigh() const { return 0; }
    [[nodiscard]] virtual BOOL hasAlpha() const { return YES; }
    /// Draws it at the origin of the current context's user space, at its own size. False where nothing could be drawn.
    virtual BOOL draw() { return NO; }
    /// The pixels for a drawing at `scale` pixels a point, or null where there are none.
    [[nodiscard]] virtual std::shared_ptr<backend::Picture> picture(CGFloat scale);
    BOOL drawAtPoint(NSPoint point);
    BOOL drawInRect(const NSRect& rect);

protected:
    NSSize size_;
};

} // namespace libvue

#pragma once

#include <libvue/platform/graphics/NSImage.h>

namespace libvue {

/// Draws into an image for the life of this object.
class FocusImage {
public:
    explicit FocusImage(NSImage* image) : image_(image) { image_->lockFocus(); }
    ~FocusImage() { image_->unlockFocus(); }
    FocusImage(const FocusImage&) = delete;
    FocusImage& operator=(const FocusImage&) = delete;

private:
    Ref<NSImage> image_;
};

} // namespace libvue

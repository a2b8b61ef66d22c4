#pragma once

#include <vector>

#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/NSImageRep.h>

namespace libvue {

struct NSImage::State {
    std::vector<Ref<NSImageRep>> reps;
    NSRect alignment;
    /// Where drawing went before each lockFocus that is still open.
    std::vector<Ref<NSGraphicsContext>> former;
    Ref<NSGraphicsContext> focus; ///< while there is one
};

/// Puts an image under a name without keeping it, or takes it out.
void registerImage(const NSString* name, NSImage* image);
void unregisterImage(const NSString* name, const NSImage* image);

} // namespace libvue

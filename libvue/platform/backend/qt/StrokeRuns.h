#pragma once

#include <vector>

#include <libvue/platform/backend/Drawing.h>

namespace libvue::backend {

/// What a stroke is made of where long straight runs are taken out of it.
struct StrokeRuns {
    std::vector<NSRect> rects; ///< whole pixels, in device coordinates; what is seen of them
    /// The other pieces, in user space, cut off squarely where a run begins. Several where they lie apart.
    std::vector<Path> rest;
};

/// Takes out of a stroke what runs along an axis over whole pixels: a rasterizer spends the square of a row's length on
/// it, a rectangle costs nothing. Both parts together cover exactly what the stroke covers, and no pixel twice. False
/// where nothing is to be gained, or where that is not certain. `seen` is the part of the device that can show, in
/// whole pixels.
[[nodiscard]] bool takeOutRuns(const Path& path, const Stroke& stroke, const Transform& device, const NSRect& seen,
                               StrokeRuns& out);

} // namespace libvue::backend

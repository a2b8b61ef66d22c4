#pragma once

#include <cmath>

#include <libvue/platform/foundation/NSGeometry.h>

namespace libvue {

// Whether all numbers are finite: neither NaN nor infinite.

[[nodiscard]] inline bool isFinite(NSPoint p) noexcept { return std::isfinite(p.x) && std::isfinite(p.y); }
[[nodiscard]] inline bool isFinite(NSSize s) noexcept { return std::isfinite(s.width) && std::isfinite(s.height); }
[[nodiscard]] inline bool isFinite(const NSRect& r) noexcept { return isFinite(r.origin) && isFinite(r.size); }

} // namespace libvue

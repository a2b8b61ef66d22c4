#pragma once

#include <libvue/platform/foundation/StringBuilder.h>

namespace libvue {

/// The shortest decimal digits that read back as the same value, as "12.5" or "1e+22". The point is always ".".
void appendShortest(StringBuilder& b, double v);
void appendShortest(StringBuilder& b, float v);

} // namespace libvue

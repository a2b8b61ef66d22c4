#pragma once

#include <libvue/platform/foundation/Forward.h>

namespace libvue {

struct ClicMot;
enum class RegleMot : unsigned char;

} // namespace libvue

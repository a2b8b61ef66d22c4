#pragma once

#include <libvue/platform/foundation/Forward.h>

namespace libvue {

class CSRegex;

} // namespace libvue

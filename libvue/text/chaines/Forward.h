#pragma once

#include <libvue/platform/foundation/Forward.h>

namespace libvue {

class ZerlCharacterSet;

} // namespace libvue

#pragma once

#include <libvue/platform/appkit/Forward.h>

namespace libvue {

class KVueTranslucide;

} // namespace libvue

#pragma once

#include <libvue/platform/foundation/Forward.h>

namespace libvue {

class UniChaine;

} // namespace libvue

#pragma once

#include <libvue/platform/appkit/Forward.h>

namespace libvue {

class KAlerteEphemere;

} // namespace libvue

#pragma once

#include <libvue/platform/foundation/Forward.h>

namespace libvue {

class KAlerteInfo;
class KAlerteInfoErreur;
class UniChaine;

} // namespace libvue

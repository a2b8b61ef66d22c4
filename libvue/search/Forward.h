#pragma once

#include <libvue/platform/foundation/Forward.h>

namespace libvue {

class KPanneauRecherche;

} // namespace libvue

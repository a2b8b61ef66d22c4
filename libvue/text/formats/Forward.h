#pragma once

#include <libvue/platform/appkit/Forward.h>

namespace libvue {

class AjouteUnValueTransformer;
class ChiffresRomainsFormateur;
class KLimiteFormatter;
class KURLTextFieldCell;

} // namespace libvue

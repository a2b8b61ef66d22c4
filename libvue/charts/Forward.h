#pragma once

#include <libvue/platform/appkit/Forward.h>

namespace libvue {

class KCHistogramme;
class KCPointeDeTarte;
class KCTarte;
class KCTranslationAnimation;
class KCTranslationInverseAnimation;
class AnglesRetenus;
struct TableAccessible;

} // namespace libvue

#pragma once

#include <libvue/platform/appkit/Forward.h>
#include <libvue/socle/Forward.h>

namespace libvue {

class ImageCommune;
class VignetteVisuel;
struct ObjCImplImageCommune;

} // namespace libvue

#pragma once

#include <libvue/platform/appkit/Forward.h>

namespace libvue {

class FadingWindowController;
class PanelBorderLess;

} // namespace libvue

#pragma once

#include <libvue/platform/appkit/Forward.h>

namespace libvue {

class KCPopover;
class KCPopoverManager;
class KCPopoverWrapper;
class KCTransientPanel;
class MaFenetre;
class VueFirstResponder;
class VuePopover;

} // namespace libvue

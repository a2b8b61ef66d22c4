#pragma once

#include <libvue/platform/appkit/Forward.h>

namespace libvue {

class FadingWindowController;
class KCPopover;
class KCPopoverManager;
class KCPopoverWrapper;
class KCTransientPanel;
class MaFenetre;
class PanelBorderLess;
class VueFirstResponder;
class VuePopover;

} // namespace libvue

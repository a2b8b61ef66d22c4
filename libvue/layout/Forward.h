#pragma once

#include <libvue/platform/appkit/Forward.h>

namespace libvue {

class KCFlippedView;
class KCLayoutLineaire;
class KCLayoutManager;
class KCLayoutView;
class KCLayoutViewDelegate;
class KCView;
class KCViewTailleMin;
class KCVueAvecNotifications;
class TaillePreferee;

} // namespace libvue

#pragma once

#include <libvue/platform/appkit/Forward.h>
#include <libvue/socle/Forward.h>

namespace libvue {

class FenAlerte;
class KAlerteDeleguay;
class KAlerteEphemere;
class NSAlert;
class ParentCallbackProxy;

namespace KDialogue {
class KAlerteReceveur;
}

} // namespace libvue

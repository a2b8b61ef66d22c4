#pragma once

#include <libvue/panels/Forward.h>
#include <libvue/platform/foundation/Export.h>

namespace libvue {

/// A marker: it asks nothing of those that conform to it.
class LIBVUE_API KCProtocoleVide {
public:
    virtual ~KCProtocoleVide();
};

} // namespace libvue

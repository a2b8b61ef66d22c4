#pragma once

#include <libvue/platform/foundation/NSURL.h>

namespace libvue {

/// The same address with its escapes written anew in UTF-8: those that are needed, and no others. A "#" stays as it is.
/// Null where an escape is broken or stands for no UTF-8.
[[nodiscard]] LIBVUE_API Ref<NSURL> ajusteEncodage(const NSURL* url);

} // namespace libvue

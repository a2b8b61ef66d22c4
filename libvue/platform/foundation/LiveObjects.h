#pragma once

#include <libvue/platform/foundation/NSObject.h>

namespace libvue::detail {

/// Nothing in a release build.
void noteCreatedObject(const NSObject* object) noexcept;
void noteDestroyedObject(const NSObject* object) noexcept;

} // namespace libvue::detail

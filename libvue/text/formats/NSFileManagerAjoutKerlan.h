#pragma once

#include <libvue/platform/foundation/NSFileManager.h>

namespace libvue {

/// What attributesOfItemAtPath gives, at the end of the symbolic links where `traverse` is YES. A failure answers null
/// and fills `error` (may be null).
///
/// A relative target is looked for beneath the link's own path, and not beside it. There is no limit to the number of
/// links: links that lead round in absolute paths keep this going for ever, so do not follow links that others may have
/// made.
[[nodiscard]] LIBVUE_API Ref<NSDictionary> attributesOfItemAtPath_traverseLink_error(const NSFileManager* manager,
                                                                                     const NSString* path,
                                                                                     BOOL traverse,
                                                                                     Ref<NSError>* error);

} // namespace libvue

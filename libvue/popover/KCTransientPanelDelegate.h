#pragma once

#include <libvue/platform/foundation/Operation.h>
#include <libvue/platform/foundation/Types.h>
#include <libvue/popover/Forward.h>

/// Optional operations of a transient panel's delegate. Their argument is the panel, but the decisions are asked for
/// without it: a delegate tells nothing by it.
namespace libvue::op {

/// Closes the panel, which has stopped watching and left its parent. Without it, the panel is ordered out.
inline constexpr Operation<void(KCTransientPanel*)> transientPanelClose{"transientPanelClose:"};

// Whether the panel goes at that; YES where it is not answered.

inline constexpr Operation<BOOL(KCTransientPanel*)> transientPanelShouldCloseOnParentWindowResignActive{
    "transientPanelShouldCloseOnParentWindowResignActive:"};
inline constexpr Operation<BOOL(KCTransientPanel*)> transientPanelShouldCloseOnParentWindowResignKey{
    "transientPanelShouldCloseOnParentWindowResignKey:"};
/// A click in a window that is neither the panel nor one of its parents.
inline constexpr Operation<BOOL(KCTransientPanel*)> transientPanelShouldCloseOnUnrelatedWindowUsage{
    "transientPanelShouldCloseOnUnrelatedWindowUsage:"};

} // namespace libvue::op

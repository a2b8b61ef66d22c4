#pragma once

#include <libvue/layout/Forward.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/Operation.h>

namespace libvue {

/// The application's hook into a layout pass. Its optional operations are those of `op` below.
class LIBVUE_API KCLayoutViewDelegate {
public:
    virtual ~KCLayoutViewDelegate();
    /// Places the subviews of the view.
    virtual void effectueLayout(KCLayoutView* vue) = 0;
};

/// The placing policy of one KCLayoutView or more.
class LIBVUE_API KCLayoutManager : public KCLayoutViewDelegate {
public:
    ~KCLayoutManager() override;
    /// Tells it the view that hosts it; null when that one goes.
    virtual void setHote(KCLayoutView* hote) = 0;
};

/// Content that knows its ideal size. Takes no part in a layout pass.
class LIBVUE_API TaillePreferee {
public:
    virtual ~TaillePreferee();
    /// In points. A KCPopoverWrapper gives it to a content view controller's view before showing.
    [[nodiscard]] virtual NSSize donneTailleIdeale() = 0;
};

namespace op {
/// Before and after a pass places anything in the view.
inline constexpr Operation<void(KCLayoutView*)> willLayout{"willLayout:"};
inline constexpr Operation<void(KCLayoutView*)> didLayout{"didLayout:"};
/// The view has changed its size, within that change. The second argument is its old size.
inline constexpr Operation<void(KCLayoutView*, NSSize)> layoutView_resizeSubviewsWithOldSize{
    "layoutView:resizeSubviewsWithOldSize:"};
} // namespace op

} // namespace libvue

#pragma once

#include <libvue/layout/Forward.h>
#include <libvue/layout/KCLayoutViewDelegate.h>
#include <libvue/platform/appkit/NSView.h>

namespace libvue {

/// A view that hosts a deferred layout pass.
///
/// It places nothing itself: it notices that something that matters has changed, marks itself and all its enclosing
/// layout views, and at the next draw asks its manager and its delegate to place the subviews. Any number of changes in
/// one event cycle cost one pass.
class LIBVUE_API KCLayoutView : public NSView {
public:
    static void describe(ClassDescription<KCLayoutView, NSView>& c);
    using NSView::NSView;
    ~KCLayoutView() override;

    /// Shared; may be absent.
    [[nodiscard]] KCLayoutManager* layoutManager() const { return layoutManager_; }
    /// Tells the new manager its host. Does not raise the flag, and tells the old manager nothing.
    void setLayoutManager(KCLayoutManager* manager);
    /// Held weakly; may be absent.
    [[nodiscard]] KCLayoutViewDelegate* layoutDelegate() const { return layoutDelegate_; }
    /// Raises the flag.
    void setLayoutDelegate(KCLayoutViewDelegate* delegate);

    /// This view, or a layout view inside it, must run a pass.
    [[nodiscard]] BOOL necessiteLayout() const noexcept { return necessiteLayout_; }
    /// Stores the flag here and in every enclosing layout view, a NO as well as a YES, and has the superviews
    /// displayed.
    virtual void setNecessiteLayout(BOOL v);

    /// Runs the pass if the flag says so.
    void layoutSiNecessaire();
    /// Runs the flagged passes of the layout views at or below `vue`, down to the first layout view of each branch.
    void layoutSiNecessaireRecursifDepthFirst(NSView* vue);
    /// The pass, whatever the flag says.
    void zerl_layout();
    /// Finds the nearest enclosing layout view anew.
    void trouveParent();
    /// Raises the flag; the object is a subview.
    void subviewFrameDidChange(NSNotification* notification);

    /// Always: a vertical layout runs from the top down.
    [[nodiscard]] BOOL isFlipped() const override { return YES; }

    /// Tells the manager and the delegate at once, and raises the flag. Subviews are not autoresized.
    void resizeSubviewsWithOldSize(const NSSize& oldSize) override;
    /// Runs the pass where it is due, so that the subviews are drawn in their new places.
    void drawRect(const NSRect& rect) override;
    void viewDidMoveToSuperview() override;
    void viewDidMoveToWindow() override;
    void didAddSubview(NSView* vue) override;
    void willRemoveSubview(NSView* vue) override;
    void observeValueForKeyPath_ofObject_change_context(NSString* path, NSObject* object, NSDictionary* change,
                                                        void* context) override;

private:
    /// Runs the flagged passes below a view, whatever kind it is itself.
    static void descend(const NSView* vue);

    KCLayoutManager* layoutManager_ = nullptr;
    Ref<NSObject> gerant_; ///< the object behind the manager, which keeps it: a cast less in each pass
    Weak<KCLayoutViewDelegate> layoutDelegate_;
    Weak<KCLayoutView> parent;
    BOOL necessiteLayout_ = NO;
};

} // namespace libvue

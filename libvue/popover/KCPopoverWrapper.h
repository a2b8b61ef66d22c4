#pragma once

#include <libvue/platform/appkit/NSPopoverDelegate.h>
#include <libvue/platform/appkit/NSViewController.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/popover/Forward.h>

namespace libvue {

/// One popover for applications, over a KCPopover or the system's NSPopover. It gives the content its ideal size before
/// showing, closes an attached balloon when what it points at moves, and tells its delegate what the implementation
/// says, with itself as the sender.
///
/// It keeps itself from its showing until it has closed.
class LIBVUE_API KCPopoverWrapper : public NSObject {
public:
    static void describe(ClassDescription<KCPopoverWrapper>& c);
    KCPopoverWrapper();
    ~KCPopoverWrapper() override;

    /// Over a new NSPopover.
    [[nodiscard]] static Ref<KCPopoverWrapper> nouveauPopover();
    /// Over a new KCPopover.
    [[nodiscard]] static Ref<KCPopoverWrapper> nouveauPopoverMaison();
    /// Over a new NSPopover.
    [[nodiscard]] static Ref<KCPopoverWrapper> nouveauPopoverSysteme();

    /// A KCPopover or an NSPopover, kept.
    [[nodiscard]] NSObject* popover() const noexcept { return popover_; }
    /// Takes it, with the wrapper as its delegate where it has one.
    void setPopover(NSObject* popover);
    /// Asked popoverShouldClose: and detachableWindowForPopover:, told popoverWillShow: and its kin. Held weakly.
    [[nodiscard]] NSObject* delegate() const noexcept { return delegate_; }
    void setDelegate(NSObject* delegate) { delegate_ = delegate; }
    /// For the application; kept.
    [[nodiscard]] NSObject* userInfo() const noexcept { return userInfo_; }
    void setUserInfo(NSObject* userInfo) { userInfo_ = userInfo; }
    /// Whether it may become a free window; NO at the start.
    [[nodiscard]] BOOL detachable() const noexcept { return detachable_; }
    /// A KCPopover that may not come off cannot be dragged either.
    void setDetachable(BOOL detachable);

    // What an implementation lacks is ignored, or reads as told.

    /// 0 where the implementation has none.
    [[nodiscard]] NSUInteger masqueEdgeAutorisay() const;
    void setMasqueEdgeAutorisay(NSUInteger masque);
    /// 2 where the implementation has none.
    [[nodiscard]] NSInteger behavior() const;
    void setBehavior(NSInteger behavior);
    /// Null where the implementation has none.
    [[nodiscard]] Ref<NSColor> couleurFond() const;
    void setCouleurFond(NSColor* couleur);
    [[nodiscard]] NSViewController* contentViewController() const;
    /// From now on the implementation hears kContentWouldChangeSizeNotification from this controller.
    void setContentViewController(NSViewController* controller);
    [[nodiscard]] BOOL isShown() const;
    void close();

    /// `rect` in the coordinates of `view`, `edge` an NSRectEdge as seen on the screen. Nothing where the view is null
    /// or in no window.
    void showRelativeToRect_ofView_preferredEdge(const NSRect& rect, NSView* view, NSUInteger edge);

    // What the anchor tells it, until the wrapper ends. An attached KCPopover closes, except at a scroll that a move of
    // the window caused.

    void sourceDidResize(NSNotification* notification);
    void sourceDidScroll(NSNotification* notification);

    // What the implementation asks and tells; its argument, or the notification's object, is the implementation.

    [[nodiscard]] BOOL popoverEstDetachable(NSObject* popover);
    [[nodiscard]] NSWindow* detachableWindowForPopover(NSObject* popover);
    [[nodiscard]] BOOL popoverShouldClose(NSObject* popover);
    void popoverWillShow(NSNotification* notification);
    void popoverDidShow(NSNotification* notification);
    void popoverWillClose(NSNotification* notification);
    void popoverDidClose(NSNotification* notification);

private:
    void transmets(NSNotification* notification, const Operation<void(NSNotification*)>& operation);
    [[nodiscard]] BOOL estAttachay() const;
    void appliqueDetachable();

    Ref<NSObject> popover_;
    Weak<NSObject> delegate_;
    Ref<NSObject> userInfo_;
    BOOL detachable_ = NO;
    Ref<KCPopoverWrapper> moiAffichay_; ///< itself, from its showing until popoverDidClose:
};

} // namespace libvue

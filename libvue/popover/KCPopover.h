#pragma once

#include <libvue/platform/appkit/NSPopoverDelegate.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/appkit/NSViewController.h>
#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/popover/Forward.h>
#include <libvue/popover/PlacementPopover.h>

namespace libvue {

/// The name of what popoverDidClose: is given; the object is the popover. It goes to the delegate alone, never through
/// a notification centre.
inline constexpr ConstantString KCPopoverDidCloseNotification{u"KCPopoverDidCloseNotification"};

/// Optional operations of a popover's delegate, beside popoverDidClose:.
namespace op {
/// Whether it may become a free window; the argument is the popover. YES where it is not answered.
inline constexpr Operation<BOOL(NSObject*)> popoverEstDetachable{"popoverEstDetachable:"};
} // namespace op

/// Shows a view controller's view in a balloon that hangs on a rectangle of an anchor view, until the user turns away.
/// Dragged off its anchor it becomes a small titled window with the same live content.
///
/// It keeps itself while it is shown, and through its fade-out.
class LIBVUE_API KCPopover : public NSObject {
public:
    static void describe(ClassDescription<KCPopover>& c);
    KCPopover();
    ~KCPopover() override;

    // Showing.

    /// `rect` in the coordinates of `view`, `edge` an NSRectEdge: the side of the rectangle on which the balloon should
    /// stand. Nothing where the view is null or in no window.
    void showRelativeToRect_ofView_preferredEdge(const NSRect& rect, NSView* view, NSUInteger edge);
    /// Starts the fade-out; nothing while one runs, or while it is not shown.
    void close();
    /// Whether its window is on the screen; reading it builds the window.
    [[nodiscard]] BOOL isShown();
    /// The balloon's window, built on first read.
    [[nodiscard]] MaFenetre* panel();
    void setPanel(MaFenetre* panel);

    // What it shows, and on what.

    [[nodiscard]] NSViewController* contentViewController() const noexcept { return contentViewController_; }
    /// Takes the old controller's view out of its superview, also where the new one is the same. Shows and lays out
    /// nothing.
    void setContentViewController(NSViewController* controller);
    /// What the balloon hangs on, kept. The setters of the anchor and the edges only store: layoutEtPositionne: places.
    [[nodiscard]] NSView* vueAncre() const noexcept { return vueAncre_; }
    void setVueAncre(NSView* vue) { vueAncre_ = vue; }
    /// The view with the key focus in the anchor's window, while it is shown.
    [[nodiscard]] NSView* firstResponder() const noexcept { return firstResponder_; }
    void setFirstResponder(NSView* vue) { firstResponder_ = vue; }
    /// In the anchor view's coordinates.
    [[nodiscard]] NSRect rectAncre() const noexcept { return rectAncre_; }
    void setRectAncre(const NSRect& rect) noexcept { rectAncre_ = rect; }
    /// The preferred edge.
    [[nodiscard]] NSUInteger edgeAncre() const noexcept { return edgeAncre_; }
    void setEdgeAncre(NSUInteger edge) noexcept { edgeAncre_ = edge; }
    /// The edge in use since the last layout.
    [[nodiscard]] NSUInteger edgeTemporaire() const noexcept { return edgeTemporaire_; }
    void setEdgeTemporaire(NSUInteger edge) noexcept { edgeTemporaire_ = edge; }
    /// The edges that may stand in for the preferred one: bits 1 << edge, all four at the start.
    [[nodiscard]] NSUInteger masqueEdgeAutorisay() const noexcept { return masqueEdgeAutorisay_; }
    void setMasqueEdgeAutorisay(NSUInteger masque) noexcept { masqueEdgeAutorisay_ = masque; }
    /// From its showing until it comes off; it stays so when it closes.
    [[nodiscard]] BOOL attachay() const noexcept { return attachay_; }
    void setAttachay(BOOL attachay) noexcept { attachay_ = attachay; }
    /// A fade-out runs.
    [[nodiscard]] BOOL fermetureEnCours() const noexcept { return fermetureEnCours_; }
    void setFermetureEnCours(BOOL enCours) noexcept { fermetureEnCours_ = enCours; }
    /// Of the balloon, and of the window that it becomes. White at the start, and where it was set absent.
    [[nodiscard]] NSColor* couleurFond();
    void setCouleurFond(NSColor* couleur);
    /// A faint black at the start; black where it was set absent.
    [[nodiscard]] NSColor* couleurBordure();
    void setCouleurBordure(NSColor* couleur);
    /// Asked popoverEstDetachable: and told popoverDidClose:. Held weakly.
    [[nodiscard]] NSObject* delegate() const noexcept { return delegate_; }
    void setDelegate(NSObject* delegate) { delegate_ = delegate; }

    // Placement, in screen coordinates.

    /// The content view's frame and the balloon's margins.
    [[nodiscard]] NSRect contentRect() const;
    /// The balloon's frame on that edge of the anchor, for the content as it stands or for a size of the balloon.
    [[nodiscard]] NSRect rectAvecEdge(NSUInteger edge) const;
    [[nodiscard]] NSRect rectAvecEdge_contentSize(NSUInteger edge, NSSize taille) const;
    /// The balloon's frame on the best edge, and that edge; either pointer may be null.
    void rectPourAffichageOptimal_edge(NSRect* rect, NSUInteger* edge) const;
    void rectPourAffichageOptimal_edge_contentSize(NSRect* rect, NSUInteger* edge, NSSize taille) const;
    /// Places the window round the content as it stands. The argument is not read.
    void layoutEtPositionne(NSViewController* controller);
    /// "size" in the user information: an NSValue of the size that the content is about to take.
    void contentWouldChangeSize(NSNotification* notification);

    /// What the delegate says; YES where it does not.
    [[nodiscard]] BOOL estDetachable();
    /// Makes the balloon a free window. Nothing where it is one, or may not become one.
    void decrochePopover();

    // What its panel, its windows and its fade-out tell it.

    void transientPanelClose(KCTransientPanel* panel);
    [[nodiscard]] BOOL transientPanelShouldCloseOnParentWindowResignActive(KCTransientPanel* panel);
    [[nodiscard]] BOOL transientPanelShouldCloseOnParentWindowResignKey(KCTransientPanel* panel);
    [[nodiscard]] BOOL transientPanelShouldCloseOnUnrelatedWindowUsage(KCTransientPanel* panel);
    void parentWindowDidBecomeMain(NSNotification* notification);
    void parentWindowDidResignMain(NSNotification* notification);
    void parentWindowWillMiniaturize(NSNotification* notification);
    void windowDidBecomeKey(NSNotification* notification);
    void windowWillClose(NSNotification* notification);
    void animationDidEnd(NSAnimation* animation);

private:
    [[nodiscard]] AncragePopover ancrage() const;
    [[nodiscard]] NSView* contenu() const;
    void rendsSaForme();
    void installeFirstResponder(NSWindow* fenetre);
    void enleveFirstResponder();
    void observeFenetre(NSWindow* fenetre);
    void raccordeRepondeurs();

    Ref<MaFenetre> panel_;
    Ref<NSView> vueAncre_;
    Ref<NSView> firstResponder_;
    Ref<NSViewController> contentViewController_;
    NSRect rectAncre_;
    NSUInteger edgeAncre_ = 0;
    NSUInteger edgeTemporaire_ = 0;
    NSUInteger masqueEdgeAutorisay_;
    BOOL attachay_ = NO;
    BOOL fermetureEnCours_ = NO;
    Ref<NSColor> couleurFond_;
    Ref<NSColor> couleurBordure_;
    Weak<NSObject> delegate_;
    Ref<KCPopover> moiAffichay_; ///< itself, from its showing until windowWillClose:
    Ref<KCPopover> moiFermant_;  ///< itself, through the fade-out
};

} // namespace libvue

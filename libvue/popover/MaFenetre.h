#pragma once

#include <libvue/popover/KCTransientPanel.h>

namespace libvue {

/// The window of a KCPopover: dragged by the user, it comes off its anchor.
class LIBVUE_API MaFenetre : public KCTransientPanel {
public:
    static void describe(ClassDescription<MaFenetre, KCTransientPanel>& c);
    MaFenetre();
    MaFenetre(const NSRect& contentRect, NSUInteger styleMask, NSBackingStoreType backing = NSBackingStoreBuffered,
              BOOL defer = YES);
    /// `contentRect` counts from the screen's corner; null is the first screen.
    MaFenetre(const NSRect& contentRect, NSUInteger styleMask, NSBackingStoreType backing, BOOL defer,
              NSScreen* screen);
    /// The rectangle of the content, the style, the title and the content view; what is missing is as in an empty
    /// panel. The popover is not archived: whoever reads the window sets it.
    explicit MaFenetre(NSCoder& coder);
    void encodeWithCoder(NSCoder& coder) const override;
    ~MaFenetre() override;

    /// Held weakly.
    [[nodiscard]] KCPopover* popover() const noexcept;
    void setPopover(KCPopover* popover);
    /// A drag has reached the window, and its move is still to come.
    [[nodiscard]] BOOL dragEnCours() const noexcept { return dragEnCours_; }

    void mouseDragged(NSEvent* e) override;
    /// Takes the popover off its anchor, where a drag came before; a move without one means nothing.
    void windowDidMove(NSNotification* notification);

    /// Also without a title bar: a text in the balloon takes the keys once it is clicked.
    [[nodiscard]] BOOL canBecomeKeyWindow() const override { return YES; }
    /// Escape in an attached balloon closes it.
    void cancelOperation(NSObject* sender) override;

private:
    void observeSesMouvements();

    Weak<KCPopover> popover_;
    BOOL dragEnCours_ = NO;
};

} // namespace libvue

#pragma once

#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/popover/KCTransientPanelDelegate.h>

namespace libvue {

/// A panel that goes away by itself when the user turns to something else.
///
/// While it is on the screen it watches the application's mouse: a press in a parent window (or in an unrelated one)
/// arms it, a left drag disarms it, the release closes it. The click itself is taken away from nobody. A wheel over the
/// panel that belongs to another window is dropped.
class LIBVUE_API KCTransientPanel : public NSPanel {
public:
    static void describe(ClassDescription<KCTransientPanel, NSPanel>& c);
    using NSPanel::NSPanel;
    ~KCTransientPanel() override;

    /// Answers what KCTransientPanelDelegate.h lists. Held weakly; may be absent.
    [[nodiscard]] NSObject* transientDelegate() const noexcept { return transientDelegate_; }
    void setTransientDelegate(NSObject* delegate) { transientDelegate_ = delegate; }
    /// The token of the monitor, present exactly while the panel watches.
    [[nodiscard]] NSObject* eventMonitor() const noexcept { return eventMonitor_; }
    /// Takes ownership; does not end the monitor that it replaces.
    void setEventMonitor(NSObject* monitor) { eventMonitor_ = monitor; }
    /// A press has armed the panel; the next release closes it.
    [[nodiscard]] BOOL pretAFermer() const noexcept { return pretAFermer_; }
    void setPretAFermer(BOOL pret) noexcept { pretAFermer_ = pret; }

    /// Takes it off the screen, through the delegate where that closes by itself. Nothing while it is not visible.
    void ferme();
    /// Ends the watching. What is observed of a parent that the panel has left already goes on until its end.
    void nettoieRessources();

    // What the delegate thinks; YES where it does not say.

    [[nodiscard]] BOOL shouldCloseOnParentWindowResignActive();
    [[nodiscard]] BOOL shouldCloseOnParentWindowResignKey();
    [[nodiscard]] BOOL shouldCloseOnUnrelatedWindowUsage();

    // What closes it beside clicks, the last two where the delegate agrees.

    void parentWindowWillClose(NSNotification* notification);
    void windowDidResignKey(NSNotification* notification);
    void applicationWillResignActive(NSNotification* notification);

    /// Coming on the screen starts the watching; going ends it, and cuts the panel from its parent.
    void orderWindow_relativeTo(NSWindowOrderingMode place, NSInteger otherNumber) override;
    /// Swallows and doubles events as NSWindowKerlan.h decides.
    void sendEvent(NSEvent* e) override;
    void resignKeyWindow() override;

    // What the pointer does in the panel and nothing there wants ends here: what follows a panel in the responder chain
    // is there for keys, and may be a view of the window beneath.

    void mouseDown(NSEvent*) override {}
    void mouseDragged(NSEvent*) override {}
    void mouseUp(NSEvent*) override {}
    void rightMouseDown(NSEvent*) override {}
    void rightMouseDragged(NSEvent*) override {}
    void rightMouseUp(NSEvent*) override {}
    void otherMouseDown(NSEvent*) override {}
    void otherMouseDragged(NSEvent*) override {}
    void otherMouseUp(NSEvent*) override {}
    void scrollWheel(NSEvent*) override {}

private:
    void surveille();
    /// The monitor's answer to an event of the application: the event, or null to drop it.
    [[nodiscard]] Ref<NSEvent> voit(NSEvent* e);
    /// Whether the press that has just come found the panel key.
    [[nodiscard]] BOOL avaitLesTouches();
    [[nodiscard]] BOOL descendDe(const NSWindow* w) const noexcept;

    Weak<NSObject> transientDelegate_;
    Ref<NSObject> eventMonitor_;
    NSTimeInterval touchesPrises_ = 0; ///< when the desktop took the keys away, on the run loop's clock; 0: it did not
    BOOL pretAFermer_ = NO;
};

} // namespace libvue

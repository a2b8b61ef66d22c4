#pragma once

#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/popover/Forward.h>

namespace libvue {

/// Optional operations of a transient panel's delegate. Without the first, the panel is ordered out; without one of the
/// others, the answer is YES. They tell the delegate nothing by their argument.
namespace op {
inline constexpr Operation<void(KCTransientPanel*)> transientPanelClose{"transientPanelClose:"};
inline constexpr Operation<BOOL(KCTransientPanel*)> transientPanelShouldCloseOnParentWindowResignActive{
    "transientPanelShouldCloseOnParentWindowResignActive:"};
inline constexpr Operation<BOOL(KCTransientPanel*)> transientPanelShouldCloseOnParentWindowResignKey{
    "transientPanelShouldCloseOnParentWindowResignKey:"};
inline constexpr Operation<BOOL(KCTransientPanel*)> transientPanelShouldCloseOnUnrelatedWindowUsage{
    "transientPanelShouldCloseOnUnrelatedWindowUsage:"};
} // namespace op

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

    /// Held weakly; may be absent.
    [[nodiscard]] NSObject* transientDelegate() const noexcept { return transientDelegate_; }
    void setTransientDelegate(NSObject* delegate) { transientDelegate_ = delegate; }
    /// The token of the monitor, present exactly while the panel watches.
    [[nodiscard]] NSObject* eventMonitor() const noexcept { return eventMonitor_; }
    void setEventMonitor(NSObject* monitor) { eventMonitor_ = monitor; }
    /// A press has armed the panel; the next release closes it.
    [[nodiscard]] BOOL pretAFermer() const noexcept { return pretAFermer_; }
    void setPretAFermer(BOOL pret) noexcept { pretAFermer_ = pret; }

    /// Takes it off the screen, through the delegate where that closes by itself. Nothing while it is not visible.
    void ferme();
    /// Ends the watching.
    void nettoieRessources();
    [[nodiscard]] BOOL shouldCloseOnParentWindowResignActive();
    [[nodiscard]] BOOL shouldCloseOnParentWindowResignKey();
    [[nodiscard]] BOOL shouldCloseOnUnrelatedWindowUsage();

    void parentWindowWillClose(NSNotification* notification);
    void windowDidResignKey(NSNotification* notification);
    void applicationWillResignActive(NSNotification* notification);

    void orderWindow_relativeTo(NSWindowOrderingMode place, NSInteger otherNumber) override;
    void sendEvent(NSEvent* e) override;
    void resignKeyWindow() override;

private:
    void surveille();
    [[nodiscard]] Ref<NSEvent> voit(NSEvent* e);
    [[nodiscard]] BOOL avaitLesTouches();
    [[nodiscard]] BOOL descendDe(const NSWindow* w) const noexcept;

    Weak<NSObject> transientDelegate_;
    Ref<NSObject> eventMonitor_;
    NSTimeInterval touchesPrises_ = 0; ///< when the desktop took the keys away, on the run loop's clock; 0: it did not
    BOOL pretAFermer_ = NO;
};

} // namespace libvue

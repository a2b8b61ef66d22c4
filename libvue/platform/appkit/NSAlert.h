#pragma once

#include <functional>
#include <vector>

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

class AlertPanel;
class NSAlert;

enum NSAlertStyle : NSUInteger { NSWarningAlertStyle = 0, NSInformationalAlertStyle = 1, NSCriticalAlertStyle = 2 };

/// What the first buttons answer; each further one answers one more.
enum : NSInteger { NSAlertFirstButtonReturn = 1000, NSAlertSecondButtonReturn = 1001, NSAlertThirdButtonReturn = 1002 };

namespace op {
/// Whether the delegate has shown help for the alert.
inline constexpr Operation<BOOL(NSAlert*)> alertShowHelp{"alertShowHelp:"};
} // namespace op

/// A message with buttons, in a window of its own that blocks the application, or as a sheet that blocks its window
/// alone. It keeps itself while it is shown.
///
/// Return presses the button whose key is "\r", which the first one has at the start, and Escape the one whose key is
/// Escape; an alert of one button leaves by Escape as well. Space presses the button that has the focus.
class LIBVUE_API NSAlert : public NSObject {
public:
    static void describe(ClassDescription<NSAlert>& c);
    NSAlert();
    ~NSAlert() override;

    [[nodiscard]] NSAlertStyle alertStyle() const noexcept { return style_; }
    /// Which sign is shown; another value than an NSAlertStyle is the warning.
    void setAlertStyle(NSAlertStyle style);
    [[nodiscard]] NSString* messageText() const noexcept { return message_; }
    void setMessageText(NSString* text);
    [[nodiscard]] NSString* informativeText() const noexcept { return informative_; }
    void setInformativeText(NSString* text);
    /// In place of the sign of the style; null for that one.
    [[nodiscard]] NSImage* icon() const noexcept;
    void setIcon(NSImage* icon);

    /// The buttons lie from the right to the left in the order of adding, or from the top down where they are too wide
    /// for a row.
    NSButton* addButtonWithTitle(NSString* title);
    /// An alert that is shown without any gets the button "OK".
    [[nodiscard]] Ref<NSArray> buttons() const;

    /// A box under the texts, for "not again".
    [[nodiscard]] BOOL showsSuppressionButton() const noexcept { return showsSuppression_; }
    void setShowsSuppressionButton(BOOL flag) noexcept { showsSuppression_ = flag; }
    [[nodiscard]] NSButton* suppressionButton();
    /// A round button on the left that asks the delegate to show help.
    [[nodiscard]] BOOL showsHelp() const noexcept { return showsHelp_; }
    void setShowsHelp(BOOL flag) noexcept { showsHelp_ = flag; }
    [[nodiscard]] NSString* helpAnchor() const noexcept { return helpAnchor_; }
    void setHelpAnchor(NSString* anchor);
    /// Stands between the texts and the box; kept.
    [[nodiscard]] NSView* accessoryView() const noexcept;
    void setAccessoryView(NSView* view);
    [[nodiscard]] NSObject* delegate() const noexcept { return delegate_; }
    /// Held weakly.
    void setDelegate(NSObject* delegate) { delegate_ = delegate; }

    /// Places everything; showing it does so as well.
    void layout();
    [[nodiscard]] NSWindow* window() const noexcept;

    /// Blocks the application until a button is pressed, and answers 1000 and its place. Where the alert ends otherwise
    /// (its window is closed, the application ends), NSRunAbortedResponse.
    NSInteger runModal();
    /// Shows it as a sheet and returns at once. `handler` (may be empty) is told what runModal would answer, once the
    /// sheet is off the screen. A window that is not on the screen comes there first. A null window, or an alert that
    /// is up already, raises NSInvalidArgumentException.
    void beginSheetModalForWindow_completionHandler(NSWindow* window, std::function<void(NSInteger)> handler);
    /// The same with a delegate (not kept, may be null), which is sent `didEnd` at the end: alertDidEnd:(NSAlert*)
    /// returnCode:(NSInteger) contextInfo:(void*).
    void beginSheetModalForWindow_modalDelegate_didEndSelector_contextInfo(NSWindow* window, NSObject* delegate,
                                                                           SEL didEnd, void* info);

private:
    void press(NSObject* sender);
    void help(NSObject* sender);
    void end(NSInteger code);
    void layoutOver(NSWindow* owner);
    void linkKeys(const std::vector<NSView*>& texts);
    void announce();

    NSAlertStyle style_ = NSWarningAlertStyle;
    Ref<NSString> message_, informative_, helpAnchor_;
    Ref<NSImage> icon_;
    std::vector<Ref<NSButton>> buttons_;
    Ref<NSButton> suppression_, help_;
    Ref<NSView> accessory_;
    Weak<NSObject> delegate_;
    Ref<AlertPanel> panel_;
    bool showsSuppression_ = false;
    bool showsHelp_ = false;
};

} // namespace libvue

#pragma once

#include <memory>

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// What a print panel offers.
enum NSPrintPanelOptions : NSUInteger {
    NSPrintPanelShowsCopies = 0x01,
    NSPrintPanelShowsPageRange = 0x02,
    NSPrintPanelShowsPaperSize = 0x04,
    NSPrintPanelShowsOrientation = 0x08,
    NSPrintPanelShowsScaling = 0x10,
    NSPrintPanelShowsPrintSelection = 0x20,
    NSPrintPanelShowsPageSetupAccessory = 0x100,
    NSPrintPanelShowsPreview = 0x20000
};

enum : NSInteger { NSPrintPanelCancelled = 0, NSPrintPanelAccepted = 1 };

class PrintPanelWindow;

/// Asks the user how to print: printer or PDF file, copies, pages, paper, orientation, scale; with a preview that the
/// print operation draws. Return accepts and Escape cancels.
class LIBVUE_API NSPrintPanel : public NSObject {
public:
    static void describe(ClassDescription<NSPrintPanel>& c);
    NSPrintPanel();
    ~NSPrintPanel() override;
    [[nodiscard]] static Ref<NSPrintPanel> printPanel();

    /// NSPrintPanelOptions; copies, pages and the preview at first.
    [[nodiscard]] NSUInteger options() const noexcept { return options_; }
    void setOptions(NSUInteger options) noexcept { options_ = options; }
    /// The title of the button that accepts; null for "Imprimer" or "Enregistrer", by what is chosen.
    [[nodiscard]] NSString* defaultButtonTitle() const noexcept { return buttonTitle_; }
    void setDefaultButtonTitle(NSString* title);

    /// Runs for the current operation, and leaves the choice in its print info; cancelled, nothing is changed. Without
    /// an operation, cancelled at once.
    NSInteger runModal();

    /// The window while it is up; null before and after.
    [[nodiscard]] NSWindow* window_() const noexcept;

private:
    NSUInteger options_ = NSPrintPanelShowsCopies | NSPrintPanelShowsPageRange | NSPrintPanelShowsPreview;
    Ref<NSString> buttonTitle_;
    Ref<PrintPanelWindow> open_;
};

} // namespace libvue

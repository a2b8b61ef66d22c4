#pragma once

#include <vector>

#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/appkit/NSPrintOperation.h>
#include <libvue/platform/backend/PrintService.h>

namespace libvue {

class PrintPanelForm;
class PrintPreviewView;

/// The window of a print panel.
class PrintPanelWindow final : public NSPanel {
public:
    static void describe(ClassDescription<PrintPanelWindow, NSPanel>& c);
    /// `options` as for NSPrintPanel; a null title for the usual ones.
    PrintPanelWindow(NSPrintOperation* operation, NSUInteger options, NSString* buttonTitle);
    ~PrintPanelWindow() override;

    /// Runs. YES with the choice in the operation's print info, NO with that as it was.
    BOOL ask();
    /// Shows a page further on or back in the preview.
    void turnPages(NSInteger step);

    // Sent by its controls.
    void chooseDestination(NSObject* sender);
    void choosePaper(NSObject* sender);
    void chooseOrientation(NSObject* sender);
    void choosePages(NSObject* sender);
    void previousPage(NSObject* sender);
    void nextPage(NSObject* sender);
    void controlTextDidChange(NSNotification* n);
    void accept(NSObject* sender);
    void cancelOperation(NSObject* sender) override;

private:
    enum class Destination { printer, file, viewer };

    void fillDestinations();
    void fillPapers();
    void layOut();
    void readFields();
    void repaginate();
    void showPage(NSInteger page);
    /// What is wrong with the fields, for people; null for nothing.
    [[nodiscard]] Ref<NSString> fault() const;
    void showState();
    [[nodiscard]] Destination destination() const;
    [[nodiscard]] Ref<NSString> savingPath() const;

    Ref<NSPrintOperation> operation_;
    NSUInteger options_;
    Ref<NSString> buttonTitle_;
    std::vector<backend::Printer> printers_;
    std::vector<backend::Paper> papers_;
    Ref<PrintPanelForm> form_;
    Ref<PrintPreviewView> preview_;
    NSInteger page_ = 1;
    bool accepted_ = false;
};

} // namespace libvue

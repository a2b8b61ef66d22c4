#pragma once

#include <exception>
#include <functional>

#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/appkit/NSTextField.h>

namespace libvue {

/// The small panel of a long job: how far it is, and a button that cancels it. The work is done in slices between the
/// events, so that the panel stays alive.
class PrintProgress final : public NSPanel {
public:
    static void describe(ClassDescription<PrintProgress, NSPanel>& c);
    PrintProgress(NSString* title, NSInteger pages);
    ~PrintProgress() override;

    /// Does one step after another, until one answers false or the user cancels; NO then. What a step throws comes out
    /// here.
    BOOL runSteps(const std::function<bool()>& step);
    /// Shows that so many pages are done.
    void setDone(NSInteger pages);
    void cancelOperation(NSObject* sender) override;

private:
    class Bar;
    void work(const std::function<bool()>& step);

    NSInteger pages_;
    Ref<NSTextField> state_;
    Ref<Bar> bar_;
    std::exception_ptr thrown_;
    bool cancelled_ = false;
    bool finished_ = false;
};

/// "Page 3 sur 1 200".
[[nodiscard]] Ref<NSString> pageOfPages(NSInteger page, NSInteger pages);

/// Tells the user that the job failed, and waits.
void showPrintFailure(NSString* title, NSString* reason);

} // namespace libvue

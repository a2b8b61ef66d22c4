#include <libvue/platform/appkit/NSPrintPanel.h>

#include <libvue/platform/appkit/NSPrintOperation.h>
#include <libvue/platform/appkit/PrintPanelWindow.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/ScopeExit.h>

namespace libvue {

namespace {
const Operation<NSUInteger()> optionsOperation{"options"};
const Operation<void(NSUInteger)> setOptionsOperation{"setOptions:"};
} // namespace

void NSPrintPanel::describe(ClassDescription<NSPrintPanel>& c) {
    c.answers<&NSPrintPanel::options>(optionsOperation);
    c.answers<&NSPrintPanel::setOptions>(setOptionsOperation);
}

NSPrintPanel::NSPrintPanel() = default;
NSPrintPanel::~NSPrintPanel() = default;

Ref<NSPrintPanel> NSPrintPanel::printPanel() { return make<NSPrintPanel>(); }

void NSPrintPanel::setDefaultButtonTitle(NSString* title) { buttonTitle_ = title; }

NSWindow* NSPrintPanel::window_() const noexcept { return open_; }

NSInteger NSPrintPanel::runModal() {
    const Ref<NSPrintPanel> self(this);
    const Ref<NSPrintOperation> operation(NSPrintOperation::currentOperation());
    if (!operation || open_) return NSPrintPanelCancelled;
    open_ = make<PrintPanelWindow>(operation, options_, buttonTitle_.get());
    const Ref<PrintPanelWindow> window = open_;
    const ScopeExit closed([this] { open_ = nullptr; });
    return window->ask() ? NSPrintPanelAccepted : NSPrintPanelCancelled;
}

} // namespace libvue

#pragma once

#include <memory>

#include <libvue/platform/appkit/NSPrintOperation.h>
#include <libvue/platform/appkit/NSPrintPanel.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/appkit/PrintPages.h>
#include <libvue/platform/foundation/NSData.h>

namespace libvue {

/// What an operation keeps; PrintPages and the views' default answers read it.
struct NSPrintOperation::State {
    Ref<NSView> view;
    Ref<NSPrintInfo> info;      ///< of the paper
    Ref<NSPrintInfo> viewUnits; ///< what printInfo answers while pages are laid out
    Ref<NSPrintPanel> panel;
    Ref<NSString> title;
    Ref<NSError> error;
    Ref<NSData> data;
    std::unique_ptr<PrintPages> pages;
    NSRect copied; ///< of a copying operation
    NSInteger page = 0;
    CGFloat drawnScale = 1; ///< of the page that is drawn
    bool copying = false, showsPanel = true, showsProgress = true, cancelled = false;

    /// Has printInfo answer in the view's units for a block.
    class Units {
    public:
        Units(State& state, CGFloat scale) : state_(state), former_(state.viewUnits) {
            state.viewUnits = scale == 1 ? nullptr : state.info->inUnitsOfScale_(scale);
        }
        ~Units() { state_.viewUnits = former_; }
        Units(const Units&) = delete;
        Units& operator=(const Units&) = delete;

    private:
        State& state_;
        Ref<NSPrintInfo> former_;
    };
    [[nodiscard]] Units inViewUnits(CGFloat scale) { return Units(*this, scale); }
};

} // namespace libvue

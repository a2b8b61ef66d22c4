#pragma once

#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>

namespace libvue {

/// The page that is being printed: a view of it that locks the focus goes on drawing there, in the coordinates that are
/// set up, and not into its window.
class PrintFocus {
public:
    PrintFocus(NSView* root, NSGraphicsContext* context) noexcept : root_(root), context_(context), former_(current_) {
        current_ = this;
    }
    ~PrintFocus() { current_ = former_; }
    PrintFocus(const PrintFocus&) = delete;
    PrintFocus& operator=(const PrintFocus&) = delete;

    /// Null where no page is drawn now, or the view is not of it.
    [[nodiscard]] static NSGraphicsContext* contextFor(const NSView* view) noexcept {
        if (!current_ || NSGraphicsContext::currentContext() != current_->context_) return nullptr;
        return view->isDescendantOf(current_->root_) ? current_->context_ : nullptr;
    }

private:
    inline static const PrintFocus* current_ = nullptr;
    NSView* root_;
    NSGraphicsContext* context_;
    const PrintFocus* former_;
};

} // namespace libvue

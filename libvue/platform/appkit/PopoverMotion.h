#pragma once

#include <libvue/platform/appkit/NSAnimation.h>
#include <libvue/platform/appkit/PopoverWindow.h>

namespace libvue {

/// A popover's window on its way to another alpha or another frame.
class PopoverMotion : public NSAnimation {
public:
    enum class What : unsigned char { fadesIn, fadesOut, glides };

    static void describe(ClassDescription<PopoverMotion, NSAnimation>&) {}
    /// `to` is where it glides to; not read for a fade.
    PopoverMotion(PopoverWindow* window, What what, const NSRect& to);
    ~PopoverMotion() override;

    [[nodiscard]] What what() const noexcept { return what_; }
    [[nodiscard]] NSRect target() const noexcept { return to_; }
    void setCurrentProgress(NSAnimationProgress progress) override;

protected:
    void animationEnds() override;

private:
    Weak<PopoverWindow> window_;
    NSRect from_, to_;
    CGFloat alpha_; ///< at the start of a fade
    What what_;
};

} // namespace libvue

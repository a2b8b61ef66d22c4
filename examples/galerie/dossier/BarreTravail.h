#pragma once

#include <libvue/platform/appkit/NSView.h>

namespace galerie {

using namespace libvue;

/// How far a long work has come.
class BarreTravail : public NSView {
public:
    static void describe(ClassDescription<BarreTravail, NSView>&) {}
    BarreTravail() : NSView({NSZeroPoint, {160, 6}}) {}
    /// 0 to 1.
    void setPart(CGFloat part);
    /// Work whose end is not known: a piece that wanders a little further at each call.
    void avance();
    void drawRect(const NSRect& r) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    CGFloat part_ = 0, phase_ = -1; ///< a phase below 0: the part counts
};

} // namespace galerie

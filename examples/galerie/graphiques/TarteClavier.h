#pragma once

#include <functional>

#include <libvue/charts/KCTarte.h>
#include <libvue/platform/foundation/NSString.h>

namespace galerie {

using namespace libvue;

/// A pie that the keyboard reaches: the arrows go from slice to slice, Home and End to the first and the last one,
/// Escape puts the slice back, Space pulls out the first.
class TarteClavier : public KCTarte {
public:
    static void describe(ClassDescription<TarteClavier, KCTarte>&) {}
    using KCTarte::KCTarte;

    /// What assistive tools and the page say of the selected slice; empty where there is none.
    [[nodiscard]] Ref<NSString> ditSelection() const;

    [[nodiscard]] BOOL acceptsFirstResponder() override { return YES; }
    BOOL becomeFirstResponder() override;
    BOOL resignFirstResponder() override;
    void mouseDown(NSEvent* e) override;
    void keyDown(NSEvent* e) override;
    void drawRect(const NSRect& r) override;

private:
    /// The next slice that can be seen, `pas` on, round the circle.
    void avance(NSInteger depuis, NSInteger pas);
    void choisis(NSInteger index);
};

} // namespace galerie

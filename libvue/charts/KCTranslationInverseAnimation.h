#pragma once

#include <libvue/charts/Forward.h>
#include <libvue/platform/appkit/NSAnimation.h>

namespace libvue {

/// Moves a slice back into its pie, and has the pie drawn at each frame.
class LIBVUE_API KCTranslationInverseAnimation : public NSAnimation {
public:
    static void describe(ClassDescription<KCTranslationInverseAnimation, NSAnimation>& c);
    KCTranslationInverseAnimation();
    ~KCTranslationInverseAnimation() override;

    /// The view to redraw; shared.
    void setTarte(KCTarte* tarte);
    /// The slice that moves; shared.
    void setPointe(KCPointeDeTarte* pointe);

    void setCurrentProgress(NSAnimationProgress progress) override;

private:
    Ref<KCTarte> maTarte;
    Ref<KCPointeDeTarte> maPointeAnimee;
};

} // namespace libvue

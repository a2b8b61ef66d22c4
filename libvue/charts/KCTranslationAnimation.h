#pragma once

#include <libvue/charts/Forward.h>
#include <libvue/platform/appkit/NSAnimation.h>

namespace libvue {

/// Moves a slice out of its pie, and has the pie drawn at each frame.
class LIBVUE_API KCTranslationAnimation : public NSAnimation {
public:
    static void describe(ClassDescription<KCTranslationAnimation, NSAnimation>& c);
    KCTranslationAnimation();
    ~KCTranslationAnimation() override;

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

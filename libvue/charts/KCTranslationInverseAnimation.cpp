#include <libvue/charts/KCTranslationInverseAnimation.h>

#include <libvue/charts/KCPointeDeTarte.h>
#include <libvue/charts/KCTarte.h>

namespace libvue {

static const ClassRegistration<KCTranslationInverseAnimation> enregistrement;

void KCTranslationInverseAnimation::describe(ClassDescription<KCTranslationInverseAnimation, NSAnimation>&) {}

KCTranslationInverseAnimation::KCTranslationInverseAnimation() = default;
KCTranslationInverseAnimation::~KCTranslationInverseAnimation() = default;

void KCTranslationInverseAnimation::setTarte(KCTarte* tarte) { maTarte = tarte; }
void KCTranslationInverseAnimation::setPointe(KCPointeDeTarte* pointe) { maPointeAnimee = pointe; }

void KCTranslationInverseAnimation::setCurrentProgress(NSAnimationProgress progress) {
    const Ref<KCTranslationInverseAnimation> self(this);
    NSAnimation::setCurrentProgress(progress);
    if (maPointeAnimee) maPointeAnimee->setPourcentageExtraction(1.0F - currentValue());
    // At once: a blocking animation lets no display pass in between its frames.
    if (maTarte) maTarte->display();
}

} // namespace libvue

#include <libvue/charts/KCTranslationAnimation.h>

#include <libvue/charts/KCPointeDeTarte.h>
#include <libvue/charts/KCTarte.h>

namespace libvue {

static const ClassRegistration<KCTranslationAnimation> enregistrement;

void KCTranslationAnimation::describe(ClassDescription<KCTranslationAnimation, NSAnimation>&) {}

KCTranslationAnimation::KCTranslationAnimation() = default;
KCTranslationAnimation::~KCTranslationAnimation() = default;

void KCTranslationAnimation::setTarte(KCTarte* tarte) { maTarte = tarte; }
void KCTranslationAnimation::setPointe(KCPointeDeTarte* pointe) { maPointeAnimee = pointe; }

void KCTranslationAnimation::setCurrentProgress(NSAnimationProgress progress) {
    const Ref<KCTranslationAnimation> self(this);
    NSAnimation::setCurrentProgress(progress);
    if (maPointeAnimee) maPointeAnimee->setPourcentageExtraction(currentValue());
    // At once: a blocking animation lets no display pass in between its frames.
    if (maTarte) maTarte->display();
}

} // namespace libvue

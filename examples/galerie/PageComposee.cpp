#include <PageComposee.h>

#include <Composition.h>
#include <libvue/layout/KCFlippedView.h>

namespace galerie {

Ref<NSView> PageComposee::construitVue() {
    constexpr CGFloat haut = 4;
    const Ref<KCLayoutView> composition = compose();
    composition->setFrameOrigin({kMarge, haut});
    const NSSize t = composition->frame().size;
    taille_ = {t.width + 2 * kMarge, haut + t.height + kMarge};
    auto page = make<KCFlippedView>(NSZeroRect);
    page->addSubview(composition);
    return page;
}

} // namespace galerie

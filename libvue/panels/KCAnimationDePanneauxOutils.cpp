#include <libvue/panels/KCAnimationDePanneauxOutils.h>

#include <vector>

#include <libvue/panels/KCConteneurDePanneauxGlissants.h>
#include <libvue/panels/KCPanneauxGlissants.h>
#include <libvue/platform/appkit/NSViewAnimation.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/NSWorkspace.h>
#include <libvue/platform/appkit/ViewPicture.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>

namespace libvue {

namespace {

const ClassRegistration<KCAnimationDePanneauxOutils> enregistrement;

constexpr NSTimeInterval kDuree = 0.25;

/// The panels that are seen during the slide: those in the container, and in its strip where there is one.
std::vector<ViewPicture> photos(const KCConteneurDePanneauxGlissants& parent, const NSView* mobile,
                                const NSView* nouvelle) {
    std::vector<ViewPicture> toutes;
    for (const auto& v : parent.subviews().copy()) {
        if (v.get() != mobile || mobile == nouvelle) {
            toutes.emplace_back(v.get());
            continue;
        }
        for (const auto& panneau : v->subviews().copy())
            toutes.emplace_back(panneau.get());
    }
    return toutes;
}

} // namespace

void KCAnimationDePanneauxOutils::describe(ClassDescription<KCAnimationDePanneauxOutils>& c) {
    c.answers<&KCAnimationDePanneauxOutils::animationDidEnd>(op::animationDidEnd);
}

KCAnimationDePanneauxOutils::KCAnimationDePanneauxOutils() = default;
KCAnimationDePanneauxOutils::~KCAnimationDePanneauxOutils() = default;

void KCAnimationDePanneauxOutils::animer_avecNouvelleVue_avecVueParent(NSDictionary* entree, NSView* nouvelle,
                                                                       KCConteneurDePanneauxGlissants* parent) {
    if (!entree || !nouvelle || !parent) return;
    const Ref<NSObject> self(this);
    const Ref<NSView> vue(nouvelle);
    maNouvelleVue = nouvelle;
    maVueParent = parent;
    {
        const std::vector<ViewPicture> gardees =
            photos(*parent, entree->get<NSView>(NSViewAnimationTargetKey), nouvelle);
        const auto animation = make<NSViewAnimation>(NSArray::arrayWithObject(entree));
        animation->setDuration(NSWorkspace::sharedWorkspace()->accessibilityDisplayShouldReduceMotion() ? 0 : kDuree);
        animation->setDelegate(this);
        animation->setAnimationBlockingMode(NSAnimationBlocking);
        animation->startAnimation();
    }
    maNouvelleVue = nullptr;
    maVueParent = nullptr;
}

void KCAnimationDePanneauxOutils::animationDidEnd(NSAnimation*) {
    const Ref<NSView> vue = maNouvelleVue.ref();
    const Ref<KCConteneurDePanneauxGlissants> parent = maVueParent.ref();
    if (!vue || !parent) return;
    for (const auto& v : parent->subviews().copy())
        v->removeFromSuperviewWithoutNeedingDisplay();
    vue->setFrame(parent->bounds());
    parent->addSubview(vue);
    if (auto* panneau = dynamic_cast<KCPanneauxGlissants*>(vue.get()))
        panneau->panneauEstAffichay();
    else
        NSLog(u"La classe %@ ne se conforme pas au protocole KCPanneauxGlissants comme elle le devrait."_ns,
              vue->className().get());
}

} // namespace libvue

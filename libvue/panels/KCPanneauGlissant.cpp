#include <libvue/panels/KCPanneauGlissant.h>

#include <libvue/platform/foundation/Class.h>

namespace libvue {

static const ClassRegistration<KCPanneauGlissant> enregistrement;

void KCPanneauGlissant::describe(ClassDescription<KCPanneauGlissant, NSView>& c) {
    c.answers<&KCPanneauGlissant::panneauEstAffichay>("panneauEstAffichay");
}

KCPanneauGlissant::~KCPanneauGlissant() = default;

void KCPanneauGlissant::panneauEstAffichay() {
    const Ref<NSView> self(this);
    // A panel that hears of it may change the list, or end its neighbours.
    for (const auto& v : subviews().copy())
        if (auto* panneau = dynamic_cast<KCPanneauxGlissants*>(v.get())) panneau->panneauEstAffichay();
}

} // namespace libvue

#include <libvue/panels/KCAnimationDePanneauxGlissants.h>

namespace libvue {

KCAnimationDePanneauxGlissants::~KCAnimationDePanneauxGlissants() = default;

} // namespace libvue

#include <libvue/panels/KCPanneauxGlissants.h>

namespace libvue {

KCPanneauxGlissants::~KCPanneauxGlissants() = default;

} // namespace libvue

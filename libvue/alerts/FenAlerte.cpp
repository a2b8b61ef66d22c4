#include <libvue/alerts/FenAlerte.h>

namespace libvue {

FenAlerte::~FenAlerte() = default;

void* FenAlerte::DonneFenetre() const { return maFenetre; }

} // namespace libvue

#include <libvue/platform/graphics/Appearance.h>

namespace libvue {

namespace {

Appearance current = Appearance::light;

} // namespace

Appearance currentAppearance() noexcept { return current; }

void setCurrentAppearance(Appearance appearance) noexcept { current = appearance; }

} // namespace libvue

#pragma once

#include <libvue/platform/graphics/Forward.h>

namespace libvue {

/// Which variant of the system colours is drawn.
enum class Appearance : unsigned char { light, dark };

/// The one that system colours resolve by. The view system sets it around drawing; light at the start.
[[nodiscard]] LIBVUE_API Appearance currentAppearance() noexcept;
LIBVUE_API void setCurrentAppearance(Appearance appearance) noexcept;

/// Sets the current appearance for a block and gives the former one back at its end.
class LIBVUE_API AppearanceScope {
public:
    explicit AppearanceScope(Appearance appearance) noexcept : former_(currentAppearance()) {
        setCurrentAppearance(appearance);
    }
    ~AppearanceScope() { setCurrentAppearance(former_); }
    AppearanceScope(const AppearanceScope&) = delete;
    AppearanceScope& operator=(const AppearanceScope&) = delete;

private:
    Appearance former_;
};

} // namespace libvue

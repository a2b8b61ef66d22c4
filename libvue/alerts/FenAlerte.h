#pragma once

#include <cstddef>

#include <libvue/alerts/Forward.h>

namespace libvue {

/// The window that an alert belongs to, for code that stands outside of the objects. Not kept: it is needed for the
/// call alone. A null FenAlerte, or one without a window, means no window.
class LIBVUE_API FenAlerte {
public:
    explicit FenAlerte(NSWindow* fenetre) noexcept : maFenetre(fenetre) {}
    /// What an NSWindow* gave as an untyped pointer.
    explicit FenAlerte(void* fenetre) noexcept : maFenetre(fenetre) {}
    explicit FenAlerte(std::nullptr_t) noexcept : maFenetre(nullptr) {}
    FenAlerte(const FenAlerte&) = default;
    FenAlerte& operator=(const FenAlerte&) = default;

    /// An NSWindow*, untyped.
    [[nodiscard]] virtual void* DonneFenetre() const;
    virtual ~FenAlerte();

private:
    void* maFenetre;
};

} // namespace libvue

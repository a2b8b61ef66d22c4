#pragma once

#include <compare>
#include <string_view>

#include <libvue/platform/foundation/NSString.h>
#include <libvue/socle/Forward.h>

namespace libvue {

/// A text as a value, for code that stands outside of the objects: UTF-16 units, copied by sharing. An empty one costs
/// nothing.
class LIBVUE_API UniChaine {
public:
    constexpr UniChaine() noexcept = default;
    /// The text as it is now; null gives the empty one.
    UniChaine(const NSString* texte);
    UniChaine(const Ref<NSString>& texte) : UniChaine(texte.get()) {}
    UniChaine(std::u16string_view unites);
    UniChaine(const char16_t* unites);
    /// UTF-8; ill-formed parts become U+FFFD, null gives the empty text.
    UniChaine(const char* utf8);
    UniChaine(const UniChaine&) noexcept = default;
    UniChaine(UniChaine&&) noexcept = default;
    UniChaine& operator=(const UniChaine&) noexcept = default;
    UniChaine& operator=(UniChaine&&) noexcept = default;
    ~UniChaine() = default;

    /// Never null; good as long as this text is not changed.
    operator NSString*() const { return texte_ ? texte_.get() : vide(); }
    [[nodiscard]] NSString* DonneChaine() const { return *this; }

    [[nodiscard]] bool EstVide() const noexcept { return !texte_; }
    /// In UTF-16 units.
    [[nodiscard]] NSInteger Longueur() const noexcept { return texte_ ? static_cast<NSInteger>(texte_->length()) : 0; }
    /// The unit at that place; 0 out of the text.
    [[nodiscard]] unichar operator[](NSInteger place) const noexcept {
        return place >= 0 && place < Longueur() ? texte_->unit(static_cast<NSUInteger>(place)) : unichar{0};
    }

    /// Where a unit was found: the place is -1 where it was not.
    struct Place {
        bool trouvee = false;
        NSInteger position = -1;
    };
    /// The last place of the unit at or before `depart`; -1 starts at the end.
    [[nodiscard]] Place TrouveDernier(unichar unite, NSInteger depart = -1) const noexcept;
    /// The part from `debut`; a negative length means to the end. Held to the text.
    [[nodiscard]] UniChaine SousChaine(NSInteger debut, NSInteger longueur = -1) const;

    UniChaine& operator+=(const UniChaine& suite);
    [[nodiscard]] friend UniChaine operator+(UniChaine debut, const UniChaine& suite) {
        debut += suite;
        return debut;
    }

    // Unit by unit.

    [[nodiscard]] friend bool operator==(const UniChaine& a, const UniChaine& b) noexcept { return a.estEgale(b); }
    [[nodiscard]] friend std::strong_ordering operator<=>(const UniChaine& a, const UniChaine& b) noexcept {
        return a.compare(b);
    }

    // Numbers as French writes them, whatever the locale: a decimal comma, no-break spaces between groups of three
    // digits, "∞" and "NaN" for what is no number.

    /// Rounded to that many decimals, at most 15. Without `zerosFinals`, zeros at the end of the decimals are left out,
    /// and so is the comma before nothing: 12,5 and 12.
    [[nodiscard]] static UniChaine DonneNombreFormatay(double nombre, bool zerosFinals, int decimales);
    [[nodiscard]] static UniChaine DonneNombreFormatay(int nombre);

private:
    [[nodiscard]] static NSString* vide();
    [[nodiscard]] bool estEgale(const UniChaine& autre) const noexcept;
    [[nodiscard]] std::strong_ordering compare(const UniChaine& autre) const noexcept;

    Ref<NSString> texte_; ///< immutable; null for the empty text
};

/// The shared empty text.
extern LIBVUE_API const UniChaine kUniChaineNulle;

} // namespace libvue

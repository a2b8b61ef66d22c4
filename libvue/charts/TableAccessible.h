#pragma once

#include <vector>

#include <libvue/platform/foundation/NSString.h>

namespace libvue {

/// What assistive tools are told of a chart: a row a slice or band, with its caption, its value and its share.
struct LIBVUE_API TableAccessible {
    struct Ligne {
        Ref<NSString> legende;
        Ref<NSString> valeur;
        Ref<NSString> part; ///< of the whole, such as "12,5 %"
        BOOL choisie = NO;
    };
    std::vector<Ligne> lignes;

    /// Adds a row; `part` is a fraction of 1, and what is no number shows as nothing.
    void ajoute(NSString* legende, double valeur, double part, BOOL choisie);
    /// A row a line, "caption : value, share".
    [[nodiscard]] Ref<NSString> texte() const;
    /// The line of one row; out of range is empty.
    [[nodiscard]] Ref<NSString> texteDeLaLigne(NSUInteger ligne) const;
};

} // namespace libvue

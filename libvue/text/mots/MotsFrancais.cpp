#include <libvue/text/mots/MotsFrancais.h>

#include <array>
#include <cstdint>

#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSCharacterSet.h>
#include <libvue/platform/foundation/StringUnits.h>
#include <libvue/text/chaines/ZerlCharacterSet.h>

namespace libvue {

namespace {

/// Which units are part of a word, as bits: a question is one load, whatever the script.
class Classes {
public:
    static const Classes& partagees() {
        static const Classes& kept = *new Classes;
        return kept;
    }
    [[nodiscard]] bool mot(unichar c) const noexcept {
        return c < latin_.size() ? latin_[c] : (mots_[c >> 6] >> (c & 63) & 1) != 0;
    }
    /// One byte a unit, for texts that are stored so.
    [[nodiscard]] bool mot(std::uint8_t c) const noexcept { return latin_[c]; }
    [[nodiscard]] bool apostrophe(unichar c) const {
        return c < latinApostrophes_.size() ? latinApostrophes_[c] : apostrophes_->characterIsMember(c) != NO;
    }
    [[nodiscard]] bool blanc(unichar c) const { return blancs_->characterIsMember(c); }

private:
    Classes()
        : apostrophes_(ZerlCharacterSet::apostropheCharacterSet()), blancs_(NSCharacterSet::whitespaceCharacterSet()) {
        const NSCharacterSet* mots = ZerlCharacterSet::motCharacterSet();
        for (std::uint32_t c = 0; c < 0x10000; ++c)
            if (mots->characterIsMember(static_cast<unichar>(c))) mots_[c >> 6] |= std::uint64_t{1} << (c & 63);
        for (std::uint32_t c = 0; c < latin_.size(); ++c) {
            latin_[c] = (mots_[c >> 6] >> (c & 63) & 1) != 0;
            latinApostrophes_[c] = apostrophes_->characterIsMember(static_cast<unichar>(c)) != NO;
        }
    }

    std::array<std::uint64_t, 1024> mots_{};
    std::array<bool, 256> latin_{}, latinApostrophes_{};
    const NSCharacterSet* apostrophes_;
    const NSCharacterSet* blancs_;
};

constexpr NSUInteger kHui = 3; ///< units of "hui"

/// No other unit is a case form of these letters, so the bit that tells the cases apart decides.
template <class Unite> bool estHui(const Unite* t) noexcept {
    return (t[0] | 0x20) == 'h' && (t[1] | 0x20) == 'u' && (t[2] | 0x20) == 'i';
}

/// Whether "hui" stands as a whole word behind the apostrophe at `e`.
template <class Unite> bool huiSuit(const Classes& k, const Unite* t, NSUInteger longueur, NSUInteger e) {
    const NSUInteger fin = e + 1 + kHui;
    return fin <= longueur && estHui(t + e + 1) && (fin == longueur || !k.mot(t[fin]));
}

template <class Unite, class Classe>
ClicMot etends(const Classes& k, const Unite* t, NSUInteger longueur, NSUInteger i, RegleMot regle, Classe classe) {
    NSUInteger s = i, e = i + 1;
    while (s > 0 && classe(t[s - 1]))
        --s;
    while (e < longueur && classe(t[e]))
        ++e;
    if (e == longueur || !k.apostrophe(t[e])) return {{s, e - s}, regle};
    if (e + 1 == longueur || !k.mot(t[e + 1])) return {{s, e - s}, RegleMot::apostropheFinale};
    if (huiSuit(k, t, longueur, e)) return {{s, e + 1 + kHui - s}, RegleMot::hui};
    return {{s, e + 1 - s}, RegleMot::elision};
}

template <class Unite> ClicMot clic(const Unite* t, NSUInteger longueur, NSUInteger i) {
    const Classes& k = Classes::partagees();
    if (k.mot(t[i])) return etends(k, t, longueur, i, RegleMot::mot, [&](Unite c) { return k.mot(c); });
    // Blanks too run on over an apostrophe with a word behind it.
    if (k.blanc(t[i])) return etends(k, t, longueur, i, RegleMot::blancs, [&](Unite c) { return k.blanc(c); });
    return {{i, 1}, RegleMot::ponctuation};
}

template <class Unite> NSUInteger suivant(const Unite* t, NSUInteger longueur, NSUInteger i) {
    const Classes& k = Classes::partagees();
    while (i < longueur && !k.mot(t[i]))
        ++i;
    if (i >= longueur) return i;
    do
        ++i;
    while (i < longueur && k.mot(t[i]));
    if (i == longueur || !k.apostrophe(t[i])) return i;
    return huiSuit(k, t, longueur, i) ? i + 1 + kHui : i + 1;
}

template <class Unite> NSUInteger precedent(const Unite* t, NSUInteger i) {
    const Classes& k = Classes::partagees();
    while (i > 0 && !k.mot(t[i - 1]))
        --i;
    while (i > 0 && k.mot(t[i - 1]))
        --i;
    return i;
}

const NSString& vide() {
    static const NSString* const kept = keptForever(NSString::string());
    return *kept;
}
const NSString& texte(const NSString* s) { return s ? *s : vide(); }

NSRange clicInstalle(const NSAttributedString* s, NSUInteger i) { return clicSurMot(s->string(), i).plage; }

NSUInteger deplacementInstalle(const NSAttributedString* s, NSUInteger i, BOOL enAvant) {
    return enAvant ? motSuivant(s->string(), i) : motPrecedent(s->string(), i);
}

/// Linking the toolkit is enough: the words are French before main begins.
[[maybe_unused]] const bool installes = [] {
    NSAttributedString::installWordBoundaries(clicInstalle, deplacementInstalle);
    return true;
}();

} // namespace

ClicMot clicSurMot(const NSString* s, NSUInteger i) {
    const NSString& t = texte(s);
    (void)t.characterAtIndex(i); // raises for an index out of the text
    return detail::visitUnits(t, [&](const auto* u, std::size_t longueur) { return clic(u, longueur, i); });
}

NSUInteger motSuivant(const NSString* s, NSUInteger i) {
    return detail::visitUnits(texte(s), [&](const auto* t, std::size_t longueur) { return suivant(t, longueur, i); });
}

NSUInteger motPrecedent(const NSString* s, NSUInteger i) {
    if (i == 0) return 0;
    const NSString& t = texte(s);
    (void)t.characterAtIndex(i - 1);
    return detail::visitUnits(t, [&](const auto* u, std::size_t) { return precedent(u, i); });
}

} // namespace libvue

#include <libvue/text/regex/PlagesRegex.h>

#include <cstdint>

#include <libvue/platform/foundation/StringUnits.h>

namespace libvue::detail {

namespace {

constexpr std::size_t kCaracteresMax = 0x11000;
constexpr char32_t kASCII = 0x7F;

class Developpeur {
public:
    explicit Developpeur(std::string_view motif)
        : motif_(motif), p_(reinterpret_cast<const std::uint8_t*>(motif.data())), fin_(p_ + motif.size()) {}

    std::string developpe() {
        while (p_ < fin_) {
            const std::uint8_t c = *p_;
            copie(1);
            if (c == '\\' && p_ < fin_) copie(1);
            if (c == '[') crochets();
        }
        return trop_ ? std::string(motif_) : sortie_;
    }

private:
    void copie(std::size_t octets) {
        sortie_.append(reinterpret_cast<const char*>(p_), octets);
        p_ += octets;
    }
    [[nodiscard]] bool suit(char c, std::size_t plusLoin = 0) const noexcept {
        return static_cast<std::size_t>(fin_ - p_) > plusLoin && p_[plusLoin] == static_cast<unsigned char>(c);
    }

    /// From behind the bracket to behind the one that closes it.
    void crochets() {
        if (suit('^')) copie(1);
        // Right at the start the closing bracket is a member.
        for (bool debut = true; p_ < fin_; debut = false) {
            if (suit(']') && !debut) return copie(1);
            if (suit('[') && (suit(':', 1) || suit('.', 1) || suit('=', 1)))
                classe();
            else
                membre();
        }
    }

    /// "[:alpha:]" and its kin, as they stand.
    void classe() {
        const char genre = static_cast<char>(p_[1]);
        copie(2);
        while (p_ < fin_ && !(suit(genre) && suit(']', 1)))
            copie(1);
        if (p_ < fin_) copie(2);
    }

    void membre() {
        const std::uint8_t* const debut = p_;
        const char32_t premier = nextUTF8(p_, fin_);
        // A hyphen before the closing bracket is a member.
        if (suit('-') && fin_ - p_ > 1 && !suit(']', 1) && !suit('[', 1)) {
            const std::uint8_t* q = p_ + 1;
            const char32_t dernier = nextUTF8(q, fin_);
            if (dernier > kASCII && premier <= dernier && dernier != illFormed) {
                p_ = q;
                return plage(premier, dernier);
            }
            p_ = q;
        }
        sortie_.append(reinterpret_cast<const char*>(debut), static_cast<std::size_t>(p_ - debut));
    }

    void plage(char32_t premier, char32_t dernier) {
        if (premier <= kASCII) {
            // ASCII has characters that mean something between brackets; the library knows its ranges.
            sortie_ += {static_cast<char>(premier), '-', static_cast<char>(kASCII)};
            premier = kASCII + 1;
        }
        developpes_ += dernier - premier + 1;
        if (developpes_ > kCaracteresMax) {
            trop_ = true;
            return;
        }
        char octets[4];
        for (char32_t c = premier; c <= dernier; ++c)
            if (c < 0xD800 || c > 0xDFFF) sortie_.append(octets, putUTF8(c, octets));
    }

    std::string_view motif_;
    const std::uint8_t* p_;
    const std::uint8_t* fin_;
    std::string sortie_;
    std::size_t developpes_ = 0;
    bool trop_ = false;
};

} // namespace

std::string plagesDeveloppees(std::string_view motif) { return Developpeur(motif).developpe(); }

} // namespace libvue::detail

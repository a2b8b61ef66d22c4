#include <libvue/text/regex/LimitesRegex.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

namespace libvue::detail {

namespace {

// The C library's compiler calls itself for each open parenthesis, and its walk through what it made for each
// alternative and repetition. It does not watch its stack; so many fit into that of any thread.
constexpr std::size_t kImbricationMax = 2000;
constexpr std::size_t kOperateursMax = 20000;
// What is left of the repetitions when they are written out: characters, and how many of them may be absent. The time
// that a match takes grows with the square of the latter.
constexpr double kCaracteresMax = 200000;
constexpr double kFacultatifsMax = 5000;

/// What a part of the pattern becomes.
struct Poids {
    double caracteres = 0, facultatifs = 0;

    void ajoute(const Poids& p) {
        caracteres += p.caracteres;
        facultatifs += p.facultatifs;
    }
    void repete(double fois, double facultatives) {
        caracteres *= fois;
        facultatifs = facultatifs * fois + facultatives;
    }
    [[nodiscard]] bool excessif() const { return caracteres > kCaracteresMax || facultatifs > kFacultatifsMax; }
};

/// From behind the bracket to behind the one that closes it.
const char* apresCrochets(const char* c) {
    if (*c == '^') ++c;
    if (*c == ']') ++c; // right at the start it is a member
    while (*c && *c != ']') {
        const bool classe = *c == '[' && (c[1] == ':' || c[1] == '.' || c[1] == '=');
        const char fin[] = {c[1], ']', '\0'};
        const char* const ferme = classe ? std::strstr(c + 2, fin) : nullptr;
        c = ferme ? ferme + 2 : c + 1;
    }
    return *c ? c + 1 : c;
}

struct Intervalle {
    double minimum = 0, maximum = -1; ///< negative: without end
};

/// Reads "n}", "n,}" or "n,m}"; null where it is something else.
const char* lisIntervalle(const char* c, Intervalle& i) {
    const auto nombre = [&c] {
        double n = 0;
        while (*c >= '0' && *c <= '9')
            n = std::min(n * 10 + (*c++ - '0'), 1e6);
        return n;
    };
    const char* const debut = c;
    i.minimum = nombre();
    const bool sansMinimum = c == debut;
    i.maximum = i.minimum;
    if (*c == ',') {
        const char* const chiffres = ++c;
        i.maximum = nombre();
        if (c == chiffres) i.maximum = -1;
    } else if (sansMinimum)
        return nullptr;
    return *c == '}' ? c + 1 : nullptr;
}

} // namespace

bool estRaisonnable(const char* motif) {
    struct Groupe {
        Poids total, dernier; ///< what the next repetition stands behind
    };
    std::vector<Groupe> groupes(1);
    std::size_t operateurs = 0;
    const auto pose = [&](const Poids& p) {
        Groupe& g = groupes.back();
        g.total.ajoute(g.dernier);
        g.dernier = p;
    };
    const auto repete = [&](double fois, double facultatives) {
        groupes.back().dernier.repete(fois, facultatives);
        ++operateurs;
    };
    for (const char* c = motif; *c;) {
        switch (*c++) {
        case '\\':
            if (*c) ++c;
            pose({1, 0});
            break;
        case '[':
            c = apresCrochets(c);
            pose({1, 0});
            break;
        case '(':
            if (groupes.size() > kImbricationMax) return false;
            groupes.emplace_back();
            break;
        case ')':
            if (groupes.size() > 1) {
                pose({});
                const Poids groupe = groupes.back().total;
                groupes.pop_back();
                pose(groupe);
            } else
                pose({1, 0});
            break;
        case '|':
        case '^':
        case '$':
            pose({});
            ++operateurs;
            break;
        case '*':
        case '?':
            repete(1, 1);
            break;
        case '+':
            repete(2, 1);
            break;
        case '{': {
            Intervalle i;
            if (const char* apres = lisIntervalle(c, i)) {
                c = apres;
                const bool sansFin = i.maximum < 0;
                repete(std::max(1.0, sansFin ? i.minimum + 1 : i.maximum),
                       sansFin ? 1 : std::max(0.0, i.maximum - i.minimum));
            } else
                pose({1, 0});
            break;
        }
        default:
            pose({1, 0});
            break;
        }
        if (operateurs > kOperateursMax || groupes.back().dernier.excessif() || groupes.back().total.excessif())
            return false;
    }
    Poids tout;
    for (const Groupe& g : groupes) {
        tout.ajoute(g.total);
        tout.ajoute(g.dernier);
    }
    return !tout.excessif();
}

} // namespace libvue::detail

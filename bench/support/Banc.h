#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace banc {

/// A piece of our work and the same work done by a peer.
struct Chemin {
    /// Does the work once. Whatever it needs is built before, outside of it.
    std::function<void()> notre;
    /// Does the same work with the peer. Absent when the path has no peer.
    std::function<void()> pair;
};

/// Two figures of the same kind where less is better: bytes, milliseconds, processor time.
struct Mesures {
    double notre = 0;
    /// Absent when there is no peer.
    std::optional<double> pair;
};

/// A path that measures itself, for what cannot be repeated in a loop: the start of a process, memory, an idle window.
struct CheminLibre {
    /// As it is given to `bench/compare`: lower case, words joined by hyphens.
    std::string nom;
    /// Unit printed after the figures, such as "B" or "ms".
    std::string unite;
    std::function<Mesures()> mesurer;
};

/// The paths of one executable, in the order in which they are printed.
class Banc {
public:
    /// Adds a path that is repeated; \p construire builds its data and returns the two pieces of work.
    void ajoute(std::string nom, std::function<Chemin()> construire);
    /// Adds a path that measures itself.
    void ajoute(CheminLibre chemin);

    /// Prints the names for `--list`, else measures the paths that the arguments name (all without arguments) and
    /// prints one line `name ours peer ratio` each, where a ratio above 1 means that ours is the smaller figure.
    /// Returns the process's status.
    int lance(int argc, char** argv);

private:
    struct Entree {
        std::string nom;
        std::function<void()> execute;
    };
    std::vector<Entree> entrees_;
};

/// Keeps the compiler from dropping the computation of \p valeur.
template <class T> inline void garde(const T& valeur) { asm volatile("" : : "r,m"(valeur) : "memory"); }

/// The middle one; of none, 0.
double mediane(std::vector<double> valeurs);

/// Memory of a process (this one for 0) in bytes; 0 when it cannot be read. What it shares counts in full, so that the
/// figure does not hang on who else runs.
std::size_t memoireResidente(int processus = 0);

/// Processor time that this process has used, in seconds.
double tempsProcesseur();

} // namespace banc

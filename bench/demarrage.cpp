// What a program costs before it does anything: its start, its memory, its idleness. The windows are processes of their
// own, so that neither side loads the other's libraries.
#include "Banc.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

constexpr int departs = 21;
constexpr int secondesOisives = 10;
constexpr int millisecondesDePatience = 10'000;
constexpr useconds_t microsecondesDeRepos = 150'000;

const char* const notreFenetre = BANC_ENFANTS "/fenetre_vue";
const char* const fenetreDuPair = BANC_ENFANTS "/fenetre_qt";

/// A window in a process of its own, from its start to the end of this object.
class Enfant {
public:
    explicit Enfant(const char* programme) {
        int tube[2];
        if (pipe(tube) != 0) throw std::runtime_error("pipe");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, tube[1], STDOUT_FILENO);
        posix_spawn_file_actions_addclose(&actions, tube[0]);
        posix_spawn_file_actions_addclose(&actions, tube[1]);
        std::string nom = programme;
        char* arguments[] = {nom.data(), nullptr};
        const auto debut = std::chrono::steady_clock::now();
        const int erreur = posix_spawn(&pid_, programme, &actions, nullptr, arguments, environ);
        posix_spawn_file_actions_destroy(&actions);
        close(tube[1]);
        char octet = 0;
        pollfd attente{tube[0], POLLIN, 0};
        const bool peint =
            erreur == 0 && poll(&attente, 1, millisecondesDePatience) == 1 && read(tube[0], &octet, 1) == 1;
        duree_ = std::chrono::duration<double>(std::chrono::steady_clock::now() - debut).count();
        close(tube[0]);
        if (peint) return;
        if (erreur == 0) termine();
        throw std::runtime_error(nom + " did not paint");
    }
    Enfant(const Enfant&) = delete;
    Enfant& operator=(const Enfant&) = delete;
    ~Enfant() { termine(); }

    /// Seconds from the start of the process to its first paint.
    double duree() const { return duree_; }
    pid_t pid() const { return pid_; }

private:
    /// A window that dies while it is being mapped can leave the window manager in a state in which the next one never
    /// shows: it rests once before its end and once after it, outside of what is measured.
    void termine() {
        usleep(microsecondesDeRepos);
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
        usleep(microsecondesDeRepos);
    }

    pid_t pid_ = 0;
    double duree_ = 0;
};

banc::Mesures mesureLeDepart() {
    // The first of each fills the caches of the disk.
    Enfant(notreFenetre).duree();
    Enfant(fenetreDuPair).duree();
    std::vector<double> notres;
    std::vector<double> pairs;
    for (int i = 0; i < departs; ++i) {
        notres.push_back(Enfant(notreFenetre).duree() * 1000);
        pairs.push_back(Enfant(fenetreDuPair).duree() * 1000);
    }
    return {banc::mediane(notres), banc::mediane(pairs)};
}

double memoireApresUneSeconde(const char* programme) {
    const Enfant enfant(programme);
    sleep(1);
    return static_cast<double>(banc::memoireResidente(enfant.pid()));
}

/// Milliseconds of processor time over the idle seconds.
double oisivete(const char* programme) {
    const Enfant enfant(programme);
    const auto temps = [&] {
        std::ifstream fichier("/proc/" + std::to_string(enfant.pid()) + "/schedstat");
        double nanosecondes = 0;
        fichier >> nanosecondes;
        return nanosecondes / 1e6;
    };
    sleep(1);
    const double avant = temps();
    sleep(secondesOisives);
    return temps() - avant;
}

} // namespace

int main(int argc, char** argv) {
    // Real windows where there is a display; Qt's own windows without one where there is none.
    const bool ecran = std::getenv("DISPLAY") != nullptr;
    setenv("QT_QPA_PLATFORM", ecran ? "xcb" : "offscreen", 1);
    setenv("LIBVUE_BACKEND", "qt", 1);

    banc::Banc banc;
    banc.ajoute({"start-window", "ms", mesureLeDepart});
    banc.ajoute({"memory-window", "B", [] {
                     return banc::Mesures{memoireApresUneSeconde(notreFenetre), memoireApresUneSeconde(fenetreDuPair)};
                 }});
    banc.ajoute({"idle-window-10s", "ms", [] {
                     return banc::Mesures{oisivete(notreFenetre), oisivete(fenetreDuPair)};
                 }});
    return banc.lance(argc, argv);
}

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <thread>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include "appkit/Impression.h"

#include <libvue/platform/backend/Backend.h>

using namespace libvue;
using namespace libvue::test;

namespace {

std::string contenu(const std::filesystem::path& p) {
    std::ifstream f(p, std::ios::binary);
    return {std::istreambuf_iterator<char>(f), {}};
}

/// Until it is so; false after ten seconds.
template <class Condition> bool attends(const Condition& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

/// A print server of its own, with one queue whose device is a file.
class ServeurCups {
public:
    ServeurCups() {
        namespace fs = std::filesystem;
        for (const char* d : {"cache", "spool", "state", "sortie", "bin/backend", "bin/filter", "bin/monitor",
                              "bin/notifier", "bin/cgi-bin"})
            fs::create_directories(dossier / d);
        fs::create_directory_symlink("/usr/lib/cups/daemon", dossier / "bin/daemon");
        ::chmod((dossier / "sortie").c_str(), 0777);
        std::ofstream(dossier / "bin/backend/fichier")
            << "#!/bin/sh\n"
               "[ $# -eq 0 ] && { echo 'file fichier:/ \"Fichier\" \"Fichier\"'; exit 0; }\n"
               "sortie=${DEVICE_URI#fichier:}\n"
               "cat \"${6:--}\" > \"$sortie.part\" && chmod 644 \"$sortie.part\"\n"
               "printf '%s|%s|%s\\n' \"$3\" \"$4\" \"$5\" > \"$sortie.options\" && chmod 644 \"$sortie.options\"\n"
               "mv \"$sortie.part\" \"$sortie\"\n";
        ::chmod((dossier / "bin/backend/fichier").c_str(), 0755);
        std::ofstream(dossier / "cupsd.conf")
            << "Listen " << prise() << "\nBrowsing Off\nDefaultAuthType None\nWebInterface No\n"
            << "<Location />\nOrder allow,deny\nAllow all\n</Location>\n"
            << "<Location /admin>\nOrder allow,deny\nAllow all\n</Location>\n"
            << "<Policy default>\n<Limit All>\nOrder deny,allow\n</Limit>\n</Policy>\n";
        const std::string d = dossier.string();
        std::ofstream(dossier / "cups-files.conf")
            << "User lp\nGroup lp\nSystemGroup root\nServerRoot " << d << "\nCacheDir " << d << "/cache\nStateDir " << d
            << "/state\nRequestRoot " << d << "/spool\nTempDir " << d << "/spool\nServerBin " << d << "/bin\nErrorLog "
            << d << "/erreurs\nAccessLog " << d << "/acces\nPageLog " << d << "/pages\n";
        const std::string conf = (dossier / "cupsd.conf").string(), files = (dossier / "cups-files.conf").string();
        processus_ = ::fork();
        if (processus_ == 0) {
            ::execl("/usr/sbin/cupsd", "cupsd", "-f", "-c", conf.c_str(), "-s", files.c_str(), nullptr);
            ::_exit(127);
        }
        ::setenv("CUPS_SERVER", prise().c_str(), 1);
        const std::string ajoute =
            "lpadmin -p essai -D 'Imprimante d’essai' -E -v fichier:" + sortie().string() + " && lpadmin -d essai";
        pret = attends([this] { return repond(); }) && std::system(ajoute.c_str()) == 0;
    }
    ~ServeurCups() {
        if (processus_ > 0) {
            ::kill(processus_, SIGTERM);
            ::waitpid(processus_, nullptr, 0);
        }
        ::unsetenv("CUPS_SERVER");
        std::filesystem::remove_all(dossier);
    }
    ServeurCups(const ServeurCups&) = delete;
    ServeurCups& operator=(const ServeurCups&) = delete;

    std::filesystem::path dossier =
        std::filesystem::temp_directory_path() / ("libvue-cups-" + std::to_string(::getpid()));
    bool pret = false;

    [[nodiscard]] std::filesystem::path sortie() const { return dossier / "sortie/travail.pdf"; }

private:
    pid_t processus_ = -1;

    [[nodiscard]] std::string prise() const { return (dossier / "prise").string(); }
    [[nodiscard]] bool repond() const {
        const int s = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un a{};
        a.sun_family = AF_UNIX;
        prise().copy(a.sun_path, sizeof a.sun_path - 1);
        const bool oui = ::connect(s, reinterpret_cast<const sockaddr*>(&a), sizeof a) == 0;
        ::close(s);
        return oui;
    }
};

struct CupsTest : ImpressionFixture {
    CupsTest() {
        backend::Backend::current().printing = backend::makeQtPrinting();
        info->setJobDisposition(NSPrintSpoolJob.get());
    }
    [[nodiscard]] static std::ptrdiff_t restes() {
        std::ptrdiff_t n = 0;
        for (const auto& f : std::filesystem::directory_iterator(std::filesystem::temp_directory_path()))
            n += f.path().filename().string().starts_with("impression-") ? 1 : 0;
        return n;
    }
};

TEST_F(CupsTest, withoutAServerThereAreNoPrintersAndAJobSaysWhy) {
    ::setenv("CUPS_SERVER", "/nonexistent/cups.sock", 1);
    auto& printing = *backend::Backend::current().printing;
    EXPECT_TRUE(printing.printers().empty());
    EXPECT_EQ(printing.papers("essai"), backend::PrintService::usualPapers());
    const auto before = restes();
    const auto view = make<Lignes>(NSSize{300, 100}, YES);
    EXPECT_FALSE(operation(view)->runOperation());
    info->setPrinterName(u"essai"_ns);
    const auto job = operation(view);
    EXPECT_FALSE(job->runOperation());
    ASSERT_NE(job->error(), nullptr);
    EXPECT_GT(job->error()->localizedDescription()->length(), 0u);
    EXPECT_EQ(restes(), before);
    ::unsetenv("CUPS_SERVER");
}

TEST_F(CupsTest, aJobComesOutOfTheQueue) {
    const ServeurCups serveur;
    ASSERT_TRUE(serveur.pret) << "cups-daemon and cups-client are needed: " << contenu(serveur.dossier / "erreurs");
    auto& printing = *backend::Backend::current().printing;
    const auto printers = printing.printers();
    ASSERT_EQ(printers.size(), 1u);
    EXPECT_EQ(printers[0].name, "essai");
    EXPECT_EQ(printers[0].title, "Imprimante d’essai");
    EXPECT_TRUE(printers[0].isDefault);
    EXPECT_TRUE(printers[0].accepts);
    EXPECT_FALSE(printing.papers("essai").empty());

    const auto before = restes();
    info->setCopies(2);
    const auto job = operation(make<Lignes>(NSSize{300, 1500}, YES));
    job->setJobTitle(u"Cartes d’été"_ns);
    ASSERT_TRUE(job->runOperation()) << job->error()->localizedDescription()->utf8();
    ASSERT_TRUE(attends([&] { return std::filesystem::exists(serveur.sortie()); }))
        << contenu(serveur.dossier / "erreurs");
    const std::string pdf = contenu(serveur.sortie());
    EXPECT_EQ(nombreDePages(pdf), 3);
    EXPECT_EQ(pagesDuMot(motsDuPDF(pdf), "ligne40"), std::vector<int>{2});
    const std::string options = contenu(serveur.sortie().string() + ".options");
    EXPECT_TRUE(options.starts_with("Cartes d’été|2|")) << options;
    EXPECT_NE(options.find("na_letter_8.5x11in"), std::string::npos) << options;
    EXPECT_EQ(restes(), before);

    info->setPrinterName(u"absente"_ns);
    const auto lost = operation(make<Lignes>(NSSize{300, 100}, YES));
    EXPECT_FALSE(lost->runOperation());
    EXPECT_NE(lost->error(), nullptr);
    EXPECT_EQ(restes(), before);
}

} // namespace

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <libvue/alerts/ReponseAlerte.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/NSUserDefaults.h>
#include <libvue/socle/UniChaine.h>

using namespace libvue;

namespace {

UniChaine cle(int i) { return UniChaine(("cle" + std::to_string(i)).c_str()); }

/// A process that remembers one answer after another, says each time that it has, and is killed amid it.
int retiensJusqua(int tuee) {
    int tuyau[2];
    if (pipe(tuyau) != 0) return -1;
    const pid_t enfant = fork();
    if (enfant == 0) {
        close(tuyau[0]);
        for (int i = 0;; ++i) {
            retiensReponse(cle(i));
            if (write(tuyau[1], "x", 1) != 1) _exit(1);
        }
    }
    close(tuyau[1]);
    int dites = 0;
    char un;
    while (dites < tuee && read(tuyau[0], &un, 1) == 1)
        ++dites;
    kill(enfant, SIGKILL);
    // It may have said more by the time that it died.
    while (read(tuyau[0], &un, 1) == 1)
        ++dites;
    close(tuyau[0]);
    waitpid(enfant, nullptr, 0);
    return dites;
}

TEST(ReponseAlerteTest, WhatWasRememberedSurvivesACrash) {
    const std::string dossier = testing::TempDir() + "alertes-" + std::to_string(getpid());
    const char* avant = std::getenv("XDG_CONFIG_HOME");
    const std::string former = avant ? avant : "";
    setenv("XDG_CONFIG_HOME", dossier.c_str(), 1);
    for (const int tuee : {1, 2, 7, 23}) {
        NSUserDefaults::resetStandardUserDefaults();
        const int dites = retiensJusqua(tuee);
        ASSERT_GE(dites, tuee);
        NSUserDefaults::resetStandardUserDefaults();
        for (int i = 0; i < dites; ++i)
            EXPECT_TRUE(estReponseRetenue(cle(i))) << i << " of " << dites;
        // Nothing but the file itself, and at most one that was never finished.
        for (const auto& f : std::filesystem::recursive_directory_iterator(dossier))
            EXPECT_EQ(f.path().string().find("damaged"), std::string::npos);
        std::filesystem::remove_all(dossier);
    }
    NSUserDefaults::resetStandardUserDefaults();
    avant ? setenv("XDG_CONFIG_HOME", former.c_str(), 1) : unsetenv("XDG_CONFIG_HOME");
}

} // namespace

#include <appkit/AppFixture.h>
#include <foundation/Valeurs.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/NSWorkspace.h>
#include <libvue/platform/foundation/NSURL.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;
using valeurs::text;

using WorkspaceTest = AppFixture;

TEST_F(WorkspaceTest, WhatCanBeOpenedGoesToTheDesktop) {
    auto* w = NSWorkspace::sharedWorkspace();
    const valeurs::Folder dossier;
    dossier.write("deux mots.txt", "x");
    EXPECT_FALSE(w->openURL(nullptr));
    EXPECT_FALSE(w->openURL(NSURL::URLWithString(text(u"pas une adresse"))));
    EXPECT_FALSE(w->openFile(nullptr));
    EXPECT_FALSE(w->openFile(dossier.at("absent")));
    EXPECT_TRUE(w->openURL(NSURL::URLWithString(text(u"https://exemple.org/?a=%20#b"))));
    EXPECT_TRUE(w->openFile(dossier.at("deux mots.txt")));
    EXPECT_THAT(windows().openedURLs(),
                ElementsAre("https://exemple.org/?a=%20#b", "file://" + dossier.path.string() + "/deux%20mots.txt"));
}

#include "Valeurs.h"

#include <cerrno>

#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSFileManager.h>

using namespace libvue;
using namespace libvue::valeurs;

TEST(NSFileManager, failuresAreErrorsOfTheSystem) {
    Folder folder;
    folder.write("fichier", "x");
    auto* m = NSFileManager::defaultManager();
    auto file = folder.at("fichier"), nothing = folder.at("rien"), below = folder.at("fichier/dessous");
    const struct {
        const char* what;
        std::function<bool(Ref<NSError>*)> run;
        int code;
    } rows[] = {
        {"remove", [&](auto* e) { return m->removeItemAtPath_error(nothing, e); }, ENOENT},
        {"list", [&](auto* e) { return m->contentsOfDirectoryAtPath_error(file, e) != nullptr; }, ENOTDIR},
        {"attributes", [&](auto* e) { return m->attributesOfItemAtPath_error(nothing, e) != nullptr; }, ENOENT},
        {"make over a file",
         [&](auto* e) {
             return m->createDirectoryAtPath_withIntermediateDirectories_attributes_error(file, YES, nullptr, e);
         },
         ENOTDIR},
        {"make again",
         [&](auto* e) {
             return m->createDirectoryAtPath_withIntermediateDirectories_attributes_error(folder.at(""), NO, nullptr,
                                                                                          e);
         },
         EEXIST},
        {"link over", [&](auto* e) { return m->createSymbolicLinkAtPath_withDestinationPath_error(file, nothing, e); },
         EEXIST},
        {"read no link", [&](auto* e) { return m->destinationOfSymbolicLinkAtPath_error(file, e) != nullptr; }, EINVAL},
        {"move over", [&](auto* e) { return m->moveItemAtPath_toPath_error(file, file, e); }, EEXIST},
        {"remove with a NUL in the name",
         [&](auto* e) { return m->removeItemAtPath_error(file->stringByAppendingString(u"\0 non"_ns), e); }, ENOENT},
        {"copy into itself", [&](auto* e) { return m->copyItemAtPath_toPath_error(folder.at(""), below, e); }, EINVAL},
    };
    for (const auto& row : rows) {
        Ref<NSError> error;
        EXPECT_FALSE(row.run(&error)) << row.what;
        ASSERT_NE(error, nullptr) << row.what;
        EXPECT_EQ(error->code(), row.code) << row.what;
        EXPECT_EQ(described(error->domain()), "NSPOSIXErrorDomain");
        EXPECT_FALSE(row.run(nullptr)) << row.what;
    }
    EXPECT_FALSE(m->fileExistsAtPath(nullptr));
    EXPECT_EQ(folder.read("fichier"), "x");
    EXPECT_EQ(m->contentsAtPath(nothing), nullptr);
    EXPECT_FALSE(m->createFileAtPath_contents_attributes(below, nullptr, nullptr));
}

TEST(NSFileManager, linksAndFolders) {
    Folder folder;
    folder.write("b/dedans", "12345");
    folder.write("a", "1");
    auto* m = NSFileManager::defaultManager();
    EXPECT_TRUE(m->createSymbolicLinkAtPath_withDestinationPath_error(folder.at("lien"), text(u"b"), nullptr));
    EXPECT_EQ(shown(m->contentsOfDirectoryAtPath_error(folder.at(""), nullptr)), "|a|b|lien|");
    EXPECT_EQ(described(m->destinationOfSymbolicLinkAtPath_error(folder.at("lien"), nullptr)), "b");
    BOOL isFolder = NO;
    EXPECT_TRUE(m->fileExistsAtPath_isDirectory(folder.at("lien"), &isFolder));
    EXPECT_TRUE(isFolder);
    auto type = [&](const char* name) {
        return described(m->attributesOfItemAtPath_error(folder.at(name), nullptr)->objectForKey(NSFileType));
    };
    EXPECT_EQ(type("lien"), "NSFileTypeSymbolicLink");
    EXPECT_EQ(type("b"), "NSFileTypeDirectory");
    EXPECT_EQ(described(m->attributesOfItemAtPath_error(folder.at("b/dedans"), nullptr)->objectForKey(NSFileSize)),
              "5");
    EXPECT_TRUE(m->removeItemAtPath_error(folder.at("lien"), nullptr));
    EXPECT_EQ(folder.read("b/dedans"), "12345"); // the link went, not what it names
    EXPECT_TRUE(m->copyItemAtPath_toPath_error(folder.at("b"), folder.at("c"), nullptr));
    EXPECT_TRUE(m->moveItemAtPath_toPath_error(folder.at("c"), folder.at("d"), nullptr));
    EXPECT_EQ(folder.read("d/dedans"), "12345");
    EXPECT_FALSE(m->fileExistsAtPath(folder.at("c")));
    EXPECT_TRUE(m->removeItemAtPath_error(folder.at("b"), nullptr));
}

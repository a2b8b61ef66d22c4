#include "Valeurs.h"

#include <libvue/platform/foundation/NSBundle.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSLocale.h>
#include <libvue/platform/foundation/NSURL.h>
#include <libvue/platform/foundation/StringsTable.h>

using namespace libvue;
using namespace libvue::valeurs;

namespace {

std::string utf16(std::u16string_view text, bool big) {
    std::string bytes(big ? "\xFE\xFF" : "\xFF\xFE");
    for (char16_t u : text) {
        char low = static_cast<char>(u & 0xFF), high = static_cast<char>(u >> 8);
        bytes += big ? high : low;
        bytes += big ? low : high;
    }
    return bytes;
}

/// The languages of the user, in place of those of whoever runs the test.
struct Languages {
    explicit Languages(const char* language, const char* lang) : language_("LANGUAGE", language), lang_("LANG", lang) {}
    Variable all_{"LC_ALL", nullptr}, messages_{"LC_MESSAGES", nullptr};
    Variable language_, lang_;
};

class NSBundleTest : public testing::Test {
protected:
    NSBundle* bundle() const {
        if (!bundle_) bundle_ = NSBundle::bundleWithPath(folder.at(""));
        return bundle_;
    }
    std::string translated(const char16_t* key, const char16_t* table = nullptr,
                           const char16_t* value = nullptr) const {
        return shown(bundle()->localizedStringForKey_value_table(text(key), value ? text(value) : nullptr,
                                                                 table ? text(table) : nullptr));
    }
    Folder folder;
    Log log;

private:
    mutable Ref<NSBundle> bundle_; // reads its tables once
};

} // namespace

TEST_F(NSBundleTest, tablesAreReadUpToAFault) {
    const struct {
        std::string table;
        const char* entries; // keys and values
        const char* fault;
    } rows[] = {
        {"", "", ""},
        {"\xEF\xBB\xBF\"a\" = \"b\";", "a=b;", ""},
        {"/* x */ \"a\"=\"b\"; // y\n\"c\" = \"d\" ;", "a=b;c=d;", ""},
        {R"("a\"\n\t\\\U00e9\u4E00" = "\q";)", "a\"\\u000A\\u0009\\u005C\\u00E9\\u4E00=q;", ""},
        {"mot.simple = \"v\"; \"seul\";", "mot.simple=v;seul=seul;", ""},
        {"\"a\" = \"1\"; \"a\" = \"2\";", "a=1;", ""},
        {"\"a\" = \"b\";\n\"c\" = ", "a=b;", "a text is missing, line 2"},
        {"\"a\" = \"b\";\n\n\"c\" = \"d\"\n\"e\" = \"f\";", "a=b;", "a semicolon is missing, line 4"},
        {"\"a\" = \"b\";\n\"c", "a=b;", "a text without its end, line 2"},
        {"\"a\" = \"b\\", "", "a text without its end, line 1"},
        {"\"a\" = \"b\"; /* c", "a=b;", "a comment without its end, line 1"},
        {"\"a\" = \"b\"; = \"c\";", "a=b;", "a text is missing, line 1"},
        {"\"a\" = \"b\"; \"c\" = \"\xFF\"; \"d\" = \"e\";", "a=b;", "bytes that are no text, line 1"},
        {utf16(u"\"a\" = \"\u4E00\";", false), "a=\\u4E00;", ""},
        {utf16(u"\"a\" = \"\u4E00\";", true), "a=\\u4E00;", ""},
        {utf16(u"\"a\" = \"b\";", true) + "\"", "a=b;", ""}, // half a unit
    };
    for (const auto& row : rows) {
        folder.write("t.strings", row.table);
        auto read = NSMutableDictionary::dictionary();
        std::string fault, entries;
        readStringsFile((folder.path / "t.strings").string(), *read, fault);
        for (auto [key, value] : *read)
            entries += described(key) + "=" + described(value) + ";";
        EXPECT_EQ(entries, row.entries) << row.table;
        EXPECT_EQ(fault, row.fault) << row.table;
    }
    // Any cut gives what stands whole before it, and no more.
    const std::string whole = "/* c */ \"a\" = \"1\";\n\"b\\n\" = \"\\u00e9\";\n";
    for (std::size_t n = 0; n <= whole.size(); ++n) {
        auto read = NSMutableDictionary::dictionary();
        std::string fault;
        readStringsTable(*NSString::fromUTF8(whole.substr(0, n)), *read, fault);
        auto semicolons = static_cast<NSUInteger>(std::count(whole.begin(), whole.begin() + static_cast<long>(n), ';'));
        EXPECT_EQ(read->count(), semicolons) << n;
    }
}

TEST_F(NSBundleTest, translationsFollowTheLanguagesOfTheUser) {
    const struct {
        const char *language, *lang;
        const char *close, *menu;
    } rows[] = {
        {nullptr, "en_GB.UTF-8", "Close", "Menu (en)"},
        {nullptr, "fr_FR.UTF-8", "Clore", "Menu"},
        {nullptr, "fr_CA.UTF-8", "Fermer donc", "Menu"},
        {nullptr, "de_DE@euro", "Clore", "Menu"}, // no German here: French
        {nullptr, "C", "Clore", "Menu"},
        {nullptr, nullptr, "Clore", "Menu"},
        {"de:en:fr", "de_DE.UTF-8", "Close", "Menu (en)"},
        {"fr:en", "en_US.UTF-8", "Clore", "Menu"},
        {"en", "C", "Clore", "Menu"},
        {":::", "en_US.UTF-8", "Close", "Menu (en)"},
    };
    int i = 0;
    for (const auto& row : rows) {
        const std::string copy = "copie" + std::to_string(i++); // a bundle reads its tables once
        const auto write = [&](const char* table, const char* entries) {
            folder.write(copy + "/Resources/" + table + ".strings", entries);
        };
        write("en.lproj/Localizable", "\"Fermer\" = \"Close\"; \"Menu\" = \"Menu (en)\";");
        write("fr.lproj/Localizable", "\"Fermer\" = \"Clore\"; \"Aide\" = \"De l’aide\";");
        write("fr_CA.lproj/Localizable", "\"Fermer\" = \"Fermer donc\";");
        write("de.lproj/Autre", "\"Fermer\" = \"Zu\";");
        const Languages languages(row.language, row.lang);
        auto b = NSBundle::bundleWithPath(folder.at(copy));
        auto said = [&](const char16_t* key) {
            return shown(b->localizedStringForKey_value_table(text(key), nullptr, nullptr));
        };
        EXPECT_EQ(said(u"Fermer"), row.close) << row.lang;
        EXPECT_EQ(said(u"Aide"), "De l\\u2019aide") << row.lang;
        EXPECT_EQ(said(u"Menu"), row.menu) << row.lang;
    }
}

TEST_F(NSBundleTest, whatHasNoTranslation) {
    folder.write("Localizable.strings", "\"ok\" = \"bon\"; \"cassé");
    folder.write("T.strings", "\"ok\" = \"autre\";");
    EXPECT_EQ(translated(u"ok"), "bon");
    EXPECT_EQ(translated(u"ok", u""), "bon");
    EXPECT_EQ(translated(u"ok", u"T"), "autre");
    EXPECT_EQ(translated(u"absent"), "absent");
    EXPECT_EQ(translated(u"absent", nullptr, u""), "absent");
    EXPECT_EQ(translated(u"Imprime le", nullptr, u"Imprim\\U00E9 le"), "Imprim\\u005CU00E9 le");
    EXPECT_EQ(translated(u"ok", u"NoSuchTable"), "ok");
    EXPECT_EQ(shown(bundle()->localizedStringForKey_value_table(nullptr, nullptr, nullptr)), "");
    ASSERT_EQ(log.lines.size(), 1u); // the fault, once
    EXPECT_NE(log.lines[0].find("Localizable.strings: a text without its end, line 1"), std::string::npos)
        << log.lines[0];
}

TEST_F(NSBundleTest, resourcesAreFoundByNameTypeAndFolder) {
    Languages languages(nullptr, "fr_FR.UTF-8");
    for (const char* file :
         {"image.png", "fr.lproj/image.png", "en.lproj/aide.html", "pages/aide.html", "sans", "a.tar.gz"})
        folder.write(file, "x");
    auto* b = bundle();
    auto found = [&](const char16_t* name, const char16_t* type, const char16_t* in) {
        auto p =
            b->pathForResource_ofType_inDirectory(text(name), type ? text(type) : nullptr, in ? text(in) : nullptr);
        if (!p) return std::string("none");
        return std::filesystem::relative(p->utf8(), std::filesystem::canonical(folder.path)).string();
    };
    EXPECT_EQ(found(u"image", u"png", nullptr), "fr.lproj/image.png");
    EXPECT_EQ(found(u"image", u".png", nullptr), "fr.lproj/image.png");
    EXPECT_EQ(found(u"image.png", nullptr, nullptr), "fr.lproj/image.png");
    EXPECT_EQ(found(u"aide", u"html", nullptr), "none"); // English alone has it
    EXPECT_EQ(found(u"aide", u"html", u"pages"), "pages/aide.html");
    EXPECT_EQ(found(u"sans", u"", nullptr), "sans");
    EXPECT_EQ(found(u"a.tar", u"gz", nullptr), "a.tar.gz");
    EXPECT_EQ(found(u"", u"png", nullptr), "none");
    EXPECT_EQ(b->pathForResource_ofType(nullptr, text(u"png")), nullptr);
    EXPECT_EQ(b->pathsForResourcesOfType_inDirectory(text(u"png"), nullptr)->count(), 2u);
    EXPECT_TRUE(b->URLForResource_withExtension(text(u"image"), text(u"png"))->isFileURL());
    EXPECT_EQ(NSBundle::bundleWithPath(folder.at("no such folder")), nullptr);
    EXPECT_EQ(NSBundle::bundleWithPath(folder.at("."))->bundlePath(), b->bundlePath());
}

TEST_F(NSBundleTest, information) {
    folder.write("bon/Info.json", R"({"CFBundleIdentifier": "org.exemple.bon", "n": 3})");
    folder.write("cassé/Info.json", "{\"CFBundleIdentifier\": ");
    auto good = NSBundle::bundleWithPath(folder.at("bon")), bad = NSBundle::bundleWithPath(folder.at("cassé"));
    EXPECT_EQ(described(good->bundleIdentifier()), "org.exemple.bon");
    EXPECT_EQ(NSBundle::bundleWithIdentifier(text(u"org.exemple.bon")), good.get());
    EXPECT_EQ(bad->bundleIdentifier(), nullptr);
    EXPECT_EQ(log.lines.size(), 1u);
    EXPECT_EQ(bad->infoDictionary()->count(), 0u);
}

TEST_F(NSBundleTest, theBundleOfAClass) {
    class Mine : public NSObject {};
    EXPECT_EQ(NSBundle::bundleForClass(classOf<Mine>()), NSBundle::mainBundle());
    EXPECT_EQ(NSBundle::bundleForClass(classOf<NSBundle>()), NSBundle::libraryBundle());
    EXPECT_EQ(NSBundle::allBundles()->objectAtIndex(0), NSBundle::mainBundle());
    EXPECT_TRUE(NSBundle::allFrameworks()->containsObject(NSBundle::libraryBundle()));
    auto* own = bundle();
    NSBundle::setMainBundle(own);
    EXPECT_EQ(NSBundle::mainBundle(), own);
    NSBundle::setMainBundle(nullptr);
    EXPECT_NE(NSBundle::mainBundle(), own);
}

// Documents through the tool itself: what each says, and with which status.
#include "../json/Documents.h"
#include "../foundation/Valeurs.h"

#include <cerrno>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

using namespace libvue;
using namespace libvue::json;
using valeurs::Folder;

extern char** environ;

namespace {

struct Result {
    int status = -1;
    std::string out, errors;
};

class Tool : public testing::Test {
protected:
    /// Runs the tool; the document comes on its standard input.
    Result run(const std::string& document, std::vector<std::string> arguments) {
        const char* examples = std::getenv("LIBVUE_EXAMPLES");
        const std::string program = std::string(examples ? examples : ".") + "/vuejson";
        arguments.insert(arguments.begin(), program);
        std::vector<char*> argv;
        argv.reserve(arguments.size() + 1);
        for (std::string& a : arguments)
            argv.push_back(a.data());
        argv.push_back(nullptr);
        folder.write("in", document);
        posix_spawn_file_actions_t files;
        posix_spawn_file_actions_init(&files);
        const char* const names[] = {"in", "out", "errors"};
        for (int i = 0; i < 3; ++i)
            posix_spawn_file_actions_addopen(&files, i, (folder.path / names[i]).c_str(),
                                             i == 0 ? O_RDONLY : O_WRONLY | O_CREAT | O_TRUNC, 0600);
        pid_t child = 0;
        const int failed = posix_spawn(&child, program.c_str(), &files, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&files);
        Result r;
        if (failed) {
            ADD_FAILURE() << program << " cannot be run";
            return r;
        }
        int status = 0;
        while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
        }
        r.status = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
        r.out = folder.read("out");
        r.errors = folder.read("errors");
        return r;
    }
    /// That the document gives what it should, on the one stream or the other.
    void check(const Document& d, const std::vector<std::string>& arguments) {
        const Result r = run(d.json, arguments);
        const std::string which = d.json.substr(0, 200);
        EXPECT_EQ(r.status, d.isRight() ? 0 : 1) << which;
        EXPECT_TRUE(r.out == (d.isRight() ? d.result + "\n" : "")) << which << "\ngave " << r.out.substr(0, 300);
        EXPECT_TRUE(r.errors == (d.isRight() ? "" : d.result)) << which << "\ngave " << r.errors.substr(0, 300);
    }
    Folder folder;
};

} // namespace

TEST_F(Tool, agreesWithTheRulesOnEveryDocument) {
    for (const Document& d : documents())
        check(d, {"--compact", "--fragment"});
}

TEST_F(Tool, wantsAnObjectOrAnArrayUnlessItIsTold) {
    for (const char* scalar : {"42", "\"a\"", "true", "null"})
        check({scalar, "4 Valid fragment, but not JSON\n"}, {"--compact"});
    check({"nul", "3 Expected 'null'\n"}, {"--compact"});
    check({"[42]", "[42]"}, {"--compact"});
}

TEST_F(Tool, nestsAsDeeplyAsItIsTold) {
    const std::string deep = times(200000, "[") + times(200000, "]");
    check({deep, deep}, {"--compact", "--profondeur", "0"});
    check({times(200000, "{\"k\":"), "11 Unexpected end of string\n" + times(200000, inObject("k"))},
          {"--compact", "--profondeur", "0"});
    check({"[[[]]]", "7 Nested too deep\n" + times(2, inArray)}, {"--profondeur", "2"});
}

TEST_F(Tool, writesAsItIsTold) {
    const std::string document = R"({"b":[1,{"d":null,"c":[]}],"a":{},"é":"x","A":true})";
    const std::string file = (folder.path / "document.json").string();
    folder.write("document.json", document);
    const struct {
        std::vector<std::string> options;
        std::string out;
    } rows[] = {
        {{"--compact", file}, document},
        {{"--compact", "--trie"}, R"({"A":true,"a":{},"b":[1,{"c":[],"d":null}],"é":"x"})"},
        {{},
         "{\n  \"b\" : [\n    1,\n    {\n      \"d\" : null,\n      \"c\" : []\n    }\n  ],\n  \"a\" : {},\n"
         "  \"é\" : \"x\",\n  \"A\" : true\n}"},
        {{"--indente", "--trie", "-"},
         "{\n  \"A\" : true,\n  \"a\" : {},\n  \"b\" : [\n    1,\n    {\n      \"c\" : [],\n      \"d\" : null\n    }\n"
         "  ],\n  \"é\" : \"x\"\n}"},
    };
    for (const auto& row : rows)
        check({document, row.out}, row.options);
}

TEST_F(Tool, saysWhatItCannotRead) {
    const struct {
        std::string document;
        std::vector<std::string> arguments;
        std::string says;
    } rows[] = {
        {"", {(folder.path / "absent").string()}, "absent"},
        {"", {folder.path.string()}, folder.path.string()},
        {"[\"\xFF\"]", {}, "UTF-8"},
        {"[\"\xED\xA0\x80\"]", {}, "UTF-8"},
        {"[]", {"--rien"}, "--rien"},
        {"[]", {"--profondeur"}, "--profondeur"},
        {"[]", {"--profondeur", "-1"}, "-1"},
        {"[]", {"--profondeur", "99999999999999999999"}, "99999999999999999999"},
        {"[]", {"--profondeur", "0"}, "--compact"},
        {"[]", {"--indente", "--compact"}, "--compact"},
        {"[]", {"un", "deux"}, "un seul"},
    };
    for (const auto& row : rows) {
        const Result r = run(row.document, row.arguments);
        EXPECT_EQ(r.status, 2) << row.says;
        EXPECT_EQ(r.out, "");
        EXPECT_NE(r.errors.find(row.says), std::string::npos) << r.errors;
    }
    const Result help = run("", {"--help"});
    EXPECT_EQ(help.status, 0);
    for (const char* option : {"--indente", "--compact", "--trie", "--fragment", "--profondeur", "--help"})
        EXPECT_NE(help.out.find(option), std::string::npos) << option;
}

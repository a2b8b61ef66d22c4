#include "Textes.h"
#include <support/Folder.h>

#include <cerrno>
#include <cstdlib>

#include <sys/stat.h>
#include <unistd.h>

#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSURL.h>

using namespace libvue;
using namespace libvue::textes;
using test::Folder;
using namespace std::string_view_literals;

namespace {

struct NSDataTest : testing::Test {
    Folder folder;
    Ref<NSString> path(const std::string& name) const { return folder.at(name); }
};

} // namespace

TEST_F(NSDataTest, whatIsWrittenIsRead) {
    std::string large(300000, '\0');
    for (std::size_t i = 0; i < large.size(); ++i)
        large[i] = static_cast<char>(i * 7);
    for (const std::string_view bytes : {""sv, "a\0b"sv, std::string_view(large)})
        for (const BOOL atomically : {NO, YES}) {
            const Ref<NSString> file = path("\xC3\xA9t\xC3\xA9.bin");
            EXPECT_TRUE(NSData::from(bytes)->writeToFile_atomically(file, atomically));
            const Ref<NSData> back = NSData::dataWithContentsOfFile(file);
            ASSERT_NE(back, nullptr);
            EXPECT_EQ(back->view(), bytes);
            EXPECT_EQ(NSData::dataWithContentsOfURL(NSURL::fileURLWithPath(file))->view(), bytes);
        }
    EXPECT_EQ(folder.names().size(), 1u); // nothing of the neighbours stays
}

TEST_F(NSDataTest, replacingAtOnceKeepsTheModeAndTheLink) {
    const std::string target = (folder.path / "cible").string(), link = (folder.path / "lien").string();
    NSData::from("old")->writeToFile_atomically(path("cible"), NO);
    ::chmod(target.c_str(), 0640);
    std::filesystem::create_symlink("cible", link);
    EXPECT_TRUE(NSData::from("new")->writeToFile_atomically(path("lien"), YES));
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(NSData::dataWithContentsOfFile(path("cible"))->view(), "new");
    struct stat status {};
    ASSERT_EQ(::stat(target.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TEST_F(NSDataTest, whatCannotBeReadOrWrittenSaysWhy) {
    struct Row {
        Ref<NSString> path;
        int code;
    };
    std::filesystem::create_directory(folder.path / "dossier");
    const Row reads[] = {
        {path("absent"), ENOENT},     {path("dossier"), EISDIR}, {text(u""), ENOENT},
        {text(u"/tmp\0x"sv), ENOENT}, {nullptr, ENOENT},
    };
    for (const Row& row : reads) {
        Ref<NSError> error;
        EXPECT_EQ(NSData::dataWithContentsOfFile_options_error(row.path, 0, &error), nullptr);
        ASSERT_NE(error, nullptr);
        EXPECT_EQ(error->code(), row.code) << shown(row.path);
        EXPECT_EQ(NSData::dataWithContentsOfFile(row.path), nullptr); // and without anyone to tell
    }
    const Row writes[] = {{path("absent/x"), ENOENT}, {path("dossier"), EISDIR}, {nullptr, ENOENT}};
    for (const Row& row : writes)
        for (const NSUInteger options : {NSUInteger{0}, NSUInteger{NSDataWritingAtomic}}) {
            Ref<NSError> error;
            EXPECT_FALSE(NSData::from("x")->writeToFile_options_error(row.path, options, &error));
            ASSERT_NE(error, nullptr);
            EXPECT_EQ(error->code(), row.code) << options;
        }
    EXPECT_EQ(folder.names().size(), 1u);
}

TEST_F(NSDataTest, textFilesAreReadByTheirMarks) {
    struct Row {
        std::string_view bytes;
        const char* text;
        NSStringEncoding encoding;
    };
    const Row rows[] = {
        {"\xC3\xA9", "\\u00E9", NSUTF8StringEncoding},
        {"\xEF\xBB\xBF\xC3\xA9", "\\u00E9", NSUTF8StringEncoding},
        {"\xFF\xFE\xE9\0"sv, "\\u00E9", NSUTF16StringEncoding},
        {"\xFE\xFF\0\xE9"sv, "\\u00E9", NSUTF16StringEncoding},
        {"\xE9t\xE9", "\\u00E9t\\u00E9", NSISOLatin1StringEncoding},
        {"", "", NSUTF8StringEncoding},
    };
    for (const Row& row : rows) {
        NSData::from(row.bytes)->writeToFile_atomically(path("t"), NO);
        NSStringEncoding used{};
        Ref<NSError> error;
        const Ref<NSString> s =
            NSString::stringWithContentsOfURL_usedEncoding_error(NSURL::fileURLWithPath(path("t")), &used, &error);
        EXPECT_EQ(shown(s), row.text);
        EXPECT_EQ(used, row.encoding);
        EXPECT_EQ(error, nullptr);
    }
    Ref<NSError> error;
    NSData::from("\xE9")->writeToFile_atomically(path("t"), NO);
    EXPECT_EQ(NSString::stringWithContentsOfFile_encoding_error(path("t"), NSUTF8StringEncoding, &error), nullptr);
    EXPECT_EQ(shown(error->domain()), "NSCocoaErrorDomain");
    error = nullptr;
    EXPECT_EQ(
        NSString::stringWithContentsOfURL_usedEncoding_error(NSURL::URLWithString(text(u"http://x/")), nullptr, &error),
        nullptr);
    EXPECT_NE(error, nullptr);
    EXPECT_FALSE(
        text(u"\u20AC")->writeToFile_atomically_encoding_error(path("t"), YES, NSISOLatin1StringEncoding, &error));
    EXPECT_TRUE(text(u"\u20AC")->writeToFile_atomically_encoding_error(path("t"), YES, NSUTF8StringEncoding, &error));
    EXPECT_EQ(NSData::dataWithContentsOfFile(path("t"))->view(), "\xE2\x82\xAC");
}

TEST_F(NSDataTest, changes) {
    Ref<NSMutableData> d = NSMutableData::dataWithLength(2);
    d->appendBytes_length("abc", 3);
    EXPECT_EQ(d->view(), "\0\0abc"sv);
    d->appendData(d);
    EXPECT_EQ(d->view(), "\0\0abc\0\0abc"sv);
    d->replaceBytesInRange_withBytes_length({0, 7}, static_cast<const char*>(d->bytes()) + 7, 3); // own bytes
    EXPECT_EQ(d->view(), "abcabc");
    d->replaceBytesInRange_withBytes({4, 4}, "wxyz");
    EXPECT_EQ(d->view(), "abcawxyz");
    const Ref<NSObject> copy = d->copyWithZone();
    d->setLength(3);
    d->increaseLengthBy(2);
    EXPECT_EQ(d->view(), "abc\0\0"sv);
    d->resetBytesInRange({0, 2});
    EXPECT_EQ(d->view(), "\0\0c\0\0"sv);
    d->setData(nullptr);
    EXPECT_EQ(d->length(), 0u);
    EXPECT_EQ(as<NSData>(copy.get())->view(), "abcawxyz");

    const Ref<NSData> s = NSData::from("abcabc");
    EXPECT_EQ(s->subdataWithRange({2, 3})->view(), "cab");
    EXPECT_EQ(s->rangeOfData_options_range(NSData::from("bc"), 0, {0, 6}), (NSRange{1, 2}));
    EXPECT_EQ(s->rangeOfData_options_range(NSData::from("bc"), NSBackwardsSearch, {0, 6}), (NSRange{4, 2}));
    EXPECT_EQ(s->rangeOfData_options_range(NSData::from("bc"), NSAnchoredSearch, {0, 6}), notFound);
    EXPECT_EQ(s->rangeOfData_options_range(NSData::from("bc"), NSAnchoredSearch | NSBackwardsSearch, {0, 6}),
              (NSRange{4, 2}));
    EXPECT_EQ(s->rangeOfData_options_range(NSData::data(), 0, {0, 6}), notFound);
    EXPECT_TRUE(s->isEqual(NSData::dataWithData(s)));
    EXPECT_EQ(s->hash(), NSData::dataWithData(s)->hash());
    EXPECT_FALSE(s->isEqual(text(u"abcabc")));
    EXPECT_TRUE(NSData::data()->isEqual(NSMutableData::data()));
    expectRaised("NSRangeException", {[&] { (void)s->subdataWithRange(NSMakeRange(5, 2)); },
                                      [&] { (void)s->subdataWithRange(NSMakeRange(1, ~NSUInteger{0})); },
                                      [&] { d->replaceBytesInRange_withBytes(NSMakeRange(1, 1), "x"); },
                                      [&] { d->resetBytesInRange(NSMakeRange(0, 1)); }});
    d->setData(s);
    expectRaised("NSInvalidArgumentException",
                 {[&] { d->appendBytes_length(nullptr, ~NSUInteger{0}); },
                  [&] { d->replaceBytesInRange_withBytes(NSMakeRange(0, ~NSUInteger{0}), d->bytes()); },
                  [&] { d->increaseLengthBy(~NSUInteger{0}); }, [&] { d->setLength(~NSUInteger{0}); }});
    EXPECT_EQ(d->view(), "abcabc");
    EXPECT_EQ(NSMutableData::dataWithCapacity(~NSUInteger{0})->length(), 0u);
    // Bytes that are handed over are given back by the data, which the leak checker watches.
    void* taken = std::malloc(4);
    "four"sv.copy(static_cast<char*>(taken), 4);
    EXPECT_EQ(NSData::dataWithBytesNoCopy_length(taken, 4)->view(), "four");
    char here[] = "here";
    EXPECT_EQ(NSData::dataWithBytesNoCopy_length_freeWhenDone(here, 4, NO)->bytes(), here);
}

TEST_F(NSDataTest, base64) {
    const char* const rows[][2] = {
        {"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foo", "Zm9v"}, {"foob", "Zm9vYg=="}, {"\xFB\xFF\xBF", "+/+/"},
    };
    for (const auto& [plain, coded] : rows) {
        EXPECT_EQ(NSData::from(plain)->base64EncodedStringWithOptions(0)->utf8(), coded);
        EXPECT_EQ(NSData::initWithBase64EncodedString_options(NSString::fromUTF8(coded), 0)->view(), plain);
    }
    for (const char16_t* bad :
         {u"Z", u"Zg", u"Zg=", u"Zg===", u"Z===", u"====", u"Zg==Zg==", u"Zm 9v", u"Zm9v\n", u"Zm\u20199v", u"Z=g="})
        EXPECT_EQ(NSData::initWithBase64EncodedString_options(text(bad), 0), nullptr) << shown(bad);
    EXPECT_EQ(NSData::initWithBase64EncodedString_options(nullptr, 0), nullptr);
    EXPECT_EQ(NSData::initWithBase64EncodedString_options(text(u" Zm\r\n9v\u2019"),
                                                          NSDataBase64DecodingIgnoreUnknownCharacters)
                  ->view(),
              "foo");
    const Ref<NSString> lines =
        NSData::from(std::string(100, 'a'))->base64EncodedStringWithOptions(NSDataBase64Encoding64CharacterLineLength);
    EXPECT_EQ(lines->rangeOfString(text(u"\r\n")), (NSRange{64, 2}));
    EXPECT_EQ(lines->length(), 136u + 2 * 2);
}

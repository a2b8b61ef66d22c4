#include "Textes.h"

#include <libvue/platform/foundation/NSURL.h>

using namespace libvue;
using namespace libvue::textes;

namespace {

std::string absolute(const Ref<NSURL>& url) { return url ? shown(url->absoluteString()) : "(null)"; }

} // namespace

TEST(NSURLTest, parts) {
    struct Row {
        const char16_t* url;
        const char *scheme, *host;
        NSInteger port;
        const char *path, *query, *fragment, *last;
    };
    const Row rows[] = {
        {u"http://example.org", "http", "example.org", -1, "", "(null)", "(null)", ""},
        {u"http://u:p@example.org:8080/a%20b/c.d?x=%26#f", "http", "example.org", 8080, "/a b/c.d", "x=%26", "f",
         "c.d"},
        {u"HTTP://h:/", "HTTP", "h", -1, "/", "(null)", "(null)", "/"},
        {u"http://[::1]:80/x/", "http", "::1", 80, "/x", "(null)", "(null)", "x"},
        {u"file:///tmp/%C3%A9t%C3%A9", "file", "(null)", -1, "/tmp/\\u00E9t\\u00E9", "(null)", "(null)",
         "\\u00E9t\\u00E9"},
        {u"file:///tmp/%E9", "file", "(null)", -1, "/tmp/\\uFFFD", "(null)", "(null)", "\\uFFFD"},
        {u"mailto:a@b.org", "mailto", "(null)", -1, "(null)", "(null)", "(null)", "(null)"},
        {u"a/b?q", "(null)", "(null)", -1, "a/b", "q", "(null)", "b"},
        {u"?", "(null)", "(null)", -1, "", "", "(null)", ""},
        {u"#", "(null)", "(null)", -1, "", "(null)", "", ""},
        {u"//h/p", "(null)", "h", -1, "/p", "(null)", "(null)", "p"},
        {u"", "(null)", "(null)", -1, "", "(null)", "(null)", ""},
        {u"x:", "x", "(null)", -1, "(null)", "(null)", "(null)", "(null)"},
    };
    for (const Row& row : rows) {
        const Ref<NSURL> url = NSURL::URLWithString(text(row.url));
        ASSERT_NE(url, nullptr) << shown(row.url);
        EXPECT_EQ(shown(url->scheme()), row.scheme) << shown(row.url);
        EXPECT_EQ(shown(url->host()), row.host) << shown(row.url);
        EXPECT_EQ(url->port(), row.port) << shown(row.url);
        EXPECT_EQ(shown(url->path()), row.path) << shown(row.url);
        EXPECT_EQ(shown(url->query()), row.query) << shown(row.url);
        EXPECT_EQ(shown(url->fragment()), row.fragment) << shown(row.url);
        EXPECT_EQ(shown(url->lastPathComponent()), row.last) << shown(row.url);
        EXPECT_EQ(absolute(url), shown(row.url));
    }
    const Ref<NSURL> url = NSURL::URLWithString(text(u"http://u:p@q@h"));
    EXPECT_EQ(shown(url->user()), "u");
    EXPECT_EQ(shown(url->password()), "p@q");
    EXPECT_EQ(shown(url->resourceSpecifier()), "//u:p@q@h");
}

TEST(NSURLTest, whatIsNoURLIsNull) {
    for (const char16_t* bad :
         {u"http://a b", u"a%2", u"a%zz", u"%", u"a<b", u"a\"b", u"\u00E9", u"http://h/\u2019", u"http://h:x/",
          u"http://h:70000/", u"http://[::1", u"http://[::1]x/", u"/a[b", u"a#b#c", u"a{b}", u":a", u"1:b", u"a\nb"})
        EXPECT_EQ(NSURL::URLWithString(text(bad)), nullptr) << shown(bad);
    EXPECT_EQ(NSURL::URLWithString(nullptr), nullptr);
    EXPECT_EQ(NSURL::URLWithString_relativeToURL(text(u"a b"), NSURL::URLWithString(text(u"http://h/"))), nullptr);
    EXPECT_EQ(NSURL::fileURLWithPath(nullptr), nullptr);
    EXPECT_EQ(NSURL::fileURLWithPath(text(u"")), nullptr);
}

TEST(NSURLTest, relativeReferencesResolveAsTheStandardSays) {
    const Ref<NSURL> base = NSURL::URLWithString(text(u"http://a/b/c/d;p?q"));
    const char16_t* const rows[][2] = {
        {u"g:h", u"g:h"},
        {u"g", u"http://a/b/c/g"},
        {u"./g", u"http://a/b/c/g"},
        {u"g/", u"http://a/b/c/g/"},
        {u"/g", u"http://a/g"},
        {u"//g", u"http://g"},
        {u"?y", u"http://a/b/c/d;p?y"},
        {u"g?y", u"http://a/b/c/g?y"},
        {u"#s", u"http://a/b/c/d;p?q#s"},
        {u"g#s", u"http://a/b/c/g#s"},
        {u"g?y#s", u"http://a/b/c/g?y#s"},
        {u";x", u"http://a/b/c/;x"},
        {u"", u"http://a/b/c/d;p?q"},
        {u".", u"http://a/b/c/"},
        {u"./", u"http://a/b/c/"},
        {u"..", u"http://a/b/"},
        {u"../g", u"http://a/b/g"},
        {u"../..", u"http://a/"},
        {u"../../g", u"http://a/g"},
        {u"../../../g", u"http://a/g"},
        {u"/../g", u"http://a/g"},
        {u"g.", u"http://a/b/c/g."},
        {u"..g", u"http://a/b/c/..g"},
        {u"./../g", u"http://a/b/g"},
        {u"g/./h", u"http://a/b/c/g/h"},
        {u"g/../h", u"http://a/b/c/h"},
        {u"g?y/../x", u"http://a/b/c/g?y/../x"},
    };
    for (const auto& [reference, resolved] : rows) {
        const Ref<NSURL> url = NSURL::URLWithString_relativeToURL(text(reference), base);
        EXPECT_EQ(absolute(url), shown(resolved)) << shown(reference);
        EXPECT_EQ(shown(url->relativeString()), shown(reference));
    }
    EXPECT_EQ(absolute(NSURL::URLWithString_relativeToURL(text(u"x"), NSURL::URLWithString(text(u"http://h")))),
              "http://h/x");
    const Ref<NSURL> relative = NSURL::URLWithString_relativeToURL(text(u"g"), base);
    EXPECT_EQ(relative->baseURL(), base.get());
    EXPECT_TRUE(relative->isEqual(NSURL::URLWithString(text(u"http://a/b/c/g"))));
    EXPECT_EQ(relative->absoluteURL()->baseURL(), nullptr);
}

TEST(NSURLTest, fileLocations) {
    const Ref<NSURL> url = NSURL::fileURLWithPath_isDirectory(text(u"/tmp/\u00E9 t%#?;\u00E9.txt"), NO);
    EXPECT_EQ(absolute(url), "file:///tmp/%C3%A9%20t%25%23%3F%3B%C3%A9.txt");
    EXPECT_EQ(shown(url->path()), "/tmp/\\u00E9 t%#?;\\u00E9.txt");
    EXPECT_TRUE(url->isFileURL());
    EXPECT_EQ(shown(url->pathExtension()), "txt");
    EXPECT_EQ(absolute(NSURL::fileURLWithPath(text(u"/"))), "file:///");
    EXPECT_EQ(absolute(NSURL::fileURLWithPath_isDirectory(text(u"/x"), YES)), "file:///x/");
    EXPECT_TRUE(NSURL::fileURLWithPath_isDirectory(text(u"/x"), YES)->hasDirectoryPath());
    EXPECT_TRUE(NSURL::fileURLWithPath(text(u"relatif"))->path()->hasPrefix(text(u"/")));
    EXPECT_FALSE(NSURL::URLWithString(text(u"http://file/"))->isFileURL());
}

TEST(NSURLTest, pathsGrowAndShrink) {
    const auto url = [](const char16_t* s) { return NSURL::URLWithString(text(s)); };
    EXPECT_EQ(absolute(url(u"http://h/a?q#f")->URLByAppendingPathComponent(text(u"b c"))), "http://h/a/b%20c?q#f");
    EXPECT_EQ(absolute(url(u"http://h")->URLByAppendingPathComponent(text(u"/b"))), "http://h/b");
    EXPECT_EQ(absolute(url(u"http://h/a/")->URLByAppendingPathExtension(text(u"x"))), "http://h/a.x/");
    EXPECT_EQ(absolute(url(u"http://h/a/b.c")->URLByDeletingLastPathComponent()), "http://h/a/");
    EXPECT_EQ(absolute(url(u"http://h/a/b/")->URLByDeletingLastPathComponent()), "http://h/a/");
    EXPECT_EQ(absolute(url(u"http://h/")->URLByDeletingLastPathComponent()), "http://h/");
    EXPECT_EQ(absolute(url(u"http://h/a.b/c.d")->URLByDeletingPathExtension()), "http://h/a.b/c");
    EXPECT_EQ(absolute(url(u"http://h/a.b/.c")->URLByDeletingPathExtension()), "http://h/a.b/.c");
}

TEST(NSURLTest, percentEscapes) {
    const Ref<NSString> s = text(u"a b/\u00E9?#%\"<>[]{}|\\^`~");
    const Ref<NSString> escaped = s->stringByAddingPercentEscapesUsingEncoding(NSUTF8StringEncoding);
    EXPECT_EQ(shown(escaped), "a%20b/%C3%A9?%23%25%22%3C%3E%5B%5D%7B%7D%7C%5C%5E%60~");
    EXPECT_TRUE(escaped->stringByReplacingPercentEscapesUsingEncoding(NSUTF8StringEncoding)->isEqual(s));
    EXPECT_EQ(shown(text(u"\u00E9\u20AC")->stringByAddingPercentEscapesUsingEncoding(NSWindowsCP1252StringEncoding)),
              "%E9%80");
    EXPECT_EQ(text(u"\u20AC")->stringByAddingPercentEscapesUsingEncoding(NSISOLatin1StringEncoding), nullptr);
    EXPECT_EQ(text(u"\xD800")->stringByAddingPercentEscapesUsingEncoding(NSUTF8StringEncoding), nullptr);
    EXPECT_EQ(shown(text(u"%E9%80")->stringByReplacingPercentEscapesUsingEncoding(NSWindowsCP1252StringEncoding)),
              "\\u00E9\\u20AC");
    EXPECT_EQ(text(u"%E9")->stringByReplacingPercentEscapesUsingEncoding(NSUTF8StringEncoding), nullptr);
    EXPECT_EQ(text(u"50%")->stringByReplacingPercentEscapesUsingEncoding(NSUTF8StringEncoding), nullptr);

    EXPECT_EQ(
        shown(CFURLCreateStringByAddingPercentEscapes(text(u"a#b c/d"), text(u"#"), text(u"/"), kCFStringEncodingUTF8)),
        "a#b%20c%2Fd");
    EXPECT_EQ(shown(CFURLCreateStringByReplacingPercentEscapes(text(u"a%20b%2F%C3%A9"), text(u""))), "a b/\\u00E9");
    EXPECT_EQ(shown(CFURLCreateStringByReplacingPercentEscapes(text(u"a%20b%2F"), text(u"/"))), "a b%2F");
    EXPECT_EQ(shown(CFURLCreateStringByReplacingPercentEscapes(text(u"a%20b"), nullptr)), "a%20b");
    EXPECT_EQ(CFURLCreateStringByReplacingPercentEscapes(text(u"a%2"), text(u"")), nullptr);
}

#include <cstdlib>
#include <pwd.h>
#include <string>
#include <unistd.h>

#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/StringBuilder.h>

namespace libvue {

namespace {

/// The end of the path without the slashes behind it; the root keeps its own.
NSUInteger endWithoutSlashes(const NSString& s) noexcept {
    NSUInteger end = s.length();
    while (end > 1 && s.unit(end - 1) == '/')
        --end;
    return end;
}

/// Where the last component begins.
NSUInteger lastStart(const NSString& s, NSUInteger end) noexcept {
    if (end == 1 && s.unit(0) == '/') return 0;
    NSUInteger start = end;
    while (start > 0 && s.unit(start - 1) != '/')
        --start;
    return start;
}

/// The place of the extension's dot, or `end` where there is no extension: a dot that begins the component begins none.
NSUInteger extensionDot(const NSString& s, NSUInteger start, NSUInteger end) noexcept {
    for (NSUInteger i = end; i > start + 1; --i)
        if (s.unit(i - 1) == '.') return i - 1;
    return end;
}

std::string homeOf(const std::string& user) {
    if (user.empty()) {
        if (const char* home = std::getenv("HOME"); home && *home) return home;
        const passwd* entry = ::getpwuid(::getuid());
        return entry && entry->pw_dir ? entry->pw_dir : "";
    }
    const passwd* entry = ::getpwnam(user.c_str());
    return entry && entry->pw_dir ? entry->pw_dir : "";
}

} // namespace

Ref<NSString> NSString::lastPathComponent() const {
    const NSUInteger end = endWithoutSlashes(*this);
    const NSUInteger start = lastStart(*this, end);
    return substringWithRange({start, end - start});
}

Ref<NSString> NSString::pathExtension() const {
    const NSUInteger end = endWithoutSlashes(*this);
    const NSUInteger dot = extensionDot(*this, lastStart(*this, end), end);
    return dot == end ? string() : substringWithRange({dot + 1, end - dot - 1});
}

Ref<NSString> NSString::stringByDeletingLastPathComponent() const {
    NSUInteger start = lastStart(*this, endWithoutSlashes(*this));
    if (start == 0) return length_ && unit(0) == '/' ? from(u"/") : string();
    while (start > 1 && unit(start - 1) == '/')
        --start;
    return substringToIndex(start);
}

Ref<NSString> NSString::stringByDeletingPathExtension() const {
    const NSUInteger end = endWithoutSlashes(*this);
    return substringToIndex(extensionDot(*this, lastStart(*this, end), end));
}

Ref<NSString> NSString::stringByAppendingPathComponent(const NSString* s) const {
    if (!s) raiseNamed(NSInvalidArgumentException, "stringByAppendingPathComponent: a text is needed");
    const NSUInteger end = endWithoutSlashes(*this);
    StringBuilder out(length_ + s->length() + 1);
    out.append(this, 0, end);
    NSUInteger first = 0;
    while (first < s->length() && s->unit(first) == '/')
        ++first;
    // An empty path takes the component as it is, an absolute one too.
    if (length_ == 0) first = 0;
    const NSUInteger last = endWithoutSlashes(*s);
    if (last > first) {
        if (length_ && !(end == 1 && unit(0) == '/')) out.append('/');
        out.append(s, first, last - first);
    }
    return out.build();
}

Ref<NSString> NSString::stringByAppendingPathExtension(const NSString* s) const {
    if (!s) raiseNamed(NSInvalidArgumentException, "stringByAppendingPathExtension: a text is needed");
    const NSUInteger end = endWithoutSlashes(*this);
    StringBuilder out(length_ + s->length() + 1);
    out.append(this, 0, end);
    if (end && !(end == 1 && unit(0) == '/')) {
        out.append('.');
        out.append(s);
    }
    return out.build();
}

Ref<NSString> NSString::stringByExpandingTildeInPath() const {
    if (length_ == 0 || unit(0) != '~') return immutable();
    NSUInteger end = 1;
    while (end < length_ && unit(end) != '/')
        ++end;
    std::string home = homeOf(substringWithRange({1, end - 1})->utf8());
    if (home.empty()) return immutable();
    while (home.size() > 1 && home.back() == '/')
        home.pop_back();
    StringBuilder out;
    out.appendUTF8(home);
    out.append(this, end, length_ - end);
    return out.build();
}

} // namespace libvue

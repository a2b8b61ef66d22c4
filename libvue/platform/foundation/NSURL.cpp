#include <libvue/platform/foundation/NSURL.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

#include <libvue/platform/foundation/AsciiDigits.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/PercentEscapes.h>

namespace libvue {

namespace {

const ClassRegistration<NSURL> registration;

using detail::isDigit;

bool isLetter(char c) noexcept { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isSchemeTail(char c) noexcept { return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.'; }

/// The length of the scheme before its colon; npos where there is none.
std::size_t schemeLength(std::string_view s) noexcept {
    if (s.empty() || !isLetter(s[0])) return s.npos;
    const std::size_t end = static_cast<std::size_t>(std::find_if_not(s.begin(), s.end(), isSchemeTail) - s.begin());
    return end < s.size() && s[end] == ':' ? end : s.npos;
}

/// Where the authority ends that begins at `from`.
std::size_t authorityEnd(std::string_view s, std::size_t from) noexcept {
    return std::min(s.find_first_of("/?#", from), s.size());
}

/// Takes "." and ".." out of a path, as resolving asks.
std::string withoutDots(std::string_view path) {
    std::string out;
    while (!path.empty()) {
        if (path.starts_with("../"))
            path.remove_prefix(3);
        else if (path.starts_with("./"))
            path.remove_prefix(2);
        else if (path.starts_with("/./"))
            path.remove_prefix(2);
        else if (path == "/.")
            path = "/";
        else if (path.starts_with("/../") || path == "/..") {
            path = path == "/.." ? std::string_view("/") : path.substr(3);
            out.resize(out.rfind('/') == out.npos ? 0 : out.rfind('/'));
        } else if (path == "." || path == "..")
            path = {};
        else {
            const std::size_t end = std::min(path.find('/', 1), path.size());
            out.append(path.substr(0, end));
            path.remove_prefix(end);
        }
    }
    return out;
}

bool isFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string currentFolder() {
    char* path = ::getcwd(nullptr, 0);
    if (!path) return "/";
    std::string folder(path);
    std::free(path);
    return folder;
}

constexpr const char* archiveKey = "NS.relative";

} // namespace

void NSURL::describe(ClassDescription<NSURL>&) {}
NSURL::NSURL() = default;
NSURL::~NSURL() = default;

NSURL::NSURL(NSCoder& coder) {
    const Ref<NSString> s = coder.allowsKeyedCoding()
                                ? coder.decodeObjectOf_forKey<NSString>(NSString::fromLatin1(archiveKey))
                                : coder.decodeObjectOf<NSString>();
    absolute_ = s ? NSString::stringWithString(s) : NSString::string();
    if (!parse()) {
        absolute_ = NSString::string();
        parse();
    }
    relative_ = absolute_;
}

void NSURL::encodeWithCoder(NSCoder& coder) const {
    if (coder.allowsKeyedCoding())
        coder.encodeObject_forKey(absolute_, NSString::fromLatin1(archiveKey));
    else
        coder.encodeObject(absolute_);
}

// Reading

bool NSURL::parse() {
    scheme_ = user_ = password_ = host_ = path_ = query_ = fragment_ = Piece();
    port_ = -1;
    if (!absolute_->latin1Contents() && absolute_->length()) return false;
    const std::string_view s(reinterpret_cast<const char*>(absolute_->latin1Contents()), absolute_->length());
    if (!detail::isEscapedProperly(s)) return false;
    std::size_t i = 0;
    if (const std::size_t length = schemeLength(s); length != s.npos) {
        scheme_ = {0, length};
        i = length + 1;
    } else if (const std::size_t colon = s.find(':'); colon != s.npos && colon < s.find_first_of("/?#")) {
        return false; // a colon in the first segment would read as a scheme's
    }
    if (s.substr(i).starts_with("//")) {
        i += 2;
        const std::size_t end = authorityEnd(s, i);
        if (const std::size_t at = s.substr(i, end - i).rfind('@'); at != s.npos) {
            const std::size_t colon = s.substr(i, at).find(':');
            user_ = {i, std::min(colon, at)};
            if (colon != s.npos) password_ = {i + colon + 1, at - colon - 1};
            i += at + 1;
        }
        std::size_t hostEnd;
        if (i < end && s[i] == '[') {
            const std::size_t closing = s.substr(i, end - i).find(']');
            if (closing == s.npos) return false;
            host_ = {i + 1, closing - 1};
            hostEnd = i + closing + 1;
            if (hostEnd < end && s[hostEnd] != ':') return false;
        } else {
            hostEnd = std::min(s.find(':', i), end);
            host_ = {i, hostEnd - i};
        }
        if (hostEnd < end) {
            std::int64_t port = hostEnd + 1 < end ? 0 : -1;
            for (std::size_t k = hostEnd + 1; k < end; ++k) {
                if (!isDigit(s[k])) return false;
                port = port * 10 + (s[k] - '0');
                if (port > 65535) return false;
            }
            port_ = port;
        }
        i = end;
    }
    const std::size_t pathEnd = std::min(s.find_first_of("?#", i), s.size());
    path_ = {i, pathEnd - i};
    // Brackets belong to the host alone.
    if (s.find_first_of("[]", i) < s.size()) return false;
    i = pathEnd;
    if (i < s.size() && s[i] == '?') {
        const std::size_t end = std::min(s.find('#', i), s.size());
        query_ = {i + 1, end - i - 1};
        i = end;
    }
    if (i < s.size()) {
        fragment_ = {i + 1, s.size() - i - 1};
        if (s.find('#', i + 1) != s.npos) return false;
    }
    return true;
}

std::string NSURL::text(const Piece& p) const {
    return p.present() ? absolute_->substringWithRange({p.from, p.length})->utf8() : std::string();
}

Ref<NSString> NSURL::piece(const Piece& p) const {
    return p.present() ? absolute_->substringWithRange({p.from, p.length}) : nullptr;
}

std::string NSURL::resolve(const std::string& reference) const {
    if (schemeLength(reference) != std::string::npos) return reference;
    const std::string scheme = scheme_.present() ? text(scheme_) + ":" : std::string();
    if (reference.starts_with("//")) return scheme + reference;
    const std::string start = absolute_->substringToIndex(path_.from)->utf8();
    const std::string own = text(path_);
    const std::size_t pathEnd = std::min(reference.find_first_of("?#"), reference.size());
    std::string path = reference.substr(0, pathEnd), rest = reference.substr(pathEnd);
    if (path.empty()) {
        if (!rest.starts_with('?') && query_.present()) rest = "?" + text(query_) + rest;
        return start + own + rest;
    }
    if (!path.starts_with('/')) {
        const std::size_t slash = own.rfind('/');
        if (slash != own.npos)
            path = own.substr(0, slash + 1) + path;
        else if (host_.present())
            path = "/" + path;
    }
    return start + withoutDots(path) + rest;
}

Ref<NSURL> NSURL::ofStrings(Ref<NSString> absolute, Ref<NSString> relative, const NSURL* base) {
    (void)classOf<NSURL>();
    Ref<NSURL> url = adopt(new NSURL());
    url->absolute_ = std::move(absolute);
    url->relative_ = std::move(relative);
    url->base_ = const_cast<NSURL*>(base);
    return url->parse() ? url : nullptr;
}

Ref<NSURL> NSURL::URLWithString_relativeToURL(const NSString* s, const NSURL* base) {
    if (!s) return nullptr;
    const Ref<NSString> given = NSString::stringWithString(s);
    // What is relative must be well formed before it is joined to anything.
    Ref<NSURL> alone = ofStrings(given, given, nullptr);
    if (!alone || !base || alone->scheme_.present()) return alone;
    return ofStrings(NSString::fromUTF8(base->resolve(s->utf8())), given, base);
}

Ref<NSURL> NSURL::fileURLWithPath(const NSString* path) {
    if (!path || path->length() == 0) return nullptr;
    const Ref<NSString> expanded = path->stringByExpandingTildeInPath();
    return fileURLWithPath_isDirectory(expanded, isFolder(expanded->utf8()));
}

Ref<NSURL> NSURL::fileURLWithPath_isDirectory(const NSString* path, BOOL isDirectory) {
    if (!path || path->length() == 0) return nullptr;
    std::string bytes = path->stringByExpandingTildeInPath()->utf8();
    if (!bytes.starts_with('/')) bytes = currentFolder() + "/" + bytes;
    if (isDirectory && !bytes.ends_with('/')) bytes += '/';
    const Ref<NSString> s = NSString::fromLatin1("file://" + detail::escapedPath(bytes));
    return ofStrings(s, s, nullptr);
}

Ref<NSURL> NSURL::absoluteURL() const {
    return base_ ? ofStrings(absolute_, absolute_, nullptr) : Ref<NSURL>(const_cast<NSURL*>(this));
}

Ref<NSString> NSURL::scheme() const { return piece(scheme_); }
Ref<NSString> NSURL::user() const { return piece(user_); }
Ref<NSString> NSURL::password() const { return piece(password_); }
Ref<NSString> NSURL::query() const { return piece(query_); }
Ref<NSString> NSURL::fragment() const { return piece(fragment_); }

Ref<NSString> NSURL::host() const { return host_.length ? piece(host_) : nullptr; }

Ref<NSString> NSURL::path() const {
    std::string path = escapedPath();
    // "mailto:someone" has no path in the sense of folders.
    if (scheme_.present() && !host_.present() && !path.starts_with('/')) return nullptr;
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    std::string bytes;
    if (!detail::unescape(path, bytes)) return piece(path_);
    return NSString::fromUTF8(bytes);
}

std::string NSURL::escapedPath() const { return text(path_); }

Ref<NSString> NSURL::resourceSpecifier() const {
    return scheme_.present() ? absolute_->substringFromIndex(scheme_.length + 1) : Ref<NSString>(absolute_);
}

Ref<NSString> NSURL::lastPathComponent() const {
    const Ref<NSString> p = path();
    return p ? p->lastPathComponent() : nullptr;
}

Ref<NSString> NSURL::pathExtension() const {
    const Ref<NSString> p = path();
    return p ? p->pathExtension() : nullptr;
}

BOOL NSURL::isFileURL() const noexcept {
    return scheme_.length == 4 && scheme_.present() && (absolute_->unit(0) | 0x20) == 'f' &&
           (absolute_->unit(1) | 0x20) == 'i' && (absolute_->unit(2) | 0x20) == 'l' &&
           (absolute_->unit(3) | 0x20) == 'e';
}

BOOL NSURL::hasDirectoryPath() const noexcept {
    return path_.length > 0 && absolute_->unit(path_.from + path_.length - 1) == '/';
}

// Deriving

Ref<NSURL> NSURL::withPath(const std::string& path) const {
    const std::string all = absolute_->utf8();
    const Ref<NSString> s =
        NSString::fromUTF8(all.substr(0, path_.from) + path + all.substr(path_.from + path_.length));
    return ofStrings(s, s, nullptr);
}

Ref<NSURL> NSURL::URLByAppendingPathComponent(const NSString* component) const {
    if (!component) return nullptr;
    std::string path = escapedPath(), added = detail::escapedPath(component->utf8());
    while (added.starts_with('/'))
        added.erase(0, 1);
    if (!path.ends_with('/') && !(path.empty() && !host_.present())) path += '/';
    path += added;
    if (isFileURL() && !path.ends_with('/')) {
        std::string bytes;
        if (detail::unescape(path, bytes) && isFolder(bytes)) path += '/';
    }
    return withPath(path);
}

Ref<NSURL> NSURL::URLByAppendingPathExtension(const NSString* extension) const {
    std::string path = escapedPath();
    const bool folder = path.size() > 1 && path.ends_with('/');
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    if (!extension || path.empty() || path == "/") return const_cast<NSURL*>(this);
    return withPath(path + "." + detail::escapedPath(extension->utf8()) + (folder ? "/" : ""));
}

Ref<NSURL> NSURL::URLByDeletingLastPathComponent() const {
    std::string path = escapedPath();
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    if (path == "/") return const_cast<NSURL*>(this);
    const std::size_t slash = path.rfind('/');
    return withPath(slash == path.npos ? std::string() : path.substr(0, slash + 1));
}

Ref<NSURL> NSURL::URLByDeletingPathExtension() const {
    std::string path = escapedPath();
    const bool folder = path.size() > 1 && path.ends_with('/');
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    const std::size_t slash = path.rfind('/'), dot = path.rfind('.');
    const std::size_t name = slash == path.npos ? 0 : slash + 1;
    if (dot == path.npos || dot <= name) return const_cast<NSURL*>(this);
    return withPath(path.substr(0, dot) + (folder ? "/" : ""));
}

BOOL NSURL::isEqual(const NSObject* other) const {
    if (other == this) return YES;
    const auto* url = dynamic_cast<const NSURL*>(other);
    return url && absolute_->isEqualToString(url->absolute_);
}

NSUInteger NSURL::hash() const { return absolute_->hash(); }
Ref<NSString> NSURL::description() const { return absolute_; }
Ref<NSObject> NSURL::copyWithZone() const { return const_cast<NSURL*>(this); }

} // namespace libvue

#pragma once

#include <cstdint>
#include <string>

#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

/// The place of a resource: a URI as RFC 3986 writes it. Immutable. Parts that are missing are null.
class LIBVUE_API NSURL : public NSObject {
public:
    static void describe(ClassDescription<NSURL>& c);
    ~NSURL() override;

    /// Null where the text is no URL: a character that must be escaped, a broken escape, a bad port.
    [[nodiscard]] static Ref<NSURL> URLWithString(const NSString* s) { return URLWithString_relativeToURL(s, nullptr); }
    /// `s` is resolved against `base` (may be null, which leaves a relative `s` relative).
    [[nodiscard]] static Ref<NSURL> URLWithString_relativeToURL(const NSString* s, const NSURL* base);
    /// A relative path stands below the current folder. A path that is a folder gets its slash. Null and "" give null.
    [[nodiscard]] static Ref<NSURL> fileURLWithPath(const NSString* path);
    [[nodiscard]] static Ref<NSURL> fileURLWithPath_isDirectory(const NSString* path, BOOL isDirectory);

    [[nodiscard]] NSString* absoluteString() const noexcept { return absolute_; }
    /// As it was given, before it was resolved.
    [[nodiscard]] NSString* relativeString() const noexcept { return relative_; }
    [[nodiscard]] NSURL* baseURL() const noexcept { return base_; }
    [[nodiscard]] Ref<NSURL> absoluteURL() const;
    [[nodiscard]] Ref<NSString> scheme() const;
    [[nodiscard]] Ref<NSString> user() const;
    [[nodiscard]] Ref<NSString> password() const;
    [[nodiscard]] Ref<NSString> host() const;
    /// -1 where there is none.
    [[nodiscard]] NSInteger port() const noexcept { return port_; }
    /// Without escapes, and without the slash at its end.
    [[nodiscard]] Ref<NSString> path() const;
    /// Still escaped, like fragment().
    [[nodiscard]] Ref<NSString> query() const;
    [[nodiscard]] Ref<NSString> fragment() const;
    /// What follows the scheme's colon.
    [[nodiscard]] Ref<NSString> resourceSpecifier() const;
    [[nodiscard]] Ref<NSString> lastPathComponent() const;
    [[nodiscard]] Ref<NSString> pathExtension() const;
    [[nodiscard]] BOOL isFileURL() const noexcept;
    [[nodiscard]] BOOL hasDirectoryPath() const noexcept;

    [[nodiscard]] Ref<NSURL> URLByAppendingPathComponent(const NSString* component) const;
    [[nodiscard]] Ref<NSURL> URLByAppendingPathExtension(const NSString* extension) const;
    [[nodiscard]] Ref<NSURL> URLByDeletingLastPathComponent() const;
    [[nodiscard]] Ref<NSURL> URLByDeletingPathExtension() const;

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSString> description() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;
    /// A damaged archive gives the empty URL.
    explicit NSURL(NSCoder& coder);

private:
    NSURL();
    /// A piece of absolute_; `from` is NSNotFound where the part is missing.
    struct Piece {
        NSUInteger from = static_cast<NSUInteger>(NSNotFound);
        NSUInteger length = 0;
        [[nodiscard]] bool present() const noexcept { return from != static_cast<NSUInteger>(NSNotFound); }
    };
    /// Finds the pieces of absolute_; false where it is no URL.
    bool parse();
    static Ref<NSURL> ofStrings(Ref<NSString> absolute, Ref<NSString> relative, const NSURL* base);
    [[nodiscard]] std::string resolve(const std::string& reference) const;
    [[nodiscard]] std::string text(const Piece& p) const;
    [[nodiscard]] Ref<NSString> piece(const Piece& p) const;
    [[nodiscard]] Ref<NSURL> withPath(const std::string& path) const;
    [[nodiscard]] std::string escapedPath() const;

    Ref<NSString> absolute_;
    Ref<NSString> relative_;
    Ref<NSURL> base_;
    Piece scheme_, user_, password_, host_, path_, query_, fragment_;
    NSInteger port_ = -1;
};

/// The numbers that the operations below go by for encodings, which are others than NSString's.
enum CFStringEncoding : std::uint32_t { kCFStringEncodingUTF8 = 0x8000100 };

/// Escapes what a URL may not hold, in the bytes of `encoding`. Characters of `leave` (may be null) stay as they are,
/// those of `alsoEscape` (may be null) are escaped although they are legal. Null where the text has no such bytes, and
/// for an encoding that is not named above.
[[nodiscard]] LIBVUE_API Ref<NSString> CFURLCreateStringByAddingPercentEscapes(const NSString* s, const NSString* leave,
                                                                               const NSString* alsoEscape,
                                                                               CFStringEncoding encoding);
/// Takes the escapes away, but those of the ASCII characters of `leaveEscaped`: "" takes all away, null none. Null
/// where an escape is broken or the bytes are no UTF-8.
[[nodiscard]] LIBVUE_API Ref<NSString> CFURLCreateStringByReplacingPercentEscapes(const NSString* s,
                                                                                  const NSString* leaveEscaped);

} // namespace libvue

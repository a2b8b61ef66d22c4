#pragma once

#include <cstdarg>
#include <string>
#include <string_view>

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

namespace detail {
struct DocumentObjects;
}

/// How text lies in bytes. What an encoding lacks makes a conversion answer null.
enum NSStringEncoding : NSUInteger {
    NSASCIIStringEncoding = 1,
    NSUTF8StringEncoding = 4,
    NSISOLatin1StringEncoding = 5,
    NSUTF16StringEncoding = 10,
    NSWindowsCP1252StringEncoding = 12,
    NSMacOSRomanStringEncoding = 30,
    NSUTF16BigEndianStringEncoding = 0x90000100,
    NSUTF16LittleEndianStringEncoding = 0x94000100
};

/// How texts are compared and searched; they combine.
enum NSStringCompareOptions : NSUInteger {
    NSCaseInsensitiveSearch = 1,
    NSLiteralSearch = 2,
    NSBackwardsSearch = 4,
    NSAnchoredSearch = 8,
    NSNumericSearch = 64,
    NSDiacriticInsensitiveSearch = 128,
    NSWidthInsensitiveSearch = 256,
    NSForcedOrderingSearch = 512
};

/// A text: immutable and shared, indexed by UTF-16 unit. Stored as 8-bit while all units fit in Latin-1, as UTF-16
/// otherwise; the units stand behind the object in the same block.
///
/// An index or a range out of the text raises NSRangeException. Lone surrogates are kept as they are.
class LIBVUE_API NSString : public NSObject {
public:
    static void describe(ClassDescription<NSString>& c);
    ~NSString() override;

    // Making. Text is UTF-16 or UTF-8; ill-formed UTF-8 gives null from initWithBytes… and U+FFFD from fromUTF8.

    [[nodiscard]] static Ref<NSString> string();
    [[nodiscard]] static Ref<NSString> stringWithString(const NSString* s);
    [[nodiscard]] static Ref<NSString> stringWithCharacters_length(const unichar* units, NSUInteger length);
    [[nodiscard]] static Ref<NSString> from(std::u16string_view units);
    [[nodiscard]] static Ref<NSString> fromLatin1(std::string_view bytes);
    [[nodiscard]] static Ref<NSString> fromUTF8(std::string_view bytes);
    /// Null where the bytes are not of that encoding.
    [[nodiscard]] static Ref<NSString> initWithBytes_length_encoding(const void* bytes, NSUInteger length,
                                                                     NSStringEncoding encoding);
    [[nodiscard]] static Ref<NSString> initWithData_encoding(NSData* data, NSStringEncoding encoding);
    [[nodiscard]] static Ref<NSString> stringWithUTF8String(const char* bytes);
    /// %@ takes an NSObject* (null prints "(null)"), %d %i %u %x %X %o %c %s %C %S %f %e %g %a %p %% with flags, width,
    /// precision, h l ll q z t j lengths and positions (%1$@). Passing a Ref through the dots is not possible: pass
    /// `.get()`.
    [[nodiscard]] static Ref<NSString> stringWithFormat(const NSString* format, ...);
    [[nodiscard]] static Ref<NSString> initWithFormat_arguments(const NSString* format, va_list arguments);
    /// The text of a file, UTF-8, or UTF-16 with its mark; null and `error` filled where it cannot be read.
    [[nodiscard]] static Ref<NSString>
    stringWithContentsOfFile_encoding_error(const NSString* path, NSStringEncoding encoding, Ref<NSError>* error);
    [[nodiscard]] static Ref<NSString>
    stringWithContentsOfURL_usedEncoding_error(NSURL* url, NSStringEncoding* encoding, Ref<NSError>* error);

    // Reading.

    [[nodiscard]] NSUInteger length() const noexcept { return length_; }
    [[nodiscard]] unichar characterAtIndex(NSUInteger i) const {
        if (i >= length_) raiseOutOfRange(i);
        return unit(i);
    }
    /// The unit at an index that is known to be good.
    [[nodiscard]] unichar unit(NSUInteger i) const noexcept { return wide_ ? units16()[i] : units8()[i]; }
    void getCharacters(unichar* buffer) const { getCharacters_range(buffer, {0, length_}); }
    void getCharacters_range(unichar* buffer, NSRange range) const;
    /// The UTF-16 storage, or null where the text is stored as 8-bit.
    [[nodiscard]] const unichar* _fastCharacterContents() const noexcept { return wide_ ? units16() : nullptr; }
    /// The 8-bit storage, or null where the text is stored as UTF-16.
    [[nodiscard]] const std::uint8_t* latin1Contents() const noexcept { return wide_ ? nullptr : units8(); }
    /// UTF-8, good as long as the text; lone surrogates become U+FFFD.
    [[nodiscard]] const char* UTF8String() const;
    [[nodiscard]] std::string utf8() const;
    [[nodiscard]] std::u16string utf16() const;
    /// Null where the text cannot be written in that encoding.
    [[nodiscard]] Ref<NSData> dataUsingEncoding(NSStringEncoding encoding) const;
    [[nodiscard]] Ref<NSData> dataUsingEncoding_allowLossyConversion(NSStringEncoding encoding, BOOL lossy) const;
    BOOL writeToFile_atomically_encoding_error(const NSString* path, BOOL atomically, NSStringEncoding encoding,
                                               Ref<NSError>* error) const;

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSString> description() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    [[nodiscard]] Ref<NSObject> mutableCopyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;
    [[nodiscard]] BOOL isEqualToString(const NSString* s) const noexcept;
    [[nodiscard]] BOOL isEqualTo(std::u16string_view units) const noexcept;

    // Comparing. A null argument compares as the empty text.

    [[nodiscard]] NSComparisonResult compare(const NSString* s) const { return compare_options(s, 0); }
    [[nodiscard]] NSComparisonResult compare_options(const NSString* s, NSUInteger options) const;
    [[nodiscard]] NSComparisonResult compare_options_range(const NSString* s, NSUInteger options, NSRange range) const;
    [[nodiscard]] NSComparisonResult caseInsensitiveCompare(const NSString* s) const;
    [[nodiscard]] NSComparisonResult localizedCompare(const NSString* s) const;
    /// The installed comparison where there is one, see installLocalizedCaseInsensitiveCompare.
    [[nodiscard]] NSComparisonResult localizedCaseInsensitiveCompare(const NSString* s) const;
    using Comparison = NSComparisonResult (*)(const NSString*, const NSString*);
    /// Replaces localizedCaseInsensitiveCompare for the whole process; null gives the platform's own back.
    static void installLocalizedCaseInsensitiveCompare(Comparison comparison) noexcept;
    [[nodiscard]] BOOL hasPrefix(const NSString* s) const noexcept;
    [[nodiscard]] BOOL hasSuffix(const NSString* s) const noexcept;

    // Searching. Not found is {NSNotFound, 0}.

    [[nodiscard]] NSRange rangeOfString(const NSString* s) const { return rangeOfString_options(s, 0); }
    [[nodiscard]] NSRange rangeOfString_options(const NSString* s, NSUInteger options) const;
    [[nodiscard]] NSRange rangeOfString_options_range(const NSString* s, NSUInteger options, NSRange range) const;
    [[nodiscard]] NSRange rangeOfCharacterFromSet(const NSCharacterSet* set) const;
    [[nodiscard]] NSRange rangeOfCharacterFromSet_options(const NSCharacterSet* set, NSUInteger options) const;
    [[nodiscard]] NSRange rangeOfCharacterFromSet_options_range(const NSCharacterSet* set, NSUInteger options,
                                                                NSRange range) const;
    /// The user-perceived character that holds the unit.
    [[nodiscard]] NSRange rangeOfComposedCharacterSequenceAtIndex(NSUInteger i) const;
    [[nodiscard]] NSRange lineRangeForRange(NSRange range) const;
    /// Any pointer may be null. Line ends are LF, CR, CRLF, U+0085, U+2028 and U+2029.
    void getLineStart_end_contentsEnd_forRange(NSUInteger* start, NSUInteger* end, NSUInteger* contentsEnd,
                                               NSRange range) const;
    [[nodiscard]] NSRange paragraphRangeForRange(NSRange range) const;

    // Deriving.

    [[nodiscard]] Ref<NSString> substringFromIndex(NSUInteger from) const;
    [[nodiscard]] Ref<NSString> substringToIndex(NSUInteger to) const;
    [[nodiscard]] Ref<NSString> substringWithRange(NSRange range) const;
    [[nodiscard]] Ref<NSString> stringByAppendingString(const NSString* s) const;
    [[nodiscard]] Ref<NSString> stringByAppendingFormat(const NSString* format, ...) const;
    [[nodiscard]] Ref<NSString> stringByReplacingOccurrencesOfString_withString(const NSString* s,
                                                                                const NSString* by) const;
    [[nodiscard]] Ref<NSString> stringByReplacingOccurrencesOfString_withString_options_range(const NSString* s,
                                                                                              const NSString* by,
                                                                                              NSUInteger options,
                                                                                              NSRange range) const;
    [[nodiscard]] Ref<NSString> stringByReplacingCharactersInRange_withString(NSRange range, const NSString* by) const;
    [[nodiscard]] Ref<NSString> stringByTrimmingCharactersInSet(const NSCharacterSet* set) const;
    [[nodiscard]] Ref<NSString>
    stringByPaddingToLength_withString_startingAtIndex(NSUInteger length, const NSString* pad, NSUInteger index) const;
    [[nodiscard]] Ref<NSArray> componentsSeparatedByString(const NSString* separator) const;
    [[nodiscard]] Ref<NSArray> componentsSeparatedByCharactersInSet(const NSCharacterSet* set) const;
    [[nodiscard]] Ref<NSString> lowercaseString() const;
    [[nodiscard]] Ref<NSString> uppercaseString() const;
    [[nodiscard]] Ref<NSString> capitalizedString() const;
    [[nodiscard]] Ref<NSString> decomposedStringWithCanonicalMapping() const;
    [[nodiscard]] Ref<NSString> precomposedStringWithCanonicalMapping() const;
    [[nodiscard]] Ref<NSString> decomposedStringWithCompatibilityMapping() const;
    [[nodiscard]] Ref<NSString> precomposedStringWithCompatibilityMapping() const;
    /// Without case, diacritics or width, as the options say.
    [[nodiscard]] Ref<NSString> stringByFoldingWithOptions(NSUInteger options) const;
    [[nodiscard]] Ref<NSString> stringByAddingPercentEscapesUsingEncoding(NSStringEncoding encoding) const;
    [[nodiscard]] Ref<NSString> stringByReplacingPercentEscapesUsingEncoding(NSStringEncoding encoding) const;

    // Paths.

    [[nodiscard]] Ref<NSString> lastPathComponent() const;
    [[nodiscard]] Ref<NSString> pathExtension() const;
    [[nodiscard]] Ref<NSString> stringByDeletingLastPathComponent() const;
    [[nodiscard]] Ref<NSString> stringByDeletingPathExtension() const;
    [[nodiscard]] Ref<NSString> stringByAppendingPathComponent(const NSString* s) const;
    [[nodiscard]] Ref<NSString> stringByAppendingPathExtension(const NSString* s) const;
    [[nodiscard]] Ref<NSString> stringByExpandingTildeInPath() const;

    // Numbers. Leading white space is skipped; what cannot be read is 0.

    [[nodiscard]] int intValue() const;
    [[nodiscard]] NSInteger integerValue() const;
    [[nodiscard]] double doubleValue() const;
    [[nodiscard]] float floatValue() const;
    [[nodiscard]] BOOL boolValue() const;

    // A text's block is longer than its class says, so no size is handed to the allocator.
    static void* operator new(std::size_t size) { return ::operator new(size); }
    static void* operator new(std::size_t, void* p) noexcept { return p; }
    static void operator delete(void* p) noexcept { ::operator delete(p); }

protected:
    enum class Storage : std::uint8_t { inBlock, mutableBlock };
    NSString(NSUInteger length, bool wide, Storage storage) noexcept
        : length_(static_cast<std::uint32_t>(length)),
          hash_(0),
          wide_(wide),
          external_(0),
          mutable_(storage == Storage::mutableBlock) {}

    [[nodiscard]] const std::uint8_t* units8() const noexcept { return static_cast<const std::uint8_t*>(tail()); }
    [[nodiscard]] const unichar* units16() const noexcept { return static_cast<const unichar*>(tail()); }
    [[noreturn]] void raiseOutOfRange(NSUInteger i) const;
    /// Raises NSRangeException for a range that reaches out of the text.
    void checkRange(NSRange range) const {
        if (range.location > length_ || range.length > length_ - range.location) raiseOutOfRange(range);
    }
    [[noreturn]] void raiseOutOfRange(NSRange range) const;
    /// The text as one that cannot change: itself, or a copy of a mutable one.
    [[nodiscard]] Ref<NSString> immutable() const;
    /// This text with the occurrences within the range replaced, and how many there were.
    [[nodiscard]] Ref<NSString> replacing(const NSString* s, const NSString* by, NSUInteger options, NSRange range,
                                          NSUInteger& count) const;
    /// Forgets what was derived from the units.
    void unitsChanged() noexcept;

    std::uint32_t length_;
    mutable std::uint32_t hash_ : 29; // 0: not computed yet
    std::uint32_t wide_ : 1;
    std::uint32_t external_ : 1; // the units stand at the pointer behind this object's fields
    std::uint32_t mutable_ : 1;  // NSMutableString

private:
    friend class StringBuilder;
    [[nodiscard]] const void* tail() const noexcept {
        const void* behind = reinterpret_cast<const char*>(this) + sizeof(NSString);
        return external_ ? *static_cast<const void* const*>(behind) : behind;
    }
    [[nodiscard]] void* units() noexcept { return const_cast<void*>(tail()); }
    /// A block for `length` units and a final zero; the caller fills it before anyone reads it.
    static NSString* allocate(NSUInteger length, bool wide);
};

/// A text that can change, 8-bit until a unit needs more. A short one stands in the object, a longer one in a buffer
/// that grows.
class LIBVUE_API NSMutableString : public NSString {
public:
    static void describe(ClassDescription<NSMutableString, NSString>& c);
    NSMutableString();
    explicit NSMutableString(const NSString* s);
    ~NSMutableString() override;
    [[nodiscard]] static Ref<NSMutableString> stringWithCapacity(NSUInteger capacity);
    [[nodiscard]] static Ref<NSMutableString> stringWithString(const NSString* s);
    static void* operator new(std::size_t size);
    static void* operator new(std::size_t, void* room) noexcept { return room; }
    static void operator delete(void* object, std::size_t size) noexcept;

    void appendString(const NSString* s);
    void append(std::u16string_view units);
    void appendLatin1(std::string_view bytes);
    void appendCharacter(unichar unit);
    void appendFormat(const NSString* format, ...);
    void setString(const NSString* s);
    void insertString_atIndex(const NSString* s, NSUInteger index);
    void deleteCharactersInRange(NSRange range);
    void replaceCharactersInRange_withString(NSRange range, const NSString* s);
    /// The number of replacements.
    NSUInteger replaceOccurrencesOfString_withString_options_range(const NSString* s, const NSString* by,
                                                                   NSUInteger options, NSRange range);
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

private:
    friend struct detail::DocumentObjects;

    struct Buffer {
        void* units;
        std::size_t capacity;
    };
    // The first field: NSString finds its units here, or the buffer that holds them. A block may be longer than the
    // class says and hold more units than `near_`, as many as the text had when it was made.
    union {
        Buffer buffer_;
        char near_[16];
    };

    [[nodiscard]] std::size_t nearCapacity() const noexcept {
        return (wide_ ? sizeof near_ / sizeof(unichar) : sizeof near_) - 1;
    }
    [[nodiscard]] void* ownUnits() noexcept { return external_ ? buffer_.units : near_; }
    void reserve(std::size_t units);
    void widen();
    void splice(NSRange range, const NSString* s);
};

/// Appends one UTF-16 unit after another.
LIBVUE_API void CFStringAppendCharacters(NSMutableString* s, const unichar* units, NSInteger count);

/// The literal's text; u"…"_ns. The same literal gives a new object at each evaluation unless it is kept in a static.
[[nodiscard]] LIBVUE_API Ref<NSString> operator""_ns(const char16_t* units, std::size_t length);

/// Writes a line to the log: standard error, or the sink that is installed.
LIBVUE_API void NSLog(const NSString* format, ...);
using LogSink = void (*)(const NSString* line, void* context);
/// Null gives standard error back.
LIBVUE_API void installLogSink(LogSink sink, void* context);

} // namespace libvue

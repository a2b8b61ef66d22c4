#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// Atomic: the file takes its place as a whole once it is written.
enum NSDataWritingOptions : NSUInteger { NSDataWritingAtomic = 1 };
/// Breaks the text into lines of that many characters, parted by CR LF; without one it is a single line.
enum NSDataBase64EncodingOptions : NSUInteger {
    NSDataBase64Encoding64CharacterLineLength = 1,
    NSDataBase64Encoding76CharacterLineLength = 2
};
/// Passes over what is no letter of the code, line ends for one; without it such a text is refused.
enum NSDataBase64DecodingOptions : NSUInteger { NSDataBase64DecodingIgnoreUnknownCharacters = 1 };

/// Bytes: immutable and shared.
class LIBVUE_API NSData : public NSObject {
public:
    static void describe(ClassDescription<NSData>& c);
    /// No bytes.
    NSData() = default;
    explicit NSData(NSCoder& coder);
    ~NSData() override;

    [[nodiscard]] static Ref<NSData> data();
    [[nodiscard]] static Ref<NSData> dataWithData(const NSData* other);
    [[nodiscard]] static Ref<NSData> dataWithBytes_length(const void* bytes, NSUInteger length);
    /// Takes bytes that stand elsewhere; with YES, `std::free` gives them back at the end, else they must outlive the
    /// data.
    [[nodiscard]] static Ref<NSData> dataWithBytesNoCopy_length_freeWhenDone(void* bytes, NSUInteger length,
                                                                             BOOL freeWhenDone);
    [[nodiscard]] static Ref<NSData> dataWithBytesNoCopy_length(void* bytes, NSUInteger length) {
        return dataWithBytesNoCopy_length_freeWhenDone(bytes, length, YES);
    }
    [[nodiscard]] static Ref<NSData> from(std::string_view bytes);
    /// Null where the file cannot be read; `error` (may be null) then tells why.
    [[nodiscard]] static Ref<NSData> dataWithContentsOfFile(const NSString* path) {
        return dataWithContentsOfFile_options_error(path, 0, nullptr);
    }
    [[nodiscard]] static Ref<NSData> dataWithContentsOfFile_options_error(const NSString* path, NSUInteger options,
                                                                          Ref<NSError>* error);
    /// File locations only.
    [[nodiscard]] static Ref<NSData> dataWithContentsOfURL(const NSURL* url) {
        return dataWithContentsOfURL_options_error(url, 0, nullptr);
    }
    [[nodiscard]] static Ref<NSData> dataWithContentsOfURL_options_error(const NSURL* url, NSUInteger options,
                                                                         Ref<NSError>* error);
    /// Null where the text is no base64; white space between the characters is one of those faults unless it is
    /// ignored.
    [[nodiscard]] static Ref<NSData> initWithBase64EncodedString_options(const NSString* s, NSUInteger options);

    /// Null may come back for no bytes.
    [[nodiscard]] const void* bytes() const noexcept { return bytes_; }
    [[nodiscard]] NSUInteger length() const noexcept { return length_; }
    [[nodiscard]] std::string_view view() const noexcept { return {static_cast<const char*>(bytes_), length_}; }
    /// Ranges out of the data raise NSRangeException.
    void getBytes_range(void* buffer, NSRange range) const;
    /// At most `length` bytes from the start.
    void getBytes_length(void* buffer, NSUInteger length) const;
    [[nodiscard]] Ref<NSData> subdataWithRange(NSRange range) const;
    /// Where `part` stands within the range; {NSNotFound, 0} where it does not. Options: backwards and anchored.
    [[nodiscard]] NSRange rangeOfData_options_range(const NSData* part, NSUInteger options, NSRange range) const;
    [[nodiscard]] Ref<NSString> base64EncodedStringWithOptions(NSUInteger options) const;

    /// With YES the file is replaced at once, through a neighbour that is renamed.
    BOOL writeToFile_atomically(const NSString* path, BOOL atomically) const {
        return writeToFile_options_error(path, atomically ? NSUInteger{NSDataWritingAtomic} : 0, nullptr);
    }
    BOOL writeToFile_options_error(const NSString* path, NSUInteger options, Ref<NSError>* error) const;
    BOOL writeToURL_atomically(const NSURL* url, BOOL atomically) const;

    [[nodiscard]] BOOL isEqualToData(const NSData* other) const noexcept;
    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    /// "<48656c6c 6f>".
    [[nodiscard]] Ref<NSString> description() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    [[nodiscard]] Ref<NSObject> mutableCopyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;

protected:
    void checkRange(NSRange range) const;

    void* bytes_ = nullptr;
    NSUInteger length_ = 0;
    bool owned_ = true; // from malloc, freed at the end
};

/// Bytes that can change.
class LIBVUE_API NSMutableData : public NSData {
public:
    static void describe(ClassDescription<NSMutableData, NSData>& c);
    NSMutableData() = default;
    explicit NSMutableData(NSCoder& coder);
    /// A copy of the bytes; null gives none.
    explicit NSMutableData(const NSData* other);
    [[nodiscard]] static Ref<NSMutableData> data();
    [[nodiscard]] static Ref<NSMutableData> dataWithCapacity(NSUInteger capacity);
    /// That many zero bytes.
    [[nodiscard]] static Ref<NSMutableData> dataWithLength(NSUInteger length);

    [[nodiscard]] void* mutableBytes() noexcept { return bytes_; }
    /// New bytes are zero.
    void setLength(NSUInteger length);
    void increaseLengthBy(NSUInteger extra);
    void appendBytes_length(const void* bytes, NSUInteger length);
    void appendData(const NSData* other);
    void setData(const NSData* other);
    /// The range may start at the end; bytes beyond the end are added.
    void replaceBytesInRange_withBytes(NSRange range, const void* bytes);
    void replaceBytesInRange_withBytes_length(NSRange range, const void* bytes, NSUInteger length);
    void resetBytesInRange(NSRange range);
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

private:
    void reserve(NSUInteger capacity);
    NSUInteger capacity_ = 0;
};

} // namespace libvue

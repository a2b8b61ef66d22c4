#include <bit>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include <unicode/ucnv.h>

#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/NSURL.h>
#include <libvue/platform/foundation/StringUnits.h>

namespace libvue {

namespace {

// Codes of the domain NSCocoaErrorDomain.
constexpr NSInteger readInapplicableEncoding = 261;
constexpr NSInteger readUnsupportedScheme = 262;
constexpr NSInteger writeInapplicableEncoding = 517;

constexpr bool littleEndianHost = std::endian::native == std::endian::little;

unichar swapped(unichar c) noexcept { return static_cast<unichar>(c << 8 | c >> 8); }

Ref<NSString> fromUTF16Bytes(std::string_view bytes, bool littleEndian) {
    if (bytes.size() % 2) return nullptr;
    std::u16string units(bytes.size() / 2, u'\0');
    if (!bytes.empty()) std::memcpy(units.data(), bytes.data(), bytes.size());
    if (littleEndian != littleEndianHost)
        for (unichar& c : units)
            c = swapped(c);
    return NSString::from(units);
}

struct CloseConverter {
    void operator()(UConverter* c) const noexcept { ucnv_close(c); }
};
using Converter = std::unique_ptr<UConverter, CloseConverter>;

/// Null for an encoding that is unknown.
Converter openConverter(NSStringEncoding encoding) {
    const char* name = nullptr;
    if (encoding == NSWindowsCP1252StringEncoding) name = "windows-1252";
    if (encoding == NSMacOSRomanStringEncoding) name = "macintosh";
    if (!name) return nullptr;
    UErrorCode status = U_ZERO_ERROR;
    Converter c(ucnv_open(name, &status));
    if (U_FAILURE(status)) return nullptr;
    ucnv_setToUCallBack(c.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    ucnv_setFromUCallBack(c.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    ucnv_setFallback(c.get(), false);
    return c;
}

bool isLatin(NSStringEncoding encoding) {
    return encoding == NSASCIIStringEncoding || encoding == NSISOLatin1StringEncoding;
}

/// The bytes of texts in one 8-bit encoding, character by character.
class ByteWriter {
public:
    explicit ByteWriter(NSStringEncoding encoding) : encoding_(encoding), converter_(openConverter(encoding)) {}
    [[nodiscard]] bool usable() const noexcept { return converter_ || isLatin(encoding_); }

    /// False where the encoding has no such character.
    bool write(std::u16string_view character, std::string& out) {
        if (isLatin(encoding_)) {
            const unichar limit = encoding_ == NSASCIIStringEncoding ? 0x7F : 0xFF;
            if (character.size() != 1 || character[0] > limit) return false;
            out.push_back(static_cast<char>(character[0]));
            return true;
        }
        char bytes[8];
        UErrorCode status = U_ZERO_ERROR;
        const std::int32_t size = ucnv_fromUChars(converter_.get(), bytes, sizeof bytes, character.data(),
                                                  static_cast<std::int32_t>(character.size()), &status);
        if (U_FAILURE(status) || size <= 0) return false;
        out.append(bytes, static_cast<std::size_t>(size));
        return true;
    }

private:
    NSStringEncoding encoding_;
    Converter converter_;
};

/// False where a character has no bytes and may not be replaced. A letter with an accent that is missing loses its
/// accent.
bool writeBytes(const NSString& s, NSStringEncoding encoding, BOOL lossy, std::string& out) {
    ByteWriter writer(encoding);
    if (!writer.usable()) return false;
    const detail::WideUnits units(s);
    out.reserve(units.size());
    for (std::size_t i = 0; i < units.size();) {
        const std::size_t from = i;
        (void)detail::nextCodePoint(units.data(), units.size(), i);
        const std::u16string_view character = units.view().substr(from, i - from);
        if (writer.write(character, out)) continue;
        if (!lossy) return false;
        const Ref<NSString> bare = NSString::from(character)->decomposedStringWithCompatibilityMapping();
        const unichar base = bare->length() ? bare->unit(0) : u'?';
        if (character.size() == 1 && base == character[0])
            out.push_back('?');
        else if (!writer.write({&base, 1}, out))
            out.push_back('?');
    }
    return true;
}

std::string utf16Bytes(const NSString& s, bool littleEndian, bool mark) {
    std::u16string units;
    if (mark) units.push_back(0xFEFF);
    units += s.utf16();
    if (littleEndian != littleEndianHost)
        for (unichar& c : units)
            c = swapped(c);
    return {reinterpret_cast<const char*>(units.data()), units.size() * sizeof(unichar)};
}

bool hasLoneSurrogate(const NSString& s) {
    const unichar* units = s._fastCharacterContents();
    if (!units) return false;
    for (std::size_t i = 0; i < s.length();) {
        const char32_t c = detail::nextCodePoint(units, s.length(), i);
        if (detail::isHighSurrogate(c) || detail::isLowSurrogate(c)) return true;
    }
    return false;
}

void fail(Ref<NSError>* error, NSInteger code) {
    if (error) *error = NSError::errorWithDomain_code_userInfo(NSCocoaErrorDomain, code, nullptr);
}

/// The text of a file by the marks at its start, else as UTF-8, else as Latin-1.
Ref<NSString> guess(std::string_view bytes, NSStringEncoding& encoding) {
    encoding = NSUTF16StringEncoding;
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
        if (Ref<NSString> s = NSString::initWithBytes_length_encoding(bytes.data(), bytes.size(), encoding)) return s;
    encoding = NSUTF8StringEncoding;
    if (Ref<NSString> s = NSString::initWithBytes_length_encoding(bytes.data(), bytes.size(), encoding)) return s;
    encoding = NSISOLatin1StringEncoding;
    return NSString::fromLatin1(bytes);
}

std::string_view withoutUTF8Mark(std::string_view bytes) {
    return bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : bytes;
}

} // namespace

Ref<NSString> NSString::initWithBytes_length_encoding(const void* bytes, NSUInteger length, NSStringEncoding encoding) {
    const std::string_view view(static_cast<const char*>(bytes), bytes ? length : 0);
    switch (encoding) {
    case NSASCIIStringEncoding:
        if (!detail::isASCII(reinterpret_cast<const std::uint8_t*>(view.data()), view.size())) return nullptr;
        return fromLatin1(view);
    case NSISOLatin1StringEncoding:
        return fromLatin1(view);
    case NSUTF8StringEncoding:
        return detail::stringFromUTF8(view, detail::IllFormed::refuse);
    case NSUTF16LittleEndianStringEncoding:
        return fromUTF16Bytes(view, true);
    case NSUTF16BigEndianStringEncoding:
        return fromUTF16Bytes(view, false);
    case NSUTF16StringEncoding:
        if (view.starts_with("\xFF\xFE")) return fromUTF16Bytes(view.substr(2), true);
        if (view.starts_with("\xFE\xFF")) return fromUTF16Bytes(view.substr(2), false);
        return fromUTF16Bytes(view, littleEndianHost);
    default:
        break;
    }
    const Converter converter = openConverter(encoding);
    if (!converter) return nullptr;
    std::u16string units(view.size() + 1, u'\0');
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t size = ucnv_toUChars(converter.get(), units.data(), static_cast<std::int32_t>(units.size()),
                                            view.data(), static_cast<std::int32_t>(view.size()), &status);
    if (U_FAILURE(status)) return nullptr;
    return from({units.data(), static_cast<std::size_t>(size)});
}

Ref<NSString> NSString::initWithData_encoding(NSData* data, NSStringEncoding encoding) {
    return data ? initWithBytes_length_encoding(data->bytes(), data->length(), encoding) : nullptr;
}

Ref<NSData> NSString::dataUsingEncoding(NSStringEncoding encoding) const {
    return dataUsingEncoding_allowLossyConversion(encoding, NO);
}

Ref<NSData> NSString::dataUsingEncoding_allowLossyConversion(NSStringEncoding encoding, BOOL lossy) const {
    switch (encoding) {
    case NSUTF8StringEncoding:
        if (!lossy && hasLoneSurrogate(*this)) return nullptr;
        return NSData::from(utf8());
    case NSUTF16StringEncoding:
        return NSData::from(utf16Bytes(*this, littleEndianHost, true));
    case NSUTF16LittleEndianStringEncoding:
        return NSData::from(utf16Bytes(*this, true, false));
    case NSUTF16BigEndianStringEncoding:
        return NSData::from(utf16Bytes(*this, false, false));
    default:
        break;
    }
    std::string bytes;
    return writeBytes(*this, encoding, lossy, bytes) ? NSData::from(bytes) : nullptr;
}

Ref<NSString> NSString::stringWithContentsOfFile_encoding_error(const NSString* path, NSStringEncoding encoding,
                                                                Ref<NSError>* error) {
    const Ref<NSData> data = NSData::dataWithContentsOfFile_options_error(path, 0, error);
    if (!data) return nullptr;
    std::string_view bytes = data->view();
    if (encoding == NSUTF8StringEncoding) bytes = withoutUTF8Mark(bytes);
    Ref<NSString> s = initWithBytes_length_encoding(bytes.data(), bytes.size(), encoding);
    if (!s) fail(error, readInapplicableEncoding);
    return s;
}

Ref<NSString> NSString::stringWithContentsOfURL_usedEncoding_error(NSURL* url, NSStringEncoding* encoding,
                                                                   Ref<NSError>* error) {
    if (!url || !url->isFileURL()) {
        fail(error, readUnsupportedScheme);
        return nullptr;
    }
    const Ref<NSData> data = NSData::dataWithContentsOfURL_options_error(url, 0, error);
    if (!data) return nullptr;
    NSStringEncoding used;
    Ref<NSString> s = guess(withoutUTF8Mark(data->view()), used);
    if (encoding) *encoding = used;
    return s;
}

BOOL NSString::writeToFile_atomically_encoding_error(const NSString* path, BOOL atomically, NSStringEncoding encoding,
                                                     Ref<NSError>* error) const {
    const Ref<NSData> data = dataUsingEncoding(encoding);
    if (!data) {
        fail(error, writeInapplicableEncoding);
        return NO;
    }
    return data->writeToFile_options_error(path, atomically ? NSUInteger{NSDataWritingAtomic} : 0, error);
}

// Archives keep texts as they are; a coder of another kind gets the bytes.
void NSString::encodeWithCoder(NSCoder& coder) const {
    const std::string bytes = utf16Bytes(*this, true, false);
    if (coder.allowsKeyedCoding())
        coder.encodeBytes_length_forKey(bytes.data(), bytes.size(), fromLatin1("NS.utf16"));
    else
        coder.encodeBytes_length(bytes.data(), bytes.size());
}

} // namespace libvue

#include <libvue/platform/foundation/NSString.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <typeinfo>
#include <unordered_map>

#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/StringBuilder.h>
#include <libvue/platform/foundation/StringUnits.h>

namespace libvue {

namespace {

// The tag of a text: what is known of it beside its units.
constexpr std::uint8_t tagASCIIKnown = 1;
constexpr std::uint8_t tagASCII = 2;
constexpr std::uint8_t tagHasUTF8 = 4;

/// UTF-8 forms of the texts that were asked for theirs and are not plain ASCII; they go with their text.
std::unordered_map<const NSString*, std::unique_ptr<char[]>>& utf8Forms() {
    static auto& forms = *new std::unordered_map<const NSString*, std::unique_ptr<char[]>>;
    return forms;
}

std::uint64_t mix(std::uint64_t h, std::uint64_t units) noexcept {
    h = (h ^ units) * 0x9E3779B97F4A7C15u;
    return h ^ h >> 32;
}

/// Four units side by side in a word, the same for both storages.
std::uint64_t fourUnits(const std::uint8_t* units) noexcept {
    std::uint32_t bytes;
    std::memcpy(&bytes, units, 4);
    std::uint64_t four = bytes;
    four = (four | four << 16) & 0x0000FFFF0000FFFFu;
    return (four | four << 8) & 0x00FF00FF00FF00FFu;
}
std::uint64_t fourUnits(const unichar* units) noexcept {
    std::uint64_t four;
    std::memcpy(&four, units, 8);
    return four;
}

/// How many units at the front are ASCII.
template <class Unit> std::size_t plainUnits(const Unit* units, std::size_t count) noexcept {
    constexpr std::uint64_t others = 0xFF80FF80FF80FF80u;
    std::size_t i = 0;
    while (i + 4 <= count && (fourUnits(units + i) & others) == 0)
        i += 4;
    while (i < count && units[i] < 0x80)
        ++i;
    return i;
}

template <class Unit> std::uint64_t hashUnits(const Unit* units, std::size_t count) noexcept {
    std::uint64_t h = mix(0x2545F4914F6CDD1Du, count);
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4)
        h = mix(h, fourUnits(units + i));
    if (i < count) {
        Unit rest[4] = {};
        std::memcpy(rest, units + i, (count - i) * sizeof(Unit));
        h = mix(h, fourUnits(rest));
    }
    return mix(h, h >> 29);
}

bool equalUnits(const std::uint8_t* narrow, const unichar* wide, std::size_t count) noexcept {
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4)
        if (fourUnits(narrow + i) != fourUnits(wide + i)) return false;
    for (; i < count; ++i)
        if (narrow[i] != wide[i]) return false;
    return true;
}

} // namespace

void NSString::describe(ClassDescription<NSString>& c) {
    c.answers<&NSString::compare>("compare:");
    c.answers<&NSString::caseInsensitiveCompare>("caseInsensitiveCompare:");
    c.answers<&NSString::localizedCompare>("localizedCompare:");
    c.answers<&NSString::localizedCaseInsensitiveCompare>("localizedCaseInsensitiveCompare:");
    c.answers<&NSString::uppercaseString>("uppercaseString");
    c.answers<&NSString::lowercaseString>("lowercaseString");
    c.answers<&NSString::capitalizedString>("capitalizedString");
    c.answers<&NSString::intValue>("intValue");
    c.answers<&NSString::integerValue>("integerValue");
    c.answers<&NSString::doubleValue>("doubleValue");
    c.answers<&NSString::floatValue>("floatValue");
    c.answers<&NSString::boolValue>("boolValue");
    c.key<&NSString::length>("length");
    c.key<&NSString::uppercaseString>("uppercaseString");
    c.key<&NSString::lowercaseString>("lowercaseString");
    c.key<&NSString::capitalizedString>("capitalizedString");
}

NSString::~NSString() {
    if (tag() & tagHasUTF8) utf8Forms().erase(this);
}

NSString* NSString::allocate(NSUInteger length, bool wide) {
    if (length > std::numeric_limits<std::uint32_t>::max() - 1)
        raiseNamed(NSInvalidArgumentException, "a text is too long");
    (void)classOf<NSString>();
    const std::size_t unit = wide ? sizeof(unichar) : 1;
    void* room = ::operator new(sizeof(NSString) + (length + 1) * unit);
    auto* s = new (room) NSString(length, wide, Storage::inBlock);
    std::memset(static_cast<char*>(s->units()) + length * unit, 0, unit);
    return s;
}

void NSString::raiseOutOfRange(NSUInteger i) const {
    raiseNamed(NSRangeException,
               "index " + std::to_string(i) + " is out of a text of " + std::to_string(length_) + " units");
}

void NSString::raiseOutOfRange(NSRange range) const {
    raiseNamed(NSRangeException, "range {" + std::to_string(range.location) + ", " + std::to_string(range.length) +
                                     "} is out of a text of " + std::to_string(length_) + " units");
}

Ref<NSString> NSString::immutable() const {
    if (!mutable_) return const_cast<NSString*>(this);
    return substringWithRange({0, length_});
}

// Making

Ref<NSString> NSString::string() { return adopt(allocate(0, false)); }

Ref<NSString> NSString::stringWithString(const NSString* s) {
    if (!s) raiseNamed(NSInvalidArgumentException, "stringWithString: a text is needed");
    return s->immutable();
}

Ref<NSString> NSString::stringWithCharacters_length(const unichar* units, NSUInteger length) {
    return from({units, length});
}

Ref<NSString> NSString::from(std::u16string_view units) {
    const bool wide = !detail::fitsLatin1(units.data(), units.size());
    NSString* s = allocate(units.size(), wide);
    if (wide)
        std::memcpy(s->units(), units.data(), units.size() * sizeof(unichar));
    else
        detail::narrowUnits(units.data(), units.size(), static_cast<std::uint8_t*>(s->units()));
    return adopt(s);
}

Ref<NSString> NSString::fromLatin1(std::string_view bytes) {
    NSString* s = allocate(bytes.size(), false);
    if (!bytes.empty()) std::memcpy(s->units(), bytes.data(), bytes.size());
    return adopt(s);
}

Ref<NSString> NSString::fromUTF8(std::string_view bytes) {
    return detail::stringFromUTF8(bytes, detail::IllFormed::replace);
}

Ref<NSString> NSString::stringWithUTF8String(const char* bytes) {
    if (!bytes) raiseNamed(NSInvalidArgumentException, "stringWithUTF8String: bytes are needed");
    return detail::stringFromUTF8(bytes, detail::IllFormed::refuse);
}

Ref<NSString> operator""_ns(const char16_t* units, std::size_t length) { return NSString::from({units, length}); }

// Reading

void NSString::getCharacters_range(unichar* buffer, NSRange range) const {
    checkRange(range);
    if (wide_)
        std::memcpy(buffer, units16() + range.location, range.length * sizeof(unichar));
    else
        detail::widenUnits(units8() + range.location, range.length, buffer);
}

std::string NSString::utf8() const {
    std::string out;
    if (!wide_ && detail::isASCII(units8(), length_)) {
        out.assign(reinterpret_cast<const char*>(units8()), length_);
        return out;
    }
    out.reserve(length_ + length_ / 2);
    for (std::size_t i = 0; i < length_;) {
        // Stretches of ASCII go over at once.
        const std::size_t rest = length_ - i;
        const std::size_t plain = wide_ ? plainUnits(units16() + i, rest) : plainUnits(units8() + i, rest);
        if (plain == 0) {
            char bytes[4];
            const char32_t c = wide_ ? detail::nextCodePoint(units16(), length_, i) : units8()[i++];
            out.append(bytes, detail::putUTF8(c, bytes));
            continue;
        }
        const std::size_t at = out.size();
        out.resize(at + plain);
        if (wide_)
            detail::narrowUnits(units16() + i, plain, reinterpret_cast<std::uint8_t*>(out.data() + at));
        else
            std::memcpy(out.data() + at, units8() + i, plain);
        i += plain;
    }
    return out;
}

const char* NSString::UTF8String() const {
    auto* self = const_cast<NSString*>(this);
    if (length_ == 0) return "";
    if (!wide_) {
        if (!(tag() & tagASCIIKnown))
            self->setTag_(tag() | tagASCIIKnown | (detail::isASCII(units8(), length_) ? tagASCII : 0));
        if (tag() & tagASCII) {
            // Every buffer has room for a final zero; the one of a mutable text does not keep it up to date.
            if (mutable_) static_cast<std::uint8_t*>(self->units())[length_] = 0;
            return reinterpret_cast<const char*>(units8());
        }
    }
    std::unique_ptr<char[]>& form = utf8Forms()[this];
    if (!form) {
        const std::string bytes = utf8();
        form = std::make_unique<char[]>(bytes.size() + 1);
        std::memcpy(form.get(), bytes.c_str(), bytes.size() + 1);
        self->setTag_(tag() | tagHasUTF8);
    }
    return form.get();
}

void NSString::unitsChanged() noexcept {
    hash_ = 0;
    if (tag() & tagHasUTF8) utf8Forms().erase(this);
    setTag_(0);
}

std::u16string NSString::utf16() const {
    std::u16string out(length_, u'\0');
    getCharacters(out.data());
    return out;
}

Ref<NSString> NSString::description() const { return const_cast<NSString*>(this); }

Ref<NSObject> NSString::copyWithZone() const { return immutable(); }

Ref<NSObject> NSString::mutableCopyWithZone() const { return make<NSMutableString>(this); }

// Equality

NSUInteger NSString::hash() const {
    if (hash_ == 0) {
        const std::uint64_t h =
            detail::visitUnits(*this, [](const auto* units, std::size_t count) { return hashUnits(units, count); });
        const auto kept = static_cast<std::uint32_t>(h & 0x1FFFFFFF);
        hash_ = kept ? kept : 1;
    }
    return hash_;
}

BOOL NSString::isEqual(const NSObject* other) const {
    if (other == this) return YES;
    if (!other) return NO;
    // Nearly all comparisons are among plain texts, which need no walk through the class hierarchy.
    if (&typeid(*other) == &typeid(NSString)) return isEqualToString(static_cast<const NSString*>(other));
    return isEqualToString(dynamic_cast<const NSString*>(other));
}

BOOL NSString::isEqualToString(const NSString* s) const noexcept {
    if (s == this) return YES;
    if (!s || s->length_ != length_) return NO;
    if (hash_ && s->hash_ && hash_ != s->hash_) return NO;
    if (wide_ && s->wide_) return std::memcmp(units16(), s->units16(), length_ * sizeof(unichar)) == 0;
    if (wide_) return equalUnits(s->units8(), units16(), length_);
    if (s->wide_) return equalUnits(units8(), s->units16(), length_);
    return std::memcmp(units8(), s->units8(), length_) == 0;
}

BOOL NSString::isEqualTo(std::u16string_view units) const noexcept {
    if (units.size() != length_) return NO;
    if (wide_) return std::memcmp(units16(), units.data(), length_ * sizeof(unichar)) == 0;
    return equalUnits(units8(), units.data(), length_);
}

BOOL NSString::hasPrefix(const NSString* s) const noexcept {
    if (!s || s->length_ > length_) return NO;
    return detail::visitUnits(*s, [this](const auto* prefix, std::size_t count) -> BOOL {
        return detail::visitUnits(
            *this, [&](const auto* units, std::size_t) -> BOOL { return std::equal(prefix, prefix + count, units); });
    });
}

BOOL NSString::hasSuffix(const NSString* s) const noexcept {
    if (!s || s->length_ > length_) return NO;
    return detail::visitUnits(*s, [this](const auto* suffix, std::size_t count) -> BOOL {
        return detail::visitUnits(*this, [&](const auto* units, std::size_t all) -> BOOL {
            return std::equal(suffix, suffix + count, units + (all - count));
        });
    });
}

} // namespace libvue

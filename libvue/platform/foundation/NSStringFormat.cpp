#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <libvue/platform/foundation/AsciiDigits.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/StringBuilder.h>
#include <libvue/platform/foundation/StringUnits.h>

namespace libvue {

namespace {

using detail::isDigit;

/// Widths and precisions beyond this are held to it, so that a bad format cannot ask for all the memory.
constexpr int largestField = 100000;
/// A position beyond this makes the conversion malformed.
constexpr int lastPosition = 64;

enum class Kind : std::uint8_t { missing, integer, longInteger, real, longReal, pointer };
enum class Length : std::uint8_t { none, hh, h, l, ll, L };

union Argument {
    std::int64_t integer = 0;
    double real;
    long double longReal;
    const void* pointer;
};

/// A number in the format, or a star: the argument that it names.
struct Field {
    int value = -1; // -1: none given
    int argument = -1;
};

/// One conversion, and the plain text before it.
struct Conversion {
    std::size_t plainFrom = 0, plainTo = 0;
    bool left = false, plus = false, space = false, alternate = false, zero = false;
    Field width, precision;
    Length length = Length::none;
    unichar type = 0; // 0: plain text only
    int argument = -1;
};

/// Reads a format into its conversions, and learns of what kind each argument is.
class FormatReader {
public:
    explicit FormatReader(const NSString& format) : format_(format) {
        const NSUInteger end = format.length();
        NSUInteger plain = 0;
        for (NSUInteger i = 0; i < end;) {
            if (format.unit(i) != '%') {
                ++i;
                continue;
            }
            Conversion c;
            c.plainFrom = plain;
            c.plainTo = i;
            NSUInteger after = i + 1;
            const int next = next_;
            if (!read(c, after)) {
                // What is no conversion is text, and takes no argument.
                next_ = next;
                ++i;
                continue;
            }
            if (c.type == '%') {
                c.plainTo = i + 1;
                c.type = 0;
            }
            note(c);
            conversions_.push_back(c);
            i = plain = after;
        }
        Conversion rest;
        rest.plainFrom = plain;
        rest.plainTo = end;
        conversions_.push_back(rest);
    }

    [[nodiscard]] const std::vector<Conversion>& conversions() const noexcept { return conversions_; }
    [[nodiscard]] const std::vector<Kind>& kinds() const noexcept { return kinds_; }

private:
    [[nodiscard]] unichar at(NSUInteger i) const noexcept { return i < format_.length() ? format_.unit(i) : u'\0'; }

    int number(NSUInteger& i) const noexcept {
        int value = 0;
        for (; isDigit(at(i)); ++i)
            value = std::min(value * 10 + (at(i) - '0'), largestField);
        return value;
    }
    /// "12$", or 0.
    int position(NSUInteger& i) const noexcept {
        NSUInteger k = i;
        const int value = number(k);
        if (k == i || at(k) != '$') return 0;
        i = k + 1;
        return value > 0 ? value : lastPosition + 1;
    }
    bool star(NSUInteger& i, Field& field) {
        ++i;
        const int place = position(i);
        if (place > lastPosition) return false;
        field.argument = place ? place - 1 : next_++;
        return true;
    }

    bool read(Conversion& c, NSUInteger& i) {
        const int place = position(i);
        if (place > lastPosition) return false;
        for (;; ++i) {
            const unichar flag = at(i);
            if (flag == '-')
                c.left = true;
            else if (flag == '+')
                c.plus = true;
            else if (flag == ' ')
                c.space = true;
            else if (flag == '#')
                c.alternate = true;
            else if (flag == '0')
                c.zero = true;
            else if (flag != '\'')
                break;
        }
        if (at(i) == '*') {
            if (!star(i, c.width)) return false;
        } else if (isDigit(at(i)))
            c.width.value = number(i);
        if (at(i) == '.') {
            ++i;
            if (at(i) == '*') {
                if (!star(i, c.precision)) return false;
            } else
                c.precision.value = number(i);
        }
        for (;; ++i) {
            const unichar letter = at(i);
            if (letter == 'h')
                c.length = c.length == Length::h ? Length::hh : Length::h;
            else if (letter == 'l')
                c.length = c.length == Length::l ? Length::ll : Length::l;
            else if (letter == 'q' || letter == 'z' || letter == 't' || letter == 'j')
                c.length = Length::ll;
            else if (letter == 'L')
                c.length = Length::L;
            else
                break;
        }
        c.type = at(i);
        if (c.type == 0 || c.type > 0x7F || !std::strchr("@diuxXoDUOcCsSfFeEgGaApn%", static_cast<int>(c.type)))
            return false;
        ++i;
        if (c.type == 'D' || c.type == 'U' || c.type == 'O') {
            c.type = static_cast<unichar>(c.type + ('a' - 'A'));
            c.length = Length::l;
        }
        if (c.type != '%') c.argument = place ? place - 1 : next_++;
        return true;
    }

    void note(int argument, Kind kind) {
        if (argument < 0) return;
        const auto index = static_cast<std::size_t>(argument);
        if (index >= kinds_.size()) kinds_.resize(index + 1, Kind::missing);
        // Where two conversions disagree, the wider reading wins: it holds the other one.
        kinds_[index] = std::max(kinds_[index], kind);
    }
    void note(const Conversion& c) {
        note(c.width.argument, Kind::integer);
        note(c.precision.argument, Kind::integer);
        switch (c.type) {
        case 'd':
        case 'i':
        case 'u':
        case 'x':
        case 'X':
        case 'o':
            return note(c.argument, c.length >= Length::l ? Kind::longInteger : Kind::integer);
        case 'c':
        case 'C':
            return note(c.argument, Kind::integer);
        case '@':
        case 's':
        case 'S':
        case 'p':
        case 'n':
            return note(c.argument, Kind::pointer);
        default:
            return note(c.argument, c.length == Length::L ? Kind::longReal : Kind::real);
        }
    }

    const NSString& format_;
    std::vector<Conversion> conversions_;
    std::vector<Kind> kinds_;
    int next_ = 0;
};

/// Writes one conversion after another.
class FormatWriter {
public:
    FormatWriter(StringBuilder& out, const std::vector<Argument>& arguments) : out_(out), arguments_(arguments) {}

    void write(const Conversion& c) {
        left_ = c.left;
        width_ = c.width.value;
        if (c.width.argument >= 0) {
            width_ = starred(c.width);
            if (width_ < 0) {
                left_ = true;
                width_ = -width_;
            }
        }
        precision_ = c.precision.argument >= 0 ? std::max(starred(c.precision), -1) : c.precision.value;
        const Argument& a = arguments_[static_cast<std::size_t>(c.argument)];
        switch (c.type) {
        case '@':
            return object(static_cast<const NSObject*>(a.pointer));
        case 'd':
        case 'i':
            return signedInteger(c, a.integer);
        case 'u':
        case 'x':
        case 'X':
        case 'o':
            return unsignedInteger(c, a.integer);
        case 'c':
            return character(static_cast<unichar>(a.integer & 0xFF));
        case 'C':
            return character(static_cast<unichar>(a.integer));
        case 's':
            return bytes(static_cast<const char*>(a.pointer));
        case 'S':
            return units(static_cast<const unichar*>(a.pointer));
        case 'p':
            return pointer(a.pointer);
        case 'n':
            return; // nothing is ever written through an argument
        default:
            return real(c, a);
        }
    }

private:
    int starred(const Field& field) const {
        const std::int64_t v = arguments_[static_cast<std::size_t>(field.argument)].integer;
        return static_cast<int>(std::clamp<std::int64_t>(v, -largestField, largestField));
    }

    /// Appends what `append` does, padded to the width.
    template <class Append> void padded(NSUInteger length, Append append) {
        const NSUInteger pad =
            width_ > 0 && static_cast<NSUInteger>(width_) > length ? static_cast<NSUInteger>(width_) - length : 0;
        if (!left_) out_.appendRepeated(u' ', pad);
        append();
        if (left_) out_.appendRepeated(u' ', pad);
    }
    void text(const NSString* s) {
        NSUInteger length = s->length();
        if (precision_ >= 0) length = std::min<NSUInteger>(length, static_cast<NSUInteger>(precision_));
        padded(length, [&] { out_.append(s, 0, length); });
    }
    void text(std::string_view ascii) {
        if (precision_ >= 0) ascii = ascii.substr(0, static_cast<std::size_t>(precision_));
        padded(ascii.size(), [&] { out_.append(ascii); });
    }

    void object(const NSObject* o) {
        if (!o) return text("(null)");
        const Ref<NSString> s = o->description();
        if (s) text(s.get());
    }
    void character(unichar c) {
        padded(1, [&] { out_.append(c); });
    }
    void bytes(const char* s) {
        if (!s) return text("(null)");
        const std::size_t length =
            precision_ >= 0 ? ::strnlen(s, static_cast<std::size_t>(precision_)) : std::strlen(s);
        const Ref<NSString> decoded = NSString::fromUTF8({s, length});
        padded(decoded->length(), [&] { out_.append(decoded.get()); });
    }
    void units(const unichar* s) {
        if (!s) return text("(null)");
        std::size_t length = 0;
        while ((precision_ < 0 || length < static_cast<std::size_t>(precision_)) && s[length])
            ++length;
        padded(length, [&] { out_.append(std::u16string_view(s, length)); });
    }
    void pointer(const void* p) {
        char digits[2 + 16] = {'0', 'x'};
        const auto end = std::to_chars(digits + 2, std::end(digits), reinterpret_cast<std::uintptr_t>(p), 16).ptr;
        precision_ = -1;
        text(std::string_view(digits, static_cast<std::size_t>(end - digits)));
    }

    /// Sign or prefix, zeros, digits, padded.
    void digits(const Conversion& c, std::string_view prefix, std::string_view digits) {
        if (precision_ == 0 && digits == "0") digits = {};
        NSUInteger zeros =
            precision_ > static_cast<int>(digits.size()) ? static_cast<NSUInteger>(precision_) - digits.size() : 0;
        // An octal number is told by a leading zero, which the precision may have brought already.
        if (c.alternate && c.type == 'o' && !zeros && !digits.starts_with('0')) zeros = 1;
        const NSUInteger length = prefix.size() + zeros + digits.size();
        if (c.zero && !left_ && precision_ < 0 && static_cast<NSUInteger>(std::max(width_, 0)) > length)
            zeros += static_cast<NSUInteger>(width_) - length;
        padded(prefix.size() + zeros + digits.size(), [&] {
            out_.append(prefix);
            out_.appendRepeated(u'0', zeros);
            out_.append(digits);
        });
    }
    void signedInteger(const Conversion& c, std::int64_t v) {
        if (c.length == Length::hh) v = static_cast<std::int64_t>(static_cast<std::uint64_t>(v) << 56) >> 56;
        if (c.length == Length::h) v = static_cast<short>(v);
        if (c.length == Length::none) v = static_cast<int>(v);
        char room[24];
        const std::uint64_t size = v < 0 ? 0 - static_cast<std::uint64_t>(v) : static_cast<std::uint64_t>(v);
        const auto end = std::to_chars(room, std::end(room), size).ptr;
        digits(c,
               v < 0     ? "-"
               : c.plus  ? "+"
               : c.space ? " "
                         : "",
               std::string_view(room, static_cast<std::size_t>(end - room)));
    }
    void unsignedInteger(const Conversion& c, std::int64_t a) {
        auto v = static_cast<std::uint64_t>(a);
        if (c.length == Length::hh) v = static_cast<unsigned char>(v);
        if (c.length == Length::h) v = static_cast<unsigned short>(v);
        if (c.length == Length::none) v = static_cast<unsigned>(v);
        char room[24];
        const int base = c.type == 'u' ? 10 : c.type == 'o' ? 8 : 16;
        const auto end = std::to_chars(room, std::end(room), v, base).ptr;
        if (c.type == 'X')
            std::transform(room, end, room, [](char d) { return d >= 'a' ? static_cast<char>(d - 0x20) : d; });
        const bool prefixed = c.alternate && v != 0 && base == 16;
        digits(c, prefixed ? (c.type == 'X' ? "0X" : "0x") : "",
               std::string_view(room, static_cast<std::size_t>(end - room)));
    }

    void real(const Conversion& c, const Argument& a) {
        std::string format = "%";
        if (left_) format += '-';
        if (c.plus) format += '+';
        if (c.space) format += ' ';
        if (c.alternate) format += '#';
        if (c.zero) format += '0';
        format += "*.*";
        if (c.length == Length::L) format += 'L';
        format += static_cast<char>(c.type);
        const int width = std::max(width_, 0);
        const auto print = [&](char* to, std::size_t room) {
            return c.length == Length::L ? std::snprintf(to, room, format.c_str(), width, precision_, a.longReal)
                                         : std::snprintf(to, room, format.c_str(), width, precision_, a.real);
        };
        const locale_t users = ::uselocale(detail::cLocale());
        std::array<char, 128> room;
        std::string more;
        const int size = print(room.data(), room.size());
        if (size >= static_cast<int>(room.size())) {
            more.resize(static_cast<std::size_t>(size) + 1);
            print(more.data(), more.size());
        }
        ::uselocale(users);
        if (size > 0)
            out_.append(std::string_view(more.empty() ? room.data() : more.data(), static_cast<std::size_t>(size)));
    }

    StringBuilder& out_;
    const std::vector<Argument>& arguments_;
    bool left_ = false;
    int width_ = -1, precision_ = -1;
};

} // namespace

Ref<NSString> NSString::initWithFormat_arguments(const NSString* format, va_list arguments) {
    if (!format) raiseNamed(NSInvalidArgumentException, "a format is needed");
    const FormatReader reader(*format);
    std::vector<Argument> values(reader.kinds().size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        switch (reader.kinds()[i]) {
        case Kind::missing: // a position that no conversion names is taken for an integer
        case Kind::integer:
            values[i].integer = va_arg(arguments, int);
            break;
        case Kind::longInteger:
            values[i].integer = va_arg(arguments, long long);
            break;
        case Kind::real:
            values[i].real = va_arg(arguments, double);
            break;
        case Kind::longReal:
            values[i].longReal = va_arg(arguments, long double);
            break;
        case Kind::pointer:
            values[i].pointer = va_arg(arguments, const void*);
            break;
        }
    }
    StringBuilder out(format->length());
    FormatWriter writer(out, values);
    for (const Conversion& c : reader.conversions()) {
        out.append(format, c.plainFrom, c.plainTo - c.plainFrom);
        if (c.type) writer.write(c);
    }
    return out.build();
}

Ref<NSString> NSString::stringWithFormat(const NSString* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    Ref<NSString> s = initWithFormat_arguments(format, arguments);
    va_end(arguments);
    return s;
}

Ref<NSString> NSString::stringByAppendingFormat(const NSString* format, ...) const {
    va_list arguments;
    va_start(arguments, format);
    const Ref<NSString> s = initWithFormat_arguments(format, arguments);
    va_end(arguments);
    return stringByAppendingString(s);
}

} // namespace libvue

#include <libvue/platform/foundation/StringsTable.h>

#include <sys/stat.h>

#include <libvue/platform/foundation/AsciiDigits.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/StringBuilder.h>

namespace libvue {

namespace {

class Reader {
public:
    explicit Reader(const NSString& text) : text_(text) {}

    /// False at the end of the text or at a fault.
    bool next(Ref<NSString>& key, Ref<NSString>& value) {
        if (!skip() || at_ == text_.length()) return false;
        if (!string(key) || !skip()) return false;
        value = key;
        if (take(u'=')) {
            if (!skip() || !string(value) || !skip()) return false;
        }
        return take(u';') || failed("a semicolon is missing");
    }
    std::string fault;

private:
    bool failed(const char* reason) {
        std::size_t line = 1;
        for (NSUInteger i = 0; i < at_ && i < text_.length(); ++i)
            line += text_.unit(i) == u'\n';
        fault = std::string(reason) + ", line " + std::to_string(line);
        return false;
    }
    [[nodiscard]] unichar unit(NSUInteger ahead = 0) const {
        return at_ + ahead < text_.length() ? text_.unit(at_ + ahead) : u'\0';
    }
    bool take(unichar c) {
        if (at_ == text_.length() || text_.unit(at_) != c) return false;
        ++at_;
        return true;
    }
    /// White space and comments.
    bool skip() {
        while (at_ < text_.length()) {
            unichar c = unit();
            if (c == u' ' || (c >= u'\t' && c <= u'\r') || c == 0xA0 || c == 0xFEFF || c == 0x2028 || c == 0x2029)
                ++at_;
            else if (c == u'/' && unit(1) == u'/')
                while (at_ < text_.length() && unit() != u'\n' && unit() != u'\r')
                    ++at_;
            else if (c == u'/' && unit(1) == u'*') {
                NSUInteger begin = at_;
                at_ += 2;
                while (at_ < text_.length() && !(unit() == u'*' && unit(1) == u'/'))
                    ++at_;
                if (at_ == text_.length()) {
                    at_ = begin;
                    return failed("a comment without its end");
                }
                at_ += 2;
            } else
                break;
        }
        return true;
    }
    bool string(Ref<NSString>& out) {
        StringBuilder b;
        if (!take(u'"')) {
            auto isWord = [](unichar c) {
                return detail::isDigit(c) || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' ||
                       c == u'-' || c == u'.' || c == u'$' || c == u':' || c == u'/';
            };
            while (isWord(unit()))
                b.append(text_.unit(at_++));
            if (b.isEmpty()) return failed("a text is missing");
            out = b.build();
            return true;
        }
        NSUInteger begin = at_;
        while (at_ < text_.length() && unit() != u'"') {
            unichar c = text_.unit(at_++);
            if (c == 0xFFFD) return failed("bytes that are no text");
            if (c == u'\\')
                escape(b);
            else
                b.append(c);
        }
        if (!take(u'"')) {
            at_ = begin;
            return failed("a text without its end");
        }
        out = b.build();
        return true;
    }
    void escape(StringBuilder& b) {
        unichar c = unit();
        if (at_ < text_.length()) ++at_;
        switch (c) {
        case u'n':
            b.append(u'\n');
            break;
        case u't':
            b.append(u'\t');
            break;
        case u'r':
            b.append(u'\r');
            break;
        case u'0':
            b.append(u'\0');
            break;
        case u'u':
        case u'U': {
            constexpr int mostDigits = 4;
            unsigned v = 0;
            int digits = 0;
            for (; digits < mostDigits; ++digits, ++at_) {
                const int digit = detail::hexDigit(unit());
                if (digit < 0) break;
                v = v * 16 + static_cast<unsigned>(digit);
            }
            b.append(digits ? static_cast<unichar>(v) : c);
            break;
        }
        case u'\0':
            break; // the end of the text, which the caller finds
        default:
            b.append(c);
        }
    }

    const NSString& text_;
    NSUInteger at_ = 0;
};

Ref<NSString> textOf(std::string_view bytes) {
    auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    bool little = bytes.size() >= 2 && byte(0) == 0xFF && byte(1) == 0xFE;
    bool big = bytes.size() >= 2 && byte(0) == 0xFE && byte(1) == 0xFF;
    if (!little && !big) return NSString::fromUTF8(bytes);
    std::u16string units;
    for (std::size_t i = 2; i + 1 < bytes.size(); i += 2)
        units.push_back(static_cast<char16_t>(little ? byte(i) | byte(i + 1) << 8 : byte(i) << 8 | byte(i + 1)));
    return NSString::from(units);
}

} // namespace

void readStringsTable(const NSString& text, NSMutableDictionary& into, std::string& fault) {
    Reader in(text);
    Ref<NSString> key, value;
    while (in.next(key, value))
        if (!into.objectForKey(key)) into.setObject_forKey(value, key);
    fault = in.fault;
}

void readStringsFile(const std::string& path, NSMutableDictionary& into, std::string& fault) {
    struct stat s {};
    if (stat(path.c_str(), &s) != 0) return;
    auto data = NSData::dataWithContentsOfFile(NSString::fromUTF8(path));
    if (!data) {
        fault = "the file cannot be read";
        return;
    }
    readStringsTable(*textOf(data->view()), into, fault);
}

} // namespace libvue

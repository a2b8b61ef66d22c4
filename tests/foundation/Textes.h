#pragma once

#include <concepts>
#include <cstdio>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

inline void PrintTo(const NSRange& r, std::ostream* out) {
    if (r.location == static_cast<NSUInteger>(NSNotFound))
        *out << "{not found, " << r.length << "}";
    else
        *out << "{" << r.location << ", " << r.length << "}";
}

namespace textes {

inline constexpr NSRange notFound{static_cast<NSUInteger>(NSNotFound), 0};

inline Ref<NSString> text(std::u16string_view units) { return NSString::from(units); }

/// The same units in a text that stores them as UTF-16 whatever they are.
inline Ref<NSString> wideText(std::u16string_view units) {
    Ref<NSMutableString> s = make<NSMutableString>();
    s->append(u"\u4E00");
    s->append(units);
    s->deleteCharactersInRange({0, 1});
    return s;
}

/// Units in ASCII, so that marks and lone surrogates can be read in a failure.
inline std::string shown(const NSString* s) {
    if (!s) return "(null)";
    std::string out;
    for (NSUInteger i = 0; i < s->length(); ++i) {
        const unichar c = s->characterAtIndex(i);
        if (c >= 0x20 && c < 0x7F && c != '\\') {
            out += static_cast<char>(c);
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04X", static_cast<unsigned>(c));
        out += escape;
    }
    return out;
}
template <std::derived_from<NSString> T> std::string shown(const Ref<T>& s) { return shown(s.get()); }
inline std::string shown(std::u16string_view units) { return shown(text(units)); }

/// The elements of an array of texts, each between bars.
inline std::string shown(const Ref<NSArray>& a) {
    std::string out = "|";
    for (NSUInteger i = 0; i < a->count(); ++i)
        out += shown(a->at<NSString>(i)) + "|";
    return out;
}
inline std::string shown(NSRange r) { return testing::PrintToString(r); }

/// The name of the exception that `f` raises; empty where it raises none.
template <class F> std::string raised(F f) {
    try {
        f();
    } catch (const NSExceptionRaised& e) {
        return e.exception->name()->utf8();
    }
    return "";
}

/// Each of them raises that exception.
inline void expectRaised(const char* name, const std::vector<std::function<void()>>& calls) {
    for (std::size_t i = 0; i < calls.size(); ++i)
        EXPECT_EQ(raised(calls[i]), name) << "row " << i;
}

} // namespace textes
} // namespace libvue

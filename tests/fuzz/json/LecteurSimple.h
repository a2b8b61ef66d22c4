#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include <libvue/platform/foundation/NSDecimalNumber.h>
#include <libvue/platform/foundation/NSString.h>

namespace essai {

/// UTF-16 units as plain text: what is not plain ASCII as \uXXXX.
inline std::string lisible(const std::u16string& unites) {
    std::string s;
    for (const char16_t u : unites) {
        char texte[8];
        if (u >= 0x20 && u < 0x7F && u != '\\')
            s += static_cast<char>(u);
        else {
            std::snprintf(texte, sizeof texte, "\\u%04x", static_cast<unsigned>(u));
            s += texte;
        }
    }
    return s;
}

/// The language of the reader once more, the plainest way: a function a rule, byte after byte, by recursion. Values
/// come out as text, errors as "code message".
class LecteurSimple {
public:
    std::vector<std::string> erreurs;
    std::string valeur;

    bool lis(const std::string& octets, std::size_t profondeurPermise) {
        c = octets.c_str();
        limite_ = profondeurPermise;
        if (!scanValue(valeur)) return false;
        espace();
        return *c == '\0' || erreur(10, u"Garbage after JSON");
    }

private:
    bool erreur(int code, const std::u16string& texte) {
        erreurs.push_back(std::to_string(code) + " " + lisible(texte));
        return false;
    }
    static std::u16string large(const char* s) { return {s, s + std::char_traits<char>::length(s)}; }
    void espace() {
        while (*c == ' ' || *c == '\t' || *c == '\n' || *c == '\v' || *c == '\f' || *c == '\r')
            ++c;
    }
    [[nodiscard]] bool chiffre() const { return *c >= '0' && *c <= '9'; }

    bool scanValue(std::string& o) {
        espace();
        switch (*c++) {
        case '{':
            return scanRestOfDictionary(o);
        case '[':
            return scanRestOfArray(o);
        case '"': {
            std::u16string s;
            if (!scanRestOfString(s)) return false;
            o = "'" + lisible(s) + "'";
            return true;
        }
        case 't':
            return mot("rue", "true", u"Expected 'true'", o);
        case 'f':
            return mot("alse", "false", u"Expected 'false'", o);
        case 'n':
            return mot("ull", "null", u"Expected 'null'", o);
        case '+':
            return erreur(2, u"Leading + disallowed in number");
        case '\0':
            --c;
            return erreur(11, u"Unexpected end of string");
        default:
            --c;
            if (*c == '-' || chiffre()) return scanNumber(o);
            return erreur(3, u"Unrecognised leading character");
        }
    }
    bool mot(const char* reste, const char* tout, const char16_t* attendu, std::string& o) {
        for (const char* r = reste; *r; ++r, ++c)
            if (*c != *r) return erreur(3, attendu);
        o = tout;
        return true;
    }
    bool entre() { return limite_ == 0 || ++profondeur_ <= limite_ || erreur(7, u"Nested too deep"); }

    bool scanRestOfArray(std::string& o) {
        if (!entre()) return false;
        o = "[";
        while (*c) {
            espace();
            if (*c == ']') {
                ++c;
                --profondeur_;
                o += "]";
                return true;
            }
            std::string v;
            if (!scanValue(v)) return erreur(3, u"Expected value while parsing array");
            o += v + ",";
            espace();
            if (*c == ',') {
                ++c;
                espace();
                if (*c == ']') return erreur(9, u"Trailing comma disallowed in array");
            }
        }
        return erreur(11, u"End of input while parsing array");
    }

    bool scanRestOfDictionary(std::string& o) {
        if (!entre()) return false;
        std::vector<std::pair<std::u16string, std::string>> paires;
        while (*c) {
            espace();
            if (*c == '}') {
                ++c;
                --profondeur_;
                o = "{";
                for (const auto& [cle, v] : paires)
                    o += lisible(cle) + ":" + v + ",";
                o += "}";
                return true;
            }
            std::u16string cle;
            if (*c++ != '"' || !scanRestOfString(cle)) return erreur(3, u"Object key string expected");
            espace();
            if (*c != ':') return erreur(3, u"Expected ':' separating key and value");
            ++c;
            std::string v;
            if (!scanValue(v)) return erreur(3, u"Object value expected for key: " + cle);
            bool connue = false;
            for (auto& [autre, ancienne] : paires)
                if (autre == cle) {
                    ancienne = v;
                    connue = true;
                }
            if (!connue) paires.emplace_back(cle, v);
            espace();
            if (*c == ',') {
                ++c;
                espace();
                if (*c == '}') return erreur(9, u"Trailing comma disallowed in object");
            }
        }
        return erreur(11, u"End of input while parsing object");
    }

    bool scanRestOfString(std::u16string& s) {
        for (;;) {
            const auto b = static_cast<unsigned char>(*c);
            if (b == '"') {
                ++c;
                return true;
            }
            if (b == '\\') {
                ++c;
                if (!echappement(s)) return false;
                if (*c == '\0') return erreur(11, u"Unexpected EOF while parsing string");
            } else if (b <= 0x19) {
                char texte[48];
                std::snprintf(texte, sizeof texte, "Unescaped control character '0x%x'", static_cast<unsigned>(b));
                return erreur(5, large(texte));
            } else
                caractere(s);
        }
    }
    /// One character of well-formed UTF-8.
    void caractere(std::u16string& s) {
        const auto b = static_cast<unsigned char>(*c++);
        const int suite = b < 0x80 ? 0 : b < 0xE0 ? 1 : b < 0xF0 ? 2 : 3;
        char32_t p = suite == 0 ? b : b & (0x3Fu >> suite);
        for (int i = 0; i < suite; ++i)
            p = p << 6 | (static_cast<unsigned char>(*c++) & 0x3Fu);
        if (p < 0x10000)
            s += static_cast<char16_t>(p);
        else {
            s += static_cast<char16_t>(0xD7C0 + (p >> 10));
            s += static_cast<char16_t>(0xDC00 + (p & 0x3FF));
        }
    }
    bool echappement(std::u16string& s) {
        static const std::string lettres = "\"\\/bfnrt", valeurs = "\"\\/\b\f\n\r\t";
        const std::size_t i = *c ? lettres.find(*c) : std::string::npos;
        if (i != std::string::npos) {
            s += static_cast<char16_t>(valeurs[i]);
            ++c;
            return true;
        }
        if (*c == 'u') {
            unsigned u = 0;
            if (!scanUnicodeChar(u)) return erreur(6, u"Broken unicode character");
            s += static_cast<char16_t>(u);
            ++c;
            return true;
        }
        char texte[48];
        std::snprintf(texte, sizeof texte, "Illegal escape sequence '0x%x'",
                      static_cast<unsigned>(static_cast<unsigned char>(*c)));
        return erreur(8, large(texte));
    }
    bool scanHexQuad(unsigned& q) {
        q = 0;
        for (int i = 0; i < 4; ++i) {
            static const std::string chiffres = "0123456789abcdef0123456789ABCDEF";
            const std::size_t v = *++c ? chiffres.find(*c) : std::string::npos;
            if (v == std::string::npos) return erreur(6, u"Missing hex digit in quad");
            q = q * 16 + static_cast<unsigned>(v % 16);
        }
        return true;
    }
    bool scanUnicodeChar(unsigned& u) {
        if (!scanHexQuad(u)) return erreur(6, u"Missing hex quad");
        if (u < 0xD800 || u >= 0xE000) return true;
        if (u >= 0xDC00) return erreur(6, u"Invalid high character in surrogate pair");
        unsigned bas = 0;
        if (c[1] != '\\' || c[2] != 'u' || (c += 2, !scanHexQuad(bas)))
            return erreur(6, u"Missing low character in surrogate pair");
        bas = (bas - 0xDC00) & 0xFFFF;
        if (bas >= 0x3FF) return erreur(6, u"Invalid low surrogate char");
        u = ((u << 10) + bas) & 0xFFFF;
        return true;
    }

    bool chiffres(const char16_t* sinon) {
        if (!chiffre()) return erreur(2, sinon);
        while (chiffre())
            ++c;
        return true;
    }
    bool scanNumber(std::string& o) {
        const char* const debut = c;
        if (*c == '-') ++c;
        if (*c == '0') {
            ++c;
            if (chiffre()) return erreur(2, u"Leading 0 disallowed in number");
        } else if (!chiffres(u"No digits after initial minus"))
            return false;
        if (*c == '.' && (++c, !chiffres(u"No digits after decimal point"))) return false;
        if (*c == 'e' || *c == 'E') {
            ++c;
            if (*c == '+' || *c == '-') ++c;
            if (!chiffres(u"No digits after exponent")) return false;
        }
        o = libvue::NSDecimalNumber::decimalNumberWithText({debut, static_cast<std::size_t>(c - debut)})
                ->stringValue()
                ->utf8();
        return true;
    }

    const char* c = nullptr;
    std::size_t limite_ = 0, profondeur_ = 0;
};

} // namespace essai

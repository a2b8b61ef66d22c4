#include <libvue/platform/foundation/Decimal.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include <libvue/platform/foundation/DecimalText.h>
#include <libvue/platform/foundation/DecimalWord.h>
#include <libvue/platform/foundation/SmallBlocks.h>

namespace libvue {

namespace {

constexpr int mostPower = 38; // 10^38 is the largest that 128 bits hold

struct Powers {
    UInt128 of[mostPower + 1];
    constexpr Powers() : of{} {
        UInt128 p = 1;
        for (UInt128& power : of) {
            power = p;
            p *= 10;
        }
    }
};
constexpr Powers ten;

int digitsOf(UInt128 v) noexcept {
    int n = 0;
    while (n <= mostPower && v >= ten.of[n])
        ++n;
    return n;
}

/// An unsigned number of 384 bits: room for two aligned mantissas with many guard digits.
class Wide {
public:
    static constexpr int mostDigits = 115;

    Wide() noexcept = default;
    explicit Wide(UInt128 v) noexcept {
        limb_[0] = static_cast<std::uint64_t>(v);
        limb_[1] = static_cast<std::uint64_t>(v >> 64);
    }
    static Wide product(UInt128 a, UInt128 b) noexcept {
        Wide r;
        const std::uint64_t x[2] = {static_cast<std::uint64_t>(a), static_cast<std::uint64_t>(a >> 64)};
        const std::uint64_t y[2] = {static_cast<std::uint64_t>(b), static_cast<std::uint64_t>(b >> 64)};
        for (int i = 0; i < 2; ++i) {
            UInt128 carry = 0;
            for (int j = 0; j < 2; ++j) {
                carry += static_cast<UInt128>(x[i]) * y[j] + r.limb_[i + j];
                r.limb_[i + j] = static_cast<std::uint64_t>(carry);
                carry >>= 64;
            }
            r.limb_[i + 2] = static_cast<std::uint64_t>(carry);
        }
        return r;
    }
    void multiply(std::uint64_t by) noexcept {
        UInt128 carry = 0;
        for (std::uint64_t& l : limb_) {
            carry += static_cast<UInt128>(l) * by;
            l = static_cast<std::uint64_t>(carry);
            carry >>= 64;
        }
    }
    std::uint64_t divide(std::uint64_t by) noexcept {
        UInt128 rest = 0;
        for (int i = limbs - 1; i >= 0; --i) {
            rest = rest << 64 | limb_[i];
            limb_[i] = static_cast<std::uint64_t>(rest / by);
            rest %= by;
        }
        return static_cast<std::uint64_t>(rest);
    }
    void scale(int power) noexcept {
        for (; power > 0; power -= chunk)
            multiply(static_cast<std::uint64_t>(ten.of[std::min(power, chunk)]));
    }
    void add(const Wide& o) noexcept {
        UInt128 carry = 0;
        for (int i = 0; i < limbs; ++i) {
            carry += static_cast<UInt128>(limb_[i]) + o.limb_[i];
            limb_[i] = static_cast<std::uint64_t>(carry);
            carry >>= 64;
        }
    }
    /// `o` is not larger.
    void subtract(const Wide& o) noexcept {
        std::uint64_t borrow = 0;
        for (int i = 0; i < limbs; ++i) {
            UInt128 taken = static_cast<UInt128>(o.limb_[i]) + borrow;
            borrow = limb_[i] < taken;
            limb_[i] = static_cast<std::uint64_t>(limb_[i] - taken);
        }
    }
    [[nodiscard]] int compare(const Wide& o) const noexcept {
        for (int i = limbs - 1; i >= 0; --i)
            if (limb_[i] != o.limb_[i]) return limb_[i] < o.limb_[i] ? -1 : 1;
        return 0;
    }
    [[nodiscard]] bool isZero() const noexcept {
        return std::all_of(limb_, limb_ + limbs, [](std::uint64_t l) { return l == 0; });
    }
    [[nodiscard]] UInt128 low() const noexcept { return static_cast<UInt128>(limb_[1]) << 64 | limb_[0]; }
    [[nodiscard]] int digits() const noexcept {
        Wide rest = *this;
        int n = 0;
        while (rest.limb_[2] || rest.limb_[3] || rest.limb_[4] || rest.limb_[5]) {
            rest.divide(static_cast<std::uint64_t>(ten.of[chunk]));
            n += chunk;
        }
        return n + digitsOf128(rest.low());
    }

private:
    static constexpr int limbs = 6;
    static constexpr int chunk = 19; // 10^19 is the largest power that a limb holds

    static int digitsOf128(UInt128 v) noexcept {
        int n = digitsOf(v);
        return n <= mostPower ? n : mostPower + 1;
    }
    std::uint64_t limb_[limbs] = {};
};

enum class Tail : std::uint8_t { exact, more };

/// Whether the magnitude goes up when `digit` and what follows are dropped.
bool goesUp(NSRoundingMode mode, bool negative, unsigned digit, bool more, bool odd) noexcept {
    if (digit == 0 && !more) return false;
    switch (mode) {
    case NSRoundDown:
        return negative;
    case NSRoundUp:
        return !negative;
    case NSRoundBankers:
        return digit > 5 || (digit == 5 && (more || odd));
    default:
        return digit >= 5;
    }
}

/// Drops the last `drop` digits of `w`, rounding once; `tail` says whether something not zero was dropped before.
UInt128 drop(Wide w, int drop, Tail tail, NSRoundingMode mode, bool negative, bool& exact) noexcept {
    bool more = tail == Tail::more;
    unsigned last = 0;
    if (drop > 0) {
        for (int k = drop - 1; k > 0; k -= std::min(k, 19))
            more |= w.divide(static_cast<std::uint64_t>(ten.of[std::min(k, 19)])) != 0;
        last = static_cast<unsigned>(w.divide(10));
    }
    exact = last == 0 && !more;
    UInt128 m = w.low();
    return goesUp(mode, negative, last, more, (m & 1) != 0) ? m + 1 : m;
}

void strip(UInt128& m, long& e) noexcept {
    if (m == 0) return;
    while (m >> 64 && m % 10 == 0) {
        m /= 10;
        ++e;
    }
    if (m >> 64) return;
    auto small = static_cast<std::uint64_t>(m);
    for (std::uint64_t tenth; detail::divisibleByTen(small, tenth); ++e)
        small = tenth;
    m = small;
}

Decimal settled(const Wide& w, long e, bool negative, Tail tail, NSCalculationError& error) noexcept {
    error = NSCalculationNoError;
    int digits = w.digits();
    if (digits == 0 && tail == Tail::exact) return {};
    // One rounding serves both limits: the number of digits and the least exponent.
    long least = std::max<long>(digits - Decimal::mostDigits, Decimal::leastExponent - e);
    UInt128 m = w.low();
    bool exact = tail == Tail::exact;
    if (least > 0) {
        if (least > digits + 1) {
            error = NSCalculationUnderflow;
            return {};
        }
        m = drop(w, static_cast<int>(least), tail, NSRoundPlain, negative, exact);
        e += least;
    }
    if (m == 0) {
        error = NSCalculationUnderflow;
        return {};
    }
    strip(m, e);
    while (e > Decimal::mostExponent && m < ten.of[Decimal::mostDigits - 1]) {
        m *= 10;
        --e;
    }
    if (e > Decimal::mostExponent) {
        error = NSCalculationOverflow;
        return Decimal::nan();
    }
    if (!exact) error = NSCalculationLossOfPrecision;
    return {m, static_cast<int>(e), negative, false};
}

} // namespace

Decimal Decimal::of(std::uint64_t magnitude, bool negative) noexcept {
    if (magnitude == 0) return {};
    UInt128 m = magnitude;
    long e = 0;
    strip(m, e);
    return {m, static_cast<int>(e), negative, false};
}

Decimal Decimal::of(const NSDecimalNumber& n) noexcept {
    const NSDecimalNumber::Mantissa m = n.mantissa();
    return {static_cast<UInt128>(m.high) << 64 | m.low, n.exponent(), n.isNegative(), n.isNotANumber()};
}

Ref<NSDecimalNumber> Decimal::object() const {
    if (!notANumber && !(mantissa >> 64))
        if (NSDecimalNumber* n = inOneWord(static_cast<std::uint64_t>(mantissa), exponent, negative)) return adopt(n);
    const NSDecimalNumber::Mantissa m{static_cast<std::uint64_t>(mantissa >> 64), static_cast<std::uint64_t>(mantissa)};
    void* room = detail::SmallBlocks::takeFast(sizeof(NSDecimalNumber) + sizeof m);
    std::uint8_t bits = NSDecimalNumber::tagLong;
    if (negative) bits |= NSDecimalNumber::tagNegative;
    if (notANumber) bits |= NSDecimalNumber::tagNotANumber;
    auto* n = new (room) NSDecimalNumber(bits, exponent);
    new (n + 1) NSDecimalNumber::Mantissa(m);
    return adopt(n);
}

Decimal Decimal::parse(std::string_view s) noexcept {
    const char* p = s.data();
    const char* const end = p + s.size();
    while (p != end && (*p == ' ' || (*p >= '\t' && *p <= '\r')))
        ++p;
    bool negative = p != end && *p == '-';
    if (p != end && (*p == '-' || *p == '+')) ++p;

    // Digits beyond the 57th cannot change the result but by being there.
    constexpr int mostRead = 57;
    std::uint64_t chunk = 0; // at most 19 digits
    int inChunk = 0, read = 0;
    long e = 0;
    bool any = false, beyond = false, more = false;
    Wide w;
    auto flush = [&] {
        w.scale(inChunk);
        w.add(Wide(chunk));
        chunk = 0;
        inChunk = 0;
    };
    for (; p != end; ++p) {
        if (*p == '.' && !beyond) {
            beyond = true;
            continue;
        }
        auto digit = static_cast<unsigned>(*p - '0');
        if (digit > 9) break;
        any = true;
        if (read == mostRead) {
            more |= digit != 0;
            e += !beyond;
            continue;
        }
        if (read || digit) {
            chunk = chunk * 10 + digit;
            ++read;
            if (++inChunk == 19) flush();
        }
        e -= beyond;
    }
    if (!any) return nan();
    if (p != end && (*p == 'e' || *p == 'E')) {
        const char* q = p + 1;
        bool down = q != end && *q == '-';
        if (q != end && (*q == '-' || *q == '+')) ++q;
        if (q != end && *q >= '0' && *q <= '9') {
            constexpr long farthest = 1000000000; // far beyond what any number of read digits makes up for
            long v = 0;
            for (; q != end && *q >= '0' && *q <= '9'; ++q)
                v = std::min(v * 10 + (*q - '0'), farthest);
            e += down ? -v : v;
        }
    }
    if (read == 0) return {};
    if (read <= 18 && e >= leastExponent && e <= mostExponent) {
        UInt128 m = chunk;
        long stripped = e;
        strip(m, stripped);
        if (stripped <= mostExponent) return {m, static_cast<int>(stripped), negative, false};
    }
    flush();
    NSCalculationError error = NSCalculationNoError;
    return settled(w, e, negative, more ? Tail::more : Tail::exact, error);
}

Decimal Decimal::ofDouble(double v) noexcept {
    if (!std::isfinite(v)) return nan();
    char text[40];
    auto r = std::to_chars(text, text + sizeof text, v, std::chars_format::scientific);
    return parse({text, static_cast<std::size_t>(r.ptr - text)});
}

Decimal Decimal::held(UInt128 mantissa, long exponent, bool negative, NSCalculationError& error) noexcept {
    return settled(Wide(mantissa), exponent, negative, Tail::exact, error);
}

Decimal Decimal::negated() const noexcept {
    Decimal d = *this;
    if (mantissa != 0) d.negative = !negative;
    return d;
}

Decimal Decimal::add(const Decimal& a, const Decimal& b, NSCalculationError& error) noexcept {
    error = NSCalculationNoError;
    if (a.notANumber || b.notANumber) return nan();
    if (a.mantissa == 0) return b;
    if (b.mantissa == 0) return a;
    if (a.exponent < b.exponent) return add(b, a, error);
    int shift = a.exponent - b.exponent;
    if (shift > Wide::mostDigits - 1 - digitsOf(a.mantissa)) {
        // Too small to show in 38 digits, and far from any tie.
        error = NSCalculationLossOfPrecision;
        return a;
    }
    Wide x(a.mantissa), y(b.mantissa);
    x.scale(shift);
    bool negative = a.negative;
    if (a.negative == b.negative)
        x.add(y);
    else if (x.compare(y) >= 0)
        x.subtract(y);
    else {
        y.subtract(x);
        x = y;
        negative = b.negative;
    }
    if (x.isZero()) return {};
    return settled(x, b.exponent, negative, Tail::exact, error);
}

Decimal Decimal::multiply(const Decimal& a, const Decimal& b, NSCalculationError& error) noexcept {
    error = NSCalculationNoError;
    if (a.notANumber || b.notANumber) return nan();
    if (a.mantissa == 0 || b.mantissa == 0) return {};
    return settled(Wide::product(a.mantissa, b.mantissa), static_cast<long>(a.exponent) + b.exponent,
                   a.negative != b.negative, Tail::exact, error);
}

Decimal Decimal::divide(const Decimal& a, const Decimal& b, NSCalculationError& error) noexcept {
    error = NSCalculationNoError;
    if (a.notANumber || b.notANumber) return nan();
    if (b.mantissa == 0) {
        error = NSCalculationDivideByZero;
        return nan();
    }
    if (a.mantissa == 0) return {};
    // Long division; the first step may give many digits, each further one gives one. The quotient ends with 39 digits
    // or more, so that one rounding gives the 38.
    UInt128 quotient = a.mantissa / b.mantissa, rest = a.mantissa % b.mantissa;
    long e = static_cast<long>(a.exponent) - b.exponent;
    Wide q(quotient);
    for (int digits = digitsOf(quotient); rest != 0 && digits <= mostDigits + 1; ++digits) {
        // Ten times the rest may not fit 128 bits: the digit is found by adding the rest up ten times modulo the
        // divisor.
        unsigned digit = 0;
        UInt128 sum = 0;
        for (int k = 0; k < 10; ++k) {
            sum += rest; // both are below 10^38
            if (sum >= b.mantissa) {
                sum -= b.mantissa;
                ++digit;
            }
        }
        rest = sum;
        q.multiply(10);
        q.add(Wide(digit));
        --e;
        if (q.isZero()) --digits; // leading zeros are no digits
    }
    return settled(q, e, a.negative != b.negative, rest ? Tail::more : Tail::exact, error);
}

Decimal Decimal::rounded(NSRoundingMode mode, int scale) const noexcept {
    if (notANumber || mantissa == 0 || -exponent <= scale) return *this;
    int dropped = -exponent - scale; // more than all digits leave 0 or one unit
    bool exact = false;
    UInt128 m = 0;
    if (dropped > digitsOf(mantissa) + 1)
        m = goesUp(mode, negative, 0, true, false) ? 1 : 0;
    else
        m = drop(Wide(mantissa), dropped, Tail::exact, mode, negative, exact);
    NSCalculationError error = NSCalculationNoError;
    return held(m, -static_cast<long>(scale), negative && m != 0, error);
}

int Decimal::compare(const Decimal& a, const Decimal& b) noexcept {
    if (a.mantissa == 0 || b.mantissa == 0 || a.negative != b.negative) {
        int signA = a.mantissa == 0 ? 0 : a.negative ? -1 : 1, signB = b.mantissa == 0 ? 0 : b.negative ? -1 : 1;
        return signA < signB ? -1 : signA > signB;
    }
    int magnitude = 0;
    int sizeA = digitsOf(a.mantissa) + a.exponent, sizeB = digitsOf(b.mantissa) + b.exponent;
    if (sizeA != sizeB)
        magnitude = sizeA < sizeB ? -1 : 1;
    else {
        Wide x(a.mantissa), y(b.mantissa);
        x.scale(a.exponent - b.exponent);
        y.scale(b.exponent - a.exponent);
        magnitude = x.compare(y);
    }
    return a.negative ? -magnitude : magnitude;
}

double Decimal::toDouble() const noexcept {
    if (notANumber) return std::numeric_limits<double>::quiet_NaN();
    // Both operands are exact up to here, so that one division or multiplication rounds correctly.
    constexpr int mostExactPower = 22;
    static constexpr double power[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                       1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    double v = 0;
    if (mantissa < UInt128(1) << 53 && std::abs(exponent) <= mostExactPower) {
        v = static_cast<double>(static_cast<std::uint64_t>(mantissa));
        v = exponent < 0 ? v / power[-exponent] : v * power[exponent];
    } else {
        char text[48], all[48];
        const int n = detail::putMantissa(mantissa, text);
        char* p = std::copy(text, text + n, all);
        *p++ = 'e';
        p = std::to_chars(p, all + sizeof all, exponent).ptr;
        std::from_chars(all, p, v);
    }
    return negative ? -v : v;
}

std::uint64_t Decimal::integerMagnitude() const noexcept {
    constexpr auto most = std::numeric_limits<std::uint64_t>::max();
    if (notANumber || mantissa == 0) return 0;
    if (exponent < 0) {
        if (-exponent >= digitsOf(mantissa)) return 0;
        UInt128 cut = mantissa / ten.of[-exponent];
        return cut > most ? most : static_cast<std::uint64_t>(cut);
    }
    if (digitsOf(mantissa) + exponent > 20) return most;
    UInt128 whole = mantissa * ten.of[exponent];
    return whole > most ? most : static_cast<std::uint64_t>(whole);
}

template <class Unit> Unit* Decimal::write(Unit* to) const noexcept {
    if (notANumber) {
        *to++ = 'N';
        *to++ = 'a';
        *to++ = 'N';
        return to;
    }
    if (negative) *to++ = '-';
    if (!(mantissa >> 63)) return detail::putDecimal(static_cast<std::uint64_t>(mantissa), exponent, to);
    char text[48];
    const int n = detail::putMantissa(mantissa, text);
    const int point = n + exponent; // digits before the point
    if (exponent >= 0) return std::fill_n(std::copy(text, text + n, to), exponent, Unit{'0'});
    if (point > 0) {
        to = std::copy(text, text + point, to);
        *to++ = '.';
        return std::copy(text + point, text + n, to);
    }
    *to++ = '0';
    *to++ = '.';
    return std::copy(text, text + n, std::fill_n(to, -point, Unit{'0'}));
}
template <class Unit> Unit* Decimal::write(const NSDecimalNumber& n, Unit* to) noexcept {
    if (n.isLong()) return of(n).write(to);
    if (n.isNegative()) *to++ = '-';
    return detail::putDecimal(n.mantissa().low, n.exponent(), to);
}
template std::uint8_t* Decimal::write(const NSDecimalNumber& n, std::uint8_t* to) noexcept;
template unichar* Decimal::write(const NSDecimalNumber& n, unichar* to) noexcept;

void Decimal::appendTo(StringBuilder& b) const {
    char text[mostUnits];
    b.append(std::string_view(text, static_cast<std::size_t>(write(text) - text)));
}

} // namespace libvue

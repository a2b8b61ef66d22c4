#include <libvue/platform/foundation/NumberText.h>

#include <charconv>
#include <cmath>

namespace libvue {

namespace {

template <class T> void append(StringBuilder& b, T v) {
    // Plain digits as long as a reader can take them in: the library's own choice writes 100000 as 1e+05.
    constexpr int mostIntegerDigits = 17, mostLeadingZeros = 4;
    if (!std::isfinite(v)) {
        b.append(std::isnan(v) ? "nan" : v < 0 ? "-inf" : "inf");
        return;
    }
    char text[64];
    auto scientific = std::to_chars(text, text + sizeof text, v, std::chars_format::scientific);
    const char* e = scientific.ptr;
    while (e[-1] != 'e')
        --e;
    int exponent = 0;
    std::from_chars(*e == '+' ? e + 1 : e, scientific.ptr, exponent);
    if (exponent >= -mostLeadingZeros && exponent < mostIntegerDigits)
        scientific = std::to_chars(text, text + sizeof text, v, std::chars_format::fixed);
    b.append(std::string_view(text, static_cast<std::size_t>(scientific.ptr - text)));
}

} // namespace

void appendShortest(StringBuilder& b, double v) { append(b, v); }
void appendShortest(StringBuilder& b, float v) { append(b, v); }

} // namespace libvue

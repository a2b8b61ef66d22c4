#include <libvue/platform/graphics/ColorConversion.h>

#include <algorithm>
#include <cmath>

namespace libvue {

HSB hsbFromRGB(const RGB& c) noexcept {
    const double high = std::max({c.red, c.green, c.blue});
    const double low = std::min({c.red, c.green, c.blue});
    const double span = high - low;
    if (span <= 0) return {0, 0, high};
    double sector;
    if (high == c.red)
        sector = (c.green - c.blue) / span;
    else if (high == c.green)
        sector = (c.blue - c.red) / span + 2;
    else
        sector = (c.red - c.green) / span + 4;
    if (sector < 0) sector += 6;
    const double hue = sector / 6;
    return {hue < 1 ? hue : 0, span / high, high};
}

RGB rgbFromHSB(const HSB& c) noexcept {
    const double sector = c.hue >= 1 ? 0 : c.hue * 6;
    const int i = static_cast<int>(sector);
    const double f = sector - i;
    const double v = c.brightness;
    const double p = v * (1 - c.saturation);
    const double q = v * (1 - c.saturation * f);
    const double t = v * (1 - c.saturation * (1 - f));
    switch (i) {
    case 0:
        return {v, t, p};
    case 1:
        return {q, v, p};
    case 2:
        return {p, v, t};
    case 3:
        return {p, q, v};
    case 4:
        return {t, p, v};
    default:
        return {v, p, q};
    }
}

double whiteFromRGB(const RGB& c) noexcept {
    // A grey stays what it is to the last bit.
    if (c.red == c.green && c.green == c.blue) return c.red;
    return 0.299 * c.red + 0.587 * c.green + 0.114 * c.blue;
}

} // namespace libvue

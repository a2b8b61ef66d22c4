#include <libvue/platform/backend/qt/RasterShadow.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <list>
#include <utility>
#include <vector>

#include <libvue/platform/backend/qt/QtConvert.h>

namespace libvue::backend {

namespace {

/// One byte a pixel.
struct Mask {
    int width = 0, height = 0;
    std::vector<std::uint8_t> alpha;
    friend bool operator==(const Mask&, const Mask&) = default;
};

/// Three boxes that together come near a Gaussian of half the radius. Each is an odd number of pixels wide.
std::array<int, 3> halfBoxes(double radius) noexcept {
    const double sigma = std::clamp(radius, 0.0, 400.0) / 2;
    const double ideal = std::sqrt(12 * sigma * sigma / 3 + 1);
    int lower = static_cast<int>(ideal);
    if (lower % 2 == 0) --lower;
    const double smaller = (12 * sigma * sigma - 3.0 * lower * lower - 12.0 * lower - 9) / (-4.0 * lower - 4);
    std::array<int, 3> halves{};
    for (int i = 0; i < 3; ++i)
        halves[static_cast<std::size_t>(i)] = (i < std::lround(smaller) ? lower : lower + 2) / 2;
    return halves;
}

/// A box of 2·half + 1 along a row that is zero beyond its ends. Division is by multiplication, rounded.
void blurRow(const std::uint8_t* in, std::uint8_t* out, int n, int half) noexcept {
    const int size = 2 * half + 1;
    const std::uint32_t factor = ((1u << 24) + static_cast<std::uint32_t>(size) / 2) / static_cast<std::uint32_t>(size);
    std::uint32_t sum = 0;
    for (int i = 0; i < std::min(half, n); ++i)
        sum += in[i];
    for (int i = 0; i < n; ++i) {
        if (i + half < n) sum += in[i + half];
        if (i - half - 1 >= 0) sum -= in[i - half - 1];
        out[i] = static_cast<std::uint8_t>((static_cast<std::uint64_t>(sum) * factor + (1u << 23)) >> 24);
    }
}

/// The same down the columns, all of them at once, row by row.
void blurColumns(const std::uint8_t* in, std::uint8_t* out, int width, int height, int half) {
    const int size = 2 * half + 1;
    const float factor = 1.0F / static_cast<float>(size);
    const auto w = static_cast<std::size_t>(width);
    std::vector<std::uint32_t> sums(w);
    const auto row = [&](int y) { return in + static_cast<std::size_t>(y) * w; };
    for (int y = 0; y < std::min(half, height); ++y)
        for (std::size_t x = 0; x < w; ++x)
            sums[x] += row(y)[x];
    for (int y = 0; y < height; ++y) {
        std::uint8_t* o = out + static_cast<std::size_t>(y) * w;
        // Most shapes have straight sides: the row that comes in is the one that goes out, and the sums stay.
        const bool bothWays = y + half < height && y - half - 1 >= 0;
        if (bothWays && std::memcmp(row(y + half), row(y - half - 1), w) == 0) {
            std::memcpy(o, o - w, w);
            continue;
        }
        if (y + half < height)
            for (std::size_t x = 0; x < w; ++x)
                sums[x] += row(y + half)[x];
        if (y - half - 1 >= 0)
            for (std::size_t x = 0; x < w; ++x)
                sums[x] -= row(y - half - 1)[x];
        for (std::size_t x = 0; x < w; ++x)
            o[x] = static_cast<std::uint8_t>(static_cast<float>(sums[x]) * factor + 0.5F);
    }
}

void blur(Mask& mask, double radius) {
    const auto halves = halfBoxes(radius);
    std::vector<std::uint8_t> other(mask.alpha.size());
    const auto w = static_cast<std::size_t>(mask.width);
    for (const int half : halves) {
        if (half == 0) continue;
        for (int y = 0; y < mask.height; ++y) {
            const std::uint8_t* in = mask.alpha.data() + static_cast<std::size_t>(y) * w;
            std::uint8_t* out = other.data() + static_cast<std::size_t>(y) * w;
            if (y > 0 && std::memcmp(in, in - w, w) == 0)
                std::memcpy(out, out - w, w);
            else
                blurRow(in, out, mask.width, half);
        }
        blurColumns(other.data(), mask.alpha.data(), mask.width, mask.height, half);
    }
}

std::uint64_t hashOf(const Mask& mask) noexcept {
    std::uint64_t h =
        0x9e3779b97f4a7c15u ^ (static_cast<std::uint64_t>(mask.width) << 32) ^ static_cast<std::uint64_t>(mask.height);
    std::size_t i = 0;
    for (; i + 8 <= mask.alpha.size(); i += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, mask.alpha.data() + i, 8);
        h = (h ^ word) * 0xff51afd7ed558ccdu;
        h ^= h >> 32;
    }
    for (; i < mask.alpha.size(); ++i)
        h = (h ^ mask.alpha[i]) * 0xff51afd7ed558ccdu;
    return h;
}

/// The shadows that were used last. Whole masks are compared, so a hit is exact.
class ShadowCache {
public:
    static ShadowCache& shared() {
        static ShadowCache cache;
        return cache;
    }

    QImage find(std::uint64_t hash, const Mask& mask, double radius, QRgba64 color) {
        for (auto i = entries_.begin(); i != entries_.end(); ++i) {
            if (i->hash != hash || i->radius != radius || i->color != color || i->mask != mask) continue;
            entries_.splice(entries_.begin(), entries_, i);
            return entries_.front().image;
        }
        return {};
    }
    void add(std::uint64_t hash, Mask mask, double radius, QRgba64 color, const QImage& image) {
        const std::size_t cost = mask.alpha.size() + static_cast<std::size_t>(image.sizeInBytes());
        if (cost > limit / 4) return;
        entries_.push_front({hash, radius, color, std::move(mask), image, cost});
        total_ += cost;
        while (total_ > limit) {
            total_ -= entries_.back().cost;
            entries_.pop_back();
        }
    }

private:
    static constexpr std::size_t limit = 8u << 20;
    struct Entry {
        std::uint64_t hash;
        double radius;
        QRgba64 color;
        Mask mask;
        QImage image;
        std::size_t cost;
    };
    std::list<Entry> entries_;
    std::size_t total_ = 0;
};

} // namespace

int blurReach(double radius) noexcept {
    int reach = 0;
    for (const int half : halfBoxes(radius))
        reach += half;
    return reach;
}

BlurredShadow shadowOf(const QImage& content, double radius, const Color& color, double alpha) {
    const int pad = blurReach(radius);
    Mask mask;
    mask.width = content.width() + 2 * pad;
    mask.height = content.height() + 2 * pad;
    mask.alpha.resize(static_cast<std::size_t>(mask.width) * static_cast<std::size_t>(mask.height));
    for (int y = 0; y < content.height(); ++y) {
        const auto* in = reinterpret_cast<const QRgb*>(content.constScanLine(y));
        std::uint8_t* out =
            mask.alpha.data() + static_cast<std::size_t>(y + pad) * static_cast<std::size_t>(mask.width) + pad;
        for (int x = 0; x < content.width(); ++x)
            out[x] = static_cast<std::uint8_t>(in[x] >> 24);
    }
    const QRgba64 tint = toRgba64(color, alpha);
    const std::uint64_t hash = hashOf(mask);
    auto& cache = ShadowCache::shared();
    QImage image = cache.find(hash, mask, radius, tint);
    if (!image.isNull()) return {std::move(image), {-pad, -pad}};

    Mask blurred = mask;
    blur(blurred, radius);
    std::array<QRgb, 256> shades;
    for (unsigned i = 0; i < shades.size(); ++i)
        shades[i] = toPremultiplied(color, alpha * i / 255);
    image = QImage(blurred.width, blurred.height, QImage::Format_ARGB32_Premultiplied);
    const std::uint8_t* in = blurred.alpha.data();
    for (int y = 0; y < blurred.height; ++y) {
        auto* out = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < blurred.width; ++x)
            out[x] = shades[*in++];
    }
    cache.add(hash, std::move(mask), radius, tint, image);
    return {std::move(image), {-pad, -pad}};
}

} // namespace libvue::backend

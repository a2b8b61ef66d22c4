#include <libvue/platform/backend/qt/RasterMemory.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <vector>

#include <QImage>
#include <QSize>

namespace libvue::backend {

namespace {

constexpr double mostPixels = 100e6, longestSide = 32767;

struct Block {
    void* memory;
    std::size_t size;
};

/// Blocks that nobody uses, the last one that came at the end. Images may end on any thread.
class FreeBlocks {
public:
    /// Never destroyed: images that are kept for the life of the process end after everything else.
    static FreeBlocks& shared() {
        static auto* const all = new FreeBlocks;
        return *all;
    }

    /// One that fits and wastes at most a quarter; null where there is none.
    void* take(std::size_t size) {
        const std::scoped_lock lock(mutex_);
        const auto fits = [&](const Block& b) { return b.size >= size && b.size - size <= size / 4; };
        const auto found = std::find_if(blocks_.rbegin(), blocks_.rend(), fits);
        if (found == blocks_.rend()) return nullptr;
        void* memory = found->memory;
        total_ -= found->size;
        blocks_.erase(std::next(found).base());
        return memory;
    }
    void give(Block block) {
        const std::scoped_lock lock(mutex_);
        blocks_.push_back(block);
        total_ += block.size;
        while (total_ > most) {
            total_ -= blocks_.front().size;
            std::free(blocks_.front().memory);
            blocks_.erase(blocks_.begin());
        }
    }

private:
    static constexpr std::size_t most = 4u << 20;
    std::mutex mutex_;
    std::vector<Block> blocks_;
    std::size_t total_ = 0;
};

/// In front of the pixels; of the size that keeps them aligned.
struct alignas(64) Header {
    std::size_t size;
};

/// Below, the C library keeps memory by itself; above, it would be too much to keep.
constexpr bool isKept(std::size_t size) noexcept { return size >= (64u << 10) && size <= (2u << 20); }

void giveBack(void* memory) {
    const std::size_t size = static_cast<Header*>(memory)->size;
    if (isKept(size))
        FreeBlocks::shared().give({memory, size});
    else
        std::free(memory);
}

/// Its pixels are what was in that memory.
QImage blankImage(QSize pixels) {
    if (!isReasonablePicture(pixels.width(), pixels.height())) return {};
    const std::size_t line = static_cast<std::size_t>(pixels.width()) * sizeof(QRgb);
    const std::size_t bytes = line * static_cast<std::size_t>(pixels.height());
    constexpr std::size_t unit = sizeof(Header);
    const std::size_t size = (bytes + unit - 1) / unit * unit + unit;
    void* memory = isKept(size) ? FreeBlocks::shared().take(size) : nullptr;
    if (!memory) {
        memory = std::aligned_alloc(alignof(Header), size);
        if (!memory) return {};
        static_cast<Header*>(memory)->size = size;
    }
    auto* first = static_cast<std::uint8_t*>(memory) + unit;
    return {
        first,    pixels.width(), pixels.height(), static_cast<qsizetype>(line), QImage::Format_ARGB32_Premultiplied,
        giveBack, memory};
}

} // namespace

bool isReasonablePicture(double width, double height) noexcept {
    return width >= 1 && height >= 1 && width <= longestSide && height <= longestSide && width * height <= mostPixels;
}

QImage transparentImage(QSize pixels) {
    QImage image = blankImage(pixels);
    if (!image.isNull()) std::memset(image.bits(), 0, static_cast<std::size_t>(image.sizeInBytes()));
    return image;
}

QImage copyOf(const QImage& image) {
    QImage copy = image.format() == QImage::Format_ARGB32_Premultiplied ? blankImage(image.size()) : QImage();
    if (copy.isNull()) return image.copy();
    const auto line = static_cast<std::size_t>(copy.bytesPerLine());
    for (int y = 0; y < copy.height(); ++y)
        std::memcpy(copy.scanLine(y), image.constScanLine(y), line);
    return copy;
}

} // namespace libvue::backend

#include <libvue/platform/foundation/LinePool.h>

#include <new>
#include <utility>

namespace libvue::detail {

namespace {

constexpr std::size_t line = 64;
constexpr std::align_val_t onLines{line};

#ifdef NDEBUG

constexpr std::size_t mostLines = 16;
constexpr std::size_t slabBytes = 16 * 1024;

struct Free {
    Free* next;
};

/// The blocks of one size: those given back, and what is left of the slab begun last.
struct Size {
    Free* free = nullptr;
    std::byte* next = nullptr;
    std::size_t left = 0;
};
constinit Size sizes[mostLines + 1];

#endif

} // namespace

void* takeLines(std::size_t bytes) {
#ifdef NDEBUG
    const std::size_t lines = (bytes + line - 1) / line;
    if (lines <= mostLines) {
        Size& size = sizes[lines];
        if (size.free) return std::exchange(size.free, size.free->next);
        if (size.left == 0) {
            size.left = slabBytes / (lines * line);
            size.next = static_cast<std::byte*>(::operator new(size.left* lines* line, onLines));
        }
        --size.left;
        return std::exchange(size.next, size.next + lines * line);
    }
#endif
    return ::operator new(bytes, onLines);
}

void giveLines(void* p, [[maybe_unused]] std::size_t bytes) noexcept {
    if (!p) return;
#ifdef NDEBUG
    const std::size_t lines = (bytes + line - 1) / line;
    if (lines <= mostLines) {
        sizes[lines].free = new (p) Free{sizes[lines].free};
        return;
    }
#endif
    ::operator delete(p, onLines);
}

} // namespace libvue::detail

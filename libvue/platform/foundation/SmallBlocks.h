#pragma once

#include <cstddef>
#include <cstdint>

#include <libvue/platform/foundation/Export.h>

// Memory of small objects, for the sources of the platform's collections, texts and numbers.

#if defined(__SANITIZE_ADDRESS__)
#define LIBVUE_BLOCKS_FROM_HEAP 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define LIBVUE_BLOCKS_FROM_HEAP 1
#endif
#endif
#ifndef LIBVUE_BLOCKS_FROM_HEAP
/// Under the address sanitizer each block comes from the heap by itself, so that the sanitizer sees it.
#define LIBVUE_BLOCKS_FROM_HEAP 0
#endif

namespace libvue::detail {

class BlockHeap;

/// Blocks of one size, 64 KB together with this head and aligned so, which is how a block finds it.
struct BlockSlab {
    static constexpr std::size_t size = 1 << 16;

    void* free;
    BlockHeap* heap;
    std::uint32_t live;
    std::uint32_t unit;
    bool full; // in no list: nothing was free when it was last looked at
    BlockSlab* next;
    BlockSlab* previous;
    char* fresh; // from here on nothing was handed out yet
    char* limit; // the last place where a block may begin

    static BlockSlab* of(void* block) noexcept {
        return reinterpret_cast<BlockSlab*>(reinterpret_cast<std::uintptr_t>(block) & ~std::uintptr_t(size - 1));
    }
};

/// The blocks of one thread. Nobody else touches them, but that a block may be given back from anywhere.
class BlockHeap {
public:
    static constexpr std::size_t mostBytes = 512;
    static constexpr std::size_t classes = mostBytes / 8 + 1;

    BlockSlab* current[classes];
};

/// The heap of this thread; before its first block one that has nothing.
extern constinit thread_local BlockHeap* threadBlocks __attribute__((tls_model("initial-exec")));

/// Blocks of up to `most` bytes, aligned to 8, from lists of free ones a thread: much cheaper than the general heap,
/// and without its head of a block.
struct LIBVUE_API SmallBlocks {
    static constexpr std::size_t most = BlockHeap::mostBytes;

    /// `bytes` is not 0 and not above `most`.
    [[nodiscard]] static void* take(std::size_t bytes);
    static void give(void* block) noexcept;
    /// The same for any number of bytes, which must be told again when the block is given back.
    [[nodiscard]] static void* takeAny(std::size_t bytes);
    static void giveAny(void* block, std::size_t bytes) noexcept;
    /// The bytes of the blocks that this thread handed out and that are in use.
    [[nodiscard]] static std::size_t bytesInUse() noexcept;

    [[nodiscard]] static void* takeFast(std::size_t bytes) {
        if constexpr (LIBVUE_BLOCKS_FROM_HEAP) return take(bytes);
        BlockSlab* const s = threadBlocks->current[(bytes + 7) / 8];
        void* p = s->free;
        if (p)
            s->free = *static_cast<void**>(p);
        else {
            p = s->fresh;
            if (p > s->limit) [[unlikely]]
                return takeSlowly(bytes);
            s->fresh += s->unit;
        }
        ++s->live;
        return p;
    }
    static void giveFast(void* block) noexcept {
        if constexpr (LIBVUE_BLOCKS_FROM_HEAP) {
            give(block);
            return;
        }
        BlockSlab* const s = BlockSlab::of(block);
        if (s->heap != threadBlocks) [[unlikely]] {
            giveElsewhere(s, block);
            return;
        }
        *static_cast<void**>(block) = s->free;
        s->free = block;
        if (--s->live == 0 || s->full) [[unlikely]]
            settle(s);
    }

private:
    static void* takeSlowly(std::size_t bytes);
    static void giveElsewhere(BlockSlab* slab, void* block) noexcept;
    static void settle(BlockSlab* slab) noexcept;
};

} // namespace libvue::detail

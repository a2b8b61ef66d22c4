#include <libvue/platform/foundation/SmallBlocks.h>

#include <atomic>
#include <mutex>
#include <new>
#include <vector>

#include <sys/mman.h>

namespace libvue::detail {

namespace {

constexpr std::size_t regionBytes = 1 << 20;
/// Empty slabs beyond so many give their pages back to the system.
constexpr std::size_t mostIdle = 128;
/// Its end is below its begin.
char noRoom[2];
constinit BlockSlab nothing{nullptr, nullptr, 0, 0, false, nullptr, nullptr, noRoom + 1, noRoom};

constexpr BlockHeap emptyHeap() {
    BlockHeap h{};
    for (BlockSlab*& s : h.current)
        s = &nothing;
    return h;
}
BlockHeap empty = emptyHeap();

char* firstBlock(BlockSlab* s) noexcept { return reinterpret_cast<char*>(s) + (sizeof(BlockSlab) + 63) / 64 * 64; }

} // namespace

constinit thread_local BlockHeap* threadBlocks = &empty;

namespace {

class OwnHeap : public BlockHeap {
public:
    OwnHeap() : BlockHeap(empty) {}

    void* take(std::size_t bytes) {
        collect();
        const std::size_t c = (bytes + 7) / 8;
        BlockSlab* s = current[c];
        if (void* p = pop(s)) return p;
        if (s != &nothing) s->full = true;
        if (BlockSlab* p = partial_[c]) {
            unlink(p, c);
            s = p;
        } else
            s = fresh(c * 8);
        current[c] = s;
        return pop(s);
    }

    void settle(BlockSlab* s) noexcept {
        const std::size_t c = s->unit / 8;
        if (s->full) {
            s->full = false;
            link(s, c);
        }
        if (s->live != 0) return;
        // All of it is free again: blocks are handed out in order of their addresses once more.
        s->free = nullptr;
        s->fresh = firstBlock(s);
        if (current[c] == s) return;
        unlink(s, c);
        retire(s);
    }

    void giveFromElsewhere(void* block) noexcept {
        void* first = foreign_.load(std::memory_order_relaxed);
        do
            *static_cast<void**>(block) = first;
        while (!foreign_.compare_exchange_weak(first, block, std::memory_order_release, std::memory_order_relaxed));
    }

    [[nodiscard]] std::size_t bytesInUse() const noexcept {
        std::size_t bytes = 0;
        for (char* region : regions_)
            for (std::size_t at = 0; at < regionBytes; at += BlockSlab::size) {
                const auto* s = reinterpret_cast<const BlockSlab*>(region + at);
                if (s->heap) bytes += std::size_t(s->live) * s->unit;
            }
        return bytes;
    }

private:
    /// Null where the slab has nothing left.
    static void* pop(BlockSlab* s) noexcept {
        void* p = s->free;
        if (p)
            s->free = *static_cast<void**>(p);
        else {
            p = s->fresh;
            if (p > s->limit) return nullptr;
            s->fresh += s->unit;
        }
        ++s->live;
        return p;
    }
    BlockSlab* fresh(std::size_t unit) {
        if (!idle_) map();
        BlockSlab* s = idle_;
        idle_ = s->next;
        if (idleCount_) --idleCount_;
        *s = {nullptr,
              this,
              0,
              static_cast<std::uint32_t>(unit),
              false,
              nullptr,
              nullptr,
              firstBlock(s),
              reinterpret_cast<char*>(s) + BlockSlab::size - unit};
        return s;
    }
    void map() {
        constexpr std::size_t all = regionBytes + BlockSlab::size;
        void* p = mmap(nullptr, all, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (p == MAP_FAILED) throw std::bad_alloc();
        auto* const begin = static_cast<char*>(p);
        char* const region = reinterpret_cast<char*>(BlockSlab::of(begin + BlockSlab::size - 1));
        if (region != begin) munmap(begin, static_cast<std::size_t>(region - begin));
        munmap(region + regionBytes, static_cast<std::size_t>(begin + all - (region + regionBytes)));
        regions_.push_back(region);
        for (std::size_t at = regionBytes; at > 0;) {
            at -= BlockSlab::size;
            auto* s = reinterpret_cast<BlockSlab*>(region + at);
            s->next = idle_;
            idle_ = s;
        }
    }
    void retire(BlockSlab* s) noexcept {
        s->heap = nullptr;
        s->next = idle_;
        idle_ = s;
        if (++idleCount_ <= mostIdle) return;
        // The first page keeps the links.
        constexpr std::size_t page = 4096;
        madvise(reinterpret_cast<char*>(s) + page, BlockSlab::size - page, MADV_DONTNEED);
    }
    void link(BlockSlab* s, std::size_t c) noexcept {
        s->previous = nullptr;
        s->next = partial_[c];
        if (s->next) s->next->previous = s;
        partial_[c] = s;
    }
    void unlink(BlockSlab* s, std::size_t c) noexcept {
        (s->previous ? s->previous->next : partial_[c]) = s->next;
        if (s->next) s->next->previous = s->previous;
    }
    void collect() noexcept {
        void* p =
            foreign_.load(std::memory_order_relaxed) ? foreign_.exchange(nullptr, std::memory_order_acquire) : nullptr;
        while (p) {
            void* const block = p;
            p = *static_cast<void**>(p);
            BlockSlab* s = BlockSlab::of(block);
            *static_cast<void**>(block) = s->free;
            s->free = block;
            if (--s->live == 0 || s->full) settle(s);
        }
    }

    BlockSlab* partial_[classes] = {};
    BlockSlab* idle_ = nullptr;
    std::size_t idleCount_ = 0; // of slabs that were in use before
    std::vector<char*> regions_;
    std::atomic<void*> foreign_{nullptr};
};

/// The heaps of threads that have ended, for threads that begin: their blocks may still be in use.
struct LeftHeaps {
    std::mutex mutex;
    std::vector<OwnHeap*> heaps;
};
LeftHeaps& leftHeaps() {
    static auto& l = *new LeftHeaps;
    return l;
}

struct HeapOfThread {
    OwnHeap* heap = nullptr;
    ~HeapOfThread() {
        // What this thread still gives back after this goes the way of other threads.
        threadBlocks = &empty;
        if (!heap) return;
        const std::lock_guard lock(leftHeaps().mutex);
        leftHeaps().heaps.push_back(heap);
    }
};

OwnHeap& ownHeap() {
    if (threadBlocks != &empty) return static_cast<OwnHeap&>(*threadBlocks);
    OwnHeap* heap = nullptr;
    {
        const std::lock_guard lock(leftHeaps().mutex);
        if (!leftHeaps().heaps.empty()) {
            heap = leftHeaps().heaps.back();
            leftHeaps().heaps.pop_back();
        }
    }
    if (!heap) heap = new OwnHeap;
    static thread_local HeapOfThread own;
    own.heap = heap;
    threadBlocks = heap;
    return *heap;
}

} // namespace

void* SmallBlocks::take(std::size_t bytes) {
    if constexpr (LIBVUE_BLOCKS_FROM_HEAP) return ::operator new(bytes);
    return takeFast(bytes);
}

void SmallBlocks::give(void* block) noexcept {
    if constexpr (LIBVUE_BLOCKS_FROM_HEAP)
        ::operator delete(block);
    else
        giveFast(block);
}

void* SmallBlocks::takeAny(std::size_t bytes) { return bytes <= most ? take(bytes) : ::operator new(bytes); }

void SmallBlocks::giveAny(void* block, std::size_t bytes) noexcept {
    if (bytes <= most)
        give(block);
    else
        ::operator delete(block);
}

std::size_t SmallBlocks::bytesInUse() noexcept {
    return threadBlocks == &empty ? 0 : static_cast<OwnHeap*>(threadBlocks)->bytesInUse();
}

void* SmallBlocks::takeSlowly(std::size_t bytes) { return ownHeap().take(bytes); }

void SmallBlocks::giveElsewhere(BlockSlab* slab, void* block) noexcept {
    static_cast<OwnHeap*>(slab->heap)->giveFromElsewhere(block);
}

void SmallBlocks::settle(BlockSlab* slab) noexcept { static_cast<OwnHeap*>(slab->heap)->settle(slab); }

} // namespace libvue::detail

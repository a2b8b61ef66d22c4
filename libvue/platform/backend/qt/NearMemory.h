#pragma once

#include <cstddef>
#include <functional>
#include <memory_resource>

namespace libvue::backend {

/// Memory that stands in its owner, for containers that nearly always hold little; what does not fit comes from the
/// heap. Near memory is not used again before the owner ends.
template <std::size_t size> class NearMemory final : public std::pmr::memory_resource {
public:
    NearMemory() = default;
    NearMemory(const NearMemory&) = delete;
    NearMemory& operator=(const NearMemory&) = delete;

private:
    alignas(std::max_align_t) std::byte bytes_[size];
    std::size_t used_ = 0;

    void* do_allocate(std::size_t bytes, std::size_t alignment) override {
        const std::size_t at = (used_ + alignment - 1) / alignment * alignment;
        if (alignment > alignof(std::max_align_t) || at > size || bytes > size - at)
            return std::pmr::new_delete_resource()->allocate(bytes, alignment);
        used_ = at + bytes;
        return bytes_ + at;
    }
    void do_deallocate(void* memory, std::size_t bytes, std::size_t alignment) override {
        const auto* at = static_cast<const std::byte*>(memory);
        if (!std::less_equal<>()(bytes_ + 0, at) || !std::less<>()(at, bytes_ + size))
            std::pmr::new_delete_resource()->deallocate(memory, bytes, alignment);
    }
    [[nodiscard]] bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override {
        return this == &other;
    }
};

} // namespace libvue::backend

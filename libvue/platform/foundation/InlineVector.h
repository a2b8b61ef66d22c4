#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace libvue {

/// An array whose first elements stand in the object itself: for lists that are nearly always that short. Internal to
/// the platform.
template <class T, std::uint32_t N> class InlineVector {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    InlineVector() noexcept : near_{} {}
    ~InlineVector() {
        if (isFar()) delete[] far_;
    }
    InlineVector(const InlineVector&) = delete;
    InlineVector& operator=(const InlineVector&) = delete;

    [[nodiscard]] std::size_t size() const noexcept { return size_; }
    [[nodiscard]] bool empty() const noexcept { return size_ == 0; }
    [[nodiscard]] T* begin() noexcept { return isFar() ? far_ : near_; }
    [[nodiscard]] T* end() noexcept { return begin() + size_; }
    [[nodiscard]] const T* begin() const noexcept { return isFar() ? far_ : near_; }
    [[nodiscard]] const T* end() const noexcept { return begin() + size_; }
    T& operator[](std::size_t i) noexcept { return begin()[i]; }
    const T& operator[](std::size_t i) const noexcept { return begin()[i]; }
    [[nodiscard]] T& back() noexcept { return begin()[size_ - 1]; }

    void push_back(const T& value) {
        const T kept = value; // it may stand in this array
        if (size_ == capacity_) grow();
        begin()[size_++] = kept;
    }
    void pop_back() noexcept { --size_; }
    /// To fewer elements.
    void shrink(std::size_t size) noexcept { size_ = static_cast<std::uint32_t>(std::min<std::size_t>(size, size_)); }

private:
    [[nodiscard]] bool isFar() const noexcept { return capacity_ != N; }
    void grow() {
        T* wider = new T[2 * std::size_t{capacity_}];
        std::copy(begin(), end(), wider);
        if (isFar()) delete[] far_;
        far_ = wider;
        capacity_ *= 2;
    }

    std::uint32_t size_ = 0, capacity_ = N;
    union {
        T near_[N];
        T* far_;
    };
};

} // namespace libvue

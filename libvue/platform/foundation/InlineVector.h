#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace libvue {

/// An array whose first elements stand in the object itself: for lists that are nearly always that short. Internal to
/// the platform.
template <class T, std::uint32_t N> class InlineVector {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    InlineVector() noexcept = default;
    ~InlineVector() {
        if (data_ != near_) delete[] data_;
    }
    InlineVector(const InlineVector&) = delete;
    InlineVector& operator=(const InlineVector&) = delete;

    [[nodiscard]] std::size_t size() const noexcept { return size_; }
    [[nodiscard]] bool empty() const noexcept { return size_ == 0; }
    [[nodiscard]] T* begin() noexcept { return data_; }
    [[nodiscard]] T* end() noexcept { return data_ + size_; }
    [[nodiscard]] const T* begin() const noexcept { return data_; }
    [[nodiscard]] const T* end() const noexcept { return data_ + size_; }
    T& operator[](std::size_t i) noexcept { return data_[i]; }
    const T& operator[](std::size_t i) const noexcept { return data_[i]; }
    [[nodiscard]] T& back() noexcept { return data_[size_ - 1]; }

    void push_back(const T& value) {
        const T kept = value; // it may stand in this array
        if (size_ == capacity_) grow();
        data_[size_++] = kept;
    }
    void pop_back() noexcept { --size_; }
    void erase(T* at) noexcept {
        std::copy(at + 1, end(), at);
        --size_;
    }
    /// To fewer elements.
    void shrink(std::size_t size) noexcept { size_ = static_cast<std::uint32_t>(std::min<std::size_t>(size, size_)); }

private:
    void grow() {
        T* wider = new T[2 * std::size_t{capacity_}];
        std::copy(begin(), end(), wider);
        if (data_ != near_) delete[] data_;
        data_ = wider;
        capacity_ *= 2;
    }

    T* data_ = near_;
    std::uint32_t size_ = 0, capacity_ = N;
    T near_[N];
};

} // namespace libvue

#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <type_traits>
#include <utility>

#include <libvue/platform/foundation/Export.h>

namespace libvue {

class NSObject;

/// The object behind `p`: itself, or for a pointer to an abstract protocol class the object that implements it.
/// Null for null.
template <class T> NSObject* objectBehind(T* p) noexcept;

template <class T> void retain(T* p) noexcept;
template <class T> void release(T* p) noexcept;

struct AdoptTag {};
inline constexpr AdoptTag adoptTag{};

/// A shared reference: owns one count of its object; null means absent. `T` may be an abstract protocol class.
template <class T> class Ref {
public:
    using element_type = T;

    Ref() noexcept = default;
    Ref(std::nullptr_t) noexcept {}
    Ref(T* p) noexcept : p_(p) {
        if (p_) retain(p_);
    }
    /// Takes over the count that the caller holds.
    Ref(T* p, AdoptTag) noexcept : p_(p) {}
    Ref(const Ref& o) noexcept : Ref(o.p_) {}
    Ref(Ref&& o) noexcept : p_(std::exchange(o.p_, nullptr)) {}
    template <class U>
    requires std::convertible_to<U*, T*> Ref(const Ref<U>& o)
    noexcept : Ref(static_cast<T*>(o.get())) {}
    template <class U>
    requires std::convertible_to<U*, T*> Ref(Ref<U>&& o)
    noexcept : p_(o.leak()) {}
    ~Ref() {
        if (p_) release(p_);
    }

    Ref& operator=(const Ref& o) noexcept {
        if (this != &o) Ref(o).swap(*this);
        return *this;
    }
    Ref& operator=(Ref&& o) noexcept {
        Ref(std::move(o)).swap(*this);
        return *this;
    }
    template <class U>
    requires std::convertible_to<U*, T*> Ref& operator=(const Ref<U>& o) noexcept {
        Ref(o).swap(*this);
        return *this;
    }
    template <class U>
    requires std::convertible_to<U*, T*> Ref& operator=(Ref<U>&& o) noexcept {
        Ref(std::move(o)).swap(*this);
        return *this;
    }
    Ref& operator=(T* p) noexcept {
        Ref(p).swap(*this);
        return *this;
    }
    Ref& operator=(std::nullptr_t) noexcept {
        Ref().swap(*this);
        return *this;
    }

    [[nodiscard]] T* get() const noexcept { return p_; }
    T* operator->() const noexcept { return p_; }
    T& operator*() const noexcept { return *p_; }
    operator T*() const& noexcept { return p_; }
    /// A temporary converts too: the borrowed pointer is good until the end of the full expression.
    operator T*() const&& noexcept { return p_; }
    explicit operator bool() const noexcept { return p_ != nullptr; }

    /// Gives the count up to the caller.
    [[nodiscard]] T* leak() noexcept { return std::exchange(p_, nullptr); }
    void swap(Ref& o) noexcept { std::swap(p_, o.p_); }

    friend bool operator==(const Ref& a, const Ref& b) noexcept { return a.p_ == b.p_; }
    template <class U> friend bool operator==(const Ref& a, U* b) noexcept { return a.p_ == b; }
    friend bool operator==(const Ref& a, std::nullptr_t) noexcept { return a.p_ == nullptr; }

private:
    T* p_ = nullptr;
};

template <class T> [[nodiscard]] Ref<T> adopt(T* p) noexcept { return Ref<T>(p, adoptTag); }

/// Outlives its object; shared by all the weak references to it.
struct LIBVUE_API WeakBlock {
    NSObject* object;
    std::uint32_t holders;

    static WeakBlock* of(NSObject* object);
    void hold() noexcept { ++holders; }
    void drop() noexcept {
        if (--holders == 0) delete this;
    }
};

/// "Held weakly": reads as absent once the object is gone, and never dangles. `T` may be an abstract protocol class.
template <class T> class Weak {
public:
    Weak() noexcept = default;
    Weak(std::nullptr_t) noexcept {}
    Weak(T* p) : block_(WeakBlock::of(objectBehind(p))), p_(p) {}
    template <class U>
    requires std::convertible_to<U*, T*> Weak(const Ref<U>& r) : Weak(static_cast<T*>(r.get())) {}
    Weak(const Weak& o) noexcept : block_(o.block_), p_(o.p_) {
        if (block_) block_->hold();
    }
    Weak(Weak&& o) noexcept : block_(std::exchange(o.block_, nullptr)), p_(std::exchange(o.p_, nullptr)) {}
    ~Weak() {
        if (block_) block_->drop();
    }
    Weak& operator=(Weak o) noexcept {
        std::swap(block_, o.block_);
        std::swap(p_, o.p_);
        return *this;
    }

    [[nodiscard]] T* get() const noexcept { return block_ && block_->object ? p_ : nullptr; }
    T* operator->() const noexcept { return get(); }
    T& operator*() const noexcept { return *get(); }
    operator T*() const noexcept { return get(); }
    explicit operator bool() const noexcept { return get() != nullptr; }
    [[nodiscard]] Ref<T> ref() const noexcept { return Ref<T>(get()); }

    template <class U> friend bool operator==(const Weak& a, U* b) noexcept { return a.get() == b; }
    friend bool operator==(const Weak& a, const Weak& b) noexcept { return a.get() == b.get(); }
    friend bool operator==(const Weak& a, std::nullptr_t) noexcept { return a.get() == nullptr; }

private:
    WeakBlock* block_ = nullptr;
    T* p_ = nullptr;
};

} // namespace libvue

template <class T> struct std::hash<libvue::Ref<T>> {
    std::size_t operator()(const libvue::Ref<T>& r) const noexcept { return std::hash<T*>()(r.get()); }
};

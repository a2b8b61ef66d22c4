#pragma once

#include <cstddef>
#include <functional>
#include <iterator>

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// Hands out objects one after another, once. Keeps what it enumerates.
///
/// Changing a collection while it is enumerated is a programming error: a debug build asserts, a release build ends the
/// enumeration there.
class LIBVUE_API NSEnumerator : public NSObject {
public:
    static void describe(ClassDescription<NSEnumerator>& c);

    /// Null at the end.
    [[nodiscard]] virtual Ref<NSObject> nextObject() = 0;
    /// What is left, in order.
    [[nodiscard]] Ref<NSArray> allObjects();

    /// `for (NSObject* o : *enumerator)`: an object is good during its turn.
    class Iterator {
    public:
        explicit Iterator(NSEnumerator* e) : enumerator_(e), object_(e->nextObject()) {}
        NSObject* operator*() const noexcept { return object_.get(); }
        Iterator& operator++() {
            object_ = enumerator_->nextObject();
            return *this;
        }
        friend bool operator==(const Iterator& i, std::default_sentinel_t) noexcept { return !i.object_; }

    private:
        NSEnumerator* enumerator_;
        Ref<NSObject> object_;
    };
    [[nodiscard]] Iterator begin() { return Iterator(this); }
    [[nodiscard]] std::default_sentinel_t end() const noexcept { return {}; }
};

/// An enumerator over whatever a function gives, until it gives null.
class LIBVUE_API BlockEnumerator : public NSEnumerator {
public:
    explicit BlockEnumerator(std::function<Ref<NSObject>()> next);
    ~BlockEnumerator() override;
    [[nodiscard]] Ref<NSObject> nextObject() override;

private:
    std::function<Ref<NSObject>()> next_;
};

namespace detail {

/// A collection was changed under an enumeration: asserts in debug builds.
LIBVUE_API void noteMutationDuringEnumeration() noexcept;

/// A view of a range of objects as `T*` that passes over those that are none.
template <class T, class Iterator> class TypedRange {
public:
    explicit TypedRange(Iterator begin) : begin_(begin) {}
    class TypedIterator {
    public:
        explicit TypedIterator(Iterator i) : i_(i) { settle(); }
        T* operator*() const noexcept { return current_; }
        TypedIterator& operator++() {
            ++i_;
            settle();
            return *this;
        }
        friend bool operator==(const TypedIterator& a, std::default_sentinel_t) noexcept { return !a.current_; }

    private:
        void settle() {
            for (current_ = nullptr; i_ != std::default_sentinel; ++i_)
                if ((current_ = dynamic_cast<T*>(*i_))) return;
        }
        Iterator i_;
        T* current_ = nullptr;
    };
    [[nodiscard]] TypedIterator begin() const { return TypedIterator(begin_); }
    [[nodiscard]] std::default_sentinel_t end() const noexcept { return {}; }

private:
    Iterator begin_;
};

} // namespace detail
} // namespace libvue

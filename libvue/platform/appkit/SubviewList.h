#pragma once

#include <vector>

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/Ref.h>

namespace libvue {

/// The subviews of a view, back to front. It must not change while it is enumerated: an assertion in debug builds; a
/// release build goes on over what is left.
class LIBVUE_API SubviewList {
public:
    class Iterator {
    public:
        Iterator(const SubviewList& list, std::size_t index) noexcept
            : list_(&list), index_(index), changes_(list.changes_) {}
        NSView* operator*() const noexcept { return list_->views_[index_].get(); }
        Iterator& operator++() noexcept {
            ++index_;
            return *this;
        }
        /// True while something is left.
        bool operator!=(std::nullptr_t) const noexcept {
            list_->checkUnchanged(changes_);
            return index_ < list_->views_.size();
        }

    private:
        const SubviewList* list_;
        std::size_t index_;
        std::uint32_t changes_;
    };

    [[nodiscard]] Iterator begin() const noexcept { return {*this, 0}; }
    [[nodiscard]] std::nullptr_t end() const noexcept { return nullptr; }
    [[nodiscard]] std::size_t size() const noexcept { return views_.size(); }
    [[nodiscard]] std::size_t count() const noexcept { return views_.size(); }
    [[nodiscard]] bool empty() const noexcept { return views_.empty(); }
    /// Raises NSRangeException.
    [[nodiscard]] NSView* objectAtIndex(NSUInteger i) const;
    [[nodiscard]] NSView* operator[](std::size_t i) const { return objectAtIndex(i); }
    /// Null where there is none.
    [[nodiscard]] NSView* lastObject() const noexcept { return views_.empty() ? nullptr : views_.back().get(); }
    [[nodiscard]] NSView* firstObject() const noexcept { return views_.empty() ? nullptr : views_.front().get(); }
    /// NSNotFound where it is not in the list.
    [[nodiscard]] NSUInteger indexOfObject(const NSView* v) const noexcept;
    [[nodiscard]] bool containsObject(const NSView* v) const noexcept;
    /// A copy that may be enumerated while the list changes.
    [[nodiscard]] std::vector<Ref<NSView>> copy() const { return views_; }
    [[nodiscard]] Ref<NSArray> array() const;

private:
    friend class NSView;
    void checkUnchanged([[maybe_unused]] std::uint32_t changes) const noexcept {
#ifndef NDEBUG
        if (changes != changes_) changedWhileEnumerated();
#endif
    }
    [[noreturn]] static void changedWhileEnumerated() noexcept;

    std::vector<Ref<NSView>> views_;
    std::uint32_t changes_ = 0;
};

} // namespace libvue

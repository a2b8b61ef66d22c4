#pragma once

#include <iterator>
#include <vector>

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// Distinct indexes in rising order, kept as ranges that neither touch nor overlap. Indexes from NSNotFound up raise
/// NSRangeException.
class LIBVUE_API NSIndexSet : public NSObject {
public:
    static void describe(ClassDescription<NSIndexSet>& c);
    NSIndexSet() = default;
    explicit NSIndexSet(NSCoder& coder);
    ~NSIndexSet() override;

    [[nodiscard]] static Ref<NSIndexSet> indexSet();
    [[nodiscard]] static Ref<NSIndexSet> indexSetWithIndex(NSUInteger i);
    [[nodiscard]] static Ref<NSIndexSet> indexSetWithIndexesInRange(NSRange range);
    [[nodiscard]] static Ref<NSIndexSet> indexSetWithIndexSet(const NSIndexSet* s);

    [[nodiscard]] NSUInteger count() const noexcept;
    /// NSNotFound for the empty set, and where there is no such index.
    [[nodiscard]] NSUInteger firstIndex() const noexcept;
    [[nodiscard]] NSUInteger lastIndex() const noexcept;
    [[nodiscard]] NSUInteger indexGreaterThanIndex(NSUInteger i) const noexcept;
    [[nodiscard]] NSUInteger indexGreaterThanOrEqualToIndex(NSUInteger i) const noexcept;
    [[nodiscard]] NSUInteger indexLessThanIndex(NSUInteger i) const noexcept;
    [[nodiscard]] NSUInteger indexLessThanOrEqualToIndex(NSUInteger i) const noexcept;
    [[nodiscard]] BOOL containsIndex(NSUInteger i) const noexcept;
    [[nodiscard]] BOOL containsIndexesInRange(NSRange range) const noexcept;
    [[nodiscard]] NSUInteger countOfIndexesInRange(NSRange range) const noexcept;
    [[nodiscard]] BOOL isEqualToIndexSet(const NSIndexSet* s) const noexcept;
    /// The indexes as ranges in rising order.
    [[nodiscard]] const std::vector<NSRange>& ranges() const noexcept { return ranges_; }

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSString> description() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    [[nodiscard]] Ref<NSObject> mutableCopyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;

    /// `for (NSUInteger i : *indexes)`. A change meanwhile is followed: the next greater index comes.
    class Iterator {
    public:
        Iterator(const NSIndexSet* s, NSUInteger i) noexcept : set_(s), index_(i) {}
        NSUInteger operator*() const noexcept { return index_; }
        Iterator& operator++() noexcept {
            index_ = set_->indexGreaterThanIndex(index_);
            return *this;
        }
        friend bool operator==(const Iterator& i, std::default_sentinel_t) noexcept {
            return i.index_ == static_cast<NSUInteger>(NSNotFound);
        }

    private:
        const NSIndexSet* set_;
        NSUInteger index_;
    };
    [[nodiscard]] Iterator begin() const noexcept { return {this, firstIndex()}; }
    [[nodiscard]] std::default_sentinel_t end() const noexcept { return {}; }

protected:
    void add(NSRange range);
    void remove(NSRange range);

    std::vector<NSRange> ranges_;
};

/// An index set that can change.
class LIBVUE_API NSMutableIndexSet : public NSIndexSet {
public:
    static void describe(ClassDescription<NSMutableIndexSet, NSIndexSet>& c);
    NSMutableIndexSet() = default;
    explicit NSMutableIndexSet(NSCoder& coder) : NSIndexSet(coder) {}
    [[nodiscard]] static Ref<NSMutableIndexSet> indexSet();

    void addIndex(NSUInteger i) { add({i, 1}); }
    void addIndexesInRange(NSRange range) { add(range); }
    void addIndexes(const NSIndexSet* s);
    void removeIndexesInRange(NSRange range) { remove(range); }
    void removeAllIndexes() { ranges_.clear(); }
    /// Moves the indexes from `from` up by `delta`: a positive one opens a gap there, a negative one drops the indexes
    /// just below that would be run over.
    void shiftIndexesStartingAtIndex_by(NSUInteger from, NSInteger delta);

    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
};

} // namespace libvue

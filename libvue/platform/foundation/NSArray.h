#pragma once

#include <functional>
#include <initializer_list>
#include <iterator>
#include <vector>

#include <libvue/platform/foundation/NSEnumerator.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

namespace detail {
struct DocumentObjects;
}

using NSComparator = std::function<NSComparisonResult(NSObject*, NSObject*)>;

/// An ordered list of objects, kept in one contiguous block.
///
/// A null element raises NSInvalidArgumentException, an index out of range NSRangeException. Objects that are handed
/// out are borrowed from the list.
class LIBVUE_API NSArray : public NSObject {
public:
    static void describe(ClassDescription<NSArray>& c);
    NSArray() noexcept = default;
    explicit NSArray(NSCoder& coder);
    ~NSArray() override;
    static void* operator new(std::size_t size);
    static void* operator new(std::size_t, void* room) noexcept { return room; }
    static void operator delete(void* object, std::size_t size) noexcept;

    [[nodiscard]] static Ref<NSArray> array();
    [[nodiscard]] static Ref<NSArray> arrayWithObject(NSObject* o);
    [[nodiscard]] static Ref<NSArray> arrayWithObjects(std::initializer_list<NSObject*> objects);
    [[nodiscard]] static Ref<NSArray> arrayWithObjects_count(NSObject* const* objects, NSUInteger count);
    [[nodiscard]] static Ref<NSArray> arrayWithArray(const NSArray* a);
    /// The objects that the references name.
    template <class T> [[nodiscard]] static Ref<NSArray> arrayWithRefs(const std::vector<Ref<T>>& refs) {
        Ref<NSArray> a = make<NSArray>();
        a->reserve(refs.size());
        for (const Ref<T>& r : refs)
            a->append(r.get());
        return a;
    }
    /// The array in an archive file, or null.
    [[nodiscard]] static Ref<NSArray> arrayWithContentsOfFile(const NSString* path);

    [[nodiscard]] NSUInteger count() const noexcept { return count_; }
    [[nodiscard]] NSObject* objectAtIndex(NSUInteger i) const {
        if (i >= count_) raiseOutOfRange(i);
        return items()[i];
    }
    /// The element as a `T`, null where it is none.
    template <class T> [[nodiscard]] T* at(NSUInteger i) const { return dynamic_cast<T*>(objectAtIndex(i)); }
    NSObject* operator[](NSUInteger i) const { return objectAtIndex(i); }
    /// Null for the empty list.
    [[nodiscard]] NSObject* firstObject() const noexcept { return count_ ? items()[0] : nullptr; }
    [[nodiscard]] NSObject* lastObject() const noexcept { return count_ ? items()[count_ - 1] : nullptr; }
    /// The elements as they lie; good until the list changes.
    [[nodiscard]] NSObject* const* data() const noexcept { return items(); }

    /// NSNotFound where there is none. Null is in no list.
    [[nodiscard]] NSUInteger indexOfObject(const NSObject* o) const;
    [[nodiscard]] NSUInteger indexOfObject_inRange(const NSObject* o, NSRange range) const;
    [[nodiscard]] NSUInteger indexOfObjectIdenticalTo(const NSObject* o) const noexcept;
    [[nodiscard]] NSUInteger indexOfObjectPassingTest(const std::function<BOOL(NSObject*)>& test) const;
    [[nodiscard]] Ref<NSIndexSet> indexesOfObjectsPassingTest(const std::function<BOOL(NSObject*)>& test) const;
    [[nodiscard]] BOOL containsObject(const NSObject* o) const;
    /// The first element of this list that the other holds too, or null.
    [[nodiscard]] NSObject* firstObjectCommonWithArray(const NSArray* other) const;
    [[nodiscard]] BOOL isEqualToArray(const NSArray* other) const;

    [[nodiscard]] Ref<NSArray> arrayByAddingObject(NSObject* o) const;
    [[nodiscard]] Ref<NSArray> arrayByAddingObjectsFromArray(const NSArray* other) const;
    [[nodiscard]] Ref<NSArray> subarrayWithRange(NSRange range) const;
    [[nodiscard]] Ref<NSArray> objectsAtIndexes(const NSIndexSet* indexes) const;
    [[nodiscard]] Ref<NSArray> filteredArray(const std::function<BOOL(NSObject*)>& keep) const;
    /// The descriptions of the elements with `separator` between them.
    [[nodiscard]] Ref<NSString> componentsJoinedByString(const NSString* separator) const;

    /// Stable, and safe with any comparison. The selector's operation takes one object (or one text, number or date)
    /// and answers an NSComparisonResult; raises NSInvalidArgumentException where an element does not answer it.
    [[nodiscard]] Ref<NSArray> sortedArrayUsingSelector(SEL comparison) const;
    [[nodiscard]] Ref<NSArray> sortedArrayUsingComparator(const NSComparator& comparison) const;
    [[nodiscard]] Ref<NSArray> sortedArrayUsingFunction_context(NSInteger (*comparison)(NSObject*, NSObject*, void*),
                                                                void* context) const;
    [[nodiscard]] Ref<NSArray> sortedArrayUsingDescriptors(const NSArray* descriptors) const;

    /// Runs the operation on each element.
    void makeObjectsPerformSelector(SEL selector) const;
    void makeObjectsPerformSelector_withObject(SEL selector, NSObject* argument) const;
    /// `block` gets the element, its index and a flag that stops the enumeration.
    void enumerateObjectsUsingBlock(const std::function<void(NSObject*, NSUInteger, BOOL*)>& block) const;
    [[nodiscard]] Ref<NSEnumerator> objectEnumerator() const;
    [[nodiscard]] Ref<NSEnumerator> reverseObjectEnumerator() const;

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSString> description() const override;
    /// Itself while it cannot change.
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    [[nodiscard]] Ref<NSObject> mutableCopyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;
    /// The elements' values in a new list, absent ones as NSNull. "@count", "@sum", "@avg", "@min", "@max" with a path
    /// behind them are worked out over the elements; with a decimal number among them, sum and average are decimal.
    [[nodiscard]] Ref<NSObject> valueForKey(NSString* key) override;
    [[nodiscard]] Ref<NSObject> valueForKeyPath(NSString* path) override;
    /// Sets it on each element.
    void setValue_forKey(NSObject* value, NSString* key) override;

    /// `for (NSObject* o : *array)`.
    class Iterator {
    public:
        explicit Iterator(const NSArray* a) noexcept : array_(a), index_(0), mutations_(a->mutations_) {}
        NSObject* operator*() const noexcept { return array_->items()[index_]; }
        Iterator& operator++() noexcept {
            ++index_;
            return *this;
        }
        friend bool operator==(const Iterator& i, std::default_sentinel_t) noexcept { return i.atEnd(); }

    private:
        [[nodiscard]] bool atEnd() const noexcept {
            if (mutations_ != array_->mutations_) [[unlikely]] {
                detail::noteMutationDuringEnumeration();
                return true;
            }
            return index_ >= array_->count_;
        }
        const NSArray* array_;
        std::uint32_t index_;
        std::uint32_t mutations_;
    };
    [[nodiscard]] Iterator begin() const noexcept { return Iterator(this); }
    [[nodiscard]] std::default_sentinel_t end() const noexcept { return {}; }
    /// `for (NSView* v : subviews->as<NSView>())`: passes over what is no `T`.
    template <class T> [[nodiscard]] detail::TypedRange<T, Iterator> as() const {
        return detail::TypedRange<T, Iterator>(begin());
    }

protected:
    [[noreturn]] void raiseOutOfRange(NSUInteger i) const;
    void checkRange(NSRange range) const;
    void reserve(NSUInteger capacity);
    void append(NSObject* o);

    [[nodiscard]] NSObject** items() const noexcept { return isNear() ? const_cast<NSArray*>(this)->near_ : far_; }

    std::uint32_t count_ = 0;
    std::uint32_t mutations_ = 0;

private:
    // The elements stand at the end of the object itself where it was made with room for them (the tag tells for how
    // many, 0 for none), else in a block of their own, behind a word that holds its capacity.
    union {
        NSObject** far_ = nullptr;
        NSObject* near_[1];
    };

    [[nodiscard]] bool isNear() const noexcept { return tag() != 0; }
    [[nodiscard]] NSUInteger capacity() const noexcept;
    void grow(NSUInteger capacity);
    void freeItems() noexcept;
    friend class NSMutableArray;
    friend struct detail::DocumentObjects;
};

/// A list that can change.
class LIBVUE_API NSMutableArray : public NSArray {
public:
    static void describe(ClassDescription<NSMutableArray, NSArray>& c);
    NSMutableArray() noexcept = default;
    explicit NSMutableArray(NSCoder& coder) : NSArray(coder) {}

    [[nodiscard]] static Ref<NSMutableArray> array();
    [[nodiscard]] static Ref<NSMutableArray> arrayWithCapacity(NSUInteger capacity);
    [[nodiscard]] static Ref<NSMutableArray> arrayWithObject(NSObject* o);
    [[nodiscard]] static Ref<NSMutableArray> arrayWithObjects(std::initializer_list<NSObject*> objects);
    [[nodiscard]] static Ref<NSMutableArray> arrayWithArray(const NSArray* a);

    void addObject(NSObject* o) { append(o); }
    void addObjectsFromArray(const NSArray* other);
    void insertObject_atIndex(NSObject* o, NSUInteger index);
    /// The objects land at those indexes of the changed list.
    void insertObjects_atIndexes(const NSArray* objects, const NSIndexSet* indexes);
    void replaceObjectAtIndex_withObject(NSUInteger index, NSObject* o);
    void replaceObjectsInRange_withObjectsFromArray(NSRange range, const NSArray* other);
    void exchangeObjectAtIndex_withObjectAtIndex(NSUInteger a, NSUInteger b);
    void setArray(const NSArray* other);

    /// Every element equal to `o`.
    void removeObject(const NSObject* o);
    void removeObject_inRange(const NSObject* o, NSRange range);
    void removeObjectIdenticalTo(const NSObject* o);
    void removeObjectAtIndex(NSUInteger index);
    void removeObjectsInRange(NSRange range);
    void removeObjectsAtIndexes(const NSIndexSet* indexes);
    void removeObjectsInArray(const NSArray* other);
    /// Raises NSRangeException on the empty list.
    void removeLastObject();
    void removeAllObjects();
    void filter(const std::function<BOOL(NSObject*)>& keep);

    void sortUsingSelector(SEL comparison);
    void sortUsingComparator(const NSComparator& comparison);
    void sortUsingFunction_context(NSInteger (*comparison)(NSObject*, NSObject*, void*), void* context);
    void sortUsingDescriptors(const NSArray* descriptors);

    [[nodiscard]] Ref<NSObject> copyWithZone() const override;

private:
    void take(NSArray& other);
};

} // namespace libvue

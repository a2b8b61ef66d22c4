#pragma once

#include <functional>
#include <initializer_list>
#include <iterator>

#include <libvue/platform/foundation/NSEnumerator.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/ObjectTable.h>

namespace libvue {

/// Distinct objects, by isEqual and hash. Enumerates in the order in which they came. Null raises
/// NSInvalidArgumentException.
class LIBVUE_API NSSet : public NSObject {
public:
    static void describe(ClassDescription<NSSet>& c);
    NSSet() noexcept = default;
    explicit NSSet(NSCoder& coder);
    ~NSSet() override;

    [[nodiscard]] static Ref<NSSet> set();
    [[nodiscard]] static Ref<NSSet> setWithObject(NSObject* o);
    [[nodiscard]] static Ref<NSSet> setWithObjects(std::initializer_list<NSObject*> objects);
    [[nodiscard]] static Ref<NSSet> setWithArray(const NSArray* a);
    [[nodiscard]] static Ref<NSSet> setWithSet(const NSSet* s);

    [[nodiscard]] NSUInteger count() const noexcept { return table_.count(); }
    [[nodiscard]] BOOL containsObject(const NSObject* o) const { return member(o) != nullptr; }
    /// The element equal to `o`, or null.
    [[nodiscard]] NSObject* member(const NSObject* o) const;
    /// Null for the empty set.
    [[nodiscard]] NSObject* anyObject() const;
    [[nodiscard]] Ref<NSArray> allObjects() const;
    [[nodiscard]] BOOL isEqualToSet(const NSSet* other) const;
    [[nodiscard]] BOOL isSubsetOfSet(const NSSet* other) const;
    [[nodiscard]] BOOL intersectsSet(const NSSet* other) const;
    [[nodiscard]] Ref<NSSet> filteredSet(const std::function<BOOL(NSObject*)>& keep) const;
    void makeObjectsPerformSelector(SEL selector) const;
    void makeObjectsPerformSelector_withObject(SEL selector, NSObject* argument) const;
    [[nodiscard]] Ref<NSEnumerator> objectEnumerator() const;
    [[nodiscard]] Ref<NSArray> sortedArrayUsingDescriptors(const NSArray* descriptors) const;

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSString> description() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    [[nodiscard]] Ref<NSObject> mutableCopyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;
    /// The set of the elements' values; absent ones are left out.
    [[nodiscard]] Ref<NSObject> valueForKey(NSString* key) override;
    [[nodiscard]] Ref<NSObject> valueForKeyPath(NSString* path) override;
    void setValue_forKey(NSObject* value, NSString* key) override;

    using Table = detail::ObjectTable<detail::Beside::number>;
    /// `for (NSObject* o : *set)`.
    using Iterator = detail::TableIterator<Table, detail::keyOf<Table>>;
    [[nodiscard]] Iterator begin() const noexcept { return Iterator(table_); }
    [[nodiscard]] std::default_sentinel_t end() const noexcept { return {}; }
    /// Passes over what is no `T`.
    template <class T> [[nodiscard]] detail::TypedRange<T, Iterator> as() const {
        return detail::TypedRange<T, Iterator>(begin());
    }

protected:
    void put(NSObject* o);

    // The number is NSCountedSet's; a plain set leaves it alone.
    Table table_;

private:
    friend class NSMutableSet;
};

/// A set that can change.
class LIBVUE_API NSMutableSet : public NSSet {
public:
    static void describe(ClassDescription<NSMutableSet, NSSet>& c);
    NSMutableSet() noexcept = default;
    explicit NSMutableSet(NSCoder& coder) : NSSet(coder) {}

    [[nodiscard]] static Ref<NSMutableSet> set();
    [[nodiscard]] static Ref<NSMutableSet> setWithObject(NSObject* o);
    [[nodiscard]] static Ref<NSMutableSet> setWithArray(const NSArray* a);
    [[nodiscard]] static Ref<NSMutableSet> setWithSet(const NSSet* s);

    /// An object that is there already stays the one that is kept.
    virtual void addObject(NSObject* o);
    virtual void removeObject(const NSObject* o);
    void addObjectsFromArray(const NSArray* a);
    void removeAllObjects();
    void unionSet(const NSSet* other);
    void minusSet(const NSSet* other);
    void intersectSet(const NSSet* other);

    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
};

/// A set that counts how often each object was added.
class LIBVUE_API NSCountedSet : public NSMutableSet {
public:
    static void describe(ClassDescription<NSCountedSet, NSMutableSet>& c);
    NSCountedSet() noexcept = default;
    explicit NSCountedSet(NSCoder& coder);
    [[nodiscard]] static Ref<NSCountedSet> set();
    [[nodiscard]] static Ref<NSCountedSet> setWithArray(const NSArray* a);

    void addObject(NSObject* o) override;
    /// Takes one off; the object goes with its last.
    void removeObject(const NSObject* o) override;
    [[nodiscard]] NSUInteger countForObject(const NSObject* o) const;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    [[nodiscard]] Ref<NSObject> mutableCopyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;
};

} // namespace libvue

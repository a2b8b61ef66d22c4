#pragma once

#include <functional>
#include <initializer_list>
#include <iterator>
#include <utility>

#include <libvue/platform/foundation/NSEnumerator.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/ObjectTable.h>

namespace libvue {

namespace detail {
struct DocumentObjects;
}

/// Values by key. Keys are copied (`copyWithZone`), values kept. Enumerates in the order in which the keys first came.
///
/// A null key or value raises NSInvalidArgumentException. Objects that are handed out are borrowed from the dictionary.
class LIBVUE_API NSDictionary : public NSObject {
public:
    using KeyAndValue = std::pair<const NSObject*, NSObject*>;

    static void describe(ClassDescription<NSDictionary>& c);
    NSDictionary() noexcept = default;
    explicit NSDictionary(NSCoder& coder);
    ~NSDictionary() override;
    static void* operator new(std::size_t size);
    static void* operator new(std::size_t, void* room) noexcept { return room; }
    static void operator delete(void* object, std::size_t size) noexcept;

    [[nodiscard]] static Ref<NSDictionary> dictionary();
    [[nodiscard]] static Ref<NSDictionary> dictionaryWithObject_forKey(NSObject* value, const NSObject* key);
    /// Pairs are {key, value}. A key that comes again replaces its value.
    [[nodiscard]] static Ref<NSDictionary> dictionaryWithObjectsAndKeys(std::initializer_list<KeyAndValue> pairs);
    /// Raises NSInvalidArgumentException where the lists differ in length.
    [[nodiscard]] static Ref<NSDictionary> dictionaryWithObjects_forKeys(const NSArray* values, const NSArray* keys);
    [[nodiscard]] static Ref<NSDictionary> dictionaryWithDictionary(const NSDictionary* d);

    [[nodiscard]] NSUInteger count() const noexcept { return table_.count(); }
    /// Null where the key is absent (or null).
    [[nodiscard]] NSObject* objectForKey(const NSObject* key) const;
    /// The value as a `T`, null where it is absent or none.
    template <class T> [[nodiscard]] T* get(const NSObject* key) const { return dynamic_cast<T*>(objectForKey(key)); }
    [[nodiscard]] Ref<NSArray> allKeys() const;
    [[nodiscard]] Ref<NSArray> allValues() const;
    [[nodiscard]] Ref<NSArray> allKeysForObject(const NSObject* value) const;
    [[nodiscard]] Ref<NSArray> objectsForKeys_notFoundMarker(const NSArray* keys, NSObject* marker) const;
    [[nodiscard]] Ref<NSArray> keysSortedByValueUsingSelector(SEL comparison) const;
    [[nodiscard]] BOOL isEqualToDictionary(const NSDictionary* other) const;

    void enumerateKeysAndObjectsUsingBlock(const std::function<void(NSObject*, NSObject*, BOOL*)>& block) const;
    [[nodiscard]] Ref<NSEnumerator> keyEnumerator() const;
    [[nodiscard]] Ref<NSEnumerator> objectEnumerator() const;

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSString> description() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    [[nodiscard]] Ref<NSObject> mutableCopyWithZone() const override;
    void encodeWithCoder(NSCoder& coder) const override;
    /// The value of that key; "@count" and the like ask the dictionary itself.
    [[nodiscard]] Ref<NSObject> valueForKey(NSString* key) override;

    using Table = detail::ObjectTable<detail::Beside::object>;
    /// `for (auto [key, value] : *dictionary)`.
    using Iterator = detail::TableIterator<Table, detail::pairOf<Table>>;
    [[nodiscard]] Iterator begin() const noexcept { return Iterator(table_); }
    [[nodiscard]] std::default_sentinel_t end() const noexcept { return {}; }

protected:
    void put(NSObject* value, const NSObject* key);

    Table table_;

private:
    friend class NSMutableDictionary;
    friend struct detail::DocumentObjects;
};

/// A dictionary that can change.
class LIBVUE_API NSMutableDictionary : public NSDictionary {
public:
    static void describe(ClassDescription<NSMutableDictionary, NSDictionary>& c);
    NSMutableDictionary() noexcept = default;
    explicit NSMutableDictionary(NSCoder& coder) : NSDictionary(coder) {}

    [[nodiscard]] static Ref<NSMutableDictionary> dictionary();
    [[nodiscard]] static Ref<NSMutableDictionary> dictionaryWithCapacity(NSUInteger capacity);
    [[nodiscard]] static Ref<NSMutableDictionary> dictionaryWithObject_forKey(NSObject* value, const NSObject* key);
    [[nodiscard]] static Ref<NSMutableDictionary>
    dictionaryWithObjectsAndKeys(std::initializer_list<KeyAndValue> pairs);
    [[nodiscard]] static Ref<NSMutableDictionary> dictionaryWithDictionary(const NSDictionary* d);

    void setObject_forKey(NSObject* value, const NSObject* key) { put(value, key); }
    void addEntriesFromDictionary(const NSDictionary* other);
    void setDictionary(const NSDictionary* other);
    /// Nothing happens where it is absent. A null key raises NSInvalidArgumentException.
    void removeObjectForKey(const NSObject* key);
    void removeObjectsForKeys(const NSArray* keys);
    void removeAllObjects();

    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    /// A null value removes the key.
    void setValue_forKey(NSObject* value, NSString* key) override;
};

} // namespace libvue

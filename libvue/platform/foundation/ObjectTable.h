#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>

#include <libvue/platform/foundation/NSEnumerator.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue::detail {

/// What stands beside a key.
enum class Beside : std::uint8_t { object, number };

/// The table under dictionaries and sets: entries lie in the order in which they came, with their hashes, and are
/// searched one after the other while they are few; an open-addressing index is added beyond that. Keys and object
/// values are kept.
///
/// No caller's code runs between a change's first and last step: what is let go is let go last.
template <Beside beside> class LIBVUE_API ObjectTable {
public:
    using Value = std::conditional_t<beside == Beside::object, NSObject*, NSUInteger>;
    struct Entry {
        NSObject* key;
        Value value;
    };

    ObjectTable() noexcept = default;
    ObjectTable(const ObjectTable&) = delete;
    ObjectTable& operator=(const ObjectTable&) = delete;
    ~ObjectTable() { clear(); }

    [[nodiscard]] std::uint32_t count() const noexcept { return count_; }
    [[nodiscard]] std::uint32_t mutations() const noexcept { return mutations_; }
    /// Entries with holes: those whose key is null are passed over.
    [[nodiscard]] std::uint32_t used() const noexcept { return used_; }
    [[nodiscard]] Entry* entry(std::uint32_t i) const noexcept { return entries_ + i; }
    [[nodiscard]] Entry* find(const NSObject* key) const;
    /// The entry of `key`, made where there is none, as `made` tells; a made one has an empty value. Beside objects
    /// stands a copy of the key, beside numbers the key itself.
    Entry* insert(const NSObject* key, bool& made);
    /// False where there is none.
    bool remove(const NSObject* key);
    /// Fills an empty table; each key is followed by its value, and the counts of both are taken over. A key that comes
    /// again replaces its value.
    void adopt(NSObject* const* keysAndValues, const std::uint32_t* keyHashes,
               std::uint32_t count) requires(beside == Beside::object);
    void clear() noexcept;
    void reserve(std::size_t count);
    /// The hash that the table keeps of a key.
    [[nodiscard]] static std::uint32_t hashOf(const NSObject* key);
    void copy(const ObjectTable& other);
    void swap(ObjectTable& other) noexcept;

private:
    static constexpr std::uint32_t flatLimit = 8;

    [[nodiscard]] std::uint32_t* hashes() const noexcept {
        return reinterpret_cast<std::uint32_t*>(entries_ + capacity_);
    }
    [[nodiscard]] std::uint32_t* hashSlots() const noexcept { return hashes() + capacity_; }
    [[nodiscard]] static std::uint32_t slotCount(std::uint32_t capacity) noexcept;
    [[nodiscard]] Entry* findHashed(const NSObject* key, std::uint32_t hash) const;
    [[nodiscard]] static std::size_t blockBytes(std::uint32_t capacity) noexcept;
    void rebuild(std::uint32_t capacity);
    void link(std::uint32_t index) noexcept;

    Entry* entries_ = nullptr;
    std::uint32_t count_ = 0;
    std::uint32_t used_ = 0;
    std::uint32_t capacity_ = 0;
    std::uint32_t mutations_ = 0;
};

template <class Table> NSObject* keyOf(const typename Table::Entry& e) noexcept { return e.key; }
template <class Table> typename Table::Entry pairOf(const typename Table::Entry& e) noexcept { return e; }

/// Walks a table's entries in their order; `item` makes what is shown of one. A change of the table ends the walk.
template <class Table, auto item> class TableIterator {
public:
    explicit TableIterator(const Table& table) noexcept : table_(&table), mutations_(table.mutations()) { settle(); }
    auto operator*() const noexcept { return item(*table_->entry(index_)); }
    TableIterator& operator++() noexcept {
        ++index_;
        settle();
        return *this;
    }
    friend bool operator==(const TableIterator& i, std::default_sentinel_t) noexcept { return i.atEnd(); }

private:
    [[nodiscard]] bool atEnd() const noexcept {
        if (mutations_ != table_->mutations()) [[unlikely]] {
            noteMutationDuringEnumeration();
            return true;
        }
        return index_ >= table_->used();
    }
    void settle() noexcept {
        while (index_ < table_->used() && !table_->entry(index_)->key)
            ++index_;
    }
    const Table* table_;
    std::uint32_t index_ = 0;
    std::uint32_t mutations_;
};

extern template class LIBVUE_API ObjectTable<Beside::object>;
extern template class LIBVUE_API ObjectTable<Beside::number>;

} // namespace libvue::detail

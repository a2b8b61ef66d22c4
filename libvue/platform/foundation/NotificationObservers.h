#pragma once

#include <cstddef>
#include <cstdint>

#include <libvue/platform/foundation/InlineVector.h>
#include <libvue/platform/foundation/LinePool.h>
#include <libvue/platform/foundation/NSNotification.h>
#include <libvue/platform/foundation/ObjectSide.h>

namespace libvue {

struct NotificationList;

/// Where an object is registered as an observer: an entry of a list.
struct NotificationRegistrations {
    struct Link {
        NotificationList* list;
        std::uint32_t index;
    };
    InlineVector<Link, 1> links;
};

/// How an entry's function is called.
enum class NotificationCall : std::uint8_t { withNotification, withObject, withNothing, performed };

/// The observers of one name of one object (or of any), in the order of their registration. Places stay where they are
/// while a post is under way; what is removed leaves a hole, and holes are closed afterwards.
///
/// The lists about an object form a chain that begins in its side block, one list a name. A list fills one line of the
/// cache: a post to one observer reads little else.
struct alignas(64) NotificationList {
    struct Entry {
        NSObject* observer; ///< null: a hole
        void (*run)();
        std::uint32_t link; ///< the entry's place among the observer's registrations
        NotificationCall call;
        bool owned; ///< the list holds a count of the observer
    };

    /// The list of that name in a chain; null for none, and for a null name.
    [[nodiscard]] static NotificationList* find(NotificationList* first, const NSString* name) {
        // Names are constants nearly always: one text is one object.
        for (NotificationList* list = first; list; list = list->next)
            if (list->name.get() == name) return name ? list : nullptr;
        return first && name ? findText(first, *name) : nullptr;
    }
    /// The list of any name.
    [[nodiscard]] static NotificationList* findAny(NotificationList* first) noexcept {
        while (first && first->name.get())
            first = first->next;
        return first;
    }
    /// The list of that name (null: any name) in the chain that begins at `first`, made where there is none. `object`:
    /// what the chain is about.
    [[nodiscard]] static NotificationList& findOrAdd(NotificationList*& first, NSObject* object, NSString* name);

    void add(NSObject* observer, void (*run)(), NotificationCall call, bool owned);
    /// Makes a hole, and takes the registration from the observer. What is returned must be let go once the caller is
    /// done.
    [[nodiscard]] Ref<NSObject> remove(std::uint32_t index);
    /// Closes the holes, or frees the list where it has no observer left, unless a post is under way.
    void tidy();

    /// Tells the first `count` places. The list must be entered.
    void tell(std::size_t count, NSNotification* notification) {
        if (count == 1)
            tellEntry(entries[0], notification);
        else
            tellMany(count, notification);
    }
    void enter() noexcept { ++posts; }
    void leave() {
        --posts;
        if (holes > 0) tidy();
    }

    static void* operator new(std::size_t size) { return detail::takeLines(size); }
    static void operator delete(void* p, std::size_t size) noexcept { detail::giveLines(p, size); }

    NotificationList* next;
    Ref<NSString> name;             ///< null: any name
    NSObject* object;               ///< null: any object
    InlineVector<Entry, 1> entries; ///< nearly every observed object has one observer a name
    std::uint32_t posts = 0;        ///< those under way
    std::uint32_t holes : 31 = 0;
    std::uint32_t orphaned : 1 = false; ///< what the list is about is gone, and the chain with it

private:
    static void tellEntry(const Entry& e, NSNotification* notification) {
        if (!e.observer) return;
        const Ref<NSObject> kept(e.observer);
        if (e.call == NotificationCall::withNotification)
            reinterpret_cast<void (*)(NSObject*, NSNotification*)>(e.run)(e.observer, notification);
        else
            tellOtherwise(e, notification);
    }
    static void tellOtherwise(const Entry& e, NSNotification* notification);
    void tellMany(std::size_t count, NSNotification* notification);
    NotificationList(NotificationList* next, NSObject* object, NSString* name);
    ~NotificationList() = default;
    [[nodiscard]] static NotificationList* findText(NotificationList* first, const NSString& name);
    void unchain() noexcept;
};
static_assert(sizeof(NotificationList) == 64);

namespace detail {

/// Where the chain of the lists about no object in particular begins.
extern NotificationList* listsAboutAnyObject;

} // namespace detail

} // namespace libvue

#pragma once

#include <cstdint>
#include <vector>

#include <libvue/platform/foundation/InlineVector.h>
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

/// The observers of one name, in the order of their registration. Places stay where they are while a post is under way;
/// what is removed leaves a hole, and holes are closed afterwards.
struct NotificationList {
    struct Entry {
        NSObject* observer; ///< null: a hole
        void (*run)();
        std::uint32_t link; ///< the entry's place among the observer's registrations
        NotificationCall call;
        bool owned; ///< the list holds a count of the observer
    };

    NotificationList(NotificationObservers* owner, NSString* name);

    void add(NSObject* observer, void (*run)(), NotificationCall call, bool owned);
    /// Makes a hole, and takes the registration from the observer. What is returned must be let go once the caller is
    /// done.
    [[nodiscard]] Ref<NSObject> remove(std::uint32_t index);
    /// Closes the holes, or frees the list where it has no observer left, unless a post is under way.
    void tidy();

    /// Tells the first `count` places. The list must be entered.
    void tell(std::size_t count, NSNotification* notification);
    void enter() noexcept { ++posts; }
    void leave();

    NotificationObservers* owner; ///< null once what the list is about is gone
    Ref<NSString> name;           ///< null: any name
    NSUInteger hash;
    InlineVector<Entry, 1> entries; ///< nearly every observed object has one observer a name
    std::uint32_t holes = 0;
    std::uint32_t posts = 0; ///< those under way
};

/// The lists about one object, or about no object in particular.
struct NotificationObservers {
    explicit NotificationObservers(NSObject* object) noexcept : object(object) {}

    /// Null where no one observes that name.
    [[nodiscard]] NotificationList* find(const NSString* name) const;
    [[nodiscard]] NotificationList& findOrAdd(NSString* name);
    /// Forgets the list, and with the last one of an object itself.
    void forget(NotificationList* list);

    NSObject* object;
    NotificationList* any = nullptr; ///< the observers of any name
    InlineVector<NotificationList*, 1> named;
};

} // namespace libvue

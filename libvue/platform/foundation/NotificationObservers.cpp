#include <libvue/platform/foundation/NotificationObservers.h>

#include <utility>
#include <vector>

#include <libvue/platform/foundation/NSString.h>

namespace libvue {

NotificationList* detail::listsAboutAnyObject = nullptr;

NotificationList::NotificationList(NotificationList* next, NSObject* object, NSString* name)
    : next(next), name(name ? as<NSString>(name->copyWithZone()) : nullptr), object(object) {}

NotificationList* NotificationList::findText(NotificationList* first, const NSString& name) {
    for (NotificationList* list = first; list; list = list->next)
        if (list->name && list->name->isEqualToString(&name)) return list;
    return nullptr;
}

NotificationList& NotificationList::findOrAdd(NotificationList*& first, NSObject* object, NSString* name) {
    if (NotificationList* list = name ? find(first, name) : findAny(first)) return *list;
    first = new NotificationList(first, object, name);
    return *first;
}

void NotificationList::unchain() noexcept {
    NotificationList** at = object ? &object->sideIfAny()->observers : &detail::listsAboutAnyObject;
    while (*at != this)
        at = &(*at)->next;
    *at = next;
}

void NotificationList::add(NSObject* observer, void (*run)(), NotificationCall call, bool owned) {
    ObjectSide& side = observer->side();
    if (!side.registrations) side.registrations = new NotificationRegistrations;
    auto& links = side.registrations->links;
    links.push_back({this, static_cast<std::uint32_t>(entries.size())});
    entries.push_back({observer, run, static_cast<std::uint32_t>(links.size() - 1), call, owned});
    if (owned) observer->retain();
}

Ref<NSObject> NotificationList::remove(std::uint32_t index) {
    Entry& e = entries[index];
    auto& links = e.observer->sideIfAny()->registrations->links;
    if (e.link + 1 < links.size()) {
        links[e.link] = links.back();
        const NotificationRegistrations::Link& moved = links[e.link];
        moved.list->entries[moved.index].link = e.link;
    }
    links.pop_back();
    NSObject* observer = std::exchange(e.observer, nullptr);
    ++holes;
    return e.owned ? adopt(observer) : nullptr;
}

void NotificationList::tidy() {
    if (posts > 0) return;
    if (holes == entries.size()) {
        if (!orphaned) unchain();
        delete this;
        return;
    }
    if (holes < 8 || 2 * holes < entries.size()) return;
    std::uint32_t to = 0;
    for (const Entry& e : entries) {
        if (!e.observer) continue;
        e.observer->sideIfAny()->registrations->links[e.link].index = to;
        entries[to++] = e;
    }
    entries.shrink(to);
    holes = 0;
}

void NotificationList::tellMany(std::size_t count, NSNotification* notification) {
    for (std::size_t i = 0; i < count; ++i)
        tellEntry(entries[i], notification);
}

void NotificationList::tellOtherwise(const Entry& e, NSNotification* notification) {
    switch (e.call) {
    case NotificationCall::withNotification:
        break;
    case NotificationCall::withObject:
        reinterpret_cast<void (*)(NSObject*, NSObject*)>(e.run)(e.observer, notification);
        break;
    case NotificationCall::withNothing:
        reinterpret_cast<void (*)(NSObject*)>(e.run)(e.observer);
        break;
    case NotificationCall::performed:
        (void)reinterpret_cast<Ref<NSObject> (*)(NSObject*, NSObject*)>(e.run)(e.observer, notification);
        break;
    }
}

void detail::dropNotifications(ObjectSide& side) noexcept {
    // The tokens of blocks go last: what they hold may come back here.
    std::vector<Ref<NSObject>> tokens;
    while (side.registrations && !side.registrations->links.empty()) {
        const auto [list, index] = side.registrations->links.back();
        tokens.push_back(list->remove(index));
        list->tidy();
    }
    delete std::exchange(side.registrations, nullptr);
    while (NotificationList* list = side.observers) {
        side.observers = list->next;
        list->orphaned = true;
        for (std::uint32_t i = 0; i < list->entries.size(); ++i)
            if (list->entries[i].observer) tokens.push_back(list->remove(i));
        list->tidy();
    }
}

} // namespace libvue

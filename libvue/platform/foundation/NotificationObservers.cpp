#include <libvue/platform/foundation/NotificationObservers.h>

#include <algorithm>
#include <memory>

#include <libvue/platform/foundation/NSString.h>

namespace libvue {

NotificationList::NotificationList(NotificationObservers* owner, NSString* name)
    : owner(owner), name(name ? as<NSString>(name->copyWithZone()) : nullptr), hash(name ? name->hash() : 0) {}

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
        if (owner) owner->forget(this);
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

void NotificationList::tell(std::size_t count, NSNotification* notification) {
    for (std::size_t i = 0; i < count; ++i) {
        const Entry& e = entries[i];
        NSObject* observer = e.observer;
        if (!observer) continue;
        const Ref<NSObject> kept(observer);
        switch (e.call) {
        case NotificationCall::withNotification:
            reinterpret_cast<void (*)(NSObject*, NSNotification*)>(e.run)(observer, notification);
            break;
        case NotificationCall::withObject:
            reinterpret_cast<void (*)(NSObject*, NSObject*)>(e.run)(observer, notification);
            break;
        case NotificationCall::withNothing:
            reinterpret_cast<void (*)(NSObject*)>(e.run)(observer);
            break;
        case NotificationCall::performed:
            (void)reinterpret_cast<Ref<NSObject> (*)(NSObject*, NSObject*)>(e.run)(observer, notification);
            break;
        }
    }
}

void NotificationList::leave() {
    --posts;
    if (holes > 0) tidy();
}

NotificationList* NotificationObservers::find(const NSString* name) const {
    const NSUInteger hash = name->hash();
    for (NotificationList* list : named)
        if (list->hash == hash && (list->name == name || list->name->isEqualToString(name))) return list;
    return nullptr;
}

NotificationList& NotificationObservers::findOrAdd(NSString* name) {
    if (!name) {
        if (!any) any = new NotificationList(this, nullptr);
        return *any;
    }
    if (NotificationList* list = find(name)) return *list;
    named.push_back(new NotificationList(this, name));
    return *named.back();
}

void NotificationObservers::forget(NotificationList* list) {
    if (list == any)
        any = nullptr;
    else
        named.erase(std::find(named.begin(), named.end(), list));
    if (!object || any || !named.empty()) return;
    object->side().observers = nullptr;
    delete this;
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
    if (const std::unique_ptr<NotificationObservers> about{std::exchange(side.observers, nullptr)}) {
        if (about->any) about->named.push_back(about->any);
        for (NotificationList* list : about->named) {
            list->owner = nullptr;
            for (std::uint32_t i = 0; i < list->entries.size(); ++i)
                if (list->entries[i].observer) tokens.push_back(list->remove(i));
            list->tidy();
        }
    }
}

} // namespace libvue

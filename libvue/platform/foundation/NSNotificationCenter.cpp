#include <libvue/platform/foundation/NSNotificationCenter.h>

#include <array>
#include <string>

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/NotificationObservers.h>

namespace libvue {

namespace {

/// The observer that stands for a block.
class NotificationBlock : public NSObject {
public:
    explicit NotificationBlock(NSNotificationCenter::Block block) : block_(std::move(block)) {}
    static void run(NSObject* self, NSNotification* notification) {
        const auto* block = static_cast<NotificationBlock*>(self);
        if (block->block_) block->block_(notification);
    }

private:
    NSNotificationCenter::Block block_;
};

/// The lists that a post goes to, and how long they were when it began.
class Audience {
public:
    Audience() = default;
    Audience(const Audience&) = delete;
    Audience& operator=(const Audience&) = delete;
    ~Audience() {
        for (std::size_t i = 0; i < number_; ++i)
            parts_[i].list->leave();
    }

    void add(const NotificationObservers& observers, const NSString* name) {
        if (name) add(observers.find(name));
        add(observers.any);
    }
    [[nodiscard]] bool isEmpty() const noexcept { return number_ == 0; }
    void tell(NSNotification* notification) {
        for (std::size_t i = 0; i < number_; ++i)
            parts_[i].list->tell(parts_[i].count, notification);
    }

private:
    struct Part {
        NotificationList* list;
        std::size_t count;
    };
    void add(NotificationList* list) {
        if (!list) return;
        list->enter();
        parts_[number_++] = {list, list->entries.size()};
    }

    std::array<Part, 4> parts_;
    std::size_t number_ = 0;
};

NotificationObservers& observersOf(NSObject& object) {
    ObjectSide& side = object.side();
    if (!side.observers) side.observers = new NotificationObservers(&object);
    return *side.observers;
}

} // namespace

void NSNotificationCenter::describe(ClassDescription<NSNotificationCenter>&) {}

NSNotificationCenter::NSNotificationCenter() : anyObject_(new NotificationObservers(nullptr)) {}

NSNotificationCenter::~NSNotificationCenter() { delete anyObject_; }

NSNotificationCenter* NSNotificationCenter::defaultCenter() {
    static NSNotificationCenter* const center = keptForever(adopt(new NSNotificationCenter));
    return center;
}

void NSNotificationCenter::addObserver_selector_name_object(NSObject* observer, SEL selector, NSString* name,
                                                            NSObject* object) {
    if (!observer) return;
    const OperationEntry* e = observer->isa().operation(selector);
    if (!e || !e->run) {
        raiseNamed(NSInvalidArgumentException,
                   observer->isa().name() + " does not answer " + std::string(selector ? selector->name : "(null)"));
    }
    auto* run = e->run;
    auto call = NotificationCall::performed;
    if (*e->signature == typeid(void(NSNotification*)))
        call = NotificationCall::withNotification;
    else if (*e->signature == typeid(void(NSObject*)))
        call = NotificationCall::withObject;
    else if (*e->signature == typeid(void()))
        call = NotificationCall::withNothing;
    else if (e->perform)
        run = reinterpret_cast<void (*)()>(e->perform);
    else
        raiseNamed(NSInvalidArgumentException,
                   observer->isa().name() + " cannot be notified with " + std::string(selector->name));
    (object ? observersOf(*object) : *anyObject_).findOrAdd(name).add(observer, run, call, false);
}

void NSNotificationCenter::addThunk(NSObject* observer, Thunk thunk, NSString* name, NSObject* object) {
    if (!observer) return;
    (object ? observersOf(*object) : *anyObject_)
        .findOrAdd(name)
        .add(observer, reinterpret_cast<void (*)()>(thunk), NotificationCall::withNotification, false);
}

Ref<NSObject> NSNotificationCenter::addObserverForName_object_queue_usingBlock(NSString* name, NSObject* object,
                                                                               NSObject*, Block block) {
    Ref<NSObject> token = make<NotificationBlock>(std::move(block));
    (object ? observersOf(*object) : *anyObject_)
        .findOrAdd(name)
        .add(token, reinterpret_cast<void (*)()>(&NotificationBlock::run), NotificationCall::withNotification, true);
    return token;
}

void NSNotificationCenter::removeObserver(NSObject* observer) {
    if (!observer) return;
    const ObjectSide* side = observer->sideIfAny();
    if (!side || !side->registrations) return;
    const Ref<NSObject> kept(observer);
    // Looked up again each time: what a token gives up may register or remove as well.
    while (side->registrations && !side->registrations->links.empty()) {
        const auto [list, index] = side->registrations->links.back();
        const Ref<NSObject> token = list->remove(index);
        list->tidy();
    }
}

void NSNotificationCenter::removeObserver_name_object(NSObject* observer, NSString* name, NSObject* object) {
    if (!name && !object) {
        removeObserver(observer);
        return;
    }
    if (!observer) return;
    const ObjectSide* side = observer->sideIfAny();
    if (!side || !side->registrations) return;
    const Ref<NSObject> kept(observer);
    std::vector<Ref<NSObject>> tokens;

    const auto matches = [&](const NotificationList& list) {
        if (object && list.owner->object != object) return false;
        return !name || (list.name && list.name->isEqualToString(name));
    };
    auto& links = side->registrations->links;
    if (object && name) {
        // The shorter way of the two: through what observes the object, or through what the observer observes.
        const ObjectSide* about = object->sideIfAny();
        NotificationList* list = about && about->observers ? about->observers->find(name) : nullptr;
        if (!list) return;
        if (list->entries.size() < links.size()) {
            for (std::uint32_t i = 0; i < list->entries.size(); ++i)
                if (list->entries[i].observer == observer) tokens.push_back(list->remove(i));
            list->tidy();
            return;
        }
    }
    for (std::size_t i = links.size(); i-- > 0;) {
        if (i >= links.size()) continue;
        const auto [list, index] = links[i];
        if (!matches(*list)) continue;
        tokens.push_back(list->remove(index));
        list->tidy();
    }
}

void NSNotificationCenter::postNotification(NSNotification* notification) {
    if (!notification) return;
    const Ref<NSNotification> kept(notification);
    Audience audience;
    if (NSObject* object = notification->object())
        if (const ObjectSide* side = object->sideIfAny(); side && side->observers)
            audience.add(*side->observers, notification->name());
    audience.add(*anyObject_, notification->name());
    audience.tell(notification);
}

void NSNotificationCenter::postNotificationName_object_userInfo(NSString* name, NSObject* object,
                                                                NSDictionary* userInfo) {
    const ObjectSide* side = object ? object->sideIfAny() : nullptr;
    const NotificationObservers* about = side ? side->observers : nullptr;
    const bool anyObject = anyObject_->any || !anyObject_->named.empty();
    if (!about && !anyObject) return;
    // Given up after the audience, so that the object outlives the lists that hang on it.
    Ref<NSNotification> notification;
    Audience audience;
    if (about) audience.add(*about, name);
    if (anyObject) audience.add(*anyObject_, name);
    if (audience.isEmpty()) return;
    notification = make<NSNotification>(name, object, userInfo);
    audience.tell(notification);
}

} // namespace libvue

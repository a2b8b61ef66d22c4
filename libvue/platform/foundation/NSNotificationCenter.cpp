#include <libvue/platform/foundation/NSNotificationCenter.h>

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/NotificationObservers.h>

namespace libvue {

/// The notification of a post. It is used again for a later one unless somebody kept it; a debug build makes each anew,
/// so that one which was kept without a count is noticed.
class NotificationOfPost {
public:
    NotificationOfPost(NSString* name, NSObject* object, NSDictionary* userInfo)
        : notification_(std::exchange(spare, nullptr)) {
        if (!notification_) {
            notification_ = make<NSNotification>(name, object, userInfo).leak();
            return;
        }
        if (notification_->name_ != name) notification_->name_ = name;
        notification_->object_ = object;
        if (userInfo) notification_->userInfo_ = userInfo;
    }
    NotificationOfPost(const NotificationOfPost&) = delete;
    NotificationOfPost& operator=(const NotificationOfPost&) = delete;
    ~NotificationOfPost() {
        if (!reused || spare || notification_->retainCount() > 1 || notification_->sideIndex_() != 0) {
            notification_->release();
            return;
        }
        // What it held goes last: it may post as well.
        const Ref<NSObject> object = std::move(notification_->object_);
        const Ref<NSDictionary> userInfo = std::move(notification_->userInfo_);
        spare = notification_;
    }

    operator NSNotification*() const noexcept { return notification_; }

private:
#ifdef NDEBUG
    static constexpr bool reused = true;
#else
    static constexpr bool reused = false;
#endif
    inline static NSNotification* spare = nullptr;

    NSNotification* notification_;
};

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

    /// Of a chain, first the observers of that name and then those of any.
    void add(NotificationList* first, const NSString* name) {
        if (!first) return;
        add(NotificationList::find(first, name));
        add(NotificationList::findAny(first));
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

NotificationList& listOf(NSObject* object, NSString* name) {
    return NotificationList::findOrAdd(object ? object->side().observers : detail::listsAboutAnyObject, object, name);
}

NotificationList* listsAbout(const NSObject* object) noexcept {
    const ObjectSide* side = object ? detail::sideOf(object) : nullptr;
    return side ? side->observers : nullptr;
}

/// Apart from the common case, whose code stays short without it.
[[gnu::noinline]] void postToSeveral(NotificationList* about, NotificationList* anyObject, NSString* name,
                                     NSObject* object, NSDictionary* userInfo) {
    // Declared before the audience, so that the object outlives the lists that hang on it.
    std::optional<NotificationOfPost> notification;
    Audience audience;
    audience.add(about, name);
    audience.add(anyObject, name);
    if (audience.isEmpty()) return;
    notification.emplace(name, object, userInfo);
    audience.tell(*notification);
}

} // namespace

void NSNotificationCenter::describe(ClassDescription<NSNotificationCenter>&) {}

NSNotificationCenter::NSNotificationCenter() = default;
NSNotificationCenter::~NSNotificationCenter() = default;

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
    listOf(object, name).add(observer, run, call, false);
}

void NSNotificationCenter::addThunk(NSObject* observer, Thunk thunk, NSString* name, NSObject* object) {
    if (!observer) return;
    listOf(object, name).add(observer, reinterpret_cast<void (*)()>(thunk), NotificationCall::withNotification, false);
}

Ref<NSObject> NSNotificationCenter::addObserverForName_object_queue_usingBlock(NSString* name, NSObject* object,
                                                                               NSObject*, Block block) {
    Ref<NSObject> token = make<NotificationBlock>(std::move(block));
    listOf(object, name)
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
        if (object && list.object != object) return false;
        return !name || (list.name && list.name->isEqualToString(name));
    };
    auto& links = side->registrations->links;
    if (object && name) {
        // The shorter way of the two: through what observes the object, or through what the observer observes.
        NotificationList* list = NotificationList::find(listsAbout(object), name);
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
    audience.add(listsAbout(notification->object()), notification->name());
    audience.add(detail::listsAboutAnyObject, notification->name());
    audience.tell(notification);
}

void NSNotificationCenter::postNotificationName_object_userInfo(NSString* name, NSObject* object,
                                                                NSDictionary* userInfo) {
    NotificationList* about = listsAbout(object);
    NotificationList* anyObject = detail::listsAboutAnyObject;
    if (!anyObject) {
        if (!about) return;
        // One list, which is nearly always so, is told without more ado.
        if (!about->next && (!about->name || about->name == name)) {
            const NotificationOfPost notification(name, object, userInfo);
            struct Post {
                NotificationList* list;
                ~Post() { list->leave(); }
            } const post{about};
            about->enter();
            about->tell(about->entries.size(), notification);
            return;
        }
    }
    postToSeveral(about, anyObject, name, object, userInfo);
}

} // namespace libvue

#include <libvue/platform/foundation/NSKeyValueObserving.h>

#include <algorithm>
#include <memory>
#include <string>

#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSNull.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSSet.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/ObjectSide.h>

namespace libvue {

namespace {

/// One registration. It listens to the first key of its path on its root, and to each further key on the object that
/// the keys before it lead to.
struct Observation : std::enable_shared_from_this<Observation> {
    NSObject* root;
    NSObject* identity; ///< the observer's address, to be found by; it may be gone
    Weak<NSObject> observer;
    Ref<NSString> path;
    NSUInteger options;
    void* context;
    std::vector<SEL> keys;
    std::vector<NSObject*> stations; ///< where each key is listened to; null beyond an absent object
    bool removed = false;

    void listenFrom(std::size_t step);
    void stopFrom(std::size_t step) noexcept;
};

using SharedObservation = std::shared_ptr<Observation>;

/// What a change does to a set.
struct SetChange {
    NSKeyValueChange kind;
    Ref<NSSet> inserted, removed;
};

} // namespace

struct KeyValueObservers {
    struct Listener {
        SEL key;
        Observation* observation;
        std::size_t step;
    };
    /// What a willChange has begun and its didChange will end.
    struct Change {
        struct Part {
            SharedObservation observation;
            std::size_t step;
            Ref<NSObject> old;
            std::shared_ptr<const SetChange> set; ///< null where the value changes as a whole
        };
        SEL key;
        std::vector<Part> parts;
    };

    std::vector<SharedObservation> rooted;
    std::vector<Listener> listeners;
    std::vector<Change> changes;

    [[nodiscard]] std::vector<Change::Part> concernedBy(const Class& c, SEL key) const;
};

namespace {

KeyValueObservers& observersOf(NSObject& object) {
    ObjectSide& side = object.side();
    if (!side.keyValue) side.keyValue = new KeyValueObservers;
    return *side.keyValue;
}

KeyValueObservers* observersIfAny(const NSObject& object) noexcept {
    const ObjectSide* side = object.sideIfAny();
    return side ? side->keyValue : nullptr;
}

void Observation::listenFrom(std::size_t step) {
    for (; step < keys.size(); ++step) {
        Ref<NSObject> station(root);
        if (step > 0) {
            NSObject* before = stations[step - 1];
            station = before ? before->valueForKey(NSStringFromSelector(keys[step - 1])) : nullptr;
        }
        // The value of a key may be made for whoever asks; there is nothing to listen to on such a one.
        if (!station || (step > 0 && station->retainCount() == 1)) return;
        stations[step] = station;
        observersOf(*station).listeners.push_back({keys[step], this, step});
    }
}

void Observation::stopFrom(std::size_t step) noexcept {
    for (; step < stations.size(); ++step) {
        NSObject* station = std::exchange(stations[step], nullptr);
        KeyValueObservers* there = station ? observersIfAny(*station) : nullptr;
        if (!there) continue;
        std::erase_if(there->listeners,
                      [&](const KeyValueObservers::Listener& l) { return l.observation == this && l.step == step; });
    }
}

/// Whether a change of `changed` changes `key`, by what the class and its ancestors say. The depth ends a circle.
bool follows(const Class& c, SEL key, SEL changed, int depth = 0) {
    if (key == changed) return true;
    if (depth == 16) return false;
    for (const Class* k = &c; k; k = k->superclass())
        for (const auto& [dependent, from] : k->dependencies())
            if (dependent == key && follows(c, from, changed, depth + 1)) return true;
    return false;
}

Ref<NSObject> valueOrNull(const Observation& o) {
    const Ref<NSObject> root(o.root);
    Ref<NSObject> value = root->valueForKeyPath(o.path);
    return value ? value : Ref<NSObject>(NSNull::null());
}

enum class Moment { initial, before, after };

void forget(const SharedObservation& observation) {
    observation->removed = true;
    observation->stopFrom(0);
    if (KeyValueObservers* there = observersIfAny(*observation->root)) std::erase(there->rooted, observation);
}

void tell(const SharedObservation& o, Moment moment, NSObject* old, const SetChange* set) {
    if (o->removed) return;
    const Ref<NSObject> root(o->root);
    const Ref<NSObject> observer = o->observer.ref();
    if (!observer) {
        forget(o);
        return;
    }
    const Ref<NSMutableDictionary> change = NSMutableDictionary::dictionary();
    change->setObject_forKey(NSNumber::numberWithUnsignedInteger(set ? set->kind : NSKeyValueChangeSetting),
                             NSKeyValueChangeKindKey);
    if (moment == Moment::before)
        change->setObject_forKey(NSNumber::numberWithBool(YES), NSKeyValueChangeNotificationIsPriorKey);
    else if (o->options & NSKeyValueObservingOptionNew) {
        const Ref<NSObject> value = set ? Ref<NSObject>(set->inserted) : valueOrNull(*o);
        if (value) change->setObject_forKey(value, NSKeyValueChangeNewKey);
    }
    if (old) change->setObject_forKey(old, NSKeyValueChangeOldKey);
    observer->observeValueForKeyPath_ofObject_change_context(o->path, root, change, o->context);
}

} // namespace

std::vector<KeyValueObservers::Change::Part> KeyValueObservers::concernedBy(const Class& c, SEL key) const {
    std::vector<Change::Part> parts;
    for (const Listener& l : listeners) {
        if (!follows(c, l.key, key)) continue;
        // A path may come by the same object twice; its shortest part is what has to be followed anew.
        const auto same = std::find_if(parts.begin(), parts.end(),
                                       [&](const Change::Part& p) { return p.observation.get() == l.observation; });
        if (same == parts.end())
            parts.push_back({l.observation->shared_from_this(), l.step, nullptr, nullptr});
        else
            same->step = std::min(same->step, l.step);
    }
    return parts;
}

void detail::dropKeyValueObservers(ObjectSide& side) noexcept {
    const std::unique_ptr<KeyValueObservers> gone{std::exchange(side.keyValue, nullptr)};
    if (!gone) return;
    for (const auto& [key, observation, step] : gone->listeners)
        if (!observation->removed) observation->stopFrom(step);
    for (const SharedObservation& o : gone->rooted) {
        o->removed = true;
        o->stopFrom(0);
    }
}

void NSObject::addObserver_forKeyPath_options_context(NSObject* observer, NSString* path, NSUInteger options,
                                                      void* context) {
    if (!observer || !path) raiseNamed(NSInvalidArgumentException, "an observer and a key path are needed");
    if (detail::isBeingDestroyed(this)) return;
    const auto o = std::make_shared<Observation>();
    o->root = this;
    o->identity = observer;
    o->observer = observer;
    o->path = as<NSString>(path->copyWithZone());
    o->options = options;
    o->context = context;
    const std::string text = path->utf8();
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t dot = std::min(text.find('.', start), text.size());
        // What is worked out over a list has no object of its own to listen to.
        if (start < text.size() && text[start] == '@') break;
        o->keys.push_back(sel(std::string_view(text).substr(start, dot - start)));
        start = dot + 1;
    }
    o->stations.resize(o->keys.size());

    KeyValueObservers& own = observersOf(*this);
    // Those whose observer went without a word are dropped when the list would grow.
    if (own.rooted.size() == own.rooted.capacity())
        for (const SharedObservation& old : std::vector<SharedObservation>(own.rooted))
            if (!old->observer && !detail::isBeingDestroyed(old->root)) forget(old);
    own.rooted.push_back(o);
    o->listenFrom(0);
    const Ref<NSObject> self(this);
    if (options & NSKeyValueObservingOptionInitial) tell(o, Moment::initial, nullptr, nullptr);
}

void NSObject::removeObserver_forKeyPath(NSObject* observer, NSString* path) {
    removeObservation(observer, path, nullptr);
}

void NSObject::removeObserver_forKeyPath_context(NSObject* observer, NSString* path, void* context) {
    removeObservation(observer, path, &context);
}

void NSObject::removeObservation(NSObject* observer, NSString* path, void* const* context) {
    if (KeyValueObservers* own = observersIfAny(*this); own && observer && path) {
        SharedObservation found;
        for (const SharedObservation& o : own->rooted) {
            if (o->identity != observer || !o->path->isEqualToString(path)) continue;
            if (context && o->context != *context) continue;
            // The latest one, but rather one of an observer that is still there than of one that was at its address.
            if (!found || o->observer || !found->observer) found = o;
        }
        if (found) {
            forget(found);
            return;
        }
    }
    // An object on its way out has dropped its observers already.
    if (detail::isBeingDestroyed(this)) return;
    raiseNamed(NSRangeException,
               isa().name() + " has no such observer of " + (path ? path->utf8() : std::string("(null)")));
}

void NSObject::observeValueForKeyPath_ofObject_change_context(NSString*, NSObject*, NSDictionary*, void*) {}

namespace {

/// What the mutation will do to the set that stands there now.
std::shared_ptr<const SetChange> setChangeOf(NSObject* object, NSString* key, NSKeyValueSetMutationKind kind,
                                             const NSSet* objects) {
    const Ref<NSObject> value = object->valueForKey(key);
    const auto* standing = as<NSSet>(value);
    const Ref<NSSet> before = standing ? NSSet::setWithSet(standing) : NSSet::set();
    const Ref<NSSet> with = objects ? NSSet::setWithSet(objects) : NSSet::set();
    const auto without = [](const NSSet* a, const NSSet* b) {
        return a->filteredSet([b](NSObject* o) { return !b->containsObject(o); });
    };
    SetChange c{NSKeyValueChangeReplacement, nullptr, nullptr};
    switch (kind) {
    case NSKeyValueUnionSetMutation:
        c.kind = NSKeyValueChangeInsertion;
        c.inserted = without(with, before);
        break;
    case NSKeyValueMinusSetMutation:
        c.kind = NSKeyValueChangeRemoval;
        c.removed = before->filteredSet([&](NSObject* o) { return with->containsObject(o); });
        break;
    case NSKeyValueIntersectSetMutation:
        c.kind = NSKeyValueChangeRemoval;
        c.removed = without(before, with);
        break;
    case NSKeyValueSetSetMutation:
        c.inserted = without(with, before);
        c.removed = without(before, with);
        break;
    }
    return std::make_shared<const SetChange>(std::move(c));
}

/// `setChange` answers what the change does to the set of that key, or null; it is asked only where someone observes.
template <class F> void beginChange(NSObject* object, NSString* key, F setChange) {
    if (!observersIfAny(*object)) return;
    const SEL changed = findSelector(key);
    if (!changed) return;
    const Ref<NSObject> self(object);
    KeyValueObservers::Change change{changed, observersIfAny(*object)->concernedBy(object->isa(), changed)};
    std::shared_ptr<const SetChange> set = change.parts.empty() ? nullptr : setChange();
    for (auto& part : change.parts) {
        if (part.observation->removed) continue;
        // Whoever observes what lies behind the set, or what depends on it, sees another value and no set.
        const std::vector<SEL>& keys = part.observation->keys;
        const bool isTheSet = part.step + 1 == keys.size() && keys.back() == changed;
        if (isTheSet) part.set = set;
        if (!(part.observation->options & NSKeyValueObservingOptionOld)) continue;
        part.old = part.set ? Ref<NSObject>(part.set->removed) : valueOrNull(*part.observation);
    }
    KeyValueObservers* own = observersIfAny(*object);
    if (!own) return;
    const std::vector<KeyValueObservers::Change::Part> parts = change.parts;
    own->changes.push_back(std::move(change));
    for (const auto& part : parts)
        if (part.observation->options & NSKeyValueObservingOptionPrior)
            tell(part.observation, Moment::before, part.old, part.set.get());
}

void endChange(NSObject* object, NSString* key) {
    KeyValueObservers* own = observersIfAny(*object);
    if (!own) return;
    const SEL changed = findSelector(key);
    if (!changed) return;
    const Ref<NSObject> self(object);
    std::vector<KeyValueObservers::Change::Part> parts;
    const auto begun = std::find_if(own->changes.rbegin(), own->changes.rend(),
                                    [&](const KeyValueObservers::Change& c) { return c.key == changed; });
    if (begun != own->changes.rend()) {
        parts = std::move(begun->parts);
        own->changes.erase(std::next(begun).base());
    } else {
        parts = own->concernedBy(object->isa(), changed);
    }
    for (const auto& part : parts) {
        if (part.observation->removed) continue;
        part.observation->stopFrom(part.step + 1);
        if (part.observation->stations[part.step]) part.observation->listenFrom(part.step + 1);
    }
    for (const auto& part : parts)
        tell(part.observation, Moment::after, part.old, part.set.get());
}

} // namespace

void NSObject::willChangeValueForKey(NSString* key) {
    beginChange(this, key, [] { return std::shared_ptr<const SetChange>(); });
}

void NSObject::didChangeValueForKey(NSString* key) { endChange(this, key); }

void announceSetWillChange(NSObject* object, NSString* key, NSKeyValueSetMutationKind kind, const NSSet* objects) {
    if (object) beginChange(object, key, [&] { return setChangeOf(object, key, kind, objects); });
}

void announceSetDidChange(NSObject* object, NSString* key) {
    if (object) endChange(object, key);
}

} // namespace libvue

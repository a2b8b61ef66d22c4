#pragma once

#include <concepts>
#include <cstdint>
#include <type_traits>

#include <libvue/platform/foundation/Forward.h>
#include <libvue/platform/foundation/Ref.h>

namespace libvue {

struct ObjectSide;
template <class T> const Class& classOf();

namespace detail {
/// True in a debug build of the library, however the application is built.
LIBVUE_API extern const bool countsLiveObjects;
} // namespace detail

/// Options of key-value observing.
enum NSKeyValueObservingOptions : NSUInteger {
    NSKeyValueObservingOptionNone = 0,
    NSKeyValueObservingOptionNew = 1,
    NSKeyValueObservingOptionOld = 2,
    NSKeyValueObservingOptionInitial = 4,
    NSKeyValueObservingOptionPrior = 8
};

/// The root of all objects: an intrusive, non-atomic count that starts at 1, and what every object answers.
///
/// What few objects need (weak references, observers) hangs on a side block that is made on first use, so that
/// an object costs its virtual table pointer and eight bytes.
class LIBVUE_API NSObject {
public:
    NSObject(const NSObject&) = delete;
    NSObject& operator=(const NSObject&) = delete;

    void retain() const noexcept { ++count_; }
    void release() const noexcept {
        if (--count_ == 0) const_cast<NSObject*>(this)->destroy();
    }
    [[nodiscard]] std::uint32_t retainCount() const noexcept { return count_; }

    /// The object's class: the description of its C++ class, or of the nearest base that has one.
    [[nodiscard]] const Class& isa() const;
    [[nodiscard]] BOOL isKindOfClass(const Class& c) const;
    [[nodiscard]] BOOL isMemberOfClass(const Class& c) const;
    [[nodiscard]] BOOL respondsToSelector(SEL selector) const;
    [[nodiscard]] Ref<NSString> className() const;

    [[nodiscard]] virtual BOOL isEqual(const NSObject* other) const { return this == other; }
    [[nodiscard]] virtual NSUInteger hash() const;
    /// "<Class: 0x…>" unless overridden.
    [[nodiscard]] virtual Ref<NSString> description() const;
    /// A copy; immutable objects answer themselves. The base raises NSInvalidArgumentException.
    [[nodiscard]] virtual Ref<NSObject> copyWithZone() const;
    [[nodiscard]] virtual Ref<NSObject> mutableCopyWithZone() const;
    /// A copy in depth; the base answers null.
    [[nodiscard]] virtual Ref<NSObject> deepCopy() const;
    /// Writes the object to an archive. The base writes nothing.
    virtual void encodeWithCoder(NSCoder& coder) const;
    /// Sent once the interface resource that holds the object has been connected.
    virtual void awakeFromNib() {}

    // Operations by name.

    /// Runs the operation (no argument, or one object). Raises NSInvalidArgumentException where it is not answered.
    Ref<NSObject> performSelector(SEL selector) { return performSelector_withObject(selector, nullptr); }
    Ref<NSObject> performSelector_withObject(SEL selector, NSObject* argument);
    /// Runs it from the current run loop, `delay` seconds from now (0: at its next turn). Keeps both objects until
    /// then.
    void performSelector_withObject_afterDelay(SEL selector, NSObject* argument, NSTimeInterval delay);
    /// Takes back the delayed performs of `target`; with a selector, only those with that selector and an equal
    /// argument.
    static void cancelPreviousPerformRequestsWithTarget(NSObject* target);
    static void cancelPreviousPerformRequestsWithTarget_selector_object(NSObject* target, SEL selector,
                                                                        NSObject* argument);

    // Key-value coding. An unknown key raises NSUndefinedKeyException through the two …ForUndefinedKey operations.

    [[nodiscard]] virtual Ref<NSObject> valueForKey(NSString* key);
    virtual void setValue_forKey(NSObject* value, NSString* key);
    [[nodiscard]] virtual Ref<NSObject> valueForKeyPath(NSString* path);
    virtual void setValue_forKeyPath(NSObject* value, NSString* path);
    [[nodiscard]] virtual Ref<NSObject> valueForUndefinedKey(NSString* key);
    virtual void setValue_forUndefinedKey(NSObject* value, NSString* key);

    // Key-value observing: explicit, by willChange/didChange around the store.

    /// `observer` is not kept; it hears observeValueForKeyPath… until it is removed or gone. Key paths of several keys
    /// follow the objects on their way.
    void addObserver_forKeyPath_options_context(NSObject* observer, NSString* path, NSUInteger options, void* context);
    /// Raises NSRangeException where there is no such registration.
    void removeObserver_forKeyPath(NSObject* observer, NSString* path);
    void removeObserver_forKeyPath_context(NSObject* observer, NSString* path, void* context);
    virtual void observeValueForKeyPath_ofObject_change_context(NSString* path, NSObject* object, NSDictionary* change,
                                                                void* context);
    virtual void willChangeValueForKey(NSString* key);
    virtual void didChangeValueForKey(NSString* key);

    /// The side block, or null where nothing has hung on this object yet.
    [[nodiscard]] ObjectSide* sideIfAny() const noexcept { return side_ ? sideAt(side_) : nullptr; }
    [[nodiscard]] ObjectSide& side();
    /// The number of the side block, 0 for none.
    [[nodiscard]] std::uint32_t sideIndex_() const noexcept { return side_; }

protected:
    NSObject() noexcept {
        if (detail::countsLiveObjects) noteCreated();
    }
    virtual ~NSObject();

    /// Eight bits that a subclass may use as it likes.
    [[nodiscard]] std::uint8_t tag() const noexcept { return tag_; }
    void setTag_(std::uint8_t t) noexcept { tag_ = t; }

private:
    void destroy() noexcept;
    void noteCreated() noexcept;
    static ObjectSide* sideAt(std::uint32_t index) noexcept;
    void removeObservation(NSObject* observer, NSString* path, void* const* context);

    mutable std::uint32_t count_ = 1;
    std::uint32_t side_ : 24 = 0;
    std::uint32_t tag_ : 8 = 0;
};

template <class T> NSObject* objectBehind(T* p) noexcept {
    using U = std::remove_const_t<T>;
    if constexpr (std::is_base_of_v<NSObject, U>)
        return const_cast<U*>(p);
    else
        return p ? dynamic_cast<NSObject*>(const_cast<U*>(p)) : nullptr;
}
template <class T> void retain(T* p) noexcept {
    if constexpr (std::is_base_of_v<NSObject, std::remove_const_t<T>>)
        p->NSObject::retain();
    else
        objectBehind(p)->retain();
}
template <class T> void release(T* p) noexcept {
    if constexpr (std::is_base_of_v<NSObject, std::remove_const_t<T>>)
        p->NSObject::release();
    else
        objectBehind(p)->release();
}

/// Builds an object and adopts it.
template <class T, class... Args> [[nodiscard]] Ref<T> make(Args&&... args) {
    (void)classOf<T>();
    return adopt(new T(std::forward<Args>(args)...));
}

/// `object` as a `T`, or null where it is none (or is null). `T` may be an abstract protocol class: this is
/// conformance.
template <class T, class U> [[nodiscard]] T* as(U* object) noexcept { return dynamic_cast<T*>(object); }
template <class T, class U> [[nodiscard]] T* as(const Ref<U>& object) noexcept {
    return dynamic_cast<T*>(object.get());
}
/// Of a reference that is about to go, the answer takes over the count: a pointer into it would dangle.
template <class T, class U> [[nodiscard]] Ref<T> as(Ref<U>&& object) noexcept {
    T* const found = dynamic_cast<T*>(object.get());
    if (found) (void)object.leak();
    return Ref<T>(found, adoptTag);
}

/// Equality of two objects that may be absent.
[[nodiscard]] LIBVUE_API BOOL isEqual(const NSObject* a, const NSObject* b);

/// The live objects of a debug build, a class name and a number a line, without those that `mark…` excused;
/// empty where none is left. A release build counts nothing and answers an empty text.
[[nodiscard]] LIBVUE_API Ref<NSString> liveObjectsReport();
/// Excuses one object.
LIBVUE_API void markLiveObjectAsExpected(NSObject* object);
/// Gives an object to the process: it is never freed, and no report names it.
template <class T> T* keptForever(Ref<T> object) {
    markLiveObjectAsExpected(object);
    return object.leak();
}
/// Excuses every object alive now from the next reports (process-wide tables, literals).
LIBVUE_API void markLiveObjectsAsExpected();
/// The number of live objects of a debug build, for tests that compare before and after; 0 in a release build.
[[nodiscard]] LIBVUE_API NSUInteger liveObjectCount();

} // namespace libvue

#include <libvue/platform/foundation/Class.h>

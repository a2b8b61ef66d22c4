#pragma once

#include <functional>

#include <libvue/platform/foundation/NSNotification.h>
#include <libvue/platform/foundation/Operation.h>

namespace libvue {

/// Tells observers synchronously: all of them have run when a post returns.
///
/// Observers of one object hang on that object, those of no particular object on the centre, by name. An observer is
/// not kept (except the token of a block) and is dropped in silence once it is gone, as are the registrations about an
/// object that is gone. Within one list observers run in the order in which they registered; those of the object run
/// before those of any object. Registering twice means being told twice. An observer that registers during a post does
/// not hear that post; one that is removed during it does not hear it any more. Main thread.
class LIBVUE_API NSNotificationCenter : public NSObject {
public:
    static void describe(ClassDescription<NSNotificationCenter>& c);
    /// The one centre of the process.
    [[nodiscard]] static NSNotificationCenter* defaultCenter();

    /// A null name means any name, a null object any object. The operation is looked up now: a class that does not
    /// answer it raises NSInvalidArgumentException. It takes the notification or nothing.
    void addObserver_selector_name_object(NSObject* observer, SEL selector, NSString* name, NSObject* object);

    /// The same with a member function, `M` taking an NSNotification* or nothing; no description is needed.
    template <auto M, class T> void addObserver(T* observer, NSString* name, NSObject* object) {
        addThunk(objectBehind(observer), &runMember<M, T>, name, object);
    }

    using Block = std::function<void(NSNotification*)>;
    /// Registers a block. The centre keeps it until the token that comes back is given to removeObserver, or the object
    /// is gone. `queue` is always null: blocks run where the post is made.
    Ref<NSObject> addObserverForName_object_queue_usingBlock(NSString* name, NSObject* object, NSObject* queue,
                                                             Block block);

    /// Ends all the registrations of the observer.
    void removeObserver(NSObject* observer);
    /// Ends those of that name and about that object; null stands for any.
    void removeObserver_name_object(NSObject* observer, NSString* name, NSObject* object);

    void postNotification(NSNotification* notification);
    void postNotificationName_object(NSString* name, NSObject* object) {
        postNotificationName_object_userInfo(name, object, nullptr);
    }
    void postNotificationName_object_userInfo(NSString* name, NSObject* object, NSDictionary* userInfo);

private:
    using Thunk = void (*)(NSObject* observer, NSNotification*);
    template <auto M, class T> static void runMember(NSObject* observer, NSNotification* notification) {
        T* target = static_cast<T*>(observer);
        if constexpr (requires { (target->*M)(notification); })
            (void)(target->*M)(notification);
        else
            (void)(target->*M)();
    }

    NSNotificationCenter();
    ~NSNotificationCenter() override;
    void addThunk(NSObject* observer, Thunk thunk, NSString* name, NSObject* object);
};

} // namespace libvue

#pragma once

#include <string_view>
#include <tuple>
#include <type_traits>
#include <typeinfo>
#include <utility>

#include <libvue/platform/foundation/Boxable.h>
#include <libvue/platform/foundation/Ref.h>
#include <libvue/platform/foundation/Selector.h>

namespace libvue {

template <class Signature> class Operation;

namespace detail {

/// Grows with each class that becomes known or is extended: what was answered before may be answered otherwise then.
LIBVUE_API extern unsigned classesAdded;

template <class M> struct MemberTraits;
template <class R, class C, class... A> struct MemberTraits<R (C::*)(A...)> {
    using Owner = C;
    using Signature = R(A...);
    using Arguments = std::tuple<A...>;
};
template <class R, class C, class... A> struct MemberTraits<R (C::*)(A...) const> : MemberTraits<R (C::*)(A...)> {};
template <class R, class C, class... A> struct MemberTraits<R (C::*)(A...) noexcept> : MemberTraits<R (C::*)(A...)> {};
template <class R, class C, class... A>
struct MemberTraits<R (C::*)(A...) const noexcept> : MemberTraits<R (C::*)(A...)> {};

} // namespace detail

template <auto M> using SignatureOf = typename detail::MemberTraits<decltype(M)>::Signature;
template <auto M>
using FirstArgumentOf = std::tuple_element_t<0, typename detail::MemberTraits<decltype(M)>::Arguments>;

/// One operation of a class: its name, its signature and the function that runs it on an instance.
struct OperationEntry {
    SEL selector = nullptr;
    const std::type_info* signature = nullptr;
    void (*run)() = nullptr; ///< R (*)(NSObject*, Args...) for members, the function itself for class-level operations
    /// The same with an object as the argument and the result as an object, whatever the types are: a member that takes
    /// nothing ignores the argument, one that takes another class than the argument's gets null. Null where there are
    /// several arguments or where they cannot be unboxed.
    Ref<NSObject> (*perform)(NSObject* target, NSObject* argument) = nullptr;

    template <class T, auto M, class Signature> static OperationEntry ofMember(const Operation<Signature>& operation);
    template <auto F> static OperationEntry ofFunction(SEL selector) {
        return {selector, &typeid(std::remove_pointer_t<decltype(F)>), reinterpret_cast<void (*)()>(F), nullptr};
    }
};

template <class Signature> class BoundOperation;

/// An operation found on an object: calls it, and keeps the object for as long as it lives. Absent when converted to
/// false.
template <class R, class... A> class BoundOperation<R(A...)> {
public:
    using Run = R (*)(NSObject*, A...);
    BoundOperation() noexcept = default;
    BoundOperation(NSObject* target, Run run) noexcept : target_(target), run_(run) {}
    explicit operator bool() const noexcept { return run_ != nullptr; }
    R operator()(A... args) const { return run_(target_.get(), std::forward<A>(args)...); }

private:
    Ref<NSObject> target_;
    Run run_ = nullptr;
};

/// The operation of that selector on the object where it is answered with that signature, else null. A wrong signature
/// is the caller's error: asserted in debug builds.
[[nodiscard]] LIBVUE_API const OperationEntry* findOperation(const NSObject* object, SEL selector,
                                                             const std::type_info& signature);

/// A typed constant that names an optional operation (a delegate's, a target's action). Its identity is its interned
/// name.
template <class R, class... A> class Operation<R(A...)> {
public:
    constexpr Operation(const char* name) noexcept : name_(name) {}

    [[nodiscard]] SEL selector() const {
        if (!selector_) selector_ = sel(name_);
        return selector_;
    }
    operator SEL() const { return selector(); }

    /// The operation on `object`, absent where it does not answer (or is null). `object` may be a protocol pointer.
    template <class T> [[nodiscard]] BoundOperation<R(A...)> of(T* object) const {
        NSObject* o = objectBehind(object);
        if (!o) return {};
        const std::type_info& type = typeBehind(o);
        if (&type != asked_ || detail::classesAdded != when_) {
            const OperationEntry* e = findOperation(o, selector(), typeid(R(A...)));
            answer_ = e ? reinterpret_cast<Run>(e->run) : nullptr;
            asked_ = &type;
            when_ = detail::classesAdded;
        }
        if (!answer_) return {};
        return {o, answer_};
    }
    template <class T> [[nodiscard]] auto of(const Ref<T>& object) const { return of(object.get()); }
    template <class T> [[nodiscard]] auto of(const Weak<T>& object) const { return of(object.get()); }

private:
    using Run = typename BoundOperation<R(A...)>::Run;

    /// A template, since the root class may still be incomplete here.
    template <class O> [[nodiscard]] static const std::type_info& typeBehind(O* o) { return typeid(*o); }

    const char* name_;
    mutable SEL selector_ = nullptr;
    // The dynamic type asked last and its answer: whoever sends an operation mostly sends it to objects that are alike.
    mutable const std::type_info* asked_ = nullptr;
    mutable Run answer_ = nullptr;
    mutable unsigned when_ = 0;
};

/// The signature of an action: the sender is its argument.
using Action = void(NSObject*);

namespace detail {

template <class T, auto M, class Signature> struct Thunk;
template <class T, auto M, class R, class... A> struct Thunk<T, M, R(A...)> {
    static R run(NSObject* o, A... args) { return (static_cast<T*>(o)->*M)(std::forward<A>(args)...); }

    static constexpr bool performable = sizeof...(A) <= 1 && (isBoxable<std::remove_cvref_t<A>>() && ...);
    static Ref<NSObject> perform(NSObject* o, [[maybe_unused]] NSObject* argument) {
        auto result = [&]() -> R { return run(o, unboxed<std::remove_cvref_t<A>>(argument)...); };
        if constexpr (isBoxable<std::remove_cvref_t<R>>())
            return boxed<std::remove_cvref_t<R>>(result());
        else {
            (void)result();
            return nullptr;
        }
    }
};

} // namespace detail

template <class T, auto M, class Signature>
OperationEntry OperationEntry::ofMember(const Operation<Signature>& operation) {
    using Thunk = detail::Thunk<T, M, Signature>;
    OperationEntry e{operation.selector(), &typeid(Signature), reinterpret_cast<void (*)()>(&Thunk::run), nullptr};
    if constexpr (Thunk::performable) e.perform = &Thunk::perform;
    return e;
}

} // namespace libvue

#include <libvue/platform/foundation/NSObject.h>

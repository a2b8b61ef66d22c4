#pragma once

#include <concepts>
#include <span>
#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

#include <libvue/platform/foundation/Boxing.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/Operation.h>

namespace libvue {

template <class T, class Super = NSObject> class ClassDescription;

/// A key that a class offers to key-value coding. Either function may be absent.
struct KeyEntry {
    SEL key;
    Ref<NSObject> (*get)(NSObject*);
    void (*set)(NSObject*, NSObject*);
};

namespace detail {

/// What a chain of classes answered to selectors, including that it answered nothing.
class SelectorCache {
public:
    /// The place of the selector's answer; `fresh` tells that it has none yet.
    const void*& at(SEL selector, bool& fresh);

private:
    struct Slot {
        SEL selector = nullptr;
        const void* answer = nullptr;
    };
    Slot& find(SEL selector) noexcept;

    std::vector<Slot> slots_; // a power of two
    std::size_t used_ = 0;
};

} // namespace detail

/// The one description of a class: its real superclass, a factory, the operations it answers by name, the keys it
/// offers to key-value coding. Built on first use, never freed.
class LIBVUE_API Class {
public:
    Class(const Class&) = delete;
    Class& operator=(const Class&) = delete;

    /// The bare C++ name, such as "KCTarte".
    [[nodiscard]] const std::string& name() const noexcept { return name_; }
    /// Null for NSObject.
    [[nodiscard]] const Class* superclass() const noexcept { return superclass_; }
    [[nodiscard]] BOOL isSubclassOfClass(const Class& c) const noexcept;
    [[nodiscard]] BOOL instancesRespondToSelector(SEL selector) const noexcept {
        return operation(selector) != nullptr;
    }
    /// A new instance, or null where the class has no default constructor.
    [[nodiscard]] Ref<NSObject> alloc() const;
    /// An instance from an archive, or null where the class has no constructor from NSCoder& (nor a static
    /// initWithCoder).
    [[nodiscard]] Ref<NSObject> initWithCoder(NSCoder& coder) const;
    [[nodiscard]] BOOL hasInitWithCoder() const noexcept;

    /// The operation of that name of this class or the nearest ancestor; null where none answers.
    [[nodiscard]] const OperationEntry* operation(SEL selector) const noexcept;
    /// The class-level operation of that name.
    [[nodiscard]] const OperationEntry* classOperation(SEL selector) const noexcept;
    [[nodiscard]] const KeyEntry* key(SEL key) const noexcept;
    /// The keys that `key` is computed from; changing one of them announces `key` as well.
    [[nodiscard]] std::span<const std::pair<SEL, SEL>> dependencies() const noexcept { return dependencies_; }

    [[nodiscard]] const std::type_info& type() const noexcept { return *type_; }

private:
    template <class T, class Super> friend class ClassDescription;
    template <class T> friend const Class& classOf();
    friend class ClassTable;

    using Describe = void (*)(Class&);
    /// Makes and registers the class; `describe` fills it.
    static const Class& build(const std::type_info& type, const Class* superclass, Describe describe);
    explicit Class(const std::type_info& type, const Class* superclass);

    std::string name_;
    const std::type_info* type_;
    const Class* superclass_;
    std::vector<const Class*> lineage_; // from NSObject down to this class
    Ref<NSObject> (*factory_)() = nullptr;
    Ref<NSObject> (*decode_)(NSCoder&) = nullptr;
    std::vector<OperationEntry> operations_;
    std::vector<OperationEntry> classOperations_;
    std::vector<KeyEntry> keys_;
    std::vector<std::pair<SEL, SEL>> dependencies_;
    bool described_ = false; // by itself, and not by a base alone
    mutable detail::SelectorCache lookups_;
    mutable detail::SelectorCache keyLookups_;
};

/// What a class says of itself, in its `static void describe(ClassDescription<Self, Super>&)`.
template <class T, class Super> class ClassDescription {
public:
    using Self = T;
    using Base = Super;
    explicit ClassDescription(Class& c) : class_(c) {}

    /// Says that `T` answers the operation with the member function `M`, whose signature must be the operation's.
    template <auto M, class Signature> void answers(const Operation<Signature>& operation) {
        class_.operations_.push_back(OperationEntry::ofMember<T, M, Signature>(operation));
    }
    /// The same for an operation that has no constant of its own: the signature is `M`'s.
    template <auto M> void answers(std::string_view name) {
        class_.operations_.push_back(
            OperationEntry::ofMember<T, M, SignatureOf<M>>(Operation<SignatureOf<M>>(name.data())));
    }
    /// A class-level operation, reached through a Class chosen at run time.
    template <auto F> void classAnswers(std::string_view name) {
        class_.classOperations_.push_back(OperationEntry::ofFunction<F>(sel(name)));
    }
    /// A key with a getter, and a setter where there is one. Values are boxed: numbers and booleans as NSNumber,
    /// geometry as NSValue, objects as they are.
    template <auto Get, auto Set = nullptr> void key(std::string_view name) {
        KeyEntry e{sel(name), nullptr, nullptr};
        e.get = [](NSObject* o) -> Ref<NSObject> { return boxed((static_cast<T*>(o)->*Get)()); };
        if constexpr (!std::is_null_pointer_v<decltype(Set)>)
            e.set = [](NSObject* o, NSObject* v) {
                using Argument = std::remove_cvref_t<FirstArgumentOf<Set>>;
                (static_cast<T*>(o)->*Set)(unboxed<Argument>(v));
            };
        class_.keys_.push_back(e);
    }
    /// Announces `key` whenever `from` changes.
    void keyDependsOn(std::string_view key, std::string_view from) {
        class_.dependencies_.emplace_back(sel(key), sel(from));
    }

private:
    Class& class_;
};

namespace detail {

template <class U, class S> std::type_identity<U> describedSelf(void (*)(ClassDescription<U, S>&));
template <class U, class S> std::type_identity<S> describedSuper(void (*)(ClassDescription<U, S>&));

template <class T>
concept HasDescribe = requires {
    &T::describe;
};

/// A class of its own, not only a base of it, chooses at reading what it makes: the answer may be null.
template <class T>
concept HasStaticInitWithCoder = requires(NSCoder& coder) {
    { T::initWithCoder(coder) } -> std::convertible_to<Ref<T>>;
};

template <class T> consteval bool describesItself() {
    if constexpr (HasDescribe<T>)
        return std::is_same_v<typename decltype(describedSelf(&T::describe))::type, T>;
    else
        return false;
}

} // namespace detail

/// The class of `T`, built on first use. A class that has no `describe` of its own has the nearest described base above
/// it.
template <class T> const Class& classOf() {
    static const Class& c = [&]() -> const Class& {
        auto fill = [](Class& c) {
            if constexpr (requires { new T(); }) {
                if constexpr (!std::is_abstract_v<T>)
                    c.factory_ = []() -> Ref<NSObject> { return adopt<NSObject>(new T()); };
            }
            if constexpr (requires(NSCoder & coder) { new T(coder); }) {
                if constexpr (!std::is_abstract_v<T>)
                    c.decode_ = [](NSCoder& coder) -> Ref<NSObject> { return adopt<NSObject>(new T(coder)); };
            } else if constexpr (detail::HasStaticInitWithCoder<T>)
                c.decode_ = [](NSCoder& coder) -> Ref<NSObject> { return T::initWithCoder(coder); };
            if constexpr (detail::describesItself<T>()) {
                using Super = typename decltype(detail::describedSuper(&T::describe))::type;
                ClassDescription<T, Super> d(c);
                c.described_ = true;
                T::describe(d);
            }
        };
        if constexpr (std::is_same_v<T, NSObject>)
            return Class::build(typeid(T), nullptr, fill);
        else if constexpr (detail::describesItself<T>()) {
            using Super = typename decltype(detail::describedSuper(&T::describe))::type;
            static_assert(std::is_base_of_v<Super, T> && !std::is_same_v<Super, T>,
                          "describe names a class that is no base");
            return Class::build(typeid(T), &classOf<Super>(), fill);
        } else if constexpr (detail::HasDescribe<T>) {
            using Super = typename decltype(detail::describedSelf(&T::describe))::type;
            return Class::build(typeid(T), &classOf<Super>(), fill);
        } else
            return Class::build(typeid(T), &classOf<NSObject>(), fill);
    }();
    return c;
}

/// Makes a class known by name from the start of the process, before its first use: one line in its source,
/// `static const ClassRegistration<KCTarte> enregistrement;`. It costs nothing until a name is looked up.
struct LIBVUE_API ClassRegistrationBase {
    ClassRegistrationBase(const Class& (*get)(), const std::type_info& type) noexcept;
    const Class& (*get)();
    const std::type_info& type;
    const ClassRegistrationBase* next;
};
template <class T> struct ClassRegistration : ClassRegistrationBase {
    ClassRegistration() noexcept : ClassRegistrationBase(&classOf<T>, typeid(T)) {}
};

/// The class of that name, or null. Known are the classes that were used or registered.
[[nodiscard]] LIBVUE_API const Class* NSClassFromString(NSString* name);
/// The name that NSClassFromString finds the class by.
[[nodiscard]] LIBVUE_API Ref<NSString> NSStringFromClass(const Class& c);

} // namespace libvue

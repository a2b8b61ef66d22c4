#pragma once

#include <libvue/platform/foundation/Class.h>

namespace libvue {

namespace detail {

struct Extended;

template <class T, auto F, class = decltype(F)> struct ExtensionThunk;
template <class T, auto F, class R, class Receiver, class... A> struct ExtensionThunk<T, F, R (*)(Receiver*, A...)> {
    using Signature = R(A...);

    static R run(NSObject* o, A... args) { return F(static_cast<T*>(o), std::forward<A>(args)...); }

    static constexpr bool performable =
        sizeof...(A) <= 1 && (isBoxable<std::remove_cvref_t<A>>() && ...) && isBoxable<std::remove_cvref_t<R>>();
    static Ref<NSObject> perform(NSObject* o, [[maybe_unused]] NSObject* argument) {
        return boxed<std::remove_cvref_t<R>>(run(o, unboxed<std::remove_cvref_t<A>>(argument)...));
    }
};

} // namespace detail

/// What an extension adds to a class.
template <class T> class ClassDescription<T, detail::Extended> {
public:
    explicit ClassDescription(Class& c) : class_(c) {}

    /// Says that `T` answers the operation of that name with the function `F`, which takes the receiver first.
    template <auto F> void answers(std::string_view name) {
        using Thunk = detail::ExtensionThunk<T, F>;
        OperationEntry e{sel(name), &typeid(typename Thunk::Signature), reinterpret_cast<void (*)()>(&Thunk::run),
                         nullptr};
        if constexpr (Thunk::performable) e.perform = &Thunk::perform;
        class_.operations_.push_back(e);
    }

private:
    Class& class_;
};

/// Operations that a storey above adds to a class of a storey below. One constant in a source of the extension,
/// `const ClassExtension<NSString> extension([](auto& c) { c.template answers<&f>("f:"); });`, and every instance
/// answers them by name. An operation that the class already had of that name is replaced.
struct LIBVUE_API ClassExtensionBase {
    using Fill = void (*)(const ClassExtensionBase&, Class&);
    /// Fills the class when it is built, or at once where it is.
    void install() noexcept;

    const std::type_info& type;
    Fill fill;
    const ClassExtensionBase* next = nullptr;
};
template <class T> struct ClassExtension : ClassExtensionBase {
    using Description = ClassDescription<T, detail::Extended>;
    using Describe = void (*)(Description&);

    explicit ClassExtension(Describe describe) noexcept
        : ClassExtensionBase{typeid(T),
                             [](const ClassExtensionBase& e, Class& c) {
                                 Description d(c);
                                 static_cast<const ClassExtension&>(e).describe(d);
                             }},
          describe(describe) {
        install();
    }
    ClassExtension(const ClassExtension&) = delete;
    ClassExtension& operator=(const ClassExtension&) = delete;

    Describe describe;
};

} // namespace libvue

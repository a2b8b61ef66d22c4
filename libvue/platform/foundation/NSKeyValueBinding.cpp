#include <libvue/platform/foundation/NSKeyValueBinding.h>

#include <algorithm>
#include <memory>
#include <vector>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSKeyValueObserving.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/NSValueTransformer.h>
#include <libvue/platform/foundation/ObjectSide.h>

namespace libvue {

namespace {

/// One bound key of one object. It hangs on its owner and observes the model.
class Binding final : public NSObject {
public:
    Binding(NSObject* owner, NSString* name, NSObject* observed, NSString* path, NSDictionary* options)
        : owner_(owner),
          name_(NSString::stringWithString(name)),
          observed_(observed),
          path_(NSString::stringWithString(path)),
          options_(options),
          transformer_(transformerOf(options)) {}

    [[nodiscard]] NSString* name() const noexcept { return name_; }
    [[nodiscard]] Ref<NSDictionary> info() const;
    [[nodiscard]] bool isContinuous() const {
        return options_ && unboxed<bool>(options_->objectForKey(NSContinuouslyUpdatesValueBindingOption));
    }

    void start();
    void stop();
    void push(ShowAfterwards afterwards);
    void observeValueForKeyPath_ofObject_change_context(NSString*, NSObject*, NSDictionary*, void*) override {
        if (!pushing_) show();
    }

private:
    static Ref<NSValueTransformer> transformerOf(const NSDictionary* options);
    void show();
    [[nodiscard]] bool readsAsShown(NSObject* value) const;

    NSObject* owner_; ///< null once the binding has ended
    Ref<NSString> name_;
    Weak<NSObject> observed_;
    Ref<NSString> path_;
    Ref<NSDictionary> options_;
    Ref<NSValueTransformer> transformer_;
    Ref<NSObject> shown_;
    bool observing_ = false, pushing_ = false;
};

Ref<NSValueTransformer> Binding::transformerOf(const NSDictionary* options) {
    if (!options) return nullptr;
    if (auto* t = options->get<NSValueTransformer>(NSValueTransformerBindingOption)) return t;
    const auto* name = options->get<NSString>(NSValueTransformerNameBindingOption);
    if (!name) return nullptr;
    auto* t = NSValueTransformer::valueTransformerForName(name);
    if (!t) raiseNamed(NSInvalidArgumentException, "there is no value transformer named " + name->utf8());
    return t;
}

Ref<NSDictionary> Binding::info() const {
    const Ref<NSMutableDictionary> d = NSMutableDictionary::dictionary();
    if (const Ref<NSObject> observed = observed_.ref()) d->setObject_forKey(observed, NSObservedObjectKey);
    d->setObject_forKey(path_, NSObservedKeyPathKey);
    d->setObject_forKey(options_ ? options_ : NSDictionary::dictionary(), NSOptionsKey);
    return d;
}

void Binding::start() {
    show();
    const Ref<NSObject> observed = observed_.ref();
    if (!observed || !owner_) return;
    observed->addObserver_forKeyPath_options_context(this, path_, NSKeyValueObservingOptionNone, this);
    observing_ = true;
}

void Binding::stop() {
    owner_ = nullptr;
    const Ref<NSObject> observed = observed_.ref();
    if (std::exchange(observing_, false) && observed) observed->removeObserver_forKeyPath_context(this, path_, this);
}

void Binding::show() {
    const Ref<NSObject> owner(owner_), observed = observed_.ref();
    if (!owner || !observed) return;
    const Ref<Binding> self(this);
    Ref<NSObject> value = observed->valueForKeyPath(path_);
    if (!value && options_ && options_->objectForKey(NSNullPlaceholderBindingOption))
        value = options_->objectForKey(NSNullPlaceholderBindingOption);
    else if (transformer_)
        value = transformer_->transformedValue(value);
    if (!owner_) return;
    shown_ = value;
    owner->setValue_forKey(value, name_);
}

bool Binding::readsAsShown(NSObject* value) const {
    if (libvue::isEqual(value, shown_)) return true;
    // A control without a formatter gives back text, whatever was put in.
    auto* text = as<NSString>(value);
    return text && (shown_ ? text->isEqualToString(shown_->description()) : text->length() == 0);
}

void Binding::push(ShowAfterwards afterwards) {
    const Ref<NSObject> owner(owner_), observed = observed_.ref();
    if (!owner || !observed || pushing_ || (transformer_ && !transformer_->allowsReverse())) return;
    const Ref<Binding> self(this);
    Ref<NSObject> value = owner->valueForKey(name_);
    if (readsAsShown(value)) return;
    const Ref<NSObject> given = transformer_ ? transformer_->reverseTransformedValue(value) : value;
    {
        // What the model announces meanwhile is what it was just given.
        struct Guard {
            bool& flag;
            explicit Guard(bool& f) : flag(f) { flag = true; }
            ~Guard() { flag = false; }
        } guard(pushing_);
        observed->setValue_forKeyPath(given, path_);
    }
    shown_ = value;
    if (afterwards == ShowAfterwards::modelValue && !libvue::isEqual(observed->valueForKeyPath(path_), given)) show();
}

} // namespace

struct KeyValueBindings {
    std::vector<Ref<Binding>> all;
};

namespace {

Ref<Binding> find(const NSObject* object, NSString* name) {
    const ObjectSide* side = object && name ? object->sideIfAny() : nullptr;
    if (!side || !side->bindings) return nullptr;
    for (const Ref<Binding>& b : side->bindings->all)
        if (b->name()->isEqualToString(name)) return b;
    return nullptr;
}

const ExposedBinding* exposed = nullptr;

} // namespace

void detail::dropKeyValueBindings(ObjectSide& side) noexcept {
    const std::unique_ptr<KeyValueBindings> gone{std::exchange(side.bindings, nullptr)};
    if (!gone) return;
    for (const Ref<Binding>& b : gone->all)
        b->stop();
}

void bind_toObject_withKeyPath_options(NSObject* object, NSString* binding, NSObject* observed, NSString* keyPath,
                                       NSDictionary* options) {
    if (!object || !binding || !observed || !keyPath)
        raiseNamed(NSInvalidArgumentException, "a binding needs two objects, a key and a key path");
    if (detail::isBeingDestroyed(object)) return;
    const Ref<NSObject> kept(object);
    const Ref<Binding> b = make<Binding>(object, binding, observed, keyPath, options);
    unbind(object, binding);
    try {
        b->start();
    } catch (...) {
        b->stop();
        throw;
    }
    // The first showing may have bound the same key by itself; this call is the later one.
    unbind(object, binding);
    ObjectSide& side = object->side();
    if (!side.bindings) side.bindings = new KeyValueBindings;
    side.bindings->all.push_back(b);
}

void unbind(NSObject* object, NSString* binding) {
    const Ref<Binding> b = find(object, binding);
    if (!b) return;
    std::erase(object->sideIfAny()->bindings->all, b);
    b->stop();
}

Ref<NSDictionary> infoForBinding(const NSObject* object, NSString* binding) {
    const Ref<Binding> b = find(object, binding);
    return b ? b->info() : nullptr;
}

ExposedBinding::ExposedBinding(const Class& (*ownerClass)(), const ConstantString& binding) noexcept
    : owner(ownerClass), name(binding), next(exposed) {
    exposed = this;
}

Ref<NSArray> exposedBindings(const NSObject* object) {
    const Ref<NSMutableArray> names = NSMutableArray::array();
    for (const ExposedBinding* e = object ? exposed : nullptr; e; e = e->next)
        if (object->isKindOfClass(e->owner()) && !names->containsObject(e->name.get())) names->addObject(e->name);
    return names->sortedArrayUsingSelector(sel("compare:"));
}

void setBoundValue(NSObject* object, NSString* binding, ShowAfterwards afterwards) {
    if (!object || !object->sideIfAny() || !object->sideIfAny()->bindings) return;
    if (const Ref<Binding> b = find(object, binding)) b->push(afterwards);
}

BOOL bindingUpdatesContinuously(const NSObject* object, NSString* binding) {
    const Ref<Binding> b = find(object, binding);
    return b && b->isContinuous();
}

} // namespace libvue

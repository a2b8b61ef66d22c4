#include <libvue/platform/foundation/NSValueTransformer.h>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

using Block = std::function<Ref<NSObject>(NSObject*)>;

class BlockTransformer final : public NSValueTransformer {
public:
    BlockTransformer(Block transform, Block reverse) : transform_(std::move(transform)), reverse_(std::move(reverse)) {}
    Ref<NSObject> transformedValue(NSObject* value) override { return transform_ ? transform_(value) : nullptr; }
    Ref<NSObject> reverseTransformedValue(NSObject* value) override {
        return reverse_ ? reverse_(value) : NSValueTransformer::reverseTransformedValue(value);
    }
    BOOL allowsReverse() const override { return reverse_ != nullptr; }

private:
    Block transform_, reverse_;
};

NSMutableDictionary& registry() {
    static NSMutableDictionary* const all = [] {
        auto* d = keptForever(NSMutableDictionary::dictionary());
        auto add = [&](const Ref<NSString>& name, Block transform, Block reverse) {
            auto t = NSValueTransformer::withBlocks(std::move(transform), std::move(reverse));
            markLiveObjectAsExpected(t);
            markLiveObjectAsExpected(name);
            d->setObject_forKey(t, name);
        };
        Block negate = [](NSObject* v) -> Ref<NSObject> { return boxed(!unboxed<bool>(v)); };
        add(u"NSNegateBoolean"_ns, negate, negate);
        add(u"NSIsNil"_ns, [](NSObject* v) { return boxed(v == nullptr); }, {});
        add(u"NSIsNotNil"_ns, [](NSObject* v) { return boxed(v != nullptr); }, {});
        return d;
    }();
    return *all;
}

const ClassRegistration<NSValueTransformer> registration;

} // namespace

void NSValueTransformer::describe(ClassDescription<NSValueTransformer>& c) {
    c.answers<&NSValueTransformer::transformedValue>("transformedValue:");
    c.answers<&NSValueTransformer::reverseTransformedValue>("reverseTransformedValue:");
    c.classAnswers<&NSValueTransformer::transformedValueClass>("transformedValueClass");
    c.classAnswers<&NSValueTransformer::allowsReverseTransformation>("allowsReverseTransformation");
}

const Class& NSValueTransformer::transformedValueClass() { return classOf<NSObject>(); }

void NSValueTransformer::setValueTransformer_forName(NSValueTransformer* t, const NSString* name) {
    if (!name) raiseNamed(NSInvalidArgumentException, "a transformer without a name");
    if (t)
        registry().setObject_forKey(t, name);
    else
        registry().removeObjectForKey(name);
}

NSValueTransformer* NSValueTransformer::valueTransformerForName(const NSString* name) {
    if (!name) return nullptr;
    if (auto* t = registry().get<NSValueTransformer>(name)) return t;
    const Class* c = NSClassFromString(const_cast<NSString*>(name));
    Ref<NSObject> made = c && c->isSubclassOfClass(classOf<NSValueTransformer>()) ? c->alloc() : nullptr;
    if (!made) return nullptr;
    registry().setObject_forKey(made, name);
    return registry().get<NSValueTransformer>(name);
}

Ref<NSArray> NSValueTransformer::valueTransformerNames() { return registry().allKeys(); }

Ref<NSValueTransformer> NSValueTransformer::withBlocks(Block transform, Block reverse) {
    return make<BlockTransformer>(std::move(transform), std::move(reverse));
}

BOOL NSValueTransformer::allowsReverse() const {
    const OperationEntry* e = isa().classOperation(sel("allowsReverseTransformation"));
    return !e || reinterpret_cast<BOOL (*)()>(e->run)();
}

Ref<NSObject> NSValueTransformer::transformedValue(NSObject* value) { return Ref<NSObject>(value); }

Ref<NSObject> NSValueTransformer::reverseTransformedValue(NSObject* value) {
    if (!allowsReverse()) raiseNamed(NSInvalidArgumentException, "this transformer does not go back");
    return transformedValue(value);
}

} // namespace libvue

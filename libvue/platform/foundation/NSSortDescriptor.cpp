#include <libvue/platform/foundation/NSSortDescriptor.h>

#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/ObjectSort.h>

namespace libvue {

namespace {

const ClassRegistration<NSSortDescriptor> registration;

Ref<NSString> copied(const NSString* s) {
    return s ? Ref<NSString>(dynamic_cast<NSString*>(s->copyWithZone().get())) : nullptr;
}

} // namespace

void NSSortDescriptor::describe(ClassDescription<NSSortDescriptor>&) {}

NSSortDescriptor::NSSortDescriptor(const NSString* key, BOOL ascending, SEL selector)
    : key_(copied(key)), selector_(selector ? selector : sel("compare:")), ascending_(ascending) {}

NSSortDescriptor::NSSortDescriptor(const NSString* key, BOOL ascending, NSComparator comparator)
    : key_(copied(key)), selector_(sel("compare:")), comparator_(std::move(comparator)), ascending_(ascending) {}

NSSortDescriptor::NSSortDescriptor(NSCoder& coder) {
    bool keyed = coder.allowsKeyedCoding();
    key_ = keyed ? coder.decodeObjectOf_forKey<NSString>(u"NSKey"_ns) : coder.decodeObjectOf<NSString>();
    auto name = keyed ? coder.decodeObjectOf_forKey<NSString>(u"NSSelector"_ns) : coder.decodeObjectOf<NSString>();
    ascending_ = keyed ? coder.decodeBoolForKey(u"NSAscending"_ns) : coder.decodeBool();
    selector_ = name ? NSSelectorFromString(name) : sel("compare:");
}

NSSortDescriptor::~NSSortDescriptor() = default;

Ref<NSSortDescriptor> NSSortDescriptor::sortDescriptorWithKey_ascending(const NSString* key, BOOL ascending) {
    return make<NSSortDescriptor>(key, ascending);
}
Ref<NSSortDescriptor> NSSortDescriptor::sortDescriptorWithKey_ascending_selector(const NSString* key, BOOL ascending,
                                                                                 SEL selector) {
    return make<NSSortDescriptor>(key, ascending, selector);
}
Ref<NSSortDescriptor> NSSortDescriptor::sortDescriptorWithKey_ascending_comparator(const NSString* key, BOOL ascending,
                                                                                   NSComparator comparator) {
    return make<NSSortDescriptor>(key, ascending, std::move(comparator));
}

NSComparisonResult NSSortDescriptor::compareObject_toObject(NSObject* a, NSObject* b) const {
    Ref<NSObject> x(a), y(b);
    if (key_) {
        x = a ? a->valueForKeyPath(key_) : nullptr;
        y = b ? b->valueForKeyPath(key_) : nullptr;
    }
    if (!comparator_ && !comparison_) comparison_ = std::make_unique<SelectorComparison>(selector_);
    const NSComparisonResult c =
        comparator_ ? compareWithAbsent(x, y, comparator_) : compareWithAbsent(x, y, *comparison_);
    // A comparison may answer any number of the right sign.
    if (c == NSOrderedSame) return c;
    return (c < NSOrderedSame) == ascending_ ? NSOrderedAscending : NSOrderedDescending;
}

Ref<NSSortDescriptor> NSSortDescriptor::reversedSortDescriptor() const {
    return comparator_ ? make<NSSortDescriptor>(key_, !ascending_, comparator_)
                       : make<NSSortDescriptor>(key_, !ascending_, selector_);
}

BOOL NSSortDescriptor::isEqual(const NSObject* other) const {
    if (this == other) return YES;
    auto* d = dynamic_cast<const NSSortDescriptor*>(other);
    return d && !comparator_ && !d->comparator_ && d->ascending_ == ascending_ && d->selector_ == selector_ &&
           libvue::isEqual(d->key_, key_);
}

NSUInteger NSSortDescriptor::hash() const { return (key_ ? key_->hash() : 0) * 2 + ascending_; }
Ref<NSObject> NSSortDescriptor::copyWithZone() const { return Ref<NSObject>(const_cast<NSSortDescriptor*>(this)); }

void NSSortDescriptor::encodeWithCoder(NSCoder& coder) const {
    auto name = NSStringFromSelector(selector_);
    if (coder.allowsKeyedCoding()) {
        coder.encodeObject_forKey(key_, u"NSKey"_ns);
        coder.encodeObject_forKey(name, u"NSSelector"_ns);
        coder.encodeBool_forKey(ascending_, u"NSAscending"_ns);
    } else {
        coder.encodeObject(key_);
        coder.encodeObject(name);
        coder.encodeBool(ascending_);
    }
}

} // namespace libvue

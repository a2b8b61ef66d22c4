#include <libvue/platform/foundation/CollectionKeys.h>

#include <algorithm>
#include <limits>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDecimalNumber.h>
#include <libvue/platform/foundation/NSNull.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSSet.h>
#include <libvue/platform/foundation/NSSortDescriptor.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

using Elements = std::vector<Ref<NSObject>>;

constexpr auto notFound = static_cast<NSUInteger>(NSNotFound);

NSUInteger indexOf(const NSString* s, unichar c) {
    for (NSUInteger i = 0; i < s->length(); ++i)
        if (s->unit(i) == c) return i;
    return notFound;
}

/// The elements' values at the path, without those that are absent.
Elements valuesOf(const Elements& elements, NSString* path) {
    if (path->length() == 0) return elements;
    Elements values;
    for (const auto& e : elements)
        if (auto v = e->valueForKeyPath(path); v && v.get() != NSNull::null()) values.push_back(std::move(v));
    return values;
}

/// What is no number counts as in `unboxed`.
Ref<NSDecimalNumber> decimalOf(NSObject* v) {
    if (auto* d = as<NSDecimalNumber>(v)) return d;
    if (auto* n = as<NSNumber>(v)) return NSDecimalNumber::decimalNumberWithText(n->stringValue()->utf8());
    return NSDecimalNumber::decimalNumberWithDouble(unboxed<double>(v));
}

/// A decimal number if one is among the values, else an integer as long as it is whole and fits, else a double.
Ref<NSNumber> sumOf(const Elements& values) {
    if (std::any_of(values.begin(), values.end(), [](const auto& v) { return as<NSDecimalNumber>(v) != nullptr; })) {
        auto sum = NSDecimalNumber::zero();
        for (const auto& v : values)
            sum = sum->decimalNumberByAdding(decimalOf(v));
        return sum;
    }
    constexpr auto most = static_cast<NSUInteger>(std::numeric_limits<NSInteger>::max());
    bool whole = true;
    NSInteger integers = 0;
    double doubles = 0;
    for (const auto& v : values) {
        auto* n = as<NSNumber>(v);
        doubles += unboxed<double>(v);
        // Beyond the signed range integerValue is held to it.
        const bool fits = n && !n->isFloating() && (*n->objCType() != 'Q' || n->unsignedIntegerValue() <= most);
        whole = whole && fits && !__builtin_add_overflow(integers, n->integerValue(), &integers);
    }
    return whole ? NSNumber::numberWithInteger(integers) : NSNumber::numberWithDouble(doubles);
}

Ref<NSNumber> averageOf(const Elements& values) {
    if (values.empty()) return NSNumber::numberWithDouble(0);
    const Ref<NSNumber> sum = sumOf(values);
    const auto count = NSNumber::numberWithUnsignedInteger(values.size());
    if (auto* d = as<NSDecimalNumber>(sum)) return d->decimalNumberByDividingBy(decimalOf(count));
    return NSNumber::numberWithDouble(sum->doubleValue() / count->doubleValue());
}

Ref<NSObject> extremeOf(const Elements& values, NSComparisonResult better) {
    NSSortDescriptor order(nullptr, YES);
    Ref<NSObject> best;
    for (const auto& v : values)
        if (!best || order.compareObject_toObject(v, best) == better) best = v;
    return best;
}

} // namespace

Ref<NSObject> collectionValueForKeyPath(NSObject& collection, const Elements& elements, NSString* path) {
    if (!path || path->length() == 0) return collection.valueForUndefinedKey(path);
    NSUInteger dot = indexOf(path, u'.');
    Ref<NSString> first = dot == notFound ? Ref<NSString>(path) : path->substringToIndex(dot);
    Ref<NSString> rest = dot == notFound ? NSString::string() : path->substringFromIndex(dot + 1);
    if (first->length() == 0 || first->unit(0) != u'@') {
        auto values = collection.valueForKey(first);
        return rest->length() && values ? values->valueForKeyPath(rest) : values;
    }

    if (first->isEqualTo(u"@count")) return NSNumber::numberWithInteger(static_cast<NSInteger>(elements.size()));
    Elements values = valuesOf(elements, rest);
    if (first->isEqualTo(u"@sum")) return sumOf(values);
    if (first->isEqualTo(u"@avg")) return averageOf(values);
    if (first->isEqualTo(u"@min")) return extremeOf(values, NSOrderedAscending);
    if (first->isEqualTo(u"@max")) return extremeOf(values, NSOrderedDescending);
    if (first->isEqualTo(u"@unionOfObjects")) return NSArray::arrayWithRefs(values);
    if (first->isEqualTo(u"@distinctUnionOfObjects")) {
        auto distinct = NSMutableSet::set();
        for (const auto& v : values)
            distinct->addObject(v);
        return distinct->allObjects();
    }
    return collection.valueForUndefinedKey(path);
}

// Lists.

Ref<NSObject> NSArray::valueForKey(NSString* key) {
    if (key && key->length() && key->unit(0) == u'@') return valueForKeyPath(key);
    auto all = arrayWithArray(this);
    auto values = make<NSArray>();
    values->reserve(all->count());
    for (NSObject* o : *all) {
        auto v = o->valueForKey(key);
        values->append(v ? v.get() : NSNull::null());
    }
    return values;
}

Ref<NSObject> NSArray::valueForKeyPath(NSString* path) {
    return collectionValueForKeyPath(*this, Elements(items(), items() + count_), path);
}

void NSArray::setValue_forKey(NSObject* value, NSString* key) {
    auto all = arrayWithArray(this);
    for (NSObject* o : *all)
        o->setValue_forKey(value, key);
}

// Sets.

Ref<NSObject> NSSet::valueForKey(NSString* key) {
    if (key && key->length() && key->unit(0) == u'@') return valueForKeyPath(key);
    auto all = allObjects();
    auto values = NSMutableSet::set();
    for (NSObject* o : *all)
        if (auto v = o->valueForKey(key)) values->addObject(v);
    return values;
}

Ref<NSObject> NSSet::valueForKeyPath(NSString* path) {
    Elements all;
    for (NSObject* o : *this)
        all.emplace_back(o);
    return collectionValueForKeyPath(*this, all, path);
}

void NSSet::setValue_forKey(NSObject* value, NSString* key) {
    auto all = allObjects();
    for (NSObject* o : *all)
        o->setValue_forKey(value, key);
}

} // namespace libvue

#include <string>

#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

bool isAsciiUpper(char c) noexcept { return c >= 'A' && c <= 'Z'; }
char asciiUpper(char c) noexcept { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
char asciiLower(char c) noexcept { return isAsciiUpper(c) ? static_cast<char>(c - 'A' + 'a') : c; }

/// The other spelling of a truth's key: "hidden" for "isHidden", and the reverse.
std::string otherSpelling(std::string name) {
    if (name.size() > 2 && name.starts_with("is") && isAsciiUpper(name[2])) {
        name.erase(0, 2);
        name[0] = asciiLower(name[0]);
        return name;
    }
    name[0] = asciiUpper(name[0]);
    return "is" + name;
}

const KeyEntry* keyNamed(const Class& c, NSString* key) {
    if (!key || key->length() == 0) return nullptr;
    if (const KeyEntry* e = c.key(findSelector(key))) return e;
    return c.key(findSelector(otherSpelling(key->utf8())));
}

[[noreturn]] void raiseUndefined(const NSObject& object, NSString* key, const char* what) {
    raiseNamed(NSUndefinedKeyException, object.isa().name() + what + (key ? key->utf8() : std::string("(null)")));
}

/// Where the first key of the path ends.
NSRange firstDot(NSString* path) {
    NSUInteger i = 0;
    while (i < path->length() && path->unit(i) != u'.')
        ++i;
    return {i, i < path->length() ? NSUInteger{1} : NSUInteger{0}};
}

} // namespace

Ref<NSObject> NSObject::valueForKey(NSString* key) {
    const KeyEntry* e = keyNamed(isa(), key);
    return e && e->get ? e->get(this) : valueForUndefinedKey(key);
}

void NSObject::setValue_forKey(NSObject* value, NSString* key) {
    const KeyEntry* e = keyNamed(isa(), key);
    if (e && e->set)
        e->set(this, value);
    else
        setValue_forUndefinedKey(value, key);
}

Ref<NSObject> NSObject::valueForKeyPath(NSString* path) {
    const NSRange dot = path ? firstDot(path) : NSRange{};
    if (dot.length == 0) return valueForKey(path);
    const Ref<NSObject> next = valueForKey(path->substringToIndex(dot.location));
    return next ? next->valueForKeyPath(path->substringFromIndex(dot.location + 1)) : nullptr;
}

void NSObject::setValue_forKeyPath(NSObject* value, NSString* path) {
    const NSRange dot = path ? firstDot(path) : NSRange{};
    if (dot.length == 0) {
        setValue_forKey(value, path);
        return;
    }
    if (const Ref<NSObject> next = valueForKey(path->substringToIndex(dot.location)))
        next->setValue_forKeyPath(value, path->substringFromIndex(dot.location + 1));
}

Ref<NSObject> NSObject::valueForUndefinedKey(NSString* key) {
    raiseUndefined(*this, key, " has no value for the key ");
}

void NSObject::setValue_forUndefinedKey(NSObject*, NSString* key) {
    raiseUndefined(*this, key, " cannot set the key ");
}

} // namespace libvue

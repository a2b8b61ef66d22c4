#include <libvue/platform/foundation/NSUserDefaults.h>

#include <cstdlib>
#include <string>

#include <libvue/platform/foundation/DefaultsFile.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSFileManager.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSProcessInfo.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

Ref<NSUserDefaults>& standard() {
    // Never destroyed: settings may be asked for until the very end.
    static auto* const one = new Ref<NSUserDefaults>();
    return *one;
}

Ref<NSString> standardPath() {
    const char* xdg = std::getenv("XDG_CONFIG_HOME");
    std::string folder = xdg && *xdg == '/' ? xdg : NSHomeDirectory()->utf8() + "/.config";
    return NSString::fromUTF8(folder + "/" + NSProcessInfo::processInfo()->processName()->utf8() + "/defaults.json");
}

const ClassRegistration<NSUserDefaults> registration;

} // namespace

void NSUserDefaults::describe(ClassDescription<NSUserDefaults>&) {}

NSUserDefaults::NSUserDefaults(const NSString* path)
    : path_(NSString::stringWithString(path)),
      values_(NSMutableDictionary::dictionary()),
      registered_(NSMutableDictionary::dictionary()) {
    std::string fault;
    auto state = readDefaultsFile(path_->utf8(), *values_, fault);
    if (state == DefaultsFileState::damaged) setAside(NSString::fromUTF8(fault));
}

NSUserDefaults::~NSUserDefaults() { synchronize(); }

void NSUserDefaults::setAside(const NSString* reason) {
    std::string kept;
    if (setDefaultsFileAside(path_->utf8(), kept)) {
        NSLog(
            u"The settings %@ cannot be read (%@). They are kept as %@; the application starts without them."_ns.get(),
            path_.get(), reason, NSString::fromUTF8(kept).get());
        return;
    }
    writable_ = false;
    NSLog(u"The settings %@ cannot be read (%@) nor put aside. They stay as they are, and nothing is written."_ns.get(),
          path_.get(), reason);
}

NSUserDefaults* NSUserDefaults::standardUserDefaults() {
    if (!standard()) standard() = make<NSUserDefaults>(standardPath());
    return standard();
}

void NSUserDefaults::resetStandardUserDefaults() { standard() = nullptr; }

NSObject* NSUserDefaults::objectForKey(const NSString* key) {
    NSObject* stored = values_->objectForKey(key);
    return stored ? stored : registered_->objectForKey(key);
}

void NSUserDefaults::changed() {
    dirty_ = true;
    if (!writingIsDue_) {
        writingIsDue_ = true;
        NSRunLoop::mainRunLoop()->performBlock([weak = Weak<NSUserDefaults>(this)] {
            if (auto self = weak.ref()) self->synchronize();
        });
    }
}

void NSUserDefaults::setObject_forKey(NSObject* value, const NSString* key) {
    if (!key) raiseNamed(NSInvalidArgumentException, "a setting without a name");
    if (!value) return removeObjectForKey(key);
    auto stored = defaultsValue(value);
    if (!stored)
        raiseNamed(NSInvalidArgumentException,
                   "a setting holds texts, numbers, dates, data, and lists and dictionaries of these: " + key->utf8());
    Ref<NSUserDefaults> self(this);
    auto* name = const_cast<NSString*>(key);
    willChangeValueForKey(name);
    values_->setObject_forKey(stored, key);
    changed();
    didChangeValueForKey(name);
    NSNotificationCenter::defaultCenter()->postNotificationName_object(NSUserDefaultsDidChangeNotification, this);
}

void NSUserDefaults::removeObjectForKey(const NSString* key) {
    if (!key || !values_->objectForKey(key)) return;
    Ref<NSUserDefaults> self(this);
    Ref<NSString> name(const_cast<NSString*>(key));
    willChangeValueForKey(name);
    values_->removeObjectForKey(key);
    changed();
    didChangeValueForKey(name);
    NSNotificationCenter::defaultCenter()->postNotificationName_object(NSUserDefaultsDidChangeNotification, this);
}

void NSUserDefaults::registerDefaults(const NSDictionary* values) { registered_->addEntriesFromDictionary(values); }

Ref<NSString> NSUserDefaults::stringForKey(const NSString* key) {
    NSObject* o = objectForKey(key);
    if (auto* s = as<NSString>(o)) return s;
    if (auto* n = as<NSNumber>(o)) return n->stringValue();
    return nullptr;
}

NSArray* NSUserDefaults::arrayForKey(const NSString* key) { return as<NSArray>(objectForKey(key)); }

Ref<NSArray> NSUserDefaults::stringArrayForKey(const NSString* key) {
    auto* a = arrayForKey(key);
    if (!a) return nullptr;
    for (NSObject* o : *a)
        if (!as<NSString>(o)) return nullptr;
    return a;
}

NSDictionary* NSUserDefaults::dictionaryForKey(const NSString* key) { return as<NSDictionary>(objectForKey(key)); }
NSData* NSUserDefaults::dataForKey(const NSString* key) { return as<NSData>(objectForKey(key)); }
NSInteger NSUserDefaults::integerForKey(const NSString* key) { return unboxedInteger(objectForKey(key)); }
float NSUserDefaults::floatForKey(const NSString* key) { return static_cast<float>(doubleForKey(key)); }
double NSUserDefaults::doubleForKey(const NSString* key) { return unboxedDouble(objectForKey(key)); }
BOOL NSUserDefaults::boolForKey(const NSString* key) { return unboxedBool(objectForKey(key)); }

void NSUserDefaults::setInteger_forKey(NSInteger v, const NSString* key) {
    setObject_forKey(NSNumber::numberWithInteger(v), key);
}
void NSUserDefaults::setFloat_forKey(float v, const NSString* key) {
    setObject_forKey(NSNumber::numberWithFloat(v), key);
}
void NSUserDefaults::setDouble_forKey(double v, const NSString* key) {
    setObject_forKey(NSNumber::numberWithDouble(v), key);
}
void NSUserDefaults::setBool_forKey(BOOL v, const NSString* key) { setObject_forKey(NSNumber::numberWithBool(v), key); }

Ref<NSDictionary> NSUserDefaults::dictionaryRepresentation() {
    auto all = NSMutableDictionary::dictionaryWithDictionary(registered_);
    all->addEntriesFromDictionary(values_);
    return all;
}

BOOL NSUserDefaults::synchronize() {
    writingIsDue_ = false;
    if (!dirty_) return YES;
    std::string fault;
    if (!writable_ || !writeDefaultsFile(path_->utf8(), *values_, fault)) {
        if (writable_) NSLog(u"The settings %@ cannot be written: %s"_ns.get(), path_.get(), fault.c_str());
        return NO;
    }
    dirty_ = false;
    return YES;
}

Ref<NSObject> NSUserDefaults::valueForKey(NSString* key) { return objectForKey(key); }
void NSUserDefaults::setValue_forKey(NSObject* value, NSString* key) { setObject_forKey(value, key); }

} // namespace libvue

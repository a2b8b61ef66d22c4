#include <libvue/platform/appkit/NSNib.h>

#include <map>
#include <string>
#include <sys/stat.h>

#include <libvue/platform/appkit/NibLoader.h>
#include <libvue/platform/foundation/Files.h>
#include <libvue/platform/foundation/JSONDocument.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSBundle.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

std::map<std::string, NSNib::Builder>& builders() {
    static std::map<std::string, NSNib::Builder> all;
    return all;
}

/// The text of a resource that was read, for as long as its file stays as it was: a pool instantiates the same one
/// many times in a row.
struct ReadResource {
    std::string path, text;
    struct timespec changed {};
};

constexpr std::size_t kKeptAtMost = 1 << 18;

bool readResource(const std::string& path, std::string& text) {
    static ReadResource last;
    struct stat s {};
    if (path.empty() || ::stat(path.c_str(), &s) != 0) return false;
    if (last.path == path && last.changed.tv_sec == s.st_mtim.tv_sec && last.changed.tv_nsec == s.st_mtim.tv_nsec &&
        last.text.size() == static_cast<std::size_t>(s.st_size)) {
        text = last.text;
        return true;
    }
    if (!detail::readFile(path, text)) return false;
    if (text.size() <= kKeptAtMost) last = {path, text, s.st_mtim};
    return true;
}

Ref<NSDictionary> documentAt(const NSString* path) {
    std::string text, fault = "it cannot be read";
    Ref<NSDictionary> document;
    if (readResource(detail::fileName(path), text)) {
        const Ref<NSObject> root = JSONDocument::read(text, &fault);
        document = as<NSDictionary>(root);
        if (root && !document) fault = "it is no dictionary";
    }
    if (!document) NSLog(u"The interface resource %@ is damaged: %@"_ns, path, NSString::fromUTF8(fault).get());
    return document;
}

} // namespace

void NSNib::describe(ClassDescription<NSNib>&) {}
NSNib::NSNib() = default;
NSNib::~NSNib() = default;

void NSNib::registerBuilder(const NSString* name, Builder builder) {
    if (!name) return;
    if (builder)
        builders()[name->utf8()] = std::move(builder);
    else
        builders().erase(name->utf8());
}

Ref<NSNib> NSNib::initWithNibNamed_bundle(const NSString* name, NSBundle* bundle) {
    if (!name || name->length() == 0) return nullptr;
    Ref<NSNib> nib = adopt(new NSNib);
    nib->name_ = NSString::stringWithString(name);
    nib->bundle_ = bundle ? bundle : NSBundle::mainBundle();
    Ref<NSString> path = nib->bundle_->pathForResource_ofType(name, u"nib.json"_ns);
    if (!path && !bundle) {
        path = NSBundle::libraryBundle()->pathForResource_ofType(name, u"nib.json"_ns);
        if (path) nib->bundle_ = NSBundle::libraryBundle();
    }
    if (path) {
        nib->document_ = documentAt(path);
        return nib->document_ ? nib : nullptr;
    }
    const auto b = builders().find(name->utf8());
    if (b == builders().end()) {
        NSLog(u"The interface resource %@ cannot be found"_ns, name);
        return nullptr;
    }
    nib->builder_ = b->second;
    return nib;
}

BOOL NSNib::instantiateNibWithOwner_topLevelObjects(NSObject* owner, Ref<NSArray>* topLevelObjects) {
    const Ref<NSNib> self(this);
    const Ref<NSObject> keptOwner(owner);
    if (topLevelObjects) *topLevelObjects = nullptr;
    const Ref<NSMutableArray> objects = NSMutableArray::array();
    std::string fault;
    try {
        if (builder_) {
            const BOOL isBuilt = builder_(owner, objects);
            if (!isBuilt) {
                fault = "its builder refuses";
                objects->removeAllObjects();
            }
            const Ref<NSArray> all = NSArray::arrayWithArray(objects);
            for (NSObject* o : *all)
                o->awakeFromNib();
        } else {
            NibLoader loader(document_, bundle_, owner);
            if (!loader.load(objects)) fault = loader.fault();
        }
    } catch (const NSExceptionRaised& raised) {
        fault = raised.what();
    }
    if (!fault.empty()) {
        NSLog(u"The interface resource %@ cannot be built: %@"_ns, name_.get(), NSString::fromUTF8(fault).get());
        return NO;
    }
    if (topLevelObjects) *topLevelObjects = objects;
    return YES;
}

} // namespace libvue

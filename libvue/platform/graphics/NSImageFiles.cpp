#include <libvue/platform/graphics/NSImage.h>

#include <string>
#include <unordered_map>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSBundle.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/NSURL.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSImageState.h>

// Images from files, and images by name.

namespace libvue {

namespace {

constexpr std::string_view doubleMark = "@2x";

struct NamedImage {
    Weak<NSImage> image;
    Ref<NSImage> kept; ///< only what was found by its name
};

/// Never torn down: images take themselves out of it, also those that only the end of the process lets go.
std::unordered_map<std::string, NamedImage>& namedImages() {
    static auto& table = *new std::unordered_map<std::string, NamedImage>;
    return table;
}

/// Adds the picture in the file, which has that many pixels a point; false where there is none.
bool addFile(NSImage& image, const std::string& path, double scale) {
    const Ref<NSData> data = NSData::dataWithContentsOfFile(NSString::fromUTF8(path));
    const Ref<NSBitmapImageRep> rep = NSBitmapImageRep::initWithData(data);
    if (!rep) return false;
    if (scale != 1)
        rep->setSize({static_cast<double>(rep->pixelsWide()) / scale, static_cast<double>(rep->pixelsHigh()) / scale});
    image.addRepresentation(rep);
    return true;
}

NSImage* findAndKeep(const NSString* name, const std::string& key) {
    Ref<NSString> path = pathForImageResource(NSBundle::mainBundle(), name);
    const auto search = [&](const Ref<NSArray>& bundles) {
        for (NSBundle* bundle : bundles->as<NSBundle>()) {
            if (path) return;
            path = pathForImageResource(bundle, name);
        }
    };
    if (!path) search(NSBundle::allBundles());
    if (!path) search(NSBundle::allFrameworks());
    const Ref<NSImage> image = NSImage::initWithContentsOfFile(path);
    if (!image || !image->setName(name)) return nullptr;
    namedImages()[key].kept = image;
    return image;
}

} // namespace

void registerImage(const NSString* name, NSImage* image) { namedImages()[name->utf8()].image = image; }

void unregisterImage(const NSString* name, const NSImage* image) {
    auto& table = namedImages();
    const auto found = table.find(name->utf8());
    if (found == table.end()) return;
    // While the image itself is being torn down the reference reads as null already.
    const NSImage* registered = found->second.image.get();
    if (registered && registered != image) return;
    const Ref<NSImage> kept = std::move(found->second.kept);
    table.erase(found);
}

Ref<NSImage> NSImage::initWithContentsOfFile(const NSString* path) {
    if (!path || path->length() == 0) return nullptr;
    const std::string file = path->utf8();
    const auto slash = file.rfind('/');
    auto dot = file.rfind('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) dot = file.size();
    const std::string stem = file.substr(0, dot);
    Ref<NSImage> image = make<NSImage>();
    if (stem.ends_with(doubleMark)) return addFile(*image, file, 2) ? image : nullptr;
    if (!addFile(*image, file, 1)) return nullptr;
    addFile(*image, stem + std::string(doubleMark) + file.substr(dot), 2);
    return image;
}

Ref<NSImage> NSImage::initWithContentsOfURL(NSURL* url) {
    if (!url || !url->isFileURL()) return nullptr;
    return initWithContentsOfFile(url->path());
}

Ref<NSImage> NSImage::initWithData(NSData* data) {
    const Ref<NSBitmapImageRep> rep = NSBitmapImageRep::initWithData(data);
    if (!rep) return nullptr;
    Ref<NSImage> image = make<NSImage>();
    image->addRepresentation(rep);
    return image;
}

Ref<NSImage> NSImage::imageNamed(const NSString* name) {
    if (!name || name->length() == 0) return nullptr;
    const std::string key = name->utf8();
    const auto found = namedImages().find(key);
    if (found != namedImages().end())
        if (NSImage* image = found->second.image.get()) return image;
    return findAndKeep(name, key);
}

BOOL NSImage::setName(const NSString* name) {
    const Ref<NSImage> alive = this;
    if (!name || name->length() == 0) {
        if (name_) unregisterImage(name_, this);
        name_ = nullptr;
        return YES;
    }
    const auto found = namedImages().find(name->utf8());
    if (found != namedImages().end() && found->second.image.get() == this) return YES;
    if (found != namedImages().end() && found->second.image.get()) return NO;
    if (name_) unregisterImage(name_, this);
    name_ = NSString::stringWithString(name);
    registerImage(name_, this);
    return YES;
}

Ref<NSString> pathForImageResource(NSBundle* bundle, const NSString* name) {
    if (!bundle || !name || name->length() == 0) return nullptr;
    if (name->pathExtension()->length() > 0)
        if (Ref<NSString> path = bundle->pathForResource_ofType(name, nullptr)) return path;
    for (const char16_t* type : {u"png", u"jpg", u"jpeg", u"tiff", u"tif", u"gif", u"bmp", u"svg"})
        if (Ref<NSString> path = bundle->pathForResource_ofType(name, NSString::from(type))) return path;
    return nullptr;
}

} // namespace libvue

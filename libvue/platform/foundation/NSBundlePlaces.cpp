// Where the bundles of a process are.
#include <libvue/platform/foundation/NSBundle.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <dlfcn.h>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

namespace fs = std::filesystem;

bool isFolder(const fs::path& p) {
    std::error_code code;
    return fs::is_directory(p, code);
}

fs::path resolved(const fs::path& p) {
    std::error_code code;
    auto real = fs::canonical(p, code);
    return code ? p : real;
}

/// The first of them that is a folder, else `otherwise`.
fs::path firstFolder(std::initializer_list<fs::path> candidates, const fs::path& otherwise) {
    for (const fs::path& p : candidates)
        if (isFolder(p)) return p;
    return otherwise;
}

fs::path executable() { return resolved("/proc/self/exe"); }

/// The file that holds the address, or an empty path.
fs::path fileWith(const void* address) {
    Dl_info info{};
    // A program knows its own file under the name that it was started with, which may be relative to a folder long
    // left.
    if (!dladdr(address, &info) || !info.dli_fname) return {};
    fs::path p = info.dli_fname;
    return p.has_parent_path() && fs::path(p).is_absolute() ? resolved(p) : fs::path();
}

fs::path libraryFile() { return fileWith(reinterpret_cast<const void*>(&fileWith)); }

fs::path libraryResources() {
    if (const char* chosen = std::getenv("LIBVUE_RESOURCES"); chosen && isFolder(chosen)) return resolved(chosen);
    fs::path folder = libraryFile().parent_path();
    if (folder.empty()) folder = executable().parent_path();
    // Installed: lib/ or lib/<machine>/ beside share/. In a build folder: somewhere below the source tree.
    for (const char* name : {"share/libvue/resources", "libvue/resources"})
        for (fs::path up = folder; !up.empty(); up = up.parent_path()) {
            if (isFolder(up / name)) return up / name;
            if (up == up.parent_path()) break;
        }
    return folder;
}

fs::path mainResources() {
    fs::path program = executable(), folder = program.parent_path(), name = program.filename();
    const fs::path share = folder.parent_path() / "share" / name;
    return firstFolder({folder / "Resources", folder / "resources", share / "resources", share}, folder);
}

/// The bundles that are known. The application's own, the toolkit's and those of other shared objects are never given
/// up, so that plain pointers to them stay good; all others live as long as someone keeps them.
struct Bundles {
    NSBundle* own = nullptr; // the application's
    Ref<NSBundle> chosen;
    NSBundle* library = nullptr;
    std::vector<NSBundle*> frameworks; // the toolkit's among them
    std::vector<Weak<NSBundle>> others;

    static Bundles& all() {
        static auto* const one = new Bundles();
        return *one;
    }
    /// The living ones.
    std::vector<NSBundle*> applications() {
        std::erase_if(others, [](const Weak<NSBundle>& b) { return !b; });
        std::vector<NSBundle*> living;
        if (own) living.push_back(own);
        for (const auto& b : others)
            living.push_back(b.get());
        return living;
    }
};

NSBundle* find(const std::vector<NSBundle*>& list, const fs::path& p) {
    for (NSBundle* b : list)
        if (b->bundlePath()->utf8() == p.string()) return b;
    return nullptr;
}

} // namespace

Ref<NSBundle> NSBundle::bundleWithPath(const NSString* path) {
    if (!path) return nullptr;
    fs::path folder = path->utf8();
    if (!isFolder(folder)) return nullptr;
    folder = resolved(folder);
    Bundles& all = Bundles::all();
    for (const auto& list : {all.applications(), all.frameworks})
        if (NSBundle* known = find(list, folder)) return known;
    const fs::path resources = firstFolder({folder / "Resources", folder / "resources"}, folder);
    auto bundle = adopt(new NSBundle(NSString::fromUTF8(folder.string()), NSString::fromUTF8(resources.string())));
    all.others.emplace_back(bundle);
    return bundle;
}

NSBundle* NSBundle::mainBundle() {
    Bundles& all = Bundles::all();
    if (all.chosen) return all.chosen;
    if (!all.own) {
        auto resources = NSString::fromUTF8(mainResources().string());
        all.own = keptForever(adopt(new NSBundle(NSString::fromUTF8(executable().parent_path().string()), resources)));
    }
    return all.own;
}

void NSBundle::setMainBundle(NSBundle* bundle) { Bundles::all().chosen = bundle; }

NSBundle* NSBundle::libraryBundle() {
    Bundles& all = Bundles::all();
    if (!all.library) {
        auto resources = NSString::fromUTF8(libraryResources().string());
        all.library = keptForever(adopt(new NSBundle(resources, resources)));
        all.frameworks.insert(all.frameworks.begin(), all.library);
    }
    return all.library;
}

NSBundle* NSBundle::bundleForClass(const Class& c) {
    // The name's letters lie in the object that defines the class; the type information itself may have been copied
    // elsewhere.
    fs::path file = fileWith(c.type().name());
    if (file.empty() || file == executable()) return mainBundle();
    if (file == libraryFile()) return libraryBundle();
    Bundles& all = Bundles::all();
    fs::path folder = file.parent_path();
    if (NSBundle* known = find(all.frameworks, folder)) return known;
    const fs::path share = folder.parent_path() / "share" / file.stem() / "resources";
    const fs::path resources = firstFolder({folder / "Resources", folder / "resources", share}, folder);
    auto* b =
        keptForever(adopt(new NSBundle(NSString::fromUTF8(folder.string()), NSString::fromUTF8(resources.string()))));
    all.frameworks.push_back(b);
    return b;
}

NSBundle* NSBundle::bundleWithIdentifier(const NSString* identifier) {
    Bundles& all = Bundles::all();
    if (!identifier) return nullptr;
    for (const auto& list : {all.applications(), all.frameworks})
        for (NSBundle* b : list)
            if (libvue::isEqual(b->bundleIdentifier(), identifier)) return b;
    return nullptr;
}

Ref<NSArray> NSBundle::allBundles() {
    NSBundle* first = mainBundle();
    auto all = NSMutableArray::arrayWithObject(first);
    for (NSBundle* b : Bundles::all().applications())
        if (b != first) all->addObject(b);
    return all;
}

Ref<NSArray> NSBundle::allFrameworks() {
    (void)libraryBundle();
    auto all = NSMutableArray::array();
    for (NSBundle* b : Bundles::all().frameworks)
        all->addObject(b);
    return all;
}

} // namespace libvue

#include <libvue/platform/foundation/NSFileManager.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include <sys/stat.h>

#include <libvue/platform/foundation/Files.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSDate.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

namespace fs = std::filesystem;

BOOL failed(int code, const NSString* path, Ref<NSError>* error) {
    if (error) *error = NSError::fromErrno(code, const_cast<NSString*>(path));
    return NO;
}

/// YES where nothing went wrong.
BOOL checked(const std::error_code& code, const NSString* path, Ref<NSError>* error) {
    return code ? failed(code.value(), path, error) : YES;
}

/// Whether the folder would be copied into itself, which has no end.
bool holds(const fs::path& folder, const fs::path& target) {
    std::error_code code;
    const fs::path outer = fs::canonical(folder, code);
    if (code) return false;
    const fs::path inner = fs::weakly_canonical(target, code);
    return !code && std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end()).first == outer.end();
}

/// Gives the file the permissions among the attributes, where there are any. False where the system refuses.
bool giveMode(const std::string& file, const NSDictionary* attributes) {
    auto* mode = attributes ? attributes->get<NSNumber>(NSFilePosixPermissions) : nullptr;
    return !mode || chmod(file.c_str(), static_cast<mode_t>(mode->unsignedIntValue() & 07777)) == 0;
}

const ClassRegistration<NSFileManager> registration;

} // namespace

void NSFileManager::describe(ClassDescription<NSFileManager>&) {}

NSFileManager* NSFileManager::defaultManager() {
    static NSFileManager* const one = keptForever(make<NSFileManager>());
    return one;
}

BOOL NSFileManager::fileExistsAtPath(const NSString* path) const { return fileExistsAtPath_isDirectory(path, nullptr); }

BOOL NSFileManager::fileExistsAtPath_isDirectory(const NSString* path, BOOL* isDirectory) const {
    struct stat s {};
    const bool exists = stat(detail::fileName(path).c_str(), &s) == 0;
    if (isDirectory) *isDirectory = exists && S_ISDIR(s.st_mode);
    return exists;
}

BOOL NSFileManager::createDirectoryAtPath_withIntermediateDirectories_attributes_error(const NSString* path,
                                                                                       BOOL intermediates,
                                                                                       NSDictionary* attributes,
                                                                                       Ref<NSError>* error) {
    std::string p = detail::fileName(path);
    if (p.empty()) return failed(ENOENT, path, error);
    if (!intermediates) {
        if (mkdir(p.c_str(), 0777) != 0) return failed(errno, path, error);
    } else {
        std::error_code code;
        fs::create_directories(p, code);
        if (code) return failed(code.value(), path, error);
        if (!fs::is_directory(p, code)) return failed(ENOTDIR, path, error);
    }
    return giveMode(p, attributes) ? YES : failed(errno, path, error);
}

BOOL NSFileManager::removeItemAtPath_error(const NSString* path, Ref<NSError>* error) {
    std::string p = detail::fileName(path);
    std::error_code code;
    auto removed = fs::remove_all(p, code);
    if (code) return failed(code.value(), path, error);
    return removed > 0 ? YES : failed(ENOENT, path, error);
}

BOOL NSFileManager::moveItemAtPath_toPath_error(const NSString* from, const NSString* to, Ref<NSError>* error) {
    std::string source = detail::fileName(from), target = detail::fileName(to);
    struct stat s {};
    if (lstat(target.c_str(), &s) == 0) return failed(EEXIST, to, error);
    if (std::rename(source.c_str(), target.c_str()) == 0) return YES;
    if (errno != EXDEV) return failed(errno, from, error);
    return copyItemAtPath_toPath_error(from, to, error) && removeItemAtPath_error(from, error);
}

BOOL NSFileManager::copyItemAtPath_toPath_error(const NSString* from, const NSString* to, Ref<NSError>* error) {
    std::string source = detail::fileName(from), target = detail::fileName(to);
    struct stat s {};
    if (lstat(target.c_str(), &s) == 0) return failed(EEXIST, to, error);
    if (holds(source, target)) return failed(EINVAL, to, error);
    std::error_code code;
    fs::copy(source, target, fs::copy_options::recursive | fs::copy_options::copy_symlinks, code);
    return checked(code, from, error);
}

Ref<NSArray> NSFileManager::contentsOfDirectoryAtPath_error(const NSString* path, Ref<NSError>* error) const {
    std::error_code code;
    std::vector<std::string> names;
    for (fs::directory_iterator i(detail::fileName(path), code), end; !code && i != end; i.increment(code))
        names.push_back(i->path().filename().string());
    if (!checked(code, path, error)) return nullptr;
    std::sort(names.begin(), names.end());
    auto all = NSMutableArray::arrayWithCapacity(names.size());
    for (const std::string& n : names)
        all->addObject(NSString::fromUTF8(n));
    return all;
}

Ref<NSDictionary> NSFileManager::attributesOfItemAtPath_error(const NSString* path, Ref<NSError>* error) const {
    struct stat s {};
    if (lstat(detail::fileName(path).c_str(), &s) != 0) {
        failed(errno, path, error);
        return nullptr;
    }
    NSString* type = S_ISDIR(s.st_mode)   ? NSFileTypeDirectory
                     : S_ISREG(s.st_mode) ? NSFileTypeRegular
                     : S_ISLNK(s.st_mode) ? NSFileTypeSymbolicLink.get()
                                          : NSFileTypeUnknown.get();
    double modified = static_cast<double>(s.st_mtim.tv_sec) + static_cast<double>(s.st_mtim.tv_nsec) * 1e-9;
    return NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSFileType, type},
         {NSFileSize, NSNumber::numberWithUnsignedInteger(static_cast<NSUInteger>(s.st_size))},
         {NSFileModificationDate, NSDate::dateWithTimeIntervalSince1970(modified)},
         {NSFilePosixPermissions, NSNumber::numberWithUnsignedInt(s.st_mode & 07777)}});
}

BOOL NSFileManager::createSymbolicLinkAtPath_withDestinationPath_error(const NSString* path,
                                                                       const NSString* destination,
                                                                       Ref<NSError>* error) {
    return symlink(detail::fileName(destination).c_str(), detail::fileName(path).c_str()) == 0
               ? YES
               : failed(errno, path, error);
}

Ref<NSString> NSFileManager::destinationOfSymbolicLinkAtPath_error(const NSString* path, Ref<NSError>* error) const {
    std::error_code code;
    auto target = fs::read_symlink(detail::fileName(path), code);
    if (!checked(code, path, error)) return nullptr;
    return NSString::fromUTF8(target.string());
}

Ref<NSData> NSFileManager::contentsAtPath(const NSString* path) const {
    return path ? NSData::dataWithContentsOfFile(path) : nullptr;
}

BOOL NSFileManager::createFileAtPath_contents_attributes(const NSString* path, NSData* contents,
                                                         NSDictionary* attributes) {
    if (!path) return NO;
    Ref<NSData> bytes = contents ? Ref<NSData>(contents) : NSData::data();
    return bytes->writeToFile_atomically(path, YES) && giveMode(detail::fileName(path), attributes);
}

Ref<NSString> NSTemporaryDirectory() {
    const char* folder = std::getenv("TMPDIR");
    return NSString::fromUTF8(folder && *folder == '/' ? folder : "/tmp");
}

Ref<NSString> NSHomeDirectory() {
    const Ref<NSString> tilde = u"~"_ns, home = tilde->stringByExpandingTildeInPath();
    return home->isEqualToString(tilde) ? u"/"_ns : home;
}

} // namespace libvue

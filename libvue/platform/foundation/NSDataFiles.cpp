#include <cerrno>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>

#include <libvue/platform/foundation/Files.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/NSURL.h>

namespace libvue {

namespace {

std::nullptr_t fail(int code, const NSString* path, Ref<NSError>* error) {
    if (error) *error = NSError::fromErrno(code, const_cast<NSString*>(path));
    return nullptr;
}

/// The mode of a new file, as the process asks for.
mode_t usualMode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

bool writeInPlace(const std::string& path, std::string_view bytes) {
    detail::OpenFile file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    return file.isOpen() && detail::writeAll(file.descriptor(), bytes) && file.close();
}

} // namespace

Ref<NSData> NSData::dataWithContentsOfFile_options_error(const NSString* path, NSUInteger, Ref<NSError>* error) {
    std::string bytes;
    if (!detail::readFile(detail::fileName(path), bytes)) return fail(errno, path, error);
    return from(bytes);
}

Ref<NSData> NSData::dataWithContentsOfURL_options_error(const NSURL* url, NSUInteger options, Ref<NSError>* error) {
    if (!url || !url->isFileURL()) return fail(EPROTONOSUPPORT, url ? url->absoluteString() : nullptr, error);
    const Ref<NSString> path = url->path();
    return dataWithContentsOfFile_options_error(path, options, error);
}

BOOL NSData::writeToFile_options_error(const NSString* path, NSUInteger options, Ref<NSError>* error) const {
    const std::string name = detail::fileName(path);
    if (name.empty()) {
        fail(ENOENT, path, error);
        return NO;
    }
    if (options & NSDataWritingAtomic ? detail::replaceFile(name, view(), usualMode()) : writeInPlace(name, view()))
        return YES;
    fail(errno, path, error);
    return NO;
}

BOOL NSData::writeToURL_atomically(const NSURL* url, BOOL atomically) const {
    if (!url || !url->isFileURL()) return NO;
    const Ref<NSString> path = url->path();
    return writeToFile_atomically(path, atomically);
}

} // namespace libvue

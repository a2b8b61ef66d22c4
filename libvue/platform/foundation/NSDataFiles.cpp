#include <cerrno>
#include <cstdlib>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/NSURL.h>

namespace libvue {

namespace {

class File {
public:
    explicit File(int descriptor) noexcept : descriptor_(descriptor) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    [[nodiscard]] bool isOpen() const noexcept { return descriptor_ >= 0; }
    [[nodiscard]] int descriptor() const noexcept { return descriptor_; }
    /// False with errno set: a full disk may be told as late as here.
    bool close() noexcept { return ::close(std::exchange(descriptor_, -1)) == 0; }

private:
    int descriptor_;
};

/// The name that the system is given; empty where there is none that it could take.
std::string nameOf(const NSString* path) {
    std::string name = path ? path->utf8() : std::string();
    return name.find('\0') == name.npos ? name : std::string();
}

std::nullptr_t fail(int code, const NSString* path, Ref<NSError>* error) {
    if (error) *error = NSError::fromErrno(code, const_cast<NSString*>(path));
    return nullptr;
}

bool writeAll(int descriptor, const char* bytes, std::size_t count) {
    while (count) {
        const ssize_t written = ::write(descriptor, bytes, count);
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
    return true;
}

/// Reads to the end. The size that the file tells is a first guess only.
bool readAll(int descriptor, std::string& bytes) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) return false;
    if (S_ISDIR(status.st_mode)) {
        errno = EISDIR;
        return false;
    }
    bytes.resize(S_ISREG(status.st_mode) && status.st_size > 0 ? static_cast<std::size_t>(status.st_size) + 1 : 65536);
    std::size_t have = 0;
    for (;;) {
        if (have == bytes.size()) bytes.resize(bytes.size() * 2);
        const ssize_t got = ::read(descriptor, bytes.data() + have, bytes.size() - have);
        if (got < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        if (got == 0) break;
        have += static_cast<std::size_t>(got);
    }
    bytes.resize(have);
    return true;
}

/// The file that a path means, with its symbolic links followed: what is replaced is the file, and a link to it stays.
std::string meantBy(const std::string& path) {
    char* real = ::realpath(path.c_str(), nullptr);
    if (!real) return path;
    std::string found(real);
    std::free(real);
    return found;
}

bool writeAtOnce(const std::string& path, std::string_view bytes) {
    const std::string target = meantBy(path);
    std::string neighbour = target + ".XXXXXX";
    struct stat old {};
    const bool replaces = ::stat(target.c_str(), &old) == 0;
    if (replaces && S_ISDIR(old.st_mode)) {
        errno = EISDIR;
        return false;
    }
    File file(::mkostemp(neighbour.data(), O_CLOEXEC));
    if (!file.isOpen()) return false;
    mode_t mode = old.st_mode & 07777;
    if (!replaces) {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        mode = 0666 & ~mask;
    }
    if (::fchmod(file.descriptor(), mode) == 0 && writeAll(file.descriptor(), bytes.data(), bytes.size()) &&
        ::fsync(file.descriptor()) == 0 && file.close() && ::rename(neighbour.c_str(), target.c_str()) == 0)
        return true;
    const int code = errno;
    ::unlink(neighbour.c_str());
    errno = code;
    return false;
}

bool writeInPlace(const std::string& path, std::string_view bytes) {
    File file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    return file.isOpen() && writeAll(file.descriptor(), bytes.data(), bytes.size()) && file.close();
}

} // namespace

Ref<NSData> NSData::dataWithContentsOfFile_options_error(const NSString* path, NSUInteger, Ref<NSError>* error) {
    const std::string name = nameOf(path);
    if (name.empty()) return fail(ENOENT, path, error);
    const File file(::open(name.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.isOpen()) return fail(errno, path, error);
    std::string bytes;
    if (!readAll(file.descriptor(), bytes)) return fail(errno, path, error);
    return from(bytes);
}

Ref<NSData> NSData::dataWithContentsOfURL_options_error(const NSURL* url, NSUInteger options, Ref<NSError>* error) {
    if (!url || !url->isFileURL()) return fail(EPROTONOSUPPORT, url ? url->absoluteString() : nullptr, error);
    const Ref<NSString> path = url->path();
    return dataWithContentsOfFile_options_error(path, options, error);
}

BOOL NSData::writeToFile_options_error(const NSString* path, NSUInteger options, Ref<NSError>* error) const {
    const std::string name = nameOf(path);
    if (name.empty()) {
        fail(ENOENT, path, error);
        return NO;
    }
    if (options & NSDataWritingAtomic ? writeAtOnce(name, view()) : writeInPlace(name, view())) return YES;
    fail(errno, path, error);
    return NO;
}

BOOL NSData::writeToURL_atomically(const NSURL* url, BOOL atomically) const {
    if (!url || !url->isFileURL()) return NO;
    const Ref<NSString> path = url->path();
    return writeToFile_atomically(path, atomically);
}

} // namespace libvue

#include <libvue/platform/foundation/Files.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>

#include <libvue/platform/foundation/NSString.h>

namespace libvue::detail {

namespace {

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

} // namespace

std::string fileName(const NSString* path) {
    std::string name = path ? path->utf8() : std::string();
    return name.find('\0') == name.npos ? name : std::string();
}

bool readFile(const std::string& path, std::string& bytes) {
    const OpenFile file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    return file.isOpen() && readAll(file.descriptor(), bytes);
}

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

std::string fileMeantBy(const std::string& path) {
    char* real = ::realpath(path.c_str(), nullptr);
    if (!real) return path;
    std::string found(real);
    std::free(real);
    return found;
}

bool replaceFile(const std::string& path, std::string_view bytes, mode_t mode) {
    const std::string target = fileMeantBy(path);
    std::string neighbour = target + ".XXXXXX";
    struct stat old {};
    if (::stat(target.c_str(), &old) == 0) {
        if (S_ISDIR(old.st_mode)) {
            errno = EISDIR;
            return false;
        }
        mode = old.st_mode & 07777;
    }
    OpenFile file(::mkostemp(neighbour.data(), O_CLOEXEC));
    if (!file.isOpen()) return false;
    if (::fchmod(file.descriptor(), mode) == 0 && writeAll(file.descriptor(), bytes) &&
        ::fsync(file.descriptor()) == 0 && file.close() && std::rename(neighbour.c_str(), target.c_str()) == 0)
        return true;
    const int code = errno;
    ::unlink(neighbour.c_str());
    errno = code;
    return false;
}

} // namespace libvue::detail

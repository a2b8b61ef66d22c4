#pragma once

#include <cerrno>
#include <string>
#include <string_view>
#include <utility>

#include <sys/types.h>
#include <unistd.h>

#include <libvue/platform/foundation/Forward.h>

// Files as the system sees them, for the sources that read and write them. Failures leave their reason in errno.

namespace libvue::detail {

/// A descriptor that closes itself.
class OpenFile {
public:
    explicit OpenFile(int descriptor) noexcept : descriptor_(descriptor) {}
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile() {
        // The reason of a failure before is still to be told.
        const int code = errno;
        if (isOpen()) ::close(descriptor_);
        errno = code;
    }
    [[nodiscard]] bool isOpen() const noexcept { return descriptor_ >= 0; }
    [[nodiscard]] int descriptor() const noexcept { return descriptor_; }
    /// False where it fails: a full disk may be told as late as here.
    bool close() noexcept { return ::close(std::exchange(descriptor_, -1)) == 0; }

private:
    int descriptor_;
};

/// The name that the system is given; empty, which no file has, for null and for what holds a NUL.
[[nodiscard]] std::string fileName(const NSString* path);

/// All bytes of the file. False where it cannot be read, also for a folder.
[[nodiscard]] bool readFile(const std::string& path, std::string& bytes);

/// Writes all bytes.
[[nodiscard]] bool writeAll(int descriptor, std::string_view bytes);

/// The file that a path means, with its symbolic links followed: what is replaced is the file, and a link to it stays.
[[nodiscard]] std::string fileMeantBy(const std::string& path);

/// Replaces the file as a whole, through a neighbour that is on the disk before it takes the name. A file that was
/// there passes its mode on, a new one gets `mode`.
[[nodiscard]] bool replaceFile(const std::string& path, std::string_view bytes, mode_t mode);

} // namespace libvue::detail

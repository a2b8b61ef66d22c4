#pragma once

#include <string>

#include <sys/stat.h>

#include <libvue/platform/backend/WindowServer.h>

namespace libvue::backend {

/// A clipboard that the applications of one user share through a small file, which whoever writes replaces as a whole:
/// nobody reads half of it. Nothing is watched: each question looks whether the file is still the one that was read.
///
/// Where the file cannot be written, or has no place to be, what is set stays in this process.
class LIBVUE_API FileClipboard final : public Clipboard {
public:
    /// An empty path is no file.
    explicit FileClipboard(std::string path);
    /// The find text's file in the folder that lasts as long as the user's session (XDG_RUNTIME_DIR); empty without
    /// one.
    [[nodiscard]] static std::string findTextPath();

    void set(std::vector<Item> items) override;
    [[nodiscard]] std::vector<std::string> types() override;
    [[nodiscard]] std::vector<std::uint8_t> read(std::string_view type) override;
    [[nodiscard]] std::uint64_t changeCount() override;

private:
    /// Which file stood at the path. A file that replaces another has another number.
    struct Identity {
        dev_t device = 0;
        ino_t number = 0;
        timespec changed{};
        [[nodiscard]] bool operator==(const Identity& other) const noexcept;
    };
    [[nodiscard]] Identity identity() const;
    void refresh();

    std::string path_;
    Identity seen_;
    std::vector<Item> items_;
    std::uint64_t changes_ = 0;
};

} // namespace libvue::backend

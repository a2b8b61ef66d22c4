#include <libvue/platform/backend/FileClipboard.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <string_view>
#include <utility>

#include <libvue/platform/foundation/Files.h>

namespace libvue::backend {

namespace {

constexpr std::string_view heading = "libvue-pasteboard 1\n";

/// A line with the type and the number of bytes, and then the bytes, for each item.
std::string written(const std::vector<Clipboard::Item>& items) {
    std::string out(heading);
    for (const Clipboard::Item& item : items) {
        if (item.type.find('\n') != std::string::npos) continue;
        out += item.type + ' ' + std::to_string(item.bytes.size()) + '\n';
        out.append(item.bytes.begin(), item.bytes.end());
    }
    return out;
}

/// What stands there as far as it is well formed; any program may have written it.
std::vector<Clipboard::Item> itemsOf(std::string_view text) {
    std::vector<Clipboard::Item> items;
    if (!text.starts_with(heading)) return items;
    text.remove_prefix(heading.size());
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        const std::size_t space = line.rfind(' ');
        if (end == text.npos || space == line.npos) break;
        std::size_t size = 0;
        const auto [stop, fault] = std::from_chars(line.data() + space + 1, line.data() + line.size(), size);
        text.remove_prefix(end + 1);
        if (fault != std::errc() || stop != line.data() + line.size() || size > text.size()) break;
        items.push_back({std::string(line.substr(0, space)), {text.begin(), text.begin() + size}});
        text.remove_prefix(size);
    }
    return items;
}

} // namespace

FileClipboard::FileClipboard(std::string path) : path_(std::move(path)) {}

std::string FileClipboard::findTextPath() {
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    return folder && folder[0] == '/' ? std::string(folder) + "/libvue-find" : std::string();
}

bool FileClipboard::Identity::operator==(const Identity& other) const noexcept {
    return device == other.device && number == other.number && changed.tv_sec == other.changed.tv_sec &&
           changed.tv_nsec == other.changed.tv_nsec;
}

FileClipboard::Identity FileClipboard::identity() const {
    struct stat status {};
    if (path_.empty() || ::stat(path_.c_str(), &status) != 0) return {};
    return {status.st_dev, status.st_ino, status.st_mtim};
}

void FileClipboard::refresh() {
    const Identity now = identity();
    if (now == seen_) return;
    seen_ = now;
    std::string text;
    items_ = detail::readFile(path_, text) ? itemsOf(text) : std::vector<Item>();
    ++changes_;
}

void FileClipboard::set(std::vector<Item> items) {
    items_ = std::move(items);
    ++changes_;
    const std::string ours = written(items_);
    if (path_.empty() || !detail::replaceFile(path_, ours, 0600)) return;
    seen_ = identity();
    // Another application may have replaced it in the meantime.
    std::string text;
    if (!detail::readFile(path_, text) || text == ours) return;
    items_ = itemsOf(text);
    ++changes_;
}

std::vector<std::string> FileClipboard::types() {
    refresh();
    std::vector<std::string> names;
    for (const Item& item : items_)
        names.push_back(item.type);
    return names;
}

std::vector<std::uint8_t> FileClipboard::read(std::string_view type) {
    refresh();
    const auto found = std::ranges::find(items_, type, &Item::type);
    return found == items_.end() ? std::vector<std::uint8_t>{} : found->bytes;
}

std::uint64_t FileClipboard::changeCount() {
    refresh();
    return changes_;
}

} // namespace libvue::backend

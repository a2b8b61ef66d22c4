#include <libvue/platform/backend/memory/MemoryClipboard.h>

#include <algorithm>
#include <utility>

#include <libvue/platform/backend/Backend.h>

namespace libvue::backend {

void MemoryClipboard::set(std::vector<Item> items) {
    items_ = std::move(items);
    ++changes_;
}

std::vector<std::string> MemoryClipboard::types() {
    std::vector<std::string> names;
    names.reserve(items_.size());
    for (const Item& item : items_) {
        names.push_back(item.type);
    }
    return names;
}

std::vector<std::uint8_t> MemoryClipboard::read(std::string_view type) {
    const auto found = std::ranges::find(items_, type, &Item::type);
    return found == items_.end() ? std::vector<std::uint8_t>{} : found->bytes;
}

void MemoryClipboard::setFromElsewhere(std::vector<Item> items) {
    set(std::move(items));
    Event event;
    event.kind = Event::Kind::clipboardChanged;
    event.time = windows_.now();
    windows_.post(event);
}

std::unique_ptr<Clipboard> makeMemoryClipboard(WindowServer& windows) {
    return std::make_unique<MemoryClipboard>(windows);
}

} // namespace libvue::backend

#include <libvue/platform/backend/WindowStacking.h>

#include <algorithm>

namespace libvue::backend {

void WindowStacking::add(WindowId w) {
    if (entries_.try_emplace(w).second) place(w, order_.size());
}

void WindowStacking::remove(WindowId w) {
    entries_.erase(w);
    std::erase(order_, w);
    for (auto& [id, entry] : entries_) {
        if (entry.parent == w) entry.parent = 0;
    }
}

void WindowStacking::place(WindowId w, std::size_t position) {
    std::erase(order_, w);
    const int mine = level(w);
    const auto first = std::ranges::partition_point(order_, [&](WindowId o) { return level(o) < mine; });
    const auto last = std::partition_point(first, order_.end(), [&](WindowId o) { return level(o) == mine; });
    const auto wanted = order_.begin() + static_cast<std::ptrdiff_t>(std::min(position, order_.size()));
    order_.insert(std::clamp(wanted, first, last), w);
}

void WindowStacking::setLevel(WindowId w, int level) {
    const auto found = entries_.find(w);
    if (found == entries_.end() || found->second.level == level) return;
    // Out of the order first: it is sorted by level.
    std::erase(order_, w);
    found->second.level = level;
    place(w, order_.size());
}

void WindowStacking::setParent(WindowId w, WindowId parent) {
    const auto found = entries_.find(w);
    if (found == entries_.end() || descends(parent, w)) return;
    found->second.parent = parent;
    const auto mine = std::ranges::find(order_, w);
    if (std::find(mine, order_.end(), parent) != order_.end()) order(w, parent);
}

void WindowStacking::raise(WindowId w) {
    if (!entries_.contains(w)) return;
    place(w, order_.size());
    const auto former = order_;
    for (const WindowId child : former) {
        if (parent(child) == w) raise(child);
    }
}

void WindowStacking::order(WindowId w, WindowId above) {
    if (!entries_.contains(w) || w == above) return;
    if (above == 0) {
        place(w, 0);
    } else if (entries_.contains(above)) {
        std::erase(order_, w);
        place(w, static_cast<std::size_t>(std::ranges::find(order_, above) - order_.begin()) + 1);
    }
}

int WindowStacking::level(WindowId w) const {
    const auto found = entries_.find(w);
    return found == entries_.end() ? 0 : found->second.level;
}

WindowId WindowStacking::parent(WindowId w) const {
    const auto found = entries_.find(w);
    return found == entries_.end() ? 0 : found->second.parent;
}

bool WindowStacking::descends(WindowId w, WindowId from) const {
    for (; w != 0; w = parent(w)) {
        if (w == from) return true;
    }
    return false;
}

} // namespace libvue::backend

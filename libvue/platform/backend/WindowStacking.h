#pragma once

#include <map>
#include <vector>

#include <libvue/platform/backend/WindowServer.h>

namespace libvue::backend {

/// Which window lies above which: sorted by level, and within one level as it was ordered. A window that is raised
/// takes those that belong to it along. Unknown windows are ignored.
class LIBVUE_API WindowStacking {
public:
    /// In front of its level, which is 0.
    void add(WindowId w);
    /// What belonged to it belongs to none afterwards.
    void remove(WindowId w);
    void setLevel(WindowId w, int level);
    /// 0 for none. It comes to lie above its parent.
    void setParent(WindowId w, WindowId parent);
    /// To the front of its level, and its children after it.
    void raise(WindowId w);
    /// Directly above the other one, as far as levels allow; 0: to the back of its level.
    void order(WindowId w, WindowId above);

    [[nodiscard]] int level(WindowId w) const;
    [[nodiscard]] WindowId parent(WindowId w) const;
    [[nodiscard]] const std::vector<WindowId>& backToFront() const noexcept { return order_; }

private:
    struct Entry {
        int level = 0;
        WindowId parent = 0;
    };
    void place(WindowId w, std::size_t position);
    [[nodiscard]] bool descends(WindowId w, WindowId from) const;

    std::map<WindowId, Entry> entries_;
    std::vector<WindowId> order_;
};

} // namespace libvue::backend

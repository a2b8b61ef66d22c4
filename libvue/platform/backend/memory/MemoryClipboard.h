#pragma once

#include <libvue/platform/backend/WindowServer.h>

namespace libvue::backend {

/// A clipboard of this process alone.
class LIBVUE_API MemoryClipboard final : public Clipboard {
public:
    /// `windows` hears of foreign changes; it must outlive this.
    explicit MemoryClipboard(WindowServer& windows) noexcept : windows_(windows) {}

    void set(std::vector<Item> items) override;
    [[nodiscard]] std::vector<std::string> types() override;
    [[nodiscard]] std::vector<std::uint8_t> read(std::string_view type) override;
    [[nodiscard]] std::uint64_t changeCount() override { return changes_; }

    /// As if another application had copied: the count changes and clipboardChanged is posted.
    void setFromElsewhere(std::vector<Item> items);

private:
    WindowServer& windows_;
    std::vector<Item> items_;
    std::uint64_t changes_ = 0;
};

} // namespace libvue::backend

#pragma once

#include <QObject>

#include <libvue/platform/backend/WindowServer.h>

namespace libvue::backend {

/// The desktop's clipboard. Qt's own is made on first use, since it costs a window of its own.
class QtClipboard final : public Clipboard {
public:
    /// `windows` hears of foreign changes; it must outlive this.
    explicit QtClipboard(WindowServer& windows);

    void set(std::vector<Item> items) override;
    [[nodiscard]] std::vector<std::string> types() override;
    [[nodiscard]] std::vector<std::uint8_t> read(std::string_view type) override;
    [[nodiscard]] std::uint64_t changeCount() override;

private:
    void connect();
    void changed();

    WindowServer& windows_;
    QObject context_; ///< ends the connection with this object
    std::uint64_t changes_ = 0;
    bool connected_ = false, setting_ = false;
};

} // namespace libvue::backend

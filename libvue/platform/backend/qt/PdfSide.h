#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <libvue/platform/backend/qt/RasterCanvas.h>
#include <libvue/platform/backend/qt/RasterPicture.h>

namespace libvue::backend {

/// The pixels beside a page, made when something needs them: most pages need none. Until then what is drawn is kept.
class PdfSide {
public:
    PdfSide(NSSize size, double pixelsAPoint) : size_(size), pixelsAPoint_(pixelsAPoint) {}

    /// Draws now where there are pixels, else at their making: the command holds all that it needs.
    template <class Command> void draw(Command&& command) {
        if (canvas_)
            command(*canvas_);
        else
            waiting_.emplace_back(std::forward<Command>(command));
    }
    /// All that was drawn.
    [[nodiscard]] const RasterPicture& pixels();
    /// The same, and what is drawn from here on.
    [[nodiscard]] RasterCanvas& canvas();

private:
    NSSize size_;
    double pixelsAPoint_;
    std::vector<std::function<void(RasterCanvas&)>> waiting_;
    std::shared_ptr<RasterPicture> pixels_;
    std::unique_ptr<RasterCanvas> canvas_;
};

} // namespace libvue::backend

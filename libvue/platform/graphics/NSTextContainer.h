#pragma once

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

class NSLayoutManager;

/// A rectangle that text is laid out in, y downward from its top left corner. Its layout manager keeps it.
class LIBVUE_API NSTextContainer : public NSObject {
public:
    static void describe(ClassDescription<NSTextContainer>& c);
    /// Without limits.
    NSTextContainer();
    explicit NSTextContainer(NSSize containerSize);
    ~NSTextContainer() override;

    /// Points. A size of 0 or less, or one beyond the reach of a layout, is no limit.
    [[nodiscard]] NSSize containerSize() const noexcept { return size_; }
    void setContainerSize(NSSize size);
    /// The room that lines leave at either end; 5 points at the start.
    [[nodiscard]] CGFloat lineFragmentPadding() const noexcept { return padding_; }
    /// What is negative counts as 0.
    void setLineFragmentPadding(CGFloat padding);
    /// Kept for the view that shows the text: whether the container grows with it.
    [[nodiscard]] BOOL widthTracksTextView() const noexcept { return widthTracks_; }
    void setWidthTracksTextView(BOOL flag) noexcept { widthTracks_ = flag; }
    [[nodiscard]] BOOL heightTracksTextView() const noexcept { return heightTracks_; }
    void setHeightTracksTextView(BOOL flag) noexcept { heightTracks_ = flag; }
    /// Null where it is in none.
    [[nodiscard]] NSLayoutManager* layoutManager() const noexcept { return manager_.get(); }

private:
    friend class NSLayoutManager;
    Weak<NSLayoutManager> manager_;
    NSSize size_;
    CGFloat padding_ = 5;
    bool widthTracks_ = false, heightTracks_ = false;
};

} // namespace libvue

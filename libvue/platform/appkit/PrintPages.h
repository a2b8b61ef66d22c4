#pragma once

#include <vector>

#include <libvue/platform/appkit/NSPrintInfo.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/backend/Forward.h>

namespace libvue {

/// The pages of a view for one print info, and the drawing of each. The operation, its panel's preview and its tests
/// share it.
class PrintPages {
public:
    /// Asks the view, in the course of `operation`. Both are borrowed.
    PrintPages(NSPrintOperation& operation, NSView* view);

    /// Location and length; the first page of a view is 1 as a rule.
    [[nodiscard]] NSRange range() const noexcept { return range_; }
    /// The pages of it that the print info asks for; none where its range lies elsewhere.
    [[nodiscard]] NSRange wanted(const NSPrintInfo& info) const noexcept;
    /// The part of the view that stands on the page; empty for none.
    [[nodiscard]] NSRect rectForPage(NSInteger page);
    /// The page of the whole view divided by its bounds; NSZeroRect behind the last one.
    [[nodiscard]] NSRect automaticPage(NSInteger page);
    /// Onto a canvas as large as the paper, y upward.
    void draw(NSInteger page, backend::Canvas& canvas);
    /// That part of the operation's view alone, at the origin of the canvas.
    static void drawCopy(NSPrintOperation& operation, const NSRect& part, backend::Canvas& canvas);
    /// What the view is drawn with: the scale of the print info, made smaller where a part would not fit.
    [[nodiscard]] CGFloat scaleFor(const NSSize& part) const noexcept;

private:
    void divide();
    /// The places where the view is cut in one direction, from the first edge to the last.
    template <class Adjust>
    std::vector<CGFloat> cuts(CGFloat from, CGFloat to, CGFloat extent, CGFloat limit, const Adjust& adjust) const;
    static void drawContent(NSView* view, const NSRect& part, NSPoint place, CGFloat scale, NSGraphicsContext* context);
    void drawBorder(NSGraphicsContext* context);

    NSPrintOperation& operation_;
    NSView* view_;
    NSRange range_{1, 1};
    bool knows_ = false;
    bool divided_ = false;
    CGFloat scale_ = 1;
    std::vector<CGFloat> columns_, rows_; ///< edges; a page between two
};

} // namespace libvue

#pragma once

#include <memory>
#include <string>

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/appkit/NSPrintInfo.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

namespace backend {
class Canvas;
class PrintDocument;
} // namespace backend
class PrintPages;

/// Prints a view: asks it for its pages, draws each of them, and sees the document to its printer or file.
///
/// - A view that answers YES to knowsPageRange: says which part of it is on each page (rectForPage:). For a page whose
///   rectangle is NSZeroRect the view's divisionForPage_ stands in; an empty one still makes a sheet with its border.
/// - Any other view is divided by its bounds, through adjustPageHeightNew:top:bottom:limit:.
/// - What is larger than the paper less its margins is drawn smaller, so that nothing is lost.
/// - While the pages are laid out, printInfo answers in the view's units: for a job at half its size the paper is twice
///   as large. Margins and border are never scaled.
/// - Pages are drawn in the colours of a light screen, and the graphics context does not draw to the screen.
class LIBVUE_API NSPrintOperation : public NSObject {
public:
    static void describe(ClassDescription<NSPrintOperation>& c);
    /// With a copy of the print info; null for the shared one. A null view raises NSInvalidArgumentException.
    [[nodiscard]] static Ref<NSPrintOperation> printOperationWithView_printInfo(NSView* view, NSPrintInfo* info);
    [[nodiscard]] static Ref<NSPrintOperation> printOperationWithView(NSView* view);
    /// A PDF of one page, as large as that part of the view, without margins, panels and border.
    [[nodiscard]] static Ref<NSPrintOperation>
    PDFOperationWithView_insideRect_toPath_printInfo(NSView* view, const NSRect& r, NSString* path, NSPrintInfo* info);
    /// The same, kept by the operation: see data.
    [[nodiscard]] static Ref<NSPrintOperation> PDFOperationWithView_insideRect(NSView* view, const NSRect& r);
    ~NSPrintOperation() override;

    /// The one that runs or lays out now; null for none.
    [[nodiscard]] static NSPrintOperation* currentOperation() noexcept;
    static void setCurrentOperation(NSPrintOperation* operation);

    [[nodiscard]] NSView* view() const noexcept;
    [[nodiscard]] NSPrintInfo* printInfo() const noexcept;
    /// Takes a copy. Null is ignored.
    void setPrintInfo(NSPrintInfo* info);
    /// Made on first use.
    [[nodiscard]] NSPrintPanel* printPanel();
    void setPrintPanel(NSPrintPanel* panel);
    [[nodiscard]] Ref<NSString> jobTitle() const;
    void setJobTitle(NSString* title);
    [[nodiscard]] BOOL showsPrintPanel() const noexcept;
    void setShowsPrintPanel(BOOL f) noexcept;
    /// Whether a long job shows how far it is, with a button that cancels it.
    [[nodiscard]] BOOL showsProgressPanel() const noexcept;
    void setShowsProgressPanel(BOOL f) noexcept;
    [[nodiscard]] BOOL isCopyingOperation() const noexcept;
    /// Counted from 1; 0 while none is drawn.
    [[nodiscard]] NSInteger currentPage() const noexcept;
    /// The pages of the view, known once they are laid out.
    [[nodiscard]] NSRange pageRange() const noexcept;

    /// Shows the panel, prints, and returns when all is done. NO where the user cancelled or the job failed; nothing of
    /// it is left then, and a file that was to be replaced is as it was.
    virtual BOOL runOperation();
    /// Ends the job before its next page.
    void cancel();
    [[nodiscard]] BOOL isCancelled() const noexcept;
    /// Why the last run failed; null where it did not, or was cancelled.
    [[nodiscard]] NSError* error() const noexcept;
    /// The PDF of a job that was saved without a place.
    [[nodiscard]] Ref<NSData> data() const;

    // For the panel and the views.

    /// Divides the view into pages again, with the print info that stands now. The operation is the current one
    /// meanwhile.
    PrintPages& layOutPages_();
    /// Null before the first layOutPages_.
    [[nodiscard]] PrintPages* pages_() const noexcept;
    /// One page, from 1, onto a canvas as large as the paper in points.
    void drawPage_(NSInteger page, backend::Canvas& canvas);
    /// What the page that is drawn is drawn with.
    [[nodiscard]] CGFloat drawnScale_() const noexcept;

private:
    friend class PrintPages;
    struct State;
    explicit NSPrintOperation(NSView* view, NSPrintInfo* info);

    BOOL deliver();
    BOOL printPages(PrintPages& pages, backend::PrintDocument& document, NSInteger first, NSInteger last);
    BOOL fail(const std::string& reason);
    std::unique_ptr<State> state_;
};

} // namespace libvue

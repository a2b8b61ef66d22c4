#pragma once

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/NSURL.h>

namespace libvue {

enum NSPaperOrientation : NSInteger { NSPaperOrientationPortrait = 0, NSPaperOrientationLandscape = 1 };

/// What becomes of a view that is larger than a page, in one direction.
enum NSPrintingPaginationMode : NSUInteger {
    NSAutoPagination = 0, ///< goes on on further pages
    NSFitPagination = 1,  ///< is made smaller
    NSClipPagination = 2  ///< is cut
};

// What becomes of the job.
inline constexpr ConstantString NSPrintSpoolJob{u"NSPrintSpoolJob"};     ///< goes to the printer
inline constexpr ConstantString NSPrintSaveJob{u"NSPrintSaveJob"};       ///< becomes a PDF file
inline constexpr ConstantString NSPrintPreviewJob{u"NSPrintPreviewJob"}; ///< opens in the desktop's PDF viewer
inline constexpr ConstantString NSPrintCancelJob{u"NSPrintCancelJob"};   ///< nothing

// The keys of dictionary.
inline constexpr ConstantString NSPrintPaperName{u"NSPaperName"};
inline constexpr ConstantString NSPrintPaperSize{u"NSPaperSize"};
inline constexpr ConstantString NSPrintOrientation{u"NSOrientation"};
inline constexpr ConstantString NSPrintLeftMargin{u"NSLeftMargin"};
inline constexpr ConstantString NSPrintRightMargin{u"NSRightMargin"};
inline constexpr ConstantString NSPrintTopMargin{u"NSTopMargin"};
inline constexpr ConstantString NSPrintBottomMargin{u"NSBottomMargin"};
inline constexpr ConstantString NSPrintHorizontallyCentered{u"NSHorizontallyCentered"};
inline constexpr ConstantString NSPrintVerticallyCentered{u"NSVerticallyCentered"};
inline constexpr ConstantString NSPrintHorizontalPagination{u"NSHorizontalPagination"};
inline constexpr ConstantString NSPrintVerticalPagination{u"NSVerticalPagination"};
inline constexpr ConstantString NSPrintScalingFactor{u"NSScalingFactor"};
inline constexpr ConstantString NSPrintPrinterName{u"NSPrinterName"};
inline constexpr ConstantString NSPrintJobDisposition{u"NSJobDisposition"};
inline constexpr ConstantString NSPrintJobSavingURL{u"NSJobSavingURL"};
inline constexpr ConstantString NSPrintCopies{u"NSCopies"};
inline constexpr ConstantString NSPrintAllPages{u"NSPrintAllPages"};
inline constexpr ConstantString NSPrintFirstPage{u"NSFirstPage"};
inline constexpr ConstantString NSPrintLastPage{u"NSLastPage"};

/// How something is printed: paper, margins, printer, pages, what becomes of the job. Lengths are points. Values that
/// make no sense (not finite, a paper of no size, a scale of 0) are ignored by their setters.
class LIBVUE_API NSPrintInfo : public NSObject {
public:
    static void describe(ClassDescription<NSPrintInfo>& c);
    /// The paper of the user's country (A4, or letter in North America), upright, with margins of 72 and 90 points.
    NSPrintInfo();
    /// With what the dictionary holds of the keys above; null changes nothing.
    explicit NSPrintInfo(const NSDictionary* attributes);
    ~NSPrintInfo() override;

    /// The one that printing starts from unless another is given.
    [[nodiscard]] static NSPrintInfo* sharedPrintInfo();
    /// Null makes a new one at the next use.
    static void setSharedPrintInfo(NSPrintInfo* info);

    /// Of the sheet as it is read: on its side it is wider than high.
    [[nodiscard]] NSSize paperSize() const noexcept { return paperSize_; }
    /// Gives the orientation along: on its side when it is wider than high.
    void setPaperSize(const NSSize& size);
    /// As printers know it, "iso_a4_210x297mm"; null for a size without a name.
    [[nodiscard]] NSString* paperName() const noexcept { return paperName_; }
    /// Takes the size of that paper in the orientation that stands. An unknown name is ignored.
    void setPaperName(NSString* name);
    [[nodiscard]] NSPaperOrientation orientation() const noexcept { return orientation_; }
    /// Turns the paper.
    void setOrientation(NSPaperOrientation o);

    [[nodiscard]] CGFloat leftMargin() const noexcept { return left_; }
    [[nodiscard]] CGFloat rightMargin() const noexcept { return right_; }
    [[nodiscard]] CGFloat topMargin() const noexcept { return top_; }
    [[nodiscard]] CGFloat bottomMargin() const noexcept { return bottom_; }
    void setLeftMargin(CGFloat points);
    void setRightMargin(CGFloat points);
    void setTopMargin(CGFloat points);
    void setBottomMargin(CGFloat points);
    /// The paper less the margins, from the lower left corner of the paper. May be of no size.
    [[nodiscard]] NSRect areaWithinMargins() const noexcept;
    [[nodiscard]] BOOL isHorizontallyCentered() const noexcept { return centredX_; }
    void setHorizontallyCentered(BOOL f) noexcept { centredX_ = f; }
    [[nodiscard]] BOOL isVerticallyCentered() const noexcept { return centredY_; }
    void setVerticallyCentered(BOOL f) noexcept { centredY_ = f; }

    [[nodiscard]] NSPrintingPaginationMode horizontalPagination() const noexcept { return paginationX_; }
    void setHorizontalPagination(NSPrintingPaginationMode m) noexcept { paginationX_ = m; }
    [[nodiscard]] NSPrintingPaginationMode verticalPagination() const noexcept { return paginationY_; }
    void setVerticalPagination(NSPrintingPaginationMode m) noexcept { paginationY_ = m; }
    /// 1 for natural size; held between 0.01 and 100.
    [[nodiscard]] CGFloat scalingFactor() const noexcept { return scale_; }
    void setScalingFactor(CGFloat scale);

    /// The queue; null for the default printer.
    [[nodiscard]] NSString* printerName() const noexcept { return printer_; }
    void setPrinterName(NSString* name);
    [[nodiscard]] NSString* jobDisposition() const noexcept { return disposition_; }
    /// One of NSPrintSpoolJob, NSPrintSaveJob, NSPrintPreviewJob, NSPrintCancelJob; others are ignored.
    void setJobDisposition(NSString* disposition);
    /// Where a saved job goes; null keeps it in memory.
    [[nodiscard]] NSURL* jobSavingURL() const noexcept { return savingURL_; }
    void setJobSavingURL(NSURL* url);
    [[nodiscard]] NSInteger copies() const noexcept { return copies_; }
    static constexpr NSInteger mostCopies = 999;
    /// Held between 1 and mostCopies.
    void setCopies(NSInteger n);
    /// YES unless a range of pages is asked for.
    [[nodiscard]] BOOL printsAllPages() const noexcept { return allPages_; }
    void setPrintsAllPages(BOOL f) noexcept { allPages_ = f; }
    /// Counted from 1, both included; turned round where they stand so.
    [[nodiscard]] NSInteger firstPage() const noexcept { return firstPage_; }
    [[nodiscard]] NSInteger lastPage() const noexcept { return lastPage_; }
    void setFirstPage_lastPage(NSInteger first, NSInteger last);

    /// All of it, by the keys above.
    [[nodiscard]] Ref<NSDictionary> dictionary() const;
    /// Takes over what the dictionary holds.
    void takeAttributesFrom(const NSDictionary* attributes);
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    void takeFrom_(const NSPrintInfo& other);
    /// A sheet of a printer, given upright, in the orientation that stands; an empty name for none.
    void setPaper_(NSSize upright, NSString* name);
    /// The same paper for a view that is drawn `scale` times as large: its lengths are divided by that.
    [[nodiscard]] Ref<NSPrintInfo> inUnitsOfScale_(CGFloat scale) const;

private:
    NSSize paperSize_;
    Ref<NSString> paperName_;
    Ref<NSString> printer_;
    Ref<NSString> disposition_;
    Ref<NSURL> savingURL_;
    CGFloat left_ = 72, right_ = 72, top_ = 90, bottom_ = 90;
    CGFloat scale_ = 1;
    NSPaperOrientation orientation_ = NSPaperOrientationPortrait;
    NSPrintingPaginationMode paginationX_ = NSClipPagination;
    NSPrintingPaginationMode paginationY_ = NSAutoPagination;
    NSInteger copies_ = 1, firstPage_ = 1, lastPage_ = 1;
    bool centredX_ = true, centredY_ = true, allPages_ = true;
};

} // namespace libvue

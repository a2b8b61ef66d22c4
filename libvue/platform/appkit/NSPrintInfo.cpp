#include <libvue/platform/appkit/NSPrintInfo.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include <libvue/platform/backend/PrintService.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSLocale.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSValue.h>

namespace libvue {

namespace {

constexpr CGFloat smallestSide = 1, largestSide = 14400; // of a page description, in points

bool isSide(CGFloat v) { return v >= smallestSide && v <= largestSide; }

Ref<NSPrintInfo>& shared() {
    static auto& info = *new Ref<NSPrintInfo>;
    return info;
}

const backend::Paper* paperNamed(std::string_view name) {
    const auto& papers = backend::PrintService::usualPapers();
    const auto found = std::ranges::find(papers, name, &backend::Paper::name);
    return found == papers.end() ? nullptr : &*found;
}

/// The sheet of that size, in either orientation.
const backend::Paper* paperOfSize(NSSize size) {
    if (size.width > size.height) std::swap(size.width, size.height);
    for (const backend::Paper& p : backend::PrintService::usualPapers())
        if (p.isOfSize(size)) return &p;
    return nullptr;
}

bool usesLetter(const NSString* country) {
    if (!country) return false;
    static constexpr std::string_view countries[] = {"US", "CA", "MX", "PR", "PH", "CL", "CO", "VE"};
    return std::ranges::find(countries, country->utf8()) != std::end(countries);
}

} // namespace

void NSPrintInfo::describe(ClassDescription<NSPrintInfo>& c) {
    c.key<&NSPrintInfo::leftMargin, &NSPrintInfo::setLeftMargin>("leftMargin");
    c.key<&NSPrintInfo::rightMargin, &NSPrintInfo::setRightMargin>("rightMargin");
    c.key<&NSPrintInfo::topMargin, &NSPrintInfo::setTopMargin>("topMargin");
    c.key<&NSPrintInfo::bottomMargin, &NSPrintInfo::setBottomMargin>("bottomMargin");
    c.key<&NSPrintInfo::scalingFactor, &NSPrintInfo::setScalingFactor>("scalingFactor");
    c.key<&NSPrintInfo::paperSize, &NSPrintInfo::setPaperSize>("paperSize");
}

NSPrintInfo::NSPrintInfo() : disposition_(NSPrintSpoolJob.get()) {
    const Ref<NSLocale> locale = NSLocale::currentLocale();
    const Ref<NSString> country = locale->countryCode();
    const auto* paper = paperNamed(usesLetter(country) ? "na_letter_8.5x11in" : "iso_a4_210x297mm");
    paperName_ = NSString::fromUTF8(paper->name);
    paperSize_ = paper->size;
}

NSPrintInfo::NSPrintInfo(const NSDictionary* attributes) : NSPrintInfo() { takeAttributesFrom(attributes); }

NSPrintInfo::~NSPrintInfo() = default;

NSPrintInfo* NSPrintInfo::sharedPrintInfo() {
    if (!shared()) shared() = make<NSPrintInfo>();
    return shared();
}

void NSPrintInfo::setSharedPrintInfo(NSPrintInfo* info) { shared() = info; }

void NSPrintInfo::setPaperSize(const NSSize& size) {
    if (!isSide(size.width) || !isSide(size.height)) return;
    paperSize_ = size;
    orientation_ = size.width > size.height ? NSPaperOrientationLandscape : NSPaperOrientationPortrait;
    const auto* paper = paperOfSize(size);
    paperName_ = paper ? NSString::fromUTF8(paper->name) : nullptr;
}

void NSPrintInfo::setPaperName(NSString* name) {
    const auto* paper = name ? paperNamed(name->utf8()) : nullptr;
    if (!paper) return;
    paperName_ = name;
    paperSize_ = paper->size;
    if (orientation_ == NSPaperOrientationLandscape) std::swap(paperSize_.width, paperSize_.height);
}

void NSPrintInfo::setPaper_(NSSize upright, NSString* name) {
    if (!isSide(upright.width) || !isSide(upright.height)) return;
    if (orientation_ == NSPaperOrientationLandscape) std::swap(upright.width, upright.height);
    paperSize_ = upright;
    paperName_ = name && name->length() > 0 ? name : nullptr;
}

void NSPrintInfo::setOrientation(NSPaperOrientation o) {
    if (o != NSPaperOrientationPortrait && o != NSPaperOrientationLandscape) return;
    if (o != orientation_) std::swap(paperSize_.width, paperSize_.height);
    orientation_ = o;
}

void NSPrintInfo::setLeftMargin(CGFloat points) {
    if (std::isfinite(points)) left_ = points;
}

void NSPrintInfo::setRightMargin(CGFloat points) {
    if (std::isfinite(points)) right_ = points;
}

void NSPrintInfo::setTopMargin(CGFloat points) {
    if (std::isfinite(points)) top_ = points;
}

void NSPrintInfo::setBottomMargin(CGFloat points) {
    if (std::isfinite(points)) bottom_ = points;
}

NSRect NSPrintInfo::areaWithinMargins() const noexcept {
    return {{left_, bottom_},
            {std::max(0.0, paperSize_.width - left_ - right_), std::max(0.0, paperSize_.height - top_ - bottom_)}};
}

void NSPrintInfo::setScalingFactor(CGFloat scale) {
    constexpr CGFloat least = 0.01, most = 100;
    if (scale > 0 && std::isfinite(scale)) scale_ = std::clamp(scale, least, most);
}

void NSPrintInfo::setPrinterName(NSString* name) { printer_ = name; }

void NSPrintInfo::setJobDisposition(NSString* disposition) {
    for (const ConstantString* known : {&NSPrintSpoolJob, &NSPrintSaveJob, &NSPrintPreviewJob, &NSPrintCancelJob})
        if (disposition && disposition->isEqualToString(known->get())) disposition_ = disposition;
}

void NSPrintInfo::setJobSavingURL(NSURL* url) { savingURL_ = url; }

void NSPrintInfo::setCopies(NSInteger n) { copies_ = std::clamp<NSInteger>(n, 1, mostCopies); }

void NSPrintInfo::setFirstPage_lastPage(NSInteger first, NSInteger last) {
    firstPage_ = std::max<NSInteger>(1, std::min(first, last));
    lastPage_ = std::max<NSInteger>(1, std::max(first, last));
}

Ref<NSDictionary> NSPrintInfo::dictionary() const {
    const auto d = NSMutableDictionary::dictionary();
    const auto put = [&](const ConstantString& key, NSObject* value) {
        if (value) d->setObject_forKey(value, key.get());
    };
    const auto number = [&](const ConstantString& key, double v) { put(key, NSNumber::numberWithDouble(v)); };
    const auto whole = [&](const ConstantString& key, NSInteger v) { put(key, NSNumber::numberWithInteger(v)); };
    const auto flag = [&](const ConstantString& key, BOOL v) { put(key, NSNumber::numberWithBool(v)); };
    put(NSPrintPaperName, paperName_);
    put(NSPrintPaperSize, NSValue::valueWithSize(paperSize_));
    whole(NSPrintOrientation, orientation_);
    number(NSPrintLeftMargin, left_);
    number(NSPrintRightMargin, right_);
    number(NSPrintTopMargin, top_);
    number(NSPrintBottomMargin, bottom_);
    flag(NSPrintHorizontallyCentered, centredX_);
    flag(NSPrintVerticallyCentered, centredY_);
    whole(NSPrintHorizontalPagination, static_cast<NSInteger>(paginationX_));
    whole(NSPrintVerticalPagination, static_cast<NSInteger>(paginationY_));
    number(NSPrintScalingFactor, scale_);
    put(NSPrintPrinterName, printer_);
    put(NSPrintJobDisposition, disposition_);
    put(NSPrintJobSavingURL, savingURL_);
    whole(NSPrintCopies, copies_);
    flag(NSPrintAllPages, allPages_);
    whole(NSPrintFirstPage, firstPage_);
    whole(NSPrintLastPage, lastPage_);
    return d;
}

void NSPrintInfo::takeAttributesFrom(const NSDictionary* attributes) {
    if (!attributes) return;
    const auto number = [&](const ConstantString& key) { return attributes->get<NSNumber>(key.get()); };
    const auto mode = [](const NSNumber* n) {
        return static_cast<NSPrintingPaginationMode>(std::clamp<NSInteger>(n->integerValue(), 0, 2));
    };
    if (auto* name = attributes->get<NSString>(NSPrintPaperName.get())) setPaperName(name);
    if (auto* size = attributes->get<NSValue>(NSPrintPaperSize.get())) setPaperSize(size->sizeValue());
    if (auto* n = number(NSPrintOrientation)) setOrientation(static_cast<NSPaperOrientation>(n->integerValue()));
    if (auto* n = number(NSPrintLeftMargin)) setLeftMargin(n->doubleValue());
    if (auto* n = number(NSPrintRightMargin)) setRightMargin(n->doubleValue());
    if (auto* n = number(NSPrintTopMargin)) setTopMargin(n->doubleValue());
    if (auto* n = number(NSPrintBottomMargin)) setBottomMargin(n->doubleValue());
    if (auto* n = number(NSPrintHorizontallyCentered)) centredX_ = n->boolValue();
    if (auto* n = number(NSPrintVerticallyCentered)) centredY_ = n->boolValue();
    if (auto* n = number(NSPrintHorizontalPagination)) paginationX_ = mode(n);
    if (auto* n = number(NSPrintVerticalPagination)) paginationY_ = mode(n);
    if (auto* n = number(NSPrintScalingFactor)) setScalingFactor(n->doubleValue());
    if (auto* name = attributes->get<NSString>(NSPrintPrinterName.get())) printer_ = name;
    if (auto* d = attributes->get<NSString>(NSPrintJobDisposition.get())) setJobDisposition(d);
    if (auto* url = attributes->get<NSURL>(NSPrintJobSavingURL.get())) savingURL_ = url;
    if (auto* n = number(NSPrintCopies)) setCopies(n->integerValue());
    if (auto* n = number(NSPrintAllPages)) allPages_ = n->boolValue();
    const auto *first = number(NSPrintFirstPage), *last = number(NSPrintLastPage);
    if (first || last)
        setFirstPage_lastPage(first ? first->integerValue() : firstPage_, last ? last->integerValue() : lastPage_);
}

void NSPrintInfo::takeFrom_(const NSPrintInfo& other) {
    paperSize_ = other.paperSize_;
    paperName_ = other.paperName_;
    printer_ = other.printer_;
    disposition_ = other.disposition_;
    savingURL_ = other.savingURL_;
    left_ = other.left_;
    right_ = other.right_;
    top_ = other.top_;
    bottom_ = other.bottom_;
    scale_ = other.scale_;
    orientation_ = other.orientation_;
    paginationX_ = other.paginationX_;
    paginationY_ = other.paginationY_;
    copies_ = other.copies_;
    firstPage_ = other.firstPage_;
    lastPage_ = other.lastPage_;
    centredX_ = other.centredX_;
    centredY_ = other.centredY_;
    allPages_ = other.allPages_;
}

Ref<NSObject> NSPrintInfo::copyWithZone() const {
    auto copy = make<NSPrintInfo>();
    copy->takeFrom_(*this);
    return copy;
}

Ref<NSPrintInfo> NSPrintInfo::inUnitsOfScale_(CGFloat scale) const {
    auto info = make<NSPrintInfo>();
    info->takeFrom_(*this);
    info->paperSize_ = {paperSize_.width / scale, paperSize_.height / scale};
    info->left_ /= scale;
    info->right_ /= scale;
    info->top_ /= scale;
    info->bottom_ /= scale;
    info->scale_ = 1;
    return info;
}

} // namespace libvue

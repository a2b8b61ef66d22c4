#include <libvue/platform/appkit/PrintPreviewView.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/PrintPanelWindow.h>
#include <libvue/platform/appkit/ThemeDrawing.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSShadow.h>

namespace libvue {

namespace {
constexpr CGFloat kAround = 14; // between the sheet and the edge
}

void PrintPreviewView::describe(ClassDescription<PrintPreviewView, NSView>&) {}

PrintPreviewView::PrintPreviewView(const NSRect& frame, NSPrintOperation* operation)
    : NSView(frame), operation_(operation) {}

PrintPreviewView::~PrintPreviewView() = default;

NSRect PrintPreviewView::sheet() const {
    const NSSize paper = operation_->printInfo()->paperSize();
    const NSRect room = NSInsetRect(bounds(), kAround, kAround);
    const CGFloat scale = std::min(room.size.width / paper.width, room.size.height / paper.height);
    const NSSize size{std::max(1.0, std::round(paper.width * scale)), std::max(1.0, std::round(paper.height * scale))};
    return {{std::round(NSMidX(room) - size.width / 2), std::round(NSMidY(room) - size.height / 2)}, size};
}

void PrintPreviewView::show(NSInteger page) {
    page_ = page;
    picture_ = nullptr;
    setNeedsDisplay(YES);
    if (page < 1) return;
    auto& graphics = *backend::Backend::current().graphics;
    const NSRect place = sheet();
    const CGFloat pixels = window() ? window()->backingScaleFactor() : 1;
    const auto picture = graphics.makePicture(place.size, pixels);
    if (!picture) return;
    {
        const auto canvas = graphics.canvasOn(picture);
        const NSSize paper = operation_->printInfo()->paperSize();
        canvas->fillRect({{0, 0}, place.size}, {1, 1, 1, 1});
        canvas->concat(backend::Transform::scaling(place.size.width / paper.width, place.size.height / paper.height));
        operation_->drawPage_(page, *canvas);
    }
    picture_ = make<NSImage>(place.size);
    picture_->addRepresentation(make<NSBitmapImageRep>(picture));
}

void PrintPreviewView::drawRect(const NSRect&) {
    drawGroupBox(bounds());
    const NSRect place = sheet();
    {
        const GraphicsStateScope scope;
        const auto shadow = make<NSShadow>();
        shadow->setShadowOffset({0, -1});
        shadow->setShadowBlurRadius(5);
        shadow->setShadowColor(NSColor::colorWithCalibratedWhite_alpha(0, 0.35));
        shadow->set();
        NSColor::whiteColor()->setFill();
        // NSRectFill copies, and would copy the shadow's colour too.
        NSBezierPath::fillRect(place);
    }
    if (picture_)
        picture_->drawInRect_fromRect_operation_fraction_respectFlipped_hints(place, NSZeroRect, NSCompositeSourceOver,
                                                                              1, YES, nullptr);
}

void PrintPreviewView::scrollWheel(NSEvent* e) {
    constexpr CGFloat notch = 1;
    wheel_ += e->scrollingDeltaY();
    if (std::abs(wheel_) < notch) return;
    if (auto* panel = dynamic_cast<PrintPanelWindow*>(window())) panel->turnPages(wheel_ > 0 ? -1 : 1);
    wheel_ = 0;
}

AccessibilityDescription PrintPreviewView::accessibilityDescription() const {
    AccessibilityDescription d;
    d.role = u"image"_ns;
    d.label = u"Aperçu de la page"_ns;
    d.value = NSString::stringWithFormat(u"%ld"_ns, static_cast<long>(page_));
    return d;
}

} // namespace libvue

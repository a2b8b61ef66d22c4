#include <libvue/platform/appkit/ToolTipWindow.h>

#include <algorithm>
#include <cmath>

#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/Palette.h>

namespace libvue {

namespace {

constexpr CGFloat widest = 320, marginX = 6, marginY = 4;
/// From the pointer's tip to the window below it, which leaves room for the arrow.
constexpr CGFloat below = 20, above = 6;

Ref<NSDictionary> attributes() {
    return NSDictionary::dictionaryWithObjectsAndKeys({{NSFontAttributeName, NSFont::toolTipsFontOfSize(0)},
                                                       {NSForegroundColorAttributeName, NSColor::controlTextColor()}});
}

class ToolTipView : public NSView {
public:
    static void describe(ClassDescription<ToolTipView, NSView>&) {}
    ToolTipView(const NSRect& frame, NSString* text) : NSView(frame), text_(text) {}
    [[nodiscard]] BOOL isOpaque() const override { return YES; }

    void drawRect(const NSRect&) override {
        NSColor::systemColor(SystemColor::tooltipBackground)->set();
        NSRectFill(bounds());
        NSColor::separatorColor()->set();
        NSFrameRect(bounds());
        drawWithRect_options_attributes(text_, NSInsetRect(bounds(), marginX, marginY),
                                        NSStringDrawingUsesLineFragmentOrigin, attributes());
    }

    AccessibilityDescription accessibilityDescription() const override {
        AccessibilityDescription d;
        d.role = u"tool tip"_ns;
        d.label = text_;
        return d;
    }

private:
    Ref<NSString> text_;
};

} // namespace

void ToolTipWindow::describe(ClassDescription<ToolTipWindow, NSPanel>&) {}

ToolTipWindow::ToolTipWindow(NSString* text)
    : NSPanel(NSZeroRect, NSBorderlessWindowMask), text_(NSString::stringWithString(text)) {
    const NSSize wanted =
        boundingRectWithSize_options_attributes(text_, {widest, 0}, NSStringDrawingUsesLineFragmentOrigin, attributes())
            .size;
    const NSSize size{std::ceil(wanted.width) + 2 * marginX, std::ceil(wanted.height) + 2 * marginY};
    setContentSize(size);
    setContentView(make<ToolTipView>(NSMakeRect(0, 0, size.width, size.height), text_.get()));
    setLevel(NSPopUpMenuWindowLevel);
    setIgnoresMouseEvents(YES);
    setExcludedFromWindowsMenu(YES);
}

ToolTipWindow::~ToolTipWindow() = default;

void ToolTipWindow::showAtPointer(NSPoint pointer, NSScreen* screen) {
    NSRect f = frame();
    f.origin = {pointer.x, pointer.y - below - f.size.height};
    if (screen) {
        const NSRect room = screen->visibleFrame();
        if (f.origin.y < NSMinY(room)) f.origin.y = pointer.y + above;
        f.origin.x = std::max(NSMinX(room), std::min(f.origin.x, NSMaxX(room) - f.size.width));
    }
    setFrame_display(f, NO);
    orderFront(nullptr);
}

} // namespace libvue

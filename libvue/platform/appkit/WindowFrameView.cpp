#include <libvue/platform/appkit/WindowFrameView.h>

#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/ViewPicture.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>

namespace libvue {

void WindowFrameView::describe(ClassDescription<WindowFrameView, NSView>&) {}
WindowFrameView::WindowFrameView(const NSRect& frame) : NSView(frame) {}
WindowFrameView::~WindowFrameView() = default;

BOOL WindowFrameView::isOpaque() const { return window() && window()->isOpaque(); }

void WindowFrameView::drawRect(const NSRect& dirtyRect) {
    NSWindow* w = window();
    if (!w) return;
    const NSView* content = w->contentView();
    if (content && content->isOpaque() && !content->isHidden() && NSContainsRect(content->frame(), dirtyRect)) return;
    if (ViewPicture::any_() && ViewPicture::cover_(w, dirtyRect)) return;
    // By copy: what a transparent window showed before must not shine through.
    w->backgroundColor()->set();
    NSRectFill(dirtyRect);
}

void WindowFrameView::resizeSubviewsWithOldSize(const NSSize& oldSize) {
    NSView* content = window() ? window()->contentView() : nullptr;
    if (content && content->superview() == this)
        content->setFrame(bounds());
    else
        NSView::resizeSubviewsWithOldSize(oldSize);
}

} // namespace libvue

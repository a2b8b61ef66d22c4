#pragma once

#include <libvue/platform/appkit/NSTextFieldCell.h>
#include <libvue/text/formats/Forward.h>

namespace libvue {

/// A text that is an address: a click in it opens it in the desktop's browser.
class LIBVUE_API KURLTextFieldCell : public NSTextFieldCell {
public:
    static void describe(ClassDescription<KURLTextFieldCell, NSTextFieldCell>& c);
    using NSTextFieldCell::NSTextFieldCell;

    /// The pointing hand, over the whole rectangle.
    void resetCursorRect_inView(const NSRect& frame, NSView* view) override;
    /// Opens the address where the button goes up in the cell. One without "://" is taken for a web address; the empty
    /// one, and what is no URL, opens nothing.
    BOOL trackMouse_inRect_ofView_untilMouseUp(NSEvent* e, const NSRect& frame, NSView* view,
                                               BOOL untilMouseUp) override;
    /// Its text is tracked, though it is neither edited nor selected.
    [[nodiscard]] NSUInteger hitTestForEvent_inRect_ofView(NSEvent* e, const NSRect& frame, NSView* view) override;
};

} // namespace libvue

#include <libvue/text/formats/KURLTextFieldCell.h>

#include <libvue/platform/appkit/NSCellHitTest.h>
#include <libvue/platform/appkit/NSCursor.h>
#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/appkit/NSWorkspace.h>
#include <libvue/platform/foundation/NSURL.h>

namespace libvue {

static const ClassRegistration<KURLTextFieldCell> enregistrement;

void KURLTextFieldCell::describe(ClassDescription<KURLTextFieldCell, NSTextFieldCell>&) {}

void KURLTextFieldCell::resetCursorRect_inView(const NSRect& frame, NSView* view) {
    if (view) view->addCursorRect_cursor(frame, NSCursor::pointingHandCursor());
}

BOOL KURLTextFieldCell::trackMouse_inRect_ofView_untilMouseUp(NSEvent* e, const NSRect& frame, NSView* view,
                                                              BOOL untilMouseUp) {
    const Ref<KURLTextFieldCell> self(this);
    if (!NSTextFieldCell::trackMouse_inRect_ofView_untilMouseUp(e, frame, view, untilMouseUp)) return NO;
    Ref<NSString> adresse = stringValue();
    if (adresse->length() > 0) {
        if (adresse->rangeOfString(u"://"_ns).location == static_cast<NSUInteger>(NSNotFound))
            adresse = NSString::stringWithFormat(u"http://%@"_ns, adresse.get());
        NSWorkspace::sharedWorkspace()->openURL(NSURL::URLWithString(adresse));
    }
    return YES;
}

NSUInteger KURLTextFieldCell::hitTestForEvent_inRect_ofView(NSEvent*, const NSRect&, NSView*) {
    return NSCellHitContentArea | NSCellHitTrackableArea;
}

} // namespace libvue

#include <graphiques/TarteClavier.h>

#include <libvue/charts/KCPointeDeTarte.h>
#include <libvue/charts/TableAccessible.h>
#include <libvue/platform/appkit/FocusRing.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSNumber.h>

namespace galerie {

namespace {

constexpr unichar kEchap = 0x1B, kEspace = u' ';
constexpr CGFloat kAnneau = 4; ///< room for the ring, points

} // namespace

Ref<NSString> TarteClavier::ditSelection() const {
    const NSInteger i = selectedIndex()->integerValue();
    return i < 0 ? NSString::string() : tableAccessible().texteDeLaLigne(static_cast<NSUInteger>(i));
}

BOOL TarteClavier::becomeFirstResponder() {
    setNeedsDisplay(YES);
    return YES;
}

BOOL TarteClavier::resignFirstResponder() {
    setNeedsDisplay(YES);
    return YES;
}

void TarteClavier::mouseDown(NSEvent* e) {
    if (window()) window()->makeFirstResponder(this);
    KCTarte::mouseDown(e);
}

void TarteClavier::choisis(NSInteger index) {
    const Ref<NSNumber> actuel = selectedIndex();
    // Choosing the selected one would deselect it.
    if (index == actuel->integerValue()) return;
    const Ref<NSNumber> nombre = NSNumber::numberWithInteger(index);
    performSelector_withObject_afterDelay(sel("setSelectedIndex:"), nombre, 0.0);
}

void TarteClavier::avance(NSInteger depuis, NSInteger pas) {
    const auto n = static_cast<NSInteger>(pointes()->count());
    if (n == 0 || total() == 0) return;
    for (NSInteger k = 1; k <= n; ++k) {
        const NSInteger i = (((depuis + k * pas) % n) + n) % n;
        if (pretePointe(static_cast<NSUInteger>(i))->valeur() != 0) return choisis(i);
    }
}

void TarteClavier::keyDown(NSEvent* e) {
    NSString* touches = e->charactersIgnoringModifiers();
    const unichar c = touches && touches->length() > 0 ? touches->characterAtIndex(0) : 0;
    const NSInteger choisie = selectedIndex()->integerValue();
    switch (c) {
    case NSRightArrowFunctionKey:
    case NSDownArrowFunctionKey:
        return avance(choisie, 1);
    case NSLeftArrowFunctionKey:
    case NSUpArrowFunctionKey:
        return avance(choisie < 0 ? 0 : choisie, -1);
    case NSHomeFunctionKey:
        return avance(-1, 1);
    case NSEndFunctionKey:
        return avance(0, -1);
    case kEspace:
        return choisie < 0 ? avance(-1, 1) : choisis(-1);
    case kEchap:
        if (choisie >= 0) return choisis(-1);
        break;
    default:
        break;
    }
    KCTarte::keyDown(e);
}

void TarteClavier::drawRect(const NSRect& r) {
    KCTarte::drawRect(r);
    if (window() && window()->firstResponder() == this && window()->isKeyWindow())
        drawFocusRing(NSInsetRect(bounds(), kAnneau, kAnneau), kAnneau);
}

} // namespace galerie

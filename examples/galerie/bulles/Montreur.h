#pragma once

#include <vector>

#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/popover/KCPopoverWrapper.h>

namespace galerie {

using namespace libvue;

/// How the balloons of the page are.
struct ReglagesBulles {
    NSUInteger bord = NSMaxYEdge, masque = 15;
    NSInteger comportement = 1; ///< of the system's
    BOOL systeme = NO, detachable = YES;
    Ref<NSColor> fond, bordure; ///< of ours
};

/// Opens balloons, one a view, and closes them: a view that is asked twice loses its balloon.
class Montreur : public NSObject {
public:
    static void describe(ClassDescription<Montreur>& c);
    ~Montreur() override;

    [[nodiscard]] ReglagesBulles& reglages() noexcept { return reglages_; }
    /// With the kind, the edge and the rest that are set now.
    void montre(NSView* ancre);
    void montre_genre(NSView* ancre, BOOL systeme);
    /// One of ours to the left of the one view, the system's to the right of the other.
    void montreLesDeux(NSView* notre, NSView* systeme);
    void fermeTout();

private:
    void ouvre(NSView* ancre, BOOL systeme, NSUInteger bord);
    [[nodiscard]] BOOL fermePour(NSView* ancre);
    NSWindow* detachableWindowForPopover(NSObject* popover);
    void popoverWillClose(NSNotification* n);
    void popoverDidClose(NSNotification* n);

    ReglagesBulles reglages_;
    std::vector<Ref<NSWindow>> fenetres_; ///< that balloons became
    Weak<NSView> dernierPressay_;         ///< the anchor whose balloon closed by the press of that number
    NSInteger pression_ = -1;
};

} // namespace galerie

#pragma once

#include <libvue/alerts/Forward.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/popover/Forward.h>

namespace libvue {

/// Notices that take no input, are announced to assistive tools and fade away by themselves after a second, centred
/// over what they concern. One at a time: a new one ends the one before.
///
/// Class-level operations only.
class LIBVUE_API KAlerteEphemere : public NSObject {
public:
    static void describe(ClassDescription<KAlerteEphemere>& c);
    KAlerteEphemere() = delete;

    /// 256 points wide.
    static void alerteAvecTitre_explication_icone_emplacement_commeEnfant(NSString* titre, NSString* explication,
                                                                          NSImage* icone, NSObject* emplacement,
                                                                          BOOL enfant);
    /// Texts and icon may be null. The place is a view (or the scroll view that it is the document of), a window, or
    /// something that answers `window`; the main screen where it is none of these. With `enfant` the notice is a child
    /// of the place's window, of the main window where the place has none; without, or where there is no window, it
    /// lies above all of them.
    ///
    /// The notice is as high as its view is once fitted: it is the notice as it is seen that is centred. A view without
    /// a window counts as standing in the main one. Nothing is kept but the icon.
    static void alerteAvecTitre_explication_icone_emplacement_commeEnfant_largeur(NSString* titre,
                                                                                  NSString* explication, NSImage* icone,
                                                                                  NSObject* emplacement, BOOL enfant,
                                                                                  CGFloat largeur);
    /// As the delegate of the notice that goes.
    static void didFadeOut(FadingWindowController* controleur);
    /// Ends the notice that is shown at once; nothing without one.
    static void annuleAlerte();
};

} // namespace libvue

#include <recherche/ClientRecherche.h>

#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/Palette.h>

namespace galerie {

void ClientRecherche::describe(ClassDescription<ClientRecherche, NSView>& c) {
    c.answers<&ClientRecherche::cherche>(op::cherche_direction_respecterCasse_boucle_typeRecherche);
    c.answers<&ClientRecherche::donneSelection>(op::donneSelection);
}

ClientRecherche::ClientRecherche(CGFloat largeur) : NSView(NSMakeRect(0, 0, largeur, 20)) {
    setFocusRingType(NSFocusRingTypeExterior);
}
ClientRecherche::~ClientRecherche() = default;

BOOL ClientRecherche::cherche(NSString* texte, BOOL avant, BOOL respecterCasse, BOOL boucle, int type) {
    const Ref<ClientRecherche> moi(this);
    const Bilan b = repond({texte, avant, respecterCasse, boucle, type});
    setNeedsDisplay(YES);
    if (surRecherche) {
        const auto quoi = b.rang     ? NSString::stringWithFormat(u"%ld sur %ld"_ns, static_cast<long>(b.rang),
                                                                  static_cast<long>(b.nombre))
                          : b.nombre ? u"rien de plus dans ce sens"_ns
                                     : u"introuvable"_ns;
        surRecherche(NSString::stringWithFormat(u"«\u00A0%@\u00A0»\u00A0: %@."_ns, texte, quoi.get()));
    }
    return b.rang > 0;
}

BOOL ClientRecherche::becomeFirstResponder() {
    if (surFocus) surFocus(this);
    setNeedsDisplay(YES);
    return YES;
}

BOOL ClientRecherche::resignFirstResponder() {
    setNeedsDisplay(YES);
    return YES;
}

NSRect ClientRecherche::focusRingMaskBounds() const {
    // The ring lies outside of what it goes round, and the clip view cuts it off.
    constexpr CGFloat anneau = 3;
    return NSInsetRect(visibleRect(), anneau, anneau);
}

void ClientRecherche::montre(const NSRect& r) { scrollRectToVisible(NSInsetRect(r, 0, -48)); }

bool ClientRecherche::active() const { return window() && window()->firstResponder() == this; }

Ref<NSColor> ClientRecherche::fondTrouve() {
    return NSColor::systemColor(SystemColor::warning)->colorWithAlphaComponent(0.28);
}

Ref<NSColor> ClientRecherche::fondCourant() const { return NSColor::selectedTextBackgroundColor(); }

} // namespace galerie

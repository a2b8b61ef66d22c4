#pragma once

#include <string>
#include <vector>

#include <appkit/AppFixture.h>
#include <graphics/Dessin.h>

#include <libvue/charts/KCPointeDeTarte.h>
#include <libvue/charts/KCTarte.h>
#include <libvue/platform/foundation/NSNumber.h>

namespace libvue::test {

using Kind = backend::RecordingCanvas::Kind;

inline Ref<KCPointeDeTarte> pointe(NSInteger valeur, NSColor* couleur = NSColor::redColor(), NSString* chaine = nullptr,
                                   NSUInteger etiquette = KCPointeDeTarteEtiquetteAucune) {
    Ref<KCPointeDeTarte> p = make<KCPointeDeTarte>();
    p->setValeur(valeur);
    p->setCouleur(couleur);
    p->setChaine(chaine);
    p->setEtiquette(etiquette);
    return p;
}

inline Ref<KCTarte> tarteDe(const std::vector<NSInteger>& valeurs, const NSRect& frame = {{0, 0}, {200, 200}}) {
    Ref<KCTarte> t = make<KCTarte>(frame);
    for (const NSInteger v : valeurs)
        t->ajoutePointe(pointe(v));
    return t;
}

/// A window of its size with the view alone in it, on the screen.
inline Ref<NSWindow> fenetreDe(NSView* vue) {
    Ref<NSWindow> w = AppFixture::windowAt({{100, 100}, vue->bounds().size});
    w->contentView()->addSubview(vue);
    AppFixture::show(w);
    return w;
}

} // namespace libvue::test

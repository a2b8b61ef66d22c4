#include <Composition.h>

#include <algorithm>
#include <cmath>

#include <libvue/layout/KCLayoutLineaire.h>
#include <libvue/platform/appkit/NSBox.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>

namespace galerie {

namespace {

enum Sens : std::int32_t { deCote = 0, deHautEnBas = 1 };

Ref<KCLayoutView> aligne(const std::vector<Ref<NSView>>& vues, Sens sens, CGFloat ecart) {
    auto hote = make<KCLayoutView>(NSZeroRect);
    for (const auto& v : vues)
        hote->addSubview(v);
    const auto lineaire = make<KCLayoutLineaire>();
    hote->setLayoutManager(lineaire);
    lineaire->setDirection(sens);
    lineaire->setEspacement(ecart);
    lineaire->setAjusteTailleAuContenu(YES);
    // Whoever composes further needs the size at once, not at the first draw.
    hote->zerl_layout();
    return hote;
}

Ref<NSTextField> texteEn(NSString* texte, NSFont* police, NSColor* couleur) {
    auto l = NSTextField::labelWithString(texte);
    l->setFont(police);
    l->setTextColor(couleur);
    l->sizeToFit();
    // Whole points keep what follows on the pixels.
    l->setFrameSize({std::ceil(l->frame().size.width), std::ceil(l->frame().size.height)});
    return l;
}

} // namespace

Ref<NSTextField> etiquette(NSString* texte) {
    return texteEn(texte, NSFont::systemFontOfSize(NSFont::systemFontSize()), NSColor::labelColor());
}

Ref<NSTextField> legende(NSString* texte) {
    return texteEn(texte, NSFont::systemFontOfSize(NSFont::smallSystemFontSize()), NSColor::secondaryLabelColor());
}

Ref<NSTextField> titreGroupe(NSString* texte) {
    return texteEn(texte, NSFont::boldSystemFontOfSize(NSFont::systemFontSize()), NSColor::labelColor());
}

Ref<NSView> filet(CGFloat largeur) {
    auto b = make<NSBox>(NSMakeRect(0, 0, largeur, 1));
    b->setBoxType(NSBoxSeparator);
    return b;
}

Ref<KCLayoutView> pile(const std::vector<Ref<NSView>>& vues, CGFloat ecart) { return aligne(vues, deHautEnBas, ecart); }

Ref<KCLayoutView> rangee(const std::vector<Ref<NSView>>& vues, CGFloat ecart) {
    CGFloat haut = 0;
    for (const auto& v : vues)
        haut = std::max(haut, v->frame().size.height);
    for (const auto& v : vues)
        v->setFrameOrigin({0, std::floor((haut - v->frame().size.height) / 2)});
    return aligne(vues, deCote, ecart);
}

Ref<KCLayoutView> colonnes(const std::vector<Ref<NSView>>& vues, CGFloat gouttiere) {
    auto hote = rangee(vues, gouttiere);
    for (const auto& v : vues)
        v->setFrameOrigin({v->frame().origin.x, 0});
    return hote;
}

Ref<KCLayoutView> groupe(NSString* titre, const std::vector<Ref<NSView>>& vues) {
    std::vector<Ref<NSView>> toutes{titreGroupe(titre)};
    toutes.insert(toutes.end(), vues.begin(), vues.end());
    return pile(toutes);
}

void dessineFeuille(const NSRect& r) {
    constexpr CGFloat rayon = 10;
    const auto fond = NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(NSInsetRect(r, 0.5, 0.5), rayon, rayon);
    NSColor::controlBackgroundColor()->setFill();
    fond->fill();
    NSColor::separatorColor()->setStroke();
    fond->stroke();
}

Ref<NSString> enTexte(CGFloat nombre) {
    return NSString::stringWithFormat(u"%ld"_ns, static_cast<long>(std::lround(nombre)));
}

} // namespace galerie

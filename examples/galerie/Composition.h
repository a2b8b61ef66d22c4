#pragma once

#include <vector>

#include <libvue/layout/KCLayoutView.h>
#include <libvue/platform/appkit/NSTextField.h>

namespace galerie {

using namespace libvue;

// What the pages are put together from. Everything comes at its natural size.

inline constexpr CGFloat kMarge = 24;  ///< round a page
inline constexpr CGFloat kEcart = 8;   ///< between the rows of a group
inline constexpr CGFloat kGroupe = 20; ///< between groups

/// A text in the system font.
[[nodiscard]] Ref<NSTextField> etiquette(NSString* texte);
/// A small text that stands back.
[[nodiscard]] Ref<NSTextField> legende(NSString* texte);
/// A bold text above a group.
[[nodiscard]] Ref<NSTextField> titreGroupe(NSString* texte);
/// A line of that width.
[[nodiscard]] Ref<NSView> filet(CGFloat largeur);
/// The view at that width, its height as it was.
template <class T> [[nodiscard]] Ref<T> large(Ref<T> vue, CGFloat largeur) {
    vue->setFrameSize({largeur, vue->frame().size.height});
    return vue;
}

/// The views below each other, from the left edge.
[[nodiscard]] Ref<KCLayoutView> pile(const std::vector<Ref<NSView>>& vues, CGFloat ecart = kEcart);
/// The views beside each other, on one middle line.
[[nodiscard]] Ref<KCLayoutView> rangee(const std::vector<Ref<NSView>>& vues, CGFloat ecart = kEcart);
/// The views beside each other, all of them from the top edge.
[[nodiscard]] Ref<KCLayoutView> colonnes(const std::vector<Ref<NSView>>& vues, CGFloat gouttiere);
/// A title, and a pile below it.
[[nodiscard]] Ref<KCLayoutView> groupe(NSString* titre, const std::vector<Ref<NSView>>& vues);

/// Draws the ground of a sheet of a page into the current context: rounded, with a fine border.
void dessineFeuille(const NSRect& r);

/// A whole number as text.
[[nodiscard]] Ref<NSString> enTexte(CGFloat nombre);

} // namespace galerie

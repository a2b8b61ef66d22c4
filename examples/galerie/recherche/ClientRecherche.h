#pragma once

#include <functional>
#include <string>

#include <libvue/platform/appkit/NSView.h>
#include <libvue/search/ClientRecherche.h>

namespace galerie {

using namespace libvue;

/// A view that the search panel searches, while it has the focus or had it last. It is the document of a scroll view.
class ClientRecherche : public NSView {
public:
    static void describe(ClassDescription<ClientRecherche, NSView>& c);
    explicit ClientRecherche(CGFloat largeur);
    ~ClientRecherche() override;

    std::function<void(ClientRecherche*)> surFocus;
    /// Told what the panel asked for and what came of it.
    std::function<void(NSString*)> surRecherche;

    [[nodiscard]] virtual Ref<NSString> donneSelection() = 0;

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    [[nodiscard]] BOOL acceptsFirstResponder() override { return YES; }
    BOOL becomeFirstResponder() override;
    BOOL resignFirstResponder() override;
    [[nodiscard]] NSRect focusRingMaskBounds() const override;

protected:
    struct Demande {
        Ref<NSString> texte;
        BOOL avant, respecterCasse, boucle;
        int type;
    };
    struct Bilan {
        std::size_t nombre = 0; ///< of all that match
        std::size_t rang = 0;   ///< of the one that was gone to, from 1; 0 for none
    };
    [[nodiscard]] virtual Bilan repond(const Demande& d) = 0;
    /// Scrolls so that the rectangle shows with room around.
    void montre(const NSRect& r);
    [[nodiscard]] bool active() const;
    /// Of what was found, behind the others and for the current one.
    [[nodiscard]] static Ref<NSColor> fondTrouve();
    [[nodiscard]] Ref<NSColor> fondCourant() const;

private:
    BOOL cherche(NSString* texte, BOOL avant, BOOL respecterCasse, BOOL boucle, int type);
};

} // namespace galerie

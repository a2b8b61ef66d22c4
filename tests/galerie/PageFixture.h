#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "../appkit/AppFixture.h"

#include <FenetreGalerie.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSTextField.h>

namespace galerie {

constexpr std::uint32_t kCommande = backend::modifierCommand, kMajuscule = backend::modifierShift;

/// The gallery's window in memory, showing the page of that name.
struct PageFixture : libvue::test::AppFixture {
    Ref<FenetreGalerie> galerie = make<FenetreGalerie>(RegistrePages::fabriqueToutes());

    explicit PageFixture(std::u16string_view nom) {
        galerie->ouvre();
        page(nom);
    }
    void TearDown() override {
        galerie = nullptr;
        setCurrentAppearance(Appearance::light);
        AppFixture::TearDown();
    }
    void page(std::u16string_view nom) const {
        for (NSUInteger i = 0; i < galerie->pages().size(); ++i)
            if (galerie->pages()[i]->nom()->isEqualTo(nom)) galerie->montrePage(i);
        drain();
    }

    [[nodiscard]] NSWindow* fenetre() const { return galerie->fenetre(); }
    template <class T> static void rassemble(NSView* dans, std::vector<T*>& toutes) {
        if (!dans) return;
        if (auto* t = as<T>(dans)) toutes.push_back(t);
        for (NSView* v : dans->subviews())
            rassemble(v, toutes);
    }
    /// In the order of the tree.
    template <class T> [[nodiscard]] std::vector<T*> toutes() const {
        std::vector<T*> t;
        rassemble(fenetre()->contentView(), t);
        return t;
    }
    /// The one that assistive tools call so; null where there is none.
    template <class T> [[nodiscard]] T* nommee(std::u16string_view nom) const {
        for (T* t : toutes<T>()) {
            const auto d = t->accessibilityDescription();
            if (d.label && d.label->isEqualTo(nom)) return t;
        }
        return nullptr;
    }
    [[nodiscard]] NSButton* boutonDeTitre(std::u16string_view titre) const {
        for (NSButton* b : toutes<NSButton>())
            if (b->title()->isEqualTo(titre)) return b;
        return nullptr;
    }
    /// Whether a label on the page says it.
    [[nodiscard]] bool dit(std::u16string_view texte) const {
        for (NSTextField* l : toutes<NSTextField>())
            if (!l->isEditable() && l->stringValue()->utf16().find(texte) != std::u16string::npos) return true;
        return false;
    }

    void clique(NSView* v, NSPoint ici, int fois = 1) const {
        // The press and the release at once: a control follows the pointer in a loop of its own.
        const NSPoint p = fenetre()->convertBaseToScreen(v->convertPoint_toView(ici, nullptr));
        for (int i = 0; i < fois; ++i)
            windows().click(p);
        drain();
    }
    void clique(NSView* v) const { clique(v, {NSMidX(v->bounds()), NSMidY(v->bounds())}); }
    void tape(std::u16string_view texte) const {
        windows().typeText(texte);
        drain();
    }
    void touche(char16_t c, std::uint32_t modificateurs = 0) const {
        windows().key(c, modificateurs);
        drain();
    }
    /// All that the field holds, by hand.
    void remplace(NSTextField* champ, std::u16string_view texte) const {
        clique(champ);
        touche(u'a', kCommande);
        tape(texte);
    }
    static void choisis(NSPopUpButton* p, NSInteger i) {
        p->selectItemAtIndex(i);
        p->sendAction_to(p->action(), p->target());
        drain();
    }
};

} // namespace galerie

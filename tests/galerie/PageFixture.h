#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "../appkit/AppFixture.h"

#include <FenetreGalerie.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSTextField.h>

namespace galerie {

/// The gallery's window in memory, showing the page of that name.
struct PageFixture : libvue::test::AppFixture {
    Ref<FenetreGalerie> galerie = make<FenetreGalerie>(RegistrePages::fabriqueToutes());

    explicit PageFixture(std::u16string_view page) {
        galerie->ouvre();
        for (NSUInteger i = 0; i < galerie->pages().size(); ++i)
            if (galerie->pages()[i]->nom()->isEqualTo(page)) galerie->montrePage(i);
        drain();
    }
    void TearDown() override {
        galerie = nullptr;
        setCurrentAppearance(Appearance::light);
        AppFixture::TearDown();
    }

    [[nodiscard]] NSWindow* fenetre() const { return galerie->fenetre(); }
    template <class T> void rassemble(NSView* dans, std::vector<T*>& toutes) const {
        if (!dans) return;
        if (auto* t = as<T>(dans)) toutes.push_back(t);
        for (NSView* v : dans->subviews())
            rassemble(v, toutes);
    }
    template <class T> [[nodiscard]] std::vector<T*> toutes() const {
        std::vector<T*> t;
        rassemble(fenetre()->contentView(), t);
        return t;
    }
    template <class T> [[nodiscard]] T* nommee(const char16_t* nom) const {
        for (T* t : toutes<T>()) {
            const auto d = t->accessibilityDescription();
            if (d.label && d.label->isEqualTo(nom)) return t;
        }
        return nullptr;
    }
    [[nodiscard]] NSButton* boutonDeTitre(const char16_t* titre) const {
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

    void clique(NSView* v, NSPoint ici, int fois = 1) {
        const NSPoint p = fenetre()->convertBaseToScreen(v->convertPoint_toView(ici, nullptr));
        for (int i = 0; i < fois; ++i)
            windows().click(p);
        drain();
    }
    void clique(NSView* v) { clique(v, {NSMidX(v->bounds()), NSMidY(v->bounds())}); }
    void tape(std::u16string_view texte) {
        windows().typeText(texte);
        drain();
    }
    void touche(char16_t c, std::uint32_t modificateurs = 0) {
        windows().key(c, modificateurs);
        drain();
    }
};

} // namespace galerie

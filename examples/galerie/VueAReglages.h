#pragma once

#include <functional>
#include <initializer_list>

#include <Actions.h>
#include <Composition.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSScrollView.h>

namespace galerie {

/// A page of three parts: a sheet at the left, a list that scrolls below it, and settings at the right, which scroll
/// too.
class VueAReglages : public NSView {
public:
    static void describe(ClassDescription<VueAReglages, NSView>&) {}

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    void resizeSubviewsWithOldSize(const NSSize& oldSize) override;
    /// The list's ground. The sheet's is up to the page.
    void drawRect(const NSRect& dirtyRect) override;

protected:
    static constexpr CGFloat kLargeurReglages = 232;

    /// The height of the list, and the width of what the settings are called, in points.
    VueAReglages(CGFloat hauteurListe, CGFloat largeurIntitules);

    // The keys go through what was added first.

    void ajouteListe(NSView* document);
    void ajouteReglages(NSView* contenu);
    /// Where the sheet is, in the page.
    [[nodiscard]] NSRect feuille() const;

    // Controls for the settings, at the width that they have there.

    [[nodiscard]] NSObject* agis(Actions::Fonction f) { return actions_.cible(std::move(f)); }
    [[nodiscard]] Ref<NSButton> bouton(NSString* titre, Actions::Fonction f);
    [[nodiscard]] Ref<NSButton> coche(NSString* titre, BOOL cochee, std::function<void(BOOL)> f);
    /// `f` may be empty.
    [[nodiscard]] Ref<NSPopUpButton> choix(NSString* nom, std::initializer_list<Ref<NSString>> titres,
                                           NSInteger choisi = 0, std::function<void(NSInteger)> f = nullptr);
    [[nodiscard]] CGFloat largeurReglage() const noexcept { return kLargeurReglages - largeurIntitules_ - kEcart; }
    [[nodiscard]] Ref<NSView> ligne(NSString* nom, const Ref<NSView>& reglage) const;

private:
    CGFloat hauteurListe_, largeurIntitules_;
    Actions actions_;
    Ref<NSScrollView> liste_, reglages_;
};

} // namespace galerie

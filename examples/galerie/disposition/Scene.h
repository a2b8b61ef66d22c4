#pragma once

#include <functional>
#include <vector>

#include <disposition/Cadre.h>
#include <disposition/Feuilles.h>

namespace galerie {

/// Counts what one change costs: the passes of all the layout views, and the display passes of their window, up to the
/// next turn of the run loop.
struct ComptePasses {
    NSUInteger dispositions = 0, affichages = 0;
    NSUInteger dispositionsEnTout = 0, affichagesEnTout = 0;
};

/// The tree that the page lays out, and what is chosen in it. A click chooses; so do the arrows: up to the frame
/// around, down into a frame, left and right among neighbours.
class Scene : public NSView, public KCLayoutViewDelegate {
public:
    static void describe(ClassDescription<Scene, NSView>& c);
    Scene();
    ~Scene() override;

    /// Another view is chosen, or the tree is another one.
    std::function<void()> surChoix;
    /// The chosen one has been changed here, by its own text field.
    std::function<void()> surTexte;
    std::function<void()> surCompte;

    /// A leaf or a frame.
    [[nodiscard]] NSView* choisie() const { return choisie_; }
    void choisit(NSView* vue);
    /// The chosen frame, or the one around the chosen leaf.
    [[nodiscard]] Cadre* conteneur() const;
    [[nodiscard]] Cadre* racine() const noexcept { return racine_; }
    /// All the frames, each before those inside it.
    [[nodiscard]] std::vector<Cadre*> cadres() const;
    /// After the last child of the container.
    void ajoute(NSView* vue);
    /// The chosen view, not the outermost frame; what stands beside it is chosen next.
    void retire();
    void prendsLeClavier();
    /// Starts counting: what happened before the first change is not counted.
    void noteChangement();
    [[nodiscard]] const ComptePasses& compte() const noexcept { return compte_; }
    /// How large the scene must be to show everything.
    void setPlace(NSSize place);

    void effectueLayout(KCLayoutView*) override {}
    void didLayout(KCLayoutView* vue);

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    [[nodiscard]] BOOL acceptsFirstResponder() override { return YES; }
    BOOL becomeFirstResponder() override;
    BOOL resignFirstResponder() override;
    [[nodiscard]] BOOL mouseDownCanMoveWindow() const override { return NO; }
    void keyDown(NSEvent* e) override;
    void mouseDown(NSEvent* e) override;
    [[nodiscard]] AccessibilityDescription accessibilityDescription() const override;

private:
    void racineAChange();
    void finDuTour();
    void adopte(NSView* vue);
    void delaisse(NSView* vue);
    void parcours(Cadre* c, std::vector<Cadre*>& dans) const;

    Ref<Cadre> racine_;
    Ref<NSView> marques_;
    Weak<NSView> choisie_;
    ComptePasses compte_, enCours_;
    NSUInteger affichagesAuDebut_ = 0;
    NSSize place_;
    bool compteActif_ = false, tourOuvert_ = false;
};

} // namespace galerie

#pragma once

#include <functional>
#include <string_view>

#include <dossier/BarreTravail.h>
#include <libvue/layout/KCFlippedView.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSTextField.h>

namespace galerie {

/// Names a folder, and says what is being done with it: its path, and below it how far a long work has come, with a
/// button that ends it.
class BarreDossier : public KCFlippedView {
public:
    static void describe(ClassDescription<BarreDossier, KCFlippedView>& c);
    BarreDossier();

    /// The path that was typed, or null for the landscapes.
    std::function<void(NSString*)> surLecture;
    std::function<void()> surAnnulation;

    void setChemin(NSString* chemin) { chemin_->setStringValue(chemin); }
    void setTravaille(bool travaille);
    [[nodiscard]] BarreTravail* travail() const noexcept { return travail_; }
    void dis(std::u16string_view texte);
    [[nodiscard]] NSString* etat() const { return dit_; }

    void resizeSubviewsWithOldSize(const NSSize& ancienne) override;

private:
    void lis(NSObject*);
    void paysages(NSObject*);
    void annule(NSObject*);
    void place();

    Ref<NSTextField> titre_, chemin_, etat_;
    Ref<NSString> dit_;
    Ref<NSButton> lire_, paysages_, annuler_;
    Ref<BarreTravail> travail_;
};

} // namespace galerie

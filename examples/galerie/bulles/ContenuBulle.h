#pragma once

#include <Actions.h>
#include <libvue/layout/KCFlippedView.h>
#include <libvue/layout/KCLayoutView.h>
#include <libvue/layout/KCLayoutViewDelegate.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/appkit/NSViewController.h>

namespace galerie {

/// What the balloons of the page show: a field, and buttons that have the balloon grow, carry another one, and close.
/// It wants another size by itself, and says so.
class ContenuBulle : public NSViewController, public TaillePreferee {
public:
    static void describe(ClassDescription<ContenuBulle, NSViewController>&) {}
    ContenuBulle(NSString* titre, Actions::Fonction autreBulle, Actions::Fonction ferme);

    void loadView() override;
    [[nodiscard]] NSSize donneTailleIdeale() override;
    /// Where the keys go in a balloon that was opened by keyboard.
    [[nodiscard]] NSView* premier() const noexcept { return champ_; }

private:
    void change(int lignes);
    void place();

    Actions actions_;
    Actions::Fonction autreBulle_, ferme_;
    Ref<NSTextField> entete_, legende_, champ_;
    Ref<NSButton> plus_, moins_;
    Ref<NSView> boutons_;
    std::vector<Ref<NSTextField>> lignes_;
};

} // namespace galerie

#pragma once

#include <vector>

#include <PageGalerie.h>
#include <libvue/platform/graphics/Appearance.h>

namespace galerie {

using namespace libvue;

class ListePages;

/// The look that a person chooses: the desktop's, or always the same.
enum class ChoixApparence : NSInteger { automatique = 0, clair = 1, sombre = 2 };

/// The window of the gallery: the list of the pages, the page that was chosen, and the choice of the look.
class FenetreGalerie : public NSObject {
public:
    static void describe(ClassDescription<FenetreGalerie>& c);
    explicit FenetreGalerie(std::vector<Ref<PageGalerie>> pages);
    ~FenetreGalerie() override;

    [[nodiscard]] NSWindow* fenetre() const;
    [[nodiscard]] const std::vector<Ref<PageGalerie>>& pages() const noexcept { return pages_; }
    [[nodiscard]] NSUInteger indiceDePage() const noexcept { return indice_; }
    /// Out of range is ignored.
    void montrePage(NSUInteger indice);
    void setApparence(ChoixApparence choix);
    [[nodiscard]] ChoixApparence apparence() const noexcept { return apparence_; }
    /// The look of the desktop, for a desktop that has none: what the automatic choice follows.
    void setBureau(Appearance bureau);
    void ouvre();
    /// The whole content as PNG, as the window shows it.
    [[nodiscard]] Ref<NSData> image(CGFloat echelle);

private:
    void construitContenu();
    void construitMenu();
    void appliqueApparence();
    void apparenceChoisie(NSObject* emetteur);
    void pageDuMenu(NSObject* emetteur);
    void bureauAChange(NSNotification* n);
    void annule(NSObject* emetteur);

    std::vector<Ref<PageGalerie>> pages_;
    Ref<NSWindow> fenetre_;
    Ref<ListePages> liste_;
    Ref<NSView> zone_;
    Ref<NSTextField> titre_, resume_;
    std::vector<Ref<NSButton>> boutonsApparence_;
    NSUInteger indice_ = NSNotFound;
    ChoixApparence apparence_ = ChoixApparence::automatique;
    Appearance bureau_;
};

} // namespace galerie

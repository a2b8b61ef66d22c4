#pragma once

#include <string>

#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/graphics/NSImage.h>

namespace galerie {

using namespace libvue;

class ReserveVignettes;

/// A file of a folder, as an object of the grid. It has its thumbnail only while a card shows it.
class FichierImage : public NSObject {
public:
    static void describe(ClassDescription<FichierImage>& c);
    enum class Etat : unsigned char { absente, attendue, prete, illisible };

    /// The reserve gives its thumbnail.
    FichierImage(std::string chemin, ReserveVignettes* reserve);
    ~FichierImage() override;
    [[nodiscard]] ReserveVignettes* reserve() const noexcept { return reserve_; }
    [[nodiscard]] const std::string& chemin() const noexcept { return chemin_; }
    [[nodiscard]] Ref<NSString> nom() const;
    [[nodiscard]] BOOL estChoisi() const noexcept { return choisi_; }
    void setSelected(BOOL choisi);

    Ref<NSImage> vignette;
    Weak<NSView> carte; ///< the one that shows it
    std::uint64_t ticket = 0;
    Etat etat = Etat::absente;

private:
    std::string chemin_;
    Ref<ReserveVignettes> reserve_;
    BOOL choisi_ = NO;
};

} // namespace galerie

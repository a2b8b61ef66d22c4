#pragma once

#include <vector>

#include <Actions.h>
#include <bulles/Montreur.h>
#include <libvue/popover/PanelBorderLess.h>

namespace galerie {

/// Eight small panels with an anchor each, at the edges and in the corners of the screen.
class AncresEcran {
public:
    explicit AncresEcran(Montreur& montreur) : montreur_(montreur) {}
    ~AncresEcran() { cache(); }
    AncresEcran(const AncresEcran&) = delete;
    AncresEcran& operator=(const AncresEcran&) = delete;

    void montre(const NSScreen* ecran);
    void cache();

private:
    Montreur& montreur_;
    Actions actions_;
    std::vector<Ref<PanelBorderLess>> panneaux_;
};

} // namespace galerie

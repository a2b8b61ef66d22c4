#pragma once

#include <PageGalerie.h>
#include <libvue/layout/KCLayoutView.h>

namespace galerie {

/// A page that is one composition at its natural size, in the upper left corner.
class PageComposee : public PageGalerie {
public:
    static void describe(ClassDescription<PageComposee, PageGalerie>&) {}
    /// That of the composition, once it was made.
    [[nodiscard]] NSSize tailleMin() const override { return taille_; }

protected:
    [[nodiscard]] virtual Ref<KCLayoutView> compose() = 0;
    Ref<NSView> construitVue() override;

private:
    NSSize taille_{560, 400};
};

/// A page whose composition is the `vue()` of an object that ties it together, and that lives as long as the page.
template <class Panneau> class PageDe : public PageComposee {
protected:
    Ref<KCLayoutView> compose() override {
        panneau_ = make<Panneau>();
        return panneau_->vue();
    }

private:
    Ref<Panneau> panneau_;
};

} // namespace galerie

// Dossier: the pictures of a folder in the recycling grid, their thumbnails loaded as they come into view.
#include <algorithm>

#include <Composition.h>
#include <PageGalerie.h>
#include <dossier/VueDossier.h>

namespace galerie {

namespace {

/// The margins of a page round it.
class Marges : public KCFlippedView {
public:
    static void describe(ClassDescription<Marges, KCFlippedView>&) {}
    explicit Marges(NSView* dedans) : KCFlippedView(NSZeroRect), dedans_(dedans) { addSubview(dedans); }
    void resizeSubviewsWithOldSize(const NSSize&) override {
        const NSSize t = bounds().size;
        dedans_->setFrame({{kMarge, 4}, {std::max(0.0, t.width - 2 * kMarge), std::max(0.0, t.height - 4 - kMarge)}});
    }

private:
    Ref<NSView> dedans_;
};

class PageDossier : public PageGalerie {
public:
    static void describe(ClassDescription<PageDossier, PageGalerie>&) {}
    [[nodiscard]] Ref<NSString> nom() const override { return u"Dossier d’images"_ns; }
    [[nodiscard]] Ref<NSString> resume() const override {
        return u"Une grille dont les vignettes se chargent en venant à l’écran et s’oublient en le quittant."_ns;
    }
    [[nodiscard]] NSSize tailleMin() const override { return {560, 360}; }
    void attends() override {
        if (vue_) vue_->attends();
    }

protected:
    [[nodiscard]] Ref<NSView> construitVue() override {
        vue_ = make<VueDossier>();
        return make<Marges>(vue_);
    }

private:
    Ref<VueDossier> vue_;
};

const InscriptionPage<PageDossier> inscription{55};

} // namespace

} // namespace galerie

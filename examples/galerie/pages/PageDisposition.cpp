// A tree of layout views, and the controls that change it while it lives.
#include <algorithm>

#include <Composition.h>
#include <PageGalerie.h>
#include <disposition/Inspecteur.h>
#include <disposition/Scene.h>
#include <libvue/layout/KCFlippedView.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSScroller.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/Palette.h>

namespace galerie {

namespace {

constexpr CGFloat kHaut = 4, kLegende = 18;

/// A small square of one of the colours that mark the gaps.
class Echantillon : public NSView {
public:
    static void describe(ClassDescription<Echantillon, NSView>&) {}
    Echantillon(NSColor* couleur, CGFloat alpha) : NSView(NSMakeRect(0, 0, 10, 10)), couleur_(couleur), alpha_(alpha) {}
    void drawRect(const NSRect&) override {
        couleur_->colorWithAlphaComponent(alpha_)->setFill();
        NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(bounds(), 2, 2)->fill();
    }

private:
    Ref<NSColor> couleur_;
    CGFloat alpha_;
};

/// The scene on a sheet at the left, as wide as it can be; the inspector at the right. Both scroll.
class VueDisposition : public NSView {
public:
    static void describe(ClassDescription<VueDisposition, NSView>&) {}
    VueDisposition()
        : scene_(make<Scene>()),
          inspecteur_(make<Inspecteur>(*scene_)),
          feuille_(make<NSScrollView>(NSZeroRect)),
          cote_(make<NSScrollView>(NSZeroRect)) {
        for (NSScrollView* d : {feuille_.get(), cote_.get()}) {
            d->setDrawsBackground(NO);
            d->setHasVerticalScroller(YES);
            addSubview(d);
        }
        feuille_->setHasHorizontalScroller(YES);
        feuille_->setDocumentView(scene_);
        legende_ = rangee({make<Echantillon>(NSColor::controlAccentColor(), 0.3), legende(u"Espacement"_ns),
                           make<Echantillon>(NSColor::systemColor(SystemColor::warning), 0.9),
                           legende(u"Trois points de plus entre un champ et la boîte qui le suit"_ns)},
                          6);
        addSubview(legende_);
        cote_->setDocumentView(inspecteur_->vue());
    }

    [[nodiscard]] BOOL isFlipped() const override { return YES; }

    void resizeSubviewsWithOldSize(const NSSize&) override {
        const NSSize t = bounds().size;
        const CGFloat barre = NSScroller::scrollerWidth();
        const CGFloat droite = Inspecteur::kLargeur + barre;
        const CGFloat haut = std::max(0.0, t.height - kHaut - kMarge);
        legende_->setFrameOrigin({kMarge, NSMaxY(rectFeuille()) + 8});
        legende_->setHidden(legende_->frame().size.width > rectFeuille().size.width);
        cote_->setFrame(NSMakeRect(t.width - kMarge - droite + barre, kHaut, droite, haut));
        feuille_->setFrame(NSInsetRect(rectFeuille(), 1, 1));
        scene_->setPlace(NSInsetRect(rectFeuille(), 1, 1).size);
    }

    void drawRect(const NSRect&) override { dessineFeuille(rectFeuille()); }

private:
    [[nodiscard]] NSRect rectFeuille() const {
        const NSSize t = bounds().size;
        return NSMakeRect(kMarge, kHaut, std::max(0.0, t.width - 3 * kMarge - Inspecteur::kLargeur),
                          std::max(0.0, t.height - kHaut - kMarge - kLegende));
    }

    Ref<Scene> scene_;
    Ref<Inspecteur> inspecteur_;
    Ref<NSScrollView> feuille_, cote_;
    Ref<NSView> legende_;
};

} // namespace

class PageDisposition : public PageGalerie {
public:
    static void describe(ClassDescription<PageDisposition, PageGalerie>&) {}
    [[nodiscard]] Ref<NSString> nom() const override { return u"Disposition"_ns; }
    [[nodiscard]] Ref<NSString> resume() const override {
        return u"Des vues imbriquées se placent d’elles-mêmes. Cliquez-en une, ou parcourez l’arbre avec les flèches."_ns;
    }
    [[nodiscard]] NSSize tailleMin() const override { return {516, 240}; }

protected:
    Ref<NSView> construitVue() override { return make<VueDisposition>(); }
};

namespace {
const InscriptionPage<PageDisposition> inscription{10};
} // namespace

} // namespace galerie

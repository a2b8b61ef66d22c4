#include <bulles/Avis.h>

#include <cmath>

#include <Composition.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/popover/FadingWindowController.h>
#include <libvue/popover/PanelBorderLess.h>

namespace galerie {

namespace {

constexpr CGFloat kMargeX = 26, kMargeY = 16, kTaille = 17, kRayon = 14;
constexpr NSTimeInterval kDuree = 1.2;

class VueAvis : public NSView {
public:
    static void describe(ClassDescription<VueAvis, NSView>&) {}
    using NSView::NSView;
    void drawRect(const NSRect&) override {
        NSColor::colorWithCalibratedWhite_alpha(0.12, 0.86)->setFill();
        NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(bounds(), kRayon, kRayon)->fill();
    }
};

} // namespace

void montreAvis(NSWindow* devant, NSString* texte) {
    const auto dit = etiquette(texte);
    dit->setFont(NSFont::boldSystemFontOfSize(kTaille));
    dit->setTextColor(NSColor::whiteColor());
    dit->sizeToFit();
    const NSSize t{std::ceil(dit->frame().size.width) + 2 * kMargeX, std::ceil(dit->frame().size.height) + 2 * kMargeY};
    const NSRect f = devant->frame();
    const auto panneau = make<PanelBorderLess>(NSMakeRect(
        std::round(NSMidX(f) - t.width / 2), std::round(NSMinY(f) + f.size.height * 0.22), t.width, t.height));
    const auto fond = make<VueAvis>(NSMakeRect(0, 0, t.width, t.height));
    dit->setFrameOrigin({kMargeX, kMargeY});
    fond->addSubview(dit);
    panneau->setContentView(fond);
    panneau->setBackgroundColor(NSColor::clearColor());
    panneau->setBecomesKeyOnlyIfNeeded(YES);
    panneau->setIgnoresMouseEvents(YES);
    panneau->setFloatingPanel(YES);
    panneau->setAlphaValue(0);
    // The notice keeps itself until it has gone.
    const auto avis = make<FadingWindowController>(panneau);
    avis->setAutomaticallyFadesOut(YES);
    avis->setDisplayTime(kDuree);
    panneau->orderFront(nullptr);
    avis->startFadeIn();
}

} // namespace galerie

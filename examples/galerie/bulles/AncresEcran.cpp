#include <bulles/AncresEcran.h>

#include <cmath>

#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/graphics/NSColor.h>

namespace galerie {

namespace {

constexpr NSSize kTaille{44, 32};
constexpr CGFloat kEcart = 6;
constexpr std::u16string_view kNoms[3][3] = {{u"↙", u"↓", u"↘"}, {u"←", u"", u"→"}, {u"↖", u"↑", u"↗"}};

} // namespace

void AncresEcran::montre(const NSScreen* ecran) {
    if (!panneaux_.empty() || !ecran) return;
    const NSRect v = NSInsetRect(ecran->visibleFrame(), kEcart, kEcart);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x) {
            if (x == 1 && y == 1) continue;
            const NSRect r{{std::round(NSMinX(v) + (v.size.width - kTaille.width) * x / 2),
                            std::round(NSMinY(v) + (v.size.height - kTaille.height) * y / 2)},
                           kTaille};
            const auto p = make<PanelBorderLess>(r);
            p->setBackgroundColor(NSColor::clearColor());
            p->setFloatingPanel(YES);
            const auto b = NSButton::buttonWithTitle_target_action(
                NSString::from(kNoms[y][x]), actions_.cible([this](NSObject* e) { montreur_.montre(as<NSView>(e)); }),
                Actions::selecteur());
            b->setAccessibilityLabel(u"Bulle au bord de l’écran"_ns);
            b->setFrame(NSMakeRect(2, 4, kTaille.width - 4, kTaille.height - 8));
            p->contentView()->addSubview(b);
            p->orderFront(nullptr);
            panneaux_.push_back(p);
        }
}

void AncresEcran::cache() {
    for (const Ref<PanelBorderLess>& p : std::exchange(panneaux_, {}))
        p->close();
    actions_ = {};
}

} // namespace galerie

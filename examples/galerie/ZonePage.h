#pragma once

#include <libvue/platform/appkit/NSScrollView.h>

namespace galerie {

using namespace libvue;

/// Shows one page: as large as the room, and scrolled where the room is smaller than the page can be.
class ZonePage : public NSView {
public:
    static void describe(ClassDescription<ZonePage, NSView>&) {}
    ZonePage();

    void montre(NSView* page, NSSize tailleMin);

    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    void resizeSubviewsWithOldSize(const NSSize& oldSize) override;

private:
    void place();

    Ref<NSScrollView> defilement_;
    NSSize tailleMin_;
};

} // namespace galerie

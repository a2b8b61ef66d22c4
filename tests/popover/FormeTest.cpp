#include <popover/PopoverFixture.h>

#include <libvue/platform/graphics/PathGeometry.h>

using namespace libvue;
using namespace libvue::test;

namespace {

class FormeTest : public PopoverFixture {};

TEST_F(FormeTest, WithoutACompositorABalloonIsCutToItsOutline) {
    windows().setCompositor(false);
    const Ref<KCPopover> p = bulle();
    montre(p);
    const auto& w = native(p->panel());
    ASSERT_TRUE(w.hasShape);
    const auto dedans = [&](CGFloat x, CGFloat y) {
        return outline::contains(w.shape, {x, y}, backend::FillRule::nonZero);
    };
    const NSSize s = p->panel()->frame().size;
    EXPECT_TRUE(dedans(s.width / 2, s.height / 2));
    EXPECT_TRUE(dedans(s.width / 2, 4)); // the arrow
    EXPECT_FALSE(dedans(s.width / 2 - 20, 4));
    EXPECT_FALSE(dedans(3, s.height / 2));
    EXPECT_FALSE(dedans(11, s.height - 11)); // a corner
    p->decrochePopover();
    drain();
    EXPECT_FALSE(w.hasShape);
    ferme(p);
}

TEST_F(FormeTest, WithACompositorItIsBlended) {
    const Ref<KCPopover> p = bulle();
    montre(p);
    EXPECT_FALSE(native(p->panel()).hasShape);
    ferme(p);
}

} // namespace

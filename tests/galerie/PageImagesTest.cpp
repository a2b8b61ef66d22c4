// The page of images, as a person uses it.
#include "PageFixture.h"

#include <images/VignetteTirable.h>
#include <libvue/platform/graphics/NSImage.h>

namespace galerie {
namespace {

struct PageImagesTest : PageFixture {
    VignetteTirable* vignette;

    PageImagesTest() : PageFixture(u"Images"), vignette(toutes<VignetteTirable>().back()) {}
    void TearDown() override {
        NSObject::cancelPreviousPerformRequestsWithTarget(vignette);
        PageFixture::TearDown();
    }
    /// In fractions of the picture, y downward.
    [[nodiscard]] NSPoint en(CGFloat x, CGFloat y) const {
        const NSRect b = vignette->bounds();
        const NSPoint p{x * b.size.width, (vignette->isFlipped() ? y : 1 - y) * b.size.height};
        return vignette->convertPoint_toView(p, nullptr);
    }
    void tire(NSPoint de, NSPoint a) {
        press(fenetre(), de.x, de.y);
        move(fenetre(), (de.x + a.x) / 2, (de.y + a.y) / 2);
        move(fenetre(), a.x, a.y);
        release();
    }
};

TEST_F(PageImagesTest, aDragTracesARegionAndAnotherMovesIt) {
    tire(en(0.1, 0.1), en(0.4, 0.35));
    EXPECT_NEAR(vignette->region().origin.x, 0.1, 0.01);
    EXPECT_NEAR(vignette->region().origin.y, 0.1, 0.01);
    EXPECT_NEAR(vignette->region().size.width, 0.3, 0.01);
    EXPECT_NEAR(vignette->region().size.height, 0.25, 0.01);
    const Ref<NSImage> premiere = vignette->image();
    pass(0.1);
    EXPECT_NE(vignette->image(), premiere.get()) << "the fade runs";
    pass(1);

    tire(en(0.2, 0.2), en(0.5, 0.6));
    EXPECT_NEAR(vignette->region().origin.x, 0.4, 0.01);
    EXPECT_NEAR(vignette->region().origin.y, 0.5, 0.01);
    EXPECT_NEAR(vignette->region().size.width, 0.3, 0.01);
    // Past the edges it stays whole and inside.
    tire(en(0.5, 0.6), en(0.99, 0.99));
    EXPECT_NEAR(NSMaxX(vignette->region()), 1, 1e-9);
    EXPECT_NEAR(NSMaxY(vignette->region()), 1, 1e-9);
    // A click alone leaves it as it is.
    const NSRect avant = vignette->region();
    const NSPoint p = en(0.1, 0.1);
    click(fenetre(), p.x, p.y);
    EXPECT_EQ(vignette->region(), avant);
}

} // namespace
} // namespace galerie

#include <appkit/Cible.h>

#include <graphics/Dessin.h>

#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/appkit/NSTextFieldCell.h>
#include <libvue/platform/appkit/ThemeDessin.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSNumberFormatter.h>
#include <libvue/platform/graphics/NSColor.h>

using namespace libvue;
using namespace libvue::test;

namespace {

class CellTest : public AppFixture {};

TEST_F(CellTest, OneValueSeenInSeveralWays) {
    const auto c = make<NSCell>(u"12.5 km"_ns.get());
    EXPECT_EQ(c->integerValue(), 12);
    EXPECT_DOUBLE_EQ(c->doubleValue(), 12.5);
    c->setIntegerValue(7);
    EXPECT_EQ(c->stringValue()->utf8(), "7");
    c->setObjectValue(nullptr);
    EXPECT_EQ(c->stringValue()->utf8(), "");
    EXPECT_EQ(c->integerValue(), 0);
    EXPECT_FALSE(c->hasValidObjectValue());
    c->setStringValue(nullptr);
    EXPECT_TRUE(c->stringValue());
}

TEST_F(CellTest, TheNaturalSizeHoldsTheText) {
    const auto c = make<NSTextFieldCell>(u"Un texte assez long pour deux lignes"_ns.get());
    const NSSize whole = c->cellSize();
    c->setWraps(YES);
    const NSSize wrapped = c->cellSizeForBounds({{0, 0}, {whole.width / 2 + 20, 1000}});
    EXPECT_LE(wrapped.width, whole.width / 2 + 20);
    EXPECT_GT(wrapped.height, whole.height * 1.5);
    c->setWraps(NO);
    c->setBezeled(YES);
    EXPECT_EQ(c->cellSize().height, theme::controlHeight(NSRegularControlSize));
    EXPECT_GT(c->cellSize().width, whole.width);
    c->setControlSize(NSSmallControlSize);
    EXPECT_LT(c->cellSize().height, theme::controlHeight(NSRegularControlSize));
}

TEST_F(CellTest, ArchivesAndCopiesKeepIt) {
    const auto c = make<NSTextFieldCell>(u"été"_ns.get());
    c->setEditable(YES);
    c->setEnabled(NO);
    c->setBezeled(YES);
    c->setDrawsBackground(YES);
    c->setAlignment(NSRightTextAlignment);
    c->setPlaceholderString(u"vide"_ns);
    c->setControlSize(NSSmallControlSize);
    for (const Ref<NSTextFieldCell>& d :
         {throughKeyedArchive(*c), Ref<NSTextFieldCell>(as<NSTextFieldCell>(c->copyWithZone().get()))}) {
        ASSERT_TRUE(d);
        EXPECT_EQ(d->stringValue()->utf8(), "été");
        EXPECT_TRUE(d->isEditable() && d->isSelectable() && d->isBezeled() && d->drawsBackground());
        EXPECT_FALSE(d->isEnabled());
        EXPECT_EQ(d->alignment(), NSRightTextAlignment);
        EXPECT_EQ(d->placeholderString()->utf8(), "vide");
        EXPECT_EQ(d->controlSize(), NSSmallControlSize);
    }
    const auto b = make<NSButtonCell>(u"Fin"_ns.get());
    b->setButtonType(NSSwitchButton);
    b->setAllowsMixedState(YES);
    b->setState(NSMixedState);
    b->setKeyEquivalent(u"f"_ns);
    const auto back = throughKeyedArchive(*b);
    ASSERT_TRUE(back);
    EXPECT_TRUE(back->isCheckBox());
    EXPECT_EQ(back->state(), NSMixedState);
    EXPECT_EQ(back->title()->utf8(), "Fin");
    EXPECT_EQ(back->keyEquivalent()->utf8(), "f");
}

TEST_F(CellTest, ADisabledTextIsPale) {
    const auto f = NSTextField::labelWithString(u"abc"_ns);
    const auto colorOf = [&] {
        Enregistrement r({200, 40});
        f->cell()->drawWithFrame_inView(f->bounds(), f);
        for (const auto& o : r.canvas.operations())
            if (o.kind == backend::RecordingCanvas::Kind::text) return o.color;
        return backend::Color{-1, -1, -1, -1};
    };
    const auto is = [](const backend::Color& c, NSColor* wanted) {
        const auto w = wanted->colorUsingColorSpaceName(NSDeviceRGBColorSpace);
        return std::abs(c.red - w->redComponent()) < 0.01 && std::abs(c.alpha - w->alphaComponent()) < 0.01;
    };
    EXPECT_TRUE(is(colorOf(), NSColor::labelColor()));
    f->setEnabled(NO);
    EXPECT_TRUE(is(colorOf(), NSColor::disabledControlTextColor()));
}

TEST_F(CellTest, EdgesLieOnWholePixels) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        Enregistrement r({100, 40}, NO, scale);
        const NSRect a = alignedToPixels({{3.3, 4.6}, {50.2, 21.7}});
        for (const CGFloat edge : {NSMinX(a), NSMinY(a), NSMaxX(a), NSMaxY(a)})
            EXPECT_NEAR(edge * scale, std::round(edge * scale), 1e-9) << scale;
        EXPECT_NEAR(fineLine() * scale, std::round(fineLine() * scale), 1e-9) << scale;
        EXPECT_GT(fineLine(), 0.5);
    }
}

} // namespace

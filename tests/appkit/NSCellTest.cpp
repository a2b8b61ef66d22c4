#include <appkit/AppFixture.h>

#include <graphics/Dessin.h>

#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/appkit/NSTextFieldCell.h>
#include <libvue/platform/appkit/ThemeDrawing.h>
#include <libvue/platform/graphics/NSColor.h>

using namespace libvue;
using namespace libvue::test;

namespace {

using CellTest = AppFixture;

TEST_F(CellTest, OneValueSeenInSeveralWays) {
    const auto c = make<NSCell>(u"12.5 km"_ns.get());
    EXPECT_EQ(c->integerValue(), 12);
    EXPECT_DOUBLE_EQ(c->doubleValue(), 12.5);
    c->setIntegerValue(7);
    EXPECT_EQ(c->stringValue()->utf8(), "7");
    c->setObjectValue(nullptr);
    EXPECT_EQ(c->stringValue()->utf8(), "");
    EXPECT_EQ(c->integerValue(), 0);
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

TEST_F(CellTest, WhatChangesItsLooksDrawsItsControlAnew) {
    const auto w = windowAt({{100, 100}, {200, 100}});
    const auto b = make<NSButton>(NSMakeRect(10, 10, 100, 24));
    w->contentView()->addSubview(b);
    show(w);
    NSButtonCell& c = *b->buttonCell();
    int row = 0;
    for (const std::function<void()>& change : std::initializer_list<std::function<void()>>{
             [&] { c.setAlignment(NSRightTextAlignment); }, [&] { c.setLineBreakMode(NSLineBreakByTruncatingHead); },
             [&] { c.setWraps(YES); }, [&] { c.setBordered(NO); }, [&] { c.setBezeled(YES); },
             [&] { c.setTitle(u"autre"_ns); }, [&] { w->setDefaultButtonCell(&c); },
             [&] { w->setDefaultButtonCell(nullptr); }, [&] { c.setState(NSOnState); },
             [&] { c.setFont(NSFont::boldSystemFontOfSize(9)); }, [&] { c.setControlSize(NSMiniControlSize); }}) {
        EXPECT_FALSE(b->needsDisplay()) << row;
        change();
        EXPECT_TRUE(b->needsDisplay()) << row++;
        drain();
    }
}

TEST_F(CellTest, ADisabledTextIsPale) {
    const auto f = NSTextField::labelWithString(u"abc"_ns);
    for (const BOOL enabled : {YES, NO}) {
        f->setEnabled(enabled);
        Enregistrement r({200, 40});
        f->cell()->drawWithFrame_inView(f->bounds(), f);
        const auto& drawn = r.last();
        ASSERT_EQ(drawn.kind, backend::RecordingCanvas::Kind::text);
        const auto wanted = (enabled ? NSColor::labelColor() : NSColor::disabledControlTextColor())
                                ->colorUsingColorSpaceName(NSDeviceRGBColorSpace);
        EXPECT_NEAR(drawn.color.red, wanted->redComponent(), 0.01);
        EXPECT_NEAR(drawn.color.alpha, wanted->alphaComponent(), 0.01);
    }
}

TEST_F(CellTest, EdgesLieOnWholePixels) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        Enregistrement r({100, 40}, NO, scale);
        const NSRect a = alignedToPixels({{3.3, 4.6}, {50.2, 21.7}});
        for (const CGFloat edge : {NSMinX(a), NSMinY(a), NSMaxX(a), NSMaxY(a), fineLine()})
            EXPECT_NEAR(edge * scale, std::round(edge * scale), 1e-9) << scale;
        EXPECT_GT(fineLine(), 0.5);
    }
}

} // namespace

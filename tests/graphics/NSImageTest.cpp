#include <algorithm>
#include <functional>

#include "Dessin.h"
#include <support/Folder.h>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSBundle.h>
#include <libvue/platform/foundation/NSURL.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSImage.h>

using namespace libvue;
using namespace libvue::test;

namespace {

/// Red below, blue above.
Ref<NSImage> drapeau(NSSize size = {4, 4}) {
    Ref<NSImage> image = make<NSImage>(size);
    image->lockFocus();
    NSColor::redColor()->set();
    NSRectFill({{0, 0}, {size.width, size.height / 2}});
    NSColor::blueColor()->set();
    NSRectFill({{0, size.height / 2}, {size.width, size.height / 2}});
    image->unlockFocus();
    return image;
}

std::string pixel(const NSImage& image, int x, int yFromTop) { return Pixels::hex(*image.picture(1), x, yFromTop); }

/// The path of a file of those bytes in the folder.
Ref<NSString> written(const Folder& folder, const char* name, const Ref<NSData>& data) {
    folder.write(name, data->view());
    return folder.at(name);
}

} // namespace

TEST(NSImageTest, whatIsDrawnUnderFocusStandsInTheImage) {
    const Ref<NSImage> image = drapeau();
    EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
    EXPECT_EQ(pixel(*image, 0, 0), "0000ffff");
    EXPECT_EQ(pixel(*image, 0, 3), "ff0000ff");
    // A second time adds to it.
    image->lockFocus();
    NSEraseRect({{0, 0}, {1, 1}});
    image->unlockFocus();
    EXPECT_EQ(pixel(*image, 0, 3), "00000000");
    EXPECT_EQ(pixel(*image, 1, 3), "ff0000ff");
    EXPECT_EQ(image->representations()->count(), 1u);
    image->unlockFocus(); // without a lock, nothing
}

TEST(NSImageTest, focusNestsAcrossImagesAndOnOne) {
    const Ref<NSImage> outer = make<NSImage>(NSMakeSize(4, 4));
    const Ref<NSImage> inner = make<NSImage>(NSMakeSize(4, 4));
    outer->lockFocus();
    NSColor::redColor()->set();
    inner->lockFocus();
    NSRectFill({{0, 0}, {1, 1}});
    inner->unlockFocus();
    NSRectFill({{1, 0}, {1, 1}});
    outer->lockFocus();
    NSColor::greenColor()->set();
    NSRectFill({{2, 0}, {1, 1}});
    outer->unlockFocus();
    NSRectFill({{3, 0}, {1, 1}});
    outer->unlockFocus();
    EXPECT_EQ(pixel(*inner, 0, 3), "000000ff") << "a new surface starts with black";
    EXPECT_EQ(pixel(*outer, 0, 3), "00000000");
    EXPECT_EQ(pixel(*outer, 1, 3), "ff0000ff");
    EXPECT_EQ(pixel(*outer, 2, 3), "00ff00ff");
    EXPECT_EQ(pixel(*outer, 3, 3), "ff0000ff");
}

TEST(NSImageTest, aFlippedImageIsDrawnFromItsTop) {
    const Ref<NSImage> image = make<NSImage>(NSMakeSize(4, 4));
    image->setFlipped(YES);
    image->lockFocus();
    EXPECT_TRUE(NSGraphicsContext::currentContext()->isFlipped());
    NSColor::redColor()->set();
    NSRectFill({{0, 0}, {1, 1}});
    drapeau({1, 2})->drawAtPoint_fromRect_operation_fraction({1, 4}, NSZeroRect, NSCompositeCopy, 1);
    image->unlockFocus();
    EXPECT_EQ(pixel(*image, 0, 0), "ff0000ff");
    EXPECT_EQ(pixel(*image, 1, 2), "0000ffff") << "upright, its lower edge at the point";
    EXPECT_EQ(pixel(*image, 1, 3), "ff0000ff");
    image->setFlipped(NO);
    image->lockFocus();
    NSRectFill({{3, 0}, {1, 1}});
    image->unlockFocus();
    EXPECT_EQ(pixel(*image, 3, 3), "000000ff");
}

TEST(NSImageTest, withoutASizeThereIsNothingToDrawInto) {
    for (const NSSize size : {NSSize{0, 0}, NSSize{-1, 5}, NSSize{NAN, 5}, NSSize{1e9, 1e9}}) {
        const Ref<NSImage> image = make<NSImage>(size);
        EXPECT_EQ(raised([&] { image->lockFocus(); }), NSImageCacheException->utf8());
        EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
        Enregistrement r;
        image->drawInRect({{0, 0}, {10, 10}});
        EXPECT_TRUE(r.canvas.operations().empty());
    }
}

TEST(NSImageTest, imagesStandUprightAtTheirLowerEdgeAsSeen) {
    const Ref<NSImage> image = drapeau({4, 6});
    const NSRect part{{1, 2}, {2, 3}};
    struct Row {
        BOOL flipped;
        std::function<void()> draw;
        NSRect rect, source;
        backend::YAxis axis;
    };
    using enum backend::YAxis;
    const Row rows[] = {
        {NO,
         [&] {
             image->dissolveToPoint_fraction({10, 20}, 1);
         },
         {{10, 20}, {4, 6}},
         {{0, 0}, {4, 6}},
         up},
        {YES,
         [&] {
             image->dissolveToPoint_fraction({10, 20}, 1);
         },
         {{10, 14}, {4, 6}},
         {{0, 0}, {4, 6}},
         down},
        {YES,
         [&] {
             image->drawAtPoint_fromRect_operation_fraction({10, 20}, part, NSCompositeCopy, 1);
         },
         {{10, 17}, {2, 3}},
         part,
         down},
        {NO,
         [&] {
             image->drawInRect_fromRect_operation_fraction({{1, 1}, {8, 8}}, part, NSCompositeCopy, 1);
         },
         {{1, 1}, {8, 8}},
         part,
         up},
        {YES,
         [&] {
             image->drawInRect({{1, 1}, {8, 8}});
         },
         {{1, 1}, {8, 8}},
         {{0, 0}, {4, 6}},
         down},
        {YES,
         [&] {
             image->drawInRect_fromRect_operation_fraction_respectFlipped_hints({{1, 1}, {8, 8}}, NSZeroRect,
                                                                                NSCompositeCopy, 1, NO, nullptr);
         },
         {{1, 1}, {8, 8}},
         {{0, 0}, {4, 6}},
         up},
    };
    int i = 0;
    for (const Row& row : rows) {
        Enregistrement r({100, 100}, row.flipped);
        row.draw();
        ASSERT_EQ(r.canvas.operations().size(), 1u) << i;
        EXPECT_EQ(r.last().rect, row.rect) << i;
        EXPECT_EQ(r.last().source, row.source) << i;
        EXPECT_EQ(r.last().axis, row.axis) << i;
        ++i;
    }
}

TEST(NSImageTest, compositingOperationsKeepTheirNumbers) {
    // A source of red at half strength over a destination of opaque blue, and beside it over nothing.
    struct Row {
        NSUInteger operation;
        const char* overBlue;
        const char* overNothing;
    };
    const Row rows[] = {
        {0, "00000000", "00000000"}, {1, "ff000080", "ff000080"},  {2, "80007fff", "ff000080"},
        {3, "ff000080", "00000000"}, {4, "00000000", "ff000080"},  {5, "80007fff", "00000000"},
        {6, "0000ffff", "ff000080"}, {7, "0000ff80", "00000000"},  {8, "0000ff7f", "00000000"},
        {9, "0000ff80", "ff000080"}, {10, "0000ff7f", "ff000080"}, {13, "8000ffff", "ff000080"},
    };
    const Ref<NSImage> source = make<NSImage>(NSMakeSize(2, 1));
    source->lockFocus();
    NSColor::colorWithDeviceRed_green_blue_alpha(1, 0, 0, 0.5)->set();
    NSRectFill({{0, 0}, {2, 1}});
    source->unlockFocus();
    const auto near = [](const std::string& a, const std::string& b) {
        for (std::size_t i = 0; i < 8; i += 2)
            if (std::abs(std::stoi(a.substr(i, 2), nullptr, 16) - std::stoi(b.substr(i, 2), nullptr, 16)) > 2)
                return false;
        return true;
    };
    for (const Row& row : rows) {
        Pixels p(2, 1);
        NSColor::blueColor()->set();
        NSRectFill({{0, 0}, {1, 1}});
        source->drawAtPoint_fromRect_operation_fraction({0, 0}, NSZeroRect,
                                                        static_cast<NSCompositingOperation>(row.operation), 1);
        EXPECT_TRUE(near(p.at(0, 0), row.overBlue)) << row.operation << ": " << p.at(0, 0);
        EXPECT_TRUE(near(p.at(1, 0), row.overNothing)) << row.operation << ": " << p.at(1, 0);
    }
}

TEST(NSImageTest, aCopyIsDrawnIntoByItself) {
    const Ref<NSImage> image = drapeau();
    const Ref<NSImage> copy = image->copy();
    copy->lockFocus();
    NSColor::greenColor()->set();
    NSRectFill({{0, 0}, {1, 1}});
    copy->unlockFocus();
    EXPECT_EQ(pixel(*image, 0, 3), "ff0000ff");
    EXPECT_EQ(pixel(*copy, 0, 3), "00ff00ff");
    const Ref<NSImage> second = image->copy();
    image->lockFocus();
    NSEraseRect({{0, 0}, {4, 4}});
    image->unlockFocus();
    EXPECT_EQ(pixel(*second, 0, 3), "ff0000ff");
}

TEST(NSImageTest, aNewSizeScalesWhatIsDrawn) {
    const Ref<NSImage> image = drapeau({4, 4});
    image->setSize({8, 2});
    Enregistrement r;
    image->drawAtPoint_fromRect_operation_fraction({0, 0}, {{4, 1}, {4, 1}}, NSCompositeSourceOver, 0.5);
    EXPECT_EQ(r.last().rect, (NSRect{{0, 0}, {4, 1}}));
    EXPECT_EQ(r.last().source, (NSRect{{2, 2}, {2, 2}})) << "in points of the pixels' own size";
    EXPECT_EQ(r.last().fraction, 0.5);
}

TEST(NSImageTest, aDoubledFileIsTakenWhereItIsSharper) {
    const Folder dossier;
    const Ref<NSString> path = written(dossier, "point.png", drapeau({4, 4})->PNGRepresentation());
    const Ref<NSImage> plain = NSImage::initWithContentsOfFile(path);
    EXPECT_EQ(plain->representations()->count(), 1u);
    (void)written(dossier, "point@2x.png", drapeau({8, 8})->PNGRepresentation());
    const Ref<NSImage> image = NSImage::initWithContentsOfURL(NSURL::fileURLWithPath(path));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), (NSSize{4, 4}));
    EXPECT_EQ(image->picture(1)->pixelWidth(), 4);
    EXPECT_EQ(image->picture(1.25)->pixelWidth(), 8);
    EXPECT_EQ(image->picture(2)->pixelWidth(), 8);
    EXPECT_EQ(image->picture(3)->pixelWidth(), 8);
    Enregistrement r({100, 100}, NO, 2);
    image->drawInRect({{0, 0}, {4, 4}});
    EXPECT_EQ(r.last().source, (NSRect{{0, 0}, {8, 8}}));
    const Ref<NSImage> doubled =
        NSImage::initWithContentsOfFile(path->stringByDeletingPathExtension()->stringByAppendingString(u"@2x.png"_ns));
    EXPECT_EQ(doubled->size(), (NSSize{4, 4}));
    EXPECT_EQ(NSImage::initWithContentsOfFile(u"/nowhere/at/all.png"_ns), nullptr);
    EXPECT_EQ(NSImage::initWithContentsOfFile(nullptr), nullptr);
    EXPECT_EQ(NSImage::initWithContentsOfURL(NSURL::URLWithString(u"http://example.org/a.png"_ns)), nullptr);
}

TEST(NSImageTest, damagedFilesGiveNullOrAPictureOfTheirSize) {
    const Ref<NSImage> image = drapeau({8, 8});
    const Ref<NSData> png = image->PNGRepresentation();
    ASSERT_NE(png, nullptr);
    // The codec's own complaints say nothing here.
    testing::internal::CaptureStderr();
    for (NSUInteger length = 0; length < png->length(); ++length) {
        const Ref<NSImage> cut = NSImage::initWithData(png->subdataWithRange({0, length}));
        EXPECT_TRUE(!cut || cut->picture(1)->pixelWidth() == 8) << length;
        const Ref<NSMutableData> bent = make<NSMutableData>(png.get());
        static_cast<std::uint8_t*>(bent->mutableBytes())[length] ^= 0x55;
        const Ref<NSImage> read = NSImage::initWithData(bent);
        EXPECT_TRUE(!read || read->isValid()) << length;
    }
    EXPECT_EQ(NSImage::initWithData(png->subdataWithRange({0, png->length() / 2})), nullptr);
    (void)testing::internal::GetCapturedStderr();
    EXPECT_EQ(NSImage::initWithData(nullptr), nullptr);
    EXPECT_EQ(pixel(*NSImage::initWithData(png), 0, 0), "0000ffff");
}

TEST(NSImageTest, namesAreSharedUntilTheImageIsGone) {
    EXPECT_EQ(NSImage::imageNamed(u"aucune image de ce nom"_ns), nullptr);
    {
        const Ref<NSImage> image = drapeau();
        EXPECT_TRUE(image->setName(u"drapeau"_ns));
        EXPECT_TRUE(image->setName(u"drapeau"_ns));
        EXPECT_EQ(NSImage::imageNamed(u"drapeau"_ns), image);
        EXPECT_FALSE(drapeau()->setName(u"drapeau"_ns)) << "another image has it";
        EXPECT_TRUE(image->setName(u"pavillon"_ns));
        EXPECT_EQ(NSImage::imageNamed(u"drapeau"_ns), nullptr);
        EXPECT_EQ(NSImage::imageNamed(u"pavillon"_ns), image);
    }
    EXPECT_EQ(NSImage::imageNamed(u"pavillon"_ns), nullptr);
}

TEST(NSImageTest, aResourceOfTheBundleIsFoundByItsNameAndKept) {
    const Folder dossier;
    (void)written(dossier, "voile.png", drapeau()->PNGRepresentation());
    (void)written(dossier, "voile@2x.png", drapeau({8, 8})->PNGRepresentation());
    const Ref<NSBundle> bundle = NSBundle::bundleWithPath(dossier.at());
    NSBundle::setMainBundle(bundle);
    EXPECT_NE(pathForImageResource(bundle, u"voile"_ns), nullptr);
    EXPECT_NE(pathForImageResource(bundle, u"voile.png"_ns), nullptr);
    EXPECT_EQ(pathForImageResource(bundle, u"voile.jpg"_ns), nullptr);
    NSImage* const first = NSImage::imageNamed(u"voile"_ns).get();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(NSImage::imageNamed(u"voile"_ns), first) << "nobody else kept it";
    EXPECT_EQ(first->picture(2)->pixelWidth(), 8);
    EXPECT_TRUE(first->setName(nullptr));
    NSBundle::setMainBundle(nullptr);
}

TEST(NSImageTest, imagesComeBackFromArchives) {
    const Ref<NSImage> image = drapeau();
    image->setTemplate(YES);
    image->setSize({2, 2});
    for (const Ref<NSImage>& back : {throughKeyedArchive(*image), throughArchive(*image)}) {
        ASSERT_NE(back, nullptr);
        EXPECT_EQ(back->size(), (NSSize{2, 2}));
        EXPECT_TRUE(back->isTemplate());
        EXPECT_EQ(pixel(*back, 3, 3), "ff0000ff");
    }
}

TEST(NSBitmapImageRepTest, pixelsAreReadAndWrittenFromTheTop) {
    const Ref<NSBitmapImageRep> rep = NSBitmapImageRep::initWithPixelsWide_pixelsHigh(3, 2);
    const Ref<NSBitmapImageRep> copy = as<NSBitmapImageRep>(rep->copyWithZone().get());
    rep->setColor_atX_y(NSColor::redColor(), 2, 0);
    EXPECT_EQ(rep->colorAtX_y(2, 0)->redComponent(), 1);
    EXPECT_EQ(rep->colorAtX_y(2, 1)->alphaComponent(), 0);
    EXPECT_EQ(copy->colorAtX_y(2, 0)->alphaComponent(), 0) << "a copy has its own pixels";
    EXPECT_EQ(rep->colorAtX_y(3, 0), nullptr);
    EXPECT_EQ(rep->colorAtX_y(0, -1), nullptr);
    rep->setColor_atX_y(NSColor::redColor(), 3, 0);
    EXPECT_EQ(NSBitmapImageRep::initWithPixelsWide_pixelsHigh(0, 5), nullptr);
    EXPECT_EQ(NSBitmapImageRep::initWithPixelsWide_pixelsHigh(1000000, 1000000), nullptr);
    EXPECT_EQ(rep->representationUsingType_properties(NSGIFFileType, nullptr), nullptr);
    const Ref<NSData> png = rep->representationUsingType_properties(NSPNGFileType, nullptr);
    EXPECT_EQ(NSBitmapImageRep::imageRepWithData(png)->colorAtX_y(2, 0)->redComponent(), 1);
}

TEST(NSBitmapImageRepTest, theFocusedPartIsReadInUserSpace) {
    Pixels p(6, 6);
    NSColor::redColor()->set();
    NSRectFill({{2, 3}, {1, 1}});
    p.context->canvas().concat(backend::Transform::translation(2, 2));
    const Ref<NSBitmapImageRep> part = NSBitmapImageRep::initWithFocusedViewRect({{0, 0}, {3, 2}});
    ASSERT_NE(part, nullptr);
    EXPECT_EQ(part->pixelsWide(), 3);
    EXPECT_EQ(part->colorAtX_y(0, 0)->redComponent(), 1);
    EXPECT_EQ(part->colorAtX_y(0, 1)->alphaComponent(), 0);
    EXPECT_EQ(NSBitmapImageRep::initWithFocusedViewRect({{50, 0}, {3, 2}}), nullptr);
}

#include <cmath>
#include <limits>

#include "Photo.h"
#include "support/Folder.h"
#include "support/TestBackend.h"

#include <libvue/images/ImageCommune.h>
#include <libvue/images/NSImageDegrade.h>
#include <libvue/images/NSImageKCAdditions.h>
#include <libvue/platform/foundation/NSBundle.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/socle/UniChaine.h>

using namespace libvue;
using namespace libvue::test;

namespace {

constexpr double infini = std::numeric_limits<double>::infinity();

/// A main bundle in a folder of its own.
struct Paquet : Folder {
    Paquet() { NSBundle::setMainBundle(NSBundle::bundleWithPath(at())); }
    ~Paquet() { NSBundle::setMainBundle(nullptr); }
    void ecris(const char* nom, NSSize taille) const {
        const Ref<NSData> png = photo(taille)->PNGRepresentation();
        write(nom, png->view());
    }
};

struct ImagesTest : MemoryFixture {};

TEST_F(ImagesTest, aNameIsCutIntoFolderBaseAndExtension) {
    const Paquet paquet;
    paquet.ecris("petites/fleche.png", {3, 3});
    paquet.ecris("petites/fleche.tiff", {4, 4});
    paquet.ecris("petites/deux.points.png", {5, 5});
    paquet.ecris("petites/v1.2/fleche.png", {6, 6});
    const Ref<NSImage> connue = photo({9, 9});
    connue->setName(u"nuage"_ns);
    struct {
        const char* nom;
        CGFloat largeur; // 0: none is found
    } const lignes[] = {
        {"petites/fleche.png", 3},
        {"petites/fleche.tiff", 4},
        {"petites/fleche", 3},
        {"petites/deux.points.png", 5},
        {"petites/v1.2/fleche.png", 6},
        {"petites/v1.2/fleche", 0}, // the last point is the folder's
        {"ailleurs/nuage.tiff", 9}, // an image of that name goes first
        {"fleche.png", 0},
        {"fleche", 0},
        {"petites/fleche.", 0},
        {"petites/", 0},
        {"/", 0},
        {"./", 0},
        {"", 0},
    };
    ImageCommune commune;
    for (const auto& l : lignes) {
        commune.Prends(l.nom);
        EXPECT_EQ(commune.DonneImage() ? commune.DonneImage()->size().width : 0, l.largeur) << l.nom;
    }
}

TEST_F(ImagesTest, copiesShareTheImageAndNotTheRecord) {
    const Ref<NSImage> image = photo({4, 4});
    ObjCImplImageCommune fiche{image};
    ObjCImplImageCommune* impl = &fiche;
    auto source = std::make_unique<ImageCommune>();
    source->Prends(impl);
    ImageCommune copie(*source);
    source.reset();
    EXPECT_EQ(copie.DonneImage(), image.get());
    ImageCommune autre;
    autre = copie;
    autre.Prends(autre.DonneImpl()); // its own record
    impl = nullptr;
    copie.Prends(impl);
    EXPECT_EQ(copie.DonneImage(), nullptr);
    EXPECT_EQ(autre.DonneImage(), image.get());
}

TEST_F(ImagesTest, greyGradientsRunUpward) {
    struct {
        std::int32_t type;
        double bas, haut, alpha;
    } const lignes[] = {{2, 0.81, 0.91, 1}, {3, 1.0, 0.666, 0.666}, {0, 0.58, 0.78, 1}, {-7, 0.58, 0.78, 1}};
    for (const auto& l : lignes) {
        const auto p = greyGradientImageWithSize_type({3, 400}, l.type)->picture(1);
        EXPECT_NEAR(p->pixel(1, 399).red, l.bas, 2.0 / 255) << l.type;
        EXPECT_NEAR(p->pixel(1, 0).green, l.haut, 2.0 / 255) << l.type;
        EXPECT_NEAR(p->pixel(1, 200).blue, (l.bas + l.haut) / 2, 2.0 / 255) << l.type;
        EXPECT_NEAR(p->pixel(2, 200).alpha, l.alpha, 1.0 / 255) << l.type;
    }
    for (const NSSize vide : {NSSize{0, 5}, NSSize{5, 0}, NSSize{-1, 5}, NSSize{std::nan(""), 5}})
        EXPECT_EQ(greyGradientImageWithSize_type(vide, 2), nullptr);
}

TEST_F(ImagesTest, derivedImagesLeaveTheirSourceAsItIs) {
    const Ref<NSImage> source = photo({20, 20}); // orange below, blue ink at 0.4 above
    const Ref<NSImage> temoin = source->copy();
    EXPECT_EQ(pixelDe(source, 0, 0), "ff8000ff");
    const Ref<NSImage> rouge =
        as<NSImage>(source->performSelector_withObject(sel("imageComposedWithColor:"), NSColor::redColor()).get());
    const auto noirADemi = NSColor::blackColor()->colorWithAlphaComponent(0.5);
    struct {
        const char* quoi;
        Ref<NSImage> image;
        int x, y;
        const char* attendu;
    } const lignes[] = {
        {"half as strong", imageWithAlpha(source, 0.5), 0, 0, "ff81007f"},
        {"still nothing", imageWithAlpha(source, 0.5), 0, 19, "00000000"},
        {"not at all", imageWithAlpha(source, 0), 0, 0, "00000000"},
        {"no strength", imageWithAlpha(source, std::nan("")), 0, 0, "00000000"},
        {"without end", imageWithAlpha(source, infini), 0, 0, "ff8000ff"},
        {"tinted", rouge, 0, 0, "ff0000ff"},
        {"no ink, no tint", rouge, 0, 19, "00000000"},
        {"as much ink as there was", rouge, 10, 15, "ff000066"},
        {"veiled", imageComposedWithColor(source, noirADemi), 0, 0, "7f4000ff"},
        {"stretched", imageWithSize(source, {40, 10}), 39, 1, "ff8000ff"},
        {"and flattened", imageWithSize(source, {40, 10}), 1, 9, "00000000"},
    };
    for (const auto& l : lignes)
        EXPECT_EQ(pixelDe(l.image, l.x, l.y), l.attendu) << l.quoi;
    EXPECT_TRUE(memesPixels(imageWithAlpha(source, 1), temoin));
    EXPECT_TRUE(memesPixels(imageComposedWithColor(source, nullptr), temoin));
    EXPECT_TRUE(memesPixels(source, temoin));
}

TEST_F(ImagesTest, sizesThatCannotBeDrawnIntoAreRefused) {
    const Ref<NSImage> source = photo({4, 4});
    for (const NSSize enorme : {NSSize{30000, 30000}, NSSize{infini, 4}, NSSize{1e300, 1e300}}) {
        EXPECT_EQ(raised([&] { (void)imageWithSize(source, enorme); }), "NSImageCacheException");
        EXPECT_EQ(raised([&] { (void)greyGradientImageWithSize_type(enorme, 2); }), "NSImageCacheException");
        EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
    }
    for (const NSSize vide : {NSSize{0, 4}, NSSize{-4, 4}, NSSize{4, std::nan("")}})
        EXPECT_EQ(imageWithSize(source, vide)->picture(1), nullptr);
    EXPECT_EQ(imageWithAlpha(make<NSImage>(), 0.5)->picture(1), nullptr);
    EXPECT_EQ(imageWithAlpha(nullptr, 1), nullptr);
    EXPECT_EQ(imageComposedWithColor(nullptr, NSColor::redColor()), nullptr);
    EXPECT_EQ(imageWithSize(nullptr, {4, 4}), nullptr);
    // Thin and long is a picture like another, at any scale of the screen.
    for (const CGFloat e : {1.0, 2.0}) {
        const Echelle echelle(e);
        const Ref<NSImage> fil = greyGradientImageWithSize_type({1, 30000}, 0);
        EXPECT_EQ(pixelDe(imageComposedWithColor(fil, NSColor::redColor()), 0, 0), "ff0000ff");
    }
}

} // namespace

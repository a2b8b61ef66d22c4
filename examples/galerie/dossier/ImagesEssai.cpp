#include <dossier/ImagesEssai.h>

#include <cmath>
#include <cstdio>

#include <libvue/images/NSBezierPathAMShading.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSFileManager.h>
#include <libvue/platform/foundation/NSRunLoop.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSBitmapImageRep.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSImage.h>

namespace galerie {

namespace {

/// The two that are none.
bool estFausse(int rang) { return rang == 7 || rang == 50; }

std::string fichier(int rang) {
    char nom[48];
    std::snprintf(nom, sizeof nom, "/paysage-%03d.%s", rang + 1, rang % 3 == 2 ? "png" : "jpg");
    return ImagesEssai::dossier() + nom;
}

/// Of turns of the colour wheel.
Ref<NSColor> couleur(CGFloat teinte, CGFloat saturation, CGFloat clarte) {
    return NSColor::colorWithCalibratedHue_saturation_brightness_alpha(teinte - std::floor(teinte), saturation, clarte,
                                                                       1);
}

/// The same picture for the same rank.
CGFloat hasard(int rang, int quoi) {
    const double s = std::sin(rang * 12.9898 + quoi * 78.233) * 43758.5453;
    return s - std::floor(s);
}

Ref<NSImage> paysage(int rang) {
    static constexpr NSSize formes[] = {{960, 640}, {640, 960}, {900, 900}, {1280, 480}, {960, 720}};
    const NSSize t = formes[static_cast<std::size_t>(hasard(rang, 1) * 4.99)];
    auto image = make<NSImage>(t);
    image->lockFocus();
    const CGFloat ciel = hasard(rang, 2);
    linearGradientFillWithStartColor_endColor(NSBezierPath::bezierPathWithRect({{0, 0}, t}),
                                              couleur(ciel + 0.08, 0.35, 1), couleur(ciel, 0.55, 0.72));
    const CGFloat r = t.height * (0.05 + 0.05 * hasard(rang, 3));
    const NSPoint soleil{t.width * (0.15 + 0.7 * hasard(rang, 4)), t.height * (0.55 + 0.3 * hasard(rang, 5))};
    couleur(ciel + 0.12, 0.2, 1)->setFill();
    NSBezierPath::bezierPathWithOvalInRect({{soleil.x - r, soleil.y - r}, {2 * r, 2 * r}})->fill();
    for (int plan = 0; plan < 4; ++plan) {
        const CGFloat base = t.height * (0.5 - 0.11 * plan), ampleur = t.height * 0.16;
        const auto p = NSBezierPath::bezierPath();
        p->moveToPoint({0, 0});
        for (int i = 0; i <= 48; ++i) {
            const CGFloat x = i / 48.0;
            const CGFloat y = std::sin(x * (5 + plan * 2) + 7 * hasard(rang, 10 + plan)) * 0.5 +
                              std::sin(x * (17 + plan * 5) + 9 * hasard(rang, 20 + plan)) * 0.2;
            p->lineToPoint({x * t.width, base + y * ampleur});
        }
        p->lineToPoint({t.width, 0});
        p->closePath();
        couleur(ciel + 0.45 + 0.03 * plan, 0.25 + 0.1 * plan, 0.62 - 0.13 * plan)->setFill();
        p->fill();
    }
    image->unlockFocus();
    return image;
}

bool ecrit(int rang) {
    const auto chemin = NSString::fromUTF8(fichier(rang));
    Ref<NSData> octets;
    if (estFausse(rang)) {
        static constexpr char texte[] = "ceci n'est pas une image";
        octets = NSData::dataWithBytes_length(texte, sizeof texte - 1);
    } else {
        const Ref<NSImage> image = paysage(rang);
        const Ref<NSArray> reps = image->representations();
        const auto* rep = reps ? reps->at<NSBitmapImageRep>(0) : nullptr;
        if (rep)
            octets = rep->representationUsingType_properties(rang % 3 == 2 ? NSPNGFileType : NSJPEGFileType, nullptr);
    }
    return octets && NSFileManager::defaultManager()->createFileAtPath_contents_attributes(chemin, octets, nullptr);
}

} // namespace

std::string ImagesEssai::dossier() {
    return NSTemporaryDirectory()->stringByAppendingPathComponent(u"libvue-galerie-paysages"_ns)->utf8();
}

bool ImagesEssai::sontLa() {
    return NSFileManager::defaultManager()->fileExistsAtPath(NSString::fromUTF8(fichier(kNombre - 1)));
}

void ImagesEssai::commence() {
    faites_ = 0;
    enCours_ = true;
    (void)NSFileManager::defaultManager()->createDirectoryAtPath_withIntermediateDirectories_attributes_error(
        NSString::fromUTF8(dossier()), YES, nullptr, nullptr);
    suite(++tour_);
}

void ImagesEssai::suite(unsigned tour) {
    NSRunLoop::mainRunLoop()->performBlock([moi = Ref<ImagesEssai>(this), tour] {
        if (moi->tour_ != tour) return;
        const bool bien = ecrit(moi->faites_);
        if (bien && ++moi->faites_ < kNombre) {
            moi->suite(tour);
            if (moi->surProgres) moi->surProgres();
            return;
        }
        moi->enCours_ = false;
        if (moi->surFin) moi->surFin(bien);
    });
}

} // namespace galerie

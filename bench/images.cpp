// Fills with gradients, and the frames of a thumbnail's fade.
#include <cmath>
#include <memory>
#include <utility>
#include <vector>

#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <libvue/images/NSBezierPathAMShading.h>
#include <libvue/images/VignetteVisuel.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSImage.h>

#include "Banc.h"

#ifdef LIBVUE_HAVE_WIDGETS
#include <QtWidgets/qtwidgetsglobal.h>
QT_BEGIN_NAMESPACE
// What Qt's own blur and shadow effects call; exported, but in no public header.
extern Q_WIDGETS_EXPORT void qt_blurImage(QPainter* p, QImage& image, qreal radius, bool quality, bool alphaOnly,
                                          int transposed);
QT_END_NAMESPACE
#endif

using namespace libvue;

namespace {

// Fills.

struct Forme {
    NSRect rect;
    double rayon;
    double angle;
    Ref<NSColor> debut, fin;
    QColor qdebut, qfin;
};

/// The bands of a chart, buttons and headers, on a surface of 800 by 600.
std::vector<Forme> formes() {
    std::vector<Forme> toutes;
    for (int i = 0; i < 120; ++i) {
        const double r = (i * 37 % 100) / 100.0, v = (i * 71 % 100) / 100.0, b = (i * 13 % 100) / 100.0;
        Forme f{
            {{static_cast<double>(i % 12) * 66, static_cast<double>(i / 12) * 60}, {60, 50}},
            i % 4 == 3 ? 6.0 : 0.0,
            i % 8 == 2 ? 0.0 : pi * 0.5,
            NSColor::colorWithDeviceRed_green_blue_alpha(r, v, b, 1),
            NSColor::colorWithDeviceRed_green_blue_alpha(b, r, v, i % 5 ? 1 : 0.5),
            QColor::fromRgbF(static_cast<float>(r), static_cast<float>(v), static_cast<float>(b)),
            QColor::fromRgbF(static_cast<float>(b), static_cast<float>(r), static_cast<float>(v), i % 5 ? 1.0F : 0.5F)};
        toutes.push_back(std::move(f));
    }
    return toutes;
}

banc::Chemin degrades() {
    struct Etat {
        std::vector<Forme> toutes = formes();
        std::shared_ptr<backend::Picture> surface = backend::Backend::current().graphics->makePicture({800, 600}, 1);
        Ref<NSGraphicsContext> contexte =
            make<NSGraphicsContext>(backend::Backend::current().graphics->canvasOn(surface), NO, surface);
        QImage image{800, 600, QImage::Format_ARGB32_Premultiplied};
        QPainter peintre;
    };
    auto e = std::make_shared<Etat>();
    e->image.fill(0);
    e->peintre.begin(&e->image);
    e->peintre.setRenderHint(QPainter::Antialiasing);
    e->peintre.setPen(Qt::NoPen);
    e->peintre.translate(0, 600);
    e->peintre.scale(1, -1);
    return {[e] {
                const GraphicsContextScope courant(e->contexte);
                for (const Forme& f : e->toutes) {
                    const Ref<NSBezierPath> chemin =
                        f.rayon > 0 ? NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(f.rect, f.rayon, f.rayon)
                                    : NSBezierPath::bezierPathWithRect(f.rect);
                    linearGradientFillWithStartColor_endColor_angle(chemin, f.debut, f.fin, f.angle);
                }
            },
            [e] {
                for (const Forme& f : e->toutes) {
                    const QRectF r(f.rect.origin.x, f.rect.origin.y, f.rect.size.width, f.rect.size.height);
                    QLinearGradient degrade = f.angle == 0 ? QLinearGradient(r.topLeft(), r.topRight())
                                                           : QLinearGradient(r.topLeft(), r.bottomLeft());
                    degrade.setColorAt(0, f.qdebut);
                    degrade.setColorAt(1, f.qfin);
                    if (f.rayon > 0) {
                        QPainterPath chemin;
                        chemin.addRoundedRect(r, f.rayon, f.rayon);
                        e->peintre.fillPath(chemin, degrade);
                    } else
                        e->peintre.fillRect(r, degrade);
                }
            }};
}

// Frames.

constexpr int kCote = 512;
constexpr int kTrames = 19; // of one fade

Ref<NSImage> photo() {
    const Ref<NSImage> image = make<NSImage>(NSSize{kCote, kCote});
    image->lockFocus();
    linearGradientFillWithStartColor_endColor(NSBezierPath::bezierPathWithRect({{0, 0}, {kCote, kCote}}),
                                              NSColor::orangeColor(), NSColor::blueColor());
    image->unlockFocus();
    return image;
}

/// The regions change with each fade, so that no frame has been seen before.
NSRect region(int fondu) {
    return {{0.1 + fondu % 7 * 0.05, 0.15 + fondu % 5 * 0.06}, {0.25 + fondu % 31 * 0.008, 0.2 + fondu % 29 * 0.01}};
}

struct Pair {
    QImage image, noir;
    NSRect trou;
    double alpha = 1;
    int trame = 0, fondu = 0;
    QImage montree;

    void prepare(const Ref<NSImage>& source) {
        const Ref<NSData> png = source->PNGRepresentation();
        image = QImage::fromData(static_cast<const uchar*>(png->bytes()), static_cast<int>(png->length()))
                    .convertToFormat(QImage::Format_ARGB32_Premultiplied);
        noir = QImage(kCote, kCote, QImage::Format_ARGB32_Premultiplied);
        noir.fill(0);
        QPainter p(&noir);
        p.setRenderHint(QPainter::Antialiasing);
        QPainterPath bord;
        bord.addRoundedRect(QRectF(0, 0, kCote, kCote), 8, 8);
        p.fillPath(bord, QColor(0, 0, 0, 64));
    }

    void suivante() {
        if (trame++ % kTrames == 0) {
            const NSRect f = region(fondu++);
            trou = NSInsetRect(
                {{f.origin.x * kCote, f.origin.y * kCote + 2}, {f.size.width * kCote, f.size.height * kCote}}, -4, -4);
            alpha = 0.05;
        }
        alpha += 0.05;
#ifdef LIBVUE_HAVE_WIDGETS
        // The hole and its halo, no larger than they are.
        constexpr int marge = 12;
        const QRect boite = QRectF(trou.origin.x, trou.origin.y, trou.size.width, trou.size.height)
                                .toAlignedRect()
                                .adjusted(-marge, -marge, marge, marge);
        QPainterPath contour;
        contour.addRoundedRect(QRectF(trou.origin.x, trou.origin.y, trou.size.width, trou.size.height), 4, 4);
        QImage forme(boite.size(), QImage::Format_ARGB32_Premultiplied);
        forme.fill(0);
        {
            QPainter p(&forme);
            p.setRenderHint(QPainter::Antialiasing);
            p.translate(-boite.topLeft());
            p.fillPath(contour, QColor::fromRgbF(1, 1, 1, static_cast<float>(std::min(alpha, 1.0))));
        }
        QImage masque(kCote, kCote, QImage::Format_ARGB32_Premultiplied);
        masque.fill(0);
        {
            QPainter p(&masque);
            p.setRenderHint(QPainter::Antialiasing);
            p.translate(boite.topLeft());
            qt_blurImage(&p, forme, 4, false, false, 0);
            p.resetTransform();
            p.fillPath(contour, QColor::fromRgbF(0, 0, 0, static_cast<float>(std::min(alpha, 1.0))));
            p.setCompositionMode(QPainter::CompositionMode_SourceOut);
            p.drawImage(0, 0, noir);
        }
        QImage resultat = image.copy();
        {
            QPainter p(&resultat);
            p.setCompositionMode(QPainter::CompositionMode_SourceAtop);
            p.drawImage(0, 0, masque);
        }
        montree = resultat;
        banc::garde(montree);
#endif
    }
};

banc::Chemin vignette() {
    const Ref<NSImage> source = photo();
    struct Notre {
        Ref<VignetteVisuel> vue = make<VignetteVisuel>(NSRect{{0, 0}, {kCote, kCote}});
        int trame = 0, fondu = 0;
    };
    auto n = std::make_shared<Notre>();
    n->vue->setImageAvecDonnees(source->PNGRepresentation());
    banc::Chemin chemin;
    chemin.notre = [n] {
        if (n->trame++ % kTrames == 0) {
            n->vue->afficheRectangleInteret(); // the end of the last fade
            n->vue->setRectInteret(region(n->fondu++));
        } else
            n->vue->afficheRectangleInteret();
        // The next frame is drawn when this asks for it, not by the run loop.
        NSObject::cancelPreviousPerformRequestsWithTarget(n->vue);
    };
#ifdef LIBVUE_HAVE_WIDGETS
    auto pair = std::make_shared<Pair>();
    pair->prepare(source);
    chemin.pair = [pair] { pair->suivante(); };
#endif
    return chemin;
}

} // namespace

int main(int argc, char** argv) {
    banc::Banc banc;
    banc.ajoute("gradient-fill", degrades);
    banc.ajoute("thumbnail-frame", vignette);
    return banc.lance(argc, argv);
}

// Charts, whole views through the canvas, beside the same shapes, texts and blurs on a bare painter.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QScreen>
#include <QString>
#include <QStringList>

#include <libvue/charts/KCHistogramme.h>
#include <libvue/charts/KCPointeDeTarte.h>
#include <libvue/charts/KCTarte.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>

#include "Banc.h"

using namespace libvue;

namespace {

constexpr int kCote = 400;

/// A picture that a view draws into, and the peer's image.
struct Surfaces {
    std::shared_ptr<backend::Picture> surface = backend::Backend::current().graphics->makePicture({kCote, kCote}, 1);
    Ref<NSGraphicsContext> contexte;
    QImage image{kCote, kCote, QImage::Format_ARGB32_Premultiplied};
    QPainter peintre;

    explicit Surfaces(BOOL retourne) {
        auto toile = backend::Backend::current().graphics->canvasOn(surface);
        if (retourne) toile->concat({1, 0, 0, -1, 0, kCote});
        contexte = make<NSGraphicsContext>(std::move(toile), retourne, surface);
        image.fill(Qt::white);
        peintre.begin(&image);
        peintre.setRenderHint(QPainter::Antialiasing);
    }
};

QColor couleur(int i) { return QColor::fromHsv(i * 29 % 360, 170, 190); }
Ref<NSColor> couleurNotre(int i) {
    const QColor c = couleur(i);
    return NSColor::colorWithSRGBRed_green_blue_alpha(c.redF(), c.greenF(), c.blueF(), 1);
}

QFont police(double points) {
    QFont f({QStringLiteral("Liberation Sans")});
    f.setPointSizeF(points * 72 / QGuiApplication::primaryScreen()->logicalDotsPerInchY());
    f.setHintingPreference(QFont::PreferNoHinting);
    f.setStyleStrategy(QFont::NoSubpixelAntialias);
    return f;
}

/// Three box blurs over the alpha, the usual stand-in for a Gaussian; rows, then columns row by row.
void floute(std::vector<std::uint8_t>& a, int w, int h, int demi) {
    std::vector<std::uint8_t> b(a.size());
    std::vector<unsigned> sommes(static_cast<std::size_t>(w));
    const unsigned facteur = (1u << 20) / static_cast<unsigned>(2 * demi + 1);
    for (int fois = 0; fois < 3; ++fois) {
        for (int y = 0; y < h; ++y) {
            const std::uint8_t* in = a.data() + static_cast<std::ptrdiff_t>(y) * w;
            std::uint8_t* out = b.data() + static_cast<std::ptrdiff_t>(y) * w;
            unsigned somme = 0;
            for (int x = 0; x < std::min(demi, w); ++x)
                somme += in[x];
            for (int x = 0; x < w; ++x) {
                if (x + demi < w) somme += in[x + demi];
                if (x - demi - 1 >= 0) somme -= in[x - demi - 1];
                out[x] = static_cast<std::uint8_t>((somme * facteur) >> 20);
            }
        }
        std::fill(sommes.begin(), sommes.end(), 0u);
        const auto rang = [&](int y) { return b.data() + static_cast<std::ptrdiff_t>(y) * w; };
        for (int y = 0; y < std::min(demi, h); ++y)
            for (int x = 0; x < w; ++x)
                sommes[static_cast<std::size_t>(x)] += rang(y)[x];
        for (int y = 0; y < h; ++y) {
            if (y + demi < h)
                for (int x = 0; x < w; ++x)
                    sommes[static_cast<std::size_t>(x)] += rang(y + demi)[x];
            if (y - demi - 1 >= 0)
                for (int x = 0; x < w; ++x)
                    sommes[static_cast<std::size_t>(x)] -= rang(y - demi - 1)[x];
            std::uint8_t* out = a.data() + static_cast<std::ptrdiff_t>(y) * w;
            for (int x = 0; x < w; ++x)
                out[x] = static_cast<std::uint8_t>((sommes[static_cast<std::size_t>(x)] * facteur) >> 20);
        }
    }
}

/// Draws what `peint` paints into `cadre` with a blurred shadow of it underneath.
template <class Peint>
void avecOmbre(QPainter& p, const QRect& cadre, int demi, QPoint decalage, int alpha, const Peint& peint) {
    const int bord = 3 * demi;
    const QRect large = cadre.adjusted(-bord, -bord, bord, bord);
    QImage forme(large.size(), QImage::Format_ARGB32_Premultiplied);
    forme.fill(0);
    {
        QPainter dedans(&forme);
        dedans.setRenderHint(QPainter::Antialiasing);
        dedans.translate(-large.topLeft());
        peint(dedans);
    }
    std::vector<std::uint8_t> masque(static_cast<std::size_t>(large.width()) *
                                     static_cast<std::size_t>(large.height()));
    for (int y = 0; y < large.height(); ++y) {
        const auto* in = reinterpret_cast<const QRgb*>(forme.constScanLine(y));
        std::uint8_t* out = masque.data() + static_cast<std::ptrdiff_t>(y) * large.width();
        for (int x = 0; x < large.width(); ++x)
            out[x] = static_cast<std::uint8_t>(in[x] >> 24);
    }
    floute(masque, large.width(), large.height(), demi);
    QImage ombre(large.size(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < large.height(); ++y) {
        const std::uint8_t* in = masque.data() + static_cast<std::ptrdiff_t>(y) * large.width();
        auto* out = reinterpret_cast<QRgb*>(ombre.scanLine(y));
        for (int x = 0; x < large.width(); ++x)
            out[x] = static_cast<QRgb>(in[x] * alpha / 255) << 24;
    }
    p.drawImage(large.topLeft() + decalage, ombre);
    p.drawImage(large.topLeft(), forme);
}

QPainterPath part(QPointF centre, double rayon, double depart, double ouverture) {
    QPainterPath chemin(centre);
    chemin.arcTo(QRectF(centre.x() - rayon, centre.y() - rayon, 2 * rayon, 2 * rayon), depart, ouverture);
    chemin.closeSubpath();
    return chemin;
}

/// 12 slices of different sizes, a shadow under each, then all of them again, then their names and percentages.
banc::Chemin tarte() {
    constexpr int n = 12;
    auto s = std::make_shared<Surfaces>(NO);
    const Ref<KCTarte> vue = make<KCTarte>(NSRect{{0, 0}, {kCote, kCote}});
    std::vector<std::pair<double, double>> angles;
    double depart = 0;
    for (int i = 0; i < n; ++i) {
        const Ref<KCPointeDeTarte> p = make<KCPointeDeTarte>();
        p->setValeur(10 + i * 3);
        p->setCouleur(couleurNotre(i));
        p->setChaine(NSString::fromUTF8("Part " + std::to_string(i)));
        p->setEtiquette(KCPointeDeTarteEtiquetteChaineEtPourcentage);
        vue->ajoutePointe(p);
    }
    for (int i = 0; i < n; ++i) {
        const double ouverture = (10 + i * 3) * 360.0 / static_cast<double>(vue->total());
        angles.emplace_back(depart, ouverture);
        depart += ouverture;
    }
    return {[s, vue] {
                const GraphicsContextScope courant(s->contexte);
                vue->drawRect(vue->bounds());
            },
            [s, angles] {
                const QPointF centre(kCote / 2.0, kCote / 2.0);
                constexpr double rayon = kCote / 2.0 - 13;
                const auto corps = [&](std::size_t i) {
                    return part(centre, rayon, angles[i].first, angles[i].second);
                };
                for (std::size_t i = 0; i < angles.size(); ++i) {
                    const QPainterPath chemin = corps(i);
                    avecOmbre(s->peintre, chemin.boundingRect().toAlignedRect(), 2, {2, 2}, 170,
                              [&](QPainter& p) { p.fillPath(chemin, couleur(static_cast<int>(i))); });
                }
                for (std::size_t i = 0; i < angles.size(); ++i)
                    s->peintre.fillPath(corps(i), couleur(static_cast<int>(i)));
                const QFont f = police(11);
                const QFontMetricsF mesures(f);
                for (std::size_t i = 0; i < angles.size(); ++i) {
                    const QStringList lignes{QStringLiteral("Part %1").arg(i),
                                             QStringLiteral("%1\u00A0%").arg(angles[i].second / 3.6, 0, 'f', 1)};
                    const double a = (angles[i].first + angles[i].second / 2) * M_PI / 180;
                    const QPointF ancre = centre + QPointF(std::cos(a), -std::sin(a)) * (rayon * 0.65);
                    double largeur = 0;
                    for (const QString& l : lignes)
                        largeur = std::max(largeur, mesures.horizontalAdvance(l));
                    const QRectF cadre(ancre.x() - largeur / 2, ancre.y() - mesures.height(), largeur,
                                       2 * mesures.height());
                    avecOmbre(s->peintre, cadre.toAlignedRect(), 1, {0, 1}, 255, [&](QPainter& p) {
                        p.setFont(f);
                        p.setPen(Qt::white);
                        for (int k = 0; k < 2; ++k)
                            p.drawText(QPointF(ancre.x() - mesures.horizontalAdvance(lignes[k]) / 2,
                                               cadre.top() + mesures.ascent() + k * mesures.height()),
                                       lignes[k]);
                    });
                }
            }};
}

/// 20 bands of 5 sections in gradients with their outlines, the axes and 10 graduations.
banc::Chemin histogramme() {
    constexpr int bandes = 20, sections = 5;
    auto s = std::make_shared<Surfaces>(YES);
    const Ref<KCHistogramme> vue = make<KCHistogramme>(NSRect{{0, 0}, {kCote, kCote}});
    const Ref<NSMutableArray> donnees = NSMutableArray::array(), couleurs = NSMutableArray::array();
    auto valeurs = std::make_shared<std::vector<double>>();
    double plusGrand = 0;
    for (int b = 0; b < bandes; ++b) {
        double total = 0;
        for (int k = 0; k < sections; ++k) {
            valeurs->push_back(1 + (b * 7 + k * 11) % 19);
            donnees->addObject(NSNumber::numberWithDouble(valeurs->back()));
            total += valeurs->back();
        }
        plusGrand = std::max(plusGrand, total);
    }
    for (int k = 0; k < sections; ++k)
        couleurs->addObject(NSArray::arrayWithObjects({couleurNotre(k).get(), couleurNotre(k + 6).get()}));
    vue->setCouleurs(couleurs);
    vue->setDonnees(donnees);
    return {[s, vue] {
                const GraphicsContextScope courant(s->contexte);
                vue->drawRect(vue->bounds());
            },
            [s, valeurs, plusGrand] {
                QPainter& p = s->peintre;
                const double axe = kCote - 2.5 - 10, hauteur = bandes * 12 + (bandes - 1) * 5 + 10;
                const double echelle = axe / (std::ceil(plusGrand / 10) * 10);
                const QFont f = police(11);
                const QFontMetricsF mesures(f);
                QPen noir(Qt::black, 1, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
                p.setFont(f);
                p.setPen(noir);
                for (int i = 1; i <= 10; ++i) {
                    const double x = axe * i / 10 + 0.5;
                    p.drawLine(QLineF(x, hauteur + 0.5, x, hauteur + 4.5));
                    const QString texte = QString::number(i * std::ceil(plusGrand / 10));
                    p.drawText(QPointF(x - mesures.horizontalAdvance(texte) / 2, hauteur + 6.5 + mesures.ascent()),
                               texte);
                }
                for (int b = 0; b < bandes; ++b) {
                    double x = 0;
                    const double y = 5 + b * 17;
                    for (int k = 0; k < sections; ++k) {
                        const double large = (*valeurs)[static_cast<std::size_t>(b * sections + k)] * echelle;
                        QLinearGradient degrade(0, y, 0, y + 12);
                        degrade.setColorAt(0, couleur(k));
                        degrade.setColorAt(1, couleur(k + 6));
                        p.fillRect(QRectF(x, y, large, 12), degrade);
                        QPainterPath bord;
                        bord.addRect(QRectF(x, y + 0.5, large, 11));
                        p.strokePath(bord, noir);
                        x += large;
                    }
                }
                p.drawLine(QLineF(0.5, 0, 0.5, hauteur));
                p.drawLine(QLineF(0.5, hauteur + 0.5, axe + 0.5, hauteur + 0.5));
            }};
}

/// 32 points, a third of them beside the disc, among 1,000 slices; the peer asks one outline after the other.
banc::Chemin clic() {
    const Ref<KCTarte> vue = make<KCTarte>(NSRect{{0, 0}, {kCote, kCote}});
    auto parts = std::make_shared<std::vector<QPainterPath>>();
    for (int i = 0; i < 1000; ++i) {
        const Ref<KCPointeDeTarte> p = make<KCPointeDeTarte>();
        p->setValeur(1 + i % 5);
        vue->ajoutePointe(p);
    }
    double depart = 0;
    for (int i = 0; i < 1000; ++i) {
        const double ouverture = (1 + i % 5) * 360.0 / static_cast<double>(vue->total());
        parts->push_back(part({kCote / 2.0, kCote / 2.0}, kCote / 2.0 - 13, depart, ouverture));
        depart += ouverture;
    }
    auto points = std::make_shared<std::vector<NSPoint>>();
    for (int i = 0; i < 32; ++i) {
        const double a = i * 2.4, d = i % 3 ? 20 + i * 5.0 : 195;
        points->push_back({kCote / 2.0 + d * std::cos(a), kCote / 2.0 + d * std::sin(a)});
    }
    return {[vue, points] {
                for (const NSPoint& p : *points)
                    banc::garde(vue->indexPointeAtLocation(p));
            },
            [parts, points] {
                for (const NSPoint& p : *points) {
                    std::ptrdiff_t trouvee = -1;
                    for (std::size_t i = 0; i < parts->size() && trouvee < 0; ++i)
                        if ((*parts)[i].contains(QPointF(p.x, kCote - p.y))) trouvee = static_cast<std::ptrdiff_t>(i);
                    banc::garde(trouvee);
                }
            }};
}

} // namespace

int main(int argc, char** argv) {
    banc::Banc banc;
    banc.ajoute("draw-pie", tarte);
    banc.ajoute("draw-histogram", histogramme);
    banc.ajoute("pie-hit", clic);
    return banc.lance(argc, argv);
}

// Drawing on a surface of 1280 by 800, through the canvas and through the painter that stands behind it.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QScreen>
#include <QString>

#include <libvue/platform/backend/Backend.h>

#include "Banc.h"

using namespace libvue;
using namespace libvue::backend;

namespace {

constexpr int largeur = 1280;
constexpr int hauteur = 800;

/// Our canvas and the peer's painter, on surfaces of their own, both with y upward.
struct Surfaces {
    std::unique_ptr<GraphicsEngine> moteur = makeRasterGraphics();
    std::shared_ptr<Picture> surface = moteur->makePicture({largeur, hauteur}, 1);
    std::unique_ptr<Canvas> toile = moteur->canvasOn(surface);
    QImage image{largeur, hauteur, QImage::Format_ARGB32_Premultiplied};
    QPainter peintre;

    Surfaces() {
        image.fill(0);
        peintre.begin(&image);
        peintre.setRenderHint(QPainter::Antialiasing);
        peintre.setRenderHint(QPainter::SmoothPixmapTransform);
        peintre.translate(0, hauteur);
        peintre.scale(1, -1);
    }
};

Color couleur(int i, double alpha) {
    return {(i * 37 % 256) / 255.0, (i * 71 % 256) / 255.0, (i * 13 % 256) / 255.0, alpha};
}
QColor pour(const Color& c) {
    return QColor::fromRgbF(static_cast<float>(c.red), static_cast<float>(c.green), static_cast<float>(c.blue),
                            static_cast<float>(c.alpha));
}

/// Rounded corners as four curves.
Path arrondi(double x, double y, double w, double h, double r) {
    const double k = r * 0.5522847498;
    Path p;
    const auto ligne = [&](double a, double b) {
        p.verbs.push_back(p.verbs.empty() ? PathVerb::move : PathVerb::line);
        p.points.push_back({a, b});
    };
    const auto courbe = [&](NSPoint a, NSPoint b, NSPoint c) {
        p.verbs.push_back(PathVerb::curve);
        p.points.insert(p.points.end(), {a, b, c});
    };
    ligne(x + r, y);
    ligne(x + w - r, y);
    courbe({x + w - r + k, y}, {x + w, y + r - k}, {x + w, y + r});
    ligne(x + w, y + h - r);
    courbe({x + w, y + h - r + k}, {x + w - r + k, y + h}, {x + w - r, y + h});
    ligne(x + r, y + h);
    courbe({x + r - k, y + h}, {x, y + h - r + k}, {x, y + h - r});
    ligne(x, y + r);
    courbe({x, y + r - k}, {x + r - k, y}, {x + r, y});
    p.verbs.push_back(PathVerb::close);
    return p;
}
QPainterPath pour(const Path& path) {
    QPainterPath out;
    const NSPoint* p = path.points.data();
    for (const PathVerb v : path.verbs) {
        if (v == PathVerb::move)
            out.moveTo(p->x, p->y), ++p;
        else if (v == PathVerb::line)
            out.lineTo(p->x, p->y), ++p;
        else if (v == PathVerb::curve)
            out.cubicTo(p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y), p += 3;
        else
            out.closeSubpath();
    }
    return out;
}

/// The backgrounds of a window: 120 rectangles on whole pixels, half of them translucent, and 60 rounded ones.
banc::Chemin remplissages() {
    auto s = std::make_shared<Surfaces>();
    struct Forme {
        NSRect rect;
        Color couleur;
        Path bord;
        QPainterPath pair;
    };
    auto formes = std::make_shared<std::vector<Forme>>();
    for (int i = 0; i < 180; ++i) {
        Forme f{{{static_cast<double>(i % 12) * 105, static_cast<double>(i / 12) * 52}, {100, 44}},
                couleur(i, i % 2 ? 1 : 0.5),
                {},
                {}};
        if (i % 3 == 2) {
            f.bord = arrondi(f.rect.origin.x, f.rect.origin.y, 100, 44, 6);
            f.pair = pour(f.bord);
        }
        formes->push_back(std::move(f));
    }
    return {[s, formes] {
                for (const Forme& f : *formes)
                    if (f.bord.empty())
                        s->toile->fillRect(f.rect, f.couleur);
                    else
                        s->toile->fill(f.bord, FillRule::nonZero, f.couleur);
            },
            [s, formes] {
                for (const Forme& f : *formes)
                    if (f.bord.empty())
                        s->peintre.fillRect(QRectF(f.rect.origin.x, f.rect.origin.y, 100, 44), pour(f.couleur));
                    else
                        s->peintre.fillPath(f.pair, pour(f.couleur));
            }};
}

/// The lines of a table, those of a chart, and the outlines of buttons.
banc::Chemin traits() {
    auto s = std::make_shared<Surfaces>();
    auto bords = std::make_shared<std::vector<std::pair<Path, QPainterPath>>>();
    for (int i = 0; i < 40; ++i) {
        Path p = arrondi(20 + i % 10 * 120 + 0.5, 40 + i / 10 * 190 + 0.5, 100, 30, 5);
        QPainterPath pair = pour(p);
        bords->push_back({std::move(p), std::move(pair)});
    }
    return {[s, bords] {
                Stroke trait;
                for (int i = 0; i < 60; ++i)
                    s->toile->strokeLine({0, i * 13 + 0.5}, {largeur, i * 13 + 0.5}, trait, couleur(i, 1));
                for (int i = 0; i < 60; ++i)
                    s->toile->strokeLine({i * 21.0, 0}, {i * 21.0 + 140, 600}, trait, couleur(i, 1));
                for (std::size_t i = 0; i < bords->size(); ++i)
                    s->toile->stroke((*bords)[i].first, trait, couleur(static_cast<int>(i), 1));
            },
            [s, bords] {
                QPen plume;
                plume.setWidthF(1);
                plume.setCapStyle(Qt::FlatCap);
                plume.setJoinStyle(Qt::SvgMiterJoin);
                for (int i = 0; i < 60; ++i) {
                    plume.setColor(pour(couleur(i, 1)));
                    s->peintre.setPen(plume);
                    s->peintre.drawLine(QLineF(0, i * 13 + 0.5, largeur, i * 13 + 0.5));
                }
                for (int i = 0; i < 60; ++i) {
                    plume.setColor(pour(couleur(i, 1)));
                    s->peintre.setPen(plume);
                    s->peintre.drawLine(QLineF(i * 21.0, 0, i * 21.0 + 140, 600));
                }
                for (std::size_t i = 0; i < bords->size(); ++i) {
                    plume.setColor(pour(couleur(static_cast<int>(i), 1)));
                    s->peintre.strokePath((*bords)[i].second, plume);
                }
            }};
}

/// 200 labels that stay the same from one frame to the next.
banc::Chemin etiquettes() {
    auto s = std::make_shared<Surfaces>();
    std::shared_ptr<TextEngine> textes = makeRasterText();
    struct Etiquette {
        std::shared_ptr<const TextLayout> notre;
        QString pair;
        NSPoint place;
    };
    auto toutes = std::make_shared<std::vector<Etiquette>>();
    const auto police = textes->font("Helvetica", 13, 0);
    for (int i = 0; i < 200; ++i) {
        const std::u16string texte = u"Définition nº " + QString::number(i * 7919).toStdU16String() + u" du guide";
        TextRun style;
        style.range = {0, texte.size()};
        style.font = police;
        TextInput entree;
        entree.text = texte;
        entree.runs = {&style, 1};
        toutes->push_back({textes->layout(entree),
                           QString::fromStdU16String(texte),
                           {10 + i % 6 * 210.0, hauteur - 10 - i / 6 * 23.0}});
    }
    QFont pair({QStringLiteral("Liberation Sans")});
    pair.setPointSizeF(13 * 72 / QGuiApplication::primaryScreen()->logicalDotsPerInchY());
    pair.setHintingPreference(QFont::PreferNoHinting);
    pair.setStyleStrategy(QFont::NoSubpixelAntialias);
    // Text is upright on a painter that is not turned over.
    s->peintre.resetTransform();
    s->peintre.setFont(pair);
    s->peintre.setPen(Qt::black);
    return {[s, textes, toutes] {
                for (const Etiquette& e : *toutes)
                    s->toile->drawText(*e.notre, e.place, YAxis::up);
            },
            [s, toutes] {
                for (const Etiquette& e : *toutes)
                    s->peintre.drawText(QPointF(e.place.x, hauteur - e.place.y + 12), e.pair);
            }};
}

/// Icons with alpha, and larger pictures without, at their own size.
banc::Chemin images() {
    auto s = std::make_shared<Surfaces>();
    struct Vue {
        std::shared_ptr<Picture> notre;
        QImage pair;
    };
    auto vues = std::make_shared<std::vector<Vue>>();
    for (int i = 0; i < 8; ++i) {
        const int cote = i < 6 ? 32 : 160;
        QImage image(cote, cote, QImage::Format_ARGB32_Premultiplied);
        image.fill(0);
        QPainter peintre(&image);
        peintre.setRenderHint(QPainter::Antialiasing);
        peintre.setBrush(pour(couleur(i + 3, 1)));
        if (i < 6)
            peintre.drawEllipse(1, 1, cote - 2, cote - 2);
        else
            peintre.fillRect(image.rect(), pour(couleur(i, 1)));
        peintre.end();
        const std::vector<std::uint32_t> pixels(reinterpret_cast<const std::uint32_t*>(image.constBits()),
                                                reinterpret_cast<const std::uint32_t*>(image.constBits()) +
                                                    static_cast<std::ptrdiff_t>(cote) * cote);
        vues->push_back(
            {s->moteur->makePicture(pixels, cote, cote, {static_cast<double>(cote), static_cast<double>(cote)}),
             image});
    }
    // Neither side scales anything; the hint would slow the painter down all the same.
    s->peintre.resetTransform();
    s->peintre.setRenderHint(QPainter::SmoothPixmapTransform, false);
    return {[s, vues] {
                for (int i = 0; i < 200; ++i) {
                    const Vue& v = (*vues)[static_cast<std::size_t>(i) % vues->size()];
                    const double cote = v.pair.width();
                    s->toile->drawPicture(*v.notre, {}, {{i % 20 * 55.0, i / 20 * 60.0}, {cote, cote}},
                                          Compositing::sourceOver, i % 4 ? 1 : 0.5, YAxis::up);
                }
            },
            [s, vues] {
                for (int i = 0; i < 200; ++i) {
                    const Vue& v = (*vues)[static_cast<std::size_t>(i) % vues->size()];
                    const double cote = v.pair.width();
                    s->peintre.setOpacity(i % 4 ? 1 : 0.5);
                    s->peintre.drawImage(QRectF(i % 20 * 55.0, hauteur - i / 20 * 60.0 - cote, cote, cote), v.pair);
                }
            }};
}

} // namespace

int main(int argc, char** argv) {
    banc::Banc banc;
    banc.ajoute("draw-fill", remplissages);
    banc.ajoute("draw-stroke", traits);
    banc.ajoute("draw-label", etiquettes);
    banc.ajoute("draw-blit", images);
    return banc.lance(argc, argv);
}

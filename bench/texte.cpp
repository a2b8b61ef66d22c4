// Typing into a long text: a character goes into the middle of ten thousand lines, the lines are laid out again and
// those around it drawn, beside a QTextDocument that does the same.

#include <cmath>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSGraphicsContext.h>
#include <libvue/platform/graphics/NSLayoutManager.h>
#include <libvue/platform/graphics/NSTextAttributes.h>
#include <libvue/platform/graphics/NSTextContainer.h>
#include <libvue/platform/graphics/NSTextStorage.h>

#include <QAbstractTextDocumentLayout>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QString>
#include <QTextBlock>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>

#include "Banc.h"

using namespace libvue;

namespace {

constexpr int lignes = 10000;
constexpr int largeur = 640, hauteur = 800;
constexpr CGFloat corps = 13;
constexpr int unMotGrasToutesLes = 10;

enum class Aspects { un, deux };

/// Few lines are alike, and the longest ones are broken in two.
std::u16string ligne(int i) {
    std::u16string s;
    for (const char c : std::to_string(i))
        s += static_cast<char16_t>(c);
    static constexpr const char16_t* suites[] = {u" Le vif zéphyr jubile sur les kumquats du clown gracieux.",
                                                 u" Portez ce vieux whisky au juge blond qui fume.", u" Voix ambiguë.",
                                                 u" D’un cœur qui, au zéphyr, préfère les jattes de kiwis."};
    s += suites[i % 4];
    if (i % 7 == 0) s += s + s;
    return s + u'\n';
}

/// What is typed comes and goes, so that the text stays as it is.
class Frappe {
public:
    explicit Frappe(NSUInteger place) : place_(place) {}
    [[nodiscard]] NSUInteger place() const { return place_; }
    /// Whether this time the character is typed, not deleted.
    bool tape() { return la_ = !la_; }

private:
    NSUInteger place_;
    bool la_ = false;
};

/// Where words are bold: a few units at the start of each tenth line.
constexpr int debutGras = 4;

std::u16string toutesLesLignes() {
    std::u16string s;
    for (int i = 0; i < lignes; ++i)
        s += ligne(i);
    return s;
}

template <class F> void pourLesMotsGras(const std::u16string& texte, F f) {
    std::size_t debut = 0;
    for (int i = 0; i < lignes; ++i) {
        if (i % unMotGrasToutesLes == 0) f(debut);
        debut = texte.find(u'\n', debut) + 1;
    }
}

Ref<NSDictionary> police(NSFont* f) { return NSDictionary::dictionaryWithObject_forKey(f, NSFontAttributeName.get()); }

struct Nous {
    explicit Nous(Aspects aspects) {
        const std::u16string texte = toutesLesLignes();
        const auto tout = NSMutableAttributedString::initWithString_attributes(NSString::from(texte),
                                                                               police(NSFont::systemFontOfSize(corps)));
        const Ref<NSDictionary> gras = police(NSFont::boldSystemFontOfSize(corps));
        if (aspects == Aspects::deux)
            pourLesMotsGras(texte, [&](std::size_t i) { tout->setAttributes_range(gras, {i, debutGras}); });
        stock->setAttributedString(tout);
        stock->addLayoutManager(gestion);
        boite->setLineFragmentPadding(0);
        gestion->addTextContainer(boite);
        frappe = Frappe(texte.find(u'\n', texte.size() / 2) + 8);
    }

    NSSize passe() {
        if (frappe.tape())
            stock->replaceCharactersInRange_withString({frappe.place(), 0}, u"e"_ns);
        else
            stock->deleteCharactersInRange({frappe.place(), 1});
        const NSRect tout = gestion->usedRectForTextContainer(boite);
        const NSRect ici = gestion->lineFragmentRectForGlyphAtIndex_effectiveRange(frappe.place(), nullptr);
        const NSRect vu{{0, NSMidY(ici) - hauteur / 2.0}, {largeur, hauteur}};
        backend::Canvas& toile = contexte->canvas();
        const GraphicsContextScope portee(contexte);
        toile.save();
        toile.concat({1, 0, 0, 1, 0, -vu.origin.y});
        toile.fillRect(vu, {1, 1, 1, 1});
        gestion->drawGlyphsForGlyphRange_atPoint(gestion->glyphRangeForBoundingRect_inTextContainer(vu, boite),
                                                 NSZeroPoint);
        toile.restore();
        return tout.size;
    }

    Ref<NSTextStorage> stock = make<NSTextStorage>();
    Ref<NSLayoutManager> gestion = make<NSLayoutManager>();
    Ref<NSTextContainer> boite = make<NSTextContainer>(NSSize{largeur, 0});
    std::shared_ptr<backend::Picture> image = backend::Backend::current().graphics->makePicture({largeur, hauteur}, 1);
    Ref<NSGraphicsContext> contexte = contexteSur(image);
    Frappe frappe{0};

private:
    /// With y downward.
    static Ref<NSGraphicsContext> contexteSur(const std::shared_ptr<backend::Picture>& image) {
        auto toile = backend::Backend::current().graphics->canvasOn(image);
        toile->concat({1, 0, 0, -1, 0, hauteur});
        return make<NSGraphicsContext>(std::move(toile), YES, image);
    }
};

struct Pair {
    explicit Pair(Aspects aspects) {
        const std::u16string texte = toutesLesLignes();
        QFont f(QString::fromStdString(backend::Backend::current().text->systemFontFamily()));
        f.setPixelSize(static_cast<int>(corps));
        document.setUndoRedoEnabled(false);
        document.setDocumentMargin(0);
        document.setDefaultFont(f);
        document.setTextWidth(largeur);
        document.setPlainText(QString::fromStdU16String(texte));
        QTextCharFormat gras;
        gras.setFontWeight(QFont::Bold);
        if (aspects == Aspects::deux)
            pourLesMotsGras(texte, [&](std::size_t i) {
                QTextCursor c(&document);
                c.setPosition(static_cast<int>(i));
                c.setPosition(static_cast<int>(i) + debutGras, QTextCursor::KeepAnchor);
                c.setCharFormat(gras);
            });
        frappe = Frappe(texte.find(u'\n', texte.size() / 2) + 8);
        image.fill(Qt::white);
    }

    QSizeF passe() {
        QTextCursor c(&document);
        c.setPosition(static_cast<int>(frappe.place()));
        if (frappe.tape())
            c.insertText(QStringLiteral("e"));
        else
            c.deleteChar();
        const QSizeF tout = document.size();
        const QRectF ici = document.documentLayout()->blockBoundingRect(c.block());
        const QRectF vu(0, ici.center().y() - hauteur / 2.0, largeur, hauteur);
        QPainter peintre(&image);
        peintre.translate(0, -vu.y());
        peintre.fillRect(vu, Qt::white);
        document.drawContents(&peintre, vu);
        return tout;
    }

    QTextDocument document;
    QImage image{largeur, hauteur, QImage::Format_ARGB32_Premultiplied};
    Frappe frappe{0};
};

banc::Chemin frappes(Aspects aspects) {
    auto nous = std::make_shared<Nous>(aspects);
    auto pair = std::make_shared<Pair>(aspects);
    // Both have as many lines, and drew something.
    const CGFloat notre = nous->passe().height, autre = pair->passe().height();
    if (!(notre > lignes * corps && std::abs(notre - autre) < 0.2 * notre))
        throw std::runtime_error("one of the texts is not there: " + std::to_string(notre) + " and " +
                                 std::to_string(autre));
    return {[nous] { banc::garde(nous->passe()); }, [pair] { banc::garde(pair->passe()); }};
}

} // namespace

int main(int argc, char** argv) {
    backend::Backend::install(backend::makeMemoryBackend());
    banc::Banc banc;
    banc.ajoute("text-edit", [] { return frappes(Aspects::un); });
    banc.ajoute("text-edit-runs", [] { return frappes(Aspects::deux); });
    return banc.lance(argc, argv);
}

// A hundred pages of cards to a PDF: a grid through the print operation, beside a painter that puts the same shapes and
// words at the same places.
#define QT_NO_KEYWORDS

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include <QBuffer>
#include <QByteArray>
#include <QFont>
#include <QFontMetricsF>
#include <QMarginsF>
#include <QPageSize>
#include <QPainter>
#include <QPainterPath>
#include <QPdfWriter>
#include <QPen>
#include <QString>

#include <libvue/collections/KCCollectionView.h>
#include <libvue/platform/appkit/NSNib.h>
#include <libvue/platform/appkit/NSPrintInfo.h>
#include <libvue/platform/appkit/NSPrintOperation.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSStringDrawing.h>

#include "Banc.h"

using namespace libvue;

namespace {

constexpr int kPages = 100, kColonnes = 4, kRangees = 8;
constexpr int kCartes = kPages * kColonnes * kRangees;
constexpr double kLargeur = 128, kHauteur = 90, kRecouvrement = -10;
constexpr double kPapierLargeur = 612, kPapierHauteur = 792, kMarge = 30, kMargeHaut = 45;

std::string mot(int i) { return "carte numéro " + std::to_string(i); }
std::string sens(int i) { return "nom féminin, sens " + std::to_string(i % 7); }

Ref<NSDictionary> attributs(CGFloat taille, NSColor* couleur) {
    return NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSFontAttributeName.get(), NSFont::fontWithName_size(u"Helvetica"_ns, taille)},
         {NSForegroundColorAttributeName.get(), couleur}});
}

class Entree : public NSObject {
public:
    static void describe(ClassDescription<Entree>&) {}
    explicit Entree(int i) : mot(NSString::fromUTF8(::mot(i))), sens(NSString::fromUTF8(::sens(i))) {}
    Ref<NSString> mot, sens;
};

class Carte : public NSView, public KCCollectionItemView {
public:
    static void describe(ClassDescription<Carte, NSView>& c) { decritVueItem(c); }
    static NSSize taille() { return {kLargeur, kHauteur}; }
    Carte() : NSView({{0, 0}, taille()}) {}
    [[nodiscard]] NSObject* collectionView() const override { return nullptr; }
    void setCollectionView(NSObject*) override {}
    [[nodiscard]] NSObject* objetConnectay() const override { return objet_; }
    void setObjetConnectay(NSObject* o) override { objet_ = o; }
    void drawRect(const NSRect&) override {
        static const auto& grand = *new Ref<NSDictionary>(attributs(12, NSColor::blackColor()));
        static const auto& petit = *new Ref<NSDictionary>(attributs(9, NSColor::darkGrayColor()));
        const auto contour = NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(NSInsetRect(bounds(), 8, 8), 6, 6);
        NSColor::colorWithCalibratedRed_green_blue_alpha(0.93, 0.95, 1, 1)->setFill();
        contour->fill();
        NSColor::grayColor()->setStroke();
        contour->stroke();
        if (const auto* e = as<Entree>(objet_.get())) {
            drawAtPoint_withAttributes(e->mot, {16, 50}, grand);
            drawAtPoint_withAttributes(e->sens, {16, 30}, petit);
        }
    }

private:
    Ref<NSObject> objet_;
};

struct Grille {
    Ref<KCCollectionView> grille = make<KCCollectionView>(NSRect{{0, 0}, {600, 400}});
    Ref<NSScrollView> defilement = make<NSScrollView>(NSRect{{0, 0}, {600, 400}});
    Ref<NSPrintInfo> info = make<NSPrintInfo>();

    Grille() {
        NSNib::registerBuilder(u"carte-imprimee"_ns, [](NSObject*, NSMutableArray* objets) -> BOOL {
            objets->addObject(make<Carte>());
            return YES;
        });
        const auto entrees = NSMutableArray::array();
        for (int i = 0; i < kCartes; ++i)
            entrees->addObject(make<Entree>(i));
        grille->setClasseVueItem(&classOf<Carte>());
        grille->setNomNib(u"carte-imprimee"_ns);
        grille->setNomApp_etCopyright(u"Banc"_ns, u"Tous droits"_ns);
        grille->setDonnees(entrees);
        grille->setEspacement({kRecouvrement, kRecouvrement});
        defilement->setDocumentView(grille);
        info->setPaperSize({kPapierLargeur, kPapierHauteur});
        info->setLeftMargin(kMarge);
        info->setRightMargin(kMarge);
        info->setTopMargin(kMargeHaut);
        info->setBottomMargin(kMarge);
        info->setHorizontallyCentered(NO);
        info->setVerticallyCentered(NO);
        info->setJobDisposition(NSPrintSaveJob.get());
    }

    void imprime() const {
        const auto operation = NSPrintOperation::printOperationWithView_printInfo(grille, info);
        operation->setShowsPrintPanel(NO);
        operation->setShowsProgressPanel(NO);
        const Ref<NSData> pdf = operation->runOperation() ? operation->data() : nullptr;
        if (!pdf || pdf->length() == 0 || operation->pageRange().length != kPages) {
            std::fprintf(stderr, "the grid has not printed %d pages\n", kPages);
            std::exit(1);
        }
    }
};

QFont police(double taille) {
    QFont f(QStringLiteral("Liberation Sans"));
    f.setPixelSize(static_cast<int>(taille));
    f.setHintingPreference(QFont::PreferNoHinting);
    return f;
}

void peint() {
    QByteArray octets;
    QBuffer tampon(&octets);
    tampon.open(QIODevice::WriteOnly);
    QPdfWriter ecrit(&tampon);
    constexpr int resolution = 1440;
    ecrit.setResolution(resolution);
    ecrit.setPageSize(
        QPageSize(QSizeF(kPapierLargeur, kPapierHauteur), QPageSize::Point, QString(), QPageSize::ExactMatch));
    ecrit.setPageMargins(QMarginsF());
    QPainter p(&ecrit);
    p.scale(resolution / 72.0, resolution / 72.0);
    p.setRenderHint(QPainter::Antialiasing);
    const QFont grand = police(12), petit = police(9), bord = police(10);
    const QFontMetricsF mesure(bord);
    const QBrush fond(QColor::fromRgbF(0.93F, 0.95F, 1.0F));
    for (int page = 0; page < kPages; ++page) {
        if (page > 0) ecrit.newPage();
        for (int k = 0; k < kColonnes * kRangees; ++k) {
            const int i = page * kColonnes * kRangees + k;
            const double x = kMarge + 10 + k % kColonnes * (kLargeur + kRecouvrement);
            const double y = kMargeHaut + k / kColonnes * (kHauteur + kRecouvrement);
            QPainterPath contour;
            contour.addRoundedRect(QRectF(x + 8, y + 8, kLargeur - 16, kHauteur - 16), 6, 6);
            p.fillPath(contour, fond);
            p.strokePath(contour, QPen(Qt::gray, 1));
            p.setFont(grand);
            p.setPen(Qt::black);
            p.drawText(QPointF(x + 16, y + kHauteur - 53), QString::fromStdString(mot(i)));
            p.setFont(petit);
            p.setPen(Qt::darkGray);
            p.drawText(QPointF(x + 16, y + kHauteur - 32), QString::fromStdString(sens(i)));
        }
        p.setFont(bord);
        p.setPen(Qt::black);
        const QString mention = QStringLiteral("Imprimé le 21 novembre 2026");
        const QString numero = QStringLiteral("Page %1").arg(page + 1);
        p.drawText(QPointF(kMarge, 30), QStringLiteral("Banc"));
        p.drawText(QPointF(280, 30), QStringLiteral("Tous droits"));
        p.drawText(QPointF(582 - mesure.horizontalAdvance(mention), 30), mention);
        p.drawText(QPointF(582 - mesure.horizontalAdvance(numero), 770), numero);
        p.drawText(QPointF(kMarge, 770), QStringLiteral("Zerlanto - Dictionnaires"));
        p.setPen(QPen(Qt::darkGray, 1));
        p.drawLine(QPointF(kMarge, 756), QPointF(582, 756));
    }
    p.end();
    banc::garde(octets.size());
}

} // namespace

int main(int argc, char** argv) {
    banc::Banc b;
    b.ajoute("grid-print", [] {
        auto grille = std::make_shared<Grille>();
        return banc::Chemin{[grille] { grille->imprime(); }, [] { peint(); }};
    });
    return b.lance(argc, argv);
}

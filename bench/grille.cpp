// A grid of a million objects beside QListView in icon mode: the same cells with the same labels at the same places, in
// windows of one size.

#include <algorithm>
#include <chrono>
#include <memory>
#include <random>
#include <stdexcept>

#include <malloc.h>

#ifdef LIBVUE_HAVE_WIDGETS
#define QT_NO_KEYWORDS
#include <QAbstractListModel>
#include <QApplication>
#include <QListView>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#endif

#include <libvue/collections/BassinCirculaire.h>
#include <libvue/collections/KCCollectionView.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSNib.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSStringDrawing.h>

#include "Banc.h"

using namespace libvue;

namespace {

constexpr NSUInteger beaucoup = 1'000'000, peu = 1'000;
constexpr int largeur = 660, hauteur = 480;
constexpr int celluleL = 120, celluleH = 56, ecart = 8, marge = 10;
constexpr CGFloat pas = 24;
constexpr int allers = 40; ///< steps down before as many up

using Horloge = std::chrono::steady_clock;

std::string etiquette(std::size_t i) { return "Carte " + std::to_string(i + 1); }

class Objet : public NSObject {
public:
    static void describe(ClassDescription<Objet>&) {}
    explicit Objet(std::size_t i) : texte(NSString::fromUTF8(etiquette(i))) {}
    const Ref<NSString> texte;
};

class Cellule : public NSView, public KCCollectionItemView {
public:
    static void describe(ClassDescription<Cellule, NSView>& c) { decritVueItem(c); }
    static NSSize taille() { return {celluleL, celluleH}; }
    Cellule() : NSView({{0, 0}, taille()}) {}
    [[nodiscard]] NSObject* collectionView() const override { return grille_; }
    void setCollectionView(NSObject* g) override { grille_ = g; }
    [[nodiscard]] NSObject* objetConnectay() const override { return objet_; }
    void setObjetConnectay(NSObject* o) override {
        objet_ = as<Objet>(o);
        setNeedsDisplay(YES);
    }
    [[nodiscard]] BOOL isFlipped() const override { return YES; }
    void drawRect(const NSRect&) override {
        static NSColor* fond = keptForever(NSColor::colorWithCalibratedRed_green_blue_alpha(0.93, 0.95, 1, 1));
        static NSDictionary* attributs = keptForever(
            NSDictionary::dictionaryWithObjectsAndKeys({{NSFontAttributeName, NSFont::systemFontOfSize(13).get()},
                                                        {NSForegroundColorAttributeName, NSColor::blackColor()}}));
        fond->setFill();
        NSRectFill(bounds());
        if (objet_) drawAtPoint_withAttributes(objet_->texte, {10, 18}, attributs);
    }

private:
    Weak<NSObject> grille_;
    Ref<Objet> objet_;
};

/// The first objects of one list, which is made once.
Ref<NSArray> donnees(NSUInteger n) {
    static NSMutableArray* tous = [] {
        auto a = NSMutableArray::arrayWithCapacity(beaucoup);
        for (NSUInteger i = 0; i < beaucoup; ++i)
            a->addObject(make<Objet>(i));
        return keptForever(a);
    }();
    return tous->subarrayWithRange({0, n});
}

struct Notre {
    explicit Notre(const Ref<NSArray>& objets) {
        defilement->setHasVerticalScroller(YES);
        grille->setClasseVueItem(&classOf<Cellule>());
        grille->setNomNib(u"cellule"_ns);
        grille->setAutoresizingMask(NSViewWidthSizable);
        grille->setEspacement({ecart, ecart});
        fenetre->contentView()->addSubview(defilement);
        defilement->setDocumentView(grille);
        grille->setDonnees(objets);
        fenetre->makeKeyAndOrderFront(nullptr);
        fenetre->displayIfNeeded();
    }
    ~Notre() {
        fenetre->close();
        NSApp()->drain_();
    }
    Ref<NSWindow> fenetre = make<NSWindow>(NSMakeRect(100, 100, largeur, hauteur), NSTitledWindowMask);
    Ref<NSScrollView> defilement = make<NSScrollView>(NSMakeRect(0, 0, largeur, hauteur));
    Ref<KCCollectionView> grille = make<KCCollectionView>(NSMakeRect(0, 0, largeur, hauteur));

    void va(CGFloat y) const {
        NSClipView* clip = defilement->contentView();
        const NSUInteger avant = fenetre->displayPassCount();
        clip->scrollToPoint(clip->constrainScrollPoint({0, y}));
        defilement->reflectScrolledClipView(clip);
        fenetre->displayIfNeeded();
        if (fenetre->displayPassCount() == avant) throw std::runtime_error("a step was not painted");
    }
};

#ifdef LIBVUE_HAVE_WIDGETS
class Modele : public QAbstractListModel {
public:
    explicit Modele(int n) {
        textes_.reserve(n);
        for (int i = 0; i < n; ++i)
            textes_.push_back(QString::fromStdString(etiquette(static_cast<std::size_t>(i))));
    }
    int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : int(textes_.size()); }
    QVariant data(const QModelIndex& i, int role) const override {
        return role == Qt::DisplayRole ? QVariant(textes_[i.row()]) : QVariant();
    }

private:
    QList<QString> textes_;
};

class Peintre : public QStyledItemDelegate {
public:
    void paint(QPainter* p, const QStyleOptionViewItem& o, const QModelIndex& i) const override {
        const QRect r = o.rect.adjusted(0, 0, -ecart, -ecart);
        p->fillRect(r, QColor(237, 242, 255));
        p->setFont(police);
        p->setPen(Qt::black);
        p->drawText(QPointF(r.x() + 10, r.y() + 18 + 13), i.data().toString());
    }
    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
        return {celluleL + ecart, celluleH + ecart};
    }
    QFont police = [] {
        QFont f(QString::fromStdString(backend::Backend::current().text->systemFontFamily()));
        f.setPixelSize(13);
        return f;
    }();
};

class Liste : public QListView {
public:
    int peintures = 0;

protected:
    void paintEvent(QPaintEvent* e) override {
        QListView::paintEvent(e);
        ++peintures;
    }
};

struct Pair {
    explicit Pair(int n) : modele(n) {
        liste.setViewMode(QListView::IconMode);
        liste.setUniformItemSizes(true);
        liste.setMovement(QListView::Static);
        liste.setResizeMode(QListView::Adjust);
        liste.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
        liste.setFrameShape(QFrame::NoFrame);
        liste.setItemDelegate(&peintre);
        liste.setModel(&modele);
        liste.resize(largeur, hauteur);
        liste.show();
        while (liste.peintures == 0)
            QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }
    Modele modele;
    Peintre peintre;
    Liste liste;

    void va(CGFloat y) {
        const int avant = liste.peintures;
        liste.verticalScrollBar()->setValue(static_cast<int>(y));
        while (liste.peintures == avant)
            QCoreApplication::processEvents();
    }
};
#endif

/// Down and up again, over some screens.
struct Va {
    CGFloat y = 3000, sens = pas;
    int fait = 0;
    CGFloat suivant() {
        if (++fait % allers == 0) sens = -sens;
        return y += sens;
    }
};

banc::Chemin marche() {
    auto nous = std::make_shared<Notre>(donnees(beaucoup));
    banc::Chemin c;
    c.notre = [nous, v = Va()]() mutable { nous->va(v.suivant()); };
#ifdef LIBVUE_HAVE_WIDGETS
    auto eux = std::make_shared<Pair>(static_cast<int>(beaucoup));
    c.pair = [eux, v = Va()]() mutable { eux->va(v.suivant()); };
#endif
    return c;
}

banc::Chemin saut() {
    auto nous = std::make_shared<Notre>(donnees(beaucoup));
    const auto jusquA = static_cast<int>(nous->grille->frame().size.height) - hauteur;
    const auto tire = [hasard = std::mt19937(7), jusquA]() mutable {
        return static_cast<CGFloat>(std::uniform_int_distribution<int>(0, jusquA)(hasard));
    };
    banc::Chemin c;
    c.notre = [nous, t = tire]() mutable { nous->va(t()); };
#ifdef LIBVUE_HAVE_WIDGETS
    auto eux = std::make_shared<Pair>(static_cast<int>(beaucoup));
    c.pair = [eux, t = tire]() mutable { eux->va(t()); };
#endif
    return c;
}

double microsecondes(const std::function<void()>& travail) {
    const auto debut = Horloge::now();
    travail();
    return std::chrono::duration<double, std::micro>(Horloge::now() - debut).count();
}

/// The step over a million objects, beside the step over a thousand.
banc::Mesures croissance() {
    const Notre grand(donnees(beaucoup)), petit(donnees(peu));
    Va a, b;
    std::vector<double> grands, petits;
    for (int i = 0; i < 4000; ++i) {
        grands.push_back(microsecondes([&] { grand.va(a.suivant()); }));
        petits.push_back(microsecondes([&] { petit.va(b.suivant()); }));
    }
    return {banc::mediane(grands), banc::mediane(petits)};
}

/// From nothing to the first painting, over a million and over a thousand objects that are there already.
banc::Mesures premiereVue() {
    const Ref<NSArray> grands = donnees(beaucoup), petits = donnees(peu);
    std::vector<double> m, k;
    for (int i = 0; i < 60; ++i) {
        m.push_back(microsecondes([&] { Notre n(grands); }));
        k.push_back(microsecondes([&] { Notre n(petits); }));
    }
    return {banc::mediane(m), banc::mediane(k)};
}

/// What the heap grows by when a grid of a thousand gets a million.
banc::Mesures memoire() {
    const Ref<NSArray> grands = donnees(beaucoup), petits = donnees(peu);
    Notre n(petits);
    n.va(500);
    const auto avant = ::mallinfo2();
    n.grille->setDonnees(grands);
    n.va(500);
    n.va(n.grille->frame().size.height);
    const auto apres = ::mallinfo2();
    const auto octets = [](const struct mallinfo2& i) { return static_cast<double>(i.uordblks + i.hblkhd); };
    return {std::max(0.0, octets(apres) - octets(avant)), std::nullopt};
}

} // namespace

int main(int argc, char** argv) {
#ifdef LIBVUE_HAVE_WIDGETS
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
#endif
    backend::Backend::install(backend::makeMemoryBackend());
    NSNib::registerBuilder(u"cellule"_ns, [](NSObject*, NSMutableArray* objets) -> BOOL {
        objets->addObject(make<Cellule>());
        return YES;
    });
    banc::Banc banc;
    banc.ajoute("grid-step", marche);
    banc.ajoute({"grid-step-growth", "us", croissance});
    banc.ajoute("grid-jump", saut);
    banc.ajoute({"grid-first-show", "us", premiereVue});
    banc.ajoute({"grid-memory", "B", memoire});
    const int etat = banc.lance(argc, argv);
    NSApplication::resetSharedApplication();
    return etat;
}

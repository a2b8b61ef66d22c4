#pragma once

#include <string>
#include <vector>

#include <appkit/Impression.h>

#include <libvue/collections/BassinCirculaire.h>
#include <libvue/collections/KCCollectionView.h>
#include <libvue/collections/KCNibHelper.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSNib.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/foundation/NSNumber.h>

namespace libvue::test {

/// A data object that counts what it is told.
class Objet : public NSObject {
public:
    static void describe(ClassDescription<Objet>& c) { c.answers<&Objet::setSelected>(op::setSelected); }
    explicit Objet(int numero) : numero(numero) {}
    const int numero;
    std::vector<bool> dit;
    void setSelected(BOOL f) { dit.push_back(f); }
};

/// An item view of 100 by 50 that counts its bindings, and shows the number of its object.
class Vignette : public NSView, public KCCollectionItemView {
public:
    static void describe(ClassDescription<Vignette, NSView>& c) { decritVueItem(c); }
    static NSSize taille() { return cote; }
    static inline NSSize cote{100, 50};
    static inline int nees = 0;
    /// Called while the view is bound.
    static inline std::function<void()> enLiant;

    Vignette() : NSView({{0, 0}, cote}) { ++nees; }
    [[nodiscard]] NSObject* collectionView() const override { return grille_; }
    void setCollectionView(NSObject* g) override { grille_ = g; }
    [[nodiscard]] NSObject* objetConnectay() const override { return objet_; }
    void setObjetConnectay(NSObject* o) override {
        if (o == objet_.get()) ++liaisonsVaines;
        ++liaisons;
        objet_ = o;
        if (enLiant) enLiant();
    }
    /// Of its object, -1 for none.
    [[nodiscard]] int numero() const {
        const auto* o = as<Objet>(objet_.get());
        return o ? o->numero : -1;
    }
    void drawRect(const NSRect&) override {
        drawAtPoint_withAttributes(NSString::stringWithFormat(u"mot%d"_ns, numero()),
                                   {10, bounds().size.height / 2 - 8}, nullptr);
    }
    int liaisons = 0, liaisonsVaines = 0;

private:
    Weak<NSObject> grille_;
    Ref<NSObject> objet_;
};

class DelegueGrille : public NSObject {
public:
    static void describe(ClassDescription<DelegueGrille>& c) {
        c.answers<&DelegueGrille::entete>(op::collectionViewTailleEntete);
        c.answers<&DelegueGrille::pied>(op::collectionViewTaillePiedDePage);
        c.answers<&DelegueGrille::dessineEntete>(op::collectionView_drawEntete);
        c.answers<&DelegueGrille::dessinePied>(op::collectionView_drawPiedDePage);
        c.answers<&DelegueGrille::change>(op::collectionViewSelectionDidChange);
        c.answers<&DelegueGrille::doubleClic>(op::collectionView_doubleCliqueSurObjet);
    }
    CGFloat hauteurEntete = 0, hauteurPied = 0;
    std::function<void()> enDemandant;
    std::vector<NSRect> entetes, pieds;
    int changements = 0;
    std::vector<int> doubles;
    CGFloat entete(KCCollectionView*) {
        if (enDemandant) enDemandant();
        return hauteurEntete;
    }
    CGFloat pied(KCCollectionView*) { return hauteurPied; }
    void dessineEntete(KCCollectionView*, NSRect r) {
        entetes.push_back(r);
        drawAtPoint_withAttributes(u"entete"_ns, {10, 4}, nullptr);
    }
    void dessinePied(KCCollectionView*, NSRect r) {
        pieds.push_back(r);
        drawAtPoint_withAttributes(u"pied"_ns, r.origin, nullptr);
    }
    void change(KCCollectionView*) { ++changements; }
    void doubleClic(KCCollectionView*, NSObject* o) { doubles.push_back(as<Objet>(o)->numero); }
};

/// A grid in a scroll view in a window; item views come from a builder.
class GrilleEssai : public ImpressionFixture {
protected:
    Ref<NSWindow> fenetre;
    Ref<NSScrollView> defilement;
    Ref<KCCollectionView> grille;
    Ref<DelegueGrille> delegue;

    void SetUp() override {
        Vignette::cote = {100, 50};
        Vignette::nees = 0;
        NSNib::registerBuilder(u"vignette"_ns, [](NSObject*, NSMutableArray* objets) -> BOOL {
            objets->addObject(make<Vignette>());
            return YES;
        });
        fenetre = windowAt({{100, 100}, {320, 200}});
        defilement = make<NSScrollView>(NSMakeRect(0, 0, 320, 200));
        defilement->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
        grille = make<KCCollectionView>(NSMakeRect(0, 0, 320, 200));
        grille->setAutoresizingMask(NSViewWidthSizable);
        grille->setClasseVueItem(&classOf<Vignette>());
        grille->setNomNib(u"vignette"_ns);
        delegue = make<DelegueGrille>();
        grille->setDelegate(delegue);
        fenetre->contentView()->addSubview(defilement);
        defilement->setDocumentView(grille);
    }
    void TearDown() override {
        Vignette::enLiant = {};
        NSNib::registerBuilder(u"vignette"_ns, {});
        grille = nullptr;
        defilement = nullptr;
        delegue = nullptr;
        fenetre = nullptr;
        ImpressionFixture::TearDown();
    }

    static Ref<NSArray> objets(int n, int premier = 0) {
        const Ref<NSMutableArray> a = NSMutableArray::array();
        for (int i = 0; i < n; ++i)
            a->addObject(make<Objet>(premier + i));
        return a;
    }
    Objet* objet(NSUInteger i) const { return grille->donnees()->at<Objet>(i); }
    std::vector<Vignette*> vignettes() const {
        std::vector<Vignette*> toutes;
        for (NSView* v : grille->subviews())
            toutes.push_back(as<Vignette>(v));
        return toutes;
    }
    void defile(CGFloat y) {
        NSClipView* clip = defilement->contentView();
        clip->scrollToPoint(clip->constrainScrollPoint({0, y}));
        defilement->reflectScrolledClipView(clip);
        grille->setNeedsDisplay(YES);
        drain();
    }
};

} // namespace libvue::test

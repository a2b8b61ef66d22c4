// A layout pass over ten thousand leaves in nested layout views, beside Qt's box layouts over bare items.

#include <memory>
#include <vector>

#include <QBoxLayout>
#include <QLayoutItem>

#include <libvue/layout/KCLayoutLineaire.h>
#include <libvue/layout/KCLayoutView.h>

#include "Banc.h"

using namespace libvue;

namespace {

constexpr int kBranches = 10;
constexpr int kNiveaux = 4; // 1 + 10 + 100 + 1000 boxes, ten leaves in each of the last

/// Every second level is a column; each box fits its content, so that a change of the gaps resizes every box and moves
/// all that it holds. The first leaf of each box alone keeps its frame, which is counted from the box; Qt counts from
/// the root, where it moves.
struct Arbre {
    Ref<KCLayoutView> racine;
    std::vector<Ref<KCLayoutView>> boites;
    std::vector<Ref<KCLayoutLineaire>> politiques;
    std::vector<Ref<NSView>> feuilles;
    bool large = false;

    Arbre() { racine = boite(0); }

    Ref<KCLayoutView> boite(int niveau) {
        auto v = make<KCLayoutView>(NSRect{{0, 0}, {10, 10}});
        auto m = make<KCLayoutLineaire>();
        m->setDirection(niveau % 2);
        m->setAjusteTailleAuContenu(YES);
        m->setEspacement(2);
        v->setLayoutManager(m);
        boites.push_back(v);
        politiques.push_back(m);
        for (int i = 0; i < kBranches; ++i) {
            if (niveau + 1 < kNiveaux) {
                v->addSubview(boite(niveau + 1));
            } else {
                feuilles.push_back(make<NSView>(NSRect{{0, 0}, {8, 8}}));
                v->addSubview(feuilles.back());
            }
        }
        return v;
    }

    void passeEntiere() {
        large = !large;
        for (auto& m : politiques)
            m->setEspacement(large ? 4 : 2);
        for (auto& b : boites)
            b->setNecessiteLayout(YES);
        racine->layoutSiNecessaire();
    }

    void uneFeuille() {
        large = !large;
        NSView* f = feuilles[feuilles.size() / 2];
        f->setFrameSize({large ? 9.0 : 8.0, 8});
        racine->layoutSiNecessaire();
    }
};

/// An item without a widget.
class Element : public QLayoutItem {
public:
    QSize sizeHint() const override { return {8, 8}; }
    QSize minimumSize() const override { return {1, 1}; }
    QSize maximumSize() const override { return {QLAYOUTSIZE_MAX, QLAYOUTSIZE_MAX}; }
    Qt::Orientations expandingDirections() const override { return Qt::Horizontal | Qt::Vertical; }
    void setGeometry(const QRect& r) override { rect_ = r; }
    QRect geometry() const override { return rect_; }
    bool isEmpty() const override { return false; }

private:
    QRect rect_;
};

struct ArbreQt {
    std::unique_ptr<QBoxLayout> racine;
    std::vector<QBoxLayout*> boites;
    bool large = false;

    ArbreQt() { racine.reset(boite(0)); }

    QBoxLayout* boite(int niveau) {
        auto* b = new QBoxLayout(niveau % 2 ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
        b->setContentsMargins(0, 0, 0, 0);
        b->setSpacing(2);
        boites.push_back(b);
        for (int i = 0; i < kBranches; ++i) {
            if (niveau + 1 < kNiveaux)
                b->addLayout(boite(niveau + 1));
            else
                b->addItem(new Element);
        }
        return b;
    }

    void passeEntiere() {
        large = !large;
        for (QBoxLayout* b : boites) {
            b->setSpacing(large ? 4 : 2);
            b->invalidate();
        }
        const QSize s = racine->sizeHint();
        racine->setGeometry({0, 0, s.width() + large, s.height() + large});
    }
};

} // namespace

int main(int argc, char** argv) {
    banc::Banc banc;
    banc.ajoute("layout-pass", [] {
        auto nous = std::make_shared<Arbre>();
        auto eux = std::make_shared<ArbreQt>();
        return banc::Chemin{[nous] { nous->passeEntiere(); }, [eux] { eux->passeEntiere(); }};
    });
    banc.ajoute("layout-one-leaf", [] {
        auto nous = std::make_shared<Arbre>();
        auto entier = std::make_shared<Arbre>();
        nous->passeEntiere();
        return banc::Chemin{[nous] { nous->uneFeuille(); }, [entier] { entier->passeEntiere(); }};
    });
    return banc.lance(argc, argv);
}

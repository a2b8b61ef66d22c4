#include <appkit/AppFixture.h>
#include <support/Silence.h>

#include <cmath>

#include <gmock/gmock.h>

#include <libvue/panels/KCAnimationsDePanneauGlissant.h>
#include <libvue/panels/KCConteneurDePanneauxGlissants.h>
#include <libvue/panels/KCPanneauGlissant.h>
#include <libvue/platform/appkit/NSAnimation.h>
#include <libvue/platform/backend/Canvas.h>
#include <libvue/platform/foundation/Class.h>
#include <libvue/platform/foundation/NSNotification.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSDrawing.h>
#include <libvue/platform/graphics/NSImage.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr CGFloat kL = 200, kH = 100;

/// A panel of one colour that says what it hears.
class Panneau : public KCPanneauGlissant {
public:
    static void describe(ClassDescription<Panneau, KCPanneauGlissant>&) {}
    Panneau(Log& log, std::string nom, NSColor* couleur = nullptr, const NSRect& cadre = {{0, 0}, {kL, kH}})
        : KCPanneauGlissant(cadre), log_(&log), nom_(std::move(nom)), couleur_(couleur) {}
    int dessins = 0;
    void panneauEstAffichay() override {
        log_->push_back(nom_);
        KCPanneauGlissant::panneauEstAffichay();
    }
    void drawRect(const NSRect&) override {
        ++dessins;
        if (!couleur_) return;
        couleur_->set();
        NSRectFill(bounds());
    }

private:
    Log* log_;
    std::string nom_;
    Ref<NSColor> couleur_;
};

/// Follows the view that moves directly in the container.
class Suiveur : public NSObject {
public:
    static void describe(ClassDescription<Suiveur>& c) { c.answers<&Suiveur::bouge>("bouge:"); }
    explicit Suiveur(NSView* parent) : parent_(parent) {
        NSNotificationCenter::defaultCenter()->addObserver_selector_name_object(
            this, sel("bouge:"), NSViewFrameDidChangeNotification.get(), nullptr);
    }
    ~Suiveur() override { NSNotificationCenter::defaultCenter()->removeObserver(this); }
    std::vector<NSRect> cadres;
    std::function<void(NSView*, std::size_t)> reaction;
    void bouge(NSNotification* n) {
        auto* v = as<NSView>(n->object());
        if (!v || !parent_ || v->superview() != parent_.get()) return;
        cadres.push_back(v->frame());
        if (reaction) reaction(v, cadres.size());
    }

private:
    Weak<NSView> parent_;
};

using Anime = KCAnimationDePanneauxGlissants;

template <class T> Ref<NSObject> nouvelle() { return T::animationPanneau(); }

struct Strategie {
    const char* nom;
    Ref<NSObject> (*fabrique)();
    NSRect depart, arrivee; ///< in container sizes, relative to its bounds' origin
    bool pousse;
    NSRect ancienne, nouvelle; ///< in the strip, in container sizes
};

const Strategie strategies[] = {
    {"KCAnimationDePanneauGlissantVersLaGauche",
     nouvelle<KCAnimationDePanneauGlissantVersLaGauche>,
     {{0, 0}, {2, 1}},
     {{-1, 0}, {2, 1}},
     true,
     {{0, 0}, {1, 1}},
     {{1, 0}, {1, 1}}},
    {"KCAnimationDePanneauGlissantVersLaDroite",
     nouvelle<KCAnimationDePanneauGlissantVersLaDroite>,
     {{-1, 0}, {2, 1}},
     {{0, 0}, {2, 1}},
     true,
     {{1, 0}, {1, 1}},
     {{0, 0}, {1, 1}}},
    {"KCAnimationDePanneauGlissantVersLeHaut",
     nouvelle<KCAnimationDePanneauGlissantVersLeHaut>,
     {{0, -1}, {1, 2}},
     {{0, 0}, {1, 2}},
     true,
     {{0, 1}, {1, 1}},
     {{0, 0}, {1, 1}}},
    {"KCAnimationDePanneauGlissantVersLeBas",
     nouvelle<KCAnimationDePanneauGlissantVersLeBas>,
     {{0, 0}, {1, 2}},
     {{0, -1}, {1, 2}},
     true,
     {{0, 0}, {1, 1}},
     {{0, 1}, {1, 1}}},
    {"KCAnimationDePanneauGlissantParDessusVersLaGauche",
     nouvelle<KCAnimationDePanneauGlissantParDessusVersLaGauche>,
     {{1, 0}, {1, 1}},
     {{0, 0}, {1, 1}},
     false,
     {},
     {}},
    {"KCAnimationDePanneauGlissantParDessusVersLaDroite",
     nouvelle<KCAnimationDePanneauGlissantParDessusVersLaDroite>,
     {{-1, 0}, {1, 1}},
     {{0, 0}, {1, 1}},
     false,
     {},
     {}},
    {"KCAnimationDePanneauGlissantParDessusVersLeHaut",
     nouvelle<KCAnimationDePanneauGlissantParDessusVersLeHaut>,
     {{0, -1}, {1, 1}},
     {{0, 0}, {1, 1}},
     false,
     {},
     {}},
    {"KCAnimationDePanneauGlissantParDessusVersLeBas",
     nouvelle<KCAnimationDePanneauGlissantParDessusVersLeBas>,
     {{0, 1}, {1, 1}},
     {{0, 0}, {1, 1}},
     false,
     {},
     {}},
};

NSRect enPoints(const NSRect& r, NSPoint o = {0, 0}) {
    return {{o.x + r.origin.x * kL, o.y + r.origin.y * kH}, {r.size.width * kL, r.size.height * kH}};
}

struct PanneauxTest : AppFixture {
    Ref<NSWindow> fenetre;
    Ref<KCConteneurDePanneauxGlissants> conteneur;
    Ref<Suiveur> suiveur;
    Ref<Panneau> rouge, bleu;

    void SetUp() override {
        fenetre = windowAt({{100, 100}, {kL, kH}});
        conteneur = make<KCConteneurDePanneauxGlissants>(NSMakeRect(0, 0, kL, kH));
        fenetre->contentView()->addSubview(conteneur);
        rouge = make<Panneau>(log, "rouge", NSColor::redColor());
        bleu = make<Panneau>(log, "bleu", NSColor::blueColor());
        show(fenetre);
        suiveur = make<Suiveur>(conteneur);
    }
    void TearDown() override {
        suiveur = nullptr;
        rouge = bleu = nullptr;
        conteneur = nullptr;
        if (fenetre) fenetre->close();
        fenetre = nullptr;
        AppFixture::TearDown();
    }
    void affiche(NSView* p, const Ref<NSObject>& animation = nullptr) const {
        conteneur->afficherPanneau_avecAnimation(p, dynamic_cast<Anime*>(animation.get()));
        drain();
    }
    [[nodiscard]] std::vector<NSView*> dedans() const {
        std::vector<NSView*> v;
        for (const auto& s : conteneur->subviews().copy())
            v.push_back(s.get());
        return v;
    }
    /// "r", "b" or another letter for the pixel, from the container's lower left corner.
    [[nodiscard]] char pixel(int x, int y) const {
        const Ref<NSImage> image = fenetre->captureImage();
        const auto p = image->picture(1);
        const backend::Color c = p->pixel(x, p->pixelHeight() - 1 - y);
        return c.red > 0.9 && c.blue < 0.1 ? 'r' : c.blue > 0.9 && c.red < 0.1 ? 'b' : '?';
    }
};

TEST_F(PanneauxTest, eachSlideGoesItsWay) {
    const NSPoint o{7, -3};
    conteneur->setBoundsOrigin(o);
    for (const Strategie& s : strategies) {
        SCOPED_TRACE(s.nom);
        affiche(rouge);
        taken();
        suiveur->cadres.clear();
        const NSTimeInterval debut = NSRunLoop::mainRunLoop()->now();
        suiveur->reaction = [&](NSView* v, std::size_t) {
            EXPECT_EQ(conteneur->panneauActuel(), bleu.get());
            EXPECT_THAT(log, IsEmpty());
            if (!s.pousse) {
                EXPECT_EQ(v, bleu.get());
                EXPECT_THAT(dedans(), ElementsAre(rouge.get(), bleu.get()));
                EXPECT_EQ(rouge->frame(), conteneur->bounds());
                return;
            }
            EXPECT_THAT(dedans(), ElementsAre(v));
            EXPECT_EQ(rouge->superview(), v);
            EXPECT_EQ(bleu->superview(), v);
            EXPECT_EQ(bleu->frame(), enPoints(s.nouvelle));
            // One slide leaves the old frame alone.
            EXPECT_EQ(rouge->frame(),
                      s.fabrique == strategies[0].fabrique ? conteneur->bounds() : enPoints(s.ancienne));
        };
        affiche(bleu, s.fabrique());

        const NSRect depart = enPoints(s.depart, o), arrivee = enPoints(s.arrivee, o);
        EXPECT_NEAR(NSRunLoop::mainRunLoop()->now() - debut, 0.25, 1e-6);
        const auto& cadres = suiveur->cadres;
        ASSERT_EQ(cadres.size(), 15U); // a quarter of a second, sixty times a second
        EXPECT_EQ(cadres.back(), arrivee);
        // In and out alike: the eighth of fifteen steps is as far past the middle as the seventh is before it.
        const auto part = [&](const NSRect& r) {
            return ((r.origin.x - depart.origin.x) + (r.origin.y - depart.origin.y)) /
                   ((arrivee.origin.x - depart.origin.x) + (arrivee.origin.y - depart.origin.y));
        };
        EXPECT_NEAR(part(cadres[6]) + part(cadres[7]), 1, 1e-3);
        EXPECT_LT(part(cadres[0]), 0.02);
        for (std::size_t i = 0; i < cadres.size(); ++i) {
            EXPECT_EQ(cadres[i].size, arrivee.size);
            EXPECT_TRUE(cadres[i].origin.x == depart.origin.x || cadres[i].origin.y == depart.origin.y);
            EXPECT_GT(part(cadres[i]), i > 0 ? part(cadres[i - 1]) : 0.0);
        }
        EXPECT_THAT(taken(), ElementsAre("bleu"));
        EXPECT_THAT(dedans(), ElementsAre(bleu.get()));
        EXPECT_EQ(bleu->frame(), conteneur->bounds());
        EXPECT_EQ(rouge->superview(), nullptr);
    }
}

TEST_F(PanneauxTest, anOldPanelElsewhereKeepsItsOffsetInOneSlideAlone) {
    for (const Strategie& s : strategies) {
        if (!s.pousse) continue;
        SCOPED_TRACE(s.nom);
        affiche(rouge);
        rouge->setFrame({{15, 5}, {100, 50}});
        NSRect vu{};
        suiveur->reaction = [&](NSView*, std::size_t) { vu = rouge->frame(); };
        affiche(bleu, s.fabrique());
        suiveur->reaction = nullptr;
        EXPECT_EQ(vu, s.fabrique == strategies[0].fabrique ? NSMakeRect(15, 5, 100, 50) : enPoints(s.ancienne));
    }
}

TEST_F(PanneauxTest, everyFrameIsOnTheScreenAndEachPanelIsDrawnOnce) {
    affiche(rouge);
    const int avantRouge = rouge->dessins;
    int cote = -1, vues = 0;
    suiveur->reaction = [&](NSView* v, std::size_t) {
        // What is on the screen is the frame before this one.
        if (cote >= 0) {
            ++vues;
            EXPECT_EQ(pixel(0, 50), 'r');
            EXPECT_EQ(pixel(cote - 1, 50), 'r');
            EXPECT_EQ(pixel(cote, 50), 'b');
            EXPECT_EQ(pixel(kL - 1, 50), 'b');
        }
        const int bord = static_cast<int>(std::floor(NSMinX(v->frame()) + kL + 0.5));
        cote = bord > 0 && bord < kL ? bord : -1;
    };
    affiche(bleu, nouvelle<KCAnimationDePanneauGlissantVersLaGauche>());
    EXPECT_GT(vues, 10);
    EXPECT_EQ(rouge->dessins - avantRouge, 1);
    EXPECT_EQ(bleu->dessins, 2); // once for the slide, once where it has arrived
    EXPECT_EQ(pixel(3, 3), 'b');
}

TEST_F(PanneauxTest, whatChangesDuringASlideIsSeen) {
    affiche(rouge);
    const auto tache = make<Panneau>(log, "tache", NSColor::redColor(), NSMakeRect(0, 0, 40, kH));
    std::string vus;
    suiveur->reaction = [&](NSView* v, std::size_t rang) {
        if (rang == 6) bleu->addSubview(tache);
        const int x = static_cast<int>(NSMinX(v->frame())) + 60;
        if (rang > 8 && x > 0 && x < kL) vus += pixel(static_cast<int>(kL) - 1, 10);
        if (rang == 9) tache->setFrame(NSMakeRect(0, 0, kL, kH));
    };
    affiche(bleu, nouvelle<KCAnimationDePanneauGlissantParDessusVersLaGauche>());
    EXPECT_EQ(vus.substr(0, 2), "br");
    EXPECT_THAT(log, testing::Contains("tache"));
}

TEST_F(PanneauxTest, lessMotionIsTheSameAtOnce) {
    for (const Strategie& s : strategies) {
        SCOPED_TRACE(s.nom);
        affiche(rouge);
        taken();
        windows().setPrefersReducedMotion(true);
        suiveur->cadres.clear();
        suiveur->reaction = [&](NSView*, std::size_t) {
            EXPECT_EQ(conteneur->panneauActuel(), bleu.get());
            EXPECT_THAT(log, IsEmpty());
        };
        const NSTimeInterval debut = NSRunLoop::mainRunLoop()->now();
        affiche(bleu, s.fabrique());
        EXPECT_EQ(NSRunLoop::mainRunLoop()->now(), debut);
        EXPECT_THAT(suiveur->cadres, ElementsAre(enPoints(s.arrivee)));
        EXPECT_THAT(taken(), ElementsAre("bleu"));
        EXPECT_THAT(dedans(), ElementsAre(bleu.get()));
        windows().setPrefersReducedMotion(false);
    }
}

TEST_F(PanneauxTest, whoDiesInBetweenLeavesTheDefinedEnd) {
    enum class Qui { ancien, bande, conteneur, fenetre };
    for (const Strategie& s : strategies)
        for (const Qui qui : {Qui::ancien, Qui::bande, Qui::conteneur, Qui::fenetre}) {
            SCOPED_TRACE(std::string(s.nom) + " " + std::to_string(static_cast<int>(qui)));
            const auto w = windowAt({{100, 100}, {kL, kH}});
            Ref<KCConteneurDePanneauxGlissants> c = make<KCConteneurDePanneauxGlissants>(NSMakeRect(0, 0, kL, kH));
            w->contentView()->addSubview(c);
            show(w);
            Ref<Panneau> vieux = make<Panneau>(log, "vieux");
            const Weak<Panneau> temoin(vieux);
            c->afficherPanneau_avecAnimation(vieux, nullptr);
            vieux = nullptr;
            taken();
            const auto suit = make<Suiveur>(c);
            suit->reaction = [&](NSView* v, std::size_t rang) {
                if (rang != 5) return;
                if (qui == Qui::ancien && temoin) temoin->removeFromSuperview();
                if (qui == Qui::bande) v->removeFromSuperview();
                if (qui == Qui::conteneur) c->removeFromSuperview();
                if (qui == Qui::fenetre) w->close();
            };
            const Ref<NSObject> a = s.fabrique();
            c->afficherPanneau_avecAnimation(bleu, dynamic_cast<Anime*>(a.get()));
            EXPECT_THAT(taken(), ElementsAre("bleu"));
            EXPECT_EQ(bleu->superview(), c.get());
            EXPECT_EQ(c->subviews().size(), 1U);
            EXPECT_EQ(bleu->frame(), c->bounds());
            EXPECT_FALSE(temoin);
            w->close();
            bleu->removeFromSuperview();
        }
}

TEST_F(PanneauxTest, anArrivalOutlivesItsContainerAndAResize) {
    // A container that is gone has nothing to be put into, and nobody is told.
    auto seul = make<KCConteneurDePanneauxGlissants>(NSMakeRect(0, 0, kL, kH));
    const Ref<NSObject> a = nouvelle<KCAnimationDePanneauGlissantParDessusVersLeHaut>();
    const auto suit = make<Suiveur>(seul);
    suit->reaction = [&](NSView*, std::size_t) { seul = nullptr; };
    dynamic_cast<Anime*>(a.get())->animerPourRemplacerVue_avecVue_dansLaVueParent(nullptr, bleu, seul);
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_EQ(bleu->superview(), nullptr);

    for (const Strategie& s : strategies) {
        SCOPED_TRACE(s.nom);
        conteneur->setFrameSize({kL, kH});
        affiche(rouge);
        suiveur->cadres.clear();
        suiveur->reaction = [&](NSView*, std::size_t rang) {
            if (rang == 4) conteneur->setFrameSize({150, 90});
        };
        affiche(bleu, s.fabrique());
        EXPECT_EQ(bleu->frame(), NSMakeRect(0, 0, 150, 90));
        EXPECT_THAT(dedans(), ElementsAre(bleu.get()));
        suiveur->reaction = nullptr;
    }
}

TEST_F(PanneauxTest, withoutAnAnimationThePanelIsThereAtOnce) {
    const auto reste = make<NSView>(NSMakeRect(0, 0, 10, 10));
    conteneur->addSubview(reste);
    affiche(rouge);
    EXPECT_THAT(dedans(), ElementsAre(rouge.get()));
    affiche(bleu);
    EXPECT_THAT(dedans(), ElementsAre(bleu.get()));
    EXPECT_EQ(bleu->frame(), conteneur->bounds());
    EXPECT_THAT(taken(), ElementsAre("rouge", "bleu"));
    // Shown again: told again, and nothing moves.
    bleu->setFrame({{1, 2}, {30, 40}});
    suiveur->cadres.clear();
    affiche(bleu);
    affiche(bleu, nouvelle<KCAnimationDePanneauGlissantVersLeHaut>());
    EXPECT_THAT(taken(), ElementsAre("bleu", "bleu"));
    EXPECT_THAT(suiveur->cadres, IsEmpty());
    EXPECT_EQ(bleu->frame(), NSMakeRect(1, 2, 30, 40));
    affiche(nullptr);
    EXPECT_EQ(conteneur->panneauActuel(), bleu.get());
}

TEST_F(PanneauxTest, theFirstPanelSlidesInOverNothing) {
    for (const Strategie& s : strategies) {
        SCOPED_TRACE(s.nom);
        affiche(bleu, s.fabrique());
        EXPECT_THAT(taken(), ElementsAre("bleu"));
        EXPECT_THAT(dedans(), ElementsAre(bleu.get()));
        bleu->removeFromSuperview();
        conteneur->setPanneauActuel(nullptr);
    }
}

TEST_F(PanneauxTest, aPlainViewIsShownAndLogged) {
    const auto vue = make<NSView>(NSMakeRect(0, 0, 10, 10));
    testing::internal::CaptureStderr();
    affiche(vue, nouvelle<KCAnimationDePanneauGlissantVersLaDroite>());
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::HasSubstr(
                    "La classe NSView ne se conforme pas au protocole KCPanneauxGlissants comme elle le devrait."));
    EXPECT_EQ(vue->superview(), conteneur.get());
    testing::internal::CaptureStderr();
    affiche(rouge);
    affiche(vue);
    affiche(vue);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(PanneauxTest, theCallDescendsUntilAPlainView) {
    const auto a = make<Panneau>(log, "a"), b = make<Panneau>(log, "b"), c = make<Panneau>(log, "c"),
               d = make<Panneau>(log, "d");
    const auto simple = make<NSView>(NSMakeRect(0, 0, 10, 10));
    rouge->addSubview(a);
    a->addSubview(b);
    rouge->addSubview(simple);
    simple->addSubview(c);
    rouge->addSubview(d);
    affiche(rouge);
    EXPECT_THAT(taken(), ElementsAre("rouge", "a", "b", "d"));
}

TEST_F(PanneauxTest, everyStrategyIsMadeByItsClass) {
    for (const Strategie& s : strategies) {
        const Class* c = NSClassFromString(NSString::stringWithUTF8String(s.nom));
        ASSERT_NE(c, nullptr) << s.nom;
        EXPECT_NE(c->classOperation(sel("animationPanneau")), nullptr) << s.nom;
        EXPECT_NE(s.fabrique().get(), s.fabrique().get());
    }
}

} // namespace

#include <appkit/AppFixture.h>
#include <support/DessinsSuivis.h>

#include <cmath>
#include <optional>

#include <gmock/gmock.h>

#include <libvue/panels/KCAnimationsDePanneauGlissant.h>
#include <libvue/panels/KCConteneurDePanneauxGlissants.h>
#include <libvue/panels/KCPanneauGlissant.h>
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

/// In container sizes.
struct Strategie {
    Ref<NSObject> (*fabrique)();
    NSSize taille;           ///< of what moves
    NSPoint depart, arrivee; ///< from the origin of the container's bounds
    bool pousse;
    std::optional<NSPoint> ancienne; ///< in the strip; without one it keeps the frame that it has
    NSPoint nouvelle;
};

const Strategie strategies[] = {
    {nouvelle<KCAnimationDePanneauGlissantVersLaGauche>, {2, 1}, {0, 0}, {-1, 0}, true, {}, {1, 0}},
    {nouvelle<KCAnimationDePanneauGlissantVersLaDroite>, {2, 1}, {-1, 0}, {0, 0}, true, NSPoint{1, 0}, {0, 0}},
    {nouvelle<KCAnimationDePanneauGlissantVersLeHaut>, {1, 2}, {0, -1}, {0, 0}, true, NSPoint{0, 1}, {0, 0}},
    {nouvelle<KCAnimationDePanneauGlissantVersLeBas>, {1, 2}, {0, 0}, {0, -1}, true, NSPoint{0, 0}, {0, 1}},
    {nouvelle<KCAnimationDePanneauGlissantParDessusVersLaGauche>, {1, 1}, {1, 0}, {0, 0}, false, {}, {}},
    {nouvelle<KCAnimationDePanneauGlissantParDessusVersLaDroite>, {1, 1}, {-1, 0}, {0, 0}, false, {}, {}},
    {nouvelle<KCAnimationDePanneauGlissantParDessusVersLeHaut>, {1, 1}, {0, -1}, {0, 0}, false, {}, {}},
    {nouvelle<KCAnimationDePanneauGlissantParDessusVersLeBas>, {1, 1}, {0, 1}, {0, 0}, false, {}, {}},
};

NSRect enPoints(NSPoint p, NSSize taille = {1, 1}, NSPoint o = {0, 0}) {
    return {{o.x + p.x * kL, o.y + p.y * kH}, {taille.width * kL, taille.height * kH}};
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
        fenetre->close();
        fenetre = nullptr;
        AppFixture::TearDown();
    }
    void affiche(NSView* p, const Ref<NSObject>& animation = nullptr) const {
        conteneur->afficherPanneau_avecAnimation(p, dynamic_cast<Anime*>(animation.get()));
        drain();
    }
    /// With nothing heard or seen of what was before.
    void repart() {
        suiveur->reaction = nullptr;
        conteneur->setFrameSize({kL, kH});
        affiche(rouge);
        (void)taken();
        suiveur->cadres.clear();
    }
    [[nodiscard]] std::vector<NSView*> dedans() const {
        std::vector<NSView*> v;
        for (const auto& s : conteneur->subviews().copy())
            v.push_back(s.get());
        return v;
    }
    /// The new panel is alone, as large as the container, and was told so once.
    void attendsArrivee() {
        EXPECT_THAT(taken(), ElementsAre("bleu"));
        EXPECT_THAT(dedans(), ElementsAre(bleu.get()));
        EXPECT_EQ(bleu->frame(), conteneur->bounds());
        EXPECT_EQ(rouge->superview(), nullptr);
    }
    /// "r" or "b" for the pixel of that point of the window, "?" for another colour.
    [[nodiscard]] char pixel(CGFloat x, CGFloat y) const {
        const Ref<NSImage> image = fenetre->captureImage();
        const auto p = image->picture(1);
        const double echelle = p->pixelHeight() / p->size().height;
        const backend::Color c =
            p->pixel(static_cast<int>(x * echelle), p->pixelHeight() - 1 - static_cast<int>(y * echelle));
        return c.red > 0.9 && c.blue < 0.1 ? 'r' : c.blue > 0.9 && c.red < 0.1 ? 'b' : '?';
    }
};

TEST_F(PanneauxTest, eachSlideGoesItsWay) {
    const NSPoint o{7, -3};
    constexpr NSRect ailleurs{{15, 5}, {100, 50}};
    conteneur->setBoundsOrigin(o);
    for (const bool calme : {false, true})
        for (const Strategie& s : strategies) {
            SCOPED_TRACE(s.fabrique()->className()->utf8() + (calme ? ", less motion" : ""));
            repart();
            rouge->setFrame(ailleurs);
            suiveur->cadres.clear();
            windows().setPrefersReducedMotion(calme);
            const NSTimeInterval debut = NSRunLoop::mainRunLoop()->now();
            suiveur->reaction = [&](NSView* v, std::size_t) {
                EXPECT_EQ(conteneur->panneauActuel(), bleu.get());
                EXPECT_THAT(log, IsEmpty());
                if (!s.pousse) {
                    EXPECT_EQ(v, bleu.get());
                    EXPECT_THAT(dedans(), ElementsAre(rouge.get(), bleu.get()));
                } else {
                    EXPECT_THAT(dedans(), ElementsAre(v));
                    EXPECT_EQ(rouge->superview(), v);
                    EXPECT_EQ(bleu->superview(), v);
                    EXPECT_EQ(bleu->frame(), enPoints(s.nouvelle));
                }
                EXPECT_EQ(rouge->frame(), s.ancienne ? enPoints(*s.ancienne) : ailleurs);
            };
            affiche(bleu, s.fabrique());
            attendsArrivee();

            const NSRect depart = enPoints(s.depart, s.taille, o), arrivee = enPoints(s.arrivee, s.taille, o);
            const auto& cadres = suiveur->cadres;
            EXPECT_NE(s.fabrique()->isa().classOperation(sel("animationPanneau")), nullptr);
            EXPECT_NEAR(NSRunLoop::mainRunLoop()->now() - debut, calme ? 0 : 0.25, 1e-6);
            ASSERT_EQ(cadres.size(), calme ? 1U : 15U); // a quarter of a second, sixty times a second
            EXPECT_EQ(cadres.back(), arrivee);
            if (calme) continue;
            constexpr CGFloat premier = 0.00865; // of the way, after a fifteenth of the time
            EXPECT_EQ(cadres.front().size, depart.size);
            EXPECT_NEAR(cadres.front().origin.x, depart.origin.x + premier * (arrivee.origin.x - depart.origin.x),
                        0.01);
            EXPECT_NEAR(cadres.front().origin.y, depart.origin.y + premier * (arrivee.origin.y - depart.origin.y),
                        0.01);
        }
}

/// In thousandths of a pixel: what is meant to be whole pixels shows.
std::string enPixels(const NSRect& r, CGFloat echelle) {
    const auto v = [&](CGFloat x) { return std::round(x * echelle * 1000) / 1000; };
    return NSStringFromRect({{v(r.origin.x), v(r.origin.y)}, {v(r.size.width), v(r.size.height)}})->utf8();
}

/// Which panel's picture, where, and how much of it: "rouge {{20, 10}, {200, 100}} in {{20, 10}, {8, 100}}".
std::string ligne(const DessinsSuivis::Dessin& d, CGFloat echelle = 1) {
    const auto& o = d.operation;
    if (o.kind != backend::RecordingCanvas::Kind::picture) return "fond";
    const std::string nom = d.image == "fillRect {{0, 0}, {200, 100}} #ff0000ff copy\n"   ? "rouge"
                            : d.image == "fillRect {{0, 0}, {200, 100}} #0000ffff copy\n" ? "bleu"
                                                                                          : d.image;
    return nom + " " + enPixels(o.transform.apply(o.rect), echelle) + " in " + enPixels(o.clip, echelle);
}

TEST_F(PanneauxTest, everyFrameDrawsThePicturesOfThePanelsInTheirPlaces) {
    // Of a hundred points, after each frame: slow, quick, slow.
    constexpr CGFloat chemin[] = {0.865,  3.551,  8.166,  14.741, 23.177, 33.188, 44.269,
                                  55.731, 66.812, 76.823, 85.259, 91.834, 96.449, 99.135};
    constexpr NSPoint coin{20, 10};
    const NSRect repos{coin, {kL, kH}};
    DessinsSuivis& dessins = DessinsSuivis::installe();
    fenetre->setFrame_display({{100, 100}, {kL + 50, kH + 60}}, YES);
    conteneur->setFrameOrigin(coin);

    for (const CGFloat echelle : {1.0, 1.5, 2.0})
        for (const Strategie& s : strategies) {
            SCOPED_TRACE(s.fabrique()->className()->utf8() + " at " + std::to_string(echelle));
            windows().setScale(echelle);
            const std::string entier = " in " + enPixels(repos, echelle);
            const auto place = [&](const char* nom, const NSRect& r) { return nom + (" " + enPixels(r, echelle)); };
            repart();
            const NSPoint sens{s.arrivee.x - s.depart.x, s.arrivee.y - s.depart.y};
            const int avantRouge = rouge->dessins, avantBleu = bleu->dessins;
            const std::size_t avant = native(fenetre).presents;
            dessins.passes.clear();
            std::string vus;
            suiveur->reaction = [&](NSView*, std::size_t rang) {
                // A good third of the way: what has come, and what is still there.
                if (rang != 8) return;
                for (const CGFloat part : {-0.3, 0.3})
                    vus += pixel(coin.x + (0.5 + part * sens.x) * kL, coin.y + (0.5 + part * sens.y) * kH);
            };
            affiche(bleu, s.fabrique());

            std::vector<Log> attendues;
            if (s.pousse) attendues.push_back({"fond", place("rouge", repos) + entier});
            for (const CGFloat pourcent : chemin) {
                const CGFloat x = sens.x * kL * pourcent / 100, y = sens.y * kH * pourcent / 100;
                const auto auPixel = [&](CGFloat dx, CGFloat dy) -> NSRect {
                    const auto rond = [&](CGFloat v) { return std::floor(v * echelle + 0.5) / echelle; };
                    return {{rond(coin.x + dx), rond(coin.y + dy)}, repos.size};
                };
                const CGFloat nx = x - sens.x * kL, ny = y - sens.y * kH;
                // Only what the new panel covers by now changes under a cover.
                const auto bas = [&](CGFloat v) { return std::floor(v * echelle) / echelle; };
                const auto haut = [&](CGFloat v) { return std::ceil(v * echelle) / echelle; };
                const NSPoint de{bas(coin.x + nx), bas(coin.y + ny)};
                const NSRect couvert =
                    NSIntersectionRect(repos, {de, {haut(coin.x + nx + kL) - de.x, haut(coin.y + ny + kH) - de.y}});
                const std::string vu = s.pousse ? entier : " in " + enPixels(couvert, echelle);
                Log& image = attendues.emplace_back();
                if (pourcent == chemin[0]) image.emplace_back("fond");
                image.push_back(place("rouge", s.pousse ? auPixel(x, y) : repos) + vu);
                image.push_back(place("bleu", auPixel(nx, ny)) + vu);
            }
            attendues.push_back({"fond", place("bleu", repos) + entier});

            std::vector<Log> obtenues;
            for (const auto& passe : dessins.passes) {
                Log& image = obtenues.emplace_back();
                for (const auto& d : passe)
                    image.push_back(ligne(d, echelle));
            }
            EXPECT_EQ(obtenues, attendues);
            EXPECT_EQ(native(fenetre).presents - avant, attendues.size());
            EXPECT_EQ(vus, "br");
            EXPECT_EQ(rouge->dessins - avantRouge, 1);
            EXPECT_EQ(bleu->dessins - avantBleu, 2); // once for the slide, once where it has arrived
        }
}

TEST_F(PanneauxTest, theGroundIsDrawnUnderAPanelThatLetsItThrough) {
    DessinsSuivis& dessins = DessinsSuivis::installe();
    const auto ajoure = make<Panneau>(log, "ajouré", NSColor::blueColor()->colorWithAlphaComponent(0.5));
    for (const Strategie& s : strategies) {
        SCOPED_TRACE(s.fabrique()->className()->utf8());
        repart();
        dessins.passes.clear();
        affiche(ajoure, s.fabrique());
        EXPECT_GE(dessins.passes.size(), 15U);
        // Under a cover the old panel is ground enough, but for the first frame, which has no picture yet, and the
        // last.
        for (std::size_t i = 0; i < dessins.passes.size(); ++i) {
            const bool fond = s.pousse || i == 0 || i + 1 == dessins.passes.size();
            EXPECT_EQ(ligne(dessins.passes[i].front()).substr(0, 4), fond ? "fond" : "roug") << i;
        }
    }
}

TEST_F(PanneauxTest, whatChangesDuringASlideIsSeen) {
    affiche(rouge);
    const auto tache = make<Panneau>(log, "tache", NSColor::redColor(), NSMakeRect(0, 0, 40, kH));
    std::string vus;
    suiveur->reaction = [&](NSView* v, std::size_t rang) {
        if (rang == 6) bleu->addSubview(tache);
        const int x = static_cast<int>(NSMinX(v->frame())) + 60;
        if (rang > 8 && x > 0 && x < kL) vus += pixel(kL - 1, 10);
        if (rang == 9) tache->setFrame(NSMakeRect(0, 0, kL, kH));
    };
    affiche(bleu, nouvelle<KCAnimationDePanneauGlissantParDessusVersLaGauche>());
    EXPECT_EQ(vus.substr(0, 2), "br");
    EXPECT_THAT(log, testing::Contains("tache"));
}

TEST_F(PanneauxTest, whateverHappensInBetweenTheEndIsTheSame) {
    enum class Quoi { sansAncien, ancienSort, ancienMeurt, bandeSort, conteneurSort, fenetreFerme, conteneurRetrecit };
    using enum Quoi;
    DessinsSuivis& dessins = DessinsSuivis::installe();
    for (const Strategie& s : strategies)
        for (const Quoi quoi :
             {sansAncien, ancienSort, ancienMeurt, bandeSort, conteneurSort, fenetreFerme, conteneurRetrecit}) {
            SCOPED_TRACE(s.fabrique()->className()->utf8() + " " + std::to_string(static_cast<int>(quoi)));
            fenetre->contentView()->addSubview(conteneur);
            show(fenetre);
            repart();
            suiveur->reaction = [&](NSView* v, std::size_t rang) {
                if (rang == 8) dessins.passes.clear();
                if (rang != 5) return;
                if (quoi == ancienSort || quoi == ancienMeurt) rouge->removeFromSuperview();
                if (quoi == ancienMeurt) rouge = nullptr;
                if (quoi == bandeSort) v->removeFromSuperview();
                if (quoi == conteneurSort) conteneur->removeFromSuperview();
                if (quoi == fenetreFerme) fenetre->close();
                if (quoi == conteneurRetrecit) conteneur->setFrameSize({150, 90});
            };
            if (quoi == sansAncien) {
                rouge->removeFromSuperview();
                conteneur->setPanneauActuel(nullptr);
            }
            const Weak<Panneau> temoin(rouge);
            affiche(bleu, s.fabrique());
            if (quoi == sansAncien || quoi == ancienSort || quoi == ancienMeurt) {
                EXPECT_EQ(dessins.passes.size(), 8U);
                for (const auto& passe : dessins.passes) {
                    EXPECT_EQ(ligne(passe.back()).substr(0, 4), "bleu");
                    for (const auto& d : passe)
                        EXPECT_NE(ligne(d).substr(0, 5), "rouge");
                }
            }
            if (quoi == ancienMeurt) {
                EXPECT_FALSE(temoin);
                rouge = make<Panneau>(log, "rouge", NSColor::redColor());
            }
            attendsArrivee();
        }

    // A container that is gone has nothing to be put into, and nobody is told.
    auto seul = make<KCConteneurDePanneauxGlissants>(NSMakeRect(0, 0, kL, kH));
    const Ref<NSObject> a = nouvelle<KCAnimationDePanneauGlissantParDessusVersLeHaut>();
    const auto suit = make<Suiveur>(seul);
    suit->reaction = [&](NSView*, std::size_t) { seul = nullptr; };
    dynamic_cast<Anime*>(a.get())->animerPourRemplacerVue_avecVue_dansLaVueParent(nullptr, bleu, seul);
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_EQ(bleu->superview(), nullptr);
}

TEST_F(PanneauxTest, withoutAnAnimationThePanelIsThereAtOnce) {
    conteneur->addSubview(make<NSView>(NSMakeRect(0, 0, 10, 10)));
    affiche(rouge);
    EXPECT_THAT(dedans(), ElementsAre(rouge.get()));
    EXPECT_THAT(taken(), ElementsAre("rouge"));
    affiche(bleu);
    attendsArrivee();
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

} // namespace

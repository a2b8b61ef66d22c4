#include "Graphiques.h"

#include <cmath>
#include <sstream>

#include <gmock/gmock.h>

#include <libvue/platform/foundation/NSDictionary.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Says at each drawing what the clock shows and how far its slices are out.
class TarteTemoin : public KCTarte {
public:
    static void describe(ClassDescription<TarteTemoin, KCTarte>&) {}
    using KCTarte::KCTarte;
    struct Image {
        double temps;
        std::vector<float> sorties;
    };
    std::vector<Image> images;
    [[nodiscard]] std::vector<float> sorties() const {
        std::vector<float> s;
        for (KCPointeDeTarte* p : pointes()->as<KCPointeDeTarte>())
            s.push_back(p->pourcentageExtraction());
        return s;
    }
    void drawRect(const NSRect& r) override {
        images.push_back({NSRunLoop::mainRunLoop()->now(), sorties()});
        KCTarte::drawRect(r);
    }
};

struct KCTarteSelectionTest : AppFixture {
    Ref<NSWindow> fenetre;
    Ref<TarteTemoin> tarte;
    std::vector<Ref<NSObject>> jetons;

    void SetUp() override {
        tarte = make<TarteTemoin>(NSRect{{0, 0}, {200, 200}});
        remplis();
        fenetre = fenetreDe(tarte);
        for (NSString* nom : {kTarteSelectionWillChange.get(), kTarteSelectionDidChange.get()})
            jetons.push_back(NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
                nom, tarte, nullptr, [this](NSNotification* n) { entends(n); }));
    }
    void TearDown() override {
        pass(1);
        for (const auto& j : jetons)
            NSNotificationCenter::defaultCenter()->removeObserver(j);
        jetons.clear();
        fenetre->close();
        fenetre = nullptr;
        tarte = nullptr;
        AppFixture::TearDown();
    }
    void remplis() const {
        tarte->initTarte();
        for (int i = 0; i < 4; ++i)
            tarte->ajoutePointe(pointe(1));
    }
    /// What was told, what the pie answers then, and how far its slices are out.
    void entends(const NSNotification* n) {
        EXPECT_EQ(n->userInfo()->get<KCTarte>(u"objet"_ns), tarte.get());
        std::ostringstream s;
        s << n->name()->utf8().substr(17) << ' ' << n->userInfo()->get<NSNumber>(u"index"_ns)->integerValue() << " of "
          << selection() << ':';
        for (const float sortie : tarte->sorties())
            s << ' ' << sortie;
        log.push_back(s.str());
    }
    [[nodiscard]] NSInteger selection() const { return tarte->selectedIndex()->integerValue(); }
    void choisis(NSInteger i) const { tarte->setSelectedIndex(NSNumber::numberWithInteger(i)); }
    /// With what moves then, and forgets it.
    void choisisEtAttends(NSInteger i) {
        choisis(i);
        drain();
        taken();
        tarte->images.clear();
    }
    static double maintenant() { return NSRunLoop::mainRunLoop()->now(); }
};

TEST_F(KCTarteSelectionTest, theOldSliceGoesBackBeforeTheNewOneComesOut) {
    choisisEtAttends(0);
    choisis(2);
    EXPECT_THAT(taken(), ElementsAre("WillChange 2 of 0: 1 0 0 0", "DidChange 2 of 2: 1 0 0 0"));
    const double debut = maintenant();
    drain();
    EXPECT_THAT(taken(), IsEmpty());
    const auto& images = tarte->images;
    // 60 frames a second: an eighth of a second takes 8, a quarter 15.
    ASSERT_EQ(images.size(), 23u);
    for (std::size_t i = 0; i < 23; ++i) {
        SCOPED_TRACE(i);
        const auto& s = images[i].sorties;
        EXPECT_NEAR(images[i].temps - debut, static_cast<double>(i + 1) / 60, 1e-6);
        EXPECT_EQ(s[1] + s[3], 0);
        if (i < 8) {
            EXPECT_LT(s[0], i ? images[i - 1].sorties[0] : 1.0F);
            EXPECT_EQ(s[2], 0);
        } else {
            EXPECT_EQ(s[0], 0);
            EXPECT_GT(s[2], images[i - 1].sorties[2]);
        }
    }
    EXPECT_EQ(images[7].sorties[0], 0);
    // The curve eases in and out: at a third and at two thirds of the way out.
    EXPECT_NEAR(static_cast<double>(images[12].sorties[2]), 0.2318, 0.001);
    EXPECT_NEAR(static_cast<double>(images[17].sorties[2]), 0.7682, 0.001);
    EXPECT_EQ(images[22].sorties[2], 1);
}

TEST_F(KCTarteSelectionTest, theSelectedSliceAndWhatIsNoSliceDeselect) {
    struct {
        NSInteger avant, demande, apres;
    } const lignes[] = {
        {-1, 4, -1}, {-1, NSNotFound, -1}, {-1, -1, -1}, {-1, -7, -7}, {2, 4, -1}, {2, -1, -1}, {2, -7, -7}, {3, 3, -1},
    };
    for (const auto& l : lignes) {
        SCOPED_TRACE(testing::Message() << l.avant << " " << l.demande);
        remplis();
        choisisEtAttends(l.avant);
        const double debut = maintenant();
        choisis(l.demande);
        EXPECT_EQ(taken().size(), 2u); // also where nothing changes
        EXPECT_EQ(selection(), l.apres);
        drain();
        EXPECT_EQ(tarte->sorties(), std::vector<float>(4));
        EXPECT_EQ(tarte->images.size(), l.avant >= 0 ? 8u : 0u);
        EXPECT_NEAR(maintenant() - debut, l.avant >= 0 ? 8.0 / 60 : 0, 1e-6);
    }
    // Nothing counts as 0, and a key reaches it as well.
    tarte->setSelectedIndex(nullptr);
    EXPECT_EQ(selection(), 0);
    tarte->setValue_forKey(NSNumber::numberWithInteger(2), u"selectedIndex"_ns);
    EXPECT_EQ(selection(), 2);
}

TEST_F(KCTarteSelectionTest, aClickSelectsOnALaterTurn) {
    // Inside of the handler nothing has changed yet.
    const Ref<NSEvent> e = NSEvent::
        mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
            NSLeftMouseDown, {130, 140}, 0, 0, fenetre->windowNumber(), nullptr, 0, 1, 1);
    tarte->mouseDown(e);
    EXPECT_THAT(log, IsEmpty());
    drain();
    EXPECT_EQ(selection(), 0);
    taken();
    click(fenetre, 2, 2); // beside all of them
    EXPECT_THAT(taken(), ElementsAre("WillChange -1 of 0: 1 0 0 0", "DidChange -1 of -1: 1 0 0 0"));
    click(fenetre, 2, 2);
    EXPECT_THAT(taken(), ElementsAre("WillChange -1 of -1: 0 0 0 0", "DidChange -1 of -1: 0 0 0 0"));
    click(fenetre, 60, 60);
    EXPECT_EQ(selection(), 2);
    EXPECT_EQ(tarte->sorties(), (std::vector<float>{0, 0, 1, 0}));
}

TEST_F(KCTarteSelectionTest, aStaleSelectionReachesTheListsRangeFailure) {
    choisisEtAttends(3);
    tarte->enlevePointe(tarte->pretePointe(3));
    EXPECT_EQ(selection(), 3);
    EXPECT_EQ(raised([&] { choisis(1); }), "NSRangeException");
    EXPECT_THAT(taken(), ElementsAre("WillChange 1 of 3: 0 0 0"));
    EXPECT_EQ(selection(), 3);
}

TEST_F(KCTarteSelectionTest, theAnimationsKeepTheViewUntilTheyEnd) {
    auto seule = make<KCTarte>(NSRect{{0, 0}, {100, 100}});
    seule->ajoutePointe(pointe(1));
    seule->setSelectedIndex(NSNumber::numberWithInteger(0));
    const Weak<KCTarte> faible(seule.get());
    seule = nullptr;
    EXPECT_NE(faible.get(), nullptr);
    drain();
    EXPECT_EQ(faible.get(), nullptr);
}

} // namespace

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
    void drawRect(const NSRect& r) override {
        Image image{NSRunLoop::mainRunLoop()->now(), {}};
        for (KCPointeDeTarte* p : pointes()->as<KCPointeDeTarte>())
            image.sorties.push_back(p->pourcentageExtraction());
        images.push_back(image);
        KCTarte::drawRect(r);
    }
};

struct KCTarteSelectionTest : AppFixture {
    Ref<NSWindow> fenetre;
    Ref<TarteTemoin> tarte;
    std::vector<Ref<NSObject>> jetons;

    void SetUp() override {
        fenetre = windowAt({{100, 100}, {200, 200}});
        tarte = make<TarteTemoin>(NSRect{{0, 0}, {200, 200}});
        for (int i = 0; i < 4; ++i)
            tarte->ajoutePointe(pointe(1));
        fenetre->contentView()->addSubview(tarte);
        show(fenetre);
        ecoute(kTarteSelectionWillChange, "will");
        ecoute(kTarteSelectionDidChange, "did");
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
    void ecoute(NSString* nom, const std::string& quoi) {
        jetons.push_back(NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
            nom, tarte, nullptr, [this, quoi](NSNotification* n) {
                EXPECT_EQ(n->userInfo()->get<KCTarte>(u"objet"_ns), tarte.get());
                log.push_back(quoi + " " + n->userInfo()->get<NSNumber>(u"index"_ns)->stringValue()->utf8() + " of " +
                              tarte->selectedIndex()->stringValue()->utf8() + " out" + sorties());
            }));
    }
    [[nodiscard]] std::string sorties() const {
        std::ostringstream s;
        for (KCPointeDeTarte* p : tarte->pointes()->as<KCPointeDeTarte>())
            s << ' ' << p->pourcentageExtraction();
        return s.str();
    }
    void choisis(NSInteger i) const { tarte->setSelectedIndex(NSNumber::numberWithInteger(i)); }
    static double maintenant() { return NSRunLoop::mainRunLoop()->now(); }
};

TEST_F(KCTarteSelectionTest, bothPostsComeBeforeAnySliceMoves) {
    choisis(1);
    EXPECT_THAT(taken(), ElementsAre("will 1 of -1 out 0 0 0 0", "did 1 of 1 out 0 0 0 0"));
    EXPECT_EQ(sorties(), " 0 0 0 0");
    drain();
    EXPECT_EQ(sorties(), " 0 1 0 0");
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(KCTarteSelectionTest, theOldSliceGoesBackBeforeTheNewOneComesOut) {
    choisis(0);
    drain();
    choisis(2);
    tarte->images.clear();
    const double debut = maintenant();
    drain();
    // 60 frames a second: an eighth of a second takes 8, a quarter 15.
    ASSERT_EQ(tarte->images.size(), 23u);
    for (std::size_t i = 0; i < 23; ++i) {
        const auto& image = tarte->images[i];
        SCOPED_TRACE(i);
        EXPECT_NEAR(image.temps - debut, static_cast<double>(i + 1) / 60, 1e-6);
        EXPECT_EQ(image.sorties[1], 0);
        EXPECT_EQ(image.sorties[3], 0);
        if (i < 8) {
            EXPECT_LT(image.sorties[0], i ? tarte->images[i - 1].sorties[0] : 1.0F);
            EXPECT_EQ(image.sorties[2], 0);
        } else {
            EXPECT_EQ(image.sorties[0], 0);
            EXPECT_GT(image.sorties[2], tarte->images[i - 1].sorties[2]);
        }
    }
    EXPECT_EQ(tarte->images[7].sorties[0], 0);
    EXPECT_EQ(tarte->images[22].sorties[2], 1);
    // The curve eases in and out: at a third and at two thirds of the way out.
    EXPECT_NEAR(static_cast<double>(tarte->images[12].sorties[2]), 0.2318, 0.001);
    EXPECT_NEAR(static_cast<double>(tarte->images[17].sorties[2]), 0.7682, 0.001);
    EXPECT_EQ(tarte->selectedIndex()->integerValue(), 2);
}

TEST_F(KCTarteSelectionTest, theSelectedSliceIsDeselected) {
    choisis(3);
    drain();
    taken();
    choisis(3);
    tarte->images.clear();
    const double debut = maintenant();
    drain();
    EXPECT_THAT(taken(), ElementsAre("will -1 of 3 out 0 0 0 1", "did -1 of -1 out 0 0 0 1"));
    EXPECT_EQ(tarte->images.size(), 8u);
    EXPECT_NEAR(maintenant() - debut, 8.0 / 60, 1e-6);
    EXPECT_EQ(sorties(), " 0 0 0 0");
}

TEST_F(KCTarteSelectionTest, whatIsNoSliceDeselects) {
    struct {
        NSInteger avant, demande, apres;
        bool bouge;
    } const lignes[] = {
        {-1, 4, -1, false}, {-1, NSNotFound, -1, false}, {-1, -1, -1, false}, {-1, -7, -7, false},
        {2, 4, -1, true},   {2, -1, -1, true},           {2, -7, -7, true},   {0, 0, -1, true},
    };
    for (const auto& l : lignes) {
        tarte->initTarte();
        for (int i = 0; i < 4; ++i)
            tarte->ajoutePointe(pointe(1));
        if (l.avant >= 0) choisis(l.avant);
        drain();
        taken();
        choisis(l.demande);
        tarte->images.clear();
        EXPECT_EQ(log.size(), 2u); // also where nothing changes
        EXPECT_EQ(tarte->selectedIndex()->integerValue(), l.apres) << l.avant << " " << l.demande;
        pass(0.5);
        EXPECT_EQ(sorties(), " 0 0 0 0");
        EXPECT_EQ(tarte->images.size(), l.bouge ? 8u : 0u);
    }
    // Nothing counts as 0, and a key reaches it as well.
    tarte->setSelectedIndex(nullptr);
    EXPECT_EQ(tarte->selectedIndex()->integerValue(), 0);
    tarte->setValue_forKey(NSNumber::numberWithInteger(2), u"selectedIndex"_ns);
    EXPECT_EQ(tarte->selectedIndex()->integerValue(), 2);
}

TEST_F(KCTarteSelectionTest, aClickSelectsOnALaterTurn) {
    windows().moveMouse(fenetre->convertBaseToScreen({130, 140}));
    drain();
    // Inside of the handler nothing has changed yet.
    const Ref<NSEvent> e = NSEvent::
        mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
            NSLeftMouseDown, {130, 140}, 0, 0, fenetre->windowNumber(), nullptr, 0, 1, 1);
    tarte->mouseDown(e);
    EXPECT_THAT(log, IsEmpty());
    drain();
    EXPECT_EQ(tarte->selectedIndex()->integerValue(), 0);
    taken();
    click(fenetre, 2, 2); // beside all of them
    EXPECT_THAT(taken(), ElementsAre("will -1 of 0 out 1 0 0 0", "did -1 of -1 out 1 0 0 0"));
    click(fenetre, 2, 2);
    EXPECT_THAT(taken(), ElementsAre("will -1 of -1 out 0 0 0 0", "did -1 of -1 out 0 0 0 0"));
    click(fenetre, 60, 60);
    EXPECT_EQ(tarte->selectedIndex()->integerValue(), 2);
    EXPECT_EQ(sorties(), " 0 0 1 0");
}

TEST_F(KCTarteSelectionTest, aStaleSelectionReachesTheListsRangeFailure) {
    choisis(3);
    drain();
    taken();
    tarte->enlevePointe(tarte->pretePointe(3));
    EXPECT_EQ(tarte->selectedIndex()->integerValue(), 3);
    EXPECT_EQ(raised([&] { choisis(1); }), "NSRangeException");
    EXPECT_THAT(taken(), ElementsAre("will 1 of 3 out 0 0 0"));
    EXPECT_EQ(tarte->selectedIndex()->integerValue(), 3);
    tarte->initTarte();
}

TEST_F(KCTarteSelectionTest, theAnimationsKeepTheViewUntilTheyEnd) {
    const auto seule = [&] {
        const auto t = make<KCTarte>(NSRect{{0, 0}, {100, 100}});
        t->ajoutePointe(pointe(1));
        t->setSelectedIndex(NSNumber::numberWithInteger(0));
        return Weak<KCTarte>(t.get());
    }();
    EXPECT_NE(seule.get(), nullptr);
    drain();
    EXPECT_EQ(seule.get(), nullptr);
}

} // namespace

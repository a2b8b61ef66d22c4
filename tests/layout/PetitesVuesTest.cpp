#include <cmath>

#include <gtest/gtest.h>

#include <libvue/layout/KCView.h>
#include <libvue/layout/KCViewTailleMin.h>
#include <libvue/layout/KCVueAvecNotifications.h>
#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <support/TestBackend.h>

namespace libvue::test {

TEST(KCViewTailleMinTest, ignoresAFrameThatIsTooSmallAsAWhole) {
    auto v = make<KCViewTailleMin>(NSRect{{1, 2}, {300, 300}});
    v->setTailleMin({100, 50});
    const CGFloat nan = std::nan("");
    struct Cas {
        NSRect demande;
        BOOL prend;
    };
    for (const Cas& c : {Cas{{{5, 6}, {100, 50}}, YES}, Cas{{{7, 8}, {100, 49}}, NO}, Cas{{{7, 8}, {99.5, 200}}, NO},
                         Cas{{{7, 8}, {nan, 200}}, NO}, Cas{{{7, 8}, {120, nan}}, NO}}) {
        SCOPED_TRACE(testing::Message() << c.demande.size.width << " x " << c.demande.size.height);
        for (const bool taille : {true, false}) {
            v->setFrame({{1, 2}, {300, 300}});
            taille ? v->setFrameSize(c.demande.size) : v->setFrame(c.demande);
            const NSPoint origine = taille ? NSPoint{1, 2} : c.demande.origin;
            EXPECT_EQ(v->frame(), c.prend ? NSRect({origine, c.demande.size}) : NSMakeRect(1, 2, 300, 300));
        }
    }
    v->setTailleMin({1000, 1000});
    v->setFrameOrigin({-3, -4});
    EXPECT_EQ(v->frame(), NSMakeRect(-3, -4, 300, 300)) << "a move is never refused";
}

TEST(KCViewTest, itsControllerStaysBetweenItAndWhatFollows) {
    auto dessus = make<NSView>(NSRect{{0, 0}, {100, 100}}), ailleurs = make<NSView>(NSRect{{0, 0}, {100, 100}});
    auto v = make<KCView>(NSRect{{0, 0}, {10, 10}});
    v->setMonVC(nullptr);
    EXPECT_EQ(v->nextResponder(), nullptr);
    dessus->addSubview(v);
    auto a = make<NSViewController>(), b = make<NSViewController>();

    v->setMonVC(a);
    EXPECT_EQ(v->nextResponder(), a.get());
    EXPECT_EQ(a->nextResponder(), dessus.get());

    v->setMonVC(b);
    EXPECT_EQ(a->nextResponder(), nullptr);
    EXPECT_EQ(v->nextResponder(), b.get());
    EXPECT_EQ(b->nextResponder(), dessus.get());

    ailleurs->addSubview(v);
    EXPECT_EQ(v->nextResponder(), b.get()) << "the platform rewires what follows the controller";
    EXPECT_EQ(b->nextResponder(), ailleurs.get());

    v->setMonVC(nullptr);
    EXPECT_EQ(v->nextResponder(), ailleurs.get());
    EXPECT_EQ(b->nextResponder(), nullptr);

    v->setMonVC(b);
    b = nullptr; // held weakly: one that is gone is in nobody's way
    v->setNextResponder(dessus);
    EXPECT_EQ(v->nextResponder(), dessus.get());
}

struct KCVueAvecNotificationsTest : MemoryFixture {
    void TearDown() override { NSApplication::resetSharedApplication(); }
};

TEST_F(KCVueAvecNotificationsTest, saysEachTimeThatItsWindowChanged) {
    auto v = make<KCVueAvecNotifications>(NSRect{{0, 0}, {10, 10}});
    std::vector<NSWindow*> vues;
    const auto jeton = NSNotificationCenter::defaultCenter()->addObserverForName_object_queue_usingBlock(
        kNSViewDidMoveToWindowNotification, v, nullptr, [&](NSNotification* n) {
            EXPECT_EQ(n->object(), v.get());
            EXPECT_EQ(n->userInfo(), nullptr);
            vues.push_back(v->window());
        });
    auto w = make<NSWindow>(NSRect{{0, 0}, {100, 100}}, NSTitledWindowMask);
    auto branche = make<NSView>(NSRect{{0, 0}, {50, 50}});
    branche->addSubview(v);
    EXPECT_TRUE(vues.empty()) << "in no window yet";
    w->contentView()->addSubview(branche);
    branche->removeFromSuperview();
    EXPECT_EQ(vues, (std::vector<NSWindow*>{w.get(), nullptr}));
    NSNotificationCenter::defaultCenter()->removeObserver(jeton);
    EXPECT_TRUE(kContentWouldChangeSizeNotification->isEqualTo(u"kViewWouldChangeBounds"));
}

} // namespace libvue::test

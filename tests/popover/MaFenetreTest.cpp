#include "PopoverFixture.h"

#include <graphics/Dessin.h>

using namespace libvue;
using namespace libvue::test;

namespace {

struct MaFenetreTest : PopoverFixture {};

TEST_F(MaFenetreTest, AnArchiveGivesAWindowThatHearsItsMoves) {
    const auto f = make<MaFenetre>(NSMakeRect(120, 80, 300, 90), NSBorderlessWindowMask);
    f->setTitle(u"Bulle archivée"_ns);
    f->contentView()->addSubview(make<NSView>(NSMakeRect(10, 10, 40, 20)));
    const Ref<MaFenetre> lue = throughKeyedArchive(*f);
    EXPECT_EQ(lue->frame(), f->frame());
    EXPECT_EQ(lue->styleMask(), f->styleMask());
    EXPECT_TRUE(lue->title()->isEqualTo(u"Bulle archivée"));
    EXPECT_EQ(lue->contentView()->subviews().size(), 1U);

    // The move that ends a drag is heard, as in a window that was made.
    const Ref<KCPopover> p = bulle();
    montre(p);
    lue->setPopover(p);
    lue->setFrameOrigin({130, 80});
    EXPECT_TRUE(p->attachay());
    lue->mouseDragged(nullptr);
    EXPECT_TRUE(lue->dragEnCours());
    lue->setFrameOrigin({140, 80});
    EXPECT_FALSE(lue->dragEnCours());
    EXPECT_FALSE(p->attachay());
    ferme(p);
}

} // namespace

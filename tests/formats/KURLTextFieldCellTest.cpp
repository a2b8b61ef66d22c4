#include <formats/ChampFixture.h>
#include <foundation/Valeurs.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/NSCursor.h>
#include <libvue/text/formats/KURLTextFieldCell.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;
using testing::IsEmpty;
using valeurs::text;

struct KURLTextFieldCellTest : ChampFixture {
    void SetUp() override {
        ChampFixture::SetUp();
        auto cellule = make<KURLTextFieldCell>();
        champ->setCell(cellule);
    }
    Geste souris() { return {windows(), window}; }
    void clique() { souris().at(60, 210).down().up().end(); }
    const std::vector<std::string>& ouverts() const { return windows().openedURLs(); }
};

TEST_F(KURLTextFieldCellTest, AClickOpensTheAddress) {
    const struct {
        const char16_t* texte;
        const char* ouvert; ///< null: nothing
    } rows[] = {
        {u"https://exemple.org/a?b#c", "https://exemple.org/a?b#c"},
        {u"exemple.org", "http://exemple.org"},
        {u"mailto:moi", nullptr}, // "moi" is no port of a host
        {u"ftp://exemple.org", "ftp://exemple.org"},
        {u"deux mots", nullptr},
        {u"", nullptr},
    };
    for (const auto& row : rows) {
        champ->setStringValue(text(row.texte));
        const std::size_t avant = ouverts().size();
        clique();
        if (row.ouvert) {
            ASSERT_EQ(ouverts().size(), avant + 1) << valeurs::shown(row.texte);
            EXPECT_EQ(ouverts().back(), row.ouvert);
        } else {
            EXPECT_EQ(ouverts().size(), avant) << valeurs::shown(row.texte);
        }
    }
}

TEST_F(KURLTextFieldCellTest, ReleasedOutsideNothingOpens) {
    champ->setStringValue(text(u"http://exemple.org"));
    souris().at(60, 210).down().at(60, 20).up().end();
    EXPECT_THAT(ouverts(), IsEmpty());
    champ->setEnabled(NO);
    clique();
    EXPECT_THAT(ouverts(), IsEmpty());
    champ->setEnabled(YES);
    clique();
    EXPECT_THAT(ouverts(), ElementsAre("http://exemple.org"));
}

TEST_F(KURLTextFieldCellTest, ThePointingHandStandsOverIt) {
    champ->setStringValue(text(u"http://exemple.org"));
    drain();
    move(window, 60, 210);
    EXPECT_EQ(NSCursor::currentCursor(), NSCursor::pointingHandCursor());
    move(window, 60, 50);
    EXPECT_EQ(NSCursor::currentCursor(), NSCursor::arrowCursor());
}

TEST_F(KURLTextFieldCellTest, TheTargetMayThrowTheFieldAwayWhileItOpens) {
    champ->setStringValue(text(u"exemple.org"));
    auto cible = make<Cible>();
    cible->onAction = [&](NSObject*) {
        champ->removeFromSuperview();
        champ = nullptr;
    };
    champ->setTarget(cible);
    champ->setAction(sel("agir:"));
    clique();
    EXPECT_EQ(cible->count, 1);
    EXPECT_THAT(ouverts(), ElementsAre("http://exemple.org"));
}

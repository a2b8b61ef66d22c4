#include <formats/ChampFixture.h>
#include <foundation/Valeurs.h>

#include <libvue/platform/appkit/NSPasteboard.h>
#include <libvue/text/formats/KLimiteFormatter.h>

using namespace libvue;
using namespace libvue::test;
using valeurs::text;

namespace {

/// Hears what its field's formatter refused.
class Refus : public NSObject {
public:
    static void describe(ClassDescription<Refus>& c) {
        c.answers<&Refus::refuse>(op::control_didFailToValidatePartialString_errorDescription);
    }
    std::string vus;
    void refuse(NSControl*, NSString* s, NSString* erreur) {
        vus += s->utf8() + (erreur ? ":" + erreur->utf8() : "") + " ";
    }
};

/// Writes everything in capitals, with the caret at the end, and says so.
class Capitales : public NSFormatter {
public:
    static void describe(ClassDescription<Capitales, NSFormatter>&) {}
    Ref<NSString> stringForObjectValue(NSObject* v) override { return Ref<NSString>(as<NSString>(v)); }
    BOOL getObjectValue_forString_errorDescription(Ref<NSObject>* v, NSString* s, Ref<NSString>*) override {
        if (v) *v = s;
        return YES;
    }
    BOOL isPartialStringValid_newEditingString_errorDescription(NSString* s, Ref<NSString>* nouveau,
                                                                Ref<NSString>* erreur) override {
        const Ref<NSString> grand = s->uppercaseString();
        if (grand->isEqualToString(s)) return YES;
        *nouveau = grand;
        *erreur = u"petit"_ns;
        return NO;
    }
};

Ref<KLimiteFormatter> limite(std::int32_t n) {
    auto f = make<KLimiteFormatter>();
    f->setMaximumLength(n);
    return f;
}

} // namespace

TEST(KLimiteFormatter, theLimitIsOnUnits) {
    const struct {
        std::int32_t limite;
        const char16_t* texte;
        bool accepte;
    } rows[] = {
        {3, u"abc", true},         {3, u"abcd", false},        {0, u"", true}, {0, u"a", false}, {-1, u"", false},
        {3, u"a\U0001F600", true}, {2, u"a\U0001F600", false},
    };
    for (const auto& row : rows) {
        Ref<NSString> nouveau = text(u"d’avant"), erreur = nouveau;
        EXPECT_EQ(limite(row.limite)
                      ->isPartialStringValid_newEditingString_errorDescription(text(row.texte), &nouveau, &erreur),
                  row.accepte)
            << row.limite << " " << valeurs::shown(row.texte);
        EXPECT_EQ(nouveau == nullptr, !row.accepte);
        EXPECT_NE(erreur, nullptr);
    }
    EXPECT_FALSE(limite(1)->isPartialStringValid_newEditingString_errorDescription(text(u"ab"), nullptr, nullptr));
    auto neuf = make<KLimiteFormatter>();
    EXPECT_EQ(neuf->maximumLength(), 0x7FFFFFFF);
    EXPECT_EQ(as<KLimiteFormatter>(limite(7)->copyWithZone())->maximumLength(), 7);
}

struct ChampLimite : ChampFixture {
    Ref<Refus> refus = make<Refus>();
    void SetUp() override {
        ChampFixture::SetUp();
        champ->setDelegate(refus);
    }
    void TearDown() override {
        NSPasteboard::generalPasteboard()->clearContents();
        refus = nullptr;
        ChampFixture::TearDown();
    }
    std::string entendu() { return std::exchange(refus->vus, {}); }
};

TEST_F(ChampLimite, TypingStopsAtTheLimit) {
    entre(limite(3));
    tape(u"abc");
    EXPECT_EQ(affiche(), "abc");
    EXPECT_EQ(entendu(), "");
    editeur()->setSelectedRange({1, 0});
    tape(u"d");
    EXPECT_EQ(affiche(), "abc");
    EXPECT_EQ(selection(), "1+0");
    EXPECT_EQ(entendu(), "adbc ");
    // A selection makes room.
    editeur()->setSelectedRange({1, 2});
    tape(u"yz");
    EXPECT_EQ(affiche(), "ayz");
    touche(u'\r');
    EXPECT_EQ(champ->stringValue()->utf8(), "ayz");
}

TEST_F(ChampLimite, PastingAndUndoingKeepToTheLimit) {
    entre(limite(3));
    tape(u"ab");
    auto* presse = NSPasteboard::generalPasteboard();
    presse->declareTypes_owner(NSArray::arrayWithObjects({NSStringPboardType.get()}), nullptr);
    presse->setString_forType(text(u"xy"), NSStringPboardType);
    editeur()->paste(nullptr);
    EXPECT_EQ(affiche(), "ab");
    EXPECT_EQ(entendu(), "abxy ");
    // What was refused is no step to undo.
    editeur()->undo(nullptr);
    EXPECT_EQ(affiche(), "");
}

TEST_F(ChampLimite, ATextThatIsTooLongAlreadyCanOnlyBecomeShortEnoughAtOnce) {
    champ->setStringValue(text(u"abcdef"));
    entre(limite(3));
    EXPECT_EQ(affiche(), "abcdef");
    editeur()->setSelectedRange({6, 0});
    touche(0x7F);
    EXPECT_EQ(affiche(), "abcdef");
    editeur()->setSelectedRange({2, 4});
    touche(0x7F);
    EXPECT_EQ(affiche(), "ab");
}

TEST_F(ChampLimite, AFormatterMayPutRightWhatIsTyped) {
    entre(make<Capitales>());
    tape(u"a");
    EXPECT_EQ(affiche(), "A");
    EXPECT_EQ(selection(), "1+0");
    EXPECT_EQ(entendu(), "a:petit ");
    tape(u"B");
    EXPECT_EQ(affiche(), "AB");
    EXPECT_EQ(entendu(), "");
}

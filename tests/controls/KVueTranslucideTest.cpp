#include <appkit/AppFixture.h>
#include <graphics/Dessin.h>

#include <gmock/gmock.h>

#include <libvue/controls/KVueTranslucide.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSImage.h>
#include <libvue/platform/graphics/NSParagraphStyle.h>
#include <libvue/platform/graphics/NSStringDrawing.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

using Kind = backend::RecordingCanvas::Kind;
using Operation_ = backend::RecordingCanvas::Operation;

constexpr NSRect kCadre{{0, 0}, {256, 152}};
constexpr CGFloat kLargeurTexte = 232;

Ref<NSDictionary> attributsGras(CGFloat corps) {
    return NSDictionary::dictionaryWithObject_forKey(NSFont::boldSystemFontOfSize(corps), NSFontAttributeName.get());
}

bool tient(NSString* titre, double corps) {
    const NSSize t = sizeWithAttributes(titre, attributsGras(corps));
    return t.width <= kLargeurTexte - t.height * 0.5;
}

/// The shortest row of one letter that no longer fits at the size before, and does at this one.
Ref<NSString> titrePour(double corps, double avant) {
    Ref<NSString> s = u"m"_ns;
    while (tient(s, avant))
        s = NSString::stringWithFormat(u"%@i"_ns, s.get());
    return tient(s, corps) ? s : u""_ns;
}

Ref<NSString> lignes(int combien) {
    Ref<NSString> s = u"ligne"_ns;
    for (int i = 1; i < combien; ++i)
        s = NSString::stringWithFormat(u"%@\nligne"_ns, s.get());
    return s;
}

struct KVueTranslucideTest : AppFixture {
    Ref<NSWindow> fenetre;
    Ref<KVueTranslucide> vue;

    void SetUp() override {
        fenetre = windowAt({{100, 100}, kCadre.size}, NSBorderlessWindowMask);
        vue = make<KVueTranslucide>(kCadre);
        fenetre->setContentView(vue);
    }
    void TearDown() override {
        vue = nullptr;
        fenetre = nullptr;
        AppFixture::TearDown();
    }
    [[nodiscard]] std::vector<Operation_> dessine() const {
        Enregistrement e(vue->bounds().size);
        vue->drawRect(vue->bounds());
        return e.canvas.operations();
    }
    static Ref<NSImage> icone() {
        auto i = make<NSImage>(NSSize{72, 72});
        i->lockFocus();
        NSColor::redColor()->set();
        i->unlockFocus();
        return i;
    }
};

TEST_F(KVueTranslucideTest, partsAreDrawnInOrderAtTheirPlaces) {
    struct Row {
        const char16_t* texte;
        BOOL icone;
        double yTitre, yIcone, ajustee; ///< the last one is the height after sizeToFit
        std::vector<Kind> ordre;
    };
    const Row rows[] = {{u"Une explication", YES, 36, 66, 152, {Kind::fill, Kind::text, Kind::text, Kind::picture}},
                        {u"", YES, 18, 48, 134, {Kind::fill, Kind::text, Kind::picture}},
                        {u"Une explication", NO, 36, 0, 76, {Kind::fill, Kind::text, Kind::text}},
                        {nullptr, NO, 18, 0, 58, {Kind::fill, Kind::text}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.ajustee);
        vue->setFrame(kCadre);
        vue->setTitle(u"Copié"_ns);
        vue->setText(row.texte ? NSString::from(row.texte) : Ref<NSString>());
        const Ref<NSImage> image = row.icone ? icone() : Ref<NSImage>();
        if (image) image->setFlipped(YES);
        vue->setIcon(image);
        const auto ops = dessine();
        std::vector<Kind> ordre;
        for (const auto& o : ops)
            ordre.push_back(o.kind);
        ASSERT_EQ(ordre, row.ordre);
        EXPECT_EQ(ops[0].color.alpha, 0.15F);
        // A corner of radius 20 begins that far from the edge.
        EXPECT_THAT(ops[0].path.points, testing::Contains(NSPoint{0, kCadre.size.height - 20}));
        EXPECT_THAT(ops[0].path.points, testing::Contains(NSPoint{kCadre.size.width - 20, 0}));

        const Operation_& titre = ops[1];
        EXPECT_EQ(titre.runs.front().font->pointSize(), 20);
        EXPECT_EQ(titre.color, NSColor::whiteColor()->resolved());
        EXPECT_DOUBLE_EQ(NSMinY(titre.rect), row.yTitre);
        EXPECT_EQ(NSMinX(titre.rect), 12);
        const auto& ombre = titre.runs.front().shadow;
        ASSERT_TRUE(ombre);
        EXPECT_EQ(ombre->offset, (NSSize{0, -2}));
        EXPECT_EQ(ombre->blur, 3);
        if (row.texte && *row.texte) {
            EXPECT_EQ(ops[2].runs.front().font->pointSize(), 14);
            EXPECT_TRUE(ops[2].runs.front().shadow);
            EXPECT_EQ(ops[2].clip, NSMakeRect(0, 0, 256, 152));
            EXPECT_DOUBLE_EQ(NSMaxY(ops[2].rect), 30); // from the top of its box
        }
        if (image) {
            EXPECT_EQ(ops.back().rect, NSMakeRect(92, row.yIcone, 72, 72));
            EXPECT_FALSE(image->isFlipped());
        }
        vue->sizeToFit();
        EXPECT_EQ(vue->frame(), NSMakeRect(0, 0, 256, row.ajustee));
    }
}

TEST_F(KVueTranslucideTest, aTitleShrinksByStepsAndIsCutAtTheEnd) {
    struct Row {
        double corps, avant, montee;
    };
    constexpr double a = 20 - 1.899999976158142, b = a - 1.899999976158142, c = b - 1.899999976158142,
                     d = c - 1.899999976158142;
    const auto uneLigne = [](double corps) { return sizeWithAttributes(u"m"_ns, attributsGras(corps)).height; };
    for (const Row& row : {Row{20, 0, 0}, Row{a, 20, 1}, Row{b, a, 1}, Row{c, b, 2}, Row{d, c, 2}}) {
        SCOPED_TRACE(row.corps);
        const Ref<NSString> titre = row.avant > 0 ? titrePour(row.corps, row.avant) : u"Court"_ns;
        ASSERT_GT(titre->length(), 0U);
        vue->setTitle(titre);
        const auto ops = dessine();
        ASSERT_EQ(ops.size(), 2U);
        EXPECT_EQ(ops[1].runs.front().font->pointSize(), row.corps);
        EXPECT_DOUBLE_EQ(NSMinY(ops[1].rect), 18 + row.montee);
        EXPECT_DOUBLE_EQ(ops[1].rect.size.height, uneLigne(row.corps));
    }
    // No step fits: the last font, cut at its end on one line, and the description with it.
    Ref<NSString> trop = u"Un titre "_ns;
    for (int i = 0; i < 4; ++i)
        trop = NSString::stringWithFormat(u"%@%@"_ns, trop.get(), trop.get());
    vue->setTitle(trop);
    vue->setText(u"Une explication qui va plus loin que la ligne et que l’on coupe aussi, faute de place"_ns);
    const auto ops = dessine();
    ASSERT_EQ(ops.size(), 3U);
    EXPECT_EQ(ops[1].runs.front().font->pointSize(), d);
    EXPECT_DOUBLE_EQ(NSMinY(ops[1].rect), 38);
    EXPECT_LE(ops[1].rect.size.width, kLargeurTexte);
    EXPECT_DOUBLE_EQ(ops[1].rect.size.height, uneLigne(d));
    EXPECT_LT(ops[2].rect.size.height, 20);
}

TEST_F(KVueTranslucideTest, aLongDescriptionDropsBySize) {
    vue->setTitle(u"Titre"_ns);
    const CGFloat ligne = NSFont::systemFontOfSize(14)->defaultLineHeightForFont();
    const Ref<NSDictionary> attributs =
        NSDictionary::dictionaryWithObject_forKey(NSFont::systemFontOfSize(14), NSFontAttributeName.get());
    for (int n = 1; n <= 8; ++n) {
        SCOPED_TRACE(n);
        const Ref<NSString> texte = lignes(n);
        EXPECT_DOUBLE_EQ(vue->descriptionHeight_attributes_width(texte, attributs, 200), std::max(20.0, n * ligne));
        vue->setText(texte);
        // Each time it is drawn, not only the first.
        for (int fois = 0; fois < 2; ++fois) {
            const auto ops = dessine();
            EXPECT_EQ(ops[2].runs.front().font->pointSize(), n >= 5 ? 12 : 14);
            EXPECT_LE(ops[2].clip.size.height, n > 1 ? 26 : 152);
        }
    }
    EXPECT_EQ(vue->descriptionHeight_attributes_width(nullptr, nullptr, 100), 20);
}

TEST_F(KVueTranslucideTest, outsideOfAWindowOnlyThePanelAndTheIconAreDrawn) {
    const auto seule = make<KVueTranslucide>(kCadre);
    seule->setTitle(u"Titre"_ns);
    seule->setText(u"Texte"_ns);
    seule->setIcon(icone());
    Enregistrement e(kCadre.size);
    seule->drawRect(kCadre);
    const auto& ops = e.canvas.operations();
    ASSERT_EQ(ops.size(), 2U);
    EXPECT_EQ(ops[1].rect, NSMakeRect(-36, 66, 72, 72));
}

TEST_F(KVueTranslucideTest, keepsCopiesAndSaysWhatItShows) {
    const auto titre = NSMutableString::stringWithString(u"Enregistré"_ns);
    vue->setTitle(titre);
    titre->appendString(u" ailleurs"_ns);
    EXPECT_EQ(vue->annonce()->utf8(), "Enregistré");
    vue->setText(u"Dans le dossier des brouillons"_ns);
    EXPECT_EQ(vue->annonce()->utf8(), "Enregistré\nDans le dossier des brouillons");
    const AccessibilityDescription d = vue->accessibilityDescription();
    EXPECT_EQ(d.label->utf8(), "Enregistré");
    EXPECT_EQ(d.value->utf8(), "Dans le dossier des brouillons");
}

} // namespace

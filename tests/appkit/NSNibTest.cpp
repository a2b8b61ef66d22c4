#include <appkit/Cible.h>
#include <foundation/Valeurs.h>
#include <gmock/gmock.h>
#include <support/Silence.h>

#include <libvue/platform/appkit/NSBox.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSButtonCell.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSNib.h>
#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/appkit/NSViewController.h>
#include <libvue/platform/foundation/NSBundle.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

/// Has an outlet that it owns and one to which it only points, and says when it wakes.
class Noeud : public NSView {
public:
    static void describe(ClassDescription<Noeud, NSView>& c) {
        c.key<&Noeud::autre, &Noeud::setAutre>("autre");
        c.key<&Noeud::nom, &Noeud::setNom>("nom");
        c.key<&Noeud::quantite, &Noeud::setQuantite>("quantite");
        c.key<&Noeud::coin, &Noeud::setCoin>("coin");
    }
    static inline std::vector<std::string>* reveils = nullptr;
    [[nodiscard]] NSObject* autre() const { return autre_; }
    void setAutre(NSObject* o) { autre_ = o; }
    [[nodiscard]] NSString* nom() const { return nom_; }
    void setNom(NSString* s) { nom_ = s; }
    [[nodiscard]] NSInteger quantite() const { return quantite_; }
    void setQuantite(NSInteger n) { quantite_ = n; }
    [[nodiscard]] NSPoint coin() const { return coin_; }
    void setCoin(NSPoint p) { coin_ = p; }
    void awakeFromNib() override {
        // All outlets are there by then.
        if (reveils) reveils->push_back((nom_ ? nom_->utf8() : "?") + (autre_ ? "+" : "-"));
    }

private:
    Weak<NSObject> autre_;
    Ref<NSString> nom_;
    NSInteger quantite_ = 0;
    NSPoint coin_;
};
const ClassRegistration<Noeud> enregistrement;

class Proprietaire : public Cible {
public:
    static void describe(ClassDescription<Proprietaire, Cible>& c) {
        c.key<&Proprietaire::champ, &Proprietaire::setChamp>("champ");
    }
    [[nodiscard]] NSTextField* champ() const { return champ_; }
    void setChamp(NSTextField* f) { champ_ = f; }
    int reveils = 0;
    void awakeFromNib() override { ++reveils; }

private:
    Ref<NSTextField> champ_;
};

struct NibTest : AppFixture {
    const valeurs::Folder dossier;
    Ref<NSBundle> bundle = NSBundle::bundleWithPath(NSString::fromUTF8(dossier.path.string()));
    Ref<Proprietaire> proprietaire = make<Proprietaire>();
    std::vector<std::string> reveils;

    NibTest() { Noeud::reveils = &reveils; }
    ~NibTest() override {
        Noeud::reveils = nullptr;
        proprietaire = nullptr;
        bundle = nullptr;
        NSApplication::resetSharedApplication();
    }
    void TearDown() override {}
    Ref<NSNib> nib(const char* nom, const std::string& texte) const {
        dossier.write(nom + std::string(".nib.json"), texte);
        return NSNib::initWithNibNamed_bundle(NSString::fromUTF8(nom), bundle);
    }
    /// The top-level objects of a resource with that text; null where it could not be built.
    [[nodiscard]] Ref<NSArray> charge(const std::string& texte) const {
        static int numero = 0;
        Ref<NSArray> objets;
        const Ref<NSNib> n = nib(("n" + std::to_string(++numero)).c_str(), texte);
        return n && n->instantiateNibWithOwner_topLevelObjects(proprietaire, &objets) ? objets : nullptr;
    }
};

constexpr const char* kPanneau = R"({
 "objects": [
  { "id": "p", "class": "NSPanel", "frame": [50, 60, 300, 160], "style": ["titled", "closable"],
    "properties": {"title": "Chercher", "minSize": {"size": [200, 100]}},
    "outlets": {"initialFirstResponder": "champ", "delegate": "owner", "defaultButton": "ok"},
    "subviews": [
     { "id": "champ", "class": "NSTextField", "frame": [20, 110, 260, 24], "autoresizing": ["width", "minY"],
       "properties": {"placeholderString": "Mot", "font": {"font": "bold", "size": 15}, "tag": 7,
                      "textColor": {"color": "#ff000080"}, "alignment": "center"},
       "outlets": {"nextKeyView": "sens"} },
     { "class": "NSTextField", "frame": [20, 80, 80, 17], "properties": {"label": "Sens :"} },
     { "id": "sens", "class": "NSPopUpButton", "frame": [110, 70, 120, 26], "items":
         ["Avant", "-", {"title": "Après", "tag": 4, "submenu": ["Loin"]}],
       "action": {"selector": "agir:", "target": "owner"}, "outlets": {"nextKeyView": "champ"} },
     { "class": "NSBox", "frame": [20, 10, 100, 50], "properties": {"title": "Cadre", "titlePosition": "none"},
       "subviews": [{"class": "NSButton", "frame": [5, 5, 80, 20],
                     "properties": {"title": "Exact", "buttonType": "switch", "state": 1}}] },
     { "class": "NSScrollView", "frame": [130, 10, 60, 50], "properties": {"hasVerticalScroller": true},
       "documentView": {"class": "NSView", "frame": [0, 0, 60, 500]} },
     { "id": "ok", "class": "NSButton", "frame": [200, 10, 80, 28],
       "properties": {"title": "OK", "keyEquivalent": "\r"}, "action": {"selector": "agir:", "target": "owner"} } ] },
  { "class": "NSMenu", "properties": {"title": "Édition"}, "items": [{"title": "Copier", "key": "c", "action":
      {"selector": "copy:"}}] },
  { "class": "NSViewController", "view": {"class": "Noeud", "properties": {"nom": "v"}} } ],
 "owner": {"outlets": {"champ": "champ"}} })";

TEST_F(NibTest, APanelIsBuiltAndConnected) {
    const Ref<NSArray> objets = charge(kPanneau);
    ASSERT_TRUE(objets);
    ASSERT_EQ(objets->count(), 3u);
    auto* panneau = objets->at<NSPanel>(0);
    ASSERT_TRUE(panneau);
    EXPECT_EQ(panneau->contentView()->frame().size, NSMakeSize(300, 160));
    EXPECT_EQ(panneau->styleMask(), NSUInteger{NSTitledWindowMask | NSClosableWindowMask});
    EXPECT_EQ(panneau->delegate(), proprietaire.get());
    auto* champ = proprietaire->champ();
    ASSERT_TRUE(champ);
    EXPECT_EQ(panneau->initialFirstResponder(), champ);
    EXPECT_EQ(champ->window(), panneau);
    EXPECT_EQ(champ->font()->pointSize(), 15);
    EXPECT_EQ(champ->tag(), 7);
    EXPECT_EQ(champ->alignment(), NSCenterTextAlignment);
    EXPECT_NEAR(champ->textColor()->alphaComponent(), 0.5, 0.01);
    EXPECT_EQ(champ->autoresizingMask(), NSUInteger{NSViewWidthSizable | NSViewMinYMargin});
    const auto& vues = panneau->contentView()->subviews();
    auto* texte = as<NSTextField>(vues[1]);
    EXPECT_FALSE(texte->isEditable() || texte->isBezeled() || texte->drawsBackground());
    EXPECT_EQ(texte->stringValue()->utf8(), "Sens :");
    auto* sens = as<NSPopUpButton>(vues[2]);
    EXPECT_EQ(champ->nextKeyView(), sens);
    ASSERT_EQ(sens->numberOfItems(), 3);
    EXPECT_EQ(sens->titleOfSelectedItem()->utf8(), "Avant");
    EXPECT_TRUE(sens->itemAtIndex(1)->isSeparatorItem());
    EXPECT_EQ(sens->itemAtIndex(2)->submenu()->numberOfItems(), 1);
    auto* boite = as<NSBox>(vues[3]);
    ASSERT_EQ(boite->contentView()->subviews().count(), 1u);
    EXPECT_EQ(as<NSButton>(boite->contentView()->subviews()[0])->state(), 1);
    EXPECT_EQ(as<NSScrollView>(vues[4])->documentView()->frame().size.height, 500);
    as<NSButton>(vues[5])->performClick(nullptr);
    EXPECT_EQ(proprietaire->count, 1);
    EXPECT_EQ(panneau->defaultButtonCell(), as<NSButton>(vues[5])->buttonCell());
    EXPECT_EQ(objets->at<NSMenu>(1)->itemAtIndex(0)->action(), sel("copy:"));
    EXPECT_EQ(proprietaire->reveils, 0); // the owner was there before
}

TEST_F(NibTest, ObjectsWakeInTheirOrderOnceAllIsConnected) {
    const Ref<NSArray> objets = charge(R"({"objects": [
        {"id": "a", "class": "Noeud", "properties": {"nom": "a"}, "outlets": {"autre": "c"}, "subviews": [
            {"id": "b", "class": "Noeud", "properties": {"nom": "b", "coin": {"point": [3, 4]}}} ]},
        {"id": "c", "class": "Noeud", "properties": {"nom": "c", "quantite": 12}, "outlets": {"autre": "a"}} ]})");
    ASSERT_TRUE(objets);
    EXPECT_THAT(reveils, ElementsAre("a+", "b-", "c+"));
    EXPECT_EQ(objets->at<Noeud>(1)->quantite(), 12);
    EXPECT_EQ(as<Noeud>(objets->at<NSView>(0)->subviews()[0])->coin(), NSMakePoint(3, 4));
}

TEST_F(NibTest, EachInstanceIsFreshAndAChangedFileIsReadAgain) {
    const auto nomme = [&](int n) {
        const Ref<NSNib> f =
            nib("f", R"({"objects": [{"class": "Noeud", "properties": {"quantite": )" + std::to_string(n) + "}}]}");
        Ref<NSArray> un, deux;
        EXPECT_TRUE(f->instantiateNibWithOwner_topLevelObjects(nullptr, &un));
        EXPECT_TRUE(f->instantiateNibWithOwner_topLevelObjects(nullptr, &deux));
        EXPECT_EQ(un->at<Noeud>(0)->quantite(), n);
        EXPECT_NE(un->firstObject(), deux->firstObject());
    };
    nomme(1);
    nomme(222);
}

TEST_F(NibTest, ABuilderStandsInForAFile) {
    NSNib::registerBuilder(u"parCode"_ns, [](NSObject* owner, NSMutableArray* objets) -> BOOL {
        const Ref<Noeud> n = make<Noeud>();
        n->setAutre(owner);
        objets->addObject(n);
        return YES;
    });
    const Ref<NSNib> built = NSNib::initWithNibNamed_bundle(u"parCode"_ns, nullptr);
    ASSERT_TRUE(built);
    NSNib::registerBuilder(u"parCode"_ns, {});
    const Silence quiet;
    EXPECT_FALSE(NSNib::initWithNibNamed_bundle(u"parCode"_ns, nullptr));
    Ref<NSArray> objets;
    EXPECT_TRUE(built->instantiateNibWithOwner_topLevelObjects(proprietaire, &objets));
    EXPECT_EQ(objets->at<Noeud>(0)->autre(), proprietaire.get());
    EXPECT_THAT(reveils, ElementsAre("?+"));
}

TEST_F(NibTest, AControllerTakesItsViewFromItsResource) {
    (void)nib("vue", R"({"objects": [{"id": "v", "class": "Noeud"}], "owner": {"outlets": {"view": "v"}}})");
    const auto avec = make<NSViewController>(u"vue"_ns.get(), bundle.get()),
               sans = make<NSViewController>(u"z"_ns.get(), bundle.get());
    EXPECT_TRUE(as<Noeud>(avec->view()));
    const Silence quiet;
    EXPECT_TRUE(sans->view());
}

/// A view inside a view, that many times.
std::string emboite(int niveaux) {
    std::string s = R"({"objects": [)";
    for (int i = 0; i < niveaux; ++i)
        s += R"({"class": "NSView", "subviews": [)";
    for (int i = 0; i < niveaux; ++i)
        s += "]}";
    return s + "]}";
}

TEST_F(NibTest, WhatCannotBeBuiltIsRefusedAsAWhole) {
    const Silence quiet;
    const std::string debut = R"({"objects": [{"class": "Noeud", "properties": {"nom": "x"}}, )", fin = "]}";
    const struct {
        const char* pourquoi;
        std::string objet;
    } cas[] = {
        {"no class", R"({"frame": [0, 0, 1, 1]})"},
        {"no object", R"("Noeud")"},
        {"unknown class", R"({"class": "Inconnue"})"},
        {"class without a plain constructor", R"({"class": "NSSortDescriptor"})"},
        {"no view among subviews", R"({"class": "NSView", "subviews": [{"class": "NSMenu"}]})"},
        {"a window among subviews", R"({"class": "NSView", "subviews": [{"class": "NSPanel"}]})"},
        {"a second application", R"({"class": "NSApplication"})"},
        {"unknown part", R"({"class": "NSView", "souvues": []})"},
        {"a part of another class", R"({"class": "NSMenu", "frame": [0, 0, 1, 1]})"},
        {"frame of texts", R"({"class": "NSView", "frame": ["a", 0, 1, 1]})"},
        {"frame of three", R"({"class": "NSView", "frame": [0, 0, 1]})"},
        {"negative size", R"({"class": "NSView", "frame": [0, 0, -1, 1]})"},
        {"frame out of this world", R"({"class": "NSView", "frame": [0, 0, 1e300, 1]})"},
        {"window beyond any screen", R"({"class": "NSPanel", "frame": [0, 0, 100000, 10]})"},
        {"unknown style", R"({"class": "NSPanel", "style": ["round"]})"},
        {"unknown margin", R"({"class": "NSView", "autoresizing": ["left"]})"},
        {"unknown key", R"({"class": "Noeud", "properties": {"rien": 1}})"},
        {"text for a number", R"({"class": "Noeud", "properties": {"quantite": "douze"}})"},
        {"number for a text", R"({"class": "Noeud", "properties": {"nom": 12}})"},
        {"number for a point", R"({"class": "Noeud", "properties": {"coin": 12}})"},
        {"number for a text of the platform", R"({"class": "NSButton", "properties": {"title": 12}})"},
        {"unknown word", R"({"class": "NSTextField", "properties": {"alignment": "middle"}})"},
        {"number for a word", R"({"class": "NSTextField", "properties": {"alignment": 99}})"},
        {"no colour", R"({"class": "NSTextField", "properties": {"textColor": {"color": "#12"}}})"},
        {"no font", R"({"class": "NSTextField", "properties": {"font": {"font": "bold", "size": 1e9}}})"},
        {"unknown value", R"({"class": "Noeud", "properties": {"nom": {"quoi": 1}}})"},
        {"items of a view", R"({"class": "NSView", "items": ["a"]})"},
        {"item without title", R"({"class": "NSMenu", "items": [{"tag": 1}]})"},
        {"outlet to nobody", R"({"class": "Noeud", "outlets": {"autre": "z"}})"},
        {"outlet of another class", R"({"id": "m", "class": "NSView", "outlets": {"nextKeyView": "application"}})"},
        {"two of one id", R"({"id": "a", "class": "NSView"}, {"id": "a", "class": "NSView"})"},
        {"the owner's id", R"({"id": "owner", "class": "NSView"})"},
        {"action of a view", R"({"class": "NSView", "action": {"selector": "agir:"}})"},
        {"action without selector", R"({"class": "NSButton", "action": {"target": "owner"}})"},
    };
    for (const auto& c : cas)
        EXPECT_FALSE(charge(debut + c.objet + fin)) << c.pourquoi;
    EXPECT_THAT(reveils, ElementsAre());
    for (const std::string& texte : {std::string(), std::string("{"), std::string("[]"), std::string("{}"),
                                     std::string(R"({"objects": 3})"), std::string(R"({"objects": [], "owner": 1})"),
                                     std::string(R"({"objects": [], "owner": {"outlets": {"rien": "owner"}}})"),
                                     emboite(10000), std::string(100000, '[')})
        EXPECT_FALSE(charge(texte)) << texte.substr(0, 60);
    EXPECT_TRUE(charge(emboite(40)));
    EXPECT_FALSE(NSNib::initWithNibNamed_bundle(u"absent"_ns, nullptr));
    EXPECT_FALSE(NSNib::initWithNibNamed_bundle(nullptr, nullptr));
}

} // namespace

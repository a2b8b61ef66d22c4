#include <appkit/AppFixture.h>

#include <gmock/gmock.h>

#include <support/PageWeb.h>

#include <libvue/popover/KCTransientPanel.h>
#include <libvue/popover/NSWindowKerlan.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

/// A small element tree: elements with a class, and texts. A node keeps its parent, as a document would.
template <class Base> class Noeud : public Base {
public:
    static void describe(ClassDescription<Noeud, Base>&) {}
    Noeud(DOMNode* parent, const char* nom, const char* classe = "") : parent_(parent), nom_(nom), classe_(classe) {}
    [[nodiscard]] unsigned short nodeType() const override { return DOM_ELEMENT_NODE; }
    [[nodiscard]] Ref<NSString> nodeName() const override { return NSString::fromUTF8(nom_); }
    [[nodiscard]] Ref<NSString> nodeValue() const override { return nullptr; }
    [[nodiscard]] Ref<DOMNode> parentNode() const override { return parent_; }
    [[nodiscard]] Ref<NSString> getAttribute(NSString* nom) const override {
        return nom->isEqualToString(u"class"_ns) ? NSString::fromUTF8(classe_) : NSString::string();
    }

private:
    Ref<DOMNode> parent_;
    const char *nom_, *classe_;
};

class Texte : public DOMNode {
public:
    static void describe(ClassDescription<Texte, DOMNode>&) {}
    explicit Texte(DOMNode* parent) : parent_(parent) {}
    [[nodiscard]] unsigned short nodeType() const override { return DOM_TEXT_NODE; }
    [[nodiscard]] Ref<NSString> nodeName() const override { return u"#text"_ns; }
    [[nodiscard]] Ref<NSString> nodeValue() const override { return u"quatre"_ns; }
    [[nodiscard]] Ref<DOMNode> parentNode() const override { return parent_; }

private:
    Ref<DOMNode> parent_;
};

class Document : public WebHTMLView {
public:
    static void describe(ClassDescription<Document, WebHTMLView>&) {}
    Document(const NSRect& frame, Page* page, Log& log) : WebHTMLView(frame), page_(page), log_(log) {}
    [[nodiscard]] WebView* _webView() override { return page_; }
    BOOL acceptsFirstResponder() override { return YES; }
    void mouseDown(NSEvent* e) override {
        log_.push_back("down " + std::to_string(e->clickCount()));
        if (choisit) page_->plage = make<Plage>("word");
    }
    void mouseUp(NSEvent* e) override { log_.push_back("up " + std::to_string(e->clickCount())); }
    void keyDown(NSEvent*) override { log_.push_back("key"); }
    bool choisit = false;

private:
    Weak<Page> page_;
    Log& log_;
};

class Regles : public NSObject {
public:
    static void describe(ClassDescription<Regles>& c) { c.answers<&Regles::commande>(op::webView_doCommandBySelector); }
    explicit Regles(Log& log) : log_(log) {}
    BOOL commande(WebView*, SEL s) {
        log_.push_back("command " + NSStringFromSelector(s)->utf8());
        return YES;
    }

private:
    Log& log_;
};

class Navigateur : public NSObject {
public:
    static void describe(ClassDescription<Navigateur>& c) { c.answers<&Navigateur::navigue>("cmdNaviguer:"); }
    explicit Navigateur(Log& log) : log_(log) {}
    void navigue(NSEvent*) { log_.emplace_back("navigate"); }

private:
    Log& log_;
};

struct KerlanTest : AppFixture {
    Ref<KCTransientPanel> panel;
    Ref<Page> page;
    Ref<Document> document;
    Ref<Regles> regles;

    void SetUp() override {
        panel = make<KCTransientPanel>(NSMakeRect(200, 200, 300, 200), NSTitledWindowMask);
        page = make<Page>(NSMakeRect(10, 20, 200, 150));
        document = make<Document>(NSMakeRect(0, 0, 200, 150), page, log);
        regles = make<Regles>(log);
        page->addSubview(document);
        panel->contentView()->addSubview(page);
        show(panel);
        panel->makeFirstResponder(document);
        taken();
    }
    void TearDown() override {
        panel->orderOut(nullptr);
        document = nullptr;
        page = nullptr;
        panel = nullptr;
        regles = nullptr;
        AppFixture::TearDown();
    }
    static Ref<DOMNode> el(DOMNode* parent, const char* nom, const char* classe = "") {
        return make<Noeud<DOMElement>>(parent, nom, classe);
    }
    [[nodiscard]] Ref<NSEvent> clic(NSEventType type = NSLeftMouseDown, NSUInteger modificateurs = 0,
                                    NSInteger compte = 1, NSPoint place = {50, 60}) const {
        return NSEvent::
            mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
                type, place, modificateurs, 0, panel->windowNumber(), nullptr, 0, compte, 1);
    }
};

TEST_F(KerlanTest, WhatAClickLiesOnDecidesWhetherItIsDoubled) {
    const Ref<DOMNode> corps = el(nullptr, "BODY"), div = make<Noeud<DOMHTMLDivElement>>(corps, "DIV");
    const Ref<DOMNode> p = el(div, "P"), a = el(p, "A"), ignore = el(corps, "SECTION", "x Zerl_Double_Clic y");
    struct Cas {
        const char* quoi;
        Ref<DOMNode> noeud;
        BOOL double_;
    };
    for (const Cas& c :
         {Cas{"nothing", nullptr, YES}, Cas{"a text in a paragraph in a division", make<Texte>(p), YES},
          Cas{"the division itself", div, NO}, Cas{"an image", make<Noeud<DOMHTMLImageElement>>(p, "IMG"), NO},
          Cas{"an element that is only called so", el(p, "DIV"), YES}, Cas{"a link", a, NO},
          Cas{"deep in a link", make<Texte>(el(a, "B")), NO}, Cas{"a choice", el(p, "Select"), NO},
          Cas{"a drawing", el(el(p, "svg"), "path"), NO}, Cas{"a linked word", el(p, "SPAN", "Gros LienSyn"), NO},
          Cas{"another span", el(p, "SPAN", "lien"), YES},
          Cas{"that class on another element", el(p, "B", "liensyn"), YES},
          Cas{"a marked part", make<Texte>(ignore), NO}}) {
        page->noeud = c.noeud;
        EXPECT_EQ(devraitDoublerEvenement(panel, clic()), c.double_) << c.quoi;
    }
    EXPECT_EQ(page->demande, NSMakePoint(40, 40)); // in the web view's coordinates
}

TEST_F(KerlanTest, OnlyASinglePlainLeftClickWithoutASelectionIsDoubled) {
    struct Clic {
        const char* quoi;
        Ref<NSEvent> evenement;
        BOOL double_;
    };
    for (const Clic& c :
         {Clic{"a press", clic(), YES}, Clic{"a release", clic(NSLeftMouseUp), YES},
          Clic{"another button", clic(NSRightMouseDown), NO}, Clic{"a drag", clic(NSLeftMouseDragged), NO},
          Clic{"control", clic(NSLeftMouseDown, NSControlKeyMask), NO},
          Clic{"shift", clic(NSLeftMouseDown, NSShiftKeyMask), YES},
          Clic{"the second one", clic(NSLeftMouseDown, 0, 2), NO},
          Clic{"beside the page", clic(NSLeftMouseDown, 0, 1, {250, 190}), NO}})
        EXPECT_EQ(devraitDoublerEvenement(panel, c.evenement), c.double_) << c.quoi;
    const Ref<DOMNode> texte = make<Texte>(nullptr);
    struct Choix {
        const char *quoi, *choisi;
        Ref<DOMNode> debut;
        NSInteger place;
        BOOL double_;
    };
    for (const Choix& c : {Choix{"a word", "quatre", texte, 0, NO}, Choix{"behind the last letter", "", texte, 6, NO},
                           Choix{"before it", "", texte, 5, YES}, Choix{"no text", "", el(nullptr, "P"), 0, YES}}) {
        page->plage = make<Plage>(c.choisi, c.debut, c.place);
        EXPECT_EQ(devraitDoublerEvenement(panel, clic()), c.double_) << c.quoi;
    }
}

TEST_F(KerlanTest, ThePanelDeliversTheDoubleAfterTheClick) {
    click(panel, 50, 60);
    EXPECT_THAT(taken(), ElementsAre("down 1", "down 2", "up 1", "up 2"));
    windows().advance(5);
    document->choisit = true; // the doubled press selects a word, which stops the release
    click(panel, 50, 60);
    EXPECT_THAT(taken(), ElementsAre("down 1", "up 1"));
}

TEST_F(KerlanTest, CommandArrowsGoToTheWindowsDelegate) {
    const Ref<Navigateur> delegue = make<Navigateur>(log);
    page->regles = regles;
    struct Cas {
        const char* quoi;
        char16_t touche;
        NSUInteger modificateurs;
        BOOL navigue, web;
        const char* fait;
    };
    for (const Cas& c : {
             Cas{"command left", NSLeftArrowFunctionKey, NSCommandKeyMask, YES, YES, "navigate"},
             Cas{"command right", NSRightArrowFunctionKey, NSCommandKeyMask, YES, NO, "navigate"},
             Cas{"without that delegate", NSLeftArrowFunctionKey, NSCommandKeyMask, NO, YES, "command moveLeft:"},
             Cas{"a plain arrow", NSRightArrowFunctionKey, 0, YES, YES, "command moveRight:"},
             Cas{"shifted", NSLeftArrowFunctionKey, NSShiftKeyMask, YES, YES, "command moveLeft:"},
             Cas{"no web content", NSLeftArrowFunctionKey, NSCommandKeyMask, NO, NO, ""},
             Cas{"another key", NSUpArrowFunctionKey, NSCommandKeyMask, YES, YES, ""},
             Cas{"a letter", u'a', 0, YES, YES, ""},
         }) {
        panel->setDelegate(c.navigue ? delegue.get() : nullptr);
        panel->makeFirstResponder(c.web ? document.get() : nullptr);
        const Ref<NSString> texte = NSString::from(std::u16string_view(&c.touche, 1));
        const Ref<NSEvent> e = NSEvent::
            keyEventWithType_location_modifierFlags_timestamp_windowNumber_context_characters_charactersIgnoringModifiers_isARepeat_keyCode(
                NSKeyDown, {0, 0}, c.modificateurs, 0, panel->windowNumber(), nullptr, texte, texte, NO, 0);
        EXPECT_EQ(devraitBloquerEvenement(panel, e), *c.fait != 0) << c.quoi;
        const Log fait = taken();
        EXPECT_EQ(fait, *c.fait ? Log{c.fait} : Log{}) << c.quoi;
    }
    panel->makeFirstResponder(document);
    for (NSObject* qui : {static_cast<NSObject*>(regles), static_cast<NSObject*>(nullptr)}) {
        page->regles = qui;
        windows().key(NSLeftArrowFunctionKey);
        drain();
        EXPECT_THAT(taken(), ElementsAre(qui ? "command moveLeft:" : "key")); // what is swallowed no view sees
    }
}

TEST_F(KerlanTest, DescendantsComeDepthFirst) {
    const auto enfant = [](NSWindow* de) {
        Ref<NSWindow> e = make<NSWindow>(NSMakeRect(0, 0, 10, 10), NSBorderlessWindowMask);
        de->addChildWindow_ordered(e, NSWindowAbove);
        return e;
    };
    const Ref<NSWindow> w = windowAt({{0, 0}, {50, 50}}), a = enfant(w), b = enfant(w), a1 = enfant(a), a2 = enfant(a),
                        a11 = enfant(a1), b1 = enfant(b);
    const Ref<NSMutableArray> tous = NSMutableArray::array();
    getAllWindowDescendants(w, tous);
    EXPECT_TRUE(tous->isEqual(NSArray::arrayWithObjects({a, a1, a11, a2, b, b1})));
}

} // namespace

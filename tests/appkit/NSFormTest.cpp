#include <appkit/Cible.h>

#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSForm.h>
#include <libvue/platform/appkit/NSFormCell.h>
#include <libvue/platform/appkit/NSText.h>
#include <libvue/platform/appkit/NSTextField.h>

using namespace libvue;
using namespace libvue::test;

namespace {

class NSFormTest : public AppFixture {
protected:
    Ref<NSWindow> window;
    Ref<NSForm> form;
    Ref<Cible> cible;

    void SetUp() override {
        window = windowAt({{100, 100}, {400, 300}});
        form = make<NSForm>(NSRect{{20, 100}, {300, 100}});
        for (const char16_t* titre : {u"Nom :", u"Adresse :"})
            form->addEntry(NSString::from(titre))->setTag(form->numberOfRows());
        window->contentView()->addSubview(form);
        cible = make<Cible>();
        show(window);
    }
    void type(std::u16string_view text) {
        windows().typeText(text);
        drain();
    }
    [[nodiscard]] std::string value(NSInteger i) const { return form->cellAtIndex(i)->stringValue()->utf8(); }
    /// The fields, or the titles, from the top down.
    [[nodiscard]] std::vector<NSTextField*> fields(bool editable) const {
        std::vector<NSTextField*> found;
        for (NSView* v : form->subviews())
            if (auto* f = as<NSTextField>(v); f && f->isEditable() == editable) found.push_back(f);
        return found;
    }
};

TEST_F(NSFormTest, TitlesAndFieldsStandInColumns) {
    form->insertEntry_atIndex(u"Un titre plus long :"_ns, 1);
    ASSERT_EQ(form->numberOfRows(), 3);
    const auto entries = fields(true), titles = fields(false);
    ASSERT_EQ(entries.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        const NSRect entry = entries[i]->frame(), title = titles[i]->frame();
        EXPECT_EQ(entry.origin.x, entries[0]->frame().origin.x);
        EXPECT_EQ(NSMaxX(entry), 300);
        EXPECT_EQ(entry.origin.y, static_cast<CGFloat>(i) * 32);
        EXPECT_EQ(NSMaxX(title), entry.origin.x - 8);
        EXPECT_NEAR(NSMidY(title), NSMidY(entry), 1);
        EXPECT_EQ(titles[i]->stringValue()->utf8(), form->cellAtIndex(static_cast<NSInteger>(i))->title()->utf8());
        EXPECT_EQ(entries[i]->accessibilityDescription().label->utf8(), titles[i]->stringValue()->utf8());
        EXPECT_EQ(entries[i]->accessibilityDescription().role->utf8(), "text field");
    }
    const CGFloat wide = entries[0]->frame().origin.x;
    form->cellAtIndex(1)->setTitle(u"Âge :"_ns);
    EXPECT_LT(entries[0]->frame().origin.x, wide);
    form->removeEntryAtIndex(1);
    form->sizeToFit();
    EXPECT_EQ(form->frame().size.height, 24 + 8 + 24);
    EXPECT_EQ(form->indexOfCellWithTag(2), 1);
    EXPECT_EQ(form->indexOfCellWithTag(7), -1);
    for (const NSInteger absent : {-1, 2}) {
        EXPECT_EQ(form->cellAtIndex(absent), nullptr);
        form->selectTextAtIndex(absent);
        form->removeEntryAtIndex(absent);
    }
    EXPECT_EQ(form->insertEntry_atIndex(nullptr, 9), nullptr);
    EXPECT_EQ(form->numberOfRows(), 2);
}

TEST_F(NSFormTest, TheValueIsWhatShowsWhileItIsTyped) {
    form->cellAtIndex(0)->setStringValue(u"ancien"_ns);
    form->selectTextAtIndex(0);
    EXPECT_EQ(form->indexOfSelectedItem(), 0);
    EXPECT_EQ(form->currentEditor()->selectedRange(), (NSRange{0, 6}));
    type(u"neuf");
    EXPECT_EQ(value(0), "neuf");
    EXPECT_EQ(form->stringValue()->utf8(), "neuf");
    form->cellAtIndex(0)->setStringValue(u"posé"_ns);
    EXPECT_EQ(form->currentEditor()->string()->utf8(), "posé");
    type(u"\t");
    EXPECT_EQ(form->indexOfSelectedItem(), 1);
    type(u"rue");
    windows().key(u'\t', backend::modifierShift);
    drain();
    EXPECT_EQ(value(0), "posé");
    EXPECT_EQ(value(1), "rue");
    form->selectTextAtIndex(1);
    form->setStringValue(u"quai"_ns);
    EXPECT_EQ(value(1), "quai") << "the row that was edited";
    EXPECT_EQ(value(0), "posé");
    form->selectTextAtIndex(1);
    form->setEnabled(NO);
    EXPECT_EQ(form->indexOfSelectedItem(), -1);
    form->selectTextAtIndex(1);
    EXPECT_EQ(form->currentEditor(), nullptr);
}

TEST_F(NSFormTest, EscapeGivesBackWhatStoodThere) {
    form->cellAtIndex(0)->setStringValue(u"ancien"_ns);
    form->selectTextAtIndex(0);
    type(u"neuf");
    EXPECT_EQ(value(0), "neuf");
    windows().key(0x1B);
    drain();
    EXPECT_EQ(value(0), "ancien");
    EXPECT_EQ(form->currentEditor()->string()->utf8(), "ancien");
}

TEST_F(NSFormTest, ReturnSendsTheActionOrPressesTheDefaultButton) {
    const auto button = NSButton::buttonWithTitle_target_action(u"OK"_ns, cible, sel("agir:"));
    button->setKeyEquivalent(u"\r"_ns);
    window->contentView()->addSubview(button);
    form->selectTextAtIndex(1);
    type(u"mot\n");
    EXPECT_EQ(cible->count, 1);
    EXPECT_EQ(cible->sender, button.get());
    const auto autre = make<Cible>();
    form->setTarget(autre);
    form->setAction(sel("agir:"));
    type(u"mots\n");
    EXPECT_EQ(cible->count, 1);
    EXPECT_EQ(autre->count, 1);
    EXPECT_EQ(autre->sender, form.get());
    EXPECT_EQ(value(1), "mots");
    EXPECT_EQ(form->indexOfSelectedItem(), 1) << "one goes on in the field";
}

} // namespace

#include <appkit/WindowFixture.h>

#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSForm.h>
#include <libvue/platform/appkit/NSFormCell.h>
#include <libvue/platform/appkit/NSText.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/appkit/ThemeDrawing.h>

using namespace libvue;
using namespace libvue::test;

namespace {

struct NSFormTest : WindowFixture {
    Ref<NSForm> form = add<NSForm>({{20, 100}, {300, 100}});

    NSFormTest() {
        for (const char16_t* titre : {u"Nom :", u"Adresse :"})
            form->addEntry(NSString::from(titre))->setTag(form->numberOfRows());
    }
    [[nodiscard]] std::string values() const {
        return form->cellAtIndex(0)->stringValue()->utf8() + "|" + form->cellAtIndex(1)->stringValue()->utf8();
    }
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
    const auto entries = fields(true), titles = fields(false);
    ASSERT_EQ(entries.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        const NSRect entry = entries[i]->frame(), title = titles[i]->frame();
        EXPECT_EQ(entry.origin, NSMakePoint(entries[0]->frame().origin.x, static_cast<CGFloat>(i) * 32));
        EXPECT_EQ(NSMaxX(entry), 300);
        EXPECT_EQ(NSMaxX(title), entry.origin.x - 8);
        EXPECT_NEAR(NSMidY(title), NSMidY(entry), 1);
        EXPECT_EQ(titles[i]->stringValue()->utf8(), form->cellAtIndex(static_cast<NSInteger>(i))->title()->utf8());
        EXPECT_EQ(entries[i]->accessibilityDescription().label->utf8(), titles[i]->stringValue()->utf8());
    }
    const CGFloat wide = entries[0]->frame().origin.x;
    form->cellAtIndex(1)->setTitle(u"Âge :"_ns);
    EXPECT_LT(entries[0]->frame().origin.x, wide);
    form->removeEntryAtIndex(1);
    form->sizeToFit();
    EXPECT_EQ(form->frame().size.height, 24 + 8 + 24);
    form->setControlSize(NSSmallControlSize);
    EXPECT_EQ(form->cellAtIndex(1)->controlSize(), NSSmallControlSize);
    EXPECT_EQ(entries[0]->frame().size.height, theme::controlHeight(NSSmallControlSize));
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
    EXPECT_EQ(form->currentEditor()->selectedRange(), (NSRange{0, 6}));
    type(u"neuf");
    EXPECT_EQ(values(), "neuf|");
    EXPECT_EQ(form->stringValue()->utf8(), "neuf");
    key(NSEscapeCharacter);
    EXPECT_EQ(values(), "ancien|");
    EXPECT_EQ(form->currentEditor()->string()->utf8(), "ancien");
    form->cellAtIndex(0)->setStringValue(u"posé"_ns);
    EXPECT_EQ(form->currentEditor()->string()->utf8(), "posé");
    type(u"\t");
    EXPECT_EQ(form->indexOfSelectedItem(), 1);
    type(u"rue");
    key(u'\t', backend::modifierShift);
    EXPECT_EQ(values(), "posé|rue");
    form->selectTextAtIndex(1);
    form->setStringValue(u"quai"_ns); // of the row that was edited
    EXPECT_EQ(values(), "posé|quai");
    form->selectTextAtIndex(1);
    form->setEnabled(NO);
    EXPECT_EQ(form->indexOfSelectedItem(), -1);
    form->selectTextAtIndex(1);
    EXPECT_EQ(form->currentEditor(), nullptr);
}

TEST_F(NSFormTest, ReturnSendsTheActionOrPressesTheDefaultButton) {
    const auto ofButton = make<Cible>(), ofForm = make<Cible>();
    const auto button = NSButton::buttonWithTitle_target_action(u"OK"_ns, ofButton, sel("agir:"));
    button->setKeyEquivalent(u"\r"_ns);
    window->contentView()->addSubview(button);
    form->selectTextAtIndex(1);
    type(u"mot\n");
    EXPECT_EQ(ofButton->count, 1);
    form->setTarget(ofForm);
    form->setAction(sel("agir:"));
    type(u"mots\n");
    EXPECT_EQ(ofButton->count, 1);
    EXPECT_EQ(ofForm->sender, form.get());
    EXPECT_EQ(values(), "|mots");
    EXPECT_EQ(form->indexOfSelectedItem(), 1) << "one goes on in the field";
}

} // namespace

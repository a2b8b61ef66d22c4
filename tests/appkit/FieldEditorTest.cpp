#include <appkit/WindowFixture.h>

#include <cmath>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/FieldEditor.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSPasteboard.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSFormatter.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/graphics/NSFont.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

/// Takes digits alone.
class Chiffres : public NSFormatter {
public:
    static void describe(ClassDescription<Chiffres, NSFormatter>&) {}
    Ref<NSString> stringForObjectValue(NSObject* v) override { return as<NSNumber>(v)->stringValue(); }
    BOOL getObjectValue_forString_errorDescription(Ref<NSObject>* value, NSString* s, Ref<NSString>*) override {
        for (NSUInteger i = 0; i < s->length(); ++i)
            if (s->unit(i) < u'0' || s->unit(i) > u'9') return NO;
        *value = NSNumber::numberWithInteger(s->integerValue());
        return YES;
    }
};

/// Hears everything of a field.
class Temoin : public NSObject {
public:
    static void describe(ClassDescription<Temoin>& c) {
        c.answers<&Temoin::began>(op::controlTextDidBeginEditing);
        c.answers<&Temoin::changed>(op::controlTextDidChange);
        c.answers<&Temoin::ended>(op::controlTextDidEndEditing);
        c.answers<&Temoin::mayBegin>(op::control_textShouldBeginEditing);
        c.answers<&Temoin::command>(op::control_textView_doCommandBySelector);
    }
    Log log;
    BOOL allows = YES;
    SEL swallowed = nullptr;
    std::function<void()> onChange, onEnd;
    void began(NSNotification*) { log.push_back("began"); }
    void changed(NSNotification*) {
        log.push_back("changed");
        if (onChange) onChange();
    }
    void ended(NSNotification*) {
        log.push_back("ended");
        if (const auto step = std::exchange(onEnd, nullptr)) step();
    }
    BOOL mayBegin(NSControl*, NSText*) { return allows; }
    BOOL command(NSControl*, NSText*, SEL s) { return swallowed && s == swallowed; }
};

struct FieldEditorTest : WindowFixture {
    Ref<NSTextField> field = add<NSTextField>({{20, 200}, {200, 24}});
    Ref<NSTextField> next = add<NSTextField>({{20, 100}, {200, 24}});
    Ref<Temoin> temoin = make<Temoin>();
    Ref<Cible> cible = make<Cible>();

    FieldEditorTest() {
        field->setDelegate(temoin);
        window->makeFirstResponder(field);
        drain();
    }
    ~FieldEditorTest() override { NSPasteboard::generalPasteboard()->clearContents(); }
    FieldEditor* editor() const { return as<FieldEditor>(window->firstResponder()); }
    std::string text() const { return editor() ? editor()->string()->utf8() : "no editor"; }
    std::string selection() const {
        const NSRange r = editor()->selectedRange();
        return std::to_string(r.location) + "+" + std::to_string(r.length);
    }
    std::string edited(NSTextField* f) const { return f->currentEditor() == editor() ? text() : "not edited"; }
    /// Where a character begins, in the window.
    NSPoint placeOf(NSUInteger i) const {
        const NSRange was = editor()->selectedRange();
        editor()->setSelectedRange({i, 0});
        const NSRect r = editor()->convertRect_toView(editor()->caretRect(), nullptr);
        editor()->setSelectedRange(was);
        return {r.origin.x + 1, NSMidY(r)};
    }
};

TEST_F(FieldEditorTest, TypingReachesTheFieldWhenItEnds) {
    type(u"Été 1");
    EXPECT_EQ(edited(field), "Été 1");
    EXPECT_EQ(field->cell()->stringValue()->utf8(), "") << "not before the end, or until it is read";
    EXPECT_THAT(temoin->log, ElementsAre("began", "changed", "changed", "changed", "changed", "changed"));
    temoin->log.clear();
    type(u"\t");
    EXPECT_EQ(field->stringValue()->utf8(), "Été 1");
    EXPECT_THAT(temoin->log, ElementsAre("ended"));
    EXPECT_EQ(edited(next), "");
    key(NSTabCharacter, NSShiftKeyMask);
    EXPECT_EQ(edited(field), "Été 1");
    EXPECT_EQ(selection(), "0+5") << "all of it is selected";
    next->setStringValue(u"deux"_ns);
    next->selectText(nullptr);
    EXPECT_EQ(edited(next), "deux");
    EXPECT_EQ(selection(), "0+4");
    type(u"x");
    EXPECT_EQ(next->stringValue()->utf8(), "x");
    EXPECT_EQ(field->stringValue()->utf8(), "Été 1");
}

TEST_F(FieldEditorTest, ComposedTextShowsAndIsReplaced) {
    type(u"ab");
    windows().preedit(u"^e", {2, 0});
    drain();
    EXPECT_EQ(editor()->preedit(), u"^e");
    EXPECT_EQ(text(), "ab") << "not part of the text yet";
    windows().commit(u"ê");
    drain();
    EXPECT_EQ(editor()->preedit(), u"");
    EXPECT_EQ(text(), "abê");
    windows().preedit(u"MM", {2, 0});
    drain();
    editor()->setSelectedRange({0, 0});
    EXPECT_NEAR(NSMinX(editor()->caretRect()), editor()->font()->widthOfString(u"MM"_ns), 1)
        << "it goes with the caret";
    editor()->setSelectedRange({3, 0});
    windows().preedit(u"", {0, 0}); // given up
    drain();
    EXPECT_EQ(text(), "abê");
    editor()->selectAll(nullptr);
    windows().commit(u"か"); // without a composition before
    drain();
    EXPECT_EQ(text(), "か");
}

TEST_F(FieldEditorTest, KeysMoveAndDelete) {
    constexpr auto shift = NSShiftKeyMask, word = NSCommandKeyMask;
    struct Row {
        const char* what;
        char16_t key;
        std::uint32_t modifiers;
        NSRange before;
        const char *selection, *text;
    };
    const Row rows[] = {
        {"left", NSLeftArrowFunctionKey, 0, {4, 0}, "3+0", "mot deux"},
        {"left out of a selection", NSLeftArrowFunctionKey, 0, {2, 3}, "2+0", "mot deux"},
        {"right out of a selection", NSRightArrowFunctionKey, 0, {2, 3}, "5+0", "mot deux"},
        {"extend", NSRightArrowFunctionKey, shift, {4, 0}, "4+1", "mot deux"},
        {"home", NSHomeFunctionKey, 0, {4, 0}, "0+0", "mot deux"},
        {"extend to the end", NSEndFunctionKey, shift, {4, 0}, "4+4", "mot deux"},
        {"word left", NSLeftArrowFunctionKey, word, {8, 0}, "4+0", "mot deux"},
        {"past the start", NSLeftArrowFunctionKey, 0, {0, 0}, "0+0", "mot deux"},
        {"past the end", NSRightArrowFunctionKey, 0, {8, 0}, "8+0", "mot deux"},
        {"backspace", NSDeleteCharacter, 0, {4, 0}, "3+0", "motdeux"},
        {"backspace at the start", NSDeleteCharacter, 0, {0, 0}, "0+0", "mot deux"},
        {"delete", NSDeleteFunctionKey, 0, {0, 0}, "0+0", "ot deux"},
        {"delete a selection", NSDeleteFunctionKey, 0, {1, 3}, "1+0", "mdeux"},
        {"delete a word", NSDeleteCharacter, word, {8, 0}, "4+0", "mot "},
        {"all", u'a', word, {3, 0}, "0+8", "mot deux"},
    };
    for (const Row& row : rows) {
        editor()->setString(u"mot deux"_ns);
        editor()->setSelectedRange(row.before);
        key(row.key, row.modifiers);
        EXPECT_EQ(selection(), row.selection) << row.what;
        EXPECT_EQ(text(), row.text) << row.what;
    }
}

TEST_F(FieldEditorTest, ACharacterOfSeveralUnitsIsOne) {
    for (const std::u16string unit : {u"e\u0301", u"\U0001F600", u"\U0001F1E8\U0001F1E6"}) {
        editor()->setString(NSString::from(u"a" + unit + u"b"));
        editor()->setSelectedRange({1, 0});
        key(NSRightArrowFunctionKey);
        EXPECT_EQ(editor()->selectedRange().location, 1 + unit.size());
        key(NSLeftArrowFunctionKey);
        EXPECT_EQ(editor()->selectedRange().location, 1u);
        key(NSDeleteFunctionKey);
        EXPECT_EQ(text(), "ab");
    }
    // Half of a pair is a broken character; nothing may fall over it.
    const char16_t broken[] = {u'a', 0xD83D, u'b', 0xDE00};
    editor()->setString(NSString::from({broken, 4}));
    for (int i = 0; i < 6; ++i)
        key(NSRightArrowFunctionKey);
    EXPECT_EQ(editor()->selectedRange().location, 4u);
    for (int i = 0; i < 6; ++i)
        key(NSDeleteCharacter);
    EXPECT_EQ(text(), "");
}

TEST_F(FieldEditorTest, TheMouseSelects) {
    editor()->setString(u"mot deux trois"_ns);
    const NSPoint two = placeOf(4), five = placeOf(7), start = placeOf(0);
    const NSPoint inside{placeOf(5).x + 1, two.y}, last{placeOf(8).x - 2, two.y};
    struct Row {
        const char* what;
        NSPoint from, to;
        int clicks;
        std::uint32_t modifiers;
        const char* selection;
    };
    for (const Row& row :
         {Row{"a drag", two, five, 1, 0, "4+3"}, Row{"backwards", five, two, 1, 0, "4+3"},
          Row{"a click", start, start, 1, 0, "0+0"}, Row{"extended", five, five, 1, NSShiftKeyMask, "0+7"},
          Row{"the word of a double click", inside, inside, 2, 0, "4+4"},
          Row{"on the far half of its last letter", last, last, 2, 0, "4+4"},
          Row{"all of it by three", inside, inside, 3, 0, "0+14"}}) {
        pass(1);
        windows().setModifiers(row.modifiers);
        Geste m = mouse().at(row.from.x, row.from.y);
        for (int i = 1; i < row.clicks; ++i)
            m.down().up();
        m.down().at(row.to.x, row.to.y).up().end();
        EXPECT_EQ(selection(), row.selection) << row.what;
    }
    windows().setModifiers(0);
}

TEST_F(FieldEditorTest, EachMoveOfTheSelectionIsToldOnce) {
    editor()->setString(u"mot deux"_ns);
    Log heard;
    const Ecoute ear(NSTextViewDidChangeSelectionNotification, editor(),
                     [&](NSNotification*) { heard.push_back(selection()); });
    key(NSRightArrowFunctionKey);
    key(NSHomeFunctionKey);
    key(NSHomeFunctionKey); // it is there already
    key(NSRightArrowFunctionKey, NSShiftKeyMask);
    type(u"x");
    EXPECT_THAT(heard, ElementsAre("1+0", "0+0", "0+1", "1+0"));
}

TEST_F(FieldEditorTest, TheClipboardGivesOneLine) {
    auto* board = NSPasteboard::generalPasteboard();
    type(u"un deux");
    editor()->setSelectedRange({0, 3});
    key(u'c', NSCommandKeyMask);
    EXPECT_EQ(board->stringForType(NSStringPboardType)->utf8(), "un ");
    key(u'x', NSCommandKeyMask);
    EXPECT_EQ(text(), "deux");
    const std::string foreign = "a\r\nb\tc\x01";
    backend.clipboard().setFromElsewhere({{"text/plain", {foreign.begin(), foreign.end()}}});
    drain();
    editor()->selectAll(nullptr);
    key(u'v', NSCommandKeyMask);
    EXPECT_EQ(text(), "a b c");
    editor()->setSelectedRange({1, 0});
    key(u'c', NSCommandKeyMask); // nothing selected: the clipboard stays
    EXPECT_EQ(board->stringForType(NSStringPboardType)->utf8(), foreign);
}

TEST_F(FieldEditorTest, RunsAreUndoneTogether) {
    type(u"un deux");
    key(NSDeleteCharacter);
    key(NSDeleteCharacter);
    ASSERT_EQ(text(), "un de");
    for (const char* before : {"un deux", "un", "", ""}) {
        key(u'z', NSCommandKeyMask);
        EXPECT_EQ(text(), before);
    }
    key(u'z', NSCommandKeyMask | NSShiftKeyMask);
    EXPECT_EQ(text(), "un");
    type(u"x"); // what was undone is over
    key(u'y', NSCommandKeyMask);
    EXPECT_EQ(text(), "unx");
    key(NSLeftArrowFunctionKey); // and a move ends a run
    type(u"c");
    key(u'z', NSCommandKeyMask);
    EXPECT_EQ(text(), "unx");
    // The oldest are let go of.
    for (int i = 0; i < 250; ++i)
        type(u" ");
    for (int i = 0; i < 250; ++i)
        key(u'z', NSCommandKeyMask);
    EXPECT_EQ(text().size(), 3u + 50);
}

TEST_F(FieldEditorTest, ReturnSendsTheActionOrPressesTheDefaultButton) {
    const auto b = NSButton::buttonWithTitle_target_action(u"Ok"_ns, cible, sel("agir:"));
    window->contentView()->addSubview(b);
    b->setKeyEquivalent(u"\r"_ns);
    type(u"ab\n");
    EXPECT_EQ(cible->sender, b.get());
    field->setTarget(cible);
    field->setAction(sel("agir:"));
    std::string seen;
    cible->onAction = [&](NSObject*) { seen = field->stringValue()->utf8(); };
    type(u"cd\n");
    EXPECT_EQ(cible->count, 2);
    EXPECT_EQ(cible->sender, field.get());
    EXPECT_EQ(seen, "cd");
    EXPECT_EQ(selection(), "0+2") << "one goes on in the field";
    cible->onAction = [&](NSObject*) { window->makeFirstResponder(next); };
    type(u"\n");
    EXPECT_EQ(edited(next), "") << "the action moved the focus";
}

TEST_F(FieldEditorTest, EscapeGivesBackWhatStoodThere) {
    type(u"avant\t");
    window->makeFirstResponder(field);
    type(u"après");
    EXPECT_EQ(field->stringValue()->utf8(), "après");
    key(NSEscapeCharacter);
    EXPECT_EQ(text(), "avant");
    EXPECT_EQ(selection(), "0+5");
    EXPECT_EQ(field->stringValue()->utf8(), "avant") << "though it was read on the way";
}

TEST_F(FieldEditorTest, AFormatterThatRefusesKeepsTheFocus) {
    field->setFormatter(make<Chiffres>());
    type(u"12x\t");
    EXPECT_EQ(edited(field), "12x");
    mouse().click(30, 110).end(); // on the other field
    EXPECT_EQ(edited(field), "12x");
    editor()->setSelectedRange({2, 1});
    key(NSDeleteCharacter);
    type(u"\t");
    EXPECT_EQ(edited(next), "");
    EXPECT_EQ(field->integerValue(), 12);
}

TEST_F(FieldEditorTest, ADelegateMayRefuseOrSwallow) {
    temoin->allows = NO;
    type(u"ab");
    EXPECT_EQ(text(), "");
    temoin->allows = YES;
    temoin->swallowed = sel("insertNewline:");
    type(u"ab\n");
    EXPECT_EQ(text(), "ab");
    EXPECT_THAT(temoin->log, ElementsAre("began", "changed", "changed"));
}

TEST_F(FieldEditorTest, FieldAndDelegateMayGoInTheMiddleOfANotification) {
    const Weak<NSTextField> weak(field.get());
    temoin->onChange = [&] {
        field->removeFromSuperview();
        field = nullptr;
    };
    type(u"abc");
    EXPECT_EQ(weak.get(), nullptr);
    EXPECT_FALSE(editor());
    next->setDelegate(temoin);
    next->setTarget(cible);
    next->setAction(sel("agir:"));
    window->makeFirstResponder(next);
    temoin->onChange = nullptr;
    temoin->onEnd = [&] {
        next->removeFromSuperview();
        next = nullptr;
    };
    type(u"abc\nx"); // nobody is left to hear the last
    EXPECT_FALSE(next);
    EXPECT_FALSE(editor());
    const auto last = add<NSTextField>({{0, 0}, {100, 24}});
    last->setDelegate(temoin);
    window->makeFirstResponder(last);
    temoin->onChange = [&] { temoin = nullptr; };
    type(u"d");
    EXPECT_EQ(text(), "d");
}

TEST_F(FieldEditorTest, ADelegateThatRaisesAtTheEndDoesNotSilenceTheNextEnd) {
    temoin->onEnd = [] { raiseNamed("Test", "in the middle of an end"); };
    type(u"a");
    EXPECT_THROW(window->makeFirstResponder(next), NSExceptionRaised);
    window->makeFirstResponder(field);
    temoin->log.clear();
    type(u"b");
    window->makeFirstResponder(next);
    EXPECT_THAT(temoin->log, ElementsAre("began", "changed", "ended"));
}

TEST_F(FieldEditorTest, DisablingOrSettingTheValueEndsEditing) {
    type(u"abc");
    field->setStringValue(u"neuf"_ns);
    EXPECT_EQ(field->currentEditor(), nullptr);
    EXPECT_EQ(field->stringValue()->utf8(), "neuf");
    window->makeFirstResponder(field);
    field->setEnabled(NO);
    EXPECT_EQ(field->currentEditor(), nullptr);
    EXPECT_FALSE(field->acceptsFirstResponder());
}

TEST_F(FieldEditorTest, ALongTextScrollsToItsCaret) {
    type(std::u16string(2000, u'm'));
    const NSRect room = editor()->bounds();
    EXPECT_LE(NSMaxX(editor()->caretRect()), NSMaxX(room) + 0.01);
    EXPECT_GT(NSMinX(editor()->caretRect()), room.size.width / 2);
    key(NSHomeFunctionKey);
    EXPECT_NEAR(NSMinX(editor()->caretRect()), 0, 0.5);
    key(NSEndFunctionKey);
    key(u'a', NSCommandKeyMask);
    key(NSDeleteCharacter);
    EXPECT_NEAR(NSMinX(editor()->caretRect()), 0, 0.5);
}

TEST_F(FieldEditorTest, TheEditorWritesWhereTheFieldDid) {
    struct Row {
        NSTextAlignment alignment;
        CGFloat low, high; ///< where the caret of an empty field stands, as parts of its width
    };
    for (const Row& row : {Row{NSCenterTextAlignment, 0.45, 0.55}, Row{NSRightTextAlignment, 0.97, 1},
                           Row{NSLeftTextAlignment, 0, 0.01}}) {
        window->makeFirstResponder(nullptr);
        field->setAlignment(row.alignment);
        window->makeFirstResponder(field);
        const CGFloat part = NSMinX(editor()->caretRect()) / editor()->bounds().size.width;
        EXPECT_GE(part, row.low) << row.alignment;
        EXPECT_LE(part, row.high) << row.alignment;
    }
}

TEST_F(FieldEditorTest, TheCaretBlinksWhileTheWindowIsKey) {
    type(u"a");
    EXPECT_TRUE(editor()->caretIsShown());
    pass(0.6);
    EXPECT_FALSE(editor()->caretIsShown());
    pass(0.5);
    EXPECT_TRUE(editor()->caretIsShown());
    pass(0.5);
    type(u"b"); // an edit shows it at once
    EXPECT_TRUE(editor()->caretIsShown());
    const auto other = windowAt({{600, 100}, {200, 100}});
    show(other);
    pass(3);
    EXPECT_TRUE(as<FieldEditor>(field->currentEditor())->caretIsShown()) << "it waits, without blinking";
    EXPECT_TRUE(std::isinf(NSRunLoop::mainRunLoop()->nextDeadline())) << "nothing wakes the process";
}

TEST_F(FieldEditorTest, RangesAreHeldToTheText) {
    editor()->setString(u"abc"_ns);
    editor()->setSelectedRange({2, 50});
    EXPECT_EQ(selection(), "2+1");
    editor()->setSelectedRange({NSNotFound, 5});
    EXPECT_EQ(selection(), "3+0");
    editor()->replaceCharactersInRange_withString({1, 99}, u"z"_ns);
    EXPECT_EQ(text(), "az");
    editor()->setString(nullptr);
    EXPECT_EQ(text(), "");
}

} // namespace

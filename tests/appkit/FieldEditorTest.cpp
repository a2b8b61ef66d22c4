#include <appkit/Cible.h>

#include <cmath>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/FieldEditor.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSPasteboard.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/foundation/NSFormatter.h>
#include <libvue/platform/foundation/NSNumber.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

/// Takes digits alone.
class Chiffres : public NSFormatter {
public:
    static void describe(ClassDescription<Chiffres, NSFormatter>&) {}
    Ref<NSString> stringForObjectValue(NSObject* v) override {
        auto* n = as<NSNumber>(v);
        return n ? n->stringValue() : nullptr;
    }
    BOOL getObjectValue_forString_errorDescription(Ref<NSObject>* value, NSString* s, Ref<NSString>* error) override {
        for (NSUInteger i = 0; i < s->length(); ++i)
            if (s->unit(i) < u'0' || s->unit(i) > u'9') {
                if (error) *error = u"des chiffres"_ns;
                return NO;
            }
        if (value) *value = NSNumber::numberWithInteger(s->integerValue());
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
        if (onEnd) onEnd();
    }
    BOOL mayBegin(NSControl*, NSText*) { return allows; }
    BOOL command(NSControl*, NSText*, SEL s) { return swallowed && s == swallowed; }
};

class FieldEditorTest : public AppFixture {
protected:
    Ref<NSWindow> window;
    Ref<NSTextField> field, next;
    Ref<Temoin> temoin;
    Ref<Cible> cible;

    void SetUp() override {
        window = windowAt({{100, 100}, {400, 300}});
        field = make<NSTextField>(NSRect{{20, 200}, {200, 24}});
        next = make<NSTextField>(NSRect{{20, 100}, {200, 24}});
        window->contentView()->addSubview(field);
        window->contentView()->addSubview(next);
        temoin = make<Temoin>();
        cible = make<Cible>();
        field->setDelegate(temoin);
        show(window);
        window->makeFirstResponder(field);
        drain();
    }
    void TearDown() override {
        NSPasteboard::generalPasteboard()->clearContents();
        window = nullptr;
        field = next = nullptr;
        temoin = nullptr;
        cible = nullptr;
        AppFixture::TearDown();
    }
    FieldEditor* editor() const { return as<FieldEditor>(window->firstResponder()); }
    std::string text() const { return editor() ? editor()->string()->utf8() : "no editor"; }
    std::string selection() const {
        const NSRange r = editor()->selectedRange();
        return std::to_string(r.location) + "+" + std::to_string(r.length);
    }
    void type(std::u16string_view s) {
        windows().typeText(s);
        drain();
    }
    void key(char16_t c, std::uint32_t modifiers = 0) {
        windows().key(c, modifiers);
        drain();
    }
    /// Where a character begins, in the window.
    NSPoint placeOf(NSUInteger i) const {
        const NSRange was = editor()->selectedRange();
        editor()->setSelectedRange({i, 0});
        const NSRect r = editor()->convertRect_toView(editor()->caretRect(), nullptr);
        editor()->setSelectedRange(was);
        return {r.origin.x + 1, NSMidY(r)};
    }
    Geste mouse() { return {windows(), window}; }
};

TEST_F(FieldEditorTest, TypingReachesTheFieldWhenItEnds) {
    ASSERT_TRUE(editor());
    EXPECT_EQ(field->currentEditor(), editor());
    type(u"Été 1");
    EXPECT_EQ(text(), "Été 1");
    EXPECT_EQ(field->cell()->stringValue()->utf8(), "") << "not before the end, or until it is read";
    EXPECT_THAT(temoin->log, ElementsAre("began", "changed", "changed", "changed", "changed", "changed"));
    temoin->log.clear();
    type(u"\t");
    EXPECT_EQ(field->stringValue()->utf8(), "Été 1");
    EXPECT_THAT(temoin->log, ElementsAre("ended"));
    EXPECT_EQ(next->currentEditor(), editor());
    EXPECT_EQ(field->currentEditor(), nullptr);
    windows().key(NSTabCharacter, NSShiftKeyMask);
    drain();
    EXPECT_EQ(field->currentEditor(), editor());
    EXPECT_EQ(selection(), "0+5") << "all of it is selected";
}

TEST_F(FieldEditorTest, ComposedTextShowsAndIsReplaced) {
    type(u"ab");
    windows().preedit(u"^", {1, 0});
    drain();
    EXPECT_EQ(editor()->preedit(), u"^");
    EXPECT_EQ(text(), "ab") << "not part of the text yet";
    windows().preedit(u"^e", {2, 0});
    drain();
    windows().commit(u"ê");
    drain();
    EXPECT_EQ(editor()->preedit(), u"");
    EXPECT_EQ(text(), "abê");
    windows().preedit(u"x", {1, 0});
    windows().preedit(u"", {0, 0}); // given up
    drain();
    EXPECT_EQ(text(), "abê");
    windows().commit(u"\u00e9"); // a dead key: no composition before
    drain();
    EXPECT_EQ(text(), "abêé");
    editor()->selectAll(nullptr);
    windows().commit(u"か");
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
    const std::u16string_view whole[] = {u"e\u0301", u"\U0001F600", u"\U0001F1E8\U0001F1E6"};
    for (const auto unit : whole) {
        editor()->setString(NSString::from(std::u16string(u"a") + std::u16string(unit) + u"b"));
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
    mouse().at(two.x, two.y).down().at(five.x, five.y).up().end();
    EXPECT_EQ(selection(), "4+3");
    mouse().at(five.x, five.y).down().at(two.x, two.y).up().end(); // backwards
    EXPECT_EQ(selection(), "4+3");
    pass(1);
    mouse().at(start.x, start.y).down().up().end();
    EXPECT_EQ(selection(), "0+0");
    windows().setModifiers(NSShiftKeyMask);
    mouse().at(five.x, five.y).down().up().end();
    windows().setModifiers(0);
    EXPECT_EQ(selection(), "0+7");
    pass(1);
    const NSPoint inside = {placeOf(5).x + 1, two.y};
    mouse().at(inside.x, inside.y).down().up().down().up().end();
    EXPECT_EQ(selection(), "4+4") << "a double click takes the word";
    pass(1);
    const NSPoint last = {placeOf(8).x - 2, two.y};
    mouse().at(last.x, last.y).down().up().down().up().end();
    EXPECT_EQ(selection(), "4+4") << "also on the far half of its last letter";
    pass(1);
    mouse().at(inside.x, inside.y).down().up().down().up().down().up().end();
    EXPECT_EQ(selection(), "0+14") << "a triple click takes all";
}

TEST_F(FieldEditorTest, SelectingTheTextOfAnotherFieldTakesTheEditorThere) {
    type(u"un");
    next->setStringValue(u"deux"_ns);
    temoin->log.clear();
    next->selectText(nullptr);
    EXPECT_EQ(field->stringValue()->utf8(), "un");
    EXPECT_THAT(temoin->log, ElementsAre("ended"));
    ASSERT_TRUE(next->currentEditor());
    EXPECT_EQ(next->currentEditor(), editor());
    EXPECT_EQ(selection(), "0+4");
    type(u"x");
    EXPECT_EQ(next->stringValue()->utf8(), "x");
    EXPECT_EQ(field->stringValue()->utf8(), "un");
}

TEST_F(FieldEditorTest, EachMoveOfTheSelectionIsToldOnce) {
    editor()->setString(u"mot deux"_ns);
    editor()->setSelectedRange({0, 0});
    class Oreille : public NSObject {
    public:
        static void describe(ClassDescription<Oreille>& c) { c.answers<&Oreille::hears>("hears:"); }
        Log log;
        void hears(NSNotification* n) {
            const NSRange r = as<FieldEditor>(n->object())->selectedRange();
            log.push_back(std::to_string(r.location) + "+" + std::to_string(r.length));
        }
    };
    const auto oreille = make<Oreille>();
    auto* centre = NSNotificationCenter::defaultCenter();
    centre->addObserver_selector_name_object(oreille, sel("hears:"), NSTextViewDidChangeSelectionNotification,
                                             editor());
    key(NSRightArrowFunctionKey);
    key(NSHomeFunctionKey);
    key(NSHomeFunctionKey); // it is there already
    key(NSRightArrowFunctionKey, NSShiftKeyMask);
    type(u"x");
    EXPECT_THAT(oreille->log, ElementsAre("1+0", "0+0", "0+1", "1+0"));
    centre->removeObserver(oreille);
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
    type(u"un");
    type(u" ");
    type(u"deux");
    key(NSDeleteCharacter);
    key(NSDeleteCharacter);
    ASSERT_EQ(text(), "un de");
    const auto undo = [&] { key(u'z', NSCommandKeyMask); };
    undo();
    EXPECT_EQ(text(), "un deux");
    undo();
    EXPECT_EQ(text(), "un");
    undo();
    EXPECT_EQ(text(), "");
    undo();
    EXPECT_EQ(text(), "");
    key(u'z', NSCommandKeyMask | NSShiftKeyMask);
    EXPECT_EQ(text(), "un");
    type(u"x"); // what was undone is over
    key(u'y', NSCommandKeyMask);
    EXPECT_EQ(text(), "unx");
}

TEST_F(FieldEditorTest, MovingBetweenEditsEndsARun) {
    type(u"ab");
    key(NSLeftArrowFunctionKey);
    type(u"c");
    key(u'z', NSCommandKeyMask);
    EXPECT_EQ(text(), "ab");
}

TEST_F(FieldEditorTest, ReturnSendsTheActionAndGoesOn) {
    field->setTarget(cible);
    field->setAction(sel("agir:"));
    std::string seen;
    cible->onAction = [&](NSObject*) { seen = field->stringValue()->utf8(); };
    type(u"ab\n");
    EXPECT_EQ(cible->count, 1);
    EXPECT_EQ(seen, "ab");
    ASSERT_TRUE(editor());
    EXPECT_EQ(selection(), "0+2");
    cible->onAction = [&](NSObject*) { window->makeFirstResponder(next); };
    type(u"\n");
    EXPECT_EQ(next->currentEditor(), editor()) << "the action moved the focus";
}

TEST_F(FieldEditorTest, ReturnWithoutAnActionPressesTheDefaultButton) {
    const auto b = NSButton::buttonWithTitle_target_action(u"Ok"_ns, cible, sel("agir:"));
    window->contentView()->addSubview(b);
    b->setKeyEquivalent(u"\r"_ns);
    type(u"ab\n");
    EXPECT_EQ(cible->count, 1);
    EXPECT_EQ(field->stringValue()->utf8(), "ab");
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
    EXPECT_EQ(field->currentEditor(), editor());
    EXPECT_EQ(text(), "12x");
    mouse().at(30, 110).down().up().end(); // on the other field
    EXPECT_EQ(field->currentEditor(), editor());
    editor()->setSelectedRange({2, 1});
    key(NSDeleteCharacter);
    type(u"\t");
    EXPECT_EQ(next->currentEditor(), editor());
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

TEST_F(FieldEditorTest, TheFieldMayGoInTheMiddleOfANotification) {
    Weak<NSTextField> weak(field.get());
    temoin->onChange = [&] {
        field->removeFromSuperview();
        field = nullptr;
    };
    type(u"abc");
    drain();
    EXPECT_EQ(weak.get(), nullptr);
    EXPECT_FALSE(editor());
    next->setDelegate(temoin);
    window->makeFirstResponder(next);
    temoin->onChange = [&] { temoin = nullptr; }; // the delegate itself
    type(u"d");
    EXPECT_EQ(text(), "d");
}

TEST_F(FieldEditorTest, TheFieldMayGoAtTheEndOfEditing) {
    field->setTarget(cible);
    field->setAction(sel("agir:"));
    temoin->onEnd = [&] {
        temoin->onEnd = nullptr;
        field->removeFromSuperview();
        field = nullptr;
    };
    type(u"abc\n");
    EXPECT_FALSE(field);
    type(u"x"); // nobody is left to hear
    EXPECT_FALSE(editor());
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
    for (const Row& row : {Row{NSLeftTextAlignment, 0, 0.01}, Row{NSCenterTextAlignment, 0.45, 0.55},
                           Row{NSRightTextAlignment, 0.97, 1}, Row{NSLeftTextAlignment, 0, 0.01}}) {
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
    other->close();
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

#include <appkit/AppFixture.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/KeyBindings.h>
#include <libvue/platform/foundation/NSArray.h>

using namespace libvue;
using namespace libvue::test;
using testing::ElementsAre;

namespace {

constexpr NSUInteger shift = NSShiftKeyMask, ctrl = NSControlKeyMask, option = NSAlternateKeyMask,
                     command = NSCommandKeyMask;

Ref<NSEvent> keyEvent(std::u16string_view characters, std::u16string_view plain, NSUInteger flags) {
    return NSEvent::
        keyEventWithType_location_modifierFlags_timestamp_windowNumber_context_characters_charactersIgnoringModifiers_isARepeat_keyCode(
            NSKeyDown, {}, flags, 0, 0, nullptr, NSString::from(characters), NSString::from(plain), NO, 0);
}

TEST(KeyBindingsTest, KeysStandForTheseOperations) {
    struct Row {
        unichar key;
        NSUInteger flags;
        const char* operation; ///< null: none
    };
    const Row rows[] = {
        {NSLeftArrowFunctionKey, 0, "moveLeft:"},
        {NSLeftArrowFunctionKey, NSFunctionKeyMask | NSNumericPadKeyMask | NSAlphaShiftKeyMask, "moveLeft:"},
        {NSLeftArrowFunctionKey, shift, "moveLeftAndModifySelection:"},
        {NSRightArrowFunctionKey, ctrl, "moveWordRight:"},
        {NSRightArrowFunctionKey, option | shift, "moveWordRightAndModifySelection:"},
        {NSRightArrowFunctionKey, ctrl | option, nullptr},
        {NSUpArrowFunctionKey, command, "moveToBeginningOfDocument:"},
        {NSHomeFunctionKey, 0, "moveToBeginningOfLine:"},
        {NSEndFunctionKey, ctrl | shift, "moveToEndOfDocumentAndModifySelection:"},
        {NSPageDownFunctionKey, 0, "pageDown:"},
        {NSPageUpFunctionKey, option, "scrollPageUp:"},
        {NSBackspaceCharacter, 0, "deleteBackward:"},
        {NSDeleteCharacter, 0, "deleteBackward:"},
        {NSDeleteCharacter, ctrl, "deleteWordBackward:"},
        {NSDeleteFunctionKey, 0, "deleteForward:"},
        {NSDeleteFunctionKey, shift, "cut:"},
        {NSTabCharacter, 0, "insertTab:"},
        {NSTabCharacter, shift, "insertBacktab:"},
        {NSBackTabCharacter, shift, "insertBacktab:"},
        {NSCarriageReturnCharacter, 0, "insertNewline:"},
        {NSEnterCharacter, 0, "insertNewline:"},
        {NSEscapeCharacter, 0, "cancelOperation:"},
        {u'c', ctrl, "copy:"},
        {u'C', ctrl, "copy:"},
        {u'z', ctrl | shift, "redo:"},
        {u'c', 0, nullptr},
        {u'c', ctrl | option, nullptr},
        {NSF1FunctionKey, 0, nullptr},
    };
    for (const Row& r : rows) {
        const SEL found = KeyBindings::commandForKey(r.key, r.flags);
        EXPECT_EQ(found ? std::string(found->name) : "none", r.operation ? r.operation : "none")
            << std::hex << static_cast<unsigned>(r.key) << " with " << r.flags;
    }
}

TEST(KeyBindingsTest, TextIsWhatIsVisibleAndNoShortcut) {
    struct Row {
        std::u16string_view characters, plain;
        NSUInteger flags;
        bool typed;
    };
    const Row rows[] = {
        {u"e", u"e", 0, true},
        {u"É", u"é", shift, true},
        {u"\U0001F600", u"\U0001F600", 0, true},
        {u"{", u"4", ctrl | option, true}, // the third level of a keyboard
        {u"@", u"à", option, true},
        {u"f", u"f", option, false},
        {u"f", u"f", ctrl, false},
        {u"\x06", u"f", ctrl, false},
        {u"ƒ", u"f", command | option, false},
        {u"\x1b", u"\x1b", 0, false},
        {u"\uF704", u"\uF704", 0, false},
        {u"", u"", 0, false},
    };
    for (const Row& r : rows) {
        const Ref<NSEvent> e = keyEvent(r.characters, r.plain, r.flags);
        NSString* text = KeyBindings::textForEvent(*e);
        EXPECT_EQ(text != nullptr, r.typed) << e->characters()->utf8() << " with " << r.flags;
        if (text) {
            EXPECT_TRUE(text->isEqualTo(r.characters));
        }
    }
}

class Editor : public NSView {
public:
    static void describe(ClassDescription<Editor, NSView>& c) {
        c.answers<&Editor::moveLeft>("moveLeft:");
        c.answers<&Editor::copy>("copy:");
    }
    explicit Editor(Log& log) : log_(log) {}
    void moveLeft(NSObject*) { log_.emplace_back("moveLeft"); }
    void copy(NSObject*) { log_.emplace_back("copy"); }
    void insertText(NSObject* text) override { log_.push_back("insert " + as<NSString>(text)->utf8()); }

private:
    Log& log_;
};

class Above : public NSResponder {
public:
    static void describe(ClassDescription<Above, NSResponder>& c) {
        c.answers<&Above::moveRight>("moveRight:");
        c.answers<&Above::moveLeft>("moveLeft:");
    }
    explicit Above(Log& log) : log_(log) {}
    void moveRight(NSObject*) { log_.emplace_back("moveRight above"); }
    void moveLeft(NSObject*) { log_.emplace_back("moveLeft above"); }
    void keyDown(NSEvent* e) override { log_.push_back("key above " + e->characters()->utf8()); }

private:
    Log& log_;
};

class ResponderTest : public AppFixture {};

TEST_F(ResponderTest, CommandsGoToTheFirstThatAnswersThem) {
    const Ref<Above> above = make<Above>(log);
    const Ref<Editor> editor = make<Editor>(log);
    editor->setNextResponder(above);
    const char16_t left[] = {NSLeftArrowFunctionKey, 0}, right[] = {NSRightArrowFunctionKey, 0},
                   up[] = {NSUpArrowFunctionKey, 0};
    const Ref<NSArray> events = NSArray::arrayWithObjects(
        {keyEvent(left, left, 0), keyEvent(right, right, 0), keyEvent(u"é", u"é", 0), keyEvent(u"\x03", u"c", ctrl)});
    editor->interpretKeyEvents(events);
    EXPECT_THAT(taken(), ElementsAre("moveLeft", "moveRight above", "insert é", "copy"));
    const auto beeps = windows().beeps();
    editor->interpretKeyEvents(NSArray::arrayWithObject(keyEvent(up, up, 0)));
    EXPECT_EQ(windows().beeps(), beeps + 1);
}

TEST_F(ResponderTest, EventsAreOperationsToo) {
    const Ref<Above> above = make<Above>(log);
    EXPECT_TRUE(above->tryToPerform_with(sel("keyDown:"), keyEvent(u"x", u"x", 0)));
    EXPECT_THAT(taken(), ElementsAre("key above x"));
    EXPECT_FALSE(above->tryToPerform_with(sel("inconnue:"), nullptr));
}

} // namespace

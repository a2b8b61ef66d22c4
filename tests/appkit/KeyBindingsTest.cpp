#include <appkit/AppFixture.h>

#include <gmock/gmock.h>

#include <libvue/platform/appkit/KeyBindings.h>

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
        {NSLeftArrowFunctionKey, NSFunctionKeyMask | NSNumericPadKeyMask | NSAlphaShiftKeyMask, "moveLeft:"},
        {NSLeftArrowFunctionKey, shift, "moveLeftAndModifySelection:"},
        {NSRightArrowFunctionKey, ctrl, "moveWordRight:"},
        {NSRightArrowFunctionKey, option | shift, "moveWordRightAndModifySelection:"},
        {NSRightArrowFunctionKey, ctrl | option, nullptr},
        {NSEndFunctionKey, ctrl | shift, "moveToEndOfDocumentAndModifySelection:"},
        {NSDeleteCharacter, ctrl, "deleteWordBackward:"},
        {NSDeleteFunctionKey, shift, "cut:"},
        {NSTabCharacter, shift, "insertBacktab:"},
        {NSBackTabCharacter, shift, "insertBacktab:"},
        {NSEnterCharacter, 0, "insertNewline:"},
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
    for (const Row& r :
         {Row{u"É", u"é", shift, true}, Row{u"\U0001F600", u"\U0001F600", 0, true},
          Row{u"{", u"4", ctrl | option, true}, // the third level of a keyboard
          Row{u"@", u"à", option, true}, Row{u"f", u"f", option, false}, Row{u"f", u"f", ctrl, false},
          Row{u"\x06", u"f", ctrl, false}, Row{u"ƒ", u"f", command | option, false}, Row{u"\x1b", u"\x1b", 0, false},
          Row{u"\uF704", u"\uF704", 0, false}, Row{u"", u"", 0, false}}) {
        const Ref<NSEvent> e = keyEvent(r.characters, r.plain, r.flags);
        NSString* text = KeyBindings::textForEvent(*e);
        EXPECT_EQ(text ? text->utf8() : "", r.typed ? NSString::from(r.characters)->utf8() : "") << r.flags;
    }
}

/// Moves to the left, and says so.
class Gauche : public NSResponder {
public:
    static void describe(ClassDescription<Gauche, NSResponder>& c) { c.answers<&Gauche::moveLeft>("moveLeft:"); }
    Gauche(Log& log, std::string name) : log_(log), name_(std::move(name)) {}
    void moveLeft(NSObject*) { say("left"); }
    void insertText(NSObject* text) override { say("insert " + as<NSString>(text)->utf8()); }
    void keyDown(NSEvent* e) override { say("key " + e->characters()->utf8()); }

protected:
    void say(const std::string& what) { log_.push_back(name_ + " " + what); }

private:
    Log& log_;
    std::string name_;
};

class GaucheEtDroite : public Gauche {
public:
    static void describe(ClassDescription<GaucheEtDroite, Gauche>& c) {
        c.answers<&GaucheEtDroite::moveRight>("moveRight:");
    }
    using Gauche::Gauche;
    void moveRight(NSObject*) { say("right"); }
};

using ResponderTest = AppFixture;

TEST_F(ResponderTest, CommandsGoToTheFirstThatAnswersThem) {
    const Ref<Gauche> editor = make<Gauche>(log, "editor"), above = make<GaucheEtDroite>(log, "above");
    editor->setNextResponder(above);
    const char16_t left[] = {NSLeftArrowFunctionKey, 0}, right[] = {NSRightArrowFunctionKey, 0},
                   up[] = {NSUpArrowFunctionKey, 0};
    const auto beeps = windows().beeps();
    const Ref<NSArray> events = NSArray::arrayWithObjects(
        {keyEvent(left, left, 0), keyEvent(right, right, 0), keyEvent(u"é", u"é", 0), keyEvent(up, up, 0)});
    editor->interpretKeyEvents(events);
    EXPECT_THAT(taken(), ElementsAre("editor left", "above right", "editor insert é"));
    EXPECT_EQ(windows().beeps(), beeps + 1);
    // Events are operations, too.
    EXPECT_TRUE(above->tryToPerform_with(sel("keyDown:"), keyEvent(u"x", u"x", 0)));
    EXPECT_THAT(taken(), ElementsAre("above key x"));
    EXPECT_FALSE(above->tryToPerform_with(sel("inconnue:"), nullptr));
}

} // namespace

#include <libvue/platform/appkit/KeyBindings.h>

#include <iterator>
#include <string>

#include <libvue/platform/appkit/NSEvent.h>

namespace libvue::KeyBindings {

namespace {

/// With which modifiers a row applies, and whether Shift selects on the way.
enum class Shift : std::uint8_t { refused, required, selects };

constexpr NSUInteger plain = 0, ctrl = NSControlKeyMask, option = NSAlternateKeyMask, command = NSCommandKeyMask;

struct Binding {
    unichar key;
    NSUInteger modifiers; ///< without Shift
    Shift shift;
    const char* operation; ///< without its colon
};

// The keys of this desktop, whose Ctrl key is the command modifier: words by it, by Option or by Control; lines by Home
// and End, documents by these with the modifier.
constexpr Binding bindings[] = {
    {NSLeftArrowFunctionKey, plain, Shift::selects, "moveLeft"},
    {NSLeftArrowFunctionKey, ctrl, Shift::selects, "moveWordLeft"},
    {NSLeftArrowFunctionKey, option, Shift::selects, "moveWordLeft"},
    {NSLeftArrowFunctionKey, command, Shift::selects, "moveWordLeft"},
    {NSRightArrowFunctionKey, plain, Shift::selects, "moveRight"},
    {NSRightArrowFunctionKey, ctrl, Shift::selects, "moveWordRight"},
    {NSRightArrowFunctionKey, option, Shift::selects, "moveWordRight"},
    {NSRightArrowFunctionKey, command, Shift::selects, "moveWordRight"},
    {NSUpArrowFunctionKey, plain, Shift::selects, "moveUp"},
    {NSUpArrowFunctionKey, ctrl, Shift::selects, "moveToBeginningOfParagraph"},
    {NSUpArrowFunctionKey, option, Shift::selects, "moveToBeginningOfParagraph"},
    {NSUpArrowFunctionKey, command, Shift::selects, "moveToBeginningOfDocument"},
    {NSDownArrowFunctionKey, plain, Shift::selects, "moveDown"},
    {NSDownArrowFunctionKey, ctrl, Shift::selects, "moveToEndOfParagraph"},
    {NSDownArrowFunctionKey, option, Shift::selects, "moveToEndOfParagraph"},
    {NSDownArrowFunctionKey, command, Shift::selects, "moveToEndOfDocument"},
    {NSHomeFunctionKey, plain, Shift::selects, "moveToBeginningOfLine"},
    {NSHomeFunctionKey, ctrl, Shift::selects, "moveToBeginningOfDocument"},
    {NSHomeFunctionKey, command, Shift::selects, "moveToBeginningOfDocument"},
    {NSEndFunctionKey, plain, Shift::selects, "moveToEndOfLine"},
    {NSEndFunctionKey, ctrl, Shift::selects, "moveToEndOfDocument"},
    {NSEndFunctionKey, command, Shift::selects, "moveToEndOfDocument"},
    {NSPageUpFunctionKey, plain, Shift::selects, "pageUp"},
    {NSPageUpFunctionKey, option, Shift::refused, "scrollPageUp"},
    {NSPageUpFunctionKey, ctrl, Shift::refused, "scrollPageUp"},
    {NSPageDownFunctionKey, plain, Shift::selects, "pageDown"},
    {NSPageDownFunctionKey, option, Shift::refused, "scrollPageDown"},
    {NSPageDownFunctionKey, ctrl, Shift::refused, "scrollPageDown"},

    {NSBackspaceCharacter, plain, Shift::refused, "deleteBackward"},
    {NSBackspaceCharacter, plain, Shift::required, "deleteBackward"},
    {NSBackspaceCharacter, ctrl, Shift::refused, "deleteWordBackward"},
    {NSBackspaceCharacter, option, Shift::refused, "deleteWordBackward"},
    {NSBackspaceCharacter, command, Shift::refused, "deleteWordBackward"},
    {NSDeleteFunctionKey, plain, Shift::refused, "deleteForward"},
    {NSDeleteFunctionKey, plain, Shift::required, "cut"},
    {NSDeleteFunctionKey, ctrl, Shift::refused, "deleteWordForward"},
    {NSDeleteFunctionKey, option, Shift::refused, "deleteWordForward"},
    {NSDeleteFunctionKey, command, Shift::refused, "deleteWordForward"},
    {NSInsertFunctionKey, ctrl, Shift::refused, "copy"},
    {NSInsertFunctionKey, plain, Shift::required, "paste"},

    {NSTabCharacter, plain, Shift::refused, "insertTab"},
    {NSTabCharacter, plain, Shift::required, "insertBacktab"},
    {NSTabCharacter, ctrl, Shift::refused, "selectNextKeyView"},
    {NSTabCharacter, ctrl, Shift::required, "selectPreviousKeyView"},
    {NSTabCharacter, option, Shift::refused, "insertTabIgnoringFieldEditor"},
    {NSBackTabCharacter, plain, Shift::refused, "insertBacktab"},
    {NSBackTabCharacter, plain, Shift::required, "insertBacktab"},
    {NSBackTabCharacter, ctrl, Shift::required, "selectPreviousKeyView"},
    {NSCarriageReturnCharacter, plain, Shift::refused, "insertNewline"},
    {NSCarriageReturnCharacter, plain, Shift::required, "insertNewline"},
    {NSCarriageReturnCharacter, ctrl, Shift::refused, "insertLineBreak"},
    {NSCarriageReturnCharacter, option, Shift::refused, "insertNewlineIgnoringFieldEditor"},
    {NSEscapeCharacter, plain, Shift::refused, "cancelOperation"},

    {u'a', ctrl, Shift::refused, "selectAll"},
    {u'c', ctrl, Shift::refused, "copy"},
    {u'x', ctrl, Shift::refused, "cut"},
    {u'v', ctrl, Shift::refused, "paste"},
    {u'z', ctrl, Shift::refused, "undo"},
    {u'z', ctrl, Shift::required, "redo"},
    {u'y', ctrl, Shift::refused, "redo"},
    {u'a', command, Shift::refused, "selectAll"},
    {u'c', command, Shift::refused, "copy"},
    {u'x', command, Shift::refused, "cut"},
    {u'v', command, Shift::refused, "paste"},
    {u'z', command, Shift::refused, "undo"},
    {u'z', command, Shift::required, "redo"},
    {u'y', command, Shift::refused, "redo"},
    {NSInsertFunctionKey, command, Shift::refused, "copy"},
};

/// One key under the several characters that it comes as.
unichar canonical(unichar key) {
    if (key == NSDeleteCharacter) return NSBackspaceCharacter;
    if (key == NSEnterCharacter || key == u'\n') return NSCarriageReturnCharacter;
    if (key >= u'A' && key <= u'Z') return static_cast<unichar>(key - u'A' + u'a');
    return key;
}

SEL selectorOf(std::size_t row, bool selecting) {
    static SEL known[std::size(bindings)][2];
    SEL& s = known[row][selecting];
    if (!s) s = sel(std::string(bindings[row].operation) + (selecting ? "AndModifySelection:" : ":"));
    return s;
}

} // namespace

SEL commandForKey(unichar key, NSUInteger modifierFlags) {
    key = canonical(key);
    const NSUInteger modifiers = modifierFlags & (ctrl | option | command);
    const bool shift = modifierFlags & NSShiftKeyMask;
    for (std::size_t i = 0; i < std::size(bindings); ++i) {
        const Binding& b = bindings[i];
        if (b.key != key || b.modifiers != modifiers) continue;
        if (b.shift == Shift::selects) return selectorOf(i, shift);
        if ((b.shift == Shift::required) == shift) return selectorOf(i, false);
    }
    return nullptr;
}

SEL commandForEvent(const NSEvent& e) {
    const NSString* keys = e.charactersIgnoringModifiers();
    if (!keys || keys->length() == 0) keys = e.characters();
    return keys && keys->length() > 0 ? commandForKey(keys->characterAtIndex(0), e.modifierFlags()) : nullptr;
}

NSString* textForEvent(const NSEvent& e) {
    NSString* text = e.characters();
    if (!text || text->length() == 0) return nullptr;
    const unichar first = text->characterAtIndex(0);
    if (first < 0x20 || first == NSDeleteCharacter || (first >= 0xF700 && first <= 0xF8FF)) return nullptr;
    const NSUInteger flags = e.modifierFlags();
    // A third level of the keyboard (AltGr) gives another character than the key alone; a shortcut gives the same one.
    if (flags & (ctrl | option | command)) {
        const NSString* alone = e.charactersIgnoringModifiers();
        if (flags & command || !alone || text->isEqualToString(alone)) return nullptr;
        if (flags & ctrl && !(flags & option)) return nullptr;
    }
    return text;
}

} // namespace libvue::KeyBindings

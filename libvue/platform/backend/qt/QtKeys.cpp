#include <libvue/platform/backend/qt/QtKeys.h>

#include <QChar>
#include <QKeyEvent>
#include <QString>

namespace libvue::backend {

namespace {

struct KeyCharacter {
    int key;
    char16_t character;
};

constexpr KeyCharacter keysWithoutText[] = {
    {Qt::Key_Backspace, 0x7F}, {Qt::Key_Tab, 0x09},          {Qt::Key_Backtab, 0x19},  {Qt::Key_Return, 0x0D},
    {Qt::Key_Enter, 0x03},     {Qt::Key_Escape, 0x1B},       {Qt::Key_Up, 0xF700},     {Qt::Key_Down, 0xF701},
    {Qt::Key_Left, 0xF702},    {Qt::Key_Right, 0xF703},      {Qt::Key_Insert, 0xF727}, {Qt::Key_Delete, 0xF728},
    {Qt::Key_Home, 0xF729},    {Qt::Key_End, 0xF72B},        {Qt::Key_PageUp, 0xF72C}, {Qt::Key_PageDown, 0xF72D},
    {Qt::Key_Print, 0xF72E},   {Qt::Key_ScrollLock, 0xF72F}, {Qt::Key_Pause, 0xF730},  {Qt::Key_SysReq, 0xF731},
    {Qt::Key_Menu, 0xF735},    {Qt::Key_Clear, 0xF739},      {Qt::Key_Help, 0xF746},
};

constexpr char16_t firstFunctionKey = 0xF700, lastArrowKey = 0xF703, f1 = 0xF704;

/// 0 where the key's text says all.
char16_t characterOf(int key) {
    if (key >= Qt::Key_F1 && key <= Qt::Key_F35) return static_cast<char16_t>(f1 + (key - Qt::Key_F1));
    for (const KeyCharacter& k : keysWithoutText) {
        if (k.key == key) return k.character;
    }
    return 0;
}

/// What the key gives with shift at most: the key's own value is an upper case letter, shifted or not.
std::u16string baseCharacters(const QKeyEvent& key) {
    const int value = key.key();
    if (value <= 0 || value >= 0x01000000) return key.text().toStdU16String();
    const auto code = static_cast<char32_t>(value);
    const char32_t character = key.modifiers() & Qt::ShiftModifier ? code : QChar::toLower(code);
    return QString::fromUcs4(&character, 1).toStdU16String();
}

} // namespace

std::uint32_t modifiersOf(Qt::KeyboardModifiers modifiers) {
    std::uint32_t bits = 0;
    if (modifiers & Qt::ShiftModifier) bits |= modifierShift;
    if (modifiers & Qt::ControlModifier) bits |= modifierCommand;
    if (modifiers & Qt::MetaModifier) bits |= modifierControl;
    if (modifiers & Qt::AltModifier) bits |= modifierOption;
    if (modifiers & Qt::KeypadModifier) bits |= modifierNumericPad;
    return bits;
}

std::uint32_t modifierOfKey(int key) {
    switch (key) {
    case Qt::Key_Shift:
        return modifierShift;
    case Qt::Key_Control:
        return modifierCommand;
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
        return modifierControl;
    case Qt::Key_Alt:
        return modifierOption;
    default:
        return 0;
    }
}

void describeKey(const QKeyEvent& key, Event& event) {
    event.modifiers = modifiersOf(key.modifiers());
    event.keyCode = static_cast<std::uint16_t>(key.nativeScanCode());
    event.repeat = key.isAutoRepeat();
    if (const char16_t character = characterOf(key.key())) {
        event.characters = event.charactersIgnoringModifiers = std::u16string(1, character);
        if (character >= firstFunctionKey) event.modifiers |= modifierFunction;
        if (character >= firstFunctionKey && character <= lastArrowKey) event.modifiers |= modifierNumericPad;
        return;
    }
    event.charactersIgnoringModifiers = baseCharacters(key);
    if (event.modifiers & modifierCommand) {
        event.characters = event.charactersIgnoringModifiers;
    } else if (event.modifiers & modifierControl) {
        event.characters = event.charactersIgnoringModifiers;
        if (key.key() >= Qt::Key_A && key.key() <= Qt::Key_Z) {
            event.characters.assign(1, static_cast<char16_t>(key.key() & 0x1f));
        }
    } else {
        event.characters = key.text().toStdU16String();
    }
}

int buttonNumber(Qt::MouseButton button) {
    // The bits of left, right and middle come in the order of their numbers; so do the others after them.
    const auto bits = static_cast<unsigned>(button);
    return bits ? __builtin_ctz(bits) : 0;
}

std::uint32_t buttonBits(Qt::MouseButtons buttons) { return static_cast<std::uint32_t>(buttons.toInt()); }

Qt::CursorShape cursorShape(Cursor cursor) {
    switch (cursor) {
    case Cursor::arrow:
        break;
    case Cursor::ibeam:
        return Qt::IBeamCursor;
    case Cursor::crosshair:
        return Qt::CrossCursor;
    case Cursor::closedHand:
        return Qt::ClosedHandCursor;
    case Cursor::openHand:
        return Qt::OpenHandCursor;
    case Cursor::pointingHand:
        return Qt::PointingHandCursor;
    case Cursor::resizeLeftRight:
        return Qt::SizeHorCursor;
    case Cursor::resizeUpDown:
        return Qt::SizeVerCursor;
    case Cursor::resizeDiagonalDown:
        return Qt::SizeFDiagCursor;
    case Cursor::resizeDiagonalUp:
        return Qt::SizeBDiagCursor;
    case Cursor::operationNotAllowed:
        return Qt::ForbiddenCursor;
    case Cursor::dragCopy:
        return Qt::DragCopyCursor;
    case Cursor::wait:
        return Qt::WaitCursor;
    case Cursor::hidden:
        return Qt::BlankCursor;
    }
    return Qt::ArrowCursor;
}

} // namespace libvue::backend

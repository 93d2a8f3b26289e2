#include "platform/qt/keys.h"

#include "platform/messages.h"

#include <QGuiApplication>

namespace pavane
{

namespace
{

struct KeyPair {
    int qt;
    int virtualKey;
};

constexpr KeyPair namedKeys[] = {{Qt::Key_Backspace, VK_BACK},
                                 {Qt::Key_Tab, VK_TAB},
                                 {Qt::Key_Backtab, VK_TAB},
                                 {Qt::Key_Return, VK_RETURN},
                                 {Qt::Key_Enter, VK_RETURN},
                                 {Qt::Key_Shift, VK_SHIFT},
                                 {Qt::Key_Control, VK_CONTROL},
                                 {Qt::Key_Alt, VK_MENU},
                                 {Qt::Key_Escape, VK_ESCAPE},
                                 {Qt::Key_Space, VK_SPACE},
                                 {Qt::Key_PageUp, VK_PRIOR},
                                 {Qt::Key_PageDown, VK_NEXT},
                                 {Qt::Key_End, VK_END},
                                 {Qt::Key_Home, VK_HOME},
                                 {Qt::Key_Left, VK_LEFT},
                                 {Qt::Key_Up, VK_UP},
                                 {Qt::Key_Right, VK_RIGHT},
                                 {Qt::Key_Down, VK_DOWN},
                                 {Qt::Key_Insert, VK_INSERT},
                                 {Qt::Key_Delete, VK_DELETE},
                                 {Qt::Key_Plus, VK_OEM_PLUS},
                                 {Qt::Key_Equal, VK_OEM_PLUS},
                                 {Qt::Key_Menu, VK_APPS},
                                 {Qt::Key_Minus, VK_OEM_MINUS},
                                 {Qt::Key_Underscore, VK_OEM_MINUS}};

/// Digits with Shift, on the keyboard that most layouts follow.
constexpr char shiftedDigits[] = ")!@#$%^&*(";

/// The digit key pressed, by its place on the keyboard; -1 for another one.
int digitByPlace(const QKeyEvent& key)
{
    // X11 and Wayland count keys from 9: the row of digits is 10 .. 19, "1" to "0"
    const quint32 place = key.nativeScanCode();
    return place >= 10 && place <= 19 ? static_cast<int>((place - 9) % 10) : -1;
}

}  // namespace

int virtualKeyOf(const QKeyEvent& key)
{
    const int code = key.key();
    const bool onPad = key.modifiers() & Qt::KeypadModifier;
    if (code >= Qt::Key_0 && code <= Qt::Key_9)
        return onPad ? VK_NUMPAD0 + (code - Qt::Key_0) : code;
    if (code >= Qt::Key_A && code <= Qt::Key_Z)
        return code;
    if (code >= Qt::Key_F1 && code <= Qt::Key_F24)
        return VK_F1 + (code - Qt::Key_F1);
    if (onPad && code == Qt::Key_Plus)
        return VK_ADD;
    if (onPad && code == Qt::Key_Minus)
        return VK_SUBTRACT;
    if (const int digit = digitByPlace(key); digit >= 0 && code > ' ' && code < 0x100)
        return '0' + digit;
    for (const KeyPair& pair : namedKeys) {
        if (pair.qt == code)
            return pair.virtualKey;
    }
    for (int digit = 0; digit < 10; ++digit) {
        if (code == shiftedDigits[digit])
            return '0' + digit;
    }
    return 0;
}

unsigned heldFlags(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers)
{
    return (buttons & Qt::LeftButton ? MK_LBUTTON : 0) |
           (buttons & Qt::RightButton ? MK_RBUTTON : 0) |
           (buttons & Qt::MiddleButton ? MK_MBUTTON : 0) |
           (modifiers & Qt::ShiftModifier ? MK_SHIFT : 0) |
           (modifiers & Qt::ControlModifier ? MK_CONTROL : 0);
}

}  // namespace pavane

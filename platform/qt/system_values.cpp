#include "platform/dialog_ground.h"
#include "platform/qt/look.h"
#include "platform/qt/WindowPeer.h"
#include "platform/system_colors.h"
#include "platform/system_metrics.h"

#include <QApplication>
#include <QPalette>
#include <QScreen>
#include <QScrollBar>
#include <QStyleHints>

namespace pavane
{

namespace
{

COLORREF colorOf(const QPalette& palette, QPalette::ColorGroup group, QPalette::ColorRole role)
{
    const QColor c = palette.color(group, role);
    return RGB(c.red(), c.green(), c.blue());
}

/// Palettes of high contrast have the same colour for buttons and their edges; a line that nobody
/// sees is made of ground and text.
COLORREF visibleLine(COLORREF line, COLORREF ground, COLORREF text)
{
    constexpr double leastContrast = 1.4;
    if (ContrastRatio(line, ground) >= leastContrast)
        return line;
    const auto mixed = [](int a, int b) { return a + (b - a) * 2 / 5; };
    return RGB(mixed(GetRValue(ground), GetRValue(text)), mixed(GetGValue(ground), GetGValue(text)),
               mixed(GetBValue(ground), GetBValue(text)));
}

/// What the bars of FrameWidget take.
int scrollBarThickness(Qt::Orientation orientation)
{
    if (!canShowWindows())
        return 0;
    const QSize size = QScrollBar(orientation).sizeHint();
    return orientation == Qt::Vertical ? size.width() : size.height();
}

QSize screenSize()
{
    const QScreen* const screen = qobject_cast<QGuiApplication*>(QCoreApplication::instance())
                                      ? qApp->primaryScreen()
                                      : nullptr;
    return screen ? screen->size() : QSize(0, 0);
}

}  // namespace

COLORREF GetDialogGround()
{
    return canShowWindows()
               ? colorOf(QGuiApplication::palette(), QPalette::Active, QPalette::Window)
               : RGB(255, 255, 255);
}

COLORREF GetSysColor(int index)
{
    const QPalette palette = QGuiApplication::palette();
    const auto active = [&](QPalette::ColorRole role) {
        return colorOf(palette, QPalette::Active, role);
    };
    switch (index) {
    case COLOR_WINDOW:
        return active(QPalette::Base);
    case COLOR_WINDOWTEXT:
        return active(QPalette::Text);
    case COLOR_WINDOWFRAME:
        return visibleLine(active(QPalette::Dark), active(QPalette::Button),
                           active(QPalette::ButtonText));
    case COLOR_BTNSHADOW:
        return visibleLine(active(QPalette::Mid), active(QPalette::Base), active(QPalette::Text));
    case COLOR_BTNFACE:
        return active(QPalette::Button);
    case COLOR_BTNTEXT:
        return active(QPalette::ButtonText);
    case COLOR_BTNHIGHLIGHT:
        return active(QPalette::Light);
    case COLOR_HIGHLIGHT:
        return active(QPalette::Highlight);
    case COLOR_HIGHLIGHTTEXT:
        return active(QPalette::HighlightedText);
    case COLOR_GRAYTEXT:
        return colorOf(palette, QPalette::Disabled, QPalette::Text);
    case COLOR_INFOBK:
        return active(QPalette::ToolTipBase);
    case COLOR_INFOTEXT:
        return active(QPalette::ToolTipText);
    default:
        return 0;
    }
}

int GetSystemMetrics(int index)
{
    switch (index) {
    case SM_CXSCREEN:
        return screenSize().width();
    case SM_CYSCREEN:
        return screenSize().height();
    case SM_CXVSCROLL:
    case SM_CYVSCROLL:
        return scrollBarThickness(Qt::Vertical);
    case SM_CYHSCROLL:
    case SM_CXHSCROLL:
        return scrollBarThickness(Qt::Horizontal);
    case SM_CXBORDER:
    case SM_CYBORDER:
        return 1;
    case SM_CXEDGE:
    case SM_CYEDGE:
        return 2;
    case SM_CXDOUBLECLK:
    case SM_CYDOUBLECLK:
        return canShowWindows() ? QGuiApplication::styleHints()->mouseDoubleClickDistance() : 0;
    case SM_CXDRAG:
    case SM_CYDRAG:
        return canShowWindows() ? QGuiApplication::styleHints()->startDragDistance() : 0;
    default:
        return 0;
    }
}

void tellOfColors()
{
    for (const HWND hwnd : allWindows())
        sendTo(hwnd, WM_SYSCOLORCHANGE, 0, 0);
}

}  // namespace pavane

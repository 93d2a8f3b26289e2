#include "platform/qt/cursors.h"

#include "platform/qt/HostWidget.h"
#include "platform/qt/WindowPeer.h"
#include "platform/resources.h"

#include <algorithm>
#include <map>
#include <QApplication>
#include <QCursor>
#include <QImage>
#include <QPixmap>
#include <string_view>
#include <utility>

namespace pavane
{

namespace
{

constexpr int cursorSide = 32;
constexpr HCURSOR firstDrawn = 100;

struct DrawnCursor {
    const CursorTemplate* drawing;
    std::map<int, QCursor> made;  ///< for each pixel ratio
};

/// Drawn cursors by number - firstDrawn; freed by forgetCursors, as pixmaps need the application.
std::vector<DrawnCursor>& drawn()
{
    static auto* const cursors = new std::vector<DrawnCursor>;
    return *cursors;
}

HWND over = 0;
HCURSOR shown = IDC_ARROW;

QCursor cursorOf(const CursorTemplate& drawing, int ratio)
{
    QImage image(cursorSide, cursorSide, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    for (int y = 0; y < std::min(drawing.rowCount, cursorSide); ++y) {
        const std::string_view row = drawing.rows[y];
        for (int x = 0; x < cursorSide && x < static_cast<int>(row.size()); ++x) {
            const char dot = row[static_cast<std::size_t>(x)];
            if (dot == '#' || dot == '.')
                image.setPixelColor(x, y, dot == '#' ? Qt::black : Qt::white);
        }
    }
    QPixmap pixmap = QPixmap::fromImage(image.scaled(cursorSide * ratio, cursorSide * ratio));
    pixmap.setDevicePixelRatio(ratio);
    return QCursor(pixmap, drawing.hotX, drawing.hotY);
}

QCursor qtCursorOf(HCURSOR cursor, int ratio)
{
    const std::size_t index = cursor - firstDrawn;
    if (cursor >= firstDrawn && index < drawn().size()) {
        DrawnCursor& known = drawn()[index];
        if (!known.made.contains(ratio))
            known.made.emplace(ratio, cursorOf(*known.drawing, ratio));
        return known.made.at(ratio);
    }
    constexpr std::pair<HCURSOR, Qt::CursorShape> shapes[] = {{0, Qt::BlankCursor},
                                                              {IDC_ARROW, Qt::ArrowCursor},
                                                              {IDC_IBEAM, Qt::IBeamCursor},
                                                              {IDC_WAIT, Qt::WaitCursor},
                                                              {IDC_CROSS, Qt::CrossCursor},
                                                              {IDC_SIZEALL, Qt::SizeAllCursor},
                                                              {IDC_SIZENWSE, Qt::SizeFDiagCursor},
                                                              {IDC_SIZENESW, Qt::SizeBDiagCursor},
                                                              {IDC_SIZEWE, Qt::SizeHorCursor},
                                                              {IDC_SIZENS, Qt::SizeVerCursor},
                                                              {IDC_HAND, Qt::PointingHandCursor},
                                                              {IDC_NO, Qt::ForbiddenCursor}};
    for (const auto& [number, shape] : shapes) {
        if (number == cursor)
            return QCursor(shape);
    }
    return QCursor(Qt::ArrowCursor);
}

}  // namespace

void pointerIsOver(HWND hwnd) { over = hwnd; }

void forgetCursors()
{
    for (DrawnCursor& known : drawn())
        known.made.clear();
    over = 0;
    shown = IDC_ARROW;
}

HCURSOR LoadCursor(unsigned id)
{
    const CursorTemplate* const drawing = FindCursorTemplate(id);
    if (!drawing)
        return 0;
    const auto known = std::find_if(drawn().begin(), drawn().end(),
                                    [&](const DrawnCursor& c) { return c.drawing == drawing; });
    const auto index = static_cast<HCURSOR>(known - drawn().begin());
    if (known == drawn().end())
        drawn().push_back({drawing, {}});
    return firstDrawn + index;
}

HCURSOR SetCursor(HCURSOR cursor)
{
    WindowPeer* const peer = peerOf(over);
    if (peer && peer->widget && (cursor != peer->shownCursor || !peer->hasCursor)) {
        peer->widget->setCursor(qtCursorOf(cursor, pixelRatioOf(peer->widget)));
        peer->shownCursor = cursor;
        peer->hasCursor = true;
    }
    return std::exchange(shown, cursor);
}

HCURSOR GetCursor() { return shown; }

void BeginWaitCursor()
{
    if (qobject_cast<QApplication*>(QCoreApplication::instance()))
        QApplication::setOverrideCursor(Qt::WaitCursor);
}

void EndWaitCursor()
{
    if (qobject_cast<QApplication*>(QCoreApplication::instance()))
        QApplication::restoreOverrideCursor();
}

CPoint GetCursorPos()
{
    const QPoint p = QCursor::pos();
    return {p.x(), p.y()};
}

void SetCursorPos(CPoint screen) { QCursor::setPos(screen.x, screen.y); }

}  // namespace pavane

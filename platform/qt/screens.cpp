#include "platform/screens.h"

#include <QGuiApplication>
#include <QScreen>

namespace pavane
{

std::vector<CRect> GetScreenRects()
{
    std::vector<CRect> rects;
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return rects;
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QRect r = screen->availableGeometry();
        const CRect rect(r.left(), r.top(), r.left() + r.width(), r.top() + r.height());
        rects.insert(screen == QGuiApplication::primaryScreen() ? rects.begin() : rects.end(),
                     rect);
    }
    return rects;
}

}  // namespace pavane

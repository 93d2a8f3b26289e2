#include "platform/clipboard.h"

#include "platform/qt/fonts.h"
#include "platform/window_dc.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>

namespace pavane
{

namespace
{

bool refuses = false;

/// Null when it may not be used.
QClipboard* usableClipboard()
{
    const bool hasApplication = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    return refuses || !hasApplication ? nullptr : QGuiApplication::clipboard();
}

}  // namespace

int SetClipboardText(const CString& text)
{
    QClipboard* const clipboard = usableClipboard();
    if (!clipboard)
        return 0;
    const QString wanted = textOf(text);
    clipboard->setText(wanted);
    return clipboard->text() == wanted ? 1 : 0;
}

int SetClipboardBitmap(const CBitmap& bitmap)
{
    QClipboard* const clipboard = usableClipboard();
    if (!clipboard || !bitmap.bits())
        return 0;
    const int width = bitmap.size().cx * bitmap.ratio();
    const int height = bitmap.size().cy * bitmap.ratio();
    const QImage pixels(reinterpret_cast<const uchar*>(bitmap.bits()), width, height,
                        static_cast<qsizetype>(width) * 4, QImage::Format_RGB32);
    const QImage own = pixels.copy();
    if (own.isNull())
        return 0;
    clipboard->setImage(own);
    const QMimeData* const data = clipboard->mimeData();
    return data && data->hasImage() ? 1 : 0;
}

int GetClipboardText(CString& text)
{
    QClipboard* const clipboard = usableClipboard();
    const QMimeData* const data = clipboard ? clipboard->mimeData() : nullptr;
    if (!data || !data->hasText())
        return 0;
    text = data->text().toStdString();
    return 1;
}

CSize GetClipboardBitmapSize()
{
    QClipboard* const clipboard = usableClipboard();
    const QMimeData* const data = clipboard ? clipboard->mimeData() : nullptr;
    if (!data || !data->hasImage())
        return {};
    const QSize size = clipboard->image().size();
    return {size.width(), size.height()};
}

void SetClipboardRefusal(int on) { refuses = on != 0; }

}  // namespace pavane

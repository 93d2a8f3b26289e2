#include "platform/clipboard.h"

#include "platform/qt/fonts.h"
#include "platform/window_dc.h"

#include <algorithm>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>

namespace pavane
{

namespace
{

constexpr const char* plainText = "text/plain";
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

int SetClipboardData(const std::vector<ClipboardData>& forms)
{
    QClipboard* const clipboard = usableClipboard();
    if (!clipboard || forms.empty())
        return 0;
    auto* const data = new QMimeData;
    for (const ClipboardData& form : forms) {
        const QByteArray bytes(form.bytes.data(), static_cast<qsizetype>(form.bytes.size()));
        // plain text goes by more than one name
        if (form.type == plainText)
            data->setText(QString::fromUtf8(bytes));
        else
            data->setData(textOf(form.type), bytes);
    }
    clipboard->setMimeData(data);  // owns it
    const QMimeData* const kept = clipboard->mimeData();
    const auto isThere = [&](const ClipboardData& form) {
        return kept && kept->hasFormat(textOf(form.type));
    };
    return std::all_of(forms.begin(), forms.end(), isThere) ? 1 : 0;
}

int GetClipboardData(const CString& type, CString& bytes)
{
    bytes.clear();
    QClipboard* const clipboard = usableClipboard();
    const QMimeData* const data = clipboard ? clipboard->mimeData() : nullptr;
    if (!data || !(type == plainText ? data->hasText() : data->hasFormat(textOf(type))))
        return 0;
    const QByteArray found = type == plainText ? data->text().toUtf8() : data->data(textOf(type));
    bytes.assign(found.constData(), static_cast<std::size_t>(found.size()));
    return 1;
}

int IsClipboardFormatAvailable(const CString& type)
{
    QClipboard* const clipboard = usableClipboard();
    const QMimeData* const data = clipboard ? clipboard->mimeData() : nullptr;
    return data && (type == plainText ? data->hasText() : data->hasFormat(textOf(type))) ? 1 : 0;
}

void SetClipboardRefusal(int on) { refuses = on != 0; }

}  // namespace pavane

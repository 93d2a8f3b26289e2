#include "platform/color_dialog.h"

#include "platform/CWnd.h"
#include "platform/qt/fonts.h"
#include "platform/qt/look.h"
#include "platform/qt/WindowPeer.h"

#include <QColorDialog>
#include <QPointer>
#include <utility>

namespace pavane
{

namespace
{

ColorDialogAnswer colorAnswer = nullptr;

}  // namespace

ColorDialogAnswer SetColorDialogAnswer(ColorDialogAnswer answer)
{
    return std::exchange(colorAnswer, answer);
}

int AskColor(COLORREF& color, const CString& title, CWnd* owner)
{
    cancelCapture();
    if (colorAnswer)
        return colorAnswer(color);
    if (!canShowWindows())
        return 0;
    QWidget* const client = clientOf(owner);
    QWidget* const front = client ? client->window() : frontWindow();
    const WindowPeer* const top = peerOf(front);
    const HWND topHandle = top ? top->hwnd : 0;
    const QPointer<QColorDialog> dialog =
        new QColorDialog(QColor(GetRValue(color), GetGValue(color), GetBValue(color)), front);
    dialog->setWindowTitle(textOf(title));
    dialog->setOption(QColorDialog::DontUseNativeDialog);
    clearButtonIcons(*dialog);
    const bool isChosen = dialog->exec() == QDialog::Accepted && dialog;
    if (isChosen) {
        const QColor chosen = dialog->currentColor();
        color = RGB(chosen.red(), chosen.green(), chosen.blue());
    }
    if (dialog)
        dialog->deleteLater();
    reactivate(topHandle);
    return isChosen;
}

}  // namespace pavane

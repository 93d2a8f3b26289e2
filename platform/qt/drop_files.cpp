#include "platform/drop_files.h"

#include "platform/qt/drop_files.h"
#include "platform/qt/WindowPeer.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

namespace pavane
{

void DragAcceptFiles(CWnd& window, int accept)
{
    const WindowPeer* const peer = peerOf(&window);
    if (peer && !peer->isNative())
        peer->widget->setAcceptDrops(accept != 0);
}

const std::vector<CString>& DroppedFiles(LPARAM lParam)
{
    return *reinterpret_cast<const std::vector<CString>*>(lParam);  // NOLINT: a pointer in it
}

void filesDragged(QWidget& widget, HWND hwnd, QDropEvent& e)
{
    const QWidget* const modal = QApplication::activeModalWidget();
    std::vector<CString> files;
    if (widget.isEnabled() && (!modal || modal == widget.window()) && e.mimeData()->hasUrls())
        for (const QUrl& url : e.mimeData()->urls())
            if (url.isLocalFile())
                files.push_back(url.toLocalFile().toStdString());
    if (files.empty() || !(e.possibleActions() & Qt::CopyAction)) {
        e.ignore();
        return;
    }
    e.setDropAction(Qt::CopyAction);  // the file stays where it is
    e.accept();
    if (e.type() != QEvent::Drop)
        return;
    // where they come from waits for the end of the drop
    const WPARAM held = e.modifiers().testFlag(Qt::ShiftModifier) ? MK_SHIFT : 0;
    const auto tell = [hwnd, files, held] {
        sendTo(hwnd, WM_DROPFILES, held, reinterpret_cast<LPARAM>(&files));
    };
    QMetaObject::invokeMethod(&widget, tell, Qt::QueuedConnection);
}

}  // namespace pavane

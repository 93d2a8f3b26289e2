#include "platform/file_dialog.h"

#include "platform/core/file_filter.h"
#include "platform/CWnd.h"
#include "platform/message.h"
#include "platform/qt/fonts.h"
#include "platform/qt/look.h"
#include "platform/qt/WindowPeer.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>

namespace pavane
{

namespace
{

FileDialogAnswer fileAnswer = nullptr;

QStringList nameFilters(const std::vector<FileFilter>& filters)
{
    QStringList lines;
    for (const FileFilter& filter : filters) {
        QStringList patterns;
        for (const CString& pattern : filter.patterns)
            patterns << textOf(pattern);
        // round brackets in the text would be taken for patterns, too
        QString text = textOf(filter.text);
        if (const auto bracket = text.indexOf(QLatin1Char('(')); bracket >= 0)
            text = text.left(bracket).trimmed();
        lines << text + QStringLiteral(" (") + patterns.join(QLatin1Char(' ')) + QLatin1Char(')');
    }
    return lines;
}

/// The folder and the name that the dialog begins with. A name that is only an extension, which
/// hosts pass to say what they write, is no suggestion.
void suggest(QFileDialog& dialog, const CString& name)
{
    if (name.empty())
        return;
    const QFileInfo file(textOf(name));
    if (name.find('/') != name.npos)
        dialog.setDirectory(file.isDir() ? file.filePath() : file.path());
    if (!file.isDir() && !(file.fileName().lastIndexOf(QLatin1Char('.')) == 0))
        dialog.selectFile(file.fileName());
}

bool mayReplace(const CString& name)
{
    if (!QFileInfo::exists(textOf(name)))
        return true;
    const QString shown = QFileInfo(textOf(name)).fileName();
    return AfxMessageBox(shown.toStdString() + " exists already.\nReplace it?",
                         MB_YESNO | MB_ICONWARNING | MB_DEFBUTTON2) == IDYES;
}

/// The extension of the chosen type; empty when any may do.
CString chosenExtension(const QFileDialog& dialog, const std::vector<FileFilter>& filters)
{
    const auto line = dialog.nameFilters().indexOf(dialog.selectedNameFilter());
    const bool isKnown = line >= 0 && static_cast<std::size_t>(line) < filters.size();
    return isKnown ? extensionOf(filters[static_cast<std::size_t>(line)]) : CString();
}

/// Shows the type that the name has, and lets the name follow the type from then on.
void joinNameAndType(QFileDialog& dialog, const CString& name,
                     const std::vector<FileFilter>& filters)
{
    const QStringList lines = dialog.nameFilters();
    for (std::size_t i = filters.size(); i-- > 0;)
        if (const CString own = extensionOf(filters[i]); !own.empty() && name.ends_with('.' + own))
            dialog.selectNameFilter(lines[static_cast<qsizetype>(i)]);
    QObject::connect(&dialog, &QFileDialog::filterSelected, [&dialog, filters] {
        auto* const edit = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        if (edit)
            edit->setText(textOf(
                withTypeOf(edit->text().toStdString(), chosenExtension(dialog, filters), filters)));
    });
}

/// One showing; the chosen name, empty when the user gave up.
CString ask(const QPointer<QFileDialog>& dialog, const std::vector<FileFilter>& filters,
            const CString& defaultExt, int open)
{
    if (dialog->exec() != QDialog::Accepted || !dialog)
        return {};
    const QStringList files = dialog->selectedFiles();
    CString name = files.isEmpty() ? CString() : files.first().toStdString();
    if (open)
        return name;
    const CString own = chosenExtension(*dialog, filters);
    return withExtension(name, own.empty() ? defaultExt : own);
}

}  // namespace

FileDialogAnswer SetFileDialogAnswer(FileDialogAnswer answer)
{
    return std::exchange(fileAnswer, answer);
}

int fnFileDialog1(CString& name, const CString& filter, const CString& title, int open,
                  const CString& defaultExt, unsigned, CWnd* owner)
{
    cancelCapture();
    if (fileAnswer)
        return fileAnswer(name, filter, open);
    if (!canShowWindows())
        return 0;
    QWidget* const client = clientOf(owner);
    QWidget* const front = client ? client->window() : frontWindow();
    const WindowPeer* const top = peerOf(front);
    const HWND topHandle = top ? top->hwnd : 0;
    const QPointer<QFileDialog> dialog = new QFileDialog(front, textOf(title));
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    // asked below, after the extension was added and in the words of the program
    dialog->setOption(QFileDialog::DontConfirmOverwrite);
    dialog->setAcceptMode(open ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    dialog->setFileMode(open ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    const std::vector<FileFilter> filters = fileFilters(filter);
    dialog->setNameFilters(nameFilters(filters));
    suggest(*dialog, name);
    clearButtonIcons(*dialog);
    if (!open)
        joinNameAndType(*dialog, name, filters);
    CString chosen;
    do
        chosen = ask(dialog, filters, defaultExt, open);
    while (dialog && !open && !chosen.empty() && !mayReplace(chosen));
    if (dialog)
        dialog->deleteLater();
    reactivate(topHandle);
    if (chosen.empty())
        return 0;
    name = chosen;
    return 1;
}

}  // namespace pavane

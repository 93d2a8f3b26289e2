#include "platform/qt/file_output.h"

#include <QFileInfo>
#include <QSaveFile>
#include <QString>

namespace pavane
{

int writeWhole(const CString& file, std::string_view bytes, CString& error)
{
    error.clear();
    const QString name = QString::fromUtf8(file.data(), static_cast<qsizetype>(file.size()));
    const QFileInfo old(name);
    if (old.exists() && !old.isFile() && !old.isDir()) {
        error = "is a device or a pipe, which a new file would replace";
        return 0;
    }
    QSaveFile out(name);
    // unbuffered: a buffer that cannot be written when the file is committed goes unnoticed
    bool whole = out.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    while (whole && !bytes.empty()) {
        const qint64 written = out.write(bytes.data(), static_cast<qint64>(bytes.size()));
        whole = written > 0;
        if (whole)
            bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    if (whole && out.commit())
        return 1;
    error = out.errorString().toStdString();
    out.cancelWriting();
    return 0;
}

}  // namespace pavane

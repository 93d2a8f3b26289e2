#include "platform/qt/file_output.h"

#include <QSaveFile>
#include <QString>

namespace pavane
{

int writeWhole(const CString& file, std::string_view bytes, CString& error)
{
    error.clear();
    QSaveFile out(QString::fromUtf8(file.data(), static_cast<qsizetype>(file.size())));
    const auto size = static_cast<qint64>(bytes.size());
    if (out.open(QIODevice::WriteOnly) && out.write(bytes.data(), size) == size && out.commit())
        return 1;
    error = out.errorString().toStdString();
    out.cancelWriting();
    return 0;
}

}  // namespace pavane

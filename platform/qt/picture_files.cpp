#include "platform/qt/picture_files.h"

#include "platform/picture_file.h"
#include "posix/plain_file.h"

#include <cstring>
#include <QFile>
#include <QPainter>
#include <unistd.h>

namespace pavane
{

namespace
{

/// Pixels of the largest picture; the toolkit decodes up to 128 MiB.
constexpr qint64 mostPixels = 32'000'000;

/// Why a file cannot be opened; "" for a plain file that can.
CString faultOf(const CString& file)
{
    std::string fault;
    const int descriptor = openPlainFile(file, fault);
    if (descriptor >= 0)
        (void)close(descriptor);  // it was only looked at
    return fault;
}

}  // namespace

int openPicture(QImageReader& reader, const CString& file, CString& error)
{
    error = faultOf(file);  // a pipe would make the reader wait
    if (!error.empty())
        return 0;
    reader.setFileName(QFile::decodeName(QByteArray(file.data(), static_cast<int>(file.size()))));
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead()) {
        error = "is no picture";
        return 0;
    }
    const QSize size = reader.size();
    if (size.isValid() && qint64{size.width()} * size.height() > mostPixels) {
        error = "is too large";
        return 0;
    }
    return 1;
}

int copyPicture(const QImage& image, CPicture& picture)
{
    picture = CPicture(image.width(), image.height());
    if (picture.width() < 1)
        return 0;
    QImage view(reinterpret_cast<uchar*>(picture.row(0)), picture.width(), picture.height(),
                qsizetype{picture.width()} * 4, QImage::Format_RGB32);
    view.fill(Qt::white);
    QImage source = image;
    source.setDevicePixelRatio(1);
    QPainter(&view).drawImage(0, 0, source);
    return 1;
}

int LoadPicture(const CString& file, CPicture& picture, CString& error)
{
    picture = CPicture();
    QImageReader reader;
    if (!openPicture(reader, file, error))
        return 0;
    const QImage image = reader.read();
    if (image.isNull() || !copyPicture(image, picture)) {
        error = image.isNull() ? reader.errorString().toStdString() : "is too large";
        return 0;
    }
    return 1;
}

CString FinePictureFile(const CString& file, int ratio)
{
    const std::size_t name = file.find_last_of('/') + 1;  // 0 without a folder
    const std::size_t dot = file.find_last_of('.');
    if (ratio < 2 || dot == CString::npos || dot <= name)
        return file;
    const CString fine = file.substr(0, dot) + "@2x" + file.substr(dot);
    return faultOf(fine).empty() ? fine : file;
}

}  // namespace pavane

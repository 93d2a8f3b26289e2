#pragma once

#include "platform/picture.h"

#include <QImage>
#include <QImageReader>

namespace pavane
{

/// Opens a picture or clip; 0 and `error` when it is none or larger than pictures may be. Nothing
/// is decoded yet.
int openPicture(QImageReader& reader, const CString& file, CString& error);
/// Copies a decoded picture, on white where it is transparent. Non-zero on success.
int copyPicture(const QImage& image, CPicture& picture);

}  // namespace pavane

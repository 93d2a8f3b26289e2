#pragma once

#include "platform/CMenu.h"

#include <QIcon>

namespace pavane
{

class CImageList;
class CPicture;

/// The picture before the text of a line; an empty icon when there is none. A chosen line does not
/// tint it: colours have to be seen as they are; only inks of an image list that its ground would
/// hide change there.
QIcon lineIcon(const CPicture& picture, int ratio);
QIcon lineIcon(const CImageList& images, int image);
QIcon lineIcon(const CMenu::Line& line);
/// Its size in units.
QSize lineIconSize(const CPicture& picture, int ratio);
QSize lineIconSize(const CMenu::Line& line);

}  // namespace pavane

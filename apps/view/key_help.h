#pragma once

#include "platform/CDialog.h"

namespace pavane
{

// Keys and mouse, as two columns of lines.
void showMapKeys(CWnd* parent);
void showDataKeys(CWnd* parent);

/// What the program is.
void showAbout();

}  // namespace pavane

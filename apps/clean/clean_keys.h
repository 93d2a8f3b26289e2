#pragma once

namespace pavane
{

class CWnd;

/// Keys and mouse of pavane-clean, as two columns of lines.
void showCleanKeys(CWnd* parent);
/// What the program is.
void showAboutClean();

}  // namespace pavane

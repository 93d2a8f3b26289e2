#pragma once

namespace pavane
{

class CDialog;
class CWnd;

/// Places a dialog that changes what a window shows beside the frame of that window, where the
/// screen has room for it, else in the lower right corner of the screen, so that most of what it
/// changes is in view. Call it before a kept place is brought back. Null places nothing.
void standBeside(CDialog& dialog, const CWnd* window);

}  // namespace pavane

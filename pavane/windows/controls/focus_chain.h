#pragma once

namespace pavane
{

class CWnd;

/// The Tab key in a control of a window that is no dialog: gives the focus to the next child of the
/// same parent that has WS_TABSTOP (`back`: to the one before), round the ends. 0 in a dialog,
/// which has an order of its own.
int passFocus(const CWnd& from, int back);

}  // namespace pavane

#pragma once

#include "platform/gdi_objects.h"

#include <memory>

namespace pavane
{

class CDC;
class CWnd;

/// What a control without a ground of its own is drawn on: that of dialogs, else of windows.
COLORREF controlGround(const CWnd& window);

/// Selects the font of controls into a context for as long as it lives.
class ControlFont
{
public:
    ControlFont(CDC& dc, const CWnd& window);
    ControlFont(const ControlFont&) = delete;
    ControlFont& operator=(const ControlFont&) = delete;
    ~ControlFont();

private:
    CDC& dc_;
    CFont font_;
    CFont* before_;
};

/// Where a piece of one line begins and ends from the left, in units.
int widthOfText(const CDC& dc, const CString& text, int from, int to);
// With a `column` above 0 what stands behind the first tab of a line begins so many units from the
// left, or behind what reaches further.
/// Where byte `at` of a line stands.
int placeInLine(const CDC& dc, const CString& text, int at, int column = 0);
/// The byte of the character whose left edge is nearest to `x` units from the left of the text.
int byteAt(const CDC& dc, const CString& text, int x, int column = 0);
/// Draws one line at `at`; bytes `from` to `to` stand on the desktop's colour of chosen text.
void drawSelectedText(CDC& dc, CPoint at, int height, const CString& text, int from, int to,
                      COLORREF color, int column = 0);

}  // namespace pavane

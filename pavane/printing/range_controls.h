#pragma once

#include "pavane/printing/layout/page_range.h"
#include "platform/CDialog.h"

namespace pavane
{

/// What the range controls of a print dialog show; `pages` is the document's length as the dialog
/// knows it.
RangeControls readRangeControls(const CWnd& dialog, int pages);
/// Shows it; edits whose number is the same keep their text.
void showRangeControls(CWnd& dialog, const RangeControls& controls);

/// Check boxes and radio buttons of a dialog; 0 without the control.
int isChecked(const CWnd& dialog, unsigned id);
void setChecked(CWnd& dialog, unsigned id, int on);
void enableItem(CWnd& dialog, unsigned id, int on);

}  // namespace pavane

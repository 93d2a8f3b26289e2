#pragma once

#include "platform/CWnd.h"
#include "platform/dialog_template.h"

#include <memory>
#include <vector>

namespace pavane
{

/// The controls of a dialog, in the order of its template.
struct DialogControls {
    std::vector<std::unique_ptr<CWnd>> objects;
    /// The windows in the order of the Tab key; what takes the place of a control takes it here.
    std::vector<HWND> order;
};

/// Makes all controls in the dialog's window; non-zero on success.
int makeControls(CWnd& dialog, const DlgTemplate& dialogTemplate, DialogControls& controls);
/// Makes the Tab key follow `order`.
void chainControls(const std::vector<HWND>& order);

}  // namespace pavane

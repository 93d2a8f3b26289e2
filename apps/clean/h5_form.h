#pragma once

#include "pavane/dialogs/AGainFilesDlg.h"

#include <string>
#include <vector>

namespace pavane
{

/// H5Parm as a form of gain files, read and written by pavane-ms. `program` is its command; `data`
/// the visibilities that the gains belong to, `folder` where files may lie for a moment.
GainFileForm h5ParmForm(const std::vector<std::string>& program, const std::string& data,
                        const std::string& folder, CWnd* owner);

}  // namespace pavane
